// Reads of the Redfish service on the demo machine: service root, authentication, sessions, the
// Storage tree, $expand and ETags.
#include <set>
#include <string>

#include <nlohmann/json.hpp>

#include "sim/machine_json.hpp"
#include "tests/emulator/service_fixture.hpp"
#include "tests/support/file_text.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using nlohmann::json;

class EmulatorReadTest : public ServiceFixture {
protected:
    // Every resource of the Storage tree and its drives under the Chassis, by URL: found by
    // following the links from the collection, so that nothing the tree links is left out.
    json Tree() {
        json tree = json::object();
        AddTree(kStorage, tree);
        return tree;
    }

    void AddTree(const std::string& uri, json& tree) {
        if (tree.contains(uri)) {
            return;
        }
        const json resource = GetJson(uri);
        tree[uri] = resource;
        Follow(resource, tree);
    }

    void Follow(const json& node, json& tree) {
        if (node.is_array()) {
            for (const json& element : node) {
                Follow(element, tree);
            }
            return;
        }
        if (!node.is_object()) {
            return;
        }
        if (node.size() == 1 && node.contains("@odata.id")) {
            const std::string uri = node["@odata.id"].get<std::string>();
            const bool drive = uri.rfind(std::string(kChassisDrives) + "/", 0) == 0;
            if ((uri.rfind(kStorage, 0) == 0 || drive) && uri.find('#') == std::string::npos) {
                AddTree(uri, tree);
            }
            return;
        }
        for (auto item = node.begin(); item != node.end(); ++item) {
            if (item.key() != "Actions") {
                Follow(item.value(), tree);
            }
        }
    }
};

TEST_F(EmulatorReadTest, ServiceRootIsOpenAndAdvertisesExpand) {
    const emulator::HttpResponse response = Send("GET", "/redfish/v1/", "", {});
    ASSERT_EQ(response.status, 200);
    const json root = json::parse(response.body);
    EXPECT_EQ(root["Links"]["Sessions"]["@odata.id"], "/redfish/v1/SessionService/Sessions");
    EXPECT_EQ(root["ProtocolFeaturesSupported"]["ExpandQuery"], json({{"ExpandAll", true},
                                                                      {"Levels", true},
                                                                      {"MaxLevels", 2},
                                                                      {"Links", true},
                                                                      {"NoLinks", true}}));
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "service_root.json", root.dump(2) + "\n");
}

TEST_F(EmulatorReadTest, TheRootNamesItsTaskServiceTasksAsTheSchemaDoes) {
    const json root = json::parse(Send("GET", "/redfish/v1", "", {}).body);
    EXPECT_EQ(root["Tasks"]["@odata.id"], "/redfish/v1/TaskService");
    EXPECT_FALSE(root.contains("TaskService"));
}

TEST_F(EmulatorReadTest, TheSystemOffersAResetThatChangesNothingAndABootObject) {
    const json system = GetJson("/redfish/v1/Systems/1");
    EXPECT_EQ(system["Actions"]["#ComputerSystem.Reset"]["target"],
              "/redfish/v1/Systems/1/Actions/ComputerSystem.Reset");
    EXPECT_EQ(system["Boot"]["BootSourceOverrideEnabled"], "Disabled");
    EXPECT_EQ(system["PowerState"], "On");
    const std::string before = raidcfg_test::ReadFile(path_);
    EXPECT_EQ(Post("/redfish/v1/Systems/1/Actions/ComputerSystem.Reset",
                   json{{"ResetType", "ForceRestart"}})
                  .status,
              204);
    EXPECT_EQ(raidcfg_test::ReadFile(path_), before);
    EXPECT_EQ(Post("/redfish/v1/Systems/1/Actions/ComputerSystem.Reset", json{{"ResetType", "Nmi"}})
                  .status,
              400);
    EXPECT_EQ(Post("/redfish/v1/Systems/1/Actions/ComputerSystem.Reset", json::object()).status,
              400);
    EXPECT_EQ(Send("POST", "/redfish/v1/Systems/1/Actions/ComputerSystem.Reset",
                   R"({"ResetType": "On"})", {})
                  .status,
              401)
        << "only for an authenticated client";
}

