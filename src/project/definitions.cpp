#include "project/definitions.h"

#include <algorithm>

namespace marlune::project {

DefinitionLine SplitDefinitionLine(std::string_view line)
{
    DefinitionLine split;
    const std::size_t equals = line.find('=');
    for (const char c : line.substr(0, equals)) {
        if (c != ' ')
            split.name.push_back(c);
    }
    if (equals == std::string_view::npos)
        return split;
    for (const char c : line.substr(equals + 1)) {
        if (c != ' ' && c != '=')
            split.value.push_back(c);
    }
    return split;
}

std::vector<std::string> DefinitionNames(std::string_view text)
{
    std::vector<std::string> names;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
        if (end > start) {
            DefinitionLine line = SplitDefinitionLine(text.substr(start, end - start));
            if (!line.name.empty() && !line.value.empty())
                names.push_back(std::move(line.name));
        }
        start = end + 1;
    }
    return names;
}

std::vector<NameMatch> FindDefinedNames(std::string_view line, const std::vector<std::string>& names)
{
    std::vector<NameMatch> matches;
    std::size_t position = 0;
    while (position < line.size()) {
        std::size_t length = 1;
        for (std::size_t index = 0; index < names.size(); ++index) {
            if (!names[index].empty() && line.substr(position).starts_with(names[index])) {
                matches.push_back({position, names[index].size(), index});
                length = names[index].size();
                break;
            }
        }
        position += length;
    }
    return matches;
}

bool KeepsItsNames(std::string_view line) { return line.find_first_of("\"#") != std::string_view::npos; }

} // namespace marlune::project
