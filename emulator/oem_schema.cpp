#include "emulator/oem_schema.hpp"

#include <vector>

namespace emulator {

namespace {

// What a client may do with a property: read it, also change it (PATCH), or only give it in a
// request (never shown).
enum class Access { Read, ReadWrite, Write };

struct Property {
    const char* name;
    const char* type;
    bool nullable;
    Access access;
    const char* description;
};

struct ComplexType {
    const char* name;
    // The type of an Oem.Raidcfg object itself (derived from Resource.OemObject), not a part of
    // one.
    bool oem_object;
    const char* description;
    std::vector<Property> properties;
};

struct Parameter {
    const char* name;
    const char* type;
    bool required;
    const char* description;
};

struct Action {
    const char* name;
    const char* description;
    // The first parameter: what the action is bound to.
    Parameter binding;
    std::vector<Parameter> parameters;
};

// Integer properties are Edm.Int64, the type DMTF schemas give whole numbers.
const std::vector<ComplexType>& Types() {
    static const std::vector<ComplexType> types = {
        {"Manager",
         true,
         "The BMC's answers to the connection library.",
         {{"AmbitType", "Edm.Int64", true, Access::Read,
           "The BMC type the type query answers; null when the query fails."},
          {"VantorV3", "Edm.Boolean", false, Access::Read,
           "Whether the BMC is of the Vantor v3 generation."},
          {"SupportInfo", "Edm.Boolean", false, Access::Read,
           "Whether the support query (stripe limits, RAID levels) answers."},
          {"RestConnections", "Edm.Int64", false, Access::Read,
           "The number of REST connections the BMC lists."},
          {"Ssh", "Edm.Boolean", false, Access::Read, "Whether the SSH channel is up."},
          {"Rest", "Edm.Boolean", false, Access::Read, "Whether the REST channel is up."},
          {"Cim", "Edm.Boolean", false, Access::Read, "Whether the CIM channel is up."}}},
        {"Storage",
         true,
         "The controller behind a Storage resource, as the backend contract names it.",
         {{"Family", "Edm.String", false, Access::Read,
           "The controller family (OOB_LSI, OOB_CFC, OOB_M2, OOB_MICROCHIP, OOB_VROC)."},
          {"Id", "Edm.Int64", false, Access::Read, "The controller's id within its family."},
          {"Cfc", "Edm.Boolean", false, Access::Read,
           "Whether the controller belongs to the CFC class only."},
          {"Slot", "Edm.Int64", false, Access::Read, "The slot the controller sits in."},
          {"EkmMode", "Edm.String", true, Access::ReadWrite,
           "The key management mode exactly; null when the controller lacks key management."},
          {"EkmModes", "Collection(Edm.String)", false, Access::Read,
           "The key management modes the controller offers."},
          {"GlobalHotSpares", "Collection(Edm.Int64)", false, Access::Read,
           "The disk ids of the global hot spares, in order."},
          {"PendingFaults", "Collection(Raidcfg.v1_0_0.PendingFault)", false, Access::Read,
           "The injected faults of the controller that still answer."}}},
        {"PendingFault",
         false,
         "An injected fault that makes the next matching operation fail.",
         {{"Operation", "Edm.String", true, Access::Read,
           "The operation of the backend contract that fails."},
          {"Argument", "Edm.String", true, Access::Read,
           "The disk, volume or connector the fault names, as decimal text; null when it names "
           "none."}}},
        {"StorageController",
         true,
         "The controller's own names and capabilities, exactly as the model holds them.",
         {{"ProductName", "Edm.String", false, Access::Read, "The product name."},
          {"Model", "Edm.String", false, Access::Read, "The model exactly."},
          {"Name", "Edm.String", false, Access::Read, "The name exactly."},
          {"Manufacturer", "Edm.String", false, Access::Read, "The manufacturer exactly."},
          {"Vendor", "Edm.String", false, Access::Read, "The vendor."},
          {"FruNumber", "Edm.String", false, Access::Read, "The FRU number."},
          {"RaidLevels", "Collection(Edm.String)", false, Access::Read,
           "The RAID levels the controller offers, in the model's words (\"1triple\", ...)."},
          {"MinStripeSizeKiB", "Edm.Int64", false, Access::Read,
           "The smallest stripe size in KiB; 0 for no limit."},
          {"MaxStripeSizeKiB", "Edm.Int64", false, Access::Read,
           "The largest stripe size in KiB; 0 for no limit."},
          {"Connectors", "Collection(Raidcfg.v1_0_0.Connector)", false, Access::Read,
           "The connectors of the controller."},
          {"ConnectorModes", "Collection(Edm.String)", false, Access::Read,
           "The modes a connector can be set to."},
          {"FirmwareDeviceOrder", "Edm.String", true, Access::ReadWrite,
           "The firmware device order; null when the controller lacks the function."},
          {"FirmwareDeviceOrderModes", "Collection(Edm.String)", false, Access::Read,
           "The values the firmware device order can be set to."}}},
        {"Connector",
         false,
         "A connector of a controller.",
         {{"Id", "Edm.Int64", false, Access::Read, "The connector's id."},
          {"Name", "Edm.String", false, Access::Read, "The connector's name."},
          {"Mode", "Edm.String", false, Access::Read, "The connector's mode."}}},
        {"Drive",
         true,
         "The disk behind a Drive resource, exactly as the model holds it.",
         {{"Id", "Edm.Int64", false, Access::Read, "The disk id within its controller."},
          {"State", "Edm.String", false, Access::Read,
           "The disk state (UGood, UBad, Online, JBOD, GHS, DHS, Offline, Failed)."},
          {"SlotNumber", "Edm.String", false, Access::Read, "The slot number exactly."},
          {"FruNumber", "Edm.String", false, Access::Read, "The FRU number."},
          {"ProductName", "Edm.String", false, Access::Read, "The product name."},
          {"DiskType", "Edm.String", false, Access::Read, "The disk type exactly (SAS, ...)."},
          {"MediaType", "Edm.String", false, Access::Read, "The media type exactly (HDD, ...)."},
          {"HealthStatus", "Edm.String", false, Access::Read, "The health status exactly."},
          {"ConnectorId", "Edm.Int64", false, Access::Read,
           "The id of the connector the disk hangs on."},
          {"DiskGroups", "Collection(Edm.String)", false, Access::Write,
           "In a request that makes the disk a dedicated hot spare: the volumes it serves."}}},
        {"Volume",
         true,
         "The volume behind a Volume resource, exactly as the model holds it; a pass-through "
         "volume carries PassThrough alone.",
         {{"Id", "Edm.Int64", false, Access::Read, "The volume id within its controller."},
          {"PassThrough", "Edm.Boolean", false, Access::Read,
           "Whether this is the pass-through volume of a JBOD disk, not a RAID volume."},
          {"RAIDLevel", "Edm.String", false, Access::Read,
           R"(The RAID level in the model's words ("1triple", "5", ...); given on creation.)"},
          // An array of arrays, which CSDL 4.0 cannot type: each member is one span, the array
          // of the disk ids in it.
          {"Spans", "Collection(Edm.PrimitiveType)", false, Access::Read,
           "The spans of the volume, each an array of disk ids: [[0, 1], [2, 3]]; given on "
           "creation."},
          {"Status", "Edm.String", false, Access::Read,
           "The volume status exactly (Optimal, ...)."},
          {"WritePolicy", "Edm.Int64", false, Access::Read, "The write policy code."},
          {"ReadPolicy", "Edm.Int64", false, Access::Read, "The read policy code."},
          {"IOPolicy", "Edm.Int64", false, Access::Read, "The IO policy code."},
          {"AccessPolicy", "Edm.Int64", false, Access::Read, "The access policy code."},
          {"DiskCachePolicy", "Edm.Int64", false, Access::Read, "The disk cache policy code."},
          {"Initialization", "Edm.Int64", false, Access::Read, "The initialization code."},
          {"RestDisks", "Edm.Boolean", false, Access::Write,
           "In a creation request: take every free disk of the controller."},
          {"HotSpares", "Collection(Edm.Int64)", false, Access::Write,
           "In a creation request: the disk ids of the volume's dedicated hot spares."},
          {"Size", "Edm.String", false, Access::Write,
           "In a creation request: the size as the request record words it (\"50%\", "
           "\"512MB\", empty for all space)."},
          {"StripSize", "Edm.String", false, Access::Write,
           "In a creation request: the strip size as the request record words it (\"128K\")."}}},
        {"Task",
         true,
         "What a volume creation task made.",
         {{"Volume", "Volume.Volume", true, Access::Read,
           "The created volume; null when the task made none."}}},
        {"Message",
         true,
         "The backend contract's answer carried by a message.",
         {{"Code", "Edm.Int64", false, Access::Read,
           "The code of the backend contract the operation returned."}}},
    };
    return types;
}

const std::vector<Action>& Actions() {
    static const std::vector<Action> actions = {
        {"MakeGood",
         "Makes the disk unconfigured good.",
         {"Drive", "Drive.v1_0_0.OemActions", false, ""},
         {}},
        {"ChangeConnectorMode",
         "Sets the mode of a connector of the controller.",
         {"StorageController", "StorageController.v1_0_0.OemActions", false, ""},
         {{"Connector", "Edm.String", true, "The connector id, as decimal text."},
          {"Mode", "Edm.String", true, "The mode to set, one of ConnectorModes."}}},
        // The same action on the deprecated inline StorageControllers of a Storage.
        {"ChangeConnectorMode",
         "Sets the mode of a connector of the controller.",
         {"StorageController", "Storage.v1_2_0.StorageControllerOemActions", false, ""},
         {{"Connector", "Edm.String", true, "The connector id, as decimal text."},
          {"Mode", "Edm.String", true, "The mode to set, one of ConnectorModes."}}},
        {"EncryptVolumes",
         "Encrypts volumes of the controller.",
         {"Storage", "Storage.v1_0_0.OemActions", false, ""},
         {{"Volumes", "Collection(Edm.Int64)", false,
           "The ids of the volumes to encrypt; empty or absent: all."}}},
        {"Probe",
         "Runs a read operation of the backend contract, to reach its code and its injected "
         "faults; nothing changes but a counted fault.",
         {"Storage", "Storage.v1_0_0.OemActions", false, ""},
         {{"Operation", "Edm.String", true,
           "The read operation (GetController, GetConfig, GetCanMakeGoodDiskIds, "
           "GetCanMakeJbodDiskIds, GetAllVolumes, GetSupportedRaidLevels, "
           "GetFirmwareDeviceOrderCtrl; getController with Encryption)."},
          {"Driver", "Edm.String", false,
           "The driver that runs it: Raid (the default), Encryption or FirmwareDeviceOrder."}}},
    };
    return actions;
}

// The schema files the types and actions above refer to, with the namespaces used.
constexpr const char* kReferences =
    "  <edmx:Reference Uri=\"http://docs.oasis-open.org/odata/odata/v4.0/errata03/csd01/"
    "complete/vocabularies/Org.OData.Core.V1.xml\">\n"
    "    <edmx:Include Namespace=\"Org.OData.Core.V1\" Alias=\"OData\"/>\n"
    "  </edmx:Reference>\n"
    "  <edmx:Reference Uri=\"http://redfish.dmtf.org/schemas/v1/RedfishExtensions_v1.xml\">\n"
    "    <edmx:Include Namespace=\"RedfishExtensions.v1_0_0\" Alias=\"Redfish\"/>\n"
    "  </edmx:Reference>\n"
    "  <edmx:Reference Uri=\"http://redfish.dmtf.org/schemas/v1/Resource_v1.xml\">\n"
    "    <edmx:Include Namespace=\"Resource\"/>\n"
    "  </edmx:Reference>\n"
    "  <edmx:Reference Uri=\"http://redfish.dmtf.org/schemas/v1/Drive_v1.xml\">\n"
    "    <edmx:Include Namespace=\"Drive.v1_0_0\"/>\n"
    "  </edmx:Reference>\n"
    "  <edmx:Reference Uri=\"http://redfish.dmtf.org/schemas/v1/Storage_v1.xml\">\n"
    "    <edmx:Include Namespace=\"Storage.v1_0_0\"/>\n"
    "    <edmx:Include Namespace=\"Storage.v1_2_0\"/>\n"
    "  </edmx:Reference>\n"
    "  <edmx:Reference Uri=\"http://redfish.dmtf.org/schemas/v1/StorageController_v1.xml\">\n"
    "    <edmx:Include Namespace=\"StorageController.v1_0_0\"/>\n"
    "  </edmx:Reference>\n"
    "  <edmx:Reference Uri=\"http://redfish.dmtf.org/schemas/swordfish/v1/Volume_v1.xml\">\n"
    "    <edmx:Include Namespace=\"Volume\"/>\n"
    "  </edmx:Reference>\n";

std::string Escape(const std::string& text) {
    std::string escaped;
    for (char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped.push_back(c);
        }
    }
    return escaped;
}

std::string Description(const std::string& indent, const std::string& text) {
    return indent + R"(<Annotation Term="OData.Description" String=")" + Escape(text) + "\"/>\n";
}

