#ifndef IMAGEPANE_H
#define IMAGEPANE_H

#include <TarkaCPP/Frame.h>

#include <QElapsedTimer>
#include <QImage>
#include <QWidget>

class FrameWorker;
class QTimer;

// The camera's live image, scaled to fit and keeping its aspect ratio. The
// camera's frames go to Handler(); a worker converts them off the GUI thread,
// and the pane counts the frames received and shown and the rate at which
// they are shown. On request each image shown comes with a smaller copy.
class ImagePane : public QWidget
{
    Q_OBJECT

public:
    explicit ImagePane(QWidget* parent = nullptr);
    ~ImagePane() override;

    // For Device::SetFrameHandler; valid while the pane exists.
    KST::TrkAPI::FrameHandler Handler() const;
    // Empties the pane and restarts the counts, for another camera; an image
    // already on its way is dropped.
    void Clear();
    // Size into which the copies of copyShown are scaled; none while empty.
    void SetCopySize(const QSize& size);

    quint64 FramesReceived() const;
    quint64 FramesShown() const { return m_Shown; }
    // Images shown per second over the last statistics period.
    double DisplayRate() const { return m_Rate; }
    QString StatisticsText() const;

    QSize sizeHint() const override;

signals:
    void frameShown(quint64 shown);
    // A copy of the image just shown, of a frame of frameSize pixels.
    void copyShown(const QImage& copy, const QSize& frameSize);
    void statisticsChanged(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private slots:
    void OnImageConverted(const QImage& image, const QImage& copy, const QSize& frameSize,
                          quint64 generation);
    void OnStatisticsTimeout();

private:
    FrameWorker* m_Worker;
    QImage m_Image;
    quint64 m_Shown = 0;
    quint64 m_ShownAtLastCount = 0;
    double m_Rate = 0.0;
    QElapsedTimer m_SinceLastCount;
    QTimer* m_StatisticsTimer;
};

#endif
