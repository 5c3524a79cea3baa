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
#include <QToolBar>
#include <QVBoxLayout>

#include "forms/text.h"
#include "qt/menu_builder.h"
#include "qt/picture_widget.h"
#include "qt/shown_text.h"

namespace marlune::qt {

namespace {

QString Text(const std::string& ansi) { return QString::fromStdString(forms::AnsiToUtf8(ansi)); }

// The widget kinds that show a control of each kind.
bool Fits(forms::ControlKind kind, QWidget& widget)
{
    using forms::ControlKind;
    switch (kind) {
    case ControlKind::TextBox: return qobject_cast<QLineEdit*>(&widget) || qobject_cast<QPlainTextEdit*>(&widget);
    case ControlKind::Label: return qobject_cast<QLabel*>(&widget);
    case ControlKind::Frame: return qobject_cast<QGroupBox*>(&widget);
    case ControlKind::Button: return qobject_cast<QPushButton*>(&widget);
    case ControlKind::CheckBox: return qobject_cast<QCheckBox*>(&widget);
    case ControlKind::OptionButton: return qobject_cast<QRadioButton*>(&widget);
    case ControlKind::Picture: return qobject_cast<PictureWidget*>(&widget);
    case ControlKind::ProgressBar: return qobject_cast<QProgressBar*>(&widget);
    case ControlKind::ListBox: return qobject_cast<QListWidget*>(&widget);
    case ControlKind::ToolBar: return qobject_cast<QToolBar*>(&widget);
    case ControlKind::Timer:
    case ControlKind::MenuItem: return false;
    }
    return false;
}

// Hidden by the binder, as opposed to not shown yet because its window is not.
bool ExplicitlyHidden(const QWidget& widget)
{
    return widget.testAttribute(Qt::WA_WState_ExplicitShowHide) && widget.testAttribute(Qt::WA_WState_Hidden);
}

// A classic label shows '&' as the mark of an access key, not as a character.
QString LabelText(const std::string& caption) { return Text(PlainCaption(caption)); }

Qt::CheckState CheckState(int value)
{
    return value == 1 ? Qt::Checked : value == 2 ? Qt::PartiallyChecked : Qt::Unchecked;
}

// The font a text box names; a name of the Courier family keeps a fixed pitch where the
// desktop has no such font.
QFont NamedFont(QFont font, const std::string& name)
{
    font.setFamily(Text(name));
    if (name.find("Courier") != std::string::npos || name.find("Mono") != std::string::npos)
        font.setStyleHint(QFont::TypeWriter);
    return font;
}

struct Selection {
    int start;
    int end;
};

Selection WidgetSelection(QWidget& widget)
{
    if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
        if (line->hasSelectedText())
            return {line->selectionStart(), line->selectionEnd()};
        return {line->cursorPosition(), line->cursorPosition()};
    }
    const QTextCursor cursor = static_cast<QPlainTextEdit&>(widget).textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd()};
}

QString WidgetText(QWidget& widget)
{
    if (auto* line = qobject_cast<QLineEdit*>(&widget))
        return line->text();
    return static_cast<QPlainTextEdit&>(widget).toPlainText();
}

// A key whose text the model types: printable characters without Ctrl or Alt.
bool Typed(const QKeyEvent& event)
{
    if ((event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0 || event.text().isEmpty())
        return false;
    for (const QChar c : event.text()) {
        if (!c.isPrint())
            return false;
    }
    return true;
}

// Is this key a shortcut of the window's menus? Then it goes to the menu, not the text box.
bool WindowShortcut(QWidget& widget, const QKeyEvent& event)
{
    const QKeySequence pressed(event.keyCombination());
    for (const QAction* action : widget.window()->findChildren<QAction*>()) {
        if (!action->shortcut().isEmpty() && action->shortcut().matches(pressed) == QKeySequence::ExactMatch)
            return true;
    }
    return false;
}

} // namespace

