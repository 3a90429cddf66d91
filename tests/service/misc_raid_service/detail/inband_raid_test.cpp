// The in-band road with targets over a simulated machine: the order of checks, prompts and
// calls of each action, its codes, and the console tables and XML of the driver's tables.
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "backend/backend_platform.hpp"
#include "backend/table.hpp"
#include "backend/volume_object.hpp"
#include "collaborators/log.hpp"
#include "result/raid_error_code.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/inband_raid.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using Quillon::RaidConfig::Table;
using raidcfg_test::ExpectGolden;
using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::InbandRaid;

// One LSI controller (hardware number 0) with a volume and a free disk, an M.2 controller of
// id 1 and a software RAID controller of id 0 with one array.
const char* const kMachine = R"({"persist": false, "controllers": [
  {"family": "LSI", "id": 0, "product_name": "RAID 9560-8i", "serial_no": "SL0",
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 953869, "product_name": "HDD 1TB",
      "disk_type": "SAS", "media_type": "HDD"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 953869, "product_name": "HDD 1TB",
      "disk_type": "SAS", "media_type": "HDD"},
     {"id": 2, "slot_no": "2", "state": "UGood", "capacity_mb": 953869, "product_name": "HDD 1TB",
      "disk_type": "SAS", "media_type": "HDD"}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 953869,
                "strip_kb": 256, "write_policy": 1, "read_policy": 1}]},
  {"family": "M2", "id": 1, "name": "Marvell 88SE9230", "version": "2.3.0.1065",
   "disks": [{"id": 0, "slot_no": "0", "state": "UGood", "capacity_mb": 228936,
              "product_name": "M.2 240GB", "media_type": "SSD", "manufacturer": "MICRON"}]},
  {"family": "VROC_WIN", "id": 0, "name": "Intel VROC", "raid_levels": ["0", "1"],
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 915527, "product_name": "NVMe 960GB",
      "disk_type": "NVMe"},
     {"id": 1, "state": "Online", "capacity_mb": 915527, "product_name": "NVMe 960GB",
      "disk_type": "NVMe"},
     {"id": 2, "state": "UGood", "capacity_mb": 915527, "product_name": "NVMe 960GB",
      "disk_type": "NVMe"}],
   "volumes": [{"id": 0, "name": "mirror", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 915527, "strip_kb": 64}]}
]})";

// An LSI family whose one controller answers reading its configuration with success and
// nothing in it.
class EmptyConfigDriver : public Quillon::RaidConfig::RaidDriver {
public:
    void GetControllerIds(std::vector<int>& ids) override { ids = {0}; }
    Quillon::RaidConfig::RaidErrorCode GetConfig(int /*controller*/,
                                                 std::vector<Quillon::RaidConfig::VolumeObject>&,
                                                 std::vector<int>& /*hot_spares*/,
                                                 std::string& /*error_text*/) override {
        return Quillon::RaidConfig::RAID_OK;
    }
};

class EmptyConfigPlatform : public Quillon::RaidConfig::BackendPlatform {
public:
    std::shared_ptr<Quillon::RaidConfig::RaidDriver>
    MakeRaidDriver(Quillon::RaidConfig::RaidTarget::Type family,
                   const QuillonConnection::ConnectionInfo& connection) override {
        if (family == Quillon::RaidConfig::RaidTarget::LSI) {
            return std::make_shared<EmptyConfigDriver>();
        }
        return BackendPlatform::MakeRaidDriver(family, connection);
    }
};

Table MakeTable(int columns, std::vector<std::string> cells) {
    Table table;
    table.columns = columns;
    table.cells = std::move(cells);
    return table;
}

class InbandRaidTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        raidcfg_test::WriteFile(dir_.File("machine.json"), kMachine);
        ASSERT_TRUE(sim::SimulatedMachine::Use(dir_.File("machine.json"), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    // Runs one action of a fresh object that reads answers from input; gives what it printed,
    // the output directory written as "<output>/".
    template <typename Action>
    std::string Printed(Action action, std::uint32_t& value, const std::string& input = "") {
        InbandRaid inband(option_);
        std::istringstream answers(input);
        inband.SetInput(answers);
        testing::internal::CaptureStdout();
        value = action(inband);
        std::string printed = testing::internal::GetCapturedStdout();
        rows_ = inband.results();
        const std::string dir = option_.output_dir;
        for (auto at = printed.find(dir); at != std::string::npos; at = printed.find(dir)) {
            printed.replace(at, dir.size(), "<output>/");
        }
        return printed;
    }

    std::string LogText() const { return ReadFile(dir_.File("raidcfg.log")); }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
    std::vector<Quillon::RaidConfig::RaidResult> rows_;
};

// --- Show ---

TEST_F(InbandRaidTest, ShowPrintsTheDriversTablesAndSavesThemAsXml) {
    option_.target = "all";
    std::uint32_t value = 0;
    const std::string printed = Printed([](InbandRaid& inband) { return inband.Show(); }, value);
    EXPECT_EQ(value, result::Success);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/show_all.txt", printed);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/show_all.xml",
                 ReadFile(dir_.File("raid_show_result.xml")));
}

