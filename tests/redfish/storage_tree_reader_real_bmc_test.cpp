// The storage tree of BMCs that carry no Oem section of ours: discovery from the service root,
// the standard forms real BMCs serve, and what is left empty because the BMC does not say it.
#include <map>
#include <memory>
#include <string>

#include "redfish/storage_tree_reader.hpp"
#include "tests/redfish/fake_transport.hpp"
#include "tests/redfish/real_bmc_tree.hpp"

#include <gtest/gtest.h>

namespace {

using nlohmann::json;
using raidcfg_test::FakeBmc;
using redfish::RedfishClient;
using redfish::StorageTree;
using redfish::StorageTreeReader;
using namespace Quillon::RaidConfig;

json Ref(const std::string& path) {
    return raidcfg_test::RealBmcTree::Link(path);
}

json Collection(const std::vector<std::string>& members) {
    return raidcfg_test::RealBmcTree::Collection(members);
}

class RealBmcTest : public ::testing::Test {
protected:
    std::shared_ptr<FakeBmc> bmc = std::make_shared<FakeBmc>();
    raidcfg_test::RealBmcTree real;
    std::map<std::string, json>& tree = real.resources;

    void OneSystem(const json& controller, const std::vector<json>& drives,
                   const std::vector<json>& volumes) {
        real.OneSystem(controller, drives, volumes);
    }

    static std::string DrivePath(const std::string& id) {
        return raidcfg_test::RealBmcTree::DrivePath(id);
    }

    std::shared_ptr<StorageTreeReader> Open(const std::string& system = {}) {
        real.Serve(*bmc);
        redfish::ClientSettings settings;
        settings.user = "admin";
        settings.password = "secret";
        settings.sleep = [](std::chrono::milliseconds) {};
        auto client = std::make_shared<RedfishClient>(bmc->Transport(), settings);
        EXPECT_TRUE(client->Open().ok());
        return std::make_shared<StorageTreeReader>(client, system);
    }

    std::shared_ptr<const StorageTree> Load(const std::string& system = {}) {
        auto reader = Open(system);
        std::shared_ptr<const StorageTree> loaded;
        const redfish::RedfishStatus status = reader->Load(loaded);
        EXPECT_TRUE(status.ok()) << status.text;
        return loaded;
    }

