// Writes of the Redfish service: each carried out by the simulated machine's drivers on the
// machine file, with their codes, texts and faults.
#include <algorithm>
#include <string>

#include <nlohmann/json.hpp>

#include "backend/records.hpp"
#include "sim/sim_encryption_driver.hpp"
#include "sim/sim_fw_dev_order_driver.hpp"
#include "sim/sim_raid_driver.hpp"
#include "tests/emulator/service_fixture.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using nlohmann::json;
using Store = std::shared_ptr<sim::MachineStore>;

class EmulatorWriteTest : public ServiceFixture {
protected:
    static std::string Lsi() { return std::string(kStorage) + "/OOB_LSI-0"; }
    static json Drive(const std::string& storage, int id) {
        return {{"@odata.id", storage + "/Drives/" + std::to_string(id)}};
    }

    // Adds a fault to a controller of the machine file.
    // The response carries the driver's code and text exactly.
    static void ExpectAnswer(const emulator::HttpResponse& response, const DriverAnswer& answer) {
        EXPECT_EQ(Code(response), answer.code) << response.body;
        EXPECT_EQ(FirstMessage(response)["Message"], answer.text) << response.body;
    }

    void AddFault(const std::string& family, const sim::Fault& fault) {
        sim::Machine machine = Machine();
        for (sim::Controller& controller : machine.controllers) {
            if (controller.family == family) {
                controller.faults.push_back(fault);
                break;
            }
        }
        UseMachine(machine);
    }
};

TEST_F(EmulatorWriteTest, CreateVolumeAnswersTaskAndMonitorGivesTheVolume) {
    const json request = {{"RAIDType", "RAID1"},
                          {"DisplayName", "data"},
                          {"Links", {{"Drives", json::array({Drive(Lsi(), 6), Drive(Lsi(), 7)})}}},
                          {"Oem",
                           {{"Raidcfg",
                             {{"RAIDLevel", "1"},
                              {"Spans", json::parse("[[6, 7]]")},
                              {"Size", "50%"},
                              {"StripSize", "128K"},
                              {"WritePolicy", 2},
                              {"ReadPolicy", 1},
                              {"IOPolicy", 1},
                              {"AccessPolicy", 2},
                              {"DiskCachePolicy", 1}}}}}};
    const emulator::HttpResponse accepted = Post(Lsi() + "/Volumes", request);
    ASSERT_EQ(accepted.status, 202) << accepted.body;
    const std::string monitor = accepted.Header("Location");
    EXPECT_EQ(monitor, "/redfish/v1/TaskService/Tasks/1/Monitor");
    EXPECT_EQ(json::parse(accepted.body)["TaskState"], "Completed");

    const sim::Controller controller = Controller("OOB_LSI", 0);
    ASSERT_EQ(controller.volumes.size(), 2U);
    const sim::Volume& volume = controller.volumes.back();
    EXPECT_EQ(volume.id, 1);
    EXPECT_EQ(volume.name, "data");
    EXPECT_EQ(volume.spans, (std::vector<std::vector<int>>{{6, 7}}));
    EXPECT_EQ(volume.size_mb, Disk(controller, 6).capacity_mb / 2);
    EXPECT_EQ(volume.strip_kb, 128);
    EXPECT_EQ(volume.write_policy, 2);
    EXPECT_EQ(volume.io_policy, 1);
    EXPECT_EQ(volume.access_policy, 2);
    EXPECT_EQ(volume.cache_policy, 1);
    EXPECT_EQ(Disk(controller, 6).state, "Online");

    const emulator::HttpResponse done = Get(monitor);
    EXPECT_EQ(done.status, 201);
    EXPECT_EQ(done.Header("Location"), Lsi() + "/Volumes/1");
    EXPECT_EQ(json::parse(done.body)["DisplayName"], "data");
    EXPECT_EQ(json::parse(done.body)["WriteCachePolicy"], "UnprotectedWriteBack");
    const json task = GetJson("/redfish/v1/TaskService/Tasks/1");
    EXPECT_EQ(task["TaskState"], "Completed");
    EXPECT_EQ(task["Oem"]["Raidcfg"]["Volume"]["@odata.id"], Lsi() + "/Volumes/1");
    // The task's message has the current severity property only, not the deprecated one.
    EXPECT_EQ(task["Messages"][0]["MessageSeverity"], "OK");
    EXPECT_FALSE(task["Messages"][0].contains("Severity"));

    // Once the volume is gone, the monitor has nothing to show.
    ASSERT_EQ(Delete(Lsi() + "/Volumes/1").status, 200);
    EXPECT_EQ(Get(monitor).status, 204);
}

