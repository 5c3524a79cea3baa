// The transfer dialog's bar moves under the desktop's own 1 ms timer, and the comparison of
// memory with a file shows its differences as rows.
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>

#include "qt_test_support.h"
#include "shell/program.h"
#include "transfer/compare_memory.h"
#include "transfer/status.h"

namespace marlune::qt::test {
namespace {

TEST(TransferWindows, TheBarMovesWhileVariablesAreReadAndDifferencesShowAsRows)
{
    QtDesk desk;
    desk.com.setDefaultReply("5");
    desk.com.setReply("V7", "9");
    shell::Program program;
    link::Link().linkKind = 1;
    transfer::Status& status = program.status();
    status.operationType = static_cast<std::int16_t>(transfer::Operation::ReadMemory);
    int shownMidway = -1;
    QTimer::singleShot(100, [&] {
        QWidget* window = desk.platform.window(status);
        ASSERT_NE(window, nullptr);
        shownMidway = window->findChild<QProgressBar*>(QStringLiteral("Progress"))->value();
        EXPECT_EQ(shownMidway, status.Progress.value());
        EXPECT_TRUE(SaveScreenshot(*window, "Status.png"));
    });
    status.showTransfer("Comparing Controller Memory with File", nullptr);
    EXPECT_GT(shownMidway, 0);
    EXPECT_LT(shownMidway, 10000);
    ASSERT_EQ(status.operationResult, 1);
    ASSERT_EQ(status.memoryValues.size(), 296u);

    transfer::CompareMemory& compare = program.compareMemory();
    bool shown = false;
    QTimer::singleShot(0, [&] {
        QWidget* window = desk.platform.window(compare);
        ASSERT_NE(window, nullptr);
        auto* rows = window->findChild<QListWidget*>(QStringLiteral("Differences"));
        ASSERT_EQ(rows->count(), 1);
        EXPECT_EQ(rows->item(0)->text().simplified(), "V7 5 9");
        EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("Summary"))->text(), "1 variable differs from mem.dat.");
        EXPECT_TRUE(SaveScreenshot(*window, "frmCompareMemory.png"));
        shown = true;
        compare.unload();
    });
    compare.showDifferences("mem.dat", transfer::FindDifferences({{"V7", 5}, {"I1", 5}}, status.memoryValues));
    EXPECT_TRUE(shown);
}

} // namespace
} // namespace marlune::qt::test
