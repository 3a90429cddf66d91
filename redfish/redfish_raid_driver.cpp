#include "redfish/redfish_raid_driver.hpp"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "backend/records.hpp"
#include "model/controller_reader.hpp"
#include "model/disk_rules.hpp"
#include "model/mode_setting.hpp"
#include "redfish/redfish_connection.hpp"
#include "redfish/redfish_words.hpp"

namespace redfish {

using namespace Quillon::RaidConfig;
using nlohmann::json;

namespace {

// Empties what a read fills, so that a failed read leaves nothing of an earlier answer.
template <typename Out> void Clear(std::vector<Out>& out) {
    out.clear();
}
void Clear(M2VolumeInfo& out) {
    out = M2VolumeInfo();
}

json Reference(const std::string& path) {
    return json{{"@odata.id", path}};
}

json DriveLinks(const ControllerLinks& links, const std::vector<std::vector<int>>& spans) {
    json drives = json::array();
    for (const auto& span : spans) {
        for (int disk : span) {
            drives.push_back(Reference(BmcAccess::DrivePath(links, std::to_string(disk))));
        }
    }
    return drives;
}

json SpareLinks(const ControllerLinks& links, const std::vector<int>& spares) {
    json drives = json::array();
    for (int disk : spares) {
        drives.push_back(Reference(BmcAccess::DrivePath(links, std::to_string(disk))));
    }
    return drives;
}

// The leading digits of a size or strip text and the unit after them, lower case; false when
// the text does not start with a number that fits.
bool SplitNumber(const std::string& text, long long& number, std::string& unit) {
    const char* end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, number);
    if (problem != std::errc() || stop == text.data() || number < 0 || number > 99999999) {
        return false;
    }
    unit = model::ModeSetting::Lower(std::string(stop, end));
    return true;
}

// "256K", "64k", "128KB", "128" (KiB), "1MB", "1M" in bytes; 0 when the text is none of these.
long long StripBytes(const std::string& text) {
    long long number = 0;
    std::string unit;
    if (!SplitNumber(text, number, unit)) {
        return 0;
    }
    if (unit.empty() || unit == "k" || unit == "kb") {
        return number * 1024;
    }
    if (unit == "m" || unit == "mb") {
        return number * 1024 * 1024;
    }
    return 0;
}

// Whole MiB as bytes ("102400", "512MB", "1GB"); 0 for all space, shares and anything else.
long long SizeBytes(const std::string& text) {
    long long number = 0;
    std::string unit;
    if (!SplitNumber(text, number, unit)) {
        return 0;
    }
    const long long mebibyte = 1048576;
    if (unit.empty() || unit == "m" || unit == "mb") {
        return number * mebibyte;
    }
    if (unit == "g" || unit == "gb") {
        return number * 1024 * mebibyte;
    }
    if (unit == "t" || unit == "tb") {
        return number * 1024 * 1024 * mebibyte;
    }
    return 0;
}

// The standard RAIDType of a level as a request names it ("5", "raid5", "1T", "10triple"); empty
// for a level the standard has no name for.
std::string StandardType(const std::string& level) {
    std::string word = model::ModeSetting::Lower(level);
    if (word.rfind("raid", 0) == 0) {
        word = word.substr(4);
    }
    if (word == "1t") {
        word = "1triple";
    } else if (word == "10t") {
        word = "10triple";
    }
    static const char* const kNamed[] = {"0",  "1",  "5",  "6",       "10",
                                         "50", "60", "00", "1triple", "10triple"};
    for (const char* named : kNamed) {
        if (word == named) {
            return RedfishWords::RaidType(word);
        }
    }
    return {};
}

const char* WriteCachePolicy(int code, bool counts_from_one) {
    switch (counts_from_one ? code - 1 : code) {
    case 0:
        return "WriteThrough";
    case 1:
        return "ProtectedWriteBack";
    case 2:
        return "UnprotectedWriteBack";
    default:
        return nullptr;
    }
}

const char* ReadCachePolicy(int code) {
    switch (code) {
    case 0:
        return "Off";
    case 1:
        return "ReadAhead";
    case 2:
        return "AdaptiveReadAhead";
    default:
        return nullptr;
    }
}

// The standard part every family's request shares: level, name, size and strip.
void Common(json& body, json& oem, const std::string& level, const std::string& name,
            const std::string& size, const std::string& strip) {
    const std::string type = StandardType(level);
    if (!type.empty()) {
        body["RAIDType"] = type;
    }
    body["DisplayName"] = name;
    if (const long long bytes = SizeBytes(size); bytes > 0) {
        body["CapacityBytes"] = bytes;
    }
    if (const long long bytes = StripBytes(strip); bytes > 0) {
        body["StripSizeBytes"] = bytes;
    }
    oem["RAIDLevel"] = level;
    oem["Size"] = size;
    oem["StripSize"] = strip;
}

json Spans(const std::vector<std::vector<int>>& spans) {
    json list = json::array();
    for (const auto& span : spans) {
        list.push_back(span);
    }
    return list;
}

json Wrap(json body, json oem) {
    body["Oem"] = json{{"Raidcfg", std::move(oem)}};
    return body;
}

} // namespace

