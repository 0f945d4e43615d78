#ifndef FRAMECONVERSION_H
#define FRAMECONVERSION_H

#include <TarkaCPP/Frame.h>

#include <QImage>
#include <QSize>

// The size of an image of width x height scaled to fit into bounds, keeping
// its aspect ratio; empty if either is empty.
QSize FitInto(const QSize& image, const QSize& bounds);

// The frame as a displayable image scaled to fit into bounds, converted and
// scaled in one pass. Shrinking averages every pixel that an image pixel
// covers, so that fine patterns don't alias. Mono16 shows its upper byte;
// Bayer frames take each colour from the 2 x 2 cell of the pixel.
QImage ConvertFrame(const KST::TrkAPI::Frame& frame, const QSize& bounds);

#endif
