#pragma once

#include <functional>
#include <string>

namespace marlune::project {

// Holds the link for the length of one click of a project window: opens it, runs `exchange`,
// closes it. A link that does not open is told as "Communication Open Error!" and nothing runs.
void WithLinkForClick(const std::function<void()>& exchange);

// One command through the exchange; its reply is not looked at.
void SendUnread(const std::string& command);

} // namespace marlune::project
