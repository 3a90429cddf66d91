#include <cstdint>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/policy_file_preview.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ExpectGolden;
using raidcfg_test::ReadFile;
using raidcfg_test::WriteFile;
using service::detail::PolicyFilePreview;
using Lines = std::vector<std::string>;
using namespace std::string_literals;

const std::string kBom = "\xEF\xBB\xBF";
const std::string kHeading = "\nThe policy file:\n";

// A policy file as users write it: comments, blank lines, indentation of every kind.
const std::string kPolicyFile = "; RAID configuration for the storage node\n"
                                "\n"
                                "[ctrl0]\n"
                                "global_hot_spares=4,5\n"
                                "\n"
                                "  [ctrl0-vol0]   \n"
                                "    disks=0,1\n"
                                "\traid_level=1\n"
                                "vol_name = system\n"
                                "        # strip_size=64K\n"
                                "strip_size=128K\n"
                                "\n"
                                "[ctrl0-vol1]\n"
                                "  disks = 2,3:6,7  \n"
                                "  raid_level=10\n"
                                "  ; volume_size=100GB\n"
                                "  volume_size=50%\n"
                                "[m.2-1]\n"
                                "raid_level=1\n";

std::string WithCrLf(const std::string& lf) {
    std::string crlf;
    for (const char c : lf) {
        crlf += c == '\n' ? "\r\n"s : std::string(1, c);
    }
    return crlf;
}

class PolicyFilePreviewTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }

    // What the preview prints for a file of this content; the result must be Success.
    std::string Preview(const std::string& content) {
        const std::string path = dir_.File("policy.ini");
        WriteFile(path, content);
        std::ostringstream out;
        EXPECT_EQ(PolicyFilePreview::ShowPolicyFile(path, out), result::Success);
        return out.str();
    }

    // The log's lines as "LEVEL text", without time and source place.
    Lines Log() const {
        Lines lines;
        const std::string path = dir_.File("raidcfg.log");
        if (!raidcfg_test::FileExists(path)) {
            return lines;
        }
        static const std::regex line_pattern(R"(^\S+ \S+ (\S+) +\S+:\d+ (.*)$)");
        std::istringstream log(ReadFile(path));
        std::string line;
        while (std::getline(log, line)) {
            std::smatch parts;
            if (std::regex_match(line, parts, line_pattern)) {
                lines.push_back(parts[1].str() + " " + parts[2].str());
            } else {
                lines.push_back("unparsed: " + line);
            }
        }
        return lines;
    }

    Lines LogOf(const std::string& level) const {
        Lines lines;
        for (const std::string& line : Log()) {
            if (line.rfind(level + " ", 0) == 0) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    raidcfg_test::TempDir dir_;
};

TEST_F(PolicyFilePreviewTest, MissingFileGivesFileNotExistAndPrintsNothing) {
    const std::string path = dir_.File("missing.ini");
    std::ostringstream out;
    EXPECT_EQ(PolicyFilePreview::ShowPolicyFile(path, out), result::FileNotExist);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(LogOf("ERROR"), Lines{"ERROR the file '" + path + "' doesn't exist."});
    EXPECT_TRUE(LogOf("INFO").empty());
}

TEST_F(PolicyFilePreviewTest, DirectoryGivesFailedOpenFileAndPrintsNothing) {
    std::ostringstream out;
    EXPECT_EQ(PolicyFilePreview::ShowPolicyFile(dir_.path(), out), result::FailedOpenFile);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(LogOf("ERROR"), Lines{"ERROR The file '" + dir_.path() + "' can't be opened."});
}

TEST_F(PolicyFilePreviewTest, UnreadableFileGivesFailedOpenFileAndPrintsNothing) {
    const std::string path = dir_.File("locked.ini");
    WriteFile(path, "[ctrl0]\nglobal_hot_spares=1\n");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    ASSERT_EQ(chmod(dir_.path().c_str(), 0755), 0); // the file itself is what stays closed
    // The superuser reads every file, so the preview runs in a child without those rights.
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) {
            _exit(2);
        }
        std::ostringstream out;
        const bool refused = PolicyFilePreview::ShowPolicyFile(path, out) == result::FailedOpenFile;
        _exit(refused && out.str().empty() ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(PolicyFilePreviewTest, SectionHeadsGetAnEmptyLineAboveAndKeyLinesFourBlanks) {
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "policy_file_preview_sections.txt", Preview(kPolicyFile));
}

TEST_F(PolicyFilePreviewTest, CrLfFilePrintsLikeTheLfFile) {
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "policy_file_preview_sections.txt",
                 Preview(WithCrLf(kPolicyFile)));
}

