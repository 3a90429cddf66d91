#include "redfish/storage_tree_reader.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <set>
#include <utility>

#include "collaborators/log.hpp"
#include "redfish/redfish_words.hpp"

namespace redfish {

namespace {

using nlohmann::json;
using W = RedfishWords;

constexpr long long kMebibyte = 1048576;

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool Contains(const std::string& text, const std::string& part) {
    return Lower(text).find(Lower(part)) != std::string::npos;
}

// A whole non-negative number written as text, the form Redfish ids of our BMC take.
bool WholeNumber(const std::string& text, int& value) {
    const char* end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, value);
    return !text.empty() && problem == std::errc() && stop == end && value >= 0;
}

bool Has(const json& object, const char* key) {
    return object.is_object() && object.contains(key);
}

const json& Member(const json& object, const char* key) {
    static const json null;
    if (!object.is_object()) {
        return null;
    }
    const auto found = object.find(key);
    return found == object.end() ? null : *found;
}

// A text that our Oem section carries exactly (even when empty), else the standard one.
std::string OemOr(const json& oem, const char* oem_key, const std::string& standard) {
    return Has(oem, oem_key) ? W::Text(oem, oem_key) : standard;
}

std::vector<std::string> Texts(const json& list) {
    std::vector<std::string> texts;
    if (list.is_array()) {
        for (const json& item : list) {
            if (item.is_string()) {
                texts.push_back(item.get<std::string>());
            }
        }
    }
    return texts;
}

std::vector<int> Numbers(const json& list) {
    std::vector<int> numbers;
    if (list.is_array()) {
        for (const json& item : list) {
            if (item.is_number_integer()) {
                numbers.push_back(item.get<int>());
            }
        }
    }
    return numbers;
}

// The members of a collection that came expanded (or the links of an array of references).
std::vector<json> MembersOf(const json& collection_or_array) {
    std::vector<json> members;
    const json& list = collection_or_array.is_array() ? collection_or_array
                                                      : Member(collection_or_array, "Members");
    if (list.is_array()) {
        members.assign(list.begin(), list.end());
    }
    return members;
}

// The id of a Volume: ours, else its Id when that is a number, else its position.
int ResourceId(const json& resource, int position) {
    const json& oem = W::Oem(resource);
    if (Has(oem, "Id") && oem["Id"].is_number_integer()) {
        return oem["Id"].get<int>();
    }
    int id = 0;
    return WholeNumber(W::Text(resource, "Id"), id) ? id : position;
}

std::string DiskState(const json& drive, const std::map<std::string, std::string>& linked) {
    const json& oem = W::Oem(drive);
    if (Has(oem, "State")) {
        return W::Text(oem, "State");
    }
    const std::string spare = W::Text(drive, "HotspareType");
    if (spare == "Global") {
        return "GHS";
    }
    if (spare == "Dedicated") {
        return "DHS";
    }
    const auto found = linked.find(W::Link(drive));
    if (found != linked.end()) {
        return found->second;
    }
    const json& status = Member(drive, "Status");
    if (W::Text(status, "State") == "UnavailableOffline") {
        return "Offline";
    }
    if (W::Text(status, "Health") == "Critical") {
        return "Failed";
    }
    return "UGood";
}

// The slot of a drive: PhysicalLocation.PartLocation, else the deprecated Location array's
// first entry that names a slot or bay (else its first entry).
std::string SlotOf(const json& drive) {
    const json& part = Member(Member(drive, "PhysicalLocation"), "PartLocation");
    std::string slot = W::Text(part, "ServiceLabel");
    if (slot.empty()) {
        slot = W::Text(part, "LocationOrdinalValue");
    }
    const json& locations = Member(drive, "Location");
    if (slot.empty() && locations.is_array()) {
        for (const json& location : locations) {
            const std::string format = W::Text(location, "InfoFormat");
            if (slot.empty() || Contains(format, "slot") || Contains(format, "bay")) {
                slot = W::Text(location, "Info");
                if (Contains(format, "slot") || Contains(format, "bay")) {
                    break;
                }
            }
        }
    }
    return slot;
}

// Whole MiB of a byte count, or model::kNotReported when the BMC sent none (missing or null).
long long Megabytes(const json& resource, const char* key) {
    const json& value = Member(resource, key);
    if (!value.is_number()) {
        return model::kNotReported;
    }
    return std::max(0LL, W::Number(resource, key, 0)) / kMebibyte;
}

// The drives a volume links to.
std::vector<std::string> DriveLinksOf(const json& volume) {
    std::vector<std::string> paths;
    for (const json& link : MembersOf(Member(Member(volume, "Links"), "Drives"))) {
        const std::string path = W::Link(link);
        if (!path.empty()) {
            paths.push_back(path);
        }
    }
    return paths;
}

model::Disk DiskFrom(const json& drive, int position,
                     const std::map<std::string, std::string>& linked) {
    const json& oem = W::Oem(drive);
    model::Disk disk;
    // Ours, else the drive's place in the Storage's Drives array: a BMC's drive Ids are often
    // serial numbers or bay names, and a disk keeps its number from run to run.
    disk.id = Has(oem, "Id") && oem["Id"].is_number_integer() ? oem["Id"].get<int>() : position;
    disk.slot_no = OemOr(oem, "SlotNumber", SlotOf(drive));
    disk.state = DiskState(drive, linked);
    disk.capacity_mb = Megabytes(drive, "CapacityBytes");
    const std::string model = W::Text(drive, "Model");
    disk.product_name = OemOr(oem, "ProductName", model.empty() ? W::Text(drive, "Name") : model);
    disk.disk_type = OemOr(oem, "DiskType", W::Text(drive, "Protocol"));
    disk.media_type = OemOr(oem, "MediaType", W::Text(drive, "MediaType"));
    disk.health_status = OemOr(oem, "HealthStatus", W::Text(Member(drive, "Status"), "Health"));
    disk.serial_no = W::Text(drive, "SerialNumber");
    disk.fru_no = W::Text(oem, "FruNumber");
    disk.part_no = W::Text(drive, "PartNumber");
    disk.manufacturer = W::Text(drive, "Manufacturer");
    disk.connector_id = static_cast<int>(W::Number(oem, "ConnectorId", 0));
    return disk;
}

// A JBOD disk's volume: one drive handed through as it is. A volume of RAIDType "None" over
// several drives is a volume without redundancy, not a JBOD disk.
bool IsPassThrough(const json& volume) {
    const json& oem = W::Oem(volume);
    if (Has(oem, "PassThrough") && oem["PassThrough"].is_boolean()) {
        return oem["PassThrough"].get<bool>();
    }
    const bool raw = Has(volume, "RAIDType") ? W::Text(volume, "RAIDType") == "None"
                                             : W::Text(volume, "VolumeType") == "RawDevice";
    return raw && DriveLinksOf(volume).size() == 1;
}

// The level of a volume: RAIDType, else the older VolumeType, else empty.
std::string LevelOf(const json& volume) {
    if (Has(volume, "RAIDType")) {
        return W::Level(W::Text(volume, "RAIDType"));
    }
    const std::string type = W::Text(volume, "VolumeType");
    static const std::pair<const char*, const char*> kTypes[] = {
        {"NonRedundant", "0"},
        {"Mirrored", "1"},
        {"StripedWithParity", "5"},
        {"SpannedMirrors", "10"},
        {"SpannedStripesWithParity", "50"}};
    for (const auto& [name, level] : kTypes) {
        if (type == name) {
            return level;
        }
    }
    return {};
}

int WritePolicyOf(const std::string& word, bool counts_from_one) {
    if (word.empty()) {
        return model::kNotReported;
    }
    const int base = counts_from_one ? 1 : 0;
    if (word == "WriteThrough") {
        return base;
    }
    if (word == "ProtectedWriteBack") {
        return base + 1;
    }
    if (word == "UnprotectedWriteBack") {
        return base + 2;
    }
    return model::kNotReported;
}

int ReadPolicyOf(const std::string& word) {
    if (word.empty()) {
        return model::kNotReported;
    }
    if (word == "Off") {
        return 0;
    }
    if (word == "ReadAhead") {
        return 1;
    }
    if (word == "AdaptiveReadAhead") {
        return 2;
    }
    return model::kNotReported;
}

// The volume's state from its Status; empty when the BMC reports no health.
std::string StatusOf(const json& volume) {
    const std::string health = W::Text(Member(volume, "Status"), "Health");
    if (health == "OK") {
        return "Optimal";
    }
    if (health == "Warning") {
        return "Degraded";
    }
    if (health == "Critical") {
        return "Failed";
    }
    return {};
}

model::Volume VolumeFrom(const json& resource, int position, const std::string& family,
                         const std::map<std::string, int>& disk_of) {
    const json& oem = W::Oem(resource);
    model::Volume volume;
    volume.id = ResourceId(resource, position);
    volume.name =
        Has(resource, "DisplayName") ? W::Text(resource, "DisplayName") : W::Text(resource, "Name");
    volume.raid_level = OemOr(oem, "RAIDLevel", LevelOf(resource));
    const json& links = Member(resource, "Links");
    std::vector<int> members;
    for (const json& link : MembersOf(Member(links, "Drives"))) {
        const auto found = disk_of.find(W::Link(link));
        if (found != disk_of.end()) {
            members.push_back(found->second);
        }
    }
    if (Has(oem, "Spans") && oem["Spans"].is_array()) {
        for (const json& span : oem["Spans"]) {
            volume.spans.push_back(Numbers(span));
        }
    } else if (!members.empty()) {
        volume.spans.push_back(members);
    }
    volume.size_mb = Megabytes(resource, "CapacityBytes");
    volume.strip_kb = static_cast<int>(W::Number(resource, "StripSizeBytes", 0) / 1024);
    volume.status = OemOr(oem, "Status", StatusOf(resource));
    volume.bootable = W::Flag(resource, "IsBootCapable", false);
    volume.bootable_known =
        Has(resource, "IsBootCapable") && resource["IsBootCapable"].is_boolean();
    volume.write_policy = static_cast<int>(
        W::Number(oem, "WritePolicy",
                  WritePolicyOf(W::Text(resource, "WriteCachePolicy"), family == "OOB_MICROCHIP")));
    volume.read_policy = static_cast<int>(
        W::Number(oem, "ReadPolicy", ReadPolicyOf(W::Text(resource, "ReadCachePolicy"))));
    // Standard Redfish has no I/O, access or disk cache policy of a volume: not reported.
    volume.io_policy = static_cast<int>(W::Number(oem, "IOPolicy", model::kNotReported));
    volume.access_policy = static_cast<int>(W::Number(oem, "AccessPolicy", model::kNotReported));
    volume.cache_policy = static_cast<int>(W::Number(oem, "DiskCachePolicy", model::kNotReported));
    volume.initialization = static_cast<int>(W::Number(oem, "Initialization", model::kNotReported));
    volume.encrypted = W::Flag(resource, "Encrypted", false);
    for (const json& link : MembersOf(Member(links, "DedicatedSpareDrives"))) {
        const auto found = disk_of.find(W::Link(link));
        if (found != disk_of.end()) {
            volume.dedicated_spares.push_back(found->second);
        }
    }
    return volume;
}

// The StorageController of a Storage: the first member of Controllers, else of the deprecated
// StorageControllers array. path receives where it lives.
json ControllerOf(const json& storage, std::string& path) {
    for (const char* key : {"Controllers", "StorageControllers"}) {
        const std::vector<json> members = MembersOf(Member(storage, key));
        if (!members.empty() && members.front().is_object() && members.front().size() > 1) {
            path = W::Link(members.front());
            return members.front();
        }
    }
    path.clear();
    return json::object();
}

std::optional<std::string> EkmModeOf(const json& storage) {
    const json& oem = W::Oem(storage);
    if (Has(oem, "EkmMode")) {
        return oem["EkmMode"].is_string() ? std::optional<std::string>(W::Text(oem, "EkmMode"))
                                          : std::nullopt;
    }
    const std::string mode = W::Text(storage, "EncryptionMode");
    if (mode == "Disabled") {
        return std::string("None");
    }
    if (mode == "UseLocalKey") {
        return std::string("Local");
    }
    if (mode == "UseExternalKey") {
        return std::string("External");
    }
    return std::nullopt;
}

} // namespace

