#include "emulator/write_handlers.hpp"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

#include "backend/records.hpp"
#include "emulator/drive_uris.hpp"
#include "emulator/redfish_errors.hpp"
#include "emulator/redfish_names.hpp"
#include "emulator/resource_builder.hpp"
#include "sim/sim_encryption_driver.hpp"
#include "sim/sim_fw_dev_order_driver.hpp"
#include "sim/sim_raid_driver.hpp"

namespace emulator {

using nlohmann::json;
namespace rc = Quillon::RaidConfig;

namespace {

constexpr long long kBytesPerMiB = 1048576;
constexpr long long kBytesPerKiB = 1024;

// A property of a request body with a value of the wrong type; answered with 400.
struct BadProperty {
    std::string name;
};

const json* Oem(const json& body) {
    if (!body.contains("Oem")) {
        return nullptr;
    }
    const json& oem = body["Oem"];
    if (!oem.is_object()) {
        throw BadProperty{"Oem"};
    }
    if (!oem.contains("Raidcfg")) {
        return nullptr;
    }
    if (!oem["Raidcfg"].is_object()) {
        throw BadProperty{"Oem/Raidcfg"};
    }
    return &oem["Raidcfg"];
}

std::optional<std::string> Text(const json* object, const std::string& name) {
    if (object == nullptr || !object->contains(name)) {
        return std::nullopt;
    }
    const json& value = (*object)[name];
    if (!value.is_string()) {
        throw BadProperty{name};
    }
    return value.get<std::string>();
}

std::optional<long long> Number(const json* object, const std::string& name) {
    if (object == nullptr || !object->contains(name)) {
        return std::nullopt;
    }
    const json& value = (*object)[name];
    if (!value.is_number_integer()) {
        throw BadProperty{name};
    }
    return value.get<long long>();
}

std::optional<int> Int(const json* object, const std::string& name) {
    const std::optional<long long> value = Number(object, name);
    if (value && (*value < -2147483647LL || *value > 2147483647LL)) {
        throw BadProperty{name};
    }
    return value ? std::optional<int>(static_cast<int>(*value)) : std::nullopt;
}

std::optional<bool> Bool(const json* object, const std::string& name) {
    if (object == nullptr || !object->contains(name)) {
        return std::nullopt;
    }
    const json& value = (*object)[name];
    if (!value.is_boolean()) {
        throw BadProperty{name};
    }
    return value.get<bool>();
}

std::vector<int> IntList(const json& value, const std::string& name) {
    if (!value.is_array()) {
        throw BadProperty{name};
    }
    std::vector<int> ids;
    for (const json& id : value) {
        if (!id.is_number_integer()) {
            throw BadProperty{name};
        }
        ids.push_back(id.get<int>());
    }
    return ids;
}

std::vector<std::string> TextList(const json& value, const std::string& name) {
    if (!value.is_array()) {
        throw BadProperty{name};
    }
    std::vector<std::string> texts;
    for (const json& text : value) {
        if (!text.is_string()) {
            throw BadProperty{name};
        }
        texts.push_back(text.get<std::string>());
    }
    return texts;
}

// The last segments of the references of a link array: {"@odata.id": ".../Drives/3"} -> "3".
std::optional<std::vector<std::string>> LinkIds(const json& body, const std::string& name) {
    if (!body.contains("Links")) {
        return std::nullopt;
    }
    const json& links = body["Links"];
    if (!links.is_object()) {
        throw BadProperty{"Links"};
    }
    if (!links.contains(name)) {
        return std::nullopt;
    }
    const json& list = links[name];
    if (!list.is_array()) {
        throw BadProperty{"Links/" + name};
    }
    std::vector<std::string> ids;
    for (const json& reference : list) {
        if (!reference.is_object() || !reference.contains("@odata.id") ||
            !reference["@odata.id"].is_string()) {
            throw BadProperty{"Links/" + name};
        }
        const std::string uri = reference["@odata.id"].get<std::string>();
        ids.push_back(uri.substr(uri.rfind('/') + 1));
    }
    return ids;
}

// The disk parts of the drive links of a link array: a drive under the Chassis of this Storage
// ("OOB_LSI-0-3") or below it ("3") both give "3".
std::optional<std::vector<std::string>> DriveLinkIds(const json& body, const std::string& name,
                                                     const std::string& sid) {
    std::optional<std::vector<std::string>> ids = LinkIds(body, name);
    if (ids) {
        for (std::string& id : *ids) {
            id = DriveUris::DiskOf(sid, id);
        }
    }
    return ids;
}

std::optional<int> ParseId(const std::string& text) {
    if (text.empty() || text.size() > 9 ||
        !std::all_of(text.begin(), text.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; })) {
        return std::nullopt;
    }
    return std::stoi(text);
}

// Disk ids of drive links; a link that names no disk number is refused like a bad disk list.
bool DiskIds(const std::vector<std::string>& links, std::vector<int>& ids, std::string& error) {
    for (const std::string& link : links) {
        const std::optional<int> id = ParseId(link);
        if (!id) {
            error = "drive link \"" + link + "\" does not name a disk";
            return false;
        }
        ids.push_back(*id);
    }
    return true;
}

// The answer to a write the simulated driver carried out. A success keeps the driver's text
// (a detail, or why nothing changed) unless the handler has its own.
HttpResponse Outcome(int code, const std::string& error, const std::string& success_text = "") {
    if (code == rc::RAID_OK || code == rc::RAID_OK_UNCHANGED) {
        return RedfishErrors::Accepted(code, success_text.empty() ? error : success_text);
    }
    return RedfishErrors::Refused(code, error);
}

HttpResponse NotFound(const std::string& what) {
    return RedfishErrors::Error(404, "Base.1.8.ResourceNotFound", what + " does not exist",
                                rc::RAID_TARGET_NOT_FOUND);
}

HttpResponse BadRequest(const std::string& message_id, const std::string& text) {
    return RedfishErrors::Error(400, message_id, text, rc::RAID_OPERATION_FAILED);
}

// The fields every family's volume request shares, read from the body.
struct VolumeFields {
    std::string level;
    std::vector<std::vector<int>> spans;
    bool rest = false;
    std::vector<int> hot_spares;
    std::string name;
    std::string size;
    std::string strip;
    std::optional<int> write_policy;
    std::optional<int> read_policy;
    int io_policy = 0;
    int access_policy = 0;
    int cache_policy = 0;
    int initialization = 0;
};

bool ReadVolumeFields(const json& body, const std::string& family, const std::string& sid,
                      VolumeFields& fields, std::string& error) {
    const json* oem = Oem(body);
    if (const auto level = Text(oem, "RAIDLevel")) {
        fields.level = *level;
    } else if (const auto type = Text(&body, "RAIDType")) {
        fields.level = RedfishNames::LevelOfRaidType(*type);
    }
    if (oem != nullptr && oem->contains("Spans")) {
        const json& spans = (*oem)["Spans"];
        if (!spans.is_array()) {
            throw BadProperty{"Spans"};
        }
        for (const json& span : spans) {
            fields.spans.push_back(IntList(span, "Spans"));
        }
    } else if (const auto drives = DriveLinkIds(body, "Drives", sid)) {
        std::vector<int> ids;
        if (!DiskIds(*drives, ids, error)) {
            return false;
        }
        if (!ids.empty()) {
            fields.spans.push_back(ids);
        }
    }
    fields.rest = Bool(oem, "RestDisks").value_or(false);
    if (oem != nullptr && oem->contains("HotSpares")) {
        fields.hot_spares = IntList((*oem)["HotSpares"], "HotSpares");
    } else if (const auto spares = DriveLinkIds(body, "DedicatedSpareDrives", sid)) {
        if (!DiskIds(*spares, fields.hot_spares, error)) {
            return false;
        }
    }
    fields.name = Text(&body, "DisplayName").value_or(Text(&body, "Name").value_or(""));
    if (const auto size = Text(oem, "Size")) {
        fields.size = *size;
    } else if (const auto bytes = Number(&body, "CapacityBytes")) {
        fields.size = std::to_string(*bytes / kBytesPerMiB);
    }
    if (const auto strip = Text(oem, "StripSize")) {
        fields.strip = *strip;
    } else if (const auto bytes = Number(&body, "StripSizeBytes")) {
        fields.strip = std::to_string(*bytes / kBytesPerKiB) + "K";
    }
    fields.write_policy = Int(oem, "WritePolicy");
    if (!fields.write_policy) {
        if (const auto policy = Text(&body, "WriteCachePolicy")) {
            fields.write_policy = RedfishNames::WritePolicyCode(family, *policy);
        }
    }
    fields.read_policy = Int(oem, "ReadPolicy");
    if (!fields.read_policy) {
        if (const auto policy = Text(&body, "ReadCachePolicy")) {
            fields.read_policy = RedfishNames::ReadPolicyCode(*policy);
        }
    }
    fields.io_policy = Int(oem, "IOPolicy").value_or(0);
    fields.access_policy = Int(oem, "AccessPolicy").value_or(0);
    fields.cache_policy = Int(oem, "DiskCachePolicy").value_or(0);
    fields.initialization = Int(oem, "Initialization").value_or(0);
    return true;
}

} // namespace

