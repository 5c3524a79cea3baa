#include "controller.h"

#include "command_parser.h"
#include "status_record.h"

#include <algorithm>
#include <cctype>

namespace marlune::sim {

namespace {

constexpr std::int32_t kMaxSpeed = 6'000'000;
constexpr std::int32_t kMaxAccelMs = 65'000;
// The range and the register of each setting, in the order of Setting.
struct SettingRule {
    std::string_view name;
    bool correction;
    std::int32_t SpeedSettings::*field;
    std::int64_t low;
    std::int64_t high;
};
constexpr SettingRule kSettingRules[] = {
        {"HSPD", false, &SpeedSettings::high, 1, kMaxSpeed},
        {"LSPD", false, &SpeedSettings::low, 0, kMaxSpeed},
        {"ACCEL", false, &SpeedSettings::accelMs, 0, kMaxAccelMs},
        {"EHSPD", true, &SpeedSettings::high, 1, kMaxSpeed},
        {"ELSPD", true, &SpeedSettings::low, 0, kMaxSpeed},
        {"EACCEL", true, &SpeedSettings::accelMs, 0, kMaxAccelMs},
};
// Bytes that mean nothing to the program: no "@", no "?", no terminator.
constexpr std::string_view kGarbage = "\x15#~\x7f%&\x1b";

// Upper-cases the first letter of an error text.
std::string ErrorReply(const std::string& why)
{
    std::string text = "?" + why;
    if (text.size() > 1)
        text[1] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[1])));
    return text;
}

// A reply holds no byte below 32 but the CR LF between listed lines: an echoed control
// byte is shown as \xHH, so that a 0x04 never ends a reply early.
std::string ShowControlBytes(std::string_view text)
{
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string shown;
    for (const char ch : text) {
        const auto byte = static_cast<unsigned char>(ch);
        if (byte >= 32 || ch == '\r' || ch == '\n') {
            shown.push_back(ch);
            continue;
        }
        shown += "\\x";
        shown.push_back(kHex[byte >> 4]);
        shown.push_back(kHex[byte & 15]);
    }
    return shown;
}

} // namespace

Controller::Controller() { powerCycle(); }

void Controller::powerUpWith(Eeprom eeprom)
{
    eeprom_ = std::move(eeprom);
    powerCycle();
}

void Controller::powerCycle()
{
    axes_ = {};
    speeds_ = {};
    correctionSpeeds_ = {};
    incremental_ = false;
    axisOutputs_.reset();
    dio_ = {};
    quitAllPrograms();
    programs_.close();
    restoreMemory(eeprom_.image());
    dio_.powerUp(static_cast<std::uint32_t>(variables_.i(13)));
    const std::int32_t autoRun = variables_.i(1);
    joystick_ = (autoRun & 0x10) != 0;
    settleAxes();
    for (int program = 1; program <= kProgramCount; ++program) {
        if ((autoRun >> (program - 1)) & 1 && !programs_.lines(program).empty())
            runner(program).start(programs_.lines(program), program, now_);
    }
}

void Controller::settleAxes()
{
    for (Axis& axis : axes_)
        axis.settle(now_);
}

void Controller::advanceTo(std::int64_t micros)
{
    // Walk from event to event, so that a program sees every move end and every
    // step of another program in time order, however far the clock jumps.
    while (true) {
        std::optional<std::int64_t> next;
        const auto consider = [&](std::optional<std::int64_t> at) {
            if (at && *at <= micros && (!next || *at < *next))
                next = std::max(*at, now_);
        };
        for (const Axis& axis : axes_)
            consider(axis.moveEnd());
        for (const ProgramRunner& r : runners_)
            consider(r.nextStep());
        if (!next)
            break;
        now_ = *next;
        settleAxes();
        for (ProgramRunner& r : runners_) {
            if (r.nextStep() && *r.nextStep() <= now_)
                r.step(*this, now_);
        }
    }
    now_ = std::max(now_, micros);
    settleAxes();
}

std::optional<std::string> Controller::execute(std::string_view command)
{
    if (failureModes_.noReply || eeprom_.busy(now_))
        return std::nullopt;
    const Reply reply = handle(command);
    if (failureModes_.garbageReply)
        return std::string(kGarbage);
    return ShowControlBytes(reply.ok ? reply.text : ErrorReply(reply.text));
}

Controller::Reply Controller::handle(std::string_view raw)
{
    if (IsProjectNameFrame(raw)) {
        Command command;
        command.op = Op::WriteProject;
        command.text = ProjectNameOf(raw);
        return project(command);
    }
    const std::string text = NormaliseCommand(raw);
    if (text.empty())
        return {true, {}};
    Command command;
    std::string why;
    const bool parsed = ParseCommand(text, command, why);
    if (programs_.openProgram()) {
        if (!parsed || !RuleOf(command.op).whileOpen) {
            std::string line(raw);
            while (!line.empty() && (line.back() == '\r' || line.back() == '\n'))
                line.pop_back();
            return outcome(programs_.append(std::move(line)));
        }
    }
    if (!parsed)
        return error(why);
    return dispatch(command);
}

