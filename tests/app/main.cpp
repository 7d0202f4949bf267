// The application layer's tests run under a QCoreApplication of their own, so that queued
// calls, timers and signal spies work as they do in the program.
#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
