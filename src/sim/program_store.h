#pragma once

#include "counts.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace marlune::sim {

// The four program slots: their lines, which one is open for writing, and where
// each one's upload stands.
class ProgramStore final {
public:
    static constexpr std::size_t kMaxLines = 1000;
    static constexpr std::size_t kMaxLineLength = 255;

    // Program numbers run from 1 to 4.
    std::optional<int> openProgram() const { return open_; }
    void open(int program);
    void close();
    void clearOpen();
    // Appends a line to the open program; says why not when it cannot.
    std::string append(std::string line);

    const std::vector<std::string>& lines(int program) const { return slot(program).lines; }
    void setLines(int program, std::vector<std::string> lines);

    // The next line for an upload; "END" once the lines are through, so that an
    // uploader that asks for one line more still gets a harmless line.
    std::string nextUploadLine(int program);
    void rewindUpload(int program) { slot(program).uploadNext = 0; }
    // The lines joined by CR LF.
    std::string listing(int program) const;

private:
    struct Slot {
        std::vector<std::string> lines;
        std::size_t uploadNext = 0;
    };
    Slot& slot(int program) { return slots_[static_cast<std::size_t>(program - 1)]; }
    const Slot& slot(int program) const { return slots_[static_cast<std::size_t>(program - 1)]; }

    std::array<Slot, kProgramCount> slots_;
    std::optional<int> open_;
};

} // namespace marlune::sim
