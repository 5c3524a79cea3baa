#include "headless/statement_kind.h"

namespace marlune::headless {

std::optional<std::string> WordCountError(const std::string& what, std::size_t minArgs, std::size_t maxArgs,
                                          std::size_t args)
{
    if (args >= minArgs && args <= maxArgs)
        return std::nullopt;
    const std::string bounds = maxArgs == kMany     ? " or more words"
                               : maxArgs == minArgs ? " words"
                                                    : " to " + std::to_string(maxArgs) + " words";
    return what + " takes " + std::to_string(minArgs) + bounds + ", not " + std::to_string(args);
}

} // namespace marlune::headless
