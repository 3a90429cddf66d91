// The save action on a simulated machine: the policy file of every family, the rows and result
// value, the roads by flat number and by named target, and the handler that runs it.
#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "backend/backend_platform.hpp"
#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"
#include "sim/machine_store.hpp"
#include "sim/sim_platform.hpp"
#include "sim/sim_raid_driver.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;
using raidcfg_test::ExpectGolden;
using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::RaidClient;

// The in-band hardware families. LSI 4 has two volumes, dedicated and global hot spares and
// policies of every kind; LSI 7 has no configuration. Microchip 2 numbers its volumes by their
// own ids (1 and 3); only the first has hot spares. Flat numbers: LSI 4 is 1, LSI 7 is 2,
// Microchip 2 is 3, M.2 1 is 4.
const char* const kLocal = R"({"persist": false, "controllers": [
  {"family": "LSI", "id": 4, "product_name": "RAID 9560-8i",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 953869},
     {"id": 1, "state": "Online", "capacity_mb": 953869},
     {"id": 2, "state": "Online", "capacity_mb": 953869},
     {"id": 3, "state": "Online", "capacity_mb": 953869},
     {"id": 4, "state": "Online", "capacity_mb": 953869},
     {"id": 5, "state": "Online", "capacity_mb": 953869},
     {"id": 6, "state": "DHS", "capacity_mb": 953869},
     {"id": 7, "state": "GHS", "capacity_mb": 953869}],
   "volumes": [
     {"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 953869,
      "strip_kb": 256, "write_policy": 1, "read_policy": 1},
     {"id": 1, "name": "data", "raid_level": "10", "spans": [[2, 3], [4, 5]],
      "size_mb": 1907738, "strip_kb": 64, "write_policy": 2, "read_policy": 2, "io_policy": 1,
      "access_policy": 2, "cache_policy": 1, "initialization": 1, "dedicated_spares": [6]}],
   "global_hot_spares": [7]},
  {"family": "LSI", "id": 7, "disks": [{"id": 0, "state": "UGood", "capacity_mb": 476940}]},
  {"family": "MICROCHIP", "id": 2, "product_name": "SmartRAID 3154-8i",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 1831054},
     {"id": 1, "state": "Online", "capacity_mb": 1831054},
     {"id": 2, "state": "Online", "capacity_mb": 1831054},
     {"id": 3, "state": "DHS", "capacity_mb": 1831054},
     {"id": 4, "state": "GHS", "capacity_mb": 1831054}],
   "volumes": [
     {"id": 1, "name": "data", "raid_level": "1", "spans": [[0, 1]], "size_mb": 1831054,
      "strip_kb": 128, "io_policy": 2, "dedicated_spares": [3]},
     {"id": 3, "name": "scratch", "raid_level": "0", "spans": [[2]], "size_mb": 1831054,
      "strip_kb": 256}],
   "global_hot_spares": [4]},
  {"family": "M2", "id": 1, "name": "Marvell 88SE9230",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 228936},
     {"id": 1, "state": "Online", "capacity_mb": 228936}],
   "volumes": [{"id": 0, "name": "boot", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 228936, "strip_kb": 64}]}
]})";

// Software RAID on two controllers: one volume on the first, two on the second.
const char* const kVrocWin = R"({"persist": false, "controllers": [
  {"family": "VROC_WIN", "id": 0, "name": "Intel VROC",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 3662109},
     {"id": 1, "state": "Online", "capacity_mb": 3662109},
     {"id": 2, "state": "Online", "capacity_mb": 3662109},
     {"id": 3, "state": "GHS", "capacity_mb": 3662109}],
   "volumes": [{"id": 0, "name": "Volume0", "raid_level": "5", "spans": [[0, 1, 2]],
                "size_mb": 7324218, "strip_kb": 64, "write_policy": 1}],
   "global_hot_spares": [3]},
  {"family": "VROC_WIN", "id": 1, "name": "Intel VROC",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 915527},
     {"id": 1, "state": "Online", "capacity_mb": 915527},
     {"id": 2, "state": "Online", "capacity_mb": 915527}],
   "volumes": [
     {"id": 0, "name": "mirror", "raid_level": "1", "spans": [[0, 1]], "size_mb": 102400,
      "strip_kb": 128},
     {"id": 1, "name": "fast", "raid_level": "0", "spans": [[2]], "size_mb": 915527,
      "strip_kb": 32}]}
]})";

