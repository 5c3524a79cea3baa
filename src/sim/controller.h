#pragma once

#include "axis.h"
#include "axis_id.h"
#include "command.h"
#include "eeprom.h"
#include "failure_modes.h"
#include "interpreter.h"
#include "io_points.h"
#include "program_store.h"
#include "trapezoid.h"
#include "variables.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::sim {

inline constexpr std::uint16_t kDefaultTcpPort = 5001; // the documented default port of marlune-sim

// A deterministic model of a Marlune KV controller, driven by an injected clock.
// The same commands at the same clock times give the same replies.
class Controller final : private Machine {
public:
    Controller();

    // The injected clock: microseconds since power-up; earlier times are ignored.
    void advanceTo(std::int64_t micros);
    std::int64_t now() const { return now_; }

    // One command as it arrived (bytes before the CR). The reply text, lines of a
    // listing joined by CR LF; the transport adds its own terminator. std::nullopt:
    // the controller does not answer (busy writing its EEPROM, or noReply).
    std::optional<std::string> execute(std::string_view command);

    FailureModes& failureModes() { return failureModes_; }

    // Power off and on: memory comes back from the EEPROM, outputs take their
    // power-up state (I13), and the programs that I1 names start.
    void powerCycle();
    // Power on with another EEPROM in place, one kept from an earlier run.
    void powerUpWith(Eeprom eeprom);

    // Read access for tests.
    std::int64_t position(AxisId axis) const { return axes_[AxisIndex(axis)].position(); }
    std::int64_t encoder(AxisId axis) const { return axes_[AxisIndex(axis)].encoder(); }
    std::uint32_t axisStatus(AxisId axis) const { return axes_[AxisIndex(axis)].statusWord(); }
    bool axisMoving(AxisId axis) const { return axes_[AxisIndex(axis)].moving(); }
    const std::vector<std::string>& programLines(int program) const { return programs_.lines(program); }
    ProgramState programState(int program) const { return runner(program).state(); }
    int programLine(int program) const { return runner(program).currentLine(); }
    std::int32_t iVariable(int n) const;
    std::int32_t vVariable(int n) const { return variables_.v(n); }
    std::int32_t storeCount() const { return eeprom_.writeCount(); }
    bool eepromBusy() const { return eeprom_.busy(now_); }
    const Eeprom& eeprom() const { return eeprom_; }
    std::uint32_t digitalWord() const { return dio_.word(direction()); }
    const std::optional<std::string>& projectName() const { return projectName_; }

    // Simulated inputs, for tests.
    void setDigitalInput(int point, bool on) { dio_.setInput(point, on); }
    void setAlarmInput(AxisId axis, bool active) { axes_[AxisIndex(axis)].setAlarmInput(active); }

private:
    struct Reply {
        bool ok = true;
        std::string text;
    };
    static Reply done() { return {true, "OK"}; }
    static Reply value(std::int64_t number) { return {true, std::to_string(number)}; }
    static Reply error(std::string why) { return {false, std::move(why)}; }
    static Reply outcome(std::string why) { return why.empty() ? done() : error(std::move(why)); }

    Reply handle(std::string_view raw);
    Reply dispatch(const Command& command);
    Reply motion(const Command& command);
    Reply move(const Command& command);
    Reply io(const Command& command);
    Reply memory(const Command& command);
    Reply programControl(const Command& command);
    Reply programStorage(const Command& command);
    Reply project(const Command& command);
    Reply readSetting(Setting setting) const;
    Reply writeSetting(Setting setting, std::int64_t number);
    Reply writeIpAddress(const std::string& text);

    // Machine: what a running program sees.
    std::int64_t read(const Operand& operand) const override;
    std::string perform(const Command& command) override;
    std::int64_t idleAt(unsigned axisMask) const override;

    std::string statusRecord() const;
    void settleAxes();
    void quitAllPrograms();
    EepromImage imageOfMemory() const;
    void restoreMemory(const EepromImage& image);
    std::uint32_t direction() const { return static_cast<std::uint32_t>(variables_.i(12)); }
    const ProgramRunner& runner(int program) const { return runners_[static_cast<std::size_t>(program - 1)]; }
    ProgramRunner& runner(int program) { return runners_[static_cast<std::size_t>(program - 1)]; }

    std::int64_t now_ = 0;
    FailureModes failureModes_;
    std::array<Axis, kAxisCount> axes_{};
    SpeedSettings speeds_;
    SpeedSettings correctionSpeeds_;
    bool incremental_ = false;
    bool joystick_ = false;
    DigitalIo dio_;
    AxisOutputs axisOutputs_;
    Variables variables_;
    std::string ipAddress_;
    ProgramStore programs_;
    std::array<ProgramRunner, kProgramCount> runners_{};
    std::optional<std::string> projectName_;
    std::optional<std::int32_t> programSet_;
    Eeprom eeprom_;
};

} // namespace marlune::sim
