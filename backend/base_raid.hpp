#pragma once

#include <string>
#include <vector>

#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

struct Table;

// The older whole-machine interface of the software and M.2 families. Nothing in the service
// calls it; it keeps the classes' shape, and every operation answers 29.
class BaseRaid {
public:
    virtual ~BaseRaid() = 0;
    virtual RaidErrorCode GetRaidTableInfo(std::vector<std::vector<Table>>& tables);
    virtual RaidErrorCode RaidAdd();
    virtual RaidErrorCode ParsePolicyFile(const std::string& path);
    virtual RaidErrorCode GetConfigString(std::string& text);
    virtual RaidErrorCode RaidClear();
    virtual RaidErrorCode RaidRemoveVol(const std::vector<int>& volumes);
    virtual RaidErrorCode RaidAddHotSpare(const std::vector<std::string>& disks,
                                          const std::vector<std::string>& volumes);
    virtual RaidErrorCode RaidRemoveHotSpare(const std::vector<std::string>& disks);

protected:
    BaseRaid() = default;
    BaseRaid(const BaseRaid&) = default;
    BaseRaid& operator=(const BaseRaid&) = default;
};

} // namespace RaidConfig
} // namespace Quillon
