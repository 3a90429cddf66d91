#include "service/misc_raid_service/detail/raid_config_parser.hpp"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <locale>
#include <sstream>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/ini_parser.hpp>
#include <boost/regex.hpp>

#include "collaborators/log.hpp"
#include "collaborators/trace_scope.hpp"

namespace service {
namespace detail {
namespace {

using Tree = boost::property_tree::ptree;

constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

// "ctrl0": a controller, holding its global hot spares.
const boost::regex& ControllerPattern() {
    static const boost::regex pattern(R"(ctrl\d+)");
    return pattern;
}

// "ctrl0-vol1": one volume of a controller.
const boost::regex& VolumePattern() {
    static const boost::regex pattern(R"(ctrl\d+\-vol\d+)");
    return pattern;
}

// "m.2-1": one M.2 volume. The dot is the pattern's own and stands for any one character, so
// "m-2-1" and "m22-1" are M.2 sections as well; intended, files written that way are read.
const boost::regex& M2Pattern() {
    static const boost::regex pattern(R"(m.2(\-\d+){1})");
    return pattern;
}

const boost::regex& DigitsPattern() {
    static const boost::regex pattern(R"(\d+)");
    return pattern;
}

bool IsControllerName(const std::string& name) {
    return boost::regex_match(name, ControllerPattern());
}

bool IsVolumeName(const std::string& name) {
    return boost::regex_match(name, VolumePattern());
}

// Every number of the file is read by stream extraction, in the classic locale so that the
// host's locale can't change what a number is. False when the stream failed; value then holds
// what the stream left there: its largest value when the digits overflow, 0 when there were none.
bool ExtractInt(const std::string& text, int& value) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream >> value;
    return !stream.fail();
}

// The number of the first run of digits in text. A run too long for an int reads as the largest
// int: intended, the section then names a controller that doesn't exist, which the later steps
// find nothing of, and nothing here aborts.
int FirstNumber(const std::string& text) {
    boost::smatch digits;
    int value = -1;
    if (boost::regex_search(text, digits, DigitsPattern())) {
        ExtractInt(digits.str(), value);
    }
    return value;
}

// The controller id of a "ctrl<n>" or "ctrl<n>-vol<m>" section: "ctrl01" is controller 1 too.
int ControllerId(const std::string& name) {
    const int id = FirstNumber(name);
    RAIDCFG_LOG(4) << "controller id: " << id;
    return id;
}

// The volume id of a "ctrl<n>-vol<m>" section: the first number behind the first "-".
int VolumeId(const std::string& name) {
    const int id = FirstNumber(name.substr(name.find('-') + 1));
    RAIDCFG_LOG(4) << "vol id: " << id;
    return id;
}

void LogRawSection(const std::string& name) {
    RAIDCFG_LOG(4) << "raw section -> " << name;
}

// A key of the section, or fallback when it is missing. The path separator is ".", so a key
// holding a dot can't be reached; none of ours does.
std::string Text(const Tree& section, const char* key, const char* fallback = "") {
    return section.get<std::string>(Tree::path_type(key, '.'), fallback);
}

// VROC_WIN keeps raid_level as a number. Text the stream can't read (an absent key, no leading
// digits, more digits than an int holds) leaves the record's -1, which the level check refuses;
// intended: the stream's own 0 would pass as RAID 0. Leading digits count: "5 ; five" reads as 5.
int RaidLevelNumber(const std::string& text) {
    int value = -1;
    return ExtractInt(text, value) ? value : -1;
}

CtrlVolSection ReadCtrlVolume(const Tree& section, int ctrlid, int volid) {
    CtrlVolSection volume;
    volume.ctrlid = ctrlid;
    volume.volid = volid;
    volume.disks = Text(section, "disks");
    volume.hot_spares = Text(section, "hot_spares");
    volume.raid_level = Text(section, "raid_level");
    volume.vol_name = Text(section, "vol_name");
    volume.write_policy = Text(section, "write_policy");
    volume.read_policy = Text(section, "read_policy");
    volume.io_policy = Text(section, "io_policy");
    volume.access_policy = Text(section, "access_policy");
    volume.cache_policy = Text(section, "cache_policy");
    volume.volume_size = Text(section, "volume_size");
    volume.strip_size = Text(section, "strip_size", "128K");
    volume.initialization = Text(section, "initialization");
    return volume;
}

MicroVolSection ReadMicroVolume(const Tree& section, int ctrlid, int volid) {
    MicroVolSection volume;
    volume.ctrlid = ctrlid;
    volume.volid = volid;
    volume.disks = Text(section, "disks");
    volume.hot_spares = Text(section, "hot_spares");
    volume.raid_level = Text(section, "raid_level");
    volume.io_policy = Text(section, "io_policy");
    volume.vol_name = Text(section, "vol_name");
    volume.volume_size = Text(section, "volume_size");
    volume.strip_size = Text(section, "strip_size", "128K");
    return volume;
}

OobMicroVolSection ReadOobMicroVolume(const Tree& section, int ctrlid, int volid) {
    OobMicroVolSection volume;
    volume.ctrlid = ctrlid;
    volume.volid = volid;
    volume.disks = Text(section, "disks");
    volume.hot_spares = Text(section, "hot_spares");
    volume.raid_level = Text(section, "raid_level");
    volume.vol_name = Text(section, "vol_name");
    volume.volume_size = Text(section, "volume_size");
    volume.strip_size = Text(section, "strip_size", "128K");
    volume.write_policy = Text(section, "write_policy");
    volume.read_policy = Text(section, "read_policy");
    return volume;
}

OobVrocVolSection ReadOobVrocVolume(const Tree& section, int ctrlid, int volid) {
    OobVrocVolSection volume;
    volume.ctrlid = ctrlid;
    volume.volid = volid;
    volume.disks = Text(section, "disks");
    volume.raid_level = Text(section, "raid_level");
    volume.vol_name = Text(section, "vol_name");
    volume.volume_size = Text(section, "volume_size");
    volume.strip_size = Text(section, "strip_size", "128K");
    return volume;
}

VrocWinVolSection ReadVrocWinVolume(const Tree& section, int ctrlid, int volid) {
    VrocWinVolSection volume;
    volume.ctrlid = ctrlid;
    volume.volid = volid;
    volume.raid_level = RaidLevelNumber(Text(section, "raid_level"));
    volume.vol_name = Text(section, "vol_name");
    volume.vol_capacity = Text(section, "vol_capacity");
    volume.vol_strip_size =
        boost::algorithm::to_upper_copy(Text(section, "vol_strip_size"), std::locale::classic());
    volume.RAID_write_hole = Text(section, "RAID_write_hole");
    volume.disks = Text(section, "disks");
    return volume;
}

// Hands the sections of the wanted controller to the callbacks in file order: its "ctrl<n>"
// sections to on_controller (when read_controller_sections is set) and its "ctrl<n>-vol<m>"
// sections, with their volume id, to on_volume. Every other section is passed over.
template <typename OnController, typename OnVolume>
void WalkController(const Tree& tree, int wanted, bool read_controller_sections,
                    OnController on_controller, OnVolume on_volume) {
    for (const auto& [name, section] : tree) {
        LogRawSection(name);
        if (read_controller_sections && IsControllerName(name)) {
            if (ControllerId(name) == wanted) {
                on_controller(section);
            }
        } else if (IsVolumeName(name)) {
            const int ctrlid = ControllerId(name);
            const int volid = VolumeId(name);
            if (ctrlid == wanted) {
                on_volume(section, volid);
            }
        }
    }
}

// One controller of a family with global hot spares: the record takes the wanted id once a
// non-empty global_hot_spares or a volume of it is met, and each volume is appended in order.
template <typename Record, typename ReadVolume>
void ParseController(const Tree& tree, int id, Record& record, ReadVolume read_volume) {
    WalkController(
        tree, id, true,
        [&](const Tree& section) {
            std::string spares = Text(section, "global_hot_spares");
            if (!spares.empty()) {
                record.id = id;
                record.global_hot_spares = std::move(spares);
            }
        },
        [&](const Tree& section, int volid) {
            record.id = id;
            record.volumes.push_back(read_volume(section, id, volid));
        });
}

} // namespace

bool RaidConfigParser::ReadFileText(const std::string& path, std::string& text) {
    std::ifstream file(path, std::ios::binary);
    boost::system::error_code error;
    const std::uintmax_t size = file ? boost::filesystem::file_size(path, error) : 0;
    if (!file || error) {
        RAIDCFG_LOG(1) << "The file '" << path << "' can't be opened.";
        return false;
    }
    text.assign(static_cast<std::size_t>(size), '\0');
    if (size > 0) {
        file.read(&text[0], static_cast<std::streamsize>(size));
    }
    // A device error is no file to read; half of a policy file must not pass for the whole.
    if (file.bad()) {
        RAIDCFG_LOG(1) << "The file '" << path << "' can't be opened.";
        text.clear();
        return false;
    }
    // A file that shrank since its size was taken gives what it still holds.
    text.resize(static_cast<std::size_t>(file.gcount()));
    return true;
}

std::string RaidConfigParser::CleanText(const std::string& text) {
    std::string clean = text;
    // Only a mark at the very start is one; the same bytes anywhere else are part of the text.
    if (clean.compare(0, 3, kByteOrderMark) == 0) {
        clean.erase(0, 3);
        RAIDCFG_LOG(4) << "skip the bom character.";
    }
    const std::string::size_type nul = clean.find('\0');
    if (nul != std::string::npos) {
        clean.erase(nul);
    }
    return clean;
}

bool RaidConfigParser::ReadIniFile(const std::string& path) {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ReadIniFile");
    tree_.clear();
    std::string text;
    if (!ReadFileText(path, text)) {
        return false;
    }
    return ReadIniText(text);
}

bool RaidConfigParser::ReadIniText(const std::string& text) {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ReadIniText");
    std::istringstream stream(CleanText(text));
    return ReadIniStream(stream);
}

bool RaidConfigParser::ReadIniStream(std::istream& stream) {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ReadIniStream");
    tree_.clear();
    Tree tree;
    try {
        // The reader splits lines at LF and trims each line, which takes the CR of a CR LF line
        // end with it: CR LF files read exactly like LF files with nothing done here. Trimming
        // follows the classic locale, so the host's locale can't widen what counts as blank.
        stream.imbue(std::locale::classic());
        boost::property_tree::ini_parser::read_ini(stream, tree);
    } catch (const boost::property_tree::ptree_error& error) {
        RAIDCFG_LOG(1) << "read ini file failed with error: " << error.what();
        return false;
    } catch (...) {
        RAIDCFG_LOG(1) << "read ini file failed with unknown error.";
        return false;
    }
    if (tree.empty()) {
        RAIDCFG_LOG(1) << "there is no property_tree";
        return false;
    }
    tree_.swap(tree);
    return true;
}

std::vector<int> RaidConfigParser::GetSectionIds() const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::GetSectionIds");
    std::vector<int> ids;
    for (const auto& entry : tree_) {
        const std::string& name = entry.first;
        LogRawSection(name);
        if (IsControllerName(name) || IsVolumeName(name)) {
            ids.push_back(ControllerId(name));
        }
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

void RaidConfigParser::ParseCtrlSections(std::map<int, CtrlSection>& sections) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ParseCtrlSections");
    // The map's entry of a controller, made with its id when it is new.
    const auto entry = [&sections](int id) -> CtrlSection& {
        const auto [place, made] = sections.try_emplace(id);
        if (made) {
            place->second.id = id;
        }
        return place->second;
    };
    for (const auto& [name, section] : tree_) {
        LogRawSection(name);
        if (IsControllerName(name)) {
            const int id = ControllerId(name);
            std::string spares = Text(section, "global_hot_spares");
            if (!spares.empty()) {
                entry(id).global_hot_spares = std::move(spares);
            }
        } else if (IsVolumeName(name)) {
            const int ctrlid = ControllerId(name);
            const int volid = VolumeId(name);
            entry(ctrlid).volumes.push_back(ReadCtrlVolume(section, ctrlid, volid));
        }
    }
    LogCtrlSections(sections);
}

void RaidConfigParser::ParseM2Sections(std::map<int, M2Section>& sections) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ParseM2Sections");
    for (const auto& [name, section] : tree_) {
        LogRawSection(name);
        boost::smatch match;
        if (!boost::regex_match(name, match, M2Pattern())) {
            continue;
        }
        // The id is the number behind the "-" of "m.2-<n>". Taken from the pattern's group rather
        // than from the name's first "-", so that "m-2-1" is of id 1 like "m.2-1".
        int id = -1;
        ExtractInt(match[1].str().substr(1), id);
        // A later section of the same id replaces all of the earlier one's values.
        M2Section volume;
        volume.m2id = id;
        volume.raid_level = Text(section, "raid_level");
        volume.vol_name = Text(section, "vol_name");
        volume.strip_size = Text(section, "strip_size");
        sections.insert_or_assign(id, volume);
    }
    LogM2Sections(sections);
}

