#pragma once

#include <string>

#include "backend/raid.hpp"
#include "backend/raid_configuration.hpp"

// The device names and common row texts of the in-band driver's rows, shared by its parts.
namespace Quillon {
namespace RaidConfig {
namespace configuration_names {

// "ctrl[N]", "m2[N]", "vroc[N]" or "md[N]".
std::string Device(const RaidConfiguration::Member& member);
// "vol[N-V]", "m2-vol[N-V]" or "vroc-vol[C-V]", C being the software RAID controller's id.
std::string VolumeDevice(const RaidConfiguration::Member& member, int volume);
// "disk[N-D]", "m2-disk[N-D]" or "vroc-disk[C-D]".
std::string DiskDevice(const RaidConfiguration::Member& member, const std::string& disk);
// "The target <device> does not exist."
std::string NoTargetText(const std::string& device);
// The backend's failure text, moved out so that it is told once.
std::string TakeError(Raid& backend);
// The container number a software RAID array answers to: the number its name ends in ("md126",
// "Array_2"); -1 for a name that ends in no digit.
int ContainerNumber(const std::string& array_name);

constexpr const char* kSuccessText = "Success.";

} // namespace configuration_names
} // namespace RaidConfig
} // namespace Quillon
