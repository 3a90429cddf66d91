#pragma once

#include <string>
#include <utility>
#include <vector>

namespace host {

// A policy file read as its sections and their keys, in file order, with no judgement of the
// values: what diff compares. "[ctrl1-vol0]" is a volume of controller "ctrl1", "[ctrl1]" the
// controller's own settings.
class PolicySections {
public:
    struct Section {
        std::string name;
        std::vector<std::pair<std::string, std::string>> values;

        // The value of key, or empty when the section lacks it.
        std::string Value(const std::string& key) const;
        bool Has(const std::string& key) const;
        // "ctrl1" for "ctrl1-vol0" and for "ctrl1".
        std::string Controller() const;
        bool IsVolume() const;
    };

    // Reads the text; false with the line and what is wrong with it. Blank lines and lines
    // starting with "#" or ";" are skipped; a key outside any section is an error.
    static bool Parse(const std::string& text, std::vector<Section>& sections, std::string& error);
};

} // namespace host
