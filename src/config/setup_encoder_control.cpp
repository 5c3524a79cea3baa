#include "config/setup_encoder_control.h"

#include "config/encoder_map.h"
#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_variables.h"

namespace marlune::config {

namespace {

constexpr const char* kFactors[] = {"1", "2", "4"};

} // namespace

SetupEncoderControl::SetupEncoderControl()
    : ConfigDialog("SetupEncoderControl", "Setup Encoder Control"), EHSPD(add<forms::TextBox>("EHSPD", "0")),
      ELSPD(add<forms::TextBox>("ELSPD", "0")), EACCEL(add<forms::TextBox>("EACCEL", "0")),
      AttempNumber(addNumber("AttempNumber", "Max Correction Attempt")), OK(add<forms::Button>("OK", "OK")),
      Cancel(add<forms::Button>("Cancel", "Cancel"))
{
    for (const PairedWord& word : kPairedWords) {
        addNumber(word.low, word.lowCaption);
        addNumber(word.high, word.highCaption);
    }
    addBits(EncoderEnableBits());
    for (int axis = 0; axis < kAxisCount; ++axis) {
        const std::string letter = kAxisLetters[axis];
        for (std::size_t factor = 0; factor < 3; ++factor)
            Mult[static_cast<std::size_t>(axis)][factor] =
                    &add<forms::OptionButton>("Mult" + letter + kFactors[factor], "Mult" + letter, "", factor == 0);
        add<forms::Label>("MultAxis" + letter, letter);
        add<forms::Label>("RatioAxis" + letter, letter);
        add<forms::Label>("RangeAxis" + letter, letter);
    }
    addCaptioned<forms::Frame>({
            {"FrameEncoder", "Encoder Control"},
            {"FrameLoopSetup", "Semi-Closed Loop Setup"},
            {"FrameControlSetting", "Semi-Closed Loop Control Setting"},
            {"FrameMultiplication", "Multiplication Factor"},
    });
    addCaptioned<forms::Label>({
            {"EHSPDLabel", "Correction HSPD"},
            {"ELSPDLabel", "Correction LSPD"},
            {"EACCELLabel", "Correction ACCEL"},
            {"EncRatioLabel", "Encoder Ratio"},
            {"PulseRatioLabel", "Pulse Ratio"},
            {"TolRangeLabel", "Tolerance Range"},
            {"CorRangeLabel", "Correction Range"},
            {"AttempNumberLabel", "Max Correction Attempt"},
            {"EncEnableLabel", "Enable Encoder Control"},
            {"Mult1Label", "Multiplication x1"},
            {"Mult2Label", "Multiplication x2"},
            {"Mult4Label", "Multiplication x4"},
    });
    OK.onClick = [this] {
        if (downloadEncoderSetup() == WriteEnd::Close)
            unload();
    };
    Cancel.onClick = [this] { unload(); };
}

void SetupEncoderControl::formLoad()
{
    readController([this] {
        for (std::size_t i = 0; i < settings().size(); ++i)
            readText(kCorrectionSettings[i], *settings()[i]);
        for (const PairedWord& word : kPairedWords) {
            const std::int32_t value = link::GetVar(word.number);
            find<forms::TextBox>(word.low)->setText(std::to_string(LowNumber(value)));
            find<forms::TextBox>(word.high)->setText(std::to_string(HighNumber(value)));
        }
        const std::int32_t multiplication = link::GetVar(kMultiplicationWord);
        for (int axis = 0; axis < kAxisCount; ++axis) {
            const auto field = static_cast<std::size_t>(MultiplicationField(multiplication, axis));
            Mult[static_cast<std::size_t>(axis)][field]->setValue(true);
        }
        const std::int32_t i2 = link::GetVar(2);
        AttempNumber.setText(std::to_string(AttemptsOf(i2)));
        ShowBits(i2, EncoderEnableBits(), *this);
    });
}

ConfigDialog::WriteEnd SetupEncoderControl::downloadEncoderSetup()
{
    std::int32_t controllerI2 = 0;
    const auto readCarried = [&controllerI2] { return ReadSharedWord(controllerI2); };
    return writeController(true, readCarried, [this, &controllerI2] {
        for (std::size_t i = 0; i < settings().size(); ++i) {
            std::string command = kCorrectionSettings[i] + settings()[i]->text();
            std::string reply;
            link::SendCommand(command, reply);
        }
        std::int32_t attempts = Number(AttempNumber);
        if (attempts > kAttemptMask || attempts < 0) {
            forms::MsgBox("Attempt Number is 0-15.  Resetting to 1.");
            attempts = 1;
        }
        link::SetVar(2, EncoderI2(controllerI2, PackBits(EncoderEnableBits(), *this), attempts));
        for (const PairedWord& word : kPairedWords) {
            const std::int32_t low = Number(*find<forms::TextBox>(word.low));
            const std::int32_t high = Number(*find<forms::TextBox>(word.high));
            link::SetVar(word.number, PairedWordOf(low, high));
        }
        std::int32_t multiplication = 0;
        for (int axis = 0; axis < kAxisCount; ++axis) {
            const auto& factors = Mult[static_cast<std::size_t>(axis)];
            const int field = factors[0]->value() ? 0 : factors[1]->value() ? 1 : 2;
            multiplication = WithMultiplicationField(multiplication, axis, field);
        }
        link::SetVar(kMultiplicationWord, multiplication);
    });
}

} // namespace marlune::config
