#include "panel/scope.h"

#include <algorithm>
#include <utility>

#include "forms/files.h"
#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "panel/main_control.h"

namespace marlune::panel {

namespace {

constexpr std::int64_t kShortestSpanMs = 1000;
constexpr std::int64_t kStartSpanMs = 30 * 1000;
// Columns per chart, each drawn as its lowest and highest value: about one per pixel of a wide window.
constexpr int kDrawColumns = 400;
// The chart is drawn again at most five times a second, whatever the sampling rate, and new samples
// only once the time shown has moved by a column.
constexpr int kDrawIntervalMs = 200;
constexpr std::int64_t kSlowestOwnQueryMs = 1000;

} // namespace

Scope::Scope(MainControl& panel)
    : forms::Form("Scope", "Scope"), Chart(add<forms::Plot>("Chart")), ScopeState(add<forms::Label>("ScopeState", "")),
      RatePanel(add<forms::OptionButton>("RatePanel", "Rate", "With the panel (500 ms)", true)),
      Rate100(add<forms::OptionButton>("Rate100", "Rate", "100 ms")),
      Rate50(add<forms::OptionButton>("Rate50", "Rate", "50 ms")),
      Rate20(add<forms::OptionButton>("Rate20", "Rate", "20 ms")),
      Rate10(add<forms::OptionButton>("Rate10", "Rate", "10 ms")),
      PauseResume(add<forms::Button>("PauseResume", "Pause")), ZoomIn(add<forms::Button>("ZoomIn", "Zoom in")),
      ZoomOut(add<forms::Button>("ZoomOut", "Zoom out")), Earlier(add<forms::Button>("Earlier", "< Earlier")),
      Later(add<forms::Button>("Later", "Later >")), Live(add<forms::Button>("Live", "Live")),
      ExportCSV(add<forms::Button>("ExportCSV", "Export CSV...")),
      ExportPicture(add<forms::Button>("ExportPicture", "Export picture...")),
      CloseScope(add<forms::Button>("CloseScope", "Close")), SampleTimer(add<forms::Timer>("SampleTimer", 100, false)),
      DrawTimer(add<forms::Timer>("DrawTimer", kDrawIntervalMs)), panel_(panel)
{
    add<forms::Frame>("TracesFrame", "Traces");
    add<forms::Frame>("RateFrame", "Sampling");
    buildTraces();
    for (forms::OptionButton* rate : {&RatePanel, &Rate100, &Rate50, &Rate20, &Rate10})
        rate->onClick = [this] { applyRate(); };
    PauseResume.onClick = [this] { pauseOrResume(); };
    ZoomIn.onClick = [this] { zoom(0.5, following_ ? static_cast<double>(endMs_) : endMs_ - spanMs_ / 2.0); };
    ZoomOut.onClick = [this] { zoom(2, following_ ? static_cast<double>(endMs_) : endMs_ - spanMs_ / 2.0); };
    Earlier.onClick = [this] { moveTo(endMs_ - spanMs_ / 4); };
    Later.onClick = [this] { moveTo(endMs_ + spanMs_ / 4); };
    Live.onClick = [this] {
        paused_ = false;
        following_ = true;
        viewChanged_ = true;
        PauseResume.setCaption("Pause");
    };
    Chart.onZoom = [this](double factor, double atMs) { zoom(factor, atMs); };
    Chart.onPan = [this](double deltaMs) { moveTo(endMs_ + static_cast<std::int64_t>(deltaMs)); };
    ExportCSV.onClick = [this] { exportCsv(); };
    ExportPicture.onClick = [this] { exportPicture(); };
    CloseScope.isCancel = true;
    CloseScope.onClick = [this] { unload(); };
    SampleTimer.onTick = [this] { sampleTick(); };
    DrawTimer.onTick = [this] { drawTick(); };
}

void Scope::buildTraces()
{
    static constexpr std::pair<const char*, const char*> kRows[] = {
            {"PosLabel", "Pulse position"}, {"EncLabel", "Encoder position"}, {"SpdLabel", "Pulse speed"},
            {"DIOLabel", "Digital points"}, {"EOLabel", "Enable outputs"},    {"COLabel", "Clear outputs"},
    };
    for (const auto& [name, caption] : kRows)
        add<forms::Label>(name, caption);
    using Quantity = ScopeTrace::Quantity;
    const auto box = [this](ScopeTrace trace, const std::string& caption, int value) {
        forms::CheckBox& check = add<forms::CheckBox>("Show" + TraceName(trace), caption, value);
        check.onClick = [this] { viewChanged_ = true; };
        traces_.emplace_back(&check, trace);
        return &check;
    };
    for (int a = 0; a < 4; ++a) {
        const auto i = static_cast<std::size_t>(a);
        // Position and speed of X are shown at the start: a move shows at once.
        ShowPos[i] = box({Quantity::Pulse, a}, kAxisLetters[i], a == 0 ? 1 : 0);
        ShowEnc[i] = box({Quantity::Encoder, a}, kAxisLetters[i], 0);
        ShowSpd[i] = box({Quantity::Speed, a}, kAxisLetters[i], a == 0 ? 1 : 0);
    }
    for (int n = 0; n < kScopeDigitalPoints; ++n)
        ShowDIO[static_cast<std::size_t>(n)] = box({Quantity::Logic, n}, std::to_string(n + 1), 0);
    for (int a = 0; a < 4; ++a) {
        const auto i = static_cast<std::size_t>(a);
        ShowEO[i] = box({Quantity::Logic, kScopeEnableBit + a}, kAxisLetters[i], 0);
        ShowCO[i] = box({Quantity::Logic, kScopeClearBit + a}, kAxisLetters[i], 0);
    }
}

void Scope::formLoad()
{
    startMs_ = forms::CurrentPlatform().clockMs();
    record_.clear();
    spanMs_ = kStartSpanMs;
    endMs_ = kStartSpanMs;
    following_ = true;
    paused_ = false;
    ownQueriesFailed_ = false;
    newSamples_ = false;
    viewChanged_ = true;
    PauseResume.setCaption("Pause");
    applyRate();
    draw();
}

bool Scope::formUnload()
{
    // Ten minutes of samples are no use to a closed scope.
    record_ = ScopeRecord();
    return true;
}

std::vector<ScopeTrace> Scope::chosenTraces() const
{
    std::vector<ScopeTrace> chosen;
    for (const auto& [check, trace] : traces_) {
        if (check->value() == 1)
            chosen.push_back(trace);
    }
    return chosen;
}

bool Scope::panelPolling() const { return panel_.loaded() && !panel_.pollSuspended && link::Link().connected; }

void Scope::panelReply(const std::string& reply)
{
    if (!loaded())
        return;
    // A reply to the panel means the link works again: the scope's own queries go on.
    if (std::exchange(ownQueriesFailed_, false))
        applyRate();
    takeSample(reply);
}

void Scope::takeSample(const std::string& reply)
{
    const std::int64_t time = forms::CurrentPlatform().clockMs() - startMs_;
    if (const auto sample = ReadScopeSample(reply, time, record_.empty() ? nullptr : &record_.newest())) {
        record_.add(*sample);
        newSamples_ = true;
    }
}

void Scope::sampleTick()
{
    if (!panelPolling())
        return;
    std::string command = "???";
    std::string reply;
    const std::int64_t asked = forms::CurrentPlatform().clockMs();
    const bool answered = link::SendCommand(command, reply);
    // A slow controller is asked less often, so that the panel keeps at least half of the time.
    const std::int64_t took = forms::CurrentPlatform().clockMs() - asked;
    SampleTimer.setInterval(static_cast<int>(std::clamp<std::int64_t>(2 * took, rateMs_, kSlowestOwnQueryMs)));
    // The panel tells of a lost link itself; the scope only stops asking.
    if (!answered) {
        ownQueriesFailed_ = true;
        SampleTimer.setTimerEnabled(false);
        showState();
        return;
    }
    takeSample(reply);
}

void Scope::applyRate()
{
    const std::pair<const forms::OptionButton*, int> rates[] = {
            {&Rate100, 100}, {&Rate50, 50}, {&Rate20, 20}, {&Rate10, 10}};
    rateMs_ = 0;
    for (const auto& [option, ms] : rates) {
        if (option->value())
            rateMs_ = ms;
    }
    if (rateMs_ > 0)
        SampleTimer.setInterval(rateMs_);
    SampleTimer.setTimerEnabled(rateMs_ > 0 && !ownQueriesFailed_);
    showState();
}

void Scope::showState()
{
    if (ownQueriesFailed_)
        ScopeState.setCaption("Not live: the controller did not answer the scope's queries.");
    else if (!panelPolling())
        ScopeState.setCaption("Not live: the panel is not polling the controller.");
    else if (paused_)
        ScopeState.setCaption("Paused: recording goes on.");
    else
        ScopeState.setCaption("Live");
}

void Scope::drawTick()
{
    showState();
    const bool movedByAColumn = forms::CurrentPlatform().clockMs() - drawnAtMs_ >= spanMs_ / kDrawColumns;
    if ((newSamples_ && !paused_ && movedByAColumn) || viewChanged_)
        draw();
}

std::int64_t Scope::newestEnd() const
{
    return std::max(record_.empty() ? std::int64_t{0} : record_.newest().timeMs, spanMs_);
}

void Scope::draw()
{
    if (following_)
        endMs_ = newestEnd();
    const std::int64_t from = endMs_ - spanMs_;
    std::vector<forms::PlotSeries> series;
    for (const ScopeTrace& trace : chosenTraces())
        series.push_back(record_.series(trace, from, endMs_, kDrawColumns));
    Chart.setContent(static_cast<double>(from), static_cast<double>(endMs_), std::move(series));
    drawnAtMs_ = forms::CurrentPlatform().clockMs();
    newSamples_ = false;
    viewChanged_ = false;
}

// The view leaves the newest samples; it stays within what is kept.
void Scope::moveTo(std::int64_t endMs)
{
    const std::int64_t newest = newestEnd();
    const std::int64_t oldest = record_.empty() ? newest : std::min(record_.at(0).timeMs + spanMs_, newest);
    following_ = false;
    endMs_ = std::clamp(endMs, oldest, newest);
    viewChanged_ = true;
}

// The time under `atMs` stays where it is; zooming at the right edge of a following view
// keeps it following.
void Scope::zoom(double factor, double atMs)
{
    const double span = std::clamp(static_cast<double>(spanMs_) * factor, static_cast<double>(kShortestSpanMs),
                                   static_cast<double>(kScopeKeptMs));
    const double end = atMs + (static_cast<double>(endMs_) - atMs) * span / static_cast<double>(spanMs_);
    const bool follow = following_ && atMs >= static_cast<double>(endMs_);
    spanMs_ = static_cast<std::int64_t>(span);
    if (follow)
        viewChanged_ = true;
    else
        moveTo(static_cast<std::int64_t>(end));
}

void Scope::pauseOrResume()
{
    paused_ = !paused_;
    // Resuming shows what was recorded meanwhile.
    following_ = !paused_;
    PauseResume.setCaption(paused_ ? "Resume" : "Pause");
    viewChanged_ = true;
    showState();
}

void Scope::exportCsv()
{
    const std::optional<std::string> file =
            forms::ChooseFile({"Export CSV", "CSV Files (*.csv)|*.csv", "scope.csv", true, true, "csv"});
    if (!file)
        return;
    const std::string error =
            forms::WriteFileAtomically(*file, record_.csv(chosenTraces(), static_cast<std::int64_t>(Chart.fromMs()),
                                                          static_cast<std::int64_t>(Chart.toMs())));
    if (!error.empty())
        forms::MsgBox("The CSV file was not written: " + error, forms::MessageButtons::OK,
                      forms::MessageIcon::Exclamation);
}

void Scope::exportPicture()
{
    const std::optional<std::string> file =
            forms::ChooseFile({"Export Picture", "PNG Pictures (*.png)|*.png", "scope.png", true, true, "png"});
    if (!file)
        return;
    if (const auto error = forms::CurrentPlatform().savePicture(Chart, *file))
        forms::MsgBox("The picture was not saved: " + *error, forms::MessageButtons::OK,
                      forms::MessageIcon::Exclamation);
}

} // namespace marlune::panel
