#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "forms/form.h"

namespace marlune::tools {
class ProgramViewer;
}

namespace marlune::panel {

class NewPos;
class MonitorAI;
class Scope;

// Pictures of the panel's vocabulary.
inline constexpr const char* kSwitchOn = "SwitchOn";
inline constexpr const char* kSwitchOff = "SwitchOff";
inline constexpr const char* kInputOn = "InputOn";
inline constexpr const char* kInputOff = "DIO_IN_OFF";
inline constexpr const char* kOutputOn = "OutputOn";
inline constexpr const char* kOutputOff = "DIO_OUT_OFF";
inline constexpr const char* kLedOff = "LedOff";

inline constexpr const char* kPanelStateFile = "marlune.ini";
// Status replies in a row of which not one field could be read, after which polling stops.
inline constexpr int kUnreadableRepliesToStop = 3;

// What the status area holds: the start values until a status reply was read, then readings
// while polling goes on, and the last readings once polling stopped for a lost link.
enum class StatusReadings { Placeholders, Live, Stopped };
inline constexpr std::array<const char*, 4> kAxisLetters = {"X", "Y", "Z", "U"};

// The motion control panel: the live view of axes, digital points and programs, and all manual
// operation of the controller. The controls are the model: later operations read the state
// back from them. The panel holds the link from its load to its unload.
class MainControl final : public forms::Form {
public:
    using Axes = std::array<forms::TextBox*, 4>;
    using AxisPictures = std::array<forms::Picture*, 4>;

    MainControl(NewPos& newPos, MonitorAI& monitorAI, tools::ProgramViewer& programViewer);
    ~MainControl() override;

    // Motor status, one row per axis X, Y, Z, U.
    Axes Pos, Enc, Spd, Stat;
    AxisPictures MinusL, Home, PlusL, Alarm, Inp, Index, Latch;
    // Program status, programs 1 to 4.
    std::array<forms::TextBox*, 4> ProgStatus, Line;
    // Motor control.
    std::array<forms::CheckBox*, 4> Sel;
    Axes Target; // the boxes X, Y, Z, U
    forms::TextBox& HSPD;
    forms::TextBox& LSPD;
    forms::TextBox& ACCEL;
    forms::OptionButton& HomingModeNormal;
    forms::OptionButton& HomingModeLimit;
    forms::OptionButton& HomingModeZ;
    forms::CheckBox& RampStop;
    forms::CheckBox& JoyOn;
    forms::Button& ABSMove;
    forms::Button& MOVEIP;
    forms::Button& MOVEIM;
    forms::Button& DATUMMove;
    forms::Button& HOMEP;
    forms::Button& HOMEM;
    forms::Button& Stop;
    forms::Button& Abort;
    // Program control.
    std::array<forms::OptionButton*, 4> SelProg;
    forms::OptionButton& SelProgAll;
    forms::Button& RunProg;
    forms::Button& StopProg;
    forms::Button& PauseProg;
    forms::Button& ContProg;
    forms::Button& PEClear;
    forms::Button& GetErrMsg;
    forms::Button& ViewProg;
    // Digital points 1 to 24, enable and clear outputs.
    std::array<forms::Picture*, 24> DIO;
    AxisPictures EO, CO;
    forms::Button& MEClear;
    forms::Button& AnalogInputs;
    // Opens the scope beside the panel.
    forms::Button& ScopeButton;
    forms::TextBox& ManualCmd;
    forms::TextBox& ReplyBox;
    forms::Button& Close;
    // Shown while the link is down: opens it again and polling resumes.
    forms::Button& Reconnect;
    forms::Timer& Timer1;

    bool pollSuspended = false;
    std::int32_t dioConfig = 0;

    // Status refresh.
    void pollTick();
    // Applies the fields that can be read; how many of them were numbers.
    int updateAllStatus(const std::string& replyStr);
    StatusReadings statusReadings() const { return readings_; }
    // Called when statusReadings() or the Reconnect button may have changed, for a view that
    // marks what is not live.
    std::function<void()> onReadingsChanged;
    static std::string GetStatusText(std::int32_t value);
    std::int16_t axesAreIdle(std::int32_t axisMask) const;
    Scope& scope() const { return *scope_; }

    // Axis motion. Both stop at the first failed exchange and return false.
    bool downloadSpdAccel();
    bool updateSpdAccel();
    void buildMoveCommand(std::string& command, std::int16_t direction, std::int16_t& axisMask) const;
    void setPositionCounter(const std::string& kind, const std::string& axis);

    void updateDIOConfig();
    std::string getSelectedProgram() const;

protected:
    void formLoad() override;
    bool formUnload() override;

private:
    void buildCaptions();
    void buildStatusControls();
    void buildMotionControls();
    void buildProgramControls();
    void buildIoControls();
    void connectMotion();
    void connectPrograms();
    void connectIo();

    bool speedPrelude();
    void moveButton(std::int16_t direction, bool idleTest, const char* mode);
    void homeButton(const char* sign);
    void stopButton();
    void programCommand(const std::string& word);
    void showErrorMessage();
    void viewProgram();
    void digitalPointClicked(int point);
    void outputLampUsed(forms::Picture& lamp, const std::string& name);
    void analogInputsClicked();
    void manualCommandKey(int keyCode);

    void readPanelState();
    void writePanelState();

    void openLink();
    void linkLost(const std::string& message);
    void reconnect();
    void setReadings(StatusReadings readings);

    // Sends a command through the exchange; the reply is dropped.
    static void send(const std::string& command);
    // As send, and remembers the first command of the operator's action whose exchange failed.
    bool sendChecked(const std::string& command);
    bool exchangeChecked(const std::string& command, std::string& reply);
    // Tells the operator, once per action, which command got no reply and what that may mean.
    void reportFailedCommand(const std::string& consequence);

    StatusReadings readings_ = StatusReadings::Placeholders;
    int unreadableReplies_ = 0;
    bool linkOpen_ = false; // opened by this showing and not closed yet
    std::string failedCommand_;
    NewPos& newPos_;
    MonitorAI& monitorAI_;
    tools::ProgramViewer& programViewer_;
    std::unique_ptr<Scope> scope_;
};

} // namespace marlune::panel
