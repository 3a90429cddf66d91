// The add action on a simulated machine: every family's order of steps, the rows it leaves and
// the volumes and hot spares that appear in the machine file, on the flat-number road and on the
// named-target road, and the handler's roads around it.
#include <cstdint>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "backend/backend_platform.hpp"
#include "backend/m2_controller_object.hpp"
#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/result_values.hpp"
#include "result/tessel_result.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"
#include "sim/machine.hpp"
#include "sim/machine_store.hpp"
#include "sim/sim_platform.hpp"
#include "sim/sim_raid_driver.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/service/misc_raid_service/detail/client_rows.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::RaidClient;

// In-band: LSI 4, Microchip 2, M.2 1 and software RAID 0 stand under 1, 2, 3 and 4.
const char* const kLocal = R"({"controllers": [
  {"family": "LSI", "id": 4, "product_name": "RAID 9560-8i",
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 953869},
             {"id": 1, "state": "Online", "capacity_mb": 953869},
             {"id": 2, "capacity_mb": 953869}, {"id": 3, "capacity_mb": 953869},
             {"id": 4, "capacity_mb": 953869}, {"id": 5, "capacity_mb": 953869}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 953869, "strip_kb": 256}]},
  {"family": "MICROCHIP", "id": 2, "product_name": "SmartRAID 3154-8i",
   "disks": [{"id": 0, "capacity_mb": 953869}, {"id": 1, "capacity_mb": 953869},
             {"id": 2, "capacity_mb": 953869}, {"id": 3, "capacity_mb": 953869}]},
  {"family": "M2", "id": 1, "name": "Marvell 88SE9230", "min_stripe_kb": 32,
   "max_stripe_kb": 512,
   "disks": [{"id": 0, "capacity_mb": 228936}, {"id": 1, "capacity_mb": 228936}]},
  {"family": "VROC_WIN", "id": 0, "name": "Intel VROC",
   "disks": [{"id": 0, "capacity_mb": 915527}, {"id": 1, "capacity_mb": 915527},
             {"id": 2, "capacity_mb": 915527}, {"id": 3, "capacity_mb": 915527}]}
]})";

// One section per in-band family, hot spares where the family takes them.
const char* const kLocalPolicy = R"([ctrl1]
global_hot_spares=5
[ctrl1-vol1]
disks=2,3
raid_level=1
vol_name=data
volume_size=100GB
[ctrl2]
global_hot_spares=3
[ctrl2-vol0]
disks=0,1
raid_level=1
vol_name=fast
volume_size=100GB
[ctrl3-vol0]
raid_level=1
vol_name=boot
strip_size=64K
[ctrl4]
global_hot_spares=3
[ctrl4-vol0]
raid_level=1
vol_name=mirror
disks=0,1
vol_capacity=100GB
)";

// Out-of-band: LSI 3, Microchip 5, VROC 0 and M.2 6 stand under 1, 2, 3 and 4.
const char* const kOob = R"({"controllers": [
  {"family": "OOB_LSI", "id": 3, "product_name": "RAID 940-8i",
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 953869},
             {"id": 1, "state": "Online", "capacity_mb": 953869},
             {"id": 2, "capacity_mb": 953869}, {"id": 3, "capacity_mb": 953869},
             {"id": 4, "capacity_mb": 953869}, {"id": 5, "capacity_mb": 953869}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 953869, "strip_kb": 256}]},
  {"family": "OOB_MICROCHIP", "id": 5, "product_name": "SmartRAID 3254-8i",
   "disks": [{"id": 0, "capacity_mb": 953869}, {"id": 1, "capacity_mb": 953869},
             {"id": 2, "capacity_mb": 953869}, {"id": 3, "capacity_mb": 953869}]},
  {"family": "OOB_VROC", "id": 0, "product_name": "Intel VROC",
   "disks": [{"id": 0, "capacity_mb": 915527}, {"id": 1, "capacity_mb": 915527},
             {"id": 2, "capacity_mb": 915527}, {"id": 3, "capacity_mb": 915527}]},
  {"family": "OOB_M2", "id": 6, "name": "Marvell 88SE9230",
   "disks": [{"id": 0, "capacity_mb": 228936}, {"id": 1, "capacity_mb": 228936}]}
]})";

const char* const kOobPolicy = R"([ctrl1]
global_hot_spares=5
[ctrl1-vol1]
disks=2,3
raid_level=1
vol_name=data
volume_size=100GB
[ctrl2-vol0]
disks=0,1
raid_level=1
vol_name=fast
volume_size=100GB
[ctrl3]
global_hot_spares=3
[ctrl3-vol0]
disks=0,1
raid_level=1
vol_name=mirror
volume_size=100GB
[ctrl4-vol0]
raid_level=1
vol_name=boot
strip_size=64K
)";