TEST_F(EmulatorWriteTest, CreateVolumeFromStandardPropertiesOnly) {
    const std::string storage = std::string(kStorage) + "/OOB_MICROCHIP-0";
    const json request = {
        {"RAIDType", "RAID1"},
        {"Name", "mirror"},
        {"CapacityBytes", 1048576LL * 1024},
        {"StripSizeBytes", 65536},
        {"WriteCachePolicy", "WriteThrough"},
        {"Links", {{"Drives", json::array({Drive(storage, 6), Drive(storage, 7)})}}}};
    ASSERT_EQ(Post(storage + "/Volumes", request).status, 202);
    const sim::Volume volume = Controller("OOB_MICROCHIP", 0).volumes.back();
    EXPECT_EQ(volume.raid_level, "1");
    EXPECT_EQ(volume.name, "mirror");
    EXPECT_EQ(volume.size_mb, 1024);
    EXPECT_EQ(volume.strip_kb, 64);
    EXPECT_EQ(volume.write_policy, 1); // this family counts write policies from 1
}

TEST_F(EmulatorWriteTest, CreateVolumeOnM2TakesTheTwoLowestFreeDisks) {
    sim::Machine machine = Machine();
    for (sim::Controller& controller : machine.controllers) {
        if (controller.family == "OOB_M2") {
            controller.volumes.clear();
            for (sim::Disk& disk : controller.disks) {
                disk.state = "UGood";
            }
        }
    }
    UseMachine(machine);
    const json request = {{"RAIDType", "RAID0"},
                          {"DisplayName", "boot"},
                          {"Oem", {{"Raidcfg", {{"StripSize", "64K"}}}}}};
    ASSERT_EQ(Post(std::string(kStorage) + "/OOB_M2-0/Volumes", request).status, 202);
    const sim::Volume volume = Controller("OOB_M2", 0).volumes.at(0);
    EXPECT_EQ(volume.spans, (std::vector<std::vector<int>>{{0, 1}}));
    EXPECT_EQ(volume.strip_kb, 64);
}

TEST_F(EmulatorWriteTest, RefusedCreateCarriesTheSimulatedCodeAndText) {
    const json request = {
        {"Oem", {{"Raidcfg", {{"RAIDLevel", "5"}, {"Spans", json::parse("[[6, 7]]")}}}}}};
    const DriverAnswer expected = OnTwin([](const Store& store, std::string& text) {
        Quillon::RaidConfig::VolumeObject record;
        record.disks = {{6, 7}};
        record.raid_level = "5";
        return sim::SimRaidDriver(store, "OOB_LSI").Add(record, text);
    });
    ASSERT_EQ(expected.code, 3);
    const emulator::HttpResponse refused = Post(Lsi() + "/Volumes", request);
    EXPECT_EQ(refused.status, 400);
    ExpectAnswer(refused, expected);
    EXPECT_EQ(FirstMessage(refused)["MessageId"], "Raidcfg.1.0.OperationFailed");

    const json busy = {
        {"Oem", {{"Raidcfg", {{"RAIDLevel", "1"}, {"Spans", json::parse("[[0, 6]]")}}}}}};
    const emulator::HttpResponse state = Post(Lsi() + "/Volumes", busy);
    EXPECT_EQ(state.status, 409);
    EXPECT_EQ(Code(state), 18);
    EXPECT_EQ(Controller("OOB_LSI", 0).volumes.size(), 1U);
    EXPECT_TRUE(GetJson("/redfish/v1/TaskService/Tasks")["Members"].empty());
}