RedfishRaidDriver::RedfishRaidDriver(const RedfishConnection& connection, std::string family)
    : access_(connection.shared_tree(), std::move(family)) {}

template <typename Reader>
RedfishRaidDriver::Code RedfishRaidDriver::Read(const std::string& op, int controller,
                                                std::string& error_text, Reader reader) {
    return access_.Read("Raid", op, controller, error_text, reader);
}

void RedfishRaidDriver::GetControllerIds(std::vector<int>& ids) {
    ids = access_.ControllerIds();
}

// ---- reads: the shared model's, over the tree ----

using model::ControllerReader;

RedfishRaidDriver::Code RedfishRaidDriver::GetCanMakeGoodDiskIds(int controller,
                                                                 std::vector<int>& disks,
                                                                 std::string& error_text) {
    disks.clear();
    return Read("GetCanMakeGoodDiskIds", controller, error_text,
                [&](const model::Controller& c, const StorageTree&, std::string&) {
                    disks = ControllerReader::CanMakeGood(c);
                    return RAID_OK;
                });
}

RedfishRaidDriver::Code RedfishRaidDriver::GetCanMakeJbodDiskIds(int controller,
                                                                 std::vector<int>& disks,
                                                                 std::string& error_text) {
    disks.clear();
    return Read("GetCanMakeJbodDiskIds", controller, error_text,
                [&](const model::Controller& c, const StorageTree&, std::string&) {
                    disks = ControllerReader::CanMakeJbod(c);
                    return RAID_OK;
                });
}

RedfishRaidDriver::Code RedfishRaidDriver::GetAllVolumes(int controller, std::vector<int>& volumes,
                                                         std::string& error_text) {
    volumes.clear();
    return Read("GetAllVolumes", controller, error_text,
                [&](const model::Controller& c, const StorageTree&, std::string&) {
                    volumes = ControllerReader::VolumeIds(c);
                    return RAID_OK;
                });
}

RedfishRaidDriver::Code RedfishRaidDriver::GetController(int controller, Controller& record,
                                                         std::string& error_text) {
    return Read("GetController", controller, error_text,
                [&](const model::Controller& c, const StorageTree& tree, std::string&) {
                    const Code code = ControllerReader::Show(c, record);
                    // The controller's address is where the BMC really keeps it.
                    const ControllerLinks* links = tree.LinksOf(access_.family(), controller);
                    if (code == RAID_OK && links != nullptr && !links->storage.empty()) {
                        record.raid_url = links->storage;
                    }
                    return code;
                });
}

template <typename Record>
RedfishRaidDriver::Code RedfishRaidDriver::Show(int controller, Record& record,
                                                std::string& error_text) {
    return Read("GetController", controller, error_text,
                [&](const model::Controller& c, const StorageTree&, std::string&) {
                    return ControllerReader::Show(c, record);
                });
}

RedfishRaidDriver::Code RedfishRaidDriver::GetController(int controller, M2CtrlInfo& record,
                                                         std::string& error_text) {
    return Show(controller, record, error_text);
}

RedfishRaidDriver::Code RedfishRaidDriver::GetController(int controller,
                                                         Quillon::protocol::MicrochipCtrl& record,
                                                         std::string& error_text) {
    return Show(controller, record, error_text);
}

