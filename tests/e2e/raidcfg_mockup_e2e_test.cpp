// raidcfg against recorded Redfish trees of BMCs that carry no Oem section of ours, served by
// raidcfg-bmc --mockup: what is shown and saved, the requests each action sends (from the
// emulator's request log), and how a BMC that cannot be read ends the run.
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/bmc_emulator.hpp"
#include "tests/support/child_process.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

const std::string kRaidcfg = RAIDCFG_BIN_DIR "/raidcfg";
const std::string kEmulator = RAIDCFG_BIN_DIR "/raidcfg-bmc";
// A rack server with two systems: an integrated RAID controller (an empty bay, a JBOD disk, a
// global spare, a drive known by Name and the deprecated Location), an M.2 boot adapter sold
// under the server maker's name, and a Storage with two Adaptec controllers whose volumes use
// the older VolumeType and a RAIDType None over two drives.
const std::string kRackServer = RAIDCFG_TEST_DATA_DIR "/mockups/rack-server";

using Outcome = raidcfg_test::ProgramOutcome;

using raidcfg_test::LastLine;

// raidcfg-bmc serving a mockup folder, with its request log.
class Mockup : public raidcfg_test::BmcEmulator {
public:
    explicit Mockup(const std::string& dir)
        : BmcEmulator(kEmulator, {"--mockup", dir, "--log-requests", Log()}) {}

    // The requests logged so far that change something ("METHOD URI STATUS"), the session's
    // own log-in and log-out left out; the log is emptied.
    std::vector<std::string> TakeWrites() {
        std::vector<std::string> writes;
        std::string text =
            raidcfg_test::FileExists(Log()) ? raidcfg_test::ReadFile(Log()) : std::string();
        std::size_t start = 0;
        while (start < text.size()) {
            const std::size_t end = text.find('\n', start);
            const std::string line = text.substr(start, end - start);
            start = end == std::string::npos ? text.size() : end + 1;
            const bool read = line.rfind("GET ", 0) == 0 || line.rfind("HEAD ", 0) == 0;
            if (!read && line.find("/SessionService/Sessions") == std::string::npos) {
                writes.push_back(line);
            }
        }
        raidcfg_test::WriteFile(Log(), "");
        return writes;
    }

private:
    std::string Log() const { return log_dir_.File("requests.log"); }
    // Made before the base class starts the program (members are made after it).
    static raidcfg_test::TempDir log_dir_;
};

raidcfg_test::TempDir Mockup::log_dir_;

class MockupE2eTest : public ::testing::Test {
protected:
    raidcfg_test::TempDir work;

    Outcome Run(const Mockup& bmc, std::vector<std::string> args) {
        args.insert(args.end(), {"--bmc", bmc.Bmc("root:calvin"), "--http"});
        return raidcfg_test::RunProgram(kRaidcfg, work.path(), args);
    }
};

// A policy file with one volume on the first controller.
std::string Policy(const std::string& disks, const std::string& level) {
    return "[ctrl1-vol0]\n    disks=" + disks + "\n    raid_level=" + level +
           "\n    vol_name=data\n    volume_size=102400MB\n    strip_size=64K\n";
}

constexpr const char* kIntegrated =
    "/redfish/v1/Systems/System.Embedded.1/Storage/RAID.Integrated.1-1";
constexpr const char* kBays = "/redfish/v1/Chassis/Enclosure.Internal.0-1/Drives/";

TEST_F(MockupE2eTest, ShowOfARealBmcTreeShowsWhatItHoldsAndNothingMadeUp) {
    Mockup bmc(kRackServer);
    ASSERT_TRUE(bmc.running());
    const Outcome shown = Run(bmc, {"show"});
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_EQ(shown.err, "");
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "mockup_rack_show.txt", shown.out);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "mockup_rack_show.xml",
                               raidcfg_test::ReadFile(work.File("raid_show_result.xml")));
    EXPECT_TRUE(bmc.TakeWrites().empty()) << "show only reads";
}

TEST_F(MockupE2eTest, SaveWritesWhatTheBmcReportsAndLeavesTheRestEmpty) {
    Mockup bmc(kRackServer);
    const Outcome saved = Run(bmc, {"save", "--file", "rack.ini"});
    EXPECT_EQ(LastLine(saved.out), "0 Succeed.") << saved.out << saved.err;
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "mockup_rack_save.ini",
                               raidcfg_test::ReadFile(work.File("rack.ini")));
    EXPECT_TRUE(bmc.TakeWrites().empty()) << "save only reads";
}

