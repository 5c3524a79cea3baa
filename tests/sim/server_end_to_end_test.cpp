// marlune-sim as a process, over TCP on 127.0.0.1 and over its pseudo-terminal.
#include "sim_process.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

namespace marlune::sim::test {
namespace {

using namespace std::chrono_literals;
using marlune::testing::SimProcess;

// A reply read from a file descriptor up to its 0x04, without it; nullopt on time-out or a closed link.
std::optional<std::string> ReadReply(int fd, std::chrono::milliseconds limit = 5s)
{
    std::string text;
    for (char byte = 0;;) {
        pollfd request{fd, POLLIN, 0};
        if (fd < 0 || ::poll(&request, 1, static_cast<int>(limit.count())) <= 0 || ::read(fd, &byte, 1) != 1)
            return std::nullopt;
        if (byte == '\x04')
            return text;
        text.push_back(byte);
    }
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
    std::optional<std::string> reply(std::chrono::milliseconds limit = 5s) { return ReadReply(fd_, limit); }
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

// A server on a free port of 127.0.0.1 that ends by itself within a minute.
SimProcess StartServer(std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"--port", "0", "--exit-after", "60"});
    return SimProcess(MARLUNE_SIM_EXECUTABLE, options);
}

TEST(ServerEndToEnd, AnswersFramesOverTcp)
{
    SimProcess server = StartServer();
    const auto port = server.tcpPort();
    ASSERT_TRUE(port);
    Client client(*port);
    EXPECT_EQ(client.exchange("???").value_or("").substr(0, 1), "@");
    EXPECT_EQ(client.exchange("HSPD1500"), "OK");
    client.send("hspd\r\n");
    EXPECT_EQ(client.reply(), "1500");
    for (const char* line : {"OPENPROG1", "V1=1", "V2=2", "CLOSE"})
        client.exchange(line);
    EXPECT_EQ(client.exchange("LISTPROG1"), "V1=1\r\nV2=2");
    EXPECT_EQ(client.exchange("NOSUCH").value_or("").substr(0, 1), "?");
}

TEST(ServerEndToEnd, SurvivesHalfFramesOversizedFramesAndBinaryFrames)
{
    SimProcess server = StartServer();
    const auto port = server.tcpPort();
    ASSERT_TRUE(port);
    {
        Client leaving(*port);
        leaving.send("HSPD12");
    }
    Client client(*port);
    EXPECT_EQ(client.exchange("HSPD"), "1000") << "the half frame of the client that left does not count";
    client.send(std::string(5000, 'A') + "\r");
    EXPECT_EQ(client.reply().value_or("").substr(0, 1), "?");
    client.send(std::string("\x00\xff\x7f\r", 4));
    EXPECT_EQ(client.reply().value_or("").substr(0, 1), "?");
    EXPECT_EQ(client.exchange("???").value_or("").substr(0, 1), "@");
}

TEST(ServerEndToEnd, ServesSeveralClientsAtOnceAndOneAfterAnother)
{
    SimProcess server = StartServer();
    const auto port = server.tcpPort();
    ASSERT_TRUE(port);
    Client silent(*port);
    Client first(*port);
    Client second(*port);
    first.send("V1=5\r");
    EXPECT_EQ(first.reply(), "OK");
    second.send("V1\r");
    EXPECT_EQ(second.reply(), "5");
    first.close();
    second.close();
    Client later(*port);
    EXPECT_EQ(later.exchange("V1"), "5");
}

TEST(ServerEndToEnd, DropAfterClosesTheLinkBehindTheLastExchange)
{
    SimProcess server = StartServer({"--fail", "drop-after=2"});
    const auto port = server.tcpPort();
    ASSERT_TRUE(port);
    Client client(*port);
    EXPECT_EQ(client.exchange("V1=1"), "OK");
    EXPECT_EQ(client.exchange("V1"), "1");
    EXPECT_TRUE(client.closedByPeer());
}

TEST(ServerEndToEnd, NoTerminatorLeavesTheReplyOpen)
{
    SimProcess server = StartServer({"--fail", "no-terminator"});
    const auto port = server.tcpPort();
    ASSERT_TRUE(port);
    Client client(*port);
    client.send("???\r");
    EXPECT_EQ(client.reply(300ms), std::nullopt);
}

TEST(ServerEndToEnd, EndsByItselfWhenIdleAndCleanlyOnTerminate)
{
    SimProcess idle(MARLUNE_SIM_EXECUTABLE, {"--port", "0", "--idle-exit", "0.2"});
    ASSERT_TRUE(idle.tcpPort());
    EXPECT_EQ(idle.waitForExit(5s), 0);

    SimProcess stopped = StartServer();
    ASSERT_TRUE(stopped.tcpPort());
    EXPECT_EQ(stopped.terminate(), 0);
}

TEST(ServerEndToEnd, RefusesABadCommandLine)
{
    SimProcess server(MARLUNE_SIM_EXECUTABLE, {"--port", "99999"});
    EXPECT_EQ(server.waitForExit(5s), 2);
}

TEST(ServerEndToEnd, AnswersOnItsPseudoTerminalThroughTheLink)
{
    char pattern[] = "/tmp/marlune-sim-test-XXXXXX";
    ASSERT_NE(::mkdtemp(pattern), nullptr);
    const std::filesystem::path dir(pattern);
    const std::string link = (dir / "dev" / "COM3").string();
    {
        SimProcess server = StartServer({"--pty", "--pty-link", link});
        ASSERT_TRUE(server.tcpPort());
        const auto ptyLine = server.readLine();
        ASSERT_TRUE(ptyLine && ptyLine->rfind("pty /dev/", 0) == 0) << ptyLine.value_or("<nothing>");
        EXPECT_EQ(std::filesystem::read_symlink(link).string(), ptyLine->substr(4));

        const int fd = ::open(link.c_str(), O_RDWR | O_NOCTTY);
        ASSERT_GE(fd, 0);
        termios mode{};
        ::tcgetattr(fd, &mode);
        ::cfmakeraw(&mode);
        ::tcsetattr(fd, TCSANOW, &mode);
        ASSERT_EQ(::write(fd, "V2=7\r", 5), 5);
        EXPECT_EQ(ReadReply(fd), "OK");
        ASSERT_EQ(::write(fd, "V2\r", 3), 3);
        EXPECT_EQ(ReadReply(fd), "7");
        ::close(fd);
        EXPECT_EQ(server.terminate(), 0);
    }
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(link)));
    std::filesystem::remove_all(dir);
}

} // namespace
} // namespace marlune::sim::test
