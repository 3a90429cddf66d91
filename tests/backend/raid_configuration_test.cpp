// The in-band driver over a simulated machine: which controllers the targets name, the generic
// tables, the rows of each operation, its refusals and the policy file text.
#include <string>
#include <vector>

#include "backend/backend_platform.hpp"
#include "backend/raid_configuration.hpp"
#include "backend/raid_policy.hpp"
#include "backend/table.hpp"
#include "collaborators/log.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using Quillon::RaidConfig::RaidConfiguration;
using Quillon::RaidConfig::RaidResult;
using Quillon::RaidConfig::RaidTarget;
using Quillon::RaidConfig::Table;

// Two LSI controllers (ids 4 and 7, hardware numbers 0 and 1) and a Microchip one (id 2, number
// 3), an M.2 controller of id 1 and a software RAID controller of id 0 with one array.
const char* const kMachine = R"({"persist": false, "controllers": [
  {"family": "LSI", "id": 4, "product_name": "RAID 9560-8i", "serial_no": "SL4",
   "disks": [{"id": 0, "slot_no": "0", "state": "Online", "capacity_mb": 1000},
             {"id": 1, "slot_no": "1", "state": "Online", "capacity_mb": 1000},
             {"id": 2, "slot_no": "2", "state": "UGood", "capacity_mb": 1000},
             {"id": 3, "slot_no": "3", "state": "UGood", "capacity_mb": 1000}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 1000,
                "strip_kb": 256}]},
  {"family": "LSI", "id": 7, "product_name": "RAID 9540-8i", "disks": []},
  {"family": "MICROCHIP", "id": 2, "product_name": "SmartRAID 3154-8i",
   "disks": [{"id": 0, "state": "UGood", "capacity_mb": 1000}]},
  {"family": "M2", "id": 1, "name": "Marvell 88SE9230",
   "disks": [{"id": 0, "state": "UGood", "capacity_mb": 1000},
             {"id": 1, "state": "UGood", "capacity_mb": 1000}]},
  {"family": "VROC_WIN", "id": 0, "name": "Intel VROC",
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000},
             {"id": 2, "state": "UGood", "capacity_mb": 1000}],
   "volumes": [{"id": 3, "name": "mirror", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 1000, "strip_kb": 64}]}
]})";

RaidTarget Target(RaidTarget::Type type, std::vector<int> ids, std::vector<int> containers = {}) {
    RaidTarget target;
    target.type = type;
    target.ids = std::move(ids);
    target.container_ids = std::move(containers);
    return target;
}

std::vector<std::string> Devices(const std::vector<RaidResult>& rows) {
    std::vector<std::string> devices;
    devices.reserve(rows.size());
    for (const RaidResult& row : rows) {
        devices.push_back(row.device + " " + row.result + " " + std::to_string(row.code));
    }
    return devices;
}

// A read policy file of one LSI volume and one global hot spare for flat number 1; every other
// family refuses with a line of its own.
class OneLsiVolume : public Quillon::RaidConfig::RaidPolicy {
public:
    bool HasSections(int number) const override { return number == 1 || number == 4; }
    bool ReadLsi(int /*number*/, std::vector<int>& global_hot_spares,
                 std::vector<Quillon::RaidConfig::VolumeObject>& volumes,
                 std::string& /*refusal*/) const override {
        global_hot_spares = {3};
        Quillon::RaidConfig::VolumeObject volume;
        volume.volume_id = 5;
        volume.disks = {{2}};
        volume.raid_level = "0";
        volumes.push_back(volume);
        return true;
    }
    bool ReadMicrochip(int /*number*/, std::vector<int>& /*global_hot_spares*/,
                       std::vector<Quillon::protocol::MicrochipConfig>& /*volumes*/,
                       std::string& refusal) const override {
        refusal = "microchip refused";
        return false;
    }
    bool ReadM2(int /*number*/, Quillon::RaidConfig::M2ControllerObject& /*volume*/,
                int& /*volume_id*/, std::string& refusal) const override {
        refusal = "m2 refused";
        return false;
    }
    bool ReadVrocWin(int /*number*/, std::vector<int>& /*global_hot_spares*/,
                     std::vector<Quillon::RaidConfig::VolRaidConfig>& /*volumes*/,
                     std::string& refusal) const override {
        refusal = "vroc refused";
        return false;
    }
};

class RaidConfigurationTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        raidcfg_test::WriteFile(dir_.File("machine.json"), kMachine);
        ASSERT_TRUE(sim::SimulatedMachine::Use(dir_.File("machine.json"), error)) << error;
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    raidcfg_test::TempDir dir_;
};

