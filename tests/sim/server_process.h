#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace marlune::sim::test {

// A marlune-sim started for one test, with its start-up lines. It is told to
// stop on its own, and is ended by its process id when the test is over.
class ServerProcess final {
public:
    explicit ServerProcess(const std::vector<std::string>& args);
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    // The next line the server printed, waiting at most `limit`.
    std::optional<std::string> readLine(std::chrono::milliseconds limit = std::chrono::seconds(10));
    // Sends SIGTERM and waits; the exit status, or nullopt if it did not end in time.
    std::optional<int> terminate();
    // Waits for the server to end by itself.
    std::optional<int> waitForExit(std::chrono::milliseconds limit);

private:
    pid_t pid_ = -1;
    int output_ = -1;
    std::string buffered_;
};

// A TCP client of 127.0.0.1.
class Client final {
public:
    explicit Client(int port);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool connected() const { return fd_ >= 0; }
    void send(const std::string& bytes);
    // The reply up to its 0x04, without it; nullopt on time-out or a closed link.
    std::optional<std::string> reply(std::chrono::milliseconds limit = std::chrono::seconds(5));
    std::optional<std::string> exchange(const std::string& command);
    // True when the server closed the connection.
    bool closedByPeer(std::chrono::milliseconds limit = std::chrono::seconds(5));
    void close();

private:
    int fd_ = -1;
};

// Reads a reply from a file descriptor up to 0x04.
std::optional<std::string> readReply(int fd, std::chrono::milliseconds limit);

} // namespace marlune::sim::test