TEST_F(EmulatorWriteTest, JbodAndMakeGoodThroughPassThroughVolumes) {
    const emulator::HttpResponse created =
        Post(Lsi() + "/Volumes",
             {{"RAIDType", "None"}, {"Links", {{"Drives", json::array({Drive(Lsi(), 6)})}}}});
    ASSERT_EQ(created.status, 201) << created.body;
    EXPECT_EQ(created.Header("Location"), Lsi() + "/Volumes/PassThrough-6");
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "JBOD");

    const emulator::HttpResponse again =
        Post(Lsi() + "/Volumes",
             {{"RAIDType", "None"}, {"Links", {{"Drives", json::array({Drive(Lsi(), 6)})}}}});
    EXPECT_EQ(again.status, 409);
    ExpectAnswer(again, OnTwin([](const Store& store, std::string& text) {
                     return sim::SimRaidDriver(store, "OOB_LSI").MakeJbod(0, 6, text);
                 }));
    EXPECT_EQ(Code(again), 12);

    ASSERT_EQ(Delete(Lsi() + "/Volumes/PassThrough-6").status, 200);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "UGood");
    EXPECT_EQ(Delete(Lsi() + "/Volumes/PassThrough-6").status, 404);
}

TEST_F(EmulatorWriteTest, MakeGoodActionForBadAndRefusedDisks) {
    sim::Machine machine = Machine();
    for (sim::Controller& controller : machine.controllers) {
        if (controller.family == "OOB_LSI") {
            controller.disks[7].state = "UBad";
        }
    }
    UseMachine(machine);
    const emulator::HttpResponse good =
        Post(Lsi() + "/Drives/7/Actions/Oem/Raidcfg.MakeGood", json::object());
    EXPECT_EQ(good.status, 200);
    EXPECT_EQ(Code(good), 0);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 7).state, "UGood");

    const DriverAnswer expected = OnTwin([](const Store& store, std::string& text) {
        return sim::SimRaidDriver(store, "OOB_LSI").MakeGood(0, 0, text);
    });
    ASSERT_EQ(expected.code, 11);
    const emulator::HttpResponse refused =
        Post(Lsi() + "/Drives/0/Actions/Oem/Raidcfg.MakeGood", json::object());
    EXPECT_EQ(refused.status, 409);
    ExpectAnswer(refused, expected);
}

TEST_F(EmulatorWriteTest, RemoveVolumeAndClear) {
    ASSERT_EQ(Delete(Lsi() + "/Volumes/0").status, 200);
    sim::Controller controller = Controller("OOB_LSI", 0);
    EXPECT_TRUE(controller.volumes.empty());
    EXPECT_EQ(Disk(controller, 0).state, "UGood");
    EXPECT_EQ(Disk(controller, 4).state, "UGood");

    const DriverAnswer expected = OnTwin([](const Store& store, std::string& text) {
        return sim::SimRaidDriver(store, "OOB_LSI").RemoveVolume(0, 0, text);
    });
    ASSERT_EQ(expected.code, 5);
    const emulator::HttpResponse missing = Delete(Lsi() + "/Volumes/0");
    EXPECT_EQ(missing.status, 404);
    ExpectAnswer(missing, expected);

    const std::string reset = std::string(kStorage) + "/OOB_VROC-0/Actions/Storage.ResetToDefaults";
    EXPECT_EQ(Post(reset, {{"ResetType", "PreserveVolumes"}}).status, 400);
    ASSERT_EQ(Post(reset, {{"ResetType", "ResetAll"}}).status, 200);
    controller = Controller("OOB_VROC", 0);
    EXPECT_TRUE(controller.volumes.empty());
    EXPECT_TRUE(controller.global_hot_spares.empty());
    EXPECT_EQ(Disk(controller, 4).state, "UGood");
}

