#include "link/marlune_com.h"
#include "marlunecom/address_text.h"

#include <gtest/gtest.h>

#include <string>

namespace marlune::marlunecom {
namespace {

TEST(AddressTextTest, DropsSurroundingBlanksAndStopsAtTheBufferEnd)
{
    EXPECT_EQ(AddressText(" \tCOM3 \t"), "COM3");
    EXPECT_EQ(AddressText("127.0.0.1:6000"), "127.0.0.1:6000");
    EXPECT_EQ(AddressText("   "), "");

    std::string unterminated(link::kAddressBufferSize + 10, 'h');
    EXPECT_EQ(AddressText(unterminated.c_str()).size(), link::kAddressBufferSize);
}

} // namespace
} // namespace marlune::marlunecom