// A CFC system: one controller of each vendor kind, under 1, 2 and 3.
const char* const kCfc = R"({"controllers": [
  {"family": "OOB_CFC", "id": 0, "vendor": "Broadcom", "raid_levels": ["0", "1"],
   "disks": [{"id": 0, "capacity_mb": 953869}, {"id": 1, "capacity_mb": 953869},
             {"id": 2, "capacity_mb": 953869}, {"id": 3, "capacity_mb": 953869}]},
  {"family": "OOB_CFC", "id": 1, "vendor": "Microchip", "raid_levels": ["0", "1", "5"],
   "disks": [{"id": 0, "capacity_mb": 953869}, {"id": 1, "capacity_mb": 953869},
             {"id": 2, "capacity_mb": 953869}]},
  {"family": "OOB_CFC", "id": 2, "vendor": "Marvell", "raid_levels": ["0", "1"],
   "disks": [{"id": 0, "capacity_mb": 228936}, {"id": 1, "capacity_mb": 228936}]}
]})";

const char* const kCfcPolicy = R"([ctrl1]
global_hot_spares=3
[ctrl1-vol0]
disks=0,1
raid_level=1
vol_name=os
volume_size=100GB
write_policy=1
[ctrl2-vol0]
disks=0,1,2
raid_level=5
volume_size=100GB
[ctrl3-vol0]
disks=0,1
raid_level=1
vol_name=boot
volume_size=100GB
)";

// Named targets: two LSI and two M.2 controllers reached through the BMC.
const char* const kTargets = R"({"controllers": [
  {"family": "OOB_LSI", "id": 3,
   "disks": [{"id": 0, "capacity_mb": 953869}, {"id": 1, "capacity_mb": 953869},
             {"id": 2, "capacity_mb": 953869}, {"id": 3, "capacity_mb": 953869}]},
  {"family": "OOB_LSI", "id": 1, "disks": [{"id": 0, "capacity_mb": 953869}]},
  {"family": "OOB_M2", "id": 6,
   "disks": [{"id": 0, "capacity_mb": 228936}, {"id": 1, "capacity_mb": 228936}]},
  {"family": "OOB_M2", "id": 7,
   "disks": [{"id": 0, "capacity_mb": 228936}, {"id": 1, "capacity_mb": 228936}]}
]})";

using client_test::Row;
using client_test::Rows;

const std::string kCreated = "Volume has been created successfully.";
const std::string kSpare = "Disk has been assigned global hot spare sucessfully.";

// The simulated machine with an in-band M.2 backend that notes each strip size it is handed.
class StripRecordingDriver : public sim::SimRaidDriver {
public:
    StripRecordingDriver(std::shared_ptr<sim::MachineStore> store,
                         std::shared_ptr<std::vector<std::string>> strips)
        : sim::SimRaidDriver(std::move(store), "M2"), strips_(std::move(strips)) {}
    using sim::SimRaidDriver::Add;
    Code Add(const Quillon::RaidConfig::M2ControllerObject& request,
             std::string& error_text) override {
        strips_->push_back(request.strip_size);
        return sim::SimRaidDriver::Add(request, error_text);
    }

private:
    std::shared_ptr<std::vector<std::string>> strips_;
};

class StripRecordingPlatform : public sim::SimPlatform {
public:
    StripRecordingPlatform(std::shared_ptr<sim::MachineStore> store,
                           std::shared_ptr<std::vector<std::string>> strips)
        : sim::SimPlatform(store), store_(std::move(store)), strips_(std::move(strips)) {}
    std::shared_ptr<Quillon::RaidConfig::RaidDriver>
    MakeRaidDriver(Quillon::RaidConfig::RaidTarget::Type family,
                   const QuillonConnection::ConnectionInfo& connection) override {
        if (family == Quillon::RaidConfig::RaidTarget::M2) {
            return std::make_shared<StripRecordingDriver>(store_, strips_);
        }
        return sim::SimPlatform::MakeRaidDriver(family, connection);
    }

private:
    std::shared_ptr<sim::MachineStore> store_;
    std::shared_ptr<std::vector<std::string>> strips_;
};

class RaidClientAddTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
        option_.assume_yes = true;
        option_.policy_file = PolicyPath();
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    std::string MachinePath() const { return dir_.File("machine.json"); }
    std::string PolicyPath() const { return dir_.File("policy.ini"); }

    void UseMachine(const std::string& json) {
        raidcfg_test::WriteFile(MachinePath(), json);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(MachinePath(), error)) << error;
    }
    void WritePolicy(const std::string& text) const { raidcfg_test::WriteFile(PolicyPath(), text); }

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

    // Runs Add and keeps what it printed.
    std::uint32_t RunAdd(RaidClient& client) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = client.Add();
        printed_ = testing::internal::GetCapturedStdout();
        return value;
    }

    sim::Machine Machine() const {
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(sim::MachineStore(MachinePath()).Read(machine, error)) << error;
        return machine;
    }
    static const sim::Controller* Find(const sim::Machine& machine, const std::string& family,
                                       int id) {
        for (const sim::Controller& controller : machine.controllers) {
            if (controller.family == family && controller.id == id) {
                return &controller;
            }
        }
        return nullptr;
    }
    static const sim::Volume* FindVolume(const sim::Controller& controller,
                                         const std::string& name) {
        for (const sim::Volume& volume : controller.volumes) {
            if (volume.name == name) {
                return &volume;
            }
        }
        return nullptr;
    }
    static const sim::Disk* FindDisk(const sim::Controller& controller, int id) {
        for (const sim::Disk& disk : controller.disks) {
            if (disk.id == id) {
                return &disk;
            }
        }
        return nullptr;
    }
    static std::vector<std::string> VolumeNames(const sim::Controller& controller) {
        std::vector<std::string> names;
        for (const sim::Volume& volume : controller.volumes) {
            names.push_back(volume.name);
        }
        return names;
    }

    // The machine file with a fault list added to one controller, found by its opening text.
    static std::string WithFaults(const std::string& json, const std::string& controller_head,
                                  const std::string& faults) {
        std::string text = json;
        const std::size_t at = text.find(controller_head);
        EXPECT_NE(at, std::string::npos) << controller_head;
        text.insert(at + controller_head.size(), " \"faults\": " + faults + ",");
        return text;
    }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
    std::string printed_;
};

