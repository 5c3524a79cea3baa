#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "forms/form.h"

namespace marlune::tools {
class ProgramViewer;
}

namespace marlune::panel {

class NewPos;
class MonitorAI;

// Pictures of the panel's vocabulary.
inline constexpr const char* kSwitchOn = "SwitchOn";
inline constexpr const char* kSwitchOff = "SwitchOff";
inline constexpr const char* kInputOn = "InputOn";
inline constexpr const char* kInputOff = "DIO_IN_OFF";
inline constexpr const char* kOutputOn = "OutputOn";
inline constexpr const char* kOutputOff = "DIO_OUT_OFF";
inline constexpr const char* kLedOff = "LedOff";

inline constexpr const char* kPanelStateFile = "marlune.ini";
inline constexpr std::array<const char*, 4> kAxisLetters = {"X", "Y", "Z", "U"};

// The motion control panel: the live view of axes, digital points and programs, and all manual
// operation of the controller. The controls are the model: later operations read the state
// back from them. The panel holds the link from its load to its unload.
class MainControl final : public forms::Form {
public:
    using Axes = std::array<forms::TextBox*, 4>;
    using AxisPictures = std::array<forms::Picture*, 4>;

    MainControl(NewPos& newPos, MonitorAI& monitorAI, tools::ProgramViewer& programViewer);

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
    forms::TextBox& ManualCmd;
    forms::TextBox& ReplyBox;
    forms::Button& Close;
    forms::Timer& Timer1;

    bool pollSuspended = false;
    std::int32_t dioConfig = 0;

    // Status refresh.
    void pollTick();
    void updateAllStatus(const std::string& replyStr);
    static std::string GetStatusText(std::int32_t value);
    std::int16_t axesAreIdle(std::int32_t axisMask) const;

    // Axis motion.
    void downloadSpdAccel();
    void updateSpdAccel();
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

    void speedPrelude();
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

    // Sends a command through the exchange; the reply is dropped.
    static void send(const std::string& command);

    NewPos& newPos_;
    MonitorAI& monitorAI_;
    tools::ProgramViewer& programViewer_;
};

} // namespace marlune::panel
