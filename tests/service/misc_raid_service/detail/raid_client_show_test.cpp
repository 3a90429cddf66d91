// The show action on a simulated machine: tables, "raid_show_result.xml", rows and result value,
// on the local road, out-of-band, for CFC and for named targets.
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "backend/backend_platform.hpp"
#include "backend/redfish_helper_driver.hpp"
#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "sim/machine_store.hpp"
#include "sim/sim_platform.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ExpectGolden;
using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::RaidClient;

// A server with controllers of all nine families, each with disks, a volume and, where the
// family takes them, hot spares. LSI ids 4 and 7 and Microchip id 2 show under 0, 1 and 3.
const char* const kServer = R"({"persist": false, "controllers": [
  {"family": "LSI", "id": 4, "product_name": "RAID 9560-8i", "serial_no": "SL4",
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 953869, "product_name": "HDD 1TB",
      "disk_type": "SAS", "media_type": "HDD", "serial_no": "D40"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 953869, "product_name": "HDD 1TB",
      "disk_type": "SAS", "media_type": "HDD", "serial_no": "D41"},
     {"id": 2, "slot_no": "2", "state": "GHS", "capacity_mb": 953869, "product_name": "HDD 1TB",
      "disk_type": "SAS", "media_type": "HDD", "serial_no": "D42"}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 953869,
                "strip_kb": 256, "bootable": true, "write_policy": 1, "read_policy": 1}],
   "global_hot_spares": [2]},
  {"family": "LSI", "id": 7, "product_name": "RAID 9540-8i", "serial_no": "SL7",
   "disks": [{"id": 0, "slot_no": "0", "state": "UGood", "capacity_mb": 476940,
              "product_name": "SSD 480GB", "disk_type": "SATA", "media_type": "SSD"}]},
  {"family": "MICROCHIP", "id": 2, "product_name": "SmartRAID 3154-8i", "serial_no": "SM2",
   "connectors": [{"id": 0, "name": "CN0", "mode": "RAID"}],
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 1831054,
      "product_name": "SSD 1.92TB", "disk_type": "SAS", "media_type": "SSD"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 1831054,
      "product_name": "SSD 1.92TB", "disk_type": "SAS", "media_type": "SSD"}],
   "volumes": [{"id": 0, "name": "data", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 1831054, "strip_kb": 128}]},
  {"family": "M2", "id": 1, "name": "Marvell 88SE9230", "version": "2.3.0.1065",
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 228936,
      "product_name": "M.2 240GB", "media_type": "SSD", "manufacturer": "MICRON"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 228936,
      "product_name": "M.2 240GB", "media_type": "SSD", "manufacturer": "MICRON"}],
   "volumes": [{"id": 0, "name": "boot", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 228936, "strip_kb": 64}]},
  {"family": "VROC_WIN", "id": 0, "name": "Intel VROC",
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 915527,
      "product_name": "NVMe 960GB", "disk_type": "NVMe", "media_type": "SSD"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 915527,
      "product_name": "NVMe 960GB", "disk_type": "NVMe", "media_type": "SSD"}],
   "volumes": [{"id": 0, "name": "mirror", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 915527, "strip_kb": 64}]},
  {"family": "OOB_LSI", "id": 3, "product_name": "RAID 940-8i", "serial_no": "SV3",
   "fru_no": "F3", "part_no": "P3", "vendor": "Broadcom",
   "raid_levels": ["0", "1", "5"], "min_stripe_kb": 64, "max_stripe_kb": 1024,
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 953869,
      "product_name": "HDD 1TB", "disk_type": "SAS", "media_type": "HDD", "health_status": "OK"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 953869,
      "product_name": "HDD 1TB", "disk_type": "SAS", "media_type": "HDD", "health_status": "OK"},
     {"id": 2, "slot_no": "2", "state": "UGood", "capacity_mb": 953869,
      "product_name": "HDD 1TB", "disk_type": "SAS", "media_type": "HDD", "health_status": "OK"}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 953869,
                "strip_kb": 256, "write_policy": 1, "read_policy": 1}]},
  {"family": "OOB_LSI", "id": 1, "product_name": "RAID 9350-8i", "serial_no": "SV1",
   "disks": []},
  {"family": "OOB_CFC", "id": 0, "vendor": "Broadcom", "product_name": "RAID 9560-16i",
   "serial_no": "CB0", "raid_levels": ["0", "1"], "min_stripe_kb": 64, "max_stripe_kb": 1024,
   "disks": [
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 953869, "product_name": "HDD 1TB"},
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 953869, "product_name": "HDD 1TB"}],
   "volumes": [{"id": 0, "name": "cfc-os", "raid_level": "1", "spans": [[1, 0]],
                "size_mb": 953869, "strip_kb": 256}]},
  {"family": "OOB_CFC", "id": 1, "vendor": "Microchip", "product_name": "SmartRAID 3200",
   "serial_no": "CM1", "disks": [{"id": 0, "slot_no": "0", "state": "UGood",
                                  "capacity_mb": 476940, "product_name": "SSD 480GB"}]},
  {"family": "OOB_CFC", "id": 2, "vendor": "Marvell", "product_name": "M.2 boot card",
   "disks": [{"id": 0, "slot_no": "0", "state": "UGood", "capacity_mb": 228936,
              "product_name": "M.2 240GB"}]},
  {"family": "OOB_M2", "id": 6, "name": "Marvell 88SE9230", "version": "2.3.0.2000",
   "raid_levels": ["0", "1"],
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 228936,
      "product_name": "M.2 240GB", "media_type": "SSD"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 228936,
      "product_name": "M.2 240GB", "media_type": "SSD"}],
   "volumes": [{"id": 0, "name": "boot", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 228936, "strip_kb": 64}]},
  {"family": "OOB_MICROCHIP", "id": 5, "product_name": "SmartRAID 3254-8i", "serial_no": "SO5",
   "manufacturer": "Microchip", "raid_levels": ["0", "1", "5"], "min_stripe_kb": 16,
   "max_stripe_kb": 1024,
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 1831054,
      "product_name": "SSD 1.92TB", "disk_type": "SAS", "media_type": "SSD"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 1831054,
      "product_name": "SSD 1.92TB", "disk_type": "SAS", "media_type": "SSD"}],
   "volumes": [{"id": 0, "name": "data", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 1831054, "strip_kb": 128}]},
  {"family": "OOB_VROC", "id": 8, "product_name": "Intel VROC", "manufacturer": "Intel",
   "model": "VMD", "version": "8.0", "raid_levels": ["0", "1"],
   "disks": [
     {"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 915527,
      "product_name": "NVMe 960GB", "disk_type": "NVMe", "media_type": "SSD"},
     {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 915527,
      "product_name": "NVMe 960GB", "disk_type": "NVMe", "media_type": "SSD"}],
   "volumes": [{"id": 0, "name": "mirror", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 915527, "strip_kb": 64}]}
]})";

