// Writes of the mockup service: applied to the tree in memory as a BMC applies them, never to
// the recorded folder.
#include <filesystem>
#include <string>

#include <nlohmann/json.hpp>

#include "tests/emulator/mockup_fixture.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using nlohmann::json;

class MockupWriteTest : public MockupFixture {
protected:
    std::string Volume(const std::string& id) const { return std::string(kVolumes) + "/" + id; }
};

TEST_F(MockupWriteTest, PostToACollectionAddsAMemberWithTheNextNumber) {
    const emulator::HttpResponse created =
        Post(kVolumes, {{"Name", "Data"}, {"RAIDType", "RAID0"}});
    ASSERT_EQ(created.status, 201);
    EXPECT_EQ(created.Header("Location"), Volume("2"));
    const json volume = Body(created);
    EXPECT_EQ(volume["@odata.id"], Volume("2"));
    EXPECT_EQ(volume["@odata.type"], "#Volume.v1_0_0.Volume");
    EXPECT_EQ(volume["Id"], "2");
    EXPECT_EQ(volume["Name"], "Data");
    EXPECT_EQ(volume["RAIDType"], "RAID0");
    EXPECT_EQ(created.Header("ETag"), Get(Volume("2")).Header("ETag"));
    EXPECT_EQ(GetJson(Volume("2")), volume);

    const json collection = GetJson(kVolumes);
    EXPECT_EQ(collection["Members@odata.count"], 2);
    EXPECT_EQ(collection["Members"][1], (json{{"@odata.id", Volume("2")}}));
}

TEST_F(MockupWriteTest, PostKeepsTheIdOfTheBodyWhenItIsFree) {
    const emulator::HttpResponse named = Post(kVolumes, {{"Id", "Scratch"}});
    ASSERT_EQ(named.status, 201);
    EXPECT_EQ(named.Header("Location"), Volume("Scratch"));
    EXPECT_EQ(Body(named)["Name"], "Scratch"); // no Name given: the Id
    // Taken (or not a single path segment): numbered instead.
    EXPECT_EQ(Post(kVolumes, {{"Id", "Scratch"}}).Header("Location"), Volume("2"));
    EXPECT_EQ(Post(kVolumes, {{"Id", "1"}}).Header("Location"), Volume("3"));
    EXPECT_EQ(Post(kVolumes, {{"Id", "a/b"}}).Header("Location"), Volume("4"));
    EXPECT_EQ(GetJson(kVolumes)["Members@odata.count"], 5);
}

