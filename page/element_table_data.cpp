#include "collaborators/element_table_data.hpp"

#include <utility>

namespace HtmlPrint {

ElementTableData::ElementTableData(const std::string& title, std::size_t columns)
    : title_(title), columns_(columns) {}

ElementTableData::~ElementTableData() = default;
ElementTableData::ElementTableData(const ElementTableData&) = default;
ElementTableData& ElementTableData::operator=(const ElementTableData&) = default;
ElementTableData::ElementTableData(ElementTableData&&) noexcept = default;
ElementTableData& ElementTableData::operator=(ElementTableData&&) noexcept = default;

void ElementTableData::SetTableClassBox(HtmlStream<std::string>& heads) {
    heads_ = heads.Take();
}

void ElementTableData::SetContextBox(HtmlStream<std::string>& cells) {
    cells_ = cells.Take();
}

ElementTableData& ElementTableData::AppendTableData(const ElementTableData& other) {
    // Copy first: other may be this table itself, or one already appended to it.
    ElementTableData added = other;
    std::vector<ElementTableData> nested = std::move(added.appended_);
    added.appended_.clear();
    appended_.push_back(std::move(added));
    for (ElementTableData& table : nested) {
        appended_.push_back(std::move(table));
    }
    return *this;
}

} // namespace HtmlPrint