RedfishRaidDriver::Code RedfishRaidDriver::GetController(int controller,
                                                         Quillon::protocol::VolManDevCtrl& record,
                                                         std::string& error_text) {
    return Show(controller, record, error_text);
}

template <typename... Out>
RedfishRaidDriver::Code RedfishRaidDriver::Config(int controller, std::string& error_text,
                                                  Out&... out) {
    (Clear(out), ...);
    return Read("GetConfig", controller, error_text,
                [&](const model::Controller& c, const StorageTree&, std::string& text) {
                    return ControllerReader::Config(c, text, out...);
                });
}

RedfishRaidDriver::Code RedfishRaidDriver::GetConfig(int controller,
                                                     std::vector<VolumeObject>& volumes,
                                                     std::vector<int>& hot_spares,
                                                     std::string& error_text) {
    return Config(controller, error_text, volumes, hot_spares);
}

RedfishRaidDriver::Code RedfishRaidDriver::GetConfig(int controller, M2VolumeInfo& volume,
                                                     std::string& error_text) {
    return Config(controller, error_text, volume);
}

RedfishRaidDriver::Code
RedfishRaidDriver::GetConfig(int controller,
                             std::vector<Quillon::protocol::OobMicroConfig>& volumes,
                             std::string& error_text) {
    return Config(controller, error_text, volumes);
}

RedfishRaidDriver::Code
RedfishRaidDriver::GetConfig(int controller,
                             std::vector<Quillon::protocol::VolManDevConfig>& volumes,
                             std::vector<int>& hot_spares, std::string& error_text) {
    return Config(controller, error_text, volumes, hot_spares);
}

RedfishRaidDriver::Code RedfishRaidDriver::GetFirmwareDeviceOrderCtrl(
    int controller, Quillon::protocol::FWDevOrderCtrl& record, std::string& error_text) {
    return Read("GetFirmwareDeviceOrderCtrl", controller, error_text,
                [&](const model::Controller& c, const StorageTree&, std::string& text) {
                    return ControllerReader::FirmwareOrder(c, record, text);
                });
}

RedfishRaidDriver::Code RedfishRaidDriver::GetSupportedRaidLevels(int controller,
                                                                  std::vector<std::string>& levels,
                                                                  std::string& error_text) {
    levels.clear();
    return Read("GetSupportedRaidLevels", controller, error_text,
                [&](const model::Controller& c, const StorageTree&, std::string&) {
                    levels = c.raid_levels;
                    return RAID_OK;
                });
}

// ---- writes: one request each ----

RedfishRaidDriver::Code RedfishRaidDriver::ClearConfig(int controller, std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
           std::string& text) {
            if (links.reset_to_defaults) {
                return BmcAccess::Outcome(
                    client.Post(links.storage + "/Actions/Storage.ResetToDefaults",
                                json{{"ResetType", "ResetAll"}}),
                    text);
            }
            // A Storage without the reset action: every volume deleted, newest first, and every
            // hot spare unassigned. JBOD disks stay JBOD, as a reset of the configuration
            // leaves them.
            for (auto volume = model.volumes.rbegin(); volume != model.volumes.rend(); ++volume) {
                const Code code = BmcAccess::Outcome(
                    client.Delete(BmcAccess::VolumePath(links, volume->id)), text);
                if (code != RAID_OK) {
                    return code;
                }
            }
            for (const model::Disk& disk : model.disks) {
                if (disk.state != "GHS" && disk.state != "DHS") {
                    continue;
                }
                const Code code = BmcAccess::Outcome(
                    client.Patch(BmcAccess::DrivePath(links, std::to_string(disk.id)),
                                 json{{"HotspareType", "None"}}),
                    text);
                if (code != RAID_OK) {
                    return code;
                }
            }
            return RAID_OK;
        });
}

RedfishRaidDriver::Code RedfishRaidDriver::RemoveVolume(int controller, int volume,
                                                        std::string& error_text) {
    return access_.Write(controller, error_text,
                         [volume](const ControllerLinks& links, const model::Controller&,
                                  RedfishClient& client, std::string& text) {
                             return BmcAccess::Outcome(
                                 client.Delete(BmcAccess::VolumePath(links, volume)), text);
                         });
}