// --- Every family on the flat-number road ---

TEST_F(RaidClientAddTest, LocalFamiliesCreateTheirVolumesAndHotSparesInTheirOwnOrder) {
    UseMachine(kLocal);
    WritePolicy(kLocalPolicy);
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::Success);
    // LSI: hot spares first; Microchip and software RAID: volumes first; M.2: one volume.
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk5", kSpare, 0},
                                              {"ctrl1-vol1", kCreated, 0},
                                              {"ctrl2-vol0", kCreated, 0},
                                              {"ctrl2-disk3", kSpare, 0},
                                              {"ctrl3-vol0", kCreated, 0},
                                              {"ctrl4-vol0", kCreated, 0},
                                              {"ctrl4-disk3", kSpare, 0}}));
    EXPECT_NE(printed_.find("Add Configuration Result"), std::string::npos) << printed_;

    const sim::Machine machine = Machine();
    const sim::Controller* lsi = Find(machine, "LSI", 4);
    ASSERT_NE(lsi, nullptr);
    const sim::Volume* data = FindVolume(*lsi, "data");
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->raid_level, "1");
    EXPECT_EQ(data->spans, (std::vector<std::vector<int>>{{2, 3}}));
    EXPECT_EQ(data->size_mb, 102400);
    EXPECT_EQ(data->strip_kb, 128);
    EXPECT_EQ(lsi->global_hot_spares, std::vector<int>{5});
    EXPECT_EQ(FindDisk(*lsi, 5)->state, "GHS");

    const sim::Controller* microchip = Find(machine, "MICROCHIP", 2);
    ASSERT_NE(microchip, nullptr);
    ASSERT_NE(FindVolume(*microchip, "fast"), nullptr);
    EXPECT_EQ(FindVolume(*microchip, "fast")->spans, (std::vector<std::vector<int>>{{0, 1}}));
    EXPECT_EQ(microchip->global_hot_spares, std::vector<int>{3});

    const sim::Controller* m2 = Find(machine, "M2", 1);
    ASSERT_NE(m2, nullptr);
    ASSERT_NE(FindVolume(*m2, "boot"), nullptr);
    EXPECT_EQ(FindVolume(*m2, "boot")->strip_kb, 64);

    const sim::Controller* vroc = Find(machine, "VROC_WIN", 0);
    ASSERT_NE(vroc, nullptr);
    ASSERT_NE(FindVolume(*vroc, "mirror"), nullptr);
    EXPECT_EQ(FindVolume(*vroc, "mirror")->size_mb, 102400);
    EXPECT_EQ(vroc->global_hot_spares, std::vector<int>{3});
}

TEST_F(RaidClientAddTest, OutOfBandFamiliesCreateTheirVolumesAndHotSparesInTheirOwnOrder) {
    UseMachine(kOob);
    OutOfBand();
    WritePolicy(kOobPolicy);
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk5", kSpare, 0},
                                              {"ctrl1-vol1", kCreated, 0},
                                              {"ctrl2-vol0", kCreated, 0},
                                              {"ctrl3-disk3", kSpare, 0},
                                              {"ctrl3-vol0", kCreated, 0},
                                              {"ctrl4-vol0", kCreated, 0}}));
    EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig Add");

    const sim::Machine machine = Machine();
    const sim::Controller* lsi = Find(machine, "OOB_LSI", 3);
    ASSERT_NE(lsi, nullptr);
    ASSERT_NE(FindVolume(*lsi, "data"), nullptr);
    EXPECT_EQ(lsi->global_hot_spares, std::vector<int>{5});
    const sim::Controller* microchip = Find(machine, "OOB_MICROCHIP", 5);
    ASSERT_NE(microchip, nullptr);
    ASSERT_NE(FindVolume(*microchip, "fast"), nullptr);
    EXPECT_EQ(FindVolume(*microchip, "fast")->size_mb, 102400);
    const sim::Controller* vroc = Find(machine, "OOB_VROC", 0);
    ASSERT_NE(vroc, nullptr);
    ASSERT_NE(FindVolume(*vroc, "mirror"), nullptr);
    EXPECT_EQ(vroc->global_hot_spares, std::vector<int>{3});
    const sim::Controller* m2 = Find(machine, "OOB_M2", 6);
    ASSERT_NE(m2, nullptr);
    ASSERT_NE(FindVolume(*m2, "boot"), nullptr);
    EXPECT_EQ(FindVolume(*m2, "boot")->strip_kb, 64);
}