Controller::Reply Controller::dispatch(const Command& command)
{
    switch (RuleOf(command.op).group) {
    case OpGroup::Status: return {true, statusRecord()};
    case OpGroup::Motion: return motion(command);
    case OpGroup::Io: return io(command);
    case OpGroup::Setting:
        return command.op == Op::ReadSetting ? readSetting(command.setting)
                                             : writeSetting(command.setting, command.value);
    case OpGroup::Memory: return memory(command);
    case OpGroup::ProgramControl: return programControl(command);
    case OpGroup::ProgramStorage: return programStorage(command);
    case OpGroup::Project: return project(command);
    }
    return error("command not available");
}

Controller::Reply Controller::motion(const Command& command)
{
    Axis& axis = axes_[AxisIndex(command.axis)];
    const auto eachAxis = [&](auto&& action) {
        for (std::size_t i = 0; i < kAxisCount; ++i) {
            if (command.allAxes || i == AxisIndex(command.axis))
                action(axes_[i]);
        }
    };
    switch (command.op) {
    case Op::Absolute:
    case Op::Incremental: incremental_ = command.op == Op::Incremental; return done();
    case Op::Move: return move(command);
    case Op::Home: return outcome(axis.home(command.homeMode, command.direction, speeds_));
    case Op::Stop: eachAxis([](Axis& a) { a.stop(); }); return done();
    case Op::RampStop: eachAxis([&](Axis& a) { a.rampStop(speeds_); }); return done();
    case Op::Abort:
        for (Axis& a : axes_)
            a.stop();
        quitAllPrograms();
        return done();
    case Op::ReadPosition: return value(axis.position());
    case Op::WritePosition: axis.setPosition(command.value); return done();
    case Op::ReadEncoder: return value(axis.encoder());
    case Op::WriteEncoder: axis.setEncoder(command.value); return done();
    case Op::ClearMotorError: eachAxis([](Axis& a) { a.clearErrors(); }); return done();
    default: break;
    }
    return error("command not available");
}

Controller::Reply Controller::move(const Command& command)
{
    // All named axes must be free before any of them starts.
    std::array<std::optional<std::int64_t>, kAxisCount> targets;
    for (std::size_t i = 0; i < kAxisCount; ++i) {
        const MoveTarget& t = command.targets[i];
        if (!t.used)
            continue;
        const std::string name(1, kAxisLetters[i]);
        if (axes_[i].moving())
            return error(name + " axis is moving");
        if (axes_[i].inError())
            return error(name + " axis has an error, clear it with MECLEAR" + name);
        std::int64_t amount = t.fromVariable ? variables_.v(static_cast<int>(t.value)) : t.value;
        if (t.negative)
            amount = -amount;
        const std::int64_t target = incremental_ ? axes_[i].position() + amount : amount;
        if (target < INT32_MIN || target > INT32_MAX)
            return error(name + " target out of range");
        targets[i] = target;
    }
    std::string why;
    for (std::size_t i = 0; i < kAxisCount; ++i) {
        if (!targets[i])
            continue;
        const std::string axisWhy = axes_[i].moveTo(*targets[i], speeds_);
        if (!axisWhy.empty() && why.empty())
            why = std::string(1, kAxisLetters[i]) + " " + axisWhy;
    }
    return outcome(why);
}

Controller::Reply Controller::io(const Command& command)
{
    const int axis = static_cast<int>(AxisIndex(command.axis));
    switch (command.op) {
    case Op::JoyOn:
    case Op::JoyOff: joystick_ = command.op == Op::JoyOn; return done();
    case Op::ReadDio:
        if (command.index == 0)
            return value(dio_.word(direction()));
        return value(dio_.read(command.index, direction()) ? 1 : 0);
    case Op::WriteDio: return outcome(dio_.write(command.index, command.value, direction()));
    case Op::ReadAxisOutput: return value(axisOutputs_.read(axis, command.clearOutput) ? 1 : 0);
    case Op::WriteAxisOutput: return outcome(axisOutputs_.write(axis, command.clearOutput, command.value));
    case Op::ReadAnalog: return value(AnalogReading(command.index, now_));
    default: break;
    }
    return error("command not available");
}

Controller::Reply Controller::readSetting(Setting setting) const
{
    const SettingRule& rule = kSettingRules[static_cast<std::size_t>(setting)];
    const SpeedSettings& source = rule.correction ? correctionSpeeds_ : speeds_;
    return value(source.*rule.field);
}

