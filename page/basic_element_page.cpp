#include "collaborators/basic_element_page.hpp"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <utility>

namespace HtmlPrint {

namespace {

// Inline style only: the page must read well when opened straight from a disk or a mail.
constexpr const char* kStyle = R"(    body {
      margin: 2em auto;
      max-width: 72em;
      padding: 0 1.5em;
      font-family: "Segoe UI", "Helvetica Neue", Arial, sans-serif;
      font-size: 15px;
      line-height: 1.45;
      color: #1f2328;
      background: #ffffff;
    }
    h1 { font-size: 1.7em; margin: 0 0 0.2em; }
    p.subtitle { margin: 0 0 1em; color: #57606a; }
    p.message { margin: 0.6em 0; }
    section.tables { margin: 1.5em 0 2em; }
    table { border-collapse: collapse; margin: 0 0 1.2em; min-width: 24em; }
    caption { caption-side: top; text-align: left; font-weight: 600; padding: 0 0 0.4em; }
    th, td { padding: 0.35em 0.9em; border: 1px solid #d0d7de; text-align: left; vertical-align: top; }
    th { background: #f3f5f7; font-weight: 600; }
    tbody tr:nth-child(even) { background: #fafbfc; }
)";

std::string Escape(const std::string& text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\'':
            escaped += "&#39;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

void RenderRow(std::string& html, const std::vector<std::string>& cells, std::size_t first,
               std::size_t width, const char* tag) {
    html += "        <tr>";
    for (std::size_t i = first; i < first + width; ++i) {
        html += '<';
        html += tag;
        html += '>';
        if (i < cells.size()) {
            html += Escape(cells[i]);
        }
        html += "</";
        html += tag;
        html += '>';
    }
    html += "</tr>\n";
}

void RenderTable(std::string& html, const ElementTableData& table) {
    const std::vector<std::string>& heads = table.GetTableClassBox();
    const std::vector<std::string>& cells = table.GetContextBox();
    // Without a column count the heads decide the row width; without either, one row holds all.
    std::size_t width = table.GetColumns() != 0 ? table.GetColumns() : heads.size();
    if (width == 0) {
        width = cells.size();
    }

    html += "    <table>\n";
    if (!table.GetTitle().empty()) {
        html += "      <caption>" + Escape(table.GetTitle()) + "</caption>\n";
    }
    if (!heads.empty()) {
        html += "      <thead>\n";
        RenderRow(html, heads, 0, std::max(width, heads.size()), "th");
        html += "      </thead>\n";
    }
    if (!cells.empty()) {
        html += "      <tbody>\n";
        for (std::size_t first = 0; first < cells.size(); first += width) {
            RenderRow(html, cells, first, width, "td");
        }
        html += "      </tbody>\n";
    }
    html += "    </table>\n";
}

void RenderBlock(std::string& html, const ElementTableData& table) {
    html += "  <section class=\"tables\">\n";
    RenderTable(html, table);
    for (const ElementTableData& appended : table.GetAppendedTables()) {
        RenderTable(html, appended);
    }
    html += "  </section>\n";
}

} // namespace

BasicElementPage::BasicElementPage(const std::string& file_path, const std::string& second_text)
    : file_path_(file_path), second_text_(second_text) {
    const std::filesystem::path path(file_path);
    save_dir_ = path.has_parent_path() ? path.parent_path().string() : ".";
    title_ = path.stem().string();
}

BasicElementPage::~BasicElementPage() = default;

void BasicElementPage::SetPageTitle(const std::string& title) {
    title_ = title;
}

const std::string& BasicElementPage::GetPageTitle() const {
    return title_;
}

void BasicElementPage::AddTable(const ElementTableData& table) {
    tables_.push_back(table);
}

std::vector<ElementTableData>& BasicElementPage::GetTableBox() {
    return tables_;
}

void BasicElementPage::AddMessage(const std::string& message) {
    messages_.emplace_back(tables_.size(), message);
}

const std::string& BasicElementPage::GetSaveDir() const {
    return save_dir_;
}

std::string BasicElementPage::Render() const {
    std::string html;
    html += "<!DOCTYPE html>\n";
    html += "<html lang=\"en\">\n";
    html += "<head>\n";
    html += "  <meta charset=\"utf-8\">\n";
    html += "  <meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n";
    html += "  <title>" + Escape(title_) + "</title>\n";
    html += "  <style>\n";
    html += kStyle;
    html += "  </style>\n";
    html += "</head>\n";
    html += "<body>\n";
    if (!title_.empty()) {
        html += "  <h1>" + Escape(title_) + "</h1>\n";
    }
    if (!second_text_.empty()) {
        html += "  <p class=\"subtitle\">" + Escape(second_text_) + "</p>\n";
    }
    // Messages and tables interleave in the order they were added.
    auto message = messages_.begin();
    for (std::size_t index = 0; index <= tables_.size(); ++index) {
        const bool last = index == tables_.size();
        for (; message != messages_.end() && (last || message->first <= index); ++message) {
            html += "  <p class=\"message\">" + Escape(message->second) + "</p>\n";
        }
        if (index < tables_.size()) {
            RenderBlock(html, tables_[index]);
        }
    }
    html += "</body>\n";
    html += "</html>\n";
    return html;
}

int BasicElementPage::GeneratePage() {
    try {
        const std::string html = Render();
        std::ofstream out(file_path_, std::ios::binary | std::ios::trunc);
        if (!out) {
            return 1;
        }
        out << html;
        out.close();
        return out.fail() ? 1 : 0;
    } catch (const std::exception&) {
        return 1;
    } catch (...) {
        return 1;
    }
}

} // namespace HtmlPrint
