// The .prj reader: any bytes as a project file; what it reads is written and read back the same.
#include "project/project_file.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace marlune::project;
    const ProjectContents read = ParseProjectFile(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!read.ok())
        return 0;
    // What the program writes it must be able to read again.
    if (!ParseProjectFile(FormatProjectFile(read.sections, read.display, read.control)).ok())
        std::abort();
    return 0;
}
