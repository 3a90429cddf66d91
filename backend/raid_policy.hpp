#pragma once

#include <string>
#include <vector>

#include "backend/m2_controller_object.hpp"
#include "backend/microchip_config.hpp"
#include "backend/vol_raid_config.hpp"
#include "backend/volume_object.hpp"

namespace Quillon {
namespace RaidConfig {

// A policy file that was read already, as the in-band driver applies it. The driver decides
// which controller a section number stands for; the reading, judging and casting of the sections
// stay with whoever read the file, so that every road applies a file by the same rules.
//
// Each Read member gives the requests of one controller's sections, numbered as the file numbers
// them, in the order the file lists them. False means the family's check refused the sections;
// refusal then holds the one line that says why and nothing may be applied.
class RaidPolicy {
public:
    virtual ~RaidPolicy();

    // True when the file has a controller or volume section of this number.
    virtual bool HasSections(int number) const = 0;

    virtual bool ReadLsi(int number, std::vector<int>& global_hot_spares,
                         std::vector<VolumeObject>& volumes, std::string& refusal) const = 0;
    virtual bool ReadMicrochip(int number, std::vector<int>& global_hot_spares,
                               std::vector<protocol::MicrochipConfig>& volumes,
                               std::string& refusal) const = 0;
    // The one volume of an M.2 controller; volume_id is the number of its section.
    virtual bool ReadM2(int number, M2ControllerObject& volume, int& volume_id,
                        std::string& refusal) const = 0;
    virtual bool ReadVrocWin(int number, std::vector<int>& global_hot_spares,
                             std::vector<VolRaidConfig>& volumes, std::string& refusal) const = 0;

protected:
    RaidPolicy() = default;
    RaidPolicy(const RaidPolicy&) = default;
    RaidPolicy& operator=(const RaidPolicy&) = default;
};

} // namespace RaidConfig
} // namespace Quillon
