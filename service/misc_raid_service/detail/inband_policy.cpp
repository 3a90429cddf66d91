#include "service/misc_raid_service/detail/inband_policy.hpp"

#include <algorithm>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/erase.hpp>

#include "service/misc_raid_service/detail/raid_config_caster.hpp"
#include "service/misc_raid_service/detail/raid_config_checker.hpp"
#include "service/misc_raid_service/detail/raid_config_sections.hpp"

namespace service {
namespace detail {

bool InbandPolicy::HasSections(int number) const {
    const std::vector<int> ids = parser_.GetSectionIds();
    return std::find(ids.begin(), ids.end(), number) != ids.end();
}

bool InbandPolicy::ReadLsi(int number, std::vector<int>& global_hot_spares,
                           std::vector<Quillon::RaidConfig::VolumeObject>& volumes,
                           std::string& refusal) const {
    CtrlSection section;
    parser_.ParseCtrlSection(number, section);
    RaidConfigChecker checker;
    if (!checker.CheckLsiCtrlSection(section)) {
        refusal = checker.TakeErrorText();
        return false;
    }
    const RaidConfigCaster caster;
    global_hot_spares = caster.ToHotSpareList(section.global_hot_spares);
    for (const CtrlVolSection& volume : section.volumes) {
        volumes.push_back(caster.ToVolumeObject(volume));
    }
    return true;
}

bool InbandPolicy::ReadMicrochip(int number, std::vector<int>& global_hot_spares,
                                 std::vector<Quillon::protocol::MicrochipConfig>& volumes,
                                 std::string& refusal) const {
    MicroCtrlSection section;
    parser_.ParseMicroSection(number, section);
    RaidConfigChecker checker;
    if (!checker.CheckMicroSection(section)) {
        refusal = checker.TakeErrorText();
        return false;
    }
    const RaidConfigCaster caster;
    global_hot_spares = caster.ToHotSpareList(section.global_hot_spares);
    for (const MicroVolSection& volume : section.volumes) {
        volumes.push_back(caster.ToMicrochipConfig(volume));
    }
    return true;
}

bool InbandPolicy::ReadM2(int number, Quillon::RaidConfig::M2ControllerObject& volume,
                          int& volume_id, std::string& refusal) const {
    M2Section section;
    parser_.ParseM2Section(number, section);
    // The check knows the sizes in capitals only; "128k" is read as "128K".
    boost::algorithm::to_upper(section.strip_size);
    RaidConfigChecker checker;
    if (!checker.CheckM2Section(section)) {
        refusal = checker.TakeErrorText();
        return false;
    }
    // The in-band M.2 backend takes the strip size as a bare number of KiB.
    boost::algorithm::erase_all(section.strip_size, "K");
    volume = RaidConfigCaster().ToM2ControllerObject(section);
    volume_id = section.volid;
    return true;
}

bool InbandPolicy::ReadVrocWin(int number, std::vector<int>& global_hot_spares,
                               std::vector<Quillon::RaidConfig::VolRaidConfig>& volumes,
                               std::string& refusal) const {
    VrocWinCtrlSection section;
    parser_.ParseVrocWinSection(number, section);
    RaidConfigChecker checker;
    if (!checker.CheckVroc_winSection(section)) {
        refusal = checker.TakeErrorText();
        return false;
    }
    const RaidConfigCaster caster;
    global_hot_spares = caster.ToHotSpareList(section.global_hot_spares);
    for (const VrocWinVolSection& volume : section.volumes) {
        volumes.push_back(caster.ToVolRaidConfig(volume));
    }
    return true;
}

} // namespace detail
} // namespace service
