// The transfer dialog shown offscreen with its 1 ms timer, against marlune-sim over TCP: all
// variables stored to a file, and a 2,000-character program downloaded. Each run is set
// against what it cannot avoid, its ticks at 1 ms and its exchanges at their median, as
// the counter `of_floor`; it should stay at most 1.5.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <vector>

#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "link/open_link.h"
#include "marlunecom/tcp_com.h"
#include "qt/qt_platform.h"
#include "sim_process.h"
#include "transfer/status.h"

namespace {

using namespace marlune;
using Clock = std::chrono::steady_clock;

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

// The median of single variable reads, the exchange every tick of a store makes.
double MedianExchangeSeconds()
{
    std::vector<double> times;
    for (int i = 0; i < 301; ++i) {
        std::string command = "I" + std::to_string(1 + i % 48);
        std::string reply;
        const Clock::time_point start = Clock::now();
        link::SendCommand(command, reply);
        times.push_back(Seconds(Clock::now() - start));
    }
    std::nth_element(times.begin(), times.begin() + 150, times.end());
    return times[150];
}

// Answers the closing message of a store as soon as it is up.
void AnswerMessagesAsTheyCome(QTimer& timer)
{
    QObject::connect(&timer, &QTimer::timeout, [] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(widget);
            if (box != nullptr && box->isVisible() && !box->buttons().isEmpty())
                box->buttons().front()->click();
        }
    });
    timer.start(2);
}

class TransferAgainstSim {
public:
    TransferAgainstSim() : simulator_(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--exit-after", "300"})
    {
        forms::SetPlatform(&platform_);
        link::SetCom(&com_);
        link::ResetLink();
        if (const auto port = simulator_.tcpPort()) {
            link::Link().linkKind = 2;
            link::Link().ipAddress = "127.0.0.1:" + std::to_string(*port);
            link::Link().linkAddress = link::Link().ipAddress;
            ready_ = link::OpenLink();
        }
    }
    ~TransferAgainstSim()
    {
        link::CloseLink();
        link::SetCom(nullptr);
        forms::SetPlatform(nullptr);
    }
    bool ready() const { return ready_; }

private:
    qt::QtPlatform platform_;
    marlunecom::TcpCom com_;
    testing::SimProcess simulator_;
    bool ready_ = false;
};

// Runs the transfer `status` is set for, each time against the floor of `ticks` at 1 ms and
// `exchanges` at their median over this link.
void Run(benchmark::State& state, const TransferAgainstSim& link, transfer::Status& status, const std::string& caption,
         double ticks, double exchanges)
{
    if (!link.ready()) {
        state.SkipWithError("no link to marlune-sim");
        return;
    }
    const double exchange = MedianExchangeSeconds();
    state.counters["exchange_us"] = exchange * 1e6;
    const double floorSeconds = ticks * 1e-3 + exchanges * exchange;
    QTimer answering;
    AnswerMessagesAsTheyCome(answering);
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        status.showTransfer(caption, nullptr);
        const double elapsed = Seconds(Clock::now() - start);
        state.SetIterationTime(elapsed);
        state.counters["of_floor"] = elapsed / floorSeconds;
    }
}

void StoreToFile(benchmark::State& state)
{
    TransferAgainstSim link;
    transfer::Status status;
    status.operationType = static_cast<std::int16_t>(transfer::Operation::StoreToFile);
    status.fileName = (std::filesystem::temp_directory_path() / "marlune-transfer-bench.dat").string();
    Run(state, link, status, "Store", 298, 296);
    std::filesystem::remove(status.fileName);
}
BENCHMARK(StoreToFile)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

void DownloadProgram(benchmark::State& state)
{
    TransferAgainstSim link;
    transfer::Status status;
    status.operationType = static_cast<std::int16_t>(transfer::Operation::ProgramDownload);
    status.ProgramNumber = 1;
    // 200 lines of ten characters: "V1=123456" and CR.
    for (int line = 0; line < 200; ++line)
        status.programStr += "V1=" + std::to_string(100000 + line) + "\r";
    // One tick a character and four more (begin, the end of the text, the last state, the close);
    // three commands before the lines and one after.
    Run(state, link, status, "Download", static_cast<double>(status.programStr.size()) + 4, 200 + 4);
}
BENCHMARK(DownloadProgram)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

} // namespace