Controller::Reply Controller::writeSetting(Setting setting, std::int64_t number)
{
    const SettingRule& rule = kSettingRules[static_cast<std::size_t>(setting)];
    if (number < rule.low || number > rule.high)
        return error(std::string(rule.name) + " takes " + std::to_string(rule.low) + " to "
                     + std::to_string(rule.high));
    SpeedSettings& target = rule.correction ? correctionSpeeds_ : speeds_;
    target.*rule.field = static_cast<std::int32_t>(number);
    return done();
}

Controller::Reply Controller::writeIpAddress(const std::string& text)
{
    int parts = 0;
    std::size_t pos = 0;
    while (parts < 4) {
        std::size_t end = pos;
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) && end - pos < 4)
            ++end;
        if (end == pos || end - pos > 3 || std::stoi(text.substr(pos, end - pos)) > 255)
            break;
        ++parts;
        pos = end;
        if (parts < 4) {
            if (pos >= text.size() || text[pos] != '.')
                break;
            ++pos;
        }
    }
    if (parts != 4 || pos != text.size())
        return error("IPA= needs an address of four numbers 0 to 255, as in 192.168.1.250");
    ipAddress_ = text;
    return done();
}

Controller::Reply Controller::memory(const Command& command)
{
    switch (command.op) {
    case Op::ReadI: return value(iVariable(command.index));
    case Op::WriteI: return outcome(variables_.setI(command.index, command.value));
    case Op::ReadV: return value(variables_.v(command.index));
    case Op::WriteV: return outcome(variables_.setV(command.index, command.value));
    case Op::ReadIp: return {true, ipAddress_};
    case Op::WriteIp: return writeIpAddress(command.text);
    case Op::Store: eeprom_.write(imageOfMemory(), now_); return done();
    case Op::Load:
        quitAllPrograms();
        programs_.close();
        restoreMemory(eeprom_.image());
        return done();
    case Op::StoreStatus: return done(); // reached only once the write is over: during it nothing answers
    default: break;
    }
    return error("command not available");
}

std::int32_t Controller::iVariable(int n) const { return n == kICount ? eeprom_.writeCount() : variables_.i(n); }

EepromImage Controller::imageOfMemory() const
{
    EepromImage image;
    for (int program = 1; program <= kProgramCount; ++program)
        image.programs[static_cast<std::size_t>(program - 1)] = programs_.lines(program);
    image.iValues = variables_.iValues();
    image.vValues = variables_.vValues();
    image.ipAddress = ipAddress_;
    image.projectName = projectName_;
    image.programSet = programSet_;
    return image;
}

void Controller::restoreMemory(const EepromImage& image)
{
    for (int program = 1; program <= kProgramCount; ++program)
        programs_.setLines(program, image.programs[static_cast<std::size_t>(program - 1)]);
    variables_.restore(image.iValues, image.vValues);
    ipAddress_ = image.ipAddress;
    projectName_ = image.projectName;
    programSet_ = image.programSet;
}

std::string Controller::statusRecord() const
{
    StatusSnapshot status;
    for (std::size_t i = 0; i < kAxisCount; ++i) {
        const Axis& axis = axes_[i];
        status.position[i] = axis.position();
        status.encoder[i] = axis.encoder();
        status.speed[i] = axis.speed();
        status.axisStatus[i] = axis.statusWord();
        if (axis.indexActive())
            status.outputsAndIndex |= 0x100u << i;
    }
    status.digitalIo = dio_.word(direction());
    status.outputsAndIndex |= axisOutputs_.bits();
    for (int program = 1; program <= kProgramCount; ++program) {
        status.programState[static_cast<std::size_t>(program - 1)] = static_cast<int>(runner(program).state());
        status.programLine[static_cast<std::size_t>(program - 1)] = runner(program).currentLine();
    }
    status.joystick = joystick_ ? 1 : 0;
    return FormatStatusRecord(status);
}

void Controller::quitAllPrograms()
{
    for (ProgramRunner& r : runners_)
        r.quit();
}

std::int64_t Controller::read(const Operand& operand) const
{
    switch (operand.kind) {
    case Operand::Kind::V: return variables_.v(operand.index);
    case Operand::Kind::I: return iVariable(operand.index);
    case Operand::Kind::Dio: return dio_.read(operand.index, direction()) ? 1 : 0;
    case Operand::Kind::Analog: return AnalogReading(operand.index, now_);
    case Operand::Kind::Position: return axes_[static_cast<std::size_t>(operand.index)].position();
    case Operand::Kind::Encoder: return axes_[static_cast<std::size_t>(operand.index)].encoder();
    }
    return 0;
}

std::string Controller::perform(const Command& command)
{
    const Reply reply = dispatch(command);
    return reply.ok ? std::string() : reply.text;
}

std::int64_t Controller::idleAt(unsigned axisMask) const
{
    std::int64_t at = now_;
    for (std::size_t i = 0; i < kAxisCount; ++i) {
        if ((axisMask >> i) & 1u)
            at = std::max(at, axes_[i].moveEnd().value_or(now_));
    }
    return at;
}

} // namespace marlune::sim
