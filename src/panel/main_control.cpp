#include "panel/main_control.h"

#include <utility>

#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "link/open_link.h"
#include "panel/scope.h"

namespace marlune::panel {

namespace {

std::string Axis(const char* prefix, int axis)
{
    return std::string(prefix) + kAxisLetters[static_cast<std::size_t>(axis)];
}

} // namespace

MainControl::MainControl(NewPos& newPos, MonitorAI& monitorAI, tools::ProgramViewer& programViewer)
    : forms::Form("MainControl", "Main Marlune Control"), HSPD(add<forms::TextBox>("HSPD", "0")),
      LSPD(add<forms::TextBox>("LSPD", "0")), ACCEL(add<forms::TextBox>("ACCEL", "0")),
      HomingModeNormal(add<forms::OptionButton>("HomingModeNormal", "HomingMode", "Home Sw", true)),
      HomingModeLimit(add<forms::OptionButton>("HomingModeLimit", "HomingMode", "Limit Sw")),
      HomingModeZ(add<forms::OptionButton>("HomingModeZ", "HomingMode", "Z Chan")),
      RampStop(add<forms::CheckBox>("RampStop", "Ramp Stop", 1)), JoyOn(add<forms::CheckBox>("JoyOn", "Joystick ")),
      ABSMove(add<forms::Button>("ABSMove", "Abs")), MOVEIP(add<forms::Button>("MOVEIP", "Inc +")),
      MOVEIM(add<forms::Button>("MOVEIM", "Inc -")), DATUMMove(add<forms::Button>("DATUMMove", "Datum")),
      HOMEP(add<forms::Button>("HOMEP", "Hm +")), HOMEM(add<forms::Button>("HOMEM", "Hm -")),
      Stop(add<forms::Button>("Stop", "Stop")), Abort(add<forms::Button>("Abort", "Abort")),
      SelProgAll(add<forms::OptionButton>("SelProgAll", "SelProg", "All Prog")),
      RunProg(add<forms::Button>("RunProg", "Run")), StopProg(add<forms::Button>("StopProg", "Stop")),
      PauseProg(add<forms::Button>("PauseProg", "Pause")), ContProg(add<forms::Button>("ContProg", "Cont")),
      PEClear(add<forms::Button>("PEClear", "PClear")), GetErrMsg(add<forms::Button>("GetErrMsg", "Emsg")),
      ViewProg(add<forms::Button>("ViewProg", "View")), MEClear(add<forms::Button>("MEClear", "MClear")),
      AnalogInputs(add<forms::Button>("AnalogInputs", "Analog Inputs")),
      ScopeButton(add<forms::Button>("Scope", "Scope")), ManualCmd(add<forms::TextBox>("ManualCmd")),
      ReplyBox(add<forms::TextBox>("ReplyBox")), Close(add<forms::Button>("Close", "Close")),
      Reconnect(add<forms::Button>("Reconnect", "Reconnect")), Timer1(add<forms::Timer>("Timer1", 500)),
      newPos_(newPos), monitorAI_(monitorAI), programViewer_(programViewer), scope_(std::make_unique<Scope>(*this))
{
    add<forms::Frame>("MotorStatusFrame", "Motor Status");
    add<forms::Frame>("ProgramStatusFrame", "Program Status");
    add<forms::Frame>("MotorControlFrame", "Motor Control ");
    add<forms::Frame>("HomingModeFrame", "Homing Mode");
    add<forms::Frame>("ProgramControlFrame", "Program Control ");
    add<forms::Frame>("DigitalIOFrame", "Configurable Digital IO ");
    add<forms::Frame>("OutputsFrame", "Enable /Clear Outputs ");
    buildCaptions();
    buildStatusControls();
    buildMotionControls();
    buildProgramControls();
    buildIoControls();
    connectMotion();
    connectPrograms();
    connectIo();
    Timer1.onTick = [this] { pollTick(); };
    Close.onClick = [this] { unload(); };
    Reconnect.setVisible(false);
    Reconnect.onClick = [this] { reconnect(); };
    ManualCmd.onKeyDown = [this](int& keyCode) { manualCommandKey(keyCode); };
    ScopeButton.onClick = [this] {
        if (!scope_->loaded())
            scope_->load();
        forms::CurrentPlatform().showOwned(*scope_, *this);
    };
}

MainControl::~MainControl() = default;

// The fixed captions of the panel's columns and rows.
void MainControl::buildCaptions()
{
    static constexpr std::pair<const char*, const char*> kCaptions[] = {
            {"HeaderPulsePos", "Pulse Pos"},
            {"HeaderEncoderPos", "Encoder Pos"},
            {"HeaderPulseSpeed", "Pulse Speed"},
            {"HeaderStatus", "Status"},
            {"HeaderMinusL", "-L"},
            {"HeaderHome", "H"},
            {"HeaderPlusL", "+L"},
            {"HeaderAlarm", "Al"},
            {"HeaderInp", "Inp"},
            {"HeaderIndex", "Z"},
            {"HeaderLatch", "Lat"},
            {"ProgHeaderStatus", "Status"},
            {"ProgHeaderLine", "Line"},
            {"HspdLabel", "Hspd"},
            {"LspdLabel", "Lspd"},
            {"AccelLabel", "Accel"},
            {"EnableLabel", "Enable"},
            {"ClearLabel", "Clear"},
            {"CmdLabel", "Cmd:"},
            {"ReplyLabel", "Reply:"},
    };
    for (const auto& [name, caption] : kCaptions)
        add<forms::Label>(name, caption);
    for (int a = 0; a < 4; ++a) {
        add<forms::Label>(Axis("AxisLabel", a), kAxisLetters[static_cast<std::size_t>(a)]);
        add<forms::Label>("ProgLabel" + std::to_string(a + 1), "Prog " + std::to_string(a + 1));
        add<forms::Label>("OutputLabel" + std::to_string(a + 1), std::to_string(a + 1));
    }
    for (int n = 1; n <= 24; ++n)
        add<forms::Label>("DIOLabel" + std::to_string(n), std::to_string(n));
}

void MainControl::buildStatusControls()
{
    for (int a = 0; a < 4; ++a) {
        const auto i = static_cast<std::size_t>(a);
        Pos[i] = &add<forms::TextBox>(Axis("Pos", a), "0");
        Enc[i] = &add<forms::TextBox>(Axis("Enc", a), "0");
        Spd[i] = &add<forms::TextBox>(Axis("Spd", a), "0");
        Stat[i] = &add<forms::TextBox>(Axis("Stat", a), "0");
        MinusL[i] = &add<forms::Picture>(Axis("MinusL", a), kSwitchOff);
        Home[i] = &add<forms::Picture>(Axis("Home", a), kSwitchOff);
        PlusL[i] = &add<forms::Picture>(Axis("PlusL", a), kSwitchOff);
        Alarm[i] = &add<forms::Picture>(Axis("Alarm", a), kSwitchOff);
        Inp[i] = &add<forms::Picture>(Axis("Inp", a), kSwitchOff);
        Index[i] = &add<forms::Picture>(Axis("Index", a), kSwitchOff);
        Latch[i] = &add<forms::Picture>(Axis("Latch", a), kSwitchOff);
    }
    for (int p = 0; p < 4; ++p) {
        const auto i = static_cast<std::size_t>(p);
        ProgStatus[i] = &add<forms::TextBox>("Prog" + std::to_string(p + 1) + "Status", "IDLE");
        Line[i] = &add<forms::TextBox>("Line" + std::to_string(p + 1), "1");
    }
    // Display boxes: the operator reads them; double clicks still reach the position boxes.
    for (const Axes* family : {&Pos, &Enc, &Spd, &Stat, &ProgStatus, &Line}) {
        for (forms::TextBox* box : *family)
            box->locked = true;
    }
}

void MainControl::buildMotionControls()
{
    for (int a = 0; a < 4; ++a) {
        const auto i = static_cast<std::size_t>(a);
        Sel[i] = &add<forms::CheckBox>(Axis("Sel", a), kAxisLetters[i]);
        Target[i] = &add<forms::TextBox>(kAxisLetters[i], "0");
    }
}

void MainControl::buildProgramControls()
{
    for (int p = 0; p < 4; ++p) {
        const std::string n = std::to_string(p + 1);
        SelProg[static_cast<std::size_t>(p)] = &add<forms::OptionButton>("SelProg" + n, "SelProg", "Prog " + n, p == 0);
    }
}

void MainControl::buildIoControls()
{
    for (int n = 0; n < 24; ++n)
        DIO[static_cast<std::size_t>(n)] = &add<forms::Picture>("DIO" + std::to_string(n + 1), kInputOff);
    for (int a = 0; a < 4; ++a) {
        EO[static_cast<std::size_t>(a)] = &add<forms::Picture>(Axis("EO", a), kLedOff);
        CO[static_cast<std::size_t>(a)] = &add<forms::Picture>(Axis("CO", a), kLedOff);
    }
}

void MainControl::formLoad()
{
    pollSuspended = false;
    unreadableReplies_ = 0;
    setReadings(StatusReadings::Placeholders);
    openLink();
    readPanelState();
}

void MainControl::openLink()
{
    link::ControllerLink& link = link::Link();
    linkOpen_ = link::OpenLink();
    // Set before any message: a tick during the message box must see the link as it is.
    link.connected = linkOpen_;
    Reconnect.setVisible(!linkOpen_);
    setReadings(readings_);
    if (!linkOpen_) {
        forms::MsgBox("Communication Open Error!");
        return;
    }
    // After a read that got no reply the next would wait as long again: the points stay inputs
    // and the poll tells of the lost link. A failed read while opening is no operator's action.
    dioConfig = 0;
    if (updateSpdAccel())
        updateDIOConfig();
    failedCommand_.clear();
}

bool MainControl::formUnload()
{
    scope_->unload();
    link::ControllerLink& link = link::Link();
    // Closed before the settings are written: a tick during a message about the file must not
    // poll a closed link.
    if (linkOpen_)
        link::CloseLink();
    linkOpen_ = false;
    link.connected = false;
    writePanelState();
    return true;
}

void MainControl::setReadings(StatusReadings readings)
{
    readings_ = readings;
    if (onReadingsChanged)
        onReadingsChanged();
}

// Polling stops and the operator is told once; the last readings stay, marked as not live.
void MainControl::linkLost(const std::string& message)
{
    // Cleared before the message, so that no later tick can report the same loss again.
    link::Link().connected = false;
    Reconnect.setVisible(true);
    setReadings(StatusReadings::Stopped);
    forms::MsgBox(message);
}

void MainControl::reconnect()
{
    if (linkOpen_)
        link::CloseLink();
    unreadableReplies_ = 0;
    // The readings stay marked until a status reply has been read over the new link.
    openLink();
}

void MainControl::pollTick()
{
    link::ControllerLink& link = link::Link();
    if (pollSuspended || !link.connected)
        return;
    std::string command = "???";
    std::string reply;
    if (!link::SendCommand(command, reply)) {
        linkLost("Error Communication!");
        return;
    }
    scope_->panelReply(reply);
    if (updateAllStatus(reply) > 0) {
        unreadableReplies_ = 0;
        if (readings_ != StatusReadings::Live)
            setReadings(StatusReadings::Live);
        return;
    }
    if (++unreadableReplies_ >= kUnreadableRepliesToStop)
        linkLost("The controller's status replies cannot be read, so the panel stopped updating. The last reply was \""
                 + reply + "\".");
}

void MainControl::send(const std::string& command)
{
    std::string text = command;
    std::string reply;
    link::SendCommand(text, reply);
}

bool MainControl::exchangeChecked(const std::string& command, std::string& reply)
{
    std::string text = command;
    if (link::SendCommand(text, reply))
        return true;
    // A command too long never went out; the exchange told the operator so.
    if (failedCommand_.empty() && text.size() <= link::kLongestCommand)
        failedCommand_ = text;
    return false;
}

bool MainControl::sendChecked(const std::string& command)
{
    std::string reply;
    return exchangeChecked(command, reply);
}

void MainControl::reportFailedCommand(const std::string& consequence)
{
    if (failedCommand_.empty())
        return;
    forms::MsgBox("No reply to " + std::exchange(failedCommand_, {}) + ": " + consequence);
}

} // namespace marlune::panel