// The simulated machine, with a support query that answers limits of its own and notes each
// question as "controller family url".
class RecordingHelperDriver : public Quillon::RaidConfig::RedfishHelperDriver {
public:
    explicit RecordingHelperDriver(std::shared_ptr<std::vector<std::string>> calls)
        : calls_(std::move(calls)) {}
    void GetSupportInfo(int controller, const std::string& family, std::string& max_stripe_size,
                        std::string& min_stripe_size, std::vector<std::string>& raid_levels,
                        const std::string& url) override {
        calls_->push_back(std::to_string(controller) + " " + family + " " + url);
        max_stripe_size = "4096K";
        min_stripe_size = "8K";
        raid_levels = {"1E"};
    }

private:
    std::shared_ptr<std::vector<std::string>> calls_;
};

class RecordingPlatform : public sim::SimPlatform {
public:
    RecordingPlatform(std::shared_ptr<sim::MachineStore> store,
                      std::shared_ptr<std::vector<std::string>> calls)
        : sim::SimPlatform(std::move(store)), calls_(std::move(calls)) {}
    std::shared_ptr<Quillon::RaidConfig::RedfishHelperDriver>
    MakeRedfishHelperDriver(const QuillonConnection::ConnectionInfo& /*connection*/) override {
        return std::make_shared<RecordingHelperDriver>(calls_);
    }

private:
    std::shared_ptr<std::vector<std::string>> calls_;
};

