#pragma once

#include <filesystem>

namespace marlune::headless {

// A fresh empty directory, made the process's working directory for as long as it lives and
// removed with everything in it afterwards.
class TemporaryWorkingDirectory final {
public:
    TemporaryWorkingDirectory();
    ~TemporaryWorkingDirectory();
    TemporaryWorkingDirectory(const TemporaryWorkingDirectory&) = delete;
    TemporaryWorkingDirectory& operator=(const TemporaryWorkingDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path previous_;
    std::filesystem::path path_;
};

} // namespace marlune::headless
