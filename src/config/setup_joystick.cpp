#include "config/setup_joystick.h"

#include <string_view>

#include "link/controller_variables.h"

namespace marlune::config {

namespace {

std::string Axis(int axis) { return kAxisLetters[axis]; }

// The variable and the pair of points that an axis follows with those inputs.
constexpr const char* kVariableOfAxis[] = {"V201", "V202", "V203", "V204"};
constexpr const char* kPointsOfAxis[] = {"17/18", "19/20", "21/22", "23/24"};

// The four groups of the dialog and the column captions of each.
struct Group {
    const char* frame;
    const char* caption;
    std::vector<std::pair<std::string, std::string>> headers;
};

std::vector<Group> Groups()
{
    std::vector<Group> groups = {
            {"FrameSetup",
             "Setup",
             {{"HeadEnable", "Enable"}, {"HeadEnableSlim", "Enable Soft Limit"}, {"HeadDirection", "Direction"}}},
            {"FrameInput",
             "Input Selection",
             {{"HeadEncoder", "Encoder"},
              {"HeadAI1", "AI1"},
              {"HeadAI2", "AI2"},
              {"HeadVariable", "Variable"},
              {"HeadDIO", "DIO"}}},
            {"FrameSoftLimit", "Soft Limit Setting", {}},
            {"FrameFiltering", "Filtering", {}},
    };
    for (const JoystickColumn& column : kJoystickColumns) {
        for (Group& group : groups) {
            if (std::string_view(group.frame) == column.frame)
                group.headers.emplace_back(std::string("Head") + column.prefix, column.caption);
        }
    }
    return groups;
}

} // namespace

SetupJoystick::SetupJoystick()
    : ConfigDialog("SetupJoystick", "Setup Joystick"), OK(add<forms::Button>("OK", "OK")),
      Cancel(add<forms::Button>("Cancel", "Cancel")), Update(add<forms::Button>("Update", "Update Now"))
{
    for (const JoystickColumn& column : kJoystickColumns) {
        for (int axis = 0; axis < kAxisCount; ++axis)
            addNumber(column.prefix + Axis(axis), std::string(column.caption) + " " + Axis(axis));
    }
    addBits(JoystickBits());
    for (int axis = 0; axis < kAxisCount; ++axis) {
        const std::string group = "JoyInput" + Axis(axis);
        const std::size_t a = static_cast<std::size_t>(axis);
        JoyInputEnc[a] = &add<forms::OptionButton>("JoyInputEnc" + Axis(axis), group, "", true);
        JoyInputEncSel[a] = &add<forms::TextBox>("JoyInputEncSel" + Axis(axis), Axis(axis));
        JoyInputAI1[a] = &add<forms::OptionButton>("JoyInputAI1" + Axis(axis), group, "");
        JoyInputAI2[a] = &add<forms::OptionButton>("JoyInputAI2" + Axis(axis), group, "");
        JoyInputVar[a] = &add<forms::OptionButton>("JoyInputVar" + Axis(axis), group, kVariableOfAxis[a]);
        JoyInputDIO[a] = &add<forms::OptionButton>("JoyInputDIO" + Axis(axis), group, kPointsOfAxis[a]);
    }
    add<forms::Frame>("FrameJoyStick", "Joy Stick Control");
    for (const Group& group : Groups()) {
        add<forms::Frame>(group.frame, group.caption);
        addCaptioned<forms::Label>(group.headers);
        for (int axis = 0; axis < kAxisCount; ++axis)
            add<forms::Label>(std::string(group.frame) + "Axis" + Axis(axis), Axis(axis));
    }
    Update.toolTip = "Download without closing";
    Update.onClick = [this] { downloadJoystick(); };
    OK.onClick = [this] {
        if (downloadJoystick() == WriteEnd::Close)
            unload();
    };
    Cancel.onClick = [this] { unload(); };
}

forms::TextBox& SetupJoystick::numberBox(const JoystickColumn& column, int axis) const
{
    return *find<forms::TextBox>(column.prefix + Axis(axis));
}

void SetupJoystick::formLoad()
{
    readController([this] {
        for (const JoystickColumn& column : kJoystickColumns) {
            for (int axis = 0; axis < kAxisCount; ++axis) {
                const auto number = static_cast<std::int16_t>(column.firstNumber + axis);
                numberBox(column, axis).setText(std::to_string(link::GetVar(number)));
            }
        }
        const std::int32_t word = link::GetVar(kJoystickWord);
        ShowBits(word, JoystickBits(), *this);
        for (int axis = 0; axis < kAxisCount; ++axis)
            showInput(axis, InputSelection(word, axis));
    });
}

void SetupJoystick::showInput(int axis, int selection)
{
    const std::size_t a = static_cast<std::size_t>(axis);
    if (selection < kEncoderInputs) {
        JoyInputEnc[a]->setValue(true);
        JoyInputEncSel[a]->setText(Axis(selection));
    } else {
        otherInputs(axis)[static_cast<std::size_t>(selection - kEncoderInputs)]->setValue(true);
    }
}

int SetupJoystick::chosenInput(int axis) const
{
    const auto others = otherInputs(axis);
    for (std::size_t i = 0; i < others.size(); ++i) {
        if (others[i]->value())
            return kEncoderInputs + static_cast<int>(i);
    }
    return EncoderOfText(JoyInputEncSel[static_cast<std::size_t>(axis)]->text(), axis);
}

std::array<forms::OptionButton*, 4> SetupJoystick::otherInputs(int axis) const
{
    const std::size_t a = static_cast<std::size_t>(axis);
    return {JoyInputAI1[a], JoyInputAI2[a], JoyInputVar[a], JoyInputDIO[a]};
}

ConfigDialog::WriteEnd SetupJoystick::downloadJoystick()
{
    return writeController(true, {}, [this] {
        for (const JoystickColumn& column : kJoystickColumns) {
            for (int axis = 0; axis < kAxisCount; ++axis)
                link::SetVar(static_cast<std::int16_t>(column.firstNumber + axis), Number(numberBox(column, axis)));
        }
        std::int32_t word = PackBits(JoystickBits(), *this);
        for (int axis = 0; axis < kAxisCount; ++axis)
            word = WithInputSelection(word, axis, chosenInput(axis));
        link::SetVar(kJoystickWord, word);
    });
}

} // namespace marlune::config
