// The desktop program always has a QApplication; the tests run under a QCoreApplication
// without an event loop, as the links are used there: in blocking calls. Without one, the
// serial port still works but Qt warns at each open that it cannot watch the device.

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
