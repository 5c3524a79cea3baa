#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    // ctest sets this too; a run by hand should not need a display either.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Marlune Desk"));
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
