#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include "backend/records.hpp"
#include "collaborators/log.hpp"
#include "service/misc_raid_service/detail/service_raid_utils.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

namespace pt = boost::property_tree;

using Quillon::ARCCONF::ArcconfConnector;
using Quillon::ARCCONF::ArcconfDisk;
using Quillon::ARCCONF::ArcconfVolume;
using Quillon::ARCCONF::ControllerInfo;
using Quillon::protocol::StorcliCtrl;
using Quillon::protocol::StorcliDisk;
using Quillon::protocol::StorcliVolume;
using Quillon::RaidConfig::M2CtrlInfo;
using Quillon::RaidConfig::M2DiskInfo;
using Quillon::RaidConfig::M2VolumeInfo;
using Quillon::RaidConfig::SWWinArray;
using Quillon::RaidConfig::SWWinController;
using Quillon::RaidConfig::SWWinDisk;
using Quillon::RaidConfig::SWWinVolume;
using raidcfg_test::ExpectGolden;
using raidcfg_test::ReadFile;
using service::detail::RaidUtils;

StorcliDisk LsiDisk(int id, const std::string& slot, const std::string& state) {
    StorcliDisk disk;
    disk.id = id;
    disk.reserved_text = "not shown";
    disk.product_name = "ST4000NM0035";
    disk.state = state;
    disk.slot_no = slot;
    disk.disk_type = "SAS";
    disk.media_type = "HDD";
    disk.capacity = "3.637 TB";
    disk.serial_no = "ZC1" + std::to_string(id) + "8KQ";
    disk.fru_no = "01GV" + std::to_string(id);
    disk.type = "DHS";
    return disk;
}

StorcliVolume LsiVolume(int id, int drive_group, const std::string& name) {
    StorcliVolume volume;
    volume.id = id;
    volume.drive_group = drive_group;
    volume.name = name;
    volume.raid_state = "RAID1";
    volume.status = "Optl";
    volume.stripe_size = "256 KB";
    volume.capacity = "1.818 TB";
    volume.read_policy = "RA";
    volume.write_policy = "WB";
    volume.io_policy = "Direct";
    volume.access_policy = "RW";
    volume.disk_cache_policy = "Disabled";
    return volume;
}

// An LSI controller whose volumes show every way of forming the "Disks" cell: "enclosure:slot"
// texts, a text with a second ":", a word without ":", an empty group and a missing group.
StorcliCtrl FullLsi() {
    StorcliCtrl ctrl;
    ctrl.target_id = 3;
    ctrl.product_name = "SAS3908 Tri-Mode";
    ctrl.serial_no = "SK01234567";
    ctrl.drive_groups[0] = {"252:0", "252:1"};
    ctrl.drive_groups[1] = {"252:2:x", "UGood"};
    ctrl.drive_groups[2] = {};
    ctrl.disks = {LsiDisk(0, "0", "Onln"), LsiDisk(1, "1", "Onln"), LsiDisk(2, "2", "UGood")};
    ctrl.volumes = {LsiVolume(0, 0, "system"), LsiVolume(1, 1, "data"),
                    LsiVolume(2, 2, "empty_group"), LsiVolume(3, 7, "no_group")};
    ctrl.volumes[3].name.clear();
    return ctrl;
}

ArcconfDisk MicroDisk(const std::string& id, const std::string& connector) {
    ArcconfDisk disk;
    disk.id = id;
    disk.product_name = "MZ7LH960";
    disk.state = "Ready";
    disk.slot_no = id;
    disk.disk_type = "SATA";
    disk.media_type = "SSD";
    disk.capacity = "915715MB";
    disk.serial_no = "S45NNA0M" + id;
    disk.fru = "02YC" + id;
    disk.connector_id = connector;
    return disk;
}

ArcconfVolume MicroVolume(const std::string& id, const std::string& level,
                          const std::string& stripe, int acceleration,
                          const std::vector<std::string>& disks) {
    ArcconfVolume volume;
    volume.id = id;
    volume.name = "Logical" + id;
    volume.raid_state = level;
    volume.status = "Optimal";
    volume.stripe_size = stripe;
    volume.capacity = "1830912MB";
    volume.acceleration = acceleration;
    volume.disks = disks;
    return volume;
}

