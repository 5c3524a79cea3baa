// The .prj reader: any bytes as a project file, and what it read written out again. Whether
// the written file reads back is not asserted: a text line holding the words of a selection
// is kept as text and read as a selection, so a project can hold a line that makes its own
// file unreadable (corpus/project_file/selection-in-text).
#include "project/project_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace marlune::project;
    const ProjectContents read = ParseProjectFile(std::string_view(reinterpret_cast<const char*>(data), size));
    if (read.ok())
        ParseProjectFile(FormatProjectFile(read.sections, read.display, read.control));
    return 0;
}
