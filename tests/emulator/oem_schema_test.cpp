// Our Oem schema: served to everyone, referenced from $metadata, and a definition of every
// Oem.Raidcfg property and Oem action the service writes.
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <nlohmann/json.hpp>

#include "emulator/oem_schema.hpp"
#include "tests/emulator/service_fixture.hpp"
#include "tests/support/file_text.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using boost::property_tree::ptree;
using nlohmann::json;

struct Declared {
    std::string type;
    bool nullable = true;
};

// The schema as the tests read it: the properties of each complex type, the base of each, and
// the parameters (binding parameter first) of each overload of each action.
struct Schema {
    std::map<std::string, std::map<std::string, Declared>> properties;
    std::map<std::string, std::string> bases;
    std::map<std::string, std::vector<std::vector<std::string>>> actions;
};

ptree ParseXml(const std::string& xml) {
    std::istringstream in(xml);
    ptree document;
    boost::property_tree::read_xml(in, document);
    return document;
}

Schema ReadSchema(const std::string& xml) {
    const ptree document = ParseXml(xml);
    Schema schema;
    for (const auto& [tag, node] : document.get_child("edmx:Edmx.edmx:DataServices")) {
        if (tag != "Schema") {
            continue;
        }
        const auto name_space = node.get<std::string>("<xmlattr>.Namespace");
        for (const auto& [kind, element] : node) {
            if (kind == "ComplexType") {
                const std::string name =
                    name_space + "." + element.get<std::string>("<xmlattr>.Name");
                schema.bases[name] = element.get<std::string>("<xmlattr>.BaseType", "");
                auto& properties = schema.properties[name];
                for (const auto& [member, property] : element) {
                    if (member == "Property" || member == "NavigationProperty") {
                        properties[property.get<std::string>("<xmlattr>.Name")] = {
                            property.get<std::string>("<xmlattr>.Type"),
                            property.get<std::string>("<xmlattr>.Nullable", "true") == "true"};
                    }
                }
            } else if (kind == "Action") {
                std::vector<std::string> parameters;
                for (const auto& [member, parameter] : element) {
                    if (member == "Parameter") {
                        parameters.push_back(parameter.get<std::string>("<xmlattr>.Name") + ":" +
                                             parameter.get<std::string>("<xmlattr>.Type"));
                    }
                }
                schema.actions[name_space + "." + element.get<std::string>("<xmlattr>.Name")]
                    .push_back(parameters);
            }
        }
    }
    return schema;
}

class OemSchemaTest : public ServiceFixture {
protected:
    // Every body the service answers with on the demo machine: its resources (a session and a
    // task among them), an error and an accepted write.
    std::vector<json> Bodies() {
        AddSessionAndTask();
        std::vector<json> bodies;
        const json tree = ServiceTree();
        for (const auto& resource : tree) {
            bodies.push_back(resource);
        }
        bodies.push_back(json::parse(Get("/redfish/v1/Nothing").body));
        bodies.push_back(json::parse(
            Patch(std::string(kStorage) + "/OOB_LSI-0/Drives/6", {{"HotspareType", "Global"}})
                .body));
        return bodies;
    }

    // Every Oem.Raidcfg object at any depth of a body.
    static void OemObjects(const json& node, std::vector<json>& found) {
        if (node.is_array()) {
            for (const json& element : node) {
                OemObjects(element, found);
            }
            return;
        }
        if (!node.is_object()) {
            return;
        }
        for (auto item = node.begin(); item != node.end(); ++item) {
            if (item.key() == "Oem" && item.value().contains("Raidcfg")) {
                found.push_back(item.value()["Raidcfg"]);
            }
            OemObjects(item.value(), found);
        }
    }