TEST_F(InbandRaidTest, ShowOfTargetsThatNameNothingAnswersNoControllersWithoutTables) {
    Quillon::RaidConfig::InstallBackendPlatform(nullptr);
    option_.target = "all";
    std::uint32_t value = 0;
    const std::string printed = Printed([](InbandRaid& inband) { return inband.Show(); }, value);
    EXPECT_EQ(value, result::RaidNoControllers);
    EXPECT_EQ(printed, "\nraidconfig show:\n");
    EXPECT_FALSE(FileExists(dir_.File("raid_show_result.xml")));
}

TEST_F(InbandRaidTest, ShowPrintsItsHeadingAndTablesWhateverConsoleOutputSays) {
    option_.target = "m2-1";
    option_.console_output = false;
    std::uint32_t value = 0;
    const std::string printed = Printed([](InbandRaid& inband) { return inband.Show(); }, value);
    EXPECT_EQ(value, result::Success);
    EXPECT_EQ(printed.rfind("\nraidconfig show:\nController Information\n", 0), 0U) << printed;
    EXPECT_NE(printed.find("Show Configuration Result"), std::string::npos);
    // Only the XML notice follows the flag.
    EXPECT_EQ(printed.find("At the same time"), std::string::npos);
}

// --- Add ---

TEST_F(InbandRaidTest, AddWithAnUnreadablePolicyFileReturnsWhatShowPolicyFileSaid) {
    option_.target = "0";
    option_.policy_file = dir_.File("missing.ini");
    std::uint32_t value = 0;
    Printed([](InbandRaid& inband) { return inband.Add(); }, value);
    EXPECT_EQ(value, result::FileNotExist);
    option_.policy_file = dir_.path(); // a directory: it exists but can't be read
    Printed([](InbandRaid& inband) { return inband.Add(); }, value);
    EXPECT_EQ(value, result::FailedOpenFile);
    EXPECT_TRUE(rows_.empty());
}

TEST_F(InbandRaidTest, AddWithASyntacticallyBadPolicyFileReturns122BeforeThePrompt) {
    option_.target = "0";
    option_.policy_file = dir_.File("bad.ini");
    raidcfg_test::WriteFile(option_.policy_file, "[ctrl1-vol0\nraid_level=1\n");
    std::uint32_t value = 0;
    const std::string printed =
        Printed([](InbandRaid& inband) { return inband.Add(); }, value, "y\n");
    EXPECT_EQ(value, result::RaidIniFileError);
    EXPECT_NE(printed.find("The policy file:"), std::string::npos);
    EXPECT_EQ(printed.find("Please type"), std::string::npos);
}

TEST_F(InbandRaidTest, AddPromptsWithoutTheClosingFullStopAndAppliesTheFile) {
    option_.target = "0";
    option_.policy_file = dir_.File("add.ini");
    raidcfg_test::WriteFile(option_.policy_file,
                            "[ctrl1]\nglobal_hot_spares=2\n[ctrl9-vol0]\nraid_level=0\n");
    std::uint32_t value = 0;
    const std::string printed =
        Printed([](InbandRaid& inband) { return inband.Add(); }, value, "yes\n");
    EXPECT_EQ(value, result::Success);
    EXPECT_NE(printed.find("\nAre you sure you want to continue creating the config\nPlease"),
              std::string::npos)
        << printed;
    ASSERT_EQ(rows_.size(), 1U);
    EXPECT_EQ(rows_[0].device, "disk[0-2]");
    EXPECT_EQ(rows_[0].result, "Disk has been assigned global hot spare sucessfully.");
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/add_hot_spare.txt", printed);
}

