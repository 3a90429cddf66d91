// Writes to a BMC without our Oem section: only what was asked, only what the BMC offers, and
// never a request that would destroy another drive's data.
#include <memory>
#include <string>
#include <vector>

#include "backend/records.hpp"
#include "redfish/redfish_connection.hpp"
#include "redfish/redfish_raid_driver.hpp"
#include "tests/redfish/fake_transport.hpp"
#include "tests/redfish/real_bmc_tree.hpp"

#include <gtest/gtest.h>

namespace {

using nlohmann::json;
using raidcfg_test::FakeBmc;
using raidcfg_test::RealBmcTree;
using namespace Quillon::RaidConfig;

json Ref(const std::string& path) {
    return RealBmcTree::Link(path);
}

json Drives(const std::vector<std::string>& ids) {
    json links = json::array();
    for (const std::string& id : ids) {
        links.push_back(Ref(RealBmcTree::DrivePath(id)));
    }
    return links;
}

class RealBmcDriverTest : public ::testing::Test {
protected:
    std::shared_ptr<FakeBmc> bmc = std::make_shared<FakeBmc>();
    RealBmcTree tree;
    std::unique_ptr<redfish::RedfishConnection> connection;

    // Drives A..F; "Pair" is a RAIDType None volume over A and B (no redundancy, not JBOD),
    // "Raw" the pass-through volume of C, "Mirror" a RAID1 over D and E; F is a global spare,
    // G free.
    void SetUp() override {
        tree.OneSystem(
            {{"Manufacturer", "Contoso"},
             {"Model", "RAID 16oz can"},
             {"SupportedRAIDTypes", {"None", "RAID0", "RAID1"}}},
            {json{{"Id", "A"}}, json{{"Id", "B"}}, json{{"Id", "C"}}, json{{"Id", "D"}},
             json{{"Id", "E"}}, json{{"Id", "F"}, {"HotspareType", "Global"}}, json{{"Id", "G"}}},
            {json{
                 {"Id", "Pair"}, {"RAIDType", "None"}, {"Links", {{"Drives", Drives({"A", "B"})}}}},
             json{{"Id", "Raw"}, {"RAIDType", "None"}, {"Links", {{"Drives", Drives({"C"})}}}},
             json{{"Id", "Mirror"},
                  {"RAIDType", "RAID1"},
                  {"Links", {{"Drives", Drives({"D", "E"})}}}}});
    }

    redfish::RedfishRaidDriver Driver(const std::string& family = "OOB_LSI") {
        tree.Serve(*bmc);
        redfish::ClientSettings settings;
        settings.user = "admin";
        settings.password = "secret";
        settings.sleep = [](std::chrono::milliseconds) {};
        auto client = std::make_shared<redfish::RedfishClient>(bmc->Transport(), settings);
        EXPECT_TRUE(client->Open().ok());
        connection = std::make_unique<redfish::RedfishConnection>(
            "rest", client, std::make_shared<redfish::StorageTreeReader>(client));
        return redfish::RedfishRaidDriver(*connection, family);
    }

    // The Mirror volume lists Volume.Initialize at target.
    void ListInitialize(const std::string& target) {
        tree.resources[RealBmcTree::VolumePath("Mirror")]["Actions"] = {
            {"#Volume.Initialize", {{"target", target}}}};
    }

    // The body of the last request that writes; discarded when there is none.
    json LastWriteBody() const {
        for (auto request = bmc->requests.rbegin(); request != bmc->requests.rend(); ++request) {
            if (request->method != "GET" && request->path.find("/Sessions") == std::string::npos) {
                return json::parse(request->body, nullptr, false);
            }
        }
        return json::value_t::discarded;
    }

