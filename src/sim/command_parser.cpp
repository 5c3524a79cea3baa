#include "command_parser.h"

#include "counts.h"

#include <cctype>
#include <charconv>
#include <cstdint>
#include <optional>

namespace marlune::sim {

namespace {

struct OpWord {
    std::string_view text;
    Op op;
};

// The first entry of `table` whose word begins `text`, and in `rest` the text behind that word.
template <typename Entry, std::size_t N>
const Entry* MatchPrefix(const Entry (&table)[N], std::string_view text, std::string_view& rest)
{
    for (const Entry& entry : table) {
        if (StartsWith(text, entry.text)) {
            rest = text.substr(entry.text.size());
            return &entry;
        }
    }
    return nullptr;
}

class Parser final {
public:
    Parser(std::string_view text, Command& command, std::string& error) : text_(text), c_(command), error_(error) {}

    bool run()
    {
        c_ = Command{};
        static constexpr bool (Parser::*kFamilies[])() = {&Parser::exact,     &Parser::programs, &Parser::settings,
                                                          &Parser::homing,    &Parser::stops,    &Parser::outputs,
                                                          &Parser::variables, &Parser::moves};
        for (const auto family : kFamilies) {
            if ((this->*family)())
                return true;
            if (failed_)
                return false;
        }
        return fail("unknown command \"" + std::string(text_) + "\"");
    }

private:
    bool fail(std::string message)
    {
        error_ = std::move(message);
        return false;
    }
    bool set(Op op)
    {
        c_.op = op;
        return true;
    }

    bool exact()
    {
        static constexpr OpWord kWords[] = {
                {"???", Op::Status},          {"$", Op::StoreStatus},      {"ABS", Op::Absolute},
                {"INC", Op::Incremental},     {"ABORT", Op::Abort},        {"JOYON", Op::JoyOn},
                {"JOYOFF", Op::JoyOff},       {"CLOSE", Op::CloseProgram}, {"CLEAR", Op::ClearProgram},
                {"STORE", Op::Store},         {"LOAD", Op::Load},          {"PROJ", Op::ReadProject},
                {"PRON", Op::ReadProgramSet}, {"IPA", Op::ReadIp},         {"DIO", Op::ReadDio}};
        for (const OpWord& word : kWords) {
            if (text_ == word.text)
                return set(word.op);
        }
        if (StartsWith(text_, "IPA=")) {
            c_.text = std::string(text_.substr(4));
            return set(Op::WriteIp);
        }
        if (StartsWith(text_, "PRON=")) {
            const auto value = ParseSigned32(text_.substr(5));
            if (!value)
                return failDone("PRON= needs a number from 0 to 15");
            c_.value = *value;
            return set(Op::WriteProgramSet);
        }
        if (StartsWith(text_, "AI")) {
            const auto channel = ParseIndex(text_.substr(2), kAnalogCount);
            if (!channel)
                return failDone("analog input 1 or 2 expected");
            c_.index = *channel;
            return set(Op::ReadAnalog);
        }
        return false;
    }

    // Commands with a program number behind them.
    bool programs()
    {
        static constexpr OpWord kWords[] = {
                {"OPENPROG", Op::OpenProgram},  {"LISTPROG", Op::List},     {"PSTAT", Op::ProgramStatus},
                {"UPLOAD", Op::Upload},         {"RUN", Op::Run},           {"QUIT", Op::Quit},
                {"PAUSE", Op::Pause},           {"CONTINUE", Op::Continue}, {"PECLEAR", Op::ClearProgramError},
                {"PEMSG", Op::ReadProgramError}};
        std::string_view rest;
        const OpWord* word = MatchPrefix(kWords, text_, rest);
        if (!word)
            return false;
        const auto program = ParseIndex(rest, kProgramCount);
        if (!program)
            return failDone(std::string(word->text) + " needs a program number from 1 to 4");
        c_.index = *program;
        return set(word->op);
    }

