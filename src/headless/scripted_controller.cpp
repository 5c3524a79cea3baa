#include "headless/scripted_controller.h"

#include <algorithm>
#include <cstring>

namespace marlune::headless {

std::string RequestKey(std::string_view frame) { return std::string(frame.substr(0, frame.find('\r'))); }

void ScriptedController::addReplyOnce(const std::string& request, std::string reply)
{
    repliesOnce_[request].push_back(std::move(reply));
}

void ScriptedController::queueOpenResults(const std::vector<std::int32_t>& handles)
{
    openResults_.insert(openResults_.end(), handles.begin(), handles.end());
}

std::int32_t ScriptedController::open(std::int32_t kind, std::int32_t mode, char* address)
{
    ComCall call{ComCall::Operation::Open, kind, mode, 0, address ? std::string(address) : std::string(), 1};
    if (forward_) {
        call.result = forward_->open(kind, mode, address);
    } else if (!openResults_.empty()) {
        call.result = openResults_.front();
        openResults_.pop_front();
    }
    calls_.push_back(std::move(call));
    return calls_.back().result;
}

std::int32_t ScriptedController::close(std::int32_t kind, std::int32_t handle)
{
    std::int32_t result = 1;
    if (forward_)
        result = forward_->close(kind, handle);
    calls_.push_back({ComCall::Operation::Close, kind, 0, handle, {}, result});
    return result;
}

std::int32_t ScriptedController::sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply)
{
    std::string frame = request ? std::string(request) : std::string();
    const std::int32_t result = ++exchanges_ == failNumber_ ? 0
                                : forward_                  ? forward_->sendRecv(kind, handle, request, reply)
                                                            : scriptedExchange(RequestKey(frame), reply);
    calls_.push_back({ComCall::Operation::Exchange, kind, 0, handle, std::move(frame), result});
    return result;
}

std::int32_t ScriptedController::scriptedExchange(const std::string& key, char* reply)
{
    if (failAny_ > 0) {
        --failAny_;
        return 0;
    }
    if (auto failing = failures_.find(key); failing != failures_.end() && failing->second > 0) {
        --failing->second;
        return 0;
    }
    std::string text = defaultReply_;
    if (auto once = repliesOnce_.find(key); once != repliesOnce_.end() && !once->second.empty()) {
        text = std::move(once->second.front());
        once->second.pop_front();
    } else if (auto standing = replies_.find(key); standing != replies_.end()) {
        text = standing->second;
    }
    // A reply as long as the buffer fills it without a NUL, as the library would.
    const std::size_t n = std::min(text.size(), link::kReceiveBufferSize);
    std::memcpy(reply, text.data(), n);
    if (n < link::kReceiveBufferSize)
        reply[n] = '\0';
    return 1;
}

} // namespace marlune::headless