const model::Controller* StorageTree::Find(const std::string& family, int id) const {
    for (const model::Controller& controller : machine.controllers) {
        if (controller.family == family && controller.id == id) {
            return &controller;
        }
    }
    return nullptr;
}

const ControllerLinks* StorageTree::LinksOf(const std::string& family, int id) const {
    const auto found = links.find({family, id});
    return found == links.end() ? nullptr : &found->second;
}

StorageTreeReader::StorageTreeReader(std::shared_ptr<RedfishClient> client, std::string system)
    : client_(std::move(client)), system_(std::move(system)) {}

std::string StorageTreeReader::FamilyOf(const std::string& manufacturer, const std::string& model) {
    // The model decides first: a server maker sells others' controllers under its own name.
    if (Contains(manufacturer, "marvell") || Contains(model, "88se9") || Contains(model, "m.2")) {
        return "OOB_M2";
    }
    if (Contains(model, "vroc") || Contains(model, "vmd") ||
        Contains(model, "virtual raid on cpu")) {
        return "OOB_VROC";
    }
    for (const char* word :
         {"adaptec", "smartraid", "smarthba", "smartioc", "smart raid", "smart hba", "microchip"}) {
        if (Contains(model, word)) {
            return "OOB_MICROCHIP";
        }
    }
    if (Contains(manufacturer, "microchip") || Contains(manufacturer, "adaptec") ||
        Contains(manufacturer, "pmc-sierra")) {
        return "OOB_MICROCHIP";
    }
    // MegaRAID, SAS3xxx and the "RAID 9xxx" / "9xxx-8i" names of Broadcom's controllers (and of
    // the server makers' rebrands of them), Broadcom, LSI or Avago as manufacturer, and any
    // other controller: the general hardware RAID form.
    return "OOB_LSI";
}

