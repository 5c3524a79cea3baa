// Every box of the words the setup dialogs read; a bad number's focus; Help without a manual.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "config/setup.h"
#include "config/setup_encoder_control.h"
#include "config/setup_joystick.h"
#include "headless_fixture.h"
#include "shell/frm_main.h"
#include "shell/program.h"

namespace marlune::config {
namespace {

// The boxes and options that are set, and every text box that does not show "0", in form order.
std::string Shown(const forms::Form& form)
{
    std::string shown;
    for (const forms::Control* control : form.controls()) {
        const auto* box = dynamic_cast<const forms::CheckBox*>(control);
        const auto* option = dynamic_cast<const forms::OptionButton*>(control);
        const auto* text = dynamic_cast<const forms::TextBox*>(control);
        if ((box && box->value() == 1) || (option && option->value()))
            shown += control->name() + " ";
        else if (text && text->text() != "0")
            shown += control->name() + "=" + text->text() + " ";
    }
    return shown;
}

std::string Numbered(const std::string& prefix, int first, int step)
{
    std::string names;
    for (int n = first; n <= 24; n += step)
        names += prefix + std::to_string(n) + " ";
    return names;
}

struct WordRead {
    const char* form;
    const char* request;
    const char* reply;
    std::string shown;
};

void PrintTo(const WordRead& read, std::ostream* out) { *out << read.form << " " << read.request << "=" << read.reply; }

const std::string kTimesOne = "MultX1 MultY1 MultZ1 MultU1 ";
const std::string kEncoderX = "JoyInputEncX JoyInputEncSelX=X JoyInputEncY JoyInputEncSelY=X JoyInputEncZ "
                              "JoyInputEncSelZ=X JoyInputEncU JoyInputEncSelU=X ";

// Setup's and the encoder dialog's words with every bit set go round whole in their scenarios.
const WordRead kReads[] = {
        {"Setup", "I1", "5592405",
         "AutoRun1 AutoRun3 JoyStick PulsePolX PulsePolY PulsePolZ PulsePolU TwoClockX TwoClockZ RampHome "},
        {"Setup", "I2", "5592405", "HomePolX HomePolZ LimitSwPol InPosX InPosZ AlarmX AlarmZ EnableDecel "},
        {"Setup", "I12", "5592405", Numbered("DIOC", 1, 2)},
        {"Setup", "I13", "11184810", Numbered("DO", 2, 2)},
        {"SetupJoystick", "I22", "16777215",
         "JoyEnableX JoyEnableY JoyEnableZ JoyEnableU JoyEnableSlimX JoyEnableSlimY JoyEnableSlimZ JoyEnableSlimU "
         "JoyDirectionX JoyDirectionY JoyDirectionZ JoyDirectionU JoyInputEncSelX=X JoyInputDIOX "
         "JoyInputEncSelY=Y JoyInputDIOY JoyInputEncSelZ=Z JoyInputDIOZ JoyInputEncSelU=U JoyInputDIOU "},
        {"SetupJoystick", "I22", "5592405",
         "JoyEnableX JoyEnableZ JoyEnableSlimX JoyEnableSlimZ JoyDirectionX JoyDirectionZ JoyInputEncSelX=X "
         "JoyInputAI2X JoyInputEncY JoyInputEncSelY=Z JoyInputEncSelZ=Z JoyInputAI2Z JoyInputEncU JoyInputEncSelU=Z "},
        // X analog input 1, Y a variable, Z the encoder of Y, U the encoder of U.
        {"SetupJoystick", "I22", "6766592",
         "JoyInputEncSelX=X JoyInputAI1X JoyInputEncSelY=Y JoyInputVarY JoyInputEncZ JoyInputEncSelZ=Y "
         "JoyInputEncU JoyInputEncSelU=U "},
        {"SetupJoystick", "I14", "7", "PosOuterSlimX=7 " + kEncoderX},
        {"SetupEncoderControl", "I2", "5592405", "AttempNumber=5 EncEnableX EncEnableZ " + kTimesOne},
        {"SetupEncoderControl", "I7", "5592405", "TolRangeX=1365 TolRangeY=1365 " + kTimesOne},
        // A field of 3 shows the factor 1.
        {"SetupEncoderControl", "I11", "228", "MultX1 MultY2 MultZ4 MultU1 "},
};

class ReadIntoBoxes : public testing::HeadlessFixture, public ::testing::WithParamInterface<WordRead> {};

TEST_P(ReadIntoBoxes, EveryBoxOfTheWordShowsItsBit)
{
    const WordRead& read = GetParam();
    controller.setDefaultReply("0");
    controller.setReply(read.request, read.reply);
    config::Setup setup;
    SetupJoystick joystick;
    SetupEncoderControl encoder;
    forms::Form* const forms[] = {&setup, &joystick, &encoder};
    forms::Form* form =
            *std::find_if(std::begin(forms), std::end(forms), [&](auto* f) { return f->name() == read.form; });
    ASSERT_TRUE(form->load());
    EXPECT_EQ(Shown(*form), read.shown);
    EXPECT_TRUE(messages().empty());
    form->unload();
}

INSTANTIATE_TEST_SUITE_P(Words, ReadIntoBoxes, ::testing::ValuesIn(kReads));

using Dialogs = testing::HeadlessFixture;

TEST_F(Dialogs, TheFirstBadNumberOfTheWriteIsNamedAndFocusedNothingIsSentAndHelpWithoutAManualSaysSo)
{
    controller.setDefaultReply("0");
    SetupJoystick joystick;
    ASSERT_TRUE(joystick.load());
    const std::size_t sent = frames().size();
    joystick.find<forms::TextBox>("PosOuterSlimX")->setText("3000000000");
    forms::TextBox& zeroRange = *joystick.find<forms::TextBox>("JoyZeroRangeY");
    zeroRange.setText("12a");
    joystick.OK.operatorClick();
    EXPECT_EQ(messages(), std::vector<std::string>{"Zero Range Y: \"12a\" is not a number. Enter a whole number from "
                                                   "-2147483648 to 2147483647."});
    EXPECT_EQ(joystick.focused(), &zeroRange);
    EXPECT_EQ(frames().size(), sent);
    EXPECT_TRUE(joystick.loaded());
    shell::Program program;
    program.helpFile.clear();
    program.frame().menuItem("mnuHelpContents")->onClick();
    ASSERT_EQ(platform.messages().size(), 2u);
    const forms::MessageRequest& shown = platform.messages().back().request;
    EXPECT_EQ(shown.text, "Unable to display Help Contents. There is no Help associated with this project.");
    EXPECT_EQ(shown.title, "MarluneDesk");
    EXPECT_EQ(shown.icon, forms::MessageIcon::Information);
}

} // namespace
} // namespace marlune::config
