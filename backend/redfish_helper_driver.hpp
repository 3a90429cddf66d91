#pragma once

#include <string>
#include <vector>

#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

// What stands behind RaidRedfishHelper: the limits a controller supports for new volumes.
class RedfishHelperDriver {
public:
    RedfishHelperDriver() = default;
    virtual ~RedfishHelperDriver() = default;
    RedfishHelperDriver(const RedfishHelperDriver&) = delete;
    RedfishHelperDriver& operator=(const RedfishHelperDriver&) = delete;

    // family is "OOBLSI", "OOBCFC", "OOBM2", "OOBMICROCHIP" or "OOBVROC"; url is the controller's
    // address on the BMC where the family has one. Leaves the outputs alone when nothing is known.
    virtual void GetSupportInfo(int controller, const std::string& family,
                                std::string& max_stripe_size, std::string& min_stripe_size,
                                std::vector<std::string>& raid_levels, const std::string& url);
};

} // namespace RaidConfig
} // namespace Quillon