    static json Controller(const std::string& manufacturer, const std::string& model) {
        return {{"Manufacturer", manufacturer}, {"Model", model}};
    }
};

TEST_F(RealBmcTest, StorageIsFoundFromTheServiceRootWhateverTheSystemIsCalled) {
    OneSystem(Controller("Broadcom", "PERC H755"), {json{{"Id", "Disk.Bay.0"}}}, {});
    auto reader = Open();
    std::shared_ptr<const StorageTree> loaded;
    ASSERT_TRUE(reader->Load(loaded).ok());
    ASSERT_EQ(loaded->machine.controllers.size(), 2U) << "its family and the CFC class";
    const redfish::ControllerLinks* links = loaded->LinksOf("OOB_LSI", 0);
    ASSERT_NE(links, nullptr);
    EXPECT_EQ(links->system, "System.Embedded.1");
    EXPECT_EQ(links->storage, "/redfish/v1/Systems/System.Embedded.1/Storage/RAID.Integrated.1-1");
    EXPECT_EQ(bmc->Count("GET", "/redfish/v1/Systems/1/Storage"), 0U);
    EXPECT_EQ(bmc->Count("GET", "/redfish/v1/Managers/1"), 0U);
    redfish::ManagerInfo manager;
    ASSERT_TRUE(reader->Manager(manager).ok());
    EXPECT_EQ(bmc->Count("GET", "/redfish/v1/Managers/iDRAC.Embedded.1"), 1U)
        << "the Manager the system names";
    EXPECT_EQ(manager.ambit_type.value_or(-1), redfish::kStandardBmcType);
}

TEST_F(RealBmcTest, EverySystemIsReadInTheBmcsOrderAndSystemPicksOne) {
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"), {json{{"Id", "0"}}}, {});
    tree["/redfish/v1/Systems"] =
        Collection({"/redfish/v1/Systems/System.Embedded.1", "/redfish/v1/Systems/node2"});
    tree["/redfish/v1/Systems/node2"] = {{"Id", "node2"},
                                         {"Storage", Ref("/redfish/v1/Systems/node2/Storage")}};
    tree["/redfish/v1/Systems/node2/Storage"] = Collection({"/redfish/v1/Systems/node2/Storage/1"});
    tree["/redfish/v1/Systems/node2/Storage/1"] = {
        {"Id", "1"},
        {"StorageControllers", {{{"Manufacturer", "Adaptec"}, {"Model", "SmartRAID 3154"}}}}};

    const auto both = Load();
    ASSERT_NE(both->LinksOf("OOB_LSI", 0), nullptr);
    ASSERT_NE(both->LinksOf("OOB_MICROCHIP", 0), nullptr);
    EXPECT_EQ(both->LinksOf("OOB_MICROCHIP", 0)->system, "node2");
    EXPECT_EQ(both->LinksOf("OOB_CFC", 0)->system, "System.Embedded.1");
    EXPECT_EQ(both->LinksOf("OOB_CFC", 1)->system, "node2") << "in the BMC's order";

    bmc = std::make_shared<FakeBmc>();
    const auto one = Load("node2");
    EXPECT_EQ(one->LinksOf("OOB_LSI", 0), nullptr);
    ASSERT_NE(one->LinksOf("OOB_MICROCHIP", 0), nullptr);
    EXPECT_EQ(bmc->Count("GET", "/redfish/v1/Systems/System.Embedded.1/Storage"), 0U);
}

TEST_F(RealBmcTest, ASystemIdTheBmcLacksFailsWithTheSystemsItHas) {
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"), {}, {});
    auto reader = Open("7");
    std::shared_ptr<const StorageTree> loaded;
    const redfish::RedfishStatus status = reader->Load(loaded);
    EXPECT_EQ(status.code, RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: no system has the Id \"7\" (the BMC's systems: "
                           "\"System.Embedded.1\")");
}

TEST_F(RealBmcTest, AFailureWhileFindingStorageIsKeptAndNeverNoControllers) {
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"), {}, {});
    tree.erase("/redfish/v1/Systems/System.Embedded.1/Storage");
    auto reader = Open();
    std::shared_ptr<const StorageTree> loaded;
    const redfish::RedfishStatus status = reader->Load(loaded);
    EXPECT_EQ(status.code, RAID_TARGET_NOT_FOUND);
    EXPECT_NE(status.text.find("HTTP 404 on GET /redfish/v1/Systems/System.Embedded.1/Storage"),
              std::string::npos)
        << status.text;
    const std::size_t sent = bmc->requests.size();
    EXPECT_EQ(reader->Load(loaded).code, RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(bmc->requests.size(), sent) << "the failure is kept for the rest of the run";
    EXPECT_EQ(reader->failure().code, RAID_TARGET_NOT_FOUND);
}

TEST_F(RealBmcTest, MalformedJsonAndServerErrorsAreFailuresWithTheirReason) {
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"), {}, {});
    auto reader = Open();
    bmc->Clear("GET", "/redfish/v1/Systems");
    bmc->On("GET", "/redfish/v1/Systems", raidcfg_test::Json(200, "{\"Members\": ["));
    std::shared_ptr<const StorageTree> loaded;
    redfish::RedfishStatus status = reader->Load(loaded);
    EXPECT_EQ(status.code, RAID_REST_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: malformed JSON in the answer to GET /redfish/v1/Systems");

    bmc = std::make_shared<FakeBmc>();
    reader = Open();
    const std::string storage = "/redfish/v1/Systems/System.Embedded.1/Storage/RAID.Integrated.1-1";
    bmc->Clear("GET", storage);
    bmc->On("GET", storage, raidcfg_test::Json(500, raidcfg_test::ErrorBody("controller busy")));
    status = reader->Load(loaded);
    EXPECT_EQ(status.code, RAID_REST_FAILED);
    EXPECT_NE(status.text.find("HTTP 500 on GET " + storage), std::string::npos) << status.text;
}

TEST_F(RealBmcTest, AServiceRootWithoutSystemsIsAFailure) {
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"), {}, {});
    bmc->On("GET", "/redfish/v1",
            raidcfg_test::Json(200, R"({"@odata.id": "/redfish/v1", "Links": {"Sessions":)"
                                    R"( {"@odata.id": "/redfish/v1/SessionService/Sessions"}}})"));
    redfish::ClientSettings settings;
    settings.user = "admin";
    settings.password = "secret";
    auto client = std::make_shared<RedfishClient>(bmc->Transport(), settings);
    bmc->On("POST", "/redfish/v1/SessionService/Sessions",
            raidcfg_test::Json(201, R"({"Id": "1"})", {{"x-auth-token", "t"}}));
    ASSERT_TRUE(client->Open().ok());
    StorageTreeReader reader(client);
    std::shared_ptr<const StorageTree> loaded;
    const redfish::RedfishStatus status = reader.Load(loaded);
    EXPECT_EQ(status.code, RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: the service root lists no Systems collection");
}

TEST_F(RealBmcTest, EmptyBaysAreNoDisksAndTheOtherDisksKeepTheirPlaces) {
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"),
              {json{{"Id", "Disk-0"}, {"Status", {{"State", "Enabled"}, {"Health", "OK"}}}},
               json{{"Id", "Disk-1"}, {"Status", {{"State", "Absent"}}}},
               json{{"Id", "Disk-2"}, {"Status", {{"State", "Enabled"}}}}},
              {});
    const auto loaded = Load();
    const model::Controller* c = loaded->Find("OOB_LSI", 0);
    ASSERT_NE(c, nullptr);
    ASSERT_EQ(c->disks.size(), 2U);
    EXPECT_EQ(c->disks[0].id, 0);
    EXPECT_EQ(c->disks[1].id, 2) << "numbered by the place in the Drives array";
    EXPECT_EQ(loaded->LinksOf("OOB_LSI", 0)->drives.at(2), DrivePath("Disk-2"));
}

TEST_F(RealBmcTest, NameAndTheDeprecatedLocationStandInForModelAndSlot) {
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"),
              {json{{"Id", "0"},
                    {"Name", "ST2000NM0055"},
                    {"Model", ""},
                    {"Location", {{{"Info", "4"}, {"InfoFormat", "Slot Number"}}}}},
               json{{"Id", "1"},
                    {"Model", "MZ7LH960"},
                    {"Location",
                     {{{"Info", "Enc 1"}, {"InfoFormat", "Enclosure"}},
                      {{"Info", "Bay 9"}, {"InfoFormat", "Bay Number"}}}}}},
              {});
    const auto loaded = Load();
    const model::Controller* c = loaded->Find("OOB_LSI", 0);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->disks[0].product_name, "ST2000NM0055");
    EXPECT_EQ(c->disks[0].slot_no, "4");
    EXPECT_EQ(c->disks[1].product_name, "MZ7LH960");
    EXPECT_EQ(c->disks[1].slot_no, "Bay 9");
}

TEST_F(RealBmcTest, NullOrMissingPropertiesAreNotReportedNotMadeUp) {
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"),
              {json{{"Id", "0"}, {"CapacityBytes", nullptr}, {"MediaType", nullptr}},
               json{{"Id", "1"}, {"CapacityBytes", 23058430092136940000.0}}},
              {json{{"Id", "1"}, {"Links", {{"Drives", {Ref(DrivePath("0"))}}}}}});
    const auto loaded = Load();
    const model::Controller* c = loaded->Find("OOB_LSI", 0);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->disks[0].capacity_mb, model::kNotReported);
    EXPECT_EQ(c->disks[0].media_type, "");
    EXPECT_EQ(c->disks[0].disk_type, "");
    EXPECT_EQ(c->disks[1].capacity_mb, std::numeric_limits<long long>::max() / 1048576)
        << "a size beyond 64 bits is held, not wrapped";
    ASSERT_EQ(c->volumes.size(), 1U);
    const model::Volume& v = c->volumes[0];
    EXPECT_EQ(v.raid_level, "");
    EXPECT_EQ(v.status, "");
    EXPECT_EQ(v.size_mb, model::kNotReported);
    EXPECT_EQ(v.write_policy, model::kNotReported);
    EXPECT_EQ(v.read_policy, model::kNotReported);
    EXPECT_EQ(v.io_policy, model::kNotReported);
    EXPECT_EQ(v.access_policy, model::kNotReported);
    EXPECT_EQ(v.cache_policy, model::kNotReported);
    EXPECT_EQ(v.initialization, model::kNotReported);
    EXPECT_FALSE(v.bootable_known) << "no IsBootCapable: shown empty, not False";
}

