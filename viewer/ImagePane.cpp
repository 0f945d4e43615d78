#include "ImagePane.h"

#include "FrameConversion.h"
#include "FrameWorker.h"

#include <QPainter>
#include <QTimer>

namespace {
const int StatisticsPeriodMs = 500;
const QSize PreferredSize(640, 480);
} // namespace

ImagePane::ImagePane(QWidget* parent)
    : QWidget(parent), m_Worker(new FrameWorker(this)), m_StatisticsTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("imagePane"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(160, 120);
    connect(m_Worker, &FrameWorker::imageConverted, this, &ImagePane::OnImageConverted);
    connect(m_StatisticsTimer, &QTimer::timeout, this, &ImagePane::OnStatisticsTimeout);
    m_StatisticsTimer->start(StatisticsPeriodMs);
    m_SinceLastCount.start();
}

ImagePane::~ImagePane()
{
    // Its thread ends before anything it may still hand to the pane goes.
    delete m_Worker;
}

KST::TrkAPI::FrameHandler ImagePane::Handler() const
{
    FrameWorker* worker = m_Worker;
    return [worker](const KST::TrkAPI::FramePtr& frame) { worker->Offer(frame); };
}

void ImagePane::Clear()
{
    m_Worker->Reset();
    m_Image = QImage();
    m_Shown = 0;
    m_ShownAtLastCount = 0;
    m_Rate = 0.0;
    m_SinceLastCount.restart();
    emit statisticsChanged(StatisticsText());
    update();
}

void ImagePane::SetCopySize(const QSize& size)
{
    m_Worker->SetCopySize(size);
}

quint64 ImagePane::FramesReceived() const
{
    return m_Worker->FramesReceived();
}

QString ImagePane::StatisticsText() const
{
    return tr("Frames received: %1  shown: %2  display: %3 fps")
        .arg(FramesReceived())
        .arg(m_Shown)
        .arg(m_Rate, 0, 'f', 1);
}

QSize ImagePane::sizeHint() const
{
    return PreferredSize;
}

void ImagePane::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor background(32, 32, 32);
    if (m_Image.isNull()) {
        painter.fillRect(rect(), background);
        painter.setPen(Qt::lightGray);
        painter.drawText(rect(), Qt::AlignCenter, tr("No image"));
        return;
    }
    // Drawn 1:1 when the image was made for this size, as it nearly always
    // is; only the margins beside it are filled.
    QRect target(QPoint(), FitInto(m_Image.size(), size()));
    target.moveCenter(rect().center());
    painter.drawImage(target, m_Image);
    QRegion margins = QRegion(rect()).subtracted(target);
    for (const QRect& margin : margins) {
        painter.fillRect(margin, background);
    }
}

void ImagePane::resizeEvent(QResizeEvent*)
{
    m_Worker->SetTargetSize(size());
}

void ImagePane::OnImageConverted(const QImage& image, const QImage& copy, const QSize& frameSize,
                                 quint64 generation)
{
    m_Worker->TakeImage();
    // Made before the last Clear(): of a camera that is gone.
    if (generation != m_Worker->Generation()) {
        return;
    }
    m_Image = image;
    ++m_Shown;
    update();
    emit frameShown(m_Shown);
    if (!copy.isNull()) {
        emit copyShown(copy, frameSize);
    }
}

void ImagePane::OnStatisticsTimeout()
{
    const qint64 elapsed = m_SinceLastCount.restart();
    m_Rate = elapsed > 0 ? (m_Shown - m_ShownAtLastCount) * 1000.0 / elapsed : 0.0;
    m_ShownAtLastCount = m_Shown;
    emit statisticsChanged(StatisticsText());
}
