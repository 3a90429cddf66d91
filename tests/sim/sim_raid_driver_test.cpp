// The simulated backends, reached the way the service reaches them: through the backend classes
// of a platform made from a machine file.
#include "backend/backend_platform.hpp"
#include "backend/cfc_hw_raid_storage.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storage.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/oob_m2_raid.hpp"
#include "backend/oob_vroc_raid.hpp"
#include "backend/records.hpp"
#include "sim/machine_json.hpp"
#include "sim/machine_store.hpp"
#include "sim/sim_platform.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using namespace Quillon::RaidConfig;
using QuillonConnection::ConnectionInfo;

// Controller 0 of LSI: disks 0..3 free, 4 Online in volume 0 with 5, 6 a global hot spare,
// 7 UBad, 8 JBOD, 9 a dedicated spare of volume 0. Connectors 0 and 1.
const char* const kMachine = R"({
  "controllers": [
    {"family": "LSI", "id": 0, "raid_levels": ["0", "1", "5", "6", "10", "50", "60"],
     "min_stripe_kb": 64, "max_stripe_kb": 1024,
     "connectors": [{"id": 0, "name": "C0", "mode": "RAID"}, {"id": 1, "name": "C1", "mode": "HBA"}],
     "connector_modes": ["RAID", "HBA", "Mixed"],
     "fw_device_order": "Disabled", "fw_device_order_modes": ["Enabled", "Disabled"],
     "disks": [
       {"id": 0, "capacity_mb": 1000}, {"id": 1, "capacity_mb": 1000},
       {"id": 2, "capacity_mb": 1000}, {"id": 3, "capacity_mb": 2000},
       {"id": 4, "state": "Online", "capacity_mb": 1000},
       {"id": 5, "state": "Online", "capacity_mb": 1000},
       {"id": 6, "state": "GHS", "capacity_mb": 1000},
       {"id": 7, "state": "UBad", "capacity_mb": 1000},
       {"id": 8, "state": "JBOD", "capacity_mb": 1000},
       {"id": 9, "state": "DHS", "capacity_mb": 1000}],
     "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[4, 5]], "size_mb": 1000,
                  "strip_kb": 256, "dedicated_spares": [9]}],
     "global_hot_spares": [6]},
    {"family": "LSI", "id": 3, "disks": [{"id": 0}]},
    {"family": "MICROCHIP", "id": 0, "disks": [{"id": 0}, {"id": 1}]},
    {"family": "OOB_M2", "id": 0, "disks": [{"id": 0, "capacity_mb": 500}, {"id": 1, "capacity_mb": 500}]},
    {"family": "OOB_VROC", "id": 0, "disks": [{"id": 0}, {"id": 1}]}
  ]
}
)";

class SimRaidDriverTest : public ::testing::Test {
protected:
    void SetUp() override { Load(kMachine); }
    void TearDown() override { InstallBackendPlatform(nullptr); }

    void Load(const std::string& text) {
        raidcfg_test::WriteFile(path_, text);
        store_ = std::make_shared<sim::MachineStore>(path_);
        std::string error;
        ASSERT_TRUE(store_->Check(error)) << error;
        InstallBackendPlatform(std::make_shared<sim::SimPlatform>(store_));
    }

    // The machine as the file holds it now (a fresh store, as another process would read it).
    sim::Machine OnDisk() const {
        sim::MachineStore fresh(path_);
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(fresh.Read(machine, error)) << error;
        return machine;
    }

    std::string DiskState(int controller_index, int disk) const {
        const sim::Machine machine = OnDisk();
        for (const sim::Disk& d : machine.controllers.at(controller_index).disks) {
            if (d.id == disk) {
                return d.state;
            }
        }
        return "(none)";
    }

    static VolumeObject Request(std::vector<std::vector<int>> disks, const std::string& level) {
        VolumeObject request;
        request.controller_id = 0;
        request.disks = std::move(disks);
        request.raid_level = level;
        return request;
    }

    raidcfg_test::TempDir dir_;
    std::string path_ = dir_.File("machine.json");
    std::shared_ptr<sim::MachineStore> store_;
};

TEST_F(SimRaidDriverTest, ControllerIdsAreThoseOfTheFamilyInFileOrder) {
    HWRaidStorcli lsi;
    std::vector<int> ids;
    lsi.GetControllerIds(ids);
    EXPECT_EQ(ids, (std::vector<int>{0, 3}));
    HWRaidArcconf microchip;
    microchip.GetControllerIds(ids);
    EXPECT_EQ(ids, std::vector<int>{0});
}

