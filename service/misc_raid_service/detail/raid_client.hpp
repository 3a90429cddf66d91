#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/ptree.hpp>

#include "backend/raid.hpp"
#include "backend/raid_redfish_helper.hpp"
#include "backend/raid_result.hpp"
#include "backend/raid_target.hpp"
#include "collaborators/basic_element_page.hpp"
#include "collaborators/connection_info.hpp"
#include "result/raid_error_code.hpp"
#include "result/tessel_result.hpp"
#include "service/misc_raid_service/detail/raid_index.hpp"
#include "service/misc_raid_service/detail/service_raid_utils.hpp"
#include "service/misc_raid_service/raid_config_option.hpp"

namespace service {
namespace detail {

class RaidConfigParser;

// The per-run object through which the actions reach the backends. A constructor decides once
// which backends exist, which member serves each family and under which flat numbers the
// controllers stand; the actions then only look things up, and leave one row per device touched.
//
// The local constructor serves the machine it runs on (families 0 to 3), the connection
// constructor a remote machine through its BMC (families 4 to 8). Definitions are spread by
// action: raid_client.cpp (construction, maps, labels, confirmation), raid_client_outcome.cpp
// (result table, summary, page) and one raid_client_<action>.cpp per action.
class RaidClient {
public:
    using RaidErrorCode = Quillon::RaidConfig::RaidErrorCode;
    using RaidResult = Quillon::RaidConfig::RaidResult;
    using RaidTarget = Quillon::RaidConfig::RaidTarget;
    using Raid = Quillon::RaidConfig::Raid;

    // The three kinds of family members, bound per family number in the function maps.
    using ShowFunction = std::function<void(const RaidIndex&)>;
    using SaveFunction = std::function<RaidErrorCode(const RaidIndex&, std::string&)>;
    using AddFunction = std::function<void(const RaidIndex&, RaidConfigParser&)>;

    explicit RaidClient(const RaidConfig::RaidConfigOption& option);
    RaidClient(const RaidConfig::RaidConfigOption& option,
               const QuillonConnection::ConnectionInfo& connection);
    ~RaidClient();
    RaidClient(const RaidClient&) = delete;
    RaidClient& operator=(const RaidClient&) = delete;
    RaidClient(RaidClient&&) = delete;
    RaidClient& operator=(RaidClient&&) = delete;

    // --- Show (raid_client_show.cpp) ---

    // Prints the selected controllers, saves them as "raid_show_result.xml" and folds the rows.
    std::uint32_t Show();
    // The flat-number road of Show: all numbers, or only `ctrl_index`.
    std::uint32_t ShowIndex();
    // The tables of every controller of the index map as text, whatever `target` and
    // `ctrl_index` say; no file, no result table, no summary.
    std::string GetShowResult();

    // --- Add (raid_client_add.cpp) ---
    // Applies the policy file `policy_file`: shows it, asks for a confirmation unless
    // `assume_yes`, then assigns the global hot spares and creates the volumes it asks for.
    std::uint32_t Add();
    // The flat-number road of Add: the controllers the file's sections name, or only
    // `ctrl_index`.
    std::uint32_t AddIndex(RaidConfigParser& parser);
    // Prints the policy file as it will be read, so the user confirms with it in view.
    std::uint32_t ShowPolicyFile(const std::string& path);
    // A backend's text speaks of the controller's own id; the user knows the flat number. Each
    // "ctrl[<id>]" becomes "ctrl[<index>]"; a text without one passes unchanged.
    static std::string ReplaceControllerId(const std::string& text, int id, int index);

    // --- Save (raid_client_save.cpp) ---
    // Writes the configuration of the selected controllers as a policy file at `policy_file`,
    // once, after all of them, and leaves one row per controller asked about.
    std::uint32_t Save();
    // The flat-number road of Save, writing to path: every number (a controller without
    // configuration is left out silently) or only `ctrl_index`.
    std::uint32_t SaveIndex(const std::string& path);
    // The section number the next software RAID volume saved in this process gets.
    static int NextVrocWinVolumeNumber();

