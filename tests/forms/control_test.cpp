#include <gtest/gtest.h>

#include <vector>

#include "forms/form.h"

namespace marlune::forms {
namespace {

// A form whose controls count their events; nothing here needs a platform.
class Sample final : public Form {
public:
    Sample() : Form("Sample", "Sample form")
    {
        box.onClick = [this] { events.push_back("box"); };
        a.onClick = [this] { events.push_back("a"); };
        b.onClick = [this] { events.push_back("b"); };
        text.onChange = [this] { events.push_back("change"); };
        text.onKeyPress = [this](int& ascii) {
            if (ascii == 'x')
                ascii = 0;
        };
    }
    CheckBox& box = add<CheckBox>("box", "Box");
    OptionButton& a = add<OptionButton>("a", "group", "A", true);
    OptionButton& b = add<OptionButton>("b", "group", "B");
    OptionButton& other = add<OptionButton>("other", "elsewhere", "Other", true);
    TextBox& text = add<TextBox>("text", "start");
    std::vector<std::string> events;
};

TEST(Controls, CheckBoxRaisesClickOnlyWhenItsValueChanges)
{
    Sample f;
    f.box.setValue(1);
    f.box.setValue(1);
    f.box.operatorClick();
    EXPECT_EQ(f.box.value(), 0);
    EXPECT_EQ(f.events, (std::vector<std::string>{"box", "box"}));
}

TEST(Controls, OptionButtonsAreExclusiveWithinTheirGroupAndRaiseClick)
{
    Sample f;
    f.b.setValue(true);
    EXPECT_TRUE(f.b.value());
    EXPECT_FALSE(f.a.value());
    EXPECT_TRUE(f.other.value()) << "another group is not touched";
    f.b.operatorClick();
    EXPECT_EQ(f.events, (std::vector<std::string>{"b"})) << "selecting the selected button raises nothing";
}

TEST(Controls, TextChangeAndTyping)
{
    Sample f;
    f.text.setText("start");
    EXPECT_TRUE(f.events.empty());
    f.text.setSelStart(2);
    f.text.setSelLength(2);
    f.text.operatorType("Ax"); // x is swallowed by KeyPress
    EXPECT_EQ(f.text.text(), "stAt");
    EXPECT_EQ(f.text.selStart(), 3);
    f.text.operatorKey(kKeyBackspace);
    EXPECT_EQ(f.text.text(), "stt");
    EXPECT_EQ(f.events, (std::vector<std::string>{"change", "change"}));
}

TEST(Controls, EnterAndTabEditOnlyMultiLineBoxes)
{
    Sample f;
    f.text.setText("");
    f.text.operatorKey(kKeyEnter);
    f.text.operatorKey(kKeyTab);
    EXPECT_EQ(f.text.text(), "");
    f.text.multiLine = true;
    f.text.operatorKey(kKeyEnter);
    f.text.operatorKey(kKeyTab);
    EXPECT_EQ(f.text.text(), "\r\n\t");
    f.text.locked = true;
    f.text.operatorType("abc");
    EXPECT_EQ(f.text.text(), "\r\n\t");
}

TEST(Controls, SelectionIsClampedToTheText)
{
    Sample f;
    f.text.setSelStart(99);
    EXPECT_EQ(f.text.selStart(), 5);
    f.text.setSelStart(1);
    f.text.setSelLength(99);
    EXPECT_EQ(f.text.selLength(), 4);
    EXPECT_EQ(f.text.selText(), "tart");
    EXPECT_EQ(f.text.property("selstart"), "1");
    EXPECT_EQ(f.text.property("sellength"), "4");
    EXPECT_EQ(f.text.property("picture"), std::nullopt);
}

} // namespace
} // namespace marlune::forms
