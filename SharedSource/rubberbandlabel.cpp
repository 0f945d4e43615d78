#include "rubberbandlabel.h"

#include "PreviewPicture.h"
#include "Saturating.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPalette>
#include <QPointer>
#include <QResizeEvent>
#include <QRubberBand>
#include <QStyle>
#include <QTimer>

#include <cstdlib>

namespace {

// Milliseconds after a resize until the band is placed exactly.
const int ResizeSettleDelay = 200;

// The hit zones are four pixels deep and look at one coordinate only, so each
// runs across the whole label. The near zones (left, top) include the band's
// outermost line; the far zones (right, bottom) stop one short of it.
bool InNearZone(int position, int firstLine)
{
    return firstLine <= position && position <= firstLine + 3;
}

bool InFarZone(int position, int lastLine)
{
    return lastLine - 4 <= position && position <= lastLine - 1;
}

QRect FromCorners(int x1, int y1, int x2, int y2)
{
    return QRect(QPoint(x1, y1), QPoint(x2, y2));
}

// A band from its corner and size. A region of extreme camera values would
// put corners past what a widget can hold, and past what QRect's own sums
// can hold; each corner is limited to the range of widget coordinates.
QRect BandRect(qint64 x1, qint64 y1, qint64 width, qint64 height)
{
    auto limit = [](qint64 coordinate) {
        return int(qBound(qint64(-QWIDGETSIZE_MAX), coordinate, qint64(QWIDGETSIZE_MAX)));
    };
    return FromCorners(limit(x1), limit(y1), limit(x1 + width - 1), limit(y1 + height - 1));
}

// (int)(value + 0.5), as the preview rounds, limited to the range of int.
int Rounded(double value)
{
    return SaturatingCast<int>(value + 0.5);
}

} // namespace

