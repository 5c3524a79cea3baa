#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace marlune::testing {

// A marlune-sim process for one test or benchmark; its start-up lines are read from its
// standard output. It is ended by its process id when this object goes, should it not
// have ended by itself (--exit-after, --idle-exit).
class SimProcess final {
public:
    SimProcess(const std::string& program, const std::vector<std::string>& arguments);
    ~SimProcess();
    SimProcess(const SimProcess&) = delete;
    SimProcess& operator=(const SimProcess&) = delete;

    // The rest of the next line that begins with `prefix` ("tcp ", "pty "), or nullopt when none
    // came within `limit`.
    std::optional<std::string> lineAfter(const std::string& prefix,
                                         std::chrono::milliseconds limit = std::chrono::seconds(10));
    // The port of the "tcp 127.0.0.1:PORT" line.
    std::optional<std::uint16_t> tcpPort();

    // Sends `signal` to the process: SIGSTOP hangs it as a controller that stops answering,
    // SIGCONT brings it back.
    void signal(int signal);
    // Sends SIGTERM (SIGKILL if that is not heeded) and waits; the exit status, or nullopt.
    std::optional<int> terminate();
    // Waits for the process to end by itself; its exit status, or nullopt.
    std::optional<int> waitForExit(std::chrono::milliseconds limit);

private:
    pid_t pid_ = -1;
    int output_ = -1;
    std::string buffered_;
};

} // namespace marlune::testing