TEST_F(EmulatorWriteTest, HotSparesGlobalDedicatedAndRemoved) {
    ASSERT_EQ(Patch(Lsi() + "/Drives/6", {{"HotspareType", "Global"}}).status, 200);
    sim::Controller controller = Controller("OOB_LSI", 0);
    EXPECT_EQ(Disk(controller, 6).state, "GHS");
    EXPECT_EQ(controller.global_hot_spares, (std::vector<int>{5, 6}));

    const json dedicated = {
        {"HotspareType", "Dedicated"},
        {"Links", {{"Volumes", json::array({{{"@odata.id", Lsi() + "/Volumes/0"}}})}}}};
    ASSERT_EQ(Patch(Lsi() + "/Drives/7", dedicated).status, 200);
    controller = Controller("OOB_LSI", 0);
    EXPECT_EQ(Disk(controller, 7).state, "DHS");
    EXPECT_EQ(controller.volumes[0].dedicated_spares, (std::vector<int>{4, 7}));

    ASSERT_EQ(Patch(Lsi() + "/Drives/7", {{"HotspareType", "None"}}).status, 200);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 7).state, "UGood");

    const emulator::HttpResponse refused = Patch(Lsi() + "/Drives/0", {{"HotspareType", "None"}});
    EXPECT_EQ(refused.status, 409);
    EXPECT_EQ(Code(refused), 16);

    const json no_group = {{"HotspareType", "Dedicated"},
                           {"Oem", {{"Raidcfg", {{"DiskGroups", json::array({"9"})}}}}}};
    const emulator::HttpResponse group = Patch(Lsi() + "/Drives/7", no_group);
    EXPECT_EQ(group.status, 404);
    ExpectAnswer(
        group, OnTwin([](const Store& store, std::string& text) {
            return sim::SimRaidDriver(store, "OOB_LSI").AddDedicatedHotSpare(0, "7", {"9"}, text);
        }));

    const emulator::HttpResponse m2 =
        Patch(std::string(kStorage) + "/OOB_M2-0/Drives/2", {{"HotspareType", "Global"}});
    EXPECT_EQ(m2.status, 501);
    EXPECT_EQ(Code(m2), 29);

    const emulator::HttpResponse unknown =
        Patch(Lsi() + "/Drives/42", {{"HotspareType", "Global"}});
    EXPECT_EQ(Code(unknown), 5);
    ExpectAnswer(unknown, OnTwin([](const Store& store, std::string& text) {
                     return sim::SimRaidDriver(store, "OOB_LSI").AddGlobalHotSpare(0, "42", text);
                 }));
}

TEST_F(EmulatorWriteTest, DedicatedSparesThroughTheVolumeLinks) {
    const json spares = {
        {"Links", {{"DedicatedSpareDrives", json::array({Drive(Lsi(), 4), Drive(Lsi(), 6)})}}}};
    ASSERT_EQ(Patch(Lsi() + "/Volumes/0", spares).status, 200);
    const sim::Controller controller = Controller("OOB_LSI", 0);
    EXPECT_EQ(controller.volumes[0].dedicated_spares, (std::vector<int>{4, 6}));
    EXPECT_EQ(Disk(controller, 6).state, "DHS");
}

TEST_F(EmulatorWriteTest, DrivesAreWrittenAtTheChassisUriAndAtTheStorageUri) {
    const std::string chassis = std::string(kChassisDrives) + "/OOB_LSI-0-6";
    ASSERT_EQ(Patch(chassis, {{"HotspareType", "Global"}}).status, 200);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "GHS");
    ASSERT_EQ(Patch(Lsi() + "/Drives/6", {{"HotspareType", "None"}}).status, 200);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "UGood");

    const json dedicated = {
        {"HotspareType", "Dedicated"},
        {"Links", {{"Volumes", json::array({{{"@odata.id", Lsi() + "/Volumes/0"}}})}}}};
    ASSERT_EQ(Patch(std::string(kChassisDrives) + "/OOB_LSI-0-7", dedicated).status, 200);
    EXPECT_EQ(Controller("OOB_LSI", 0).volumes[0].dedicated_spares, (std::vector<int>{4, 7}));

    // The driver answers for a disk the controller lacks, at either place.
    const emulator::HttpResponse missing =
        Patch(std::string(kChassisDrives) + "/OOB_LSI-0-42", {{"HotspareType", "Global"}});
    EXPECT_EQ(missing.status, 404);
    ExpectAnswer(missing, OnTwin([](const Store& store, std::string& text) {
                     return sim::SimRaidDriver(store, "OOB_LSI").AddGlobalHotSpare(0, "42", text);
                 }));
    EXPECT_EQ(
        Patch(std::string(kChassisDrives) + "/OOB_NONE-0-1", {{"HotspareType", "Global"}}).status,
        404);
}