    // Every request that writes, but the session's own.
    std::vector<std::string> Writes() const {
        std::vector<std::string> writes;
        for (const auto& request : bmc->requests) {
            if (request.method != "GET" && request.path.find("/Sessions") == std::string::npos) {
                writes.push_back(request.method + " " + request.path + " " + request.body);
            }
        }
        return writes;
    }
};

TEST_F(RealBmcDriverTest, MakeGoodNeverDeletesAVolumeThatHoldsAnotherDrive) {
    redfish::RedfishRaidDriver driver = Driver();
    std::vector<int> eligible;
    std::string error;
    EXPECT_EQ(driver.GetCanMakeGoodDiskIds(0, eligible, error), RAID_OK);
    EXPECT_EQ(eligible, std::vector<int>({2})) << "only C, the disk of its own pass-through";
    EXPECT_EQ(driver.MakeGood(0, 0, error), RAID_MAKEGOOD_REFUSED);
    EXPECT_EQ(error, "disk 0 is Online, not UBad or JBOD");
    EXPECT_TRUE(Writes().empty());
}

TEST_F(RealBmcDriverTest, DiskChangesAreJudgedAsTheSimulatedMachineJudgesThemBeforeASend) {
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.MakeJbod(0, 3, error), RAID_MAKEJBOD_REFUSED);
    EXPECT_EQ(error, "disk 3 is Online, not UGood");
    EXPECT_EQ(driver.AddGlobalHotSpare(0, "3", error), RAID_ADDHSP_REFUSED);
    EXPECT_EQ(error, "disk 3 is Online, not UGood");
    EXPECT_EQ(driver.AddDedicatedHotSpare(0, "5", {"0"}, error), RAID_ADDHSP_REFUSED);
    EXPECT_EQ(error, "disk 5 is GHS, not UGood");
    EXPECT_EQ(driver.RemoveHotSpare(0, "6", error), RAID_RMHSP_REFUSED);
    EXPECT_EQ(error, "disk 6 is UGood, not a hot spare");
    EXPECT_EQ(driver.AddGlobalHotSpare(0, "9", error), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(error, "disk 9 does not exist");
    EXPECT_TRUE(Writes().empty());
}

TEST_F(RealBmcDriverTest, FastInitGoesToTheTargetTheVolumeLists) {
    const std::string target = "/redfish/v1/Systems/3/Volumes/1/Actions/Volume.Initialize";
    ListInitialize(target);
    bmc->On("POST", target, raidcfg_test::Status(204));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.FastInit(0, 1, error), RAID_OK) << error;
    EXPECT_EQ(Writes(),
              std::vector<std::string>({"POST " + target + " {\"InitializeType\":\"Fast\"}"}));
}

TEST_F(RealBmcDriverTest, AnInitializeTargetTheBmcDoesNotServeIsNotAMissingVolume) {
    const std::string target = "/redfish/v1/Systems/3/Volumes/1/Actions/Volume.Initialize";
    ListInitialize(target);
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.FastInit(0, 1, error), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(error, "the BMC does not offer Volume.Initialize at " + target +
                         " (BMC 10.0.0.5: "
                         "HTTP 404 on POST " +
                         target + ": The resource at the URI " + target + " was not found.)");
}

TEST_F(RealBmcDriverTest, MakeGoodOfAJbodDiskDeletesOnlyItsOwnPassThroughVolume) {
    bmc->On("DELETE", RealBmcTree::VolumePath("Raw"), raidcfg_test::Status(204));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.MakeGood(0, 2, error), RAID_OK) << error;
    EXPECT_EQ(Writes(),
              std::vector<std::string>({"DELETE " + RealBmcTree::VolumePath("Raw") + " "}));
}

TEST_F(RealBmcDriverTest, ClearWithoutTheResetActionDeletesEachVolumeAndUnassignsSpares) {
    for (const char* id : {"Pair", "Mirror"}) {
        bmc->On("DELETE", RealBmcTree::VolumePath(id), raidcfg_test::Status(204));
    }
    bmc->On("PATCH", RealBmcTree::DrivePath("F"), raidcfg_test::Status(204));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.ClearConfig(0, error), RAID_OK) << error;
    EXPECT_EQ(Writes(),
              std::vector<std::string>(
                  {"DELETE " + RealBmcTree::VolumePath("Mirror") + " ",
                   "DELETE " + RealBmcTree::VolumePath("Pair") + " ",
                   "PATCH " + RealBmcTree::DrivePath("F") + " {\"HotspareType\":\"None\"}"}))
        << "newest first; the JBOD disk's own volume stays";
}

TEST_F(RealBmcDriverTest, ClearUsesTheResetActionWhereTheStorageOffersIt) {
    const std::string target =
        std::string(RealBmcTree::kStorage) + "/Actions/Storage.ResetToDefaults";
    tree.resources[RealBmcTree::kStorage]["Actions"] = {
        {"#Storage.ResetToDefaults", {{"target", target}}}};
    bmc->On("POST", target, raidcfg_test::Status(204));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.ClearConfig(0, error), RAID_OK) << error;
    EXPECT_EQ(Writes(),
              std::vector<std::string>({"POST " + target + " {\"ResetType\":\"ResetAll\"}"}));
}

