#pragma once

#include <istream>
#include <map>
#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>

#include "service/misc_raid_service/detail/raid_config_sections.hpp"

namespace service {
namespace detail {

// Reads a policy file once into a property tree and turns its sections into the records of one
// controller family. Values stay text (the VROC_WIN raid_level aside) and nothing is judged
// here: a missing key takes its default and a wrong value passes on to the checks. Only section
// names are examined, to tell which sections belong to whom. Everything is told to the log only.
//
// Read first, once; every later operation reads the same tree, never changes it, and may be
// called any number of times.
class RaidConfigParser {
public:
    // Reads the file at path by its size and hands the bytes to ReadIniText. True when the tree
    // now holds something; a file that can't be opened or read logs so and gives false.
    bool ReadIniFile(const std::string& path);
    // Reads the policy file's content: a leading byte order mark is dropped and the text ends at
    // its first NUL byte; the rest goes to ReadIniStream.
    bool ReadIniText(const std::string& text);
    // Reads ini text from a stream as it is. On any failure the tree stays empty and false is
    // returned; the reason goes to the log.
    bool ReadIniStream(std::istream& stream);

    // The controller ids that controller and volume sections name, ascending, each once.
    std::vector<int> GetSectionIds() const;

    // Every controller of the LSI families, by id, then logged with LogCtrlSections.
    void ParseCtrlSections(std::map<int, CtrlSection>& sections) const;
    // The M.2 volumes that "m.2-<n>" sections name, by that number, then logged with
    // LogM2Sections.
    void ParseM2Sections(std::map<int, M2Section>& sections) const;

    // One controller of the given id, one operation per family. Sections of other controllers are
    // passed over; a record that nothing in the file fills stays as the caller built it.
    void ParseCtrlSection(int id, CtrlSection& section) const;
    void ParseMicroSection(int id, MicroCtrlSection& section) const;
    void ParseOobMicroSection(int id, OobMicroCtrlSection& section) const;
    void ParseOobVrocSection(int id, OobVrocCtrlSection& section) const;
    void ParseVrocWinSection(int id, VrocWinCtrlSection& section) const;
    // The one M.2 volume of the given controller, taken from its "ctrl<n>-vol<m>" sections; a
    // later section replaces an earlier one's values.
    void ParseM2Section(int id, M2Section& section) const;

    // Every field of the records at level 4.
    void LogCtrlSections(const std::map<int, CtrlSection>& sections) const;
    void LogM2Sections(const std::map<int, M2Section>& sections) const;

    // Pieces of reading that the policy file preview shares, so that it shows the file as it is
    // read here.
    //
    // The whole file, read by the size the file system gives. False, after logging that the file
    // can't be opened, when it can't be opened or has no size (a directory, a pipe).
    static bool ReadFileText(const std::string& path, std::string& text);
    // The text without a byte order mark at its very start (logged when dropped) and cut at its
    // first NUL byte.
    static std::string CleanText(const std::string& text);

private:
    boost::property_tree::ptree tree_;
};

} // namespace detail
} // namespace service