TEST_F(SimRaidDriverTest, UnknownControllerIsFive) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.ClearConfig(9), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(lsi.error_text, "controller 9 does not exist");
}

TEST_F(SimRaidDriverTest, UnknownDiskVolumeOrConnectorIsFive) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.MakeGood(0, 42), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(lsi.error_text, "disk 42 does not exist");
    EXPECT_EQ(lsi.RemoveVolume(0, 5), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(lsi.error_text, "volume 5 does not exist");
    EXPECT_EQ(lsi.RaidChangeConnectorMode(0, "7", "HBA"), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(lsi.error_text, "connector 7 does not exist");
    EXPECT_EQ(lsi.AddGlobalHotSpare(0, "x"), RAID_TARGET_NOT_FOUND);
}

TEST_F(SimRaidDriverTest, CreateVolumeNeedsExistingDisks) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.Add(Request({{0, 77}}, "1")), RAID_DISK_NOT_FOUND);
    EXPECT_EQ(lsi.error_text, "disk 77 does not exist");
}

TEST_F(SimRaidDriverTest, CreateVolumeNeedsUnconfiguredGoodDisks) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.Add(Request({{0, 4}}, "1")), RAID_DISK_STATE_ERROR);
    EXPECT_EQ(lsi.error_text, "disk 4 is Online, not UGood");
}

TEST_F(SimRaidDriverTest, CreateVolumeNeedsADiskCountThatSuitsTheLevel) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.Add(Request({{0, 1}}, "5")), RAID_OPERATION_FAILED);
    EXPECT_EQ(lsi.error_text, "RAID 5 needs at least 3 disks, got 2");
    EXPECT_EQ(lsi.Add(Request({{0, 1, 2}}, "1")), RAID_OPERATION_FAILED);
    EXPECT_EQ(lsi.error_text, "RAID 1 needs an even number of disks, got 3");
}

TEST_F(SimRaidDriverTest, CreateVolumeTakesAllTheSpaceWithoutASize) {
    HWRaidStorcli lsi;
    VolumeObject request = Request({{0, 1, 2}}, "5");
    request.vol_name = "data";
    ASSERT_EQ(lsi.Add(request), RAID_OK) << lsi.error_text;
    const sim::Machine machine = OnDisk();
    const sim::Volume& volume = machine.controllers[0].volumes.back();
    EXPECT_EQ(volume.id, 1);
    EXPECT_EQ(volume.name, "data");
    EXPECT_EQ(volume.size_mb, 2000);
    EXPECT_EQ(volume.strip_kb, 256);
    EXPECT_EQ(volume.spans, (std::vector<std::vector<int>>{{0, 1, 2}}));
    EXPECT_EQ(DiskState(0, 0), "Online");
    EXPECT_EQ(DiskState(0, 2), "Online");
}

TEST_F(SimRaidDriverTest, CreateVolumeTakesAShareOrASizeAndRefusesTooMuch) {
    HWRaidStorcli lsi;
    VolumeObject request = Request({{0, 1}}, "0");
    request.volume_size = "50%";
    ASSERT_EQ(lsi.Add(request), RAID_OK) << lsi.error_text;
    EXPECT_EQ(OnDisk().controllers[0].volumes.back().size_mb, 1000);

    request = Request({{2, 3}}, "1");
    request.volume_size = "1001MB";
    EXPECT_EQ(lsi.Add(request), RAID_OPERATION_FAILED);
    EXPECT_EQ(lsi.error_text, "volume size 1001 MB does not fit the 1000 MB the disks give");
    request.volume_size = "1000";
    request.strip_size = "64k";
    ASSERT_EQ(lsi.Add(request), RAID_OK) << lsi.error_text;
    EXPECT_EQ(OnDisk().controllers[0].volumes.back().strip_kb, 64);
}

TEST_F(SimRaidDriverTest, CreateVolumeRefusesAStripTheControllerDoesNotTake) {
    HWRaidStorcli lsi;
    VolumeObject request = Request({{0, 1}}, "1");
    request.strip_size = "2MB";
    EXPECT_EQ(lsi.Add(request), RAID_OPERATION_FAILED);
    EXPECT_EQ(lsi.error_text,
              "strip size 2048K is not one the controller takes (64K to 1024K, powers of two)");
    request.strip_size = "1MB";
    EXPECT_EQ(lsi.Add(request), RAID_OK) << lsi.error_text;
}

