#include "redfish/redfish_support_driver.hpp"

#include "redfish/redfish_connection.hpp"
#include "sim/sim_redfish_helper_driver.hpp"

namespace redfish {

RedfishSupportDriver::RedfishSupportDriver(const RedfishConnection& connection)
    : reader_(connection.shared_tree()) {}

void RedfishSupportDriver::GetSupportInfo(int controller, const std::string& family,
                                          std::string& max_stripe_size,
                                          std::string& min_stripe_size,
                                          std::vector<std::string>& raid_levels,
                                          const std::string& url) {
    std::shared_ptr<sim::MachineStore> store;
    std::shared_ptr<const StorageTree> tree;
    if (!reader_->Store(store, tree).ok()) {
        return;
    }
    sim::SimRedfishHelperDriver driver(store);
    driver.GetSupportInfo(controller, family, max_stripe_size, min_stripe_size, raid_levels, url);
}

} // namespace redfish