void RaidConfigParser::ParseCtrlSection(int id, CtrlSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ParseCtrlSection");
    ParseController(tree_, id, section, ReadCtrlVolume);
}

void RaidConfigParser::ParseMicroSection(int id, MicroCtrlSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ParseMicroSection");
    ParseController(tree_, id, section, ReadMicroVolume);
}

void RaidConfigParser::ParseOobMicroSection(int id, OobMicroCtrlSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ParseOobMicroSection");
    // This family has no controller section: "ctrl<n>" sections aren't looked at.
    WalkController(
        tree_, id, false, [](const Tree&) {},
        [&](const Tree& volume, int volid) {
            section.id = id;
            section.volumes.push_back(ReadOobMicroVolume(volume, id, volid));
        });
}

void RaidConfigParser::ParseOobVrocSection(int id, OobVrocCtrlSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ParseOobVrocSection");
    ParseController(tree_, id, section, ReadOobVrocVolume);
}

void RaidConfigParser::ParseVrocWinSection(int id, VrocWinCtrlSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ParseVrocWinSection");
    ParseController(tree_, id, section, ReadVrocWinVolume);
}

void RaidConfigParser::ParseM2Section(int id, M2Section& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::ParseM2Section");
    // One M.2 controller holds one volume: a later section of it replaces an earlier one's values.
    WalkController(
        tree_, id, false, [](const Tree&) {},
        [&](const Tree& volume, int volid) {
            section.m2id = id;
            section.volid = volid;
            section.raid_level = Text(volume, "raid_level");
            section.vol_name = Text(volume, "vol_name");
            section.strip_size = Text(volume, "strip_size");
        });
}