const char* Permission(Access access) {
    switch (access) {
    case Access::Read:
        return "OData.Permission/Read";
    case Access::ReadWrite:
        return "OData.Permission/ReadWrite";
    case Access::Write:
        return "OData.Permission/Write";
    }
    return "";
}

std::string PropertyXml(const Property& property) {
    const std::string type = property.type;
    // A link to another resource is a navigation property.
    const bool navigation = type.rfind("Edm.", 0) != 0 && type.rfind("Collection(", 0) != 0 &&
                            type.rfind("Raidcfg.", 0) != 0;
    const char* element = navigation ? "NavigationProperty" : "Property";
    std::string xml = std::string("        <") + element + " Name=\"" + property.name +
                      "\" Type=\"" + type + "\"" +
                      (property.nullable ? "" : " Nullable=\"false\"") + ">\n";
    xml += std::string(R"(          <Annotation Term="OData.Permissions" EnumMember=")") +
           Permission(property.access) + "\"/>\n";
    xml += Description("          ", property.description);
    if (navigation) {
        xml += "          <Annotation Term=\"OData.AutoExpandReferences\"/>\n";
    }
    xml += std::string("        </") + element + ">\n";
    return xml;
}

std::string ParameterXml(const Parameter& parameter) {
    std::string xml = std::string("        <Parameter Name=\"") + parameter.name + "\" Type=\"" +
                      parameter.type + "\"";
    // The binding parameter carries no description and may not be null either.
    if (parameter.description[0] == '\0') {
        return xml + "/>\n";
    }
    xml += " Nullable=\"false\">\n" + Description("          ", parameter.description);
    if (parameter.required) {
        xml += "          <Annotation Term=\"Redfish.Required\"/>\n";
    }
    return xml + "        </Parameter>\n";
}

