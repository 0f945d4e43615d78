#include <QApplication>

#include <gtest/gtest.h>

// Runs the tests with an application object alive, as widgets need one.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