ControllerInfo FullMicrochip() {
    ControllerInfo ctrl;
    ctrl.target_id = "ctrl-2";
    ctrl.product_name = "SmartRAID 3152-8i";
    ctrl.serial_no = "7A4620EA0F5";
    ctrl.connectors = {{"", "0", "CN0", "Mixed"}, {"", "1", "CN1", "RAID"}};
    ctrl.disks = {MicroDisk("0", "0"), MicroDisk("1", "0"), MicroDisk("2", "1")};
    // Disk texts are joined whole, a ":" in them included.
    ctrl.volumes = {MicroVolume("0", "5", "256", 0, {"0:0", "0:1", "1:2"}),
                    MicroVolume("1", "1", "64", 1, {"0"}), MicroVolume("2", "0", "128", 2, {}),
                    MicroVolume("3", "10", "16", -1, {"a", "b"})};
    return ctrl;
}

M2CtrlInfo FullM2() {
    M2CtrlInfo ctrl;
    ctrl.id = 1;
    ctrl.version = "2.3.10.1095";
    ctrl.name = "88SE9230";
    ctrl.max_stripe_size = "128K";
    ctrl.min_stripe_size = "32K";
    ctrl.support_raid_levels = {"RAID0", "RAID1"};
    ctrl.disks = {{"0", "M.2 SSD 240G", "SSD", "223.57GB", "Micron"},
                  {"1", "M.2 SSD 240G", "SSD", "223.57GB", ""}};
    ctrl.volumes = {{"0", "M2Vol", "0,1", "RAID1", "64K", "223.57GB", "Functional"}};
    return ctrl;
}

SWWinDisk VrocDisk(int id, const std::string& usage) {
    SWWinDisk disk;
    disk.id = id;
    disk.disk_type = "NVMe";
    disk.state = "Normal";
    disk.size = "894.25 GB";
    disk.system_disk = id == 0 ? "True" : "False";
    disk.usage = usage;
    disk.serial_no = "PHLJ9" + std::to_string(id);
    disk.product_name = "SSDPE2KX010T8";
    disk.fru_no = "";
    return disk;
}

SWWinVolume VrocVolume(int id, const std::string& name, const std::string& level) {
    SWWinVolume volume;
    volume.id = id;
    volume.name = name;
    volume.raid_level = level;
    volume.size = "100.00 GB";
    volume.stripe_size = "64 KB";
    volume.num_disks = "2";
    volume.state = "Normal";
    volume.system = id == 0 ? "True" : "False";
    volume.cache_policy = "Off";
    volume.disks_in_volume = "0,1";
    volume.rwh_closure_policy = "Distributed";
    return volume;
}

SWWinArray VrocArray(const std::string& name, const std::vector<SWWinVolume>& volumes) {
    SWWinArray array;
    array.name = name;
    array.size = "1788.50 GB";
    array.free = "1588.50 GB";
    array.num_disks = "2";
    array.num_vols = std::to_string(volumes.size());
    array.write_cache = "Off";
    array.volumes_in_array = volumes.empty() ? "" : "0";
    array.disks_in_array = "0,1";
    array.volumes = volumes;
    return array;
}

// Two arrays: the first with two volumes, the second with none.
SWWinController FullVroc() {
    SWWinController ctrl;
    ctrl.id = 0;
    ctrl.target_id = "VROC-0";
    ctrl.name = "Intel VROC";
    ctrl.supported_raid_levels = "0,1,5,10";
    ctrl.disks = {VrocDisk(0, "Array member"), VrocDisk(1, "Array member"),
                  VrocDisk(2, "Available")};
    ctrl.arrays = {VrocArray("Array_0000", {VrocVolume(0, "Volume_0000", "RAID1"),
                                            VrocVolume(1, "Volume_0001", "RAID0")}),
                   VrocArray("Array_0001", {})};
    return ctrl;
}

