#include "panel/status_reply.h"

namespace marlune::panel {

namespace {

struct Group {
    int firstField; // 1-based
    int lastField;
    std::string_view terminators;
};

constexpr std::array<Group, 8> kGroups = {{
        {1, 12, ","},
        {13, 16, ","},
        {17, 17, ".,"},
        {18, 18, ","},
        {19, 22, ","},
        {23, 26, ".,"},
        {27, 27, ".,"},
        {28, 28, ".,"},
}};

} // namespace

std::optional<StatusFields> SplitStatusReply(std::string_view reply)
{
    if (reply.empty() || reply[0] != '@')
        return std::nullopt;
    StatusFields fields;
    std::size_t pos = 1;
    for (const Group& group : kGroups) {
        for (int f = group.firstField; f <= group.lastField; ++f) {
            const std::size_t end = reply.find_first_of(group.terminators, pos);
            if (end == std::string_view::npos)
                break; // the rest of this group cannot complete; the next starts at pos
            fields.field[static_cast<std::size_t>(f - 1)] = std::string(reply.substr(pos, end - pos));
            pos = end + 1;
        }
    }
    return fields;
}

} // namespace marlune::panel
