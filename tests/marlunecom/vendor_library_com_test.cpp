#include "link/marlune_com.h"
#include "marlunecom/vendor_library_com.h"
#include "reply_buffer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace marlune::marlunecom {
namespace {

TEST(VendorLibraryComTest, CallsTheLibrarysThreeFunctions)
{
    auto loaded = VendorLibraryCom::load(FAKE_VENDOR_LIBRARY);
    ASSERT_TRUE(loaded.com) << loaded.reason;
    auto& com = *loaded.com;

    std::string address;
    const auto handle = testing::OpenLink(com, 2, 0, "127.0.0.1", &address);
    EXPECT_EQ(handle / 100, 2);
    EXPECT_EQ(address, "vendor:0:127.0.0.1") << "the library's text in the address buffer reaches the caller";
    EXPECT_LE(testing::OpenLink(com, 2, 0, "refuse"), 0);

    const char frame[] = "???\r";
    testing::ReplyBuffer reply;
    EXPECT_EQ(com.sendRecv(2, handle, frame, reply.fresh()), 1);
    EXPECT_EQ(reply.text(), "??? kind 2 handle " + std::to_string(handle));
    EXPECT_STREQ(frame, "???\r") << "the library wrote into the caller's request";

    EXPECT_EQ(com.close(2, handle), 2 + handle);
}

TEST(VendorLibraryComTest, ALibraryThatLacksAFunctionIsRefused)
{
    const auto loaded = VendorLibraryCom::load(FAKE_VENDOR_PARTIAL_LIBRARY);
    EXPECT_FALSE(loaded.com);
    EXPECT_NE(loaded.reason.find("fnMarluneComSendRecv"), std::string::npos) << loaded.reason;
    EXPECT_EQ(loaded.reason.find("fnMarluneComOpen"), std::string::npos) << loaded.reason;
}

TEST(VendorLibraryComTest, AMissingLibraryIsRefusedWithItsName)
{
    const auto loaded = VendorLibraryCom::load("/nonexistent/libMarluneCom.so");
    EXPECT_FALSE(loaded.com);
    EXPECT_NE(loaded.reason.find("/nonexistent/libMarluneCom.so"), std::string::npos) << loaded.reason;
}

TEST(VendorLibraryComTest, TheEnvironmentVariableNamesTheLibrary)
{
    ::setenv(kVendorLibraryVariable, FAKE_VENDOR_LIBRARY, 1);
    EXPECT_EQ(VendorLibraryCom::defaultLocation(), FAKE_VENDOR_LIBRARY);
    ::setenv(kVendorLibraryVariable, "", 1);
    EXPECT_EQ(VendorLibraryCom::defaultLocation(), kVendorLibraryName);
    ::unsetenv(kVendorLibraryVariable);
    EXPECT_EQ(VendorLibraryCom::defaultLocation(), kVendorLibraryName);
}

} // namespace
} // namespace marlune::marlunecom