TEST_F(RaidClientAddTest, CfcControllersOfEveryVendorTakeTheirSections) {
    UseMachine(kCfc);
    OutOfBand();
    option_.cfc = true;
    WritePolicy(kCfcPolicy);
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk3", kSpare, 0},
                                              {"ctrl1-vol0", kCreated, 0},
                                              {"ctrl2-vol0", kCreated, 0},
                                              {"ctrl3-vol0", kCreated, 0}}));
    const sim::Machine machine = Machine();
    const sim::Controller* broadcom = Find(machine, "OOB_CFC", 0);
    ASSERT_NE(broadcom, nullptr);
    ASSERT_NE(FindVolume(*broadcom, "os"), nullptr);
    EXPECT_EQ(FindVolume(*broadcom, "os")->write_policy, 1);
    EXPECT_EQ(broadcom->global_hot_spares, std::vector<int>{3});
    const sim::Controller* microchip = Find(machine, "OOB_CFC", 1);
    ASSERT_NE(microchip, nullptr);
    ASSERT_EQ(microchip->volumes.size(), 1u);
    EXPECT_EQ(microchip->volumes.front().raid_level, "5");
    const sim::Controller* marvell = Find(machine, "OOB_CFC", 2);
    ASSERT_NE(marvell, nullptr);
    EXPECT_NE(FindVolume(*marvell, "boot"), nullptr);
}

TEST_F(RaidClientAddTest, CfcChecksTheLevelAgainstWhatTheControllerOffers) {
    UseMachine(kCfc);
    OutOfBand();
    option_.cfc = true;
    WritePolicy("[ctrl3-vol0]\ndisks=0,1\nraid_level=5\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidResultFromError(Quillon::RaidConfig::RAID_POLICY_ERROR));
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl3", "raid_level -> 5 is out of scope", 9}}));
    EXPECT_TRUE(Find(Machine(), "OOB_CFC", 2)->volumes.empty());
}

TEST_F(RaidClientAddTest, CfcControllerThatCannotTellItsLevelsLeavesNoRow) {
    UseMachine(WithFaults(kCfc, R"("family": "OOB_CFC", "id": 0,)",
                          R"([{"op": "GetSupportedRaidLevels", "code": 3, "error_text": "x"}])"));
    OutOfBand();
    option_.cfc = true;
    WritePolicy(kCfcPolicy);
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl2-vol0", kCreated, 0}, {"ctrl3-vol0", kCreated, 0}}));
    EXPECT_TRUE(Find(Machine(), "OOB_CFC", 0)->volumes.empty());
    EXPECT_TRUE(Find(Machine(), "OOB_CFC", 0)->global_hot_spares.empty());
}

TEST_F(RaidClientAddTest, CfcControllerThatCannotBeReadLeavesNoRow) {
    UseMachine(WithFaults(kCfc, R"("family": "OOB_CFC", "id": 0,)",
                          R"([{"op": "GetController", "code": 4, "error_text": "x"}])"));
    OutOfBand();
    option_.cfc = true;
    WritePolicy("[ctrl1-vol0]\ndisks=0,1\nraid_level=1\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    // The only controller of the file leaves no row: the action found nothing to report.
    EXPECT_EQ(RunAdd(client), result::RaidIniFileError);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_TRUE(Find(Machine(), "OOB_CFC", 0)->volumes.empty());
}

// --- The edge cases of the action ---

TEST_F(RaidClientAddTest, DeclinedConfirmationTouchesNothingAndPrintsNoResultTable) {
    UseMachine(kLocal);
    WritePolicy(kLocalPolicy);
    const std::string before = ReadFile(MachinePath());
    option_.assume_yes = false;
    RaidClient client(option_);
    std::istringstream answer("n\n");
    client.SetInput(answer);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_NE(printed_.find("Are you sure you want to continue creating the config."),
              std::string::npos)
        << printed_;
    EXPECT_EQ(printed_.find("Add Configuration Result"), std::string::npos) << printed_;
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientAddTest, AcceptedConfirmationCreatesTheConfiguration) {
    UseMachine(kLocal);
    WritePolicy("[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    option_.assume_yes = false;
    RaidClient client(option_);
    std::istringstream answer("y\n");
    client.SetInput(answer);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-vol1", kCreated, 0}}));
    EXPECT_NE(FindVolume(*Find(Machine(), "LSI", 4), "data"), nullptr);
}

TEST_F(RaidClientAddTest, ThePolicyFileIsShownBeforeTheConfirmation) {
    UseMachine(kLocal);
    WritePolicy("; a comment\n[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\n"
                "volume_size=100GB\n");
    option_.assume_yes = false;
    RaidClient client(option_);
    std::istringstream answer("no\n");
    client.SetInput(answer);
    EXPECT_EQ(RunAdd(client), result::Success);
    const std::size_t heading = printed_.find("\nraidconfig add:\n");
    const std::size_t preview =
        printed_.find("\nThe policy file:\n\n[ctrl1-vol1]\n    disks=2,3\n");
    const std::size_t prompt = printed_.find("Are you sure you want to continue creating");
    ASSERT_NE(heading, std::string::npos) << printed_;
    ASSERT_NE(preview, std::string::npos) << printed_;
    ASSERT_NE(prompt, std::string::npos) << printed_;
    EXPECT_LT(heading, preview);
    EXPECT_LT(preview, prompt);
    EXPECT_EQ(printed_.find("a comment"), std::string::npos) << printed_;
}

TEST_F(RaidClientAddTest, TargetIdThatTheFileLacksIsAPolicyRowNamingTheBracketedDevice) {
    UseMachine(kTargets);
    OutOfBand();
    option_.target = "1,3";
    WritePolicy("[ctrl3-vol0]\ndisks=0,1\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{
                  {"ctrl[1]", "Policy file doesn't contain controller ctrl[1] raid policy.", 9},
                  {"vol[3-0]", kCreated, 0}}));
    EXPECT_TRUE(Find(Machine(), "OOB_LSI", 1)->volumes.empty());
    EXPECT_NE(FindVolume(*Find(Machine(), "OOB_LSI", 3), "data"), nullptr);
}

TEST_F(RaidClientAddTest, TargetAllWorksFromTheFileAndLeavesUnnamedControllersAlone) {
    UseMachine(kTargets);
    OutOfBand();
    option_.target = "all";
    WritePolicy("[ctrl3-vol0]\ndisks=0,1\nraid_level=1\nvol_name=data\nvolume_size=100GB\n"
                "[ctrl9-vol0]\ndisks=0,1\nraid_level=1\nvol_name=gone\nvolume_size=100GB\n"
                "[m.2-6]\nraid_level=1\nvol_name=boot\nstrip_size=64K\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"vol[3-0]", kCreated, 0},
                                              {"ctrl[9]", "The target ctrl[9] does not exist.", 5},
                                              {"M2-6", kCreated, 0}}));
    const sim::Machine machine = Machine();
    EXPECT_TRUE(Find(machine, "OOB_LSI", 1)->volumes.empty());
    EXPECT_TRUE(Find(machine, "OOB_M2", 7)->volumes.empty());
    EXPECT_NE(FindVolume(*Find(machine, "OOB_M2", 6), "boot"), nullptr);
}

