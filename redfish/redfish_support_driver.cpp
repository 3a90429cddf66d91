#include "redfish/redfish_support_driver.hpp"

#include "model/controller_reader.hpp"
#include "model/family_names.hpp"
#include "redfish/redfish_connection.hpp"

namespace redfish {

RedfishSupportDriver::RedfishSupportDriver(const RedfishConnection& connection)
    : reader_(connection.shared_tree()) {}

void RedfishSupportDriver::GetSupportInfo(int controller, const std::string& family,
                                          std::string& max_stripe_size,
                                          std::string& min_stripe_size,
                                          std::vector<std::string>& raid_levels,
                                          const std::string& /*url*/) {
    std::shared_ptr<const StorageTree> tree;
    if (!reader_->Load(tree).ok() || !tree->machine.bmc.support_info) {
        return;
    }
    const model::Controller* found =
        tree->Find(model::FamilyNames::OfSupportWord(family), controller);
    if (found != nullptr) {
        model::ControllerReader::SupportInfo(*found, max_stripe_size, min_stripe_size, raid_levels);
    }
}

} // namespace redfish
