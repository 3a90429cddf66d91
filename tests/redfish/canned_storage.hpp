#pragma once

// A canned storage tree on a FakeBmc, in the form docs/redfish.md fixes, for the tests of the
// Redfish backends. Each Storage is served both expanded ($expand=.($levels=2)) and link by
// link, so that one tree serves both kinds of BMC.

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/redfish/fake_transport.hpp"

namespace raidcfg_test {

inline std::string StoragePath(const std::string& id) {
    return "/redfish/v1/Systems/1/Storage/" + id;
}

inline nlohmann::json Ref(const std::string& path) {
    return nlohmann::json{{"@odata.id", path}};
}

// One Storage resource with its controller, drives and volumes.
struct CannedStorage {
    std::string id;
    nlohmann::json storage = nlohmann::json::object(); // properties besides the links
    nlohmann::json controller = nlohmann::json::object();
    std::vector<nlohmann::json> drives;  // each with "Id"
    std::vector<nlohmann::json> volumes; // each with "Id"
    bool controllers_collection = true;  // false: only the deprecated StorageControllers array

    std::string Path() const { return StoragePath(id); }
    std::string DrivePath(const nlohmann::json& drive) const {
        return Path() + "/Drives/" + drive["Id"].get<std::string>();
    }
    std::string VolumePath(const nlohmann::json& volume) const {
        return Path() + "/Volumes/" + volume["Id"].get<std::string>();
    }

