#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::project {

// One line of the definition list. Every blank is dropped wherever it stands; the name is what
// stands before the first "=", the value what stands behind it, without any later "=".
struct DefinitionLine {
    std::string name;
    std::string value;
};

DefinitionLine SplitDefinitionLine(std::string_view line);

// The names of the lines that have a name and a value, in the order of their lines. Lines end at
// CR or LF in any mix; empty lines are skipped.
std::vector<std::string> DefinitionNames(std::string_view text);

// Where a definition stands in a program line: its place and the index of its name.
struct NameMatch {
    std::size_t start = 0;
    std::size_t length = 0;
    std::size_t index = 0;
};

// The names in `line` as the download replaces them: position by position, case-sensitive and
// with no word boundaries; at each position the first name of the list that stands there wins,
// and the scan goes on behind it.
std::vector<NameMatch> FindDefinedNames(std::string_view line, const std::vector<std::string>& names);

// A line that holds `"` or `#` keeps its names: they are text the controller prints or reads.
bool KeepsItsNames(std::string_view line);

} // namespace marlune::project
