#include "collaborators/basic_page.hpp"

namespace HtmlPrint {

// Defined here so the class has one home for its virtual table.
BasicPage::~BasicPage() = default;

} // namespace HtmlPrint
