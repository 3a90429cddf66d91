// The end of every action: the rows as one table, folded into one result value, and on the
// out-of-band road the page "raid_result.html".
#include <cstddef>
#include <iostream>

#include "collaborators/element_table_data.hpp"
#include "collaborators/html_stream.hpp"
#include "collaborators/log.hpp"
#include "collaborators/table_serializer.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/action_outcome.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"

namespace service {
namespace detail {

void RaidClient::TrimResultText(const std::string& in, std::string& out) {
    out = in;
    if (out.size() >= 2) {
        const std::size_t crlf = out.find("\r\n");
        if (crlf != std::string::npos) {
            out.erase(crlf);
        }
    }
    const std::size_t line_feed = out.find('\n');
    if (line_feed != std::string::npos) {
        out.erase(line_feed);
    }
}

void RaidClient::PrintResultTable(const std::string& title) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::PrintResultTable";
    TableSerializer table(2, title, 4);
    HtmlPrint::ElementTableData page_table(title, 2);

    table.sstream() << "Device"
                    << "Result";
    HtmlPrint::HtmlStream<std::string> heads;
    heads.push_back("Device");
    heads.push_back("Result");
    page_table.SetTableClassBox(heads);

    HtmlPrint::HtmlStream<std::string> body;
    for (const RaidResult& row : rows_) {
        std::string text;
        TrimResultText(row.result, text);
        table.sstream() << row.device << text;
        body.push_back(row.device);
        body.push_back(text);
    }
    if (option_.console_output) {
        table.PrintTable(std::cout);
    }
    page_table.SetContextBox(body);
    if (result_page_) {
        result_page_->AddTable(page_table);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::PrintResultTable";
}

std::uint32_t RaidClient::SummaryResults() const {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::SummaryResults";
    const std::uint32_t value = ActionOutcome::Summarize(rows_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::SummaryResults";
    return value;
}

void RaidClient::WriteResultPage(const TesselResult& result) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::WriteResultPage";
    if (!result_page_) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::WriteResultPage";
        return;
    }
    // A page never stands empty after a failure: the message takes the place of the tables.
    if (result != result::Success && result_page_->GetTableBox().empty()) {
        result_page_->AddMessage(result.message());
    }

    // The host behind the last "@" of the target text; the text before it may hold credentials.
    const std::string& target = option_.connect_option.target;
    const std::size_t at = target.rfind('@');
    const std::string host = at == std::string::npos ? target : target.substr(at + 1);
    // Intended: no blank before the bracket, "RaidConfig Show(host)", as the page has always
    // been titled.
    const std::string& title = result_page_->GetPageTitle();
    result_page_->SetPageTitle(title.empty() ? host : title + "(" + host + ")");

    // The page is a by-product: failing to write it does not change the action's result.
    result_page_->GeneratePage();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::WriteResultPage";
}

} // namespace detail
} // namespace service