void StorageTreeReader::AddStorage(const json& storage, StorageTree& tree,
                                   const std::string& system) {
    const json& oem = W::Oem(storage);
    std::string controller_path;
    const json controller = ControllerOf(storage, controller_path);
    const json& controller_oem = W::Oem(controller);
    const bool ours = !oem.empty();

    model::Controller model;
    const std::string manufacturer = W::Text(controller, "Manufacturer");
    const std::string standard_model = W::Text(controller, "Model");
    model.family = OemOr(oem, "Family", FamilyOf(manufacturer, standard_model));
    model.product_name =
        OemOr(controller_oem, "ProductName",
              standard_model.empty() ? W::Text(controller, "Name") : standard_model);
    model.serial_no = W::Text(controller, "SerialNumber");
    model.fru_no = W::Text(controller_oem, "FruNumber");
    model.part_no = W::Text(controller, "PartNumber");
    model.vendor = OemOr(controller_oem, "Vendor", manufacturer);
    model.manufacturer = OemOr(controller_oem, "Manufacturer", manufacturer);
    model.version = W::Text(controller, "FirmwareVersion");
    model.model = OemOr(controller_oem, "Model", standard_model);
    model.name = OemOr(controller_oem, "Name", W::Text(controller, "Name"));
    if (Has(controller_oem, "RaidLevels")) {
        model.raid_levels = Texts(controller_oem["RaidLevels"]);
    } else {
        for (const std::string& type : Texts(Member(controller, "SupportedRAIDTypes"))) {
            const std::string level = W::Level(type);
            if (!level.empty()) {
                model.raid_levels.push_back(level);
            }
        }
    }
    model.min_stripe_kb = static_cast<int>(W::Number(controller_oem, "MinStripeSizeKiB", 0));
    model.max_stripe_kb = static_cast<int>(W::Number(controller_oem, "MaxStripeSizeKiB", 0));
    for (const json& connector : MembersOf(Member(controller_oem, "Connectors"))) {
        model::Connector made;
        made.id = static_cast<int>(W::Number(connector, "Id", 0));
        made.name = W::Text(connector, "Name");
        made.mode = W::Text(connector, "Mode");
        model.connectors.push_back(made);
    }
    model.connector_modes = Texts(Member(controller_oem, "ConnectorModes"));
    if (Has(controller_oem, "FirmwareDeviceOrder") &&
        controller_oem["FirmwareDeviceOrder"].is_string()) {
        model.fw_device_order = W::Text(controller_oem, "FirmwareDeviceOrder");
    }
    model.fw_device_order_modes = Texts(Member(controller_oem, "FirmwareDeviceOrderModes"));
    model.ekm_mode = EkmModeOf(storage);
    if (Has(oem, "EkmModes")) {
        model.ekm_modes = Texts(oem["EkmModes"]);
    } else if (Has(storage, "EncryptionMode")) {
        model.ekm_modes = {"none", "local", "external"};
    }
    const json& location = Member(Member(controller, "Location"), "PartLocation");
    model.slot =
        static_cast<int>(W::Number(oem, "Slot", W::Number(location, "LocationOrdinalValue", 0)));

    ControllerLinks links;
    links.ours = ours;
    for (const json& fault : MembersOf(Member(oem, "PendingFaults"))) {
        const json& argument = Member(fault, "Argument");
        links.pending_faults.emplace_back(
            W::Text(fault, "Operation"),
            argument.is_null() ? std::nullopt
                               : std::optional<std::string>(W::Text(fault, "Argument")));
    }
    links.system = system;
    links.storage = W::Link(storage);
    links.reset_to_defaults = Has(Member(storage, "Actions"), "#Storage.ResetToDefaults");
    links.raid_types = Texts(Member(controller, "SupportedRAIDTypes"));
    links.controller = controller_path;
    links.volumes = W::Link(Member(storage, "Volumes"));

    // Volumes first: a real BMC tells a disk's membership only through them. A volume that lives
    // under another Storage of the same collection is that one's, whatever link led here: each
    // volume is shown once, and written to only through its own Storage.
    std::vector<json> volumes;
    const std::string own = links.storage + "/";
    const std::string siblings = links.storage.substr(0, links.storage.rfind('/') + 1);
    for (json& volume : MembersOf(Member(storage, "Volumes"))) {
        const std::string path = W::Link(volume);
        if (!siblings.empty() && path.rfind(siblings, 0) == 0 && path.rfind(own, 0) != 0) {
            RAIDCFG_LOG(2) << "Redfish: the Storage " << links.storage << " links to the volume "
                           << path << " of another Storage; it is left out here";
            continue;
        }
        volumes.push_back(std::move(volume));
    }
    std::map<std::string, std::string> linked; // drive path -> "Online" or "JBOD"
    for (const json& volume : volumes) {
        const std::string state = IsPassThrough(volume) ? "JBOD" : "Online";
        for (const std::string& path : DriveLinksOf(volume)) {
            linked.emplace(path, state);
        }
    }
    std::map<std::string, int> disk_of;
    int position = 0;
    for (const json& drive : MembersOf(Member(storage, "Drives"))) {
        // An empty bay is not a disk, and keeps its number unused, so that the other disks keep
        // theirs when a drive is put in; a drive that could not be read is left out as well.
        const int place = position++;
        if (W::Text(Member(drive, "Status"), "State") == "Absent") {
            continue;
        }
        if (drive.is_object() && drive.size() == 1 && Has(drive, "@odata.id")) {
            RAIDCFG_LOG(2) << "Redfish: the drive " << W::Link(drive)
                           << " could not be read and is left out";
            continue;
        }
        model::Disk disk = DiskFrom(drive, place, linked);
        links.drives[disk.id] = W::Link(drive);
        disk_of[W::Link(drive)] = disk.id;
        model.disks.push_back(std::move(disk));
    }
    position = 0;
    for (const json& resource : volumes) {
        if (IsPassThrough(resource)) {
            for (const json& link : MembersOf(Member(Member(resource, "Links"), "Drives"))) {
                const auto found = disk_of.find(W::Link(link));
                if (found != disk_of.end()) {
                    links.pass_through[found->second] = W::Link(resource);
                }
            }
            continue;
        }
        // A RAID volume without a cache policy tells that the BMC does not know it (a JBOD
        // disk's pass-through volume has none to show).
        links.lacks_write_cache = links.lacks_write_cache || !Has(resource, "WriteCachePolicy");
        links.lacks_read_cache = links.lacks_read_cache || !Has(resource, "ReadCachePolicy");
        model::Volume volume = VolumeFrom(resource, position++, model.family, disk_of);
        links.volume_paths[volume.id] = W::Link(resource);
        const json& initialize = Member(Member(resource, "Actions"), "#Volume.Initialize");
        if (initialize.is_object()) {
            links.initialize_targets[volume.id] = W::Text(initialize, "target");
        }
        model.volumes.push_back(std::move(volume));
    }
    if (Has(oem, "GlobalHotSpares")) {
        model.global_hot_spares = Numbers(oem["GlobalHotSpares"]);
    } else {
        for (const model::Disk& disk : model.disks) {
            if (disk.state == "GHS") {
                model.global_hot_spares.push_back(disk.id);
            }
        }
    }

    // Which classes list the controller: with our Oem section exactly one; without it, its own
    // family and the CFC class, which sees every controller of a real BMC.
    std::vector<std::string> families;
    if (ours && W::Flag(oem, "Cfc", false)) {
        families.emplace_back("OOB_CFC");
    } else {
        families.push_back(model.family == "OOB_CFC" ? std::string("OOB_LSI") : model.family);
        if (!ours) {
            families.emplace_back("OOB_CFC");
        }
    }
    for (const std::string& family : families) {
        model::Controller listed = model;
        listed.family = family;
        const int position_in_family = static_cast<int>(
            std::count_if(tree.machine.controllers.begin(), tree.machine.controllers.end(),
                          [&family](const model::Controller& c) { return c.family == family; }));
        listed.id = static_cast<int>(
            W::Number(oem, "Id", W::Number(controller_oem, "Id", position_in_family)));
        if (!ours && family == "OOB_CFC") {
            listed.id = position_in_family; // the CFC class numbers every controller itself
        }
        tree.links[{family, listed.id}] = links;
        tree.machine.controllers.push_back(std::move(listed));
    }
}

