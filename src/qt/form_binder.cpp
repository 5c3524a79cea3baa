#include "qt/form_binder.h"

#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStringList>
#include <QToolBar>
#include <QVBoxLayout>

#include "forms/platform.h"
#include "qt/default_button.h"
#include "qt/key_translation.h"
#include "qt/menu_builder.h"
#include "qt/picture_widget.h"
#include "qt/plot_host.h"
#include "qt/shown_text.h"
#include "qt/text_sync.h"
#include "qt/window_geometry.h"

namespace marlune::qt {

namespace {

template <class... Widgets>
bool IsOneOf(const QWidget& widget)
{
    return (qobject_cast<const Widgets*>(&widget) || ...);
}

// Hidden by the binder, as opposed to not shown yet because its window is not.
bool ExplicitlyHidden(const QWidget& widget)
{
    return widget.testAttribute(Qt::WA_WState_ExplicitShowHide) && widget.testAttribute(Qt::WA_WState_Hidden);
}

Qt::CheckState CheckState(int value)
{
    return value == 1 ? Qt::Checked : value == 2 ? Qt::PartiallyChecked : Qt::Unchecked;
}

void ShowText(const forms::Control& control, QWidget& widget)
{
    ShowTextBox(static_cast<const forms::TextBox&>(control), widget);
}

void ShowLabel(const forms::Control& control, QWidget& widget)
{
    // A classic label shows '&' as the mark of an access key, not as a character.
    auto& label = static_cast<QLabel&>(widget);
    const QString text = ShownText(PlainCaption(static_cast<const forms::Label&>(control).caption()));
    if (label.text() != text)
        label.setText(text);
}

void ShowFrame(const forms::Control& control, QWidget& widget)
{
    auto& frame = static_cast<QGroupBox&>(widget);
    const QString title = ShownText(static_cast<const forms::Frame&>(control).caption());
    if (frame.title() != title)
        frame.setTitle(title);
}

void ShowButton(const forms::Control& control, QWidget& widget)
{
    auto& push = static_cast<QPushButton&>(widget);
    const auto& button = static_cast<const forms::Button&>(control);
    if (push.text() != ShownText(button.caption()))
        push.setText(ShownText(button.caption()));
    if (push.toolTip() != ShownText(button.toolTip))
        push.setToolTip(ShownText(button.toolTip));
    if (push.isDefault() != button.isDefault)
        push.setDefault(button.isDefault);
}

void ShowCheckBox(const forms::Control& control, QWidget& widget)
{
    auto& check = static_cast<QCheckBox&>(widget);
    const auto& box = static_cast<const forms::CheckBox&>(control);
    if (check.text() != ShownText(box.caption()))
        check.setText(ShownText(box.caption()));
    if (check.checkState() != CheckState(box.value()))
        check.setCheckState(CheckState(box.value()));
}

void ShowOption(const forms::Control& control, QWidget& widget)
{
    auto& radio = static_cast<QRadioButton&>(widget);
    const auto& option = static_cast<const forms::OptionButton&>(control);
    if (radio.text() != ShownText(option.caption()))
        radio.setText(ShownText(option.caption()));
    if (radio.isChecked() != option.value())
        radio.setChecked(option.value());
}

void ShowPicture(const forms::Control& control, QWidget& widget)
{
    auto& picture = static_cast<PictureWidget&>(widget);
    const auto& model = static_cast<const forms::Picture&>(control);
    picture.setPicture(ShownText(model.picture()));
    if (picture.toolTip() != ShownText(model.toolTip))
        picture.setToolTip(ShownText(model.toolTip));
}

void ShowProgress(const forms::Control& control, QWidget& widget)
{
    auto& bar = static_cast<QProgressBar&>(widget);
    const auto& progress = static_cast<const forms::ProgressBar&>(control);
    if (bar.minimum() != progress.min() || bar.maximum() != progress.max())
        bar.setRange(progress.min(), progress.max());
    if (bar.value() != progress.value())
        bar.setValue(progress.value());
}

void ShowList(const forms::Control& control, QWidget& widget)
{
    auto& list = static_cast<QListWidget&>(widget);
    const auto& box = static_cast<const forms::ListBox&>(control);
    const std::vector<std::string>& items = box.items();
    // A list box grows only at its end or is cleared, and the widget follows each change, so its
    // last line tells whether it still shows the start of the model's items: a list of thousands
    // of lines takes only its new ones and is never compared whole.
    auto kept = static_cast<std::size_t>(list.count());
    const bool showsStart =
            kept == 0 || (kept <= items.size() && list.item(list.count() - 1)->text() == ShownText(items[kept - 1]));
    if (!showsStart) {
        list.clear();
        kept = 0;
    }
    if (kept < items.size()) {
        QStringList added;
        for (std::size_t i = kept; i < items.size(); ++i)
            added << ShownText(items[i]);
        list.addItems(added);
    }
    if (list.currentRow() != box.listIndex())
        list.setCurrentRow(box.listIndex());
}

void ShowPlot(const forms::Control& control, QWidget& widget)
{
    static_cast<PlotHost&>(widget).showPlot(static_cast<const forms::Plot&>(control));
}

} // namespace

const std::map<forms::ControlKind, FormBinder::KindBinding>& FormBinder::kindBindings()
{
    using forms::ControlKind;
    static const std::map<ControlKind, KindBinding> kinds = {
            {ControlKind::TextBox, {&IsOneOf<QLineEdit, QPlainTextEdit>, &FormBinder::connectText, &ShowText}},
            {ControlKind::Label, {&IsOneOf<QLabel>, nullptr, &ShowLabel}},
            {ControlKind::Frame, {&IsOneOf<QGroupBox>, nullptr, &ShowFrame}},
            {ControlKind::Button, {&IsOneOf<QPushButton>, &FormBinder::connectClick, &ShowButton}},
            {ControlKind::CheckBox, {&IsOneOf<QCheckBox>, &FormBinder::connectClick, &ShowCheckBox}},
            {ControlKind::OptionButton, {&IsOneOf<QRadioButton>, &FormBinder::connectOption, &ShowOption}},
            {ControlKind::Picture, {&IsOneOf<PictureWidget>, &FormBinder::connectPicture, &ShowPicture}},
            {ControlKind::ProgressBar, {&IsOneOf<QProgressBar>, nullptr, &ShowProgress}},
            {ControlKind::ListBox, {&IsOneOf<QListWidget>, &FormBinder::connectList, &ShowList}},
            {ControlKind::ToolBar, {&IsOneOf<QToolBar>, &FormBinder::connectToolBar, nullptr}},
            {ControlKind::Plot, {&IsOneOf<PlotHost>, &FormBinder::connectPlot, &ShowPlot}},
    };
    return kinds;
}

bool ShowsAControl(const QWidget& widget)
{
    for (const auto& [kind, binding] : FormBinder::kindBindings()) {
        if (binding.fits(widget))
            return true;
    }
    return false;
}

FormBinder::FormBinder(forms::Form& form, QWidget& root) : QObject(&root), form_(form), root_(root)
{
    ++syncing_;
    bindMenus();
    for (forms::Control* control : form_.controls()) {
        // Timers have nothing to show; menu items became the menu bar.
        if (control->kind() != forms::ControlKind::Timer && control->kind() != forms::ControlKind::MenuItem)
            bindWidget(*control);
    }
    --syncing_;
    captionChanged(form_);
    for (auto& [control, binding] : bindings_)
        sync(*control);
    form_.setView(this);
    if (forms::Control* focused = form_.focused())
        focusRequested(*focused);
}

FormBinder::~FormBinder() { detach(); }

void FormBinder::detach()
{
    if (!attached_)
        return;
    attached_ = false;
    if (form_.view() == this)
        form_.setView(nullptr);
}

QWidget* FormBinder::widget(std::string_view controlName) const
{
    for (const auto& [control, binding] : bindings_) {
        if (control->name() == controlName)
            return binding.widget;
    }
    return nullptr;
}

QAction* FormBinder::action(std::string_view controlName) const
{
    for (const auto& [control, binding] : bindings_) {
        if (control->name() == controlName)
            return binding.action;
    }
    return nullptr;
}

QMenu* FormBinder::menu(std::string_view controlName) const
{
    const auto it = menus_.find(std::string(controlName));
    return it == menus_.end() ? nullptr : it->second;
}

void FormBinder::bindMenus()
{
    std::vector<forms::MenuItem*> items;
    for (forms::Control* control : form_.controls()) {
        if (auto* item = dynamic_cast<forms::MenuItem*>(control))
            items.push_back(item);
    }
    if (items.empty())
        return;
    QMenuBar* bar = nullptr;
    if (auto* window = qobject_cast<QMainWindow*>(&root_)) {
        bar = window->menuBar();
    } else {
        bar = new QMenuBar(&root_);
        if (root_.layout())
            root_.layout()->setMenuBar(bar);
    }
    BuiltMenus built = BuildMenus(items, *bar);
    menus_ = std::move(built.menus);
    for (forms::MenuItem* item : items) {
        const auto it = built.actions.find(item->name());
        if (it == built.actions.end()) {
            unbound_.push_back(item->name());
            continue;
        }
        QAction* action = it->second;
        bindings_[item].action = action;
        if (const auto menu = menus_.find(item->name()); menu != menus_.end()) {
            // Opening a menu is its Click, as the classic menus have it.
            connect(menu->second, &QMenu::aboutToShow, this,
                    [this, item] { act(*item, [item] { item->operatorClick(); }); });
        } else if (!item->isSeparator()) {
            connect(action, &QAction::triggered, this, [this, item] { act(*item, [item] { item->operatorClick(); }); });
        }
    }
}

void FormBinder::bindWidget(forms::Control& control)
{
    const auto kind = kindBindings().find(control.kind());
    auto* widget = root_.findChild<QWidget*>(QString::fromStdString(control.name()));
    if (kind == kindBindings().end() || !widget || !kind->second.fits(*widget)) {
        unbound_.push_back(control.name());
        return;
    }
    Binding& binding = bindings_[&control];
    binding.widget = widget;
    binding.kind = &kind->second;
    if (kind->second.connect)
        (this->*kind->second.connect)(control, *widget);
}

void FormBinder::connectClick(forms::Control& control, QWidget& widget)
{
    connect(&static_cast<QAbstractButton&>(widget), &QAbstractButton::clicked, this,
            [this, &control] { act(control, [&control] { control.operatorClick(); }); });
}

void FormBinder::connectOption(forms::Control& control, QWidget& widget)
{
    // The model keeps its groups by name, not by parent widget.
    static_cast<QRadioButton&>(widget).setAutoExclusive(false);
    connectClick(control, widget);
}

void FormBinder::connectPicture(forms::Control& control, QWidget& widget)
{
    auto* picture = &static_cast<PictureWidget&>(widget);
    connect(picture, &PictureWidget::clicked, this,
            [this, &control] { act(control, [&control] { control.operatorClick(); }); });
    connect(picture, &PictureWidget::doubleClicked, this,
            [this, &control] { act(control, [&control] { control.operatorDoubleClick(); }); });
    connect(picture, &PictureWidget::mouseDown, this,
            [this, &control](int button) { act(control, [&control, button] { control.operatorMouseDown(button); }); });
}

void FormBinder::connectPlot(forms::Control& control, QWidget& widget)
{
    auto& plot = static_cast<forms::Plot&>(control);
    static_cast<PlotHost&>(widget).attach(
            [this, &plot](double factor, double atMs) { act(plot, [&] { plot.operatorZoom(factor, atMs); }); },
            [this, &plot](double deltaMs) { act(plot, [&] { plot.operatorPan(deltaMs); }); });
}

void FormBinder::connectList(forms::Control& control, QWidget& widget)
{
    auto& box = static_cast<forms::ListBox&>(control);
    connect(&static_cast<QListWidget&>(widget), &QListWidget::currentRowChanged, this, [this, &box](int row) {
        if (syncing_ == 0)
            act(box, [&box, row] { box.setListIndex(row); });
    });
}

void FormBinder::connectText(forms::Control& control, QWidget& widget)
{
    auto& box = static_cast<forms::TextBox&>(control);
    if (!box.fontName.empty())
        widget.setFont(NamedFont(widget.font(), box.fontName));
    textWidgets_[&widget] = &box;
    widget.installEventFilter(this);
    const auto edited = [this, &box, &widget] {
        if (syncing_ == 0)
            textEdited(box, widget);
    };
    const auto moved = [this, &box, &widget] {
        if (syncing_ == 0)
            selectionMoved(box, widget);
    };
    if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
        connect(line, &QLineEdit::textEdited, this, edited);
        connect(line, &QLineEdit::cursorPositionChanged, this, moved);
        connect(line, &QLineEdit::selectionChanged, this, moved);
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(&widget)) {
        // Tab moves the focus, as in the classic multi-line boxes.
        text->setTabChangesFocus(true);
        connect(text, &QPlainTextEdit::textChanged, this, edited);
        connect(text, &QPlainTextEdit::cursorPositionChanged, this, moved);
        connect(text, &QPlainTextEdit::selectionChanged, this, moved);
    }
}

