#include <memory>
#include <string>

#include "redfish/storage_tree_reader.hpp"
#include "sim/machine_json.hpp"
#include "tests/redfish/canned_storage.hpp"
#include "tests/redfish/fake_transport.hpp"

#include <gtest/gtest.h>

namespace {

using nlohmann::json;
using raidcfg_test::CannedStorage;
using raidcfg_test::FakeBmc;
using raidcfg_test::Ref;
using redfish::RedfishClient;
using redfish::StorageTree;
using redfish::StorageTreeReader;

// A BMC without any Oem section of ours: what a real server's BMC serves.
CannedStorage PlainStorage(const std::string& id, const std::string& manufacturer,
                           const std::string& model) {
    CannedStorage canned;
    canned.id = id;
    canned.controller = {{"Manufacturer", manufacturer}, {"Model", model}, {"Name", model}};
    return canned;
}

class StorageTreeReaderTest : public ::testing::Test {
protected:
    std::shared_ptr<FakeBmc> bmc = std::make_shared<FakeBmc>();

    std::shared_ptr<StorageTreeReader> Open(bool expand) {
        bmc->StandardService(expand);
        redfish::ClientSettings settings;
        settings.user = "admin";
        settings.password = "secret";
        settings.sleep = [](std::chrono::milliseconds) {};
        auto client = std::make_shared<RedfishClient>(bmc->Transport(), settings);
        EXPECT_TRUE(client->Open().ok());
        return std::make_shared<StorageTreeReader>(client);
    }

