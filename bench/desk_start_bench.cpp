// Starts the real marlune-desk on an Xvfb display of its own and measures what an operator
// waits for and what the idle program costs: the time from the start of the process until the
// frame's window is mapped, set against a bare Qt main window started the same way in the same
// run (the floor that no Qt program goes below) and against the same window with a menu bar and a
// status bar (the floor of any program that shows a word), its resident memory then, and its CPU
// use while it sits idle.
// The window is seen as the X server reports it mapped, so that waiting for it costs the measured
// program nothing: no client polling the server competes with it for the processor.
#include <benchmark/benchmark.h>
#include <xcb/xcb.h>

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
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
        // -noreset: a server that resets when its last client leaves refuses the next program's
        // connection while it does, and the programs of a run come and go one by one.
        pid_ = Spawn({"Xvfb", "-displayfd", std::to_string(fds[1]), "-screen", "0", "1280x800x24", "-nolisten", "tcp",
                      "-noreset"},
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

// Hears of every top-level window that is mapped on a display from the moment it is made.
class MapWatcher {
public:
    explicit MapWatcher(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr))
    {
        if (xcb_connection_has_error(connection_))
            return;
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, screen->root, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(connection_);
    }
    ~MapWatcher() { xcb_disconnect(connection_); }
    MapWatcher(const MapWatcher&) = delete;
    MapWatcher& operator=(const MapWatcher&) = delete;

    // Waits until a window with exactly this title is mapped; false when the deadline passes first.
    bool waitForMap(const std::string& title, Clock::time_point deadline)
    {
        while (!xcb_connection_has_error(connection_) && Clock::now() < deadline) {
            while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
                const bool mapped = (event->response_type & 0x7f) == XCB_MAP_NOTIFY;
                const xcb_window_t window = reinterpret_cast<xcb_map_notify_event_t*>(event)->window;
                std::free(event);
                if (mapped && titleOf(window) == title)
                    return true;
            }
            pollfd fd{xcb_get_file_descriptor(connection_), POLLIN, 0};
            poll(&fd, 1, 50);
        }
        return false;
    }

private:
    std::string titleOf(xcb_window_t window)
    {
        const xcb_get_property_cookie_t cookie =
                xcb_get_property(connection_, 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 256);
        xcb_get_property_reply_t* reply = xcb_get_property_reply(connection_, cookie, nullptr);
        if (!reply)
            return {};
        std::string title(static_cast<const char*>(xcb_get_property_value(reply)),
                          static_cast<std::size_t>(xcb_get_property_value_length(reply)));
        std::free(reply);
        return title;
    }

    xcb_connection_t* connection_;
};

// The desk of this build, or the one that MARLUNE_DESK names, such as the installed /usr/bin/marlune-desk.
std::string DeskUnderTest()
{
    const char* chosen = std::getenv("MARLUNE_DESK");
    return chosen && *chosen ? chosen : MARLUNE_DESK;
}

// One running program with a main window of the given title; marlune-desk runs in a working
// folder without marlunecom.ini.
class Desk {
public:
    explicit Desk(const Display& display, std::vector<std::string> command = {DeskUnderTest()},
                  std::string title = "MarluneDesk")
        : title_(std::move(title)), watcher_(display.name())
    {
        work_ = std::filesystem::temp_directory_path() / ("desk-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(work_);
        display_ = display.name();
        started_ = Clock::now();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addchdir_np(&actions, work_.c_str());
        pid_ = Spawn(command, {"DISPLAY=" + display_, "QT_QPA_PLATFORM=xcb", "XDG_CONFIG_HOME=" + work_.string()},
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
    std::optional<double> waitForFrame()
    {
        if (!watcher_.waitForMap(title_, started_ + std::chrono::seconds(10)))
            return std::nullopt;
        return std::chrono::duration<double, std::milli>(Clock::now() - started_).count();
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
    MapWatcher watcher_;
    std::filesystem::path work_;
    std::string display_;
    Clock::time_point started_;
    pid_t pid_ = -1;
};

// The one X server of the run, started at first use and shared by the benchmarks.
const Display* Ready(benchmark::State& state)
{
    if (!OnPath("Xvfb")) {
        state.SkipWithError("Xvfb is not installed (Debian package xvfb)");
        return nullptr;
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
    // The same run starts the empty window and the window with words in turn beside the desk, so
    // that all three meet the same load of the machine.
    const auto floorOf = [display](std::vector<std::string> command) {
        Desk bare(*display, std::move(command), "BareWindow");
        return bare.waitForFrame();
    };
    for (auto _ : state) {
        const std::optional<double> floor = floorOf({BARE_WINDOW});
        const std::optional<double> textFloor = floorOf({BARE_WINDOW, "text"});
        Desk desk(*display);
        const std::optional<double> shown = desk.waitForFrame();
        if (!shown || !floor || !textFloor) {
            state.SkipWithError("a window did not appear within 10 s");
            return;
        }
        state.SetIterationTime(*shown / 1000.0);
        state.counters["floor_ms"] = *floor;
        state.counters["of_floor"] = *shown / *floor;
        state.counters["of_target"] = *shown / *floor / kStartOfFloorTarget;
        state.counters["text_floor_ms"] = *textFloor;
        state.counters["of_text_floor"] = *shown / *textFloor;
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
