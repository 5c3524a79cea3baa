// A QCoreApplication without an event loop, as the links are used in blocking calls; without
// one, Qt warns at each serial open that it cannot watch the device.

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