FormBinder::FormBinder(forms::Form& form, QWidget& root) : QObject(&root), form_(form), root_(root)
{
    ++syncing_;
    bindMenus();
    for (forms::Control* control : form_.controls()) {
        if (auto* toolBar = dynamic_cast<forms::ToolBar*>(control))
            bindToolBar(*toolBar);
        else if (control->kind() != forms::ControlKind::Timer && control->kind() != forms::ControlKind::MenuItem)
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

void FormBinder::bindToolBar(forms::ToolBar& toolBar)
{
    auto* bar = root_.findChild<QToolBar*>(QString::fromStdString(toolBar.name()));
    if (!bar) {
        unbound_.push_back(toolBar.name());
        return;
    }
    bindings_[&toolBar].widget = bar;
    for (QAction* action : BuildToolBar(toolBar, *bar)) {
        if (action->isSeparator())
            continue;
        const std::string key = forms::Utf8ToAnsi(action->data().toString().toStdString());
        connect(action, &QAction::triggered, this,
                [this, &toolBar, key] { act(toolBar, [&toolBar, key] { toolBar.pressButton(key); }); });
    }
}

void FormBinder::bindWidget(forms::Control& control)
{
    auto* widget = root_.findChild<QWidget*>(QString::fromStdString(control.name()));
    if (!widget || !Fits(control.kind(), *widget)) {
        unbound_.push_back(control.name());
        return;
    }
    bindings_[&control].widget = widget;
    if (auto* box = dynamic_cast<forms::TextBox*>(&control)) {
        if (!box->fontName.empty())
            widget->setFont(NamedFont(widget->font(), box->fontName));
        connectText(*box, *widget);
    }
    connectOperator(control, *widget);
}

void FormBinder::connectOperator(forms::Control& control, QWidget& widget)
{
    const auto click = [this, &control] { act(control, [&control] { control.operatorClick(); }); };
    if (auto* button = qobject_cast<QPushButton*>(&widget)) {
        connect(button, &QPushButton::clicked, this, click);
    } else if (auto* check = qobject_cast<QCheckBox*>(&widget)) {
        connect(check, &QCheckBox::clicked, this, click);
    } else if (auto* option = qobject_cast<QRadioButton*>(&widget)) {
        // The model keeps its groups by name, not by parent widget.
        option->setAutoExclusive(false);
        connect(option, &QRadioButton::clicked, this, click);
    } else if (auto* picture = qobject_cast<PictureWidget*>(&widget)) {
        connect(picture, &PictureWidget::clicked, this, click);
        connect(picture, &PictureWidget::doubleClicked, this,
                [this, &control] { act(control, [&control] { control.operatorDoubleClick(); }); });
        connect(picture, &PictureWidget::mouseDown, this, [this, &control](int button) {
            act(control, [&control, button] { control.operatorMouseDown(button); });
        });
    } else if (auto* list = qobject_cast<QListWidget*>(&widget)) {
        auto& box = static_cast<forms::ListBox&>(control);
        connect(list, &QListWidget::currentRowChanged, this, [this, &box](int row) {
            if (syncing_ == 0)
                act(box, [&box, row] { box.setListIndex(row); });
        });
    }
}

void FormBinder::connectText(forms::TextBox& box, QWidget& widget)
{
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
    const Selection selection = WidgetSelection(widget);
    act(box, [&] {
        box.operatorSetText(ModelText(shown, box.multiLine));
        // The edit put the model's caret at the end; the operator's caret is where the widget has it.
        const int start = ModelPosition(box.text(), selection.start, box.multiLine);
        const int end = ModelPosition(box.text(), selection.end, box.multiLine);
        box.setSelStart(start);
        box.setSelLength(end - start);
    });
}

void FormBinder::selectionMoved(forms::TextBox& box, QWidget& widget)
{
    // While the widget's text is ahead of the model, its positions mean nothing there yet.
    if (WidgetText(widget) != ShownText(box.text(), box.multiLine))
        return;
    const Selection selection = WidgetSelection(widget);
    const int start = ModelPosition(box.text(), selection.start, box.multiLine);
    const int end = ModelPosition(box.text(), selection.end, box.multiLine);
    if (start == box.selStart() && end - start == box.selLength())
        return;
    act(box, [&] {
        box.setSelStart(start);
        box.setSelLength(end - start);
    });
}

bool FormBinder::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == window_) {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize
            || event->type() == QEvent::WindowStateChange)
            reportGeometry();
        return false;
    }
    const auto it = textWidgets_.find(watched);
    if (it == textWidgets_.end() || !attached_)
        return false;
    auto& key = static_cast<QKeyEvent&>(*event);
    if (event->type() == QEvent::ShortcutOverride) {
        // Left unaccepted, the key reaches the window's menu shortcut instead of the box.
        return WindowShortcut(static_cast<QWidget&>(*watched), key);
    }
    if (event->type() == QEvent::KeyPress)
        return textKey(*it->second, key);
    return false;
}

