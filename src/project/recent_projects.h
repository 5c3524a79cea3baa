#pragma once

#include <functional>
#include <string>
#include <vector>

namespace marlune::project {

// The projects opened or saved last, newest first, kept in the per-user settings store so that
// the File menu offers them again in the next run.
class RecentProjects final {
public:
    static constexpr std::size_t Count = 4;

    const std::vector<std::string>& names() const { return names_; }
    // Takes the list from the store.
    void read();
    // Puts `name` first, once, and keeps the four newest.
    void remember(const std::string& name);
    void forget(const std::string& name);

    // Runs after every change of the list.
    std::function<void()> onChange;

private:
    void changed();

    std::vector<std::string> names_;
};

} // namespace marlune::project