TEST_F(RaidClientAddTest, TargetRoadAssignsHotSparesBeforeVolumesUnderBracketedNames) {
    UseMachine(kTargets);
    OutOfBand();
    option_.target = "3";
    WritePolicy("[ctrl3]\nglobal_hot_spares=3,7\n"
                "[ctrl3-vol0]\ndisks=0,1\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[3-3]", kSpare, 0},
                                {"disk[3-7]", "The target disk[3-7] does not exist.", 5},
                                {"vol[3-0]", kCreated, 0}}));
    const sim::Machine machine = Machine();
    const sim::Controller* lsi = Find(machine, "OOB_LSI", 3);
    EXPECT_EQ(lsi->global_hot_spares, std::vector<int>{3});
    EXPECT_NE(FindVolume(*lsi, "data"), nullptr);
}

TEST_F(RaidClientAddTest, TargetHotSpareThatTheControllerRefusesHasItsOwnWords) {
    UseMachine(WithFaults(kTargets, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "AddGlobalHotSpare", "code": 15, "error_text": "busy"},
                              {"op": "Add", "code": 3, "error_text": "no room"}])"));
    OutOfBand();
    option_.target = "3";
    WritePolicy("[ctrl3]\nglobal_hot_spares=2\n"
                "[ctrl3-vol0]\ndisks=0,1\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[3-2]", "The target disk[3-2] can't do addhsp operation", 15},
                                {"vol[3-0]", "no room", 3}}));
}

TEST_F(RaidClientAddTest, TargetSectionThatFailsItsCheckIsARowWithCodeNine) {
    UseMachine(kTargets);
    OutOfBand();
    option_.target = "3";
    WritePolicy("[ctrl3]\nglobal_hot_spares=2\n"
                "[ctrl3-vol0]\ndisks=0,1\nraid_level=7\nvol_name=data\nvolume_size=100GB\n");
    const std::string before = ReadFile(MachinePath());
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidResultFromError(Quillon::RaidConfig::RAID_POLICY_ERROR));
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl[3]", "raid_level -> 7 is out of scope", 9}}));
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientAddTest, M2TargetsAreNamedByTheirOwnIdAndChecked) {
    UseMachine(kTargets);
    OutOfBand();
    option_.target = "m2-6,m2-7,m2-8";
    WritePolicy("[m.2-6]\nraid_level=1\nvol_name=boot\nstrip_size=64K\n"
                "[m.2-7]\nraid_level=5\nvol_name=boot\nstrip_size=64K\n"
                "[m.2-8]\nraid_level=1\nvol_name=boot\nstrip_size=64K\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"M2-6", kCreated, 0},
                                              {"M2-7", "raid_level -> 5 is out of scope", 9},
                                              {"M2-8", "The target M2-8 does not exist.", 5}}));
}

TEST_F(RaidClientAddTest, M2TargetThatTheFileLacksIsAPolicyRow) {
    UseMachine(kTargets);
    OutOfBand();
    option_.target = "m2-7";
    WritePolicy("[m.2-6]\nraid_level=1\nvol_name=boot\nstrip_size=64K\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidResultFromError(Quillon::RaidConfig::RAID_POLICY_ERROR));
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{
                  {"M2-7", "Policy file doesn't contain controller M2-7 raid policy.", 9}}));
}

