#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace marlune::project {

// The texts of a project by section number: 1 to 4 the programs, 5 the definition list.
using SectionTexts = std::array<std::string, 5>;

inline constexpr int DefinitionSection = 5;

// Where section `section` (1 to 5) stands in SectionTexts.
constexpr std::size_t SectionIndex(int section) { return static_cast<std::size_t>(section - 1); }

// The one project of the run. The project's name and its two selections live in the manager
// window, not here.
struct ProjectState {
    bool projectOpen = false;
    bool projectChanged = false;
    std::string projectFile; // as the file dialog returned it; empty for a new project
    // As the last New or Open left them; every line ends with CR LF.
    SectionTexts sectionText;
    std::int32_t programWindowMask = 0; // bit n-1 while the window of program n is open
    bool windowClosing = false;
    bool silentUpload = false;

    std::string& section(int section) { return sectionText[SectionIndex(section)]; }
    const std::string& section(int section) const { return sectionText[SectionIndex(section)]; }
};

} // namespace marlune::project
