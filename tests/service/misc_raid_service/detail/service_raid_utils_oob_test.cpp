#include <iostream>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include "backend/records.hpp"
#include "collaborators/basic_element_page.hpp"
#include "collaborators/element_table_data.hpp"
#include "collaborators/log.hpp"
#include "service/misc_raid_service/detail/service_raid_utils.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using boost::property_tree::ptree;
using HtmlPrint::BasicElementPage;
using HtmlPrint::ElementTableData;
using Quillon::protocol::MicrochipCtrl;
using Quillon::protocol::MicrochipPool;
using Quillon::protocol::MicrochipVolume;
using Quillon::protocol::ProtocolDisk;
using Quillon::protocol::VolManDevCtrl;
using Quillon::protocol::VolManDevPool;
using Quillon::protocol::VolManDevVolume;
using Quillon::RaidConfig::Controller;
using Quillon::RaidConfig::Disk;
using Quillon::RaidConfig::M2CtrlInfo;
using Quillon::RaidConfig::M2DiskInfo;
using Quillon::RaidConfig::M2VolumeInfo;
using Quillon::RaidConfig::Pool;
using Quillon::RaidConfig::PoolVolume;
using raidcfg_test::ExpectGolden;
using raidcfg_test::ReadFile;
using service::detail::RaidUtils;

// Sends std::cout into a string while it lives.
class CoutCapture {
public:
    CoutCapture() : old_(std::cout.rdbuf(captured_.rdbuf())) {}
    ~CoutCapture() { std::cout.rdbuf(old_); }
    CoutCapture(const CoutCapture&) = delete;
    CoutCapture& operator=(const CoutCapture&) = delete;

    std::string Text() const { return captured_.str(); }

private:
    std::ostringstream captured_;
    std::streambuf* old_;
};

Disk MakeDisk(int id, const std::string& slot, const std::string& state) {
    Disk disk;
    disk.id = id;
    disk.product_name = "HDD 1TB";
    disk.state = state;
    disk.slot_no = slot;
    disk.disk_type = "SAS";
    disk.media_type = "HDD";
    disk.health_status = "OK";
    disk.capacity = "931.5 GB";
    disk.serial_no = "D" + std::to_string(id);
    disk.fru_no = "FRU-D" + std::to_string(id);
    disk.part_no = "PN-D" + std::to_string(id);
    return disk;
}

PoolVolume MakePoolVolume(int id, const std::string& name, const std::string& write_policy,
                          const std::string& default_write_policy) {
    PoolVolume volume;
    volume.id = id;
    volume.name = name;
    volume.status = "Optimal";
    volume.stripe_size = "256 KB";
    volume.bootable = "true";
    volume.capacity = "931.5 GB";
    volume.read_policy = "Read Ahead";
    volume.write_policy = write_policy;
    volume.default_write_policy = default_write_policy;
    volume.io_policy = "Direct";
    volume.access_policy = "Read Write";
    volume.disk_cache_policy = "Disabled";
    return volume;
}

// An out-of-band LSI controller: disks 0 and 1 in pool 0 with two volumes (the second without
// its own write policy), disk 2 in pool 1 without volumes, disk 3 in no pool.
Controller MakeLsiController() {
    Controller ctrl;
    ctrl.id = 3;
    ctrl.product_name = "RAID 940-8i";
    ctrl.serial_no = "SV1";
    ctrl.fru_no = "FRU-C";
    ctrl.part_no = "PN-C";
    ctrl.vendor = "Broadcom";
    ctrl.raid_url = "/redfish/v1/Systems/1/Storage/RAID_Slot3";
    ctrl.min_stripe_size = "64K";
    ctrl.max_stripe_size = "1M";
    ctrl.support_raid_levels = {"RAID0", "RAID1", "RAID5"};
    ctrl.disks = {MakeDisk(0, "0", "Online"), MakeDisk(1, "1", "Online"),
                  MakeDisk(2, "2", "Online"), MakeDisk(3, "3", "UGood")};
    Pool first;
    first.id = 0;
    first.raid_state = "RAID1";
    first.raid_capacity = "931.5 GB";
    first.holes = "0";
    first.disks = {ctrl.disks[0], ctrl.disks[1]};
    first.volumes = {MakePoolVolume(0, "os", "Write Back", "Write Through"),
                     MakePoolVolume(1, "data", "", "Write Through")};
    Pool second;
    second.id = 1;
    second.raid_state = "RAID0";
    second.raid_capacity = "931.5 GB";
    second.holes = "1";
    second.disks = {ctrl.disks[2]};
    ctrl.pools = {first, second};
    return ctrl;
}

