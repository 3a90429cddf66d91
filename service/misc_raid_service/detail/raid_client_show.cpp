// The show action: each selected controller read from its backend, printed as tables, collected
// into "raid_show_result.xml", and one row per controller.
#include <exception>
#include <locale>
#include <string>
#include <vector>

#include <boost/property_tree/xml_parser.hpp>

#include "backend/cfc_hw_raid_storage.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storage.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/inband_m2_raid.hpp"
#include "backend/oob_m2_raid.hpp"
#include "backend/oob_microchip_raid.hpp"
#include "backend/oob_vroc_raid.hpp"
#include "backend/records.hpp"
#include "backend/sw_raid_win.hpp"
#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"

namespace service {
namespace detail {

namespace {

using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;

// The row's text when GetController did not answer 0: the client's own words for a controller
// that does not exist, the backend's text for anything else.
std::string FailureText(RaidErrorCode code, Quillon::RaidConfig::Raid& backend,
                        const std::string& missing) {
    return code == RAID_TARGET_NOT_FOUND ? missing : RaidClient::TakeError(backend);
}

} // namespace

std::uint32_t RaidClient::Show() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::Show";
    if (option_.console_output) {
        Tell("\nraidconfig show:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig Show");
    }
    if (option_.target.empty()) {
        const std::uint32_t value = ShowIndex();
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Show";
        return value;
    }
    for (const RaidTarget& target : targets_) {
        std::vector<int> ids = target.ids;
        if (ids.empty()) {
            GetRaidBackend(target.type)->GetControllerIds(ids);
        }
        for (const int id : ids) {
            ShowController(id, target);
        }
    }
    const std::uint32_t value = FinishShow();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Show";
    return value;
}

std::uint32_t RaidClient::ShowIndex() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowIndex";
    if (target_index_ == -1) {
        const int count = static_cast<int>(index_map_.size());
        for (int number = 1; number <= count; ++number) {
            ShowControllerIndex(number);
        }
    } else {
        ShowControllerIndex(target_index_);
    }
    const std::uint32_t value = FinishShow();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowIndex";
    return value;
}

std::uint32_t RaidClient::FinishShow() {
    if (rows_.empty()) {
        return result::RaidNoControllers;
    }
    PrintResultTable(show_title_);

    namespace pt = boost::property_tree;
    const std::string path = option_.output_dir + "raid_show_result.xml";
    try {
        pt::ptree root;
        root.add_child(pt::ptree::path_type("CONTROLLERS", '.'), show_tree_);
        pt::write_xml(path, root, std::locale(),
                      pt::xml_writer_make_settings<std::string>('\t', 1, "utf-8"));
    } catch (const std::exception& error) {
        RAIDCFG_LOG(4) << error.what();
        // Intended: a file that cannot be written answers "File doesn't exist." and skips the
        // summary; callers of show test for this value.
        return result::FileNotExist;
    }
    if (option_.console_output) {
        Tell("At the same time, the RAID configuration is saved into XML file:");
        Tell(path);
    }
    return SummaryResults();
}

std::string RaidClient::GetShowResult() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::GetShowResult";
    collect_show_text_ = true;
    // The whole index map, whatever target or ctrl_index say.
    const int count = static_cast<int>(index_map_.size());
    for (int number = 1; number <= count; ++number) {
        ShowControllerIndex(number);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::GetShowResult";
    return show_text_;
}

