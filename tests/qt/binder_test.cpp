// The binder carries model changes to widgets and operators' actions to the model's events.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include "forms/control.h"
#include "qt/form_binder.h"
#include "qt/picture_widget.h"
#include "qt_test_support.h"

namespace marlune::qt::test {
namespace {

class SampleForm final : public forms::Form {
public:
    SampleForm()
        : forms::Form("Sample", "Sample Form"), Name(add<forms::TextBox>("Name")), Log(add<forms::TextBox>("Log")),
          Caption(add<forms::Label>("Caption", "&Speed")), Enable(add<forms::CheckBox>("Enable", "Enable")),
          Slow(add<forms::OptionButton>("Slow", "speed", "Slow", true)),
          Fast(add<forms::OptionButton>("Fast", "speed", "Fast")), Lamp(add<forms::Picture>("Lamp", "LedOff")),
          Ok(add<forms::Button>("Ok", "OK"))
    {
        Log.multiLine = true;
        Name.onChange = [this] { ++changes; };
        Name.onKeyDown = [this](int& code) { keyDowns.push_back(code); };
        Enable.onClick = [this] { ++enableClicks; };
        Fast.onClick = [this] { ++fastClicks; };
        Lamp.onClick = [this] { events.push_back("click"); };
        Lamp.onDblClick = [this] { events.push_back("dblclick"); };
        Lamp.onMouseDown = [this](int button) { events.push_back("down" + std::to_string(button)); };
        Ok.onClick = [this] { ++okClicks; };
    }

    forms::TextBox& Name;
    forms::TextBox& Log;
    forms::Label& Caption;
    forms::CheckBox& Enable;
    forms::OptionButton& Slow;
    forms::OptionButton& Fast;
    forms::Picture& Lamp;
    forms::Button& Ok;

    int changes = 0;
    int enableClicks = 0;
    int fastClicks = 0;
    int okClicks = 0;
    std::vector<int> keyDowns;
    std::vector<std::string> events;
};

// The widgets a layout would give the sample form, named after its controls.
class SampleWindow {
public:
    SampleWindow()
    {
        auto* layout = new QVBoxLayout(&root);
        name = add<QLineEdit>(layout, "Name");
        log = add<QPlainTextEdit>(layout, "Log");
        caption = add<QLabel>(layout, "Caption");
        enable = add<QCheckBox>(layout, "Enable");
        slow = add<QRadioButton>(layout, "Slow");
        fast = add<QRadioButton>(layout, "Fast");
        lamp = add<PictureWidget>(layout, "Lamp");
        ok = add<QPushButton>(layout, "Ok");
    }

    template <class W>
    W* add(QVBoxLayout* layout, const char* name)
    {
        auto* widget = new W(&root);
        widget->setObjectName(QString::fromLatin1(name));
        layout->addWidget(widget);
        return widget;
    }

    QWidget root;
    QLineEdit* name;
    QPlainTextEdit* log;
    QLabel* caption;
    QCheckBox* enable;
    QRadioButton* slow;
    QRadioButton* fast;
    PictureWidget* lamp;
    QPushButton* ok;
};

void Key(QWidget* widget, int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(widget, &press);
}

void Type(QWidget* widget, const QString& text)
{
    for (const QChar c : text)
        Key(widget, c.toUpper().unicode(), QString(c));
}

class Binder : public testing::Test {
protected:
    Binder() { window.root.show(); }

