#include "link/marlune_com.h"
#include "marlunecom/com_factory.h"
#include "marlunecom/kind_router_com.h"
#include "marlunecom/serial_com.h"
#include "marlunecom/simulator_com.h"
#include "marlunecom/tcp_com.h"
#include "marlunecom/vendor_library_com.h"
#include "reply_buffer.h"
#include "scripted_peer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;

class ComFactoryTest : public ::testing::Test {
protected:
    void SetUp() override { ::unsetenv(kVendorLibraryVariable); }
    void TearDown() override { ::unsetenv(kVendorLibraryVariable); }

    ComOptions options(std::optional<std::string> library)
    {
        return ComOptions{[this] { return clock; }, std::move(library), LinkTimeouts{200ms, 200ms}};
    }

    std::int64_t clock = 0;
    testing::ReplyBuffer reply;
};

TEST_F(ComFactoryTest, WithoutTheMakersLibraryEachKindHasItsBuiltInLink)
{
    const auto choice = ChooseMarluneCom(options("/nonexistent/libMarluneCom.so"));
    ASSERT_EQ(choice.source, ComSource::BuiltIn);
    EXPECT_NE(choice.description.find("/nonexistent/libMarluneCom.so"), std::string::npos) << choice.description;

    const auto* router = dynamic_cast<const KindRouterCom*>(choice.com.get());
    ASSERT_NE(router, nullptr);
    EXPECT_NE(dynamic_cast<SimulatorCom*>(router->route(1)), nullptr);
    EXPECT_NE(dynamic_cast<TcpCom*>(router->route(2)), nullptr);
    EXPECT_NE(dynamic_cast<SerialCom*>(router->route(3)), nullptr);
    EXPECT_EQ(router->route(4), nullptr);
}

TEST_F(ComFactoryTest, TheBuiltInLinksWorkByKind)
{
    auto com = CreateMarluneCom(options("/nonexistent/libMarluneCom.so"));
    clock = 7'000'000;

    const auto usb = testing::OpenLink(*com, 1, 1, "");
    ASSERT_GT(usb, 0);
    ASSERT_NE(com->sendRecv(1, usb, "???\r", reply.fresh()), 0);
    EXPECT_TRUE(reply.terminated());
    auto* simulator = dynamic_cast<SimulatorCom*>(dynamic_cast<KindRouterCom&>(*com).route(1));
    EXPECT_EQ(simulator->controller().now(), 7'000'000) << "the simulator runs on the clock given";

    testing::TcpPeer peer([](const std::string&) { return testing::PeerReply{{"tcp\x04"}}; });
    const auto ethernet = testing::OpenLink(*com, 2, 0, peer.address());
    ASSERT_GT(ethernet, 0);
    ASSERT_NE(com->sendRecv(2, ethernet, "???\r", reply.fresh()), 0);
    EXPECT_EQ(reply.text(), "tcp");

    EXPECT_LE(testing::OpenLink(*com, 3, 0, "/nonexistent/ttyACM0"), 0);
    EXPECT_LE(testing::OpenLink(*com, 7, 0, "COM1"), 0);
}

TEST_F(ComFactoryTest, TheMakersLibraryServesEveryKind)
{
    const auto choice = ChooseMarluneCom(options(FAKE_VENDOR_LIBRARY));
    ASSERT_EQ(choice.source, ComSource::VendorLibrary) << choice.description;
    EXPECT_NE(choice.description.find("fake_vendor"), std::string::npos) << choice.description;

    for (std::int32_t kind : {1, 2, 3}) {
        const auto handle = testing::OpenLink(*choice.com, kind, 0, "x");
        EXPECT_EQ(handle / 100, kind);
        ASSERT_EQ(choice.com->sendRecv(kind, handle, "V1\r", reply.fresh()), 1);
        EXPECT_EQ(reply.text(), "V1 kind " + std::to_string(kind) + " handle " + std::to_string(handle));
    }
}

TEST_F(ComFactoryTest, TheEnvironmentVariableFindsTheMakersLibrary)
{
    ::setenv(kVendorLibraryVariable, FAKE_VENDOR_LIBRARY, 1);
    EXPECT_EQ(ChooseMarluneCom(options(std::nullopt)).source, ComSource::VendorLibrary);
}

TEST_F(ComFactoryTest, ARefusedLibraryLeavesTheBuiltInLinksWithTheReason)
{
    const auto choice = ChooseMarluneCom(options(FAKE_VENDOR_PARTIAL_LIBRARY));
    EXPECT_EQ(choice.source, ComSource::BuiltIn);
    EXPECT_NE(choice.description.find("fnMarluneComSendRecv"), std::string::npos) << choice.description;
}

TEST_F(ComFactoryTest, WithNothingNamedTheLibraryIsLookedForByItsOwnName)
{
    if (VendorLibraryCom::load(kVendorLibraryName).com)
        GTEST_SKIP() << kVendorLibraryName << " is installed on this machine";
    const auto choice = ChooseMarluneCom(options(std::nullopt));
    EXPECT_EQ(choice.source, ComSource::BuiltIn);
    EXPECT_NE(choice.description.find(kVendorLibraryName), std::string::npos) << choice.description;
}

} // namespace
} // namespace marlune::marlunecom