// A CFC controller as the backend may give it: disks and pools out of id order; pool 2 without
// volumes stands between two pools with some; the volume of pool 0 has only a default write
// policy.
Controller MakeCfcController(const std::string& vendor) {
    Controller ctrl;
    ctrl.id = 5;
    ctrl.product_name = vendor + " CFC Adapter";
    ctrl.serial_no = "SCFC";
    ctrl.vendor = vendor;
    ctrl.raid_url = "/redfish/v1/Systems/1/Storage/RAIDStorage5";
    ctrl.min_stripe_size = "64K";
    ctrl.max_stripe_size = "1M";
    ctrl.support_raid_levels = {"RAID0", "RAID1", "RAID10"};
    ctrl.disks = {MakeDisk(4, "4", "UGood"), MakeDisk(2, "2", "Online"), MakeDisk(0, "0", "Online"),
                  MakeDisk(3, "3", "Online"), MakeDisk(1, "1", "Online")};
    Pool mirrored;
    mirrored.id = 1;
    mirrored.raid_state = "10";
    mirrored.disks = {MakeDisk(1, "1", "Online"), MakeDisk(3, "3", "Online")};
    mirrored.volumes = {MakePoolVolume(3, "logs", "Write Back", ""),
                        MakePoolVolume(4, "scratch", "Write Through", "")};
    Pool empty;
    empty.id = 2;
    empty.raid_state = "0";
    empty.disks = {MakeDisk(2, "2", "Online")};
    Pool striped;
    striped.id = 0;
    striped.raid_state = "1";
    striped.disks = {MakeDisk(0, "0", "Online")};
    striped.volumes = {MakePoolVolume(0, "os", "", "Write Through")};
    ctrl.pools = {mirrored, empty, striped};
    return ctrl;
}

M2CtrlInfo MakeM2Controller() {
    M2CtrlInfo ctrl;
    ctrl.id = 1;
    ctrl.version = "2.3.0.1";
    ctrl.name = "Marvell 88SE9230";
    ctrl.min_stripe_size = "";
    ctrl.max_stripe_size = "";
    M2DiskInfo disk0;
    disk0.slot_no = "0";
    disk0.product_name = "M.2 SSD 480GB";
    disk0.media_type = "SSD";
    disk0.capacity = "447.1 GB";
    disk0.manufacturer = "ACME";
    M2DiskInfo disk1 = disk0;
    disk1.slot_no = "1";
    ctrl.disks = {disk0, disk1};
    M2VolumeInfo volume;
    volume.volume_id = "0";
    volume.name = "boot";
    volume.physical_disks = "0,1";
    volume.raid_level = "RAID1";
    volume.stripe_size = "64K";
    volume.capacity = "447.1 GB";
    volume.status = "Functional";
    ctrl.volumes = {volume};
    return ctrl;
}

ProtocolDisk MakeProtocolDisk(int id, const std::string& state) {
    ProtocolDisk disk;
    disk.id = id;
    disk.product_name = "SSD 960GB";
    disk.state = state;
    disk.slot_no = std::to_string(id);
    disk.disk_type = "SATA";
    disk.media_type = "SSD";
    disk.health_status = "OK";
    disk.capacity = "894.2 GB";
    disk.manufacturer = "ACME";
    disk.serial_no = "P" + std::to_string(id);
    disk.fru_no = "FRU-P" + std::to_string(id);
    disk.part_no = "PN-P" + std::to_string(id);
    return disk;
}

