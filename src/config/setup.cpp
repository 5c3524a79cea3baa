#include "config/setup.h"

#include "config/setup_map.h"
#include "link/command_exchange.h"
#include "link/controller_variables.h"

namespace marlune::config {

Setup::Setup()
    : ConfigDialog("Setup", "Setup"), IPAddress(add<forms::TextBox>("IPAddress", "0")),
      OK(add<forms::Button>("OK", "OK")), Cancel(add<forms::Button>("Cancel", "Cancel"))
{
    for (const SetupWord& word : SetupWords())
        addBits(word.bits);
    addCaptioned<forms::Frame>({
            {"FrameAutoRun", "Automatic Run at Power Up"},
            {"FramePulsePol", "Pulse Polarity"},
            {"FrameDirPol", "Direction Polarity"},
            {"FrameTwoClock", "Two Clock"},
            {"FrameLimit", "Limit Polarity / Filter Enable/Ramp Home"},
            {"FrameHomePol", "Home Input Polarity"},
            {"FrameInPos", "In Position Input Polarity"},
            {"FrameAlarm", "Alarm Input Polarity"},
            {"FrameDIOC", "Digital IO Configuration (Check - Output)"},
            {"FrameDO", "Digital IO Bootup Output State"},
    });
    addCaptioned<forms::Label>({
            {"IPAddressLabel", "IP Address:"},
            {"DIOCBitLow", "BIT"},
            {"DIOCBitHigh", "BIT"},
            {"DOBitLow", "BIT"},
            {"DOBitHigh", "BIT"},
    });
    OK.onClick = [this] {
        if (downloadSetup() == WriteEnd::Close)
            unload();
    };
    Cancel.onClick = [this] { unload(); };
}

void Setup::formLoad()
{
    readController([this] {
        for (const SetupWord& word : SetupWords())
            ShowBits(link::GetVar(word.number), word.bits, *this);
        readText("IPA", IPAddress);
    });
}

ConfigDialog::WriteEnd Setup::downloadSetup()
{
    std::int32_t controllerI2 = 0;
    const auto readCarried = [&controllerI2] { return ReadSharedWord(controllerI2); };
    return writeController(false, readCarried, [this, &controllerI2] {
        for (const SetupWord& word : SetupWords()) {
            const std::int32_t boxes = PackBits(word.bits, *this);
            link::SetVar(word.number, word.number == 2 ? SetupI2(boxes, controllerI2) : boxes);
        }
        std::string command = "IPA=" + IPAddress.text();
        std::string reply;
        link::SendCommand(command, reply);
    });
}

} // namespace marlune::config