std::vector<std::string> Devices(const RaidClient& client) {
    std::vector<std::string> devices;
    for (const auto& row : client.rows()) {
        devices.push_back(row.device);
    }
    return devices;
}

// Where each text stands in whole, in order; npos for a missing one.
std::vector<std::size_t> Positions(const std::string& whole,
                                   const std::vector<std::string>& parts) {
    std::vector<std::size_t> positions;
    positions.reserve(parts.size());
    for (const std::string& part : parts) {
        positions.push_back(whole.find(part));
    }
    return positions;
}

class RaidClientShowTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    void UseMachine(const std::string& json) {
        raidcfg_test::WriteFile(dir_.File("machine.json"), json);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(dir_.File("machine.json"), error)) << error;
    }

    void OutOfBand() {
        option_.connect_option.kind = 2;
        option_.connect_option.target = "admin:secret@bmc.example";
        option_.connect_option.user = "admin";
        option_.connect_option.password = "secret";
    }

    QuillonConnection::ConnectionInfo Connection() const {
        QuillonConnection::ConnectionInfo info;
        TesselConnect::GetRESTConnection(option_.connect_option, info);
        return info;
    }

    // Runs Show and gives what it printed, the output directory written as "<output>/".
    std::string ShowPrinted(RaidClient& client, std::uint32_t& value) const {
        testing::internal::CaptureStdout();
        value = client.Show();
        std::string printed = testing::internal::GetCapturedStdout();
        const std::string dir = option_.output_dir;
        for (auto at = printed.find(dir); at != std::string::npos; at = printed.find(dir)) {
            printed.replace(at, dir.size(), "<output>/");
        }
        return printed;
    }

    // Runs Show without letting the in-band tables, which print whatever the console flag
    // says, reach the test's output.
    static std::uint32_t QuietShow(RaidClient& client) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = client.Show();
        testing::internal::GetCapturedStdout();
        return value;
    }

    std::string ShowXmlPath() const { return dir_.File("raid_show_result.xml"); }
    std::string LogText() const { return ReadFile(dir_.File("raidcfg.log")); }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
};

// --- Every family, compared with golden files ---

TEST_F(RaidClientShowTest, LocalShowPrintsTheInBandFamiliesInNumberOrder) {
    UseMachine(kServer);
    RaidClient client(option_);
    std::uint32_t value = 0;
    const std::string printed = ShowPrinted(client, value);
    EXPECT_EQ(value, result::Success);
    EXPECT_EQ(Devices(client),
              (std::vector<std::string>{"ctrl1", "ctrl2", "ctrl3", "ctrl4", "ctrl5"}));
    for (const auto& row : client.rows()) {
        EXPECT_EQ(row.result, "Success.") << row.device;
    }
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_local.txt", printed);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_local.xml", ReadFile(ShowXmlPath()));
}

TEST_F(RaidClientShowTest, LsiAndMicrochipControllersShowUnderTheirLsiMicrochipNumber) {
    UseMachine(kServer);
    option_.console_output = false;
    RaidClient client(option_);
    QuietShow(client);
    const std::string xml = ReadFile(ShowXmlPath());
    // LSI ids 4 and 7 are 0 and 1; the Microchip id 2 is 3, one number skipped.
    const std::vector<std::size_t> at =
        Positions(xml, {"<TYPE>LSI</TYPE>", "<TargetID>0</TargetID>", "<TYPE>LSI</TYPE>",
                        "<TargetID>1</TargetID>", "<TargetID>3</TargetID>"});
    for (const std::size_t position : at) {
        EXPECT_NE(position, std::string::npos) << xml;
    }
    EXPECT_EQ(xml.find("<TargetID>4</TargetID>"), std::string::npos) << xml;
    EXPECT_EQ(xml.find("<TargetID>7</TargetID>"), std::string::npos) << xml;
}

TEST_F(RaidClientShowTest, OutOfBandShowPrintsTablesAndSavesTheSupportInformation) {
    UseMachine(kServer);
    OutOfBand();
    RaidClient client(option_, Connection());
    std::uint32_t value = 0;
    const std::string printed = ShowPrinted(client, value);
    EXPECT_EQ(value, result::Success);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_oob.txt", printed);
    const std::string xml = ReadFile(ShowXmlPath());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_oob.xml", xml);
    EXPECT_NE(xml.find("<MaxStripeSize>1024K</MaxStripeSize>"), std::string::npos) << xml;
}

