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
#include "headless/headless_platform.h"
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

TEST_F(Binder, ShowsTheModelAtFirstAndFollowsItsChangesOnly)
{
    ASSERT_TRUE(binder.unbound().empty());
    auto* caption = find<QLabel>("Caption");
    auto* ok = find<QPushButton>("Ok");
    // Title, label (whose access-key mark is no character), text, picture, and the checked
    // options with the button's and the label's state.
    const auto shown = [&] {
        const QString state = QString(slow->isChecked() ? "Slow" : "") + (fast->isChecked() ? "Fast" : "")
                              + (ok->isEnabled() ? "" : " disabled") + (caption->isHidden() ? " hidden" : "");
        return QStringList{root.windowTitle(), caption->text(), name->text(), lamp->picture(), state};
    };
    EXPECT_EQ(shown(), (QStringList{"Sample Form", "Speed", "", "LedOff", "Slow"}));
    form.setCaption("Other");
    form.Name.setText("Gr\xf6\xdf"
                      "e");
    form.Fast.setValue(true);
    form.Lamp.setPicture("OutputOn");
    form.Ok.setEnabled(false);
    form.Caption.setVisible(false);
    EXPECT_EQ(shown(), (QStringList{"Other", "Speed", QString::fromUtf8("Größe"), "OutputOn", "Fast disabled hidden"}));
    form.setFocus(form.Name);
    EXPECT_EQ(root.focusWidget(), name);

    // A notice without a new value leaves the widget alone; a growing log gets only its new line,
    // a key typed inside only its character, and only a text with nothing kept is laid out anew.
    form.Log.setText("line 1\r\nline 2\r\n");
    log->document()->firstBlock().setUserState(7); // gone when the whole text is laid out anew
    binder.controlChanged(form.Log);
    form.Log.setSelStart(3); // the caret moves, the text stays
    EXPECT_EQ(log->textCursor().position(), 3);
    form.Log.setText(form.Log.text() + "line 3\r\n");
    EXPECT_EQ(log->toPlainText(), "line 1\nline 2\nline 3\n");
    EXPECT_EQ(log->document()->firstBlock().userState(), 7);
    form.Log.setSelStart(12);
    form.Log.setSelText("\r\n");
    EXPECT_EQ(log->toPlainText(), "line 1\nline\n 2\nline 3\n");
    EXPECT_EQ(log->textCursor().position(), 12);
    EXPECT_EQ(log->document()->firstBlock().userState(), 7);
    form.Log.setText("other");
    EXPECT_EQ(log->document()->firstBlock().userState(), -1);
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
    // Tab is text in a multi-line box that can be edited; in a line or a locked box it moves the focus.
    Key(name, Qt::Key_Tab);
    Key(log, Qt::Key_Tab);
    EXPECT_EQ(form.Log.text(), "\t");
    // A locked box takes no typing, but its key events run.
    form.Log.locked = true;
    Key(log, Qt::Key_Tab);
    form.Log.setText("log");
    Type(log, "q");
    EXPECT_TRUE(log->isReadOnly());
    EXPECT_EQ((QStringList{QString::fromStdString(form.Name.text()), name->text(),
                           QString::fromStdString(form.Log.text()), log->toPlainText()}),
              (QStringList{"ac", "ac", "log", "log"}));
    EXPECT_EQ(name->cursorPosition(), 2);
    EXPECT_EQ(form.events, (Events{"key65", "change", "key66", "change", "key8", "change", "key67", "change", "key88",
                                   "key13", "Ok", "log9", "log113"}));
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
    EXPECT_EQ((std::vector{form.Name.selStart(), name->cursorPosition()}), (std::vector{3, 3}));
    name->setSelection(1, 2);
    EXPECT_EQ(form.Name.selText(), "bc");

    // Line breaks and carets travel between CR LF and the widget's LF.
    form.Log.setText("ab\r\ncd");
    QTextCursor cursor = log->textCursor();
    cursor.setPosition(3); // before "c"
    log->setTextCursor(cursor);
    EXPECT_EQ(form.Log.selStart(), 4);
    log->insertPlainText(QStringLiteral("x\ny"));
    EXPECT_EQ(form.Log.text(), "ab\r\nx\r\nycd");
    EXPECT_EQ(form.Log.selStart(), 8);
}

// What the code page cannot hold is refused, pasted or typed, and named; the rest goes in.
TEST_F(Binder, TextTheCodePageCannotHoldIsRefusedNamingTheCharacter)
{
    headless::HeadlessPlatform seen; // takes the messages, which the desktop would show modally
    forms::SetPlatform(&seen);
    QApplication::clipboard()->setText(QString::fromUtf8("\xc3\xa9\xe2\x82\xac\xce\xa9")); // é€Ω
    name->paste();
    Type(name, QString::fromUtf8("\xef\xbc\xb6")); // Ｖ
    Type(name, QString::fromUtf8("\xc3\xa9"));
    forms::SetPlatform(&desk.platform);
    EXPECT_EQ(form.Name.text(), "\xe9");
    EXPECT_EQ(name->text(), QString::fromUtf8("\xc3\xa9"));
    ASSERT_EQ(seen.messages().size(), 2u);
    const std::string refused = " cannot be written in the controller's code page, so the text was left as it was and "
                                "nothing was sent.";
    EXPECT_EQ(seen.messages()[0].request.text, "The character U+03A9" + refused);
    EXPECT_EQ(seen.messages()[1].request.text, "The character U+FF36" + refused);
}

TEST_F(Binder, ClicksRaiseClickOnceOptionButtonsFollowTheModelsGroupsAndADetachedBinderDoesNothing)
{
    enable->click();
    EXPECT_EQ(form.Enable.value(), 1);
    form.Enable.setValue(0);
    EXPECT_FALSE(enable->isChecked());
    fast->click();
    fast->click(); // Qt would take the check off; the model keeps it
    // Fast and Slow in the model and on screen, and Metric: another group under the same parent.
    EXPECT_EQ((std::vector<bool>{form.Fast.value(), form.Slow.value(), fast->isChecked(), slow->isChecked(),
                                 find<QRadioButton>("Metric")->isChecked()}),
              (std::vector<bool>{true, false, true, false, true}));

    const QPointF centre(lamp->width() / 2.0, lamp->height() / 2.0);
    for (const auto& [type, button] : {std::pair{QEvent::MouseButtonPress, Qt::LeftButton},
                                       {QEvent::MouseButtonRelease, Qt::LeftButton},
                                       {QEvent::MouseButtonDblClick, Qt::LeftButton},
                                       {QEvent::MouseButtonRelease, Qt::LeftButton},
                                       {QEvent::MouseButtonPress, Qt::RightButton}}) {
        QMouseEvent event(type, centre, lamp->mapToGlobal(centre), button, button, Qt::NoModifier);
        QApplication::sendEvent(lamp, &event);
    }

    binder.detach();
    form.Name.setText("after"); // the model's own change, and no click below
    enable->click();
    EXPECT_EQ(name->text(), "");
    EXPECT_EQ(form.view(), nullptr);
    EXPECT_EQ(form.events, (Events{"Enable", "Enable", "Fast", "down1", "click", "dblclick", "down2", "change"}));
}

} // namespace
} // namespace marlune::qt::test