TEST_F(RealBmcDriverTest, ALevelTheControllerDoesNotListIsRefusedBeforeAnythingIsSent) {
    redfish::RedfishRaidDriver driver = Driver();
    VolumeObject request;
    request.controller_id = 0;
    request.raid_level = "5";
    request.disks = {{6}};
    std::string error;
    EXPECT_EQ(driver.Add(request, error), RAID_OPERATION_FAILED);
    EXPECT_EQ(error, "the controller does not offer RAID5 (it offers None, RAID0, RAID1)");
    EXPECT_TRUE(Writes().empty());
}

TEST_F(RealBmcDriverTest, ACreateOnADiskInUseIsRefusedWithTheSimulatedMachinesCode) {
    redfish::RedfishRaidDriver driver = Driver();
    VolumeObject request;
    request.controller_id = 0;
    request.raid_level = "1";
    request.disks = {{3, 6}};
    std::string error;
    EXPECT_EQ(driver.Add(request, error), RAID_DISK_STATE_ERROR);
    EXPECT_EQ(error, "disk 3 is Online, not UGood");
    request.disks = {{6, 9}};
    EXPECT_EQ(driver.Add(request, error), RAID_DISK_NOT_FOUND);
    EXPECT_EQ(error, "disk 9 does not exist");
    request.disks = {{6}};
    request.hot_spares = {5};
    EXPECT_EQ(driver.Add(request, error), RAID_DISK_STATE_ERROR);
    EXPECT_EQ(error, "hot spare disk 5 is GHS, not UGood");
    EXPECT_TRUE(Writes().empty());
}

TEST_F(RealBmcDriverTest, ACreateCarriesNoOemAndNoPolicyTheBmcDoesNotShow) {
    bmc->On("POST", std::string(RealBmcTree::kStorage) + "/Volumes", raidcfg_test::Status(201));
    redfish::RedfishRaidDriver driver = Driver();
    VolumeObject request;
    request.controller_id = 0;
    request.raid_level = "0";
    request.vol_name = "scratch";
    request.disks = {{6}};
    request.write_policy = 1;
    request.read_policy = 1;
    std::string error;
    EXPECT_EQ(driver.Add(request, error), RAID_OK) << error;
    ASSERT_EQ(Writes().size(), 1U);
    const json body = LastWriteBody();
    EXPECT_EQ(body, (json{{"RAIDType", "RAID0"},
                          {"DisplayName", "scratch"},
                          {"Links",
                           {{"Drives", Drives({"G"})}, {"DedicatedSpareDrives", json::array()}}}}));
}

TEST_F(RealBmcDriverTest, PoliciesGoWhereTheBmcsVolumesShowThem) {
    // Every RAID volume shows its write policy; none shows a read policy.
    tree.resources[RealBmcTree::VolumePath("Mirror")]["WriteCachePolicy"] = "WriteThrough";
    tree.resources[RealBmcTree::VolumePath("Pair")]["WriteCachePolicy"] = "WriteThrough";
    bmc->On("POST", std::string(RealBmcTree::kStorage) + "/Volumes", raidcfg_test::Status(201));
    redfish::RedfishRaidDriver driver = Driver();
    VolumeObject request;
    request.controller_id = 0;
    request.raid_level = "0";
    request.disks = {{6}};
    request.write_policy = 1;
    request.read_policy = 1;
    std::string error;
    EXPECT_EQ(driver.Add(request, error), RAID_OK) << error;
    const json body = LastWriteBody();
    EXPECT_EQ(body.value("WriteCachePolicy", ""), "ProtectedWriteBack");
    EXPECT_FALSE(body.contains("ReadCachePolicy"));
}