RedfishRaidDriver::Code RedfishRaidDriver::MakeGood(int controller, int disk,
                                                    std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [disk](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
               std::string& text) {
            if (!links.ours) {
                const Code checked =
                    Judge(links, model, std::to_string(disk), model::DiskRules::Change::Good, text);
                if (checked != RAID_OK) {
                    return checked;
                }
            }
            // A JBOD disk is good again when its pass-through volume goes; any
            // other disk is handed to the BMC's make-good action, which refuses
            // what it cannot do.
            const auto pass_through = links.pass_through.find(disk);
            if (pass_through != links.pass_through.end()) {
                return BmcAccess::Outcome(client.Delete(pass_through->second), text);
            }
            if (!links.ours) {
                // Never a volume that holds other drives: only a JBOD disk's
                // own pass-through volume is deleted.
                text = "disk " + std::to_string(disk) +
                       " is not a JBOD disk of its own; this BMC offers no "
                       "standard way to make it good";
                return RAID_MAKEGOOD_REFUSED;
            }
            return BmcAccess::Outcome(
                client.Post(BmcAccess::DrivePath(links, std::to_string(disk)) +
                                "/Actions/Oem/Raidcfg.MakeGood",
                            json::object()),
                text);
        });
}

RedfishRaidDriver::Code RedfishRaidDriver::MakeJbod(int controller, int disk,
                                                    std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [disk](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
               std::string& text) {
            if (!links.ours && !links.raid_types.empty() &&
                std::find(links.raid_types.begin(), links.raid_types.end(), "None") ==
                    links.raid_types.end()) {
                text = "the controller does not offer pass-through volumes (RAIDType None), so "
                       "disk " +
                       std::to_string(disk) + " cannot be made JBOD";
                return RAID_MAKEJBOD_REFUSED;
            }
            const Code checked =
                Judge(links, model, std::to_string(disk), model::DiskRules::Change::Jbod, text);
            if (checked != RAID_OK) {
                return checked;
            }
            const json body = {
                {"RAIDType", "None"},
                {"Links",
                 {{"Drives",
                   json::array({Reference(BmcAccess::DrivePath(links, std::to_string(disk)))})}}}};
            return BmcAccess::Outcome(client.Post(BmcAccess::VolumesPath(links), body), text);
        });
}

RedfishRaidDriver::Code RedfishRaidDriver::AddGlobalHotSpare(int controller,
                                                             const std::string& disk,
                                                             std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [&disk](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
                std::string& text) {
            const Code checked = Judge(links, model, disk, model::DiskRules::Change::Spare, text);
            if (checked != RAID_OK) {
                return checked;
            }
            return BmcAccess::Outcome(
                client.Patch(BmcAccess::DrivePath(links, disk), json{{"HotspareType", "Global"}}),
                text);
        });
}

RedfishRaidDriver::Code
RedfishRaidDriver::AddDedicatedHotSpare(int controller, const std::string& disk,
                                        const std::vector<std::string>& disk_groups,
                                        std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [&](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
            std::string& text) {
            const Code checked = Judge(links, model, disk, model::DiskRules::Change::Spare, text);
            if (checked != RAID_OK) {
                return checked;
            }
            // The disk groups are volume ids; the standard link names the volumes we know.
            json volumes = json::array();
            for (const std::string& group : disk_groups) {
                for (const model::Volume& volume : model.volumes) {
                    if (std::to_string(volume.id) == group) {
                        volumes.push_back(Reference(BmcAccess::VolumePath(links, volume.id)));
                    }
                }
            }
            json body = {{"HotspareType", "Dedicated"}, {"Links", {{"Volumes", volumes}}}};
            if (links.ours) {
                body["Oem"] = {{"Raidcfg", {{"DiskGroups", disk_groups}}}};
            }
            return BmcAccess::Outcome(client.Patch(BmcAccess::DrivePath(links, disk), body), text);
        });
}

RedfishRaidDriver::Code RedfishRaidDriver::RemoveHotSpare(int controller, const std::string& disk,
                                                          std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [&disk](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
                std::string& text) {
            const Code checked =
                Judge(links, model, disk, model::DiskRules::Change::SpareRemoval, text);
            if (checked != RAID_OK) {
                return checked;
            }
            return BmcAccess::Outcome(
                client.Patch(BmcAccess::DrivePath(links, disk), json{{"HotspareType", "None"}}),
                text);
        });
}