RubberBandLabel::RubberBandLabel(int imageWidth, int imageHeight, const QColor& color,
                                 QWidget* parent)
    : QLabel(parent), m_Color(color), m_ImageWidth(imageWidth), m_ImageHeight(imageHeight),
      m_Width(imageWidth), m_Height(imageHeight)
{
    // Until a region is given the band stands for the whole image; the
    // negative top makes the first show cover the picture exactly.
    setMouseTracking(true);
    setMinimumWidth(100);
    setMinimumHeight(100);

    m_Pixmap = QPixmap(imageWidth, imageHeight);
    QColor tint = color;
    FillPixmap(tint);
    setMask(MaskOfTransparentPixels(tint));
    // Scaled to its own size the picture comes back shared, not copied.
    setPixmap(
        m_Pixmap.scaled(imageWidth, imageHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    setAlignment(Qt::AlignTop);
}

RubberBandLabel::~RubberBandLabel()
{
    delete m_RubberBand;
}

void RubberBandLabel::SetBandGeometry(int top, int left, int width, int height)
{
    m_Top = top;
    m_Left = left;
    m_Width = width;
    m_Height = height;
    PlaceStoredRegion();
}

bool RubberBandLabel::IsDragging() const
{
    return m_Moving || IsResizing();
}

bool RubberBandLabel::IsResizing() const
{
    return m_ResizingLeft || m_ResizingRight || m_ResizingTop || m_ResizingBottom;
}

QSize RubberBandLabel::sizeHint() const
{
    if (!m_RubberBand) {
        return QSize(100, 100);
    }
    return QSize(width(), heightForWidth(width()));
}

int RubberBandLabel::heightForWidth(int w) const
{
    return Rounded(Divide(double(m_ImageHeight) * w, m_ImageWidth));
}

int RubberBandLabel::GetFittedWidth() const
{
    return qMin(width(), Rounded(Divide(double(height()) * m_ImageWidth, m_ImageHeight)));
}

int RubberBandLabel::GetFittedHeight() const
{
    return qMin(height(), heightForWidth(width()));
}

void RubberBandLabel::mousePressEvent(QMouseEvent* event)
{
    // Mouse events reach the label only once it is shown, and the first show
    // makes the band.
    Q_ASSERT(m_RubberBand);
    const QRect band = m_RubberBand->geometry();
    const int x = event->x();
    const int y = event->y();

    if (band.contains(x, y)) {
        m_Moving = true;
        m_DragOffsetX = x - band.left();
        m_DragOffsetY = y - band.top();
    }
    // One edge at most: which corner is meant is read from the cursor that
    // the hover left on the label.
    if (InFarZone(x, band.right())) {
        m_ResizingRight = true;
    } else if (InNearZone(x, band.left())) {
        m_ResizingLeft = true;
    } else if (InNearZone(y, band.top())) {
        m_ResizingTop = true;
    } else if (InFarZone(y, band.bottom())) {
        m_ResizingBottom = true;
    }

    if (IsDragging()) {
        emit GeometryChangeStarted();
    }
    emit clicked();
}

void RubberBandLabel::mouseReleaseEvent(QMouseEvent* event)
{
    Q_ASSERT(m_RubberBand);
    int top = 0;
    int left = 0;
    int width = 0;
    int height = 0;
    BandInImagePixels(top, left, width, height);
    // Cleared before the signal, so that its receivers find no drag running.
    m_Moving = false;
    m_ResizingLeft = false;
    m_ResizingRight = false;
    m_ResizingTop = false;
    m_ResizingBottom = false;
    emit SendGeometry(top, left, width, height);
}

void RubberBandLabel::mouseMoveEvent(QMouseEvent* event)
{
    const int x = event->x();
    const int y = event->y();
    // x may reach one past the last column, y only the row before the last.
    if (x < 0 || y < 0 || x > width() || y >= height() - 1 || !m_RubberBand) {
        return;
    }

    if (IsDragging()) {
        m_RubberBand->setGeometry(DraggedBand(x, y));
    } else {
        SetCursorForPosition(x, y);
        // What runs in here may delete this label, and may deliver a press.
        QPointer<RubberBandLabel> guard(this);
        QCoreApplication::processEvents();
        if (!guard || !IsDragging()) {
            return;
        }
    }
    int top = 0;
    int left = 0;
    int width = 0;
    int height = 0;
    BandInImagePixels(top, left, width, height);
    emit UpdateGeometry(top, left, width, height);
}

void RubberBandLabel::SetPicture(const QImage& picture, const QRect& area)
{
    if (!m_Picture) {
        m_Picture = new PreviewPicture(this);
        m_Picture->lower();
    }
    m_PictureArea = area;
    m_Picture->SetImage(picture);
    PlacePicture();
}

// The picture's area at the band's own scale, within the tinted picture where
// QLabel draws it (as QStyle::drawItemPixmap places it), so that band and
// picture agree; what the area leaves of the tinted picture stays tinted.
void RubberBandLabel::PlacePicture()
{
    const QRect contents =
        contentsRect().marginsRemoved(QMargins(margin(), margin(), margin(), margin()));
    const QPixmap tinted = pixmap(Qt::ReturnByValue);
    const QRect shown = QStyle::alignedRect(QGuiApplication::layoutDirection(),
                                            QStyle::visualAlignment(layoutDirection(), alignment()),
                                            tinted.size() / tinted.devicePixelRatio(), contents);
    const double scale = ScreenScale();
    const QRectF area(shown.x() + m_PictureArea.x() * scale, shown.y() + m_PictureArea.y() * scale,
                      m_PictureArea.width() * scale, m_PictureArea.height() * scale);
    m_Picture->setGeometry(area.toRect() & shown & contents);
}

void RubberBandLabel::resizeEvent(QResizeEvent* event)
{
    setPixmap(m_Pixmap.scaled(size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
    if (m_Picture) {
        PlacePicture();
    }
    // A resize while hidden reaches the next show with no old size to scale
    // from; the stored region places the band at once then.
    if (m_RubberBand && event->oldSize().isValid()) {
        m_RubberBand->setGeometry(EstimatedBand(event->size(), event->oldSize()));
    } else {
        PlaceStoredRegion();
    }
    // The estimate drifts; the exact placement waits until the size settles.
    QTimer::singleShot(ResizeSettleDelay, this, SLOT(UpdateGeometryAfterResize()));
}

void RubberBandLabel::showEvent(QShowEvent* event)
{
    if (m_RubberBand) {
        return;
    }

    m_RubberBand = new QRubberBand(QRubberBand::Rectangle, this);
    if (m_Top < 0) {
        m_RubberBand->setGeometry(BandRect(0, 0, width(), heightForWidth(width() - 2)));
    } else {
        const double scale = ScreenScale();
        m_RubberBand->setGeometry(BandRect(Rounded(scale * m_Left), Rounded(scale * m_Top),
                                           Rounded(scale * m_Width), Rounded(scale * m_Height)));
    }

    QColor bandColor = m_Color;
    bandColor.setAlpha(80);
    QPalette palette;
    palette.setBrush(QPalette::All, QPalette::Highlight, QBrush(bandColor, Qt::SolidPattern));
    m_RubberBand->setPalette(palette);
    m_RubberBand->setVisible(true);
}

void RubberBandLabel::UpdateGeometryAfterResize()
{
    PlaceStoredRegion();
}

void RubberBandLabel::FillPixmap(QColor& color)
{
    int hue = 0;
    int saturation = 0;
    int lightness = 0;
    color.getHsl(&hue, &saturation, &lightness);
    color.setHsl(hue, 65, lightness, 185);
    m_Pixmap.fill(color);
}

// The mask keeps the picture's pixels that are not transparent. The picture
// is one colour throughout, so that is all of it or nothing; reading it pixel
// by pixel would walk the whole full-size picture.
QRegion RubberBandLabel::MaskOfTransparentPixels(const QColor& fill) const
{
    return fill.alpha() == 0 ? QRegion() : QRegion(m_Pixmap.rect());
}

double RubberBandLabel::ScreenScale() const
{
    return Divide(GetFittedWidth(), m_ImageWidth);
}

void RubberBandLabel::PlaceStoredRegion()
{
    if (!m_RubberBand) {
        return;
    }
    // Also a scale that is no number at all leaves the band where it is.
    const double scale = ScreenScale();
    if (!(scale >= 1e-05)) {
        return;
    }
    m_RubberBand->setGeometry(
        BandRect(SaturatingCast<int>(m_Left * scale), SaturatingCast<int>(m_Top * scale),
                 SaturatingCast<int>(m_Width * scale), SaturatingCast<int>(m_Height * scale)));
}

QRect RubberBandLabel::EstimatedBand(const QSize& newSize, const QSize& oldSize) const
{
    const QRect band = m_RubberBand->geometry();
    const int dW = std::abs(newSize.width() - oldSize.width());
    const int dH = std::abs(newSize.height() - oldSize.height());
    const int fitW = GetFittedWidth();
    const int fitH = GetFittedHeight();

    // A band that fills the picture keeps filling it while the size changes;
    // the tolerances allow for the steps of a border being dragged.
    const bool fullHeight = fitH <= band.height() + dH + dW && band.height() - dH - dW <= fitH;
    const bool fullWidth = fitW <= band.width() + 2 * dW + dH && band.width() - 2 * dW - dH <= fitW;

    double ratioX;
    double ratioY;
    if (newSize.width() <= fitW) {
        ratioY = Divide(oldSize.width(), newSize.width());
        ratioX = ratioY;
    } else {
        ratioY = Divide(oldSize.height(), newSize.height());
        ratioX = newSize.height() > fitH ? 1.0 : ratioY;
    }

    double sizeH = fullHeight ? fitH : Divide(band.height(), ratioY) + 0.5;
    double sizeW = fullWidth ? fitW : Divide(band.width(), ratioX) + 0.5;
    if (sizeW + band.left() >= fitW) {
        sizeW = double(fitW) - band.left();
    }
    if (sizeH + band.top() >= fitH) {
        sizeH = double(fitH) - band.top();
    }

    return BandRect(Rounded(Divide(band.left(), ratioX)), Rounded(Divide(band.top(), ratioY)),
                    SaturatingCast<int>(sizeW), SaturatingCast<int>(sizeH));
}

QRect RubberBandLabel::DraggedBand(int x, int y) const
{
    const QRect band = m_RubberBand->geometry();

    if (IsResizing()) {
        int x1 = band.left();
        int y1 = band.top();
        int x2 = band.right();
        int y2 = band.bottom();
        const Qt::CursorShape shape = cursor().shape();
        const int pictureBottom = heightForWidth(width());

        if (m_ResizingRight) {
            x2 = qMin(x, GetFittedWidth());
            if (shape == Qt::SizeBDiagCursor) {
                y1 = y;
            } else if (shape != Qt::SizeHorCursor) {
                y2 = qMin(y, pictureBottom); // also a press that came with a stale cursor
            }
        } else if (m_ResizingLeft) {
            // Only a cursor the hover set on the left edge says which corner
            // is meant; any other leaves the band as it is.
            switch (shape) {
            case Qt::SizeFDiagCursor:
                x1 = x;
                y1 = y;
                break;
            case Qt::SizeHorCursor:
                x1 = x;
                break;
            case Qt::SizeBDiagCursor:
                x1 = x;
                y2 = y;
                break;
            default:
                break;
            }
        } else if (m_ResizingTop) {
            y1 = y;
        } else {
            y2 = qMin(y, pictureBottom);
        }
        return FromCorners(x1, y1, x2, y2);
    }

    // A move keeps the size and stays on the picture; the top left corner
    // wins where the band is larger than the picture.
    const int left = qMax(qMin(x - m_DragOffsetX, GetFittedWidth() - band.width()), 0);
    const int top = qMax(qMin(y - m_DragOffsetY, GetFittedHeight() - band.height()), 0);
    return QRect(left, top, band.width(), band.height());
}

void RubberBandLabel::SetCursorForPosition(int x, int y)
{
    const QRect band = m_RubberBand->geometry();
    const bool topZone = InNearZone(y, band.top());
    const bool below = y >= band.bottom();
    const bool rightZone = InFarZone(x, band.right());

    Qt::CursorShape shape = Qt::ArrowCursor;
    if (rightZone || InNearZone(x, band.left())) {
        // Top right and bottom left lie on one diagonal, top left and bottom
        // right on the other; the top corners win where both rows match.
        if (topZone || below) {
            shape = topZone == rightZone ? Qt::SizeBDiagCursor : Qt::SizeFDiagCursor;
        } else {
            shape = Qt::SizeHorCursor;
        }
    } else if (topZone || InFarZone(y, band.bottom())) {
        shape = Qt::SizeVerCursor;
    } else if (band.contains(x, y)) {
        shape = Qt::SizeAllCursor;
    }
    setCursor(shape);
}

void RubberBandLabel::BandInImagePixels(int& top, int& left, int& width, int& height) const
{
    const QRect band = m_RubberBand->geometry();
    const double factor = Divide(m_ImageWidth, GetFittedWidth());
    top = Rounded(factor * band.top());
    left = Rounded(factor * band.left());

    // A pure move reports the size as it was last set, free of rounding.
    width = m_Width;
    height = m_Height;
    if (IsResizing()) {
        width = Rounded(factor * band.width());
        height = Rounded(factor * band.height());
    }

    // In 64 bits, since the stored size may be any int.
    top = int(qMax(qMin(qint64(top), qint64(m_ImageHeight) - height), qint64(0)));
    left = int(qMax(qMin(qint64(left), qint64(m_ImageWidth) - width), qint64(0)));
}
