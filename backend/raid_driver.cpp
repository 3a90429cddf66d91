#include "backend/raid_driver.hpp"

namespace Quillon {
namespace RaidConfig {

RaidErrorCode RaidDriver::NoController(int controller, std::string& error_text) {
    error_text = "controller " + std::to_string(controller) + " does not exist";
    return RAID_TARGET_NOT_FOUND;
}

void RaidDriver::GetControllerIds(std::vector<int>& ids) {
    ids.clear();
}

RaidErrorCode RaidDriver::ClearConfig(int controller, std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::RemoveVolume(int controller, int /*volume*/, std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetCanMakeGoodDiskIds(int controller, std::vector<int>& /*disks*/,
                                                std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetCanMakeJbodDiskIds(int controller, std::vector<int>& /*disks*/,
                                                std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::MakeGood(int controller, int /*disk*/, std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::MakeJbod(int controller, int /*disk*/, std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::AddGlobalHotSpare(int controller, const std::string& /*disk*/,
                                            std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::AddDedicatedHotSpare(int controller, const std::string& /*disk*/,
                                               const std::vector<std::string>& /*disk_groups*/,
                                               std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::RemoveHotSpare(int controller, const std::string& /*disk*/,
                                         std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::FastInit(int controller, int /*volume*/, std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetAllVolumes(int controller, std::vector<int>& /*volumes*/,
                                        std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::RaidChangeConnectorMode(int controller, const std::string& /*connector*/,
                                                  const std::string& /*mode*/,
                                                  std::string& error_text) {
    return NoController(controller, error_text);
}

RaidErrorCode RaidDriver::GetController(int controller, protocol::StorcliCtrl& /*record*/,
                                        std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetController(int controller, ARCCONF::ControllerInfo& /*record*/,
                                        std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetController(int controller, Controller& /*record*/,
                                        std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetController(int controller, M2CtrlInfo& /*record*/,
                                        std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetController(int controller, protocol::MicrochipCtrl& /*record*/,
                                        std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetController(int controller, protocol::VolManDevCtrl& /*record*/,
                                        std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetController(int controller, SWWinController& /*record*/,
                                        std::string& error_text) {
    return NoController(controller, error_text);
}

RaidErrorCode RaidDriver::GetConfig(int controller, std::vector<VolumeObject>& /*volumes*/,
                                    std::vector<int>& /*hot_spares*/, std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetConfig(int controller, std::vector<ARCCONF::VolumeCfg>& /*volumes*/,
                                    std::vector<std::string>& /*hot_spares*/,
                                    std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetConfig(int controller, M2VolumeInfo& /*volume*/,
                                    std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetConfig(int controller,
                                    std::vector<protocol::OobMicroConfig>& /*volumes*/,
                                    std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetConfig(int controller,
                                    std::vector<protocol::VolManDevConfig>& /*volumes*/,
                                    std::vector<int>& /*hot_spares*/, std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::GetConfig(int controller, std::vector<SWWinArray>& /*arrays*/,
                                    std::vector<int>& /*hot_spares*/, std::string& error_text) {
    return NoController(controller, error_text);
}

// Requests name their controller inside the record; without controllers none exists.
RaidErrorCode RaidDriver::Add(const VolumeObject& /*request*/, std::string& error_text) {
    return NoController(-1, error_text);
}
RaidErrorCode RaidDriver::Add(const protocol::MicrochipConfig& /*request*/,
                              std::string& error_text) {
    return NoController(-1, error_text);
}
RaidErrorCode RaidDriver::Add(const M2ControllerObject& /*request*/, std::string& error_text) {
    return NoController(-1, error_text);
}
RaidErrorCode RaidDriver::Add(const protocol::OobMicroConfig& /*request*/,
                              std::string& error_text) {
    return NoController(-1, error_text);
}
RaidErrorCode RaidDriver::Add(const protocol::VolManDevConfig& /*request*/,
                              std::string& error_text) {
    return NoController(-1, error_text);
}
RaidErrorCode RaidDriver::Add(VolRaidConfig& /*request*/, std::string& error_text) {
    return NoController(-1, error_text);
}

RaidErrorCode RaidDriver::GetFirmwareDeviceOrderCtrl(int controller,
                                                     protocol::FWDevOrderCtrl& /*record*/,
                                                     std::string& error_text) {
    return NoController(controller, error_text);
}
RaidErrorCode RaidDriver::SetFirmwareDeviceOrderCtrl(int controller, const std::string& /*mode*/,
                                                     std::string& error_text) {
    return NoController(controller, error_text);
}
void RaidDriver::SetBmcType(int /*type*/) {}
RaidErrorCode RaidDriver::GetSupportedRaidLevels(int controller,
                                                 std::vector<std::string>& /*levels*/,
                                                 std::string& error_text) {
    return NoController(controller, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
