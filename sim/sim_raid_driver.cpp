#include "sim/sim_raid_driver.hpp"

#include <algorithm>
#include <charconv>
#include <utility>

#include "model/controller_reader.hpp"
#include "model/disk_rules.hpp"
#include "model/mode_setting.hpp"

namespace sim {

using namespace Quillon::RaidConfig;

namespace {

// A whole non-negative number, the form disk, volume and connector ids take as text.
bool ParseId(const std::string& text, int& id) {
    const char* end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, id);
    return problem == std::errc() && stop == end && id >= 0;
}

Disk* FindDisk(Controller& controller, int id) {
    auto found = std::find_if(controller.disks.begin(), controller.disks.end(),
                              [id](const Disk& disk) { return disk.id == id; });
    return found == controller.disks.end() ? nullptr : &*found;
}

Volume* FindVolume(Controller& controller, int id) {
    auto found = std::find_if(controller.volumes.begin(), controller.volumes.end(),
                              [id](const Volume& volume) { return volume.id == id; });
    return found == controller.volumes.end() ? nullptr : &*found;
}

std::string VolumeNotFound(int id) {
    return "volume " + std::to_string(id) + " does not exist";
}

bool IsM2(const std::string& family) {
    return family == "M2" || family == "OOB_M2";
}

bool IsVroc(const std::string& family) {
    return family == "VROC_WIN" || family == "OOB_VROC";
}

// Puts the disks of a volume that goes, and the dedicated spares no other volume keeps, back.
void ReleaseVolume(Controller& controller, const Volume& volume) {
    for (const auto& span : volume.spans) {
        for (int id : span) {
            if (Disk* disk = FindDisk(controller, id)) {
                disk->state = "UGood";
            }
        }
    }
    for (int id : volume.dedicated_spares) {
        const bool kept = std::any_of(
            controller.volumes.begin(), controller.volumes.end(), [&](const Volume& other) {
                return other.id != volume.id && std::count(other.dedicated_spares.begin(),
                                                           other.dedicated_spares.end(), id) != 0;
            });
        Disk* disk = FindDisk(controller, id);
        if (!kept && disk != nullptr) {
            disk->state = "UGood";
        }
    }
}

} // namespace

SimRaidDriver::SimRaidDriver(std::shared_ptr<MachineStore> store, std::string family)
    : access_(std::move(store), std::move(family)) {}

void SimRaidDriver::GetControllerIds(std::vector<int>& ids) {
    ids = access_.ControllerIds();
}

SimRaidDriver::Code SimRaidDriver::ClearConfig(int controller, std::string& error_text) {
    return access_.Act("ClearConfig", controller, std::nullopt, true, error_text,
                       [](Controller& c, std::string& /*error*/) {
                           for (const Volume& volume : c.volumes) {
                               ReleaseVolume(c, volume);
                           }
                           c.volumes.clear();
                           for (Disk& disk : c.disks) {
                               if (disk.state == "GHS" || disk.state == "DHS") {
                                   disk.state = "UGood";
                               }
                           }
                           c.global_hot_spares.clear();
                           return RAID_OK;
                       });
}

SimRaidDriver::Code SimRaidDriver::RemoveVolume(int controller, int volume,
                                                std::string& error_text) {
    return access_.Act("RemoveVolume", controller, std::to_string(volume), true, error_text,
                       [volume](Controller& c, std::string& error) {
                           Volume* found = FindVolume(c, volume);
                           if (found == nullptr) {
                               error = VolumeNotFound(volume);
                               return RAID_TARGET_NOT_FOUND;
                           }
                           ReleaseVolume(c, *found);
                           c.volumes.erase(c.volumes.begin() + (found - c.volumes.data()));
                           return RAID_OK;
                       });
}

SimRaidDriver::Code SimRaidDriver::GetCanMakeGoodDiskIds(int controller, std::vector<int>& disks,
                                                         std::string& error_text) {
    disks.clear();
    return access_.Act("GetCanMakeGoodDiskIds", controller, std::nullopt, false, error_text,
                       [&disks](Controller& c, std::string& /*error*/) {
                           disks = model::ControllerReader::CanMakeGood(c);
                           return RAID_OK;
                       });
}