    // Checks a value against the declared type of a property, nested types included.
    static void ExpectFits(const Schema& schema, const json& value, const Declared& declared,
                           const std::string& where) {
        const std::string& type = declared.type;
        if (value.is_null()) {
            EXPECT_TRUE(declared.nullable) << where << " is null";
            return;
        }
        const std::string collection = "Collection(";
        if (type.rfind(collection, 0) == 0) {
            ASSERT_TRUE(value.is_array()) << where;
            const Declared member{
                type.substr(collection.size(), type.size() - collection.size() - 1), false};
            for (const json& element : value) {
                ExpectFits(schema, element, member, where + "[]");
            }
        } else if (type == "Edm.String") {
            EXPECT_TRUE(value.is_string()) << where;
        } else if (type == "Edm.Int64") {
            EXPECT_TRUE(value.is_number_integer()) << where;
        } else if (type == "Edm.Boolean") {
            EXPECT_TRUE(value.is_boolean()) << where;
        } else if (type == "Edm.PrimitiveType") {
            EXPECT_FALSE(value.is_object()) << where;
        } else if (type.rfind("Raidcfg.", 0) == 0) {
            ASSERT_EQ(schema.properties.count(type), 1U) << where << ": " << type;
            ExpectObjectFits(schema, value, type, where);
        } else {
            // A link to a resource of another schema.
            EXPECT_EQ(value.size(), 1U) << where;
            EXPECT_TRUE(value.contains("@odata.id")) << where;
        }
    }

    static void ExpectObjectFits(const Schema& schema, const json& object, const std::string& type,
                                 const std::string& where) {
        ASSERT_TRUE(object.is_object()) << where;
        const auto& properties = schema.properties.at(type);
        for (auto item = object.begin(); item != object.end(); ++item) {
            if (item.key() == "@odata.type") {
                continue;
            }
            const std::string path = where + "/" + item.key();
            ASSERT_EQ(properties.count(item.key()), 1U) << path << " is not in " << type;
            ExpectFits(schema, item.value(), properties.at(item.key()), path);
        }
    }
};

TEST_F(OemSchemaTest, IsServedAsXmlWithoutAuthentication) {
    const emulator::HttpResponse response =
        Send("GET", "/redfish/v1/schemas/Raidcfg_v1.xml", "", {});
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.Header("Content-Type"), "application/xml");
    EXPECT_EQ(response.body, emulator::OemSchema::Xml());
    const emulator::HttpResponse head = Send("HEAD", "/redfish/v1/schemas/Raidcfg_v1.xml", "", {});
    EXPECT_EQ(head.status, 200);
    EXPECT_EQ(head.body, "");
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "Raidcfg_v1.xml", response.body);
}

TEST_F(OemSchemaTest, MetadataReferencesItWithBothNamespaces) {
    const ptree metadata = ParseXml(Send("GET", "/redfish/v1/$metadata", "", {}).body);
    std::vector<std::string> included;
    for (const auto& [tag, reference] : metadata.get_child("edmx:Edmx")) {
        if (tag == "edmx:Reference" &&
            reference.get<std::string>("<xmlattr>.Uri") == "/redfish/v1/schemas/Raidcfg_v1.xml") {
            for (const auto& [inner, include] : reference) {
                if (inner == "edmx:Include") {
                    included.push_back(include.get<std::string>("<xmlattr>.Namespace"));
                }
            }
        }
    }
    EXPECT_EQ(included, (std::vector<std::string>{"Raidcfg", "Raidcfg.v1_0_0"}));
}

TEST_F(OemSchemaTest, DefinesEveryOemPropertyTheServiceWritesWithItsType) {
    const Schema schema = ReadSchema(emulator::OemSchema::Xml());
    std::vector<json> objects;
    for (const json& body : Bodies()) {
        OemObjects(body, objects);
    }
    std::set<std::string> types;
    for (const json& object : objects) {
        ASSERT_TRUE(object.contains("@odata.type")) << object.dump();
        const std::string type = object["@odata.type"].get<std::string>().substr(1);
        ASSERT_EQ(type.rfind("Raidcfg.v1_0_0.", 0), 0U) << type;
        ASSERT_EQ(schema.properties.count(type), 1U) << type;
        EXPECT_EQ(schema.bases.at(type), "Resource.OemObject") << type;
        ExpectObjectFits(schema, object, type, type);
        types.insert(type);
    }
    EXPECT_EQ(types, (std::set<std::string>{"Raidcfg.v1_0_0.Drive", "Raidcfg.v1_0_0.Manager",
                                            "Raidcfg.v1_0_0.Message", "Raidcfg.v1_0_0.Storage",
                                            "Raidcfg.v1_0_0.StorageController",
                                            "Raidcfg.v1_0_0.Task", "Raidcfg.v1_0_0.Volume"}));
}

