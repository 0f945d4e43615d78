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
    auto send = [&](QEvent::Type type) {
        QMouseEvent event(type, QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&spinBox, &event);
        return filter.IsMousePressed();
    };

    EXPECT_FALSE(filter.IsMousePressed());
    EXPECT_TRUE(send(QEvent::MouseButtonPress));
    EXPECT_TRUE(send(QEvent::MouseButtonDblClick));
    // Buttons aren't counted: the first release ends the press.
    EXPECT_FALSE(send(QEvent::MouseButtonRelease));
    EXPECT_FALSE(send(QEvent::MouseButtonRelease));
    EXPECT_EQ(2, releases);

    // Other events leave the state alone and still reach the spin box.
    send(QEvent::MouseButtonPress);
    QKeyEvent keyUp(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QCoreApplication::sendEvent(&spinBox, &keyUp);
    EXPECT_DOUBLE_EQ(1.0, spinBox.value());
    EXPECT_TRUE(filter.IsMousePressed());
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(5, 5), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    EXPECT_FALSE(filter.eventFilter(&spinBox, &release));
    EXPECT_FALSE(filter.eventFilter(&spinBox, &keyUp));
}