TEST_F(RealBmcDriverTest, AStorageWithoutRaidVolumesGetsThePoliciesTheRequestStates) {
    for (const char* id : {"Pair", "Mirror"}) {
        tree.resources.erase(RealBmcTree::VolumePath(id));
    }
    tree.resources[std::string(RealBmcTree::kStorage) + "/Volumes"] =
        RealBmcTree::Collection({RealBmcTree::VolumePath("Raw")});
    bmc->On("POST", std::string(RealBmcTree::kStorage) + "/Volumes", raidcfg_test::Status(201));
    redfish::RedfishRaidDriver driver = Driver();
    VolumeObject request;
    request.controller_id = 0;
    request.raid_level = "1";
    request.disks = {{0, 1}};
    request.write_policy = 0;
    request.read_policy = 2;
    std::string error;
    EXPECT_EQ(driver.Add(request, error), RAID_OK) << error;
    const json body = LastWriteBody();
    EXPECT_EQ(body.value("WriteCachePolicy", ""), "WriteThrough");
    EXPECT_EQ(body.value("ReadCachePolicy", ""), "AdaptiveReadAhead");
}

TEST_F(RealBmcDriverTest, AnM2VolumeTakesTheLowestFreeDrivesItsLevelNeeds) {
    tree.resources[RealBmcTree::kStorage]["StorageControllers"][0]["Model"] = "88SE9230";
    bmc->On("POST", std::string(RealBmcTree::kStorage) + "/Volumes", raidcfg_test::Status(201));
    tree.resources[RealBmcTree::DrivePath("F")].erase("HotspareType");
    redfish::RedfishRaidDriver driver = Driver("OOB_M2");
    M2ControllerObject request;
    request.controller_id = 0;
    request.raid_level = "1";
    request.vol_name = "boot";
    std::string error;
    EXPECT_EQ(driver.Add(request, error), RAID_OK) << error;
    ASSERT_EQ(Writes().size(), 1U);
    const json body = LastWriteBody();
    EXPECT_EQ(body["Links"]["Drives"], Drives({"F", "G"}));
    EXPECT_FALSE(body.contains("Oem"));
}

TEST_F(RealBmcDriverTest, FunctionsOnlyOurOemOffersAreUnsupportedAndSendNothing) {
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.RaidChangeConnectorMode(0, "0", "HBA", error), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(error, "the BMC does not offer a change of connector mode");
    EXPECT_EQ(driver.SetFirmwareDeviceOrderCtrl(0, "Enabled", error), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(error, "the BMC does not offer a firmware device order");
    EXPECT_TRUE(Writes().empty());
}

TEST_F(RealBmcDriverTest, FastInitAndJbodAreSentOnlyWhereTheBmcOffersThem) {
    tree.resources[RealBmcTree::kStorage]["StorageControllers"][0]["SupportedRAIDTypes"] = {
        "RAID0", "RAID1"};
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.FastInit(0, 1, error), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(error, "the BMC does not offer Volume.Initialize for volume 1");
    EXPECT_EQ(driver.MakeJbod(0, 6, error), RAID_MAKEJBOD_REFUSED);
    EXPECT_EQ(error, "the controller does not offer pass-through volumes (RAIDType None), so "
                     "disk 6 cannot be made JBOD");
    EXPECT_TRUE(Writes().empty());
}

TEST_F(RealBmcDriverTest, ADedicatedSpareCarriesOnlyTheStandardLink) {
    bmc->On("PATCH", RealBmcTree::DrivePath("G"), raidcfg_test::Status(204));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.AddDedicatedHotSpare(0, "6", {"0"}, error), RAID_OK) << error;
    ASSERT_EQ(Writes().size(), 1U);
    EXPECT_EQ(LastWriteBody(),
              (json{{"HotspareType", "Dedicated"},
                    {"Links", {{"Volumes", {Ref(RealBmcTree::VolumePath("Pair"))}}}}}));
}

TEST_F(RealBmcDriverTest, APatchCarriesTheETagTheDriveWasReadWith) {
    // Answered before the tree's own copy of the drive, which Driver serves after it.
    const json drive = tree.resources[RealBmcTree::DrivePath("G")];
    bmc->On("GET", RealBmcTree::DrivePath("G"),
            raidcfg_test::Json(200, drive.dump(), {{"etag", "\"g-1\""}}));
    bmc->On("PATCH", RealBmcTree::DrivePath("G"), raidcfg_test::Status(204));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.AddGlobalHotSpare(0, "6", error), RAID_OK) << error;
    for (const auto& request : bmc->requests) {
        if (request.method == "PATCH") {
            EXPECT_EQ(FakeBmc::HeaderOf(request, "If-Match"), "\"g-1\"");
        }
    }
}

} // namespace