TEST_F(InbandRaidTest, AddOfAFileWithNothingForTheTargetsAnswers122) {
    option_.target = "hw";
    option_.assume_yes = true;
    option_.policy_file = dir_.File("other.ini");
    raidcfg_test::WriteFile(option_.policy_file, "[ctrl9-vol0]\nraid_level=0\n");
    std::uint32_t value = 0;
    Printed([](InbandRaid& inband) { return inband.Add(); }, value);
    EXPECT_EQ(value, result::RaidIniFileError);
}

TEST_F(InbandRaidTest, AddRefusedByTheChecksLeavesTheCheckersLine) {
    option_.target = "0";
    option_.assume_yes = true;
    option_.policy_file = dir_.File("refused.ini");
    raidcfg_test::WriteFile(option_.policy_file, "[ctrl1-vol0]\ndisks=2\nraid_level=7\n");
    std::uint32_t value = 0;
    Printed([](InbandRaid& inband) { return inband.Add(); }, value);
    ASSERT_EQ(rows_.size(), 1U);
    EXPECT_EQ(rows_[0].device, "ctrl[0]");
    EXPECT_EQ(rows_[0].code, Quillon::RaidConfig::RAID_POLICY_ERROR);
    EXPECT_EQ(value, result::RaidIniFileError);
}

// --- Save ---

TEST_F(InbandRaidTest, SaveWritesThePolicyFileOfTheTargets) {
    option_.target = "0,vroc0";
    option_.policy_file = dir_.File("saved.ini");
    std::uint32_t value = 0;
    Printed([](InbandRaid& inband) { return inband.Save(); }, value);
    EXPECT_EQ(value, result::Success);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/save.ini", ReadFile(option_.policy_file));
    EXPECT_NE(LogText().find("the file path is: " + option_.policy_file), std::string::npos);
}

TEST_F(InbandRaidTest, SaveWithRowsButNoConfigTextWritesNoFilePrintsTheTableAndSucceeds) {
    Quillon::RaidConfig::InstallBackendPlatform(std::make_shared<EmptyConfigPlatform>());
    option_.target = "0";
    option_.policy_file = dir_.File("empty.ini");
    std::uint32_t value = 0;
    const std::string printed = Printed([](InbandRaid& inband) { return inband.Save(); }, value);
    EXPECT_EQ(value, result::Success);
    EXPECT_FALSE(FileExists(option_.policy_file));
    EXPECT_EQ(printed, "\nraidconfig save:\n"
                       "Save Configuration Result\n"
                       "Device     Result\n"
                       "-------    --------\n"
                       "ctrl[0]    Success.\n"
                       "\n");
}

TEST_F(InbandRaidTest, SaveWithoutRowsAnswersNoPolicyAndAnUnwritablePathFailedOpenFile) {
    option_.target = "5";
    option_.policy_file = dir_.File("none.ini");
    std::uint32_t value = 0;
    Printed([](InbandRaid& inband) { return inband.Save(); }, value);
    // Hardware number 5 names nothing: its row, and no text.
    EXPECT_EQ(value, result::RaidResultFromError(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND));
    EXPECT_FALSE(FileExists(option_.policy_file));
    Quillon::RaidConfig::InstallBackendPlatform(nullptr);
    option_.target = "hw"; // a whole family of no controller: no row at all
    Printed([](InbandRaid& inband) { return inband.Save(); }, value);
    EXPECT_EQ(value, result::RaidNoPolicyToSave);
    std::string error;
    ASSERT_TRUE(sim::SimulatedMachine::Use(dir_.File("machine.json"), error)) << error;
    option_.target = "0";
    option_.policy_file = dir_.File("no/such/dir.ini");
    Printed([](InbandRaid& inband) { return inband.Save(); }, value);
    EXPECT_EQ(value, result::FailedOpenFile);
    EXPECT_NE(LogText().find("The file '" + option_.policy_file + "' can't be opened."),
              std::string::npos);
}

// --- Clear ---

TEST_F(InbandRaidTest, ClearWithVolumesAndAListOfTargetsFailsWithTheMessage) {
    option_.volume_ids = "1,2";
    option_.target = "1,2";
    std::uint32_t value = 0;
    const std::string printed =
        Printed([](InbandRaid& inband) { return inband.Clear(); }, value, "y\n");
    EXPECT_EQ(value, result::InvalidParameter);
    EXPECT_EQ(printed, "\nraidconfig clear:\n"
                       "target must be specified by only one target when volume is specified.\n");
    EXPECT_TRUE(rows_.empty());
}