    QtDesk desk;
    SampleForm form;
    SampleWindow window;
    FormBinder binder{form, window.root};
};

TEST_F(Binder, ShowsTheModelAtFirstAndFollowsItsChanges)
{
    EXPECT_TRUE(binder.unbound().empty());
    EXPECT_EQ(window.root.windowTitle(), "Sample Form");
    EXPECT_EQ(window.caption->text(), "Speed"); // a label's access-key mark is no character
    EXPECT_TRUE(window.slow->isChecked());
    EXPECT_EQ(window.lamp->picture(), "LedOff");

    form.Name.setText("Gr\xf6\xdf"
                      "e");
    EXPECT_EQ(window.name->text(), QString::fromUtf8("Größe"));
    form.Fast.setValue(true);
    EXPECT_TRUE(window.fast->isChecked());
    EXPECT_FALSE(window.slow->isChecked());
    form.Lamp.setPicture("OutputOn");
    EXPECT_EQ(window.lamp->picture(), "OutputOn");
    form.Ok.setEnabled(false);
    EXPECT_FALSE(window.ok->isEnabled());
    form.Caption.setVisible(false);
    EXPECT_TRUE(window.caption->isHidden());
    form.setCaption("Other");
    EXPECT_EQ(window.root.windowTitle(), "Other");
    form.setFocus(form.Name);
    EXPECT_EQ(window.root.focusWidget(), window.name);
}

TEST_F(Binder, AModelNoticeWithoutANewValueLeavesTheWidgetAlone)
{
    form.Log.setText("line 1\r\nline 2\r\n");
    int textChanges = 0;
    QObject::connect(window.log, &QPlainTextEdit::textChanged, [&] { ++textChanges; });
    const int revision = window.log->document()->revision();

    binder.controlChanged(form.Log);
    form.Log.setSelStart(3); // the caret moves, the text stays
    EXPECT_EQ(textChanges, 0);
    EXPECT_EQ(window.log->document()->revision(), revision);
    EXPECT_EQ(window.log->textCursor().position(), 3);

    form.Log.setText(form.Log.text() + "line 3\r\n");
    EXPECT_EQ(textChanges, 1);
    EXPECT_EQ(window.log->toPlainText(), "line 1\nline 2\nline 3\n");
}

TEST_F(Binder, KeysRunTheModelsKeyEventsAndTheWidgetShowsTheResult)
{
    window.name->setFocus();
    Type(window.name, "ab");
    Key(window.name, Qt::Key_Backspace);
    Type(window.name, "c");
    EXPECT_EQ(form.Name.text(), "ac");
    EXPECT_EQ(window.name->text(), "ac");
    EXPECT_EQ(form.keyDowns, (std::vector<int>{'A', 'B', forms::kKeyBackspace, 'C'}));
    EXPECT_EQ(form.changes, 4);
    EXPECT_EQ(window.name->cursorPosition(), 2);

    // A key handler that swallows the key keeps it out of the text.
    form.Name.onKeyPress = [](int& ascii) { ascii = ascii == 'x' ? 0 : ascii; };
    Type(window.name, "x");
    EXPECT_EQ(form.Name.text(), "ac");
}

TEST_F(Binder, EnterGoesToTheDefaultButtonWhenTheFormHasOne)
{
    Key(window.name, Qt::Key_Return);
    EXPECT_EQ(form.keyDowns, std::vector<int>{forms::kKeyEnter});
    EXPECT_EQ(form.okClicks, 0);

    form.Ok.isDefault = true;
    Key(window.name, Qt::Key_Return);
    EXPECT_EQ(form.okClicks, 1);
    EXPECT_EQ(form.keyDowns.size(), 1u);
}

TEST_F(Binder, EditsTheWidgetMakesItselfReachTheModelWithTheCaretWhereTheOperatorLeftIt)
{
    form.Name.setText("ad");
    QApplication::clipboard()->setText(QStringLiteral("bc"));
    window.name->setCursorPosition(1);
    EXPECT_EQ(form.Name.selStart(), 1);
    const int before = form.changes;
    window.name->paste();
    EXPECT_EQ(form.Name.text(), "abcd");
    EXPECT_EQ(form.changes, before + 1);
    EXPECT_EQ(form.Name.selStart(), 3);
    EXPECT_EQ(window.name->cursorPosition(), 3);

    window.name->setSelection(1, 2);
    EXPECT_EQ(form.Name.selStart(), 1);
    EXPECT_EQ(form.Name.selLength(), 2);
    EXPECT_EQ(form.Name.selText(), "bc");
}

TEST_F(Binder, LineBreaksAndCaretsTravelBetweenCrLfAndTheWidget)
{
    form.Log.setText("ab\r\ncd");
    EXPECT_EQ(window.log->toPlainText(), "ab\ncd");
    QTextCursor cursor = window.log->textCursor();
    cursor.setPosition(3); // before "c"
    window.log->setTextCursor(cursor);
    EXPECT_EQ(form.Log.selStart(), 4);

    window.log->insertPlainText(QStringLiteral("x\ny"));
    EXPECT_EQ(form.Log.text(), "ab\r\nx\r\nycd");
    EXPECT_EQ(form.Log.selStart(), 8);
}

TEST_F(Binder, ALockedBoxTakesNoTypingButItsKeyEventsRun)
{
    form.Log.locked = true;
    form.Log.setText("log");
    int presses = 0;
    form.Log.onKeyPress = [&](int&) { ++presses; };
    EXPECT_TRUE(window.log->isReadOnly());
    Type(window.log, "q");
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(form.Log.text(), "log");
    EXPECT_EQ(window.log->toPlainText(), "log");
}

TEST_F(Binder, ACheckBoxClickRaisesClickExactlyOnce)
{
    window.enable->click();
    EXPECT_EQ(form.enableClicks, 1);
    EXPECT_EQ(form.Enable.value(), 1);
    EXPECT_TRUE(window.enable->isChecked());
    form.Enable.setValue(0);
    EXPECT_EQ(form.enableClicks, 2);
    EXPECT_FALSE(window.enable->isChecked());
}

TEST_F(Binder, OptionButtonsFollowTheModelsGroupsAndStaySetOnASecondClick)
{
    window.fast->click();
    EXPECT_TRUE(form.Fast.value());
    EXPECT_FALSE(form.Slow.value());
    EXPECT_FALSE(window.slow->isChecked());
    EXPECT_EQ(form.fastClicks, 1);

    window.fast->click(); // Qt would take the check off; the model keeps it
    EXPECT_TRUE(window.fast->isChecked());
    EXPECT_EQ(form.fastClicks, 1);
}

TEST_F(Binder, PictureMouseEventsReachTheModelInTheirOrder)
{
    const QPointF centre(window.lamp->width() / 2.0, window.lamp->height() / 2.0);
    const auto mouse = [&](QEvent::Type type, Qt::MouseButton button) {
        QMouseEvent event(type, centre, window.lamp->mapToGlobal(centre), button, button, Qt::NoModifier);
        QApplication::sendEvent(window.lamp, &event);
    };
    mouse(QEvent::MouseButtonPress, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton);
    mouse(QEvent::MouseButtonDblClick, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton);
    mouse(QEvent::MouseButtonPress, Qt::RightButton);
    EXPECT_EQ(form.events, (std::vector<std::string>{"down1", "click", "dblclick", "down2"}));
}

TEST_F(Binder, ADetachedBinderNeitherFollowsNorDrivesTheForm)
{
    binder.detach();
    form.Name.setText("after");
    EXPECT_EQ(window.name->text(), "");
    window.enable->click();
    EXPECT_EQ(form.enableClicks, 0);
    EXPECT_EQ(form.view(), nullptr);
}

} // namespace
} // namespace marlune::qt::test
