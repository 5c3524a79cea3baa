// marlune-sim as a process, over TCP on 127.0.0.1 and over its pseudo-terminal.
#include "server_process.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <termios.h>
#include <unistd.h>

namespace marlune::sim::test {
namespace {

using namespace std::chrono_literals;

// Starts a server on a free port of 127.0.0.1 and reads the port it printed.
int startOnFreePort(ServerProcess& server)
{
    const auto line = server.readLine();
    const std::string head = "tcp 127.0.0.1:";
    if (!line || line->rfind(head, 0) != 0)
        return -1;
    return std::stoi(line->substr(head.size()));
}

TEST(ServerEndToEnd, AnswersFramesOverTcp)
{
    ServerProcess server({"--port", "0", "--exit-after", "60"});
    const int port = startOnFreePort(server);
    ASSERT_GT(port, 0);
    Client client(port);
    ASSERT_TRUE(client.connected());
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
    ServerProcess server({"--port", "0", "--exit-after", "60"});
    const int port = startOnFreePort(server);
    ASSERT_GT(port, 0);
    {
        Client leaving(port);
        leaving.send("HSPD12");
    }
    Client client(port);
    EXPECT_EQ(client.exchange("HSPD"), "1000") << "the half frame of the client that left does not count";
    client.send(std::string(5000, 'A') + "\r");
    EXPECT_EQ(client.reply().value_or("").substr(0, 1), "?");
    client.send(std::string("\x00\xff\x7f\r", 4));
    EXPECT_EQ(client.reply().value_or("").substr(0, 1), "?");
    EXPECT_EQ(client.exchange("???").value_or("").substr(0, 1), "@");
}

TEST(ServerEndToEnd, ServesSeveralClientsAtOnceAndOneAfterAnother)
{
    ServerProcess server({"--port", "0", "--exit-after", "60"});
    const int port = startOnFreePort(server);
    ASSERT_GT(port, 0);
    Client silent(port);
    Client first(port);
    Client second(port);
    first.send("V1=5\r");
    EXPECT_EQ(first.reply(), "OK");
    second.send("V1\r");
    EXPECT_EQ(second.reply(), "5");
    first.close();
    second.close();
    Client later(port);
    EXPECT_EQ(later.exchange("V1"), "5");
}

TEST(ServerEndToEnd, DropAfterClosesTheLinkBehindTheLastExchange)
{
    ServerProcess server({"--port", "0", "--exit-after", "60", "--fail", "drop-after=2"});
    const int port = startOnFreePort(server);
    ASSERT_GT(port, 0);
    Client client(port);
    EXPECT_EQ(client.exchange("V1=1"), "OK");
    EXPECT_EQ(client.exchange("V1"), "1");
    EXPECT_TRUE(client.closedByPeer());
}

TEST(ServerEndToEnd, NoTerminatorLeavesTheReplyOpen)
{
    ServerProcess server({"--port", "0", "--exit-after", "60", "--fail", "no-terminator"});
    const int port = startOnFreePort(server);
    ASSERT_GT(port, 0);
    Client client(port);
    client.send("???\r");
    EXPECT_EQ(client.reply(300ms), std::nullopt);
}

TEST(ServerEndToEnd, EndsByItselfWhenIdleAndCleanlyOnTerminate)
{
    ServerProcess idle({"--port", "0", "--idle-exit", "0.2"});
    ASSERT_GT(startOnFreePort(idle), 0);
    EXPECT_EQ(idle.waitForExit(5s), 0);

    ServerProcess stopped({"--port", "0", "--exit-after", "60"});
    ASSERT_GT(startOnFreePort(stopped), 0);
    EXPECT_EQ(stopped.terminate(), 0);
}

TEST(ServerEndToEnd, RefusesABadCommandLine)
{
    ServerProcess server({"--port", "99999"});
    EXPECT_EQ(server.waitForExit(5s), 2);
}

TEST(ServerEndToEnd, AnswersOnItsPseudoTerminalThroughTheLink)
{
    char pattern[] = "/tmp/marlune-sim-test-XXXXXX";
    ASSERT_NE(::mkdtemp(pattern), nullptr);
    const std::filesystem::path dir(pattern);
    const std::string link = (dir / "dev" / "COM3").string();
    {
        ServerProcess server({"--port", "0", "--pty", "--pty-link", link, "--exit-after", "60"});
        ASSERT_GT(startOnFreePort(server), 0);
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
        EXPECT_EQ(readReply(fd, 5s), "OK");
        ASSERT_EQ(::write(fd, "V2\r", 3), 3);
        EXPECT_EQ(readReply(fd, 5s), "7");
        ::close(fd);
        EXPECT_EQ(server.terminate(), 0);
    }
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(link)));
    std::filesystem::remove_all(dir);
}

} // namespace
} // namespace marlune::sim::test
