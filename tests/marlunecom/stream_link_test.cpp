// The behaviour that the TCP and the serial link share, run against a scripted peer on
// each: a loopback connection and a pseudo-terminal.

#include "link/exchange_log.h"
#include "link_test_support.h"
#include "marlunecom/com_port_name.h"
#include "marlunecom/serial_com.h"
#include "marlunecom/tcp_com.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;
using testing::PeerReply;
using testing::PeerScript;

// The probe is long enough that exchanges made one after the other share it however slowly
// the test runs.
constexpr LinkTimeouts kShortTimeouts{200ms, 400ms, 300ms, 50ms};
const std::string kBig(link::kReceiveBufferSize + 3000, 'x');
const std::string kFull(link::kReceiveBufferSize, 'f');

// The peer echoes a command with "R:" in front, but for the commands that show one way of replying.
const std::map<std::string, std::optional<PeerReply>> kReplies = {
        {"PIECES", PeerReply{{"HEL", "LO\r\n", std::string("!") + kReplyTerminator + "stray"}}},
        {"BIG", PeerReply{{kBig + kReplyTerminator}}},
        {"FULL", PeerReply{{kFull}}},
        {"SILENT", std::nullopt},
        {"HALF", PeerReply{{"no terminator"}}},
        {"BYE", PeerReply{{"PART"}, true}}};

std::optional<PeerReply> Script(const std::string& command)
{
    const auto it = kReplies.find(command);
    return it != kReplies.end() ? it->second : PeerReply{{"R:" + command + kReplyTerminator}};
}

struct TcpTransport {
    static constexpr std::int32_t kKind = 2;
    using Com = TcpCom;
    static std::vector<std::string> badAddresses()
    {
        // Nobody listens there once the peer is gone.
        const std::string closedPort = testing::ScriptedPeer::onTcp(Script)->address();
        return {"", "   ", "127.0.0.1:0", "127.0.0.1:http", "127.0.0.1:70000", "[127.0.0.1", closedPort};
    }
    static inline const std::vector kHangUpNotes{link::ExchangeFailure::None, link::ExchangeFailure::Refused};
    bool start(PeerScript script) { return (peer = testing::ScriptedPeer::onTcp(std::move(script)))->ready(); }
    std::string address() const { return peer->address(); }
    std::unique_ptr<testing::ScriptedPeer> peer;
};

// The serial link reaches the pseudo-terminal as COM4 through a folder that stands in for the
// COM ports, where COM2 names a device that is gone.
struct SerialTransport {
    static constexpr std::int32_t kKind = 3;
    using Com = SerialCom;
    static std::vector<std::string> badAddresses()
    {
        return {"", "   ", "LPT1", "COM0", "COM2", "COM5", "/nonexistent/ttyACM0", "/dev/null"};
    }
    static inline const std::vector kHangUpNotes{link::ExchangeFailure::TimedOut, link::ExchangeFailure::TimedOut};
    bool start(PeerScript script)
    {
        peer = testing::ScriptedPeer::onPty(std::move(script));
        if (!peer->ready())
            return false;
        std::filesystem::create_directories(folder);
        std::filesystem::create_symlink(peer->address(), folder / "COM4");
        std::filesystem::create_symlink(folder / "unplugged", folder / "COM2");
        return ::setenv(kComDirVariable, folder.c_str(), 1) == 0;
    }
    ~SerialTransport()
    {
        ::unsetenv(kComDirVariable);
        std::filesystem::remove_all(folder);
    }
    std::string address() const { return "com4"; }
    std::unique_ptr<testing::ScriptedPeer> peer;
    std::filesystem::path folder =
            std::filesystem::temp_directory_path() / ("marlune-com-" + std::to_string(::getpid()));
};

template <typename Transport>
class StreamLinkTest : public ::testing::Test {
protected:
    static constexpr auto kKind = Transport::kKind;

    void SetUp() override
    {
        ASSERT_TRUE(transport.start(Script));
        handle = testing::OpenLink(com, kKind, 0, transport.address());
        ASSERT_GT(handle, 0);
        link::TakeNotedFailure(); // what earlier tests left
    }

    std::int32_t exchange(std::int32_t to, const char* frame) { return com.sendRecv(kKind, to, frame, reply.fresh()); }

    Transport transport;
    typename Transport::Com com{kShortTimeouts};
    testing::ReplyBuffer reply;
    std::int32_t handle = 0;
};