TEST_F(RaidClientAddTest, TargetRoadWithNothingToDoIsAnIniFileError) {
    UseMachine(kTargets);
    OutOfBand();
    option_.target = "all";
    WritePolicy("[notes]\nowner=lab\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidIniFileError);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_.find("Add Configuration Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientAddTest, TargetIndexThatTheFileLacksIsAPolicyRowBeforeTheIndexMapIsAsked) {
    UseMachine(kLocal);
    WritePolicy(kLocalPolicy);
    option_.ctrl_index = "9";
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::RaidResultFromError(Quillon::RaidConfig::RAID_POLICY_ERROR));
    EXPECT_EQ(
        Rows(client),
        (std::vector<Row>{{"ctrl9", "Policy file doesn't contain controller 9 raid policy.", 9}}));
}

TEST_F(RaidClientAddTest, TargetIndexThatTheFileHoldsButNoControllerHasIsCodeFive) {
    UseMachine(kLocal);
    WritePolicy("[ctrl9-vol0]\ndisks=0,1\nraid_level=1\nvol_name=x\nvolume_size=100GB\n");
    option_.ctrl_index = "9";
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND));
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl9", "The controller ID 9 does not exist.", 5}}));
}

TEST_F(RaidClientAddTest, TargetIndexAppliesThatControllerAlone) {
    UseMachine(kLocal);
    WritePolicy(kLocalPolicy);
    option_.ctrl_index = "3";
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl3-vol0", kCreated, 0}}));
    EXPECT_TRUE(Find(Machine(), "LSI", 4)->global_hot_spares.empty());
}

TEST_F(RaidClientAddTest, SectionOfANumberWithoutControllerIsCodeFiveAndTheOthersGoOn) {
    UseMachine(kLocal);
    WritePolicy("[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n"
                "[ctrl7-vol0]\ndisks=0,1\nraid_level=1\nvol_name=x\nvolume_size=100GB\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-vol1", kCreated, 0},
                                {"ctrl7", "The controller ID 7 does not exist.", 5}}));
}

TEST_F(RaidClientAddTest, FailingHotSpareDoesNotStopTheVolumesOfTheSameController) {
    UseMachine(kOob);
    OutOfBand();
    WritePolicy("[ctrl1]\nglobal_hot_spares=9,0\n"
                "[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-disk9", "The disk ID 9 does not exist.", 5},
                                {"ctrl1-disk0", "The disk 0 can't do addhsp operation", 15},
                                {"ctrl1-vol1", kCreated, 0}}));
    EXPECT_NE(FindVolume(*Find(Machine(), "OOB_LSI", 3), "data"), nullptr);
}

TEST_F(RaidClientAddTest, RefusedHotSpareOfAFamilyWithoutWordsOfItsOwnShowsTheBackendText) {
    UseMachine(kLocal);
    WritePolicy("[ctrl1]\nglobal_hot_spares=0\n[ctrl2]\nglobal_hot_spares=9\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-disk0", "disk 0 is Online, not UGood", 15},
                                {"ctrl2-disk9", "The disk ID 9 does not exist.", 5}}));
}

TEST_F(RaidClientAddTest, TwoVolumesOfOneControllerTheFirstFailingLeaveBothRows) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "Add", "code": 3, "error_text": "no room", "times": 1}])"));
    OutOfBand();
    WritePolicy("[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=first\nvolume_size=100GB\n"
                "[ctrl1-vol2]\ndisks=4,5\nraid_level=1\nvol_name=second\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    const std::uint32_t value = RunAdd(client);
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on some targets.");
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-vol1", "no room", 3}, {"ctrl1-vol2", kCreated, 0}}));
    const sim::Machine machine = Machine();
    const sim::Controller* lsi = Find(machine, "OOB_LSI", 3);
    EXPECT_EQ(VolumeNames(*lsi), (std::vector<std::string>{"os", "second"}));
}

TEST_F(RaidClientAddTest, OobVrocTextsSpeakOfTheFlatNumberInPlaceOfTheOwnId) {
    // VROC 0 stands under 2, behind one LSI controller.
    const std::string machine = R"({"controllers": [
      {"family": "OOB_LSI", "id": 1, "disks": []},
      {"family": "OOB_VROC", "id": 0,
       "faults": [{"op": "Add", "code": 3,
                   "error_text": "ctrl[0] refused it; ctrl[1] was not asked"}],
       "disks": [{"id": 0, "capacity_mb": 915527}, {"id": 1, "capacity_mb": 915527}]}]})";
    UseMachine(machine);
    OutOfBand();
    WritePolicy("[ctrl2-vol0]\ndisks=0,1\nraid_level=1\nvol_name=mirror\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_OPERATION_FAILED));
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl2-vol0", "ctrl[2] refused it; ctrl[1] was not asked", 3}}));
}

TEST_F(RaidClientAddTest, ReplaceControllerIdRewritesEveryMatchAndNothingElse) {
    EXPECT_EQ(RaidClient::ReplaceControllerId("ctrl[0] and ctrl[0]", 0, 2), "ctrl[2] and ctrl[2]");
    EXPECT_EQ(RaidClient::ReplaceControllerId("ctrl[1] stays", 0, 2), "ctrl[1] stays");
    EXPECT_EQ(RaidClient::ReplaceControllerId("ctrl[10] stays", 1, 2), "ctrl[10] stays");
    EXPECT_EQ(RaidClient::ReplaceControllerId("", 0, 2), "");
}

