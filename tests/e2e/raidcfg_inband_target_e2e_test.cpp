// The in-band road with targets through the real program on the demo machine: show (console and
// XML), add, save, clear and hot spares, each with --target.
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/child_process.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

const std::string kProgram = RAIDCFG_BIN_DIR "/raidcfg";

using Outcome = raidcfg_test::ProgramOutcome;

// Runs raidcfg with args in dir; with input, standard input reads that text.
Outcome RunRaidcfg(const std::string& dir, const std::vector<std::string>& args,
                   const std::map<std::string, std::string>& env = {},
                   const std::optional<std::string>& input = std::nullopt) {
    return raidcfg_test::RunProgram(kProgram, dir, args, env, input);
}

std::string LastLine(const std::string& text) {
    const std::size_t end = text.find_last_not_of('\n');
    if (end == std::string::npos) {
        return {};
    }
    const std::size_t start = text.rfind('\n', end);
    return text.substr(start == std::string::npos ? 0 : start + 1,
                       end - (start == std::string::npos ? 0 : start + 1) + 1);
}

// One demo machine of its own per test, kept in a temporary state directory.
class InbandTargetE2eTest : public ::testing::Test {
protected:
    Outcome Run(std::vector<std::string> args) {
        args.emplace_back("--machine");
        args.emplace_back("demo");
        return RunRaidcfg(dir_.path(), args, {{"XDG_STATE_HOME", state_.path()}});
    }

    raidcfg_test::TempDir dir_;
    raidcfg_test::TempDir state_;
};

TEST_F(InbandTargetE2eTest, ShowWithATargetPrintsTheGenericTablesAndSavesTheXml) {
    const Outcome shown = Run({"show", "--target", "all"});
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_EQ(LastLine(shown.out), "0 Succeed.");
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband_show_all.txt", shown.out);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband_show_all.xml",
                               raidcfg_test::ReadFile(dir_.File("raid_show_result.xml")));
    const std::string report = raidcfg_test::ReadFile(dir_.File("raid_result.xml"));
    EXPECT_NE(report.find("<DEVICE>ctrl[2]</DEVICE>"), std::string::npos) << report;
    EXPECT_NE(report.find("<DEVICE>m2[0]</DEVICE>"), std::string::npos) << report;
    EXPECT_NE(report.find("<DEVICE>vroc[0]</DEVICE>"), std::string::npos) << report;
}

TEST_F(InbandTargetE2eTest, ShowOfOneContainerShowsItsContainerTable) {
    const Outcome shown = Run({"show", "--target", "md0", "-q"});
    EXPECT_EQ(shown.status, 0) << shown.err;
    const std::string xml = raidcfg_test::ReadFile(dir_.File("raid_show_result.xml"));
    EXPECT_NE(xml.find("<TargetID>md0</TargetID>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<Controller>vroc0</Controller>"), std::string::npos) << xml;
}

TEST_F(InbandTargetE2eTest, AddWithATargetAppliesThePolicyFileToTheNamedController) {
    raidcfg_test::WriteFile(dir_.File("spare.ini"), "[ctrl1]\nglobal_hot_spares=7\n");
    const Outcome added = Run({"add", "--target", "0", "--file", "spare.ini", "--yes"});
    EXPECT_EQ(added.status, 0) << added.err;
    EXPECT_NE(added.out.find("disk[0-7]    Disk has been assigned global hot spare sucessfully."),
              std::string::npos)
        << added.out;
    EXPECT_EQ(LastLine(added.out), "0 Succeed.");
    // Declined: nothing is done, and the prompt has no closing full stop.
    const Outcome declined = RunRaidcfg(
        dir_.path(), {"add", "--target", "0", "--file", "spare.ini", "--machine", "demo"},
        {{"XDG_STATE_HOME", state_.path()}}, std::string("n\n"));
    EXPECT_EQ(declined.status, 0);
    EXPECT_NE(declined.out.find("Are you sure you want to continue creating the config\n"),
              std::string::npos)
        << declined.out;
    EXPECT_EQ(declined.out.find("Add Configuration Result"), std::string::npos);
}

TEST_F(InbandTargetE2eTest, SaveWithATargetWritesAFileThatAddTakesBack) {
    const Outcome saved = Run({"save", "--target", "0", "--file", "saved.ini"});
    EXPECT_EQ(saved.status, 0) << saved.err;
    const std::string text = raidcfg_test::ReadFile(dir_.File("saved.ini"));
    EXPECT_EQ(text.rfind("[ctrl1-vol0]\n    disks=0,1\n", 0), 0U) << text;
    EXPECT_NE(text.find("[ctrl1]\n    global_hot_spares=6\n"), std::string::npos) << text;

    EXPECT_EQ(Run({"clear", "--target", "0", "--yes"}).status, 0);
    const Outcome added = Run({"add", "--target", "0", "--file", "saved.ini", "--yes"});
    EXPECT_EQ(added.status, 0) << added.out;
    EXPECT_EQ(Run({"save", "--target", "0", "--file", "again.ini"}).status, 0);
    EXPECT_EQ(raidcfg_test::ReadFile(dir_.File("again.ini")), text);
}

TEST_F(InbandTargetE2eTest, ClearRemovesVolumesOfASingleTargetAndRefusesAList) {
    const Outcome refused = Run({"clear", "--target", "0,2", "--vol", "1", "--yes"});
    EXPECT_EQ(refused.status, 5);
    EXPECT_NE(refused.out.find("target must be specified by only one target when volume is "
                               "specified.\n"),
              std::string::npos)
        << refused.out;
    const Outcome removed = Run({"clear", "--target", "0", "--vol", "1", "--yes"});
    EXPECT_EQ(removed.status, 0) << removed.out;
    EXPECT_NE(removed.out.find("vol[0-1]    Success."), std::string::npos) << removed.out;
    const Outcome again = Run({"clear", "--target", "0", "--vol", "1", "--yes"});
    EXPECT_NE(again.out.find("vol[0-1]    The target vol[0-1] does not exist."), std::string::npos)
        << again.out;
    const Outcome whole = Run({"clear", "--target", "2,m2-0", "--yes"});
    EXPECT_EQ(whole.status, 0) << whole.out;
    EXPECT_NE(whole.out.find("m2[0]      Success."), std::string::npos) << whole.out;
}

TEST_F(InbandTargetE2eTest, HotSparesAreAddedAndRemovedOnTheNamedController) {
    const Outcome added = Run({"addhsp", "--target", "0", "--disk", "8", "--yes"});
    EXPECT_EQ(added.status, 0) << added.out;
    EXPECT_NE(added.out.find("disk[0-8]    Success."), std::string::npos) << added.out;
    const Outcome removed = Run({"rmhsp", "--target", "0", "--disk", "8", "--yes"});
    EXPECT_EQ(removed.status, 0) << removed.out;
    const Outcome dedicated =
        Run({"addhsp", "--target", "vroc0", "--disk", "4", "--dg", "0", "--yes"});
    EXPECT_EQ(dedicated.status, 107) << dedicated.out;
    const Outcome list = Run({"addhsp", "--target", "0,2", "--disk", "8", "--yes"});
    EXPECT_EQ(list.status, 5) << list.out;
}

} // namespace
