#pragma once

#include "link/marlune_com.h"
#include "marlunecom/reply_frame.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::marlunecom::testing {

// A receive buffer as the command exchange offers it: zeroed before each call.
class ReplyBuffer {
public:
    char* fresh()
    {
        std::fill(bytes_.begin(), bytes_.end(), '\0');
        return bytes_.data();
    }

    // The reply text: the bytes before the first 0x04 or NUL.
    std::string text() const
    {
        const auto end =
                std::find_if(bytes_.begin(), bytes_.end(), [](char c) { return c == kReplyTerminator || c == '\0'; });
        return {bytes_.begin(), end};
    }

    bool terminated() const { return std::find(bytes_.begin(), bytes_.end(), kReplyTerminator) != bytes_.end(); }

    const std::vector<char>& bytes() const { return bytes_; }

private:
    std::vector<char> bytes_ = std::vector<char>(link::kReceiveBufferSize);
};

// Opens a link with an address buffer of the library's size holding `address`.
inline std::int32_t OpenLink(link::MarluneCom& com, std::int32_t kind, std::int32_t mode, std::string_view address,
                             std::string* rewritten = nullptr)
{
    std::vector<char> buffer(link::kAddressBufferSize, '\0');
    std::copy_n(address.begin(), std::min(address.size(), buffer.size() - 1), buffer.begin());
    const auto handle = com.open(kind, mode, buffer.data());
    if (rewritten != nullptr)
        *rewritten = buffer.data();
    return handle;
}

} // namespace marlune::marlunecom::testing