bool FormBinder::textKey(forms::TextBox& box, QKeyEvent& event)
{
    if ((event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0)
        return false; // the box's own editing keys (copy, select all, undo)
    int code = 0;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (pressStandardButton(Qt::Key_Return))
            return true;
        code = forms::kKeyEnter;
        break;
    case Qt::Key_Escape:
        if (pressStandardButton(Qt::Key_Escape))
            return true;
        code = forms::kKeyEscape;
        break;
    case Qt::Key_Backspace: code = forms::kKeyBackspace; break;
    default:
        if (!Typed(event))
            return false; // caret movement and deletion: the widget edits, the model follows
        act(box, [&] { box.operatorType(ModelText(event.text(), false)); });
        return true;
    }
    act(box, [&] { box.operatorKey(code); });
    return true;
}

bool FormBinder::pressStandardButton(int qtKey)
{
    if (!attached_)
        return false;
    for (forms::Control* control : form_.controls()) {
        auto* button = dynamic_cast<forms::Button*>(control);
        if (!button || !button->enabled() || !button->visible())
            continue;
        if ((qtKey == Qt::Key_Return && button->isDefault) || (qtKey == Qt::Key_Escape && button->isCancel)) {
            act(*button, [button] { button->operatorClick(); });
            return true;
        }
    }
    return false;
}

void FormBinder::watchWindow(QWidget& window)
{
    window_ = &window;
    window.installEventFilter(this);
    reportGeometry();
}

void FormBinder::reportGeometry()
{
    if (!attached_ || !window_)
        return;
    const QRect place = window_->isWindow() ? window_->frameGeometry() : window_->geometry();
    form_.left = place.x();
    form_.top = place.y();
    form_.width = place.width();
    form_.height = place.height();
    form_.windowState = window_->isMinimized()   ? forms::WindowState::Minimized
                        : window_->isMaximized() ? forms::WindowState::Maximized
                                                 : forms::WindowState::Normal;
}

void FormBinder::controlChanged(forms::Control& control)
{
    if (attached_)
        sync(control);
}

void FormBinder::captionChanged(forms::Form& form)
{
    const QString title = Text(form.caption());
    if (root_.windowTitle() != title)
        root_.setWindowTitle(title);
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
            if (action->text() != Text(item->caption()))
                action->setText(Text(item->caption()));
        }
    } else if (QWidget* widget = it->second.widget) {
        if (widget->testAttribute(Qt::WA_ForceDisabled) == control.enabled())
            widget->setEnabled(control.enabled());
        if (ExplicitlyHidden(*widget) == control.visible())
            widget->setVisible(control.visible());
        syncWidget(control, *widget);
    }
    --syncing_;
}

