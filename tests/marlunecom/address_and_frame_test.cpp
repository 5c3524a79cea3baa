#include "link/marlune_com.h"
#include "marlunecom/address_text.h"
#include "marlunecom/com_port_name.h"
#include "marlunecom/reply_frame.h"
#include "marlunecom/tcp_address.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace marlune::marlunecom {
namespace {

TEST(AddressTextTest, DropsSurroundingBlanksAndStopsAtTheBufferEnd)
{
    EXPECT_EQ(AddressText(" \tCOM3 \t"), "COM3");
    EXPECT_EQ(AddressText("127.0.0.1:6000"), "127.0.0.1:6000");
    EXPECT_EQ(AddressText("   "), "");
    const std::string unterminated(link::kAddressBufferSize + 10, 'h');
    EXPECT_EQ(AddressText(unterminated.c_str()).size(), link::kAddressBufferSize);
}

struct TcpCase {
    std::string text;
    std::optional<std::string> host; // nullopt: no address
    std::uint16_t port = 0;
};

void PrintTo(const TcpCase& value, std::ostream* out) { *out << '"' << value.text << '"'; }

class ParseTcpAddressTest : public ::testing::TestWithParam<TcpCase> {};

TEST_P(ParseTcpAddressTest, ReadsHostAndPort)
{
    const auto& expected = GetParam();
    const auto address = ParseTcpAddress(expected.text, 5001);
    EXPECT_EQ(address ? std::optional(std::tie(address->host, address->port)) : std::nullopt,
              expected.host ? std::optional(std::tie(*expected.host, expected.port)) : std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Addresses, ParseTcpAddressTest,
                         ::testing::Values(TcpCase{"127.0.0.1", "127.0.0.1", 5001},
                                           TcpCase{"127.0.0.1:6000", "127.0.0.1", 6000},
                                           TcpCase{"localhost:1", "localhost", 1}, TcpCase{"host:65535", "host", 65535},
                                           TcpCase{"[::1]:7000", "::1", 7000}, TcpCase{"[::1]", "::1", 5001},
                                           TcpCase{"::1", "::1", 5001}, TcpCase{"", std::nullopt},
                                           TcpCase{":5001", std::nullopt}, TcpCase{"host:", std::nullopt},
                                           TcpCase{"host:0", std::nullopt}, TcpCase{"host:65536", std::nullopt},
                                           TcpCase{"host:12ab", std::nullopt}, TcpCase{"host:-1", std::nullopt},
                                           TcpCase{"[::1]x", std::nullopt}, TcpCase{"[::1", std::nullopt},
                                           TcpCase{"[]:5001", std::nullopt}));

struct PortCase {
    std::string address;
    const char* comDir;
    std::optional<std::string> device;
};

void PrintTo(const PortCase& value, std::ostream* out)
{
    *out << '"' << value.address << "\" with " << (value.comDir ? value.comDir : "no folder");
}

class ComPortDeviceTest : public ::testing::TestWithParam<PortCase> {};

TEST_P(ComPortDeviceTest, MapsTheAddressToADevice)
{
    const auto& [address, comDir, device] = GetParam();
    EXPECT_EQ(ComPortDevice(address, comDir), device);
}

INSTANTIATE_TEST_SUITE_P(
        Addresses, ComPortDeviceTest,
        ::testing::Values(PortCase{"COM1", nullptr, "/dev/ttyACM0"}, PortCase{"COM10", nullptr, "/dev/ttyACM9"},
                          PortCase{"com3", nullptr, "/dev/ttyACM2"}, PortCase{"COM3", "", "/dev/ttyACM2"},
                          PortCase{"COM3", "/tmp/ports", "/tmp/ports/COM3"}, PortCase{"cOm12", "/p", "/p/COM12"},
                          PortCase{"/dev/ttyUSB0", "/tmp/ports", "/dev/ttyUSB0"},
                          PortCase{"COM0", nullptr, std::nullopt}, PortCase{"COM", nullptr, std::nullopt},
                          PortCase{"COM-1", nullptr, std::nullopt}, PortCase{"COM1x", nullptr, std::nullopt},
                          PortCase{"COM 1", nullptr, std::nullopt}, PortCase{"LPT1", nullptr, std::nullopt},
                          PortCase{"", nullptr, std::nullopt}, PortCase{"ttyACM0", nullptr, std::nullopt}));

TEST(ComPortDeviceEnvironmentTest, ReadsTheFolderFromTheEnvironment)
{
    ::setenv(kComDirVariable, "/tmp/marlune-ports", 1);
    EXPECT_EQ(ComPortDevice("COM2"), "/tmp/marlune-ports/COM2");
    ::unsetenv(kComDirVariable);
    EXPECT_EQ(ComPortDevice("COM2"), "/dev/ttyACM1");
}

constexpr std::size_t kSize = link::kReceiveBufferSize;

TEST(ReplyFrameTest, WritesTheTerminatorWhereItFitsAndOtherwiseFillsTheBuffer)
{
    for (const std::size_t length : {std::size_t{0}, std::size_t{2}, kSize - 1, kSize, kSize + 1000}) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
            text.push_back(static_cast<char>('a' + i % 26));
        std::vector<char> buffer(kSize + 1, '\x55');
        WriteReplyFrame(text, buffer.data());
        std::string expected = text.substr(0, kSize) + (length < kSize ? std::string{kReplyTerminator} : "");
        expected.resize(kSize + 1, '\x55'); // nothing written behind, nor past the buffer
        EXPECT_EQ(std::string(buffer.begin(), buffer.end()), expected) << length;
    }
}

TEST(ReplyFrameTest, TheCommandIsTheBytesBeforeTheFirstCrAndNeedsOne)
{
    const std::vector<std::tuple<std::string, std::string, bool>> frames = {
            {"???\r", "???", true},   {"\r", "", true},    {"X1\rY2\r", "X1", true},
            {"A\tB\r", "A\tB", true}, {"V1", "V1", false}, {"", "", false}};
    for (const auto& [frame, command, complete] : frames) {
        const auto [gotCommand, gotComplete] = CommandOfFrame(frame);
        EXPECT_EQ(gotCommand, command) << frame;
        EXPECT_EQ(gotComplete, complete) << frame;
    }
}

TEST(ReplyFrameTest, ARequestStopsAtItsNulOrTheEndOfTheSendBuffer)
{
    EXPECT_EQ(RequestFrame("LIST\r\0junk"), "LIST\r");
    const std::string full(link::kSendBufferSize + 10, 'Z');
    EXPECT_EQ(RequestFrame(full.c_str()).size(), link::kSendBufferSize);
}

} // namespace
} // namespace marlune::marlunecom