using Transports = ::testing::Types<TcpTransport, SerialTransport>;
TYPED_TEST_SUITE(StreamLinkTest, Transports);

struct Step {
    const char* frame;
    std::optional<std::string> text; // nullopt: the exchange fails
};

// The reply is read up to its 0x04, joined from pieces, cut at the end of the receive buffer
// (a reply that fills it needs no 0x04) and followed by nothing; what a peer sends behind the
// 0x04 or beyond the buffer never answers the next request. A peer that hangs up kills the
// TCP handle: that exchange fails for no reason of its own, and the next is refused; a serial
// line stays up, so there the peer has only gone silent.
TYPED_TEST(StreamLinkTest, ExchangesOneRequestAfterAnother)
{
    const std::vector<Step> steps = {{"???\r", "R:???"},         {"A\tB\r", "R:A\tB"},
                                     {"PIECES\r", "HELLO\r\n!"}, {"BIG\r", kBig.substr(0, kFull.size())},
                                     {"V1\r", "R:V1"},           {"FULL\r", kFull},
                                     {"V2\r", "R:V2"},           {"BYE\r", std::nullopt},
                                     {"V5\r", std::nullopt}};
    std::vector<std::string> received;
    std::vector<link::ExchangeFailure> notes;
    for (const Step& step : steps) {
        SCOPED_TRACE(step.frame);
        ASSERT_EQ(this->exchange(this->handle, step.frame) != 0, step.text.has_value());
        const link::ExchangeFailure note = link::TakeNotedFailure();
        if (step.text)
            EXPECT_EQ(note, link::ExchangeFailure::None);
        else
            notes.push_back(note);
        if (received.empty() || received.back() != "BYE")
            received.emplace_back(step.frame, std::strlen(step.frame) - 1);
        if (!step.text)
            continue;
        auto expected = *step.text + std::string{kReplyTerminator, '\0'};
        expected.resize(std::min(expected.size(), link::kReceiveBufferSize));
        EXPECT_EQ(std::string(this->reply.bytes.data(), expected.size()), expected);
    }
    EXPECT_EQ(this->transport.peer->received(), received) << "each frame went out as handed in, none on a dead handle";
    EXPECT_EQ(notes, TypeParam::kHangUpNotes);
}

// An unfinished reply fails after the reply time-out and the link is lost: the exchanges that
// follow share the probe time, in which a TCP link connects anew and a serial line is drained
// until quiet before the request goes out; once the probe is spent nothing goes out: those
// are time-outs, these refusals. A pause as long as the probe renews it.
TYPED_TEST(StreamLinkTest, AfterALostReplyTheExchangesShareAProbeAndThenSendNothing)
{
    std::vector<link::ExchangeFailure> noted;
    for (const char* frame : {"HALF\r", "SILENT\r", "V1\r", "V2\r"}) {
        EXPECT_EQ(this->exchange(this->handle, frame), 0) << frame;
        noted.push_back(link::TakeNotedFailure());
    }
    using F = link::ExchangeFailure;
    EXPECT_EQ(noted, (std::vector<F>{F::TimedOut, F::TimedOut, F::Refused, F::Refused}));
    EXPECT_EQ(this->transport.peer->received(), (std::vector<std::string>{"HALF", "SILENT"}));

    std::this_thread::sleep_for(kShortTimeouts.probe + 100ms);
    ASSERT_NE(this->exchange(this->handle, "V4\r"), 0);
    EXPECT_EQ(this->reply.text(), "R:V4");
}

TYPED_TEST(StreamLinkTest, AnAddressThatNamesNoPeerFailsTheOpenAndAnUnknownOrClosedHandleTheExchange)
{
    for (const auto& address : TypeParam::badAddresses())
        EXPECT_LE(testing::OpenLink(this->com, this->kKind, 0, address), 0) << '"' << address << '"';
    this->com.close(this->kKind, this->handle);
    for (const std::int32_t handle : {this->handle, this->handle + 1, 0}) {
        EXPECT_EQ(this->exchange(handle, "V1\r"), 0);
        EXPECT_EQ(link::TakeNotedFailure(), link::ExchangeFailure::Refused);
    }
    EXPECT_TRUE(this->transport.peer->received().empty());
}

} // namespace
} // namespace marlune::marlunecom
