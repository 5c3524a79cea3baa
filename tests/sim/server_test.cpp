// The server of marlune-sim: its frames, its command line, and the process itself over
// TCP on 127.0.0.1 and over its pseudo-terminal.
#include "frame_reader.h"
#include "server_options.h"
#include "sim_process.h"

#include "controller.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace marlune::sim {
namespace {

using namespace std::chrono_literals;
using marlune::testing::SimProcess;

std::vector<std::string> Frames(FrameReader& reader)
{
    std::vector<std::string> out;
    while (auto frame = reader.take())
        out.push_back(frame->oversized ? "<oversized>" : frame->bytes);
    return out;
}

TEST(FrameReader, CutsAtCarriageReturnIgnoresLineFeedsAndDropsOversizedAndStaleFrames)
{
    FrameReader reader;
    reader.feed("???\r\nHSPD\n1000\rV1", 0);
    EXPECT_EQ(Frames(reader), (std::vector<std::string>{"???", "HSPD1000"}));
    EXPECT_TRUE(reader.hasPartial());
    reader.feed(std::string_view("\r\x00\xff\r\rHSP", 8), 100);
    EXPECT_EQ(Frames(reader), (std::vector<std::string>{"V1", std::string("\x00\xff", 2), ""}));
    reader.dropStale(50);
    EXPECT_TRUE(reader.hasPartial());
    reader.dropStale(200);
    reader.feed("???\r", 300);
    EXPECT_EQ(Frames(reader), std::vector<std::string>{"???"});

    FrameReader small(8);
    small.feed("123456789", 0);
    small.feed("abcdef\rOK\r12345678\r", 0);
    EXPECT_EQ(Frames(small), (std::vector<std::string>{"<oversized>", "OK", "12345678"})) << "the limit is allowed";
}

// The options read, as one line, or what a refused command line gives.
std::string Described(const std::vector<std::string>& args)
{
    ServerOptions o;
    std::string error;
    if (!ParseServerOptions(args, o, error))
        return error.empty() ? "refused without a reason" : "refused";
    const FailureModes& f = o.failures;
    return o.bindAddress + ":" + std::to_string(o.port) + (o.tcp ? " tcp" : "") + (o.pty ? " pty=" + o.ptyLink : "")
           + " idle=" + std::to_string(o.idleExitSeconds)
           + " exit=" + (o.exitAfterSeconds ? std::to_string(*o.exitAfterSeconds) : "never")
           + " drop=" + std::to_string(f.dropAfterExchanges) + " slow=" + std::to_string(f.slowReplyMs)
           + (f.garbageReply ? " garbage" : "");
}

TEST(ServerOptions, DefaultsServeTcpOnLoopbackAtTheDefaultPortEveryOptionIsReadAndABadOneRefused)
{
    using Args = std::vector<std::string>;
    EXPECT_EQ(Described({}),
              "127.0.0.1:" + std::to_string(kDefaultTcpPort) + " tcp idle=600.000000 exit=never drop=-1 slow=0");
    EXPECT_EQ(Described({"--port", "0", "--pty-link", "/tmp/x/COM3", "--idle-exit", "2.5", "--exit-after", "60",
                         "--fail", "drop-after=3", "--fail", "slow=20", "--fail", "garbage"}),
              "127.0.0.1:0 tcp pty=/tmp/x/COM3 idle=2.500000 exit=60.000000 drop=3 slow=20 garbage");
    for (const Args& bad :
         {Args{"--port"}, Args{"--port", "70000"}, Args{"--fail", "sometimes"}, Args{"--fail", "slow=x"},
          Args{"--idle-exit", "-1"}, Args{"--no-tcp"}, Args{"--frobnicate"}})
        EXPECT_EQ(Described(bad), "refused") << bad.front();
}

// A TCP client of 127.0.0.1.
class Client final {
public:
    explicit Client(std::uint16_t port) : fd_(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in where{};
        where.sin_family = AF_INET;
        where.sin_port = htons(port);
        ::inet_pton(AF_INET, "127.0.0.1", &where.sin_addr);
        if (::connect(fd_, reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0)
            close();
    }
    ~Client() { close(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void send(const std::string& bytes) { ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL); }
    // Sends what the socket takes of `bytes` once it can take any within `limit`; false when it took none.
    bool sendOnce(const std::string& bytes, std::chrono::milliseconds limit)
    {
        pollfd request{fd_, POLLOUT, 0};
        return ::poll(&request, 1, static_cast<int>(limit.count())) > 0
               && ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) > 0;
    }
    // The reply up to its 0x04, without it; nullopt on time-out or a closed connection.
    std::optional<std::string> reply()
    {
        std::string text;
        for (char byte = 0;;) {
            pollfd request{fd_, POLLIN, 0};
            if (fd_ < 0 || ::poll(&request, 1, 5000) <= 0 || ::read(fd_, &byte, 1) != 1)
                return std::nullopt;
            if (byte == '\x04')
                return text;
            text.push_back(byte);
        }
    }
    std::optional<std::string> exchange(const std::string& command)
    {
        send(command + "\r");
        return reply();
    }
    // True when the server closed the connection.
    bool closedByPeer()
    {
        char byte = 0;
        pollfd request{fd_, POLLIN, 0};
        return ::poll(&request, 1, 5000) > 0 && ::recv(fd_, &byte, 1, 0) == 0;
    }
    void close()
    {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
    }

private:
    int fd_ = -1;
};

class ServerEndToEnd : public ::testing::Test {
protected:
    // Starts a server on a free port of 127.0.0.1 that ends by itself within a minute; its port.
    std::uint16_t start(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"--port", "0", "--exit-after", "60"});
        server.emplace(MARLUNE_SIM_EXECUTABLE, options);
        return server->tcpPort().value_or(0);
    }

