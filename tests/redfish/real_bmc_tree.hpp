#pragma once

// A hand-written Redfish tree of a BMC that carries no Oem section of ours, served resource by
// resource on a FakeBmc (the service root offers no $expand, so the client reads link by link).

#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/redfish/fake_transport.hpp"

namespace raidcfg_test {

class RealBmcTree {
public:
    static constexpr const char* kSystem = "/redfish/v1/Systems/System.Embedded.1";
    static constexpr const char* kStorage =
        "/redfish/v1/Systems/System.Embedded.1/Storage/RAID.Integrated.1-1";

    std::map<std::string, nlohmann::json> resources;

    static nlohmann::json Link(const std::string& path) {
        return nlohmann::json{{"@odata.id", path}};
    }

    static nlohmann::json Collection(const std::vector<std::string>& members) {
        nlohmann::json body = {{"Members", nlohmann::json::array()}};
        for (const std::string& member : members) {
            body["Members"].push_back(Link(member));
        }
        body["Members@odata.count"] = members.size();
        return body;
    }

    static std::string DrivePath(const std::string& id) {
        return "/redfish/v1/Chassis/Enclosure/Drives/" + id;
    }

    static std::string VolumePath(const std::string& id) {
        return std::string(kStorage) + "/Volumes/" + id;
    }

    // One system "System.Embedded.1" managed by "iDRAC.Embedded.1", with one Storage whose
    // inline controller is given, its drives under a Chassis and its volumes (each with "Id").
    void OneSystem(const nlohmann::json& controller, const std::vector<nlohmann::json>& drives,
                   const std::vector<nlohmann::json>& volumes) {
        const std::string system = kSystem;
        const std::string storage = kStorage;
        resources["/redfish/v1/Systems"] = Collection({system});
        resources[system] = {
            {"Id", "System.Embedded.1"},
            {"Storage", Link(system + "/Storage")},
            {"Links", {{"ManagedBy", {Link("/redfish/v1/Managers/iDRAC.Embedded.1")}}}}};
        resources["/redfish/v1/Managers/iDRAC.Embedded.1"] = {{"Id", "iDRAC.Embedded.1"},
                                                              {"ManagerType", "BMC"}};
        resources[system + "/Storage"] = Collection({storage});
        nlohmann::json body = {{"Id", "RAID.Integrated.1-1"},
                               {"StorageControllers", nlohmann::json::array({controller})},
                               {"Drives", nlohmann::json::array()},
                               {"Volumes", Link(storage + "/Volumes")}};
        body["StorageControllers"][0]["@odata.id"] = storage + "#/StorageControllers/0";
        for (const nlohmann::json& drive : drives) {
            const std::string path = DrivePath(drive["Id"].get<std::string>());
            body["Drives"].push_back(Link(path));
            nlohmann::json resource = drive;
            resource["@odata.id"] = path;
            resources[path] = resource;
        }
        resources[storage] = body;
        std::vector<std::string> members;
        for (const nlohmann::json& volume : volumes) {
            const std::string path = VolumePath(volume["Id"].get<std::string>());
            members.push_back(path);
            nlohmann::json resource = volume;
            resource["@odata.id"] = path;
            resources[path] = resource;
        }
        resources[storage + "/Volumes"] = Collection(members);
    }

    // Serves every resource (and the standard service root, log-in and log-out) on bmc.
    void Serve(FakeBmc& bmc) const {
        bmc.StandardService(false);
        for (const auto& [path, body] : resources) {
            bmc.On("GET", path, Json(200, body.dump()));
        }
    }
};

} // namespace raidcfg_test