ManagerInfo StorageTreeReader::ManagerFrom(const json& manager) {
    const json& oem = W::Oem(manager);
    ManagerInfo info;
    if (oem.empty()) {
        // A standard BMC: the documented type of a BMC that does not tell its own.
        info.ambit_type = kStandardBmcType;
        return info;
    }
    info.ssh = W::Flag(oem, "Ssh", true);
    info.rest = W::Flag(oem, "Rest", true);
    info.cim = W::Flag(oem, "Cim", true);
    info.rest_connections = static_cast<int>(std::max(0LL, W::Number(oem, "RestConnections", 1)));
    if (Has(oem, "AmbitType") && oem["AmbitType"].is_number_integer()) {
        info.ambit_type = oem["AmbitType"].get<int>();
    } else {
        info.ambit_type.reset();
    }
    info.vantor_v3 = W::Flag(oem, "VantorV3", false);
    info.support_info = W::Flag(oem, "SupportInfo", true);
    return info;
}

RedfishStatus StorageTreeReader::Fail(Quillon::RaidConfig::RaidErrorCode code,
                                      const std::string& text) {
    RedfishStatus status{code, "BMC " + client_->Authority() + ": " + text};
    RAIDCFG_LOG(1) << "Redfish: " << status.text;
    return Remember(status);
}

