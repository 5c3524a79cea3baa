// The server's frame reader: bytes fed in pieces of any size, at any times, with a small limit
// so that oversized frames are met often.
#include "frame_reader.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto limit = input.ConsumeIntegralInRange<std::size_t>(1, 64);
    marlune::sim::FrameReader reader(limit);
    std::int64_t now = 0;
    while (input.remaining_bytes() > 0) {
        now += input.ConsumeIntegralInRange<std::int64_t>(0, 10);
        reader.feed(input.ConsumeRandomLengthString(64), now);
        if (input.ConsumeBool())
            reader.dropStale(now - 5);
        while (const auto frame = reader.take()) {
            if (frame->bytes.size() > limit || frame->bytes.find('\r') != std::string::npos)
                std::abort();
        }
    }
    return 0;
}
