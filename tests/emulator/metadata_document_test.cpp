// The OData metadata document: open to everyone, and a reference to the schema of every type the
// service writes.
#include <map>
#include <set>
#include <sstream>
#include <string>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <nlohmann/json.hpp>

#include "emulator/metadata_document.hpp"
#include "tests/emulator/service_fixture.hpp"
#include "tests/support/file_text.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using nlohmann::json;

class MetadataDocumentTest : public ServiceFixture {
protected:
    // Every namespace the document includes, with the URI of the schema that holds it.
    static std::map<std::string, std::string> Includes(const std::string& xml) {
        std::istringstream in(xml);
        boost::property_tree::ptree document;
        boost::property_tree::read_xml(in, document);
        std::map<std::string, std::string> includes;
        for (const auto& [tag, reference] : document.get_child("edmx:Edmx")) {
            if (tag != "edmx:Reference") {
                continue;
            }
            const auto uri = reference.get<std::string>("<xmlattr>.Uri");
            for (const auto& [inner, include] : reference) {
                if (inner == "edmx:Include") {
                    includes[include.get<std::string>("<xmlattr>.Namespace")] = uri;
                }
            }
        }
        return includes;
    }

    // Every @odata.type the service answers with: its resources (a session and a task among
    // them), an error and an accepted write.
    std::set<std::string> ServedTypes() {
        AddSessionAndTask();
        std::set<std::string> types;
        CollectTypes(ServiceTree(), types);
        CollectTypes(json::parse(Get("/redfish/v1/Nothing").body), types);
        CollectTypes(json::parse(Patch(std::string(kStorage) + "/OOB_LSI-0/Drives/6",
                                       {{"HotspareType", "Global"}})
                                     .body),
                     types);
        return types;
    }
};

TEST_F(MetadataDocumentTest, IsServedAsXmlWithoutAuthentication) {
    const emulator::HttpResponse response = Send("GET", "/redfish/v1/$metadata", "", {});
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.Header("Content-Type"), "application/xml");
    EXPECT_EQ(response.Header("OData-Version"), "4.0");
    EXPECT_EQ(response.body, emulator::MetadataDocument::Xml());
    EXPECT_EQ(Send("GET", "/redfish/v1/%24metadata", "", {}).body, response.body);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "metadata.xml", response.body);
}

TEST_F(MetadataDocumentTest, HeadAnswersTheHeadersWithoutTheDocument) {
    const emulator::HttpResponse response = Send("HEAD", "/redfish/v1/$metadata", "", {});
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.Header("Content-Type"), "application/xml");
    EXPECT_EQ(response.body, "");
}

TEST_F(MetadataDocumentTest, IncludesTheNamespacesOfEveryTypeTheServiceServes) {
    const std::map<std::string, std::string> includes = Includes(emulator::MetadataDocument::Xml());
    const std::set<std::string> types = ServedTypes();
    ASSERT_GT(types.size(), 20U);
    for (const std::string& type : types) {
        // "#Drive.v1_17_0.Drive": "Drive" and "Drive.v1_17_0", both from Drive_v1.xml.
        const std::string name = type.substr(1, type.find('.') - 1);
        const std::string qualified = type.substr(1, type.rfind('.') - 1);
        ASSERT_EQ(includes.count(name), 1U) << type;
        EXPECT_EQ(includes.at(name), emulator::MetadataDocument::SchemaUri(name)) << type;
        ASSERT_EQ(includes.count(qualified), 1U) << type;
        EXPECT_EQ(includes.at(qualified), includes.at(name)) << type;
    }
}

TEST_F(MetadataDocumentTest, IncludesNothingTheServiceDoesNotUse) {
    std::set<std::string> used = {"RedfishExtensions.v1_0_0", "ServiceRoot.v1_13_0"};
    for (const std::string& type : ServedTypes()) {
        used.insert(type.substr(1, type.find('.') - 1));
        used.insert(type.substr(1, type.rfind('.') - 1));
    }
    for (const auto& [name, uri] : Includes(emulator::MetadataDocument::Xml())) {
        EXPECT_EQ(used.count(name), 1U) << name << " from " << uri;
    }
}

TEST_F(MetadataDocumentTest, ExtendsTheServiceRootContainerAndAliasesRedfishExtensions) {
    const std::string& xml = emulator::MetadataDocument::Xml();
    EXPECT_NE(xml.find("<EntityContainer Name=\"Service\" "
                       "Extends=\"ServiceRoot.v1_13_0.ServiceContainer\"/>"),
              std::string::npos);
    EXPECT_NE(xml.find("<edmx:Include Namespace=\"RedfishExtensions.v1_0_0\" Alias=\"Redfish\"/>"),
              std::string::npos);
    const std::map<std::string, std::string> includes = Includes(xml);
    EXPECT_EQ(includes.at("ServiceRoot.v1_13_0"),
              "http://redfish.dmtf.org/schemas/v1/ServiceRoot_v1.xml");
}

TEST_F(MetadataDocumentTest, VolumeSchemasAreReferencedWhereDmtfPublishesThem) {
    EXPECT_EQ(emulator::MetadataDocument::SchemaUri("Volume"),
              "http://redfish.dmtf.org/schemas/swordfish/v1/Volume_v1.xml");
    EXPECT_EQ(emulator::MetadataDocument::SchemaUri("VolumeCollection"),
              "http://redfish.dmtf.org/schemas/swordfish/v1/VolumeCollection_v1.xml");
    EXPECT_EQ(emulator::MetadataDocument::SchemaUri("Drive"),
              "http://redfish.dmtf.org/schemas/v1/Drive_v1.xml");
}

} // namespace
} // namespace emulator_test
