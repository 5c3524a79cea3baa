#include "marlunecom/tcp_address.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace marlune::marlunecom {
namespace {

constexpr std::uint16_t kDefault = 5001;

struct AddressCase {
    std::string text;
    std::optional<std::string> host; // nullopt: no address
    std::uint16_t port = 0;
};

void PrintTo(const AddressCase& value, std::ostream* out) { *out << '"' << value.text << '"'; }

class ParseTcpAddressTest : public ::testing::TestWithParam<AddressCase> {};

TEST_P(ParseTcpAddressTest, ReadsHostAndPort)
{
    const auto& expected = GetParam();
    const auto address = ParseTcpAddress(expected.text, kDefault);
    ASSERT_EQ(address.has_value(), expected.host.has_value());
    if (address) {
        EXPECT_EQ(address->host, *expected.host);
        EXPECT_EQ(address->port, expected.port);
    }
}

INSTANTIATE_TEST_SUITE_P(
        Addresses, ParseTcpAddressTest,
        ::testing::Values(AddressCase{"127.0.0.1", "127.0.0.1", kDefault},
                          AddressCase{"127.0.0.1:6000", "127.0.0.1", 6000}, AddressCase{"localhost:1", "localhost", 1},
                          AddressCase{"host:65535", "host", 65535}, AddressCase{"[::1]:7000", "::1", 7000},
                          AddressCase{"[::1]", "::1", kDefault}, AddressCase{"::1", "::1", kDefault},
                          AddressCase{"", std::nullopt}, AddressCase{":5001", std::nullopt},
                          AddressCase{"host:", std::nullopt}, AddressCase{"host:0", std::nullopt},
                          AddressCase{"host:65536", std::nullopt}, AddressCase{"host:12ab", std::nullopt},
                          AddressCase{"host:-1", std::nullopt}, AddressCase{"[::1]x", std::nullopt},
                          AddressCase{"[::1", std::nullopt}, AddressCase{"[]:5001", std::nullopt}));

} // namespace
} // namespace marlune::marlunecom
