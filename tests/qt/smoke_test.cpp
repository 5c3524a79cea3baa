// marlune-desk for real, on an X server of its own: the operator's way to the terminal.
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace marlune::qt::test {
namespace {

TEST(Smoke, AnOperatorOpensTheTerminalTypesTheStatusQueryAndReadsTheReply)
{
    for (const char* tool : {"xvfb-run", "xdotool", "Xvfb"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
            GTEST_SKIP() << tool << " is not installed (Debian packages xvfb and xdotool)";
    }
    // A working folder without marlunecom.ini: the built-in simulated controller.
    QTemporaryDir work;
    ASSERT_TRUE(work.isValid());
    QProcess run;
    run.setWorkingDirectory(work.path());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", work.filePath("config"));
    run.setProcessEnvironment(environment);
    run.setProcessChannelMode(QProcess::MergedChannels);
    run.start("xvfb-run", {"-a", "-s", "-screen 0 1280x800x24", "bash", MARLUNE_SMOKE_SCRIPT, MARLUNE_DESK,
                           MARLUNE_CLIPBOARD_READER});
    ASSERT_TRUE(run.waitForFinished(25000)) << "the smoke run did not end";
    const QString output = QString::fromUtf8(run.readAll());
    for (const char* seen : {"SEND :???", "REPLY:@", "desk ended with 0"})
        EXPECT_TRUE(output.contains(QString::fromLatin1(seen))) << seen << " missing from:\n" << output.toStdString();
    EXPECT_TRUE(QFile::exists(work.filePath("config/Marlune/Marlune Desk.conf")))
            << "the frame writes its place when it unloads";
}

} // namespace
} // namespace marlune::qt::test
