#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/policy_sections.hpp"

namespace host {

// What separates a live configuration (as save writes it) from a policy file, controller by
// controller, for the controllers the policy names. A volume is matched by its set of disks (a
// section without disks, as M.2 ones are, by its controller; "REST" by its level), then its
// level, name, size (whole megabytes, as save rounds them), strip size and each policy the
// policy file states are compared; dedicated and global hot spares as sets.
class PolicyDiff {
public:
    enum class Kind { Create, Differs, NotInPolicy, HotSpares };

    struct Difference {
        Kind kind = Kind::Create;
        std::string controller; // "ctrl1"
        std::string section;    // the policy's section; the live one for NotInPolicy
        std::vector<std::string> details;
        // HotSpares: the global hot spares the policy names that the server lacks, and the ones
        // it has that the policy does not name.
        std::vector<std::string> missing;
        std::vector<std::string> extra;
    };

    static std::vector<Difference> Compare(const std::vector<PolicySections::Section>& wanted,
                                           const std::vector<PolicySections::Section>& live);

    // One line per difference ("ctrl1-vol2    create: RAID 0 on disks 7, ...") and a last
    // line that says whether the server matches.
    static std::string Text(const std::vector<Difference>& differences);
    // {"matches": bool, "differences": [{"kind", "controller", "section", "details"}]}; a
    // hot_spares difference also carries "missing" and "extra", the disk ids.
    static nlohmann::json Json(const std::vector<Difference>& differences);
    static std::string KindWord(Kind kind);
};

} // namespace host