// The out-of-band families. OOB_LSI 1 has no configuration; OOB_MICROCHIP 5 reports its triple
// mirror levels in the short form. Flat numbers: OOB_LSI 3 is 1, OOB_LSI 1 is 2, OOB_MICROCHIP 5
// is 3, OOB_VROC 8 is 4, OOB_M2 6 is 5.
const char* const kOob = R"({"persist": false, "controllers": [
  {"family": "OOB_LSI", "id": 3, "product_name": "RAID 940-8i", "vendor": "Broadcom",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 953869},
     {"id": 1, "state": "Online", "capacity_mb": 953869},
     {"id": 2, "state": "DHS", "capacity_mb": 953869},
     {"id": 3, "state": "GHS", "capacity_mb": 953869}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 953869,
                "strip_kb": 256, "write_policy": 1, "read_policy": 1, "cache_policy": 2,
                "dedicated_spares": [2]}],
   "global_hot_spares": [3]},
  {"family": "OOB_LSI", "id": 1, "disks": []},
  {"family": "OOB_MICROCHIP", "id": 5, "product_name": "SmartRAID 3254-8i",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 1831054},
     {"id": 1, "state": "Online", "capacity_mb": 1831054},
     {"id": 2, "state": "Online", "capacity_mb": 1831054},
     {"id": 3, "state": "Online", "capacity_mb": 1831054},
     {"id": 4, "state": "Online", "capacity_mb": 1831054},
     {"id": 5, "state": "Online", "capacity_mb": 1831054},
     {"id": 6, "state": "DHS", "capacity_mb": 1831054}],
   "volumes": [
     {"id": 0, "name": "triple", "raid_level": "1T", "spans": [[0, 1, 2]], "size_mb": 1831054,
      "strip_kb": 128, "write_policy": 3, "read_policy": 1, "dedicated_spares": [6]},
     {"id": 1, "name": "", "raid_level": "1", "spans": [[3, 4]], "size_mb": 1831054,
      "strip_kb": 256, "write_policy": 1}]},
  {"family": "OOB_VROC", "id": 8, "product_name": "Intel VROC",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 915527},
     {"id": 1, "state": "Online", "capacity_mb": 915527},
     {"id": 2, "state": "Online", "capacity_mb": 915527},
     {"id": 3, "state": "Online", "capacity_mb": 915527},
     {"id": 4, "state": "GHS", "capacity_mb": 915527}],
   "volumes": [{"id": 0, "name": "Volume1", "raid_level": "10", "spans": [[0, 1], [2, 3]],
                "size_mb": 1831054, "strip_kb": 64}],
   "global_hot_spares": [4]},
  {"family": "OOB_M2", "id": 6, "name": "Marvell 88SE9230",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 228936},
     {"id": 1, "state": "Online", "capacity_mb": 228936}],
   "volumes": [{"id": 0, "name": "boot", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 228936, "strip_kb": 64}]}
]})";

// A CFC system with one controller of each vendor kind; each has a volume, and the first two
// global hot spares.
const char* const kCfc = R"({"persist": false, "controllers": [
  {"family": "OOB_CFC", "id": 0, "vendor": "Broadcom",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 915527},
     {"id": 1, "state": "Online", "capacity_mb": 915527},
     {"id": 2, "state": "GHS", "capacity_mb": 915527}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 915527,
                "strip_kb": 256, "write_policy": 1, "read_policy": 2, "io_policy": 1,
                "access_policy": 3, "cache_policy": 2, "initialization": 1}],
   "global_hot_spares": [2]},
  {"family": "OOB_CFC", "id": 1, "vendor": "Microchip",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 1831054},
     {"id": 1, "state": "Online", "capacity_mb": 1831054},
     {"id": 2, "state": "Online", "capacity_mb": 1831054},
     {"id": 3, "state": "DHS", "capacity_mb": 1831054},
     {"id": 4, "state": "GHS", "capacity_mb": 1831054}],
   "volumes": [{"id": 0, "name": "data", "raid_level": "5", "spans": [[0, 1, 2]],
                "size_mb": 3662108, "strip_kb": 256, "write_policy": 1, "read_policy": 1,
                "dedicated_spares": [3]}],
   "global_hot_spares": [4]},
  {"family": "OOB_CFC", "id": 2, "vendor": "Marvell",
   "disks": [
     {"id": 0, "state": "Online", "capacity_mb": 457763},
     {"id": 1, "state": "Online", "capacity_mb": 457763}],
   "volumes": [{"id": 0, "name": "boot", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 457763, "strip_kb": 64}]}
]})";