    // --- Clear and fast init (raid_client_clear.cpp, raid_client_fast_init.cpp) ---
    // Wipes whole controllers or removes the volumes `volume_ids` names, after a confirmation
    // unless `assume_yes`. The user's values go straight to the backends.
    std::uint32_t Clear();
    // The named-target road of Clear for whole controllers: each listed id, or every controller
    // of the target's backend when the target lists none.
    std::uint32_t ClearConfig();
    // The named-target road of Clear for volumes: `volume_ids` of the first id of the first
    // target, ascending.
    std::uint32_t RemoveVolume();
    // The flat-number road of Clear: `ctrl_index`, whole or by volumes.
    std::uint32_t ClearIndex();
    // Starts a fast initialisation of the volumes `volume_ids` names, or of every volume of the
    // controller, on out-of-band LSI controllers.
    std::uint32_t FastInit();
    // The flat-number road of FastInit.
    std::uint32_t FastInitIndex();

    // --- Make good and make JBOD (raid_client_disk_state.cpp) ---
    // Turn disks into unconfigured good ones or into JBOD disks: the disks `disk_ids` names, or
    // every disk the backend offers for the new state when it names none.
    std::uint32_t MakeGood();
    std::uint32_t MakeJbod();

    // --- Hot spares and connector mode (raid_client_hot_spare.cpp, raid_client_connector.cpp) ---
    // Makes the disks of `disk_ids` hot spares: dedicated to `disk_group_ids` when given,
    // global otherwise; on the named-target road or, without `target`, the flat-number road.
    std::uint32_t AddHotSpare();
    // Takes the disks of `disk_ids` back from being hot spares, on either road.
    std::uint32_t RemoveHotSpare();
    // Sets the connectors of `connector_ids` of a Microchip controller to `mode_value`, passed as
    // the user wrote it.
    std::uint32_t ChangeConnectorMode();

    // --- Firmware device order (raid_client_fw_order.cpp) ---
    // Show or change the firmware device order of LSI controllers: the local road through the
    // in-band LSI backend, the out-of-band road through the first REST connection of the list.
    std::uint32_t ShowWithFirmwareDeviceOrder();
    std::uint32_t TurnFirmwareDeviceOrder();
    std::uint32_t ShowOobWithFirmwareDeviceOrder(
        const std::vector<QuillonConnection::ConnectionInfo>& connections);
    std::uint32_t
    TurnOobFirmwareDeviceOrder(const std::vector<QuillonConnection::ConnectionInfo>& connections);

    // --- Key management and volume encryption (raid_client_encryption.cpp) ---
    // Always through the first REST connection of the list, on either road.
    std::uint32_t ShowEKMOOB(const std::vector<QuillonConnection::ConnectionInfo>& connections);
    std::uint32_t
    ChangeEKMModeOOB(const std::vector<QuillonConnection::ConnectionInfo>& connections);
    std::uint32_t
    ShowVolumeEncryptionOOB(const std::vector<QuillonConnection::ConnectionInfo>& connections);
    // Encrypts volumes, which cannot be undone: asks first unless `assume_yes`.
    std::uint32_t
    ChangeVolModeOOB(const std::vector<QuillonConnection::ConnectionInfo>& connections);

    // --- Outcome (raid_client_outcome.cpp) ---

    // The rows as one "Device"/"Result" table: on the console when `console_output` is set, and
    // on the result page when there is one.
    void PrintResultTable(const std::string& title);
    // The rows folded into one result value.
    std::uint32_t SummaryResults() const;
    // Titles and writes "raid_result.html"; called by a handler when the client has finished.
    void WriteResultPage(const TesselResult& result);
    // The first line of a row's text, as the result table has room for no more: cut before the
    // first CR LF pair, then before the first line feed.
    static void TrimResultText(const std::string& in, std::string& out);
    // Copies each row into results, device name to result text; a later row of the same device
    // replaces an earlier one.
    void TakeResults(std::map<std::string, std::string>& results) const;

    // --- BMC type, for saving out-of-band (raid_client.cpp) ---

