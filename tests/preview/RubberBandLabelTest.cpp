#include "rubberbandlabel.h"
#include "UserInput.h"

#include <QPointer>
#include <QRubberBand>
#include <QStringList>
#include <QTimer>

#include <gtest/gtest.h>

#include <climits>

namespace {

QRect Corners(int x1, int y1, int x2, int y2)
{
    return QRect(QPoint(x1, y1), QPoint(x2, y2));
}

// A shown label, given a region before its first show unless the region is
// null, that logs the signals it emits. By default one label pixel stands for
// one image pixel, and the band runs from 10 to 50 on both axes.
struct Preview
{
    Preview(int imageWidth = 300, int imageHeight = 150, int labelWidth = 300,
            int labelHeight = 300, const QRect& region = QRect(10, 10, 41, 41))
        : label(imageWidth, imageHeight, Qt::darkGreen)
    {
        auto record = [this](const char* name) {
            return [this, name](int t, int l, int w, int h) {
                log << QString("%1(%2,%3,%4,%5)").arg(name).arg(t).arg(l).arg(w).arg(h);
            };
        };
        QObject::connect(&label, &RubberBandLabel::SendGeometry, record("Send"));
        QObject::connect(&label, &RubberBandLabel::UpdateGeometry, record("Update"));
        QObject::connect(&label, &RubberBandLabel::GeometryChangeStarted,
                         [this] { log << "Started"; });
        QObject::connect(&label, &RubberBandLabel::clicked, [this] { log << "clicked"; });
        label.resize(labelWidth, labelHeight);
        if (!region.isNull())
            label.SetBandGeometry(region.top(), region.left(), region.width(), region.height());
        label.show();
        QCoreApplication::processEvents();
    }

    void Mouse(QEvent::Type type, int x, int y) { SendMouse(&label, type, QPoint(x, y)); }

    Qt::CursorShape CursorAt(int x, int y)
    {
        Mouse(QEvent::MouseMove, x, y);
        return label.cursor().shape();
    }

    QRect Band() const { return label.findChild<QRubberBand*>()->geometry(); }

    QString TakeLog()
    {
        const QString text = log.join(" ");
        log.clear();
        return text;
    }

    RubberBandLabel label;
    QStringList log;
};

} // namespace

TEST(RubberBandLabel, FitsThePictureAndMapsRegions)
{
    EXPECT_EQ(QSize(100, 100), RubberBandLabel(1000, 500, Qt::darkGreen).sizeHint());

    // The first show places the region with rounding.
    Preview narrow(1000, 500, 250, 250, QRect(10, 10, 100, 100));
    EXPECT_EQ(Corners(3, 3, 27, 27), narrow.Band());
    EXPECT_EQ(QSize(250, 125), narrow.label.sizeHint());
    // The mask keeps every pixel of the tinted picture, none is transparent.
    EXPECT_EQ(QRegion(0, 0, 1000, 500), narrow.label.mask());

    // The tint until a picture comes; then the picture over its area at the
    // band's scale (0.25), the tint around it, also after a resize.
    EXPECT_EQ(QSize(250, 125), narrow.label.pixmap()->size());
    EXPECT_EQ(185, qAlpha(narrow.label.pixmap()->toImage().pixel(249, 124)));
    const QRgb tinted = narrow.label.grab().toImage().pixel(249, 124);
    QImage picture(100, 50, QImage::Format_RGB32);
    picture.fill(Qt::white);
    narrow.label.SetPicture(picture, QRect(200, 100, 400, 200));
    narrow.label.resize(250, 260);
    const QImage shown = narrow.label.grab().toImage();
    EXPECT_EQ(picture, shown.copy(50, 25, 100, 50).convertToFormat(picture.format()));
    EXPECT_EQ(tinted, shown.pixel(49, 24));
    EXPECT_EQ(tinted, shown.pixel(150, 75));
}

TEST(RubberBandLabel, EstimatesOnResizeAndPlacesExactlyLater)
{
    Preview preview(1000, 500, 300, 300, QRect(100, 100, 333, 200));
    ASSERT_EQ(QRect(30, 30, 100, 60), preview.Band());

    preview.label.resize(330, 330);
    EXPECT_EQ(QRect(33, 33, 110, 66), preview.Band());
    // Events alone, well within the settle time, leave the estimate.
    QCoreApplication::processEvents();
    EXPECT_EQ(QRect(33, 33, 110, 66), preview.Band());
    RunFor(250);
    EXPECT_EQ(QRect(33, 33, 109, 66), preview.Band());

    // A large step takes the height for the picture's, cut at its bottom.
    preview.label.resize(440, 440);
    EXPECT_EQ(QRect(44, 44, 145, 187), preview.Band());
    RunFor(250);
    EXPECT_EQ(QRect(44, 44, 146, 88), preview.Band());

    // With no region given the band covers the picture, and keeps filling it.
    Preview whole(1000, 500, 300, 300, QRect());
    EXPECT_EQ(Corners(0, 0, 299, 148), whole.Band());
    whole.label.resize(330, 330);
    EXPECT_EQ(QRect(0, 0, 330, 165), whole.Band());
    RunFor(250);
    EXPECT_EQ(QRect(0, 0, 330, 165), whole.Band());
}