TEST_F(MockupE2eTest, SaveClearAddSaveGivesTheSameFileOnABmcWithoutOurOem) {
    Mockup bmc(kRackServer);
    const Outcome saved = Run(bmc, {"save", "--ctrl", "1", "--file", "before.ini", "-q"});
    ASSERT_EQ(LastLine(saved.out), "0 Succeed.") << saved.out << saved.err;
    ASSERT_EQ(LastLine(Run(bmc, {"clear", "--ctrl", "1", "-y", "-q"}).out), "0 Succeed.");
    bmc.TakeWrites();
    const Outcome added = Run(bmc, {"add", "--file", "before.ini", "-y", "-q"});
    EXPECT_EQ(LastLine(added.out), "0 Succeed.") << added.out << added.err;
    EXPECT_EQ(bmc.TakeWrites(),
              std::vector<std::string>(
                  {"PATCH " + std::string(kBays) + "Disk.Bay.3:Enclosure.Internal.0-1 200",
                   "POST " + std::string(kIntegrated) + "/Volumes 201"}))
        << "the global spare, then the volume";
    const Outcome again = Run(bmc, {"save", "--ctrl", "1", "--file", "after.ini", "-q"});
    ASSERT_EQ(LastLine(again.out), "0 Succeed.") << again.out << again.err;
    EXPECT_EQ(raidcfg_test::ReadFile(work.File("after.ini")),
              raidcfg_test::ReadFile(work.File("before.ini")));
}

TEST_F(MockupE2eTest, SystemPicksOneComputerSystemOfTheBmc) {
    Mockup bmc(kRackServer);
    const Outcome one = Run(bmc, {"show", "--system", "node-2", "-q"});
    EXPECT_EQ(LastLine(one.out), "0 Succeed.") << one.out << one.err;
    const std::string xml = raidcfg_test::ReadFile(work.File("raid_show_result.xml"));
    EXPECT_NE(xml.find("SmartRAID 3154-8i"), std::string::npos);
    EXPECT_EQ(xml.find("MegaRAID 9560-16i"), std::string::npos);

    const Outcome none = Run(bmc, {"show", "--system", "node-9"});
    EXPECT_EQ(none.status, 13);
    EXPECT_EQ(LastLine(none.out), "13 Connection failed.");
    EXPECT_EQ(none.err, "raidcfg: BMC 127.0.0.1:" + bmc.port() +
                            ": no system has the Id \"node-9\" (the BMC's systems: "
                            "\"System.Embedded.1\", \"node-2\")\n");
}

TEST_F(MockupE2eTest, AStorageTheBmcCannotServeEndsTheRunWithItsReason) {
    raidcfg_test::TempDir copy;
    std::filesystem::copy(kRackServer, copy.path(), std::filesystem::copy_options::recursive);
    std::filesystem::remove_all(copy.path() + "/Systems/System.Embedded.1/Storage/AHCI.Slot.2-1");
    Mockup bmc(copy.path());
    const Outcome shown = Run(bmc, {"show"});
    EXPECT_EQ(shown.status, 13);
    EXPECT_EQ(LastLine(shown.out), "13 Connection failed.") << "never \"no controllers\"";
    EXPECT_EQ(shown.err,
              "raidcfg: BMC 127.0.0.1:" + bmc.port() +
                  ": HTTP 404 on GET "
                  "/redfish/v1/Systems/System.Embedded.1/Storage/AHCI.Slot.2-1?$expand=.($"
                  "levels=2): The "
                  "resource at /redfish/v1/Systems/System.Embedded.1/Storage/"
                  "AHCI.Slot.2-1 does not exist.\n");
}

