#pragma once

#include <string>

namespace sim {

// The built-in demo server: at least one controller of every family, with free disks, volumes
// and hot spares, so that every action has something to act on.
class DemoMachine {
public:
    // The machine file the demo was built from, as compiled into the program.
    static const std::string& Text();

    // Where the demo's state lives: $XDG_STATE_HOME/raidcfg/demo-machine.json, or
    // $HOME/.local/state/raidcfg/demo-machine.json when XDG_STATE_HOME is unset or empty.
    static std::string StatePath();

    // Makes sure the state file exists, creating it (and its directories) from the built-in
    // copy on first use. Returns its path, or an empty string with a reason in error.
    static std::string Prepare(std::string& error);
};

} // namespace sim