TEST_F(RaidClientShowTest, WithoutATargetOutOfBandTheLsiFamilyShowsBeforeMicrochipVrocAndM2) {
    UseMachine(kServer);
    OutOfBand();
    option_.console_output = false;
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Show(), result::Success);
    EXPECT_EQ(Devices(client),
              (std::vector<std::string>{"ctrl1", "ctrl2", "ctrl3", "ctrl4", "ctrl5"}));
    const std::vector<std::size_t> at =
        Positions(ReadFile(ShowXmlPath()), {"<TYPE>OOBLSI</TYPE>", "<TYPE>OOBMICROCHIP</TYPE>",
                                            "<TYPE>OOBVROC</TYPE>", "<TYPE>OOBM2</TYPE>"});
    for (std::size_t i = 0; i < at.size(); ++i) {
        ASSERT_NE(at[i], std::string::npos) << i;
        if (i > 0) {
            EXPECT_LT(at[i - 1], at[i]) << i;
        }
    }
}

TEST_F(RaidClientShowTest, CfcShowPicksTablesAndXmlByVendor) {
    UseMachine(kServer);
    OutOfBand();
    option_.cfc = true;
    RaidClient client(option_, Connection());
    std::uint32_t value = 0;
    const std::string printed = ShowPrinted(client, value);
    EXPECT_EQ(value, result::Success);
    EXPECT_EQ(Devices(client), (std::vector<std::string>{"ctrl1", "ctrl2", "ctrl3"}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_cfc.txt", printed);
    const std::string xml = ReadFile(ShowXmlPath());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_cfc.xml", xml);
    const std::vector<std::size_t> at = Positions(
        xml, {"<TYPE>OOBCFCLSI</TYPE>", "<TYPE>OOBCFCMICROCHIP</TYPE>", "<TYPE>OOBCFCM2</TYPE>"});
    for (const std::size_t position : at) {
        EXPECT_NE(position, std::string::npos) << xml;
    }
}

TEST_F(RaidClientShowTest, OutOfBandTargetsShowUnderBracketedNamesWithoutAFlatNumber) {
    UseMachine(kServer);
    OutOfBand();
    option_.target = "all";
    RaidClient client(option_, Connection());
    std::uint32_t value = 0;
    const std::string printed = ShowPrinted(client, value);
    EXPECT_EQ(value, result::Success);
    EXPECT_EQ(Devices(client), (std::vector<std::string>{"ctrl[3]", "ctrl[1]", "M2-6"}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_oob_target.txt", printed);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_oob_target.xml", ReadFile(ShowXmlPath()));
}

TEST_F(RaidClientShowTest, AnM2TargetThatDoesNotExistIsARowOfItsOwn) {
    UseMachine(kServer);
    OutOfBand();
    option_.console_output = false;
    option_.target = "m.2-9";
    RaidClient client(option_, Connection());
    const TesselResult outcome(client.Show());
    ASSERT_EQ(client.rows().size(), 1U);
    EXPECT_EQ(client.rows()[0].device, "M2-9");
    EXPECT_EQ(client.rows()[0].result, "The target M2-9 does not exist.");
    EXPECT_EQ(outcome.message(), "The target device does not exist.");
}

// --- Edge cases ---

TEST_F(RaidClientShowTest, OneControllerWhoseGetControllerFailsIsInTheTableTheXmlIsStillWritten) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "LSI", "id": 0, "disks": [],
       "faults": [{"op": "GetController", "code": 3, "error_text": "controller is busy"}]}]})");
    RaidClient client(option_);
    std::uint32_t value = 0;
    const std::string printed = ShowPrinted(client, value);
    EXPECT_EQ(printed, "\n"
                       "raidconfig show:\n"
                       "Show Configuration Result\n"
                       "Device    Result\n"
                       "------    ------------------\n"
                       "ctrl1     controller is busy\n"
                       "\n"
                       "At the same time, the RAID configuration is saved into XML file:\n"
                       "<output>/raid_show_result.xml\n");
    ASSERT_TRUE(FileExists(ShowXmlPath()));
    EXPECT_EQ(ReadFile(ShowXmlPath()), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                       "<CONTROLLERS/>\n");
    // The result is the mapped code of the one row.
    EXPECT_EQ(value, result::RaidResultFromError(Quillon::RaidConfig::RAID_OPERATION_FAILED));
    EXPECT_EQ(client.rows()[0].code, Quillon::RaidConfig::RAID_OPERATION_FAILED);
}

