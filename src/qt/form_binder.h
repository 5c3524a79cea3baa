#pragma once

#include <QObject>
#include <QPointer>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "forms/form.h"

class QAction;
class QKeyEvent;
class QMenu;
class QWidget;

namespace marlune::qt {

// A widget of a class that shows some kind of control: in a layout, it has its control by name.
bool ShowsAControl(const QWidget& widget);

// Shows one form model through the widgets of its layout, whose object names are the
// control names. Values flow both ways under the model's event rules: a model change reaches
// a widget only when the widget shows something else, and an operator's action reaches the
// model only through the model's own operations, after which the widget shows what the model
// kept. Menus and tool bars are built from the model. The binder decides nothing, but for
// refusing operator's text that the code page cannot hold.
class FormBinder final : public QObject, public forms::FormView {
    Q_OBJECT

public:
    // Binds every control of `form` to its widget under `root` and shows the model's state.
    FormBinder(forms::Form& form, QWidget& root);
    ~FormBinder() override;

    // Stops following the form: its later changes and the widgets' signals go nowhere.
    void detach();

    forms::Form& form() const { return form_; }
    QWidget* widget(std::string_view controlName) const;
    QAction* action(std::string_view controlName) const;
    QMenu* menu(std::string_view controlName) const;
    // Controls that should have a widget and found none of a fitting kind.
    const std::vector<std::string>& unbound() const { return unbound_; }

    // Reports the window's place and state to the form (its left, top, width, height).
    void watchWindow(QWidget& window);
    // Enter and Escape that no control took: presses the form's default or cancel button.
    bool pressStandardButton(int qtKey);

    // forms::FormView
    void controlChanged(forms::Control& control) override;
    void captionChanged(forms::Form& form) override;
    void focusRequested(forms::Control& control) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // How each kind of control binds: the widget classes that may show it, how the operator's
    // actions on the widget reach the model, and how the model's value is shown.
    struct KindBinding {
        bool (*fits)(const QWidget& widget);
        void (FormBinder::*connect)(forms::Control& control, QWidget& widget);
        void (*show)(const forms::Control& control, QWidget& widget);
    };
    struct Binding {
        QPointer<QWidget> widget;
        QPointer<QAction> action;
        const KindBinding* kind = nullptr;
    };
    static const std::map<forms::ControlKind, KindBinding>& kindBindings();
    friend bool ShowsAControl(const QWidget& widget);

    void bindMenus();
    void bindWidget(forms::Control& control);
    void connectClick(forms::Control& control, QWidget& widget);
    void connectOption(forms::Control& control, QWidget& widget);
    void connectPicture(forms::Control& control, QWidget& widget);
    void connectList(forms::Control& control, QWidget& widget);
    void connectPlot(forms::Control& control, QWidget& widget);
    void connectText(forms::Control& control, QWidget& widget);
    void connectToolBar(forms::Control& control, QWidget& widget);
    // Runs an operator's action on the model, then shows what the model kept.
    template <class Action>
    void act(forms::Control& control, Action&& action);
    void sync(forms::Control& control);
    bool textKey(forms::TextBox& box, const QKeyEvent& event);
    void textEdited(forms::TextBox& box, QWidget& widget);
    void selectionMoved(forms::TextBox& box, QWidget& widget);
    // Text the code page cannot hold never reaches the box: the widget shows the box's text
    // again and the operator is told which character. True when `text` was refused.
    bool refuseUnwritable(forms::TextBox& box, const QString& text);

    forms::Form& form_;
    QWidget& root_;
    QPointer<QWidget> window_;
    std::map<forms::Control*, Binding> bindings_;
    std::map<QObject*, forms::TextBox*> textWidgets_;
    std::map<std::string, QMenu*> menus_;
    std::vector<std::string> unbound_;
    bool attached_ = true;
    int syncing_ = 0; // above 0 while the binder writes to widgets
};

} // namespace marlune::qt
