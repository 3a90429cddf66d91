#include "service/misc_raid_service/detail/service_raid_impl.hpp"

#include <array>
#include <utility>

#include "collaborators/log.hpp"
#include "result/result_values.hpp"

namespace service {
namespace detail {

ServiceRaidImpl::ServiceRaidImpl(const RaidConfig::RaidConfigOption& option) : option_(option) {
    // Set last, once the copy is complete: kind 2 alone makes a run out-of-band.
    out_of_band_ = option_.connect_option.kind == TesselConnect::kConnectOutOfBand;
}

TesselResult ServiceRaidImpl::Run() {
    if (!option_.target.empty() && option_.cfc) {
        // The one answer whose text is not the catalogue's; no handler runs and no file is left.
        RAIDCFG_LOG(1) << "--target command is not supported on current system.";
        return TesselResult(result::InvalidParameter,
                            "--target command is not supported on current system.");
    }

    static const std::array<std::pair<const char*, Handler>, 13> kActions = {{
        {"show", &ServiceRaidImpl::RaidShow},
        {"add", &ServiceRaidImpl::RaidAdd},
        {"save", &ServiceRaidImpl::RaidSave},
        {"clear", &ServiceRaidImpl::RaidCfg},
        {"makegood", &ServiceRaidImpl::RaidMakeGood},
        {"makejbod", &ServiceRaidImpl::RaidMakeJBOD},
        {"init", &ServiceRaidImpl::RaidFastInit},
        {"addhsp", &ServiceRaidImpl::RaidAddHotSpare},
        {"rmhsp", &ServiceRaidImpl::RaidRemoveHotSpare},
        {"changemode", &ServiceRaidImpl::RaidChangeConnectorMode},
        {"fwdeviceorder", &ServiceRaidImpl::RaidFirmwareDeviceOrder},
        {"ekm", &ServiceRaidImpl::ExternKeyManage},
        {"envol", &ServiceRaidImpl::VolumeEncryption},
    }};

    std::uint32_t value = result::GenericFailure;
    bool known = false;
    for (const auto& [word, handler] : kActions) {
        if (option_.command == word) {
            known = true;
            value = (this->*handler)();
            break;
        }
    }
    if (!known) {
        RAIDCFG_LOG(1) << "Unknown raid command: \"" << option_.command << "\"";
    }

    TesselResult outcome(value);
    WriteResultFile(outcome);
    return outcome;
}

} // namespace detail
} // namespace service