TEST_F(MockupWriteTest, PostLeavesTheTypeOutWhenTheCollectionDoesNotTellIt) {
    raidcfg_test::TempDir dir;
    std::filesystem::create_directories(dir.File("Widgets"));
    raidcfg_test::WriteFile(dir.File("index.json"), R"({"Id": "RootService"})");
    raidcfg_test::WriteFile(dir.File("Widgets/index.json"),
                            R"({"@odata.type": "#Example.WidgetList", "Members": []})");
    emulator::MockupTree tree;
    std::string error;
    ASSERT_TRUE(emulator::MockupTree::Load(dir.path(), tree, error)) << error;
    service_ = std::make_unique<emulator::MockupService>(std::move(tree), std::nullopt);
    const emulator::HttpResponse created = Post("/redfish/v1/Widgets", {{"Size", 3}});
    ASSERT_EQ(created.status, 201);
    EXPECT_FALSE(Body(created).contains("@odata.type"));
    EXPECT_EQ(Body(created)["Id"], "1");
    EXPECT_EQ(GetJson("/redfish/v1/Widgets")["Members@odata.count"], 1);
}

TEST_F(MockupWriteTest, PostToWhatIsNoCollectionIsNotAllowed) {
    const emulator::HttpResponse response = Post(kSystem, json::object());
    EXPECT_EQ(response.status, 405);
    EXPECT_EQ(MessageId(response), "Base.1.8.OperationNotAllowed");
    EXPECT_EQ(Post("/redfish/v1/Chassis", json::object()).status, 404);
}

TEST_F(MockupWriteTest, PatchMergesIntoTheResource) {
    const std::string volume = Volume("1");
    const emulator::HttpResponse patched =
        Patch(volume, {{"Name", "Renamed"},
                       {"CapacityBytes", nullptr},
                       {"Id", "9"},
                       {"Oem", {{"Example", {{"Cache", "WriteBack"}}}}}});
    ASSERT_EQ(patched.status, 200);
    json expected = Recorded("short", "Systems/Sys.1/Storage/RAIDIntegrated/Volumes/1/index.json");
    expected["Name"] = "Renamed";
    expected.erase("CapacityBytes");
    expected["Oem"] = {{"Example", {{"Cache", "WriteBack"}}}};
    EXPECT_EQ(Body(patched), expected); // what names the resource stays
    EXPECT_EQ(GetJson(volume), expected);
    EXPECT_EQ(patched.Header("ETag"), Get(volume).Header("ETag"));
}

TEST_F(MockupWriteTest, PatchWithAStaleIfMatchFailsThePrecondition) {
    const std::string etag = Get(kSystem).Header("ETag");
    auto patch = [&](const std::string& if_match, const std::string& state) {
        return Send("PATCH", kSystem, json{{"PowerState", state}}.dump(),
                    {{"Authorization", kBasic}, {"If-Match", if_match}});
    };
    EXPECT_EQ(patch(etag, "Off").status, 200);
    const emulator::HttpResponse stale = patch(etag, "On");
    EXPECT_EQ(stale.status, 412);
    EXPECT_EQ(MessageId(stale), "Base.1.8.PreconditionFailed");
    EXPECT_EQ(GetJson(kSystem)["PowerState"], "Off");
    EXPECT_EQ(patch("*", "On").status, 200);
    EXPECT_EQ(patch(Get(kSystem).Header("ETag"), "Off").status, 200);
}

TEST_F(MockupWriteTest, DeleteRemovesTheMemberAndEveryReferenceToIt) {
    EXPECT_EQ(Delete(Volume("1")).status, 204);
    EXPECT_EQ(Get(Volume("1")).status, 404);
    const json collection = GetJson(kVolumes);
    EXPECT_EQ(collection["Members"], json::array());
    EXPECT_EQ(collection["Members@odata.count"], 0);
    EXPECT_EQ(Delete(Volume("1")).status, 404);
}

TEST_F(MockupWriteTest, DeleteTakesEverythingBelowTheResource) {
    EXPECT_EQ(Delete(kStorage).status, 204);
    EXPECT_EQ(Get(kVolumes).status, 404);
    EXPECT_EQ(Get(std::string(kStorage) + "/Drives/Disk-1-0").status, 404);
    EXPECT_EQ(GetJson("/redfish/v1/Systems/Sys.1/Storage")["Members@odata.count"], 0);
    EXPECT_EQ(Get(kSystem).status, 200);
    EXPECT_EQ(Delete("/redfish/v1").status, 405);
}

TEST_F(MockupWriteTest, ListedActionAnswersNoContentAndChangesNothing) {
    const std::string etag = Get(kSystem).Header("ETag");
    const std::string reset = std::string(kSystem) + "/Actions/ComputerSystem.Reset";
    const emulator::HttpResponse response = Post(reset, {{"ResetType", "ForceOff"}});
    EXPECT_EQ(response.status, 204);
    EXPECT_TRUE(response.body.empty());
    EXPECT_EQ(Get(kSystem).Header("ETag"), etag);
    EXPECT_EQ(Send("POST", reset, "").status, 204); // an empty body is an empty object
    EXPECT_EQ(Post(Volume("1") + "/Actions/Volume.Initialize", json::object()).status, 204);
    // A vendor's action under Oem belongs to the resource above its Oem part.
    EXPECT_EQ(
        Post(std::string(kSystem) + "/Oem/Example/Actions/Example.Identify", json::object()).status,
        204);
}

TEST_F(MockupWriteTest, UnlistedActionIsNotFoundAndNamed) {
    const emulator::HttpResponse response =
        Post(std::string(kSystem) + "/Actions/ComputerSystem.Explode", json::object());
    EXPECT_EQ(response.status, 404);
    EXPECT_EQ(MessageId(response), "Base.1.8.ActionNotSupported");
    EXPECT_NE(Body(response)["error"]["message"].get<std::string>().find("ComputerSystem.Explode"),
              std::string::npos);
    EXPECT_EQ(
        Post(std::string(kStorage) + "/Actions/Storage.ResetToDefaults", json::object()).status,
        404);
    const emulator::HttpResponse nowhere =
        Post("/redfish/v1/Systems/Sys.9/Actions/ComputerSystem.Reset", json::object());
    EXPECT_EQ(nowhere.status, 404);
    EXPECT_EQ(MessageId(nowhere), "Base.1.8.ResourceNotFound");
}

TEST_F(MockupWriteTest, BodyThatIsNoJsonObjectIsMalformed) {
    for (const char* method : {"POST", "PATCH"}) {
        for (const char* body : {"[1]", "{\"Name\": ", "42"}) {
            const emulator::HttpResponse response = Send(method, kVolumes, body);
            EXPECT_EQ(response.status, 400) << method << ' ' << body;
            EXPECT_EQ(MessageId(response), "Base.1.8.MalformedJSON");
        }
    }
    EXPECT_EQ(GetJson(kVolumes)["Members@odata.count"], 1);
}

TEST_F(MockupWriteTest, OtherMethodsAreNotAllowedOrNotFound) {
    EXPECT_EQ(Send("PUT", kSystem, "{}").status, 405);
    EXPECT_EQ(Send("PUT", "/redfish/v1/Nothing", "{}").status, 404);
    EXPECT_EQ(Patch("/redfish/v1/Nothing", json::object()).status, 404);
    EXPECT_EQ(Patch("/redfish", json::object()).status, 405);
}

TEST_F(MockupWriteTest, WritesNeedAuthentication) {
    EXPECT_EQ(Send("PATCH", kSystem, R"({"PowerState": "Off"})", {}).status, 401);
    EXPECT_EQ(Send("DELETE", Volume("1"), "", {}).status, 401);
    EXPECT_EQ(GetJson(kSystem)["PowerState"], "On");
}

TEST_F(MockupWriteTest, WritesStayInMemory) {
    const std::string file =
        MockupDir("short") + "/Systems/Sys.1/Storage/RAIDIntegrated/Volumes/index.json";
    const std::string before = raidcfg_test::ReadFile(file);
    ASSERT_EQ(Post(kVolumes, {{"Name", "Data"}}).status, 201);
    ASSERT_EQ(Delete(Volume("1")).status, 204);
    EXPECT_EQ(raidcfg_test::ReadFile(file), before);
    Serve("short");
    EXPECT_EQ(GetJson(kVolumes)["Members@odata.count"], 1);
}

} // namespace
} // namespace emulator_test
