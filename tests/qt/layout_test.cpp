// Every .ui layout and its form model match one to one, with widgets of fitting kinds.
#include <QMainWindow>
#include <QWidget>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>

#include "forms/control.h"
#include "qt/form_binder.h"
#include "qt/form_layouts.h"
#include "qt_test_support.h"
#include "shell/frm_main.h"
#include "shell/program.h"
#include "tools/terminal.h"

namespace marlune::qt::test {
namespace {

using forms::ControlKind;

// The Qt classes that may show each kind of control, as the layouts are designed.
const std::map<ControlKind, std::set<std::string>>& FittingClasses()
{
    static const std::map<ControlKind, std::set<std::string>> classes = {
            {ControlKind::TextBox, {"QLineEdit", "QPlainTextEdit"}},
            {ControlKind::Label, {"QLabel"}},
            {ControlKind::Frame, {"QGroupBox"}},
            {ControlKind::Button, {"QPushButton"}},
            {ControlKind::CheckBox, {"QCheckBox"}},
            {ControlKind::OptionButton, {"QRadioButton"}},
            {ControlKind::Picture, {"marlune::qt::PictureWidget"}},
            {ControlKind::ProgressBar, {"QProgressBar"}},
            {ControlKind::ListBox, {"QListWidget"}},
            {ControlKind::ToolBar, {"QToolBar"}},
    };
    return classes;
}

bool IsControlClass(const std::string& className)
{
    for (const auto& [kind, classes] : FittingClasses()) {
        if (classes.count(className))
            return true;
    }
    return false;
}

std::unique_ptr<QWidget> MakeWindow(const FormLayout& layout)
{
    std::unique_ptr<QWidget> window = layout.frame ? std::make_unique<QMainWindow>() : std::make_unique<QWidget>();
    layout.setUp(*window);
    return window;
}

TEST(Layouts, EveryLayoutMatchesItsFormOneToOne)
{
    QtDesk desk;
    shell::Program program;
    program.frame();
    program.terminal();
    program.mainControl();
    ASSERT_GE(FormLayouts().size(), 2u);
    for (const FormLayout& layout : FormLayouts()) {
        SCOPED_TRACE(std::string(layout.formName));
        forms::Form* form = program.findForm(layout.formName);
        ASSERT_NE(form, nullptr) << "a layout for a form the program does not have";
        std::unique_ptr<QWidget> window = MakeWindow(layout);

        for (forms::Control* control : form->controls()) {
            if (control->kind() == ControlKind::Timer || control->kind() == ControlKind::MenuItem)
                continue;
            const auto matches = window->findChildren<QWidget*>(QString::fromStdString(control->name()));
            ASSERT_EQ(matches.size(), 1) << control->name() << " needs exactly one widget";
            const std::string className = matches.front()->metaObject()->className();
            EXPECT_TRUE(FittingClasses().at(control->kind()).count(className))
                    << control->name() << " is a " << forms::KindName(control->kind()) << " shown by a " << className;
        }
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
            const std::string className = widget->metaObject()->className();
            if (!IsControlClass(className))
                continue;
            const std::string name = widget->objectName().toStdString();
            const forms::Control* control = form->control(name);
            ASSERT_NE(control, nullptr) << "the " << className << " '" << name << "' has no control";
            EXPECT_TRUE(FittingClasses().at(control->kind()).count(className)) << name;
        }
    }
}

TEST(Layouts, TheBinderFindsEveryControlOfEveryForm)
{
    QtDesk desk;
    shell::Program program;
    program.frame();
    program.terminal();
    program.mainControl();
    for (const FormLayout& layout : FormLayouts()) {
        forms::Form* form = program.findForm(layout.formName);
        ASSERT_NE(form, nullptr);
        std::unique_ptr<QWidget> window = MakeWindow(layout);
        FormBinder binder(*form, *window);
        EXPECT_TRUE(binder.unbound().empty()) << layout.formName << ": " << binder.unbound().front();
    }
}

TEST(Layouts, TheTestButtonLiesOutOfReachBelowTheTerminal)
{
    std::unique_ptr<QWidget> window = MakeWindow(*FindFormLayout("Terminal"));
    for (const QSize size : {window->size(), QSize(1200, 900)}) {
        window->resize(size);
        window->show();
        Settle();
        auto* test = window->findChild<QWidget*>(QStringLiteral("Test"));
        auto* close = window->findChild<QWidget*>(QStringLiteral("CloseTerminal"));
        ASSERT_NE(test, nullptr);
        // Nothing of it shows in the window, while the other controls lie inside.
        EXPECT_TRUE(test->visibleRegion().isEmpty());
        const QRect closeArea(close->mapTo(window.get(), QPoint(0, 0)), close->size());
        EXPECT_TRUE(window->rect().contains(closeArea));
    }
}

} // namespace
} // namespace marlune::qt::test
