// The behaviour that the TCP and the serial link share, run against a scripted peer on
// each: a loopback connection and a pseudo-terminal.

#include "link/marlune_com.h"
#include "marlunecom/reply_frame.h"
#include "marlunecom/serial_com.h"
#include "marlunecom/tcp_com.h"
#include "reply_buffer.h"
#include "scripted_peer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;
using testing::PeerReply;
using testing::PeerScript;

constexpr LinkTimeouts kShortTimeouts{200ms, 200ms};

PeerReply answer(std::string text) { return PeerReply{{std::move(text) + kReplyTerminator}}; }

struct TcpTransport {
    static constexpr std::int32_t kKind = 2;
    using Com = TcpCom;
    static std::vector<std::string> badAddresses()
    {
        return {"", "   ", "127.0.0.1:0", "127.0.0.1:http", "127.0.0.1:70000", "[127.0.0.1"};
    }

    bool start(PeerScript script)
    {
        peer = std::make_unique<testing::TcpPeer>(std::move(script));
        return true;
    }
    std::string address() const { return peer->address(); }
    std::vector<std::string> received() const { return peer->received(); }

    std::unique_ptr<testing::TcpPeer> peer;
};

struct SerialTransport {
    static constexpr std::int32_t kKind = 3;
    using Com = SerialCom;
    static std::vector<std::string> badAddresses()
    {
        return {"", "   ", "LPT1", "COM0", "/nonexistent/ttyACM0", "/dev/null"};
    }

    bool start(PeerScript script)
    {
        peer = std::make_unique<testing::PtyPeer>(std::move(script));
        return peer->ready();
    }
    std::string address() const { return peer->devicePath(); }
    std::vector<std::string> received() const { return peer->received(); }

    std::unique_ptr<testing::PtyPeer> peer;
};

template <typename Transport>
class StreamLinkTest : public ::testing::Test {
protected:
    static constexpr auto kKind = Transport::kKind;

    // Starts the peer with `script` and opens a link to it.
    std::int32_t openTo(PeerScript script)
    {
        if (!transport.start(std::move(script)))
            return 0;
        return testing::OpenLink(com, kKind, 0, transport.address());
    }

    std::int32_t exchange(std::int32_t handle, const char* frame)
    {
        return com.sendRecv(kKind, handle, frame, reply.fresh());
    }

    // Answers every command with "R:" and the command.
    static std::optional<PeerReply> echo(const std::string& command) { return answer("R:" + command); }

    Transport transport;
    typename Transport::Com com{kShortTimeouts};
    testing::ReplyBuffer reply;
};

using Transports = ::testing::Types<TcpTransport, SerialTransport>;
TYPED_TEST_SUITE(StreamLinkTest, Transports);

TYPED_TEST(StreamLinkTest, SendsTheFrameAndReadsTheReplyUpToItsTerminator)
{
    const auto handle = this->openTo(this->echo);
    ASSERT_GT(handle, 0);

    ASSERT_NE(this->exchange(handle, "???\r"), 0);
    EXPECT_EQ(this->reply.text(), "R:???");
    EXPECT_EQ(this->reply.bytes()[5], kReplyTerminator);
    ASSERT_NE(this->exchange(handle, "A\tB\r"), 0);
    EXPECT_EQ(this->reply.text(), "R:A\tB");
    EXPECT_EQ(this->transport.received(), (std::vector<std::string>{"???", "A\tB"}));
}

TYPED_TEST(StreamLinkTest, AReplyInPiecesIsJoinedAndBytesBehindItsTerminatorAreDropped)
{
    const auto handle = this->openTo([](const std::string&) {
        return PeerReply{{"HEL", "LO\r\n", std::string("!") + kReplyTerminator + "stray"}};
    });
    ASSERT_GT(handle, 0);

    ASSERT_NE(this->exchange(handle, "LIST\r"), 0);
    EXPECT_EQ(this->reply.text(), "HELLO\r\n!");
    EXPECT_EQ(this->reply.bytes()[8], kReplyTerminator);
    EXPECT_EQ(this->reply.bytes()[9], '\0') << "wrote behind the terminator";
}

