#include "model/mode_setting.hpp"

#include <algorithm>
#include <cctype>

namespace model {

using namespace Quillon::RaidConfig;

std::string ModeSetting::Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

RaidErrorCode ModeSetting::Change(std::string& current, const std::vector<std::string>& modes,
                                  const std::string& mode, const std::string& subject,
                                  std::string& error) {
    auto known = std::find_if(modes.begin(), modes.end(), [&mode](const std::string& candidate) {
        return Lower(candidate) == Lower(mode);
    });
    if (known == modes.end()) {
        std::string list;
        for (const std::string& candidate : modes) {
            list += (list.empty() ? "" : ", ") + candidate;
        }
        error = "mode \"" + mode + "\" is not one of " + (list.empty() ? "(none)" : list);
        return RAID_OPERATION_FAILED;
    }
    if (Lower(current) == Lower(*known)) {
        error = subject + " is already in " + current + " mode";
        return RAID_OK_UNCHANGED;
    }
    current = *known;
    return RAID_OK;
}

} // namespace model