WriteHandlers::WriteHandlers(std::shared_ptr<sim::MachineStore> store, TaskStore& tasks)
    : store_(std::move(store)), tasks_(tasks) {}

std::string WriteHandlers::Sid() const {
    return family_ + "-" + std::to_string(controller_);
}

std::string WriteHandlers::StorageUri() const {
    return std::string(ResourceBuilder::kStorageRoot) + "/" + Sid();
}

std::optional<sim::Controller> WriteHandlers::ReadController() const {
    sim::Machine machine;
    std::string error;
    if (!store_->Read(machine, error)) {
        return std::nullopt;
    }
    for (const sim::Controller& controller : machine.controllers) {
        if (controller.family == family_ && controller.id == controller_) {
            return controller;
        }
    }
    return std::nullopt;
}

std::optional<HttpResponse> WriteHandlers::Handle(const std::string& method, const std::string& sid,
                                                  const std::vector<std::string>& rest,
                                                  const json& body) {
    // "OOB_LSI-0": the family and the controller's own id. A controller that does not exist
    // still reaches the driver, which answers with its own code and text.
    const std::size_t dash = sid.rfind('-');
    if (dash == std::string::npos || !RedfishNames::IsServedFamily(sid.substr(0, dash))) {
        return std::nullopt;
    }
    const std::optional<int> id = ParseId(sid.substr(dash + 1));
    if (!id) {
        return std::nullopt;
    }
    family_ = sid.substr(0, dash);
    controller_ = *id;
    auto is = [&rest](std::initializer_list<const char*> pattern) {
        if (rest.size() != pattern.size()) {
            return false;
        }
        std::size_t i = 0;
        for (const char* part : pattern) {
            if (std::string(part) != "*" && rest[i] != part) {
                return false;
            }
            ++i;
        }
        return true;
    };
    try {
        if (method == "POST" && is({"Volumes"})) {
            return CreateVolume(body);
        }
        if (method == "DELETE" && is({"Volumes", "*"})) {
            return DeleteVolume(rest[1]);
        }
        if (method == "POST" && is({"Actions", "Storage.ResetToDefaults"})) {
            const std::string type = Text(&body, "ResetType").value_or("");
            if (type != "ResetAll") {
                return RedfishErrors::Error(400, "Base.1.8.ActionParameterNotSupported",
                                            "ResetType \"" + type + "\" is not supported",
                                            rc::RAID_OPERATION_FAILED);
            }
            std::string error;
            const int code = sim::SimRaidDriver(store_, family_).ClearConfig(controller_, error);
            return Outcome(code, error);
        }
        if (method == "POST" && is({"Actions", "Oem", "Raidcfg.EncryptVolumes"})) {
            std::vector<int> volumes;
            if (body.contains("Volumes")) {
                volumes = IntList(body["Volumes"], "Volumes");
            }
            return EncryptVolumes(volumes);
        }
        if (method == "POST" && is({"Actions", "Oem", "Raidcfg.Probe"})) {
            return Probe(body);
        }
        if (method == "PATCH" && rest.empty()) {
            return PatchStorage(body);
        }
        if (method == "PATCH" && is({"Drives", "*"})) {
            return PatchDrive(rest[1], body);
        }
        if (method == "POST" && is({"Drives", "*", "Actions", "Oem", "Raidcfg.MakeGood"})) {
            const std::optional<int> disk = ParseId(rest[1]);
            if (!disk) {
                return NotFound("disk " + rest[1]);
            }
            std::string error;
            const int code =
                sim::SimRaidDriver(store_, family_).MakeGood(controller_, *disk, error);
            return Outcome(code, error);
        }
        if (method == "POST" && is({"Volumes", "*", "Actions", "Volume.Initialize"})) {
            const std::string type = Text(&body, "InitializeType").value_or("Fast");
            if (type != "Fast") {
                return RedfishErrors::Error(400, "Base.1.8.ActionParameterNotSupported",
                                            "InitializeType \"" + type + "\" is not supported",
                                            rc::RAID_OPERATION_FAILED);
            }
            const std::optional<int> volume = ParseId(rest[1]);
            if (!volume) {
                return NotFound("volume " + rest[1]);
            }
            std::string error;
            const int code =
                sim::SimRaidDriver(store_, family_).FastInit(controller_, *volume, error);
            return Outcome(code, error);
        }
        if (method == "PATCH" && is({"Volumes", "*"})) {
            return PatchVolume(rest[1], body);
        }
        if (method == "PATCH" && is({"Controllers", "0"})) {
            return PatchController(body);
        }
        if (method == "POST" &&
            is({"Controllers", "0", "Actions", "Oem", "Raidcfg.ChangeConnectorMode"})) {
            const json* parameters = &body;
            const std::string connector = Text(parameters, "Connector").value_or("");
            const std::string mode = Text(parameters, "Mode").value_or("");
            std::string error;
            const int code = sim::SimRaidDriver(store_, family_)
                                 .RaidChangeConnectorMode(controller_, connector, mode, error);
            return Outcome(code, error);
        }
    } catch (const BadProperty& bad) {
        return RedfishErrors::Error(400, "Base.1.8.PropertyValueTypeError",
                                    "The value of the property " + bad.name +
                                        " is of a type the property cannot accept.",
                                    rc::RAID_OPERATION_FAILED);
    }
    return std::nullopt;
}