MicrochipVolume MakeMicrochipVolume(int id, const std::string& write_policy,
                                    const std::string& default_write_policy) {
    MicrochipVolume volume;
    volume.id = id;
    volume.name = "lv" + std::to_string(id);
    volume.status = "Optimal";
    volume.stripe_size = "256 KB";
    volume.bootable = "false";
    volume.capacity = "894.2 GB";
    volume.read_policy = "Enabled";
    volume.write_policy = write_policy;
    volume.default_write_policy = default_write_policy;
    volume.io_policy = "";
    volume.access_policy = "Read Write";
    volume.disk_cache_policy = "Disabled";
    return volume;
}

MicrochipCtrl MakeMicrochipController() {
    MicrochipCtrl ctrl;
    ctrl.id = 2;
    ctrl.product_name = "SmartRAID 3154-8i";
    ctrl.serial_no = "SM1";
    ctrl.fru_no = "FRU-M";
    ctrl.part_no = "PN-M";
    ctrl.manufacturer = "Microchip";
    ctrl.min_stripe_size = "16K";
    ctrl.max_stripe_size = "1M";
    ctrl.support_raid_levels = {"RAID0", "RAID1"};
    ctrl.disks = {MakeProtocolDisk(0, "Online"), MakeProtocolDisk(1, "Online"),
                  MakeProtocolDisk(2, "Ready")};
    MicrochipPool pool;
    pool.id = 0;
    pool.raid_state = "RAID1";
    pool.raid_capacity = "894.2 GB";
    pool.holes = "0";
    pool.volumes = {MakeMicrochipVolume(0, "Write Back", "Write Through"),
                    MakeMicrochipVolume(1, "", "Write Through")};
    MicrochipPool bare;
    bare.id = 1;
    bare.raid_state = "RAID0";
    bare.raid_capacity = "0 GB";
    bare.holes = "1";
    ctrl.pools = {pool, bare};
    return ctrl;
}

VolManDevCtrl MakeVrocController() {
    VolManDevCtrl ctrl;
    ctrl.id = 0;
    ctrl.product_name = "VROC";
    ctrl.version = "8.0.0.4006";
    ctrl.manufacturer = "Intel";
    ctrl.model = "Premium";
    ctrl.min_stripe_size = "4K";
    ctrl.max_stripe_size = "128K";
    ctrl.support_raid_levels = {"RAID0", "RAID1", "RAID5", "RAID10"};
    ctrl.disks = {MakeProtocolDisk(0, "Online"), MakeProtocolDisk(1, "Online"),
                  MakeProtocolDisk(2, "Available")};
    VolManDevPool pool;
    pool.id = 0;
    pool.raid_state = "RAID1";
    pool.raid_capacity = "894.2 GB";
    pool.holes = "0";
    VolManDevVolume volume;
    volume.id = 0;
    volume.name = "Volume0";
    volume.status = "Normal";
    volume.stripe_size = "64K";
    volume.bootable = "true";
    volume.capacity = "894.2 GB";
    pool.volumes = {volume};
    VolManDevPool bare;
    bare.id = 1;
    bare.raid_state = "RAID0";
    bare.raid_capacity = "0 GB";
    bare.holes = "1";
    ctrl.pools = {pool, bare};
    return ctrl;
}

// The show file as the client writes it: the controllers under "CONTROLLERS".
std::string ShowXml(const ptree& show_tree) {
    ptree root;
    root.add_child("CONTROLLERS", show_tree);
    std::ostringstream out;
    boost::property_tree::write_xml(
        out, root, boost::property_tree::xml_writer_make_settings<std::string>('\t', 1, "utf-8"));
    return out.str();
}

