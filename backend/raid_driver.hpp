#pragma once

#include <string>
#include <vector>

#include "result/raid_error_code.hpp"

namespace Quillon {
namespace protocol {
struct StorcliCtrl;
struct FWDevOrderCtrl;
struct MicrochipConfig;
struct MicrochipCtrl;
struct OobMicroConfig;
struct VolManDevCtrl;
struct VolManDevConfig;
} // namespace protocol
namespace ARCCONF {
struct ControllerInfo;
struct VolumeCfg;
} // namespace ARCCONF

namespace RaidConfig {

struct Controller;
struct VolumeObject;
struct M2CtrlInfo;
struct M2VolumeInfo;
struct M2ControllerObject;
struct SWWinController;
struct SWWinArray;
struct VolRaidConfig;

// What stands behind one backend class: the replaceable implementation of a RAID family, made
// by the backend platform of the process (simulated machine, Redfish, or none). The backend
// classes forward every operation here and hand over error_text, which a driver sets only when
// an operation fails.
//
// The defaults describe a family with no controllers at all: no ids, and every operation on a
// controller answers 5. A driver overrides what its family offers.
class RaidDriver {
public:
    RaidDriver() = default;
    virtual ~RaidDriver() = default;
    RaidDriver(const RaidDriver&) = delete;
    RaidDriver& operator=(const RaidDriver&) = delete;

    // Operations every family has.
    virtual void GetControllerIds(std::vector<int>& ids);
    virtual RaidErrorCode ClearConfig(int controller, std::string& error_text);
    virtual RaidErrorCode RemoveVolume(int controller, int volume, std::string& error_text);
    virtual RaidErrorCode GetCanMakeGoodDiskIds(int controller, std::vector<int>& disks,
                                                std::string& error_text);
    virtual RaidErrorCode GetCanMakeJbodDiskIds(int controller, std::vector<int>& disks,
                                                std::string& error_text);
    virtual RaidErrorCode MakeGood(int controller, int disk, std::string& error_text);
    virtual RaidErrorCode MakeJbod(int controller, int disk, std::string& error_text);
    virtual RaidErrorCode AddGlobalHotSpare(int controller, const std::string& disk,
                                            std::string& error_text);
    virtual RaidErrorCode AddDedicatedHotSpare(int controller, const std::string& disk,
                                               const std::vector<std::string>& disk_groups,
                                               std::string& error_text);
    virtual RaidErrorCode RemoveHotSpare(int controller, const std::string& disk,
                                         std::string& error_text);
    virtual RaidErrorCode FastInit(int controller, int volume, std::string& error_text);
    virtual RaidErrorCode GetAllVolumes(int controller, std::vector<int>& volumes,
                                        std::string& error_text);
    virtual RaidErrorCode RaidChangeConnectorMode(int controller, const std::string& connector,
                                                  const std::string& mode, std::string& error_text);

    // Family operations; each family's driver overrides those of its own records.
    virtual RaidErrorCode GetController(int controller, protocol::StorcliCtrl& record,
                                        std::string& error_text);
    virtual RaidErrorCode GetController(int controller, ARCCONF::ControllerInfo& record,
                                        std::string& error_text);
    virtual RaidErrorCode GetController(int controller, Controller& record,
                                        std::string& error_text);
    virtual RaidErrorCode GetController(int controller, M2CtrlInfo& record,
                                        std::string& error_text);
    virtual RaidErrorCode GetController(int controller, protocol::MicrochipCtrl& record,
                                        std::string& error_text);
    virtual RaidErrorCode GetController(int controller, protocol::VolManDevCtrl& record,
                                        std::string& error_text);
    virtual RaidErrorCode GetController(int controller, SWWinController& record,
                                        std::string& error_text);

    virtual RaidErrorCode GetConfig(int controller, std::vector<VolumeObject>& volumes,
                                    std::vector<int>& hot_spares, std::string& error_text);
    virtual RaidErrorCode GetConfig(int controller, std::vector<ARCCONF::VolumeCfg>& volumes,
                                    std::vector<std::string>& hot_spares, std::string& error_text);
    virtual RaidErrorCode GetConfig(int controller, M2VolumeInfo& volume, std::string& error_text);
    virtual RaidErrorCode GetConfig(int controller, std::vector<protocol::OobMicroConfig>& volumes,
                                    std::string& error_text);
    virtual RaidErrorCode GetConfig(int controller, std::vector<protocol::VolManDevConfig>& volumes,
                                    std::vector<int>& hot_spares, std::string& error_text);
    virtual RaidErrorCode GetConfig(int controller, std::vector<SWWinArray>& arrays,
                                    std::vector<int>& hot_spares, std::string& error_text);

    virtual RaidErrorCode Add(const VolumeObject& request, std::string& error_text);
    virtual RaidErrorCode Add(const protocol::MicrochipConfig& request, std::string& error_text);
    virtual RaidErrorCode Add(const M2ControllerObject& request, std::string& error_text);
    virtual RaidErrorCode Add(const protocol::OobMicroConfig& request, std::string& error_text);
    virtual RaidErrorCode Add(const protocol::VolManDevConfig& request, std::string& error_text);
    virtual RaidErrorCode Add(VolRaidConfig& request, std::string& error_text);

    virtual RaidErrorCode GetFirmwareDeviceOrderCtrl(int controller,
                                                     protocol::FWDevOrderCtrl& record,
                                                     std::string& error_text);
    virtual RaidErrorCode SetFirmwareDeviceOrderCtrl(int controller, const std::string& mode,
                                                     std::string& error_text);
    virtual void SetBmcType(int type);
    virtual RaidErrorCode GetSupportedRaidLevels(int controller, std::vector<std::string>& levels,
                                                 std::string& error_text);

protected:
    // The answer of the defaults: the controller does not exist.
    static RaidErrorCode NoController(int controller, std::string& error_text);
};

} // namespace RaidConfig
} // namespace Quillon