RedfishRaidDriver::Code RedfishRaidDriver::FastInit(int controller, int volume,
                                                    std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [volume](const ControllerLinks& links, const model::Controller&, RedfishClient& client,
                 std::string& text) {
            // The target the volume lists, else where the standard puts it.
            const auto listed = links.initialize_targets.find(volume);
            if (!links.ours && links.volume_paths.count(volume) != 0 &&
                (listed == links.initialize_targets.end() || listed->second.empty())) {
                text = NotOffered("Volume.Initialize for volume " + std::to_string(volume));
                return RAID_DEVICE_UNSUPPORTED;
            }
            const std::string target =
                listed != links.initialize_targets.end() && !listed->second.empty()
                    ? listed->second
                    : BmcAccess::VolumePath(links, volume) + "/Actions/Volume.Initialize";
            const Code code =
                BmcAccess::Outcome(client.Post(target, json{{"InitializeType", "Fast"}}), text);
            if (code == RAID_TARGET_NOT_FOUND && !links.ours &&
                links.volume_paths.count(volume) != 0) {
                // The volume is there; it is the action the BMC does not serve where it said.
                text = NotOffered("Volume.Initialize at " + target) + " (" + text + ")";
                return RAID_DEVICE_UNSUPPORTED;
            }
            return code;
        });
}

RedfishRaidDriver::Code RedfishRaidDriver::RaidChangeConnectorMode(int controller,
                                                                   const std::string& connector,
                                                                   const std::string& mode,
                                                                   std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [&](const ControllerLinks& links, const model::Controller&, RedfishClient& client,
            std::string& text) {
            if (!links.ours) {
                text = NotOffered("a change of connector mode");
                return RAID_DEVICE_UNSUPPORTED;
            }
            json answer;
            const Code code = BmcAccess::Outcome(
                client.Post(BmcAccess::ControllerPath(links) +
                                "/Actions/Oem/Raidcfg.ChangeConnectorMode",
                            json{{"Connector", connector}, {"Mode", mode}}, &answer),
                text);
            if (code != RAID_OK) {
                return code;
            }
            if (std::string detail = BmcAccess::SuccessText(answer); !detail.empty()) {
                text = std::move(detail);
            }
            return BmcAccess::SuccessCode(answer);
        });
}

RedfishRaidDriver::Code RedfishRaidDriver::SetFirmwareDeviceOrderCtrl(int controller,
                                                                      const std::string& mode,
                                                                      std::string& error_text) {
    return access_.Write(
        controller, error_text,
        [&mode](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
                std::string& text) {
            if (!links.ours) {
                text = NotOffered("a firmware device order");
                return RAID_DEVICE_UNSUPPORTED;
            }
            const json body = {{"Oem", {{"Raidcfg", {{"FirmwareDeviceOrder", mode}}}}}};
            return BmcAccess::PatchMode(client, BmcAccess::ControllerPath(links), body,
                                        model.fw_device_order, model.fw_device_order_modes, mode,
                                        "the firmware device order", text);
        });
}

// ---- volume creation ----

RedfishRaidDriver::Code
RedfishRaidDriver::Create(int controller, const std::function<json(const ControllerLinks&)>& body,
                          std::string& error_text) {
    return access_.Write(controller, error_text,
                         [&body](const ControllerLinks& links, const model::Controller& model,
                                 RedfishClient& client, std::string& text) {
                             json request = body(links);
                             if (!links.ours) {
                                 // Our BMC judges a request as the simulated machine does; any
                                 // other gets only what it showed it takes, checked first.
                                 const Code checked = CheckCreate(links, model, request, text);
                                 if (checked != RAID_OK) {
                                     return checked;
                                 }
                             }
                             return BmcAccess::Outcome(
                                 client.Post(BmcAccess::VolumesPath(links), request), text);
                         });
}

