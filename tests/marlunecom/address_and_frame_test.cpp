#include "link/marlune_com.h"
#include "marlunecom/address_text.h"
#include "marlunecom/com_port_name.h"
#include "marlunecom/link_option.h"
#include "marlunecom/reply_frame.h"
#include "marlunecom/tcp_address.h"

#include <gtest/gtest.h>

#include <string>
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

TEST(ParseTcpAddressTest, ReadsHostAndPortWith5001ByDefault)
{
    // clang-format off
    const char* const cases[][2] = { // address, then host and port
        {"127.0.0.1", "127.0.0.1 5001"}, {"127.0.0.1:6000", "127.0.0.1 6000"}, {"localhost:1", "localhost 1"},
        {"host:65535", "host 65535"}, {"[::1]:7000", "::1 7000"}, {"[::1]", "::1 5001"}, {"::1", "::1 5001"},
        {"", "none"}, {":5001", "none"}, {"host:", "none"}, {"host:0", "none"}, {"host:65536", "none"},
        {"host:12ab", "none"}, {"host:-1", "none"}, {"[::1]x", "none"}, {"[::1", "none"}, {"[]:5001", "none"}};
    // clang-format on
    for (const auto& [text, expected] : cases) {
        const auto address = ParseTcpAddress(text, 5001);
        EXPECT_EQ(address ? address->host + " " + std::to_string(address->port) : "none", expected) << text;
    }
}

// The command line's --link: each kind with the field it sets, and texts that name no link.
TEST(ParseLinkOptionTest, NamesAKindAndItsAddressOrSaysWhyNot)
{
    // clang-format off
    const char* const cases[][2] = { // text, then kind, IP address and COM port, or the error's start
        {"sim", "1 192.168.1.250 COM1"}, {"tcp:127.0.0.1", "2 127.0.0.1 COM1"},
        {"tcp:127.0.0.1:6001", "2 127.0.0.1:6001 COM1"}, {"serial:COM3", "3 192.168.1.250 COM3"},
        {"serial:/dev/ttyUSB0", "3 192.168.1.250 /dev/ttyUSB0"}, {"tcp:", "\"\" is no host"},
        {"tcp:host:70000", "\"host:70000\" is no host"}, {"serial:LPT1", "\"LPT1\" is no serial port"},
        {"Sim", "\"Sim\" names no link"}, {"", "\"\" names no link"}};
    // clang-format on
    for (const auto& [text, expected] : cases) {
        const LinkOption option = ParseLinkOption(text);
        const std::string found = option.settings
                                          ? std::to_string(option.settings->linkKind) + " " + option.settings->ipAddress
                                                    + " " + option.settings->comPort
                                          : option.error;
        EXPECT_TRUE(found.starts_with(expected)) << text << " gave " << found;
        EXPECT_NE(option.settings.has_value(), !option.error.empty()) << text;
    }
}

// COMn is $MARLUNE_COM_DIR/COMn when that is set and not empty, otherwise /dev/ttyACM<n-1>.
TEST(ComPortDeviceTest, MapsTheAddressToADevice)
{
    // clang-format off
    const char* const cases[][3] = { // address, folder, device
        {"COM1", nullptr, "/dev/ttyACM0"}, {"COM10", nullptr, "/dev/ttyACM9"}, {"com3", nullptr, "/dev/ttyACM2"},
        {"COM3", "", "/dev/ttyACM2"}, {"COM3", "/tmp/ports", "/tmp/ports/COM3"}, {"cOm12", "/p", "/p/COM12"},
        {"/dev/ttyUSB0", "/tmp/ports", "/dev/ttyUSB0"}, {"COM0", nullptr, "none"}, {"COM", nullptr, "none"},
        {"COM-1", nullptr, "none"}, {"COM1x", nullptr, "none"}, {"COM 1", nullptr, "none"},
        {"LPT1", nullptr, "none"}, {"", nullptr, "none"}, {"ttyACM0", nullptr, "none"}};
    // clang-format on
    for (const auto& [address, comDir, device] : cases)
        EXPECT_EQ(ComPortDevice(address, comDir).value_or("none"), device)
                << address << " in " << (comDir ? comDir : "-");
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

// A request stops at its NUL or the end of the send buffer; its command is the bytes before
// the first CR, and it needs one.
TEST(ReplyFrameTest, ARequestAndItsCommand)
{
    EXPECT_EQ(RequestFrame("LIST\r\0junk"), "LIST\r");
    const std::string full(link::kSendBufferSize + 10, 'Z');
    EXPECT_EQ(RequestFrame(full.c_str()).size(), link::kSendBufferSize);
    // clang-format off
    const char* const frames[][2] = { // frame, then command and "+" for a complete one
        {"???\r", "???+"}, {"\r", "+"}, {"X1\rY2\r", "X1+"}, {"A\tB\r", "A\tB+"}, {"V1", "V1"}, {"", ""}};
    // clang-format on
    for (const auto& [frame, expected] : frames) {
        const auto [command, complete] = CommandOfFrame(frame);
        EXPECT_EQ(std::string(command) + (complete ? "+" : ""), expected) << frame;
    }
}

} // namespace
} // namespace marlune::marlunecom