HttpResponse WriteHandlers::CreateVolume(const json& body) {
    if (Text(&body, "RAIDType").value_or("") == "None") {
        return MakeJbod(body);
    }
    VolumeFields fields;
    std::string error;
    if (!ReadVolumeFields(body, family_, Sid(), fields, error)) {
        return RedfishErrors::Refused(rc::RAID_OPERATION_FAILED, error);
    }
    std::set<int> before;
    if (const auto controller = ReadController()) {
        for (const sim::Volume& volume : controller->volumes) {
            before.insert(volume.id);
        }
    }
    sim::SimRaidDriver driver(store_, family_);
    int code = rc::RAID_OK;
    if (family_ == "OOB_M2") {
        rc::M2ControllerObject record;
        record.controller_id = controller_;
        record.vol_name = fields.name;
        record.raid_level = fields.level;
        record.strip_size = fields.strip;
        code = driver.Add(record, error);
    } else if (family_ == "OOB_MICROCHIP") {
        Quillon::protocol::OobMicroConfig record;
        record.controller_id = controller_;
        record.disks = fields.spans;
        record.hot_spares = fields.hot_spares;
        record.raid_level = fields.level;
        record.vol_name = fields.name;
        record.volume_size = fields.size;
        record.strip_size = fields.strip;
        record.write_policy = fields.write_policy.value_or(record.write_policy);
        record.read_policy = fields.read_policy.value_or(record.read_policy);
        code = driver.Add(record, error);
    } else if (family_ == "OOB_VROC") {
        Quillon::protocol::VolManDevConfig record;
        record.controller_id = controller_;
        record.disks = fields.spans;
        record.raid_level = fields.level;
        record.vol_name = fields.name;
        record.volume_size = fields.size;
        record.strip_size = fields.strip;
        code = driver.Add(record, error);
    } else {
        rc::VolumeObject record;
        record.controller_id = controller_;
        record.disks = fields.spans;
        record.rest_disks = fields.rest;
        record.raid_level = fields.level;
        record.hot_spares = fields.hot_spares;
        record.vol_name = fields.name;
        record.volume_size = fields.size;
        record.strip_size = fields.strip;
        record.write_policy = fields.write_policy.value_or(0);
        record.read_policy = fields.read_policy.value_or(0);
        record.io_policy = fields.io_policy;
        record.access_policy = fields.access_policy;
        record.cache_policy = fields.cache_policy;
        record.initialization = fields.initialization;
        code = driver.Add(record, error);
    }
    if (code != rc::RAID_OK) {
        return RedfishErrors::Refused(code, error);
    }
    std::string volume_uri;
    if (const auto controller = ReadController()) {
        for (const sim::Volume& volume : controller->volumes) {
            if (before.count(volume.id) == 0) {
                volume_uri = StorageUri() + "/Volumes/" + std::to_string(volume.id);
            }
        }
    }
    const int task = tasks_.Add(volume_uri);
    HttpResponse response;
    response.status = 202;
    response.headers.emplace_back("Location", "/redfish/v1/TaskService/Tasks/" +
                                                  std::to_string(task) + "/Monitor");
    response.headers.emplace_back("Content-Type", "application/json");
    response.body = TaskStore::Resource(*tasks_.Find(task)).dump();
    return response;
}

