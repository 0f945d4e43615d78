#include <QApplication>

#include <gtest/gtest.h>

// Runs the tests with an application object alive, as widgets need one.
// Listing the tests needs none, and so starts no platform.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
