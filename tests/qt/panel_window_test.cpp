// The motion panel's window: it shows the decoded status, and a poll that changes nothing
// repaints nothing.
#include <QLineEdit>

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
        paints += event->type() == QEvent::Paint;
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
        window->resize(window->sizeHint().expandedTo(QSize(980, 600)));
        panel.pollTick();
        Settle();
        EXPECT_EQ(window->windowTitle(), "Main Marlune Control");
        const auto text = [&](const char* name) { return window->findChild<QLineEdit*>(name)->text(); };
        const auto picture = [&](const char* name) { return window->findChild<PictureWidget*>(name)->picture(); };
        EXPECT_EQ((QStringList{text("PosX"), text("StatX"), text("HSPD")}), (QStringList{"1200", "Constant", "4000"}));
        EXPECT_EQ((QStringList{picture("DIO5"), picture("DIO6"), picture("AlarmY")}),
                  (QStringList{"OutputOn", "DIO_OUT_OFF", "SwitchOn"}));
        EXPECT_TRUE(SaveScreenshot(*window, "MainControl.png"));

        PaintCounter counter;
        for (QWidget* widget : window->findChildren<QWidget*>())
            widget->installEventFilter(&counter);
        const std::size_t before = Requests(desk.com).size();
        panel.pollTick();
        Settle();
        EXPECT_EQ(Requests(desk.com).size(), before + 1) << "one poll went out";
        EXPECT_EQ(counter.paints, 0) << "a poll with no changed values repaints nothing";
        desk.com.setReply("???", QString(kStatus).replace("1200", "1201").toStdString());
        panel.pollTick();
        Settle();
        EXPECT_GT(counter.paints, 0) << "a changed position is painted";
        ran = true;
    });
    EXPECT_TRUE(ran);
}

} // namespace
} // namespace marlune::qt::test