std::vector<std::string> Titles(const ElementTableData& block) {
    std::vector<std::string> titles{block.GetTitle()};
    for (const ElementTableData& appended : block.GetAppendedTables()) {
        titles.push_back(appended.GetTitle());
    }
    return titles;
}

class RaidUtilsOobTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        page_ = std::make_shared<BasicElementPage>(dir_.File("raid_result.html"), "");
    }

    // The page as written, from its body on: the head is the page writer's own.
    std::string PageBody() {
        EXPECT_EQ(page_->GeneratePage(), 0);
        const std::string html = ReadFile(dir_.File("raid_result.html"));
        const std::size_t body = html.find("<body>");
        EXPECT_NE(body, std::string::npos);
        return body == std::string::npos ? html : html.substr(body);
    }

    raidcfg_test::TempDir dir_;
    std::shared_ptr<BasicElementPage> page_;
    RaidUtils utils_;
};

// ---- PrintOobBroadcomCController

TEST_F(RaidUtilsOobTest, BroadcomFullControllerOnTheConsole) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobBroadcomCController(2, MakeLsiController(), true, page_, text, false);
    EXPECT_TRUE(text.empty());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/broadcom_console.txt", cout.Text());
}

TEST_F(RaidUtilsOobTest, BroadcomFullControllerOnThePage) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobBroadcomCController(2, MakeLsiController(), false, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/broadcom_page.txt", PageBody());
}

TEST_F(RaidUtilsOobTest, BroadcomTablesFormOneBlockInOrder) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobBroadcomCController(2, MakeLsiController(), false, page_, text, false);
    ASSERT_EQ(page_->GetTableBox().size(), 1U);
    const std::vector<std::string> expected{"Broadcom Controller Information", "Disk Information",
                                            "Pool Information", "Volume Information",
                                            "Pool Information"};
    EXPECT_EQ(Titles(page_->GetTableBox().front()), expected);
    const ElementTableData& first = page_->GetTableBox().front();
    EXPECT_EQ(first.GetColumns(), 6U);
    const std::vector<std::string> cells{"2", "3", "RAID 940-8i", "SV1", "FRU-C", "PN-C"};
    EXPECT_EQ(first.GetContextBox(), cells);
}

TEST_F(RaidUtilsOobTest, BroadcomControllerNamedByTargetHasNoControllerIdColumn) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobBroadcomCController(-1, MakeLsiController(), true, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/broadcom_by_target.txt", cout.Text());
    const ElementTableData& first = page_->GetTableBox().front();
    EXPECT_EQ(first.GetTitle(), "Controller Information");
    EXPECT_EQ(first.GetColumns(), 5U);
    const std::vector<std::string> heads{"Target ID", "Product Name", "Serial No", "FRU No",
                                         "Part No"};
    EXPECT_EQ(first.GetTableClassBox(), heads);
}

TEST_F(RaidUtilsOobTest, BroadcomWithoutDisksOrPoolsPrintsTheFirstTableOnly) {
    Controller ctrl;
    ctrl.id = 7;
    ctrl.product_name = "RAID 9560-16i";
    std::string text;
    CoutCapture cout;
    utils_.PrintOobBroadcomCController(1, ctrl, true, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/broadcom_bare.txt", cout.Text());
    ASSERT_EQ(page_->GetTableBox().size(), 1U);
    EXPECT_TRUE(page_->GetTableBox().front().GetAppendedTables().empty());
}

// ---- The output rule

TEST_F(RaidUtilsOobTest, CollectAppendsAllTablesToTheTextAndLeavesTheConsoleSilent) {
    std::string console_text;
    {
        CoutCapture cout;
        utils_.PrintOobBroadcomCController(2, MakeLsiController(), true, page_, console_text,
                                           false);
        console_text = cout.Text();
    }
    std::string text = "earlier\n";
    CoutCapture cout;
    utils_.PrintOobBroadcomCController(2, MakeLsiController(), false, page_, text, true);
    EXPECT_EQ(cout.Text(), "");
    EXPECT_EQ(text, "earlier\n" + console_text);
    EXPECT_EQ(page_->GetTableBox().size(), 2U);
}

TEST_F(RaidUtilsOobTest, ConsoleWinsOverCollect) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobMicrochipController(1, MakeMicrochipController(), true, page_, text, true);
    EXPECT_TRUE(text.empty());
    EXPECT_NE(cout.Text().find("Microchip Controller Information"), std::string::npos);
}