TEST_F(EmulatorWriteTest, MakeGoodRunsAtTheChassisTargetAndAtTheStorageTarget) {
    const std::string target =
        GetJson(std::string(kChassisDrives) +
                "/OOB_LSI-0-8")["Actions"]["Oem"]["#Raidcfg.MakeGood"]["target"];
    EXPECT_EQ(target, std::string(kChassisDrives) + "/OOB_LSI-0-8/Actions/Oem/Raidcfg.MakeGood");
    ASSERT_EQ(Post(target, json::object()).status, 200);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 8).state, "UGood");
    const std::string microchip = std::string(kStorage) + "/OOB_MICROCHIP-0";
    ASSERT_EQ(Post(microchip + "/Drives/8/Actions/Oem/Raidcfg.MakeGood", json::object()).status,
              200);
    EXPECT_EQ(Disk(Controller("OOB_MICROCHIP", 0), 8).state, "UGood");
}

TEST_F(EmulatorWriteTest, IfMatchAtTheChassisUriIsTheDrivesETag) {
    const std::string chassis = std::string(kChassisDrives) + "/OOB_LSI-0-6";
    const std::string etag = Get(chassis).Header("ETag");
    EXPECT_EQ(Send("PATCH", chassis, R"({"HotspareType": "Global"})",
                   {{"Authorization", kBasic}, {"If-Match", "\"0000000000000000\""}})
                  .status,
              412);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "UGood");
    EXPECT_EQ(Send("POST", chassis + "/Actions/Oem/Raidcfg.MakeGood", "{}",
                   {{"Authorization", kBasic}, {"If-Match", "\"0000000000000000\""}})
                  .status,
              412);
    EXPECT_EQ(Send("PATCH", chassis, R"({"HotspareType": "Global"})",
                   {{"Authorization", kBasic}, {"If-Match", etag}})
                  .status,
              200);
    EXPECT_EQ(Send("POST", chassis, "{}").status, 405);
}

TEST_F(EmulatorWriteTest, VolumesTakeChassisDriveLinks) {
    const std::string drives = std::string(kChassisDrives) + "/OOB_LSI-0-";
    const json request = {{"RAIDType", "RAID1"},
                          {"Links",
                           {{"Drives", json::array({{{"@odata.id", drives + "6"}},
                                                    {{"@odata.id", drives + "7"}}})}}}};
    ASSERT_EQ(Post(Lsi() + "/Volumes", request).status, 202);
    EXPECT_EQ(Controller("OOB_LSI", 0).volumes.back().spans,
              (std::vector<std::vector<int>>{{6, 7}}));

    const json spares = {
        {"Links", {{"DedicatedSpareDrives", json::array({{{"@odata.id", drives + "5"}}})}}}};
    const emulator::HttpResponse spare = Patch(Lsi() + "/Volumes/0", spares);
    EXPECT_EQ(spare.status, 409) << "disk 5 is a global hot spare: " << spare.body;
    ExpectAnswer(
        spare, OnTwin([](const Store& store, std::string& text) {
            return sim::SimRaidDriver(store, "OOB_LSI").AddDedicatedHotSpare(0, "5", {"0"}, text);
        }));
}

