#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "backend/raid_result.hpp"
#include "backend/table.hpp"
#include "service/misc_raid_service/raid_config_option.hpp"

namespace service {
namespace detail {

// The per-run object of an in-band action that names targets. It leaves the family logic to the
// in-band driver (Quillon::RaidConfig::RaidConfiguration): it checks the options, asks for a
// confirmation, hands the targets over and reports the rows the driver gives back. Definitions:
// inband_raid.cpp (the actions) and inband_raid_report.cpp (tables, XML, result table).
class InbandRaid {
public:
    using RaidResult = Quillon::RaidConfig::RaidResult;
    using Tables = std::vector<std::vector<Quillon::RaidConfig::Table>>;

    explicit InbandRaid(const RaidConfig::RaidConfigOption& option);

    // Prints the targets' tables and the result table and saves "raid_show_result.xml".
    std::uint32_t Show();
    // Applies the policy file `policy_file` to the targets after showing it.
    std::uint32_t Add();
    // Writes the targets' configuration as a policy file at `policy_file`.
    std::uint32_t Save();
    // Wipes the targets, or removes the volumes `volume_ids` names from the one target.
    std::uint32_t Clear();
    // Makes the disks of `disk_ids` hot spares of the one target, dedicated to `disk_group_ids`
    // when given.
    std::uint32_t AddHotSpare();
    // Takes the disks of `disk_ids` back from being hot spares of the one target.
    std::uint32_t RemoveHotSpare();

    // Copies each row into results, device name to result text; a later row of the same device
    // replaces an earlier one.
    void TakeResults(std::map<std::string, std::string>& results) const;
    // The rows as one "Device"/"Result" table on standard output, whatever `console_output`
    // says.
    static void PrintResults(const std::vector<RaidResult>& rows, const std::string& title);
    // The rows folded into one result value.
    static std::uint32_t SummaryResults(const std::vector<RaidResult>& rows);

    // Asks the prompt and reads up to three answers; true on "yes" or "y", false on "no", "n" or
    // after three answers of neither kind.
    bool ConfirmOperation(const std::string& prompt);
    // Where ConfirmOperation reads its answers; standard input unless a test says otherwise. The
    // stream must outlive the object.
    void SetInput(std::istream& input) { input_ = &input; }

    // --- Reports of the driver's generic tables (inband_raid_report.cpp) ---

    // Every table that has cells, on standard output.
    void PrintTable(const Tables& tables) const;
    // The tables as "raid_show_result.xml" in the output directory: one CONTROLLER per
    // controller with data, its fields, DISKS and VOLUMES, each element named after its column
    // with the blanks taken out. Success, or FileNotExist when the file can't be written.
    std::uint32_t SaveInbandRaidToXML(const Tables& tables) const;
    // Prints the policy file as it will be read, as the road without targets does.
    std::uint32_t ShowPolicyFile(const std::string& path) const;

    const std::vector<RaidResult>& results() const { return results_; }

private:
    RaidConfig::RaidConfigOption option_;
    std::vector<RaidResult> results_;
    std::istream* input_ = nullptr;
};

} // namespace detail
} // namespace service
