#include "emulator/resource_builder.hpp"

#include <algorithm>
#include <cctype>

#include "emulator/account_resources.hpp"
#include "emulator/drive_uris.hpp"
#include "emulator/redfish_names.hpp"
#include "emulator/redfish_types.hpp"

namespace emulator {

using nlohmann::json;

namespace {

constexpr long long kBytesPerMiB = 1048576;
constexpr long long kBytesPerKiB = 1024;

std::string StorageUri(const sim::Controller& controller) {
    return std::string(ResourceBuilder::kStorageRoot) + "/" + RedfishNames::StorageId(controller);
}

std::string VolumeUri(const sim::Controller& controller, const std::string& id) {
    return StorageUri(controller) + "/Volumes/" + id;
}

std::string PassThroughId(int disk) {
    return "PassThrough-" + std::to_string(disk);
}

json Enabled() {
    return {{"State", "Enabled"}, {"Health", "OK"}};
}

bool IsWholeNumber(const std::string& text) {
    // Short enough to fit an int.
    return !text.empty() && text.size() <= 9 &&
           std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return std::isdigit(c) != 0; });
}

bool IsMember(const sim::Volume& volume, int disk) {
    return std::any_of(volume.spans.begin(), volume.spans.end(), [disk](const auto& span) {
        return std::find(span.begin(), span.end(), disk) != span.end();
    });
}

const sim::Disk* FindDisk(const sim::Controller& controller, int id) {
    for (const sim::Disk& disk : controller.disks) {
        if (disk.id == id) {
            return &disk;
        }
    }
    return nullptr;
}

json NullableText(const std::optional<std::string>& text) {
    return text ? json(*text) : json(nullptr);
}

std::optional<int> ParseInt(const std::string& text) {
    if (text.empty() || text.size() > 9) {
        return std::nullopt;
    }
    const bool negative = text.front() == '-';
    const std::string digits = negative ? text.substr(1) : text;
    if (!IsWholeNumber(digits)) {
        return std::nullopt;
    }
    const int value = std::stoi(digits);
    return negative ? -value : value;
}

} // namespace

ResourceBuilder::ResourceBuilder(const sim::Machine& machine, bool expand_supported)
    : machine_(machine), expand_supported_(expand_supported) {}

json ResourceBuilder::Reference(const std::string& uri) {
    return {{"@odata.id", uri}};
}

json ResourceBuilder::Head(const std::string& uri, const std::string& type) {
    // "#Drive.v1_17_0.Drive" -> "#Drive.Drive"; a collection type has no version part.
    const std::string namespace_name = type.substr(1, type.find('.') - 1);
    const std::string type_name = type.substr(type.rfind('.') + 1);
    return {{"@odata.id", uri},
            {"@odata.type", type},
            {"@odata.context", "/redfish/v1/$metadata#" + namespace_name + "." + type_name}};
}

std::vector<std::string> ResourceBuilder::Segments(const std::string& path) {
    std::vector<std::string> segments;
    std::size_t start = 0;
    while (start <= path.size()) {
        const std::size_t slash = path.find('/', start);
        const std::size_t end = slash == std::string::npos ? path.size() : slash;
        if (end > start) {
            segments.push_back(path.substr(start, end - start));
        }
        if (slash == std::string::npos) {
            break;
        }
        start = slash + 1;
    }
    return segments;
}

const sim::Controller* ResourceBuilder::FindStorage(const sim::Machine& machine,
                                                    const std::string& sid) {
    for (const sim::Controller& controller : machine.controllers) {
        if (RedfishNames::IsServedFamily(controller.family) &&
            RedfishNames::StorageId(controller) == sid) {
            return &controller;
        }
    }
    return nullptr;
}

json ResourceBuilder::Collection(const std::string& uri, const std::string& type,
                                 const std::string& name, const std::vector<std::string>& members) {
    json body = Head(uri, type);
    body["Name"] = name;
    body["Members"] = json::array();
    for (const std::string& member : members) {
        body["Members"].push_back(Reference(member));
    }
    body["Members@odata.count"] = members.size();
    return body;
}