// The simulated machine, with every RAID driver it makes kept for the test to look at.
struct MadeDriver {
    RaidTarget::Type family;
    std::shared_ptr<sim::SimRaidDriver> driver;
};

class DriverKeepingPlatform : public sim::SimPlatform {
public:
    DriverKeepingPlatform(std::shared_ptr<sim::MachineStore> store,
                          std::shared_ptr<std::vector<MadeDriver>> made)
        : sim::SimPlatform(std::move(store)), made_(std::move(made)) {}
    std::shared_ptr<Quillon::RaidConfig::RaidDriver>
    MakeRaidDriver(RaidTarget::Type family,
                   const QuillonConnection::ConnectionInfo& connection) override {
        auto driver = std::dynamic_pointer_cast<sim::SimRaidDriver>(
            sim::SimPlatform::MakeRaidDriver(family, connection));
        made_->push_back(MadeDriver{family, driver});
        return driver;
    }

private:
    std::shared_ptr<std::vector<MadeDriver>> made_;
};

// The BMC types the drivers of one family were given.
std::vector<int> BmcTypes(const std::vector<MadeDriver>& made, RaidTarget::Type family) {
    std::vector<int> types;
    for (const MadeDriver& entry : made) {
        if (entry.family == family) {
            types.push_back(entry.driver->bmc_type());
        }
    }
    return types;
}

bool Contains(const std::vector<int>& values, int value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

std::vector<std::string> Devices(const RaidClient& client) {
    std::vector<std::string> devices;
    for (const auto& row : client.rows()) {
        devices.push_back(row.device);
    }
    return devices;
}

// The software RAID sections renumbered as if the process-wide count had started at 0 with
// this save, so the golden file does not depend on what ran before in the process.
std::string VolumesCountedFrom(const std::string& text, int first) {
    const std::regex head(R"(-vol(\d+)\])");
    std::string out;
    std::size_t last = 0;
    for (auto it = std::sregex_iterator(text.begin(), text.end(), head);
         it != std::sregex_iterator(); ++it) {
        const std::smatch& match = *it;
        out += text.substr(last, static_cast<std::size_t>(match.position(0)) - last);
        out += "-vol" + std::to_string(std::stoi(match[1].str()) - first) + "]";
        last = static_cast<std::size_t>(match.position(0) + match.length(0));
    }
    return out + text.substr(last);
}

class RaidClientSaveTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = false;
        option_.policy_file = PolicyPath();
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    void UseMachine(const std::string& json) {
        raidcfg_test::WriteFile(dir_.File("machine.json"), json);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(dir_.File("machine.json"), error)) << error;
    }

    // The machine with every RAID driver kept in made.
    void UseKeepingMachine(const std::string& json,
                           const std::shared_ptr<std::vector<MadeDriver>>& made) {
        raidcfg_test::WriteFile(dir_.File("machine.json"), json);
        Quillon::RaidConfig::InstallBackendPlatform(std::make_shared<DriverKeepingPlatform>(
            std::make_shared<sim::MachineStore>(dir_.File("machine.json")), made));
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

    std::string PolicyPath() const { return dir_.File("saved.ini"); }
    std::string Saved() const { return ReadFile(PolicyPath()); }
    std::string LogText() const { return ReadFile(dir_.File("raidcfg.log")); }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
};

// --- Every family, compared with golden files ---