RedfishRaidDriver::Code RedfishRaidDriver::CheckCreate(const ControllerLinks& links,
                                                       const model::Controller& model,
                                                       json& request, std::string& error_text) {
    const json oem = request.contains("Oem") ? request["Oem"]["Raidcfg"] : json::object();
    request.erase("Oem");
    const std::string type = request.value("RAIDType", std::string());
    if (!links.raid_types.empty() && !type.empty() &&
        std::find(links.raid_types.begin(), links.raid_types.end(), type) ==
            links.raid_types.end()) {
        std::string offered;
        for (const std::string& listed : links.raid_types) {
            offered += (offered.empty() ? "" : ", ") + listed;
        }
        error_text = "the controller does not offer " + type + " (it offers " + offered + ")";
        return RAID_OPERATION_FAILED;
    }
    if (links.lacks_write_cache) {
        request.erase("WriteCachePolicy");
    }
    if (links.lacks_read_cache) {
        request.erase("ReadCachePolicy");
    }
    std::vector<int> members;
    for (const auto& span : oem.value("Spans", json::array())) {
        for (const auto& disk : span) {
            if (disk.is_number_integer()) {
                members.push_back(disk.get<int>());
            }
        }
    }
    const auto state_of = [&model](int id) -> const model::Disk* {
        for (const model::Disk& disk : model.disks) {
            if (disk.id == id) {
                return &disk;
            }
        }
        return nullptr;
    };
    // A further volume on the disks of an existing one goes into that drive group.
    std::vector<int> sorted = members;
    std::sort(sorted.begin(), sorted.end());
    bool same_group = false;
    for (const model::Volume& volume : model.volumes) {
        std::vector<int> disks;
        for (const auto& span : volume.spans) {
            disks.insert(disks.end(), span.begin(), span.end());
        }
        std::sort(disks.begin(), disks.end());
        same_group = same_group || (!disks.empty() && disks == sorted);
    }
    for (int id : members) {
        const model::Disk* disk = state_of(id);
        if (disk == nullptr) {
            error_text = "disk " + std::to_string(id) + " does not exist";
            return RAID_DISK_NOT_FOUND;
        }
        if (disk->state != "UGood" && !(same_group && disk->state == "Online")) {
            error_text = "disk " + std::to_string(id) + " is " + disk->state + ", not UGood";
            return RAID_DISK_STATE_ERROR;
        }
    }
    for (const auto& spare : oem.value("HotSpares", json::array())) {
        const model::Disk* disk = spare.is_number_integer() ? state_of(spare.get<int>()) : nullptr;
        if (disk == nullptr) {
            error_text = "hot spare disk " + spare.dump() + " does not exist";
            return RAID_DISK_NOT_FOUND;
        }
        if (disk->state != "UGood") {
            error_text = "hot spare disk " + spare.dump() + " is " + disk->state + ", not UGood";
            return RAID_DISK_STATE_ERROR;
        }
    }
    if (oem.value("RestDisks", false)) {
        // "REST": every free disk of the controller.
        json drives = json::array();
        for (const model::Disk& disk : model.disks) {
            if (disk.state == "UGood") {
                drives.push_back(Reference(BmcAccess::DrivePath(links, std::to_string(disk.id))));
            }
        }
        request["Links"]["Drives"] = drives;
    } else if (members.empty() && !request.contains("Links")) {
        // An M.2 request names no disks: the lowest free bays, as many as the level takes
        // (two mirror each other; a stripe takes every free one).
        json drives = json::array();
        const std::size_t wanted = type == "RAID1" ? 2 : std::numeric_limits<std::size_t>::max();
        for (const model::Disk& disk : model.disks) {
            if (disk.state == "UGood" && drives.size() < wanted) {
                drives.push_back(Reference(BmcAccess::DrivePath(links, std::to_string(disk.id))));
            }
        }
        if (drives.size() < (type == "RAID1" ? 2U : 1U)) {
            error_text = "the controller has not enough free disks for " +
                         (type.empty() ? std::string("the volume") : type);
            return RAID_OPERATION_FAILED;
        }
        request["Links"] = {{"Drives", drives}};
    }
    return RAID_OK;
}

RedfishRaidDriver::Code RedfishRaidDriver::Judge(const ControllerLinks& links,
                                                 const model::Controller& model,
                                                 const std::string& disk,
                                                 model::DiskRules::Change change,
                                                 std::string& error_text) {
    if (links.ours) {
        return RAID_OK; // our BMC judges the request itself, its injected faults first
    }
    int id = 0;
    return model::DiskRules::Check(model, disk, change, id, error_text);
}

std::string RedfishRaidDriver::NotOffered(const std::string& function) {
    return "the BMC does not offer " + function;
}