    std::shared_ptr<const StorageTree> Load(bool expand) {
        auto reader = Open(expand);
        std::shared_ptr<const StorageTree> tree;
        const redfish::RedfishStatus status = reader->Load(tree);
        EXPECT_TRUE(status.ok()) << status.text;
        return tree;
    }
};

TEST_F(StorageTreeReaderTest, OemSectionGivesTheModelExactly) {
    raidcfg_test::ServeStorage(*bmc, {raidcfg_test::EmulatedLsi()}, json{{"SupportInfo", true}});
    const auto tree = Load(true);
    ASSERT_EQ(tree->machine.controllers.size(), 1U);
    const sim::Controller& c = tree->machine.controllers.front();
    EXPECT_EQ(c.family, "OOB_LSI");
    EXPECT_EQ(c.id, 0);
    EXPECT_EQ(c.product_name, "RAID 945-16i");
    EXPECT_EQ(c.serial_no, "SV-LSI-1");
    EXPECT_EQ(c.fru_no, "FRU1");
    EXPECT_EQ(c.part_no, "PN-1");
    EXPECT_EQ(c.vendor, "Broadcom");
    EXPECT_EQ(c.version, "5.2");
    EXPECT_EQ(c.name, "");
    EXPECT_EQ(c.raid_levels.back(), "1triple");
    EXPECT_EQ(c.min_stripe_kb, 64);
    EXPECT_EQ(c.max_stripe_kb, 1024);
    ASSERT_EQ(c.connectors.size(), 1U);
    EXPECT_EQ(c.connectors.front().name, "C0");
    EXPECT_EQ(c.fw_device_order.value_or("unset"), "Enabled");
    EXPECT_EQ(c.ekm_mode.value_or("unset"), "None");
    EXPECT_EQ(c.slot, 4);
    ASSERT_EQ(c.disks.size(), 9U);
    EXPECT_EQ(c.disks[7].state, "UBad");
    EXPECT_EQ(c.disks[8].state, "JBOD");
    EXPECT_EQ(c.disks[3].fru_no, "F3");
    EXPECT_EQ(c.disks[3].capacity_mb, 953869);
    ASSERT_EQ(c.volumes.size(), 1U) << "the pass-through volume is no volume of the model";
    const sim::Volume& v = c.volumes.front();
    EXPECT_EQ(v.raid_level, "6");
    EXPECT_EQ(v.spans, (std::vector<std::vector<int>>{{0, 1, 2, 3}}));
    EXPECT_EQ(v.size_mb, 1907738);
    EXPECT_EQ(v.strip_kb, 256);
    EXPECT_TRUE(v.bootable);
    EXPECT_EQ(v.write_policy, 1);
    EXPECT_EQ(v.dedicated_spares, std::vector<int>{4});
    EXPECT_EQ(c.global_hot_spares, std::vector<int>{5});
    const redfish::ControllerLinks* links = tree->LinksOf("OOB_LSI", 0);
    ASSERT_NE(links, nullptr);
    EXPECT_TRUE(links->ours);
    EXPECT_EQ(links->pass_through.at(8),
              raidcfg_test::StoragePath("OOB_LSI-0") + "/Volumes/PassThrough-8");
    EXPECT_EQ(links->controller, raidcfg_test::StoragePath("OOB_LSI-0") + "/Controllers/0");
}

TEST_F(StorageTreeReaderTest, ExpandCostsOneRequestPerStorage) {
    CannedStorage second = raidcfg_test::EmulatedLsi();
    second.id = "OOB_LSI-1";
    second.storage["Oem"]["Raidcfg"]["Id"] = 1;
    raidcfg_test::ServeStorage(*bmc, {raidcfg_test::EmulatedLsi(), second});
    auto reader = Open(true);
    const std::size_t before = bmc->requests.size();
    std::shared_ptr<const StorageTree> tree;
    ASSERT_TRUE(reader->Load(tree).ok());
    ASSERT_EQ(tree->machine.controllers.size(), 2U);
    EXPECT_EQ(tree->machine.controllers[1].id, 1);
    // The Systems collection, the system, its Storage collection, one expanded read per
    // Storage, and the Manager the system names.
    EXPECT_EQ(bmc->requests.size() - before, 6U);
    EXPECT_EQ(bmc->Count("GET", second.Path() + raidcfg_test::kExpandTwo), 1U);
    ASSERT_TRUE(reader->Load(tree).ok());
    EXPECT_EQ(bmc->requests.size() - before, 6U) << "a second read is served from what was read";
    // What a write does: the client forgets its cache, the reader its tree.
    reader->client().DropCache();
    reader->Drop();
    ASSERT_TRUE(reader->Load(tree).ok());
    EXPECT_GT(bmc->requests.size() - before, 6U) << "a dropped tree is read anew";
}

TEST_F(StorageTreeReaderTest, LinkByLinkGivesTheSameModelAsExpand) {
    raidcfg_test::ServeStorage(*bmc, {raidcfg_test::EmulatedLsi()});
    const std::string expanded = sim::MachineJson::Serialize(Load(true)->machine);
    bmc = std::make_shared<FakeBmc>();
    raidcfg_test::ServeStorage(*bmc, {raidcfg_test::EmulatedLsi()});
    const std::string linked = sim::MachineJson::Serialize(Load(false)->machine);
    EXPECT_EQ(linked, expanded);
    EXPECT_EQ(bmc->Count("GET", raidcfg_test::StoragePath("OOB_LSI-0") + raidcfg_test::kExpandTwo),
              0U);
    EXPECT_EQ(bmc->Count("GET", raidcfg_test::StoragePath("OOB_LSI-0") + "/Drives/7"), 1U);
}

TEST_F(StorageTreeReaderTest, ExpandAnswered501FallsBackToLinks) {
    raidcfg_test::ServeStorage(*bmc, {raidcfg_test::EmulatedLsi()});
    bmc->Clear("GET", raidcfg_test::StoragePath("OOB_LSI-0") + raidcfg_test::kExpandTwo);
    bmc->On("GET", raidcfg_test::StoragePath("OOB_LSI-0") + raidcfg_test::kExpandTwo,
            raidcfg_test::Json(501, raidcfg_test::ErrorBody("not supported")));
    const auto tree = Load(true);
    ASSERT_EQ(tree->machine.controllers.size(), 1U);
    EXPECT_EQ(tree->machine.controllers.front().disks.size(), 9U);
}

TEST_F(StorageTreeReaderTest, DeprecatedStorageControllersArrayIsTheFallback) {
    CannedStorage canned = raidcfg_test::EmulatedLsi();
    canned.controllers_collection = false;
    raidcfg_test::ServeStorage(*bmc, {canned});
    const auto tree = Load(true);
    ASSERT_EQ(tree->machine.controllers.size(), 1U);
    EXPECT_EQ(tree->machine.controllers.front().serial_no, "SV-LSI-1");
    const redfish::ControllerLinks* links = tree->LinksOf("OOB_LSI", 0);
    ASSERT_NE(links, nullptr);
    EXPECT_EQ(links->controller, canned.Path() + "#/StorageControllers/0");
}

TEST_F(StorageTreeReaderTest, MissingOptionalPropertiesGiveEmptyTextsAndDefaults) {
    CannedStorage bare;
    bare.id = "1";
    bare.drives = {json{{"Id", "0"}}, json{{"Id", "Disk.Bay.7"}}};
    bare.volumes = {json{{"Id", "0"}}};
    raidcfg_test::ServeStorage(*bmc, {bare});
    const auto tree = Load(false);
    // No Oem section: the controller stands in its family (unknown maker: OOB_LSI) and in CFC.
    ASSERT_EQ(tree->machine.controllers.size(), 2U);
    const sim::Controller& c = tree->machine.controllers.front();
    EXPECT_EQ(c.family, "OOB_LSI");
    EXPECT_EQ(c.product_name, "");
    EXPECT_EQ(c.vendor, "");
    EXPECT_FALSE(c.fw_device_order.has_value());
    EXPECT_FALSE(c.ekm_mode.has_value());
    EXPECT_TRUE(c.ekm_modes.empty());
    ASSERT_EQ(c.disks.size(), 2U);
    EXPECT_EQ(c.disks[1].id, 1) << "an id that is no number takes the drive's position";
    EXPECT_EQ(c.disks[0].state, "UGood");
    EXPECT_EQ(c.disks[0].slot_no, "");
    EXPECT_EQ(c.disks[0].capacity_mb, sim::kNotReported) << "not reported, not 0";
    ASSERT_EQ(c.volumes.size(), 1U);
    EXPECT_EQ(c.volumes[0].raid_level, "");
    EXPECT_EQ(c.volumes[0].status, "") << "no Status: no state is made up";
    EXPECT_EQ(c.volumes[0].size_mb, sim::kNotReported);
    EXPECT_EQ(c.volumes[0].write_policy, sim::kNotReported);
    EXPECT_EQ(c.volumes[0].read_policy, sim::kNotReported);
    EXPECT_EQ(c.volumes[0].io_policy, sim::kNotReported);
    EXPECT_EQ(c.volumes[0].access_policy, sim::kNotReported);
    EXPECT_EQ(c.volumes[0].cache_policy, sim::kNotReported);
    EXPECT_TRUE(c.volumes[0].spans.empty());
}

TEST_F(StorageTreeReaderTest, RealBmcFallbacksDeriveStatesFromStandardProperties) {
    CannedStorage real = PlainStorage("RAID.Slot.3", "Avago", "MegaRAID 9460");
    real.storage = {{"EncryptionMode", "UseLocalKey"}};
    real.controller["Location"] = {{"PartLocation", {{"LocationOrdinalValue", 3}}}};
    real.controller["SupportedRAIDTypes"] = {"RAID1", "RAID10Triple", "None"};
    const std::string path = real.Path();
    real.drives = {
        json{{"Id", "0"}, {"Model", "SSD 2TB"}, {"Protocol", "SATA"}, {"MediaType", "SSD"}},
        json{{"Id", "1"}},
        json{{"Id", "2"}, {"HotspareType", "Global"}},
        json{{"Id", "3"}, {"HotspareType", "Dedicated"}},
        json{{"Id", "4"}},
        json{{"Id", "5"}, {"Status", {{"State", "UnavailableOffline"}}}},
        json{{"Id", "6"}, {"Status", {{"Health", "Critical"}}}},
        json{{"Id", "7"}, {"PhysicalLocation", {{"PartLocation", {{"ServiceLabel", "Bay 7"}}}}}}};
    real.volumes = {json{{"Id", "0"},
                         {"Name", "data"},
                         {"RAIDType", "RAID1"},
                         {"WriteCachePolicy", "UnprotectedWriteBack"},
                         {"ReadCachePolicy", "AdaptiveReadAhead"},
                         {"Status", {{"Health", "Warning"}}},
                         {"Links",
                          {{"Drives", {Ref(path + "/Drives/0"), Ref(path + "/Drives/1")}},
                           {"DedicatedSpareDrives", {Ref(path + "/Drives/3")}}}}},
                    json{{"Id", "1"},
                         {"RAIDType", "None"},
                         {"Links", {{"Drives", {Ref(path + "/Drives/4")}}}}}};
    raidcfg_test::ServeStorage(*bmc, {real});
    const auto tree = Load(true);
    ASSERT_EQ(tree->machine.controllers.size(), 2U);
    const sim::Controller& c = tree->machine.controllers.front();
    EXPECT_EQ(c.family, "OOB_LSI");
    EXPECT_EQ(c.slot, 3);
    EXPECT_EQ(c.product_name, "MegaRAID 9460");
    EXPECT_EQ(c.raid_levels, (std::vector<std::string>{"1", "10triple"}));
    EXPECT_EQ(c.ekm_mode.value_or("unset"), "Local");
    EXPECT_EQ(c.ekm_modes.size(), 3U);
    std::vector<std::string> states;
    for (const sim::Disk& disk : c.disks) {
        states.push_back(disk.state);
    }
    EXPECT_EQ(states, (std::vector<std::string>{"Online", "Online", "GHS", "DHS", "JBOD", "Offline",
                                                "Failed", "UGood"}));
    EXPECT_EQ(c.disks[0].disk_type, "SATA");
    EXPECT_EQ(c.disks[0].product_name, "SSD 2TB");
    EXPECT_EQ(c.disks[7].slot_no, "Bay 7");
    EXPECT_EQ(c.global_hot_spares, std::vector<int>{2});
    ASSERT_EQ(c.volumes.size(), 1U);
    EXPECT_EQ(c.volumes[0].name, "data");
    EXPECT_EQ(c.volumes[0].status, "Degraded");
    EXPECT_EQ(c.volumes[0].spans, (std::vector<std::vector<int>>{{0, 1}}));
    EXPECT_EQ(c.volumes[0].write_policy, 2);
    EXPECT_EQ(c.volumes[0].read_policy, 2);
    EXPECT_EQ(c.volumes[0].dedicated_spares, std::vector<int>{3});
    const sim::Controller& cfc = tree->machine.controllers.back();
    EXPECT_EQ(cfc.family, "OOB_CFC");
    EXPECT_EQ(cfc.id, 0);
    EXPECT_EQ(cfc.vendor, "Avago");
    EXPECT_FALSE(tree->LinksOf("OOB_LSI", 0)->ours);
}

TEST_F(StorageTreeReaderTest, CfcMarkedControllersStandInTheCfcClassOnly) {
    CannedStorage cfc = raidcfg_test::EmulatedLsi();
    cfc.id = "OOB_CFC-0";
    cfc.storage["Oem"]["Raidcfg"]["Family"] = "OOB_CFC";
    cfc.storage["Oem"]["Raidcfg"]["Cfc"] = true;
    cfc.controller["Manufacturer"] = "Microchip";
    cfc.controller["Oem"]["Raidcfg"]["Vendor"] = "Microchip";
    CannedStorage microchip = raidcfg_test::EmulatedLsi();
    microchip.id = "OOB_MICROCHIP-0";
    microchip.storage["Oem"]["Raidcfg"].erase("Family");
    microchip.controller["Manufacturer"] = "Adaptec";
    raidcfg_test::ServeStorage(*bmc, {cfc, microchip});
    const auto tree = Load(true);
    ASSERT_EQ(tree->machine.controllers.size(), 2U);
    EXPECT_EQ(tree->machine.controllers[0].family, "OOB_CFC");
    EXPECT_EQ(tree->machine.controllers[0].vendor, "Microchip");
    EXPECT_EQ(tree->machine.controllers[1].family, "OOB_MICROCHIP");
}

TEST(StorageTreeFamilyTest, ManufacturerAndModelPickTheFamily) {
    EXPECT_EQ(StorageTreeReader::FamilyOf("Broadcom", "9560-8i"), "OOB_LSI");
    EXPECT_EQ(StorageTreeReader::FamilyOf("LSI Logic", ""), "OOB_LSI");
    EXPECT_EQ(StorageTreeReader::FamilyOf("AVAGO", "MegaRAID"), "OOB_LSI");
    EXPECT_EQ(StorageTreeReader::FamilyOf("Microchip", "SmartRAID 3152"), "OOB_MICROCHIP");
    EXPECT_EQ(StorageTreeReader::FamilyOf("Adaptec", ""), "OOB_MICROCHIP");
    EXPECT_EQ(StorageTreeReader::FamilyOf("Marvell", "88SE9230"), "OOB_M2");
    EXPECT_EQ(StorageTreeReader::FamilyOf("Intel", "VROC"), "OOB_VROC");
    EXPECT_EQ(StorageTreeReader::FamilyOf("Intel Corporation", "Intel VMD"), "OOB_VROC");
    EXPECT_EQ(StorageTreeReader::FamilyOf("Intel", "RS3DC080"), "OOB_LSI");
    EXPECT_EQ(StorageTreeReader::FamilyOf("Acme Storage", "X1"), "OOB_LSI");
    EXPECT_EQ(StorageTreeReader::FamilyOf("", ""), "OOB_LSI");
}

TEST(StorageTreeManagerTest, ManagerOemAndItsAbsence) {
    const redfish::ManagerInfo ours = StorageTreeReader::ManagerFrom(json::parse(
        R"({"Oem": {"Raidcfg": {"AmbitType": 3, "VantorV3": true, "SupportInfo": false,
            "RestConnections": 4, "Ssh": false, "Rest": true, "Cim": false}}})"));
    EXPECT_EQ(ours.ambit_type.value_or(-1), 3);
    EXPECT_TRUE(ours.vantor_v3);
    EXPECT_FALSE(ours.support_info);
    EXPECT_EQ(ours.rest_connections, 4);
    EXPECT_FALSE(ours.ssh);
    EXPECT_TRUE(ours.rest);
    EXPECT_FALSE(ours.cim);
    const redfish::ManagerInfo unset =
        StorageTreeReader::ManagerFrom(json::parse(R"({"Oem": {"Raidcfg": {"AmbitType": null}}})"));
    EXPECT_FALSE(unset.ambit_type.has_value());
    const redfish::ManagerInfo real = StorageTreeReader::ManagerFrom(json::parse(R"({"Id": "1"})"));
    EXPECT_EQ(real.ambit_type.value_or(-1), redfish::kStandardBmcType)
        << "a standard BMC answers the documented type, so that save works on it";
    EXPECT_FALSE(real.vantor_v3);
    EXPECT_TRUE(real.support_info);
    EXPECT_EQ(real.rest_connections, 1);
    EXPECT_TRUE(real.ssh && real.rest && real.cim);
}

} // namespace
