#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "collaborators/basic_page.hpp"
#include "collaborators/element_table_data.hpp"

namespace HtmlPrint {

// A result page of messages and tables, written as one self-contained HTML5 file: no scripts,
// no outside resources, every text escaped, and no time stamps, so the same content always
// gives the same file.
class BasicElementPage : public BasicPage {
public:
    // file_path: where GeneratePage writes. second_text: a line shown under the page title,
    // left out when empty. The title starts as the file name without its extension.
    BasicElementPage(const std::string& file_path, const std::string& second_text);
    ~BasicElementPage() override;

    void SetPageTitle(const std::string& title);
    const std::string& GetPageTitle() const;

    // Adds a copy of table at the end of the page.
    void AddTable(const ElementTableData& table);
    // The tables so far, in order; a caller may append to the last one directly.
    std::vector<ElementTableData>& GetTableBox();
    // A paragraph of text; messages and tables keep the order they were added in.
    void AddMessage(const std::string& message);

    // The directory part of the file path ("." when the path names no directory).
    const std::string& GetSaveDir() const override;
    int GeneratePage() override;

private:
    std::string Render() const;

    std::string file_path_;
    std::string second_text_;
    std::string save_dir_;
    std::string title_;
    std::vector<ElementTableData> tables_;
    // Each message with the number of tables added before it, to keep the page's order.
    std::vector<std::pair<std::size_t, std::string>> messages_;
};

} // namespace HtmlPrint
