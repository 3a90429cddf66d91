#pragma once

#include <string>

#include "service/misc_raid_service/raid_config_option.hpp"

namespace host {

// What one run of raidcfg was asked for: the record handed to the service plus what only the
// host itself uses.
struct HostSettings {
    RaidConfig::RaidConfigOption option;
    // Where raidcfg.log goes, ending in "/"; the output directory unless --log-dir says otherwise.
    std::string log_dir;
    // --machine (or RAIDCFG_MACHINE): empty for the real machine, "demo", or a JSON file.
    std::string machine;
    // Where machine came from, for messages: "--machine" or "RAIDCFG_MACHINE".
    std::string machine_source = "--machine";
    // diff --json: the difference as one JSON document instead of lines.
    bool json = false;
};

} // namespace host