std::string Xml(const pt::ptree& show_tree) {
    pt::ptree root;
    root.add_child(pt::ptree::path_type("CONTROLLERS", '.'), show_tree);
    std::ostringstream out;
    pt::write_xml(out, root, pt::xml_writer_make_settings<std::string>('\t', 1, "utf-8"));
    return out.str();
}

class RaidUtilsInbandTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }

    std::string LogText() const { return ReadFile(dir_.File("raidcfg.log")); }

    void ExpectTraced(const std::string& operation) const {
        const std::string log = LogText();
        const std::string name = "service::detail::RaidUtils::" + operation;
        const std::size_t entering = log.find("Entering  " + name + "\n");
        const std::size_t exiting = log.find("Exiting  " + name + "\n");
        ASSERT_NE(entering, std::string::npos) << log;
        ASSERT_NE(exiting, std::string::npos) << log;
        EXPECT_LT(entering, exiting);
    }

    raidcfg_test::TempDir dir_;
    RaidUtils utils_;
};

// Titles

TEST_F(RaidUtilsInbandTest, TitlesAreSetAtConstruction) {
    EXPECT_EQ(utils_.broadcom_title, "Broadcom Controller Information");
    EXPECT_EQ(utils_.microchip_title, "Microchip Controller Information");
    EXPECT_EQ(utils_.marvell_title, "Marvell Controller Information");
    EXPECT_EQ(utils_.vroc_title, "VROC Controller Information");
    EXPECT_EQ(utils_.ekm_title, "External Key Management Information");
}

// LSI tables