TEST_F(InbandRaidTest, ClearWithVolumesAndOneTargetRuns) {
    option_.volume_ids = "1,0";
    option_.target = "0";
    std::uint32_t value = 0;
    Printed([](InbandRaid& inband) { return inband.Clear(); }, value, "y\n");
    ASSERT_EQ(rows_.size(), 2U);
    EXPECT_EQ(rows_[0].device, "vol[0-0]");
    EXPECT_EQ(rows_[0].result, "Success.");
    EXPECT_EQ(rows_[1].device, "vol[0-1]");
    EXPECT_EQ(rows_[1].result, "The target vol[0-1] does not exist.");
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
}

TEST_F(InbandRaidTest, ClearWithAllVolumesClearsTheWholeConfiguration) {
    option_.volume_ids = "all";
    option_.target = "0,m2-1";
    std::uint32_t value = 0;
    // "all" names no volume, but the target still has to be a single one.
    Printed([](InbandRaid& inband) { return inband.Clear(); }, value, "y\n");
    EXPECT_EQ(value, result::InvalidParameter);
    option_.target = "vroc0";
    const std::string printed =
        Printed([](InbandRaid& inband) { return inband.Clear(); }, value, "y\n");
    EXPECT_EQ(value, result::Success);
    ASSERT_EQ(rows_.size(), 1U);
    EXPECT_EQ(rows_[0].device, "vroc[0]");
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/clear_vroc.txt", printed);
}

TEST_F(InbandRaidTest, ClearOfTargetsThatNameNothingAnswersNoControllers) {
    Quillon::RaidConfig::InstallBackendPlatform(nullptr);
    option_.target = "hw";
    option_.assume_yes = true;
    std::uint32_t value = 0;
    Printed([](InbandRaid& inband) { return inband.Clear(); }, value);
    EXPECT_EQ(value, result::RaidNoControllers);
}

// --- Prompts ---

TEST_F(InbandRaidTest, ThreeBadAnswersToAPromptEndTheActionAsNoDoes) {
    option_.target = "0";
    std::uint32_t value = 1;
    const std::string printed =
        Printed([](InbandRaid& inband) { return inband.Clear(); }, value, "maybe\nperhaps\nok\n");
    EXPECT_EQ(value, result::Success);
    EXPECT_TRUE(rows_.empty());
    EXPECT_EQ(printed, "\nraidconfig clear:\n"
                       "This operation will remove all the data on your disk(s), are you sure you "
                       "want to continue clearing the RAID.\n"
                       "Please type yes(y) or no(n):\n"
                       "Please type yes(y) or no(n):\n"
                       "Please type yes(y) or no(n):\n");
    // The volume is still there.
    option_.volume_ids = "0";
    option_.assume_yes = true;
    Printed([](InbandRaid& inband) { return inband.Clear(); }, value);
    EXPECT_EQ(value, result::Success);
}

TEST_F(InbandRaidTest, AssumeYesRemovesPromptsButNeverChecks) {
    option_.assume_yes = true;
    option_.volume_ids = "0";
    option_.target = "0,m2-1";
    std::uint32_t value = 0;
    std::string printed = Printed([](InbandRaid& inband) { return inband.Clear(); }, value);
    EXPECT_EQ(value, result::InvalidParameter);
    option_.target = "all";
    option_.disk_ids = "2";
    printed = Printed([](InbandRaid& inband) { return inband.AddHotSpare(); }, value);
    EXPECT_EQ(value, result::InvalidParameter);
    EXPECT_EQ(printed.find("Please type"), std::string::npos);
}

// --- Hot spares ---

TEST_F(InbandRaidTest, AddHotSpareAsksBeforeTheTargetIsJudged) {
    option_.target = "1,2";
    std::uint32_t value = 1;
    std::string printed =
        Printed([](InbandRaid& inband) { return inband.AddHotSpare(); }, value, "n\n");
    EXPECT_EQ(value, result::Success);
    EXPECT_NE(printed.find("Are you sure you want to continue doing add hot spare operation."),
              std::string::npos);
    printed = Printed([](InbandRaid& inband) { return inband.AddHotSpare(); }, value, "y\n");
    EXPECT_EQ(value, result::InvalidParameter);
    EXPECT_NE(LogText().find("the target must name one controller: 1,2"), std::string::npos);
}