RedfishStatus StorageTreeReader::FindManager(std::string& path) {
    path.clear();
    const std::string managers = W::Link(Member(client_->ServiceRoot(), "Managers"));
    if (managers.empty()) {
        return {};
    }
    json collection;
    RedfishStatus status = client_->Get(managers, collection);
    if (!status.ok()) {
        return status;
    }
    for (const json& member : MembersOf(collection)) {
        const std::string link = W::Link(member);
        if (link.empty()) {
            continue;
        }
        if (path.empty()) {
            path = link;
        }
        json manager;
        status = client_->Get(link, manager);
        if (!status.ok()) {
            return status;
        }
        if (W::Text(manager, "ManagerType") == "BMC") {
            path = link;
            break;
        }
    }
    return {};
}

RedfishStatus StorageTreeReader::Manager(ManagerInfo& info) {
    if (manager_) {
        info = *manager_;
        return {};
    }
    RedfishStatus status;
    if (!discovered_) {
        status = Discover();
    }
    std::string path = manager_path_;
    if (status.ok() && path.empty()) {
        status = FindManager(path);
    }
    json manager = json::object();
    if (status.ok() && !path.empty()) {
        status = client_->Get(path, manager);
    }
    // A BMC whose Manager cannot be found or read is a BMC without our section: the defaults.
    if (status.code == Quillon::RaidConfig::RAID_TARGET_NOT_FOUND ||
        status.code == Quillon::RaidConfig::RAID_REST_FAILED) {
        RAIDCFG_LOG(2) << "Redfish: no Manager of the BMC could be read (" << status.text
                       << "); taking it for a standard BMC";
        status = RedfishStatus{};
        manager = json::object();
    }
    if (!status.ok()) {
        return status;
    }
    manager_ = ManagerFrom(manager);
    info = *manager_;
    return status;
}

