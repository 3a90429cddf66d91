#include <memory>
#include <string>

#include "backend/records.hpp"
#include "redfish/redfish_connection.hpp"
#include "redfish/redfish_encryption_driver.hpp"
#include "redfish/redfish_fw_dev_order_driver.hpp"
#include "redfish/redfish_raid_driver.hpp"
#include "redfish/redfish_support_driver.hpp"
#include "tests/redfish/canned_storage.hpp"
#include "tests/redfish/fake_transport.hpp"

#include <gtest/gtest.h>

namespace {

using namespace Quillon::RaidConfig;
using nlohmann::json;
using raidcfg_test::FakeBmc;
using raidcfg_test::Json;

const std::string kLsi = raidcfg_test::StoragePath("OOB_LSI-0");

std::string Success(int code = 0, const std::string& message = "Successfully Completed Request",
                    const std::string& id = "Base.1.8.Success") {
    return json{
        {"@Message.ExtendedInfo",
         {{{"MessageId", id}, {"Message", message}, {"Oem", {{"Raidcfg", {{"Code", code}}}}}}}}}
        .dump();
}

std::string Refusal(const std::string& message, int code) {
    return raidcfg_test::ErrorBody(message,
                                   R"("Oem": {"Raidcfg": {"Code": )" + std::to_string(code) + "}}");
}

class RedfishDriverTest : public ::testing::Test {
protected:
    std::shared_ptr<FakeBmc> bmc = std::make_shared<FakeBmc>();
    std::unique_ptr<redfish::RedfishConnection> connection;

    void SetUp() override { Serve(raidcfg_test::EmulatedLsi()); }

    void Serve(const raidcfg_test::CannedStorage& storage) {
        bmc->StandardService(true);
        raidcfg_test::ServeStorage(*bmc, {storage}, json{{"SupportInfo", true}});
        redfish::ClientSettings settings;
        settings.user = "admin";
        settings.password = "secret";
        settings.sleep = [](std::chrono::milliseconds) {};
        auto client = std::make_shared<redfish::RedfishClient>(bmc->Transport(), settings);
        ASSERT_TRUE(client->Open().ok());
        connection = std::make_unique<redfish::RedfishConnection>(
            "rest", client, std::make_shared<redfish::StorageTreeReader>(client));
    }

    redfish::RedfishRaidDriver Driver(const std::string& family = "OOB_LSI") const {
        return redfish::RedfishRaidDriver(*connection, family);
    }

