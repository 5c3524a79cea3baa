#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace marlune::sim {

// The four axes, always in this order.
enum class AxisId { X = 0, Y = 1, Z = 2, U = 3 };

inline constexpr std::size_t kAxisCount = 4;
inline constexpr std::array<char, kAxisCount> kAxisLetters = {'X', 'Y', 'Z', 'U'};

inline constexpr std::size_t AxisIndex(AxisId axis) { return static_cast<std::size_t>(axis); }

// The axis that an upper-case letter names, if any.
inline std::optional<AxisId> AxisFromLetter(char letter)
{
    for (std::size_t i = 0; i < kAxisCount; ++i) {
        if (kAxisLetters[i] == letter)
            return static_cast<AxisId>(i);
    }
    return std::nullopt;
}

} // namespace marlune::sim