TEST_F(EmulatorReadTest, TheAccountServiceHoldsTheMachinesAccountAndThePredefinedRoles) {
    const json root = json::parse(Send("GET", "/redfish/v1", "", {}).body);
    EXPECT_EQ(root["AccountService"]["@odata.id"], "/redfish/v1/AccountService");
    const json service = GetJson("/redfish/v1/AccountService");
    EXPECT_EQ(service["Accounts"]["@odata.id"], "/redfish/v1/AccountService/Accounts");
    const json accounts = GetJson("/redfish/v1/AccountService/Accounts");
    ASSERT_EQ(accounts["Members"].size(), 1U);
    const json account = GetJson("/redfish/v1/AccountService/Accounts/1");
    EXPECT_EQ(account["UserName"], "admin");
    EXPECT_EQ(account["RoleId"], "Administrator");
    EXPECT_EQ(account["AccountTypes"], json::array({"Redfish"})) << "required by the schema";
    EXPECT_TRUE(account["Password"].is_null()) << "the password is never shown";
    EXPECT_EQ(Get("/redfish/v1/AccountService/Accounts/1").body.find("secret"), std::string::npos);
    const json roles = GetJson("/redfish/v1/AccountService/Roles");
    EXPECT_EQ(roles["Members@odata.count"], 3);
    for (const char* id : {"Administrator", "Operator", "ReadOnly"}) {
        const json role = GetJson(std::string("/redfish/v1/AccountService/Roles/") + id);
        EXPECT_EQ(role["RoleId"], id);
        EXPECT_TRUE(role["IsPredefined"].get<bool>());
    }
    EXPECT_EQ(
        json::parse(Get("/redfish/v1/AccountService/Roles/ReadOnly").body)["AssignedPrivileges"],
        json::array({"Login", "ConfigureSelf"}));
    EXPECT_EQ(Get("/redfish/v1/AccountService/Roles/Guest").status, 404);
    EXPECT_EQ(Send("GET", "/redfish/v1/AccountService", "", {}).status, 401);
}

TEST_F(EmulatorReadTest, AQueryParameterTheServiceDoesNotImplementIsNotImplemented) {
    const emulator::HttpResponse response = Get("/redfish/v1/Systems?$select=Name");
    EXPECT_EQ(response.status, 501);
    EXPECT_EQ(json::parse(response.body)["error"]["@Message.ExtendedInfo"][0]["MessageId"],
              "Base.1.8.QueryNotSupported");
    EXPECT_EQ(Get("/redfish/v1/Systems?$filter=Id%20eq%201").status, 501);
    EXPECT_EQ(Get("/redfish/v1/Systems?$expand=.").status, 200);
}

TEST_F(EmulatorReadTest, AnOtherODataVersionIsAPreconditionFailure) {
    const emulator::HttpResponse response = Send(
        "GET", "/redfish/v1/Systems", "", {{"Authorization", kBasic}, {"OData-Version", "4.1"}});
    EXPECT_EQ(response.status, 412);
    EXPECT_EQ(json::parse(response.body)["error"]["@Message.ExtendedInfo"][0]["Message"],
              "The OData-Version 4.1 is not supported; this service supports 4.0.");
    EXPECT_EQ(Send("GET", "/redfish/v1/Systems", "",
                   {{"Authorization", kBasic}, {"OData-Version", "4.0"}})
                  .status,
              200);
}

TEST_F(EmulatorReadTest, NoExpandHidesExpandAndAnswers501) {
    Restart(false);
    const json root = GetJson("/redfish/v1");
    EXPECT_FALSE(root["ProtocolFeaturesSupported"].contains("ExpandQuery"));
    const emulator::HttpResponse response = Get(std::string(kStorage) + "?$expand=.");
    EXPECT_EQ(response.status, 501);
    EXPECT_EQ(FirstMessage(response)["MessageId"], "Base.1.8.QueryNotSupported");
    EXPECT_EQ(Get(kStorage).status, 200);
}