    std::optional<SimProcess> server;
};

TEST_F(ServerEndToEnd, ServesSeveralClientsOverTcpWhateverTheySend)
{
    const auto port = start();
    ASSERT_NE(port, 0);
    {
        Client leaving(port);
        leaving.send("HSPD12");
    }
    Client silent(port);
    Client first(port);
    Client second(port);
    EXPECT_EQ(first.exchange("HSPD"), "1000") << "the half frame of the client that left does not count";
    EXPECT_EQ(first.exchange("???").value_or("").substr(0, 1), "@");
    EXPECT_EQ(first.exchange("HSPD1500"), "OK");
    second.send("hspd\r\n");
    EXPECT_EQ(second.reply(), "1500");
    for (const char* line : {"OPENPROG1", "V1=1", "V2=2", "CLOSE"})
        first.exchange(line);
    EXPECT_EQ(second.exchange("LISTPROG1"), "V1=1\r\nV2=2");
    first.send(std::string(5000, 'A') + "\r");
    EXPECT_EQ(first.reply().value_or("").substr(0, 1), "?");
    first.send(std::string("\x00\xff\x7f\r", 4));
    EXPECT_EQ(first.reply().value_or("").substr(0, 1), "?");
    EXPECT_EQ(first.exchange("NOSUCH").value_or("").substr(0, 1), "?");
    first.send("\x04V\r");
    EXPECT_EQ(first.reply(), "?Unknown command \"\\x04V\"") << "an echoed 0x04 would end the reply early";
    EXPECT_EQ(first.exchange("HSPD"), "1500");
    first.close();
    second.close();
    Client later(port);
    EXPECT_EQ(later.exchange("HSPD"), "1500");
}

