#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "redfish/storage_tree_reader.hpp"
#include "result/raid_error_code.hpp"

namespace redfish {

// How every Redfish driver operation reaches one controller of the BMC. Reads are derived from
// the storage tree by the shared model's read operations (model::ControllerReader), so both
// roads render identical records; where the BMC has an injected fault pending for the read,
// or the derivation fails, the BMC's probe action gives its own answer. Writes send one request
// and pass the BMC's code and text through unchanged.
class BmcAccess {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;
    using Derive = std::function<Code(const model::Controller& controller, const StorageTree& tree,
                                      std::string& error_text)>;
    using Change =
        std::function<Code(const ControllerLinks& links, const model::Controller& controller,
                           RedfishClient& client, std::string& error_text)>;

    BmcAccess(std::shared_ptr<StorageTreeReader> reader, std::string family);

    // The ids of the family's controllers in collection order; empty when the tree is unreadable.
    std::vector<int> ControllerIds() const;

    // driver names the probe's driver: "Raid", "Encryption" or "FirmwareDeviceOrder".
    Code Read(const char* driver, const std::string& op, int controller, std::string& error_text,
              const Derive& derive) const;
    // Runs change on a controller of the family (5 when the BMC has none with that id) and drops
    // what was read of its Storage afterwards, whatever the outcome.
    Code Write(int controller, std::string& error_text, const Change& change) const;

    const std::string& family() const { return family_; }
    StorageTreeReader& reader() const { return *reader_; }

    // The code and text of a request's outcome: 0, or the BMC's code with its text.
    static Code Outcome(const RedfishStatus& status, std::string& error_text);
    // 34 when a write's answer says the value was already set, else 0.
    static Code SuccessCode(const nlohmann::json& answer);
    // What a successful answer of our Oem says beside "Success." (the controller's detail, or
    // why nothing changed): the text of a "Raidcfg.1.0.Completed" or "Raidcfg.1.0.AlreadySet"
    // message; empty for any other answer.
    static std::string SuccessText(const nlohmann::json& answer);
    // PATCHes a controller setting with a fixed set of modes (body at path) and reads the answer
    // as the simulated controller gives it: the detail behind "Success.", or 34 with why
    // nothing changed when current already stood at mode ("key management is already in
    // local mode"). current is the setting as read, unset when the controller lacks it.
    static Code PatchMode(RedfishClient& client, const std::string& path,
                          const nlohmann::json& body, const std::optional<std::string>& current,
                          const std::vector<std::string>& modes, const std::string& mode,
                          const std::string& subject, std::string& text);
    // Where a disk, a volume and the controller itself are addressed on the BMC.
    static std::string DrivePath(const ControllerLinks& links, const std::string& disk);
    static std::string VolumePath(const ControllerLinks& links, int volume);
    static std::string ControllerPath(const ControllerLinks& links);
    static std::string VolumesPath(const ControllerLinks& links);
    static std::string ControllerNotFound(int controller);

private:
    Code Probe(const char* driver, const std::string& op, const ControllerLinks& links,
               std::string& error_text) const;

    std::shared_ptr<StorageTreeReader> reader_;
    std::string family_;
};

} // namespace redfish