RedfishStatus StorageTreeReader::Discover() {
    if (!failure_.ok()) {
        return failure_;
    }
    const json& root = client_->ServiceRoot();
    const std::string systems = W::Link(Member(root, "Systems"));
    if (systems.empty()) {
        return Fail(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND,
                    "the service root lists no Systems collection");
    }
    json collection;
    RedfishStatus status = client_->Get(systems, collection);
    if (!status.ok()) {
        return Remember(status);
    }
    std::vector<StoragePlace> found;
    std::vector<std::string> ids;
    std::string manager;
    bool matched = false;
    for (const json& entry : MembersOf(collection)) {
        const std::string link = W::Link(entry);
        if (link.empty()) {
            continue;
        }
        json system;
        status = client_->Get(link, system);
        if (!status.ok()) {
            return Remember(status);
        }
        const std::string id = W::Text(system, "Id");
        ids.push_back(id);
        if (!system_.empty() && id != system_) {
            continue;
        }
        matched = true;
        if (manager.empty()) {
            const std::vector<json> managed_by =
                MembersOf(Member(Member(system, "Links"), "ManagedBy"));
            if (!managed_by.empty()) {
                manager = W::Link(managed_by.front());
            }
        }
        const std::string storage = W::Link(Member(system, "Storage"));
        if (storage.empty()) {
            RAIDCFG_LOG(2) << "Redfish: system " << id << " (" << link
                           << ") lists no Storage collection";
            continue;
        }
        json storages;
        status = client_->Get(storage, storages);
        if (!status.ok()) {
            return Remember(status);
        }
        for (const json& member : MembersOf(storages)) {
            const std::string path = W::Link(member);
            if (!path.empty()) {
                found.push_back({path, id});
            }
        }
    }
    if (!system_.empty() && !matched) {
        std::string listed;
        for (const std::string& id : ids) {
            listed += (listed.empty() ? "" : ", ") + ("\"" + id + "\"");
        }
        return Fail(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND,
                    "no system has the Id \"" + system_ + "\" (the BMC's systems: " +
                        (listed.empty() ? std::string("none") : listed) + ")");
    }
    members_ = std::move(found);
    manager_path_ = manager;
    discovered_ = true;
    return {};
}

