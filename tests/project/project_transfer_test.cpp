#include "project/project_transfer.h"

#include <gtest/gtest.h>

namespace marlune::project {
namespace {

TEST(ProjectTransfer, VerifyNamesTheFirstLineThatDiffersAsTheDialogSentIt)
{
    const struct {
        const char* prepared;
        const char* held;
        std::optional<std::string> difference;
    } Cases[] = {
            {"V1 = 1 ;note\r;only a note\r  \rV2=2\r", "V1=1\r\nV2=2\r\n", std::nullopt},
            {"V1=1\rV2=2\r", "V1=1\r\n", "Program 3, line 2: sent \"V2=2\", held no line."},
            {"V1=1\r", "V1=1\r\nV9=9\r\n", "Program 3, line 2: sent no line, held \"V9=9\"."},
    };
    for (const auto& c : Cases)
        EXPECT_EQ(FirstDifference(3, c.prepared, c.held), c.difference) << c.prepared;
}

} // namespace
} // namespace marlune::project
