#include "PreviewPicture.h"

#include <QPainter>

PreviewPicture::PreviewPicture(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PreviewPicture::SetImage(const QImage& image)
{
    m_Image = image;
    // Where the image has no alpha it covers every pixel, and nothing behind
    // it needs painting first.
    setAttribute(Qt::WA_OpaquePaintEvent, !image.hasAlphaChannel());
    setVisible(!image.isNull());
    update();
}

void PreviewPicture::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    // A host scales the image for the preview, so it nearly always has the
    // widget's size already: no smoothing needed then.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, size() != m_Image.size());
    painter.drawImage(rect(), m_Image);
}
