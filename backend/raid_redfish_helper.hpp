#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backend/redfish_helper_driver.hpp"
#include "collaborators/connection_info.hpp"

namespace Quillon {
namespace RaidConfig {

// Asks the BMC what a controller supports for new volumes: stripe sizes and RAID levels.
class RaidRedfishHelper {
public:
    explicit RaidRedfishHelper(const QuillonConnection::ConnectionInfo& connection);
    ~RaidRedfishHelper();
    RaidRedfishHelper(const RaidRedfishHelper&) = delete;
    RaidRedfishHelper& operator=(const RaidRedfishHelper&) = delete;

    // family is "OOBLSI", "OOBCFC", "OOBM2", "OOBMICROCHIP" or "OOBVROC"; url is the controller's
    // address on the BMC, or empty where the family has none.
    void getSupportInfo(const int& controller, const std::string& family,
                        std::string& max_stripe_size, std::string& min_stripe_size,
                        std::vector<std::string>& raid_levels, std::string url);

private:
    std::shared_ptr<RedfishHelperDriver> driver_;
};

} // namespace RaidConfig
} // namespace Quillon
