#include "PrivateLoopback.h"

#include <QApplication>

#include <gtest/gtest.h>

// Runs the tests with an application object alive, as widgets need one,
// on a loopback network of their own. Listing the tests needs neither, and
// so starts no platform.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    EnterPrivateLoopback();
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
