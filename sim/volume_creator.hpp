#pragma once

#include <string>

#include "result/raid_error_code.hpp"
#include "sim/machine.hpp"
#include "sim/volume_request.hpp"

namespace sim {

// Creates a volume on a simulated controller the way a careful controller would: the disks must
// exist (6) and be unconfigured-good (18), their number must suit the level, the size must fit
// and the strip size must be one the controller takes (3). The request's hot spares become
// dedicated spares of the new volume.
class VolumeCreator {
public:
    static Quillon::RaidConfig::RaidErrorCode
    Create(Controller& controller, const VolumeRequest& request, std::string& error);

    // "102400", "512MB", "1GB", "2T" ... in megabytes; "" gives all and "N%" that share of all.
    static bool ParseSize(const std::string& text, long long all_mb, long long& megabytes,
                          std::string& error);

    // "128K", "64k", "1MB", "128" (kilobytes) ... in kilobytes; "" gives 0 (the default).
    static bool ParseStrip(const std::string& text, int& kilobytes, std::string& error);
};

} // namespace sim
