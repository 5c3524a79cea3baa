#pragma once

#include <cstdint>
#include <string>

namespace marlune::link {

struct ControllerLink;

inline constexpr std::size_t kLongestCommand = 32;
inline constexpr const char* kExchangeFailedText = "Error in Send Receive!";

// The one way to the library's exchange: hands the NUL-terminated `request` frame and the
// `reply` buffer (kReceiveBufferSize bytes) to the library over `link`, and records the exchange
// in the log. While no link kind is known no call is made and the exchange is Refused.
// Returns the library's result.
std::int32_t Transact(const ControllerLink& link, const char* request, char* reply);

// Removes the blanks (0x20 only) and everything from the first ';' on.
std::string CleanCommand(const std::string& command);

// One cleaned command and its reply over the open link. `command` is left cleaned.
// Empty after cleaning: true, nothing sent, `reply` untouched. Longer than 32 characters:
// "Command too long: " message, false. Failed exchange: `reply` is "Error in Send Receive!",
// false. Otherwise `reply` is the reply text (CR and LF kept only for a listing), true.
bool SendCommand(std::string& command, std::string& reply);

// The diagnostic pair of the terminal's Test button: on a virtual COM port the two commands
// go out in turn a hundred times, on the other kinds the first goes out once.
bool SendCommandPair(std::string& firstCommand, std::string& secondCommand, std::string& reply);

} // namespace marlune::link
