#include "rubberbandlabel.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QMouseEvent>
#include <QPointer>
#include <QRubberBand>
#include <QStringList>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

QRect Corners(int x1, int y1, int x2, int y2)
{
    return QRect(QPoint(x1, y1), QPoint(x2, y2));
}

void SendMouse(QWidget* label, QEvent::Type type, int x, int y)
{
    const Qt::MouseButtons buttons = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, QPointF(x, y), Qt::LeftButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(label, &event);
}

void Hover(QWidget* label, int x, int y)
{
    SendMouse(label, QEvent::MouseMove, x, y);
}

void Press(QWidget* label, int x, int y)
{
    SendMouse(label, QEvent::MouseButtonPress, x, y);
}

void Release(QWidget* label, int x, int y)
{
    SendMouse(label, QEvent::MouseButtonRelease, x, y);
}

void Wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// A label of the given reference size and screen size, shown, optionally
// with a region given before the first show; records the signals it emits.
class Preview
{
public:
    Preview(int imageWidth, int imageHeight, int labelWidth, int labelHeight)
        : label(imageWidth, imageHeight, Qt::darkGreen)
    {
        label.resize(labelWidth, labelHeight);
        QObject::connect(&label, &RubberBandLabel::SendGeometry,
                         [this](int t, int l, int w, int h) { Record("Send", t, l, w, h); });
        QObject::connect(&label, &RubberBandLabel::UpdateGeometry,
                         [this](int t, int l, int w, int h) { Record("Update", t, l, w, h); });
        QObject::connect(&label, &RubberBandLabel::GeometryChangeStarted,
                         [this] { log << "Started"; });
        QObject::connect(&label, &RubberBandLabel::clicked, [this] { log << "clicked"; });
    }

    void Show()
    {
        label.show();
        QCoreApplication::processEvents();
    }

    QRect Band() const
    {
        QRubberBand* band = label.findChild<QRubberBand*>();
        return band ? band->geometry() : QRect();
    }

    Qt::CursorShape CursorAt(int x, int y)
    {
        Hover(&label, x, y);
        return label.cursor().shape();
    }

    QString TakeLog()
    {
        const QString text = log.join(" ");
        log.clear();
        return text;
    }

    RubberBandLabel label;
    QStringList log;

private:
    void Record(const char* name, int t, int l, int w, int h)
    {
        log << QString("%1(%2,%3,%4,%5)").arg(name).arg(t).arg(l).arg(w).arg(h);
    }
};

// Reference 300 by 150 in a label of 300 by 300: one label pixel per image
// pixel, and a band from x 10 to 50 and y 10 to 50.
class UnitPreview : public Preview
{
public:
    UnitPreview() : Preview(300, 150, 300, 300)
    {
        label.SetBandGeometry(10, 10, 41, 41);
        Show();
    }
};

} // namespace

TEST(RubberBandLabel, FitsThePictureAndMapsRegions)
{
    Preview narrow(1000, 500, 250, 250);
    EXPECT_EQ(QSize(100, 100), narrow.label.sizeHint());
    narrow.label.SetBandGeometry(10, 10, 100, 100);
    EXPECT_TRUE(narrow.Band().isNull());
    narrow.Show();
    // The first show rounds...
    EXPECT_EQ(Corners(3, 3, 27, 27), narrow.Band());
    // ...every later placement truncates.
    narrow.label.SetBandGeometry(10, 10, 100, 100);
    EXPECT_EQ(Corners(2, 2, 26, 26), narrow.Band());
    EXPECT_EQ(QSize(250, 125), narrow.label.sizeHint());

    Preview square(1000, 500, 300, 300);
    square.label.SetBandGeometry(10, 10, 100, 100);
    square.Show();
    EXPECT_EQ(300, square.label.GetFittedWidth());
    EXPECT_EQ(150, square.label.GetFittedHeight());
    EXPECT_EQ(150, square.label.heightForWidth(300));
    EXPECT_EQ(Corners(3, 3, 32, 32), square.Band());
    square.label.SetBandGeometry(10, 10, 100, 100);
    EXPECT_EQ(Corners(3, 3, 32, 32), square.Band());

    // With no region given, the band takes the whole picture.
    Preview whole(1000, 500, 300, 300);
    whole.Show();
    EXPECT_EQ(Corners(0, 0, 299, 148), whole.Band());

    // A label wider than its picture is fitted by its height.
    Preview wide(300, 150, 400, 150);
    EXPECT_EQ(300, wide.label.GetFittedWidth());
    EXPECT_EQ(150, wide.label.GetFittedHeight());
}

