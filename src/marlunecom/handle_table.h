#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <memory>

namespace marlune::marlunecom {

// The open links of one implementation by handle. Handles are above 0 and not reused while
// open; a closed handle is unknown from then on.
template <typename Link>
class HandleTable final {
public:
    std::int32_t add(std::unique_ptr<Link> link)
    {
        while (links_.contains(next_))
            advance();
        const auto handle = next_;
        advance();
        links_.emplace(handle, std::move(link));
        return handle;
    }

    Link* find(std::int32_t handle) const
    {
        const auto it = links_.find(handle);
        return it == links_.end() ? nullptr : it->second.get();
    }

    bool remove(std::int32_t handle) { return links_.erase(handle) > 0; }

    template <typename Visit>
    void forEach(Visit visit)
    {
        for (auto& [handle, link] : links_)
            visit(*link);
    }

private:
    void advance() { next_ = next_ == std::numeric_limits<std::int32_t>::max() ? 1 : next_ + 1; }

    std::int32_t next_ = 1;
    std::map<std::int32_t, std::unique_ptr<Link>> links_;
};

} // namespace marlune::marlunecom
