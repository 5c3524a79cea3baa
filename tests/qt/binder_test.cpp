// The binder carries model changes to widgets and operators' actions to the model's events.
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextBlock>

#include "forms/control.h"
#include "qt/form_binder.h"
#include "qt/form_layouts.h"
#include "qt/picture_widget.h"
#include "qt_test_support.h"

namespace marlune::qt::test {
namespace {

using Events = std::vector<std::string>;

// Every event the form raises lands in one log, in order.
class SampleForm final : public forms::Form {
public:
    SampleForm() : forms::Form("Sample", "Sample Form")
    {
        Log.multiLine = true;
        Name.onChange = note("change");
        Name.onKeyDown = [this](int& code) { events.push_back("key" + std::to_string(code)); };
        Log.onKeyPress = [this](int& ascii) { events.push_back("log" + std::to_string(ascii)); };
        Enable.onClick = note("Enable");
        Fast.onClick = note("Fast");
        Lamp.onClick = note("click");
        Lamp.onDblClick = note("dblclick");
        Lamp.onMouseDown = [this](int button) { events.push_back("down" + std::to_string(button)); };
        Ok.onClick = note("Ok");
    }
    std::function<void()> note(const char* event)
    {
        return [this, event] { events.push_back(event); };
    }

    Events events;
    forms::TextBox& Name = add<forms::TextBox>("Name");
    forms::TextBox& Log = add<forms::TextBox>("Log");
    forms::Label& Caption = add<forms::Label>("Caption", "&Speed");
    forms::CheckBox& Enable = add<forms::CheckBox>("Enable", "Enable");
    forms::OptionButton& Slow = add<forms::OptionButton>("Slow", "speed", "Slow", true);
    forms::OptionButton& Fast = add<forms::OptionButton>("Fast", "speed", "Fast");
    forms::OptionButton& Metric = add<forms::OptionButton>("Metric", "units", "Metric", true);
    forms::Picture& Lamp = add<forms::Picture>("Lamp", "LedOff");
    forms::Button& Ok = add<forms::Button>("Ok", "OK");
};

QWidget& LaidOut(QWidget& root, const forms::Form& form)
{
    SetUpPlainLayout(form, root);
    root.show();
    return root;
}

class Binder : public testing::Test {
protected:
    template <class W>
    W* find(const char* name)
    {
        return qobject_cast<W*>(binder.widget(name));
    }