HttpResponse WriteHandlers::MakeJbod(const json& body) {
    const std::vector<std::string> drives =
        DriveLinkIds(body, "Drives", Sid()).value_or(std::vector<std::string>{});
    if (drives.size() != 1) {
        return RedfishErrors::Refused(rc::RAID_OPERATION_FAILED,
                                      "a pass-through volume takes exactly one drive, got " +
                                          std::to_string(drives.size()));
    }
    const std::optional<int> disk = ParseId(drives.front());
    if (!disk) {
        return RedfishErrors::Refused(rc::RAID_TARGET_NOT_FOUND,
                                      "disk " + drives.front() + " does not exist");
    }
    std::string error;
    const int code = sim::SimRaidDriver(store_, family_).MakeJbod(controller_, *disk, error);
    if (code != rc::RAID_OK) {
        return RedfishErrors::Refused(code, error);
    }
    HttpResponse response;
    response.status = 201;
    const std::string uri = StorageUri() + "/Volumes/PassThrough-" + std::to_string(*disk);
    response.headers.emplace_back("Location", uri);
    response.headers.emplace_back("Content-Type", "application/json");
    sim::Machine machine;
    if (store_->Read(machine, error)) {
        if (const auto resource = ResourceBuilder(machine, true).Build(uri)) {
            response.body = resource->dump();
        }
    }
    return response;
}