TEST_F(RaidUtilsOobTest, NeitherConsoleNorCollectStillFillsThePage) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobVrocController(1, MakeVrocController(), false, page_, text, false);
    EXPECT_EQ(cout.Text(), "");
    EXPECT_TRUE(text.empty());
    ASSERT_EQ(page_->GetTableBox().size(), 1U);
    const std::vector<std::string> expected{"VROC Controller Information", "Disk Information",
                                            "Pool Information", "Volume Information",
                                            "Pool Information"};
    EXPECT_EQ(Titles(page_->GetTableBox().front()), expected);
}

TEST_F(RaidUtilsOobTest, EachControllerOpensItsOwnBlock) {
    std::string text;
    CoutCapture cout;
    Controller cfc = MakeCfcController("Broadcom");
    utils_.PrintOobBroadcomCController(1, MakeLsiController(), false, page_, text, false);
    utils_.PrintOobMarvellController(2, MakeM2Controller(), false, page_, text, false);
    utils_.PrintOobBroadcomControllerCFC(3, cfc, false, page_, text, false);
    const std::vector<ElementTableData>& box = page_->GetTableBox();
    ASSERT_EQ(box.size(), 3U);
    EXPECT_EQ(box[0].GetTitle(), "Broadcom Controller Information");
    EXPECT_EQ(box[0].GetAppendedTables().size(), 4U);
    EXPECT_EQ(box[1].GetTitle(), "Marvell Controller Information");
    EXPECT_EQ(box[1].GetAppendedTables().size(), 2U);
    EXPECT_EQ(box[2].GetTitle(), "Broadcom Controller Information");
    EXPECT_EQ(box[2].GetAppendedTables().size(), 2U);
}

TEST_F(RaidUtilsOobTest, ANullPageOnlyCostsThePage) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobBroadcomCController(2, MakeLsiController(), false, nullptr, text, true);
    EXPECT_NE(text.find("Pool Information"), std::string::npos);
}

TEST_F(RaidUtilsOobTest, OperationsLogEnteringAndExiting) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobBroadcomCController(2, MakeLsiController(), false, page_, text, false);
    ptree show_tree;
    utils_.SaveOobVrocController2Xml(1, MakeVrocController(), show_tree);
    const std::string log = ReadFile(dir_.File("raidcfg.log"));
    EXPECT_NE(log.find("Entering  service::detail::RaidUtils::PrintOobBroadcomCController"),
              std::string::npos);
    EXPECT_NE(log.find("Exiting  service::detail::RaidUtils::PrintOobBroadcomCController"),
              std::string::npos);
    EXPECT_NE(log.find("Entering  service::detail::RaidUtils::SaveOobVrocController2Xml"),
              std::string::npos);
    EXPECT_NE(log.find("Exiting  service::detail::RaidUtils::SaveOobVrocController2Xml"),
              std::string::npos);
}

// ---- PrintOobMarvellController

TEST_F(RaidUtilsOobTest, MarvellFullControllerOnTheConsole) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobMarvellController(4, MakeM2Controller(), true, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/marvell_console.txt", cout.Text());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/marvell_page.txt", PageBody());
}

