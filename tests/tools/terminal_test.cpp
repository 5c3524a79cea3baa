#include <gtest/gtest.h>

#include "headless_fixture.h"
#include "tools/terminal.h"

namespace marlune::tools {
namespace {

using TerminalLog = testing::HeadlessFixture;

// A multi-line entry counts as one, but each trim takes one line off the top.
TEST_F(TerminalLog, TheThousandAndFirstEntryPushesTheOldestLineOut)
{
    Terminal terminal;
    ASSERT_TRUE(terminal.load());
    EXPECT_EQ(terminal.lineCount, 2);
    for (int i = 3; i <= 1000; ++i)
        terminal.AppendLog("entry " + std::to_string(i));
    EXPECT_EQ(terminal.lineCount, 1000);
    EXPECT_EQ(terminal.LogWindow.text().rfind("Marlune KVM Communication Ready:\r\r\nentry 3\r\n", 0), 0u);
    terminal.AppendLog("entry 1001");
    EXPECT_EQ(terminal.lineCount, 1000);
    EXPECT_EQ(terminal.LogWindow.text().rfind("entry 3\r\nentry 4\r\n", 0), 0u);
    EXPECT_EQ(terminal.LogWindow.selStart(), static_cast<int>(terminal.LogWindow.text().size()))
            << "the log scrolls to its newest line";
    terminal.AppendLog("REPLY:A\r\nB\r\n");
    terminal.AppendLog("y");
    const std::string& log = terminal.LogWindow.text();
    EXPECT_EQ(terminal.lineCount, 1000);
    EXPECT_EQ(log.substr(log.size() - 17), "REPLY:A\r\nB\r\n\r\ny\r\n");
}

} // namespace
} // namespace marlune::tools
