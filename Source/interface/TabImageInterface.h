#ifndef TABIMAGEINTERFACE_H
#define TABIMAGEINTERFACE_H

#include <QtPlugin>

class QImage;
class QSize;
class QWidget;

// What a host that shows a camera's live image can offer a tab extension
// besides TabExtensionInterface: the camera's latest image for the tab of a
// page, which the tab shows under the region it edits. A plug-in object
// implements both interfaces; a host that never asks for this one sees the
// tab as it always was.
class TabImageInterface
{
public:
    virtual ~TabImageInterface() = default;
    // The size in pixels at which the tab of page draws an image, to which a
    // host scales the copies it hands over; empty when page has no such tab.
    // GUI thread only.
    virtual QSize TabImageSize(QWidget* page) = 0;
    // Hands the tab of page the camera's latest image, scaled to about
    // TabImageSize(page); frameSize is the size in camera pixels of the
    // frame it was made from. Does nothing for a page without such a tab.
    // GUI thread only.
    virtual void SetTabImage(QWidget* page, const QImage& image, const QSize& frameSize) = 0;
};

Q_DECLARE_INTERFACE(TabImageInterface, "com.kst.Plugin.TabImageInterface/1.0")

#endif