TEST_F(SimRaidDriverTest, RestTakesEveryUnconfiguredGoodDisk) {
    HWRaidStorcli lsi;
    VolumeObject request = Request({}, "5");
    request.rest_disks = true;
    ASSERT_EQ(lsi.Add(request), RAID_OK) << lsi.error_text;
    EXPECT_EQ(OnDisk().controllers[0].volumes.back().spans,
              (std::vector<std::vector<int>>{{0, 1, 2, 3}}));
}

TEST_F(SimRaidDriverTest, HotSparesOfARequestBecomeDedicatedSpares) {
    HWRaidStorcli lsi;
    VolumeObject request = Request({{0, 1}}, "1");
    request.hot_spares = {2};
    ASSERT_EQ(lsi.Add(request), RAID_OK) << lsi.error_text;
    EXPECT_EQ(OnDisk().controllers[0].volumes.back().dedicated_spares, std::vector<int>{2});
    EXPECT_EQ(DiskState(0, 2), "DHS");
}

TEST_F(SimRaidDriverTest, AFailedCreateChangesNothing) {
    const std::string before = raidcfg_test::ReadFile(path_);
    HWRaidStorcli lsi;
    EXPECT_NE(lsi.Add(Request({{0, 4}}, "1")), RAID_OK);
    EXPECT_EQ(raidcfg_test::ReadFile(path_), before);
}

TEST_F(SimRaidDriverTest, ClearRemovesEveryVolumeAndFreesEveryHotSpare) {
    HWRaidStorcli lsi;
    ASSERT_EQ(lsi.ClearConfig(0), RAID_OK);
    const sim::Machine machine = OnDisk();
    EXPECT_TRUE(machine.controllers[0].volumes.empty());
    EXPECT_TRUE(machine.controllers[0].global_hot_spares.empty());
    for (int disk : {4, 5, 6, 9}) {
        EXPECT_EQ(DiskState(0, disk), "UGood") << disk;
    }
    EXPECT_EQ(DiskState(0, 7), "UBad");
}

TEST_F(SimRaidDriverTest, RemovingAVolumeFreesItsDisksAndDedicatedSpares) {
    HWRaidStorcli lsi;
    ASSERT_EQ(lsi.RemoveVolume(0, 0), RAID_OK);
    EXPECT_TRUE(OnDisk().controllers[0].volumes.empty());
    EXPECT_EQ(DiskState(0, 4), "UGood");
    EXPECT_EQ(DiskState(0, 9), "UGood");
    EXPECT_EQ(DiskState(0, 6), "GHS");
}

TEST_F(SimRaidDriverTest, MakeGoodTakesUnconfiguredBadAndJbodOnly) {
    HWRaidStorcli lsi;
    std::vector<int> eligible;
    ASSERT_EQ(lsi.GetCanMakeGoodDiskIds(0, eligible), RAID_OK);
    EXPECT_EQ(eligible, (std::vector<int>{7, 8}));
    EXPECT_EQ(lsi.MakeGood(0, 4), RAID_MAKEGOOD_REFUSED);
    EXPECT_EQ(lsi.error_text, "disk 4 is Online, not UBad or JBOD");
    EXPECT_EQ(lsi.MakeGood(0, 7), RAID_OK);
    EXPECT_EQ(lsi.MakeGood(0, 8), RAID_OK);
    EXPECT_EQ(DiskState(0, 7), "UGood");
    EXPECT_EQ(DiskState(0, 8), "UGood");
}

TEST_F(SimRaidDriverTest, MakeJbodTakesUnconfiguredGoodOnly) {
    HWRaidStorcli lsi;
    std::vector<int> eligible;
    ASSERT_EQ(lsi.GetCanMakeJbodDiskIds(0, eligible), RAID_OK);
    EXPECT_EQ(eligible, (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(lsi.MakeJbod(0, 7), RAID_MAKEJBOD_REFUSED);
    EXPECT_EQ(lsi.error_text, "disk 7 is UBad, not UGood");
    EXPECT_EQ(lsi.MakeJbod(0, 0), RAID_OK);
    EXPECT_EQ(DiskState(0, 0), "JBOD");
}

TEST_F(SimRaidDriverTest, NoEligibleDiskIsAnEmptyListNotAFailure) {
    HWRaidStorcli lsi;
    std::vector<int> eligible{1};
    ASSERT_EQ(lsi.GetCanMakeGoodDiskIds(3, eligible), RAID_OK);
    EXPECT_TRUE(eligible.empty());
}

TEST_F(SimRaidDriverTest, GlobalHotSpareNeedsAnUnconfiguredGoodDisk) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.AddGlobalHotSpare(0, "4"), RAID_ADDHSP_REFUSED);
    EXPECT_EQ(lsi.error_text, "disk 4 is Online, not UGood");
    ASSERT_EQ(lsi.AddGlobalHotSpare(0, "0"), RAID_OK);
    EXPECT_EQ(DiskState(0, 0), "GHS");
    EXPECT_EQ(OnDisk().controllers[0].global_hot_spares, (std::vector<int>{6, 0}));
}