std::optional<json> ResourceBuilder::Build(const std::string& path) const {
    const std::vector<std::string> s = Segments(path);
    if (s.size() < 2 || s[0] != "redfish" || s[1] != "v1") {
        return std::nullopt;
    }
    if (s.size() == 2) {
        return ServiceRoot();
    }
    if (s[2] == "Systems") {
        if (s.size() == 3) {
            return Collection("/redfish/v1/Systems", RedfishTypes::kComputerSystemCollection,
                              "Computer System Collection", {"/redfish/v1/Systems/1"});
        }
        if (s[3] != "1") {
            return std::nullopt;
        }
        if (s.size() == 4) {
            return System();
        }
        if (s[4] == "Storage") {
            return StorageResource(s);
        }
        return std::nullopt;
    }
    if (s[2] == "Chassis") {
        return ChassisResource(s);
    }
    if (s[2] == "AccountService") {
        return AccountResources(machine_.bmc).Build(s);
    }
    if (s[2] == "Managers") {
        if (s.size() == 3) {
            return Collection("/redfish/v1/Managers", RedfishTypes::kManagerCollection,
                              "Manager Collection", {"/redfish/v1/Managers/1"});
        }
        if (s.size() == 4 && s[3] == "1") {
            return Manager();
        }
    }
    return std::nullopt;
}

json ResourceBuilder::ServiceRoot() const {
    json root = Head("/redfish/v1", RedfishTypes::kServiceRoot);
    root["Id"] = "RootService";
    root["Name"] = "Root Service";
    root["RedfishVersion"] = "1.17.0";
    root["Systems"] = Reference("/redfish/v1/Systems");
    root["Chassis"] = Reference("/redfish/v1/Chassis");
    root["Managers"] = Reference("/redfish/v1/Managers");
    root["SessionService"] = Reference("/redfish/v1/SessionService");
    root["AccountService"] = Reference(AccountResources::kRoot);
    root["Tasks"] = Reference("/redfish/v1/TaskService");
    root["Links"] = {{"Sessions", Reference("/redfish/v1/SessionService/Sessions")}};
    json features = {{"SelectQuery", false},
                     {"FilterQuery", false},
                     {"OnlyMemberQuery", false},
                     {"ExcerptQuery", false}};
    if (expand_supported_) {
        features["ExpandQuery"] = {{"ExpandAll", true},
                                   {"Levels", true},
                                   {"MaxLevels", 2},
                                   {"Links", true},
                                   {"NoLinks", true}};
    }
    root["ProtocolFeaturesSupported"] = features;
    return root;
}

const std::vector<std::string>& ResourceBuilder::SystemResetTypes() {
    static const std::vector<std::string> types = {"On", "ForceOff", "GracefulShutdown",
                                                   "GracefulRestart", "ForceRestart"};
    return types;
}

json ResourceBuilder::System() const {
    json system = Head("/redfish/v1/Systems/1", RedfishTypes::kComputerSystem);
    system["Id"] = "1";
    system["Name"] = "Simulated server";
    system["SystemType"] = "Physical";
    system["Status"] = Enabled();
    system["Storage"] = Reference(kStorageRoot);
    system["Links"] = {{"Chassis", json::array({Reference(DriveUris::kChassis)})},
                       {"ManagedBy", json::array({Reference("/redfish/v1/Managers/1")})}};
    system["PowerState"] = "On";
    // What generic clients expect of every ComputerSystem. A reset is accepted and changes
    // nothing: the simulated server has no power to cycle.
    system["Boot"] = {{"BootSourceOverrideEnabled", "Disabled"},
                      {"BootSourceOverrideTarget", "None"},
                      {"BootSourceOverrideTarget@Redfish.AllowableValues",
                       json::array({"None", "Pxe", "Hdd", "Cd", "BiosSetup"})}};
    system["Actions"] = {{"#ComputerSystem.Reset",
                          {{"target", std::string(kSystemReset)},
                           {"ResetType@Redfish.AllowableValues", json(SystemResetTypes())}}}};
    return system;
}

json ResourceBuilder::Manager() const {
    const sim::Bmc& bmc = machine_.bmc;
    json manager = Head("/redfish/v1/Managers/1", RedfishTypes::kManager);
    manager["Id"] = "1";
    manager["Name"] = "Manager";
    manager["ManagerType"] = "BMC";
    manager["Status"] = Enabled();
    manager["Oem"] = {{"Raidcfg",
                       {{"@odata.type", RedfishTypes::kOemManager},
                        {"AmbitType", bmc.bmc_type ? json(*bmc.bmc_type) : json(nullptr)},
                        {"VantorV3", bmc.vantor_v3},
                        {"SupportInfo", bmc.support_info},
                        {"RestConnections", bmc.rest_connections},
                        {"Ssh", bmc.ssh},
                        {"Rest", bmc.rest},
                        {"Cim", bmc.cim}}}};
    return manager;
}