TEST_F(EmulatorReadTest, AnonymousRootIsNotExpanded) {
    const emulator::HttpResponse response = Send("GET", "/redfish/v1?$expand=*", "", {});
    ASSERT_EQ(response.status, 200);
    EXPECT_EQ(json::parse(response.body)["Systems"], json({{"@odata.id", "/redfish/v1/Systems"}}));
}

TEST_F(EmulatorReadTest, ResourcesNeedAuthentication) {
    const emulator::HttpResponse none = Send("GET", kStorage, "", {});
    EXPECT_EQ(none.status, 401);
    EXPECT_EQ(none.Header("WWW-Authenticate"), "Basic realm=\"raidcfg-bmc\"");
    EXPECT_EQ(FirstMessage(none)["MessageId"], "Base.1.8.NoValidSession");

    // "admin:wrong"
    const emulator::HttpResponse wrong =
        Send("GET", kStorage, "", {{"authorization", "Basic YWRtaW46d3Jvbmc="}});
    EXPECT_EQ(wrong.status, 401);
    EXPECT_EQ(FirstMessage(wrong)["MessageId"], "Base.1.8.ResourceAtUriUnauthorized");
    EXPECT_EQ(wrong.body.find("wrong"), std::string::npos);

    EXPECT_EQ(Send("GET", kStorage, "", {{"Authorization", kBasic}}).status, 200);
    EXPECT_EQ(Send("GET", kStorage, "", {{"X-Auth-Token", "not-a-token"}}).status, 401);
}

TEST_F(EmulatorReadTest, CredentialsFollowTheMachineFile) {
    sim::Machine machine = Machine();
    machine.bmc.user = "root";
    machine.bmc.password = "calvin";
    UseMachine(machine);
    EXPECT_EQ(Get(kStorage).status, 401);
    // "root:calvin"
    EXPECT_EQ(Send("GET", kStorage, "", {{"Authorization", "Basic cm9vdDpjYWx2aW4="}}).status, 200);
}

TEST_F(EmulatorReadTest, SessionLoginUseAndLogout) {
    const emulator::HttpResponse login = Send("POST", "/redfish/v1/SessionService/Sessions",
                                              R"({"UserName": "admin", "Password": "secret"})", {});
    ASSERT_EQ(login.status, 201);
    const std::string token = login.Header("X-Auth-Token");
    const std::string location = login.Header("Location");
    ASSERT_EQ(token.size(), 32U);
    ASSERT_EQ(location.rfind("/redfish/v1/SessionService/Sessions/", 0), 0U);
    EXPECT_EQ(login.body.find(token), std::string::npos);
    EXPECT_EQ(login.body.find("secret"), std::string::npos);
    EXPECT_EQ(json::parse(login.body)["UserName"], "admin");

    EXPECT_EQ(Send("GET", kStorage, "", {{"X-Auth-Token", token}}).status, 200);
    const json sessions = json::parse(
        Send("GET", "/redfish/v1/SessionService/Sessions", "", {{"X-Auth-Token", token}}).body);
    EXPECT_EQ(sessions["Members"], json::array({{{"@odata.id", location}}}));

    EXPECT_EQ(Send("DELETE", location, "", {{"X-Auth-Token", token}}).status, 204);
    EXPECT_EQ(Send("GET", kStorage, "", {{"X-Auth-Token", token}}).status, 401);
    EXPECT_EQ(Send("DELETE", location).status, 404);
}

TEST_F(EmulatorReadTest, SessionLoginWithWrongPasswordIsRefused) {
    const emulator::HttpResponse login = Send("POST", "/redfish/v1/SessionService/Sessions",
                                              R"({"UserName": "admin", "Password": "nope"})", {});
    EXPECT_EQ(login.status, 401);
    EXPECT_TRUE(login.Header("X-Auth-Token").empty());
    EXPECT_EQ(
        Send("POST", "/redfish/v1/SessionService/Sessions", R"({"UserName": "admin"})", {}).status,
        400);
}

