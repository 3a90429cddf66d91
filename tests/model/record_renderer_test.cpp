#include <string>
#include <vector>

#include "model/record_renderer.hpp"
#include "sim/machine.hpp"
#include "sim/volume_creator.hpp"
#include "sim/volume_request.hpp"

#include <gtest/gtest.h>

namespace {

namespace rc = Quillon::RaidConfig;
namespace pc = Quillon::protocol;
namespace ac = Quillon::ARCCONF;
using model::RecordRenderer;

constexpr long long kTerabyteDisk = 953869; // "931.5 GB"

sim::Disk MakeDisk(int id, const std::string& state) {
    sim::Disk disk;
    disk.id = id;
    disk.slot_no = std::to_string(id);
    disk.state = state;
    disk.capacity_mb = kTerabyteDisk;
    disk.product_name = "HDD 1TB";
    disk.disk_type = "SAS";
    disk.media_type = "HDD";
    disk.health_status = "OK";
    disk.serial_no = "D" + std::to_string(id);
    disk.fru_no = "F" + std::to_string(id);
    disk.part_no = "P" + std::to_string(id);
    disk.manufacturer = "Maker";
    disk.connector_id = id < 4 ? 0 : 1;
    return disk;
}

// A controller of the given family: a RAID 1 volume on disks 0 and 1 with disk 2 as its
// dedicated spare and part of its space free, disk 3 a global spare, a RAID 10 volume over two
// spans of disks 4 to 7 taking all their space, disk 8 free (no slot number), disk 9 JBOD.
sim::Controller MakeController(const std::string& family) {
    sim::Controller c;
    c.family = family;
    c.id = 3;
    c.product_name = "RAID X";
    c.serial_no = "SN1";
    c.fru_no = "FRU1";
    c.part_no = "PN1";
    c.vendor = "Broadcom";
    c.manufacturer = "Maker";
    c.version = "1.2";
    c.model = "M1";
    c.name = "Name1";
    c.raid_levels = {"0", "1", "5", "10"};
    c.min_stripe_kb = 64;
    c.max_stripe_kb = 1024;
    c.connectors = {{0, "C0", "RAID"}, {1, "C1", "HBA"}};
    c.fw_device_order = "Enabled";
    c.ekm_mode = "local";
    c.slot = 7;
    const std::vector<std::string> states = {"Online", "Online", "DHS",    "GHS",   "Online",
                                             "Online", "Online", "Online", "UGood", "JBOD"};
    for (int id = 0; id < static_cast<int>(states.size()); ++id) {
        c.disks.push_back(MakeDisk(id, states[static_cast<std::size_t>(id)]));
    }
    c.disks[8].slot_no = "";

    sim::Volume os;
    os.id = 0;
    os.name = "os";
    os.raid_level = "1";
    os.spans = {{0, 1}};
    os.size_mb = 500000; // "488.3 GB"
    os.strip_kb = 256;
    os.status = "Optimal";
    os.bootable = true;
    os.write_policy = 1;
    os.read_policy = 1;
    os.io_policy = 1;
    os.access_policy = 0;
    os.cache_policy = 2;
    os.encrypted = true;
    os.dedicated_spares = {2};

    sim::Volume data;
    data.id = 1;
    data.name = "data";
    data.raid_level = "10";
    data.spans = {{4, 5}, {6, 7}};
    data.size_mb = 2 * kTerabyteDisk; // "1.8 TB"
    data.strip_kb = 64;
    data.status = "Degraded";
    data.write_policy = 0;
    data.read_policy = 0;
    data.io_policy = 0;
    data.access_policy = 2;
    data.cache_policy = 0;
    data.initialization = 1;

    c.volumes = {os, data};
    c.global_hot_spares = {3};
    return c;
}

TEST(HumanSize, BinaryUnitsWithOneDecimal) {
    EXPECT_EQ(RecordRenderer::HumanSize(953869), "931.5 GB");
    EXPECT_EQ(RecordRenderer::HumanSize(1024), "1.0 GB");
    EXPECT_EQ(RecordRenderer::HumanSize(1536), "1.5 GB");
    EXPECT_EQ(RecordRenderer::HumanSize(500), "500.0 MB");
    EXPECT_EQ(RecordRenderer::HumanSize(1023), "1023.0 MB");
    EXPECT_EQ(RecordRenderer::HumanSize(0), "0.0 MB");
    EXPECT_EQ(RecordRenderer::HumanSize(-5), "0.0 MB");
    EXPECT_EQ(RecordRenderer::HumanSize(500000), "488.3 GB");
    EXPECT_EQ(RecordRenderer::HumanSize(1048576), "1.0 TB");
    EXPECT_EQ(RecordRenderer::HumanSize(1907738), "1.8 TB");
    EXPECT_EQ(RecordRenderer::HumanSize(1073741824), "1.0 PB");
}

TEST(HumanSize, ValueThatRoundsToTheNextUnitGoesUp) {
    EXPECT_EQ(RecordRenderer::HumanSize(1048575), "1.0 TB"); // 1023.999 GB
    EXPECT_EQ(RecordRenderer::HumanSize(1048000), "1023.4 GB");
}

TEST(RenderStorcli, ControllerDisksVolumesAndDriveGroups) {
    pc::StorcliCtrl record;
    RecordRenderer::Render(MakeController("LSI"), record);
    EXPECT_EQ(record.target_id, 3);
    EXPECT_EQ(record.product_name, "RAID X");
    EXPECT_EQ(record.serial_no, "SN1");

    ASSERT_EQ(record.drive_groups.size(), 2U);
    EXPECT_EQ(record.drive_groups.at(0), (std::vector<std::string>{"252:0", "252:1"}));
    EXPECT_EQ(record.drive_groups.at(1),
              (std::vector<std::string>{"252:4", "252:5", "252:6", "252:7"}));

    ASSERT_EQ(record.disks.size(), 10U);
    const pc::StorcliDisk& d0 = record.disks[0];
    EXPECT_EQ(d0.id, 0);
    EXPECT_EQ(d0.product_name, "HDD 1TB");
    EXPECT_EQ(d0.state, "Online");
    EXPECT_EQ(d0.slot_no, "0");
    EXPECT_EQ(d0.disk_type, "SAS");
    EXPECT_EQ(d0.media_type, "HDD");
    EXPECT_EQ(d0.capacity, "931.5 GB");
    EXPECT_EQ(d0.serial_no, "D0");
    EXPECT_EQ(d0.fru_no, "F0");
    EXPECT_EQ(d0.type, "DG0");
    EXPECT_EQ(record.disks[2].type, "DHS");
    EXPECT_EQ(record.disks[3].type, "GHS");
    EXPECT_EQ(record.disks[7].type, "DG1");
    EXPECT_EQ(record.disks[8].type, "UGood");
    EXPECT_EQ(record.disks[8].slot_no, "");
    EXPECT_EQ(record.disks[9].type, "JBOD");

    ASSERT_EQ(record.volumes.size(), 2U);
    const pc::StorcliVolume& v0 = record.volumes[0];
    EXPECT_EQ(v0.id, 0);
    EXPECT_EQ(v0.drive_group, 0);
    EXPECT_EQ(v0.name, "os");
    EXPECT_EQ(v0.raid_state, "RAID1");
    EXPECT_EQ(v0.status, "Optimal");
    EXPECT_EQ(v0.stripe_size, "256K");
    EXPECT_EQ(v0.capacity, "488.3 GB");
    EXPECT_EQ(v0.read_policy, "Read Ahead");
    EXPECT_EQ(v0.write_policy, "Write Back");
    EXPECT_EQ(v0.io_policy, "Cached IO");
    EXPECT_EQ(v0.access_policy, "Read Write");
    EXPECT_EQ(v0.disk_cache_policy, "Disabled");
    const pc::StorcliVolume& v1 = record.volumes[1];
    EXPECT_EQ(v1.drive_group, 1);
    EXPECT_EQ(v1.raid_state, "RAID10");
    EXPECT_EQ(v1.status, "Degraded");
    EXPECT_EQ(v1.stripe_size, "64K");
    EXPECT_EQ(v1.capacity, "1.8 TB");
    EXPECT_EQ(v1.read_policy, "No Read Ahead");
    EXPECT_EQ(v1.write_policy, "Write Through");
    EXPECT_EQ(v1.io_policy, "Direct IO");
    EXPECT_EQ(v1.access_policy, "Read Only");
    EXPECT_EQ(v1.disk_cache_policy, "Unchanged");
}

TEST(RenderStorcli, DiskWithoutSlotNumberIsNamedByItsIdInItsDriveGroup) {
    sim::Controller c = MakeController("LSI");
    c.disks[1].slot_no = "";
    pc::StorcliCtrl record;
    RecordRenderer::Render(c, record);
    EXPECT_EQ(record.drive_groups.at(0), (std::vector<std::string>{"252:0", "252:1"}));
}

TEST(RenderStorcli, PolicyCodeWithoutAWordShowsItsNumber) {
    sim::Controller c = MakeController("LSI");
    c.volumes[0].write_policy = 7;
    c.volumes[0].access_policy = 1;
    pc::StorcliCtrl record;
    RecordRenderer::Render(c, record);
    EXPECT_EQ(record.volumes[0].write_policy, "7");
    EXPECT_EQ(record.volumes[0].access_policy, "1");
    c.volumes[0].access_policy = 3;
    record = pc::StorcliCtrl();
    RecordRenderer::Render(c, record);
    EXPECT_EQ(record.volumes[0].access_policy, "Blocked");
}

TEST(RenderArcconf, ControllerConnectorsDisksVolumes) {
    ac::ControllerInfo record;
    RecordRenderer::Render(MakeController("MICROCHIP"), record);
    EXPECT_EQ(record.target_id, "3");
    EXPECT_EQ(record.product_name, "RAID X");
    EXPECT_EQ(record.serial_no, "SN1");

    ASSERT_EQ(record.connectors.size(), 2U);
    EXPECT_EQ(record.connectors[1].id, "1");
    EXPECT_EQ(record.connectors[1].name, "C1");
    EXPECT_EQ(record.connectors[1].mode, "HBA");

    ASSERT_EQ(record.disks.size(), 10U);
    const ac::ArcconfDisk& d5 = record.disks[5];
    EXPECT_EQ(d5.id, "5");
    EXPECT_EQ(d5.product_name, "HDD 1TB");
    EXPECT_EQ(d5.state, "Online");
    EXPECT_EQ(d5.slot_no, "5");
    EXPECT_EQ(d5.disk_type, "SAS");
    EXPECT_EQ(d5.media_type, "HDD");
    EXPECT_EQ(d5.capacity, "931.5 GB");
    EXPECT_EQ(d5.serial_no, "D5");
    EXPECT_EQ(d5.fru, "F5");
    EXPECT_EQ(d5.connector_id, "1");

    ASSERT_EQ(record.volumes.size(), 2U);
    const ac::ArcconfVolume& v0 = record.volumes[0];
    EXPECT_EQ(v0.id, "0");
    EXPECT_EQ(v0.name, "os");
    EXPECT_EQ(v0.raid_state, "1");
    EXPECT_EQ(v0.status, "Optimal");
    EXPECT_EQ(v0.stripe_size, "256");
    EXPECT_EQ(v0.capacity, "488.3 GB");
    EXPECT_EQ(v0.acceleration, 1);
    EXPECT_EQ(v0.disks, (std::vector<std::string>{"0", "1"}));
    EXPECT_EQ(record.volumes[1].raid_state, "10");
    EXPECT_EQ(record.volumes[1].acceleration, 0);
    EXPECT_EQ(record.volumes[1].disks, (std::vector<std::string>{"4", "5", "6", "7"}));
}

TEST(RenderOobController, LsiPoolsStandForVolumes) {
    rc::Controller record;
    RecordRenderer::Render(MakeController("OOB_LSI"), record);
    EXPECT_EQ(record.id, 3);
    EXPECT_EQ(record.product_name, "RAID X");
    EXPECT_EQ(record.serial_no, "SN1");
    EXPECT_EQ(record.fru_no, "FRU1");
    EXPECT_EQ(record.part_no, "PN1");
    EXPECT_EQ(record.vendor, "Broadcom");
    EXPECT_EQ(record.raid_url, "/redfish/v1/Systems/1/Storage/OOB_LSI-3");
    // The support helper fills these; the record of GetController leaves them empty.
    EXPECT_EQ(record.max_stripe_size, "");
    EXPECT_EQ(record.min_stripe_size, "");
    EXPECT_TRUE(record.support_raid_levels.empty());

    ASSERT_EQ(record.disks.size(), 10U);
    const rc::Disk& d3 = record.disks[3];
    EXPECT_EQ(d3.id, 3);
    EXPECT_EQ(d3.product_name, "HDD 1TB");
    EXPECT_EQ(d3.state, "GHS");
    EXPECT_EQ(d3.slot_no, "3");
    EXPECT_EQ(d3.disk_type, "SAS");
    EXPECT_EQ(d3.media_type, "HDD");
    EXPECT_EQ(d3.health_status, "OK");
    EXPECT_EQ(d3.capacity, "931.5 GB");
    EXPECT_EQ(d3.serial_no, "D3");
    EXPECT_EQ(d3.fru_no, "F3");
    EXPECT_EQ(d3.part_no, "P3");

    ASSERT_EQ(record.pools.size(), 2U);
    const rc::Pool& p0 = record.pools[0];
    EXPECT_EQ(p0.id, 0);
    EXPECT_EQ(p0.raid_state, "RAID1");
    EXPECT_EQ(p0.raid_capacity, "931.5 GB");
    EXPECT_EQ(p0.holes, "1");
    ASSERT_EQ(p0.disks.size(), 2U);
    EXPECT_EQ(p0.disks[0].id, 0);
    EXPECT_EQ(p0.disks[1].id, 1);
    EXPECT_EQ(p0.disks[1].capacity, "931.5 GB");
    ASSERT_EQ(p0.volumes.size(), 1U);
    const rc::PoolVolume& v0 = p0.volumes[0];
    EXPECT_EQ(v0.id, 0);
    EXPECT_EQ(v0.name, "os");
    EXPECT_EQ(v0.status, "Optimal");
    EXPECT_EQ(v0.stripe_size, "256K");
    EXPECT_EQ(v0.bootable, "True");
    EXPECT_EQ(v0.capacity, "488.3 GB");
    EXPECT_EQ(v0.read_policy, "Read Ahead");
    EXPECT_EQ(v0.write_policy, "Write Back");
    EXPECT_EQ(v0.default_write_policy, "Write Back");
    EXPECT_EQ(v0.io_policy, "Cached IO");
    EXPECT_EQ(v0.access_policy, "Read Write");
    EXPECT_EQ(v0.disk_cache_policy, "Disabled");

    const rc::Pool& p1 = record.pools[1];
    EXPECT_EQ(p1.id, 1);
    EXPECT_EQ(p1.raid_state, "RAID10");
    EXPECT_EQ(p1.raid_capacity, "1.8 TB");
    EXPECT_EQ(p1.holes, "0");
    EXPECT_EQ(p1.disks.size(), 4U);
    EXPECT_EQ(p1.volumes[0].bootable, "False");
    EXPECT_EQ(p1.volumes[0].access_policy, "Read Only");
}

TEST(RenderOobController, CfcPoolStateIsTheLevelAlone) {
    sim::Controller c = MakeController("OOB_CFC");
    c.vendor = "Microchip";
    rc::Controller record;
    RecordRenderer::Render(c, record);
    EXPECT_EQ(record.vendor, "Microchip");
    EXPECT_EQ(record.raid_url, "/redfish/v1/Systems/1/Storage/OOB_CFC-3");
    ASSERT_EQ(record.pools.size(), 2U);
    EXPECT_EQ(record.pools[0].raid_state, "1");
    EXPECT_EQ(record.pools[1].raid_state, "10");
}

TEST(RenderOobController, UnsetStripeSizesAreEmpty) {
    sim::Controller c = MakeController("OOB_LSI");
    c.min_stripe_kb = 0;
    c.max_stripe_kb = 0;
    rc::Controller record;
    RecordRenderer::Render(c, record);
    EXPECT_EQ(record.max_stripe_size, "");
    EXPECT_EQ(record.min_stripe_size, "");
}

TEST(RenderM2, ControllerDisksVolumes) {
    rc::M2CtrlInfo record;
    RecordRenderer::Render(MakeController("M2"), record);
    EXPECT_EQ(record.id, 3);
    EXPECT_EQ(record.version, "1.2");
    EXPECT_EQ(record.name, "Name1");
    // The support helper fills these; the record of GetController leaves them empty.
    EXPECT_EQ(record.max_stripe_size, "");
    EXPECT_EQ(record.min_stripe_size, "");
    EXPECT_TRUE(record.support_raid_levels.empty());
    ASSERT_EQ(record.disks.size(), 10U);
    EXPECT_EQ(record.disks[1].slot_no, "1");
    EXPECT_EQ(record.disks[1].product_name, "HDD 1TB");
    EXPECT_EQ(record.disks[1].media_type, "HDD");
    EXPECT_EQ(record.disks[1].capacity, "931.5 GB");
    EXPECT_EQ(record.disks[1].manufacturer, "Maker");
    ASSERT_EQ(record.volumes.size(), 2U);
    const rc::M2VolumeInfo& v0 = record.volumes[0];
    EXPECT_EQ(v0.volume_id, "0");
    EXPECT_EQ(v0.name, "os");
    EXPECT_EQ(v0.physical_disks, "0,1");
    EXPECT_EQ(v0.raid_level, "RAID1");
    EXPECT_EQ(v0.stripe_size, "256K");
    EXPECT_EQ(v0.capacity, "488.3 GB");
    EXPECT_EQ(v0.status, "Optimal");
    EXPECT_EQ(record.volumes[1].physical_disks, "4,5,6,7");
}

TEST(RenderOobMicrochip, ControllerDisksPools) {
    pc::MicrochipCtrl record;
    RecordRenderer::Render(MakeController("OOB_MICROCHIP"), record);
    EXPECT_EQ(record.id, 3);
    EXPECT_EQ(record.product_name, "RAID X");
    EXPECT_EQ(record.serial_no, "SN1");
    EXPECT_EQ(record.fru_no, "FRU1");
    EXPECT_EQ(record.part_no, "PN1");
    EXPECT_EQ(record.manufacturer, "Maker");
    // The support helper fills these; the record of GetController leaves them empty.
    EXPECT_EQ(record.max_stripe_size, "");
    EXPECT_EQ(record.min_stripe_size, "");
    EXPECT_TRUE(record.support_raid_levels.empty());

    ASSERT_EQ(record.disks.size(), 10U);
    const pc::ProtocolDisk& d9 = record.disks[9];
    EXPECT_EQ(d9.id, 9);
    EXPECT_EQ(d9.product_name, "HDD 1TB");
    EXPECT_EQ(d9.state, "JBOD");
    EXPECT_EQ(d9.slot_no, "9");
    EXPECT_EQ(d9.disk_type, "SAS");
    EXPECT_EQ(d9.media_type, "HDD");
    EXPECT_EQ(d9.health_status, "OK");
    EXPECT_EQ(d9.capacity, "931.5 GB");
    EXPECT_EQ(d9.manufacturer, "Maker");
    EXPECT_EQ(d9.serial_no, "D9");
    EXPECT_EQ(d9.fru_no, "F9");
    EXPECT_EQ(d9.part_no, "P9");

    ASSERT_EQ(record.pools.size(), 2U);
    const pc::MicrochipPool& p0 = record.pools[0];
    EXPECT_EQ(p0.id, 0);
    EXPECT_EQ(p0.raid_state, "RAID1");
    EXPECT_EQ(p0.raid_capacity, "931.5 GB");
    EXPECT_EQ(p0.holes, "1");
    EXPECT_EQ(p0.disks.size(), 2U);
    ASSERT_EQ(p0.volumes.size(), 1U);
    const pc::MicrochipVolume& v0 = p0.volumes[0];
    EXPECT_EQ(v0.id, 0);
    EXPECT_EQ(v0.name, "os");
    EXPECT_EQ(v0.status, "Optimal");
    EXPECT_EQ(v0.stripe_size, "256K");
    EXPECT_EQ(v0.bootable, "True");
    EXPECT_EQ(v0.capacity, "488.3 GB");
    EXPECT_EQ(v0.read_policy, "Read Ahead");
    // This family counts write policies from 1.
    EXPECT_EQ(v0.write_policy, "Write Through");
    EXPECT_EQ(v0.default_write_policy, "Write Through");
    EXPECT_EQ(v0.io_policy, "Cached IO");
    EXPECT_EQ(v0.access_policy, "Read Write");
    EXPECT_EQ(v0.disk_cache_policy, "Disabled");
    EXPECT_EQ(record.pools[1].volumes[0].write_policy, "0");
}

TEST(RenderOobMicrochip, WritePolicyCodesOneToThree) {
    sim::Controller c = MakeController("OOB_MICROCHIP");
    c.volumes[0].write_policy = 2;
    c.volumes[1].write_policy = 3;
    pc::MicrochipCtrl record;
    RecordRenderer::Render(c, record);
    EXPECT_EQ(record.pools[0].volumes[0].write_policy, "Write Back");
    EXPECT_EQ(record.pools[1].volumes[0].write_policy, "Always Write Back");
}

TEST(RenderOobVroc, ControllerDisksPools) {
    pc::VolManDevCtrl record;
    RecordRenderer::Render(MakeController("OOB_VROC"), record);
    EXPECT_EQ(record.id, 3);
    EXPECT_EQ(record.product_name, "RAID X");
    EXPECT_EQ(record.version, "1.2");
    EXPECT_EQ(record.manufacturer, "Maker");
    EXPECT_EQ(record.model, "M1");
    // The support helper fills these; the record of GetController leaves them empty.
    EXPECT_EQ(record.max_stripe_size, "");
    EXPECT_EQ(record.min_stripe_size, "");
    EXPECT_TRUE(record.support_raid_levels.empty());
    ASSERT_EQ(record.disks.size(), 10U);
    EXPECT_EQ(record.disks[0].capacity, "931.5 GB");

    ASSERT_EQ(record.pools.size(), 2U);
    const pc::VolManDevPool& p1 = record.pools[1];
    EXPECT_EQ(p1.id, 1);
    EXPECT_EQ(p1.raid_state, "RAID10");
    EXPECT_EQ(p1.raid_capacity, "1.8 TB");
    EXPECT_EQ(p1.holes, "0");
    EXPECT_EQ(p1.disks.size(), 4U);
    ASSERT_EQ(p1.volumes.size(), 1U);
    const pc::VolManDevVolume& v1 = p1.volumes[0];
    EXPECT_EQ(v1.id, 1);
    EXPECT_EQ(v1.name, "data");
    EXPECT_EQ(v1.status, "Degraded");
    EXPECT_EQ(v1.stripe_size, "64K");
    EXPECT_EQ(v1.bootable, "False");
    EXPECT_EQ(v1.capacity, "1.8 TB");
}

TEST(RenderSoftwareRaid, ControllerDisksArrays) {
    rc::SWWinController record;
    RecordRenderer::Render(MakeController("VROC_WIN"), record);
    EXPECT_EQ(record.id, 3);
    EXPECT_EQ(record.target_id, "3");
    EXPECT_EQ(record.name, "Name1");
    EXPECT_EQ(record.supported_raid_levels, "0,1,5,10");

    ASSERT_EQ(record.disks.size(), 10U);
    const rc::SWWinDisk& d0 = record.disks[0];
    EXPECT_EQ(d0.id, 0);
    EXPECT_EQ(d0.disk_type, "SAS");
    EXPECT_EQ(d0.state, "Online");
    EXPECT_EQ(d0.size, "931.5 GB");
    EXPECT_EQ(d0.system_disk, "True");
    EXPECT_EQ(d0.usage, "Array member");
    EXPECT_EQ(d0.serial_no, "D0");
    EXPECT_EQ(d0.product_name, "HDD 1TB");
    EXPECT_EQ(d0.fru_no, "F0");
    EXPECT_EQ(record.disks[2].usage, "Spare");
    EXPECT_EQ(record.disks[3].usage, "Spare");
    EXPECT_EQ(record.disks[4].system_disk, "False");
    EXPECT_EQ(record.disks[8].usage, "Available");
    EXPECT_EQ(record.disks[9].usage, "Pass-through");

    ASSERT_EQ(record.arrays.size(), 2U);
    const rc::SWWinArray& a0 = record.arrays[0];
    EXPECT_EQ(a0.name, "Array_0");
    EXPECT_EQ(a0.size, "931.5 GB");
    EXPECT_EQ(a0.free, "443.2 GB");
    EXPECT_EQ(a0.num_disks, "2");
    EXPECT_EQ(a0.num_vols, "1");
    EXPECT_EQ(a0.write_cache, "Disabled");
    EXPECT_EQ(a0.volumes_in_array, "os");
    EXPECT_EQ(a0.disks_in_array, "0,1");
    ASSERT_EQ(a0.volumes.size(), 1U);
    const rc::SWWinVolume& v0 = a0.volumes[0];
    EXPECT_EQ(v0.id, 0);
    EXPECT_EQ(v0.name, "os");
    EXPECT_EQ(v0.raid_level, "RAID1");
    EXPECT_EQ(v0.size, "488.3 GB");
    EXPECT_EQ(v0.stripe_size, "256K");
    EXPECT_EQ(v0.num_disks, "2");
    EXPECT_EQ(v0.state, "Optimal");
    EXPECT_EQ(v0.system, "True");
    EXPECT_EQ(v0.cache_policy, "Write Back");
    EXPECT_EQ(v0.disks_in_volume, "0,1");
    EXPECT_EQ(v0.rwh_closure_policy, "");

    const rc::SWWinArray& a1 = record.arrays[1];
    EXPECT_EQ(a1.name, "Array_1");
    EXPECT_EQ(a1.free, "0.0 MB");
    EXPECT_EQ(a1.num_disks, "4");
    EXPECT_EQ(a1.disks_in_array, "4,5,6,7");
    EXPECT_EQ(a1.volumes[0].raid_level, "RAID10");
}

TEST(RenderSoftwareRaid, ParityVolumeHasItsWriteHoleClosureOff) {
    sim::Controller c = MakeController("VROC_WIN");
    c.volumes[1].raid_level = "5";
    c.volumes[1].spans = {{4, 5, 6}};
    rc::SWWinController record;
    RecordRenderer::Render(c, record);
    EXPECT_EQ(record.arrays[1].volumes[0].rwh_closure_policy, "Off");
}

TEST(RenderFirmwareDeviceOrder, InBandAndOutOfBand) {
    sim::Controller c = MakeController("OOB_LSI");
    pc::FWDevOrderCtrl in_band;
    RecordRenderer::Render(c, in_band);
    EXPECT_EQ(in_band.product_name, "RAID X");
    EXPECT_EQ(in_band.serial_no, "SN1");
    EXPECT_EQ(in_band.firmware_device_order, "Enabled");

    rc::FWDevOrderController out_of_band;
    RecordRenderer::Render(c, out_of_band);
    EXPECT_EQ(out_of_band.product_name, "RAID X");
    EXPECT_EQ(out_of_band.serial_no, "SN1");
    EXPECT_EQ(out_of_band.fru_no, "FRU1");
    EXPECT_EQ(out_of_band.part_no, "PN1");
    EXPECT_EQ(out_of_band.firmware_device_order, "Enabled");
    EXPECT_EQ(out_of_band.reserved_int, 0);

    c.fw_device_order.reset();
    pc::FWDevOrderCtrl unset;
    RecordRenderer::Render(c, unset);
    EXPECT_EQ(unset.firmware_device_order, "");
}

TEST(RenderKeyManagement, ControllerWithAndWithoutVolumes) {
    sim::Controller c = MakeController("OOB_LSI");
    rc::EKMController bare;
    RecordRenderer::Render(c, bare, false);
    EXPECT_EQ(bare.product_name, "RAID X");
    EXPECT_EQ(bare.encryption_mode, "local");
    EXPECT_EQ(bare.slot, 7);
    EXPECT_TRUE(bare.volumes.empty());

    rc::EKMController full;
    RecordRenderer::Render(c, full, true);
    ASSERT_EQ(full.volumes.size(), 2U);
    EXPECT_EQ(full.volumes[0].name, "os");
    EXPECT_EQ(full.volumes[0].raid_type, "RAID1");
    EXPECT_EQ(full.volumes[0].id, 0);
    EXPECT_EQ(full.volumes[0].encrypted, 1);
    EXPECT_EQ(full.volumes[1].raid_type, "RAID10");
    EXPECT_EQ(full.volumes[1].encrypted, 0);

    c.ekm_mode.reset();
    rc::EKMController unset;
    RecordRenderer::Render(c, unset, false);
    EXPECT_EQ(unset.encryption_mode, "");
}

TEST(RenderConfig, VolumeObjects) {
    std::vector<rc::VolumeObject> volumes;
    std::vector<int> spares;
    RecordRenderer::RenderConfig(MakeController("OOB_LSI"), volumes, spares);
    EXPECT_EQ(spares, std::vector<int>{3});
    ASSERT_EQ(volumes.size(), 2U);
    const rc::VolumeObject& v0 = volumes[0];
    EXPECT_EQ(v0.controller_id, 3);
    EXPECT_EQ(v0.volume_id, 0);
    EXPECT_EQ(v0.disks, (std::vector<std::vector<int>>{{0, 1}}));
    EXPECT_FALSE(v0.rest_disks);
    EXPECT_EQ(v0.raid_level, "1");
    EXPECT_EQ(v0.hot_spares, std::vector<int>{2});
    EXPECT_EQ(v0.vol_name, "os");
    EXPECT_EQ(v0.volume_size, "500000MB");
    EXPECT_EQ(v0.strip_size, "256K");
    EXPECT_EQ(v0.write_policy, 1);
    EXPECT_EQ(v0.read_policy, 1);
    EXPECT_EQ(v0.io_policy, 1);
    EXPECT_EQ(v0.access_policy, 0);
    EXPECT_EQ(v0.cache_policy, 2);
    EXPECT_EQ(v0.initialization, 0);
    const rc::VolumeObject& v1 = volumes[1];
    EXPECT_EQ(v1.disks, (std::vector<std::vector<int>>{{4, 5}, {6, 7}}));
    EXPECT_TRUE(v1.hot_spares.empty());
    EXPECT_EQ(v1.volume_size, "1907738MB");
    EXPECT_EQ(v1.strip_size, "64K");
    EXPECT_EQ(v1.access_policy, 2);
    EXPECT_EQ(v1.initialization, 1);
}

TEST(RenderConfig, ArcconfVolumes) {
    std::vector<ac::VolumeCfg> volumes;
    std::vector<std::string> spares;
    RecordRenderer::RenderConfig(MakeController("MICROCHIP"), volumes, spares);
    EXPECT_EQ(spares, std::vector<std::string>{"3"});
    ASSERT_EQ(volumes.size(), 2U);
    const ac::VolumeCfg& v0 = volumes[0];
    EXPECT_EQ(v0.controller_id, 3);
    EXPECT_EQ(v0.volume_id, 0);
    EXPECT_EQ(v0.disks, (std::vector<std::string>{"0", "1"}));
    EXPECT_EQ(v0.raid_level, "1");
    EXPECT_EQ(v0.vol_name, "os");
    EXPECT_EQ(v0.volume_size, "500000MB");
    EXPECT_EQ(v0.strip_size, "256");
    EXPECT_EQ(v0.hot_spares, std::vector<std::string>{"2"});
    EXPECT_EQ(v0.io_policy, 1);
    EXPECT_EQ(volumes[1].disks, (std::vector<std::string>{"4", "5", "6", "7"}));
    EXPECT_EQ(volumes[1].io_policy, 0);
}

TEST(RenderConfig, M2TakesTheFirstVolume) {
    rc::M2VolumeInfo volume;
    RecordRenderer::RenderConfig(MakeController("OOB_M2"), volume);
    EXPECT_EQ(volume.volume_id, "0");
    EXPECT_EQ(volume.name, "os");
    EXPECT_EQ(volume.physical_disks, "0,1");
    EXPECT_EQ(volume.raid_level, "1");
    EXPECT_EQ(volume.stripe_size, "256K");
    EXPECT_EQ(volume.capacity, "500000MB");
    EXPECT_EQ(volume.status, "Optimal");
}

TEST(RenderConfig, M2WithoutVolumeLeavesTheRecord) {
    sim::Controller c = MakeController("M2");
    c.volumes.clear();
    rc::M2VolumeInfo volume;
    RecordRenderer::RenderConfig(c, volume);
    EXPECT_EQ(volume.volume_id, "");
    EXPECT_EQ(volume.raid_level, "");
}

TEST(RenderConfig, OobMicrochipVolumes) {
    sim::Controller c = MakeController("OOB_MICROCHIP");
    c.volumes[1].raid_level = "1triple";
    c.volumes[1].spans = {{4, 5, 6}};
    std::vector<pc::OobMicroConfig> volumes;
    RecordRenderer::RenderConfig(c, volumes);
    ASSERT_EQ(volumes.size(), 2U);
    const pc::OobMicroConfig& v0 = volumes[0];
    EXPECT_EQ(v0.controller_id, 3);
    EXPECT_EQ(v0.volume_id, 0);
    EXPECT_EQ(v0.disks, (std::vector<std::vector<int>>{{0, 1}}));
    EXPECT_EQ(v0.hot_spares, std::vector<int>{2});
    EXPECT_EQ(v0.raid_level, "1");
    EXPECT_EQ(v0.vol_name, "os");
    EXPECT_EQ(v0.volume_size, "500000MB");
    EXPECT_EQ(v0.strip_size, "256K");
    EXPECT_EQ(v0.write_policy, 1);
    EXPECT_EQ(v0.read_policy, 1);
    EXPECT_EQ(volumes[1].raid_level, "1triple");
}

TEST(RenderConfig, OobVrocVolumes) {
    std::vector<pc::VolManDevConfig> volumes;
    std::vector<int> spares;
    RecordRenderer::RenderConfig(MakeController("OOB_VROC"), volumes, spares);
    EXPECT_EQ(spares, std::vector<int>{3});
    ASSERT_EQ(volumes.size(), 2U);
    const pc::VolManDevConfig& v1 = volumes[1];
    EXPECT_EQ(v1.controller_id, 3);
    EXPECT_EQ(v1.volume_id, 1);
    EXPECT_EQ(v1.disks, (std::vector<std::vector<int>>{{4, 5}, {6, 7}}));
    EXPECT_EQ(v1.raid_level, "10");
    EXPECT_EQ(v1.vol_name, "data");
    EXPECT_EQ(v1.volume_size, "1907738MB");
    EXPECT_EQ(v1.strip_size, "64K");
}

TEST(RenderConfig, SoftwareRaidArrays) {
    sim::Controller c = MakeController("VROC_WIN");
    c.volumes[0].size_mb = 7324218;
    std::vector<rc::SWWinArray> arrays;
    std::vector<int> spares;
    RecordRenderer::RenderConfig(c, arrays, spares);
    EXPECT_EQ(spares, std::vector<int>{3});
    ASSERT_EQ(arrays.size(), 2U);
    EXPECT_EQ(arrays[0].name, "Array_0");
    ASSERT_EQ(arrays[0].volumes.size(), 1U);
    const rc::SWWinVolume& v0 = arrays[0].volumes[0];
    EXPECT_EQ(v0.id, 0);
    EXPECT_EQ(v0.name, "os");
    EXPECT_EQ(v0.raid_level, "1");
    EXPECT_EQ(v0.size, "7152.556640625 GB");
    EXPECT_EQ(v0.stripe_size, "256 KB");
    EXPECT_EQ(v0.disks_in_volume, "0,1");
    EXPECT_EQ(arrays[1].volumes[0].size, "1863.025390625 GB");
    EXPECT_EQ(arrays[1].volumes[0].stripe_size, "64 KB");
}

TEST(RenderConfig, SoftwareRaidWholeGigabytesHaveNoFraction) {
    sim::Controller c = MakeController("VROC_WIN");
    c.volumes[0].size_mb = 102400;
    std::vector<rc::SWWinArray> arrays;
    std::vector<int> spares;
    RecordRenderer::RenderConfig(c, arrays, spares);
    EXPECT_EQ(arrays[0].volumes[0].size, "100 GB");
}

// What add hands the backend from a saved volume gives the stored one back.
void ExpectSizeAndStrip(const sim::VolumeRequest& request, const sim::Volume& volume) {
    long long megabytes = 0;
    int kilobytes = 0;
    std::string error;
    ASSERT_TRUE(sim::VolumeCreator::ParseSize(request.size, 1LL << 40, megabytes, error)) << error;
    ASSERT_TRUE(sim::VolumeCreator::ParseStrip(request.strip, kilobytes, error)) << error;
    EXPECT_EQ(megabytes, volume.size_mb);
    EXPECT_EQ(kilobytes, volume.strip_kb);
}

// "953869MB" -> "953869", as the policy cast turns a size with a unit into megabytes.
std::string CastMegabytes(const std::string& text) {
    return text.substr(0, text.find("MB"));
}

TEST(RoundTrip, VolumeObjectFamilies) {
    for (const char* family : {"LSI", "OOB_LSI", "OOB_CFC"}) {
        const sim::Controller c = MakeController(family);
        std::vector<rc::VolumeObject> volumes;
        std::vector<int> spares;
        RecordRenderer::RenderConfig(c, volumes, spares);
        ASSERT_EQ(volumes.size(), c.volumes.size());
        for (std::size_t i = 0; i < volumes.size(); ++i) {
            for (const bool cast : {false, true}) {
                rc::VolumeObject saved = volumes[i];
                if (cast) {
                    saved.volume_size = CastMegabytes(saved.volume_size);
                }
                sim::VolumeRequest request;
                std::string error;
                ASSERT_TRUE(sim::VolumeRequest::From(saved, request, error)) << error;
                EXPECT_EQ(request.controller_id, c.id);
                EXPECT_EQ(request.raid_level, c.volumes[i].raid_level);
                EXPECT_EQ(request.spans, c.volumes[i].spans);
                EXPECT_EQ(request.hot_spares, c.volumes[i].dedicated_spares);
                EXPECT_EQ(request.name, c.volumes[i].name);
                EXPECT_EQ(request.write_policy, c.volumes[i].write_policy);
                EXPECT_EQ(request.cache_policy, c.volumes[i].cache_policy);
                ExpectSizeAndStrip(request, c.volumes[i]);
            }
        }
    }
}

TEST(RoundTrip, Microchip) {
    // This family keeps one group of disks.
    sim::Controller c = MakeController("MICROCHIP");
    c.volumes[1].spans = {{4, 5, 6, 7}};
    std::vector<ac::VolumeCfg> volumes;
    std::vector<std::string> spares;
    RecordRenderer::RenderConfig(c, volumes, spares);
    for (std::size_t i = 0; i < volumes.size(); ++i) {
        const ac::VolumeCfg& saved = volumes[i];
        auto join = [](const std::vector<std::string>& texts) {
            std::string joined;
            for (const std::string& text : texts) {
                joined += (joined.empty() ? "" : ",") + text;
            }
            return joined;
        };
        pc::MicrochipConfig added;
        added.controller_id = saved.controller_id;
        added.volume_id = saved.volume_id;
        added.disks = join(saved.disks);
        added.hot_spares = join(saved.hot_spares);
        added.raid_level = saved.raid_level;
        added.vol_name = saved.vol_name;
        added.io_policy = saved.io_policy;
        added.volume_size = saved.volume_size;
        added.strip_size = saved.strip_size + "K";
        sim::VolumeRequest request;
        std::string error;
        ASSERT_TRUE(sim::VolumeRequest::From(added, request, error)) << error;
        EXPECT_EQ(request.controller_id, 3);
        EXPECT_EQ(request.raid_level, c.volumes[i].raid_level);
        EXPECT_EQ(request.spans, c.volumes[i].spans);
        EXPECT_EQ(request.hot_spares, c.volumes[i].dedicated_spares);
        EXPECT_EQ(request.io_policy, c.volumes[i].io_policy);
        ExpectSizeAndStrip(request, c.volumes[i]);
    }
}

TEST(RoundTrip, M2) {
    for (const char* family : {"M2", "OOB_M2"}) {
        const sim::Controller c = MakeController(family);
        rc::M2VolumeInfo saved;
        RecordRenderer::RenderConfig(c, saved);
        rc::M2ControllerObject added;
        added.controller_id = c.id;
        added.vol_name = saved.name;
        added.raid_level = saved.raid_level;
        added.strip_size = saved.stripe_size;
        sim::VolumeRequest request;
        std::string error;
        ASSERT_TRUE(sim::VolumeRequest::From(added, request, error)) << error;
        EXPECT_EQ(request.raid_level, "1");
        EXPECT_EQ(request.name, "os");
        EXPECT_TRUE(request.rest_disks);
        EXPECT_TRUE(request.spans.empty());
        EXPECT_EQ(request.strip, "256K");
        int kilobytes = 0;
        ASSERT_TRUE(sim::VolumeCreator::ParseStrip(request.strip, kilobytes, error));
        EXPECT_EQ(kilobytes, 256);
    }
}

TEST(RoundTrip, OobMicrochip) {
    sim::Controller c = MakeController("OOB_MICROCHIP");
    c.volumes[1].raid_level = "10triple";
    c.volumes[1].spans = {{4, 5, 6}, {7, 8, 9}};
    std::vector<pc::OobMicroConfig> volumes;
    RecordRenderer::RenderConfig(c, volumes);
    for (std::size_t i = 0; i < volumes.size(); ++i) {
        pc::OobMicroConfig added = volumes[i];
        added.volume_size = CastMegabytes(added.volume_size);
        // The cast hands this family the short form of the triple levels.
        if (added.raid_level == "10triple") {
            added.raid_level = "10T";
        }
        sim::VolumeRequest request;
        std::string error;
        ASSERT_TRUE(sim::VolumeRequest::From(added, request, error)) << error;
        EXPECT_EQ(request.raid_level, c.volumes[i].raid_level);
        EXPECT_EQ(request.spans, c.volumes[i].spans);
        EXPECT_EQ(request.hot_spares, c.volumes[i].dedicated_spares);
        EXPECT_EQ(request.write_policy, c.volumes[i].write_policy);
        EXPECT_EQ(request.read_policy, c.volumes[i].read_policy);
        ExpectSizeAndStrip(request, c.volumes[i]);
    }
}

TEST(RoundTrip, OobVroc) {
    const sim::Controller c = MakeController("OOB_VROC");
    std::vector<pc::VolManDevConfig> volumes;
    std::vector<int> spares;
    RecordRenderer::RenderConfig(c, volumes, spares);
    for (std::size_t i = 0; i < volumes.size(); ++i) {
        sim::VolumeRequest request;
        std::string error;
        ASSERT_TRUE(sim::VolumeRequest::From(volumes[i], request, error)) << error;
        EXPECT_EQ(request.raid_level, c.volumes[i].raid_level);
        EXPECT_EQ(request.spans, c.volumes[i].spans);
        ExpectSizeAndStrip(request, c.volumes[i]);
    }
}

// The first blank-separated word of a text: what save keeps of a software RAID size or strip.
std::string FirstWord(const std::string& text) {
    return text.substr(0, text.find(' '));
}

TEST(RoundTrip, SoftwareRaid) {
    // This family keeps one group of disks.
    sim::Controller c = MakeController("VROC_WIN");
    c.volumes[1].spans = {{4, 5, 6, 7}};
    c.volumes[1].size_mb = 1907739; // not a whole number of gigabytes
    std::vector<rc::SWWinArray> arrays;
    std::vector<int> spares;
    RecordRenderer::RenderConfig(c, arrays, spares);
    ASSERT_EQ(arrays.size(), 2U);
    for (std::size_t i = 0; i < arrays.size(); ++i) {
        const rc::SWWinVolume& saved = arrays[i].volumes.at(0);
        rc::VolRaidConfig added;
        added.raid_level = saved.raid_level;
        added.vol_name = saved.name;
        added.disks = saved.disks_in_volume;
        added.vol_capacity = FirstWord(saved.size) + "GB";
        added.vol_strip_size = FirstWord(saved.stripe_size);
        added.raid_write_hole = saved.rwh_closure_policy;
        added.volume_id = std::to_string(i);
        added.controller_id = "3";
        sim::VolumeRequest request;
        std::string error;
        ASSERT_TRUE(sim::VolumeRequest::From(added, request, error)) << error;
        EXPECT_EQ(request.controller_id, 3);
        EXPECT_EQ(request.raid_level, c.volumes[i].raid_level);
        EXPECT_EQ(request.spans, c.volumes[i].spans);
        EXPECT_EQ(request.name, c.volumes[i].name);
        ExpectSizeAndStrip(request, c.volumes[i]);
    }
}

} // namespace
