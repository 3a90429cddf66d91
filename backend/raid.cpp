#include "backend/raid.hpp"

#include <utility>

namespace Quillon {
namespace RaidConfig {

Raid::Raid(std::shared_ptr<RaidDriver> driver) : driver_(std::move(driver)) {
    if (!driver_) {
        // A platform that offers nothing for a family still gets a family without controllers.
        driver_ = std::make_shared<RaidDriver>();
    }
}

Raid::~Raid() = default;

int Raid::count() const {
    std::vector<int> ids;
    GetControllerIds(ids);
    return static_cast<int>(ids.size());
}

void Raid::GetControllerIds(std::vector<int>& ids) const {
    driver_->GetControllerIds(ids);
}

RaidErrorCode Raid::ClearConfig(int controller) {
    return driver_->ClearConfig(controller, error_text);
}

RaidErrorCode Raid::RemoveVolume(int controller, int volume) {
    return driver_->RemoveVolume(controller, volume, error_text);
}

RaidErrorCode Raid::GetCanMakeGoodDiskIds(int controller, std::vector<int>& disks) {
    return driver_->GetCanMakeGoodDiskIds(controller, disks, error_text);
}

RaidErrorCode Raid::GetCanMakeJbodDiskIds(int controller, std::vector<int>& disks) {
    return driver_->GetCanMakeJbodDiskIds(controller, disks, error_text);
}

RaidErrorCode Raid::MakeGood(int controller, int disk) {
    return driver_->MakeGood(controller, disk, error_text);
}

RaidErrorCode Raid::MakeJbod(int controller, int disk) {
    return driver_->MakeJbod(controller, disk, error_text);
}

RaidErrorCode Raid::AddGlobalHotSpare(int controller, const std::string& disk) {
    return driver_->AddGlobalHotSpare(controller, disk, error_text);
}

RaidErrorCode Raid::AddDedicatedHotSpare(int controller, const std::string& disk,
                                         const std::vector<std::string>& disk_groups) {
    return driver_->AddDedicatedHotSpare(controller, disk, disk_groups, error_text);
}

RaidErrorCode Raid::RemoveHotSpare(int controller, const std::string& disk) {
    return driver_->RemoveHotSpare(controller, disk, error_text);
}

RaidErrorCode Raid::FastInit(int controller, int volume) {
    return driver_->FastInit(controller, volume, error_text);
}

RaidErrorCode Raid::GetAllVolumes(int controller, std::vector<int>& volumes) {
    return driver_->GetAllVolumes(controller, volumes, error_text);
}

RaidErrorCode Raid::RaidChangeConnectorMode(int controller, const std::string& connector,
                                            const std::string& mode) {
    return driver_->RaidChangeConnectorMode(controller, connector, mode, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
