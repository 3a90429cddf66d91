#include "emulator/metadata_document.hpp"

#include <map>
#include <set>

#include "emulator/oem_schema.hpp"
#include "emulator/redfish_types.hpp"

namespace emulator {

namespace {

std::string Build() {
    // Namespace -> its versioned namespaces in use: "#Drive.v1_17_0.Drive" adds
    // "Drive" -> {"Drive.v1_17_0"}; a collection type has no version.
    std::map<std::string, std::set<std::string>> used;
    for (const std::string& type : RedfishTypes::All()) {
        const std::string name = type.substr(1, type.find('.') - 1);
        const std::string qualified = type.substr(1, type.rfind('.') - 1);
        used[name];
        if (qualified != name) {
            used[name].insert(qualified);
        }
    }
    const std::string container = RedfishTypes::kServiceContainer;
    used["ServiceRoot"].insert(container.substr(0, container.rfind('.')));

    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<edmx:Edmx xmlns:edmx=\"http://docs.oasis-open.org/odata/ns/edmx\" "
                      "Version=\"4.0\">\n";
    for (const auto& [name, versions] : used) {
        xml += "  <edmx:Reference Uri=\"" + MetadataDocument::SchemaUri(name) + "\">\n";
        xml += "    <edmx:Include Namespace=\"" + name + "\"/>\n";
        for (const std::string& version : versions) {
            xml += "    <edmx:Include Namespace=\"" + version + "\"/>\n";
        }
        xml += "  </edmx:Reference>\n";
    }
    // The @Redfish annotations of the payloads (AllowableValues).
    xml += "  <edmx:Reference Uri=\"" + MetadataDocument::SchemaUri("RedfishExtensions") +
           "\">\n"
           "    <edmx:Include Namespace=\"RedfishExtensions.v1_0_0\" Alias=\"Redfish\"/>\n"
           "  </edmx:Reference>\n"
           "  <edmx:DataServices>\n"
           "    <Schema xmlns=\"http://docs.oasis-open.org/odata/ns/edm\" Namespace=\"Service\">\n"
           "      <EntityContainer Name=\"Service\" Extends=\"" +
           container +
           "\"/>\n"
           "    </Schema>\n"
           "  </edmx:DataServices>\n"
           "</edmx:Edmx>\n";
    return xml;
}

} // namespace

const std::string& MetadataDocument::Xml() {
    static const std::string xml = Build();
    return xml;
}

std::string MetadataDocument::SchemaUri(const std::string& name) {
    if (name == "Raidcfg") {
        return OemSchema::kUri;
    }
    // DMTF publishes the volume schemas with the storage standard's.
    const bool swordfish = name == "Volume" || name == "VolumeCollection";
    return std::string("http://redfish.dmtf.org/schemas/") + (swordfish ? "swordfish/" : "") +
           "v1/" + name + "_v1.xml";
}

} // namespace emulator
