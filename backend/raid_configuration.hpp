#pragma once

#include <string>
#include <vector>

#include "backend/raid_result.hpp"
#include "backend/raid_target.hpp"

namespace Quillon {
namespace RaidConfig {

struct Table;

// The in-band driver of an action that names targets: it serves every in-band family and
// answers with plain backend codes as int. Lives for one action.
class RaidConfiguration {
public:
    explicit RaidConfiguration(const std::vector<RaidTarget>& targets);
    ~RaidConfiguration();
    RaidConfiguration(const RaidConfiguration&) = delete;
    RaidConfiguration& operator=(const RaidConfiguration&) = delete;

    int RaidAdd(const std::string& policy_file);
    int RaidClear();
    int RaidRemoveVol(RaidTarget::Type type, const std::vector<int>& volumes);
    int RaidAddHotSpare(RaidTarget::Type type, const std::vector<std::string>& disks,
                        const std::vector<std::string>& volumes);
    int RaidRemoveHotSpare(RaidTarget::Type type, const std::vector<std::string>& disks);
    int GetConfigString(std::string& text);
    // The per-target rows of the last operation.
    void GetRaidResults(std::vector<RaidResult>& results);
    // The tables of the show action, one inner sequence per controller.
    void GetRaidTableInfo(std::vector<std::vector<Table>>& tables);

private:
    std::vector<RaidTarget> targets_;
    std::vector<RaidResult> results_;
};

} // namespace RaidConfig
} // namespace Quillon