    // HSPD, LSPD, ACCEL and their correction twins: bare to read, with a value to set.
    bool settings()
    {
        struct Word {
            std::string_view text;
            Setting setting;
        };
        static constexpr Word kWords[] = {{"EHSPD", Setting::CorrectionHigh},
                                          {"ELSPD", Setting::CorrectionLow},
                                          {"EACCEL", Setting::CorrectionAccel},
                                          {"HSPD", Setting::High},
                                          {"LSPD", Setting::Low},
                                          {"ACCEL", Setting::Accel}};
        std::string_view rest;
        const Word* word = MatchPrefix(kWords, text_, rest);
        if (!word)
            return false;
        c_.setting = word->setting;
        if (rest.empty())
            return set(Op::ReadSetting);
        if (rest.front() == '=')
            rest.remove_prefix(1);
        const auto value = ParseSigned32(rest);
        if (!value)
            return failDone(std::string(word->text) + " needs a whole number");
        c_.value = *value;
        return set(Op::WriteSetting);
    }

    bool homing()
    {
        struct Word {
            std::string_view text;
            HomeMode mode;
        };
        static constexpr Word kWords[] = {
                {"ZHOME", HomeMode::IndexPulse}, {"LHOME", HomeMode::LimitSwitch}, {"HOME", HomeMode::HomeSwitch}};
        std::string_view rest;
        const Word* word = MatchPrefix(kWords, text_, rest);
        if (!word)
            return false;
        const auto axis = rest.size() == 2 ? AxisFromLetter(rest[0]) : std::nullopt;
        if (!axis || (rest[1] != '+' && rest[1] != '-'))
            return failDone(std::string(word->text) + " needs an axis and a direction, as in " + std::string(word->text)
                            + "X+");
        c_.homeMode = word->mode;
        c_.axis = *axis;
        c_.direction = rest[1] == '+' ? 1 : -1;
        return set(Op::Home);
    }

    // STOP, RSTOP and MECLEAR, for one axis or, without a letter, for all.
    bool stops()
    {
        static constexpr OpWord kWords[] = {
                {"RSTOP", Op::RampStop}, {"STOP", Op::Stop}, {"MECLEAR", Op::ClearMotorError}};
        std::string_view rest;
        const OpWord* word = MatchPrefix(kWords, text_, rest);
        if (!word)
            return false;
        if (rest.empty()) {
            c_.allAxes = true;
            return set(word->op);
        }
        const auto axis = rest.size() == 1 ? AxisFromLetter(rest[0]) : std::nullopt;
        if (!axis)
            return failDone(std::string(word->text) + " takes one axis letter X, Y, Z or U");
        c_.axis = *axis;
        return set(word->op);
    }

    // EOX, COX, PX, EX: an axis register, read bare or set with "=".
    bool outputs()
    {
        if (text_.size() < 2)
            return false;
        const std::string_view head = text_.substr(0, 2);
        const bool enable = head == "EO";
        const bool clear = head == "CO";
        if (enable || clear) {
            const auto axis = text_.size() >= 3 ? AxisFromLetter(text_[2]) : std::nullopt;
            if (!axis)
                return false;
            c_.axis = *axis;
            c_.clearOutput = clear;
            return readOrWrite(text_.substr(3), Op::ReadAxisOutput, Op::WriteAxisOutput);
        }
        if (text_[0] != 'P' && text_[0] != 'E')
            return false;
        const auto axis = AxisFromLetter(text_[1]);
        if (!axis)
            return false;
        c_.axis = *axis;
        if (text_[0] == 'P')
            return readOrWrite(text_.substr(2), Op::ReadPosition, Op::WritePosition);
        return readOrWrite(text_.substr(2), Op::ReadEncoder, Op::WriteEncoder);
    }