TEST_F(RealBmcTest, VolumeTypeGivesTheLevelWhereRaidTypeIsMissing) {
    const std::vector<std::pair<std::string, std::string>> types = {
        {"NonRedundant", "0"},
        {"Mirrored", "1"},
        {"StripedWithParity", "5"},
        {"SpannedMirrors", "10"},
        {"SpannedStripesWithParity", "50"},
        {"RawDevice", ""}};
    std::vector<json> drives;
    std::vector<json> volumes;
    for (std::size_t i = 0; i < types.size(); ++i) {
        const std::string a = std::to_string(2 * i);
        const std::string b = std::to_string(2 * i + 1);
        drives.push_back(json{{"Id", a}});
        drives.push_back(json{{"Id", b}});
        volumes.push_back(json{{"Id", std::to_string(i)},
                               {"VolumeType", types[i].first},
                               {"Links", {{"Drives", {Ref(DrivePath(a)), Ref(DrivePath(b))}}}}});
    }
    volumes.push_back(json{{"Id", "9"}, {"RAIDType", "RAID6"}, {"VolumeType", "Mirrored"}});
    OneSystem(Controller("Broadcom", "MegaRAID 9560-8i"), drives, volumes);
    const auto loaded = Load();
    const model::Controller* c = loaded->Find("OOB_LSI", 0);
    ASSERT_NE(c, nullptr);
    ASSERT_EQ(c->volumes.size(), types.size() + 1);
    for (std::size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(c->volumes[i].raid_level, types[i].second) << types[i].first;
    }
    EXPECT_EQ(c->volumes.back().raid_level, "6") << "RAIDType wins over VolumeType";
}