HttpResponse WriteHandlers::DeleteVolume(const std::string& volume) {
    const std::string prefix = "PassThrough-";
    std::string error;
    sim::SimRaidDriver driver(store_, family_);
    if (volume.rfind(prefix, 0) == 0) {
        // Only a JBOD disk has a pass-through volume to delete.
        const std::optional<int> disk = ParseId(volume.substr(prefix.size()));
        const auto controller = ReadController();
        const bool jbod =
            disk && controller &&
            std::any_of(controller->disks.begin(), controller->disks.end(),
                        [&](const sim::Disk& d) { return d.id == *disk && d.state == "JBOD"; });
        if (!jbod) {
            return NotFound("volume " + volume);
        }
        return Outcome(driver.MakeGood(controller_, *disk, error), error);
    }
    const std::optional<int> id = ParseId(volume);
    if (!id) {
        return NotFound("volume " + volume);
    }
    return Outcome(driver.RemoveVolume(controller_, *id, error), error);
}

HttpResponse WriteHandlers::PatchDrive(const std::string& disk, const json& body) {
    const std::optional<std::string> type = Text(&body, "HotspareType");
    if (!type) {
        return BadRequest("Base.1.8.PropertyMissing", "The property HotspareType is missing.");
    }
    std::string error;
    sim::SimRaidDriver driver(store_, family_);
    if (*type == "Global") {
        return Outcome(driver.AddGlobalHotSpare(controller_, disk, error), error);
    }
    if (*type == "None") {
        return Outcome(driver.RemoveHotSpare(controller_, disk, error), error);
    }
    if (*type == "Dedicated") {
        const json* oem = Oem(body);
        std::vector<std::string> groups;
        if (oem != nullptr && oem->contains("DiskGroups")) {
            groups = TextList((*oem)["DiskGroups"], "DiskGroups");
        } else {
            groups = LinkIds(body, "Volumes").value_or(std::vector<std::string>{});
        }
        return Outcome(driver.AddDedicatedHotSpare(controller_, disk, groups, error), error);
    }
    return BadRequest("Base.1.8.PropertyValueNotInList",
                      "HotspareType \"" + *type + "\" is not one of Global, Dedicated, None");
}