void FormBinder::connectToolBar(forms::Control& control, QWidget& widget)
{
    auto& toolBar = static_cast<forms::ToolBar&>(control);
    for (QAction* action : BuildToolBar(toolBar, static_cast<QToolBar&>(widget))) {
        if (action->isSeparator())
            continue;
        const std::string key = ModelText(action->data().toString());
        connect(action, &QAction::triggered, this,
                [this, &toolBar, key] { act(toolBar, [&toolBar, key] { toolBar.pressButton(key); }); });
    }
}

template <class Action>
void FormBinder::act(forms::Control& control, Action&& action)
{
    if (!attached_)
        return;
    action();
    // The widget may have moved ahead of the model (a radio button clicked off, a refused edit).
    if (attached_)
        sync(control);
}

void FormBinder::textEdited(forms::TextBox& box, QWidget& widget)
{
    const QString shown = WidgetText(widget);
    if (refuseUnwritable(box, shown))
        return;
    const TextSelection selection = WidgetSelection(widget);
    act(box, [&] {
        box.operatorSetText(ModelText(shown, box.multiLine));
        // The edit put the model's caret at the end; the operator's caret is where the widget has it.
        Select(box, ModelSelection(box, selection));
    });
}

void FormBinder::selectionMoved(forms::TextBox& box, QWidget& widget)
{
    // While the widget's text is ahead of the model, its positions mean nothing there yet.
    if (WidgetText(widget) != ShownText(box.text(), box.multiLine))
        return;
    const TextSelection selection = ModelSelection(box, WidgetSelection(widget));
    if (selection.start == box.selStart() && selection.end - selection.start == box.selLength())
        return;
    act(box, [&] { Select(box, selection); });
}

