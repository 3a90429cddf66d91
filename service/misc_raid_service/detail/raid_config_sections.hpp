#pragma once

#include <string>
#include <vector>

// The sections of a policy file as the parser reads them, one record pair per controller
// family. Every value stays text as the file wrote it (the one exception is the VROC_WIN
// raid_level); the checker judges them and the caster turns them into backend records.
// Ids start at -1: a record that nothing in the file filled still says so.
namespace service {
namespace detail {

// LSI, OOB_LSI and OOB_CFC.
struct CtrlVolSection {
    int ctrlid = -1;
    int volid = -1;
    std::string disks;
    std::string hot_spares;
    std::string raid_level;
    std::string vol_name;
    std::string write_policy;
    std::string read_policy;
    std::string io_policy;
    std::string access_policy;
    std::string cache_policy;
    std::string volume_size;
    std::string strip_size;
    std::string initialization;
};

struct CtrlSection {
    int id = -1;
    std::string global_hot_spares;
    std::vector<CtrlVolSection> volumes; // in file order
};

// MICROCHIP.
struct MicroVolSection {
    int ctrlid = -1;
    int volid = -1;
    std::string disks;
    std::string hot_spares;
    std::string raid_level;
    std::string io_policy;
    std::string vol_name;
    std::string volume_size;
    std::string strip_size;
};

struct MicroCtrlSection {
    int id = -1;
    std::string global_hot_spares;
    std::vector<MicroVolSection> volumes;
};

// OOB_MICROCHIP: no controller section, so no global hot spares.
struct OobMicroVolSection {
    int ctrlid = -1;
    int volid = -1;
    std::string disks;
    std::string hot_spares;
    std::string raid_level;
    std::string vol_name;
    std::string volume_size;
    std::string strip_size;
    std::string write_policy;
    std::string read_policy;
};

struct OobMicroCtrlSection {
    int id = -1;
    std::vector<OobMicroVolSection> volumes;
};

// OOB_VROC.
struct OobVrocVolSection {
    int ctrlid = -1;
    int volid = -1;
    std::string disks;
    std::string raid_level;
    std::string vol_name;
    std::string volume_size;
    std::string strip_size;
};

struct OobVrocCtrlSection {
    int id = -1;
    std::string global_hot_spares;
    std::vector<OobVrocVolSection> volumes;
};

// VROC_WIN.
struct VrocWinVolSection {
    int ctrlid = -1;
    int volid = -1;
    int raid_level = -1; // read as a number; text with no leading digits leaves it at -1
    std::string vol_name;
    std::string vol_capacity;
    std::string vol_strip_size; // upper-cased
    std::string RAID_write_hole;
    std::string disks;
};

struct VrocWinCtrlSection {
    int id = -1;
    std::string global_hot_spares;
    std::vector<VrocWinVolSection> volumes;
};

// M2 and OOB_M2: one volume per controller, no controller section.
struct M2Section {
    int m2id = -1;
    int volid = -1;
    std::string raid_level;
    std::string vol_name;
    std::string strip_size;
};

} // namespace detail
} // namespace service
