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