    // The BMC's type through REST, with the Vantor v3 check and CIM as fallbacks.
    std::uint32_t GetBmcType(int& out);
    // The BMC's type through a CIM connection.
    std::uint32_t GetAmbitTypeViaCIM(int& out);

    // --- Index maps and dispatch (raid_client.cpp) ---

    // Copy of the record of a flat number, or the empty record when the number names nothing.
    RaidIndex GetRaidIndex(int index) const;
    // The backend of a named target's family. A family without a backend throws
    // std::out_of_range with the text "invalid map<K, T> key".
    std::shared_ptr<Raid> GetRaidBackend(RaidTarget::Type type) const;
    // The number under which a controller of the LSI or Microchip family is shown: the key of the
    // last record of that family and id in the LSI/Microchip map, 0 when there is none.
    int LsiMicrochipOrdinal(RaidTarget::Type type, int id) const;
    // The same for a record that holds the controller's number as text: compared as text.
    int LsiMicrochipOrdinal(RaidTarget::Type type, const std::string& id) const;

    // Asks the prompt and reads up to three answers; true on "yes" or "y", false on "no", "n" or
    // after three answers of neither kind.
    bool ConfirmOperation(const std::string& prompt);
    // Where ConfirmOperation reads its answers; standard input unless a test says otherwise. The
    // stream must outlive the client.
    void SetInput(std::istream& input) { input_ = &input; }

    // Appends one row of the outcome.
    void AddRow(const std::string& device, const std::string& text, RaidErrorCode code);
    // The row of a query about the controller of a flat number: the success word, the missing
    // controller, or failure_text for any other code.
    void AddQueryRow(int number, RaidErrorCode code, const std::string& failure_text);
    // Moves the backend's last failure text out, leaving it empty, so each text is told once.
    static std::string TakeError(Raid& backend);

    // --- Device names and common texts of rows, in the flat number's style ---

    static std::string CtrlLabel(int index);
    static std::string VolLabel(int index, int volume);
    static std::string DiskLabel(int index, int disk);
    static std::string DiskLabel(int index, const std::string& disk);
    static std::string ConnectorLabel(int index, int connector);
    static std::string NoControllerText(int index);
    static std::string NoConfigText(int index);
    static std::string NoDiskText(int disk);
    static std::string NoDiskText(const std::string& disk);
    static std::string NoVolumeText(int volume);
    static std::string NoConnectorText(int connector);
    static std::string NoPolicyText(int index);
    static std::string OrderChangedText(int index);
    // Names the mode the user asked for (`mode_value`), as written.
    std::string OrderUnchangedText(int index) const;

    // --- What the constructors decided, for the actions and for tests ---

    bool local() const { return local_; }
    const RaidConfig::RaidConfigOption& option() const { return option_; }
    const std::shared_ptr<HtmlPrint::BasicElementPage>& result_page() const { return result_page_; }
    const std::vector<RaidTarget>& targets() const { return targets_; }
    const std::map<int, std::shared_ptr<Raid>>& backends() const { return backends_; }
    const std::map<int, RaidIndex>& lsi_microchip_index_map() const {
        return lsi_microchip_index_map_;
    }
    std::int32_t target_index() const { return target_index_; }
    const std::map<int, RaidIndex>& index_map() const { return index_map_; }
    const std::vector<RaidResult>& rows() const { return rows_; }
    const std::shared_ptr<Quillon::RaidConfig::RaidRedfishHelper>& redfish_helper() const {
        return redfish_helper_;
    }
    const std::map<int, ShowFunction>& show_functions() const { return show_functions_; }
    const std::map<int, SaveFunction>& save_functions() const { return save_functions_; }
    const std::map<int, SaveFunction>& save_without_index_functions() const {
        return save_without_index_functions_;
    }
    const std::map<int, AddFunction>& add_functions() const { return add_functions_; }

    // The fixed texts, in their order: 14 table titles, 9 prompts and 4 result words.
    std::array<std::string, 14> Titles() const;
    std::array<std::string, 9> Prompts() const;
    std::array<std::string, 4> ResultWords() const;

private:
    // --- Construction (raid_client.cpp) ---