TEST(RubberBandLabel, EstimatesOnResizeAndPlacesExactlyLater)
{
    Preview unshown(1000, 500, 300, 300);
    unshown.label.resize(400, 400);
    Wait(250);
    EXPECT_TRUE(unshown.Band().isNull());

    Preview preview(1000, 500, 300, 300);
    preview.label.SetBandGeometry(100, 100, 333, 200);
    preview.Show();
    ASSERT_EQ(QRect(30, 30, 100, 60), preview.Band());

    // In proportion at first, from the stored region once the size settles.
    preview.label.resize(330, 330);
    ASSERT_EQ(QSize(330, 330), preview.label.size());
    EXPECT_EQ(QRect(33, 33, 110, 66), preview.Band());
    Wait(100);
    EXPECT_EQ(QRect(33, 33, 110, 66), preview.Band());
    Wait(200);
    EXPECT_EQ(QRect(33, 33, 109, 66), preview.Band());

    // A large step counts as filling the picture's height within its
    // tolerance, cut at the picture's bottom.
    preview.label.resize(440, 440);
    EXPECT_EQ(QRect(44, 44, 145, 187), preview.Band());
    Wait(250);
    EXPECT_EQ(QRect(44, 44, 146, 88), preview.Band());

    // A band that fills the picture keeps filling it, also once settled.
    Preview whole(1000, 500, 300, 300);
    whole.Show();
    whole.label.resize(330, 330);
    EXPECT_EQ(QRect(0, 0, 330, 165), whole.Band());
    Wait(250);
    EXPECT_EQ(QRect(0, 0, 330, 165), whole.Band());
    EXPECT_EQ("", preview.TakeLog() + whole.TakeLog());
}

TEST(RubberBandLabel, HoverCursorsFollowTheZones)
{
    UnitPreview preview;
    ASSERT_EQ(Corners(10, 10, 50, 50), preview.Band());

    // Columns, in the band's middle rows.
    EXPECT_EQ(Qt::ArrowCursor, preview.CursorAt(9, 30));
    for (int x = 10; x <= 13; ++x)
        EXPECT_EQ(Qt::SizeHorCursor, preview.CursorAt(x, 30)) << x;
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(14, 30));
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(45, 30));
    for (int x = 46; x <= 49; ++x)
        EXPECT_EQ(Qt::SizeHorCursor, preview.CursorAt(x, 30)) << x;
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(50, 30));
    EXPECT_EQ(Qt::ArrowCursor, preview.CursorAt(51, 30));

    // Rows, in the band's middle columns.
    EXPECT_EQ(Qt::ArrowCursor, preview.CursorAt(30, 9));
    EXPECT_EQ(Qt::SizeVerCursor, preview.CursorAt(30, 10));
    EXPECT_EQ(Qt::SizeVerCursor, preview.CursorAt(30, 13));
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(30, 14));
    EXPECT_EQ(Qt::SizeVerCursor, preview.CursorAt(30, 46));
    EXPECT_EQ(Qt::SizeVerCursor, preview.CursorAt(30, 49));
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(30, 50));

    // Corners; the bottom ones lie on and below the last line.
    EXPECT_EQ(Qt::SizeBDiagCursor, preview.CursorAt(48, 11));
    EXPECT_EQ(Qt::SizeFDiagCursor, preview.CursorAt(48, 50));
    EXPECT_EQ(Qt::SizeFDiagCursor, preview.CursorAt(48, 200));
    EXPECT_EQ(Qt::SizeFDiagCursor, preview.CursorAt(11, 11));
    EXPECT_EQ(Qt::SizeBDiagCursor, preview.CursorAt(11, 50));
    EXPECT_EQ(Qt::SizeBDiagCursor, preview.CursorAt(11, 200));
    EXPECT_EQ(Qt::SizeHorCursor, preview.CursorAt(11, 49));

    // The zones run across the whole label.
    EXPECT_EQ(Qt::SizeHorCursor, preview.CursorAt(47, 5));
    EXPECT_EQ(Qt::SizeVerCursor, preview.CursorAt(200, 12));

    // Beyond the guard nothing changes: x may be one past the last column,
    // y must stay before the last row.
    EXPECT_EQ(Qt::ArrowCursor, preview.CursorAt(300, 30));
    EXPECT_EQ(Qt::ArrowCursor, preview.CursorAt(30, 298));
    preview.CursorAt(30, 30);
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(301, 30));
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(-1, 12));
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(12, -1));
    EXPECT_EQ(Qt::SizeAllCursor, preview.CursorAt(12, 299));
    EXPECT_EQ("", preview.TakeLog());
}

