#pragma once

#include <string>

#include "backend/raid_target.hpp"

namespace model {

// The model's name of each backend family ("OOB_LSI", ...), as a machine file writes it.
class FamilyNames {
public:
    // The family of a backend class; empty for INVALID.
    static std::string Of(Quillon::RaidConfig::RaidTarget::Type family);
    // The family the support query names with its own word ("OOBLSI" -> "OOB_LSI"); empty for
    // any other word.
    static std::string OfSupportWord(const std::string& word);
};

} // namespace model