TEST_F(EmulatorReadTest, DemoStorageTreeMatchesGolden) {
    const json tree = Tree();
    // Seven out-of-band controllers: the in-band families are not served.
    EXPECT_EQ(tree[kStorage]["Members@odata.count"], 7);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "demo_storage_tree.json",
                               tree.dump(2) + "\n");
}

TEST_F(EmulatorReadTest, ManagerCarriesTheBmcAnswers) {
    sim::Machine machine = Machine();
    machine.bmc.bmc_type.reset();
    machine.bmc.vantor_v3 = true;
    machine.bmc.cim = false;
    machine.bmc.rest_connections = 3;
    UseMachine(machine);
    const json oem = GetJson("/redfish/v1/Managers/1")["Oem"]["Raidcfg"];
    EXPECT_EQ(oem, json({{"@odata.type", "#Raidcfg.v1_0_0.Manager"},
                         {"AmbitType", nullptr},
                         {"VantorV3", true},
                         {"SupportInfo", true},
                         {"RestConnections", 3},
                         {"Ssh", true},
                         {"Rest", true},
                         {"Cim", false}}));
}

TEST_F(EmulatorReadTest, FamiliesAreToldApartByManufacturerModelAndCfcMark) {
    const std::string base = std::string(kStorage) + "/";
    const json lsi = GetJson(base + "OOB_LSI-0/Controllers/0");
    EXPECT_EQ(lsi["Manufacturer"], "Broadcom");
    const json vroc = GetJson(base + "OOB_VROC-0/Controllers/0");
    EXPECT_EQ(vroc["Manufacturer"], "Intel");
    EXPECT_NE(vroc["Model"].get<std::string>().find("VROC"), std::string::npos);
    const json cfc = GetJson(base + "OOB_CFC-1");
    EXPECT_TRUE(cfc["Oem"]["Raidcfg"]["Cfc"].get<bool>());
    EXPECT_EQ(cfc["StorageControllers"][0]["Manufacturer"], "Microchip");
    EXPECT_FALSE(GetJson(base + "OOB_MICROCHIP-0")["Oem"]["Raidcfg"]["Cfc"].get<bool>());
}

TEST_F(EmulatorReadTest, InlineStorageControllersMatchTheCollectionMember) {
    const std::string base = std::string(kStorage) + "/OOB_LSI-0";
    json member = GetJson(base + "/Controllers/0");
    json inline_controller = GetJson(base)["StorageControllers"][0];
    for (const char* key : {"@odata.id", "@odata.type", "@odata.context", "@odata.etag", "Id"}) {
        member.erase(key);
    }
    EXPECT_EQ(inline_controller["@odata.id"], base + "#/StorageControllers/0");
    inline_controller.erase("@odata.id");
    inline_controller.erase("MemberId");
    EXPECT_EQ(inline_controller, member);
}

TEST_F(EmulatorReadTest, JbodDiskShowsAsPassThroughVolume) {
    const std::string base = std::string(kStorage) + "/OOB_LSI-0";
    const json volumes = GetJson(base + "/Volumes");
    EXPECT_EQ(volumes["Members"].back()["@odata.id"], base + "/Volumes/PassThrough-8");
    const json pass = GetJson(base + "/Volumes/PassThrough-8");
    EXPECT_EQ(pass["RAIDType"], "None");
    EXPECT_TRUE(pass["Oem"]["Raidcfg"]["PassThrough"].get<bool>());
    EXPECT_EQ(GetJson(base + "/Drives/8")["Links"]["Volumes"][0]["@odata.id"],
              base + "/Volumes/PassThrough-8");
    EXPECT_EQ(Get(base + "/Volumes/PassThrough-6").status, 404);
}

