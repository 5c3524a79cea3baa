// Starts the real marlune-desk on an Xvfb display of its own and measures what an operator
// waits for and what the idle program costs: the time from the start of the process until the
// frame's window is mapped, set against a bare Qt main window started the same way in the same
// run (the floor that no Qt program goes below), its resident memory then, and its CPU use while
// it sits idle.
// The window is found as any other X client would find it, with xdotool.
#include <benchmark/benchmark.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kStartOfFloorTarget = 1.2;
constexpr double kMemoryTargetMb = 80;
constexpr double kIdleTargetPercent = 0.5;

bool OnPath(const std::string& tool) { return std::system(("command -v " + tool + " >/dev/null 2>&1").c_str()) == 0; }

pid_t Spawn(const std::vector<std::string>& arguments, const std::vector<std::string>& extraEnvironment,
            posix_spawn_file_actions_t* actions = nullptr)
{
    std::vector<std::string> environment(extraEnvironment);
    for (char** e = environ; *e; ++e)
        environment.emplace_back(*e);
    std::vector<char*> argv, envp;
    for (const std::string& a : arguments)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    for (const std::string& e : environment)
        envp.push_back(const_cast<char*>(e.c_str()));
    envp.push_back(nullptr);
    pid_t pid = -1;
    if (posix_spawnp(&pid, argv[0], actions, nullptr, argv.data(), envp.data()) != 0)
        return -1;
    return pid;
}

void Stop(pid_t pid)
{
    if (pid <= 0)
        return;
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
}

// An X server for this run, on a display that it picks itself.
class Display {
public:
    Display()
    {
        int fds[2];
        if (pipe(fds) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addclose(&actions, fds[0]);
        pid_ = Spawn({"Xvfb", "-displayfd", std::to_string(fds[1]), "-screen", "0", "1280x800x24", "-nolisten", "tcp"},
                     {}, &actions);
        posix_spawn_file_actions_destroy(&actions);
        close(fds[1]);
        // The server writes its display number and a line feed once it takes clients; the
        // pipe stays open until the whole line is in, or the server fails on its write.
        std::string number;
        char c = 0;
        while (read(fds[0], &c, 1) == 1 && c != '\n')
            number.push_back(c);
        close(fds[0]);
        if (!number.empty())
            name_ = ":" + number;
    }
    ~Display() { Stop(pid_); }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    const std::string& name() const { return name_; }

private:
    pid_t pid_ = -1;
    std::string name_;
};

// One running program with a main window of the given title; marlune-desk runs in a working
// folder without marlunecom.ini.
class Desk {
public:
    explicit Desk(const Display& display, std::string program = MARLUNE_DESK, std::string title = "MarluneDesk")
        : title_(std::move(title))
    {
        work_ = std::filesystem::temp_directory_path() / ("desk-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(work_);
        display_ = display.name();
        started_ = Clock::now();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addchdir_np(&actions, work_.c_str());
        pid_ = Spawn({program}, {"DISPLAY=" + display_, "QT_QPA_PLATFORM=xcb", "XDG_CONFIG_HOME=" + work_.string()},
                     &actions);
        posix_spawn_file_actions_destroy(&actions);
    }
    ~Desk()
    {
        Stop(pid_);
        std::filesystem::remove_all(work_);
    }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    // Milliseconds from the start until the frame's window is mapped; nothing if it never is.
    std::optional<double> waitForFrame() const
    {
        const std::string search =
                "DISPLAY=" + display_ + " xdotool search --onlyvisible --name '^" + title_ + "$' >/dev/null 2>&1";
        while (Clock::now() - started_ < std::chrono::seconds(10)) {
            if (std::system(search.c_str()) == 0)
                return std::chrono::duration<double, std::milli>(Clock::now() - started_).count();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return std::nullopt;
    }

    double residentMb() const
    {
        std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
        std::string line;
        while (std::getline(status, line)) {
            if (line.rfind("VmRSS:", 0) == 0)
                return std::stod(line.substr(6)) / 1024.0;
        }
        return 0;
    }

    // User and system CPU seconds so far.
    double cpuSeconds() const
    {
        std::ifstream stat("/proc/" + std::to_string(pid_) + "/stat");
        std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
        std::istringstream fields(text.substr(text.rfind(')') + 2));
        std::string field;
        unsigned long long utime = 0, stime = 0;
        for (int i = 3; i <= 15 && fields >> field; ++i) {
            if (i == 14)
                utime = std::stoull(field);
            if (i == 15)
                stime = std::stoull(field);
        }
        return static_cast<double>(utime + stime) / static_cast<double>(sysconf(_SC_CLK_TCK));
    }

private:
    std::string title_;
    std::filesystem::path work_;
    std::string display_;
    Clock::time_point started_;
    pid_t pid_ = -1;
};

// The one X server of the run, started at first use and shared by the benchmarks.
const Display* Ready(benchmark::State& state)
{
    for (const char* tool : {"Xvfb", "xdotool"}) {
        if (!OnPath(tool)) {
            state.SkipWithError((std::string(tool) + " is not installed (Debian packages xvfb and xdotool)").c_str());
            return nullptr;
        }
    }
    static const Display display;
    if (display.name().empty()) {
        state.SkipWithError("Xvfb did not start");
        return nullptr;
    }
    return &display;
}

void ColdStartToFrameShown(benchmark::State& state)
{
    const Display* display = Ready(state);
    if (!display)
        return;
    for (auto _ : state) {
        std::optional<double> floor;
        {
            const Desk bare(*display, BARE_WINDOW, "BareWindow");
            floor = bare.waitForFrame();
        }
        Desk desk(*display);
        const std::optional<double> shown = desk.waitForFrame();
        if (!shown || !floor) {
            state.SkipWithError("a window did not appear within 10 s");
            return;
        }
        state.SetIterationTime(*shown / 1000.0);
        state.counters["floor_ms"] = *floor;
        state.counters["of_floor"] = *shown / *floor;
        state.counters["of_target"] = *shown / *floor / kStartOfFloorTarget;
        const double rss = desk.residentMb();
        state.counters["rss_MB"] = rss;
        state.counters["rss_of_target"] = rss / kMemoryTargetMb;
    }
}
BENCHMARK(ColdStartToFrameShown)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);

void IdleCpuWithTheFrameOpen(benchmark::State& state)
{
    const Display* display = Ready(state);
    if (!display)
        return;
    constexpr double seconds = 5; // CPU time is counted in 10 ms ticks: one tick in 5 s is 0.2 %
    for (auto _ : state) {
        Desk desk(*display);
        if (!desk.waitForFrame()) {
            state.SkipWithError("the frame did not appear within 10 s");
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(500)); // the start settles
        const double before = desk.cpuSeconds();
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
        const double percent = (desk.cpuSeconds() - before) / seconds * 100.0;
        state.SetIterationTime(seconds);
        state.counters["cpu_percent"] = percent;
        state.counters["cpu_of_target"] = percent / kIdleTargetPercent;
    }
}
BENCHMARK(IdleCpuWithTheFrameOpen)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

} // namespace

BENCHMARK_MAIN();