TEST_F(RaidClientSaveTest, LocalSaveWritesLsiMicrochipAndM2SectionsUnderFlatNumbers) {
    UseMachine(kLocal);
    RaidClient client(option_);
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_EQ(Devices(client), (std::vector<std::string>{"ctrl1", "ctrl3", "ctrl4"}));
    for (const auto& row : client.rows()) {
        EXPECT_EQ(row.result, "Success.") << row.device;
        EXPECT_EQ(row.code, Quillon::RaidConfig::RAID_OK) << row.device;
    }
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "save/local.ini", Saved());
}

TEST_F(RaidClientSaveTest, LocalSavePrintsItsHeadingAndTheResultTable) {
    UseMachine(kLocal);
    option_.console_output = true;
    RaidClient client(option_);
    testing::internal::CaptureStdout();
    EXPECT_EQ(client.Save(), result::Success);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "save/local_console.txt",
                 testing::internal::GetCapturedStdout());
}

TEST_F(RaidClientSaveTest, VrocWinSectionsCarryTheSoftwareRaidKeys) {
    UseMachine(kVrocWin);
    const int first = RaidClient::NextVrocWinVolumeNumber();
    RaidClient client(option_);
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_EQ(Devices(client), (std::vector<std::string>{"ctrl1", "ctrl2"}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "save/vroc_win.ini", VolumesCountedFrom(Saved(), first));
}

TEST_F(RaidClientSaveTest, OutOfBandSaveWritesLsiMicrochipVrocAndM2Sections) {
    UseMachine(kOob);
    OutOfBand();
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    // OOB_LSI 1 has no configuration and is left out without a row.
    EXPECT_EQ(Devices(client), (std::vector<std::string>{"ctrl1", "ctrl3", "ctrl4", "ctrl5"}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "save/oob.ini", Saved());
}

TEST_F(RaidClientSaveTest, CfcSaveWritesPoliciesForBroadcomOnlyAndNoHotSparesOrIoPolicy) {
    UseMachine(kCfc);
    OutOfBand();
    option_.cfc = true;
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_EQ(Devices(client), (std::vector<std::string>{"ctrl1", "ctrl2", "ctrl3"}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "save/cfc.ini", Saved());
}

TEST_F(RaidClientSaveTest, NamedTargetsAreWrittenUnderTheirOwnIdsAndM2InTheM2Form) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "3,9,m.2-6";
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::RaidFailsOnSomeTargets);
    ASSERT_EQ(Devices(client), (std::vector<std::string>{"ctrl[3]", "ctrl[9]", "M2-6"}));
    EXPECT_EQ(client.rows()[0].result, "Success.");
    EXPECT_EQ(client.rows()[1].result, "The target ctrl[9] does not exist.");
    EXPECT_EQ(client.rows()[1].code, Quillon::RaidConfig::RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(client.rows()[2].result, "Success.");
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "save/oob_target.ini", Saved());
}

// --- Edge cases ---

TEST_F(RaidClientSaveTest, AFullSaveLeavesOutAControllerWithoutConfigurationWithoutARow) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "OOB_VROC", "id": 0, "disks": [{"id": 0, "state": "UGood"}]},
      {"family": "OOB_VROC", "id": 1,
       "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000}],
       "volumes": [{"id": 0, "name": "v", "raid_level": "0", "spans": [[0]], "size_mb": 1000,
                    "strip_kb": 64}]}]})");
    OutOfBand();
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    ASSERT_EQ(Devices(client), (std::vector<std::string>{"ctrl2"}));
    EXPECT_EQ(Saved(), "[ctrl2-vol0]\n"
                       "    disks=0\n"
                       "    raid_level=0\n"
                       "    vol_name=v\n"
                       "    volume_size=1000MB\n"
                       "    strip_size=64K\n"
                       "\n");
}

