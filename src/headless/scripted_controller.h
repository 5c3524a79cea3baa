#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "link/marlune_com.h"

namespace marlune::headless {

// One call of the library's three operations, as the program made it.
struct ComCall {
    enum class Operation { Open, Close, Exchange };
    Operation operation = Operation::Exchange;
    std::int32_t kind = 0;
    std::int32_t mode = 0;   // open
    std::int32_t handle = 0; // close and exchange
    std::string bytes;       // open: the address handed in; exchange: the request frame up to its NUL
    std::int32_t result = 0;
};

// The part of a request frame that replies are matched on: its bytes before the first CR.
std::string RequestKey(std::string_view frame);

// A controller that answers from a script and logs every call. Precedence for an exchange:
// a pending failure of every request (`failAny`), then a pending failure of this request,
// then its one-time replies oldest first, then its standing reply, then the default reply.
// A failed exchange leaves the reply buffer alone and uses up no reply.
class ScriptedController final : public link::MarluneCom {
public:
    void setReply(const std::string& request, std::string reply) { replies_[request] = std::move(reply); }
    void setDefaultReply(std::string reply) { defaultReply_ = std::move(reply); }
    void addReplyOnce(const std::string& request, std::string reply);
    void failNext(const std::string& request, int count) { failures_[request] += count; }
    void failAny(int count) { failAny_ += count; }
    // The exchange with this number (from 1, counting every exchange) fails, whatever the
    // script or the forwarded controller would have answered: the fault sweep's one fault.
    void failExchangeNumber(int number) { failNumber_ = number; }
    // The next opens return these handles in order; afterwards 1.
    void queueOpenResults(const std::vector<std::int32_t>& handles);

    // Hands every call to `controller` instead of the script; the calls are still logged.
    void forwardTo(std::unique_ptr<link::MarluneCom> controller) { forward_ = std::move(controller); }
    bool forwarding() const { return forward_ != nullptr; }

    const std::vector<ComCall>& calls() const { return calls_; }
    int exchangeCount() const { return exchanges_; }

    std::int32_t open(std::int32_t kind, std::int32_t mode, char* address) override;
    std::int32_t close(std::int32_t kind, std::int32_t handle) override;
    std::int32_t sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply) override;

private:
    std::int32_t scriptedExchange(const std::string& key, char* reply);

    std::map<std::string, std::string> replies_;
    std::string defaultReply_;
    std::map<std::string, std::deque<std::string>> repliesOnce_;
    std::map<std::string, int> failures_;
    int failAny_ = 0;
    int failNumber_ = 0;
    int exchanges_ = 0;
    std::deque<std::int32_t> openResults_;
    std::unique_ptr<link::MarluneCom> forward_;
    std::vector<ComCall> calls_;
};

} // namespace marlune::headless
