#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace marlune::forms {
class Form;
}

namespace marlune::headless {

class HeadlessPlatform;

// The wait statements across modal nesting. A wait advances the clock; when a tick closes
// the innermost modal form the advance stops there, that showing returns, and the level
// that goes on reading statements finishes the rest of the wait first.
class PendingWait final {
public:
    explicit PendingWait(HeadlessPlatform& platform) : platform_(platform) {}

    // A wait for `duration`; with `closing`, one that ends early when that form has unloaded
    // and fails with `failure` when it has not by then.
    void begin(std::int64_t duration, forms::Form* closing, std::string failure, int line);
    // Advances until no wait is pending, or until the innermost modal form has unloaded.
    // Throws ScenarioFailure (at the wait's line) for a form that stayed.
    void finish();

    // The line of the wait in progress, if any.
    std::optional<int> line() const;

private:
    struct Wait {
        std::int64_t until = 0;
        forms::Form* closing = nullptr;
        std::string failure;
        int line = 0;
        std::uint64_t id = 0; // tells an advance that the wait it serves was replaced
    };

    HeadlessPlatform& platform_;
    std::optional<Wait> wait_;
    std::uint64_t nextId_ = 0;
};

} // namespace marlune::headless
