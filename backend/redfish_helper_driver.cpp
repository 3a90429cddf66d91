#include "backend/redfish_helper_driver.hpp"

namespace Quillon {
namespace RaidConfig {

// Without a source of limits nothing is known, and the caller keeps what it had.
void RedfishHelperDriver::GetSupportInfo(int /*controller*/, const std::string& /*family*/,
                                         std::string& /*max_stripe_size*/,
                                         std::string& /*min_stripe_size*/,
                                         std::vector<std::string>& /*raid_levels*/,
                                         const std::string& /*url*/) {}

} // namespace RaidConfig
} // namespace Quillon