TEST_F(EmulatorReadTest, TheChassisHoldsEveryServedDriveUnderAnIdUniqueAcrossControllers) {
    EXPECT_EQ(GetJson("/redfish/v1/Chassis")["Members"],
              json::array({{{"@odata.id", "/redfish/v1/Chassis/1"}}}));
    const json chassis = GetJson("/redfish/v1/Chassis/1");
    EXPECT_EQ(chassis["@odata.type"], "#Chassis.v1_23_0.Chassis");
    EXPECT_EQ(chassis["ChassisType"], "RackMount");
    EXPECT_EQ(chassis["Drives"], json({{"@odata.id", kChassisDrives}}));
    EXPECT_EQ(chassis["Links"]["ComputerSystems"],
              json::array({{{"@odata.id", "/redfish/v1/Systems/1"}}}));
    EXPECT_EQ(chassis["Links"]["ManagedBy"],
              json::array({{{"@odata.id", "/redfish/v1/Managers/1"}}}));

    const json drives = GetJson(kChassisDrives);
    EXPECT_EQ(drives["@odata.type"], "#DriveCollection.DriveCollection");
    // The disks of the seven served controllers, in file order: 9 + 5 + 6 + 2 + 2 + 9 + 6.
    ASSERT_EQ(drives["Members@odata.count"], 39);
    EXPECT_EQ(drives["Members"][0]["@odata.id"], std::string(kChassisDrives) + "/OOB_LSI-0-0");
    EXPECT_EQ(drives["Members"][9]["@odata.id"], std::string(kChassisDrives) + "/OOB_CFC-0-0");
    std::set<std::string> ids;
    json storage_drives = json::array();
    const json storages = GetJson(std::string(kStorage) + "?$expand=.");
    for (const json& storage : storages["Members"]) {
        storage_drives.insert(storage_drives.end(), storage["Drives"].begin(),
                              storage["Drives"].end());
    }
    EXPECT_EQ(storage_drives, drives["Members"]) << "every Storage links its drives there";
    for (const json& member : drives["Members"]) {
        const json drive = GetJson(member["@odata.id"].get<std::string>());
        EXPECT_EQ(drive["@odata.id"], member["@odata.id"]);
        ids.insert(drive["Id"].get<std::string>());
    }
    EXPECT_EQ(ids.size(), 39U);
}

TEST_F(EmulatorReadTest, TheRootTheSystemAndEveryStorageLinkTheChassis) {
    const json root = json::parse(Send("GET", "/redfish/v1", "", {}).body);
    EXPECT_EQ(root["Chassis"], json({{"@odata.id", "/redfish/v1/Chassis"}}));
    EXPECT_EQ(GetJson("/redfish/v1/Systems/1")["Links"]["Chassis"],
              json::array({{{"@odata.id", "/redfish/v1/Chassis/1"}}}));
    EXPECT_EQ(GetJson(std::string(kStorage) + "/OOB_VROC-0")["Links"]["Enclosures"],
              json::array({{{"@odata.id", "/redfish/v1/Chassis/1"}}}));
}

TEST_F(EmulatorReadTest, TheDriveUrisBelowAStorageServeTheSameDriveAsTheChassis) {
    const std::string chassis_uri = std::string(kChassisDrives) + "/OOB_LSI-0-6";
    const emulator::HttpResponse chassis = Get(chassis_uri);
    const emulator::HttpResponse alias = Get(std::string(kStorage) + "/OOB_LSI-0/Drives/6");
    ASSERT_EQ(alias.status, 200);
    EXPECT_EQ(alias.body, chassis.body);
    EXPECT_EQ(alias.Header("ETag"), chassis.Header("ETag"));
    const json drive = json::parse(alias.body);
    EXPECT_EQ(drive["@odata.id"], chassis_uri);
    EXPECT_EQ(drive["Id"], "OOB_LSI-0-6");
    EXPECT_EQ(drive["Oem"]["Raidcfg"]["Id"], 6);
    EXPECT_EQ(drive["Links"]["Chassis"], json({{"@odata.id", "/redfish/v1/Chassis/1"}}));
    EXPECT_EQ(drive["Links"]["Storage"],
              json({{"@odata.id", std::string(kStorage) + "/OOB_LSI-0"}}));
    EXPECT_EQ(drive["Actions"]["Oem"]["#Raidcfg.MakeGood"]["target"],
              chassis_uri + "/Actions/Oem/Raidcfg.MakeGood");
}