    QtDesk desk;
    SampleForm form;
    QWidget root;
    FormBinder binder{form, LaidOut(root, form)};
    QLineEdit* name = find<QLineEdit>("Name");
    QPlainTextEdit* log = find<QPlainTextEdit>("Log");
    QCheckBox* enable = find<QCheckBox>("Enable");
    QRadioButton* slow = find<QRadioButton>("Slow");
    QRadioButton* fast = find<QRadioButton>("Fast");
    PictureWidget* lamp = find<PictureWidget>("Lamp");
};

TEST_F(Binder, ShowsTheModelAtFirstAndFollowsItsChanges)
{
    ASSERT_TRUE(binder.unbound().empty());
    EXPECT_EQ(root.windowTitle(), "Sample Form");
    EXPECT_EQ(find<QLabel>("Caption")->text(), "Speed"); // a label's access-key mark is no character
    EXPECT_TRUE(slow->isChecked());
    EXPECT_EQ(lamp->picture(), "LedOff");

    form.Name.setText("Gr\xf6\xdf"
                      "e");
    EXPECT_EQ(name->text(), QString::fromUtf8("Größe"));
    form.Fast.setValue(true);
    EXPECT_TRUE(fast->isChecked());
    EXPECT_FALSE(slow->isChecked());
    form.Lamp.setPicture("OutputOn");
    EXPECT_EQ(lamp->picture(), "OutputOn");
    form.Ok.setEnabled(false);
    EXPECT_FALSE(find<QPushButton>("Ok")->isEnabled());
    form.Caption.setVisible(false);
    EXPECT_TRUE(find<QLabel>("Caption")->isHidden());
    form.setCaption("Other");
    EXPECT_EQ(root.windowTitle(), "Other");
    form.setFocus(form.Name);
    EXPECT_EQ(root.focusWidget(), name);
}

TEST_F(Binder, AModelNoticeWithoutANewValueLeavesTheWidgetAlone)
{
    form.Log.setText("line 1\r\nline 2\r\n");
    int textChanges = 0;
    QObject::connect(log, &QPlainTextEdit::textChanged, [&] { ++textChanges; });
    const int revision = log->document()->revision();
    log->document()->firstBlock().setUserState(7); // gone when the whole text is laid out anew

    binder.controlChanged(form.Log);
    form.Log.setSelStart(3); // the caret moves, the text stays
    EXPECT_EQ(textChanges, 0);
    EXPECT_EQ(log->document()->revision(), revision);
    EXPECT_EQ(log->textCursor().position(), 3);

    form.Log.setText(form.Log.text() + "line 3\r\n");
    EXPECT_EQ(textChanges, 1);
    EXPECT_EQ(log->toPlainText(), "line 1\nline 2\nline 3\n");
    EXPECT_EQ(log->document()->firstBlock().userState(), 7);
}

TEST_F(Binder, KeysRunTheModelsKeyEventsAndEnterPressesTheDefaultButton)
{
    Type(name, "ab");
    Key(name, Qt::Key_Backspace);
    Type(name, "c");
    // A key handler that swallows the key keeps it out of the text.
    form.Name.onKeyPress = [](int& ascii) { ascii = ascii == 'x' ? 0 : ascii; };
    Type(name, "x");
    Key(name, Qt::Key_Return);
    form.Ok.isDefault = true;
    Key(name, Qt::Key_Return);
    EXPECT_EQ(form.Name.text(), "ac");
    EXPECT_EQ(name->text(), "ac");
    EXPECT_EQ(name->cursorPosition(), 2);

    // A locked box takes no typing, but its key events run.
    form.Log.locked = true;
    form.Log.setText("log");
    EXPECT_TRUE(log->isReadOnly());
    Type(log, "q");
    EXPECT_EQ(form.Log.text(), "log");
    EXPECT_EQ(log->toPlainText(), "log");
    EXPECT_EQ(form.events, (Events{"key65", "change", "key66", "change", "key8", "change", "key67", "change", "key88",
                                   "key13", "Ok", "log113"}));
}

TEST_F(Binder, WidgetEditsReachTheModelWithTheCaretWhereTheOperatorLeftIt)
{
    form.Name.setText("ad");
    QApplication::clipboard()->setText(QStringLiteral("bc"));
    name->setCursorPosition(1);
    EXPECT_EQ(form.Name.selStart(), 1);
    name->paste();
    EXPECT_EQ(form.Name.text(), "abcd");
    EXPECT_EQ(form.events, (Events{"change", "change"}));
    EXPECT_EQ(form.Name.selStart(), 3);
    EXPECT_EQ(name->cursorPosition(), 3);
    name->setSelection(1, 2);
    EXPECT_EQ(form.Name.selText(), "bc");

    // Line breaks and carets travel between CR LF and the widget's LF.
    form.Log.setText("ab\r\ncd");
    EXPECT_EQ(log->toPlainText(), "ab\ncd");
    QTextCursor cursor = log->textCursor();
    cursor.setPosition(3); // before "c"
    log->setTextCursor(cursor);
    EXPECT_EQ(form.Log.selStart(), 4);
    log->insertPlainText(QStringLiteral("x\ny"));
    EXPECT_EQ(form.Log.text(), "ab\r\nx\r\nycd");
    EXPECT_EQ(form.Log.selStart(), 8);
}

TEST_F(Binder, ClicksRaiseClickOnceAndOptionButtonsFollowTheModelsGroups)
{
    enable->click();
    EXPECT_EQ(form.Enable.value(), 1);
    form.Enable.setValue(0);
    EXPECT_FALSE(enable->isChecked());
    fast->click();
    EXPECT_TRUE(form.Fast.value());
    EXPECT_FALSE(form.Slow.value());
    EXPECT_FALSE(slow->isChecked());
    fast->click(); // Qt would take the check off; the model keeps it
    EXPECT_TRUE(fast->isChecked());
    EXPECT_TRUE(find<QRadioButton>("Metric")->isChecked()) << "another group under the same parent stays set";

    const QPointF centre(lamp->width() / 2.0, lamp->height() / 2.0);
    const auto mouse = [&](QEvent::Type type, Qt::MouseButton button) {
        QMouseEvent event(type, centre, lamp->mapToGlobal(centre), button, button, Qt::NoModifier);
        QApplication::sendEvent(lamp, &event);
    };
    mouse(QEvent::MouseButtonPress, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton);
    mouse(QEvent::MouseButtonDblClick, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton);
    mouse(QEvent::MouseButtonPress, Qt::RightButton);
    EXPECT_EQ(form.events, (Events{"Enable", "Enable", "Fast", "down1", "click", "dblclick", "down2"}));
}

TEST_F(Binder, ADetachedBinderNeitherFollowsNorDrivesTheForm)
{
    binder.detach();
    form.Name.setText("after");
    EXPECT_EQ(name->text(), "");
    enable->click();
    EXPECT_EQ(form.events, Events{"change"}); // the model's own change, and no click
    EXPECT_EQ(form.view(), nullptr);
}

} // namespace
} // namespace marlune::qt::test
