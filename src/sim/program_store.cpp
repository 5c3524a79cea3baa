#include "program_store.h"

namespace marlune::sim {

void ProgramStore::open(int program)
{
    open_ = program;
    rewindUpload(program);
}

void ProgramStore::close()
{
    open_.reset();
    for (Slot& s : slots_)
        s.uploadNext = 0;
}

void ProgramStore::clearOpen()
{
    if (!open_)
        return;
    slot(*open_).lines.clear();
    rewindUpload(*open_);
}

std::string ProgramStore::append(std::string line)
{
    if (!open_)
        return "no program is open";
    Slot& s = slot(*open_);
    if (s.lines.size() >= kMaxLines)
        return "program " + std::to_string(*open_) + " is full (" + std::to_string(kMaxLines) + " lines)";
    if (line.size() > kMaxLineLength)
        return "line longer than " + std::to_string(kMaxLineLength) + " characters";
    s.lines.push_back(std::move(line));
    return {};
}

void ProgramStore::setLines(int program, std::vector<std::string> lines)
{
    Slot& s = slot(program);
    s.lines = std::move(lines);
    s.uploadNext = 0;
}

std::string ProgramStore::nextUploadLine(int program)
{
    Slot& s = slot(program);
    if (s.uploadNext >= s.lines.size())
        return "END";
    return s.lines[s.uploadNext++];
}

std::string ProgramStore::listing(int program) const
{
    std::string text;
    for (const std::string& line : slot(program).lines) {
        if (!text.empty())
            text += "\r\n";
        text += line;
    }
    return text;
}

} // namespace marlune::sim
