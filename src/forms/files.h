#pragma once

#include <optional>
#include <string>

namespace marlune::forms {

// Files of the program: read whole, written whole by atomic replacement, so that a failed
// write never leaves a half-written file behind.
bool FileExists(const std::string& path);

// The bytes of the file, or nothing when it cannot be read.
std::optional<std::string> ReadFileBytes(const std::string& path);

// Writes `bytes` to a temporary file beside `path` and renames it over `path`.
// Returns an empty text on success, else the reason for the operator.
std::string WriteFileAtomically(const std::string& path, const std::string& bytes);

} // namespace marlune::forms