void RaidConfigParser::LogCtrlSections(const std::map<int, CtrlSection>& sections) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::LogCtrlSections");
    for (const auto& entry : sections) {
        const CtrlSection& ctrl = entry.second;
        RAIDCFG_LOG(4) << "CtrlSection: id = " << ctrl.id;
        RAIDCFG_LOG(4) << "CtrlSection: global_hot_spares = " << ctrl.global_hot_spares;
        for (const CtrlVolSection& volume : ctrl.volumes) {
            RAIDCFG_LOG(4) << "CtrlVolSection: ctrlid = " << volume.ctrlid;
            RAIDCFG_LOG(4) << "CtrlVolSection: volid = " << volume.volid;
            RAIDCFG_LOG(4) << "CtrlVolSection: disks = " << volume.disks;
            RAIDCFG_LOG(4) << "CtrlVolSection: raid_level = " << volume.raid_level;
            RAIDCFG_LOG(4) << "CtrlVolSection: hot_spares = " << volume.hot_spares;
            RAIDCFG_LOG(4) << "CtrlVolSection: vol_name = " << volume.vol_name;
            RAIDCFG_LOG(4) << "CtrlVolSection: write_policy = " << volume.write_policy;
            RAIDCFG_LOG(4) << "CtrlVolSection: read_policy = " << volume.read_policy;
            RAIDCFG_LOG(4) << "CtrlVolSection: io_policy = " << volume.io_policy;
            RAIDCFG_LOG(4) << "CtrlVolSection: access_policy = " << volume.access_policy;
            RAIDCFG_LOG(4) << "CtrlVolSection: cache_policy = " << volume.cache_policy;
            RAIDCFG_LOG(4) << "CtrlVolSection: volume_size = " << volume.volume_size;
            RAIDCFG_LOG(4) << "CtrlVolSection: strip_size = " << volume.strip_size;
            RAIDCFG_LOG(4) << "CtrlVolSection: initialization = " << volume.initialization;
        }
    }
}

void RaidConfigParser::LogM2Sections(const std::map<int, M2Section>& sections) const {
    RAIDCFG_TRACE("service::detail::RaidConfigParser::LogM2Sections");
    for (const auto& entry : sections) {
        const M2Section& volume = entry.second;
        RAIDCFG_LOG(4) << "M2Section: m2id = " << volume.m2id;
        RAIDCFG_LOG(4) << "M2Section: raid_level = " << volume.raid_level;
        RAIDCFG_LOG(4) << "M2Section: vol_name = " << volume.vol_name;
        RAIDCFG_LOG(4) << "M2Section: strip_size = " << volume.strip_size;
    }
}

} // namespace detail
} // namespace service
