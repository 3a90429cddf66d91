#include <algorithm>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "backend/records.hpp"

#include <gtest/gtest.h>

// Each record is filled below by positional aggregate initialisation with one distinct value per
// field. That compiles only while the records stay aggregates whose fields have these types in
// this order, and the check of each named field then pins the order of fields of the same type.

namespace {

namespace rc = Quillon::RaidConfig;
namespace pr = Quillon::protocol;
namespace ac = Quillon::ARCCONF;

using Strings = std::vector<std::string>;
using Groups = std::vector<std::vector<int>>;

static_assert(std::is_aggregate_v<rc::Controller>);
static_assert(std::is_aggregate_v<rc::Disk>);
static_assert(std::is_aggregate_v<rc::Pool>);
static_assert(std::is_aggregate_v<rc::PoolVolume>);
static_assert(std::is_aggregate_v<rc::VolumeObject>);
static_assert(std::is_aggregate_v<rc::ConfigVol>);
static_assert(std::is_aggregate_v<rc::Table>);
static_assert(std::is_aggregate_v<rc::VolRaidConfig>);
static_assert(std::is_aggregate_v<rc::M2ControllerObject>);
static_assert(std::is_aggregate_v<rc::M2VolumeInfo>);
static_assert(std::is_aggregate_v<rc::M2CtrlInfo>);
static_assert(std::is_aggregate_v<rc::M2DiskInfo>);
static_assert(std::is_aggregate_v<rc::SWWinController>);
static_assert(std::is_aggregate_v<rc::SWWinDisk>);
static_assert(std::is_aggregate_v<rc::SWWinArray>);
static_assert(std::is_aggregate_v<rc::SWWinVolume>);
static_assert(std::is_aggregate_v<rc::EKMController>);
static_assert(std::is_aggregate_v<rc::EKMVolume>);
static_assert(std::is_aggregate_v<rc::FWDevOrderController>);
static_assert(std::is_aggregate_v<pr::StorcliCtrl>);
static_assert(std::is_aggregate_v<pr::StorcliDisk>);
static_assert(std::is_aggregate_v<pr::StorcliVolume>);
static_assert(std::is_aggregate_v<pr::FWDevOrderCtrl>);
static_assert(std::is_aggregate_v<pr::MicrochipConfig>);
static_assert(std::is_aggregate_v<pr::MicrochipCtrl>);
static_assert(std::is_aggregate_v<pr::ProtocolDisk>);
static_assert(std::is_aggregate_v<pr::MicrochipPool>);
static_assert(std::is_aggregate_v<pr::MicrochipVolume>);
static_assert(std::is_aggregate_v<pr::OobMicroConfig>);
static_assert(std::is_aggregate_v<pr::VolManDevCtrl>);
static_assert(std::is_aggregate_v<pr::VolManDevPool>);
static_assert(std::is_aggregate_v<pr::VolManDevVolume>);
static_assert(std::is_aggregate_v<pr::VolManDevConfig>);
static_assert(std::is_aggregate_v<ac::ControllerInfo>);
static_assert(std::is_aggregate_v<ac::ArcconfConnector>);
static_assert(std::is_aggregate_v<ac::ArcconfDisk>);
static_assert(std::is_aggregate_v<ac::ArcconfVolume>);
static_assert(std::is_aggregate_v<ac::VolumeCfg>);

static_assert(std::is_same_v<decltype(pr::StorcliCtrl::drive_groups),
                             std::map<int, std::vector<std::string>>>);
static_assert(std::is_same_v<decltype(rc::VolumeObject::rest_disks), bool>);
static_assert(std::is_same_v<decltype(pr::MicrochipPool::disks), std::vector<pr::ProtocolDisk>>);
static_assert(std::is_same_v<decltype(pr::VolManDevPool::disks), std::vector<pr::ProtocolDisk>>);

rc::Disk MakeDisk(int id) {
    return rc::Disk{"r1",     id,    "product", "state", "slot", "type", "media",
                    "health", "cap", "serial",  "fru",   "part", "r2"};
}

rc::PoolVolume MakePoolVolume(int id) {
    return rc::PoolVolume{"r0", id,   "name", "r1", "status", "64K", "yes", "1TB",
                          "rp", "wp", "dwp",  "r2", "io",     "acc", "dc",  "r3"};
}

rc::Pool MakePool(int id) {
    return rc::Pool{"r", id, "5", "2TB", "holes", {MakeDisk(1)}, {MakePoolVolume(2)}};
}

// ---- Defaults ----

TEST(RecordDefaults, SharedRecordsStartAtZeroAndEmpty) {
    const rc::Controller controller;
    EXPECT_EQ(controller.id, 0);
    EXPECT_TRUE(controller.product_name.empty());
    EXPECT_TRUE(controller.vendor.empty());
    EXPECT_TRUE(controller.support_raid_levels.empty());
    EXPECT_TRUE(controller.disks.empty());
    EXPECT_TRUE(controller.pools.empty());

    EXPECT_EQ(rc::Disk{}.id, 0);
    EXPECT_EQ(rc::Pool{}.id, 0);
    EXPECT_EQ(rc::PoolVolume{}.id, 0);
    EXPECT_EQ(rc::Table{}.columns, 0);
    EXPECT_TRUE(rc::Table{}.cells.empty());
    EXPECT_EQ(rc::M2ControllerObject{}.controller_id, 0);
    EXPECT_EQ(rc::M2CtrlInfo{}.id, 0);
    EXPECT_EQ(rc::SWWinController{}.id, 0);
    EXPECT_EQ(rc::SWWinDisk{}.id, 0);
    EXPECT_EQ(rc::SWWinVolume{}.id, 0);
    EXPECT_EQ(rc::EKMController{}.slot, 0);
    EXPECT_EQ(rc::EKMVolume{}.id, 0);
    EXPECT_EQ(rc::EKMVolume{}.encrypted, 0);
    EXPECT_EQ(rc::FWDevOrderController{}.reserved_int, 0);
}

TEST(RecordDefaults, VolumeObjectPolicyValuesStartAtZero) {
    const rc::VolumeObject volume;
    EXPECT_EQ(volume.controller_id, 0);
    EXPECT_EQ(volume.volume_id, 0);
    EXPECT_TRUE(volume.disks.empty());
    EXPECT_FALSE(volume.rest_disks);
    EXPECT_TRUE(volume.hot_spares.empty());
    EXPECT_EQ(volume.write_policy, 0);
    EXPECT_EQ(volume.read_policy, 0);
    EXPECT_EQ(volume.io_policy, 0);
    EXPECT_EQ(volume.access_policy, 0);
    EXPECT_EQ(volume.cache_policy, 0);
    EXPECT_EQ(volume.initialization, 0);
}

TEST(RecordDefaults, MicrochipConfigIdsAndIoPolicyStartUnset) {
    const pr::MicrochipConfig config;
    EXPECT_EQ(config.controller_id, -1);
    EXPECT_EQ(config.volume_id, -1);
    EXPECT_EQ(config.io_policy, -1);
    EXPECT_TRUE(config.disks.empty());
    EXPECT_TRUE(config.hot_spares.empty());
}

TEST(RecordDefaults, OobMicroConfigStartsWithWritePolicyThreeAndReadPolicyZero) {
    const pr::OobMicroConfig config;
    EXPECT_EQ(config.controller_id, -1);
    EXPECT_EQ(config.volume_id, -1);
    EXPECT_EQ(config.write_policy, 3);
    EXPECT_EQ(config.read_policy, 0);
    EXPECT_TRUE(config.disks.empty());
    EXPECT_TRUE(config.hot_spares.empty());
}

TEST(RecordDefaults, VolManDevConfigIdsStartUnset) {
    const pr::VolManDevConfig config;
    EXPECT_EQ(config.controller_id, -1);
    EXPECT_EQ(config.volume_id, -1);
    EXPECT_TRUE(config.disks.empty());
}

TEST(RecordDefaults, VolumeCfgIoPolicyStartsUnset) {
    const ac::VolumeCfg config;
    EXPECT_EQ(config.io_policy, -1);
    EXPECT_EQ(config.controller_id, 0);
    EXPECT_EQ(config.volume_id, 0);
}

TEST(RecordDefaults, VendorRecordsStartAtZeroAndEmpty) {
    EXPECT_EQ(pr::StorcliCtrl{}.target_id, 0);
    EXPECT_TRUE(pr::StorcliCtrl{}.drive_groups.empty());
    EXPECT_EQ(pr::StorcliDisk{}.id, 0);
    EXPECT_EQ(pr::StorcliDisk{}.reserved_int, 0);
    EXPECT_EQ(pr::StorcliVolume{}.id, 0);
    EXPECT_EQ(pr::StorcliVolume{}.drive_group, 0);
    EXPECT_EQ(pr::MicrochipCtrl{}.id, 0);
    EXPECT_EQ(pr::ProtocolDisk{}.id, 0);
    EXPECT_EQ(pr::MicrochipPool{}.id, 0);
    EXPECT_EQ(pr::MicrochipVolume{}.id, 0);
    EXPECT_EQ(pr::VolManDevCtrl{}.id, 0);
    EXPECT_EQ(pr::VolManDevPool{}.id, 0);
    EXPECT_EQ(pr::VolManDevVolume{}.id, 0);
    EXPECT_EQ(ac::ArcconfVolume{}.acceleration, 0);
    EXPECT_TRUE(ac::ControllerInfo{}.connectors.empty());
}

// ---- Copy, assignment and sorting ----

TEST(RecordCopy, DiskCopiesAssignsAndSortsById) {
    const rc::Disk original = MakeDisk(7);
    const rc::Disk copy(original);
    EXPECT_EQ(copy.id, 7);
    EXPECT_EQ(copy.serial_no, "serial");
    rc::Disk assigned;
    assigned = original;
    EXPECT_EQ(assigned.id, 7);
    EXPECT_EQ(assigned.reserved_text_2, "r2");

    std::vector<rc::Disk> disks{MakeDisk(3), MakeDisk(1), MakeDisk(2)};
    disks[0].slot_no = "three";
    std::sort(disks.begin(), disks.end(),
              [](const rc::Disk& a, const rc::Disk& b) { return a.id < b.id; });
    ASSERT_EQ(disks.size(), 3u);
    EXPECT_EQ(disks[0].id, 1);
    EXPECT_EQ(disks[1].id, 2);
    EXPECT_EQ(disks[2].id, 3);
    EXPECT_EQ(disks[2].slot_no, "three");
}

TEST(RecordCopy, PoolCopiesAssignsAndSortsById) {
    const rc::Pool original = MakePool(4);
    const rc::Pool copy(original);
    EXPECT_EQ(copy.id, 4);
    ASSERT_EQ(copy.disks.size(), 1u);
    ASSERT_EQ(copy.volumes.size(), 1u);
    EXPECT_EQ(copy.volumes[0].id, 2);
    rc::Pool assigned;
    assigned = original;
    EXPECT_EQ(assigned.id, 4);
    EXPECT_EQ(assigned.holes, "holes");

    std::vector<rc::Pool> pools{MakePool(9), MakePool(0), MakePool(5)};
    pools[0].raid_state = "nine";
    std::sort(pools.begin(), pools.end(),
              [](const rc::Pool& a, const rc::Pool& b) { return a.id < b.id; });
    EXPECT_EQ(pools[0].id, 0);
    EXPECT_EQ(pools[1].id, 5);
    EXPECT_EQ(pools[2].id, 9);
    EXPECT_EQ(pools[2].raid_state, "nine");
}

// ---- Field order: shared records ----

TEST(RecordOrder, Controller) {
    const rc::Controller c{"r",   3,    "product", "serial",   "fru",         "part",       "vend",
                           "url", "1M", "64K",     {"0", "1"}, {MakeDisk(5)}, {MakePool(6)}};
    EXPECT_EQ(c.reserved_text, "r");
    EXPECT_EQ(c.id, 3);
    EXPECT_EQ(c.product_name, "product");
    EXPECT_EQ(c.serial_no, "serial");
    EXPECT_EQ(c.fru_no, "fru");
    EXPECT_EQ(c.part_no, "part");
    EXPECT_EQ(c.vendor, "vend");
    EXPECT_EQ(c.raid_url, "url");
    EXPECT_EQ(c.max_stripe_size, "1M");
    EXPECT_EQ(c.min_stripe_size, "64K");
    EXPECT_EQ(c.support_raid_levels, (Strings{"0", "1"}));
    ASSERT_EQ(c.disks.size(), 1u);
    EXPECT_EQ(c.disks[0].id, 5);
    ASSERT_EQ(c.pools.size(), 1u);
    EXPECT_EQ(c.pools[0].id, 6);
}

TEST(RecordOrder, Disk) {
    const rc::Disk d{"r1",     9,     "product", "state", "slot", "dtype", "media",
                     "health", "cap", "serial",  "fru",   "part", "r2"};
    EXPECT_EQ(d.reserved_text, "r1");
    EXPECT_EQ(d.id, 9);
    EXPECT_EQ(d.product_name, "product");
    EXPECT_EQ(d.state, "state");
    EXPECT_EQ(d.slot_no, "slot");
    EXPECT_EQ(d.disk_type, "dtype");
    EXPECT_EQ(d.media_type, "media");
    EXPECT_EQ(d.health_status, "health");
    EXPECT_EQ(d.capacity, "cap");
    EXPECT_EQ(d.serial_no, "serial");
    EXPECT_EQ(d.fru_no, "fru");
    EXPECT_EQ(d.part_no, "part");
    EXPECT_EQ(d.reserved_text_2, "r2");
}

TEST(RecordOrder, Pool) {
    const rc::Pool p{"r", 2, "5", "2TB", "holes", {MakeDisk(1), MakeDisk(3)}, {MakePoolVolume(4)}};
    EXPECT_EQ(p.reserved_text, "r");
    EXPECT_EQ(p.id, 2);
    EXPECT_EQ(p.raid_state, "5");
    EXPECT_EQ(p.raid_capacity, "2TB");
    EXPECT_EQ(p.holes, "holes");
    ASSERT_EQ(p.disks.size(), 2u);
    EXPECT_EQ(p.disks[1].id, 3);
    ASSERT_EQ(p.volumes.size(), 1u);
    EXPECT_EQ(p.volumes[0].id, 4);
}

TEST(RecordOrder, PoolVolume) {
    const rc::PoolVolume v = MakePoolVolume(8);
    EXPECT_EQ(v.reserved_text, "r0");
    EXPECT_EQ(v.id, 8);
    EXPECT_EQ(v.name, "name");
    EXPECT_EQ(v.reserved_text_1, "r1");
    EXPECT_EQ(v.status, "status");
    EXPECT_EQ(v.stripe_size, "64K");
    EXPECT_EQ(v.bootable, "yes");
    EXPECT_EQ(v.capacity, "1TB");
    EXPECT_EQ(v.read_policy, "rp");
    EXPECT_EQ(v.write_policy, "wp");
    EXPECT_EQ(v.default_write_policy, "dwp");
    EXPECT_EQ(v.reserved_text_2, "r2");
    EXPECT_EQ(v.io_policy, "io");
    EXPECT_EQ(v.access_policy, "acc");
    EXPECT_EQ(v.disk_cache_policy, "dc");
    EXPECT_EQ(v.reserved_text_3, "r3");
}

TEST(RecordOrder, VolumeObject) {
    const rc::VolumeObject v{
        1, 2, {{3, 4}, {5}}, true, "10", {6, 7}, "vol", "100", "64K", 11, 12, 13, 14, 15, 16};
    EXPECT_EQ(v.controller_id, 1);
    EXPECT_EQ(v.volume_id, 2);
    EXPECT_EQ(v.disks, (Groups{{3, 4}, {5}}));
    EXPECT_TRUE(v.rest_disks);
    EXPECT_EQ(v.raid_level, "10");
    EXPECT_EQ(v.hot_spares, (std::vector<int>{6, 7}));
    EXPECT_EQ(v.vol_name, "vol");
    EXPECT_EQ(v.volume_size, "100");
    EXPECT_EQ(v.strip_size, "64K");
    EXPECT_EQ(v.write_policy, 11);
    EXPECT_EQ(v.read_policy, 12);
    EXPECT_EQ(v.io_policy, 13);
    EXPECT_EQ(v.access_policy, 14);
    EXPECT_EQ(v.cache_policy, 15);
    EXPECT_EQ(v.initialization, 16);
}

TEST(RecordOrder, Table) {
    const rc::Table t{3, {"title", "a", "b", "c"}};
    EXPECT_EQ(t.columns, 3);
    EXPECT_EQ(t.cells, (Strings{"title", "a", "b", "c"}));
}

TEST(RecordOrder, VolRaidConfig) {
    const rc::VolRaidConfig v{"r", "5", "vol", "0,1,2", "10GB", "128", "PPL", "4", "0"};
    EXPECT_EQ(v.reserved_text, "r");
    EXPECT_EQ(v.raid_level, "5");
    EXPECT_EQ(v.vol_name, "vol");
    EXPECT_EQ(v.disks, "0,1,2");
    EXPECT_EQ(v.vol_capacity, "10GB");
    EXPECT_EQ(v.vol_strip_size, "128");
    EXPECT_EQ(v.raid_write_hole, "PPL");
    EXPECT_EQ(v.volume_id, "4");
    EXPECT_EQ(v.controller_id, "0");
}

TEST(RecordOrder, M2ControllerObject) {
    const rc::M2ControllerObject m{2, "vol", "1", "64K"};
    EXPECT_EQ(m.controller_id, 2);
    EXPECT_EQ(m.vol_name, "vol");
    EXPECT_EQ(m.raid_level, "1");
    EXPECT_EQ(m.strip_size, "64K");
}

TEST(RecordOrder, M2VolumeInfo) {
    const rc::M2VolumeInfo v{"0", "vol", "0,1", "1", "64K", "480GB", "Normal"};
    EXPECT_EQ(v.volume_id, "0");
    EXPECT_EQ(v.name, "vol");
    EXPECT_EQ(v.physical_disks, "0,1");
    EXPECT_EQ(v.raid_level, "1");
    EXPECT_EQ(v.stripe_size, "64K");
    EXPECT_EQ(v.capacity, "480GB");
    EXPECT_EQ(v.status, "Normal");
}

TEST(RecordOrder, M2CtrlInfo) {
    const rc::M2CtrlInfo c{1,
                           "2.0",
                           "name",
                           "128K",
                           "32K",
                           {"0", "1"},
                           {{"slot", "product", "media", "cap", "maker"}},
                           {{"0", "vol", "0,1", "1", "64K", "480GB", "Normal"}}};
    EXPECT_EQ(c.id, 1);
    EXPECT_EQ(c.version, "2.0");
    EXPECT_EQ(c.name, "name");
    EXPECT_EQ(c.max_stripe_size, "128K");
    EXPECT_EQ(c.min_stripe_size, "32K");
    EXPECT_EQ(c.support_raid_levels, (Strings{"0", "1"}));
    ASSERT_EQ(c.disks.size(), 1u);
    EXPECT_EQ(c.disks[0].slot_no, "slot");
    EXPECT_EQ(c.disks[0].product_name, "product");
    EXPECT_EQ(c.disks[0].media_type, "media");
    EXPECT_EQ(c.disks[0].capacity, "cap");
    EXPECT_EQ(c.disks[0].manufacturer, "maker");
    ASSERT_EQ(c.volumes.size(), 1u);
    EXPECT_EQ(c.volumes[0].name, "vol");
}

TEST(RecordOrder, SWWinController) {
    const rc::SWWinDisk disk{4,     "r",   "SATA",   "Normal",  "1TB",
                             "yes", "use", "serial", "product", "fru"};
    const rc::SWWinVolume volume{5,        "vol", "1",  "1TB", "64K", "2",
                                 "Normal", "no",  "WB", "0,1", "PPL"};
    const rc::SWWinArray array{"arr", "2TB", "1TB", "2", "1", "on", "vol", "0,1", {volume}};
    const rc::SWWinController c{1, "VROC-0", "name", "0,1,5", {disk}, {array}};

    EXPECT_EQ(c.id, 1);
    EXPECT_EQ(c.target_id, "VROC-0");
    EXPECT_EQ(c.name, "name");
    EXPECT_EQ(c.supported_raid_levels, "0,1,5");
    ASSERT_EQ(c.disks.size(), 1u);
    ASSERT_EQ(c.arrays.size(), 1u);

    const rc::SWWinDisk& d = c.disks[0];
    EXPECT_EQ(d.id, 4);
    EXPECT_EQ(d.reserved_text, "r");
    EXPECT_EQ(d.disk_type, "SATA");
    EXPECT_EQ(d.state, "Normal");
    EXPECT_EQ(d.size, "1TB");
    EXPECT_EQ(d.system_disk, "yes");
    EXPECT_EQ(d.usage, "use");
    EXPECT_EQ(d.serial_no, "serial");
    EXPECT_EQ(d.product_name, "product");
    EXPECT_EQ(d.fru_no, "fru");

    const rc::SWWinArray& a = c.arrays[0];
    EXPECT_EQ(a.name, "arr");
    EXPECT_EQ(a.size, "2TB");
    EXPECT_EQ(a.free, "1TB");
    EXPECT_EQ(a.num_disks, "2");
    EXPECT_EQ(a.num_vols, "1");
    EXPECT_EQ(a.write_cache, "on");
    EXPECT_EQ(a.volumes_in_array, "vol");
    EXPECT_EQ(a.disks_in_array, "0,1");
    ASSERT_EQ(a.volumes.size(), 1u);

    const rc::SWWinVolume& v = a.volumes[0];
    EXPECT_EQ(v.id, 5);
    EXPECT_EQ(v.name, "vol");
    EXPECT_EQ(v.raid_level, "1");
    EXPECT_EQ(v.size, "1TB");
    EXPECT_EQ(v.stripe_size, "64K");
    EXPECT_EQ(v.num_disks, "2");
    EXPECT_EQ(v.state, "Normal");
    EXPECT_EQ(v.system, "no");
    EXPECT_EQ(v.cache_policy, "WB");
    EXPECT_EQ(v.disks_in_volume, "0,1");
    EXPECT_EQ(v.rwh_closure_policy, "PPL");
}

TEST(RecordOrder, EKMController) {
    const rc::EKMController c{
        "product", "mode", "r1", "r2", "r3", 7, {{"vol", "RAID1", "a", "b", 3, 1}}};
    EXPECT_EQ(c.product_name, "product");
    EXPECT_EQ(c.encryption_mode, "mode");
    EXPECT_EQ(c.reserved_text, "r1");
    EXPECT_EQ(c.reserved_text_2, "r2");
    EXPECT_EQ(c.reserved_text_3, "r3");
    EXPECT_EQ(c.slot, 7);
    ASSERT_EQ(c.volumes.size(), 1u);
    EXPECT_EQ(c.volumes[0].id, 3);
}

TEST(RecordOrder, EKMVolume) {
    const rc::EKMVolume v{"vol", "RAID1", "a", "b", 3, 1};
    EXPECT_EQ(v.name, "vol");
    EXPECT_EQ(v.raid_type, "RAID1");
    EXPECT_EQ(v.reserved_text, "a");
    EXPECT_EQ(v.reserved_text_2, "b");
    EXPECT_EQ(v.id, 3);
    EXPECT_EQ(v.encrypted, 1);
}

TEST(RecordOrder, FWDevOrderController) {
    const rc::FWDevOrderController c{"product", "serial", "fru", "part", "order", 5};
    EXPECT_EQ(c.product_name, "product");
    EXPECT_EQ(c.serial_no, "serial");
    EXPECT_EQ(c.fru_no, "fru");
    EXPECT_EQ(c.part_no, "part");
    EXPECT_EQ(c.firmware_device_order, "order");
    EXPECT_EQ(c.reserved_int, 5);
}

// ---- Field order: vendor records ----

TEST(RecordOrder, StorcliCtrl) {
    const pr::StorcliCtrl c{2,
                            "product",
                            "serial",
                            {{0, {"252:1", "252:2"}}},
                            {pr::StorcliDisk{}},
                            {pr::StorcliVolume{}, pr::StorcliVolume{}}};
    EXPECT_EQ(c.target_id, 2);
    EXPECT_EQ(c.product_name, "product");
    EXPECT_EQ(c.serial_no, "serial");
    ASSERT_EQ(c.drive_groups.count(0), 1u);
    EXPECT_EQ(c.drive_groups.at(0), (Strings{"252:1", "252:2"}));
    EXPECT_EQ(c.disks.size(), 1u);
    EXPECT_EQ(c.volumes.size(), 2u);
}

TEST(RecordOrder, StorcliDisk) {
    const pr::StorcliDisk d{4,     "r",   5,     "product", "state", "252:1",
                            "SAS", "HDD", "1TB", "serial",  "fru",   "type"};
    EXPECT_EQ(d.id, 4);
    EXPECT_EQ(d.reserved_text, "r");
    EXPECT_EQ(d.reserved_int, 5);
    EXPECT_EQ(d.product_name, "product");
    EXPECT_EQ(d.state, "state");
    EXPECT_EQ(d.slot_no, "252:1");
    EXPECT_EQ(d.disk_type, "SAS");
    EXPECT_EQ(d.media_type, "HDD");
    EXPECT_EQ(d.capacity, "1TB");
    EXPECT_EQ(d.serial_no, "serial");
    EXPECT_EQ(d.fru_no, "fru");
    EXPECT_EQ(d.type, "type");
}

TEST(RecordOrder, StorcliVolume) {
    const pr::StorcliVolume v{1,      "r1",  2,    "name", "RAID5",  "r2", "Optl",
                              "256K", "1TB", "RA", "WB",   "Direct", "RW", "Default"};
    EXPECT_EQ(v.id, 1);
    EXPECT_EQ(v.reserved_text, "r1");
    EXPECT_EQ(v.drive_group, 2);
    EXPECT_EQ(v.name, "name");
    EXPECT_EQ(v.raid_state, "RAID5");
    EXPECT_EQ(v.reserved_text_2, "r2");
    EXPECT_EQ(v.status, "Optl");
    EXPECT_EQ(v.stripe_size, "256K");
    EXPECT_EQ(v.capacity, "1TB");
    EXPECT_EQ(v.read_policy, "RA");
    EXPECT_EQ(v.write_policy, "WB");
    EXPECT_EQ(v.io_policy, "Direct");
    EXPECT_EQ(v.access_policy, "RW");
    EXPECT_EQ(v.disk_cache_policy, "Default");
}

TEST(RecordOrder, FWDevOrderCtrl) {
    const pr::FWDevOrderCtrl c{"product", "serial", "order"};
    EXPECT_EQ(c.product_name, "product");
    EXPECT_EQ(c.serial_no, "serial");
    EXPECT_EQ(c.firmware_device_order, "order");
}

TEST(RecordOrder, MicrochipConfig) {
    const pr::MicrochipConfig c{1, 2, "0,1", "2", "1", "vol", 3, "512MB", "128K"};
    EXPECT_EQ(c.controller_id, 1);
    EXPECT_EQ(c.volume_id, 2);
    EXPECT_EQ(c.disks, "0,1");
    EXPECT_EQ(c.hot_spares, "2");
    EXPECT_EQ(c.raid_level, "1");
    EXPECT_EQ(c.vol_name, "vol");
    EXPECT_EQ(c.io_policy, 3);
    EXPECT_EQ(c.volume_size, "512MB");
    EXPECT_EQ(c.strip_size, "128K");
}

TEST(RecordOrder, ProtocolDisk) {
    const pr::ProtocolDisk d{6,    "r",   "product", "state",  "slot", "SAS", "SSD",
                             "OK", "1TB", "maker",   "serial", "fru",  "part"};
    EXPECT_EQ(d.id, 6);
    EXPECT_EQ(d.reserved_text, "r");
    EXPECT_EQ(d.product_name, "product");
    EXPECT_EQ(d.state, "state");
    EXPECT_EQ(d.slot_no, "slot");
    EXPECT_EQ(d.disk_type, "SAS");
    EXPECT_EQ(d.media_type, "SSD");
    EXPECT_EQ(d.health_status, "OK");
    EXPECT_EQ(d.capacity, "1TB");
    EXPECT_EQ(d.manufacturer, "maker");
    EXPECT_EQ(d.serial_no, "serial");
    EXPECT_EQ(d.fru_no, "fru");
    EXPECT_EQ(d.part_no, "part");
}

TEST(RecordOrder, MicrochipCtrl) {
    const pr::MicrochipVolume volume{3,    "r1",  "vol", "Optimal", "256K", "yes", "1TB", "rp",
                                     "wp", "dwp", "r2",  "io",      "acc",  "dc",  "r3"};
    const pr::MicrochipPool pool{2,       "r1", "5", "2TB", "r2", "holes", {pr::ProtocolDisk{}},
                                 {volume}};
    const pr::MicrochipCtrl c{1,      "r1",    "product", "r2",  "serial",   "fru",
                              "part", "maker", "1M",      "16K", {"0", "5"}, {pr::ProtocolDisk{}},
                              {pool}};
    EXPECT_EQ(c.id, 1);
    EXPECT_EQ(c.reserved_text, "r1");
    EXPECT_EQ(c.product_name, "product");
    EXPECT_EQ(c.reserved_text_2, "r2");
    EXPECT_EQ(c.serial_no, "serial");
    EXPECT_EQ(c.fru_no, "fru");
    EXPECT_EQ(c.part_no, "part");
    EXPECT_EQ(c.manufacturer, "maker");
    EXPECT_EQ(c.max_stripe_size, "1M");
    EXPECT_EQ(c.min_stripe_size, "16K");
    EXPECT_EQ(c.support_raid_levels, (Strings{"0", "5"}));
    EXPECT_EQ(c.disks.size(), 1u);
    ASSERT_EQ(c.pools.size(), 1u);

    const pr::MicrochipPool& p = c.pools[0];
    EXPECT_EQ(p.id, 2);
    EXPECT_EQ(p.reserved_text, "r1");
    EXPECT_EQ(p.raid_state, "5");
    EXPECT_EQ(p.raid_capacity, "2TB");
    EXPECT_EQ(p.reserved_text_2, "r2");
    EXPECT_EQ(p.holes, "holes");
    EXPECT_EQ(p.disks.size(), 1u);
    ASSERT_EQ(p.volumes.size(), 1u);

    const pr::MicrochipVolume& v = p.volumes[0];
    EXPECT_EQ(v.id, 3);
    EXPECT_EQ(v.reserved_text, "r1");
    EXPECT_EQ(v.name, "vol");
    EXPECT_EQ(v.status, "Optimal");
    EXPECT_EQ(v.stripe_size, "256K");
    EXPECT_EQ(v.bootable, "yes");
    EXPECT_EQ(v.capacity, "1TB");
    EXPECT_EQ(v.read_policy, "rp");
    EXPECT_EQ(v.write_policy, "wp");
    EXPECT_EQ(v.default_write_policy, "dwp");
    EXPECT_EQ(v.reserved_text_2, "r2");
    EXPECT_EQ(v.io_policy, "io");
    EXPECT_EQ(v.access_policy, "acc");
    EXPECT_EQ(v.disk_cache_policy, "dc");
    EXPECT_EQ(v.reserved_text_3, "r3");
}

TEST(RecordOrder, OobMicroConfig) {
    const pr::OobMicroConfig c{1, 2, {{3, 4}, {5, 6}}, {7}, "1T", "vol", "1024", "256K", 8, 9};
    EXPECT_EQ(c.controller_id, 1);
    EXPECT_EQ(c.volume_id, 2);
    EXPECT_EQ(c.disks, (Groups{{3, 4}, {5, 6}}));
    EXPECT_EQ(c.hot_spares, (std::vector<int>{7}));
    EXPECT_EQ(c.raid_level, "1T");
    EXPECT_EQ(c.vol_name, "vol");
    EXPECT_EQ(c.volume_size, "1024");
    EXPECT_EQ(c.strip_size, "256K");
    EXPECT_EQ(c.write_policy, 8);
    EXPECT_EQ(c.read_policy, 9);
}

TEST(RecordOrder, VolManDevCtrl) {
    const pr::VolManDevVolume volume{3, "r", "vol", "Normal", "64K", "no", "1TB"};
    const pr::VolManDevPool pool{2, "r", "1", "1TB", "holes", {pr::ProtocolDisk{}}, {volume}};
    const pr::VolManDevCtrl c{1,       "r",    "product", "8.0",      "maker",
                              "model", "128K", "4K",      {"0", "1"}, {pr::ProtocolDisk{}},
                              {pool}};
    EXPECT_EQ(c.id, 1);
    EXPECT_EQ(c.reserved_text, "r");
    EXPECT_EQ(c.product_name, "product");
    EXPECT_EQ(c.version, "8.0");
    EXPECT_EQ(c.manufacturer, "maker");
    EXPECT_EQ(c.model, "model");
    EXPECT_EQ(c.max_stripe_size, "128K");
    EXPECT_EQ(c.min_stripe_size, "4K");
    EXPECT_EQ(c.support_raid_levels, (Strings{"0", "1"}));
    EXPECT_EQ(c.disks.size(), 1u);
    ASSERT_EQ(c.pools.size(), 1u);

    const pr::VolManDevPool& p = c.pools[0];
    EXPECT_EQ(p.id, 2);
    EXPECT_EQ(p.reserved_text, "r");
    EXPECT_EQ(p.raid_state, "1");
    EXPECT_EQ(p.raid_capacity, "1TB");
    EXPECT_EQ(p.holes, "holes");
    EXPECT_EQ(p.disks.size(), 1u);
    ASSERT_EQ(p.volumes.size(), 1u);

    const pr::VolManDevVolume& v = p.volumes[0];
    EXPECT_EQ(v.id, 3);
    EXPECT_EQ(v.reserved_text, "r");
    EXPECT_EQ(v.name, "vol");
    EXPECT_EQ(v.status, "Normal");
    EXPECT_EQ(v.stripe_size, "64K");
    EXPECT_EQ(v.bootable, "no");
    EXPECT_EQ(v.capacity, "1TB");
}

TEST(RecordOrder, VolManDevConfig) {
    const pr::VolManDevConfig c{1, 2, {{3}, {4, 5}}, "10", "vol", "2048", "64K"};
    EXPECT_EQ(c.controller_id, 1);
    EXPECT_EQ(c.volume_id, 2);
    EXPECT_EQ(c.disks, (Groups{{3}, {4, 5}}));
    EXPECT_EQ(c.raid_level, "10");
    EXPECT_EQ(c.vol_name, "vol");
    EXPECT_EQ(c.volume_size, "2048");
    EXPECT_EQ(c.strip_size, "64K");
}

TEST(RecordOrder, ControllerInfo) {
    const ac::ArcconfConnector connector{"r", "0", "CN0", "RAID"};
    const ac::ArcconfDisk disk{"r1",  "r2",  "4",      "product", "Online", "3",  "SAS",
                               "SSD", "1TB", "serial", "fru",     "0",      "r3", "r4"};
    const ac::ArcconfVolume volume{"r1",  "0",  "vol", "5", "Optimal",      "256",
                                   "1TB", "r2", "r3",  1,   {"0", "1", "2"}};
    const ac::ControllerInfo c{"1",      "r1", "r2",        "r3",   "product",
                               "serial", "r4", {connector}, {disk}, {volume}};
    EXPECT_EQ(c.target_id, "1");
    EXPECT_EQ(c.reserved_text, "r1");
    EXPECT_EQ(c.reserved_text_2, "r2");
    EXPECT_EQ(c.reserved_text_3, "r3");
    EXPECT_EQ(c.product_name, "product");
    EXPECT_EQ(c.serial_no, "serial");
    EXPECT_EQ(c.reserved_text_4, "r4");
    ASSERT_EQ(c.connectors.size(), 1u);
    ASSERT_EQ(c.disks.size(), 1u);
    ASSERT_EQ(c.volumes.size(), 1u);

    const ac::ArcconfConnector& n = c.connectors[0];
    EXPECT_EQ(n.reserved_text, "r");
    EXPECT_EQ(n.id, "0");
    EXPECT_EQ(n.name, "CN0");
    EXPECT_EQ(n.mode, "RAID");

    const ac::ArcconfDisk& d = c.disks[0];
    EXPECT_EQ(d.reserved_text, "r1");
    EXPECT_EQ(d.reserved_text_2, "r2");
    EXPECT_EQ(d.id, "4");
    EXPECT_EQ(d.product_name, "product");
    EXPECT_EQ(d.state, "Online");
    EXPECT_EQ(d.slot_no, "3");
    EXPECT_EQ(d.disk_type, "SAS");
    EXPECT_EQ(d.media_type, "SSD");
    EXPECT_EQ(d.capacity, "1TB");
    EXPECT_EQ(d.serial_no, "serial");
    EXPECT_EQ(d.fru, "fru");
    EXPECT_EQ(d.connector_id, "0");
    EXPECT_EQ(d.reserved_text_3, "r3");
    EXPECT_EQ(d.reserved_text_4, "r4");

    const ac::ArcconfVolume& v = c.volumes[0];
    EXPECT_EQ(v.reserved_text, "r1");
    EXPECT_EQ(v.id, "0");
    EXPECT_EQ(v.name, "vol");
    EXPECT_EQ(v.raid_state, "5");
    EXPECT_EQ(v.status, "Optimal");
    EXPECT_EQ(v.stripe_size, "256");
    EXPECT_EQ(v.capacity, "1TB");
    EXPECT_EQ(v.reserved_text_2, "r2");
    EXPECT_EQ(v.reserved_text_3, "r3");
    EXPECT_EQ(v.acceleration, 1);
    EXPECT_EQ(v.disks, (Strings{"0", "1", "2"}));
}

TEST(RecordOrder, VolumeCfg) {
    const ac::VolumeCfg c{1, 2, {"0", "1"}, "1", "vol", "1024", "256", {"3"}, 4};
    EXPECT_EQ(c.controller_id, 1);
    EXPECT_EQ(c.volume_id, 2);
    EXPECT_EQ(c.disks, (Strings{"0", "1"}));
    EXPECT_EQ(c.raid_level, "1");
    EXPECT_EQ(c.vol_name, "vol");
    EXPECT_EQ(c.volume_size, "1024");
    EXPECT_EQ(c.strip_size, "256");
    EXPECT_EQ(c.hot_spares, (Strings{"3"}));
    EXPECT_EQ(c.io_policy, 4);
}

TEST(RecordOrder, ConfigVolNeedsNoFields) {
    const rc::ConfigVol a{};
    rc::ConfigVol b = a;
    b = a;
    SUCCEED();
}

} // namespace