TEST_F(ServerEndToEnd, SilentClientsMakeRoomForANewOneTheQuietestFirst)
{
    const auto port = start();
    ASSERT_NE(port, 0);
    std::vector<std::unique_ptr<Client>> silent;
    for (int i = 0; i < 16; ++i) {
        silent.push_back(std::make_unique<Client>(port));
        ASSERT_EQ(silent.back()->exchange("HSPD"), "1000") << "the server has taken client " << i;
    }
    ASSERT_EQ(silent[0]->exchange("HSPD"), "1000") << "the first spoke last of all";
    Client newcomer(port);
    EXPECT_EQ(newcomer.exchange("HSPD"), "1000");
    EXPECT_TRUE(silent[1]->closedByPeer()) << "the one silent for longest made room";
    EXPECT_EQ(silent[0]->exchange("HSPD"), "1000");
}

TEST_F(ServerEndToEnd, StopsReadingAClientThatDoesNotReadItsReplies)
{
    const auto port = start();
    ASSERT_NE(port, 0);
    Client flooding(port);
    const std::string queries = [] {
        std::string text;
        for (int i = 0; i < 1024; ++i)
            text += "HSPD\r";
        return text;
    }();
    // A server that kept reading would take all 32 MB, queuing a reply for each command.
    std::size_t sent = 0;
    while (sent < (32u << 20) && flooding.sendOnce(queries, 2s))
        sent += queries.size();
    EXPECT_LT(sent, 32u << 20) << "the server kept reading";
    Client other(port);
    EXPECT_EQ(other.exchange("HSPD"), "1000");
}

TEST_F(ServerEndToEnd, EndsByItselfWhenIdleCleanlyOnTerminateAndRefusesABadCommandLine)
{
    SimProcess idle(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--idle-exit", "0.2"});
    ASSERT_TRUE(idle.tcpPort());
    EXPECT_EQ(idle.waitForExit(5s), 0);

    ASSERT_NE(start(), 0);
    EXPECT_EQ(server->terminate(), 0);

    SimProcess refused(MARLUNE_SIM_EXECUTABLE, {"--port", "99999"});
    EXPECT_EQ(refused.waitForExit(5s), 2);
}

TEST_F(ServerEndToEnd, KeepsItsEepromInTheFileItIsGivenAndRefusesOneItCannotRead)
{
    const auto file = std::filesystem::temp_directory_path() / ("marlune-sim-eeprom-" + std::to_string(::getpid()));
    std::filesystem::remove(file);
    for (const char* written : {"V9=-42", "V9=5"}) {
        Client client(start({"--eeprom", file.string()}));
        EXPECT_EQ(client.exchange("V9"), written[3] == '-' ? "0" : "-42");
        EXPECT_EQ(client.exchange(written), "OK");
        EXPECT_EQ(client.exchange("STORE"), "OK");
        std::this_thread::sleep_for(500ms); // the write takes 400 ms, during which nothing answers
        EXPECT_EQ(client.exchange("I48"), written[3] == '-' ? "1" : "2");
        EXPECT_EQ(server->terminate(), 0);
    }
    std::ofstream(file, std::ios::app) << "V 1 x\n";
    SimProcess refused(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--eeprom", file.string()});
    EXPECT_EQ(refused.waitForExit(5s), 1);
    std::filesystem::remove(file);
}

// Its answers on the pseudo-terminal are tested through the serial link, in marlunecom_tests.
TEST_F(ServerEndToEnd, LinksItsPseudoTerminalWhereToldAndRemovesTheLinkAtTheEnd)
{
    char pattern[] = "/tmp/marlune-sim-test-XXXXXX";
    ASSERT_NE(::mkdtemp(pattern), nullptr);
    const std::filesystem::path dir(pattern);
    const std::string link = (dir / "dev" / "COM3").string();
    ASSERT_NE(start({"--pty", "--pty-link", link}), 0);
    const auto device = server->lineAfter("pty ");
    ASSERT_TRUE(device && device->starts_with("/dev/")) << device.value_or("<nothing>");
    EXPECT_EQ(std::filesystem::read_symlink(link).string(), *device);
    EXPECT_EQ(server->terminate(), 0);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(link)));
    std::filesystem::remove_all(dir);
}

} // namespace
} // namespace marlune::sim
