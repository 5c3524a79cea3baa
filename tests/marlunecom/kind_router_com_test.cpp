#include "link/marlune_com.h"
#include "marlunecom/kind_router_com.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace marlune::marlunecom {
namespace {

// Records the kinds it was called with and answers with its own mark.
class MarkedCom final : public link::MarluneCom {
public:
    MarkedCom(std::int32_t mark, std::vector<std::int32_t>& calls) : mark_(mark), calls_(calls) {}

    std::int32_t open(std::int32_t kind, std::int32_t, char*) override { return record(kind); }
    std::int32_t close(std::int32_t kind, std::int32_t) override { return record(kind); }
    std::int32_t sendRecv(std::int32_t kind, std::int32_t, const char*, char*) override { return record(kind); }

private:
    std::int32_t record(std::int32_t kind)
    {
        calls_.push_back(kind);
        return mark_;
    }

    std::int32_t mark_;
    std::vector<std::int32_t>& calls_;
};

class KindRouterComTest : public ::testing::TestWithParam<std::int32_t> {};

// Kinds 1 to 3 reach their own implementation with the kind unchanged; any other fails without a call.
TEST_P(KindRouterComTest, EachKnownKindReachesItsOwnImplementation)
{
    std::vector<std::int32_t> calls;
    KindRouterCom router{std::make_unique<MarkedCom>(11, calls), std::make_unique<MarkedCom>(22, calls),
                         std::make_unique<MarkedCom>(33, calls)};
    char buffer[8] = "";
    const auto kind = GetParam();
    const bool known = kind >= 1 && kind <= 3;
    const auto mark = known ? kind * 11 : 0;
    EXPECT_EQ(router.open(kind, 0, buffer), mark);
    EXPECT_EQ(router.sendRecv(kind, 1, "V1\r", buffer), mark);
    EXPECT_EQ(router.close(kind, 1), mark);
    EXPECT_EQ(calls, (known ? std::vector<std::int32_t>{kind, kind, kind} : std::vector<std::int32_t>{}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindRouterComTest, ::testing::Values(1, 2, 3, 0, -1, 4, 7, 65537));

} // namespace
} // namespace marlune::marlunecom