TEST_F(EmulatorWriteTest, AJbodTakesAChassisDriveLinkAndRefusesAnotherStoragesDrive) {
    const json jbod = {
        {"RAIDType", "None"},
        {"Links",
         {{"Drives",
           json::array({{{"@odata.id", std::string(kChassisDrives) + "/OOB_LSI-0-7"}}})}}}};
    const emulator::HttpResponse created = Post(Lsi() + "/Volumes", jbod);
    ASSERT_EQ(created.status, 201) << created.body;
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 7).state, "JBOD");

    const json foreign = {
        {"RAIDType", "RAID1"},
        {"Links",
         {{"Drives",
           json::array({{{"@odata.id", std::string(kChassisDrives) + "/OOB_MICROCHIP-0-6"}},
                        {{"@odata.id", std::string(kChassisDrives) + "/OOB_MICROCHIP-0-7"}}})}}}};
    const emulator::HttpResponse refused = Post(Lsi() + "/Volumes", foreign);
    EXPECT_EQ(refused.status, 400);
    EXPECT_EQ(FirstMessage(refused)["Message"],
              "drive link \"OOB_MICROCHIP-0-6\" does not name a disk");
    EXPECT_EQ(Controller("OOB_LSI", 0).volumes.size(), 1U);
}

TEST_F(EmulatorWriteTest, FastInitialization) {
    const std::string init = Lsi() + "/Volumes/0/Actions/Volume.Initialize";
    ASSERT_EQ(Post(init, {{"InitializeType", "Fast"}}).status, 200);
    EXPECT_EQ(Controller("OOB_LSI", 0).volumes[0].initialization, 1);
    EXPECT_EQ(Post(init, {{"InitializeType", "Slow"}}).status, 400);
    EXPECT_EQ(
        Code(Post(Lsi() + "/Volumes/7/Actions/Volume.Initialize", {{"InitializeType", "Fast"}})),
        5);
}

TEST_F(EmulatorWriteTest, ConnectorModeAndAlreadySet) {
    const std::string action = std::string(kStorage) + "/OOB_MICROCHIP-0/Controllers/0/Actions/Oem/"
                                                       "Raidcfg.ChangeConnectorMode";
    const emulator::HttpResponse changed = Post(action, {{"Connector", "2"}, {"Mode", "raid"}});
    ASSERT_EQ(changed.status, 200);
    EXPECT_EQ(Code(changed), 0);
    EXPECT_EQ(Controller("OOB_MICROCHIP", 0).connectors[2].mode, "RAID");

    // Code 34 is a success: 200, with the code for the client to return.
    const emulator::HttpResponse same = Post(action, {{"Connector", "2"}, {"Mode", "RAID"}});
    EXPECT_EQ(same.status, 200);
    EXPECT_EQ(Code(same), 34);
    EXPECT_EQ(FirstMessage(same)["MessageId"], "Raidcfg.1.0.AlreadySet");

    const emulator::HttpResponse bad = Post(action, {{"Connector", "2"}, {"Mode", "JBOD"}});
    EXPECT_EQ(Code(bad), 3);
    ExpectAnswer(bad, OnTwin([](const Store& store, std::string& text) {
                     return sim::SimRaidDriver(store, "OOB_MICROCHIP")
                         .RaidChangeConnectorMode(0, "2", "JBOD", text);
                 }));

    const emulator::HttpResponse none =
        Post(std::string(kStorage) + "/OOB_VROC-0/Controllers/0/Actions/Oem/"
                                     "Raidcfg.ChangeConnectorMode",
             {{"Connector", "0"}, {"Mode", "RAID"}});
    EXPECT_EQ(none.status, 501);
    EXPECT_EQ(Code(none), 33);
}

