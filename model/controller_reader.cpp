#include "model/controller_reader.hpp"

namespace model {

using namespace Quillon::RaidConfig;

ControllerReader::Code ControllerReader::Configured(const Controller& controller,
                                                    std::string& error) {
    if (controller.volumes.empty() && controller.global_hot_spares.empty()) {
        error = "controller " + std::to_string(controller.id) + " has no volume and no hot spare";
        return RAID_NO_CONFIG;
    }
    return RAID_OK;
}

ControllerReader::Code ControllerReader::Config(const Controller& controller, std::string& error,
                                                M2VolumeInfo& volume) {
    volume = M2VolumeInfo();
    if (controller.volumes.empty()) {
        error = "controller " + std::to_string(controller.id) + " has no volume";
        return RAID_NO_CONFIG;
    }
    RecordRenderer::RenderConfig(controller, volume);
    return RAID_OK;
}

std::vector<int> ControllerReader::CanMakeGood(const Controller& controller) {
    std::vector<int> disks;
    for (const Disk& disk : controller.disks) {
        if (disk.state == "UBad" || disk.state == "JBOD") {
            disks.push_back(disk.id);
        }
    }
    return disks;
}

std::vector<int> ControllerReader::CanMakeJbod(const Controller& controller) {
    std::vector<int> disks;
    for (const Disk& disk : controller.disks) {
        if (disk.state == "UGood") {
            disks.push_back(disk.id);
        }
    }
    return disks;
}

std::vector<int> ControllerReader::VolumeIds(const Controller& controller) {
    std::vector<int> volumes;
    for (const Volume& volume : controller.volumes) {
        volumes.push_back(volume.id);
    }
    return volumes;
}

ControllerReader::Code ControllerReader::NoFirmwareOrder(std::string& error) {
    error = "the controller has no firmware device order";
    return RAID_DEVICE_UNSUPPORTED;
}

ControllerReader::Code ControllerReader::NoKeyManagement(std::string& error) {
    error = "the controller has no key management";
    return RAID_DEVICE_UNSUPPORTED;
}

ControllerReader::Code ControllerReader::FirmwareOrder(const Controller& controller,
                                                       Quillon::protocol::FWDevOrderCtrl& record,
                                                       std::string& error) {
    if (!controller.fw_device_order) {
        return NoFirmwareOrder(error);
    }
    return Show(controller, record);
}

ControllerReader::Code ControllerReader::FirmwareOrder(const Controller& controller,
                                                       FWDevOrderController& record,
                                                       std::string& error) {
    if (!controller.fw_device_order) {
        return NoFirmwareOrder(error);
    }
    return Show(controller, record);
}

ControllerReader::Code ControllerReader::KeyManagement(const Controller& controller,
                                                       EKMController& record, bool with_volumes,
                                                       std::string& error) {
    if (!controller.ekm_mode) {
        return NoKeyManagement(error);
    }
    record = EKMController();
    RecordRenderer::Render(controller, record, with_volumes);
    return RAID_OK;
}

void ControllerReader::SupportInfo(const Controller& controller, std::string& max_stripe_size,
                                   std::string& min_stripe_size,
                                   std::vector<std::string>& raid_levels) {
    // A limit the controller does not tell (0) is the empty text, never "0K".
    max_stripe_size =
        controller.max_stripe_kb > 0 ? std::to_string(controller.max_stripe_kb) + "K" : "";
    min_stripe_size =
        controller.min_stripe_kb > 0 ? std::to_string(controller.min_stripe_kb) + "K" : "";
    raid_levels = controller.raid_levels;
}

} // namespace model