HttpResponse WriteHandlers::PatchVolume(const std::string& volume, const json& body) {
    const std::optional<bool> encrypted = Bool(&body, "Encrypted");
    const std::optional<std::vector<std::string>> spares =
        DriveLinkIds(body, "DedicatedSpareDrives", Sid());
    if (!encrypted && !spares) {
        return BadRequest("Base.1.8.PropertyMissing",
                          "Only Encrypted and Links/DedicatedSpareDrives can be changed.");
    }
    const std::optional<int> id = ParseId(volume);
    if (!id) {
        return NotFound("volume " + volume);
    }
    if (encrypted) {
        if (!*encrypted) {
            return BadRequest("Base.1.8.PropertyValueNotInList",
                              "An encrypted volume cannot be decrypted.");
        }
        HttpResponse response = EncryptVolumes({*id});
        if (response.status != 200 || !spares) {
            return response;
        }
    }
    // The standard form of dedicated spares: each drive the volume does not have yet becomes a
    // dedicated spare of it, one driver call per drive.
    std::vector<int> current;
    if (const auto controller = ReadController()) {
        for (const sim::Volume& known : controller->volumes) {
            if (known.id == *id) {
                current = known.dedicated_spares;
            }
        }
    }
    sim::SimRaidDriver driver(store_, family_);
    for (const std::string& disk : *spares) {
        const std::optional<int> disk_id = ParseId(disk);
        if (disk_id && std::find(current.begin(), current.end(), *disk_id) != current.end()) {
            continue;
        }
        std::string error;
        const int code = driver.AddDedicatedHotSpare(controller_, disk, {volume}, error);
        if (code != rc::RAID_OK) {
            return RedfishErrors::Refused(code, error);
        }
    }
    return RedfishErrors::Accepted(rc::RAID_OK, "");
}

HttpResponse WriteHandlers::PatchStorage(const json& body) {
    std::optional<std::string> mode = Text(Oem(body), "EkmMode");
    if (!mode) {
        if (const auto standard = Text(&body, "EncryptionMode")) {
            const std::string word = RedfishNames::EkmWord(*standard);
            mode = word.empty() ? *standard : word;
        }
    }
    if (!mode) {
        return BadRequest("Base.1.8.PropertyMissing",
                          "Only EncryptionMode (Oem/Raidcfg/EkmMode) can be changed.");
    }
    if (family_ != "OOB_LSI") {
        return RedfishErrors::Refused(rc::RAID_DEVICE_UNSUPPORTED,
                                      "key management is offered on OOB_LSI controllers only");
    }
    std::string message;
    const int code = sim::SimEncryptionDriver(store_).ChangeEKMMode(controller_, *mode, message);
    return Outcome(code, message);
}

HttpResponse WriteHandlers::EncryptVolumes(const std::vector<int>& volumes) {
    if (family_ != "OOB_LSI") {
        return RedfishErrors::Refused(rc::RAID_DEVICE_UNSUPPORTED,
                                      "key management is offered on OOB_LSI controllers only");
    }
    std::string message;
    const int code =
        sim::SimEncryptionDriver(store_).EnableEncryption(controller_, volumes, message);
    return Outcome(code, message, code == rc::RAID_OK ? message : "");
}