    void FillTexts();
    // Binds the members of one family into the function maps that exist so far.
    void RegisterFamily(RaidTarget::Type type);
    // Each action binds its own family members into its function maps.
    void RegisterShowMembers(RaidTarget::Type type);
    void RegisterAddMembers(RaidTarget::Type type);
    void RegisterSaveMembers(RaidTarget::Type type);
    // A fresh backend of a family, built as that family is: in-band ones from nothing,
    // out-of-band ones with the connection.
    std::shared_ptr<Raid> MakeBackend(RaidTarget::Type type) const;
    // Numbers the controllers of one family from counter on, in the backend's order.
    void InitRaidIndexMap(RaidTarget::Type type, int& counter);
    void InitLsiMicrochipIndexMap(const std::shared_ptr<Raid>& lsi,
                                  const std::shared_ptr<Raid>& microchip);

    // Per-index dispatch: the action's family member for one flat number, or the row of a number
    // that names no controller. A family without a member is std::bad_function_call.
    template <typename Function, typename... Args>
    void DispatchIndex(int number, const std::map<int, Function>& functions, Args&&... args) {
        const RaidIndex record = GetRaidIndex(number);
        if (record.index == -1) {
            AddRow(CtrlLabel(number), NoControllerText(number),
                   Quillon::RaidConfig::RAID_TARGET_NOT_FOUND);
            return;
        }
        const auto found = functions.find(static_cast<int>(record.type));
        if (found == functions.end() || !found->second) {
            throw std::bad_function_call();
        }
        found->second(record, std::forward<Args>(args)...);
    }

    // A message for the user: standard output and the log at level 3.
    static void Tell(const std::string& text);

    // --- Add (raid_client_add.cpp) ---
    // The named-target road of Add: OOB_LSI and OOB_M2 targets, whose sections carry the
    // controllers' own ids.
    std::uint32_t AddTarget(RaidConfigParser& parser);
    // One family member per family number, each reading the section of its flat number, checking
    // it and applying it in the family's own order of steps.
    void AddLSIConfig(const RaidIndex& index, RaidConfigParser& parser);
    void AddMicrochipConfig(const RaidIndex& index, RaidConfigParser& parser);
    void AddM2Config(const RaidIndex& index, RaidConfigParser& parser);
    void AddVroc_winConfig(const RaidIndex& index, RaidConfigParser& parser);
    void AddOobLSIConfig(const RaidIndex& index, RaidConfigParser& parser);
    void AddOobLSIMicrochipM2ConfigCFC(const RaidIndex& index, RaidConfigParser& parser);
    void AddOobM2Config(const RaidIndex& index, RaidConfigParser& parser);
    void AddOobMicrochipConfig(const RaidIndex& index, RaidConfigParser& parser);
    void AddOobVrocConfig(const RaidIndex& index, RaidConfigParser& parser);
    // The hot spare step of the flat-number road: each disk of the list made a global hot spare
    // of the record's controller, one row each. refusal_text: whether code 15 has words of its
    // own; the families without them show the backend's text.
    void AddIndexHotSpares(const RaidIndex& index, const std::string& global_hot_spares,
                           bool refusal_text);

