#pragma once

#include "project/project_state.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace marlune::project {

// What a project file holds, or why it could not be read.
struct ProjectContents {
    SectionTexts sections;
    std::int32_t display = 0; // the display selection
    std::int32_t control = 0; // the control selection
    std::string failure;      // empty when the file was read

    bool ok() const { return failure.empty(); }
};

// Reads the bytes of a project file. A line ends at CR or CR LF; a lone LF belongs to the line.
// Any line holding a marker's words acts as that marker, wherever they stand; text before the
// first marker belongs to program 1. A selection is the two characters behind the first "=",
// blanks around the digits allowed ("=3 " is 3, "=123" is 12); two characters that are no
// whole number ("=1a", "=" with nothing behind) make the file unreadable.
ProjectContents ParseProjectFile(std::string_view bytes);

// The bytes of a project file: every section, empty or not, then the two selections. Marker
// lines end with CR CR LF, text lines with CR LF; empty text lines are not written.
std::string FormatProjectFile(const SectionTexts& sections, std::int32_t display, std::int32_t control);

// Fills the state's section texts and gives the two selections. On failure returns the reason
// and changes nothing; else an empty text.
std::string ReadProjectFile(const std::string& fileName, ProjectState& state, std::int32_t& display,
                            std::int32_t& control);

// Replaces the file as a whole, so a failed save leaves the earlier file as it was. Returns the
// reason of a failure, else an empty text.
std::string WriteProjectFile(const std::string& fileName, const SectionTexts& sections, std::int32_t display,
                             std::int32_t control);

} // namespace marlune::project