TEST_F(RaidClientSaveTest, AllControllersWithoutConfigurationGiveNoRowNoFileAndNoPolicyToSave) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "LSI", "id": 0, "disks": [{"id": 0}]},
      {"family": "M2", "id": 0, "disks": [{"id": 0}]},
      {"family": "VROC_WIN", "id": 0, "disks": [{"id": 0}]}]})");
    option_.console_output = true;
    RaidClient client(option_);
    testing::internal::CaptureStdout();
    const TesselResult outcome(client.Save());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nraidconfig save:\n");
    EXPECT_EQ(outcome.value(), result::RaidNoPolicyToSave);
    EXPECT_EQ(outcome.message(), "There is no raid config policy to save.");
    EXPECT_TRUE(client.rows().empty());
    EXPECT_FALSE(FileExists(PolicyPath()));
}

TEST_F(RaidClientSaveTest, ANamedTargetThatFailsAndOneThatSucceedsGiveTwoRowsAndOneSection) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "1,3";
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::RaidFailsOnSomeTargets);
    ASSERT_EQ(Devices(client), (std::vector<std::string>{"ctrl[1]", "ctrl[3]"}));
    EXPECT_EQ(client.rows()[0].result, "The target ctrl[1] doesn't have config.");
    EXPECT_EQ(client.rows()[0].code, Quillon::RaidConfig::RAID_NO_CONFIG);
    EXPECT_EQ(client.rows()[1].result, "Success.");
    const std::string saved = Saved();
    EXPECT_EQ(saved.rfind("[ctrl3-vol0]\n", 0), 0U) << saved;
    EXPECT_EQ(saved.find("[ctrl1"), std::string::npos) << saved;
}

TEST_F(RaidClientSaveTest, ASingleFailureLeavesAnOlderFileAtThePathAsItWas) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "LSI", "id": 0, "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000}],
       "volumes": [{"id": 0, "raid_level": "0", "spans": [[0]], "size_mb": 1000}],
       "faults": [{"op": "GetConfig", "code": 3, "error_text": "controller is busy"}]}]})");
    const std::string older = "[ctrl1-vol0]\r\n    disks=7\r\n";
    raidcfg_test::WriteFile(PolicyPath(), older);
    RaidClient client(option_);
    EXPECT_EQ(client.Save(),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_OPERATION_FAILED));
    ASSERT_EQ(client.rows().size(), 1U);
    EXPECT_EQ(client.rows()[0].device, "ctrl1");
    EXPECT_EQ(client.rows()[0].result, "controller is busy");
    EXPECT_EQ(client.rows()[0].code, Quillon::RaidConfig::RAID_OPERATION_FAILED);
    EXPECT_EQ(Saved(), older);
}

