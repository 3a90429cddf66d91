#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backend/raid.hpp"
#include "backend/raid_result.hpp"
#include "backend/raid_target.hpp"

namespace Quillon {
namespace RaidConfig {

struct Table;
class RaidPolicy;

// The in-band driver of an action that names targets: it serves every in-band family through
// their backend classes and answers with plain backend codes as int. Lives for one action.
//
// The targets are resolved once, at construction, into the controllers (or software RAID
// containers) they name, each under the name the user gave it:
// - type LSI: the hardware number of an LSI or Microchip controller. LSI controllers count from
//   0 in their backend's order, one number is left out, then the Microchip controllers follow;
//   the device is "ctrl[N]", its volumes "vol[N-V]" and disks "disk[N-D]".
// - type M2: the M.2 controller's own id; "m2[N]", "m2-vol[N-V]", "m2-disk[N-D]".
// - type VROC_WIN, ids: the software RAID controller's own id; "vroc[N]", "vroc-vol[N-V]",
//   "vroc-disk[N-D]". container_ids: the array whose name ends in that number; "md[N]", its
//   volumes and disks named after the controller that holds it.
// A target without ids and containers names every controller of its families. Policy file
// sections carry the flat number of a controller (LSI, Microchip, M.2, software RAID, counted
// from 1), as on the road without targets, so a file serves both roads.
class RaidConfiguration {
public:
    explicit RaidConfiguration(const std::vector<RaidTarget>& targets);
    ~RaidConfiguration();
    RaidConfiguration(const RaidConfiguration&) = delete;
    RaidConfiguration& operator=(const RaidConfiguration&) = delete;

    // Applies the sections of an already read policy file to the targets: per controller, its
    // family's hot spares and volumes in the family's order. The return is 0 (rows tell the
    // rest).
    int RaidAdd(const RaidPolicy& policy);
    // Wipes every targeted controller; a container loses its volumes.
    int RaidClear();
    // Removes volumes from the one target; 30 unless exactly one target of type is named.
    int RaidRemoveVol(RaidTarget::Type type, const std::vector<int>& volumes);
    // Makes the disks hot spares of the one target: dedicated to the disk groups when given,
    // global otherwise. 30 for a wrong target or disk list, 29 for disk groups on a family
    // without dedicated hot spares.
    int RaidAddHotSpare(RaidTarget::Type type, const std::vector<std::string>& disks,
                        const std::vector<std::string>& volumes);
    // Takes the disks back from being hot spares; 30 as above.
    int RaidRemoveHotSpare(RaidTarget::Type type, const std::vector<std::string>& disks);
    // The policy file text of the targets, in the form RaidAdd applies.
    int GetConfigString(std::string& text);
    // The per-target rows of the last operation.
    void GetRaidResults(std::vector<RaidResult>& results);
    // The tables of the show action, one inner sequence per controller or container.
    void GetRaidTableInfo(std::vector<std::vector<Table>>& tables);

    // One controller or container the targets name.
    struct Member {
        RaidTarget::Type family = RaidTarget::INVALID;   // LSI, MICROCHIP, M2 or VROC_WIN
        RaidTarget::Type named_as = RaidTarget::INVALID; // the target type that named it
        int number = 0;                                  // the number the user named it by
        int id = 0;                    // the controller's own id within its family
        int flat = 0;                  // the number of its policy file sections
        bool container = false;        // a software RAID container rather than a controller
        bool named = false;            // named by its number, not as part of a whole family
        std::shared_ptr<Raid> backend; // null when nothing of that name exists
    };
    const std::vector<Member>& members() const { return members_; }

private:
    // Per-family parts of the operations (raid_configuration_*.cpp).
    void TablesOf(const Member& member, std::vector<std::vector<Table>>& tables);
    void AddTo(const Member& member, const RaidPolicy& policy);
    void ConfigOf(const Member& member, std::string& text);
    void ClearContainer(const Member& member);
    // The one member an operation on a single target acts on, or null when the targets don't
    // name exactly one member of type.
    const Member* Single(RaidTarget::Type type) const;

    void AddRow(const std::string& device, const std::string& text, RaidErrorCode code);
    // The row of one hot spare disk after the backend answered code; refused is the code of a
    // disk in the wrong state, word the action it names ("addhsp" or "rmhsp").
    void AddHotSpareRow(const std::string& device, RaidErrorCode code, RaidErrorCode refused,
                        const char* word, Raid& backend);
    // The row of a member that names nothing; true when the member is such a one.
    bool Missing(const Member& member);

    std::vector<RaidTarget> targets_;
    std::vector<RaidResult> results_;
    std::vector<Member> members_;
};

} // namespace RaidConfig
} // namespace Quillon