json ResourceBuilder::StorageCollection() const {
    std::vector<std::string> members;
    for (const sim::Controller& controller : machine_.controllers) {
        if (RedfishNames::IsServedFamily(controller.family)) {
            members.push_back(StorageUri(controller));
        }
    }
    return Collection(kStorageRoot, RedfishTypes::kStorageCollection, "Storage Collection",
                      members);
}

std::optional<json> ResourceBuilder::StorageResource(const std::vector<std::string>& s) const {
    // s: redfish v1 Systems 1 Storage [sid [kind [id]]]
    if (s.size() == 5) {
        return StorageCollection();
    }
    const sim::Controller* controller = FindStorage(machine_, s[5]);
    if (controller == nullptr) {
        return std::nullopt;
    }
    const std::string uri = StorageUri(*controller);
    if (s.size() == 6) {
        return Storage(*controller);
    }
    const std::string& kind = s[6];
    if (kind == "Controllers") {
        if (s.size() == 7) {
            return Collection(uri + "/Controllers", RedfishTypes::kStorageControllerCollection,
                              "Storage Controller Collection", {uri + "/Controllers/0"});
        }
        if (s.size() == 8 && s[7] == "0") {
            return StorageController(*controller, uri + "/Controllers/0");
        }
        return std::nullopt;
    }
    if (kind == "Volumes") {
        if (s.size() == 7) {
            return VolumeCollection(*controller);
        }
        if (s.size() != 8) {
            return std::nullopt;
        }
        for (const sim::Volume& volume : controller->volumes) {
            if (std::to_string(volume.id) == s[7]) {
                return Volume(*controller, volume);
            }
        }
        for (const sim::Disk& disk : controller->disks) {
            if (disk.state == "JBOD" && PassThroughId(disk.id) == s[7]) {
                return PassThrough(*controller, disk);
            }
        }
        return std::nullopt;
    }
    // The URI of old: an alias of the drive under the Chassis.
    if (kind == "Drives" && s.size() == 8) {
        return DriveOf(*controller, s[7]);
    }
    return std::nullopt;
}

std::optional<json> ResourceBuilder::DriveOf(const sim::Controller& controller,
                                             const std::string& disk_text) {
    const std::optional<int> id = ParseInt(disk_text);
    const sim::Disk* disk = id ? FindDisk(controller, *id) : nullptr;
    if (disk != nullptr && std::to_string(disk->id) == disk_text) {
        return Drive(controller, *disk);
    }
    return std::nullopt;
}

std::optional<json> ResourceBuilder::ChassisResource(const std::vector<std::string>& s) const {
    // s: redfish v1 Chassis [1 [Drives [id]]]
    if (s.size() == 3) {
        return Collection("/redfish/v1/Chassis", RedfishTypes::kChassisCollection,
                          "Chassis Collection", {DriveUris::kChassis});
    }
    if (s[3] != "1") {
        return std::nullopt;
    }
    if (s.size() == 4) {
        return Chassis();
    }
    if (s[4] != "Drives") {
        return std::nullopt;
    }
    if (s.size() == 5) {
        std::vector<std::string> members;
        for (const sim::Controller& controller : machine_.controllers) {
            if (RedfishNames::IsServedFamily(controller.family)) {
                for (const sim::Disk& disk : controller.disks) {
                    members.push_back(DriveUris::Uri(controller, disk.id));
                }
            }
        }
        return Collection(DriveUris::kDrives, RedfishTypes::kDriveCollection, "Drive Collection",
                          members);
    }
    if (s.size() != 6) {
        return std::nullopt;
    }
    const std::optional<DriveUris::Parts> parts = DriveUris::Split(machine_, s[5]);
    const sim::Controller* controller = parts ? FindStorage(machine_, parts->sid) : nullptr;
    return controller != nullptr ? DriveOf(*controller, parts->disk) : std::nullopt;
}

