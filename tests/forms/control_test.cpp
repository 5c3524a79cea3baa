#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "forms/form.h"

namespace marlune::forms {
namespace {

using Log = std::vector<std::string>;

// A form that is its own view: it logs the events of its controls and the controls its view is
// told of. Nothing here needs a platform.
class Sample final : public Form, public FormView {
public:
    Sample() : Form("Sample", "Sample form")
    {
        setView(this);
        for (OptionButton* option : {&a, &b})
            option->onClick = [this, option] { events.push_back(option->name()); };
        text.onChange = [this] { events.push_back(text.text()); };
        text.onKeyPress = [](int& ascii) { ascii = ascii == 'x' ? 0 : ascii; };
        list.onClick = [this] { events.push_back("list " + std::to_string(list.listIndex())); };
    }
    void controlChanged(Control& c) override { views.push_back(c.name() + "=" + c.property("value").value_or("")); }
    void captionChanged(Form&) override {}
    void focusRequested(Control&) override {}

    OptionButton& a = add<OptionButton>("a", "group", "A", true);
    OptionButton& b = add<OptionButton>("b", "group", "B");
    TextBox& text = add<TextBox>("text", "start");
    ProgressBar& bar = add<ProgressBar>("bar", 10, 20);
    ListBox& list = add<ListBox>("list");
    Log events;
    Log views;
};

TEST(Controls, ClickFollowsARealChangeOfValueAndOptionsAreExclusiveInTheirGroup)
{
    Sample f;
    f.b.operatorClick();
    f.b.setValue(true);
    f.a.setValue(true);
    f.a.setValue(false);
    EXPECT_FALSE(f.a.value() || f.b.value()) << "clearing a button selects no other";
    f.list.addItem("X");
    f.list.addItem("Y");
    for (int index : {1, 1, 2, -1, 0})
        f.list.setListIndex(index);
    EXPECT_EQ(f.list.property("text"), "X");
    f.list.clear();
    EXPECT_EQ(f.list.property("value").value() + f.list.property("text").value(), "-1") << "clearing raises no Click";
    EXPECT_EQ(f.events, (Log{"b", "a", "list 1", "list -1", "list 0"}));
}

// The selection of "start" set first, then the keys typed ("\r", "\t" and "\b" are Enter, Tab and
// Backspace; KeyPress swallows 'x'): the selection as set, then the text at every Change.
std::string Typed(bool multiLine, bool locked, int selStart, int selLength, const char* keys)
{
    Sample f;
    f.text.multiLine = multiLine;
    f.text.locked = locked;
    f.text.setSelStart(selStart);
    f.text.setSelLength(selLength);
    std::string seen = *f.text.property("selstart") + "," + *f.text.property("sellength") + " " + f.text.selText();
    f.text.operatorType(keys);
    for (const std::string& text : f.events)
        seen += "|" + text;
    return seen;
}

TEST(Controls, TypingReplacesTheSelectionAndRaisesChangeForEveryRealChange)
{
    EXPECT_EQ(Typed(false, false, 2, 2, "Ax\b"), "2,2 ar|stAt|stt");
    EXPECT_EQ(Typed(false, false, 99, 0, "\r\t!"), "5,0 |start!");
    EXPECT_EQ(Typed(true, false, 1, 99, "\r\t"), "1,4 tart|s\r\n|s\r\n\t");
    EXPECT_EQ(Typed(true, true, 0, 0, "ab\b"), "0,0 ");
    // A whole text or a single key from the operator follows the same rules.
    Sample f;
    f.text.operatorSetText("X1");
    f.text.setText("X1");
    f.text.operatorKey(kKeyBackspace);
    f.text.locked = true;
    f.text.operatorSetText("");
    f.text.operatorKey('A');
    EXPECT_EQ(f.events, (Log{"X1", "X"}));
    EXPECT_EQ(f.text.property("picture"), std::nullopt);
}

TEST(Controls, AProgressBarStartsAtItsMinimumAndStaysWithinItsRange)
{
    Sample f;
    EXPECT_EQ(f.bar.value(), 10);
    for (int value : {15, 15, 99, -3})
        f.bar.setValue(value);
    EXPECT_EQ(f.views, (Log{"bar=15", "bar=20", "bar=10"})) << "the view hears of real changes only";
}

} // namespace
} // namespace marlune::forms
