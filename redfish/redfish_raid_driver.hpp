#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "backend/raid_driver.hpp"
#include "model/disk_rules.hpp"
#include "redfish/bmc_access.hpp"

namespace redfish {

class RedfishConnection;

// The driver behind an out-of-band backend class on a real BMC: one family's controllers of
// the BMC's storage tree. Reads come from the tree (read once, kept until a write); writes are
// the standard Redfish requests where the standard has the function (POST and DELETE of
// volumes, Storage.ResetToDefaults, Drive.HotspareType, Volume.Initialize, pass-through volumes
// for JBOD) and our Oem actions where it has not.
class RedfishRaidDriver : public Quillon::RaidConfig::RaidDriver {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    // family is the machine model's name of the family, e.g. "OOB_LSI".
    RedfishRaidDriver(const RedfishConnection& connection, std::string family);

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

    Code GetController(int controller, Quillon::RaidConfig::Controller& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::RaidConfig::M2CtrlInfo& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::protocol::MicrochipCtrl& record,
                       std::string& error_text) override;
    Code GetController(int controller, Quillon::protocol::VolManDevCtrl& record,
                       std::string& error_text) override;

    Code GetConfig(int controller, std::vector<Quillon::RaidConfig::VolumeObject>& volumes,
                   std::vector<int>& hot_spares, std::string& error_text) override;
    Code GetConfig(int controller, Quillon::RaidConfig::M2VolumeInfo& volume,
                   std::string& error_text) override;
    Code GetConfig(int controller, std::vector<Quillon::protocol::OobMicroConfig>& volumes,
                   std::string& error_text) override;
    Code GetConfig(int controller, std::vector<Quillon::protocol::VolManDevConfig>& volumes,
                   std::vector<int>& hot_spares, std::string& error_text) override;

    Code Add(const Quillon::RaidConfig::VolumeObject& request, std::string& error_text) override;
    Code Add(const Quillon::RaidConfig::M2ControllerObject& request,
             std::string& error_text) override;
    Code Add(const Quillon::protocol::OobMicroConfig& request, std::string& error_text) override;
    Code Add(const Quillon::protocol::VolManDevConfig& request, std::string& error_text) override;

    Code GetFirmwareDeviceOrderCtrl(int controller, Quillon::protocol::FWDevOrderCtrl& record,
                                    std::string& error_text) override;
    Code SetFirmwareDeviceOrderCtrl(int controller, const std::string& mode,
                                    std::string& error_text) override;
    void SetBmcType(int type) override { bmc_type_ = type; }
    Code GetSupportedRaidLevels(int controller, std::vector<std::string>& levels,
                                std::string& error_text) override;

    int bmc_type() const { return bmc_type_; }

    // The body of POST .../Volumes for a request: the standard properties a BMC needs, and the
    // request's own texts in our Oem section so that nothing of it is lost.
    static nlohmann::json VolumeBody(const ControllerLinks& links, const std::string& family,
                                     const Quillon::RaidConfig::VolumeObject& request);
    static nlohmann::json VolumeBody(const ControllerLinks& links,
                                     const Quillon::RaidConfig::M2ControllerObject& request);
    static nlohmann::json VolumeBody(const ControllerLinks& links,
                                     const Quillon::protocol::OobMicroConfig& request);
    static nlohmann::json VolumeBody(const ControllerLinks& links,
                                     const Quillon::protocol::VolManDevConfig& request);

private:
    // A read of the shared model's, over the tree.
    template <typename Reader>
    Code Read(const std::string& op, int controller, std::string& error_text, Reader reader);
    template <typename Record> Code Show(int controller, Record& record, std::string& error_text);
    template <typename... Out> Code Config(int controller, std::string& error_text, Out&... out);
    Code Create(int controller, const std::function<nlohmann::json(const ControllerLinks&)>& body,
                std::string& error_text);
    // Judges a create for a BMC without our Oem section, as the simulated machine would: the
    // level among the controller's SupportedRAIDTypes, member and spare disks present and
    // "UGood". Takes out what that BMC must not get (our Oem section, cache policies none of
    // its volumes shows) and, for an M.2 request, names the drives.
    static Code CheckCreate(const ControllerLinks& links, const model::Controller& model,
                            nlohmann::json& request, std::string& error_text);
    // A disk change on a BMC without our Oem, judged as the simulated machine judges it before
    // anything is sent; 0 for our BMC, which judges it itself.
    static Code Judge(const ControllerLinks& links, const model::Controller& model,
                      const std::string& disk, model::DiskRules::Change change,
                      std::string& error_text);
    static std::string NotOffered(const std::string& function);

    BmcAccess access_;
    int bmc_type_ = 0;
};

} // namespace redfish