TEST_F(RaidConfigurationTest, TypeZeroNamesLsiAndMicrochipControllersByTheirHardwareNumber) {
    RaidConfiguration configuration({Target(RaidTarget::LSI, {0, 1, 2, 3})});
    const auto& members = configuration.members();
    ASSERT_EQ(members.size(), 4U);
    EXPECT_EQ(members[0].family, RaidTarget::LSI);
    EXPECT_EQ(members[0].id, 4);
    EXPECT_EQ(members[1].id, 7);
    EXPECT_EQ(members[2].backend, nullptr); // the number left out between the two families
    EXPECT_EQ(members[3].family, RaidTarget::MICROCHIP);
    EXPECT_EQ(members[3].id, 2);
    EXPECT_EQ(members[3].flat, 3);
}

TEST_F(RaidConfigurationTest, TypeThreeCoversControllersAndContainers) {
    RaidConfiguration configuration({Target(RaidTarget::VROC_WIN, {0, 5}, {3, 9})});
    std::vector<std::vector<Table>> tables;
    configuration.GetRaidTableInfo(tables);
    std::vector<RaidResult> rows;
    configuration.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows),
              (std::vector<std::string>{
                  "vroc[0] Success. 0", "vroc[5] The target vroc[5] does not exist. 5",
                  "md[3] Success. 0", "md[9] The target md[9] does not exist. 5"}));
    ASSERT_EQ(tables.size(), 2U);
    EXPECT_EQ(tables[1][0].cells[0], "Container Information");
    EXPECT_EQ(tables[1][0].cells[1], "Target ID");
    EXPECT_EQ(tables[1][0].cells[11], "md3");
}

TEST_F(RaidConfigurationTest, TablesOfEveryFamilyHaveColumnsAndTheExpectedLayouts) {
    RaidConfiguration configuration({Target(RaidTarget::LSI, {}), Target(RaidTarget::M2, {}),
                                     Target(RaidTarget::VROC_WIN, {})});
    std::vector<std::vector<Table>> tables;
    configuration.GetRaidTableInfo(tables);
    ASSERT_EQ(tables.size(), 5U);
    for (const auto& controller : tables) {
        ASSERT_FALSE(controller.empty());
        EXPECT_EQ(controller[0].cells[0], "Controller Information");
        // Names, then as many values.
        EXPECT_EQ(controller[0].cells.size(),
                  1U + 2U * static_cast<std::size_t>(controller[0].columns));
        for (const Table& table : controller) {
            EXPECT_GT(table.columns, 0) << table.cells[0];
            if (table.cells[0] != "Controller Information") {
                EXPECT_EQ((table.cells.size() - 1) % static_cast<std::size_t>(table.columns), 0U);
            }
        }
    }
    // The first LSI controller: its fields, its disks, its volume with the disks of its group.
    const std::vector<Table>& lsi = tables[0];
    EXPECT_EQ(lsi[0].cells, (std::vector<std::string>{"Controller Information", "Target ID",
                                                      "Family", "Product Name", "Serial No", "0",
                                                      "Broadcom", "RAID 9560-8i", "SL4"}));
    ASSERT_EQ(lsi.size(), 3U);
    EXPECT_EQ(lsi[1].cells[0], "Disk Information");
    EXPECT_EQ(lsi[2].cells[0], "Volume Information");
    EXPECT_EQ(lsi[2].cells[1 + 12 + 3], "0,1");
    // A controller without disks or volumes has its first table only.
    EXPECT_EQ(tables[1].size(), 1U);
    EXPECT_EQ(tables[3][0].cells[5], "M.2-1");
    EXPECT_EQ(tables[4][0].cells[5], "vroc0");
}

TEST_F(RaidConfigurationTest, ClearLeavesOneRowPerTargetTouched) {
    RaidConfiguration configuration({Target(RaidTarget::LSI, {0, 2}), Target(RaidTarget::M2, {1}),
                                     Target(RaidTarget::VROC_WIN, {}, {3})});
    EXPECT_EQ(configuration.RaidClear(), 0);
    std::vector<RaidResult> rows;
    configuration.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows),
              (std::vector<std::string>{"ctrl[0] Success. 0",
                                        "ctrl[2] The target ctrl[2] does not exist. 5",
                                        "m2[1] Success. 0", "md[3] Success. 0"}));
    // The container lost its volume, so a second clear finds none.
    RaidConfiguration again({Target(RaidTarget::VROC_WIN, {}, {3})});
    again.RaidClear();
    again.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows),
              (std::vector<std::string>{"md[3] The target md[3] does not exist. 5"}));
}

TEST_F(RaidConfigurationTest, RemoveVolNeedsExactlyOneNamedTargetOfTheType) {
    EXPECT_EQ(
        RaidConfiguration({Target(RaidTarget::LSI, {0, 1})}).RaidRemoveVol(RaidTarget::LSI, {0}),
        30);
    EXPECT_EQ(RaidConfiguration({Target(RaidTarget::LSI, {})}).RaidRemoveVol(RaidTarget::LSI, {0}),
              30);
    EXPECT_EQ(RaidConfiguration({Target(RaidTarget::LSI, {0})}).RaidRemoveVol(RaidTarget::M2, {0}),
              30);
    EXPECT_EQ(RaidConfiguration({Target(RaidTarget::LSI, {0})}).RaidRemoveVol(RaidTarget::LSI, {}),
              30);
    RaidConfiguration configuration({Target(RaidTarget::LSI, {0})});
    EXPECT_EQ(configuration.RaidRemoveVol(RaidTarget::LSI, {0, 6}), 0);
    std::vector<RaidResult> rows;
    configuration.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows),
              (std::vector<std::string>{"vol[0-0] Success. 0",
                                        "vol[0-6] The target vol[0-6] does not exist. 5"}));
}

