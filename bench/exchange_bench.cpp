// What the command exchange adds to one call of the controller library: cleaning, framing,
// two zeroed buffers and unframing, for a 32-character command and a 100-byte reply.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>

#include "link/command_exchange.h"
#include "link/controller_link.h"

namespace {

using namespace marlune;

// A library whose exchange only writes a fixed 100-byte reply, so that the library's own cost
// is as small as it can be and the exchange's share stands out.
class FixedReplyCom final : public link::MarluneCom {
public:
    FixedReplyCom() : reply_(std::string(98, 'R') + "\r\n\x04") {}
    std::int32_t open(std::int32_t, std::int32_t, char*) override { return 1; }
    std::int32_t close(std::int32_t, std::int32_t) override { return 0; }
    std::int32_t sendRecv(std::int32_t, std::int32_t, const char* request, char* reply) override
    {
        benchmark::DoNotOptimize(request);
        std::memcpy(reply, reply_.data(), reply_.size());
        return 1;
    }

private:
    std::string reply_;
};

const std::string kCommand = "X100000Y200000Z300000U400000 ;go"; // 32 characters once cleaned

void BM_LibraryCallAlone(benchmark::State& state)
{
    FixedReplyCom com;
    std::array<char, link::kSendBufferSize> frame{};
    std::memcpy(frame.data(), "X100000Y200000Z300000U400000\r", 29);
    std::array<char, link::kReceiveBufferSize> reply{};
    for (auto _ : state)
        benchmark::DoNotOptimize(com.sendRecv(1, 1, frame.data(), reply.data()));
}
BENCHMARK(BM_LibraryCallAlone);

void BM_SendCommand(benchmark::State& state)
{
    FixedReplyCom com;
    link::SetCom(&com);
    link::Link().linkKind = 1;
    link::Link().linkHandle = 1;
    std::string reply;
    for (auto _ : state) {
        std::string command = kCommand;
        benchmark::DoNotOptimize(link::SendCommand(command, reply));
    }
    link::SetCom(nullptr);
}
BENCHMARK(BM_SendCommand);

} // namespace

BENCHMARK_MAIN();
