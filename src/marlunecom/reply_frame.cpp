#include "marlunecom/reply_frame.h"

#include "link/marlune_com.h"

#include <algorithm>
#include <cstring>

namespace marlune::marlunecom {

std::string_view RequestFrame(const char* request) { return {request, ::strnlen(request, link::kSendBufferSize)}; }

RequestCommand CommandOfFrame(std::string_view frame)
{
    const auto cr = frame.find(kCommandTerminator);
    if (cr == std::string_view::npos)
        return {frame, false};
    return {frame.substr(0, cr), true};
}

void WriteReplyFrame(std::string_view text, char* reply)
{
    const auto copied = std::min(text.size(), link::kReceiveBufferSize);
    std::memcpy(reply, text.data(), copied);
    if (copied < link::kReceiveBufferSize)
        reply[copied] = kReplyTerminator;
}

} // namespace marlune::marlunecom
