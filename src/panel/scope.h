#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "forms/form.h"
#include "panel/scope_record.h"

namespace marlune::panel {

class MainControl;

// The scope of the motion panel: positions, encoders and speeds of the axes and the logic
// points against time, from the status replies of the panel's poll or, at a faster rate, from
// status queries of its own between the panel's ticks. The panel owns it: it opens it beside
// itself and unloads it with itself.
class Scope final : public forms::Form {
public:
    explicit Scope(MainControl& panel);

    forms::Plot& Chart;
    forms::Label& ScopeState;
    // The traces: three quantities of four axes, the digital points, the enable and clear outputs.
    std::array<forms::CheckBox*, 4> ShowPos, ShowEnc, ShowSpd, ShowEO, ShowCO;
    std::array<forms::CheckBox*, kScopeDigitalPoints> ShowDIO;
    // How often a sample is taken: with the panel's poll, or every 100, 50, 20 or 10 ms.
    forms::OptionButton& RatePanel;
    forms::OptionButton& Rate100;
    forms::OptionButton& Rate50;
    forms::OptionButton& Rate20;
    forms::OptionButton& Rate10;
    forms::Button& PauseResume;
    forms::Button& ZoomIn;
    forms::Button& ZoomOut;
    forms::Button& Earlier;
    forms::Button& Later;
    forms::Button& Live;
    forms::Button& ExportCSV;
    forms::Button& ExportPicture;
    forms::Button& CloseScope;
    forms::Timer& SampleTimer;
    forms::Timer& DrawTimer;

    // A status reply that the panel's poll received.
    void panelReply(const std::string& reply);
    const ScopeRecord& record() const { return record_; }
    // The traces whose boxes are checked, in the order of the boxes.
    std::vector<ScopeTrace> chosenTraces() const;

protected:
    void formLoad() override;
    bool formUnload() override;

private:
    void buildTraces();
    void takeSample(const std::string& reply);
    void sampleTick();
    void drawTick();
    void draw();
    void applyRate();
    void showState();
    bool panelPolling() const;
    std::int64_t newestEnd() const;
    void moveTo(std::int64_t endMs);
    void zoom(double factor, double atMs);
    void pauseOrResume();
    void exportCsv();
    void exportPicture();

    MainControl& panel_;
    ScopeRecord record_;
    std::vector<std::pair<forms::CheckBox*, ScopeTrace>> traces_;
    int rateMs_ = 0; // 0: with the panel's poll
    std::int64_t startMs_ = 0;
    std::int64_t spanMs_ = 0;
    std::int64_t endMs_ = 0;
    std::int64_t drawnAtMs_ = 0; // on the platform's clock
    bool following_ = true;      // the right edge is the newest sample
    bool paused_ = false;
    bool ownQueriesFailed_ = false;
    bool newSamples_ = false;
    bool viewChanged_ = false;
};

} // namespace marlune::panel
