#pragma once

namespace marlune::link {

// Opens the link of ControllerLink's kind and stores the handle. Ethernet makes one more
// attempt at once when the first fails, unless `secondEthernetAttempt` is false. Returns
// whether the handle is valid. Neither shows a message nor touches `connected`: the owner does.
bool OpenLink(bool secondEthernetAttempt = true);

// Closes the handle of ControllerLink's kind; the handle keeps its value.
void CloseLink();

} // namespace marlune::link
