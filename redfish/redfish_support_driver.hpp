#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backend/redfish_helper_driver.hpp"
#include "redfish/storage_tree_reader.hpp"

namespace redfish {

class RedfishConnection;

// The support query behind RaidRedfishHelper: a controller's stripe limits and RAID levels, from
// the storage tree; nothing when the BMC's Manager says it does not answer the query.
class RedfishSupportDriver : public Quillon::RaidConfig::RedfishHelperDriver {
public:
    explicit RedfishSupportDriver(const RedfishConnection& connection);

    void GetSupportInfo(int controller, const std::string& family, std::string& max_stripe_size,
                        std::string& min_stripe_size, std::vector<std::string>& raid_levels,
                        const std::string& url) override;

private:
    std::shared_ptr<StorageTreeReader> reader_;
};

} // namespace redfish