json ResourceBuilder::Chassis() {
    json chassis = Head(DriveUris::kChassis, RedfishTypes::kChassis);
    chassis["Id"] = "1";
    chassis["Name"] = "Simulated server chassis";
    chassis["ChassisType"] = "RackMount";
    chassis["PowerState"] = "On";
    chassis["Status"] = Enabled();
    chassis["Drives"] = Reference(DriveUris::kDrives);
    chassis["Links"] = {{"ComputerSystems", json::array({Reference("/redfish/v1/Systems/1")})},
                        {"ManagedBy", json::array({Reference("/redfish/v1/Managers/1")})}};
    return chassis;
}

json ResourceBuilder::Storage(const sim::Controller& controller) {
    const std::string uri = StorageUri(controller);
    json storage = Head(uri, RedfishTypes::kStorage);
    storage["Id"] = RedfishNames::StorageId(controller);
    storage["Name"] = !controller.name.empty()           ? controller.name
                      : !controller.product_name.empty() ? controller.product_name
                                                         : RedfishNames::StorageId(controller);
    storage["Status"] = Enabled();
    storage["Controllers"] = Reference(uri + "/Controllers");
    // The deprecated inline form, for clients that predate the Controllers collection.
    json inline_controller = StorageController(controller, uri + "#/StorageControllers/0");
    inline_controller.erase("@odata.type");
    inline_controller.erase("@odata.context");
    inline_controller.erase("Id");
    inline_controller["MemberId"] = "0";
    storage["StorageControllers"] = json::array({inline_controller});
    storage["StorageControllers@odata.count"] = 1;
    storage["Drives"] = json::array();
    for (const sim::Disk& disk : controller.disks) {
        storage["Drives"].push_back(Reference(DriveUris::Uri(controller, disk.id)));
    }
    storage["Drives@odata.count"] = controller.disks.size();
    storage["Volumes"] = Reference(uri + "/Volumes");
    storage["Links"] = {{"Enclosures", json::array({Reference(DriveUris::kChassis)})},
                        {"Enclosures@odata.count", 1}};
    if (controller.ekm_mode) {
        const std::string mode = RedfishNames::EncryptionMode(*controller.ekm_mode);
        if (!mode.empty()) {
            storage["EncryptionMode"] = mode;
        }
    }
    storage["Actions"] = {
        {"#Storage.ResetToDefaults",
         {{"target", uri + "/Actions/Storage.ResetToDefaults"},
          {"ResetType@Redfish.AllowableValues", json::array({"ResetAll"})}}},
        {"Oem",
         {{"#Raidcfg.EncryptVolumes", {{"target", uri + "/Actions/Oem/Raidcfg.EncryptVolumes"}}},
          {"#Raidcfg.Probe", {{"target", uri + "/Actions/Oem/Raidcfg.Probe"}}}}}};
    json faults = json::array();
    for (const sim::Fault& fault : controller.faults) {
        if (!fault.times || *fault.times > 0) {
            faults.push_back({{"Operation", fault.op}, {"Argument", NullableText(fault.arg)}});
        }
    }
    storage["Oem"] = {{"Raidcfg",
                       {{"@odata.type", RedfishTypes::kOemStorage},
                        {"Family", controller.family},
                        {"Id", controller.id},
                        {"Cfc", controller.family == "OOB_CFC"},
                        {"Slot", controller.slot},
                        {"EkmMode", NullableText(controller.ekm_mode)},
                        {"EkmModes", controller.ekm_modes},
                        {"GlobalHotSpares", controller.global_hot_spares},
                        {"PendingFaults", faults}}}};
    return storage;
}