bool FormBinder::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == window_) {
        if (MovesWindow(*event) && attached_)
            ReportGeometry(*window_, form_);
        if (event->type() == QEvent::Resize && attached_)
            form_.resized();
        return false;
    }
    const auto it = textWidgets_.find(watched);
    if (it == textWidgets_.end() || !attached_)
        return false;
    if (event->type() == QEvent::ShortcutOverride) {
        // Left unaccepted, the key reaches the window's menu shortcut instead of the box.
        return WindowShortcut(static_cast<QWidget&>(*watched), static_cast<const QKeyEvent&>(*event));
    }
    if (event->type() == QEvent::KeyPress)
        return textKey(*it->second, static_cast<const QKeyEvent&>(*event));
    return false;
}

bool FormBinder::textKey(forms::TextBox& box, const QKeyEvent& event)
{
    // A multi-line box that can be edited takes a Tab as text, as program texts are written.
    if (const int code = ModelKeyCode(event, box.multiLine && !box.locked)) {
        // The keypad's Enter is Return to the form's default button.
        if (pressStandardButton(event.key() == Qt::Key_Enter ? Qt::Key_Return : event.key()))
            return true;
        act(box, [&] { box.operatorKey(code); });
        return true;
    }
    if (!Typed(event))
        return false; // caret movement, deletion and editing keys: the widget edits, the model follows
    if (!refuseUnwritable(box, event.text()))
        act(box, [&] { box.operatorType(ModelText(event.text())); });
    return true;
}

