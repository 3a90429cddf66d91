#pragma once

#include <memory>

#include "backend/redfish_helper_driver.hpp"
#include "sim/machine_store.hpp"

namespace sim {

// The volume limits of the simulated machine's out-of-band controllers: stripe sizes and RAID
// levels from the machine file, unless its BMC is set to answer nothing ("support_info": false).
class SimRedfishHelperDriver : public Quillon::RaidConfig::RedfishHelperDriver {
public:
    explicit SimRedfishHelperDriver(std::shared_ptr<MachineStore> store);

    void GetSupportInfo(int controller, const std::string& family, std::string& max_stripe_size,
                        std::string& min_stripe_size, std::vector<std::string>& raid_levels,
                        const std::string& url) override;

private:
    std::shared_ptr<MachineStore> store_;
};

} // namespace sim