TEST_F(EmulatorReadTest, ADriveLinksTheVolumesItIsInAndAnEmptyListWhenNone) {
    const std::string lsi = std::string(kStorage) + "/OOB_LSI-0";
    const json member = GetJson(std::string(kChassisDrives) + "/OOB_LSI-0-0")["Links"];
    EXPECT_EQ(member["Volumes"], json::array({{{"@odata.id", lsi + "/Volumes/0"}}}));
    EXPECT_EQ(member["Volumes@odata.count"], 1);
    const json free = GetJson(std::string(kChassisDrives) + "/OOB_LSI-0-6")["Links"];
    EXPECT_EQ(free["Volumes"], json::array());
    EXPECT_EQ(free["Volumes@odata.count"], 0);
    // A dedicated spare serves the volume but is not in it.
    EXPECT_EQ(GetJson(std::string(kChassisDrives) + "/OOB_LSI-0-4")["Links"]["Volumes"],
              json::array());
}

TEST_F(EmulatorReadTest, VolumeAndSpareLinksPointToTheChassisDrives) {
    const std::string lsi = std::string(kStorage) + "/OOB_LSI-0";
    const std::string drives = std::string(kChassisDrives) + "/OOB_LSI-0-";
    const json links = GetJson(lsi + "/Volumes/0")["Links"];
    EXPECT_EQ(links["Drives"], json::array({{{"@odata.id", drives + "0"}},
                                            {{"@odata.id", drives + "1"}},
                                            {{"@odata.id", drives + "2"}},
                                            {{"@odata.id", drives + "3"}}}));
    EXPECT_EQ(links["DedicatedSpareDrives"], json::array({{{"@odata.id", drives + "4"}}}));
    EXPECT_EQ(GetJson(lsi + "/Volumes/PassThrough-8")["Links"]["Drives"],
              json::array({{{"@odata.id", drives + "8"}}}));
}

TEST_F(EmulatorReadTest, ChassisPlacesThatDoNotExistAreNotFound) {
    EXPECT_EQ(Get("/redfish/v1/Chassis/2").status, 404);
    EXPECT_EQ(Get(std::string(kChassisDrives) + "/OOB_LSI-0-99").status, 404);
    EXPECT_EQ(Get(std::string(kChassisDrives) + "/OOB_LSI-0-06").status, 404);
    EXPECT_EQ(Get(std::string(kChassisDrives) + "/OOB_LSI-7-0").status, 404);
    EXPECT_EQ(Get(std::string(kChassisDrives) + "/LSI-0-0").status, 404) << "not served";
    EXPECT_EQ(Get(std::string(kChassisDrives) + "/6").status, 404);
    EXPECT_EQ(Get(std::string(kChassisDrives) + "/OOB_LSI-0-6/Actions").status, 404);
}

TEST_F(EmulatorReadTest, ExpandLevelOneReplacesNonLinkReferences) {
    const std::string base = std::string(kStorage) + "/OOB_LSI-0";
    const json storage = GetJson(base + "?$expand=.");
    EXPECT_EQ(storage["Drives"][0]["Id"], "OOB_LSI-0-0");
    EXPECT_EQ(storage["Volumes"]["Members"][0], json({{"@odata.id", base + "/Volumes/0"}}));
    EXPECT_EQ(storage["Controllers"]["Members@odata.count"], 1);

    const json volume = GetJson(base + "/Volumes/0?%24expand=.%28%24levels%3D1%29");
    EXPECT_EQ(volume["Links"]["Drives"][0],
              json({{"@odata.id", std::string(kChassisDrives) + "/OOB_LSI-0-0"}}));
}

TEST_F(EmulatorReadTest, ExpandLevelTwoReachesCollectionMembers) {
    const json storages = GetJson(std::string(kStorage) + "?$expand=.($levels=2)");
    const json& lsi = storages["Members"][0];
    EXPECT_EQ(lsi["Id"], "OOB_LSI-0");
    EXPECT_EQ(lsi["Drives"][4]["HotspareType"], "Dedicated");
    EXPECT_EQ(lsi["Volumes"]["Members"][0].size(), 1U);

    const json volumes =
        GetJson(std::string(kStorage) + "/OOB_MICROCHIP-0/Volumes?$expand=.($levels=2)");
    EXPECT_EQ(volumes["Members"][1]["Oem"]["Raidcfg"]["Spans"], json::parse("[[4]]"));
    // Levels above the advertised maximum count as the maximum.
    EXPECT_EQ(GetJson(std::string(kStorage) + "?$expand=.($levels=5)"), storages);
}

