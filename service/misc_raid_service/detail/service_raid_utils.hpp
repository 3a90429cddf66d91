#pragma once

#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>

#include "backend/records.hpp"

// Out-of-band half: the result page that its tables feed.
#include <memory>

#include "collaborators/basic_element_page.hpp"

namespace service {
namespace detail {

// Turns one controller record into the tables the user reads, and into the subtree of the show
// result file. Holds no state but the table titles.
class RaidUtils {
public:
    RaidUtils();

    // Titles of the first table of a controller and of the key management tables.
    std::string broadcom_title;
    std::string microchip_title;
    std::string marvell_title;
    std::string vroc_title;
    std::string ekm_title;

    // In-band families: the tables of one controller. `flat_id` is the controller's place in the
    // client's numbering; with `collect` the tables are appended to `text` instead of printed.
    void PrintBroadcomController(int flat_id, const Quillon::protocol::StorcliCtrl& ctrl,
                                 std::string& text, bool collect);
    void PrintMicrochipController(int flat_id, const Quillon::ARCCONF::ControllerInfo& ctrl,
                                  std::string& text, bool collect);
    void PrintMarvellController(int flat_id, const Quillon::RaidConfig::M2CtrlInfo& ctrl,
                                std::string& text, bool collect);
    void PrintWinVrocController(int flat_id, const Quillon::RaidConfig::SWWinController& ctrl,
                                std::string& text, bool collect);

    // In-band families: one "CONTROLLER" subtree added to `show_tree` per call.
    void SaveLSIController2Xml(int flat_id, const Quillon::protocol::StorcliCtrl& ctrl,
                               boost::property_tree::ptree& show_tree);
    void SaveMicrochipController2Xml(int flat_id, const Quillon::ARCCONF::ControllerInfo& ctrl,
                                     boost::property_tree::ptree& show_tree);
    void SaveM2ToXml(int flat_id, const Quillon::RaidConfig::M2CtrlInfo& ctrl,
                     boost::property_tree::ptree& show_tree);
    void SaveVrocWin2Xml(int flat_id, const Quillon::RaidConfig::SWWinController& ctrl,
                         boost::property_tree::ptree& show_tree);

    // Out-of-band families: tables with page twins, and their show XML.
    // Each table goes to the console when `console` is set, else to `text` when `collect` is
    // set, else nowhere; its twin goes onto `result_page` in every case, one block a controller.
    // `flat_id` -1 (a controller named by its target) leaves out the "Controller ID" column
    // where a family has that form.
    void PrintOobBroadcomCController(int flat_id, const Quillon::RaidConfig::Controller& ctrl,
                                     bool console,
                                     std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                     std::string& text, bool collect);
    void PrintOobMarvellController(int flat_id, const Quillon::RaidConfig::M2CtrlInfo& ctrl,
                                   bool console,
                                   std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                   std::string& text, bool collect);
    void PrintOobMicrochipController(int flat_id, const Quillon::protocol::MicrochipCtrl& ctrl,
                                     bool console,
                                     std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                     std::string& text, bool collect);
    void PrintOobVrocController(int flat_id, const Quillon::protocol::VolManDevCtrl& ctrl,
                                bool console,
                                std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                std::string& text, bool collect);
    // The CFC family sorts the record's disks and pools by id in place, so that the XML saved
    // from the same record afterwards stands in the same order.
    void PrintOobBroadcomControllerCFC(int flat_id, Quillon::RaidConfig::Controller& ctrl,
                                       bool console,
                                       std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                       std::string& text, bool collect);
    void PrintOobMarvellControllerCFC(int flat_id, Quillon::RaidConfig::Controller& ctrl,
                                      bool console,
                                      std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                      std::string& text, bool collect);
    void PrintOobMicrochipControllerCFC(int flat_id, Quillon::RaidConfig::Controller& ctrl,
                                        bool console,
                                        std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                        std::string& text, bool collect);

    // Out-of-band families: one "CONTROLLER" subtree, volumes under "POOLS", added to
    // `show_tree` per call.
    void SaveOobLSIController2Xml(int flat_id, const Quillon::RaidConfig::Controller& ctrl,
                                  boost::property_tree::ptree& show_tree);
    void SaveOobLSIController2XmlCFC(int flat_id, const Quillon::RaidConfig::Controller& ctrl,
                                     boost::property_tree::ptree& show_tree);
    void SaveOobM2Controller2XmlCFC(int flat_id, const Quillon::RaidConfig::Controller& ctrl,
                                    boost::property_tree::ptree& show_tree);
    void SaveOobMicrochipController2XmlCFC(int flat_id, const Quillon::RaidConfig::Controller& ctrl,
                                           boost::property_tree::ptree& show_tree);
    void SaveOobM2ToXml(int flat_id, const Quillon::RaidConfig::M2CtrlInfo& ctrl,
                        boost::property_tree::ptree& show_tree);
    void SaveOobMicrochipController2Xml(int flat_id, const Quillon::protocol::MicrochipCtrl& ctrl,
                                        boost::property_tree::ptree& show_tree);
    void SaveOobVrocController2Xml(int flat_id, const Quillon::protocol::VolManDevCtrl& ctrl,
                                   boost::property_tree::ptree& show_tree);

    // Firmware device order and key management: the i-th id is shown with the i-th record, on
    // standard output whatever the console setting; nothing happens when both are empty.
    void PrintFwDeviceOrder(const std::vector<int>& ids,
                            const std::vector<Quillon::protocol::FWDevOrderCtrl>& records);
    // As PrintFwDeviceOrder, with the table also added to result_page.
    void
    PrintOobFwDeviceOrder(const std::vector<int>& ids,
                          const std::vector<Quillon::RaidConfig::FWDevOrderController>& records,
                          std::shared_ptr<HtmlPrint::BasicElementPage> result_page);
    void PrintEKM(const std::vector<int>& ids,
                  const std::vector<Quillon::RaidConfig::EKMController>& records);
    // The controller's key management table, then one table per volume, ascending by id;
    // 1 when the controller has volumes, else 0.
    int PrintVolumesEncryption(int flat_id, const Quillon::RaidConfig::EKMController& record);
    // As PrintVolumesEncryption, for the wanted volume ids only, in their given order; 1 when
    // one of them was found, else 0.
    int PrintVolumeEncryption(int flat_id, const std::vector<int>& volume_ids,
                              const Quillon::RaidConfig::EKMController& record);
};

} // namespace detail
} // namespace service
