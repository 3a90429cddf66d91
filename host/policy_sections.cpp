#include "host/policy_sections.hpp"

#include <sstream>

namespace host {

namespace {

std::string Trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return "";
    }
    const std::size_t last = text.find_last_not_of(" \t\r");
    return text.substr(first, last - first + 1);
}

} // namespace

std::string PolicySections::Section::Value(const std::string& key) const {
    for (const auto& [name, value] : values) {
        if (name == key) {
            return value;
        }
    }
    return "";
}

bool PolicySections::Section::Has(const std::string& key) const {
    for (const auto& entry : values) {
        if (entry.first == key) {
            return true;
        }
    }
    return false;
}

std::string PolicySections::Section::Controller() const {
    const std::size_t volume = name.find("-vol");
    return volume == std::string::npos ? name : name.substr(0, volume);
}

bool PolicySections::Section::IsVolume() const {
    return name.find("-vol") != std::string::npos;
}

bool PolicySections::Parse(const std::string& text, std::vector<Section>& sections,
                           std::string& error) {
    sections.clear();
    std::istringstream in(text);
    std::string raw;
    int number = 0;
    while (std::getline(in, raw)) {
        ++number;
        std::string line = Trim(raw);
        // A byte order mark some editors write before the first section.
        if (number == 1 && line.rfind("\xEF\xBB\xBF", 0) == 0) {
            line = Trim(line.substr(3));
        }
        if (line.empty() || line[0] == '#' || line[0] == ';') {
            continue;
        }
        if (line.front() == '[') {
            if (line.back() != ']' || line.size() < 3) {
                error = "line " + std::to_string(number) + ": \"" + line + "\" is not a section";
                return false;
            }
            sections.push_back(Section{Trim(line.substr(1, line.size() - 2)), {}});
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) {
            error = "line " + std::to_string(number) + ": \"" + line + "\" is not key=value";
            return false;
        }
        if (sections.empty()) {
            error = "line " + std::to_string(number) + ": a key before any section";
            return false;
        }
        sections.back().values.emplace_back(Trim(line.substr(0, equals)),
                                            Trim(line.substr(equals + 1)));
    }
    return true;
}

} // namespace host