TEST_F(PolicyFilePreviewTest, LoneCrEndsALineAndRunsOfLineEndsAreOneBreak) {
    EXPECT_EQ(Preview("[ctrl0]\rglobal_hot_spares=1\r\r\n\n\r[ctrl0-vol0]\n\rdisks=1\r"),
              Preview("[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\ndisks=1\n"));
}

TEST_F(PolicyFilePreviewTest, CommentsAreNotPrintedButAValueWithASemicolonIsPrintedWhole) {
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "policy_file_preview_comments.txt",
                 Preview("; a comment\n"
                         "  # another\n"
                         "[ctrl0-vol0]\n"
                         "raid_level=5 ; five\n"
                         "vol_name=data # not a comment\n"
                         "\t;indented comment\n"
                         "#[ctrl1]\n"));
}

TEST_F(PolicyFilePreviewTest, ByteOrderMarkIsNotPrintedAheadOfTheFirstSectionHead) {
    const std::string output = Preview(kBom + "[ctrl0]\nglobal_hot_spares=1\n");
    EXPECT_EQ(output, kHeading + "\n[ctrl0]\n    global_hot_spares=1\n\n");
    EXPECT_EQ(LogOf("TRACE skip"), Lines{"TRACE skip the bom character."});
}

TEST_F(PolicyFilePreviewTest, ByteOrderMarkAnywhereElseIsPrinted) {
    EXPECT_EQ(Preview("[ctrl0]\nvol_name=a" + kBom + "\n"),
              kHeading + "\n[ctrl0]\n    vol_name=a" + kBom + "\n\n");
    EXPECT_TRUE(LogOf("TRACE skip").empty());
}

TEST_F(PolicyFilePreviewTest, OnlyCommentsPrintTheHeadingAndOneEmptyLine) {
    EXPECT_EQ(Preview("; a comment\n\n  # another\n"), kHeading + "\n");
}

TEST_F(PolicyFilePreviewTest, EmptyFilePrintsTheHeadingAndOneEmptyLine) {
    EXPECT_EQ(Preview(""), kHeading + "\n");
}

TEST_F(PolicyFilePreviewTest, BlankLinesOfWhiteSpaceAreNotPrinted) {
    EXPECT_EQ(Preview("  \t \n[ctrl0]\n \t\nglobal_hot_spares=1\n   "),
              kHeading + "\n[ctrl0]\n    global_hot_spares=1\n\n");
}

TEST_F(PolicyFilePreviewTest, TextIsCutAtTheFirstNul) {
    EXPECT_EQ(Preview("[ctrl0]\nglobal_hot_spares=1\0,2\n[ctrl1]\nglobal_hot_spares=3\n"s),
              kHeading + "\n[ctrl0]\n    global_hot_spares=1\n\n");
}

TEST_F(PolicyFilePreviewTest, KeyLineIndentationIsReplacedByFourBlanks) {
    EXPECT_EQ(Preview("   [ctrl0]  \n\t\tglobal_hot_spares = 1  \n"),
              kHeading + "\n[ctrl0]\n    global_hot_spares = 1\n\n");
}

TEST_F(PolicyFilePreviewTest, LinesTheParserWouldRefuseArePrintedAsFound) {
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "policy_file_preview_unparsed.txt",
                 Preview("vol_name=ahead of any section\n"
                         "[ctrl0-vol0\n"
                         "no equals sign\n"
                         "=5\n"
                         "[ctrl0]\n"
                         "disks=2\n"
                         "disks=1\n"
                         "[ctrl0]\n"
                         "[ctrl1] text behind\n"));
}

TEST_F(PolicyFilePreviewTest, EveryConsoleLineIsLoggedAtLevelThree) {
    const std::string output = Preview("[ctrl0]\nglobal_hot_spares=1\n");
    EXPECT_EQ(output, kHeading + "\n[ctrl0]\n    global_hot_spares=1\n\n");
    // The log keeps each entry on one line and shows a line break inside it as " | ".
    EXPECT_EQ(LogOf("INFO"), (Lines{
                                 "INFO  | The policy file:",
                                 "INFO  | [ctrl0]",
                                 "INFO     global_hot_spares=1",
                                 "INFO ",
                             }));
}

TEST_F(PolicyFilePreviewTest, ShowPolicyFileLogsEnteringAndExitingWithTheQualifiedName) {
    Preview("[ctrl0]\nglobal_hot_spares=1\n");
    const Lines trace = LogOf("TRACE");
    ASSERT_EQ(trace.size(), 2U);
    EXPECT_EQ(trace.front(), "TRACE Entering  service::detail::PolicyFilePreview::ShowPolicyFile");
    EXPECT_EQ(trace.back(), "TRACE Exiting  service::detail::PolicyFilePreview::ShowPolicyFile");
}

} // namespace
