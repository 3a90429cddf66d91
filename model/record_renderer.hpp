#pragma once

#include <string>
#include <vector>

#include "backend/records.hpp"
#include "model/machine.hpp"

namespace model {

// Renders the model of one simulated controller into the records its backend class answers
// with. The records that show prints may use a person's units ("931.5 GB"); the configuration
// records (what save writes) hold texts that add reads back unchanged ("953869MB", "256K").
class RecordRenderer {
public:
    // Controllers, as GetController answers for each family.
    static void Render(const Controller& controller, Quillon::protocol::StorcliCtrl& record);
    static void Render(const Controller& controller, Quillon::ARCCONF::ControllerInfo& record);
    static void Render(const Controller& controller, Quillon::RaidConfig::Controller& record);
    static void Render(const Controller& controller, Quillon::RaidConfig::M2CtrlInfo& record);
    static void Render(const Controller& controller, Quillon::protocol::MicrochipCtrl& record);
    static void Render(const Controller& controller, Quillon::protocol::VolManDevCtrl& record);
    static void Render(const Controller& controller, Quillon::RaidConfig::SWWinController& record);
    static void Render(const Controller& controller, Quillon::protocol::FWDevOrderCtrl& record);
    static void Render(const Controller& controller,
                       Quillon::RaidConfig::FWDevOrderController& record);
    static void Render(const Controller& controller, Quillon::RaidConfig::EKMController& record,
                       bool with_volumes);

    // Configurations, as GetConfig answers for each family: the volumes and global hot spares.
    static void RenderConfig(const Controller& controller,
                             std::vector<Quillon::RaidConfig::VolumeObject>& volumes,
                             std::vector<int>& hot_spares);
    static void RenderConfig(const Controller& controller,
                             std::vector<Quillon::ARCCONF::VolumeCfg>& volumes,
                             std::vector<std::string>& hot_spares);
    // The first volume of an M.2 controller (it holds one at most).
    static void RenderConfig(const Controller& controller,
                             Quillon::RaidConfig::M2VolumeInfo& volume);
    static void RenderConfig(const Controller& controller,
                             std::vector<Quillon::protocol::OobMicroConfig>& volumes);
    static void RenderConfig(const Controller& controller,
                             std::vector<Quillon::protocol::VolManDevConfig>& volumes,
                             std::vector<int>& hot_spares);
    static void RenderConfig(const Controller& controller,
                             std::vector<Quillon::RaidConfig::SWWinArray>& arrays,
                             std::vector<int>& hot_spares);

    // "931.5 GB": a size in megabytes for a person, in binary units with one decimal.
    static std::string HumanSize(long long megabytes);
};

} // namespace model
