#include "forms/files.h"
#include "project/project_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace marlune::project {
namespace {

// clang-format off
const struct { std::string bytes; SectionTexts sections; std::int32_t display, control; } Files[] = {
    {";*** PROJECT BEGIN PROG 1 ***\r\r\nV10=MAXPOS\r\nV11=V10/2\r\n;*** PROJECT END PROG 1 ***\r\r\n"
     ";*** PROJECT BEGIN PROG 2 ***\r\r\nV12=MAXPOS\r\n;*** PROJECT END PROG 2 ***\r\r\n"
     ";*** PROJECT BEGIN PROG 3 ***\r\r\n;*** PROJECT END PROG 3 ***\r\r\n"
     ";*** PROJECT BEGIN PROG 4 ***\r\r\n;*** PROJECT END PROG 4 ***\r\r\n"
     ";*** PROJECT BEGIN DEFINITION ***\r\r\nMAXPOS=5000\r\n;*** PROJECT END DEFINITION ***\r\r\n"
     ";*** PROJECT PROGRAM DISPLAY SELECTION=3 ***\r\r\n;*** PROJECT PROGRAM CONTROL SELECTION=16 ***\r\r\n",
     {"V10=MAXPOS\r\nV11=V10/2\r\n", "V12=MAXPOS\r\n", "", "", "MAXPOS=5000\r\n"}, 3, 16},
    {"V1\nV2\rV3\r\n\r\nV4", {"V1\nV2\r\nV3\r\nV4\r\n"}, 0, 0},
    {"A\r'PROJECT END PROG 1 x\rB\r", {"A\r\n"}, 0, 0},
    {"A\rGO PROJECT BEGIN PROG 4\rB\r", {"A\r\n", "", "", "B\r\n"}, 0, 0},
    {"PROJECT BEGIN PROG 3\rA\rPROJECT BEGIN PROG 12\rB\r", {"B\r\n", "", "A\r\n"}, 0, 0},
    {"PROJECT BEGIN PROG 2 PROJECT BEGIN PROG 3\rA\rPROJECT END PROG 1 PROJECT BEGIN PROG 2\rB", {"", "", "A\r\n"}, 0, 0},
    {"project end prog 1\rA\r", {"project end prog 1\r\nA\r\n"}, 0, 0},
    {"PROJECT BEGIN DEFINITION\rD\rPROJECT BEGIN DESCRIPTION\r", {"", "", "", "", "D\r\nPROJECT BEGIN DESCRIPTION\r\n"}, 0, 0},
    {"PROJECT BEGIN PROG 2\rA\rPROJECT END PROG 2\rB\rPROJECT BEGIN PROG 2\rC\r", {"", "A\r\nC\r\n"}, 0, 0},
    {"PROJECT END DEFINITION\rPROJECT PROGRAM DISPLAY SELECTION=3 *\rPROJECT PROGRAM CONTROL SELECTION=16 *", {}, 3, 16},
    {"PROJECT PROGRAM CONTROL SELECTION=123 PROJECT PROGRAM DISPLAY SELECTION", {"PROJECT PROGRAM CONTROL SELECTION=123 PROJECT PROGRAM DISPLAY SELECTION\r\n"}, 12, 12},
    {"PROJECT PROGRAM DISPLAY SELECTION *\r", {"PROJECT PROGRAM DISPLAY SELECTION *\r\n"}, 0, 0},
};
// What a section holds after a save and an open.
const std::pair<std::string, std::string> Texts[] = {{"", ""}, {"\r\n\n\r", ""}, {"A\rB", "A\r\nB\r\n"}, {"A\nB\n", "A\r\nB\r\n"},
    {"A\r\n\r\n\tB C\t\r\n", "A\r\n\tB C\t\r\n"}, {std::string(40000, 'V'), std::string(40000, 'V') + "\r\n"}};
// clang-format on

struct ProjectFileTest : ::testing::Test {
    const std::filesystem::path folder =
            std::filesystem::temp_directory_path() / ("marlune-prj-" + std::to_string(getpid()));
    void SetUp() override { std::filesystem::create_directories(folder); }
    void TearDown() override { std::filesystem::remove_all(folder); }
};

TEST(ProjectFile, ExampleWrittenByteForByteAndMarkersReadWhereverTheyStand)
{
    EXPECT_EQ(FormatProjectFile(Files[0].sections, 3, 16), Files[0].bytes);
    for (const auto& file : Files) {
        const ProjectContents read = ParseProjectFile(file.bytes);
        EXPECT_EQ(read.failure, "") << file.bytes;
        EXPECT_EQ(read.sections, file.sections) << file.bytes;
        EXPECT_EQ(std::pair(read.display, read.control), std::pair(file.display, file.control)) << file.bytes;
    }
}

TEST_F(ProjectFileTest, WrittenTextsComeBackWithoutEmptyLinesAndEndingInCrLf)
{
    const std::string file = (folder / "p.prj").string();
    for (const auto& [written, read] : Texts) {
        ProjectState state;
        std::int32_t display = 0, control = 0;
        ASSERT_EQ(WriteProjectFile(file, {written, written, written, written, written}, 12, -7), "");
        ASSERT_EQ(ReadProjectFile(file, state, display, control), "");
        EXPECT_EQ(state.sectionText, SectionTexts({read, read, read, read, read})) << written;
        EXPECT_EQ(std::pair(display, control), std::pair(12, -7));
    }
}

TEST_F(ProjectFileTest, FailuresChangeNothing)
{
    const std::string earlier = (folder / "earlier.prj").string(), bad = "PROJECT PROGRAM DISPLAY SELECTION=1a";
    ASSERT_EQ(forms::WriteFileAtomically(earlier, bad), "");
    EXPECT_NE(ParseProjectFile("PROJECT PROGRAM CONTROL SELECTION=").failure, "");
    for (const std::string& name : {earlier, (folder / "none.prj").string()}) {
        ProjectState state;
        state.section(DefinitionSection) = "kept";
        std::int32_t display = 5, control = 6;
        EXPECT_NE(ReadProjectFile(name, state, display, control), "") << name;
        EXPECT_EQ(std::tuple(state.section(1), state.section(5), display, control), std::tuple("", "kept", 5, 6));
    }
    // Its parent is a file, so the folder cannot exist: the save fails and the file stays.
    EXPECT_NE(WriteProjectFile(earlier + "/p.prj", {"A"}, 1, 1), "");
    EXPECT_EQ(forms::ReadFileBytes(earlier), bad);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
}

} // namespace
} // namespace marlune::project
