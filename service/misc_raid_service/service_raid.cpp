#include "service/misc_raid_service/service_raid.hpp"

#include "service/misc_raid_service/detail/service_raid_impl.hpp"

namespace service {

ServiceRaid::ServiceRaid(const RaidConfig::RaidConfigOption& option)
    : impl_(std::make_unique<detail::ServiceRaidImpl>(option)) {}

ServiceRaid::~ServiceRaid() = default;

std::string ServiceRaid::ActionName() const {
    return "Raid";
}

std::string ServiceRaid::GetRaidShowResult() {
    return impl_->GetRaidShowResult();
}

TesselResult ServiceRaid::Run() {
    return impl_->Run();
}

} // namespace service