TEST_F(SimRaidDriverTest, DedicatedHotSpareNeedsExistingVolumesAsDiskGroups) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.AddDedicatedHotSpare(0, "0", {"3"}), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(lsi.error_text, "disk group 3 does not exist");
    ASSERT_EQ(lsi.AddDedicatedHotSpare(0, "0", {"0"}), RAID_OK);
    EXPECT_EQ(DiskState(0, 0), "DHS");
    EXPECT_EQ(OnDisk().controllers[0].volumes[0].dedicated_spares, (std::vector<int>{9, 0}));
}

TEST_F(SimRaidDriverTest, FamiliesWithoutTheFormAnswerTwentyNine) {
    const ConnectionInfo connection;
    OOBM2Raid m2(connection);
    EXPECT_EQ(m2.AddGlobalHotSpare(0, "0"), RAID_FUNCTION_UNSUPPORTED);
    EXPECT_EQ(m2.RemoveHotSpare(0, "0"), RAID_FUNCTION_UNSUPPORTED);
    OobVrocRaid vroc(connection);
    EXPECT_EQ(vroc.AddDedicatedHotSpare(0, "0", {"0"}), RAID_FUNCTION_UNSUPPORTED);
    EXPECT_EQ(vroc.AddGlobalHotSpare(0, "0"), RAID_OK);
}

TEST_F(SimRaidDriverTest, RemovingAHotSpareNeedsAHotSpare) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.RemoveHotSpare(0, "0"), RAID_RMHSP_REFUSED);
    EXPECT_EQ(lsi.error_text, "disk 0 is UGood, not a hot spare");
    ASSERT_EQ(lsi.RemoveHotSpare(0, "6"), RAID_OK);
    ASSERT_EQ(lsi.RemoveHotSpare(0, "9"), RAID_OK);
    const sim::Machine machine = OnDisk();
    EXPECT_TRUE(machine.controllers[0].global_hot_spares.empty());
    EXPECT_TRUE(machine.controllers[0].volumes[0].dedicated_spares.empty());
    EXPECT_EQ(DiskState(0, 6), "UGood");
    EXPECT_EQ(DiskState(0, 9), "UGood");
}

TEST_F(SimRaidDriverTest, ConfigurationWithNoVolumeAndNoHotSpareIsTen) {
    HWRaidStorcli lsi;
    std::vector<VolumeObject> volumes;
    std::vector<int> spares;
    EXPECT_EQ(lsi.GetConfig(3, volumes, spares), RAID_NO_CONFIG);
    EXPECT_EQ(lsi.error_text, "controller 3 has no volume and no hot spare");
}

TEST_F(SimRaidDriverTest, SettingAModeToTheModeItHasIsThirtyFour) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.RaidChangeConnectorMode(0, "0", "raid"), RAID_OK_UNCHANGED);
    EXPECT_EQ(lsi.error_text, "connector 0 is already in RAID mode");
    EXPECT_EQ(lsi.RaidChangeConnectorMode(0, "0", "hba"), RAID_OK);
    EXPECT_EQ(OnDisk().controllers[0].connectors[0].mode, "HBA");
    EXPECT_EQ(lsi.RaidChangeConnectorMode(0, "0", "JBOD"), RAID_OPERATION_FAILED);
    EXPECT_EQ(lsi.error_text, "mode \"JBOD\" is not one of RAID, HBA, Mixed");
    EXPECT_EQ(lsi.SetFirmwareDeviceOrderCtrl(0, "disabled"), RAID_OK_UNCHANGED);
    EXPECT_EQ(lsi.SetFirmwareDeviceOrderCtrl(0, "Enabled"), RAID_OK);
}