TEST_F(EmulatorWriteTest, FirmwareDeviceOrder) {
    const std::string controller = Lsi() + "/Controllers/0";
    const json disabled = {{"Oem", {{"Raidcfg", {{"FirmwareDeviceOrder", "disabled"}}}}}};
    ASSERT_EQ(Patch(controller, disabled).status, 200);
    EXPECT_EQ(Controller("OOB_LSI", 0).fw_device_order, "Disabled");
    EXPECT_EQ(Code(Patch(controller, disabled)), 34);
    EXPECT_EQ(GetJson(controller)["Oem"]["Raidcfg"]["FirmwareDeviceOrder"], "Disabled");

    const emulator::HttpResponse lacking =
        Patch(std::string(kStorage) + "/OOB_CFC-0/Controllers/0", disabled);
    EXPECT_EQ(lacking.status, 501);
    EXPECT_EQ(Code(lacking), 33);
    ExpectAnswer(lacking, OnTwin([](const Store& store, std::string& text) {
                     return sim::SimRaidDriver(store, "OOB_CFC")
                         .SetFirmwareDeviceOrderCtrl(0, "disabled", text);
                 }));
}

TEST_F(EmulatorWriteTest, KeyManagementAndVolumeEncryption) {
    const DriverAnswer refused = OnTwin([](const Store& store, std::string& text) {
        return sim::SimEncryptionDriver(store).EnableEncryption(0, {0}, text);
    });
    ASSERT_EQ(refused.code, 3);
    ExpectAnswer(Patch(Lsi() + "/Volumes/0", {{"Encrypted", true}}), refused);

    const json local = {{"EncryptionMode", "UseLocalKey"},
                        {"Oem", {{"Raidcfg", {{"EkmMode", "Local"}}}}}};
    ASSERT_EQ(Patch(Lsi(), local).status, 200);
    EXPECT_EQ(Controller("OOB_LSI", 0).ekm_mode, "local");
    EXPECT_EQ(GetJson(Lsi())["EncryptionMode"], "UseLocalKey");
    EXPECT_EQ(Code(Patch(Lsi(), {{"EncryptionMode", "UseLocalKey"}})), 34);

    const DriverAnswer encrypted = OnTwin([](const Store& store, std::string& text) {
        return sim::SimEncryptionDriver(store).EnableEncryption(0, {}, text);
    });
    ASSERT_EQ(encrypted.code, 0);
    const emulator::HttpResponse all =
        Post(Lsi() + "/Actions/Oem/Raidcfg.EncryptVolumes", json::object());
    EXPECT_EQ(all.status, 200);
    ExpectAnswer(all, encrypted);
    EXPECT_TRUE(Controller("OOB_LSI", 0).volumes[0].encrypted);
    EXPECT_TRUE(GetJson(Lsi() + "/Volumes/0")["Encrypted"].get<bool>());

    const emulator::HttpResponse other =
        Patch(std::string(kStorage) + "/OOB_CFC-0", {{"EncryptionMode", "UseLocalKey"}});
    EXPECT_EQ(other.status, 501);
    EXPECT_EQ(Code(other), 33);
    EXPECT_EQ(Patch(Lsi() + "/Volumes/0", {{"Encrypted", false}}).status, 400);
}

TEST_F(EmulatorWriteTest, FaultFromTheMachineFileAnswersAndCountsDown) {
    sim::Fault fault;
    fault.op = "AddGlobalHotSpare";
    fault.arg = "6";
    fault.code = 15;
    fault.error_text = "busy";
    fault.times = 1;
    AddFault("OOB_LSI", fault);
    EXPECT_EQ(GetJson(Lsi())["Oem"]["Raidcfg"]["PendingFaults"],
              json::parse(R"([{"Operation": "AddGlobalHotSpare", "Argument": "6"}])"));

    const emulator::HttpResponse busy = Patch(Lsi() + "/Drives/6", {{"HotspareType", "Global"}});
    EXPECT_EQ(busy.status, 409);
    EXPECT_EQ(Code(busy), 15);
    EXPECT_EQ(FirstMessage(busy)["Message"], "busy");
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "UGood");
    EXPECT_TRUE(Controller("OOB_LSI", 0).faults.empty());

    EXPECT_EQ(Patch(Lsi() + "/Drives/6", {{"HotspareType", "Global"}}).status, 200);
}

