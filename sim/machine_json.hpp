#pragma once

#include <string>

#include "sim/machine.hpp"

namespace sim {

// Reads and writes the JSON form of a machine.
class MachineJson {
public:
    // Parses and validates text. On failure returns false and sets error to one line that names
    // the file (source), the place inside it and the problem, e.g.
    // "demo.json: controllers[1].disks[3].state: \"Good\" is not one of UGood, UBad, ...".
    static bool Parse(const std::string& text, const std::string& source, Machine& machine,
                      std::string& error);

    // The machine as pretty-printed JSON (2-blank indent, keys in the documented order, a final
    // newline). Parse(Serialize(m)) gives m back.
    static std::string Serialize(const Machine& machine);
};

} // namespace sim
