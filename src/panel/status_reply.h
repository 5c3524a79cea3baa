#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace marlune::panel {

inline constexpr int kStatusFields = 28;

// The status reply "@" and 28 fields, each closed by its terminator; the position of a field
// is its meaning. Fields are split here; what they mean is the panel's business.
//
// Fields fall into eight groups (1-12 texts, 13-16 axis words, 17 digital I/O, 18 outputs and
// index, 19-22 program states, 23-26 program lines, 27 joystick, 28 latches). A field that the
// reply ends inside is not complete, and neither are the rest of its group; the next group
// starts again at the same place, where its wider set of terminators may complete a field.
struct StatusFields {
    std::array<std::optional<std::string>, kStatusFields> field; // index 0 is field 1
};

// Nothing at all when the reply does not begin with "@".
std::optional<StatusFields> SplitStatusReply(std::string_view reply);

} // namespace marlune::panel
