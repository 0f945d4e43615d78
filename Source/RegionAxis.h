#ifndef REGIONAXIS_H
#define REGIONAXIS_H

#include <QtGlobal>

class QDoubleSpinBox;
class QLabel;
class QSpinBoxMouseEventFilter;

// One axis of the editor's region: the controls, the reference size, the
// feature names and the message texts that the horizontal and the vertical
// recalculations differ in. The editor runs the same recalculation over
// either axis; the two flags at the end hold the places where the vertical
// axis deliberately does not mirror the horizontal one.
struct RegionAxis
{
    QDoubleSpinBox* spinOffset;
    QDoubleSpinBox* spinFarEdge;
    QDoubleSpinBox* spinSize;
    QLabel* labelError;
    QSpinBoxMouseEventFilter* filterSize;
    quint64 referenceSize;

    const char* dspOffset;
    const char* dspFarEdge;
    const char* autofunctionOffset;
    const char* autoModeOffset;
    const char* autofunctionSize;
    const char* autoModeSize;
    const char* imageOffset;

    // Untranslated texts, translated where they are shown.
    const char* sizeMessage;
    const char* sizeSuffix;
    const char* offsetPastFarEdge;
    const char* offsetPastReference;
    const char* farEdgePastReference;

    // The order check of an offset change compares with the far edge
    // truncated to an unsigned integer instead of the spin box's value.
    bool truncateFarEdgeInOrderCheck;
    // The offset change reads the image offset just before the size check
    // instead of before its first feature read.
    bool readImageOffsetAtCheck;
};

#endif