json ResourceBuilder::StorageController(const sim::Controller& controller, const std::string& uri) {
    json body = Head(uri, RedfishTypes::kStorageController);
    body["Id"] = "0";
    body["Name"] = controller.name.empty() ? controller.product_name : controller.name;
    body["Manufacturer"] = RedfishNames::Manufacturer(controller);
    body["Model"] = RedfishNames::Model(controller);
    body["SerialNumber"] = controller.serial_no;
    body["PartNumber"] = controller.part_no;
    body["FirmwareVersion"] = controller.version;
    json types = json::array();
    for (const std::string& level : controller.raid_levels) {
        const std::string type = RedfishNames::RaidType(level);
        if (!type.empty()) {
            types.push_back(type);
        }
    }
    body["SupportedRAIDTypes"] = types;
    body["Location"] = {
        {"PartLocation", {{"LocationType", "Slot"}, {"LocationOrdinalValue", controller.slot}}}};
    body["Status"] = Enabled();
    body["Actions"] = {{"Oem",
                        {{"#Raidcfg.ChangeConnectorMode",
                          {{"target", StorageUri(controller) + "/Controllers/0/Actions/Oem/"
                                                               "Raidcfg.ChangeConnectorMode"}}}}}};
    json connectors = json::array();
    for (const sim::Connector& connector : controller.connectors) {
        connectors.push_back(
            {{"Id", connector.id}, {"Name", connector.name}, {"Mode", connector.mode}});
    }
    body["Oem"] = {{"Raidcfg",
                    {{"@odata.type", RedfishTypes::kOemStorageController},
                     {"ProductName", controller.product_name},
                     {"Model", controller.model},
                     {"Name", controller.name},
                     {"Manufacturer", controller.manufacturer},
                     {"Vendor", controller.vendor},
                     {"FruNumber", controller.fru_no},
                     {"RaidLevels", controller.raid_levels},
                     {"MinStripeSizeKiB", controller.min_stripe_kb},
                     {"MaxStripeSizeKiB", controller.max_stripe_kb},
                     {"Connectors", connectors},
                     {"ConnectorModes", controller.connector_modes},
                     {"FirmwareDeviceOrder", NullableText(controller.fw_device_order)},
                     {"FirmwareDeviceOrderModes", controller.fw_device_order_modes}}}};
    return body;
}

json ResourceBuilder::Drive(const sim::Controller& controller, const sim::Disk& disk) {
    const std::string uri = DriveUris::Uri(controller, disk.id);
    json drive = Head(uri, RedfishTypes::kDrive);
    drive["Id"] = DriveUris::Id(controller, disk.id);
    drive["Name"] =
        disk.product_name.empty() ? "Drive " + std::to_string(disk.id) : disk.product_name;
    drive["Model"] = disk.product_name;
    drive["Manufacturer"] = disk.manufacturer;
    drive["SerialNumber"] = disk.serial_no;
    drive["PartNumber"] = disk.part_no;
    drive["CapacityBytes"] = disk.capacity_mb * kBytesPerMiB;
    if (disk.disk_type == "SAS" || disk.disk_type == "SATA" || disk.disk_type == "NVMe") {
        drive["Protocol"] = disk.disk_type;
    }
    if (disk.media_type == "HDD" || disk.media_type == "SSD" || disk.media_type == "SMR") {
        drive["MediaType"] = disk.media_type;
    }
    json status;
    if (disk.state == "GHS" || disk.state == "DHS") {
        status["State"] = "StandbySpare";
    } else if (disk.state == "UBad" || disk.state == "Offline" || disk.state == "Failed") {
        status["State"] = "UnavailableOffline";
    } else {
        status["State"] = "Enabled";
    }
    if (disk.health_status == "OK" || disk.health_status == "Warning" ||
        disk.health_status == "Critical") {
        status["Health"] = disk.health_status;
    }
    drive["Status"] = status;
    drive["HotspareType"] = disk.state == "GHS"   ? "Global"
                            : disk.state == "DHS" ? "Dedicated"
                                                  : "None";
    json location = {{"LocationType", "Bay"}, {"ServiceLabel", disk.slot_no}};
    if (IsWholeNumber(disk.slot_no)) {
        location["LocationOrdinalValue"] = std::stoi(disk.slot_no);
    }
    drive["PhysicalLocation"] = {{"PartLocation", location}};
    json volumes = json::array();
    for (const sim::Volume& volume : controller.volumes) {
        if (IsMember(volume, disk.id)) {
            volumes.push_back(Reference(VolumeUri(controller, std::to_string(volume.id))));
        }
    }
    if (disk.state == "JBOD") {
        volumes.push_back(Reference(VolumeUri(controller, PassThroughId(disk.id))));
    }
    drive["Links"] = {{"Chassis", Reference(DriveUris::kChassis)},
                      {"Storage", Reference(StorageUri(controller))},
                      {"Volumes@odata.count", volumes.size()},
                      {"Volumes", volumes}};
    drive["Actions"] = {
        {"Oem", {{"#Raidcfg.MakeGood", {{"target", uri + "/Actions/Oem/Raidcfg.MakeGood"}}}}}};
    drive["Oem"] = {{"Raidcfg",
                     {{"@odata.type", RedfishTypes::kOemDrive},
                      {"Id", disk.id},
                      {"State", disk.state},
                      {"SlotNumber", disk.slot_no},
                      {"FruNumber", disk.fru_no},
                      {"ProductName", disk.product_name},
                      {"DiskType", disk.disk_type},
                      {"MediaType", disk.media_type},
                      {"HealthStatus", disk.health_status},
                      {"ConnectorId", disk.connector_id}}}};
    return drive;
}

