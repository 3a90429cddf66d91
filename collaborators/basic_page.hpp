#pragma once

#include <string>

namespace HtmlPrint {

// A page the service writes as a file. Slot order of the virtual operations is part of the
// contract: destructor, GetSaveDir, GeneratePage.
class BasicPage {
public:
    virtual ~BasicPage();

    // The directory the page is written into.
    virtual const std::string& GetSaveDir() const = 0;
    // Writes the page; 0 on success, non-zero on failure. Never throws.
    virtual int GeneratePage() = 0;

protected:
    BasicPage() = default;
    BasicPage(const BasicPage&) = default;
    BasicPage& operator=(const BasicPage&) = default;
    BasicPage(BasicPage&&) = default;
    BasicPage& operator=(BasicPage&&) = default;
};

} // namespace HtmlPrint
