#include "forms/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace marlune::forms {

bool FileExists(const std::string& path)
{
    std::error_code ec;
    return !path.empty() && std::filesystem::is_regular_file(path, ec);
}

std::optional<std::string> ReadFileBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad())
        return std::nullopt;
    return bytes;
}

std::string WriteFileAtomically(const std::string& path, const std::string& bytes)
{
    const std::string temporary = path + ".tmp-marlune";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out)
            return std::strerror(errno);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.flush();
        if (!out) {
            const std::string reason = std::strerror(errno);
            out.close();
            std::remove(temporary.c_str());
            return reason;
        }
    }
    std::error_code ec;
    std::filesystem::rename(temporary, path, ec);
    if (ec) {
        std::remove(temporary.c_str());
        return ec.message();
    }
    return {};
}

} // namespace marlune::forms
