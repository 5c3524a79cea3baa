// The motion panel's window: it shows the decoded status, and a poll that changes nothing
// repaints nothing.
#include <QApplication>
#include <QLineEdit>

#include <gtest/gtest.h>

#include "link/controller_link.h"
#include "panel/main_control.h"
#include "qt/picture_widget.h"
#include "qt_test_support.h"
#include "shell/program.h"

namespace marlune::qt::test {
namespace {

// Counts the paint events of every widget of a window.
class PaintCounter final : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

const char* const kStatus = "@1200,-35,0,0,1199,-35,0,0,4000,0,0,0,4,24,0,0,16.1,1,0,0,0,12,1,1,1.0,1.";

TEST(PanelWindow, ShowsTheDecodedStatusAndAnUnchangedPollRepaintsNothing)
{
    QtDesk desk;
    for (const auto& [request, reply] :
         {std::pair{"I12", "48"}, {"HSPD", "4000"}, {"LSPD", "500"}, {"ACCEL", "100"}, {"???", kStatus}})
        desk.com.setReply(request, reply);
    shell::Program program;
    link::Link().linkKind = 1;
    panel::MainControl& panel = program.mainControl();
    bool ran = false;
    WhileModal(panel, nullptr, [&] {
        QWidget* window = desk.platform.window(panel);
        ASSERT_NE(window, nullptr);
        window->resize(window->sizeHint().expandedTo(QSize(980, 600)));
        panel.pollTick();
        Settle();
        EXPECT_EQ(window->windowTitle(), "Main Marlune Control");
        EXPECT_EQ(window->findChild<QLineEdit*>("PosX")->text(), "1200");
        EXPECT_EQ(window->findChild<QLineEdit*>("StatX")->text(), "Constant");
        EXPECT_EQ(window->findChild<QLineEdit*>("HSPD")->text(), "4000");
        EXPECT_EQ(window->findChild<PictureWidget*>("DIO5")->picture(), "OutputOn");
        EXPECT_EQ(window->findChild<PictureWidget*>("DIO6")->picture(), "DIO_OUT_OFF");
        EXPECT_EQ(window->findChild<PictureWidget*>("AlarmY")->picture(), "SwitchOn");

        EXPECT_TRUE(SaveScreenshot(*window, "MainControl.png"));

        PaintCounter counter;
        for (QWidget* widget : window->findChildren<QWidget*>())
            widget->installEventFilter(&counter);
        const std::size_t before = Requests(desk.com).size();
        panel.pollTick();
        Settle();
        EXPECT_EQ(Requests(desk.com).size(), before + 1) << "one poll went out";
        EXPECT_EQ(counter.paints, 0) << "a poll with no changed values repaints nothing";

        desk.com.setReply("???", "@1201,-35,0,0,1199,-35,0,0,4000,0,0,0,4,24,0,0,16.1,1,0,0,0,12,1,1,1.0,1.");
        panel.pollTick();
        Settle();
        EXPECT_GT(counter.paints, 0) << "a changed position is painted";
        ran = true;
    });
    EXPECT_TRUE(ran);
}

} // namespace
} // namespace marlune::qt::test
