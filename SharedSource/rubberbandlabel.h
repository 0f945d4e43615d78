#ifndef RUBBERBANDLABEL_H
#define RUBBERBANDLABEL_H

#include <QColor>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QRect>
#include <QRegion>

class PreviewPicture;
class QRubberBand;

// A small picture of an image of a reference size, with a translucent band on
// it that stands for a region of that image. The band is placed from a
// rectangle in image pixels and can be moved and resized with the mouse; the
// label reports what the user did as rectangles in image pixels, always in the
// order top, left, width, height. It knows nothing of where the image or the
// region come from. Given a picture of the image, it shows that picture
// under the band instead of the tint.
class RubberBandLabel : public QLabel
{
    Q_OBJECT

public:
    RubberBandLabel(int imageWidth, int imageHeight, const QColor& color,
                    QWidget* parent = nullptr);
    ~RubberBandLabel() override;

    // Stores the region and places the band for it, once the band exists.
    void SetBandGeometry(int top, int left, int width, int height);
    // Shows picture over area, a rectangle in image pixels, from now on;
    // what area leaves of the image stays tinted.
    void SetPicture(const QImage& picture, const QRect& area);

    // Whether a press on the band started a move or a resize that hasn't
    // been released yet.
    bool IsDragging() const;

    QSize sizeHint() const override;
    int heightForWidth(int w) const override;

    // The part of the label that the picture fills.
    int GetFittedWidth() const;
    int GetFittedHeight() const;

signals:
    void SendGeometry(int top, int left, int width, int height);
    void UpdateGeometry(int top, int left, int width, int height);
    void GeometryChangeStarted();
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private slots:
    void UpdateGeometryAfterResize();

private:
    void FillPixmap(QColor& color);
    void PlacePicture();
    QRegion MaskOfTransparentPixels(const QColor& fill) const;
    bool IsResizing() const;
    double ScreenScale() const;
    void PlaceStoredRegion();
    QRect EstimatedBand(const QSize& newSize, const QSize& oldSize) const;
    QRect DraggedBand(int x, int y) const;
    void SetCursorForPosition(int x, int y);
    // Not a QRect: the stored size may be any int, which QRect can't hold.
    void BandInImagePixels(int& top, int& left, int& width, int& height) const;

    QRubberBand* m_RubberBand = nullptr;
    int m_DragOffsetX = 0;
    int m_DragOffsetY = 0;
    QColor m_Color;
    QPixmap m_Pixmap;
    int m_ImageWidth;
    int m_ImageHeight;
    bool m_Moving = false;
    bool m_ResizingLeft = false;
    bool m_ResizingRight = false;
    bool m_ResizingTop = false;
    bool m_ResizingBottom = false;
    PreviewPicture* m_Picture = nullptr;
    QRect m_PictureArea;
    int m_Top = -1;
    int m_Left = 0;
    int m_Width;
    int m_Height;
};

#endif // RUBBERBANDLABEL_H
