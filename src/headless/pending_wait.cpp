#include "headless/pending_wait.h"

#include "forms/form.h"
#include "headless/headless_platform.h"
#include "headless/scenario_failure.h"

namespace marlune::headless {

void PendingWait::begin(std::int64_t duration, forms::Form* closing, std::string failure, int line)
{
    wait_ = Wait{platform_.now() + duration, closing, std::move(failure), line, ++nextId_};
    finish();
}

std::optional<int> PendingWait::line() const
{
    if (!wait_)
        return std::nullopt;
    return wait_->line;
}

void PendingWait::finish()
{
    const auto& modal = platform_.modalForms();
    forms::Form* level = modal.empty() ? nullptr : modal.back();
    while (wait_) {
        if (wait_->closing && !wait_->closing->loaded()) {
            wait_.reset();
            return;
        }
        if (platform_.now() >= wait_->until) {
            const Wait over = *wait_;
            wait_.reset();
            if (over.closing)
                throw ScenarioFailure(over.failure, over.line);
            return;
        }
        // A nested level may finish or replace this wait; the advance then stops at once.
        const std::uint64_t id = wait_->id;
        platform_.advance(wait_->until, [this, id] {
            return !wait_ || wait_->id != id || (wait_->closing && !wait_->closing->loaded());
        });
        if (level && !level->loaded())
            return;
    }
}

} // namespace marlune::headless