TEST_F(RaidClientAddTest, InBandM2StripSizeInSmallLettersIsCheckedInCapitalsAndPassedAsANumber) {
    raidcfg_test::WriteFile(MachinePath(), kLocal);
    auto store = std::make_shared<sim::MachineStore>(MachinePath());
    std::string error;
    ASSERT_TRUE(store->Check(error)) << error;
    auto strips = std::make_shared<std::vector<std::string>>();
    Quillon::RaidConfig::InstallBackendPlatform(
        std::make_shared<StripRecordingPlatform>(store, strips));
    WritePolicy("[ctrl3-vol0]\nraid_level=1\nvol_name=boot\nstrip_size=128k\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl3-vol0", kCreated, 0}}));
    EXPECT_EQ(*strips, std::vector<std::string>{"128"});
    EXPECT_EQ(FindVolume(*Find(Machine(), "M2", 1), "boot")->strip_kb, 128);
}

TEST_F(RaidClientAddTest, OutOfBandM2TakesTheSectionAsWrittenSoSmallLettersFailTheCheck) {
    UseMachine(kOob);
    OutOfBand();
    WritePolicy("[ctrl4-vol0]\nraid_level=1\nvol_name=boot\nstrip_size=128k\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidResultFromError(Quillon::RaidConfig::RAID_POLICY_ERROR));
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl4", "strip_size -> 128k is out of scope", 9}}));
}

TEST_F(RaidClientAddTest, InBandM2ThatTheBackendDoesNotFindIsNamedByItsFlatNumber) {
    UseMachine(WithFaults(kLocal, R"("family": "M2", "id": 1,)",
                          R"([{"op": "AddRaidIndex", "code": 5, "error_text": "gone"}])"));
    WritePolicy("[ctrl3-vol0]\nraid_level=1\nvol_name=boot\nstrip_size=64K\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND));
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl3-vol0", "The controller ID 3 does not exist.", 5}}));
}

TEST_F(RaidClientAddTest, InBandM2SectionThatFailsItsCheckIsARowOfTheController) {
    UseMachine(kLocal);
    WritePolicy("[ctrl3-vol0]\nraid_level=5\nvol_name=boot\nstrip_size=64K\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::RaidResultFromError(Quillon::RaidConfig::RAID_POLICY_ERROR));
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl3", "raid_level -> 5 is out of scope", 9}}));
}

TEST_F(RaidClientAddTest, SectionsThatFailTheirCheckAreCodeNineAndReachNoBackend) {
    UseMachine(kLocal);
    WritePolicy("[ctrl1]\nglobal_hot_spares=5\n"
                "[ctrl1-vol1]\ndisks=2,3\nraid_level=7\nvol_name=data\nvolume_size=100GB\n"
                "[ctrl2-vol0]\ndisks=0,1\nhot_spares=1\nraid_level=1\nvol_name=f\n"
                "volume_size=100GB\n"
                "[ctrl4-vol0]\nraid_level=5\nvol_name=r\ndisks=0,1,2\n");
    const std::string before = ReadFile(MachinePath());
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1", "raid_level -> 7 is out of scope", 9},
                                {"ctrl2", "the values of disks or hot_spares are duplicated.", 9},
                                {"ctrl4", "RAID_write_hole ->  is out of scope", 9}}));
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientAddTest, MissingDisksHaveWordsOfTheirOwnOnSomeFamilies) {
    UseMachine(kOob);
    OutOfBand();
    WritePolicy("[ctrl1-vol1]\ndisks=2,9\nraid_level=1\nvol_name=a\nvolume_size=100GB\n"
                "[ctrl2-vol0]\ndisks=0,9\nraid_level=1\nvol_name=b\nvolume_size=100GB\n"
                "[ctrl3-vol0]\ndisks=0,9\nraid_level=1\nvol_name=c\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-vol1", "disk 9 does not exist", 6},
                                {"ctrl2-vol0", "One or more disks do not exist.", 6},
                                {"ctrl3-vol0", "One or more disks do not exist.", 6}}));
}

TEST_F(RaidClientAddTest, SoftwareRaidVolumeTextsNameTheFlatNumberOrTheDisks) {
    UseMachine(WithFaults(kLocal, R"("family": "VROC_WIN", "id": 0,)",
                          R"([{"op": "Add", "code": 5, "error_text": "gone", "times": 1}])"));
    WritePolicy("[ctrl4-vol0]\nraid_level=1\nvol_name=a\ndisks=0,1\n"
                "[ctrl4-vol1]\nraid_level=1\nvol_name=b\ndisks=2,9\n"
                "[ctrl4-vol2]\nraid_level=0\nvol_name=c\ndisks=2 3\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl4-vol0", "The controller ID 4 does not exist.", 5},
                                {"ctrl4-vol1", "One or more disks do not exist.", 6},
                                {"ctrl4-vol2", kCreated, 0}}));
}