TEST_F(InbandRaidTest, AddHotSpareWithDiskGroupsOnSoftwareRaidAnswersTheDgOptionCode) {
    option_.assume_yes = true;
    option_.target = "vroc0";
    option_.disk_ids = "2";
    option_.disk_group_ids = "0";
    std::uint32_t value = 0;
    Printed([](InbandRaid& inband) { return inband.AddHotSpare(); }, value);
    EXPECT_EQ(value, result::RaidBadDgOption); // code 29 of the driver
    EXPECT_TRUE(rows_.empty());
    option_.disk_group_ids.clear();
    option_.disk_ids.clear(); // no disk: code 30 of the driver
    Printed([](InbandRaid& inband) { return inband.AddHotSpare(); }, value);
    EXPECT_EQ(value, result::InvalidParameter);
}

TEST_F(InbandRaidTest, AddAndRemoveHotSpareLeaveOneRowPerDisk) {
    option_.assume_yes = true;
    option_.target = "0";
    option_.disk_ids = "2";
    option_.disk_group_ids = "0";
    std::uint32_t value = 0;
    std::string printed = Printed([](InbandRaid& inband) { return inband.AddHotSpare(); }, value);
    EXPECT_EQ(value, result::Success);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/add_dedicated_hot_spare.txt", printed);
    option_.disk_ids = "2,1";
    printed = Printed([](InbandRaid& inband) { return inband.RemoveHotSpare(); }, value);
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
    ASSERT_EQ(rows_.size(), 2U);
    EXPECT_EQ(rows_[1].result, "The target disk[0-1] can't do rmhsp operation");
    option_.target = "md0";
    option_.disk_ids = "";
    Printed([](InbandRaid& inband) { return inband.RemoveHotSpare(); }, value);
    EXPECT_EQ(value, result::InvalidParameter); // code 30: no disk named
}

TEST_F(InbandRaidTest, RemoveHotSparePromptsWithItsOwnText) {
    option_.target = "0";
    option_.disk_ids = "2";
    std::uint32_t value = 1;
    const std::string printed =
        Printed([](InbandRaid& inband) { return inband.RemoveHotSpare(); }, value, "no\n");
    EXPECT_EQ(value, result::Success);
    EXPECT_EQ(printed, "\nraidconfig remove hot spare:\n"
                       "Are you sure you want to continue doing remove hot spare operation.\n"
                       "Please type yes(y) or no(n):\n");
}

// --- Rows ---

TEST_F(InbandRaidTest, TakeResultsCopiesTheRowsAndALaterRowOfADeviceWins) {
    option_.target = "0";
    option_.assume_yes = true;
    option_.volume_ids = "0,0";
    std::uint32_t value = 0;
    InbandRaid inband(option_);
    testing::internal::CaptureStdout();
    value = inband.Clear();
    testing::internal::GetCapturedStdout();
    std::map<std::string, std::string> results{{"earlier", "kept"}};
    inband.TakeResults(results);
    EXPECT_EQ(results,
              (std::map<std::string, std::string>{{"earlier", "kept"}, {"vol[0-0]", "Success."}}));
    EXPECT_EQ(value, result::Success); // the list is made unique first
}

TEST_F(InbandRaidTest, SummaryCountsOnlyCodeZeroAsGoodAmongSeveralRows) {
    using Quillon::RaidConfig::RaidResult;
    EXPECT_EQ(InbandRaid::SummaryResults({}), result::Success);
    EXPECT_EQ(
        InbandRaid::SummaryResults({RaidResult{"a", "", Quillon::RaidConfig::RAID_OK_UNCHANGED}}),
        result::Success);
    EXPECT_EQ(
        InbandRaid::SummaryResults({RaidResult{"a", "", Quillon::RaidConfig::RAID_OK},
                                    RaidResult{"b", "", Quillon::RaidConfig::RAID_OK_UNCHANGED}}),
        result::RaidFailsOnSomeTargets);
    EXPECT_EQ(
        InbandRaid::SummaryResults({RaidResult{"a", "", Quillon::RaidConfig::RAID_NO_CONFIG},
                                    RaidResult{"b", "", Quillon::RaidConfig::RAID_NO_CONFIG}}),
        result::RaidFailsOnAllTargets);
}

TEST_F(InbandRaidTest, PrintResultsShowsTheFirstLineOfEachTextAlways) {
    option_.console_output = false;
    testing::internal::CaptureStdout();
    InbandRaid::PrintResults({{"ctrl[0]", "first\r\nsecond", Quillon::RaidConfig::RAID_OK},
                              {"ctrl[1]", "\n", Quillon::RaidConfig::RAID_OK}},
                             "Clear Configuration Result");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Clear Configuration Result\n"
                                                      "Device     Result\n"
                                                      "-------    ------\n"
                                                      "ctrl[0]    first\n"
                                                      "ctrl[1]\n"
                                                      "\n");
}