    // The resource with its links as references (expanded false) or expanded two levels deep.
    nlohmann::json Resource(bool expanded) const {
        nlohmann::json body = storage;
        body["@odata.id"] = Path();
        body["Id"] = id;
        nlohmann::json drives_list = nlohmann::json::array();
        for (const auto& drive : drives) {
            drives_list.push_back(expanded ? Drive(drive) : Ref(DrivePath(drive)));
        }
        body["Drives"] = drives_list;
        nlohmann::json volume_members = nlohmann::json::array();
        for (const auto& volume : volumes) {
            volume_members.push_back(expanded ? Volume(volume) : Ref(VolumePath(volume)));
        }
        body["Volumes"] = expanded ? nlohmann::json{{"@odata.id", Path() + "/Volumes"},
                                                    {"Members", volume_members}}
                                   : Ref(Path() + "/Volumes");
        nlohmann::json inline_controller = Controller();
        inline_controller["@odata.id"] = Path() + "#/StorageControllers/0";
        body["StorageControllers"] = nlohmann::json::array({inline_controller});
        if (controllers_collection) {
            body["Controllers"] =
                expanded ? nlohmann::json{{"@odata.id", Path() + "/Controllers"},
                                          {"Members", nlohmann::json::array({Controller()})}}
                         : Ref(Path() + "/Controllers");
        }
        return body;
    }
    nlohmann::json Drive(const nlohmann::json& drive) const {
        nlohmann::json body = drive;
        body["@odata.id"] = DrivePath(drive);
        return body;
    }
    nlohmann::json Volume(const nlohmann::json& volume) const {
        nlohmann::json body = volume;
        body["@odata.id"] = VolumePath(volume);
        return body;
    }
    nlohmann::json Controller() const {
        nlohmann::json body = controller;
        body["@odata.id"] = Path() + "/Controllers/0";
        body["Id"] = "0";
        return body;
    }
};

constexpr const char* kExpandTwo = "?$expand=.($levels=2)";

// Serves storages and a Manager (with manager_oem as its Oem.Raidcfg, none when null).
inline void ServeStorage(FakeBmc& bmc, const std::vector<CannedStorage>& storages,
                         const nlohmann::json& manager_oem = nullptr) {
    nlohmann::json members = nlohmann::json::array();
    for (const auto& canned : storages) {
        members.push_back(Ref(canned.Path()));
        bmc.On("GET", canned.Path() + kExpandTwo, Json(200, canned.Resource(true).dump()));
        bmc.On("GET", canned.Path(), Json(200, canned.Resource(false).dump()));
        nlohmann::json controllers = {{"@odata.id", canned.Path() + "/Controllers"},
                                      {"Members", {Ref(canned.Path() + "/Controllers/0")}}};
        bmc.On("GET", canned.Path() + "/Controllers", Json(200, controllers.dump()));
        bmc.On("GET", canned.Path() + "/Controllers/0", Json(200, canned.Controller().dump()));
        nlohmann::json volumes = {{"@odata.id", canned.Path() + "/Volumes"},
                                  {"Members", nlohmann::json::array()}};
        for (const auto& volume : canned.volumes) {
            volumes["Members"].push_back(Ref(canned.VolumePath(volume)));
            bmc.On("GET", canned.VolumePath(volume), Json(200, canned.Volume(volume).dump()));
        }
        bmc.On("GET", canned.Path() + "/Volumes", Json(200, volumes.dump()));
        for (const auto& drive : canned.drives) {
            bmc.On("GET", canned.DrivePath(drive), Json(200, canned.Drive(drive).dump()));
        }
    }
    bmc.On("GET", "/redfish/v1/Systems/1/Storage",
           Json(200,
                nlohmann::json{{"@odata.id", "/redfish/v1/Systems/1/Storage"}, {"Members", members}}
                    .dump()));
    // The system that holds them, found from the service root, names its Manager.
    bmc.On("GET", "/redfish/v1/Systems",
           Json(200, nlohmann::json{{"@odata.id", "/redfish/v1/Systems"},
                                    {"Members", {Ref("/redfish/v1/Systems/1")}}}
                         .dump()));
    bmc.On("GET", "/redfish/v1/Systems/1",
           Json(200, nlohmann::json{{"@odata.id", "/redfish/v1/Systems/1"},
                                    {"Id", "1"},
                                    {"Storage", Ref("/redfish/v1/Systems/1/Storage")},
                                    {"Links", {{"ManagedBy", {Ref("/redfish/v1/Managers/1")}}}}}
                         .dump()));
    nlohmann::json manager = {{"@odata.id", "/redfish/v1/Managers/1"}, {"ManagerType", "BMC"}};
    if (!manager_oem.is_null()) {
        manager["Oem"] = {{"Raidcfg", manager_oem}};
    }
    bmc.On("GET", "/redfish/v1/Managers/1", Json(200, manager.dump()));
}

// A Storage as the emulator serves an OOB_LSI controller: every Oem property of ours.
inline CannedStorage EmulatedLsi() {
    CannedStorage canned;
    canned.id = "OOB_LSI-0";
    canned.storage = nlohmann::json::parse(R"({
        "Name": "RAID 945-16i", "EncryptionMode": "Disabled",
        "Actions": {"#Storage.ResetToDefaults": {
            "target": "/redfish/v1/Systems/1/Storage/OOB_LSI-0/Actions/Storage.ResetToDefaults"}},
        "Oem": {"Raidcfg": {"Family": "OOB_LSI", "Id": 0, "Cfc": false, "Slot": 4,
                            "EkmMode": "None", "EkmModes": ["none", "local", "external"],
                            "GlobalHotSpares": [5], "PendingFaults": []}}})");
    canned.controller = nlohmann::json::parse(R"({
        "Name": "RAID 945-16i", "Manufacturer": "Broadcom", "Model": "945-16i",
        "SerialNumber": "SV-LSI-1", "PartNumber": "PN-1", "FirmwareVersion": "5.2",
        "SupportedRAIDTypes": ["RAID0", "RAID1", "RAID5", "RAID6", "RAID10"],
        "Location": {"PartLocation": {"LocationType": "Slot", "LocationOrdinalValue": 4}},
        "Oem": {"Raidcfg": {"ProductName": "RAID 945-16i", "Model": "945-16i", "Name": "",
                            "Manufacturer": "Broadcom", "Vendor": "Broadcom", "FruNumber": "FRU1",
                            "RaidLevels": ["0", "1", "5", "6", "10", "1triple"],
                            "MinStripeSizeKiB": 64, "MaxStripeSizeKiB": 1024,
                            "Connectors": [{"Id": 0, "Name": "C0", "Mode": "RAID"}],
                            "ConnectorModes": ["RAID", "HBA"],
                            "FirmwareDeviceOrder": "Enabled",
                            "FirmwareDeviceOrderModes": ["Enabled", "Disabled"]}}})");
    const char* states[] = {"Online", "Online", "Online", "Online", "DHS",
                            "GHS",    "UGood",  "UBad",   "JBOD"};
    for (int id = 0; id < 9; ++id) {
        nlohmann::json drive = {{"Id", std::to_string(id)},
                                {"Model", "HDD 1TB"},
                                {"CapacityBytes", 953869LL * 1048576},
                                {"Protocol", "SAS"},
                                {"MediaType", "HDD"},
                                {"SerialNumber", "D" + std::to_string(id)},
                                {"HotspareType", id == 5   ? "Global"
                                                 : id == 4 ? "Dedicated"
                                                           : "None"},
                                {"Oem",
                                 {{"Raidcfg",
                                   {{"Id", id},
                                    {"State", states[id]},
                                    {"SlotNumber", std::to_string(id)},
                                    {"FruNumber", "F" + std::to_string(id)},
                                    {"ProductName", "HDD 1TB"},
                                    {"DiskType", "SAS"},
                                    {"MediaType", "HDD"},
                                    {"HealthStatus", "OK"},
                                    {"ConnectorId", 0}}}}}};
        canned.drives.push_back(drive);
    }
    nlohmann::json volume = nlohmann::json::parse(R"({
        "Id": "0", "Name": "os", "DisplayName": "os", "RAIDType": "RAID6",
        "CapacityBytes": 1907738000000, "StripSizeBytes": 262144, "Encrypted": false,
        "IsBootCapable": true, "ReadCachePolicy": "ReadAhead",
        "WriteCachePolicy": "ProtectedWriteBack", "Status": {"State": "Enabled", "Health": "OK"},
        "Oem": {"Raidcfg": {"Id": 0, "RAIDLevel": "6", "Spans": [[0, 1, 2, 3]],
                            "Status": "Optimal", "WritePolicy": 1, "ReadPolicy": 1,
                            "IOPolicy": 0, "AccessPolicy": 0, "DiskCachePolicy": 0,
                            "Initialization": 0, "PassThrough": false}}})");
    volume["CapacityBytes"] = 1907738LL * 1048576;
    const std::string path = canned.Path();
    volume["Links"] = {{"Drives",
                        {Ref(path + "/Drives/0"), Ref(path + "/Drives/1"), Ref(path + "/Drives/2"),
                         Ref(path + "/Drives/3")}},
                       {"DedicatedSpareDrives", {Ref(path + "/Drives/4")}}};
    canned.volumes.push_back(volume);
    nlohmann::json pass_through = {{"Id", "PassThrough-8"},
                                   {"RAIDType", "None"},
                                   {"CapacityBytes", 953869LL * 1048576},
                                   {"Links", {{"Drives", {Ref(path + "/Drives/8")}}}},
                                   {"Oem", {{"Raidcfg", {{"PassThrough", true}}}}}};
    canned.volumes.push_back(pass_through);
    return canned;
}

} // namespace raidcfg_test
