#include "panel/main_control.h"

#include <optional>

#include "forms/number.h"
#include "link/bit_arithmetic.h"
#include "panel/status_reply.h"

namespace marlune::panel {

namespace {

const char* Switch(std::int32_t word, std::int32_t mask)
{
    return link::BitAnd(word, mask) != 0 ? kSwitchOn : kSwitchOff;
}

const char* Output(std::int32_t word, std::int32_t mask) { return link::BitAnd(word, mask) != 0 ? kOutputOn : kLedOff; }

const char* ProgramStateText(std::int32_t value)
{
    switch (value) {
    case 0: return "Idle";
    case 1: return "Running";
    case 2: return "Errored";
    case 3: return "Paused";
    case 4: return "Warning";
    default: return nullptr;
    }
}

} // namespace

std::string MainControl::GetStatusText(std::int32_t value)
{
    // Motion outranks errors; the switch bits 3 to 7 never show here.
    static constexpr std::pair<std::int32_t, const char*> kTexts[] = {
            {0x0001, "Accelerating"}, {0x0002, "Decelerating"}, {0x0004, "Constant"}, {0x0100, "Err+L"},
            {0x0200, "Err-L"},        {0x0400, "ErrAlarm"},     {0x0800, "ErrEnc"},   {0x1000, "ErrEncTry"},
    };
    for (const auto& [mask, text] : kTexts) {
        if (link::BitAnd(value, mask) != 0)
            return text;
    }
    return "Idle";
}

std::int16_t MainControl::axesAreIdle(std::int32_t axisMask) const
{
    for (std::size_t a = 0; a < 4; ++a) {
        if (link::BitAnd(axisMask, 1 << a) != 0 && Stat[a]->text() != "Idle")
            return 0;
    }
    return 1;
}

int MainControl::updateAllStatus(const std::string& replyStr)
{
    const std::optional<StatusFields> split = SplitStatusReply(replyStr);
    if (!split)
        return 0;
    const auto& f = split->field;
    int numbers = 0;
    for (const auto& token : f) {
        if (token && forms::ToInt32(*token))
            ++numbers;
    }
    // A decimal field that is empty, no number or too large for 32 bits is not applied.
    const auto decimal = [&f](int number) -> std::optional<std::int32_t> {
        const auto& token = f[static_cast<std::size_t>(number - 1)];
        return token ? forms::ToInt32(*token) : std::nullopt;
    };
    for (std::size_t a = 0; a < 4; ++a) {
        if (f[a])
            Pos[a]->setText(*f[a]);
        if (f[4 + a])
            Enc[a]->setText(*f[4 + a]);
        if (f[8 + a])
            Spd[a]->setText(*f[8 + a]);
        if (const auto word = decimal(static_cast<int>(13 + a))) {
            Stat[a]->setText(GetStatusText(*word));
            const std::int32_t switches = link::ShiftRight(*word, 3);
            Alarm[a]->setPicture(Switch(switches, 1));
            PlusL[a]->setPicture(Switch(switches, 2));
            MinusL[a]->setPicture(Switch(switches, 4));
            Home[a]->setPicture(Switch(switches, 8));
            Inp[a]->setPicture(Switch(switches, 16));
        }
    }
    if (const auto word = decimal(17)) {
        for (std::size_t n = 0; n < 24; ++n) {
            const std::int32_t mask = 1 << n;
            const bool on = link::BitAnd(*word, mask) != 0;
            const bool output = link::BitAnd(dioConfig, mask) != 0;
            DIO[n]->setPicture(output ? (on ? kOutputOn : kOutputOff) : (on ? kInputOn : kInputOff));
        }
    }
    if (const auto word = decimal(18)) {
        for (std::size_t a = 0; a < 4; ++a) {
            EO[a]->setPicture(Output(*word, 1 << a));
            CO[a]->setPicture(Output(*word, 0x10 << a));
            Index[a]->setPicture(Switch(*word, 0x100 << a));
        }
    }
    for (std::size_t p = 0; p < 4; ++p) {
        if (const auto state = decimal(static_cast<int>(19 + p))) {
            const char* text = ProgramStateText(*state);
            ProgStatus[p]->setText(text ? std::string(text) : *f[18 + p]);
        }
        if (f[22 + p])
            Line[p]->setText(*f[22 + p]);
    }
    // A change of the box raises its Click, which tells the controller JOYON or JOYOFF.
    if (const auto joystick = decimal(27))
        JoyOn.setValue(*joystick != 0 ? 1 : 0);
    if (const auto word = decimal(28)) {
        for (std::size_t a = 0; a < 4; ++a)
            Latch[a]->setPicture(Switch(*word, 1 << a));
    }
    return numbers;
}

} // namespace marlune::panel
