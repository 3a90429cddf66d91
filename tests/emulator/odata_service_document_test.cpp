// The OData service document: open to everyone, naming what the service root links.
#include <string>

#include <nlohmann/json.hpp>

#include "emulator/odata_service_document.hpp"
#include "tests/emulator/service_fixture.hpp"
#include "tests/support/file_text.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using nlohmann::json;

class ODataServiceDocumentTest : public ServiceFixture {};

TEST_F(ODataServiceDocumentTest, IsServedWithoutAuthenticationAndListsTheRootsLinks) {
    const emulator::HttpResponse response = Send("GET", "/redfish/v1/odata", "", {});
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.Header("Content-Type"), "application/json");
    const json document = json::parse(response.body);
    EXPECT_EQ(document["@odata.context"], "/redfish/v1/$metadata");
    EXPECT_EQ(document["value"][0],
              json({{"name", "Service"}, {"kind", "Singleton"}, {"url", "/redfish/v1/"}}));
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "odata_service_document.json",
                               document.dump(2) + "\n");
}

TEST_F(ODataServiceDocumentTest, EveryEntryIsALinkOfTheServiceRoot) {
    const json root = GetJson("/redfish/v1");
    const json document = emulator::ODataServiceDocument::Of(root);
    ASSERT_GT(document["value"].size(), 1U);
    for (const json& entry : document["value"]) {
        const std::string name = entry["name"].get<std::string>();
        const std::string url = entry["url"].get<std::string>();
        if (name == "Service") {
            continue;
        }
        const json& link = name == "Sessions" ? root["Links"]["Sessions"] : root[name];
        EXPECT_EQ(link, json({{"@odata.id", url}})) << name;
        EXPECT_EQ(Get(url).status, 200) << url;
    }
}

TEST_F(ODataServiceDocumentTest, HeadAnswersWithoutABody) {
    const emulator::HttpResponse response = Send("HEAD", "/redfish/v1/odata", "", {});
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.Header("Content-Type"), "application/json");
    EXPECT_EQ(response.body, "");
}

} // namespace
} // namespace emulator_test