    // In, Vn, DIOn: read bare, set with "=".
    bool variables()
    {
        struct Family {
            std::string_view text;
            int count;
            Op read;
            Op write;
        };
        static constexpr Family kFamilies[] = {{"DIO", kDioCount, Op::ReadDio, Op::WriteDio},
                                               {"I", kICount, Op::ReadI, Op::WriteI},
                                               {"V", kVCount, Op::ReadV, Op::WriteV}};
        std::string_view rest;
        const Family* family = MatchPrefix(kFamilies, text_, rest);
        if (!family || rest.empty() || !std::isdigit(static_cast<unsigned char>(rest.front())))
            return false;
        const auto equals = rest.find('=');
        const auto index = ParseIndex(rest.substr(0, equals), family->count);
        if (!index)
            return failDone(std::string(family->text) + " numbers run from 1 to " + std::to_string(family->count));
        c_.index = *index;
        return readOrWrite(equals == std::string_view::npos ? std::string_view() : rest.substr(equals), family->read,
                           family->write);
    }

    bool readOrWrite(std::string_view rest, Op read, Op write)
    {
        if (rest.empty())
            return set(read);
        if (rest.front() != '=')
            return failDone("unknown command \"" + std::string(text_) + "\"");
        const auto value = ParseSigned32(rest.substr(1));
        if (!value)
            return failDone("a whole number is expected behind \"=\"");
        c_.value = *value;
        return set(write);
    }

    // X1000Y-200, XV5: absolute or incremental targets for one or more axes.
    bool moves()
    {
        if (text_.empty() || !AxisFromLetter(text_.front()))
            return false;
        std::size_t pos = 0;
        while (pos < text_.size()) {
            const auto axis = AxisFromLetter(text_[pos]);
            if (!axis)
                return failDone("axis letter expected at \"" + std::string(text_.substr(pos)) + "\"");
            MoveTarget& target = c_.targets[AxisIndex(*axis)];
            if (target.used)
                return failDone(std::string(1, text_[pos]) + " is named twice");
            ++pos;
            const std::size_t start = pos;
            while (pos < text_.size() && !AxisFromLetter(text_[pos]))
                ++pos;
            if (!parseTarget(text_.substr(start, pos - start), target))
                return failDone("bad target \"" + std::string(text_.substr(start, pos - start)) + "\" for "
                                + std::string(1, text_[start - 1]));
        }
        return set(Op::Move);
    }

    static bool parseTarget(std::string_view text, MoveTarget& target)
    {
        target.used = true;
        if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
            target.negative = text.front() == '-';
            text.remove_prefix(1);
        }
        if (!text.empty() && text.front() == 'V') {
            const auto index = ParseIndex(text.substr(1), kVCount);
            target.fromVariable = true;
            target.value = index.value_or(0);
            return index.has_value();
        }
        if (text.empty() || text.front() == '-' || text.front() == '+')
            return false;
        const auto value = ParseSigned32(text);
        target.value = value.value_or(0);
        return value.has_value();
    }

    // The command was recognised, but is malformed: stop looking further.
    bool failDone(std::string message)
    {
        failed_ = true;
        return fail(std::move(message));
    }

    std::string_view text_;
    Command& c_;
    std::string& error_;
    bool failed_ = false;
};

} // namespace

bool ParseCommand(std::string_view text, Command& command, std::string& error)
{
    Parser parser(text, command, error);
    return parser.run();
}

std::string NormaliseCommand(std::string_view raw)
{
    std::string text;
    text.reserve(raw.size());
    for (const char ch : raw) {
        if (ch == ' ' || ch == '\r' || ch == '\n')
            continue;
        text.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(ch))));
    }
    return text;
}

bool IsProjectNameFrame(std::string_view raw)
{
    static constexpr std::string_view kHead = "PROJ=\"";
    if (raw.size() < kHead.size())
        return false;
    for (std::size_t i = 0; i < kHead.size(); ++i) {
        if (std::toupper(static_cast<unsigned char>(raw[i])) != kHead[i])
            return false;
    }
    return true;
}

std::string ProjectNameOf(std::string_view raw)
{
    std::string_view name = raw.substr(6);
    while (!name.empty() && (name.back() == '\r' || name.back() == '\n'))
        name.remove_suffix(1);
    if (!name.empty() && name.back() == '"')
        name.remove_suffix(1);
    return std::string(name);
}

} // namespace marlune::sim