HttpResponse WriteHandlers::PatchController(const json& body) {
    const std::optional<std::string> mode = Text(Oem(body), "FirmwareDeviceOrder");
    if (!mode) {
        return BadRequest("Base.1.8.PropertyMissing",
                          "Only Oem/Raidcfg/FirmwareDeviceOrder can be changed.");
    }
    std::string error;
    int code = rc::RAID_OK;
    if (family_ == "OOB_LSI") {
        code = sim::SimFwDevOrderDriver(store_).TurnFirmwareDeviceOrder(controller_, *mode, error);
    } else {
        code = sim::SimRaidDriver(store_, family_)
                   .SetFirmwareDeviceOrderCtrl(controller_, *mode, error);
    }
    return Outcome(code, error);
}

HttpResponse WriteHandlers::Probe(const json& body) {
    const std::string operation = Text(&body, "Operation").value_or("");
    const std::string kind = Text(&body, "Driver").value_or("Raid");
    std::string error;
    int code = rc::RAID_OK;
    if (kind == "Encryption" && operation == "getController") {
        if (family_ != "OOB_LSI") {
            return RedfishErrors::Refused(rc::RAID_DEVICE_UNSUPPORTED,
                                          "key management is offered on OOB_LSI controllers only");
        }
        rc::EKMController record;
        code = sim::SimEncryptionDriver(store_).GetController(controller_, record, false, error);
        return Outcome(code, error);
    }
    if (kind == "FirmwareDeviceOrder" && operation == "GetController") {
        if (family_ != "OOB_LSI") {
            return RedfishErrors::Refused(
                rc::RAID_DEVICE_UNSUPPORTED,
                "the out-of-band firmware device order is offered on OOB_LSI controllers only");
        }
        rc::FWDevOrderController record;
        code = sim::SimFwDevOrderDriver(store_).GetController(controller_, record, error);
        return Outcome(code, error);
    }
    if (kind != "Raid") {
        return BadRequest("Base.1.8.ActionParameterNotSupported",
                          "Driver \"" + kind + "\" with Operation \"" + operation +
                              "\" is not supported");
    }
    sim::SimRaidDriver driver(store_, family_);
    std::vector<int> ids;
    std::vector<std::string> levels;
    if (operation == "GetController") {
        if (family_ == "OOB_M2") {
            rc::M2CtrlInfo record;
            code = driver.GetController(controller_, record, error);
        } else if (family_ == "OOB_MICROCHIP") {
            Quillon::protocol::MicrochipCtrl record;
            code = driver.GetController(controller_, record, error);
        } else if (family_ == "OOB_VROC") {
            Quillon::protocol::VolManDevCtrl record;
            code = driver.GetController(controller_, record, error);
        } else {
            rc::Controller record;
            code = driver.GetController(controller_, record, error);
        }
    } else if (operation == "GetConfig") {
        if (family_ == "OOB_M2") {
            rc::M2VolumeInfo record;
            code = driver.GetConfig(controller_, record, error);
        } else if (family_ == "OOB_MICROCHIP") {
            std::vector<Quillon::protocol::OobMicroConfig> records;
            code = driver.GetConfig(controller_, records, error);
        } else if (family_ == "OOB_VROC") {
            std::vector<Quillon::protocol::VolManDevConfig> records;
            code = driver.GetConfig(controller_, records, ids, error);
        } else {
            std::vector<rc::VolumeObject> records;
            code = driver.GetConfig(controller_, records, ids, error);
        }
    } else if (operation == "GetCanMakeGoodDiskIds") {
        code = driver.GetCanMakeGoodDiskIds(controller_, ids, error);
    } else if (operation == "GetCanMakeJbodDiskIds") {
        code = driver.GetCanMakeJbodDiskIds(controller_, ids, error);
    } else if (operation == "GetAllVolumes") {
        code = driver.GetAllVolumes(controller_, ids, error);
    } else if (operation == "GetSupportedRaidLevels") {
        code = driver.GetSupportedRaidLevels(controller_, levels, error);
    } else if (operation == "GetFirmwareDeviceOrderCtrl") {
        Quillon::protocol::FWDevOrderCtrl record;
        code = driver.GetFirmwareDeviceOrderCtrl(controller_, record, error);
    } else {
        return BadRequest("Base.1.8.ActionParameterNotSupported",
                          "Operation \"" + operation + "\" is not supported");
    }
    return Outcome(code, error);
}

} // namespace emulator
