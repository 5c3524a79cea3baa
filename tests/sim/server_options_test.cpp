#include "server_options.h"

#include "controller.h"

#include <gtest/gtest.h>

namespace marlune::sim {
namespace {

TEST(ServerOptions, DefaultsServeTcpOnLoopbackAtTheDefaultPort)
{
    ServerOptions options;
    std::string error;
    ASSERT_TRUE(ParseServerOptions({}, options, error)) << error;
    EXPECT_EQ(options.bindAddress, "127.0.0.1");
    EXPECT_EQ(options.port, kDefaultTcpPort);
    EXPECT_TRUE(options.tcp);
    EXPECT_FALSE(options.pty);
    EXPECT_EQ(options.idleExitSeconds, 600);
    EXPECT_FALSE(options.exitAfterSeconds);
}

TEST(ServerOptions, ReadsEveryOption)
{
    ServerOptions options;
    std::string error;
    ASSERT_TRUE(ParseServerOptions({"--port", "0", "--pty-link", "/tmp/x/COM3", "--idle-exit", "2.5", "--exit-after",
                                    "60", "--fail", "drop-after=3", "--fail", "slow=20", "--fail", "garbage"},
                                   options, error))
            << error;
    EXPECT_EQ(options.port, 0);
    EXPECT_TRUE(options.pty);
    EXPECT_EQ(options.ptyLink, "/tmp/x/COM3");
    EXPECT_EQ(options.idleExitSeconds, 2.5);
    EXPECT_EQ(options.exitAfterSeconds, 60.0);
    EXPECT_EQ(options.failures.dropAfterExchanges, 3);
    EXPECT_EQ(options.failures.slowReplyMs, 20);
    EXPECT_TRUE(options.failures.garbageReply);
}

class BadOptions : public ::testing::TestWithParam<std::vector<std::string>> {};

TEST_P(BadOptions, AreRefusedWithAReason)
{
    ServerOptions options;
    std::string error;
    EXPECT_FALSE(ParseServerOptions(GetParam(), options, error));
    EXPECT_FALSE(error.empty());
}

INSTANTIATE_TEST_SUITE_P(
        CommandLine, BadOptions,
        ::testing::Values(std::vector<std::string>{"--port"}, std::vector<std::string>{"--port", "70000"},
                          std::vector<std::string>{"--fail", "sometimes"}, std::vector<std::string>{"--fail", "slow=x"},
                          std::vector<std::string>{"--idle-exit", "-1"}, std::vector<std::string>{"--no-tcp"},
                          std::vector<std::string>{"--frobnicate"}));

} // namespace
} // namespace marlune::sim
