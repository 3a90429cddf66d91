#pragma once

#include <memory>
#include <string>

#include "result/raidcfg_export.hpp"
#include "result/tessel_result.hpp"
#include "service/misc_raid_service/raid_config_option.hpp"

namespace service {

namespace detail {
class ServiceRaidImpl;
} // namespace detail

// The RAID command as a host tool sees it: built from one option record, run once.
class RAIDCFG_EXPORT ServiceRaid {
public:
    explicit ServiceRaid(const RaidConfig::RaidConfigOption& option);
    ~ServiceRaid();
    ServiceRaid(const ServiceRaid&) = delete;
    ServiceRaid& operator=(const ServiceRaid&) = delete;

    std::string ActionName() const;
    std::string GetRaidShowResult();
    TesselResult Run();

private:
    std::unique_ptr<detail::ServiceRaidImpl> impl_;
};

} // namespace service