SimRaidDriver::Code SimRaidDriver::GetCanMakeJbodDiskIds(int controller, std::vector<int>& disks,
                                                         std::string& error_text) {
    disks.clear();
    return access_.Act("GetCanMakeJbodDiskIds", controller, std::nullopt, false, error_text,
                       [&disks](Controller& c, std::string& /*error*/) {
                           disks = model::ControllerReader::CanMakeJbod(c);
                           return RAID_OK;
                       });
}

SimRaidDriver::Code SimRaidDriver::MakeGood(int controller, int disk, std::string& error_text) {
    return access_.Act("MakeGood", controller, std::to_string(disk), true, error_text,
                       [disk](Controller& c, std::string& error) {
                           int id = 0;
                           const Code code = model::DiskRules::Check(
                               c, std::to_string(disk), model::DiskRules::Change::Good, id, error);
                           if (code == RAID_OK) {
                               FindDisk(c, id)->state = "UGood";
                           }
                           return code;
                       });
}

SimRaidDriver::Code SimRaidDriver::MakeJbod(int controller, int disk, std::string& error_text) {
    return access_.Act("MakeJbod", controller, std::to_string(disk), true, error_text,
                       [disk](Controller& c, std::string& error) {
                           int id = 0;
                           const Code code = model::DiskRules::Check(
                               c, std::to_string(disk), model::DiskRules::Change::Jbod, id, error);
                           if (code == RAID_OK) {
                               FindDisk(c, id)->state = "JBOD";
                           }
                           return code;
                       });
}

SimRaidDriver::Code SimRaidDriver::AddGlobalHotSpare(int controller, const std::string& disk,
                                                     std::string& error_text) {
    const bool m2 = IsM2(access_.family());
    return access_.Act("AddGlobalHotSpare", controller, disk, true, error_text,
                       [&disk, m2](Controller& c, std::string& error) {
                           if (m2) {
                               error = "M.2 controllers have no hot spares";
                               return RAID_FUNCTION_UNSUPPORTED;
                           }
                           int id = 0;
                           const Code code = model::DiskRules::Check(
                               c, disk, model::DiskRules::Change::Spare, id, error);
                           if (code != RAID_OK) {
                               return code;
                           }
                           FindDisk(c, id)->state = "GHS";
                           c.global_hot_spares.push_back(id);
                           return RAID_OK;
                       });
}

SimRaidDriver::Code SimRaidDriver::AddDedicatedHotSpare(int controller, const std::string& disk,
                                                        const std::vector<std::string>& disk_groups,
                                                        std::string& error_text) {
    const bool unsupported = IsM2(access_.family()) || IsVroc(access_.family());
    return access_.Act("AddDedicatedHotSpare", controller, disk, true, error_text,
                       [&disk, &disk_groups, unsupported](Controller& c, std::string& error) {
                           if (unsupported) {
                               error = "the controller has no dedicated hot spares";
                               return RAID_FUNCTION_UNSUPPORTED;
                           }
                           int id = 0;
                           Disk* found = ParseId(disk, id) ? FindDisk(c, id) : nullptr;
                           if (found == nullptr) {
                               error = "disk " + disk + " does not exist";
                               return RAID_TARGET_NOT_FOUND;
                           }
                           if (disk_groups.empty()) {
                               error = "a dedicated hot spare needs at least one disk group";
                               return RAID_OPERATION_FAILED;
                           }
                           // Every volume stands in a disk group of its own, numbered as the
                           // volume.
                           std::vector<Volume*> volumes;
                           for (const std::string& group : disk_groups) {
                               int volume_id = 0;
                               Volume* volume =
                                   ParseId(group, volume_id) ? FindVolume(c, volume_id) : nullptr;
                               if (volume == nullptr) {
                                   error = "disk group " + group + " does not exist";
                                   return RAID_TARGET_NOT_FOUND;
                               }
                               volumes.push_back(volume);
                           }
                           const Code code = model::DiskRules::Check(
                               c, disk, model::DiskRules::Change::Spare, id, error);
                           if (code != RAID_OK) {
                               return code;
                           }
                           found->state = "DHS";
                           for (Volume* volume : volumes) {
                               volume->dedicated_spares.push_back(id);
                           }
                           return RAID_OK;
                       });
}