TEST_F(RaidUtilsOobTest, MarvellControllerNamedByTargetHasNoControllerIdColumn) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobMarvellController(-1, MakeM2Controller(), false, page_, text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/marvell_by_target.txt", text);
    const ElementTableData& first = page_->GetTableBox().front();
    EXPECT_EQ(first.GetTitle(), "Controller Information");
    EXPECT_EQ(first.GetColumns(), 3U);
}

TEST_F(RaidUtilsOobTest, MarvellWithoutDisksOrVolumesPrintsTheFirstTableOnly) {
    M2CtrlInfo ctrl = MakeM2Controller();
    ctrl.disks.clear();
    ctrl.volumes.clear();
    std::string text;
    utils_.PrintOobMarvellController(4, ctrl, false, page_, text, true);
    EXPECT_EQ(text.find("Disk Information"), std::string::npos);
    EXPECT_EQ(text.find("Volume Information"), std::string::npos);
    EXPECT_TRUE(page_->GetTableBox().front().GetAppendedTables().empty());
}

// ---- PrintOobMicrochipController

TEST_F(RaidUtilsOobTest, MicrochipFullControllerOnTheConsole) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobMicrochipController(3, MakeMicrochipController(), true, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/microchip_console.txt", cout.Text());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/microchip_page.txt", PageBody());
}

// ---- PrintOobVrocController

TEST_F(RaidUtilsOobTest, VrocFullControllerOnTheConsole) {
    std::string text;
    CoutCapture cout;
    utils_.PrintOobVrocController(6, MakeVrocController(), true, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/vroc_console.txt", cout.Text());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/vroc_page.txt", PageBody());
}

// ---- The CFC family

TEST_F(RaidUtilsOobTest, BroadcomCfcFullControllerOnTheConsole) {
    Controller ctrl = MakeCfcController("Broadcom");
    std::string text;
    CoutCapture cout;
    utils_.PrintOobBroadcomControllerCFC(1, ctrl, true, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/broadcom_cfc_console.txt", cout.Text());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/broadcom_cfc_page.txt", PageBody());
}

TEST_F(RaidUtilsOobTest, MarvellCfcFullControllerOnTheConsole) {
    Controller ctrl = MakeCfcController("Marvell");
    std::string text;
    CoutCapture cout;
    utils_.PrintOobMarvellControllerCFC(2, ctrl, true, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/marvell_cfc_console.txt", cout.Text());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/marvell_cfc_page.txt", PageBody());
}

TEST_F(RaidUtilsOobTest, MicrochipCfcFullControllerOnTheConsole) {
    Controller ctrl = MakeCfcController("Microchip");
    std::string text;
    CoutCapture cout;
    utils_.PrintOobMicrochipControllerCFC(3, ctrl, true, page_, text, false);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/microchip_cfc_console.txt", cout.Text());
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/microchip_cfc_page.txt", PageBody());
}

TEST_F(RaidUtilsOobTest, CfcSortsDisksAndPoolsInPlace) {
    Controller ctrl = MakeCfcController("Broadcom");
    std::string text;
    utils_.PrintOobBroadcomControllerCFC(1, ctrl, false, page_, text, false);
    std::vector<int> disk_ids;
    for (const Disk& disk : ctrl.disks) {
        disk_ids.push_back(disk.id);
    }
    std::vector<int> pool_ids;
    for (const Pool& pool : ctrl.pools) {
        pool_ids.push_back(pool.id);
    }
    EXPECT_EQ(disk_ids, (std::vector<int>{0, 1, 2, 3, 4}));
    EXPECT_EQ(pool_ids, (std::vector<int>{0, 1, 2}));
}

