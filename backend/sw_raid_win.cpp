#include "backend/sw_raid_win.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

SWRaidWin::SWRaidWin()
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::VROC_WIN,
                                                   QuillonConnection::ConnectionInfo())) {}

SWRaidWin::~SWRaidWin() = default;

RaidErrorCode SWRaidWin::GetController(int controller, SWWinController& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode SWRaidWin::GetConfig(int controller, std::vector<SWWinArray>& arrays,
                                   std::vector<int>& hot_spares) {
    return driver().GetConfig(controller, arrays, hot_spares, error_text);
}

RaidErrorCode SWRaidWin::Add(VolRaidConfig& request) {
    return driver().Add(request, error_text);
}

bool SWRaidWin::ConfigEmpty() {
    std::vector<int> controllers;
    GetControllerIds(controllers);
    for (int controller : controllers) {
        std::vector<SWWinArray> arrays;
        std::vector<int> hot_spares;
        std::string ignored;
        if (driver().GetConfig(controller, arrays, hot_spares, ignored) == RAID_OK &&
            !arrays.empty()) {
            return false;
        }
    }
    return true;
}

} // namespace RaidConfig
} // namespace Quillon
