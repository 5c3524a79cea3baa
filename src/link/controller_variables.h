#pragma once

#include <cstdint>

namespace marlune::link {

// Reads I<number>. Returns 0 without sending while the link is not connected. A failed
// exchange, or a reply that is no whole 32-bit number, is a failed read: one message
// "Error Get Var:" with the command, `connected` false, result 0, so that no form shows or
// later writes back a value that was never read.
std::int32_t GetVar(std::int16_t number);

// Writes I<number>=<value> whatever `connected` says. 1 on success; on failure the message
// "Error Set Var:" with the command, and 0.
std::int32_t SetVar(std::int16_t number, std::int32_t value);

} // namespace marlune::link