json RedfishRaidDriver::VolumeBody(const ControllerLinks& links, const std::string& family,
                                   const VolumeObject& request) {
    json body = json::object();
    json oem = json::object();
    Common(body, oem, request.raid_level, request.vol_name, request.volume_size,
           request.strip_size);
    body["Links"] = {{"Drives", DriveLinks(links, request.disks)},
                     {"DedicatedSpareDrives", SpareLinks(links, request.hot_spares)}};
    if (const char* word = WriteCachePolicy(request.write_policy, family == "OOB_MICROCHIP")) {
        body["WriteCachePolicy"] = word;
    }
    if (const char* word = ReadCachePolicy(request.read_policy)) {
        body["ReadCachePolicy"] = word;
    }
    oem["Spans"] = Spans(request.disks);
    oem["RestDisks"] = request.rest_disks;
    oem["HotSpares"] = request.hot_spares;
    oem["WritePolicy"] = request.write_policy;
    oem["ReadPolicy"] = request.read_policy;
    oem["IOPolicy"] = request.io_policy;
    oem["AccessPolicy"] = request.access_policy;
    oem["DiskCachePolicy"] = request.cache_policy;
    oem["Initialization"] = request.initialization;
    return Wrap(std::move(body), std::move(oem));
}

json RedfishRaidDriver::VolumeBody(const ControllerLinks& /*links*/,
                                   const M2ControllerObject& request) {
    json body = json::object();
    json oem = json::object();
    Common(body, oem, request.raid_level, request.vol_name, "", request.strip_size);
    oem.erase("Size"); // an M.2 volume always takes the free disks whole
    return Wrap(std::move(body), std::move(oem));
}

json RedfishRaidDriver::VolumeBody(const ControllerLinks& links,
                                   const Quillon::protocol::OobMicroConfig& request) {
    json body = json::object();
    json oem = json::object();
    Common(body, oem, request.raid_level, request.vol_name, request.volume_size,
           request.strip_size);
    body["Links"] = {{"Drives", DriveLinks(links, request.disks)},
                     {"DedicatedSpareDrives", SpareLinks(links, request.hot_spares)}};
    if (const char* word = WriteCachePolicy(request.write_policy, true)) {
        body["WriteCachePolicy"] = word;
    }
    if (const char* word = ReadCachePolicy(request.read_policy)) {
        body["ReadCachePolicy"] = word;
    }
    oem["Spans"] = Spans(request.disks);
    oem["HotSpares"] = request.hot_spares;
    oem["WritePolicy"] = request.write_policy;
    oem["ReadPolicy"] = request.read_policy;
    return Wrap(std::move(body), std::move(oem));
}

json RedfishRaidDriver::VolumeBody(const ControllerLinks& links,
                                   const Quillon::protocol::VolManDevConfig& request) {
    json body = json::object();
    json oem = json::object();
    Common(body, oem, request.raid_level, request.vol_name, request.volume_size,
           request.strip_size);
    body["Links"] = {{"Drives", DriveLinks(links, request.disks)}};
    oem["Spans"] = Spans(request.disks);
    return Wrap(std::move(body), std::move(oem));
}

RedfishRaidDriver::Code RedfishRaidDriver::Add(const VolumeObject& request,
                                               std::string& error_text) {
    const std::string family = access_.family();
    return Create(
        request.controller_id,
        [&](const ControllerLinks& links) { return VolumeBody(links, family, request); },
        error_text);
}

RedfishRaidDriver::Code RedfishRaidDriver::Add(const M2ControllerObject& request,
                                               std::string& error_text) {
    return Create(
        request.controller_id,
        [&](const ControllerLinks& links) { return VolumeBody(links, request); }, error_text);
}

RedfishRaidDriver::Code RedfishRaidDriver::Add(const Quillon::protocol::OobMicroConfig& request,
                                               std::string& error_text) {
    return Create(
        request.controller_id,
        [&](const ControllerLinks& links) { return VolumeBody(links, request); }, error_text);
}

RedfishRaidDriver::Code RedfishRaidDriver::Add(const Quillon::protocol::VolManDevConfig& request,
                                               std::string& error_text) {
    return Create(
        request.controller_id,
        [&](const ControllerLinks& links) { return VolumeBody(links, request); }, error_text);
}

} // namespace redfish
