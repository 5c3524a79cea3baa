#include "sim_process.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>

extern char** environ;

namespace marlune::marlunecom::testing {

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
    for (auto& word : words)
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
    if (pid_ > 0) {
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
    }
    if (output_ >= 0)
        ::close(output_);
}

std::optional<std::string> SimProcess::lineAfter(const std::string& prefix, std::chrono::milliseconds timeout)
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        for (auto end = buffered_.find('\n'); end != std::string::npos; end = buffered_.find('\n')) {
            auto line = buffered_.substr(0, end);
            buffered_.erase(0, end + 1);
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            if (line.starts_with(prefix))
                return line.substr(prefix.size());
        }
        const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd request{output_, POLLIN, 0};
        if (pid_ <= 0 || left.count() <= 0 || ::poll(&request, 1, static_cast<int>(left.count())) <= 0)
            return std::nullopt;
        char chunk[256];
        const auto n = ::read(output_, chunk, sizeof chunk);
        if (n <= 0)
            return std::nullopt;
        buffered_.append(chunk, static_cast<std::size_t>(n));
    }
}

std::optional<std::uint16_t> SimProcess::tcpPort()
{
    const auto address = lineAfter("tcp ");
    if (!address)
        return std::nullopt;
    const auto colon = address->rfind(':');
    std::uint16_t port = 0;
    if (colon == std::string::npos
        || std::from_chars(address->data() + colon + 1, address->data() + address->size(), port).ec != std::errc{})
        return std::nullopt;
    return port;
}

} // namespace marlune::marlunecom::testing
