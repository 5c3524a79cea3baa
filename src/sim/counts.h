#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace marlune::sim {

// How many of each the controller has; numbers of programs, variables and points run from 1.
inline constexpr int kProgramCount = 4;
inline constexpr int kICount = 48;
inline constexpr int kVCount = 248;
inline constexpr int kDioCount = 24;
inline constexpr int kAnalogCount = 2;

inline bool StartsWith(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

// A number from 1 to `high` written in plain digits, as programs, variables and points are numbered.
inline std::optional<int> ParseIndex(std::string_view text, int high)
{
    int value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || ec != std::errc() || end != text.data() + text.size() || value < 1 || value > high)
        return std::nullopt;
    return value;
}

// A whole signed decimal number that fits 32 bits, with an optional '+'.
inline std::optional<std::int32_t> ParseSigned32(std::string_view text)
{
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    std::int32_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || ec != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace marlune::sim