void RaidClient::ShowControllerIndex(int index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowControllerIndex";
    DispatchIndex(index, show_functions_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowControllerIndex";
}

void RaidClient::ShowController(int id, const RaidTarget& target) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowController";
    using namespace Quillon::RaidConfig;
    // A controller named by its target has no flat number.
    const int flat_id = -1;
    if (target.type == RaidTarget::OOB_LSI) {
        const auto backend = std::dynamic_pointer_cast<HWRaidStorage>(GetRaidBackend(target.type));
        if (backend) {
            const std::string device = "ctrl[" + std::to_string(id) + "]";
            Controller controller;
            const RaidErrorCode code = backend->GetController(id, controller);
            std::string text;
            if (code == RAID_OK) {
                utils_.PrintOobBroadcomCController(flat_id, controller, option_.console_output,
                                                   result_page_, text, collect_show_text_);
                show_text_ += text;
                if (redfish_helper_) {
                    redfish_helper_->getSupportInfo(id, "OOBLSI", controller.max_stripe_size,
                                                    controller.min_stripe_size,
                                                    controller.support_raid_levels, "");
                }
                utils_.SaveOobLSIController2Xml(flat_id, controller, show_tree_);
                text = success_text_;
            } else {
                text = FailureText(code, *backend, "The target " + device + " does not exist.");
            }
            AddRow(device, text, code);
        }
    } else if (target.type == RaidTarget::OOB_M2) {
        const auto backend = std::dynamic_pointer_cast<OOBM2Raid>(GetRaidBackend(target.type));
        if (backend) {
            const std::string device = "M2-" + std::to_string(id);
            M2CtrlInfo controller;
            const RaidErrorCode code = backend->GetController(id, controller);
            std::string text;
            if (code == RAID_OK) {
                utils_.PrintOobMarvellController(flat_id, controller, option_.console_output,
                                                 result_page_, text, collect_show_text_);
                show_text_ += text;
                if (redfish_helper_) {
                    redfish_helper_->getSupportInfo(id, "OOBM2", controller.max_stripe_size,
                                                    controller.min_stripe_size,
                                                    controller.support_raid_levels, "");
                }
                utils_.SaveOobM2ToXml(flat_id, controller, show_tree_);
                text = success_text_;
            } else {
                text = FailureText(code, *backend, "The target " + device + " does not exist.");
            }
            AddRow(device, text, code);
        }
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowController";
}

void RaidClient::ShowLSIController(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowLSIController";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidStorcli>(index.backend);
    if (backend) {
        Quillon::protocol::StorcliCtrl controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            // The controller is shown and saved under its LSI/Microchip number, not its own id.
            controller.target_id = LsiMicrochipOrdinal(RaidTarget::LSI, controller.target_id);
            utils_.PrintBroadcomController(index.index, controller, text, collect_show_text_);
            show_text_ += text;
            utils_.SaveLSIController2Xml(index.index, controller, show_tree_);
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowLSIController";
}

void RaidClient::ShowMicrochipController(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowMicrochipController";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidArcconf>(index.backend);
    if (backend) {
        Quillon::ARCCONF::ControllerInfo controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            // As for LSI; this record holds its number as text, so the look-up compares text.
            controller.target_id =
                std::to_string(LsiMicrochipOrdinal(RaidTarget::MICROCHIP, controller.target_id));
            utils_.PrintMicrochipController(index.index, controller, text, collect_show_text_);
            show_text_ += text;
            utils_.SaveMicrochipController2Xml(index.index, controller, show_tree_);
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowMicrochipController";
}

void RaidClient::ShowM2Controller(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowM2Controller";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::InbandM2Raid>(index.backend);
    if (backend) {
        Quillon::RaidConfig::M2CtrlInfo controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            utils_.PrintMarvellController(index.index, controller, text, collect_show_text_);
            show_text_ += text;
            utils_.SaveM2ToXml(index.index, controller, show_tree_);
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowM2Controller";
}

void RaidClient::ShowVrocController_win(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowVrocController_win";
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::SWRaidWin>(index.backend);
    if (backend) {
        Quillon::RaidConfig::SWWinController controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            utils_.PrintWinVrocController(index.index, controller, text, collect_show_text_);
            show_text_ += text;
            utils_.SaveVrocWin2Xml(index.index, controller, show_tree_);
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowVrocController_win";
}

void RaidClient::ShowOobLSIController(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowOobLSIController";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidStorage>(index.backend);
    if (backend) {
        Quillon::RaidConfig::Controller controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            utils_.PrintOobBroadcomCController(index.index, controller, option_.console_output,
                                               result_page_, text, collect_show_text_);
            show_text_ += text;
            if (redfish_helper_) {
                redfish_helper_->getSupportInfo(index.id, "OOBLSI", controller.max_stripe_size,
                                                controller.min_stripe_size,
                                                controller.support_raid_levels, "");
            }
            utils_.SaveOobLSIController2Xml(index.index, controller, show_tree_);
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowOobLSIController";
}

void RaidClient::ShowOobLSIMicrochipM2ControllerCFC(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowOobLSIMicrochipM2ControllerCFC";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::CFCHWRaidStorage>(index.backend);
    if (backend) {
        Quillon::RaidConfig::Controller controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            // One backend serves every vendor; the vendor text picks the tables and the XML.
            if (controller.vendor == "Broadcom") {
                utils_.PrintOobBroadcomControllerCFC(index.index, controller,
                                                     option_.console_output, result_page_, text,
                                                     collect_show_text_);
            } else if (controller.vendor == "Microchip") {
                utils_.PrintOobMicrochipControllerCFC(index.index, controller,
                                                      option_.console_output, result_page_, text,
                                                      collect_show_text_);
            } else {
                utils_.PrintOobMarvellControllerCFC(index.index, controller, option_.console_output,
                                                    result_page_, text, collect_show_text_);
            }
            show_text_ += text;
            if (redfish_helper_) {
                redfish_helper_->getSupportInfo(
                    index.id, "OOBCFC", controller.max_stripe_size, controller.min_stripe_size,
                    controller.support_raid_levels, controller.raid_url);
            }
            if (controller.vendor == "Broadcom") {
                utils_.SaveOobLSIController2XmlCFC(index.index, controller, show_tree_);
            } else if (controller.vendor == "Microchip") {
                utils_.SaveOobMicrochipController2XmlCFC(index.index, controller, show_tree_);
            } else {
                utils_.SaveOobM2Controller2XmlCFC(index.index, controller, show_tree_);
            }
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowOobLSIMicrochipM2ControllerCFC";
}

void RaidClient::ShowOobM2Controller(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowOobM2Controller";
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::OOBM2Raid>(index.backend);
    if (backend) {
        Quillon::RaidConfig::M2CtrlInfo controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            utils_.PrintOobMarvellController(index.index, controller, option_.console_output,
                                             result_page_, text, collect_show_text_);
            show_text_ += text;
            if (redfish_helper_) {
                redfish_helper_->getSupportInfo(index.id, "OOBM2", controller.max_stripe_size,
                                                controller.min_stripe_size,
                                                controller.support_raid_levels, "");
            }
            utils_.SaveOobM2ToXml(index.index, controller, show_tree_);
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowOobM2Controller";
}

void RaidClient::ShowOobMicrochipController(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowOobMicrochipController";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::OobMicrochipRaid>(index.backend);
    if (backend) {
        Quillon::protocol::MicrochipCtrl controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            utils_.PrintOobMicrochipController(index.index, controller, option_.console_output,
                                               result_page_, text, collect_show_text_);
            show_text_ += text;
            if (redfish_helper_) {
                redfish_helper_->getSupportInfo(
                    index.id, "OOBMICROCHIP", controller.max_stripe_size,
                    controller.min_stripe_size, controller.support_raid_levels, "");
            }
            utils_.SaveOobMicrochipController2Xml(index.index, controller, show_tree_);
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowOobMicrochipController";
}

void RaidClient::ShowOobVrocController(const RaidIndex& index) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ShowOobVrocController";
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::OobVrocRaid>(index.backend);
    if (backend) {
        Quillon::protocol::VolManDevCtrl controller;
        const RaidErrorCode code = backend->GetController(index.id, controller);
        std::string text;
        if (code == RAID_OK) {
            utils_.PrintOobVrocController(index.index, controller, option_.console_output,
                                          result_page_, text, collect_show_text_);
            show_text_ += text;
            if (redfish_helper_) {
                redfish_helper_->getSupportInfo(index.id, "OOBVROC", controller.max_stripe_size,
                                                controller.min_stripe_size,
                                                controller.support_raid_levels, "");
            }
            utils_.SaveOobVrocController2Xml(index.index, controller, show_tree_);
            text = success_text_;
        } else {
            text = FailureText(code, *backend, NoControllerText(index.index));
        }
        AddRow(CtrlLabel(index.index), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ShowOobVrocController";
}

} // namespace detail
} // namespace service
