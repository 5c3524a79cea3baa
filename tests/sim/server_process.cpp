#include "server_process.h"

#include <arpa/inet.h>
#include <csignal>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace marlune::sim::test {

namespace {

using Clock = std::chrono::steady_clock;

int remainingMs(Clock::time_point deadline)
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left > 0 ? static_cast<int>(left) : 0;
}

} // namespace

ServerProcess::ServerProcess(const std::vector<std::string>& args)
{
    int pipeFds[2];
    if (::pipe(pipeFds) != 0)
        return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipeFds[0]);
    std::vector<std::string> all{MARLUNE_SIM_EXECUTABLE};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& arg : all)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    if (posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ) != 0)
        pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeFds[1]);
    output_ = pipeFds[0];
}

ServerProcess::~ServerProcess()
{
    if (pid_ > 0 && !waitForExit(std::chrono::milliseconds(0)))
        terminate();
    if (output_ >= 0)
        ::close(output_);
}

std::optional<std::string> ServerProcess::readLine(std::chrono::milliseconds limit)
{
    const auto deadline = Clock::now() + limit;
    for (;;) {
        const auto end = buffered_.find('\n');
        if (end != std::string::npos) {
            std::string line = buffered_.substr(0, end);
            buffered_.erase(0, end + 1);
            return line;
        }
        pollfd fd{output_, POLLIN, 0};
        if (::poll(&fd, 1, remainingMs(deadline)) <= 0)
            return std::nullopt;
        char chunk[256];
        const ssize_t got = ::read(output_, chunk, sizeof chunk);
        if (got <= 0)
            return std::nullopt;
        buffered_.append(chunk, static_cast<std::size_t>(got));
    }
}

std::optional<int> ServerProcess::waitForExit(std::chrono::milliseconds limit)
{
    if (pid_ <= 0)
        return std::nullopt;
    const auto deadline = Clock::now() + limit;
    for (;;) {
        int status = 0;
        if (::waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        if (Clock::now() >= deadline)
            return std::nullopt;
        ::usleep(10'000);
    }
}

std::optional<int> ServerProcess::terminate()
{
    if (pid_ <= 0)
        return std::nullopt;
    ::kill(pid_, SIGTERM);
    auto status = waitForExit(std::chrono::seconds(5));
    if (!status && pid_ > 0) {
        ::kill(pid_, SIGKILL);
        waitForExit(std::chrono::seconds(5));
    }
    return status;
}

Client::Client(int port)
{
    fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(static_cast<std::uint16_t>(port));
    ::inet_pton(AF_INET, "127.0.0.1", &where.sin_addr);
    if (::connect(fd_, reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0)
        close();
}

Client::~Client() { close(); }

void Client::close()
{
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

void Client::send(const std::string& bytes)
{
    std::size_t done = 0;
    while (fd_ >= 0 && done < bytes.size()) {
        const ssize_t sent = ::send(fd_, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (sent <= 0)
            return;
        done += static_cast<std::size_t>(sent);
    }
}

std::optional<std::string> Client::reply(std::chrono::milliseconds limit) { return readReply(fd_, limit); }

std::optional<std::string> Client::exchange(const std::string& command)
{
    send(command + "\r");
    return reply();
}

bool Client::closedByPeer(std::chrono::milliseconds limit)
{
    pollfd fd{fd_, POLLIN, 0};
    if (::poll(&fd, 1, static_cast<int>(limit.count())) <= 0)
        return false;
    char byte = 0;
    return ::recv(fd_, &byte, 1, 0) == 0;
}

std::optional<std::string> readReply(int fd, std::chrono::milliseconds limit)
{
    const auto deadline = Clock::now() + limit;
    std::string text;
    for (;;) {
        pollfd p{fd, POLLIN, 0};
        if (fd < 0 || ::poll(&p, 1, remainingMs(deadline)) <= 0)
            return std::nullopt;
        char byte = 0;
        if (::read(fd, &byte, 1) != 1)
            return std::nullopt;
        if (byte == '\x04')
            return text;
        text.push_back(byte);
    }
}

} // namespace marlune::sim::test