TEST_F(EmulatorReadTest, ExpandLinksForms) {
    const std::string volume = std::string(kStorage) + "/OOB_LSI-0/Volumes/0";
    const json links_only = GetJson(volume + "?$expand=~");
    EXPECT_EQ(links_only["Links"]["Drives"][0]["Id"], "OOB_LSI-0-0");
    EXPECT_EQ(links_only["Links"]["DedicatedSpareDrives"][0]["HotspareType"], "Dedicated");
    const json all = GetJson(volume + "?$expand=*");
    EXPECT_EQ(all["Links"]["Drives"], links_only["Links"]["Drives"]);
    const json system = GetJson("/redfish/v1/Systems/1?$expand=~");
    EXPECT_EQ(system["Storage"], json({{"@odata.id", kStorage}}));
    EXPECT_EQ(system["Links"]["ManagedBy"][0]["ManagerType"], "BMC");
    EXPECT_EQ(Get(volume + "?$expand=x").status, 400);
    EXPECT_EQ(Get(volume + "?$expand=.($levels=0)").status, 400);
}

TEST_F(EmulatorReadTest, ETagIsStrongStableAndHonoured) {
    const std::string drive = std::string(kStorage) + "/OOB_LSI-0/Drives/6";
    const emulator::HttpResponse first = Get(drive);
    const std::string etag = first.Header("ETag");
    ASSERT_EQ(etag.size(), 18U);
    EXPECT_EQ(etag.front(), '"');
    EXPECT_EQ(json::parse(first.body)["@odata.etag"], etag);
    EXPECT_EQ(Get(drive).Header("ETag"), etag);
    // The ETag of an expanded answer is the resource's own.
    EXPECT_EQ(Get(drive + "?$expand=*").Header("ETag"), etag);

    EXPECT_EQ(Send("GET", drive, "", {{"Authorization", kBasic}, {"If-None-Match", etag}}).status,
              304);
    const emulator::HttpResponse stale =
        Send("PATCH", drive, R"({"HotspareType": "Global"})",
             {{"Authorization", kBasic}, {"If-Match", "\"0000000000000000\""}});
    EXPECT_EQ(stale.status, 412);
    EXPECT_EQ(Disk(Controller("OOB_LSI", 0), 6).state, "UGood");

    const emulator::HttpResponse fresh = Send("PATCH", drive, R"({"HotspareType": "Global"})",
                                              {{"Authorization", kBasic}, {"If-Match", etag}});
    EXPECT_EQ(fresh.status, 200);
    EXPECT_NE(Get(drive).Header("ETag"), etag);
    // The old ETag no longer matches.
    EXPECT_EQ(Send("PATCH", drive, R"({"HotspareType": "None"})",
                   {{"Authorization", kBasic}, {"If-Match", etag}})
                  .status,
              412);
}

TEST_F(EmulatorReadTest, ChangesByOtherProcessesAreSeen) {
    const std::string drive = std::string(kStorage) + "/OOB_LSI-0/Drives/6";
    EXPECT_EQ(GetJson(drive)["Oem"]["Raidcfg"]["State"], "UGood");
    sim::Machine machine = Machine();
    for (sim::Controller& controller : machine.controllers) {
        if (controller.family == "OOB_LSI") {
            controller.disks[6].state = "UBad";
        }
    }
    // Written behind the service's back, as another process would.
    raidcfg_test::WriteFile(path_, sim::MachineJson::Serialize(machine));
    EXPECT_EQ(GetJson(drive)["Oem"]["Raidcfg"]["State"], "UBad");
}

