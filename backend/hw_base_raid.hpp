#pragma once

#include <string>
#include <vector>

#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

struct Table;
struct ConfigVol;

// The older per-controller interface of the in-band hardware families. Nothing in the service
// calls it; it keeps the classes' shape, and every operation answers 29.
class HWBaseRaid {
public:
    virtual ~HWBaseRaid() = 0;
    virtual void GetControllerIds(std::vector<int>& ids) const = 0;
    virtual RaidErrorCode GetRaidTableInfo(int controller, int volume,
                                           std::vector<std::vector<Table>>& tables);
    virtual RaidErrorCode AddVolume(int controller, const ConfigVol& volume);
    virtual RaidErrorCode GetConfigString(int controller, int volume, std::string& text);
    virtual RaidErrorCode RaidClear(int controller);
    virtual RaidErrorCode RaidRemoveVol(int controller, int volume);
    virtual RaidErrorCode RaidAddHotSpare(int controller, int disk,
                                          const std::vector<int>& volumes);
    virtual RaidErrorCode RaidRemoveHotSpare(int controller, int disk);

protected:
    HWBaseRaid() = default;
    HWBaseRaid(const HWBaseRaid&) = default;
    HWBaseRaid& operator=(const HWBaseRaid&) = default;
};

} // namespace RaidConfig
} // namespace Quillon