TEST_F(MockupE2eTest, EachWriteSendsOnlyWhatWasAsked) {
    Mockup bmc(kRackServer);
    const std::string integrated = kIntegrated;
    const std::string bays = kBays;
    struct Step {
        std::vector<std::string> args;
        std::string last_line;
        std::vector<std::string> writes;
    };
    const std::vector<Step> steps = {
        // The Adaptec Storage's disk 2 is in a two-drive volume without redundancy: not JBOD.
        {{"makegood", "--ctrl", "2", "--disk", "2", "-y"},
         "25 Function is not supported on target system.",
         {}},
        {{"makegood", "--ctrl", "1", "--disk", "2", "-y"},
         "0 Succeed.",
         {"DELETE " + integrated + "/Volumes/Disk.Bay.2:Enclosure.Internal.0-1 204"}},
        {{"makejbod", "--ctrl", "1", "--disk", "4", "-y"},
         "0 Succeed.",
         {"POST " + integrated + "/Volumes 201"}},
        {{"addhsp", "--ctrl", "1", "--disk", "5", "-y"},
         "0 Succeed.",
         {"PATCH " + bays + "Disk.Bay.5:Enclosure.Internal.0-1 200"}},
        {{"rmhsp", "--ctrl", "1", "--disk", "3", "-y"},
         "0 Succeed.",
         {"PATCH " + bays + "Disk.Bay.3:Enclosure.Internal.0-1 200"}},
        {{"init", "--ctrl", "1", "--vol", "0", "-y"},
         "0 Succeed.",
         {"POST " + integrated +
          "/Volumes/Disk.Virtual.0:RAID.Integrated.1-1/Actions/Volume.Initialize 204"}},
        // Functions the tree does not offer: refused, nothing sent.
        {{"ekm", "--mode", "local", "--ctrl", "1", "-y"},
         "106 Function isn't supported on the target device.",
         {}},
        {{"envol", "--mode", "enable", "--ctrl", "1", "-y"},
         "106 Function isn't supported on the target device.",
         {}},
        {{"fwdeviceorder", "--mode", "enabled", "--ctrl", "1", "-y"},
         "106 Function isn't supported on the target device.",
         {}},
        {{"changemode", "--ctrl", "1", "--connector", "0", "--mode", "hba", "-y"},
         "25 Function is not supported on target system.",
         {}},
        // No ResetToDefaults here: the volume goes, and so does the spare; the JBOD disks stay.
        {{"clear", "--ctrl", "1", "-y"},
         "0 Succeed.",
         {"DELETE " + integrated + "/Volumes/Disk.Virtual.0:RAID.Integrated.1-1 204",
          "PATCH " + bays + "Disk.Bay.5:Enclosure.Internal.0-1 200"}},
        // The Adaptec Storage lists the reset.
        {{"clear", "--ctrl", "2", "-y"},
         "0 Succeed.",
         {"POST /redfish/v1/Systems/node-2/Storage/SmartRAID.Slot.4/Actions/"
          "Storage.ResetToDefaults 204"}},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.args.front() + " " + step.args[2] +
                     (step.args.size() > 4 ? " " + step.args[4] : std::string()));
        const Outcome outcome = Run(bmc, step.args);
        EXPECT_EQ(LastLine(outcome.out), step.last_line) << outcome.out << outcome.err;
        EXPECT_EQ(bmc.TakeWrites(), step.writes);
    }
}

TEST_F(MockupE2eTest, ACreateTheControllerDoesNotOfferIsRefusedBeforeAnythingIsSent) {
    Mockup bmc(kRackServer);
    raidcfg_test::WriteFile(work.File("raid6.ini"), Policy("4,5,7", "6"));
    const Outcome added = Run(bmc, {"add", "--file", "raid6.ini", "-y"});
    EXPECT_NE(added.status, 0);
    EXPECT_NE(added.out.find("the controller does not offer RAID6 (it offers None, RAID0, RAID1, "
                             "RAID5, RAID10)"),
              std::string::npos)
        << added.out;
    EXPECT_TRUE(bmc.TakeWrites().empty());

    raidcfg_test::WriteFile(work.File("online.ini"), Policy("0,4", "1"));
    const Outcome online = Run(bmc, {"add", "--file", "online.ini", "-y"});
    EXPECT_NE(online.out.find("disk 0 is Online, not UGood"), std::string::npos) << online.out;
    EXPECT_TRUE(bmc.TakeWrites().empty());

    raidcfg_test::WriteFile(work.File("mirror.ini"), Policy("4,5", "1"));
    const Outcome mirror = Run(bmc, {"add", "--file", "mirror.ini", "-y"});
    EXPECT_EQ(LastLine(mirror.out), "0 Succeed.") << mirror.out << mirror.err;
    EXPECT_EQ(bmc.TakeWrites(),
              std::vector<std::string>({"POST " + std::string(kIntegrated) + "/Volumes 201"}));
}

} // namespace