TYPED_TEST(StreamLinkTest, AReplyLongerThanTheBufferFillsItAndDoesNotSpillIntoTheNext)
{
    const auto handle = this->openTo([](const std::string& command) {
        if (command == "BIG")
            return PeerReply{{std::string(link::kReceiveBufferSize + 3000, 'x') + kReplyTerminator}};
        return answer("R:" + command);
    });
    ASSERT_GT(handle, 0);

    ASSERT_NE(this->exchange(handle, "BIG\r"), 0);
    const auto& bytes = this->reply.bytes();
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 'x'), static_cast<std::ptrdiff_t>(link::kReceiveBufferSize));

    ASSERT_NE(this->exchange(handle, "V1\r"), 0);
    EXPECT_EQ(this->reply.text(), "R:V1");
}

TYPED_TEST(StreamLinkTest, ASilentOrUnfinishedReplyFailsAndTheLinkGoesOn)
{
    const auto handle = this->openTo([](const std::string& command) -> std::optional<PeerReply> {
        if (command == "SILENT")
            return std::nullopt;
        if (command == "HALF")
            return PeerReply{{"no terminator"}};
        return answer("R:" + command);
    });
    ASSERT_GT(handle, 0);

    EXPECT_EQ(this->exchange(handle, "SILENT\r"), 0);
    EXPECT_EQ(this->exchange(handle, "HALF\r"), 0);
    ASSERT_NE(this->exchange(handle, "V1\r"), 0);
    EXPECT_EQ(this->reply.text(), "R:V1");
}

TYPED_TEST(StreamLinkTest, AReplyThatComesAfterTheTimeOutIsNotTakenForTheNextOne)
{
    const auto handle = this->openTo([](const std::string& command) {
        if (command == "SLOW")
            return PeerReply{{std::string("LATE") + kReplyTerminator}, 300ms};
        return answer("R:" + command);
    });
    ASSERT_GT(handle, 0);

    EXPECT_EQ(this->exchange(handle, "SLOW\r"), 0);
    std::this_thread::sleep_for(250ms); // the late reply arrives meanwhile
    ASSERT_NE(this->exchange(handle, "V1\r"), 0);
    EXPECT_EQ(this->reply.text(), "R:V1");
}

TYPED_TEST(StreamLinkTest, APeerThatHangsUpMidReplyFailsTheExchangeAndTheHandle)
{
    const auto handle = this->openTo([](const std::string&) { return PeerReply{{"PART"}, {}, true}; });
    ASSERT_GT(handle, 0);

    EXPECT_EQ(this->exchange(handle, "???\r"), 0);
    EXPECT_EQ(this->exchange(handle, "???\r"), 0);
    EXPECT_EQ(this->transport.received(), std::vector<std::string>{"???"});
}

TYPED_TEST(StreamLinkTest, AClosedOrUnknownHandleFails)
{
    const auto handle = this->openTo(this->echo);
    ASSERT_GT(handle, 0);

    EXPECT_EQ(this->exchange(handle + 1, "V1\r"), 0);
    EXPECT_EQ(this->exchange(0, "V1\r"), 0);
    this->com.close(this->kKind, handle);
    EXPECT_EQ(this->exchange(handle, "V1\r"), 0);
    EXPECT_TRUE(this->transport.received().empty());
}

TYPED_TEST(StreamLinkTest, AnAddressThatNamesNoPeerFailsTheOpen)
{
    for (const auto& address : TypeParam::badAddresses()) {
        SCOPED_TRACE(address);
        EXPECT_LE(testing::OpenLink(this->com, this->kKind, 0, address), 0);
    }
}

} // namespace
} // namespace marlune::marlunecom