SimRaidDriver::Code SimRaidDriver::RemoveHotSpare(int controller, const std::string& disk,
                                                  std::string& error_text) {
    const bool m2 = IsM2(access_.family());
    return access_.Act(
        "RemoveHotSpare", controller, disk, true, error_text,
        [&disk, m2](Controller& c, std::string& error) {
            if (m2) {
                error = "M.2 controllers have no hot spares";
                return RAID_FUNCTION_UNSUPPORTED;
            }
            int id = 0;
            const Code code =
                model::DiskRules::Check(c, disk, model::DiskRules::Change::SpareRemoval, id, error);
            if (code != RAID_OK) {
                return code;
            }
            FindDisk(c, id)->state = "UGood";
            auto& global = c.global_hot_spares;
            global.erase(std::remove(global.begin(), global.end(), id), global.end());
            for (Volume& volume : c.volumes) {
                auto& spares = volume.dedicated_spares;
                spares.erase(std::remove(spares.begin(), spares.end(), id), spares.end());
            }
            return RAID_OK;
        });
}

SimRaidDriver::Code SimRaidDriver::FastInit(int controller, int volume, std::string& error_text) {
    return access_.Act("FastInit", controller, std::to_string(volume), true, error_text,
                       [volume](Controller& c, std::string& error) {
                           Volume* found = FindVolume(c, volume);
                           if (found == nullptr) {
                               error = VolumeNotFound(volume);
                               return RAID_TARGET_NOT_FOUND;
                           }
                           found->initialization = 1; // a fast initialisation has run
                           return RAID_OK;
                       });
}

SimRaidDriver::Code SimRaidDriver::GetAllVolumes(int controller, std::vector<int>& volumes,
                                                 std::string& error_text) {
    volumes.clear();
    return access_.Act("GetAllVolumes", controller, std::nullopt, false, error_text,
                       [&volumes](Controller& c, std::string& /*error*/) {
                           volumes = model::ControllerReader::VolumeIds(c);
                           return RAID_OK;
                       });
}

SimRaidDriver::Code SimRaidDriver::RaidChangeConnectorMode(int controller,
                                                           const std::string& connector,
                                                           const std::string& mode,
                                                           std::string& error_text) {
    return access_.Act("RaidChangeConnectorMode", controller, connector, true, error_text,
                       [&connector, &mode](Controller& c, std::string& error) {
                           if (c.connectors.empty()) {
                               error = "the controller has no connectors with a mode";
                               return RAID_DEVICE_UNSUPPORTED;
                           }
                           int id = 0;
                           auto found = c.connectors.end();
                           if (ParseId(connector, id)) {
                               found = std::find_if(
                                   c.connectors.begin(), c.connectors.end(),
                                   [id](const Connector& known) { return known.id == id; });
                           }
                           if (found == c.connectors.end()) {
                               error = "connector " + connector + " does not exist";
                               return RAID_TARGET_NOT_FOUND;
                           }
                           return model::ModeSetting::Change(found->mode, c.connector_modes, mode,
                                                             "connector " + connector, error);
                       });
}

SimRaidDriver::Code SimRaidDriver::SetFirmwareDeviceOrderCtrl(int controller,
                                                              const std::string& mode,
                                                              std::string& error_text) {
    return access_.Act("SetFirmwareDeviceOrderCtrl", controller, std::nullopt, true, error_text,
                       [&mode](Controller& c, std::string& error) {
                           if (!c.fw_device_order) {
                               error = "the controller has no firmware device order";
                               return RAID_DEVICE_UNSUPPORTED;
                           }
                           return model::ModeSetting::Change(*c.fw_device_order,
                                                             c.fw_device_order_modes, mode,
                                                             "the firmware device order", error);
                       });
}

} // namespace sim
