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
struct ReplyBuffer {
    char* fresh()
    {
        std::fill(bytes.begin(), bytes.end(), '\0');
        return bytes.data();
    }
    // The reply text: the bytes before the first 0x04 or NUL.
    std::string text() const
    {
        return {bytes.begin(), std::find_first_of(bytes.begin(), bytes.end(), kEnds, kEnds + 2)};
    }
    bool terminated() const { return std::find(bytes.begin(), bytes.end(), kReplyTerminator) != bytes.end(); }

    static constexpr char kEnds[] = {kReplyTerminator, '\0'};
    std::vector<char> bytes = std::vector<char>(link::kReceiveBufferSize);
};

// Opens a link with an address buffer of the library's size holding `address`, and hands back
// what the library left there.
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