TEST_F(RaidUtilsOobTest, CfcVolumeTableHoldsAllPoolsAndShowsNoPoolTable) {
    Controller ctrl = MakeCfcController("Broadcom");
    std::string text;
    utils_.PrintOobBroadcomControllerCFC(1, ctrl, false, page_, text, false);
    const ElementTableData& block = page_->GetTableBox().front();
    const std::vector<std::string> expected{"Broadcom Controller Information", "Disk Information",
                                            "Volume Information"};
    EXPECT_EQ(Titles(block), expected);
    const ElementTableData& volumes = block.GetAppendedTables().back();
    ASSERT_EQ(volumes.GetColumns(), 12U);
    // Pool 0 first after sorting, then pool 1; pool 2 adds nothing.
    ASSERT_EQ(volumes.GetContextBox().size(), 36U);
    EXPECT_EQ(volumes.GetContextBox()[0], "0");
    EXPECT_EQ(volumes.GetContextBox()[2], "RAID1");
    EXPECT_EQ(volumes.GetContextBox()[8], ""); // no fallback to the default write policy
    EXPECT_EQ(volumes.GetContextBox()[12], "3");
    EXPECT_EQ(volumes.GetContextBox()[14], "RAID10");
    EXPECT_EQ(volumes.GetContextBox()[15], "1, 3");
}

TEST_F(RaidUtilsOobTest, CfcWithoutPoolsPrintsNoVolumeTable) {
    Controller ctrl = MakeCfcController("Microchip");
    ctrl.pools.clear();
    std::string text;
    utils_.PrintOobMicrochipControllerCFC(1, ctrl, false, page_, text, true);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/microchip_cfc_no_pools.txt", text);
    const std::vector<std::string> expected{"Microchip Controller Information", "Disk Information"};
    EXPECT_EQ(Titles(page_->GetTableBox().front()), expected);
}

TEST_F(RaidUtilsOobTest, CfcWithPoolsButNoVolumesPrintsNoVolumeTable) {
    Controller ctrl = MakeCfcController("Marvell");
    for (Pool& pool : ctrl.pools) {
        pool.volumes.clear();
    }
    std::string text;
    utils_.PrintOobMarvellControllerCFC(1, ctrl, false, page_, text, true);
    EXPECT_EQ(text.find("Volume Information"), std::string::npos);
    EXPECT_EQ(page_->GetTableBox().front().GetAppendedTables().size(), 1U);
}

// ---- Show XML

TEST_F(RaidUtilsOobTest, LsiXmlFiltersPooledDisksAndFallsBackOnTheWritePolicy) {
    ptree show_tree;
    utils_.SaveOobLSIController2Xml(2, MakeLsiController(), show_tree);
    const ptree& ctrl = show_tree.get_child("CONTROLLER");
    EXPECT_EQ(ctrl.get<std::string>("ID"), ctrl.get<std::string>("RaidSlotNo"));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/lsi_xml.txt", ShowXml(show_tree));
}

TEST_F(RaidUtilsOobTest, TwoLsiControllersStandSideBySide) {
    ptree show_tree;
    Controller other;
    other.id = 9;
    other.product_name = "RAID 9560-16i";
    utils_.SaveOobLSIController2Xml(1, other, show_tree);
    utils_.SaveOobLSIController2Xml(2, MakeLsiController(), show_tree);
    ASSERT_EQ(show_tree.count("CONTROLLER"), 2U);
    auto controller = show_tree.begin();
    EXPECT_EQ(controller->second.get<std::string>("ControllerID"), "1");
    EXPECT_EQ(controller->second.count("DISKS"), 0U);
    EXPECT_EQ(controller->second.count("POOLS"), 0U);
    ++controller;
    EXPECT_EQ(controller->second.get<std::string>("ControllerID"), "2");
}