TEST_F(RaidClientShowTest, AControllerThatVanishedBeforeItWasReadIsNamedByItsFlatNumber) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "OOB_VROC", "id": 0, "disks": []},
      {"family": "OOB_VROC", "id": 4, "disks": [],
       "faults": [{"op": "GetController", "code": 5, "error_text": "no such controller"}]}]})");
    OutOfBand();
    option_.console_output = false;
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Show(), result::RaidFailsOnSomeTargets);
    ASSERT_EQ(client.rows().size(), 2U);
    EXPECT_EQ(client.rows()[1].device, "ctrl2");
    EXPECT_EQ(client.rows()[1].result, "The controller ID 2 does not exist.");
}

TEST_F(RaidClientShowTest, RowsEmptyLeaveNoXmlFileAndAnswerThereAreNoControllers) {
    UseMachine(R"({"persist": false, "controllers": []})");
    RaidClient client(option_);
    std::uint32_t value = 0;
    const std::string printed = ShowPrinted(client, value);
    EXPECT_EQ(TesselResult(value).message(), "There are no controllers.");
    EXPECT_EQ(printed, "\nraidconfig show:\n");
    EXPECT_FALSE(FileExists(ShowXmlPath()));
}

TEST_F(RaidClientShowTest, GetShowResultWithTargetSetStillWalksTheIndexMapWhichIsEmptyThen) {
    UseMachine(kServer);
    option_.target = "all";
    RaidClient client(option_);
    EXPECT_EQ(client.GetShowResult(), "");
    EXPECT_TRUE(client.rows().empty());
    EXPECT_FALSE(FileExists(ShowXmlPath()));
}

TEST_F(RaidClientShowTest, GetShowResultCollectsEveryControllerIgnoringCtrlIndex) {
    UseMachine(kServer);
    option_.console_output = false;
    option_.ctrl_index = "2";
    RaidClient client(option_);
    testing::internal::CaptureStdout();
    const std::string text = client.GetShowResult();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(client.rows().size(), 5U);
    EXPECT_FALSE(FileExists(ShowXmlPath()));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_result_local.txt", text);
}

TEST_F(RaidClientShowTest, GetShowResultOutOfBandCollectsTheTablesWhenTheConsoleIsOff) {
    UseMachine(kServer);
    OutOfBand();
    option_.console_output = false;
    RaidClient client(option_, Connection());
    testing::internal::CaptureStdout();
    const std::string text = client.GetShowResult();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(FileExists(ShowXmlPath()));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "client/show_result_oob.txt", text);
}

TEST_F(RaidClientShowTest, CtrlIndexShowsThatControllerAlone) {
    UseMachine(kServer);
    option_.console_output = false;
    option_.ctrl_index = "3";
    RaidClient client(option_);
    EXPECT_EQ(QuietShow(client), result::Success);
    EXPECT_EQ(Devices(client), std::vector<std::string>{"ctrl3"});
    const std::string xml = ReadFile(ShowXmlPath());
    EXPECT_NE(xml.find("<TYPE>MICROCHIP</TYPE>"), std::string::npos) << xml;
    EXPECT_EQ(xml.find("<TYPE>LSI</TYPE>"), std::string::npos) << xml;
}

TEST_F(RaidClientShowTest, AnXmlFileThatCannotBeWrittenAnswersFileDoesntExistWithoutSummary) {
    UseMachine(kServer);
    option_.output_dir = dir_.File("missing") + "/";
    option_.console_output = false;
    option_.ctrl_index = "1";
    RaidClient client(option_);
    const TesselResult outcome(QuietShow(client));
    EXPECT_EQ(outcome.value(), result::FileNotExist);
    EXPECT_EQ(outcome.message(), "File doesn't exist.");
    EXPECT_EQ(client.rows().size(), 1U);
    EXPECT_NE(LogText().find("raid_show_result.xml"), std::string::npos);
}

