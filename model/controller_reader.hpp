#pragma once

#include <string>
#include <vector>

#include "backend/records.hpp"
#include "model/machine.hpp"
#include "model/record_renderer.hpp"
#include "result/raid_error_code.hpp"

namespace model {

// The read operations of the backend contract on one controller of the model, with their codes
// and texts: what the simulated machine answers and what the Redfish road answers from a BMC's
// storage tree, so that both roads read alike.
class ControllerReader {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    // GetController of every family: the record rendered from the controller.
    template <typename Record> static Code Show(const Controller& controller, Record& record) {
        record = Record();
        RecordRenderer::Render(controller, record);
        return Quillon::RaidConfig::RAID_OK;
    }

    // GetConfig of the families that save volumes and hot spares; 10 when the controller has
    // neither, since there is nothing to save.
    template <typename... Out>
    static Code Config(const Controller& controller, std::string& error, Out&... out) {
        (out.clear(), ...);
        const Code code = Configured(controller, error);
        if (code == Quillon::RaidConfig::RAID_OK) {
            RecordRenderer::RenderConfig(controller, out...);
        }
        return code;
    }
    // GetConfig of an M.2 controller: its one volume; 10 when it has none.
    static Code Config(const Controller& controller, std::string& error,
                       Quillon::RaidConfig::M2VolumeInfo& volume);

    // Disks that make good takes (UBad or JBOD), that make JBOD takes (UGood), and the ids of
    // every volume.
    static std::vector<int> CanMakeGood(const Controller& controller);
    static std::vector<int> CanMakeJbod(const Controller& controller);
    static std::vector<int> VolumeIds(const Controller& controller);

    // The firmware device order and key management records; 33 when the controller lacks the
    // function.
    static Code FirmwareOrder(const Controller& controller,
                              Quillon::protocol::FWDevOrderCtrl& record, std::string& error);
    static Code FirmwareOrder(const Controller& controller,
                              Quillon::RaidConfig::FWDevOrderController& record,
                              std::string& error);
    static Code KeyManagement(const Controller& controller,
                              Quillon::RaidConfig::EKMController& record, bool with_volumes,
                              std::string& error);

    // The volume limits the support query answers: "64K", "1024K" (the empty text for a limit
    // nobody told) and the RAID levels.
    static void SupportInfo(const Controller& controller, std::string& max_stripe_size,
                            std::string& min_stripe_size, std::vector<std::string>& raid_levels);

    // 10 with a reason when the controller has no volume and no hot spare.
    static Code Configured(const Controller& controller, std::string& error);
    // The texts of a controller that lacks a function.
    static Code NoFirmwareOrder(std::string& error);
    static Code NoKeyManagement(std::string& error);
};

} // namespace model
