#pragma once

#include <string>
#include <vector>

#include "backend/raid_policy.hpp"
#include "service/misc_raid_service/detail/raid_config_parser.hpp"

namespace service {
namespace detail {

// A read policy file as the in-band driver applies it: each family's sections read, checked
// and cast by the same parser, checker and caster as the road without targets, so that a file
// means the same on both roads. The parser must outlive this object.
class InbandPolicy : public Quillon::RaidConfig::RaidPolicy {
public:
    explicit InbandPolicy(const RaidConfigParser& parser) : parser_(parser) {}

    bool HasSections(int number) const override;
    bool ReadLsi(int number, std::vector<int>& global_hot_spares,
                 std::vector<Quillon::RaidConfig::VolumeObject>& volumes,
                 std::string& refusal) const override;
    bool ReadMicrochip(int number, std::vector<int>& global_hot_spares,
                       std::vector<Quillon::protocol::MicrochipConfig>& volumes,
                       std::string& refusal) const override;
    bool ReadM2(int number, Quillon::RaidConfig::M2ControllerObject& volume, int& volume_id,
                std::string& refusal) const override;
    bool ReadVrocWin(int number, std::vector<int>& global_hot_spares,
                     std::vector<Quillon::RaidConfig::VolRaidConfig>& volumes,
                     std::string& refusal) const override;

private:
    const RaidConfigParser& parser_;
};

} // namespace detail
} // namespace service
