#include "project/definitions.h"

#include <algorithm>
#include <array>

#include "forms/text.h"

namespace marlune::project {

namespace {

// Calls `take` with each non-empty line of a definition list (lines end at CR or LF in any mix)
// until it returns false.
template <class Take>
void ForEachDefinitionLine(std::string_view text, Take take)
{
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
        if (end > start && !take(SplitDefinitionLine(text.substr(start, end - start))))
            return;
        start = end + 1;
    }
}

std::string Shown(const std::string& name, const std::string& value) { return name + "=" + value + "\r"; }

bool IsReservedName(const std::string& name)
{
    static constexpr std::array<std::string_view, 3> Reserved{"WHILE", "END", "ENDWHILE"};
    const std::string upper = forms::UpperAscii(name);
    return std::find(Reserved.begin(), Reserved.end(), upper) != Reserved.end();
}

bool IsValueStart(char c) { return (c >= '0' && c <= '9') || c == 'V' || c == 'v' || c == 'F' || c == 'f'; }

std::string Substitute(std::string_view line, const NameIndex& index, const std::vector<std::string>& values)
{
    std::string output;
    std::size_t copied = 0;
    for (const NameMatch& match : FindDefinedNames(line, index)) {
        output.append(line.substr(copied, match.start - copied));
        output.append(values[match.index]);
        copied = match.start + match.length;
    }
    output.append(line.substr(copied));
    return output;
}

} // namespace

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
    ForEachDefinitionLine(text, [&names](DefinitionLine line) {
        if (!line.name.empty() && !line.value.empty())
            names.push_back(std::move(line.name));
        return true;
    });
    return names;
}

std::string ParseDefinitions(std::string_view text, DefinitionTable& table)
{
    table = {};
    std::string failure;
    ForEachDefinitionLine(text, [&](DefinitionLine line) {
        if (line.name.empty() || line.value.empty()) {
            failure = "Definition Length Error: " + Shown(line.name, line.value);
            return false;
        }
        table.definitionNames.push_back(std::move(line.name));
        table.definitionValues.push_back(std::move(line.value));
        return true;
    });
    return failure;
}

std::string ValidateDefinitions(const DefinitionTable& table)
{
    for (std::size_t i = 0; i < table.definitionNames.size(); ++i) {
        const std::string& name = table.definitionNames[i];
        const std::string& value = table.definitionValues[i];
        if (!IsValueStart(value.front()) || IsReservedName(name))
            return "Invalid Definition: " + Shown(name, value) + "Definition must be a number or variable or flag";
    }
    return {};
}

std::string PrepareProgram(std::string_view programText, const DefinitionTable& table)
{
    const NameIndex index(table.definitionNames);
    std::string prepared;
    const auto add = [&prepared](const std::string& line) {
        if (!line.empty())
            prepared.append(line).push_back('\r');
    };
    std::string line;
    for (const char c : programText) {
        if (c == '\t' || c == '\n')
            continue;
        if (c != '\r') {
            line.push_back(c);
            continue;
        }
        if (!line.empty())
            add(KeepsItsNames(line) ? line : Substitute(line, index, table.definitionValues));
        line.clear();
    }
    // A last line without its CR is substituted whatever it holds.
    if (!line.empty())
        add(Substitute(line, index, table.definitionValues));
    return prepared;
}

std::string SubstituteLine(std::string_view line, const DefinitionTable& table)
{
    return Substitute(line, NameIndex(table.definitionNames), table.definitionValues);
}

NameIndex::NameIndex(const std::vector<std::string>& names) : nodes_(1)
{
    for (std::size_t index = 0; index < names.size(); ++index) {
        std::size_t node = 0;
        for (const char c : names[index]) {
            if (const std::optional<std::size_t> known = child(node, c)) {
                node = *known;
                continue;
            }
            nodes_[node].next.emplace_back(c, nodes_.size());
            node = nodes_.size();
            nodes_.emplace_back();
        }
        // The root is the empty name, which never stands anywhere.
        if (node != 0 && !nodes_[node].index)
            nodes_[node].index = index;
    }
}

std::optional<NameMatch> NameIndex::firstAt(std::string_view text) const
{
    std::optional<NameMatch> first;
    std::size_t node = 0;
    for (std::size_t length = 1; length <= text.size(); ++length) {
        const std::optional<std::size_t> known = child(node, text[length - 1]);
        if (!known)
            break;
        node = *known;
        const std::optional<std::size_t> index = nodes_[node].index;
        if (index && (!first || *index < first->index))
            first = NameMatch{0, length, *index};
    }
    return first;
}

std::optional<std::size_t> NameIndex::child(std::size_t node, char c) const
{
    for (const auto& [character, target] : nodes_[node].next) {
        if (character == c)
            return target;
    }
    return std::nullopt;
}

std::vector<NameMatch> FindDefinedNames(std::string_view line, const NameIndex& index)
{
    std::vector<NameMatch> matches;
    std::size_t position = 0;
    while (position < line.size()) {
        std::optional<NameMatch> match = index.firstAt(line.substr(position));
        if (!match) {
            ++position;
            continue;
        }
        match->start = position;
        matches.push_back(*match);
        position += match->length;
    }
    return matches;
}

std::vector<NameMatch> FindDefinedNames(std::string_view line, const std::vector<std::string>& names)
{
    return FindDefinedNames(line, NameIndex(names));
}

bool KeepsItsNames(std::string_view line) { return line.find_first_of("\"#") != std::string_view::npos; }

} // namespace marlune::project
