#include "QSpinBoxMouseEventfilter.h"

#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QMouseEvent>

#include <gtest/gtest.h>

TEST(SpinBoxMouseFilter, FollowsTheButtonsAndPassesEveryEventOn)
{
    QDoubleSpinBox spinBox;
    QSpinBoxMouseEventFilter filter;
    spinBox.installEventFilter(&filter);
    int releases = 0;
    QObject::connect(&filter, &QSpinBoxMouseEventFilter::mouseReleased, [&] { ++releases; });
    auto pressedAfter = [&](QEvent::Type type) {
        QMouseEvent event(type, QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        EXPECT_FALSE(filter.eventFilter(&spinBox, &event));
        return filter.IsMousePressed();
    };

    EXPECT_FALSE(filter.IsMousePressed());
    EXPECT_TRUE(pressedAfter(QEvent::MouseButtonPress));
    EXPECT_TRUE(pressedAfter(QEvent::MouseButtonDblClick));
    // Buttons aren't counted: the first release ends the press.
    EXPECT_FALSE(pressedAfter(QEvent::MouseButtonRelease));
    EXPECT_FALSE(pressedAfter(QEvent::MouseButtonRelease));
    EXPECT_EQ(2, releases);

    // A key leaves the state alone and still reaches the spin box.
    pressedAfter(QEvent::MouseButtonPress);
    QKeyEvent keyUp(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QCoreApplication::sendEvent(&spinBox, &keyUp);
    EXPECT_DOUBLE_EQ(1.0, spinBox.value());
    EXPECT_TRUE(filter.IsMousePressed());
}
