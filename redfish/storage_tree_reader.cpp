#include "redfish/storage_tree_reader.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <set>
#include <utility>

#include "redfish/redfish_words.hpp"

namespace redfish {

namespace {

using nlohmann::json;
using W = RedfishWords;

constexpr const char* kStorage = "/redfish/v1/Systems/1/Storage";
constexpr const char* kManager = "/redfish/v1/Managers/1";
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

// The id of a Drive or Volume: ours, else its Id when that is a number, else its position.
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

sim::Disk DiskFrom(const json& drive, int position,
                   const std::map<std::string, std::string>& linked) {
    const json& oem = W::Oem(drive);
    sim::Disk disk;
    disk.id = ResourceId(drive, position);
    const json& part = Member(Member(drive, "PhysicalLocation"), "PartLocation");
    std::string slot = W::Text(part, "ServiceLabel");
    if (slot.empty()) {
        slot = W::Text(part, "LocationOrdinalValue");
    }
    disk.slot_no = OemOr(oem, "SlotNumber", slot);
    disk.state = DiskState(drive, linked);
    disk.capacity_mb = W::Number(drive, "CapacityBytes", 0) / kMebibyte;
    disk.product_name = OemOr(oem, "ProductName", W::Text(drive, "Model"));
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

bool IsPassThrough(const json& volume) {
    const json& oem = W::Oem(volume);
    if (Has(oem, "PassThrough") && oem["PassThrough"].is_boolean()) {
        return oem["PassThrough"].get<bool>();
    }
    return W::Text(volume, "RAIDType") == "None";
}

int WritePolicyOf(const std::string& word, bool counts_from_one) {
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
    return 0;
}

int ReadPolicyOf(const std::string& word) {
    if (word == "ReadAhead") {
        return 1;
    }
    if (word == "AdaptiveReadAhead") {
        return 2;
    }
    return 0;
}

std::string StatusOf(const json& volume) {
    const std::string health = W::Text(Member(volume, "Status"), "Health");
    if (health == "Warning") {
        return "Degraded";
    }
    if (health == "Critical") {
        return "Failed";
    }
    return "Optimal";
}

sim::Volume VolumeFrom(const json& resource, int position, const std::string& family,
                       const std::map<std::string, int>& disk_of) {
    const json& oem = W::Oem(resource);
    sim::Volume volume;
    volume.id = ResourceId(resource, position);
    volume.name =
        Has(resource, "DisplayName") ? W::Text(resource, "DisplayName") : W::Text(resource, "Name");
    volume.raid_level = OemOr(oem, "RAIDLevel", W::Level(W::Text(resource, "RAIDType")));
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
    volume.size_mb = W::Number(resource, "CapacityBytes", 0) / kMebibyte;
    volume.strip_kb = static_cast<int>(W::Number(resource, "StripSizeBytes", 0) / 1024);
    volume.status = OemOr(oem, "Status", StatusOf(resource));
    volume.bootable = W::Flag(resource, "IsBootCapable", false);
    volume.write_policy = static_cast<int>(
        W::Number(oem, "WritePolicy",
                  WritePolicyOf(W::Text(resource, "WriteCachePolicy"), family == "OOB_MICROCHIP")));
    volume.read_policy = static_cast<int>(
        W::Number(oem, "ReadPolicy", ReadPolicyOf(W::Text(resource, "ReadCachePolicy"))));
    volume.io_policy = static_cast<int>(W::Number(oem, "IOPolicy", 0));
    volume.access_policy = static_cast<int>(W::Number(oem, "AccessPolicy", 0));
    volume.cache_policy = static_cast<int>(W::Number(oem, "DiskCachePolicy", 0));
    volume.initialization = static_cast<int>(W::Number(oem, "Initialization", 0));
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

const sim::Controller* StorageTree::Find(const std::string& family, int id) const {
    for (const sim::Controller& controller : machine.controllers) {
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

StorageTreeReader::StorageTreeReader(std::shared_ptr<RedfishClient> client)
    : client_(std::move(client)) {}

std::string StorageTreeReader::FamilyOf(const std::string& manufacturer, const std::string& model) {
    const std::string maker = Lower(manufacturer);
    if (Contains(maker, "broadcom") || Contains(maker, "lsi") || Contains(maker, "avago")) {
        return "OOB_LSI";
    }
    if (Contains(maker, "microchip") || Contains(maker, "adaptec")) {
        return "OOB_MICROCHIP";
    }
    if (Contains(maker, "marvell")) {
        return "OOB_M2";
    }
    if (Contains(maker, "intel") && (Contains(model, "vroc") || Contains(model, "vmd"))) {
        return "OOB_VROC";
    }
    return "OOB_LSI";
}

void StorageTreeReader::AddStorage(const json& storage, StorageTree& tree) {
    const json& oem = W::Oem(storage);
    std::string controller_path;
    const json controller = ControllerOf(storage, controller_path);
    const json& controller_oem = W::Oem(controller);
    const bool ours = !oem.empty();

    sim::Controller model;
    const std::string manufacturer = W::Text(controller, "Manufacturer");
    const std::string standard_model = W::Text(controller, "Model");
    model.family = OemOr(oem, "Family", FamilyOf(manufacturer, standard_model));
    model.product_name = OemOr(controller_oem, "ProductName", standard_model);
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
        sim::Connector made;
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
    links.storage = W::Link(storage);
    links.controller = controller_path;
    links.volumes = W::Link(Member(storage, "Volumes"));

    // Volumes first: a real BMC tells a disk's membership only through them.
    const std::vector<json> volumes = MembersOf(Member(storage, "Volumes"));
    std::map<std::string, std::string> linked; // drive path -> "Online" or "JBOD"
    for (const json& volume : volumes) {
        const std::string state = IsPassThrough(volume) ? "JBOD" : "Online";
        for (const json& link : MembersOf(Member(Member(volume, "Links"), "Drives"))) {
            linked.emplace(W::Link(link), state);
        }
    }
    std::map<std::string, int> disk_of;
    int position = 0;
    for (const json& drive : MembersOf(Member(storage, "Drives"))) {
        sim::Disk disk = DiskFrom(drive, position++, linked);
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
        sim::Volume volume = VolumeFrom(resource, position++, model.family, disk_of);
        links.volume_paths[volume.id] = W::Link(resource);
        model.volumes.push_back(std::move(volume));
    }
    if (Has(oem, "GlobalHotSpares")) {
        model.global_hot_spares = Numbers(oem["GlobalHotSpares"]);
    } else {
        for (const sim::Disk& disk : model.disks) {
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
        sim::Controller listed = model;
        listed.family = family;
        const int position_in_family = static_cast<int>(
            std::count_if(tree.machine.controllers.begin(), tree.machine.controllers.end(),
                          [&family](const sim::Controller& c) { return c.family == family; }));
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
        info.ambit_type.reset(); // a BMC without our section does not tell its type
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

RedfishStatus StorageTreeReader::Manager(ManagerInfo& info) {
    if (manager_) {
        info = *manager_;
        return {};
    }
    json manager;
    RedfishStatus status = client_->Get(kManager, manager);
    if (status.code == Quillon::RaidConfig::RAID_TARGET_NOT_FOUND) {
        // A BMC whose Manager has another id: the first of the Managers collection, and the
        // defaults of a BMC without our section when there is none.
        json managers;
        manager = json::object();
        status = client_->Get("/redfish/v1/Managers", managers);
        const std::vector<json> members = MembersOf(managers);
        if (status.ok() && !members.empty() && !W::Link(members.front()).empty()) {
            status = client_->Get(W::Link(members.front()), manager);
        }
        if (status.code == Quillon::RaidConfig::RAID_TARGET_NOT_FOUND ||
            status.code == Quillon::RaidConfig::RAID_REST_FAILED) {
            status = RedfishStatus{};
            manager = json::object();
        }
    }
    if (!status.ok()) {
        return status;
    }
    manager_ = ManagerFrom(manager);
    info = *manager_;
    return status;
}

RedfishStatus StorageTreeReader::Load(std::shared_ptr<const StorageTree>& tree) {
    if (tree_) {
        tree = tree_;
        return {};
    }
    if (!unreachable_.ok()) {
        return unreachable_;
    }
    RedfishStatus status;
    if (members_.empty()) {
        json collection;
        status = client_->Get(kStorage, collection);
        if (!status.ok()) {
            Remember(status);
            return status;
        }
        for (const json& member : MembersOf(collection)) {
            const std::string path = W::Link(member);
            if (!path.empty()) {
                members_.push_back(path);
            }
        }
    }
    auto made = std::make_shared<StorageTree>();
    for (const std::string& path : members_) {
        auto& storage = storages_[path];
        if (storage.is_null()) {
            // One request per Storage: its drives, volumes and controllers come expanded with it.
            status = client_->GetExpanded(path, 2, storage);
            if (!status.ok()) {
                storages_.erase(path);
                Remember(status);
                return status;
            }
            if (!Has(storage, "@odata.id")) {
                storage["@odata.id"] = path;
            }
        }
        AddStorage(storage, *made);
    }
    ManagerInfo manager;
    if (Manager(manager).ok()) {
        made->machine.bmc.support_info = manager.support_info;
    }
    tree_ = made;
    store_.reset();
    tree = tree_;
    return status;
}

RedfishStatus StorageTreeReader::Store(std::shared_ptr<sim::MachineStore>& store,
                                       std::shared_ptr<const StorageTree>& tree) {
    RedfishStatus status = Load(tree);
    if (!status.ok()) {
        return status;
    }
    if (!store_) {
        store_ = std::make_shared<sim::MachineStore>(tree->machine);
    }
    store = store_;
    return status;
}

void StorageTreeReader::Remember(const RedfishStatus& status) {
    // The client has already tried again; every later read of this run would only wait as long.
    if (status.code == Quillon::RaidConfig::RAID_CONNECT_FAILED) {
        unreachable_ = status;
    }
}

void StorageTreeReader::Drop() {
    members_.clear();
    storages_.clear();
    tree_.reset();
    store_.reset();
}

void StorageTreeReader::Drop(const std::string& storage) {
    if (storages_.erase(storage) == 0) {
        Drop();
        return;
    }
    tree_.reset();
    store_.reset();
}

} // namespace redfish
