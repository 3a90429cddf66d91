#pragma once

#include <string>

#include "result/raidcfg_export.hpp"

namespace sim {

// Host set-up: serves every backend and connection of this process from a simulated machine.
// machine is "demo" (the built-in demo server, kept in its state file) or the path of a
// machine file. The file is read and checked first; false with a one-line reason when it is
// unusable, and nothing is installed then.
class SimulatedMachine {
public:
    RAIDCFG_EXPORT static bool Use(const std::string& machine, std::string& error);
};

} // namespace sim
