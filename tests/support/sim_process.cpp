#include "sim_process.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace marlune::testing {

using Clock = std::chrono::steady_clock;

SimProcess::SimProcess(const std::string& program, const std::vector<std::string>& arguments)
{
    int pipe[2];
    if (::pipe(pipe) != 0)
        return;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_addclose(&actions, pipe[0]);
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    if (::posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ) != 0)
        pid_ = -1;
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);
    output_ = pipe[0];
}

SimProcess::~SimProcess()
{
    terminate(); // one that has ended is only reaped
    if (output_ >= 0)
        ::close(output_);
}

std::optional<std::string> SimProcess::lineAfter(const std::string& prefix, std::chrono::milliseconds limit)
{
    const auto deadline = Clock::now() + limit;
    for (;;) {
        for (auto end = buffered_.find('\n'); end != std::string::npos; end = buffered_.find('\n')) {
            const std::string line = buffered_.substr(0, end);
            buffered_.erase(0, end + 1);
            if (line.starts_with(prefix))
                return line.substr(prefix.size());
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd request{output_, POLLIN, 0};
        if (output_ < 0 || ::poll(&request, 1, static_cast<int>(std::max<std::int64_t>(left, 0))) <= 0)
            return std::nullopt;
        char chunk[256];
        const ssize_t got = ::read(output_, chunk, sizeof chunk);
        if (got <= 0)
            return std::nullopt;
        buffered_.append(chunk, static_cast<std::size_t>(got));
    }
}

std::optional<std::uint16_t> SimProcess::tcpPort()
{
    const auto address = lineAfter("tcp ");
    const auto colon = address ? address->rfind(':') : std::string::npos;
    std::uint16_t port = 0;
    if (colon == std::string::npos
        || std::from_chars(address->data() + colon + 1, address->data() + address->size(), port).ec != std::errc{})
        return std::nullopt;
    return port;
}

std::optional<int> SimProcess::waitForExit(std::chrono::milliseconds limit)
{
    const auto deadline = Clock::now() + limit;
    while (pid_ > 0) {
        int status = 0;
        if (::waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        if (Clock::now() >= deadline)
            break;
        ::usleep(10'000);
    }
    return std::nullopt;
}

void SimProcess::signal(int signal)
{
    if (pid_ > 0)
        ::kill(pid_, signal);
}

std::optional<int> SimProcess::terminate()
{
    if (pid_ <= 0)
        return std::nullopt;
    ::kill(pid_, SIGTERM);
    ::kill(pid_, SIGCONT); // a hung process heeds SIGTERM only once it runs
    const auto status = waitForExit(std::chrono::seconds(5));
    if (!status && pid_ > 0) {
        ::kill(pid_, SIGKILL);
        waitForExit(std::chrono::seconds(5));
    }
    return status;
}

} // namespace marlune::testing