TEST_F(RaidClientSaveTest, AFlatNumberThatNamesNoControllerIsARowAndTouchesNoFile) {
    UseMachine(kLocal);
    option_.ctrl_index = "9";
    raidcfg_test::WriteFile(PolicyPath(), "older");
    RaidClient client(option_);
    EXPECT_EQ(client.Save(), result::RaidTargetNotExist);
    ASSERT_EQ(client.rows().size(), 1U);
    EXPECT_EQ(client.rows()[0].device, "ctrl9");
    EXPECT_EQ(client.rows()[0].result, "The controller ID 9 does not exist.");
    EXPECT_EQ(client.rows()[0].code, Quillon::RaidConfig::RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(Saved(), "older");
}

TEST_F(RaidClientSaveTest, AControllerNamedByItsFlatNumberWithoutConfigurationIsARow) {
    UseMachine(kLocal);
    option_.ctrl_index = "2";
    RaidClient client(option_);
    EXPECT_EQ(client.Save(), result::RaidNoPolicyToSave);
    ASSERT_EQ(client.rows().size(), 1U);
    EXPECT_EQ(client.rows()[0].device, "ctrl2");
    EXPECT_EQ(client.rows()[0].result, "The controller ID 2 doesn't have config.");
    EXPECT_EQ(client.rows()[0].code, Quillon::RaidConfig::RAID_NO_CONFIG);
    EXPECT_FALSE(FileExists(PolicyPath()));
}

TEST_F(RaidClientSaveTest, AnM2ControllerNamedByItsFlatNumberIsWrittenInTheCtrlForm) {
    UseMachine(kLocal);
    option_.ctrl_index = "4";
    RaidClient client(option_);
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_EQ(Devices(client), (std::vector<std::string>{"ctrl4"}));
    EXPECT_EQ(Saved(), "[ctrl4-vol0]\n"
                       "    raid_level=1\n"
                       "    vol_name=boot\n"
                       "    strip_size=64K\n"
                       "\n");
}

TEST_F(RaidClientSaveTest, AnOutOfBandM2ControllerNamedByItsFlatNumberIsWrittenInTheCtrlForm) {
    UseMachine(kOob);
    OutOfBand();
    option_.ctrl_index = "5";
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_EQ(Saved().rfind("[ctrl5-vol0]\n", 0), 0U) << Saved();
}

TEST_F(RaidClientSaveTest, SaveToOutputDirWithATargetLeavesThePathAsGiven) {
    UseMachine(kOob);
    OutOfBand();
    raidcfg_test::TempDir elsewhere;
    option_.policy_file = elsewhere.File("saved.ini");
    option_.save_to_output_dir = true;
    option_.target = "3";
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_TRUE(FileExists(elsewhere.File("saved.ini")));
}

TEST_F(RaidClientSaveTest, SaveToOutputDirWithoutATargetPutsTheOutputDirectoryInFront) {
    UseMachine(kLocal);
    option_.policy_file = "from-output.ini";
    option_.save_to_output_dir = true;
    RaidClient client(option_);
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_TRUE(FileExists(dir_.File("from-output.ini")));
}

TEST_F(RaidClientSaveTest, VrocWinVolumeNumbersRunOnAcrossControllersAndAcrossSaves) {
    UseMachine(kVrocWin);
    const int first = RaidClient::NextVrocWinVolumeNumber();
    {
        RaidClient client(option_);
        EXPECT_EQ(client.Save(), result::Success);
    }
    const std::string saved = Saved();
    for (const std::string& head : {"[ctrl1-vol" + std::to_string(first) + "]",
                                    "[ctrl2-vol" + std::to_string(first + 1) + "]",
                                    "[ctrl2-vol" + std::to_string(first + 2) + "]"}) {
        EXPECT_NE(saved.find(head), std::string::npos) << head << "\n" << saved;
    }
    // The second controller's first volume is never numbered 0.
    EXPECT_EQ(saved.find("[ctrl2-vol0]"), std::string::npos) << saved;
    EXPECT_EQ(RaidClient::NextVrocWinVolumeNumber(), first + 3);

    // A second save in the same process goes on counting.
    RaidClient again(option_);
    EXPECT_EQ(again.Save(), result::Success);
    EXPECT_NE(Saved().find("[ctrl1-vol" + std::to_string(first + 3) + "]"), std::string::npos)
        << Saved();
    EXPECT_EQ(RaidClient::NextVrocWinVolumeNumber(), first + 6);
}

TEST_F(RaidClientSaveTest, AMicrochipVolumeWithoutHotSparesHasNoHotSparesLineOobMicrochipHasOne) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "MICROCHIP", "id": 0,
       "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000}],
       "volumes": [{"id": 0, "name": "a", "raid_level": "0", "spans": [[0]], "size_mb": 1000,
                    "strip_kb": 64}]}]})");
    RaidClient client(option_);
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_EQ(Saved(), "[ctrl1-vol0]\n"
                       "    disks=0\n"
                       "    raid_level=0\n"
                       "    vol_name=a\n"
                       "    io_policy=0\n"
                       "    volume_size=1000MB\n"
                       "    strip_size=64K\n"
                       "\n");

    UseMachine(R"({"persist": false, "controllers": [
      {"family": "OOB_MICROCHIP", "id": 0,
       "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000}],
       "volumes": [{"id": 0, "name": "a", "raid_level": "0", "spans": [[0]], "size_mb": 1000,
                    "strip_kb": 64, "write_policy": 2}]}]})");
    OutOfBand();
    RaidClient oob(option_, Connection());
    EXPECT_EQ(oob.Save(), result::Success);
    EXPECT_EQ(Saved(), "[ctrl1-vol0]\n"
                       "    disks=0\n"
                       "    hot_spares=\n"
                       "    raid_level=0\n"
                       "    vol_name=a\n"
                       "    write_policy=2\n"
                       "    read_policy=0\n"
                       "    volume_size=1000MB\n"
                       "    strip_size=64K\n"
                       "\n");
}