TEST_F(OemSchemaTest, PendingFaultsAndConnectorsFitTheirTypes) {
    sim::Machine machine = Machine();
    for (sim::Controller& controller : machine.controllers) {
        if (controller.family == "OOB_MICROCHIP") {
            controller.faults.push_back({"GetConfig", std::nullopt, 3, "no", std::nullopt});
            controller.faults.push_back({"MakeGood", std::string("4"), 3, "no", 1});
        }
    }
    UseMachine(machine);
    const Schema schema = ReadSchema(emulator::OemSchema::Xml());
    const json storage = GetJson(std::string(kStorage) + "/OOB_MICROCHIP-0");
    ASSERT_EQ(storage["Oem"]["Raidcfg"]["PendingFaults"],
              json::parse(R"([{"Operation": "GetConfig", "Argument": null},
                              {"Operation": "MakeGood", "Argument": "4"}])"));
    ExpectObjectFits(schema, storage["Oem"]["Raidcfg"], "Raidcfg.v1_0_0.Storage", "Storage");
    const json controller = GetJson(std::string(kStorage) + "/OOB_MICROCHIP-0/Controllers/0");
    ASSERT_FALSE(controller["Oem"]["Raidcfg"]["Connectors"].empty());
    ExpectObjectFits(schema, controller["Oem"]["Raidcfg"], "Raidcfg.v1_0_0.StorageController",
                     "StorageController");
}

TEST_F(OemSchemaTest, DefinesEveryOemActionBoundToItsResourceWithTheParametersItTakes) {
    const Schema schema = ReadSchema(emulator::OemSchema::Xml());
    using Overloads = std::vector<std::vector<std::string>>;
    EXPECT_EQ(schema.actions.at("Raidcfg.MakeGood"),
              (Overloads{{"Drive:Drive.v1_0_0.OemActions"}}));
    EXPECT_EQ(schema.actions.at("Raidcfg.ChangeConnectorMode"),
              (Overloads{{"StorageController:StorageController.v1_0_0.OemActions",
                          "Connector:Edm.String", "Mode:Edm.String"},
                         {"StorageController:Storage.v1_2_0.StorageControllerOemActions",
                          "Connector:Edm.String", "Mode:Edm.String"}}));
    EXPECT_EQ(schema.actions.at("Raidcfg.EncryptVolumes"),
              (Overloads{{"Storage:Storage.v1_0_0.OemActions", "Volumes:Collection(Edm.Int64)"}}));
    EXPECT_EQ(schema.actions.at("Raidcfg.Probe"),
              (Overloads{{"Storage:Storage.v1_0_0.OemActions", "Operation:Edm.String",
                          "Driver:Edm.String"}}));
    // Every Oem action the service offers is one of them.
    std::set<std::string> offered;
    for (const json& body : Bodies()) {
        std::vector<json> pending = {body};
        while (!pending.empty()) {
            const json node = pending.back();
            pending.pop_back();
            if (node.is_array()) {
                pending.insert(pending.end(), node.begin(), node.end());
            } else if (node.is_object()) {
                for (auto item = node.begin(); item != node.end(); ++item) {
                    if (item.key() == "Actions" && item.value().contains("Oem")) {
                        for (const auto& action : item.value()["Oem"].items()) {
                            offered.insert(action.key());
                        }
                    }
                    pending.push_back(item.value());
                }
            }
        }
    }
    EXPECT_EQ(offered,
              (std::set<std::string>{"#Raidcfg.ChangeConnectorMode", "#Raidcfg.EncryptVolumes",
                                     "#Raidcfg.MakeGood", "#Raidcfg.Probe"}));
}

} // namespace
} // namespace emulator_test