void FormBinder::syncWidget(forms::Control& control, QWidget& widget)
{
    if (auto* box = dynamic_cast<forms::TextBox*>(&control)) {
        syncText(*box, widget);
    } else if (auto* label = qobject_cast<QLabel*>(&widget)) {
        const QString text = LabelText(static_cast<forms::Label&>(control).caption());
        if (label->text() != text)
            label->setText(text);
    } else if (auto* frame = qobject_cast<QGroupBox*>(&widget)) {
        const QString title = Text(static_cast<forms::Frame&>(control).caption());
        if (frame->title() != title)
            frame->setTitle(title);
    } else if (auto* push = qobject_cast<QPushButton*>(&widget)) {
        auto& button = static_cast<forms::Button&>(control);
        if (push->text() != Text(button.caption()))
            push->setText(Text(button.caption()));
        if (push->toolTip() != Text(button.toolTip))
            push->setToolTip(Text(button.toolTip));
        if (push->isDefault() != button.isDefault)
            push->setDefault(button.isDefault);
    } else if (auto* check = qobject_cast<QCheckBox*>(&widget)) {
        auto& box = static_cast<forms::CheckBox&>(control);
        if (check->text() != Text(box.caption()))
            check->setText(Text(box.caption()));
        if (check->checkState() != CheckState(box.value()))
            check->setCheckState(CheckState(box.value()));
    } else if (auto* radio = qobject_cast<QRadioButton*>(&widget)) {
        auto& option = static_cast<forms::OptionButton&>(control);
        if (radio->text() != Text(option.caption()))
            radio->setText(Text(option.caption()));
        if (radio->isChecked() != option.value())
            radio->setChecked(option.value());
    } else if (auto* picture = qobject_cast<PictureWidget*>(&widget)) {
        auto& model = static_cast<forms::Picture&>(control);
        picture->setPicture(Text(model.picture()));
        if (picture->toolTip() != Text(model.toolTip))
            picture->setToolTip(Text(model.toolTip));
    } else if (auto* bar = qobject_cast<QProgressBar*>(&widget)) {
        auto& progress = static_cast<forms::ProgressBar&>(control);
        if (bar->minimum() != progress.min() || bar->maximum() != progress.max())
            bar->setRange(progress.min(), progress.max());
        if (bar->value() != progress.value())
            bar->setValue(progress.value());
    } else if (auto* list = qobject_cast<QListWidget*>(&widget)) {
        auto& box = static_cast<forms::ListBox&>(control);
        bool same = list->count() == static_cast<int>(box.items().size());
        for (int i = 0; same && i < list->count(); ++i)
            same = list->item(i)->text() == Text(box.items()[static_cast<std::size_t>(i)]);
        if (!same) {
            list->clear();
            for (const std::string& item : box.items())
                list->addItem(Text(item));
        }
        if (list->currentRow() != box.listIndex())
            list->setCurrentRow(box.listIndex());
    }
}

void FormBinder::syncText(forms::TextBox& box, QWidget& widget)
{
    const QString shown = ShownText(box.text(), box.multiLine);
    const int start = ShownPosition(box.text(), box.selStart(), box.multiLine);
    const int end = ShownPosition(box.text(), box.selStart() + box.selLength(), box.multiLine);
    if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
        if (line->isReadOnly() != box.locked)
            line->setReadOnly(box.locked);
        if (line->text() != shown)
            line->setText(shown);
        const Selection now = WidgetSelection(*line);
        if (now.start != start || now.end != end) {
            if (end > start)
                line->setSelection(start, end - start);
            else
                line->setCursorPosition(start);
        }
        return;
    }
    auto& text = static_cast<QPlainTextEdit&>(widget);
    if (text.isReadOnly() != box.locked) {
        text.setReadOnly(box.locked);
        // A locked box still lets the operator select and copy with the keyboard.
        if (box.locked)
            text.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    const QString current = text.toPlainText();
    if (current != shown) {
        if (!current.isEmpty() && shown.startsWith(current)) {
            // A log that grows at its end: only the new part is laid out.
            QTextCursor cursor(text.document());
            cursor.movePosition(QTextCursor::End);
            cursor.insertText(shown.mid(current.size()));
        } else {
            text.setPlainText(shown);
        }
    }
    const Selection now = WidgetSelection(text);
    if (now.start != start || now.end != end) {
        QTextCursor cursor = text.textCursor();
        cursor.setPosition(start);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        text.setTextCursor(cursor);
        text.ensureCursorVisible();
    }
}

} // namespace marlune::qt