TEST_F(RealBmcTest, ANoneVolumeOverSeveralDrivesIsAVolumeAndOverOneDriveAJbodDisk) {
    OneSystem(Controller("Contoso", "NVMe"),
              {json{{"Id", "A"}}, json{{"Id", "B"}}, json{{"Id", "C"}}, json{{"Id", "D"}}},
              {json{{"Id", "Cache"},
                    {"RAIDType", "None"},
                    {"Links", {{"Drives", {Ref(DrivePath("A")), Ref(DrivePath("B"))}}}}},
               json{{"Id", "Raw"},
                    {"VolumeType", "RawDevice"},
                    {"Links", {{"Drives", {Ref(DrivePath("C"))}}}}}});
    const auto loaded = Load();
    const model::Controller* c = loaded->Find("OOB_LSI", 0);
    ASSERT_NE(c, nullptr);
    ASSERT_EQ(c->volumes.size(), 1U);
    EXPECT_EQ(c->volumes[0].spans, (std::vector<std::vector<int>>{{0, 1}}));
    EXPECT_EQ(c->disks[0].state, "Online");
    EXPECT_EQ(c->disks[1].state, "Online");
    EXPECT_EQ(c->disks[2].state, "JBOD");
    EXPECT_EQ(c->disks[3].state, "UGood");
    const redfish::ControllerLinks* links = loaded->LinksOf("OOB_LSI", 0);
    EXPECT_EQ(links->pass_through.count(0), 0U) << "never the volume of another drive";
    EXPECT_EQ(links->pass_through.count(2), 1U);
}