TEST(RubberBandLabel, CornerDragIsChosenByTheCursor)
{
    UnitPreview preview;

    // After a hover on the bottom right corner.
    preview.CursorAt(48, 50);
    Press(&preview.label, 48, 50);
    EXPECT_TRUE(preview.label.IsDragging());
    EXPECT_EQ("Started clicked", preview.TakeLog());
    Hover(&preview.label, 80, 70);
    EXPECT_EQ(Corners(10, 10, 80, 70), preview.Band());
    EXPECT_EQ("Update(10,10,71,61)", preview.TakeLog());
    Release(&preview.label, 80, 70);
    EXPECT_FALSE(preview.label.IsDragging());
    EXPECT_EQ("Send(10,10,71,61)", preview.TakeLog());

    // The top right corner, and the cursor stays until the next move.
    preview.label.SetBandGeometry(10, 10, 41, 41);
    preview.CursorAt(48, 11);
    Press(&preview.label, 48, 11);
    Hover(&preview.label, 60, 5);
    EXPECT_EQ(Corners(10, 5, 60, 50), preview.Band());
    EXPECT_EQ(Qt::SizeBDiagCursor, preview.label.cursor().shape());
    Release(&preview.label, 60, 5);

    // The right edge alone.
    preview.label.SetBandGeometry(10, 10, 41, 41);
    preview.CursorAt(48, 30);
    Press(&preview.label, 48, 30);
    Hover(&preview.label, 70, 90);
    EXPECT_EQ(Corners(10, 10, 70, 50), preview.Band());
    Release(&preview.label, 70, 90);

    // The left edge's corners.
    preview.label.SetBandGeometry(10, 10, 41, 41);
    preview.CursorAt(11, 11);
    Press(&preview.label, 11, 11);
    Hover(&preview.label, 5, 6);
    EXPECT_EQ(Corners(5, 6, 50, 50), preview.Band());
    Release(&preview.label, 5, 6);

    preview.label.SetBandGeometry(10, 10, 41, 41);
    preview.CursorAt(11, 60);
    Press(&preview.label, 11, 60);
    Hover(&preview.label, 5, 70);
    EXPECT_EQ(Corners(5, 10, 50, 70), preview.Band());
    Release(&preview.label, 5, 70);
}

TEST(RubberBandLabel, StaleArrowCursorDragsOnlyOnTheRight)
{
    UnitPreview preview;

    preview.CursorAt(100, 100);
    Press(&preview.label, 48, 30);
    Hover(&preview.label, 70, 60);
    EXPECT_EQ(Corners(10, 10, 70, 60), preview.Band());
    Release(&preview.label, 70, 60);

    preview.label.SetBandGeometry(10, 10, 41, 41);
    preview.CursorAt(100, 100);
    Press(&preview.label, 11, 30);
    EXPECT_TRUE(preview.label.IsDragging());
    preview.TakeLog();
    Hover(&preview.label, 5, 60);
    EXPECT_EQ(Corners(10, 10, 50, 50), preview.Band());
    EXPECT_EQ("Update(10,10,41,41)", preview.TakeLog());
}

TEST(RubberBandLabel, DragsStopAtThePicture)
{
    // A move stays on the picture.
    UnitPreview moving;
    Press(&moving.label, 30, 30);
    Hover(&moving.label, 295, 140);
    EXPECT_EQ(QRect(259, 109, 41, 41), moving.Band());
    Hover(&moving.label, 0, 0);
    EXPECT_EQ(QRect(0, 0, 41, 41), moving.Band());

    // The right edge stops at the picture's end in a label wider than it.
    Preview wide(300, 150, 400, 150);
    wide.label.SetBandGeometry(10, 10, 41, 41);
    wide.Show();
    wide.CursorAt(48, 30);
    Press(&wide.label, 48, 30);
    wide.TakeLog();
    Hover(&wide.label, 380, 30);
    EXPECT_EQ(Corners(10, 10, 300, 50), wide.Band());
    // The left offset gives way so that offset plus width fit the image.
    EXPECT_EQ("Update(10,9,291,41)", wide.TakeLog());

    // The bottom edge stops one past the picture's last row.
    UnitPreview bottom;
    Press(&bottom.label, 30, 48);
    bottom.TakeLog();
    Hover(&bottom.label, 30, 250);
    EXPECT_EQ(Corners(10, 10, 50, 150), bottom.Band());
    EXPECT_EQ("Update(9,10,41,141)", bottom.TakeLog());

    // The top and left edges are limited by the guard alone.
    UnitPreview top;
    Press(&top.label, 30, 11);
    Hover(&top.label, 30, 0);
    EXPECT_EQ(Corners(10, 0, 50, 50), top.Band());
}