// --- Results and failures ---

TEST_F(RaidClientSaveTest, WithoutAPolicyFileTheSaveIsAnInvalidParameter) {
    UseMachine(kLocal);
    option_.policy_file.clear();
    option_.console_output = true;
    RaidClient client(option_);
    testing::internal::CaptureStdout();
    EXPECT_EQ(client.Save(), result::InvalidParameter);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nraidconfig save:\n");
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientSaveTest, AFileThatCannotBeOpenedKeepsTheRowsButPrintsNoTable) {
    UseMachine(kLocal);
    option_.policy_file = dir_.File("missing/saved.ini");
    option_.console_output = true;
    RaidClient client(option_);
    testing::internal::CaptureStdout();
    EXPECT_EQ(client.Save(), result::FailedOpenFile);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nraidconfig save:\n");
    EXPECT_EQ(client.rows().size(), 3U);
    EXPECT_NE(LogText().find("The file '" + dir_.File("missing/saved.ini") + "' can't be opened."),
              std::string::npos);
}

TEST_F(RaidClientSaveTest, AnotherBackendFailureInTheWalkIsARowWithTheBackendsText) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "OOB_M2", "id": 0, "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000}],
       "volumes": [{"id": 0, "raid_level": "0", "spans": [[0]], "size_mb": 1000}],
       "faults": [{"op": "GetConfig", "code": 4, "error_text": "card does not answer"}]},
      {"family": "OOB_M2", "id": 1, "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000}],
       "volumes": [{"id": 0, "name": "b", "raid_level": "0", "spans": [[0]], "size_mb": 1000,
                    "strip_kb": 32}]}]})");
    OutOfBand();
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::RaidFailsOnSomeTargets);
    ASSERT_EQ(client.rows().size(), 2U);
    EXPECT_EQ(client.rows()[0].result, "card does not answer");
    EXPECT_EQ(client.rows()[0].code, Quillon::RaidConfig::RAID_CONNECT_FAILED);
    // A failure on one controller leaves the others' sections in the file.
    EXPECT_EQ(Saved(), "[ctrl2-vol0]\n"
                       "    raid_level=0\n"
                       "    vol_name=b\n"
                       "    strip_size=32K\n"
                       "\n");
}

TEST_F(RaidClientSaveTest, ATargetNamingAllPassesOverControllersWithoutConfiguration) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_EQ(Devices(client), (std::vector<std::string>{"ctrl[3]", "M2-6"}));
    EXPECT_NE(Saved().find("[m.2-6]\n"), std::string::npos) << Saved();
}

TEST_F(RaidClientSaveTest, AnM2TargetWithoutConfigurationIsARowWhenNamed) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "OOB_M2", "id": 2, "disks": [{"id": 0, "state": "UGood"}]}]})");
    OutOfBand();
    option_.target = "m.2-2";
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::RaidNoPolicyToSave);
    ASSERT_EQ(client.rows().size(), 1U);
    EXPECT_EQ(client.rows()[0].device, "M2-2");
    EXPECT_EQ(client.rows()[0].result, "The target M2-2 doesn't have config.");
    EXPECT_FALSE(FileExists(PolicyPath()));
}

TEST_F(RaidClientSaveTest, OutOfBandTheResultPageIsTitledRaidConfigSave) {
    UseMachine(kOob);
    OutOfBand();
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig Save");
}

// --- The BMC type, asked first out-of-band ---

TEST_F(RaidClientSaveTest, TheBmcTypeFromRestReachesTheLsiBackendBeforeItsConfigIsRead) {
    auto made = std::make_shared<std::vector<MadeDriver>>();
    std::string machine = kOob;
    machine.insert(1, R"("bmc": {"bmc_type": 7},)");
    UseKeepingMachine(machine, made);
    OutOfBand();
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_TRUE(Contains(BmcTypes(*made, RaidTarget::OOB_LSI), 7));
}

