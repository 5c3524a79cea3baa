#include "headless/temporary_directory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

namespace marlune::headless {

TemporaryWorkingDirectory::TemporaryWorkingDirectory() : previous_(std::filesystem::current_path())
{
    std::string pattern = (std::filesystem::temp_directory_path() / "marlune-scenario-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("cannot make a temporary working directory: " + std::string(std::strerror(errno)));
    path_ = pattern;
    std::filesystem::current_path(path_);
}

TemporaryWorkingDirectory::~TemporaryWorkingDirectory()
{
    std::error_code ignored;
    std::filesystem::current_path(previous_, ignored);
    std::filesystem::remove_all(path_, ignored);
}

} // namespace marlune::headless
