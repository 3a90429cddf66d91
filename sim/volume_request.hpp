#pragma once

#include <string>
#include <vector>

#include "backend/records.hpp"

namespace sim {

// A request to create one volume, whatever family record it came in: the simulated
// controllers create every volume from this one form.
struct VolumeRequest {
    int controller_id = -1;
    std::vector<std::vector<int>> spans; // disk ids, grouped as the policy file groups them
    bool rest_disks = false;             // every remaining "UGood" disk, spans empty
    // With rest_disks: only this many of them, the lowest ids first (0: all).
    int rest_count = 0;
    std::string raid_level; // as in a policy file: "0", "1", "10", "1triple", ...
    std::string name;
    std::string size;  // as the cast leaves it: "" (all), "102400", "512MB", "50%", ...
    std::string strip; // as the cast leaves it: "" (default), "128K", "64k", "1MB", "128", ...
    std::vector<int> hot_spares; // become dedicated spares of the new volume
    int write_policy = 0;
    int read_policy = 0;
    int io_policy = 0;
    int access_policy = 0;
    int cache_policy = 0;
    int initialization = 0;

    // False with a reason when the record cannot be read (e.g. a disk list that is not numbers).
    static bool From(const Quillon::RaidConfig::VolumeObject& record, VolumeRequest& request,
                     std::string& error);
    static bool From(const Quillon::protocol::MicrochipConfig& record, VolumeRequest& request,
                     std::string& error);
    // M.2 requests name no disks: the volume takes the two lowest free disks, the pair of
    // bays a two-bay M.2 adapter builds its RAID 0 or RAID 1 from.
    static bool From(const Quillon::RaidConfig::M2ControllerObject& record, VolumeRequest& request,
                     std::string& error);
    static bool From(const Quillon::protocol::OobMicroConfig& record, VolumeRequest& request,
                     std::string& error);
    static bool From(const Quillon::protocol::VolManDevConfig& record, VolumeRequest& request,
                     std::string& error);
    static bool From(const Quillon::RaidConfig::VolRaidConfig& record, VolumeRequest& request,
                     std::string& error);
};

} // namespace sim