TEST_F(RaidUtilsInbandTest, BroadcomFullControllerPrintsItsThreeTables) {
    std::string text;
    utils_.PrintBroadcomController(5, FullLsi(), text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/broadcom_full.txt", text);
}

TEST_F(RaidUtilsInbandTest, BroadcomDisksCellCutsBehindTheFirstColonAndKeepsWordsWhole) {
    StorcliCtrl ctrl = FullLsi();
    ctrl.disks.clear();
    ctrl.volumes.resize(2);
    std::string text;
    utils_.PrintBroadcomController(0, ctrl, text, true);
    EXPECT_NE(text.find("    0,1    "), std::string::npos) << text;
    EXPECT_NE(text.find("    2:x,UGood    "), std::string::npos) << text;
}

TEST_F(RaidUtilsInbandTest, BroadcomVolumeWithEmptyOrMissingGroupHasAnEmptyDisksCell) {
    StorcliCtrl ctrl;
    ctrl.target_id = 0;
    ctrl.drive_groups[4] = {};
    ctrl.volumes = {LsiVolume(0, 4, "empty_group"), LsiVolume(1, 9, "no_group")};
    std::string text;
    utils_.PrintBroadcomController(0, ctrl, text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/broadcom_empty_disks_cell.txt", text);
}

TEST_F(RaidUtilsInbandTest, BroadcomWithoutDisksAndVolumesPrintsTheFirstTableOnly) {
    StorcliCtrl ctrl;
    ctrl.target_id = 7;
    ctrl.product_name = "SAS3908";
    ctrl.drive_groups[0] = {"252:0"};
    std::string text;
    utils_.PrintBroadcomController(2, ctrl, text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/broadcom_first_table_only.txt", text);
}

TEST_F(RaidUtilsInbandTest, CollectAppendsToTheTextAndLeavesStandardOutputSilent) {
    std::string text = "before\n";
    ::testing::internal::CaptureStdout();
    utils_.PrintBroadcomController(5, FullLsi(), text, true);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    std::string alone;
    utils_.PrintBroadcomController(5, FullLsi(), alone, true);
    EXPECT_EQ(text, "before\n" + alone);
}

TEST_F(RaidUtilsInbandTest, WithoutCollectTheTablesGoToStandardOutputAndTheTextStays) {
    std::string collected;
    utils_.PrintBroadcomController(5, FullLsi(), collected, true);
    std::string text = "kept";
    ::testing::internal::CaptureStdout();
    utils_.PrintBroadcomController(5, FullLsi(), text, false);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), collected);
    EXPECT_EQ(text, "kept");
}

TEST_F(RaidUtilsInbandTest, PrintBroadcomControllerLogsEnteringAndExiting) {
    std::string text;
    utils_.PrintBroadcomController(0, StorcliCtrl{}, text, true);
    ExpectTraced("PrintBroadcomController");
}

// Microchip tables

TEST_F(RaidUtilsInbandTest, MicrochipFullControllerPrintsItsFourTables) {
    std::string text;
    utils_.PrintMicrochipController(1, FullMicrochip(), text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/microchip_full.txt", text);
}

TEST_F(RaidUtilsInbandTest, MicrochipLevelFiveAndStripe256ShowAsRaid5And256K) {
    ControllerInfo ctrl;
    ctrl.volumes = {MicroVolume("0", "5", "256", 0, {"0:0"})};
    std::string text;
    utils_.PrintMicrochipController(0, ctrl, text, true);
    EXPECT_NE(text.find("RAID5 "), std::string::npos) << text;
    EXPECT_NE(text.find("256K "), std::string::npos) << text;
    EXPECT_NE(text.find("Volume ID     Name "), std::string::npos) << text;
}

TEST_F(RaidUtilsInbandTest, MicrochipEmptySequencesPrintNoTable) {
    ControllerInfo ctrl = FullMicrochip();
    ctrl.connectors.clear();
    ctrl.volumes.clear();
    std::string text;
    utils_.PrintMicrochipController(0, ctrl, text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/microchip_disks_only.txt", text);
}

TEST_F(RaidUtilsInbandTest, PrintMicrochipControllerLogsEnteringAndExiting) {
    std::string text;
    utils_.PrintMicrochipController(0, ControllerInfo{}, text, true);
    ExpectTraced("PrintMicrochipController");
}

// M.2 tables

TEST_F(RaidUtilsInbandTest, MarvellFullControllerPrintsItsThreeTables) {
    std::string text;
    utils_.PrintMarvellController(4, FullM2(), text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/marvell_full.txt", text);
}

TEST_F(RaidUtilsInbandTest, MarvellWithoutDisksAndVolumesPrintsTheFirstTableOnly) {
    M2CtrlInfo ctrl;
    ctrl.id = 12;
    ctrl.name = "88SE9230";
    std::string text;
    utils_.PrintMarvellController(0, ctrl, text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/marvell_first_table_only.txt", text);
}

TEST_F(RaidUtilsInbandTest, PrintMarvellControllerLogsEnteringAndExiting) {
    std::string text;
    utils_.PrintMarvellController(0, M2CtrlInfo{}, text, true);
    ExpectTraced("PrintMarvellController");
}

// Software RAID tables

TEST_F(RaidUtilsInbandTest, WinVrocTwoArraysPrintTheContainerTableTwice) {
    std::string text;
    utils_.PrintWinVrocController(6, FullVroc(), text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/vroc_full.txt", text);
}

TEST_F(RaidUtilsInbandTest, WinVrocVolumesFollowTheirOwnArray) {
    SWWinController ctrl = FullVroc();
    ctrl.disks.clear();
    ctrl.arrays = {VrocArray("Array_0000", {VrocVolume(0, "Volume_0000", "RAID1")}),
                   VrocArray("Array_0001", {VrocVolume(5, "Volume_0005", "RAID5")})};
    std::string text;
    utils_.PrintWinVrocController(0, ctrl, text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/vroc_volumes_per_array.txt", text);
}

TEST_F(RaidUtilsInbandTest, WinVrocWithoutDisksAndArraysPrintsTheFirstTableOnly) {
    SWWinController ctrl;
    ctrl.target_id = "VROC-0";
    ctrl.name = "Intel VROC";
    std::string text;
    utils_.PrintWinVrocController(0, ctrl, text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/vroc_first_table_only.txt", text);
}

TEST_F(RaidUtilsInbandTest, PrintWinVrocControllerLogsEnteringAndExiting) {
    std::string text;
    utils_.PrintWinVrocController(0, SWWinController{}, text, true);
    ExpectTraced("PrintWinVrocController");
}

// Show XML

TEST_F(RaidUtilsInbandTest, TwoLsiControllersAreTwoSiblingsInCallOrder) {
    pt::ptree show_tree;
    utils_.SaveLSIController2Xml(0, FullLsi(), show_tree);
    StorcliCtrl bare;
    bare.target_id = 9;
    bare.product_name = "SAS3908";
    utils_.SaveLSIController2Xml(1, bare, show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/lsi_two_controllers.xml", Xml(show_tree));
}

TEST_F(RaidUtilsInbandTest, LsiWithoutDisksSavesNoDisksElement) {
    StorcliCtrl ctrl = FullLsi();
    ctrl.disks.clear();
    pt::ptree show_tree;
    utils_.SaveLSIController2Xml(0, ctrl, show_tree);
    const pt::ptree& node = show_tree.get_child(pt::ptree::path_type("CONTROLLER", '.'));
    EXPECT_EQ(node.count("DISKS"), 0U);
    EXPECT_EQ(node.count("VOLUMES"), 1U);
    ExpectTraced("SaveLSIController2Xml");
}

TEST_F(RaidUtilsInbandTest, MicrochipFullControllerSavesNoConnectors) {
    pt::ptree show_tree;
    utils_.SaveMicrochipController2Xml(1, FullMicrochip(), show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/microchip_full.xml", Xml(show_tree));
    ExpectTraced("SaveMicrochipController2Xml");
}

TEST_F(RaidUtilsInbandTest, MicrochipWithoutDisksAndVolumesSavesNeitherElement) {
    ControllerInfo ctrl;
    ctrl.target_id = "0";
    ctrl.connectors = {{"", "0", "CN0", "Mixed"}};
    pt::ptree show_tree;
    utils_.SaveMicrochipController2Xml(0, ctrl, show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/microchip_bare.xml", Xml(show_tree));
}

TEST_F(RaidUtilsInbandTest, M2FullControllerSavesTargetIdWithItsPrefix) {
    pt::ptree show_tree;
    utils_.SaveM2ToXml(4, FullM2(), show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/m2_full.xml", Xml(show_tree));
    ExpectTraced("SaveM2ToXml");
}

TEST_F(RaidUtilsInbandTest, VrocVolumesOfAllArraysGoIntoOneVolumesElement) {
    SWWinController ctrl = FullVroc();
    ctrl.arrays.push_back(VrocArray("Array_0002", {VrocVolume(2, "Volume_0002", "RAID5")}));
    pt::ptree show_tree;
    utils_.SaveVrocWin2Xml(6, ctrl, show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/vroc_full.xml", Xml(show_tree));
    ExpectTraced("SaveVrocWin2Xml");
}

TEST_F(RaidUtilsInbandTest, VrocArraysWithoutVolumesStillSaveAnEmptyVolumesElement) {
    SWWinController ctrl;
    ctrl.target_id = "VROC-0";
    ctrl.arrays = {VrocArray("Array_0000", {})};
    pt::ptree show_tree;
    utils_.SaveVrocWin2Xml(0, ctrl, show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils/vroc_empty_volumes.xml", Xml(show_tree));
}

TEST_F(RaidUtilsInbandTest, VrocWithoutArraysSavesNoVolumesElement) {
    SWWinController ctrl = FullVroc();
    ctrl.arrays.clear();
    ctrl.disks.clear();
    pt::ptree show_tree;
    utils_.SaveVrocWin2Xml(0, ctrl, show_tree);
    const pt::ptree& node = show_tree.get_child(pt::ptree::path_type("CONTROLLER", '.'));
    EXPECT_EQ(node.count("DISKS"), 0U);
    EXPECT_EQ(node.count("VOLUMES"), 0U);
    EXPECT_EQ(node.size(), 5U);
}

TEST_F(RaidUtilsInbandTest, NoControllerGivesAnEmptyControllersElement) {
    EXPECT_NE(Xml(pt::ptree{}).find("<CONTROLLERS/>"), std::string::npos);
}

} // namespace