json ResourceBuilder::Volume(const sim::Controller& controller, const sim::Volume& volume) {
    const std::string id = std::to_string(volume.id);
    const std::string uri = VolumeUri(controller, id);
    json body = Head(uri, RedfishTypes::kVolume);
    body["Id"] = id;
    body["Name"] = volume.name.empty() ? "Volume " + id : volume.name;
    body["DisplayName"] = volume.name;
    const std::string raid_type = RedfishNames::RaidType(volume.raid_level);
    if (!raid_type.empty()) {
        body["RAIDType"] = raid_type;
    }
    body["CapacityBytes"] = volume.size_mb * kBytesPerMiB;
    body["StripSizeBytes"] = static_cast<long long>(volume.strip_kb) * kBytesPerKiB;
    const std::string read = RedfishNames::ReadCachePolicy(volume.read_policy);
    if (!read.empty()) {
        body["ReadCachePolicy"] = read;
    }
    const std::string write =
        RedfishNames::WriteCachePolicy(controller.family, volume.write_policy);
    if (!write.empty()) {
        body["WriteCachePolicy"] = write;
    }
    body["Encrypted"] = volume.encrypted;
    body["IsBootCapable"] = volume.bootable;
    body["Status"] = {{"State", "Enabled"},
                      {"Health", volume.status == "Optimal" ? "OK" : "Warning"}};
    json drives = json::array();
    for (const auto& span : volume.spans) {
        for (int disk : span) {
            drives.push_back(Reference(DriveUris::Uri(controller, disk)));
        }
    }
    json spares = json::array();
    for (int disk : volume.dedicated_spares) {
        spares.push_back(Reference(DriveUris::Uri(controller, disk)));
    }
    body["Links"] = {{"Drives@odata.count", drives.size()},
                     {"Drives", drives},
                     {"DedicatedSpareDrives@odata.count", spares.size()},
                     {"DedicatedSpareDrives", spares}};
    body["Actions"] = {{"#Volume.Initialize",
                        {{"target", uri + "/Actions/Volume.Initialize"},
                         {"InitializeType@Redfish.AllowableValues", json::array({"Fast"})}}}};
    body["Oem"] = {{"Raidcfg",
                    {{"@odata.type", RedfishTypes::kOemVolume},
                     {"Id", volume.id},
                     {"PassThrough", false},
                     {"RAIDLevel", volume.raid_level},
                     {"Spans", volume.spans},
                     {"Status", volume.status},
                     {"WritePolicy", volume.write_policy},
                     {"ReadPolicy", volume.read_policy},
                     {"IOPolicy", volume.io_policy},
                     {"AccessPolicy", volume.access_policy},
                     {"DiskCachePolicy", volume.cache_policy},
                     {"Initialization", volume.initialization}}}};
    return body;
}

json ResourceBuilder::PassThrough(const sim::Controller& controller, const sim::Disk& disk) {
    const std::string id = PassThroughId(disk.id);
    json body = Head(VolumeUri(controller, id), RedfishTypes::kVolume);
    body["Id"] = id;
    body["Name"] = "Pass-through " + std::to_string(disk.id);
    body["RAIDType"] = "None";
    body["CapacityBytes"] = disk.capacity_mb * kBytesPerMiB;
    body["Status"] = Enabled();
    body["Links"] = {{"Drives@odata.count", 1},
                     {"Drives", json::array({Reference(DriveUris::Uri(controller, disk.id))})}};
    body["Oem"] = {{"Raidcfg", {{"@odata.type", RedfishTypes::kOemVolume}, {"PassThrough", true}}}};
    return body;
}

json ResourceBuilder::VolumeCollection(const sim::Controller& controller) {
    std::vector<std::string> members;
    for (const sim::Volume& volume : controller.volumes) {
        members.push_back(VolumeUri(controller, std::to_string(volume.id)));
    }
    for (const sim::Disk& disk : controller.disks) {
        if (disk.state == "JBOD") {
            members.push_back(VolumeUri(controller, PassThroughId(disk.id)));
        }
    }
    return Collection(StorageUri(controller) + "/Volumes", RedfishTypes::kVolumeCollection,
                      "Volume Collection", members);
}

} // namespace emulator
