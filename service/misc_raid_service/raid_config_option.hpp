#pragma once

#include <string>

#include "collaborators/connect_option.hpp"

namespace RaidConfig {

// Everything one run of the service is told: the host fills it from its command line.
struct RaidConfigOption {
    std::string output_dir; // prefix of every file written; the host ends it with "/"
    TesselConnect::ConnectOption connect_option;
    std::string command; // the action word, compared exactly
    bool console_output = true;
    std::string policy_file;
    std::string ctrl_index; // flat controller number as text; empty means all
    std::string target;
    std::string volume_ids;
    std::string disk_ids;
    std::string disk_group_ids;
    std::string connector_ids;
    std::string mode_value;
    bool assume_yes = false;
    bool save_to_output_dir = false;
    bool cfc = false;
};

} // namespace RaidConfig
