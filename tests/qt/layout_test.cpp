// Every .ui layout and its form model match one to one, with widgets of fitting kinds.
#include <QMainWindow>

#include <memory>

#include "forms/control.h"
#include "qt/form_binder.h"
#include "qt/form_layouts.h"
#include "qt_test_support.h"
#include "shell/program.h"

namespace marlune::qt::test {
namespace {

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
    program.status();
    program.compareMemory();
    ASSERT_GE(FormLayouts().size(), 2u);
    for (const FormLayout& layout : FormLayouts()) {
        SCOPED_TRACE(std::string(layout.formName));
        forms::Form* form = program.findForm(layout.formName);
        ASSERT_NE(form, nullptr) << "a layout for a form the program does not have";
        std::unique_ptr<QWidget> window = MakeWindow(layout);
        int shownControls = 0, controlWidgets = 0;
        for (forms::Control* control : form->controls()) {
            const bool shown =
                    control->kind() != forms::ControlKind::Timer && control->kind() != forms::ControlKind::MenuItem;
            shownControls += shown;
            EXPECT_EQ(window->findChildren<QWidget*>(QString::fromStdString(control->name())).size(), shown ? 1 : 0)
                    << control->name() << " needs exactly one widget";
        }
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
            const std::string name = widget->objectName().toStdString();
            controlWidgets += ShowsAControl(*widget);
            EXPECT_TRUE(!ShowsAControl(*widget) || form->control(name))
                    << "the " << widget->metaObject()->className() << " '" << name << "' has no control";
        }
        EXPECT_EQ(controlWidgets, shownControls);
        // Each control's widget is of a kind that shows it.
        FormBinder binder(*form, *window);
        EXPECT_TRUE(binder.unbound().empty()) << binder.unbound().front();
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
        ASSERT_TRUE(test && close);
        // Nothing of it shows in the window, while the other controls lie inside.
        EXPECT_TRUE(test->visibleRegion().isEmpty());
        const QRect closeArea(close->mapTo(window.get(), QPoint(0, 0)), close->size());
        EXPECT_TRUE(window->rect().contains(closeArea));
    }
}

} // namespace
} // namespace marlune::qt::test
