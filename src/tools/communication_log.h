#pragma once

#include <cstdint>
#include <string>

#include "forms/form.h"

namespace marlune::link {
struct ExchangeRecord;
}

namespace marlune::tools {

// The status query the motion panel polls with: most of the traffic.
inline constexpr const char* kStatusQuery = "???";

// One exchange as a line of the list: "10:42:07.123  X5000  ->  OK  1.2 ms", a failed one marked
// "!!" with the reason in place of the reply. Line ends and other control bytes of the request
// and reply show as \r, \n, \t or \xHH.
std::string ExchangeLine(const link::ExchangeRecord& record);
// One exchange as a line of the saved file: time, request, reply, duration and the reason of a
// failure, separated by tabs.
std::string ExchangeFileLine(const link::ExchangeRecord& record);

// Every exchange of the program with the controller, from every window, newest at the bottom:
// a view of the link's exchange log that takes the new exchanges on each tick. Pause stops the
// view, not the log: what comes meanwhile is shown when the pause ends.
class CommunicationLog final : public forms::Form {
public:
    static constexpr int kRefreshMs = 250;

    CommunicationLog();

    forms::ListBox& Exchanges;
    forms::TextBox& Filter;
    forms::CheckBox& HidePolls;
    forms::CheckBox& Pause;
    forms::Label& Summary;
    forms::Button& SaveLog;
    forms::Button& ClearLog;
    forms::Button& CloseLog;
    forms::Timer& Refresh;

protected:
    void formLoad() override;

private:
    bool shows(const link::ExchangeRecord& record) const;
    // The list anew from the records the log holds, paused or not.
    void rebuild();
    // The records that came since the last one taken, when not paused.
    void takeNew();
    void append();
    void showSummary();
    void save();

    std::uint64_t taken_ = 0; // the number of the last record the view has taken
    std::string filter_;      // upper case
};

} // namespace marlune::tools