TEST_F(RaidClientSaveTest, AVantorV3BmcWhoseTypeQueryFailsCountsAsTypeThree) {
    auto made = std::make_shared<std::vector<MadeDriver>>();
    std::string machine = kOob;
    machine.insert(1, R"("bmc": {"bmc_type": null, "vantor_v3": true},)");
    UseKeepingMachine(machine, made);
    OutOfBand();
    option_.target = "3";
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_TRUE(Contains(BmcTypes(*made, RaidTarget::OOB_LSI), 3));
}

TEST_F(RaidClientSaveTest, WithoutRestTheBmcTypeComesThroughCimAndReachesTheCfcBackend) {
    auto made = std::make_shared<std::vector<MadeDriver>>();
    std::string machine = kCfc;
    machine.insert(1, R"("bmc": {"rest": false, "bmc_type": 5},)");
    UseKeepingMachine(machine, made);
    OutOfBand();
    option_.cfc = true;
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::Success);
    EXPECT_TRUE(Contains(BmcTypes(*made, RaidTarget::OOB_CFC), 5));
}

TEST_F(RaidClientSaveTest, ABmcTypeThatCannotBeHadEndsTheSaveBeforeAnyRow) {
    std::string machine = kOob;
    machine.insert(1, R"("bmc": {"bmc_type": null},)");
    UseMachine(machine);
    OutOfBand();
    RaidClient client(option_, Connection());
    EXPECT_EQ(client.Save(), result::ConnectionFailed);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_FALSE(FileExists(PolicyPath()));
    // The policy file is asked for first.
    option_.policy_file.clear();
    RaidClient without_file(option_, Connection());
    EXPECT_EQ(without_file.Save(), result::InvalidParameter);
}

TEST_F(RaidClientSaveTest, TheLocalRoadAsksNoBmcType) {
    std::string machine = kLocal;
    machine.insert(1, R"("bmc": {"bmc_type": null, "rest": false, "cim": false},)");
    UseMachine(machine);
    RaidClient client(option_);
    EXPECT_EQ(client.Save(), result::Success);
}

// --- The handler ---

class RaidSaveHandlerTest : public RaidClientSaveTest {
protected:
    TesselResult Run() {
        option_.command = "save";
        service::detail::ServiceRaidImpl impl(option_);
        TesselResult outcome = impl.Run();
        results_ = impl.results();
        return outcome;
    }
    std::map<std::string, std::string> results_;
};

TEST_F(RaidSaveHandlerTest, TheLocalRoadSavesTakesTheRowsAndWritesNoPage) {
    UseMachine(kLocal);
    EXPECT_EQ(Run().value(), result::Success);
    EXPECT_TRUE(FileExists(PolicyPath()));
    EXPECT_EQ(results_.size(), 3U);
    EXPECT_EQ(results_["ctrl1"], "Success.");
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
}

TEST_F(RaidSaveHandlerTest, OutOfBandSavesAndWritesTheResultPage) {
    UseMachine(kOob);
    OutOfBand();
    EXPECT_EQ(Run().value(), result::Success);
    EXPECT_TRUE(FileExists(PolicyPath()));
    EXPECT_EQ(results_["ctrl5"], "Success.");
    const std::string page = ReadFile(dir_.File("raid_result.html"));
    EXPECT_NE(page.find("RaidConfig Save"), std::string::npos) << page;
    EXPECT_NE(page.find("Save Configuration Result"), std::string::npos) << page;
}

TEST_F(RaidSaveHandlerTest, OutOfBandAFailedConnectionReturnsItsBareCode) {
    UseMachine(kOob);
    OutOfBand();
    option_.connect_option.password = "wrong";
    EXPECT_EQ(Run().code(), 12);
    EXPECT_FALSE(FileExists(PolicyPath()));
}

TEST_F(RaidSaveHandlerTest, TheInBandRoadWithATargetIsServedByTheInBandDriver) {
    UseMachine(kLocal);
    option_.target = "all";
    EXPECT_NE(Run().value(), result::GenericFailure);
    EXPECT_TRUE(FileExists(PolicyPath()));
}

} // namespace
