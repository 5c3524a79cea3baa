#include "project/project_file.h"

#include "forms/files.h"
#include "forms/number.h"

#include <limits>
#include <optional>
#include <utility>

namespace marlune::project {

namespace {

constexpr std::string_view MarkerLineEnd = "\r\r\n";
constexpr std::string_view TextLineEnd = "\r\n";
constexpr std::string_view DisplayWords = "PROJECT PROGRAM DISPLAY SELECTION";
constexpr std::string_view ControlWords = "PROJECT PROGRAM CONTROL SELECTION";

// The words of a marker; the reader looks for them anywhere in a line, the writer frames them.
std::string BeginWords(int section)
{
    return section == DefinitionSection ? "PROJECT BEGIN DEFINITION" : "PROJECT BEGIN PROG " + std::to_string(section);
}

std::string EndWords(int section)
{
    return section == DefinitionSection ? "PROJECT END DEFINITION" : "PROJECT END PROG " + std::to_string(section);
}

void AppendMarkerLine(std::string& out, std::string_view words)
{
    out.append(";*** ").append(words).append(" ***").append(MarkerLineEnd);
}

// A CR or an LF ends a line, so CR LF is one line end; empty lines are not written.
void AppendTextLines(std::string& out, std::string_view text)
{
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find_first_of("\r\n", start);
        if (end == std::string_view::npos)
            end = text.size();
        if (end > start)
            out.append(text.substr(start, end - start)).append(TextLineEnd);
        start = end + 1;
    }
}

// A selection is the two characters behind the first "=" of its line; a line without "="
// leaves it as it was.
std::string ReadSelection(std::string_view line, std::string_view name, std::int32_t& selection)
{
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return {};
    const std::string_view digits = line.substr(equals + 1, 2);
    const forms::WholeNumber number =
            forms::ParseWholeNumber(digits, std::numeric_limits<std::int32_t>::min(),
                                    std::numeric_limits<std::int32_t>::max(), forms::Fraction::Refuse);
    if (!number.ok())
        return "The " + std::string(name) + " selection \"" + std::string(digits)
               + "\" in the project file is no whole number.";
    selection = static_cast<std::int32_t>(number.value);
    return {};
}

} // namespace

ProjectContents ParseProjectFile(std::string_view bytes)
{
    ProjectContents contents;
    // Text before the first marker belongs to program 1.
    int section = 1;
    std::size_t start = 0;
    while (start < bytes.size()) {
        std::size_t end = bytes.find('\r', start);
        if (end == std::string_view::npos)
            end = bytes.size();
        const std::string_view line = bytes.substr(start, end - start);
        start = end + 1;
        if (start < bytes.size() && bytes[start] == '\n')
            ++start;
        if (line.empty())
            continue;
        // All twelve searches on every line, in this order: of two markers the later one counts.
        bool isMarker = false;
        for (int s = 1; s <= DefinitionSection; ++s) {
            if (line.find(BeginWords(s)) != std::string_view::npos) {
                section = s;
                isMarker = true;
            }
        }
        // A selection line is no marker: inside an open section it is kept as text.
        if (line.find(DisplayWords) != std::string_view::npos)
            contents.failure = ReadSelection(line, "display", contents.display);
        if (contents.ok() && line.find(ControlWords) != std::string_view::npos)
            contents.failure = ReadSelection(line, "control", contents.control);
        if (!contents.ok())
            return contents;
        for (int s = 1; s <= DefinitionSection; ++s) {
            if (line.find(EndWords(s)) != std::string_view::npos) {
                section = 0;
                isMarker = true;
            }
        }
        if (section != 0 && !isMarker)
            contents.sections[SectionIndex(section)].append(line).append(TextLineEnd);
    }
    return contents;
}

std::string FormatProjectFile(const SectionTexts& sections, std::int32_t display, std::int32_t control)
{
    std::string out;
    for (int s = 1; s <= DefinitionSection; ++s) {
        AppendMarkerLine(out, BeginWords(s));
        AppendTextLines(out, sections[SectionIndex(s)]);
        AppendMarkerLine(out, EndWords(s));
    }
    AppendMarkerLine(out, std::string(DisplayWords) + "=" + std::to_string(display));
    AppendMarkerLine(out, std::string(ControlWords) + "=" + std::to_string(control));
    return out;
}

std::string ReadProjectFile(const std::string& fileName, ProjectState& state, std::int32_t& display,
                            std::int32_t& control)
{
    const std::optional<std::string> bytes = forms::ReadFileBytes(fileName);
    if (!bytes)
        return "The project file " + fileName + " cannot be read.";
    ProjectContents contents = ParseProjectFile(*bytes);
    if (!contents.ok())
        return contents.failure;
    state.sectionText = std::move(contents.sections);
    display = contents.display;
    control = contents.control;
    return {};
}

std::string WriteProjectFile(const std::string& fileName, const SectionTexts& sections, std::int32_t display,
                             std::int32_t control)
{
    return forms::WriteFileAtomically(fileName, FormatProjectFile(sections, display, control));
}

} // namespace marlune::project