RedfishStatus StorageTreeReader::Load(std::shared_ptr<const StorageTree>& tree) {
    if (tree_) {
        tree = tree_;
        return {};
    }
    if (!failure_.ok()) {
        return failure_;
    }
    RedfishStatus status;
    if (!discovered_) {
        status = Discover();
        if (!status.ok()) {
            return status;
        }
    }
    auto made = std::make_shared<StorageTree>();
    for (const StoragePlace& member : members_) {
        auto& storage = storages_[member.path];
        if (storage.is_null()) {
            // One request per Storage: its drives, volumes and controllers come expanded with it.
            status = client_->GetExpanded(member.path, 2, storage);
            if (!status.ok()) {
                storages_.erase(member.path);
                return Remember(status);
            }
            if (!storage.is_object()) {
                storages_.erase(member.path);
                return Fail(Quillon::RaidConfig::RAID_REST_FAILED,
                            "the Storage resource " + member.path + " is not a JSON object");
            }
            if (!Has(storage, "@odata.id")) {
                storage["@odata.id"] = member.path;
            }
        }
        const std::size_t before = made->machine.controllers.size();
        AddStorage(storage, *made, member.system);
        for (std::size_t i = before; i < made->machine.controllers.size(); ++i) {
            const model::Controller& listed = made->machine.controllers[i];
            RAIDCFG_LOG(3) << "Redfish: " << listed.family << " controller " << listed.id
                           << " is Storage " << member.path << " of system " << member.system;
        }
    }
    ManagerInfo manager;
    if (Manager(manager).ok()) {
        made->machine.bmc.support_info = manager.support_info;
    }
    tree_ = made;
    tree = tree_;
    return status;
}

RedfishStatus StorageTreeReader::Remember(const RedfishStatus& status) {
    // The client has already tried again; every later read of this run would only fail alike.
    if (!status.ok()) {
        failure_ = status;
    }
    return status;
}

void StorageTreeReader::Drop() {
    storages_.clear();
    tree_.reset();
}

void StorageTreeReader::Drop(const std::string& storage) {
    if (storages_.erase(storage) == 0) {
        Drop();
        return;
    }
    tree_.reset();
}

} // namespace redfish
