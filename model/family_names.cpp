#include "model/family_names.hpp"

namespace model {

using Quillon::RaidConfig::RaidTarget;

std::string FamilyNames::Of(RaidTarget::Type family) {
    switch (family) {
    case RaidTarget::LSI:
        return "LSI";
    case RaidTarget::MICROCHIP:
        return "MICROCHIP";
    case RaidTarget::M2:
        return "M2";
    case RaidTarget::VROC_WIN:
        return "VROC_WIN";
    case RaidTarget::OOB_LSI:
        return "OOB_LSI";
    case RaidTarget::OOB_CFC:
        return "OOB_CFC";
    case RaidTarget::OOB_M2:
        return "OOB_M2";
    case RaidTarget::OOB_MICROCHIP:
        return "OOB_MICROCHIP";
    case RaidTarget::OOB_VROC:
        return "OOB_VROC";
    case RaidTarget::INVALID:
        break;
    }
    return {};
}

std::string FamilyNames::OfSupportWord(const std::string& word) {
    if (word == "OOBLSI") {
        return "OOB_LSI";
    }
    if (word == "OOBCFC") {
        return "OOB_CFC";
    }
    if (word == "OOBM2") {
        return "OOB_M2";
    }
    if (word == "OOBMICROCHIP") {
        return "OOB_MICROCHIP";
    }
    if (word == "OOBVROC") {
        return "OOB_VROC";
    }
    return {};
}

} // namespace model