TEST_F(RaidConfigurationTest, HotSparesAnswer29ForDiskGroupsWithoutDedicatedSparesAnd30ForBadArgs) {
    EXPECT_EQ(RaidConfiguration({Target(RaidTarget::VROC_WIN, {0})})
                  .RaidAddHotSpare(RaidTarget::VROC_WIN, {"2"}, {"3"}),
              29);
    EXPECT_EQ(RaidConfiguration({Target(RaidTarget::M2, {1})})
                  .RaidAddHotSpare(RaidTarget::M2, {"0"}, {"0"}),
              29);
    EXPECT_EQ(
        RaidConfiguration({Target(RaidTarget::LSI, {0})}).RaidAddHotSpare(RaidTarget::LSI, {}, {}),
        30);
    EXPECT_EQ(RaidConfiguration({Target(RaidTarget::LSI, {0})})
                  .RaidAddHotSpare(RaidTarget::LSI, {"x"}, {}),
              30);
    EXPECT_EQ(RaidConfiguration({Target(RaidTarget::LSI, {0, 1})})
                  .RaidRemoveHotSpare(RaidTarget::LSI, {"2"}),
              30);

    RaidConfiguration dedicated({Target(RaidTarget::LSI, {0})});
    EXPECT_EQ(dedicated.RaidAddHotSpare(RaidTarget::LSI, {"2", "0"}, {"0"}), 0);
    std::vector<RaidResult> rows;
    dedicated.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows), (std::vector<std::string>{
                                 "disk[0-2] Success. 0",
                                 "disk[0-0] The target disk[0-0] can't do addhsp operation 15"}));

    RaidConfiguration m2({Target(RaidTarget::M2, {1})});
    EXPECT_EQ(m2.RaidRemoveHotSpare(RaidTarget::M2, {"0"}), 0);
    m2.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows),
              (std::vector<std::string>{"m2-disk[1-0] The controller does not support. 29"}));
}

TEST_F(RaidConfigurationTest, AddAppliesTheReadSectionsOfEachControllerInItsFamilysOrder) {
    RaidConfiguration configuration(
        {Target(RaidTarget::LSI, {0, 1, 3}), Target(RaidTarget::M2, {})});
    EXPECT_EQ(configuration.RaidAdd(OneLsiVolume()), 0);
    std::vector<RaidResult> rows;
    configuration.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows),
              (std::vector<std::string>{
                  "disk[0-3] Disk has been assigned global hot spare sucessfully. 0",
                  "vol[0-5] Volume has been created successfully. 0",
                  "ctrl[1] Policy file doesn't contain controller ctrl[1] raid policy. 9",
                  "ctrl[3] Policy file doesn't contain controller ctrl[3] raid policy. 9",
                  "m2[1] m2 refused 9"}));
}

TEST_F(RaidConfigurationTest, ConfigStringCarriesFlatNumbersAndSkipsUnconfiguredFamilyMembers) {
    RaidConfiguration configuration(
        {Target(RaidTarget::LSI, {}), Target(RaidTarget::VROC_WIN, {})});
    std::string text;
    EXPECT_EQ(configuration.GetConfigString(text), 0);
    EXPECT_EQ(text, "[ctrl1-vol0]\n"
                    "    disks=0,1\n"
                    "    hot_spares=\n"
                    "    raid_level=1\n"
                    "    vol_name=os\n"
                    "    write_policy=0\n"
                    "    read_policy=0\n"
                    "    io_policy=0\n"
                    "    access_policy=0\n"
                    "    cache_policy=0\n"
                    "    volume_size=1000MB\n"
                    "    strip_size=256K\n"
                    "\n"
                    "[ctrl5-vol0]\n"
                    "    disks=0,1\n"
                    "    raid_level=1\n"
                    "    vol_name=mirror\n"
                    "    vol_capacity=0.9765625GB\n"
                    "    vol_strip_size=64K\n"
                    "    RAID_write_hole=\n"
                    "\n");
    std::vector<RaidResult> rows;
    configuration.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows),
              (std::vector<std::string>{"ctrl[0] Success. 0", "vroc[0] Success. 0"}));

    RaidConfiguration named({Target(RaidTarget::LSI, {1})});
    named.GetConfigString(text);
    EXPECT_EQ(text, "");
    named.GetRaidResults(rows);
    EXPECT_EQ(Devices(rows),
              (std::vector<std::string>{"ctrl[1] The target ctrl[1] doesn't have config. 10"}));
}

} // namespace