    // The last request of that method, which the test expects to exist.
    const redfish::HttpRequest& Last(const std::string& method) const {
        for (auto it = bmc->requests.rbegin(); it != bmc->requests.rend(); ++it) {
            if (it->method == method) {
                return *it;
            }
        }
        static const redfish::HttpRequest none;
        ADD_FAILURE() << "no " << method << " request was sent";
        return none;
    }
    static json Body(const redfish::HttpRequest& request) {
        return json::parse(request.body, nullptr, false);
    }
    std::size_t Writes() const {
        std::size_t count = 0;
        for (const auto& request : bmc->requests) {
            count += request.method != "GET" && request.path.find("Sessions") == std::string::npos;
        }
        return count;
    }
};

TEST_F(RedfishDriverTest, EachWriteSendsItsDocumentedRequest) {
    struct Case {
        const char* what;
        std::function<RaidErrorCode(redfish::RedfishRaidDriver&, std::string&)> call;
        std::string method;
        std::string path;
        json body;
    };
    const std::string drives = kLsi + "/Drives/";
    const std::vector<Case> cases = {
        {"clear", [](auto& d, auto& e) { return d.ClearConfig(0, e); }, "POST",
         kLsi + "/Actions/Storage.ResetToDefaults", json{{"ResetType", "ResetAll"}}},
        {"remove a volume", [](auto& d, auto& e) { return d.RemoveVolume(0, 0, e); }, "DELETE",
         kLsi + "/Volumes/0", json()},
        {"make good a JBOD disk", [](auto& d, auto& e) { return d.MakeGood(0, 8, e); }, "DELETE",
         kLsi + "/Volumes/PassThrough-8", json()},
        {"make good another disk", [](auto& d, auto& e) { return d.MakeGood(0, 7, e); }, "POST",
         drives + "7/Actions/Oem/Raidcfg.MakeGood", json::object()},
        {"make JBOD", [](auto& d, auto& e) { return d.MakeJbod(0, 6, e); }, "POST",
         kLsi + "/Volumes",
         json{{"RAIDType", "None"}, {"Links", {{"Drives", {raidcfg_test::Ref(drives + "6")}}}}}},
        {"global hot spare", [](auto& d, auto& e) { return d.AddGlobalHotSpare(0, "6", e); },
         "PATCH", drives + "6", json{{"HotspareType", "Global"}}},
        {"dedicated hot spare",
         [](auto& d, auto& e) { return d.AddDedicatedHotSpare(0, "6", {"0"}, e); }, "PATCH",
         drives + "6",
         json{{"HotspareType", "Dedicated"},
              {"Links", {{"Volumes", {raidcfg_test::Ref(kLsi + "/Volumes/0")}}}},
              {"Oem", {{"Raidcfg", {{"DiskGroups", {"0"}}}}}}}},
        {"remove a hot spare", [](auto& d, auto& e) { return d.RemoveHotSpare(0, "5", e); },
         "PATCH", drives + "5", json{{"HotspareType", "None"}}},
        {"fast init", [](auto& d, auto& e) { return d.FastInit(0, 0, e); }, "POST",
         kLsi + "/Volumes/0/Actions/Volume.Initialize", json{{"InitializeType", "Fast"}}},
        {"connector mode",
         [](auto& d, auto& e) { return d.RaidChangeConnectorMode(0, "0", "HBA", e); }, "POST",
         kLsi + "/Controllers/0/Actions/Oem/Raidcfg.ChangeConnectorMode",
         json{{"Connector", "0"}, {"Mode", "HBA"}}},
        {"firmware device order",
         [](auto& d, auto& e) { return d.SetFirmwareDeviceOrderCtrl(0, "Disabled", e); }, "PATCH",
         kLsi + "/Controllers/0",
         json{{"Oem", {{"Raidcfg", {{"FirmwareDeviceOrder", "Disabled"}}}}}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        bmc->On(c.method, c.path, Json(200, Success()));
        redfish::RedfishRaidDriver driver = Driver();
        std::string error = "untouched";
        EXPECT_EQ(c.call(driver, error), RAID_OK);
        EXPECT_EQ(error, "untouched") << "a success sets no error text";
        const redfish::HttpRequest& sent = Last(c.method);
        EXPECT_EQ(sent.path, c.path);
        if (!c.body.is_null()) {
            EXPECT_EQ(Body(sent), c.body);
        }
    }
}

TEST_F(RedfishDriverTest, ARefusalPassesTheBmcsCodeAndTextThrough) {
    bmc->On("PATCH", kLsi + "/Drives/3", Json(409, Refusal("disk 3 is Online, not UGood", 15)));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.AddGlobalHotSpare(0, "3", error), RAID_ADDHSP_REFUSED);
    EXPECT_EQ(error, "disk 3 is Online, not UGood");
    bmc->On("DELETE", kLsi + "/Volumes/4", Json(404, Refusal("volume 4 does not exist", 5)));
    EXPECT_EQ(driver.RemoveVolume(0, 4, error), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(error, "volume 4 does not exist");
}

TEST_F(RedfishDriverTest, AnErrorWithoutOurCodeIsARestFailureWithTheBmcsMessage) {
    bmc->On("POST", kLsi + "/Volumes/0/Actions/Volume.Initialize",
            Json(500, raidcfg_test::ErrorBody("controller busy")));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.FastInit(0, 0, error), RAID_REST_FAILED);
    EXPECT_NE(error.find("controller busy"), std::string::npos) << error;
}

TEST_F(RedfishDriverTest, AWriteDropsWhatWasRead) {
    redfish::RedfishRaidDriver driver = Driver();
    std::vector<int> ids;
    driver.GetControllerIds(ids);
    driver.GetControllerIds(ids);
    EXPECT_EQ(ids, std::vector<int>{0});
    const std::string read = kLsi + raidcfg_test::kExpandTwo;
    EXPECT_EQ(bmc->Count("GET", read), 1U);
    bmc->On("PATCH", kLsi + "/Drives/6", Json(200, Success()));
    std::string error;
    ASSERT_EQ(driver.AddGlobalHotSpare(0, "6", error), RAID_OK);
    driver.GetControllerIds(ids);
    EXPECT_EQ(bmc->Count("GET", read), 2U);
}

TEST_F(RedfishDriverTest, AControllerTheBmcLacksSendsNothing) {
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.MakeJbod(9, 6, error), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(error, "controller 9 does not exist");
    EXPECT_EQ(Writes(), 0U);
    Controller record;
    EXPECT_EQ(driver.GetController(9, record, error), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(error, "controller 9 does not exist");
}

TEST_F(RedfishDriverTest, ReadsRenderTheSimulatedRecordsFromTheTree) {
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    Controller record;
    ASSERT_EQ(driver.GetController(0, record, error), RAID_OK) << error;
    EXPECT_EQ(record.product_name, "RAID 945-16i");
    EXPECT_EQ(record.fru_no, "FRU1");
    EXPECT_EQ(record.raid_url, kLsi);
    // Only the support helper fills the stripe limits.
    EXPECT_EQ(record.max_stripe_size, "");
    std::vector<VolumeObject> volumes;
    std::vector<int> spares;
    ASSERT_EQ(driver.GetConfig(0, volumes, spares, error), RAID_OK) << error;
    ASSERT_EQ(volumes.size(), 1U);
    EXPECT_EQ(volumes[0].volume_size, "1907738MB");
    EXPECT_EQ(volumes[0].strip_size, "256K");
    EXPECT_EQ(volumes[0].hot_spares, std::vector<int>{4});
    EXPECT_EQ(spares, std::vector<int>{5});
    std::vector<int> disks;
    ASSERT_EQ(driver.GetCanMakeGoodDiskIds(0, disks, error), RAID_OK);
    EXPECT_EQ(disks, (std::vector<int>{7, 8}));
    ASSERT_EQ(driver.GetCanMakeJbodDiskIds(0, disks, error), RAID_OK);
    EXPECT_EQ(disks, std::vector<int>{6});
    ASSERT_EQ(driver.GetAllVolumes(0, disks, error), RAID_OK);
    EXPECT_EQ(disks, std::vector<int>{0}) << "the pass-through volume is no volume";
    std::vector<std::string> levels;
    ASSERT_EQ(driver.GetSupportedRaidLevels(0, levels, error), RAID_OK);
    EXPECT_EQ(levels.back(), "1triple");
    EXPECT_EQ(Writes(), 0U) << "reads without faults or failures probe nothing";

    redfish::RedfishSupportDriver support(*connection);
    std::string max;
    std::string min;
    support.GetSupportInfo(0, "OOBLSI", max, min, levels, kLsi);
    EXPECT_EQ(max, "1024K");
    EXPECT_EQ(min, "64K");
}

TEST_F(RedfishDriverTest, APendingFaultOfAReadIsAnsweredByTheProbe) {
    bmc = std::make_shared<FakeBmc>();
    raidcfg_test::CannedStorage faulty = raidcfg_test::EmulatedLsi();
    faulty.storage["Oem"]["Raidcfg"]["PendingFaults"] = {
        {{"Operation", "GetConfig"}, {"Argument", nullptr}}};
    Serve(faulty);
    bmc->On("POST", kLsi + "/Actions/Oem/Raidcfg.Probe", Json(400, Refusal("cache busy", 26)));
    redfish::RedfishRaidDriver driver = Driver();
    std::vector<VolumeObject> volumes;
    std::vector<int> spares;
    std::string error;
    EXPECT_EQ(driver.GetConfig(0, volumes, spares, error), 26);
    EXPECT_EQ(error, "cache busy");
    EXPECT_EQ(Body(Last("POST")), (json{{"Operation", "GetConfig"}, {"Driver", "Raid"}}));
    // GetController has no fault pending: derived from the tree, nothing probed.
    const std::size_t probes = bmc->Count("POST", kLsi + "/Actions/Oem/Raidcfg.Probe");
    Controller record;
    EXPECT_EQ(driver.GetController(0, record, error), RAID_OK);
    EXPECT_EQ(bmc->Count("POST", kLsi + "/Actions/Oem/Raidcfg.Probe"), probes);
}

TEST_F(RedfishDriverTest, AFailedDerivationAsksTheBmcForItsOwnAnswer) {
    bmc = std::make_shared<FakeBmc>();
    raidcfg_test::CannedStorage empty = raidcfg_test::EmulatedLsi();
    empty.volumes.clear();
    empty.storage["Oem"]["Raidcfg"]["GlobalHotSpares"] = json::array();
    Serve(empty);
    bmc->On("POST", kLsi + "/Actions/Oem/Raidcfg.Probe",
            Json(400, Refusal("controller 0 has no volume and no hot spare", 10)));
    redfish::RedfishRaidDriver driver = Driver();
    std::vector<VolumeObject> volumes;
    std::vector<int> spares;
    std::string error;
    EXPECT_EQ(driver.GetConfig(0, volumes, spares, error), RAID_NO_CONFIG);
    EXPECT_EQ(error, "controller 0 has no volume and no hot spare");
    EXPECT_EQ(bmc->Count("POST", kLsi + "/Actions/Oem/Raidcfg.Probe"), 1U);
}

TEST_F(RedfishDriverTest, AddPostsTheStandardVolumeAndOurTextsAndFollowsTheTask) {
    bmc->On("POST", kLsi + "/Volumes",
            Json(202,
                 R"({"@odata.id": "/redfish/v1/TaskService/Tasks/1", "TaskState": "Completed"})",
                 {{"location", "/redfish/v1/TaskService/Tasks/1/Monitor"}}));
    bmc->On("GET", "/redfish/v1/TaskService/Tasks/1/Monitor",
            Json(201, R"({"@odata.id": ")" + kLsi + R"(/Volumes/1", "RAIDType": "RAID1"})",
                 {{"location", kLsi + "/Volumes/1"}}));
    VolumeObject request;
    request.controller_id = 0;
    request.disks = {{6, 7}};
    request.raid_level = "1";
    request.vol_name = "data";
    request.volume_size = "";
    request.strip_size = "256K";
    request.write_policy = 1;
    request.read_policy = 1;
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.Add(request, error), RAID_OK) << error;
    EXPECT_EQ(bmc->Count("GET", "/redfish/v1/TaskService/Tasks/1/Monitor"), 1U);
    const json body = Body(Last("POST"));
    EXPECT_EQ(body["RAIDType"], "RAID1");
    EXPECT_EQ(body["DisplayName"], "data");
    EXPECT_EQ(body["StripSizeBytes"], 262144);
    EXPECT_FALSE(body.contains("CapacityBytes")) << "all the space: no size";
    EXPECT_EQ(body["WriteCachePolicy"], "ProtectedWriteBack");
    EXPECT_EQ(body["ReadCachePolicy"], "ReadAhead");
    EXPECT_EQ(body["Links"]["Drives"],
              (json{raidcfg_test::Ref(kLsi + "/Drives/6"), raidcfg_test::Ref(kLsi + "/Drives/7")}));
    const json& oem = body["Oem"]["Raidcfg"];
    EXPECT_EQ(oem["RAIDLevel"], "1");
    EXPECT_EQ(oem["Spans"], (json{{6, 7}}));
    EXPECT_EQ(oem["Size"], "");
    EXPECT_EQ(oem["StripSize"], "256K");
    EXPECT_EQ(oem["RestDisks"], false);
    EXPECT_EQ(oem["WritePolicy"], 1);

    Quillon::protocol::OobMicroConfig micro;
    micro.controller_id = 0;
    micro.disks = {{0, 1, 2}};
    micro.raid_level = "1T";
    micro.volume_size = "512GB";
    micro.write_policy = 1;
    redfish::ControllerLinks ours;
    ours.storage = kLsi;
    ours.ours = true;
    const json micro_body = redfish::RedfishRaidDriver::VolumeBody(ours, micro);
    EXPECT_EQ(micro_body["RAIDType"], "RAID1Triple");
    EXPECT_EQ(micro_body["CapacityBytes"], 512LL * 1024 * 1048576);
    EXPECT_EQ(micro_body["WriteCachePolicy"], "WriteThrough") << "this family counts from 1";
    EXPECT_EQ(micro_body["Oem"]["Raidcfg"]["RAIDLevel"], "1T");

    bmc->Clear("POST", kLsi + "/Volumes");
    bmc->On("POST", kLsi + "/Volumes", Json(400, Refusal("disk 0 is Online, not UGood", 18)));
    request.disks = {{0, 1}};
    EXPECT_EQ(driver.Add(request, error), RAID_DISK_STATE_ERROR);
    EXPECT_EQ(error, "disk 0 is Online, not UGood");
}

TEST_F(RedfishDriverTest, AValueAlreadySetIsCodeThirtyFourWithTheBmcsWords) {
    bmc->On(
        "POST", kLsi + "/Controllers/0/Actions/Oem/Raidcfg.ChangeConnectorMode",
        Json(200, Success(34, "connector 0 is already in RAID mode", "Raidcfg.1.0.AlreadySet")));
    redfish::RedfishRaidDriver driver = Driver();
    std::string error;
    EXPECT_EQ(driver.RaidChangeConnectorMode(0, "0", "raid", error), RAID_OK_UNCHANGED);
    EXPECT_EQ(error, "connector 0 is already in RAID mode");

    bmc->On("PATCH", kLsi + "/Controllers/0", Json(200, Success()));
    redfish::RedfishFwDevOrderDriver order(*connection);
    EXPECT_EQ(order.TurnFirmwareDeviceOrder(0, "enabled", error), RAID_OK_UNCHANGED);
    EXPECT_EQ(order.TurnFirmwareDeviceOrder(0, "Disabled", error), RAID_OK);
    EXPECT_EQ(Body(Last("PATCH")),
              (json{{"Oem", {{"Raidcfg", {{"FirmwareDeviceOrder", "Disabled"}}}}}}));
    FWDevOrderController record;
    EXPECT_EQ(order.GetController(0, record, error), RAID_OK);
    EXPECT_EQ(record.serial_no, "SV-LSI-1");
}

TEST_F(RedfishDriverTest, KeyManagementPatchesTheStorageAndEncryptionUsesOurAction) {
    bmc->On("PATCH", kLsi, Json(200, Success()));
    redfish::RedfishEncryptionDriver encryption(*connection);
    std::string message;
    EXPECT_EQ(encryption.ChangeEKMMode(0, "Local", message), RAID_OK);
    EXPECT_EQ(Body(Last("PATCH")), (json{{"EncryptionMode", "UseLocalKey"},
                                         {"Oem", {{"Raidcfg", {{"EkmMode", "Local"}}}}}}));
    EXPECT_EQ(encryption.ChangeEKMMode(0, "none", message), RAID_OK_UNCHANGED);

    bmc->On("POST", kLsi + "/Actions/Oem/Raidcfg.EncryptVolumes",
            Json(200, Success(0, "1 volume newly encrypted", "Raidcfg.1.0.Completed")));
    EXPECT_EQ(encryption.EnableEncryption(0, {0}, message), RAID_OK);
    EXPECT_EQ(message, "1 volume newly encrypted");
    EXPECT_EQ(Body(Last("POST")), (json{{"Volumes", {0}}}));

    EKMController record;
    EXPECT_EQ(encryption.GetController(0, record, true, message), RAID_OK);
    EXPECT_EQ(record.encryption_mode, "None");
    EXPECT_EQ(record.slot, 4);
}

TEST_F(RedfishDriverTest, ARealBmcEncryptsEachVolumeWithTheStandardProperty) {
    bmc = std::make_shared<FakeBmc>();
    raidcfg_test::CannedStorage real = raidcfg_test::EmulatedLsi();
    real.storage.erase("Oem");
    real.controller.erase("Oem");
    for (auto& volume : real.volumes) {
        volume.erase("Oem");
    }
    Serve(real);
    redfish::RedfishEncryptionDriver off(*connection);
    std::string message;
    EXPECT_EQ(off.EnableEncryption(0, {}, message), RAID_OPERATION_FAILED)
        << "judged first, as the simulated machine judges it";
    EXPECT_EQ(message, "key management is off: turn it to local or external first");
    EXPECT_EQ(Writes(), 0U);

    bmc = std::make_shared<FakeBmc>();
    real.storage["EncryptionMode"] = "UseLocalKey";
    Serve(real);
    bmc->On("PATCH", kLsi + "/Volumes/0", Json(204, ""));
    redfish::RedfishEncryptionDriver encryption(*connection);
    EXPECT_EQ(encryption.EnableEncryption(0, {}, message), RAID_OK);
    EXPECT_EQ(Body(Last("PATCH")), (json{{"Encrypted", true}}));
    EXPECT_EQ(message, " 1 volume newly encrypted.");
}

TEST_F(RedfishDriverTest, AKeyManagementChangeOnARealBmcSendsOnlyTheStandardProperty) {
    bmc = std::make_shared<FakeBmc>();
    raidcfg_test::CannedStorage real = raidcfg_test::EmulatedLsi();
    real.storage.erase("Oem");
    real.controller.erase("Oem");
    Serve(real);
    bmc->On("PATCH", kLsi, Json(204, ""));
    redfish::RedfishEncryptionDriver encryption(*connection);
    std::string message;
    EXPECT_EQ(encryption.ChangeEKMMode(0, "none", message), RAID_OK_UNCHANGED);
    EXPECT_EQ(Writes(), 0U) << "the mode stands already: nothing to send";
    EXPECT_EQ(encryption.ChangeEKMMode(0, "remote", message), RAID_OPERATION_FAILED);
    EXPECT_EQ(Writes(), 0U);
    EXPECT_EQ(encryption.ChangeEKMMode(0, "LOCAL", message), RAID_OK) << message;
    EXPECT_EQ(Body(Last("PATCH")), (json{{"EncryptionMode", "UseLocalKey"}})) << "no Oem";

    bmc = std::make_shared<FakeBmc>();
    real.storage.erase("EncryptionMode");
    Serve(real);
    redfish::RedfishEncryptionDriver none(*connection);
    EXPECT_EQ(none.ChangeEKMMode(0, "local", message), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(message, "the controller has no key management");
    EXPECT_EQ(Writes(), 0U);
}

} // namespace
