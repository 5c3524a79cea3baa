#include "project/recent_projects.h"

#include <algorithm>

#include "forms/platform.h"

namespace marlune::project {

namespace {

constexpr const char* Section = "Recent Projects";

std::string Key(std::size_t index) { return "File" + std::to_string(index + 1); }

} // namespace

void RecentProjects::read()
{
    names_.clear();
    for (std::size_t i = 0; i < Count; ++i) {
        std::optional<std::string> name =
                forms::CurrentPlatform().readSetting(forms::kApplicationTitle, Section, Key(i));
        if (name && !name->empty() && std::find(names_.begin(), names_.end(), *name) == names_.end())
            names_.push_back(std::move(*name));
    }
    if (onChange)
        onChange();
}

void RecentProjects::remember(const std::string& name)
{
    std::erase(names_, name);
    names_.insert(names_.begin(), name);
    if (names_.size() > Count)
        names_.resize(Count);
    changed();
}

void RecentProjects::forget(const std::string& name)
{
    std::erase(names_, name);
    changed();
}

void RecentProjects::changed()
{
    // An emptied place is written empty, so that a forgotten project does not come back.
    forms::Platform& platform = forms::CurrentPlatform();
    for (std::size_t i = 0; i < Count; ++i)
        platform.saveSetting(forms::kApplicationTitle, Section, Key(i), i < names_.size() ? names_[i] : std::string());
    if (onChange)
        onChange();
}

} // namespace marlune::project
