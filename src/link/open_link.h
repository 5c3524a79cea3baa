#pragma once

#include <cstdint>
#include <string>

namespace marlune::link {

// Opens the link of ControllerLink's kind and stores the handle. Ethernet makes one more
// attempt at once when the first fails, unless `secondEthernetAttempt` is false. Returns
// whether the handle is valid. Neither shows a message nor touches `connected`: the owner does.
bool OpenLink(bool secondEthernetAttempt = true);

// Closes the handle of ControllerLink's kind; the handle keeps its value.
void CloseLink();

// Hands `field` to the library's open in an address buffer and takes back what the library left
// there; the handle.
std::int32_t OpenWithAddress(std::int32_t kind, std::int32_t mode, std::string& field);

} // namespace marlune::link
