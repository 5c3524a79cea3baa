#include "tools/communication_log.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "forms/files.h"
#include "forms/platform.h"
#include "forms/text.h"
#include "link/exchange_log.h"

namespace marlune::tools {

namespace {

constexpr std::int64_t kMicrosPerDay = 24LL * 60 * 60 * 1'000'000;
// The list is built anew from the log once it holds this many lines, so that it stays near the
// log's size without being rebuilt at every new line.
constexpr std::size_t kLongestList = link::ExchangeLog::kCapacity + link::ExchangeLog::kCapacity / 10;

std::string TimeOfDay(std::int64_t micros)
{
    const std::int64_t ms = (micros % kMicrosPerDay + kMicrosPerDay) % kMicrosPerDay / 1000;
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03d", static_cast<int>(ms / 3'600'000),
                  static_cast<int>(ms / 60'000 % 60), static_cast<int>(ms / 1000 % 60), static_cast<int>(ms % 1000));
    return text;
}

// Milliseconds; below one, to the microsecond.
std::string Duration(std::int64_t micros)
{
    char text[32];
    std::snprintf(text, sizeof text, micros < 1000 ? "%.3f ms" : "%.1f ms", static_cast<double>(micros) / 1000.0);
    return text;
}

// Control bytes and the backslash escaped, so that one exchange stays one line.
std::string Shown(std::string_view bytes)
{
    std::string shown;
    shown.reserve(bytes.size());
    for (const char c : bytes) {
        switch (c) {
        case '\r': shown += "\\r"; break;
        case '\n': shown += "\\n"; break;
        case '\t': shown += "\\t"; break;
        case '\\': shown += "\\\\"; break;
        default:
            if (static_cast<unsigned char>(c) < 0x20 || c == '\x7F') {
                char hex[8];
                std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned char>(c));
                shown += hex;
            } else {
                shown += c;
            }
        }
    }
    return shown;
}

// The request as sent, without the CR that ends every frame.
std::string_view Command(const link::ExchangeRecord& record)
{
    std::string_view request = record.request;
    if (request.ends_with('\r'))
        request.remove_suffix(1);
    return request;
}

std::string FailureText(link::ExchangeFailure failure)
{
    switch (failure) {
    case link::ExchangeFailure::None: break;
    case link::ExchangeFailure::TimedOut: return "time-out";
    case link::ExchangeFailure::LibraryError: return "library error";
    case link::ExchangeFailure::TooLong: return "too long, not sent";
    case link::ExchangeFailure::Refused: return "refused, not sent: no working link";
    }
    return {};
}

std::string CountOfExchanges(std::uint64_t n) { return std::to_string(n) + (n == 1 ? " exchange" : " exchanges"); }

bool Sent(link::ExchangeFailure failure)
{
    return failure != link::ExchangeFailure::TooLong && failure != link::ExchangeFailure::Refused;
}

} // namespace

std::string ExchangeLine(const link::ExchangeRecord& record)
{
    const bool failed = record.failure != link::ExchangeFailure::None;
    std::string line = TimeOfDay(record.timeOfDayMicros) + (failed ? "  !! " : "  ") + Shown(Command(record)) + "  ->  "
                       + (failed ? FailureText(record.failure) : Shown(record.reply));
    if (Sent(record.failure))
        line += "  " + Duration(record.durationMicros);
    return line;
}

std::string ExchangeFileLine(const link::ExchangeRecord& record)
{
    return TimeOfDay(record.timeOfDayMicros) + '\t' + Shown(Command(record)) + '\t' + Shown(record.reply) + '\t'
           + Duration(record.durationMicros) + '\t' + FailureText(record.failure);
}

CommunicationLog::CommunicationLog()
    : forms::Form("CommunicationLog", "Communication Log"), Exchanges(add<forms::ListBox>("Exchanges")),
      Filter(add<forms::TextBox>("Filter")),
      HidePolls(add<forms::CheckBox>("HidePolls", std::string("Hide answered status polls (") + kStatusQuery + ")")),
      Pause(add<forms::CheckBox>("Pause", "Pause")), Summary(add<forms::Label>("Summary", "")),
      SaveLog(add<forms::Button>("SaveLog", "Save...")), ClearLog(add<forms::Button>("ClearLog", "Clear")),
      CloseLog(add<forms::Button>("CloseLog", "Close")), Refresh(add<forms::Timer>("Refresh", kRefreshMs))
{
    CloseLog.isCancel = true;
    Filter.onChange = [this] {
        filter_ = forms::UpperAscii(Filter.text());
        rebuild();
    };
    HidePolls.onClick = [this] { rebuild(); };
    Pause.onClick = [this] { takeNew(); };
    Refresh.onTick = [this] { takeNew(); };
    SaveLog.onClick = [this] { save(); };
    ClearLog.onClick = [this] {
        link::Log().clear();
        rebuild();
    };
    CloseLog.onClick = [this] { unload(); };
}

void CommunicationLog::formLoad()
{
    filter_ = forms::UpperAscii(Filter.text());
    rebuild();
}

bool CommunicationLog::shows(const link::ExchangeRecord& record) const
{
    // A failed poll stays: it is what an operator looking for a fault wants to see.
    if (HidePolls.value() == 1 && record.failure == link::ExchangeFailure::None && Command(record) == kStatusQuery)
        return false;
    return filter_.empty() || forms::UpperAscii(record.request).find(filter_) != std::string::npos
           || forms::UpperAscii(record.reply).find(filter_) != std::string::npos;
}

void CommunicationLog::rebuild()
{
    Exchanges.clear();
    taken_ = link::Log().oldest() - 1;
    append();
    showSummary();
}

void CommunicationLog::takeNew()
{
    if (Pause.value() == 0 && taken_ < link::Log().newest()) {
        if (Exchanges.items().size() > kLongestList) {
            rebuild();
            return;
        }
        append();
    }
    showSummary();
}

void CommunicationLog::append()
{
    const link::ExchangeLog& log = link::Log();
    if (const std::uint64_t dropped = log.droppedAfter(taken_))
        Exchanges.addItem("-- " + CountOfExchanges(dropped) + " left the log before they were shown --");
    for (std::uint64_t n = std::max(taken_ + 1, log.oldest()); n <= log.newest(); ++n) {
        if (shows(log.at(n)))
            Exchanges.addItem(ExchangeLine(log.at(n)));
    }
    taken_ = log.newest();
    // The view follows the newest line.
    Exchanges.setListIndex(static_cast<int>(Exchanges.items().size()) - 1);
}

void CommunicationLog::showSummary()
{
    const link::ExchangeLog& log = link::Log();
    std::string text = CountOfExchanges(log.newest() + 1 - log.oldest()) + " in the log, which keeps the last "
                       + std::to_string(link::ExchangeLog::kCapacity) + ".";
    if (Pause.value() == 1)
        text += " Paused: the log goes on recording, " + CountOfExchanges(log.newest() - taken_) + " since.";
    Summary.setCaption(text);
}

void CommunicationLog::save()
{
    const std::optional<std::string> fileName = forms::ChooseFile(
            {"Save Communication Log", "Text Files (*.txt)|*.txt", "communication-log.txt", true, true, "txt"});
    if (!fileName || fileName->empty())
        return;
    const link::ExchangeLog& log = link::Log();
    std::string text;
    for (std::uint64_t n = log.oldest(); n <= log.newest(); ++n) {
        if (shows(log.at(n)))
            text += ExchangeFileLine(log.at(n)) + "\r\n";
    }
    if (const std::string error = forms::WriteFileAtomically(*fileName, text); !error.empty())
        forms::MsgBox("The communication log could not be saved to " + *fileName + ": " + error + ".",
                      forms::MessageButtons::OK, forms::MessageIcon::Exclamation);
}

} // namespace marlune::tools