TEST_F(RealBmcTest, AStorageWithSeveralControllersIsOneControllerDescribedByTheFirst) {
    OneSystem(Controller("Contoso", "ignored"), {json{{"Id", "0"}}}, {});
    const std::string storage = "/redfish/v1/Systems/System.Embedded.1/Storage/RAID.Integrated.1-1";
    json& body = tree[storage];
    body.erase("StorageControllers");
    body["Controllers"] = Ref(storage + "/Controllers");
    tree[storage + "/Controllers"] =
        Collection({storage + "/Controllers/1", storage + "/Controllers/2"});
    tree[storage + "/Controllers/1"] = {{"Id", "1"},
                                        {"Manufacturer", "Broadcom"},
                                        {"Model", "MegaRAID 9670W-16i"},
                                        {"SupportedRAIDTypes", {"RAID0", "RAID1"}}};
    tree[storage + "/Controllers/2"] = {{"Id", "2"}, {"Manufacturer", "Broadcom"}};
    const auto loaded = Load();
    EXPECT_EQ(loaded->machine.controllers.size(), 2U) << "one controller, in its family and CFC";
    const model::Controller* c = loaded->Find("OOB_LSI", 0);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->product_name, "MegaRAID 9670W-16i");
    EXPECT_EQ(c->raid_levels, (std::vector<std::string>{"0", "1"}));
    EXPECT_EQ(loaded->LinksOf("OOB_LSI", 0)->raid_types,
              (std::vector<std::string>{"RAID0", "RAID1"}));
    EXPECT_EQ(c->disks.size(), 1U) << "the drives belong to the Storage";
}

struct FamilyRule {
    const char* manufacturer;
    const char* model;
    const char* family;
};

class FamilyRuleTest : public ::testing::TestWithParam<FamilyRule> {};

TEST_P(FamilyRuleTest, ManufacturerAndModelTogetherGiveTheFamily) {
    const FamilyRule& rule = GetParam();
    EXPECT_EQ(StorageTreeReader::FamilyOf(rule.manufacturer, rule.model), rule.family)
        << rule.manufacturer << " / " << rule.model;
}

INSTANTIATE_TEST_SUITE_P(
    EveryRule, FamilyRuleTest,
    ::testing::Values(
        // M.2 boot adapters, also under a server maker's name
        FamilyRule{"Marvell", "", "OOB_M2"}, FamilyRule{"Contoso", "88SE9230", "OOB_M2"},
        FamilyRule{"Contoso", "M.2 Boot Adapter", "OOB_M2"},
        // Intel VROC / VMD
        FamilyRule{"Intel", "VROC", "OOB_VROC"}, FamilyRule{"Intel", "Intel VMD", "OOB_VROC"},
        FamilyRule{"Intel Corporation", "Virtual RAID on CPU", "OOB_VROC"},
        // Microchip and Adaptec, by name or by product line
        FamilyRule{"Microchip", "", "OOB_MICROCHIP"}, FamilyRule{"Adaptec", "", "OOB_MICROCHIP"},
        FamilyRule{"PMC-Sierra", "", "OOB_MICROCHIP"},
        FamilyRule{"Contoso", "SmartRAID 3154-8i", "OOB_MICROCHIP"},
        FamilyRule{"Contoso", "SmartHBA 2100-8i", "OOB_MICROCHIP"},
        FamilyRule{"Contoso", "SmartIOC 2100", "OOB_MICROCHIP"},
        // Broadcom names and the server makers' rebrands of them
        FamilyRule{"Broadcom", "", "OOB_LSI"}, FamilyRule{"LSI", "", "OOB_LSI"},
        FamilyRule{"Avago", "", "OOB_LSI"}, FamilyRule{"Contoso", "MegaRAID 9560-8i", "OOB_LSI"},
        FamilyRule{"Contoso", "SAS3908", "OOB_LSI"},
        FamilyRule{"Contoso", "RAID 940-8i", "OOB_LSI"},
        FamilyRule{"Contoso", "9460-16i", "OOB_LSI"},
        // everything else: the general hardware RAID form
        FamilyRule{"Contoso", "RAID 16oz can", "OOB_LSI"}, FamilyRule{"", "", "OOB_LSI"}));

} // namespace
