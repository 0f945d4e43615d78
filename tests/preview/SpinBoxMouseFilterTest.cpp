#include "QSpinBoxMouseEventfilter.h"

#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

bool SendMouse(QWidget* target, QEvent::Type type)
{
    QMouseEvent event(type, QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    return QCoreApplication::sendEvent(target, &event);
}

} // namespace

TEST(SpinBoxMouseFilter, FollowsPressDoubleClickAndRelease)
{
    QDoubleSpinBox spinBox;
    QSpinBoxMouseEventFilter filter;
    spinBox.installEventFilter(&filter);
    int releases = 0;
    QObject::connect(&filter, &QSpinBoxMouseEventFilter::mouseReleased, [&] { ++releases; });

    EXPECT_FALSE(filter.IsMousePressed());
    SendMouse(&spinBox, QEvent::MouseButtonPress);
    EXPECT_TRUE(filter.IsMousePressed());
    SendMouse(&spinBox, QEvent::MouseButtonRelease);
    EXPECT_FALSE(filter.IsMousePressed());
    EXPECT_EQ(1, releases);

    SendMouse(&spinBox, QEvent::MouseButtonPress);
    SendMouse(&spinBox, QEvent::MouseButtonDblClick);
    EXPECT_TRUE(filter.IsMousePressed());
    // Buttons aren't counted: one release ends it, and a second one is
    // reported again.
    SendMouse(&spinBox, QEvent::MouseButtonRelease);
    EXPECT_FALSE(filter.IsMousePressed());
    SendMouse(&spinBox, QEvent::MouseButtonRelease);
    EXPECT_FALSE(filter.IsMousePressed());
    EXPECT_EQ(3, releases);
}

TEST(SpinBoxMouseFilter, PassesEveryEventOn)
{
    QDoubleSpinBox spinBox;
    spinBox.setRange(0, 10);
    QSpinBoxMouseEventFilter filter;
    spinBox.installEventFilter(&filter);

    SendMouse(&spinBox, QEvent::MouseButtonPress);
    QKeyEvent keyUp(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QCoreApplication::sendEvent(&spinBox, &keyUp);
    EXPECT_DOUBLE_EQ(1.0, spinBox.value());
    QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&spinBox, &wheel);
    EXPECT_TRUE(filter.IsMousePressed());

    QEvent::Type mouseTypes[] = {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick,
                                 QEvent::MouseButtonRelease};
    for (QEvent::Type type : mouseTypes) {
        QMouseEvent event(type, QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        EXPECT_FALSE(filter.eventFilter(&spinBox, &event));
    }
    EXPECT_FALSE(filter.eventFilter(&spinBox, &keyUp));
    EXPECT_FALSE(filter.eventFilter(&spinBox, &wheel));
}
