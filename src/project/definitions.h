#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace marlune::project {

// One line of the definition list. Every blank is dropped wherever it stands; the name is what
// stands before the first "=", the value what stands behind it, without any later "=".
struct DefinitionLine {
    std::string name;
    std::string value;
};

DefinitionLine SplitDefinitionLine(std::string_view line);

// The definition table of one download, rebuilt from the definition list at each press. It has
// no fixed size: every line of the list is kept.
struct DefinitionTable {
    std::vector<std::string> definitionNames;
    std::vector<std::string> definitionValues;
};

// Reads the definition list into `table`. A line with an empty name or value ends the reading
// with "Definition Length Error: " and the line as read; the result is that message, or empty.
std::string ParseDefinitions(std::string_view text, DefinitionTable& table);

// The first entry whose value does not begin with a digit, V or F, or whose name is WHILE, END
// or ENDWHILE in any case, gives "Invalid Definition: "; the result is that message, or empty.
std::string ValidateDefinitions(const DefinitionTable& table);

// The text that goes to the controller for one program window: tabs and LFs dropped, each
// non-empty line closed by CR, the defined names replaced except in a line that keeps them.
std::string PrepareProgram(std::string_view programText, const DefinitionTable& table);

// One line with every defined name replaced by its value (see FindDefinedNames).
std::string SubstituteLine(std::string_view line, const DefinitionTable& table);

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

// The names of a list arranged by their characters, so that a long list is searched in the time
// of its longest name and not of its length; the first listed name still wins.
class NameIndex final {
public:
    explicit NameIndex(const std::vector<std::string>& names);

    // The index of the first listed name that stands at the start of `text`, and its length.
    std::optional<NameMatch> firstAt(std::string_view text) const;

private:
    struct Node {
        std::vector<std::pair<char, std::size_t>> next;
        std::optional<std::size_t> index; // the first listed name that ends here
    };
    std::optional<std::size_t> child(std::size_t node, char c) const;

    std::vector<Node> nodes_;
};

std::vector<NameMatch> FindDefinedNames(std::string_view line, const NameIndex& index);

// A line that holds `"` or `#` keeps its names: they are text the controller prints or reads.
bool KeepsItsNames(std::string_view line);

} // namespace marlune::project
