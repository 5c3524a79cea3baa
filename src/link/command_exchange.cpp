#include "link/command_exchange.h"

#include <array>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "forms/platform.h"
#include "forms/text.h"
#include "link/controller_link.h"
#include "link/exchange_log.h"

namespace marlune::link {

namespace {

using SendBuffer = std::array<char, kSendBufferSize>;
using ReceiveBuffer = std::array<char, kReceiveBufferSize>;

bool KnownKind(std::int16_t kind) { return kind >= 1 && kind <= 3; }

bool Succeeded(std::int32_t result) { return (result & 0xFFFF) != 0; }

enum class Framed { Empty, TooLong, Ready };

// Cleans `command` in place, checks its length and writes the frame (command up to the first
// CR, then CR) into `frame`, which the caller has zeroed.
Framed Frame(std::string& command, SendBuffer& frame, bool& listing)
{
    command = CleanCommand(command);
    if (command.empty())
        return Framed::Empty;
    if (command.size() > kLongestCommand) {
        const std::int64_t now = Log().now();
        Log().record(now, now, command, {}, ExchangeFailure::TooLong);
        forms::MsgBox("Command too long: " + command);
        return Framed::TooLong;
    }
    listing = forms::ContainsUpper(command, "LIST");
    std::size_t n = 0;
    for (char c : command) {
        if (c == '\r')
            break;
        frame[n++] = c;
    }
    frame[n] = '\r';
    return Framed::Ready;
}

// The reply in a receive buffer: up to a NUL or 0x04, or the end of the buffer.
std::string_view ReplyBytes(const char* buffer)
{
    // Two scans for one byte each are quicker than one scan for either.
    std::size_t size = strnlen(buffer, kReceiveBufferSize);
    if (const void* end = std::memchr(buffer, '\x04', size))
        size = static_cast<std::size_t>(static_cast<const char*>(end) - buffer);
    return {buffer, size};
}

// The reply text, without line ends unless it is a listing.
void Unframe(const ReceiveBuffer& buffer, bool listing, std::string& reply)
{
    reply.clear();
    for (char c : ReplyBytes(buffer.data())) {
        if ((c == '\r' || c == '\n') && !listing)
            continue;
        reply.push_back(c);
    }
}

// What the routine returns when the command never reaches the library.
std::optional<bool> EarlyResult(Framed framed)
{
    switch (framed) {
    case Framed::Empty: return true;
    case Framed::TooLong: return false;
    case Framed::Ready: break;
    }
    return std::nullopt;
}

// Sends the frames in turn, `rounds` times, over the open link; the last result decides, and
// every reply overwrites the one receive buffer.
bool Exchange(std::initializer_list<const char*> frames, int rounds, bool listing, std::string& reply)
{
    const ControllerLink& link = Link();
    ReceiveBuffer received{};
    std::int32_t result = 0;
    for (int round = 0; round < rounds; ++round) {
        for (const char* frame : frames)
            result = Transact(link, frame, received.data());
    }
    if (!Succeeded(result)) {
        reply = kExchangeFailedText;
        return false;
    }
    Unframe(received, listing, reply);
    return true;
}

} // namespace

std::int32_t Transact(const ControllerLink& link, const char* request, char* reply)
{
    ExchangeLog& log = Log();
    const std::string_view frame(request, strnlen(request, kSendBufferSize));
    const std::int64_t start = log.now();
    if (!KnownKind(link.linkKind)) {
        log.record(start, start, frame, {}, ExchangeFailure::Refused);
        return 0;
    }
    NoteExchangeFailure(ExchangeFailure::None);
    const std::int32_t result = Com().sendRecv(link.linkKind, link.linkHandle, request, reply);
    const std::int64_t end = log.now();
    const ExchangeFailure noted = TakeNotedFailure();
    if (Succeeded(result))
        log.record(start, end, frame, ReplyBytes(reply), ExchangeFailure::None);
    else
        log.record(start, end, frame, {}, noted == ExchangeFailure::None ? ExchangeFailure::LibraryError : noted);
    return result;
}

std::string CleanCommand(const std::string& command)
{
    std::string cleaned;
    cleaned.reserve(command.size());
    for (char c : command) {
        if (c == ';')
            break;
        if (c != ' ')
            cleaned.push_back(c);
    }
    return cleaned;
}

bool SendCommand(std::string& command, std::string& reply)
{
    SendBuffer frame{};
    bool listing = false;
    if (const auto early = EarlyResult(Frame(command, frame, listing)))
        return *early;
    return Exchange({frame.data()}, 1, listing, reply);
}

bool SendCommandPair(std::string& firstCommand, std::string& secondCommand, std::string& reply)
{
    SendBuffer first{};
    SendBuffer second{};
    bool listing = false;
    if (const auto early = EarlyResult(Frame(firstCommand, first, listing)))
        return *early;
    if (const auto early = EarlyResult(Frame(secondCommand, second, listing)))
        return *early;
    // The virtual COM port gets the pair a hundred times; the other kinds the first frame once.
    if (Link().linkKind == 3)
        return Exchange({first.data(), second.data()}, 100, listing, reply);
    return Exchange({first.data()}, 1, listing, reply);
}

} // namespace marlune::link