std::string Build() {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<edmx:Edmx xmlns:edmx=\"http://docs.oasis-open.org/odata/ns/edmx\" "
                      "Version=\"4.0\">\n";
    xml += kReferences;
    xml += "  <edmx:DataServices>\n"
           "    <Schema xmlns=\"http://docs.oasis-open.org/odata/ns/edm\" Namespace=\"Raidcfg\">\n"
           "      <Annotation Term=\"Redfish.OwningEntity\" String=\"Raidcfg\"/>\n";
    for (const Action& action : Actions()) {
        xml += std::string("      <Action Name=\"") + action.name + "\" IsBound=\"true\">\n";
        xml += Description("        ", action.description);
        xml += ParameterXml(action.binding);
        for (const Parameter& parameter : action.parameters) {
            xml += ParameterXml(parameter);
        }
        xml += "      </Action>\n";
    }
    xml += "    </Schema>\n"
           "    <Schema xmlns=\"http://docs.oasis-open.org/odata/ns/edm\" "
           "Namespace=\"Raidcfg.v1_0_0\">\n"
           "      <Annotation Term=\"Redfish.OwningEntity\" String=\"Raidcfg\"/>\n";
    for (const ComplexType& type : Types()) {
        xml += std::string("      <ComplexType Name=\"") + type.name + "\"" +
               (type.oem_object ? " BaseType=\"Resource.OemObject\"" : "") + ">\n";
        xml += "        <Annotation Term=\"OData.AdditionalProperties\" Bool=\"false\"/>\n";
        xml += Description("        ", type.description);
        for (const Property& property : type.properties) {
            xml += PropertyXml(property);
        }
        xml += "      </ComplexType>\n";
    }
    xml += "    </Schema>\n"
           "  </edmx:DataServices>\n"
           "</edmx:Edmx>\n";
    return xml;
}

} // namespace

const std::string& OemSchema::Xml() {
    static const std::string xml = Build();
    return xml;
}

} // namespace emulator