TEST_F(SimRaidDriverTest, AFunctionTheControllerLacksIsThirtyThree) {
    HWRaidStorcli lsi;
    EXPECT_EQ(lsi.SetFirmwareDeviceOrderCtrl(3, "Enabled"), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(lsi.RaidChangeConnectorMode(3, "0", "HBA"), RAID_DEVICE_UNSUPPORTED);
    Quillon::protocol::FWDevOrderCtrl record;
    EXPECT_EQ(lsi.GetFirmwareDeviceOrderCtrl(3, record), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(lsi.protocol_error_text, "the controller has no firmware device order");
}

TEST_F(SimRaidDriverTest, FastInitNeedsAVolumeAndAllVolumesListsThem) {
    HWRaidStorcli lsi;
    std::vector<int> volumes;
    ASSERT_EQ(lsi.GetAllVolumes(0, volumes), RAID_OK);
    EXPECT_EQ(volumes, std::vector<int>{0});
    EXPECT_EQ(lsi.FastInit(0, 0), RAID_OK);
    EXPECT_EQ(lsi.FastInit(0, 1), RAID_TARGET_NOT_FOUND);
}

TEST_F(SimRaidDriverTest, AnM2ControllerHoldsOneVolume) {
    OOBM2Raid m2{ConnectionInfo()};
    M2ControllerObject request;
    request.controller_id = 0;
    request.raid_level = "1";
    ASSERT_EQ(m2.Add(request), RAID_OK) << m2.error_text;
    EXPECT_EQ(m2.Add(request), RAID_OPERATION_FAILED);
    EXPECT_EQ(m2.error_text, "an M.2 controller holds one volume, and it has one");
}

// Faults: the first matching one answers instead of the operation.
const char* const kFaulty = R"({
  "controllers": [
    {"family": "OOB_LSI", "id": 0,
     "disks": [{"id": 0}, {"id": 1}, {"id": 2}, {"id": 3}],
     "faults": [
       {"op": "AddGlobalHotSpare", "arg": "3", "code": 15, "error_text": "busy", "times": 1},
       {"op": "MakeJbod", "arg": 2, "code": 3},
       {"op": "ClearConfig", "code": 4, "error_text": "controller unreachable", "times": 2}
     ]}
  ]
}
)";

TEST_F(SimRaidDriverTest, AFaultAnswersForItsArgumentAndCountsDownPersistently) {
    Load(kFaulty);
    HWRaidStorage lsi{ConnectionInfo()};
    EXPECT_EQ(lsi.AddGlobalHotSpare(0, "2"), RAID_OK) << lsi.error_text;
    EXPECT_EQ(lsi.AddGlobalHotSpare(0, "3"), RAID_ADDHSP_REFUSED);
    EXPECT_EQ(lsi.error_text, "busy");
    EXPECT_EQ(OnDisk().controllers[0].faults.size(), 2U);
    EXPECT_EQ(DiskState(0, 3), "UGood");
    EXPECT_EQ(lsi.AddGlobalHotSpare(0, "3"), RAID_OK);
}

TEST_F(SimRaidDriverTest, AFaultWithoutTimesAlwaysAnswersAndChangesNothing) {
    Load(kFaulty);
    HWRaidStorage lsi{ConnectionInfo()};
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(lsi.MakeJbod(0, 2), RAID_OPERATION_FAILED);
        EXPECT_EQ(lsi.error_text, "simulated fault on MakeJbod");
    }
    EXPECT_EQ(DiskState(0, 2), "UGood");
}

TEST_F(SimRaidDriverTest, AFaultCountdownIsSeenByTheNextProcess) {
    Load(kFaulty);
    {
        HWRaidStorage lsi{ConnectionInfo()};
        EXPECT_EQ(lsi.ClearConfig(0), RAID_CONNECT_FAILED);
        EXPECT_EQ(lsi.error_text, "controller unreachable");
    }
    ASSERT_EQ(OnDisk().controllers[0].faults.back().times, 1);
    // A new store is what the next run would have.
    Load(raidcfg_test::ReadFile(path_));
    HWRaidStorage again{ConnectionInfo()};
    EXPECT_EQ(again.ClearConfig(0), RAID_CONNECT_FAILED);
    EXPECT_EQ(again.ClearConfig(0), RAID_OK);
    EXPECT_EQ(OnDisk().controllers[0].faults.size(), 2U);
}

TEST_F(SimRaidDriverTest, SupportedRaidLevelsComeFromTheFile) {
    Load(R"({"controllers": [{"family": "OOB_CFC", "id": 2, "vendor": "Broadcom",
              "raid_levels": ["0", "1"], "disks": []}]})");
    CFCHWRaidStorage cfc{ConnectionInfo()};
    std::vector<std::string> levels;
    ASSERT_EQ(cfc.GetSupportedRaidLevels(2, levels), RAID_OK);
    EXPECT_EQ(levels, (std::vector<std::string>{"0", "1"}));
}

} // namespace