TEST_F(EmulatorWriteTest, ProbeRunsReadOperationsWithTheirFaultsAndCodes) {
    const std::string probe = std::string(kStorage) + "/OOB_CFC-2/Actions/Oem/Raidcfg.Probe";
    EXPECT_EQ(Code(Post(probe, {{"Operation", "GetConfig"}})), 0);
    ASSERT_EQ(Post(std::string(kStorage) + "/OOB_CFC-2/Actions/Storage.ResetToDefaults",
                   {{"ResetType", "ResetAll"}})
                  .status,
              200);
    const emulator::HttpResponse empty = Post(probe, {{"Operation", "GetConfig"}});
    EXPECT_EQ(Code(empty), 10);
    ExpectAnswer(
        empty, OnTwin([](const Store& store, std::string& text) {
            std::vector<Quillon::RaidConfig::VolumeObject> volumes;
            std::vector<int> spares;
            return sim::SimRaidDriver(store, "OOB_CFC").GetConfig(2, volumes, spares, text);
        }));

    sim::Fault fault;
    fault.op = "GetController";
    fault.code = 4;
    fault.error_text = "controller is resetting";
    fault.times = 2;
    AddFault("OOB_VROC", fault);
    const std::string vroc = std::string(kStorage) + "/OOB_VROC-0/Actions/Oem/Raidcfg.Probe";
    const emulator::HttpResponse first = Post(vroc, {{"Operation", "GetController"}});
    EXPECT_EQ(Code(first), 4);
    EXPECT_EQ(FirstMessage(first)["Message"], "controller is resetting");
    EXPECT_EQ(Controller("OOB_VROC", 0).faults.at(0).times, 1);
    EXPECT_EQ(Code(Post(vroc, {{"Operation", "GetController"}})), 4);
    EXPECT_EQ(Code(Post(vroc, {{"Operation", "GetController"}})), 0);

    EXPECT_EQ(Code(Post(std::string(kStorage) + "/OOB_CFC-0/Actions/Oem/Raidcfg.Probe",
                        {{"Operation", "GetController"}, {"Driver", "FirmwareDeviceOrder"}})),
              33);
    EXPECT_EQ(Code(Post(Lsi() + "/Actions/Oem/Raidcfg.Probe",
                        {{"Operation", "getController"}, {"Driver", "Encryption"}})),
              0);
    EXPECT_EQ(Post(probe, {{"Operation", "Nothing"}}).status, 400);
}

TEST_F(EmulatorWriteTest, UnknownControllerReachesTheDriver) {
    const emulator::HttpResponse missing =
        Patch(std::string(kStorage) + "/OOB_LSI-7/Drives/0", {{"HotspareType", "Global"}});
    EXPECT_EQ(missing.status, 404);
    ExpectAnswer(missing, OnTwin([](const Store& store, std::string& text) {
                     return sim::SimRaidDriver(store, "OOB_LSI").AddGlobalHotSpare(7, "0", text);
                 }));
}

TEST_F(EmulatorWriteTest, MalformedBodiesAreRefused) {
    const emulator::HttpResponse broken = Send("PATCH", Lsi() + "/Drives/6", "{not json");
    EXPECT_EQ(broken.status, 400);
    EXPECT_EQ(FirstMessage(broken)["MessageId"], "Base.1.8.MalformedJSON");
    const emulator::HttpResponse typed = Patch(Lsi() + "/Drives/6", {{"HotspareType", 3}});
    EXPECT_EQ(typed.status, 400);
    EXPECT_EQ(FirstMessage(typed)["MessageId"], "Base.1.8.PropertyValueTypeError");
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "UGood");
}

TEST_F(EmulatorWriteTest, WritesNeedAuthentication) {
    const emulator::HttpResponse refused =
        Send("PATCH", Lsi() + "/Drives/6", R"({"HotspareType": "Global"})", {});
    EXPECT_EQ(refused.status, 401);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "UGood");
}

} // namespace
} // namespace emulator_test
