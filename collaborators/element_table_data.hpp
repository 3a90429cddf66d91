#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "collaborators/html_stream.hpp"

namespace HtmlPrint {

// One table of a result page: a title, a row of head cells and the body cells in reading order,
// `columns` to a row. Tables appended to it are shown with it as one block of the page.
class ElementTableData {
public:
    ElementTableData(const std::string& title, std::size_t columns);
    ~ElementTableData();
    ElementTableData(const ElementTableData&);
    ElementTableData& operator=(const ElementTableData&);
    ElementTableData(ElementTableData&&) noexcept;
    ElementTableData& operator=(ElementTableData&&) noexcept;

    // Both take the cells over and leave the stream empty, so it can gather the next cells.
    void SetTableClassBox(HtmlStream<std::string>& heads);
    void SetContextBox(HtmlStream<std::string>& cells);

    // Adds other (and whatever was appended to it) below this table; returns *this.
    ElementTableData& AppendTableData(const ElementTableData& other);

    const std::string& GetTitle() const { return title_; }
    std::size_t GetColumns() const { return columns_; }
    const std::vector<std::string>& GetTableClassBox() const { return heads_; }
    const std::vector<std::string>& GetContextBox() const { return cells_; }
    // The appended tables, in order; none of them has tables of its own appended.
    const std::vector<ElementTableData>& GetAppendedTables() const { return appended_; }

private:
    std::string title_;
    std::size_t columns_;
    std::vector<std::string> heads_;
    std::vector<std::string> cells_;
    std::vector<ElementTableData> appended_;
};

} // namespace HtmlPrint