TEST_F(RaidClientShowTest, OutOfBandShowTitlesThePageAndPutsItsTablesOnIt) {
    UseMachine(kServer);
    OutOfBand();
    option_.console_output = false;
    RaidClient client(option_, Connection());
    client.Show();
    EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig Show");
    const auto& tables = client.result_page()->GetTableBox();
    ASSERT_FALSE(tables.empty());
    EXPECT_EQ(tables.back().GetTitle(), "Show Configuration Result");
    // One block per controller, then the result table.
    EXPECT_EQ(tables.size(), 6U);
}

TEST_F(RaidClientShowTest, SupportInformationIsAskedPerControllerAndReachesTheXml) {
    raidcfg_test::WriteFile(dir_.File("machine.json"), kServer);
    auto calls = std::make_shared<std::vector<std::string>>();
    Quillon::RaidConfig::InstallBackendPlatform(std::make_shared<RecordingPlatform>(
        std::make_shared<sim::MachineStore>(dir_.File("machine.json")), calls));
    OutOfBand();
    option_.console_output = false;
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Show(), result::Success);
    // The controller's own id, the family word, and no URL outside CFC.
    EXPECT_EQ(*calls, (std::vector<std::string>{"3 OOBLSI ", "1 OOBLSI ", "5 OOBMICROCHIP ",
                                                "8 OOBVROC ", "6 OOBM2 "}));
    const std::string xml = ReadFile(ShowXmlPath());
    EXPECT_NE(xml.find("<MaxStripeSize>4096K</MaxStripeSize>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<SupportRaidLevels>1E</SupportRaidLevels>"), std::string::npos) << xml;
}

TEST_F(RaidClientShowTest, CfcAsksSupportInformationWithTheControllersUrl) {
    raidcfg_test::WriteFile(dir_.File("machine.json"), kServer);
    auto calls = std::make_shared<std::vector<std::string>>();
    Quillon::RaidConfig::InstallBackendPlatform(std::make_shared<RecordingPlatform>(
        std::make_shared<sim::MachineStore>(dir_.File("machine.json")), calls));
    OutOfBand();
    option_.cfc = true;
    option_.console_output = false;
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Show(), result::Success);
    ASSERT_EQ(calls->size(), 3U);
    for (std::size_t i = 0; i < calls->size(); ++i) {
        const std::string& call = (*calls)[i];
        EXPECT_EQ(call.rfind(std::to_string(i) + " OOBCFC ", 0), 0U) << call;
        EXPECT_GT(call.size(), std::to_string(i).size() + 8) << "no URL: " << call;
    }
}

TEST_F(RaidClientShowTest, WithoutARestListNoSupportInformationIsAsked) {
    std::string machine = kServer;
    machine.replace(machine.find("\"persist\": false,"), 17,
                    R"("persist": false, "bmc": {"rest_connections": 0},)");
    raidcfg_test::WriteFile(dir_.File("machine.json"), machine);
    auto calls = std::make_shared<std::vector<std::string>>();
    Quillon::RaidConfig::InstallBackendPlatform(std::make_shared<RecordingPlatform>(
        std::make_shared<sim::MachineStore>(dir_.File("machine.json")), calls));
    OutOfBand();
    option_.console_output = false;
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Show(), result::Success);
    EXPECT_TRUE(calls->empty());
    EXPECT_EQ(ReadFile(ShowXmlPath()).find("4096K"), std::string::npos);
}

TEST_F(RaidClientShowTest, ShowLogsEnteringAndExitingOfItsSteps) {
    UseMachine(kServer);
    option_.console_output = false;
    RaidClient client(option_);
    QuietShow(client);
    const std::string log = LogText();
    for (const char* line : {"Entering  service::detail::RaidClient::Show",
                             "Entering  service::detail::RaidClient::ShowIndex",
                             "Entering  service::detail::RaidClient::ShowLSIController",
                             "Exiting  service::detail::RaidClient::ShowVrocController_win",
                             "Exiting  service::detail::RaidClient::Show"}) {
        EXPECT_NE(log.find(line), std::string::npos) << line;
    }
}

} // namespace
