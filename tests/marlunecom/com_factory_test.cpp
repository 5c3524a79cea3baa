#include "link_test_support.h"
#include "marlunecom/com_factory.h"
#include "marlunecom/kind_router_com.h"
#include "marlunecom/serial_com.h"
#include "marlunecom/simulator_com.h"
#include "marlunecom/tcp_com.h"
#include "marlunecom/vendor_library_com.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <unistd.h>

namespace marlune::marlunecom {
namespace {

using namespace std::chrono_literals;

struct LibraryCase {
    std::optional<std::string> library; // as the options name it
    const char* variable;               // MARLUNE_COM_LIBRARY; nullptr: unset
    ComSource source;
    std::string told;         // in the description
    std::string notTold = ""; // not in it
};

class LibraryChoiceTest : public ::testing::TestWithParam<LibraryCase> {};

// The maker's library when it loads with its three functions, otherwise the built-in links by
// kind (1 simulated controller on the clock given, 2 TCP, 3 serial port) and why.
TEST_P(LibraryChoiceTest, TakesTheMakersLibraryOrSaysWhyNot)
{
    const LibraryCase& c = GetParam();
    c.variable != nullptr ? ::setenv(kVendorLibraryVariable, c.variable, 1) : ::unsetenv(kVendorLibraryVariable);
    if (c.source == ComSource::BuiltIn && c.told == kVendorLibraryName && VendorLibraryCom::load(c.told).com)
        GTEST_SKIP() << kVendorLibraryName << " is installed on this machine";
    std::int64_t clock = 7'000'000;
    const auto choice = ChooseMarluneCom({[&clock] { return clock; }, c.library, LinkTimeouts{200ms, 200ms}, {}});
    ::unsetenv(kVendorLibraryVariable);
    ASSERT_EQ(choice.source, c.source);
    EXPECT_NE(choice.description.find(c.told), std::string::npos) << choice.description;
    EXPECT_TRUE(c.notTold.empty() || choice.description.find(c.notTold) == std::string::npos) << choice.description;
    if (c.source == ComSource::BuiltIn) {
        auto& router = dynamic_cast<KindRouterCom&>(*choice.com);
        EXPECT_NE(dynamic_cast<TcpCom*>(router.route(2)), nullptr);
        EXPECT_NE(dynamic_cast<SerialCom*>(router.route(3)), nullptr);
        auto& simulator = dynamic_cast<SimulatorCom&>(*router.route(1));
        testing::ReplyBuffer reply;
        EXPECT_NE(simulator.sendRecv(1, testing::OpenLink(simulator, 1, 1, ""), "???\r", reply.fresh()), 0);
        EXPECT_EQ(simulator.controller().now(), clock) << "the simulator runs on the clock given";
    }
}

INSTANTIATE_TEST_SUITE_P(
        Libraries, LibraryChoiceTest,
        ::testing::Values(LibraryCase{FAKE_VENDOR_LIBRARY, nullptr, ComSource::VendorLibrary, "fake_vendor"},
                          LibraryCase{std::nullopt, FAKE_VENDOR_LIBRARY, ComSource::VendorLibrary, "fake_vendor"},
                          LibraryCase{FAKE_VENDOR_PARTIAL_LIBRARY, nullptr, ComSource::BuiltIn, "fnMarluneComSendRecv",
                                      "fnMarluneComOpen"},
                          LibraryCase{"/nonexistent/libMarluneCom.so", FAKE_VENDOR_LIBRARY, ComSource::BuiltIn,
                                      "/nonexistent/libMarluneCom.so"},
                          LibraryCase{std::nullopt, nullptr, ComSource::BuiltIn, kVendorLibraryName},
                          LibraryCase{std::nullopt, "", ComSource::BuiltIn, kVendorLibraryName}));

// The built-in simulated controller brings back what an earlier run stored, as a controller does
// after power-up; a file it cannot read is told once at start and left as it is.
TEST(ComFactoryTest, TheSimulatedControllerKeepsItsEepromInTheFileItIsGiven)
{
    const auto file = std::filesystem::temp_directory_path() / ("marlune-com-eeprom-" + std::to_string(::getpid()));
    std::filesystem::remove(file);
    std::int64_t clock = 0;
    const auto run = [&](const char* command) {
        const auto choice = ChooseMarluneCom({[&clock] { return clock; }, "/nonexistent/lib.so", {}, file});
        auto& simulator = dynamic_cast<SimulatorCom&>(*dynamic_cast<KindRouterCom&>(*choice.com).route(1));
        const auto handle = testing::OpenLink(simulator, 1, 1, "");
        testing::ReplyBuffer reply;
        std::string replies;
        for (const std::string& request : {std::string("V3\r"), std::string(command) + "\r", std::string("STORE\r")}) {
            simulator.sendRecv(1, handle, request.c_str(), reply.fresh());
            replies += reply.text() + " ";
        }
        clock += 1'000'000; // past the write
        return std::make_pair(replies, choice.problem);
    };
    EXPECT_EQ(run("V3=9"), std::make_pair(std::string("0 OK OK "), std::string()));
    EXPECT_EQ(run("V3=4"), std::make_pair(std::string("9 OK OK "), std::string()));
    std::ofstream(file, std::ios::app) << "nonsense\n";
    const auto [replies, problem] = run("V3=5");
    EXPECT_EQ(replies, "0 OK OK ");
    EXPECT_NE(problem.find(file.string() + " cannot be used: line "), std::string::npos) << problem;
    std::ifstream in(file);
    const std::string kept{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    EXPECT_NE(kept.find("V 3 4\nV 4"), std::string::npos) << "the unreadable file is left as it was";
    EXPECT_TRUE(kept.ends_with("nonsense\n"));
    std::filesystem::remove(file);
}

// Each call reaches the library with the same arguments, its address text comes back, and it
// writes into a copy of the request, not into the caller's.
TEST(VendorLibraryComTest, CallsTheLibrarysThreeFunctionsForEveryKind)
{
    auto loaded = VendorLibraryCom::load(FAKE_VENDOR_LIBRARY);
    ASSERT_TRUE(loaded.com) << loaded.reason;
    auto& com = *loaded.com;
    EXPECT_LE(testing::OpenLink(com, 2, 0, "refuse"), 0);
    for (std::int32_t kind : {1, 2, 3}) {
        std::string address;
        const auto handle = testing::OpenLink(com, kind, kind - 1, "127.0.0.1", &address);
        EXPECT_EQ(handle / 100, kind);
        EXPECT_EQ(address, "vendor:" + std::to_string(kind - 1) + ":127.0.0.1");
        const char frame[] = "???\r";
        testing::ReplyBuffer reply;
        EXPECT_EQ(com.sendRecv(kind, handle, frame, reply.fresh()), 1);
        EXPECT_EQ(reply.text(), "??? kind " + std::to_string(kind) + " handle " + std::to_string(handle));
        EXPECT_STREQ(frame, "???\r");
        EXPECT_EQ(com.close(kind, handle), kind + handle);
    }
}

// Kinds 1 to 3 reach their own implementation; any other fails without reaching one.
TEST(KindRouterComTest, EachKnownKindReachesItsOwnImplementation)
{
    std::vector<std::unique_ptr<SimulatorCom>> coms(3);
    std::vector<SimulatorCom*> byKind;
    for (auto& com : coms)
        byKind.push_back((com = std::make_unique<SimulatorCom>()).get());
    KindRouterCom router{std::move(coms[0]), std::move(coms[1]), std::move(coms[2])};
    testing::ReplyBuffer reply;
    for (const std::int32_t kind : {1, 2, 3, 0, -1, 4, 7, 65537}) {
        const bool known = kind >= 1 && kind <= 3;
        const auto handle = testing::OpenLink(router, kind, 0, "");
        EXPECT_EQ(router.sendRecv(kind, handle, "V1\r", reply.fresh()) != 0, known) << kind;
        EXPECT_EQ(router.close(kind, handle), known ? 1 : 0) << kind;
    }
    for (const SimulatorCom* com : byKind)
        EXPECT_EQ(std::tie(com->counters().opens, com->counters().exchanges, com->counters().closes),
                  std::make_tuple(1, 1, 1));
}

} // namespace
} // namespace marlune::marlunecom