bool FormBinder::refuseUnwritable(forms::TextBox& box, const QString& text)
{
    const std::optional<std::string> character = UnwritableCharacter(text);
    if (!character)
        return false;
    sync(box);
    forms::MsgBox(UnwritableMessage(*character));
    return true;
}

bool FormBinder::pressStandardButton(int qtKey)
{
    if (!attached_)
        return false;
    forms::Button* button = DefaultButton(form_, qtKey);
    if (!button)
        return false;
    act(*button, [button] { button->operatorClick(); });
    return true;
}

void FormBinder::watchWindow(QWidget& window)
{
    window_ = &window;
    window.installEventFilter(this);
    if (attached_)
        ReportGeometry(window, form_);
}

void FormBinder::controlChanged(forms::Control& control)
{
    if (attached_)
        sync(control);
}

void FormBinder::captionChanged(forms::Form& form)
{
    // A document's name comes first, as desktops list their windows, with Qt's place for the mark
    // of unsaved changes.
    QString title = ShownText(form.caption());
    if (!form.documentName().empty())
        title = ShownText(form.documentName()) + QStringLiteral("[*] - ") + title;
    if (root_.windowTitle() != title)
        root_.setWindowTitle(title);
    if (root_.isWindowModified() != form.documentModified())
        root_.setWindowModified(form.documentModified());
}

void FormBinder::focusRequested(forms::Control& control)
{
    const auto it = bindings_.find(&control);
    if (it != bindings_.end() && it->second.widget)
        it->second.widget->setFocus(Qt::OtherFocusReason);
}

void FormBinder::sync(forms::Control& control)
{
    const auto it = bindings_.find(&control);
    if (it == bindings_.end())
        return;
    ++syncing_;
    if (QAction* action = it->second.action) {
        if (action->isEnabled() != control.enabled())
            action->setEnabled(control.enabled());
        if (action->isVisible() != control.visible())
            action->setVisible(control.visible());
        if (auto* item = dynamic_cast<forms::MenuItem*>(&control); item && !item->isSeparator()) {
            if (action->text() != ShownText(item->caption()))
                action->setText(ShownText(item->caption()));
        }
    } else if (QWidget* widget = it->second.widget) {
        if (widget->testAttribute(Qt::WA_ForceDisabled) == control.enabled())
            widget->setEnabled(control.enabled());
        if (ExplicitlyHidden(*widget) == control.visible())
            widget->setVisible(control.visible());
        if (it->second.kind->show)
            it->second.kind->show(control, *widget);
    }
    --syncing_;
}

} // namespace marlune::qt