    // --- Save (raid_client_save.cpp) ---
    // The named-target road of Save for one controller of an OOB_LSI or OOB_M2 target. named:
    // the target listed its ids, so a controller without configuration is a row.
    void SaveTargetConfig(RaidTarget::Type type, int id, bool named, Raid& backend,
                          std::string& text);
    // Writes the text, when there is any, and ends the action with the result table.
    std::uint32_t FinishSave(const std::string& path, const std::string& text);
    // The row of one controller's save after its backend answered code; returns code.
    RaidErrorCode SaveOutcome(const RaidIndex& index, RaidErrorCode code, bool named,
                              Raid& backend);
    // One member per family number and one twin each, bound in the two save maps. The twins
    // serve the walk over all controllers and add no row for code 10 (no configuration).
    RaidErrorCode SaveLSIConfig(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveLSIConfigWithoutIndex(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveMicrochipConfig(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveMicrochipConfigWithoutIndex(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveM2Config(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveM2ConfigWithoutIndex(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveVroc_winConfig(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveVroc_winConfigWithoutIndex(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobLSIConfig(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobLSIConfigWithoutIndex(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobLSIMicrochipM2ConfigCFC(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobLSIMicrochipM2ConfigCFCWithoutIndex(const RaidIndex& index,
                                                             std::string& text);
    RaidErrorCode SaveOobM2Config(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobM2ConfigWithoutIndex(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobMicrochipConfig(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobMicrochipConfigWithoutIndex(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobVrocConfig(const RaidIndex& index, std::string& text);
    RaidErrorCode SaveOobVrocConfigWithoutIndex(const RaidIndex& index, std::string& text);
    // What each pair shares: read the controller, cast it to text, leave the row. A backend of
    // another class answers 26 without a row.
    RaidErrorCode SaveLSIFamily(const RaidIndex& index, std::string& text, bool named);
    RaidErrorCode SaveMicrochipFamily(const RaidIndex& index, std::string& text, bool named);
    RaidErrorCode SaveM2Family(const RaidIndex& index, std::string& text, bool named);
    RaidErrorCode SaveVrocWinFamily(const RaidIndex& index, std::string& text, bool named);
    RaidErrorCode SaveOobLSIFamily(const RaidIndex& index, std::string& text, bool named);
    RaidErrorCode SaveCfcFamily(const RaidIndex& index, std::string& text, bool named);
    RaidErrorCode SaveOobM2Family(const RaidIndex& index, std::string& text, bool named);
    RaidErrorCode SaveOobMicrochipFamily(const RaidIndex& index, std::string& text, bool named);
    RaidErrorCode SaveOobVrocFamily(const RaidIndex& index, std::string& text, bool named);
    // A controller's records as policy file sections: its volumes, then its global hot spares.
    // index is the flat number that heads the sections, -1 for a named target, whose own id
    // heads them then. vendor matters on a CFC system only.
    std::string CastLSIConfig(int index, int id,
                              const std::vector<Quillon::RaidConfig::VolumeObject>& volumes,
                              const std::vector<int>& hot_spares, const std::string& vendor) const;
    static std::string CastMicrochipConfig(int index, int id,
                                           const std::vector<Quillon::ARCCONF::VolumeCfg>& volumes,
                                           const std::vector<std::string>& hot_spares);
    static std::string CastM2Config(int index, int id,
                                    const Quillon::RaidConfig::M2VolumeInfo& volume);
    static std::string
    CastOobMicrochipConfig(int index, int id,
                           const std::vector<Quillon::protocol::OobMicroConfig>& volumes);
    static std::string
    CastOobVrocConfig(int index, int id,
                      const std::vector<Quillon::protocol::VolManDevConfig>& volumes,
                      const std::vector<int>& hot_spares);
    static std::string
    Castvroc_winConfig(int index, int id,
                       const std::vector<Quillon::RaidConfig::SWWinArray>& arrays,
                       const std::vector<int>& hot_spares);

    // --- Clear and fast init ---
    // The text of a named-target row after the backend answered code: the success word, the
    // missing device, or the backend's own text, moved out.
    std::string TargetRowText(RaidErrorCode code, const std::string& device, Raid& backend) const;

    // --- Make good and make JBOD ---
    // good selects the state: unconfigured good when true, JBOD when false.
    // Disks named on the target road; the target must be one controller id.
    std::uint32_t MakeStateWithDrive(bool good);
    // The flat-number road: `ctrl_index`, named disks or every eligible one.
    std::uint32_t MakeStateWithDriveIndex(bool good);
    // No disks named on the target road: every eligible disk of every target.
    std::uint32_t MakeStateWithoutDrive(bool good);
    // Every eligible disk of one controller named by target, labelled with id and changed on
    // real_id; a null backend is a controller that does not exist.
    void MakeStateOfController(const std::shared_ptr<Raid>& backend, int id, int real_id,
                               bool good);
    // Every eligible disk of the controller `ctrl_index` names.
    void MakeStateOfIndex(const std::shared_ptr<Raid>& backend, int real_id, bool good);
    // The result table of a state change and its value.
    std::uint32_t FinishMakeState(bool good);

    // --- Hot spares and connector mode ---
    // The named-target road of AddHotSpare: one LSI controller reached out-of-band.
    std::uint32_t AddDedicatedHotSpare();
    std::uint32_t AddGlobalHotSpare();
    // The flat-number road of AddHotSpare and its two forms.
    std::uint32_t AddHotSpareIndex();
    std::uint32_t AddDedicatedHotSpareIndex();
    std::uint32_t AddGlobalHotSpareIndex();
    // The flat-number road of RemoveHotSpare.
    std::uint32_t RemoveHotSpareIndex();
    // The flat-number road of ChangeConnectorMode.
    std::uint32_t ChangeConnectorModeIndex();

    // --- Show (raid_client_show.cpp) ---

    void ShowController(int id, const RaidTarget& target);
    void ShowControllerIndex(int index);
    void ShowLSIController(const RaidIndex& index);
    void ShowMicrochipController(const RaidIndex& index);
    void ShowM2Controller(const RaidIndex& index);
    void ShowVrocController_win(const RaidIndex& index);
    void ShowOobLSIController(const RaidIndex& index);
    void ShowOobLSIMicrochipM2ControllerCFC(const RaidIndex& index);
    void ShowOobM2Controller(const RaidIndex& index);
    void ShowOobMicrochipController(const RaidIndex& index);
    void ShowOobVrocController(const RaidIndex& index);
    // Writes show_tree_ as "raid_show_result.xml" and finishes a show with a result value.
    std::uint32_t FinishShow();

    bool local_ = false; // true from the local constructor only
    RaidConfig::RaidConfigOption option_;
    QuillonConnection::ConnectionInfo connection_;
    std::shared_ptr<HtmlPrint::BasicElementPage> result_page_;
    std::int32_t bmc_type_ = 0;
    std::vector<RaidTarget> targets_;
    std::map<int, std::shared_ptr<Raid>> backends_;
    std::map<int, RaidIndex> lsi_microchip_index_map_;
    std::int32_t target_index_ = -1;
    std::map<int, RaidIndex> index_map_;
    std::vector<RaidResult> rows_;
    bool collect_show_text_ = false;
    std::string show_text_;
    std::shared_ptr<Quillon::RaidConfig::RaidRedfishHelper> redfish_helper_;
    // Family number to member, one map per action. The change that brings an action registers
    // its members in RegisterFamily; until then that action's map stays empty.
    std::map<int, ShowFunction> show_functions_;
    std::map<int, SaveFunction> save_functions_;
    std::map<int, SaveFunction> save_without_index_functions_;
    std::map<int, AddFunction> add_functions_;

    // Titles of the result tables, one per action.
    std::string show_title_;
    std::string add_title_;
    std::string save_title_;
    std::string clear_title_;
    std::string make_good_title_;
    std::string make_jbod_title_;
    std::string add_hot_spare_title_;
    std::string remove_hot_spare_title_;
    std::string fast_init_title_;
    std::string change_connector_mode_title_;
    std::string show_fw_device_order_title_;
    std::string change_fw_device_order_title_;
    std::string ekm_title_;
    std::string volume_encryption_title_;

    // Confirmation prompts, one per action that changes something.
    std::string add_prompt_;
    std::string clear_prompt_;
    std::string make_good_prompt_;
    std::string make_jbod_prompt_;
    std::string add_hot_spare_prompt_;
    std::string remove_hot_spare_prompt_;
    std::string fast_init_prompt_;
    std::string change_connector_mode_prompt_;
    std::string volume_encryption_prompt_;

    // Result words of rows.
    std::string success_text_;
    std::string global_hot_spare_text_;
    std::string volume_created_text_;
    std::string not_supported_text_;

    RaidUtils utils_;
    boost::property_tree::ptree show_tree_;

    // Set to standard input by the constructors.
    std::istream* input_ = nullptr;
};

} // namespace detail
} // namespace service