TEST(RubberBandLabel, HoverCursorsFollowTheZones)
{
    Preview preview;
    auto expect = [&](Qt::CursorShape shape, std::initializer_list<QPoint> points) {
        for (QPoint point : points)
            EXPECT_EQ(shape, preview.CursorAt(point.x(), point.y()))
                << point.x() << "," << point.y();
    };
    expect(Qt::ArrowCursor, {{9, 30}, {51, 30}, {30, 9}, {300, 30}, {30, 298}});
    expect(Qt::SizeHorCursor, {{10, 30}, {13, 30}, {46, 30}, {49, 30}, {47, 5}, {48, 48}});
    expect(Qt::SizeAllCursor, {{14, 30}, {45, 30}, {50, 30}, {30, 14}, {30, 50}});
    expect(Qt::SizeVerCursor, {{30, 10}, {30, 13}, {30, 46}, {30, 49}, {200, 12}});
    // The bottom corners lie on and below the band's last line.
    expect(Qt::SizeBDiagCursor, {{48, 11}, {11, 50}});
    expect(Qt::SizeFDiagCursor, {{11, 11}, {48, 50}, {48, 200}});
    // Beyond the guard the cursor stays as it was.
    expect(Qt::SizeFDiagCursor, {{301, 30}, {-1, 12}, {12, -1}, {12, 299}});
    EXPECT_EQ("", preview.TakeLog());
}

TEST(RubberBandLabel, DragFollowsTheZoneAndTheCursor)
{
    const struct
    {
        QPoint hover, press, move;
        QRect band;
        const char* region;
        QSize label = QSize(300, 300);
    } rows[] = {
        {{48, 50}, {48, 50}, {80, 250}, Corners(10, 10, 80, 150), "9,10,71,141"},
        {{48, 11}, {48, 11}, {60, 5}, Corners(10, 5, 60, 50), "5,10,51,46"},
        {{48, 30}, {48, 30}, {70, 90}, Corners(10, 10, 70, 50), "10,10,61,41"},
        {{11, 11}, {11, 11}, {5, 6}, Corners(5, 6, 50, 50), "6,5,46,45"},
        {{11, 60}, {11, 60}, {5, 70}, Corners(5, 10, 50, 70), "10,5,46,61"},
        {{30, 11}, {30, 11}, {30, 0}, Corners(10, 0, 50, 50), "0,10,41,51"},
        // A stale arrow drags the bottom right corner, and nothing on the left.
        {{100, 100}, {48, 30}, {70, 60}, Corners(10, 10, 70, 60), "10,10,61,51"},
        {{100, 100}, {11, 30}, {5, 60}, Corners(10, 10, 50, 50), "10,10,41,41"},
        // The bottom edge stops one past the picture.
        {{30, 48}, {30, 48}, {30, 250}, Corners(10, 10, 50, 150), "9,10,41,141"},
        // The left edge past the right one: -19 label pixels, plus a half,
        // truncated.
        {{11, 30}, {11, 30}, {70, 30}, Corners(70, 10, 50, 50), "10,70,-18,41"},
        // The right edge stops at the picture's end in a wider label.
        {{48, 30}, {48, 30}, {380, 30}, Corners(10, 10, 300, 50), "10,9,291,41", {400, 150}},
    };
    for (const auto& row : rows) {
        Preview preview(300, 150, row.label.width(), row.label.height());
        preview.CursorAt(row.hover.x(), row.hover.y());
        const Qt::CursorShape shape = preview.label.cursor().shape();
        preview.Mouse(QEvent::MouseButtonPress, row.press.x(), row.press.y());
        preview.Mouse(QEvent::MouseMove, row.move.x(), row.move.y());
        EXPECT_EQ(row.band, preview.Band()) << row.region;
        EXPECT_EQ(shape, preview.label.cursor().shape());
        preview.Mouse(QEvent::MouseButtonRelease, row.move.x(), row.move.y());
        EXPECT_EQ(QString("Started clicked Update(%1) Send(%1)").arg(row.region),
                  preview.TakeLog());
    }
}

