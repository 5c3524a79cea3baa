#include "marlunecom/com_port_name.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace marlune::marlunecom {
namespace {

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

} // namespace
} // namespace marlune::marlunecom