TEST_F(RaidUtilsOobTest, LsiXmlWithoutDisksOrPoolsHasNeitherElement) {
    ptree show_tree;
    Controller ctrl;
    ctrl.id = 4;
    utils_.SaveOobLSIController2Xml(-1, ctrl, show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/lsi_bare_xml.txt", ShowXml(show_tree));
}

TEST_F(RaidUtilsOobTest, AllDisksPooledGiveAnEmptyDisksElement) {
    Controller ctrl = MakeLsiController();
    ctrl.disks.pop_back(); // disk 3, the one outside the pools
    ptree show_tree;
    utils_.SaveOobLSIController2Xml(2, ctrl, show_tree);
    const ptree& node = show_tree.get_child("CONTROLLER");
    ASSERT_EQ(node.count("DISKS"), 1U);
    EXPECT_TRUE(node.get_child("DISKS").empty());
    EXPECT_NE(ShowXml(show_tree).find("\t\t<DISKS/>\n"), std::string::npos);
}

TEST_F(RaidUtilsOobTest, BroadcomCfcXmlAfterThePrint) {
    Controller ctrl = MakeCfcController("Broadcom");
    std::string text;
    utils_.PrintOobBroadcomControllerCFC(1, ctrl, false, page_, text, false);
    ptree show_tree;
    utils_.SaveOobLSIController2XmlCFC(1, ctrl, show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/broadcom_cfc_xml.txt", ShowXml(show_tree));
}

TEST_F(RaidUtilsOobTest, MarvellCfcXmlAfterThePrint) {
    Controller ctrl = MakeCfcController("Marvell");
    std::string text;
    utils_.PrintOobMarvellControllerCFC(2, ctrl, false, page_, text, false);
    ptree show_tree;
    utils_.SaveOobM2Controller2XmlCFC(2, ctrl, show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/marvell_cfc_xml.txt", ShowXml(show_tree));
}

TEST_F(RaidUtilsOobTest, MicrochipCfcXmlAfterThePrint) {
    Controller ctrl = MakeCfcController("Microchip");
    std::string text;
    utils_.PrintOobMicrochipControllerCFC(3, ctrl, false, page_, text, false);
    ptree show_tree;
    utils_.SaveOobMicrochipController2XmlCFC(3, ctrl, show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/microchip_cfc_xml.txt", ShowXml(show_tree));
}

TEST_F(RaidUtilsOobTest, M2XmlRepeatsTheDisksInAMadeUpPool) {
    ptree show_tree;
    utils_.SaveOobM2ToXml(4, MakeM2Controller(), show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/m2_xml.txt", ShowXml(show_tree));
}

TEST_F(RaidUtilsOobTest, M2XmlWithoutVolumesHasNoPools) {
    M2CtrlInfo ctrl = MakeM2Controller();
    ctrl.volumes.clear();
    ptree show_tree;
    utils_.SaveOobM2ToXml(4, ctrl, show_tree);
    const ptree& node = show_tree.get_child("CONTROLLER");
    EXPECT_EQ(node.count("DISKS"), 1U);
    EXPECT_EQ(node.count("POOLS"), 0U);
}

TEST_F(RaidUtilsOobTest, SupportElementsStayWhenEmpty) {
    M2CtrlInfo ctrl = MakeM2Controller();
    ctrl.support_raid_levels.clear();
    ptree show_tree;
    utils_.SaveOobM2ToXml(4, ctrl, show_tree);
    const ptree& node = show_tree.get_child("CONTROLLER");
    for (const char* name : {"MinStripeSize", "MaxStripeSize", "SupportRaidLevels"}) {
        ASSERT_EQ(node.count(name), 1U) << name;
        EXPECT_EQ(node.get<std::string>(name), "") << name;
    }
}

TEST_F(RaidUtilsOobTest, MicrochipXmlKeepsThePlainWritePolicy) {
    ptree show_tree;
    utils_.SaveOobMicrochipController2Xml(3, MakeMicrochipController(), show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/microchip_xml.txt", ShowXml(show_tree));
}

TEST_F(RaidUtilsOobTest, VrocXml) {
    ptree show_tree;
    utils_.SaveOobVrocController2Xml(6, MakeVrocController(), show_tree);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utils_oob/vroc_xml.txt", ShowXml(show_tree));
}

} // namespace