TEST_F(RaidClientAddTest, HardwareFamiliesShowTheBackendTextAsItStands) {
    UseMachine(WithFaults(kLocal, R"("family": "LSI", "id": 4,)",
                          R"([{"op": "Add", "code": 3, "error_text": "ctrl[4] is busy"}])"));
    WritePolicy("[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_OPERATION_FAILED));
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-vol1", "ctrl[4] is busy", 3}}));
}

TEST_F(RaidClientAddTest, EachBackendTextIsToldOnce) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_MICROCHIP", "id": 5,)",
                          R"([{"op": "Add", "code": 3, "error_text": "first", "times": 1},
                              {"op": "Add", "code": 18}])"));
    OutOfBand();
    WritePolicy("[ctrl2-vol0]\ndisks=0,1\nraid_level=1\nvol_name=a\nvolume_size=100GB\n"
                "[ctrl2-vol1]\ndisks=2,3\nraid_level=1\nvol_name=b\nvolume_size=100GB\n");
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl2-vol0", "first", 3},
                                              {"ctrl2-vol1", "simulated fault on Add", 18}}));
}

// --- Failures before any backend call ---

TEST_F(RaidClientAddTest, EmptyPolicyFileOptionIsAnInvalidParameter) {
    UseMachine(kLocal);
    option_.policy_file.clear();
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::InvalidParameter);
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientAddTest, PolicyFileThatWillNotLoadIsAnIniFileErrorWithoutPreview) {
    UseMachine(kLocal);
    option_.policy_file = dir_.File("missing.ini");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::RaidIniFileError);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_.find("The policy file:"), std::string::npos) << printed_;
}

TEST_F(RaidClientAddTest, FileWithoutSectionsForAnyControllerIsAnIniFileError) {
    UseMachine(kLocal);
    WritePolicy("[notes]\nowner=lab\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::RaidIniFileError);
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientAddTest, QuietAddPrintsThePreviewButNoHeadingOrTable) {
    UseMachine(kLocal);
    option_.console_output = false;
    WritePolicy("[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(printed_.find("raidconfig add:"), std::string::npos) << printed_;
    EXPECT_NE(printed_.find("The policy file:"), std::string::npos) << printed_;
    EXPECT_EQ(printed_.find("Add Configuration Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientAddTest, EveryFamilyHasItsAddMember) {
    UseMachine(kLocal);
    const RaidClient local(option_);
    std::vector<int> keys;
    for (const auto& [key, function] : local.add_functions()) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<int>{0, 1, 2, 3}));
    OutOfBand();
    const RaidClient remote(option_, Connection());
    keys.clear();
    for (const auto& [key, function] : remote.add_functions()) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<int>{4, 6, 7, 8}));
    option_.cfc = true;
    const RaidClient cfc(option_, Connection());
    ASSERT_EQ(cfc.add_functions().size(), 1u);
    EXPECT_EQ(cfc.add_functions().begin()->first, 5);
}

// --- The handler's roads ---

class RaidAddHandlerTest : public RaidClientAddTest {
protected:
    TesselResult Run() {
        option_.command = "add";
        service::detail::ServiceRaidImpl impl(option_);
        testing::internal::CaptureStdout();
        TesselResult outcome = impl.Run();
        printed_ = testing::internal::GetCapturedStdout();
        results_ = impl.results();
        return outcome;
    }
    std::map<std::string, std::string> results_;
};

TEST_F(RaidAddHandlerTest, LocalRoadTakesTheRowsAndWritesNoPage) {
    UseMachine(kLocal);
    WritePolicy("[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    EXPECT_EQ(Run().value(), result::Success);
    EXPECT_EQ(results_, (std::map<std::string, std::string>{{"ctrl1-vol1", kCreated}}));
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
    const std::string xml = ReadFile(dir_.File("raid_result.xml"));
    EXPECT_NE(xml.find("<DEVICE>ctrl1-vol1</DEVICE>"), std::string::npos) << xml;
}

TEST_F(RaidAddHandlerTest, OutOfBandRoadWritesTheResultPage) {
    UseMachine(kOob);
    OutOfBand();
    WritePolicy("[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    EXPECT_EQ(Run().value(), result::Success);
    EXPECT_EQ(results_, (std::map<std::string, std::string>{{"ctrl1-vol1", kCreated}}));
    const std::string page = ReadFile(dir_.File("raid_result.html"));
    EXPECT_NE(page.find("RaidConfig Add"), std::string::npos);
    EXPECT_NE(page.find("Add Configuration Result"), std::string::npos);
}

TEST_F(RaidAddHandlerTest, OutOfBandRoadThatCannotConnectChangesNothing) {
    UseMachine(kOob);
    OutOfBand();
    option_.connect_option.password = "wrong";
    WritePolicy("[ctrl1-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    const std::string before = ReadFile(MachinePath());
    EXPECT_EQ(Run().code(), 12);
    EXPECT_TRUE(results_.empty());
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidAddHandlerTest, InBandRoadWithATargetReadsFlatNumberedSections) {
    UseMachine(kLocal);
    option_.target = "0";
    // Sections carry flat numbers from 1 on this road too: a "ctrl0" section is no target's.
    WritePolicy("[ctrl0-vol1]\ndisks=2,3\nraid_level=1\nvol_name=data\nvolume_size=100GB\n");
    const std::string before = ReadFile(MachinePath());
    EXPECT_EQ(Run().value(), result::RaidIniFileError);
    EXPECT_EQ(results_.at("ctrl[0]"),
              "Policy file doesn't contain controller ctrl[0] raid policy.");
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

} // namespace
