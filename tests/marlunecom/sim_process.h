#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace marlune::marlunecom::testing {

// A marlune-sim process for one test or benchmark, ended when this object goes (it also
// ends by itself through --exit-after). Its start-up lines are read from its standard output.
class SimProcess final {
public:
    SimProcess(const std::string& program, const std::vector<std::string>& arguments);
    ~SimProcess();
    SimProcess(const SimProcess&) = delete;
    SimProcess& operator=(const SimProcess&) = delete;

    // The rest of the first start-up line that begins with `prefix` ("tcp ", "pty "), or
    // nullopt when none came within `timeout` or the process ended.
    std::optional<std::string> lineAfter(const std::string& prefix,
                                         std::chrono::milliseconds timeout = std::chrono::seconds(5));

    // The port of a "tcp 127.0.0.1:PORT" line.
    std::optional<std::uint16_t> tcpPort();

private:
    pid_t pid_ = -1;
    int output_ = -1;
    std::string buffered_;
};

} // namespace marlune::marlunecom::testing