TEST(RubberBandLabel, MoveWaitsOutsideTheGuardAndReportsTheStoredSize)
{
    Preview preview;
    preview.Mouse(QEvent::MouseButtonPress, 30, 30);
    preview.TakeLog();
    for (QPoint outside : {QPoint(40, 299), QPoint(301, 40), QPoint(-1, 40), QPoint(40, -1)})
        preview.Mouse(QEvent::MouseMove, outside.x(), outside.y());
    EXPECT_EQ(Corners(10, 10, 50, 50), preview.Band());
    EXPECT_EQ("", preview.TakeLog());
    preview.Mouse(QEvent::MouseMove, 40, 298);
    EXPECT_EQ(QRect(20, 109, 41, 41), preview.Band());
    preview.Mouse(QEvent::MouseMove, 300, 40);
    EXPECT_EQ(QRect(259, 20, 41, 41), preview.Band());
    EXPECT_EQ("Update(109,20,41,41) Update(20,259,41,41)", preview.TakeLog());

    // A band wider than the picture keeps to its left end.
    preview.Mouse(QEvent::MouseButtonRelease, 300, 40);
    preview.label.SetBandGeometry(10, 10, 400, 100);
    preview.Mouse(QEvent::MouseButtonPress, 100, 30);
    preview.Mouse(QEvent::MouseMove, 150, 40);
    EXPECT_EQ(QRect(0, 20, 400, 100), preview.Band());
    EXPECT_EQ("Send(20,259,41,41) Started clicked Update(20,0,400,100)", preview.TakeLog());

    // 105 image pixels are 31 label pixels, which would map back to 103.
    Preview scaled(1000, 500, 300, 300);
    scaled.label.SetBandGeometry(10, 10, 105, 105);
    scaled.Mouse(QEvent::MouseButtonPress, 10, 10);
    scaled.Mouse(QEvent::MouseMove, 58, 37);
    EXPECT_EQ("Started clicked Update(100,170,105,105)", scaled.TakeLog());
    bool draggingAtSend = true;
    QObject::connect(&scaled.label, &RubberBandLabel::SendGeometry,
                     [&] { draggingAtSend = scaled.label.IsDragging(); });
    scaled.Mouse(QEvent::MouseButtonRelease, 58, 37);
    EXPECT_FALSE(draggingAtSend);
    // A click beside the band drags nothing and sends its place.
    scaled.Mouse(QEvent::MouseButtonPress, 200, 100);
    scaled.Mouse(QEvent::MouseButtonRelease, 200, 100);
    EXPECT_EQ("Send(100,170,105,105) clicked Send(100,170,105,105)", scaled.TakeLog());

    scaled.label.SetBandGeometry(10, 10, 105, 105);
    scaled.Mouse(QEvent::MouseButtonPress, 17, 32);
    scaled.TakeLog();
    scaled.Mouse(QEvent::MouseMove, 17, 40);
    EXPECT_EQ("Update(10,10,103,127)", scaled.TakeLog());
}

TEST(RubberBandLabel, HoverSurvivesWhatRunsWhileItWaits)
{
    // A press that arrives while the hover waits starts the drag at once.
    Preview pressed;
    QCoreApplication::postEvent(&pressed.label,
                                new QMouseEvent(QEvent::MouseButtonPress, QPointF(30, 30),
                                                Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    pressed.Mouse(QEvent::MouseMove, 100, 100);
    EXPECT_EQ("Started clicked Update(10,10,41,41)", pressed.TakeLog());

    // The label deleted by a slot that runs while the hover waits.
    Preview* preview = new Preview;
    QPointer<RubberBandLabel> label(&preview->label);
    QObject context;
    QTimer::singleShot(0, &context, [&] { delete preview; });
    QMouseEvent hover(QEvent::MouseMove, QPointF(30, 30), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(label, &hover);
    EXPECT_TRUE(label.isNull());
}

TEST(RubberBandLabel, ExtremeAndEmptyGeometryStaysDefined)
{
    // A region of extreme numbers keeps its corners to widget coordinates and
    // reports its stored size as it is.
    Preview wide(1000, 500, 300, 300);
    wide.label.SetBandGeometry(INT_MIN, INT_MAX, INT_MAX, INT_MIN);
    EXPECT_EQ(Corners(QWIDGETSIZE_MAX, -QWIDGETSIZE_MAX, QWIDGETSIZE_MAX, -QWIDGETSIZE_MAX),
              wide.Band());
    wide.Mouse(QEvent::MouseButtonRelease, 5, 5);
    EXPECT_EQ("Send(0,0,2147483647,-2147483648)", wide.TakeLog());

    // A reference size of nothing has no scale: placing the band does
    // nothing, and the numbers come out as 0.
    Preview empty(0, 0, 300, 300, QRect());
    empty.label.resize(200, 200);
    RunFor(250);
    const QRect estimated = empty.Band();
    empty.label.SetBandGeometry(1, 1, 1, 1);
    EXPECT_EQ(estimated, empty.Band());
    empty.Mouse(QEvent::MouseButtonRelease, 5, 5);
    EXPECT_EQ("Send(0,0,1,1)", empty.TakeLog());
}

TEST(RubberBandLabel, ResizedWhileHiddenShowsThePlacedBandAtOnce)
{
    Preview preview;
    preview.label.hide();
    preview.label.resize(600, 600);
    preview.label.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(Corners(20, 20, 101, 101), preview.Band());
}