TEST(RubberBandLabel, LeftEdgePastTheRightEdgeTurnsTheBandInsideOut)
{
    UnitPreview preview;
    preview.CursorAt(11, 30);
    Press(&preview.label, 11, 30);
    preview.TakeLog();
    Hover(&preview.label, 70, 30);
    EXPECT_EQ(Corners(70, 10, 50, 50), preview.Band());
    // -19 label pixels, rounded by adding a half and truncating.
    EXPECT_EQ("Update(10,70,-18,41)", preview.TakeLog());
    Release(&preview.label, 70, 30);
    EXPECT_EQ("Send(10,70,-18,41)", preview.TakeLog());

    // A negative size given to the label is mapped as it stands.
    preview.label.SetBandGeometry(10, 60, -20, 41);
    EXPECT_EQ(-20, preview.Band().width());
}

TEST(RubberBandLabel, MoveStopsOutsideTheGuardAndCatchesUp)
{
    UnitPreview preview;
    Press(&preview.label, 30, 30);
    preview.TakeLog();

    Hover(&preview.label, 40, 299);
    Hover(&preview.label, 301, 40);
    Hover(&preview.label, -1, 40);
    Hover(&preview.label, 40, -1);
    EXPECT_EQ(Corners(10, 10, 50, 50), preview.Band());
    EXPECT_EQ("", preview.TakeLog());

    Hover(&preview.label, 40, 298);
    EXPECT_EQ(QRect(20, 109, 41, 41), preview.Band());
    Hover(&preview.label, 300, 40);
    EXPECT_EQ(QRect(259, 20, 41, 41), preview.Band());
    EXPECT_EQ(2, preview.TakeLog().count("Update"));
}

TEST(RubberBandLabel, MoveReportsTheStoredSize)
{
    // 105 image pixels are 31 label pixels, which map back to 103.
    Preview preview(1000, 500, 300, 300);
    preview.Show();
    preview.label.SetBandGeometry(10, 10, 105, 105);
    ASSERT_EQ(QRect(3, 3, 31, 31), preview.Band());

    Press(&preview.label, 10, 10);
    EXPECT_EQ("Started clicked", preview.TakeLog());
    Hover(&preview.label, 57, 37);
    Hover(&preview.label, 58, 37);
    EXPECT_EQ("Update(100,167,105,105) Update(100,170,105,105)", preview.TakeLog());
    Release(&preview.label, 58, 37);
    EXPECT_EQ("Send(100,170,105,105)", preview.TakeLog());

    // A resize reports the size as seen on the screen.
    preview.label.SetBandGeometry(10, 10, 105, 105);
    Press(&preview.label, 17, 32);
    preview.TakeLog();
    Hover(&preview.label, 17, 40);
    EXPECT_EQ("Update(10,10,103,127)", preview.TakeLog());
}

TEST(RubberBandLabel, ClickWithoutDragSendsTheStoredSize)
{
    Preview preview(1000, 500, 300, 300);
    preview.label.SetBandGeometry(10, 10, 105, 105);
    preview.Show();
    bool draggingAtSend = true;
    QObject::connect(&preview.label, &RubberBandLabel::SendGeometry,
                     [&] { draggingAtSend = preview.label.IsDragging(); });

    Press(&preview.label, 200, 100);
    EXPECT_FALSE(preview.label.IsDragging());
    Release(&preview.label, 200, 100);
    EXPECT_EQ("clicked Send(10,10,105,105)", preview.TakeLog());

    Press(&preview.label, 20, 20);
    Release(&preview.label, 20, 20);
    EXPECT_FALSE(draggingAtSend);
    EXPECT_EQ("Started clicked Send(10,10,105,105)", preview.TakeLog());
}

TEST(RubberBandLabel, HoverSurvivesWhatRunsWhileItWaits)
{
    // A press that arrives while the hover waits starts the drag at once.
    UnitPreview pressed;
    QMouseEvent* press = new QMouseEvent(QEvent::MouseButtonPress, QPointF(30, 30), Qt::LeftButton,
                                         Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::postEvent(&pressed.label, press);
    Hover(&pressed.label, 100, 100);
    EXPECT_EQ("Started clicked Update(10,10,41,41)", pressed.TakeLog());

    // The label deleted by a slot that runs while the hover waits.
    Preview* preview = new UnitPreview;
    QPointer<RubberBandLabel> label(&preview->label);
    QObject context;
    QTimer::singleShot(0, &context, [&] { delete preview; });
    Hover(label, 30, 30);
    EXPECT_TRUE(label.isNull());
}