// --- Generic tables and XML ---

class InbandTablesTest : public InbandRaidTest {
protected:
    std::string Xml(const InbandRaid::Tables& tables) {
        InbandRaid inband(option_);
        testing::internal::CaptureStdout();
        EXPECT_EQ(inband.SaveInbandRaidToXML(tables), result::Success);
        testing::internal::GetCapturedStdout();
        return ReadFile(dir_.File("raid_show_result.xml"));
    }
    std::string Console(const InbandRaid::Tables& tables) {
        InbandRaid inband(option_);
        testing::internal::CaptureStdout();
        inband.PrintTable(tables);
        return testing::internal::GetCapturedStdout();
    }
};

TEST_F(InbandTablesTest, AnInnerVectorWithOnlyADiskTableProducesNoElement) {
    const InbandRaid::Tables tables{
        {MakeTable(2, {"Disk Information", "Disk ID", "State", "0", "Online"})}};
    const std::string xml = Xml(tables);
    EXPECT_EQ(xml.find("<CONTROLLER>"), std::string::npos) << xml;
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/xml_disks_only.xml", xml);
}

TEST_F(InbandTablesTest, ATableWithOnlyItsTitleCellPrintsNothingAndAddsNothing) {
    const InbandRaid::Tables tables{
        {MakeTable(2, {"Controller Information", "Target ID", "Family", "0", "Broadcom"}),
         MakeTable(3, {"Volume Information"}), MakeTable(0, {})}};
    EXPECT_EQ(Console({{MakeTable(3, {"Volume Information"}), MakeTable(0, {})}}), "");
    const std::string xml = Xml(tables);
    EXPECT_NE(xml.find("<TargetID>0</TargetID>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<VOLUMES/>"), std::string::npos) << xml;
}

TEST_F(InbandTablesTest, AVolumeTableWithAHeaderRowAndNoOtherYieldsAnEmptyVolumes) {
    const InbandRaid::Tables tables{
        {MakeTable(2, {"Container Information", "Target ID", "Name", "md0", "Array_0"}),
         MakeTable(2, {"Volume Information", "Volume ID", "Name"})}};
    const std::string xml = Xml(tables);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/xml_empty_volumes.xml", xml);
}

TEST_F(InbandTablesTest, AFieldNameOfTwoWordsBecomesAnElementNameWithoutTheBlank) {
    const InbandRaid::Tables tables{
        {MakeTable(2, {"Controller Information", "Product Name", "Serial No", "RAID 9560", "SL 0"}),
         MakeTable(2, {"Disk Information", "Disk ID", "Media Type", "0", "HDD", "1", "SSD"}),
         MakeTable(1, {"Connectors Information", "Connector ID", "0"})}};
    const std::string xml = Xml(tables);
    EXPECT_NE(xml.find("<ProductName>RAID 9560</ProductName>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<MediaType>SSD</MediaType>"), std::string::npos) << xml;
    EXPECT_EQ(xml.find("Connector"), std::string::npos) << xml; // other titles are ignored
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "inband/xml_two_words.xml", xml);
}

TEST_F(InbandTablesTest, NoTablesLogsThatThereIsNoDataAndPrintsNothing) {
    EXPECT_EQ(Console({}), "");
    EXPECT_NE(LogText().find("There are no meta data."), std::string::npos);
}

TEST_F(InbandTablesTest, AnUnwritableXmlFileAnswersFileNotExist) {
    option_.output_dir = dir_.File("no/such/dir/");
    InbandRaid inband(option_);
    EXPECT_EQ(inband.SaveInbandRaidToXML({}), result::FileNotExist);
}

TEST_F(InbandTablesTest, ShowPolicyFileEqualsThePreviewOfTheRoadWithoutTargets) {
    option_.policy_file = dir_.File("preview.ini");
    raidcfg_test::WriteFile(option_.policy_file,
                            "\xEF\xBB\xBF# comment\n[ctrl1-vol0]\nraid_level = 1\n\n");
    InbandRaid inband(option_);
    testing::internal::CaptureStdout();
    EXPECT_EQ(inband.ShowPolicyFile(option_.policy_file), result::Success);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "\nThe policy file:\n\n[ctrl1-vol0]\n    raid_level = 1\n\n");
}

} // namespace
