#ifndef PREVIEWPICTURE_H
#define PREVIEWPICTURE_H

#include <QImage>
#include <QWidget>

// A picture of the camera's image laid over the preview's tint, below its
// band. Each new image repaints this widget alone: being opaque, it spares
// the tint and the widgets behind, and it takes no mouse input, so the
// preview under it still handles the band.
class PreviewPicture : public QWidget
{
public:
    explicit PreviewPicture(QWidget* parent);

    void SetImage(const QImage& image);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_Image;
};

#endif // PREVIEWPICTURE_H
