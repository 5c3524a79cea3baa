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
    explicit MarkedCom(std::int32_t mark, std::vector<std::int32_t>& calls) : mark_(mark), calls_(calls) {}

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

class KindRouterComTest : public ::testing::TestWithParam<std::int32_t> {
protected:
    std::vector<std::int32_t> calls;
    KindRouterCom router{std::make_unique<MarkedCom>(11, calls), std::make_unique<MarkedCom>(22, calls),
                         std::make_unique<MarkedCom>(33, calls)};
    char buffer[8] = "";
};

TEST_P(KindRouterComTest, EachKnownKindReachesItsOwnImplementation)
{
    const auto kind = GetParam();
    const auto mark = kind * 11;
    EXPECT_EQ(router.open(kind, 0, buffer), mark);
    EXPECT_EQ(router.sendRecv(kind, 1, "V1\r", buffer), mark);
    EXPECT_EQ(router.close(kind, 1), mark);
    EXPECT_EQ(calls, (std::vector<std::int32_t>{kind, kind, kind}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindRouterComTest, ::testing::Values(1, 2, 3));

class KindRouterComUnknownKindTest : public KindRouterComTest {};

TEST_P(KindRouterComUnknownKindTest, AnyOtherKindFailsWithoutACall)
{
    const auto kind = GetParam();
    EXPECT_EQ(router.open(kind, 0, buffer), 0);
    EXPECT_EQ(router.sendRecv(kind, 1, "V1\r", buffer), 0);
    EXPECT_EQ(router.close(kind, 1), 0);
    EXPECT_TRUE(calls.empty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindRouterComUnknownKindTest, ::testing::Values(0, -1, 4, 7, 65537));

} // namespace
} // namespace marlune::marlunecom
