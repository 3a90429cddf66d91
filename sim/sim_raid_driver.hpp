#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backend/raid_driver.hpp"
#include "sim/machine_access.hpp"
#include "sim/volume_request.hpp"

namespace sim {

// The driver behind every backend class on a simulated machine: one family's controllers of
// the machine file, acting as a careful real controller would and answering with the backend
// codes. The family's own records are rendered by RecordRenderer.
class SimRaidDriver : public Quillon::RaidConfig::RaidDriver {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    SimRaidDriver(std::shared_ptr<MachineStore> store, std::string family);

    void GetControllerIds(std::vector<int>& ids) override;
    Code ClearConfig(int controller, std::string& error_text) override;
    Code RemoveVolume(int controller, int volume, std::string& error_text) override;
    Code GetCanMakeGoodDiskIds(int controller, std::vector<int>& disks,
                               std::string& error_text) override;
    Code GetCanMakeJbodDiskIds(int controller, std::vector<int>& disks,
                               std::string& error_text) override;
    Code MakeGood(int controller, int disk, std::string& error_text) override;
    Code MakeJbod(int controller, int disk, std::string& error_text) override;
    Code AddGlobalHotSpare(int controller, const std::string& disk,
                           std::string& error_text) override;
    Code AddDedicatedHotSpare(int controller, const std::string& disk,
                              const std::vector<std::string>& disk_groups,
                              std::string& error_text) override;
    Code RemoveHotSpare(int controller, const std::string& disk, std::string& error_text) override;
    Code FastInit(int controller, int volume, std::string& error_text) override;
    Code GetAllVolumes(int controller, std::vector<int>& volumes, std::string& error_text) override;
    Code RaidChangeConnectorMode(int controller, const std::string& connector,
                                 const std::string& mode, std::string& error_text) override;

    Code GetController(int controller, Quillon::protocol::StorcliCtrl& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::ARCCONF::ControllerInfo& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::RaidConfig::Controller& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::RaidConfig::M2CtrlInfo& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::protocol::MicrochipCtrl& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::protocol::VolManDevCtrl& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::RaidConfig::SWWinController& record,
                       std::string& error_text) override;

    Code GetConfig(int controller, std::vector<Quillon::RaidConfig::VolumeObject>& volumes,
                   std::vector<int>& hot_spares, std::string& error_text) override;
    Code GetConfig(int controller, std::vector<Quillon::ARCCONF::VolumeCfg>& volumes,
                   std::vector<std::string>& hot_spares, std::string& error_text) override;
    Code GetConfig(int controller, Quillon::RaidConfig::M2VolumeInfo& volume,
                   std::string& error_text) override;
    Code GetConfig(int controller, std::vector<Quillon::protocol::OobMicroConfig>& volumes,
                   std::string& error_text) override;
    Code GetConfig(int controller, std::vector<Quillon::protocol::VolManDevConfig>& volumes,
                   std::vector<int>& hot_spares, std::string& error_text) override;
    Code GetConfig(int controller, std::vector<Quillon::RaidConfig::SWWinArray>& arrays,
                   std::vector<int>& hot_spares, std::string& error_text) override;

    Code Add(const Quillon::RaidConfig::VolumeObject& request, std::string& error_text) override;
    Code Add(const Quillon::protocol::MicrochipConfig& request, std::string& error_text) override;
    Code Add(const Quillon::RaidConfig::M2ControllerObject& request,
             std::string& error_text) override;
    Code Add(const Quillon::protocol::OobMicroConfig& request, std::string& error_text) override;
    Code Add(const Quillon::protocol::VolManDevConfig& request, std::string& error_text) override;
    Code Add(Quillon::RaidConfig::VolRaidConfig& request, std::string& error_text) override;

    Code GetFirmwareDeviceOrderCtrl(int controller, Quillon::protocol::FWDevOrderCtrl& record,
                                    std::string& error_text) override;
    Code SetFirmwareDeviceOrderCtrl(int controller, const std::string& mode,
                                    std::string& error_text) override;
    void SetBmcType(int type) override { bmc_type_ = type; }
    Code GetSupportedRaidLevels(int controller, std::vector<std::string>& levels,
                                std::string& error_text) override;

    int bmc_type() const { return bmc_type_; }

private:
    // Reads a record of the controller: a fault may answer, nothing is changed.
    template <typename Reader>
    Code Read(const std::string& op, int controller, std::string& error_text, Reader reader);
    Code Create(const std::string& op, int controller, bool parsed, const std::string& parse_error,
                const VolumeRequest& request, std::string& error_text);

    MachineAccess access_;
    int bmc_type_ = 0;
};

} // namespace sim