TEST_F(EmulatorReadTest, UnknownPlacesAndMethods) {
    EXPECT_EQ(Get(std::string(kStorage) + "/LSI-0").status, 404);
    EXPECT_EQ(Get(std::string(kStorage) + "/OOB_LSI-0/Drives/99").status, 404);
    const emulator::HttpResponse missing = Get("/redfish/v1/Nothing");
    EXPECT_EQ(missing.status, 404);
    EXPECT_EQ(Code(missing), 5);
    EXPECT_EQ(Send("PUT", "/redfish/v1/Systems/1").status, 405);
    EXPECT_EQ(Post("/redfish/v1/Managers/1", json::object()).status, 405);
}

TEST_F(EmulatorReadTest, AMethodTheServiceDoesNotKnowIsNotImplementedWithARedfishError) {
    const emulator::HttpResponse unknown = Send("FAKEMETHODFORTEST", "/redfish/v1");
    EXPECT_EQ(unknown.status, 501);
    const json error = json::parse(unknown.body);
    EXPECT_EQ(error["error"]["code"], "Base.1.8.GeneralError");
    EXPECT_EQ(error["error"]["message"],
              "The HTTP method FAKEMETHODFORTEST is not implemented by this service.");
}

TEST_F(EmulatorReadTest, ReadsAndRefusedMethodsSayWhatTheResourceAllows) {
    const std::string volumes = std::string(kStorage) + "/OOB_LSI-0/Volumes";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"/redfish/v1", "GET, HEAD"},
        {"/redfish/v1/SessionService/Sessions", "GET, HEAD, POST"},
        {volumes, "GET, HEAD, POST"},
        {volumes + "/0", "GET, HEAD, PATCH, DELETE"},
        {std::string(kStorage) + "/OOB_LSI-0", "GET, HEAD, PATCH"},
        {std::string(kStorage) + "/OOB_LSI-0/Controllers/0", "GET, HEAD, PATCH"},
        {std::string(kStorage) + "/OOB_LSI-0/Drives/0", "GET, HEAD, PATCH"},
        {"/redfish/v1/Systems/1", "GET, HEAD"},
    };
    for (const auto& [uri, allow] : cases) {
        const emulator::HttpResponse read = Get(uri);
        EXPECT_EQ(read.status, 200) << uri;
        EXPECT_EQ(read.Header("Allow"), allow) << uri;
        EXPECT_EQ(read.Header("Cache-Control"), "no-cache") << uri;
    }
    for (const char* method : {"DELETE", "PATCH", "POST", "OPTIONS", "PUT"}) {
        const emulator::HttpResponse refused = Send(method, "/redfish/v1", "{}");
        EXPECT_EQ(refused.status, 405) << method;
        EXPECT_EQ(refused.Header("Allow"), "GET, HEAD") << method;
        EXPECT_EQ(json::parse(refused.body)["error"]["code"], "Base.1.8.OperationNotAllowed");
    }
    EXPECT_EQ(Get("/redfish/v1/Nothing").Header("Allow"), "");
}

TEST_F(EmulatorReadTest, AResourceLinksTheSchemaOfItsOwnVersion) {
    EXPECT_EQ(Get("/redfish/v1").Header("Link"),
              "<http://redfish.dmtf.org/schemas/v1/ServiceRoot.v1_15_0.json>; rel=describedby");
    EXPECT_EQ(Get("/redfish/v1/Systems").Header("Link"),
              "<http://redfish.dmtf.org/schemas/v1/ComputerSystemCollection.json>; "
              "rel=describedby");
    EXPECT_EQ(Get("/redfish/v1/Nothing").Header("Link"), "");
}

TEST_F(EmulatorReadTest, ALoginPostedToTheSessionMembersOpensASession) {
    const emulator::HttpResponse login = Send("POST", "/redfish/v1/SessionService/Sessions/Members",
                                              R"({"UserName": "admin", "Password": "secret"})", {});
    ASSERT_EQ(login.status, 201);
    EXPECT_EQ(Send("GET", kStorage, "", {{"X-Auth-Token", login.Header("X-Auth-Token")}}).status,
              200);
}

} // namespace
} // namespace emulator_test
