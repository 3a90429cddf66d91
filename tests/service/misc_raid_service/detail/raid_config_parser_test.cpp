#include <algorithm>
#include <climits>
#include <cstddef>
#include <functional>
#include <map>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "collaborators/log.hpp"
#include "service/misc_raid_service/detail/raid_config_parser.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ReadFile;
using raidcfg_test::WriteFile;
using service::detail::CtrlSection;
using service::detail::CtrlVolSection;
using service::detail::M2Section;
using service::detail::MicroCtrlSection;
using service::detail::MicroVolSection;
using service::detail::OobMicroCtrlSection;
using service::detail::OobMicroVolSection;
using service::detail::OobVrocCtrlSection;
using service::detail::OobVrocVolSection;
using service::detail::RaidConfigParser;
using service::detail::VrocWinCtrlSection;
using service::detail::VrocWinVolSection;
using Lines = std::vector<std::string>;
using Ids = std::vector<int>;
using namespace std::string_literals;

const std::string kBom = "\xEF\xBB\xBF";
const std::string kReadFailed = "ERROR read ini file failed with error: ";
const std::string kNoTree = "ERROR there is no property_tree";

// Each record as one line of "field=value" in field order, so that a whole record compares at
// once and a difference reads plainly.

std::string Show(const CtrlVolSection& v) {
    std::ostringstream out;
    out << "ctrlid=" << v.ctrlid << "|volid=" << v.volid << "|disks=" << v.disks
        << "|hot_spares=" << v.hot_spares << "|raid_level=" << v.raid_level
        << "|vol_name=" << v.vol_name << "|write_policy=" << v.write_policy
        << "|read_policy=" << v.read_policy << "|io_policy=" << v.io_policy
        << "|access_policy=" << v.access_policy << "|cache_policy=" << v.cache_policy
        << "|volume_size=" << v.volume_size << "|strip_size=" << v.strip_size
        << "|initialization=" << v.initialization;
    return out.str();
}

std::string Show(const MicroVolSection& v) {
    std::ostringstream out;
    out << "ctrlid=" << v.ctrlid << "|volid=" << v.volid << "|disks=" << v.disks
        << "|hot_spares=" << v.hot_spares << "|raid_level=" << v.raid_level
        << "|io_policy=" << v.io_policy << "|vol_name=" << v.vol_name
        << "|volume_size=" << v.volume_size << "|strip_size=" << v.strip_size;
    return out.str();
}

std::string Show(const OobMicroVolSection& v) {
    std::ostringstream out;
    out << "ctrlid=" << v.ctrlid << "|volid=" << v.volid << "|disks=" << v.disks
        << "|hot_spares=" << v.hot_spares << "|raid_level=" << v.raid_level
        << "|vol_name=" << v.vol_name << "|volume_size=" << v.volume_size
        << "|strip_size=" << v.strip_size << "|write_policy=" << v.write_policy
        << "|read_policy=" << v.read_policy;
    return out.str();
}

std::string Show(const OobVrocVolSection& v) {
    std::ostringstream out;
    out << "ctrlid=" << v.ctrlid << "|volid=" << v.volid << "|disks=" << v.disks
        << "|raid_level=" << v.raid_level << "|vol_name=" << v.vol_name
        << "|volume_size=" << v.volume_size << "|strip_size=" << v.strip_size;
    return out.str();
}

std::string Show(const VrocWinVolSection& v) {
    std::ostringstream out;
    out << "ctrlid=" << v.ctrlid << "|volid=" << v.volid << "|raid_level=" << v.raid_level
        << "|vol_name=" << v.vol_name << "|vol_capacity=" << v.vol_capacity
        << "|vol_strip_size=" << v.vol_strip_size << "|RAID_write_hole=" << v.RAID_write_hole
        << "|disks=" << v.disks;
    return out.str();
}

std::string Show(const M2Section& v) {
    std::ostringstream out;
    out << "m2id=" << v.m2id << "|volid=" << v.volid << "|raid_level=" << v.raid_level
        << "|vol_name=" << v.vol_name << "|strip_size=" << v.strip_size;
    return out.str();
}

// A controller record: its head, then one line per volume.
template <typename Ctrl> Lines ShowVolumes(const Ctrl& ctrl, std::string head) {
    Lines lines{std::move(head)};
    for (const auto& volume : ctrl.volumes) {
        lines.push_back(Show(volume));
    }
    return lines;
}

Lines Show(const CtrlSection& c) {
    return ShowVolumes(c,
                       "id=" + std::to_string(c.id) + "|global_hot_spares=" + c.global_hot_spares);
}
Lines Show(const MicroCtrlSection& c) {
    return ShowVolumes(c,
                       "id=" + std::to_string(c.id) + "|global_hot_spares=" + c.global_hot_spares);
}
Lines Show(const OobMicroCtrlSection& c) {
    return ShowVolumes(c, "id=" + std::to_string(c.id));
}
Lines Show(const OobVrocCtrlSection& c) {
    return ShowVolumes(c,
                       "id=" + std::to_string(c.id) + "|global_hot_spares=" + c.global_hot_spares);
}
Lines Show(const VrocWinCtrlSection& c) {
    return ShowVolumes(c,
                       "id=" + std::to_string(c.id) + "|global_hot_spares=" + c.global_hot_spares);
}

// Every map entry as "<key>: " followed by the record's lines.
template <typename Map> Lines ShowMap(const Map& map) {
    Lines lines;
    for (const auto& [key, record] : map) {
        lines.push_back(std::to_string(key) + ":");
        if constexpr (std::is_same_v<typename Map::mapped_type, M2Section>) {
            lines.push_back(Show(record));
        } else {
            for (const std::string& line : Show(record)) {
                lines.push_back(line);
            }
        }
    }
    return lines;
}

std::map<int, CtrlSection> CtrlSections(const RaidConfigParser& parser) {
    std::map<int, CtrlSection> sections;
    parser.ParseCtrlSections(sections);
    return sections;
}

std::map<int, M2Section> M2Sections(const RaidConfigParser& parser) {
    std::map<int, M2Section> sections;
    parser.ParseM2Sections(sections);
    return sections;
}

template <typename Record>
Record One(const RaidConfigParser& parser, int id,
           void (RaidConfigParser::*parse)(int, Record&) const) {
    Record record;
    (parser.*parse)(id, record);
    return record;
}

CtrlSection Lsi(const RaidConfigParser& p, int id) {
    return One(p, id, &RaidConfigParser::ParseCtrlSection);
}
MicroCtrlSection Micro(const RaidConfigParser& p, int id) {
    return One(p, id, &RaidConfigParser::ParseMicroSection);
}
OobMicroCtrlSection OobMicro(const RaidConfigParser& p, int id) {
    return One(p, id, &RaidConfigParser::ParseOobMicroSection);
}
OobVrocCtrlSection OobVroc(const RaidConfigParser& p, int id) {
    return One(p, id, &RaidConfigParser::ParseOobVrocSection);
}
VrocWinCtrlSection VrocWin(const RaidConfigParser& p, int id) {
    return One(p, id, &RaidConfigParser::ParseVrocWinSection);
}
M2Section M2(const RaidConfigParser& p, int id) {
    return One(p, id, &RaidConfigParser::ParseM2Section);
}

// Everything the parser gives for its tree: the ids, both maps, and every one-controller record
// of each listed id and of controller 0. Two parsers that describe alike read the same tree.
Lines Describe(const RaidConfigParser& parser) {
    Lines lines{"ids:"};
    Ids ids = parser.GetSectionIds();
    for (const int id : ids) {
        lines.push_back(std::to_string(id));
    }
    const auto append = [&lines](const Lines& more) {
        lines.insert(lines.end(), more.begin(), more.end());
    };
    lines.emplace_back("ctrl sections:");
    append(ShowMap(CtrlSections(parser)));
    lines.emplace_back("m2 sections:");
    append(ShowMap(M2Sections(parser)));
    ids.push_back(0);
    for (const int id : ids) {
        lines.push_back("controller " + std::to_string(id) + ":");
        append(Show(Lsi(parser, id)));
        append(Show(Micro(parser, id)));
        append(Show(OobMicro(parser, id)));
        append(Show(OobVroc(parser, id)));
        append(Show(VrocWin(parser, id)));
        lines.push_back(Show(M2(parser, id)));
    }
    return lines;
}

// A stream device that serves some text and then breaks: the next read throws.
class BreakingBuffer : public std::streambuf {
public:
    explicit BreakingBuffer(std::string text) : text_(std::move(text)) {
        setg(text_.data(), text_.data(), text_.data() + text_.size());
    }

protected:
    int_type underflow() override { throw std::runtime_error("device gone"); }

private:
    std::string text_;
};

// A policy file section holding every key any family reads, each with its own value, and one
// key no family reads.
const std::string kEveryKey = "disks=1,2\n"
                              "hot_spares=3\n"
                              "raid_level=5\n"
                              "vol_name=data\n"
                              "write_policy=11\n"
                              "read_policy=12\n"
                              "io_policy=13\n"
                              "access_policy=14\n"
                              "cache_policy=15\n"
                              "volume_size=512MB\n"
                              "strip_size=64K\n"
                              "initialization=16\n"
                              "vol_capacity=100GB\n"
                              "vol_strip_size=32k\n"
                              "RAID_write_hole=Distributed\n"
                              "global_hot_spares=9\n"
                              "unknown_key=x\n";

class RaidConfigParserTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }

    // The log's lines as "LEVEL text", without time and source place.
    Lines Log() const {
        Lines lines;
        const std::string path = dir_.File("raidcfg.log");
        if (!raidcfg_test::FileExists(path)) {
            return lines;
        }
        static const std::regex line_pattern(R"(^\S+ \S+ (\S+) +\S+:\d+ (.*)$)");
        std::istringstream log(ReadFile(path));
        std::string line;
        while (std::getline(log, line)) {
            std::smatch parts;
            if (std::regex_match(line, parts, line_pattern)) {
                lines.push_back(parts[1].str() + " " + parts[2].str());
            } else {
                lines.push_back("unparsed: " + line);
            }
        }
        return lines;
    }

    // The log's lines from the mark (a former Log().size()) on.
    Lines LogFrom(std::size_t mark) const {
        const Lines all = Log();
        return Lines(all.begin() + static_cast<std::ptrdiff_t>(std::min(mark, all.size())),
                     all.end());
    }

    // The log's lines of one level word ("ERROR", "TRACE", ...).
    Lines LogOf(const std::string& level) const {
        Lines lines;
        for (const std::string& line : Log()) {
            if (line.rfind(level + " ", 0) == 0) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    // A parser that read text, which must succeed.
    static RaidConfigParser Read(const std::string& text) {
        RaidConfigParser parser;
        EXPECT_TRUE(parser.ReadIniText(text)) << text;
        return parser;
    }

    // The reader's failure line of the text, after checking that the read failed and left
    // nothing behind.
    std::string FailureOf(const std::string& text) {
        RaidConfigParser parser;
        const std::size_t mark = Log().size();
        EXPECT_FALSE(parser.ReadIniText(text));
        EXPECT_TRUE(parser.GetSectionIds().empty());
        const Lines errors = [&] {
            Lines found;
            for (const std::string& line : LogFrom(mark)) {
                if (line.rfind("ERROR ", 0) == 0) {
                    found.push_back(line);
                }
            }
            return found;
        }();
        return errors.size() == 1 ? errors[0] : "errors: " + std::to_string(errors.size());
    }

    raidcfg_test::TempDir dir_;
};

// Reading

TEST_F(RaidConfigParserTest, ReadIniTextWithASectionAndAKeyReturnsTrue) {
    RaidConfigParser parser;
    EXPECT_TRUE(parser.ReadIniText("[ctrl0]\nglobal_hot_spares=1\n"));
    EXPECT_TRUE(LogOf("ERROR").empty());
}

TEST_F(RaidConfigParserTest, ReadIniTextOfEmptyTextLogsThereIsNoPropertyTree) {
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniText(""));
    EXPECT_EQ(LogOf("ERROR"), Lines{kNoTree});
}

TEST_F(RaidConfigParserTest, OnlyCommentsAndBlankLinesLogThereIsNoPropertyTree) {
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniText("; a comment\n\n   \n\t# another\n  ; [ctrl0]\n"));
    EXPECT_EQ(LogOf("ERROR"), Lines{kNoTree});
}

TEST_F(RaidConfigParserTest, OnlySectionsWithoutKeysLogThereIsNoPropertyTree) {
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniText("[ctrl0]\n[ctrl0-vol0]\n; nothing\n[m.2-1]\n"));
    EXPECT_EQ(LogOf("ERROR"), Lines{kNoTree});
    EXPECT_TRUE(parser.GetSectionIds().empty());
}

TEST_F(RaidConfigParserTest, ReadIniTextLogsEnteringAndExitingAroundTheReader) {
    RaidConfigParser parser;
    ASSERT_TRUE(parser.ReadIniText("[ctrl0]\nglobal_hot_spares=1\n"));
    EXPECT_EQ(Log(), (Lines{
                         "TRACE Entering  service::detail::RaidConfigParser::ReadIniText",
                         "TRACE Entering  service::detail::RaidConfigParser::ReadIniStream",
                         "TRACE Exiting  service::detail::RaidConfigParser::ReadIniStream",
                         "TRACE Exiting  service::detail::RaidConfigParser::ReadIniText",
                     }));
}

// Reading a file

TEST_F(RaidConfigParserTest, ReadIniFileReadsTheFileLikeItsText) {
    const std::string text =
        "[ctrl0]\nglobal_hot_spares=4\n[ctrl0-vol0]\n" + kEveryKey + "[m.2-1]\nraid_level=1\n";
    WriteFile(dir_.File("policy.ini"), text);
    RaidConfigParser from_file;
    ASSERT_TRUE(from_file.ReadIniFile(dir_.File("policy.ini")));
    EXPECT_EQ(Describe(from_file), Describe(Read(text)));
}

TEST_F(RaidConfigParserTest, ReadIniFileLogsEnteringAndExitingWithTheQualifiedName) {
    WriteFile(dir_.File("policy.ini"), "[ctrl0]\nglobal_hot_spares=1\n");
    RaidConfigParser parser;
    ASSERT_TRUE(parser.ReadIniFile(dir_.File("policy.ini")));
    EXPECT_EQ(Log(), (Lines{
                         "TRACE Entering  service::detail::RaidConfigParser::ReadIniFile",
                         "TRACE Entering  service::detail::RaidConfigParser::ReadIniText",
                         "TRACE Entering  service::detail::RaidConfigParser::ReadIniStream",
                         "TRACE Exiting  service::detail::RaidConfigParser::ReadIniStream",
                         "TRACE Exiting  service::detail::RaidConfigParser::ReadIniText",
                         "TRACE Exiting  service::detail::RaidConfigParser::ReadIniFile",
                     }));
}

TEST_F(RaidConfigParserTest, ReadIniFileOfAMissingFileLogsThatItCantBeOpened) {
    const std::string path = dir_.File("missing.ini");
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniFile(path));
    EXPECT_EQ(LogOf("ERROR"), Lines{"ERROR The file '" + path + "' can't be opened."});
}

TEST_F(RaidConfigParserTest, ReadIniFileOfADirectoryLogsThatItCantBeOpened) {
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniFile(dir_.path()));
    EXPECT_EQ(LogOf("ERROR"), Lines{"ERROR The file '" + dir_.path() + "' can't be opened."});
}

TEST_F(RaidConfigParserTest, ReadIniFileOfAnEmptyFileLogsThereIsNoPropertyTree) {
    WriteFile(dir_.File("empty.ini"), "");
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniFile(dir_.File("empty.ini")));
    EXPECT_EQ(LogOf("ERROR"), Lines{kNoTree});
}

TEST_F(RaidConfigParserTest, ReadIniFileCutsTheTextAtTheFirstNul) {
    WriteFile(dir_.File("nul.ini"),
              "[ctrl0]\nglobal_hot_spares=1\0\n[ctrl1]\nglobal_hot_spares=2\n"s);
    RaidConfigParser parser;
    ASSERT_TRUE(parser.ReadIniFile(dir_.File("nul.ini")));
    EXPECT_EQ(parser.GetSectionIds(), Ids{0});
    EXPECT_EQ(Show(Lsi(parser, 0)), Lines{"id=0|global_hot_spares=1"});
}

TEST_F(RaidConfigParserTest, ReadIniFileWithAByteOrderMarkReadsLikeTheFileWithout) {
    const std::string text = "[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\ndisks=2\n";
    WriteFile(dir_.File("bom.ini"), kBom + text);
    RaidConfigParser parser;
    ASSERT_TRUE(parser.ReadIniFile(dir_.File("bom.ini")));
    EXPECT_EQ(Describe(parser), Describe(Read(text)));
}

TEST_F(RaidConfigParserTest, ReadIniFileWithCrLfReadsLikeTheFileWithLf) {
    const std::string lf = "[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\n" + kEveryKey;
    std::string crlf;
    for (const char c : lf) {
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    WriteFile(dir_.File("crlf.ini"), crlf);
    RaidConfigParser parser;
    ASSERT_TRUE(parser.ReadIniFile(dir_.File("crlf.ini")));
    EXPECT_EQ(Describe(parser), Describe(Read(lf)));
}

// Byte order mark

TEST_F(RaidConfigParserTest, ByteOrderMarkAtTheStartIsDroppedAndLogged) {
    const RaidConfigParser parser = Read(kBom + "[ctrl0]\nglobal_hot_spares=1\n");
    EXPECT_EQ(parser.GetSectionIds(), Ids{0});
    EXPECT_EQ(Log().at(1), "TRACE skip the bom character.");
}

TEST_F(RaidConfigParserTest, TextWithAByteOrderMarkReadsLikeTheTextWithout) {
    const std::string text = "[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\n" + kEveryKey;
    EXPECT_EQ(Describe(Read(kBom + text)), Describe(Read(text)));
}

TEST_F(RaidConfigParserTest, ByteOrderMarkInsideAValueIsKeptAndNotLogged) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\nvol_name=a" + kBom + "b\n");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).vol_name, "a" + kBom + "b");
    for (const std::string& line : Log()) {
        EXPECT_EQ(line.find("bom"), std::string::npos) << line;
    }
}

TEST_F(RaidConfigParserTest, OnlyTheByteOrderMarkAtTheStartIsDroppedNotOneInAValue) {
    const RaidConfigParser parser = Read(kBom + "[ctrl0-vol0]\nvol_name=" + kBom + "\n");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).vol_name, kBom);
}

TEST_F(RaidConfigParserTest, SecondByteOrderMarkAtTheStartMakesAKeyLineWithoutEquals) {
    EXPECT_EQ(FailureOf(kBom + kBom + "[ctrl0]\nglobal_hot_spares=1\n"),
              kReadFailed + "<unspecified file>(1): '=' character not found in line");
}

TEST_F(RaidConfigParserTest, ByteOrderMarkBehindABlankIsNotDropped) {
    EXPECT_EQ(FailureOf(" " + kBom + "[ctrl0]\nglobal_hot_spares=1\n"),
              kReadFailed + "<unspecified file>(1): '=' character not found in line");
    EXPECT_TRUE(LogOf("TRACE skip").empty());
}

TEST_F(RaidConfigParserTest, ByteOrderMarkAloneIsAnEmptyFile) {
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniText(kBom));
    EXPECT_EQ(LogOf("ERROR"), Lines{kNoTree});
    EXPECT_EQ(LogOf("TRACE skip"), Lines{"TRACE skip the bom character."});
}

// NUL bytes

TEST_F(RaidConfigParserTest, TextEndsAtTheFirstNul) {
    const RaidConfigParser parser =
        Read("[ctrl0]\nglobal_hot_spares=1\n[ctrl1]\nglobal_hot_spares=2\0\n[ctrl2]\n"
             "global_hot_spares=3\n\0"s);
    EXPECT_EQ(parser.GetSectionIds(), (Ids{0, 1}));
}

TEST_F(RaidConfigParserTest, NulInsideAValueEndsTheValueAndTheText) {
    const RaidConfigParser parser =
        Read("[ctrl0]\nglobal_hot_spares=1,2\0,3\n[ctrl1]\nglobal_hot_spares=4\n"s);
    EXPECT_EQ(Show(Lsi(parser, 0)), Lines{"id=0|global_hot_spares=1,2"});
    EXPECT_EQ(parser.GetSectionIds(), Ids{0});
}

TEST_F(RaidConfigParserTest, NulAheadOfABrokenLineHidesIt) {
    RaidConfigParser parser;
    EXPECT_TRUE(parser.ReadIniText("[ctrl0]\nglobal_hot_spares=1\n\0[broken\n"s));
    EXPECT_TRUE(LogOf("ERROR").empty());
}

TEST_F(RaidConfigParserTest, NulAtTheStartLeavesAnEmptyTree) {
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniText("\0[ctrl0]\nglobal_hot_spares=1\n"s));
    EXPECT_EQ(LogOf("ERROR"), Lines{kNoTree});
}

TEST_F(RaidConfigParserTest, NulRightAfterTheByteOrderMarkLeavesAnEmptyTree) {
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniText(kBom + "\0[ctrl0]\nglobal_hot_spares=1\n"s));
    EXPECT_EQ(LogOf("ERROR"), Lines{kNoTree});
}

// Line ends

TEST_F(RaidConfigParserTest, CrLfReadsExactlyLikeLf) {
    const std::string lf = "; comment\n\n[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\n" + kEveryKey +
                           "[ctrl1-vol2]\nvol_name=\n[m.2-1]\nvol_name=m\n";
    std::string crlf;
    for (const char c : lf) {
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    const RaidConfigParser parser = Read(crlf);
    EXPECT_EQ(Describe(parser), Describe(Read(lf)));
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).strip_size, "64K");
    EXPECT_EQ(Lsi(parser, 1).volumes.at(0).vol_name, "");
}

TEST_F(RaidConfigParserTest, CrLfAndLfMixedReadAlike) {
    EXPECT_EQ(Describe(Read("[ctrl0]\r\nglobal_hot_spares=1\n[ctrl0-vol0]\r\ndisks=2\r\n")),
              Describe(Read("[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\ndisks=2\n")));
}

TEST_F(RaidConfigParserTest, CrLfFailureNamesTheSameLineAsLf) {
    EXPECT_EQ(FailureOf("[ctrl0]\r\nglobal_hot_spares=1\r\n\r\nbroken\r\n"),
              kReadFailed + "<unspecified file>(4): '=' character not found in line");
    EXPECT_EQ(FailureOf("[ctrl0]\nglobal_hot_spares=1\n\nbroken\n"),
              kReadFailed + "<unspecified file>(4): '=' character not found in line");
}

TEST_F(RaidConfigParserTest, LastLineWithoutLineEndIsRead) {
    EXPECT_EQ(Show(Lsi(Read("[ctrl0]\nglobal_hot_spares=1"), 0)),
              Lines{"id=0|global_hot_spares=1"});
}

// Lines

TEST_F(RaidConfigParserTest, LinesAreTrimmedAndIndentationHasNoMeaning) {
    const RaidConfigParser parser =
        Read("  \t[ ctrl0-vol0 ]  \n\t    vol_name   =   v 1  \n        disks=1\n");
    EXPECT_EQ(parser.GetSectionIds(), Ids{0});
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).vol_name, "v 1");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).disks, "1");
}

TEST_F(RaidConfigParserTest, LinesStartingWithSemicolonOrHashAreComments) {
    const RaidConfigParser parser =
        Read("[ctrl0-vol0]\n; raid_level=5\n   # disks=1\n\t;x\nvol_name=v\n#[ctrl1]\n");
    EXPECT_EQ(Show(Lsi(parser, 0).volumes.at(0)),
              "ctrlid=0|volid=0|disks=|hot_spares=|raid_level=|vol_name=v|write_policy=|"
              "read_policy=|io_policy=|access_policy=|cache_policy=|volume_size=|strip_size=128K|"
              "initialization=");
    EXPECT_EQ(parser.GetSectionIds(), Ids{0});
}

TEST_F(RaidConfigParserTest, SemicolonBehindAValueIsPartOfTheValue) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\nraid_level=5 ; five\nvol_name=a # b\n");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).raid_level, "5 ; five");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).vol_name, "a # b");
}

TEST_F(RaidConfigParserTest, KeyEndsAtTheFirstEqualsSign) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\nvol_name=b=c\na=b=c\n");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).vol_name, "b=c");
}

TEST_F(RaidConfigParserTest, ValuesAreNotUnquotedAndHaveNoEscapes) {
    const RaidConfigParser parser =
        Read("[ctrl0-vol0]\nvol_name=\"v 1\"\ndisks='1'\nraid_level=1\\n\n");
    const CtrlVolSection volume = Lsi(parser, 0).volumes.at(0);
    EXPECT_EQ(volume.vol_name, "\"v 1\"");
    EXPECT_EQ(volume.disks, "'1'");
    EXPECT_EQ(volume.raid_level, "1\\n");
}

TEST_F(RaidConfigParserTest, ValueMayBeEmpty) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\nraid_level=\ndisks =  \n");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).raid_level, "");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).disks, "");
}

TEST_F(RaidConfigParserTest, EmptyStripSizeIsEmptyNotTheDefault) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\nstrip_size=\n");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).strip_size, "");
    EXPECT_EQ(Micro(parser, 0).volumes.at(0).strip_size, "");
}

TEST_F(RaidConfigParserTest, TextBehindTheClosingBracketIsIgnored) {
    const RaidConfigParser parser = Read("[ctrl0] trailing ; words\nglobal_hot_spares=1\n");
    EXPECT_EQ(Show(Lsi(parser, 0)), Lines{"id=0|global_hot_spares=1"});
}

TEST_F(RaidConfigParserTest, SectionNameEndsAtTheFirstClosingBracket) {
    const RaidConfigParser parser = Read("[ctrl0]-vol0]\nglobal_hot_spares=1\n");
    EXPECT_EQ(Show(Lsi(parser, 0)), Lines{"id=0|global_hot_spares=1"});
}

TEST_F(RaidConfigParserTest, NamesAndKeysAreCaseSensitive) {
    const RaidConfigParser parser =
        Read("[ctrl0-vol0]\nDisks=1\nRAID_LEVEL=5\n[CTRL0-VOL0]\ndisks=2\n");
    const CtrlVolSection volume = Lsi(parser, 0).volumes.at(0);
    EXPECT_EQ(volume.disks, "");
    EXPECT_EQ(volume.raid_level, "");
    EXPECT_EQ(Lsi(parser, 0).volumes.size(), 1U);
}

TEST_F(RaidConfigParserTest, SectionWithoutKeysIsDropped) {
    const RaidConfigParser parser = Read("[ctrl5]\n[ctrl0-vol0]\n; only a comment\n\n"
                                         "[ctrl0-vol1]\ndisks=1\n[ctrl7-vol0]\n");
    EXPECT_EQ(parser.GetSectionIds(), Ids{0});
    ASSERT_EQ(Lsi(parser, 0).volumes.size(), 1U);
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).volid, 1);
}

TEST_F(RaidConfigParserTest, DroppedSectionsNameMayBeWrittenAgain) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\n[ctrl0-vol0]\ndisks=1\n");
    ASSERT_EQ(Lsi(parser, 0).volumes.size(), 1U);
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).disks, "1");
}

TEST_F(RaidConfigParserTest, SameKeyInTwoSectionsIsFine) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\ndisks=1\n[ctrl0-vol1]\ndisks=2\n");
    ASSERT_EQ(Lsi(parser, 0).volumes.size(), 2U);
    EXPECT_EQ(Lsi(parser, 0).volumes.at(1).disks, "2");
}

// Key lines ahead of the first section

TEST_F(RaidConfigParserTest, OnlyAKeyAheadOfAnySectionReturnsTrueAndEveryParseFindsNothing) {
    RaidConfigParser parser;
    EXPECT_TRUE(parser.ReadIniText("raid_level=5\n"));
    EXPECT_TRUE(parser.GetSectionIds().empty());
    EXPECT_TRUE(CtrlSections(parser).empty());
    EXPECT_TRUE(M2Sections(parser).empty());
    EXPECT_EQ(Show(Lsi(parser, 0)), Lines{"id=-1|global_hot_spares="});
    EXPECT_EQ(Show(Micro(parser, 0)), Lines{"id=-1|global_hot_spares="});
    EXPECT_EQ(Show(OobMicro(parser, 0)), Lines{"id=-1"});
    EXPECT_EQ(Show(OobVroc(parser, 0)), Lines{"id=-1|global_hot_spares="});
    EXPECT_EQ(Show(VrocWin(parser, 0)), Lines{"id=-1|global_hot_spares="});
    EXPECT_EQ(Show(M2(parser, 0)), "m2id=-1|volid=-1|raid_level=|vol_name=|strip_size=");
}

TEST_F(RaidConfigParserTest, KeyAheadOfTheSectionsIsWalkedLikeASectionWithoutKeys) {
    const RaidConfigParser parser = Read("disks=1\n[ctrl0]\nglobal_hot_spares=2\n");
    const std::size_t mark = Log().size();
    EXPECT_EQ(parser.GetSectionIds(), Ids{0});
    EXPECT_EQ(LogFrom(mark), (Lines{
                                 "TRACE Entering  service::detail::RaidConfigParser::GetSectionIds",
                                 "TRACE raw section -> disks",
                                 "TRACE raw section -> ctrl0",
                                 "TRACE controller id: 0",
                                 "TRACE Exiting  service::detail::RaidConfigParser::GetSectionIds",
                             }));
}

TEST_F(RaidConfigParserTest, KeyAheadOfTheSectionsNamedLikeAControllerListsItsId) {
    const RaidConfigParser parser = Read("ctrl5=1,2\n[ctrl0]\nglobal_hot_spares=3\n");
    EXPECT_EQ(parser.GetSectionIds(), (Ids{0, 5}));
    EXPECT_EQ(ShowMap(CtrlSections(parser)), (Lines{"0:", "id=0|global_hot_spares=3"}));
}

TEST_F(RaidConfigParserTest, KeyAheadOfTheSectionsNamedLikeAVolumeIsAVolumeOfDefaults) {
    const RaidConfigParser parser = Read("ctrl0-vol3=raid_level\n");
    EXPECT_EQ(ShowMap(CtrlSections(parser)),
              (Lines{"0:", "id=0|global_hot_spares=",
                     "ctrlid=0|volid=3|disks=|hot_spares=|raid_level=|vol_name=|write_policy=|"
                     "read_policy=|io_policy=|access_policy=|cache_policy=|volume_size=|"
                     "strip_size=128K|initialization="}));
}

TEST_F(RaidConfigParserTest, KeyAheadOfASectionOfTheSameNameIsADuplicateSection) {
    EXPECT_EQ(FailureOf("ctrl0=1\n[ctrl0]\nglobal_hot_spares=1\n"),
              kReadFailed + "<unspecified file>(2): duplicate section name");
}

// The reader's failures, each with Boost's own text and line

TEST_F(RaidConfigParserTest, SectionLineWithoutClosingBracketFailsWithUnmatchedBracket) {
    EXPECT_EQ(FailureOf("[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0\ndisks=1\n"),
              kReadFailed + "<unspecified file>(3): unmatched '['");
}

TEST_F(RaidConfigParserTest, LoneOpeningBracketFailsWithUnmatchedBracket) {
    EXPECT_EQ(FailureOf("[\n"), kReadFailed + "<unspecified file>(1): unmatched '['");
}

TEST_F(RaidConfigParserTest, SectionNameMetTwiceFailsWithDuplicateSectionName) {
    EXPECT_EQ(FailureOf("[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\ndisks=1\n[ctrl0]\nx=1\n"),
              kReadFailed + "<unspecified file>(5): duplicate section name");
}

TEST_F(RaidConfigParserTest, SameNameWithOtherBlanksInsideTheBracketsIsADuplicate) {
    EXPECT_EQ(FailureOf("[ctrl0]\nglobal_hot_spares=1\n[  ctrl0 ]\n"),
              kReadFailed + "<unspecified file>(3): duplicate section name");
}

TEST_F(RaidConfigParserTest, KeyLineWithoutEqualsFailsWithEqualsNotFound) {
    EXPECT_EQ(FailureOf("[ctrl0-vol0]\ndisks=1\nraid_level 5\n"),
              kReadFailed + "<unspecified file>(3): '=' character not found in line");
}

TEST_F(RaidConfigParserTest, KeyLineStartingWithEqualsFailsWithKeyExpected) {
    EXPECT_EQ(FailureOf("[ctrl0-vol0]\ndisks=1\n   =5\n"),
              kReadFailed + "<unspecified file>(3): key expected");
}

TEST_F(RaidConfigParserTest, KeyMetTwiceInASectionFailsWithDuplicateKeyName) {
    EXPECT_EQ(FailureOf("[ctrl0-vol0]\ndisks=1\nraid_level=1\ndisks=2\n"),
              kReadFailed + "<unspecified file>(4): duplicate key name");
}

TEST_F(RaidConfigParserTest, KeyMetTwiceAheadOfAnySectionFailsWithDuplicateKeyName) {
    EXPECT_EQ(FailureOf("a=1\na=2\n"), kReadFailed + "<unspecified file>(2): duplicate key name");
}

TEST_F(RaidConfigParserTest, FailureLineCountsCommentsAndBlankLines) {
    EXPECT_EQ(FailureOf("; one\n\n# three\n[ctrl0]\nglobal_hot_spares=1\n\nbroken\n"),
              kReadFailed + "<unspecified file>(7): '=' character not found in line");
}

TEST_F(RaidConfigParserTest, FailingStreamFailsWithReadError) {
    BreakingBuffer buffer("[ctrl0]\nglobal_hot_spares=1\n");
    std::istream stream(&buffer);
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniStream(stream));
    EXPECT_EQ(LogOf("ERROR"), Lines{kReadFailed + "<unspecified file>(3): read error"});
    EXPECT_TRUE(parser.GetSectionIds().empty());
}

TEST_F(RaidConfigParserTest, ExceptionOtherThanTheReadersLogsUnknownError) {
    BreakingBuffer buffer("[ctrl0]\nglobal_hot_spares=1\n");
    std::istream stream(&buffer);
    stream.exceptions(std::ios::badbit); // the device's own exception now leaves the stream
    RaidConfigParser parser;
    EXPECT_FALSE(parser.ReadIniStream(stream));
    EXPECT_EQ(LogOf("ERROR"), Lines{"ERROR read ini file failed with unknown error."});
}

TEST_F(RaidConfigParserTest, AfterAFailureNothingOfTheFileIsUsed) {
    RaidConfigParser parser;
    ASSERT_TRUE(parser.ReadIniText("[ctrl3]\nglobal_hot_spares=1\n"));
    EXPECT_FALSE(parser.ReadIniText("[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\ndisks=1\n[x\n"));
    EXPECT_TRUE(parser.GetSectionIds().empty());
    EXPECT_TRUE(CtrlSections(parser).empty());
    EXPECT_EQ(Show(Lsi(parser, 0)), Lines{"id=-1|global_hot_spares="});
}

// Section names

TEST_F(RaidConfigParserTest, Ctrl1AndCtrl01AreTwoSectionsBothOfController1) {
    const RaidConfigParser parser = Read("[ctrl1]\nglobal_hot_spares=1\n[ctrl01]\n"
                                         "global_hot_spares=2\n[ctrl1-vol0]\ndisks=3\n"
                                         "[ctrl01-vol0]\ndisks=4\n");
    EXPECT_EQ(parser.GetSectionIds(), Ids{1});
    const std::map<int, CtrlSection> sections = CtrlSections(parser);
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_EQ(sections.at(1).global_hot_spares, "2");
    ASSERT_EQ(sections.at(1).volumes.size(), 2U);
    EXPECT_EQ(sections.at(1).volumes.at(0).disks, "3");
    EXPECT_EQ(sections.at(1).volumes.at(1).disks, "4");
}

TEST_F(RaidConfigParserTest, LaterEmptyGlobalHotSparesKeepsTheEarlierValue) {
    const RaidConfigParser parser =
        Read("[ctrl1]\nglobal_hot_spares=1\n[ctrl01]\nglobal_hot_spares=\n");
    EXPECT_EQ(CtrlSections(parser).at(1).global_hot_spares, "1");
    EXPECT_EQ(Lsi(parser, 1).global_hot_spares, "1");
}

TEST_F(RaidConfigParserTest, NamesMatchingNoPatternAreIgnoredWithoutAWord) {
    const RaidConfigParser parser =
        Read("[CTRL0]\nglobal_hot_spares=1\n[ctrl0-Vol0]\ndisks=1\n[ctrl-1]\nx=1\n"
             "[ctrl0-vol0-x]\nx=1\n[ctrl 0]\nx=1\n[ctrlA]\nx=1\n[]\nx=1\n[policy]\nx=1\n"
             "[ctrl0-vol]\nx=1\n[xctrl0]\nx=1\n");
    const std::size_t mark = Log().size();
    EXPECT_TRUE(parser.GetSectionIds().empty());
    EXPECT_TRUE(CtrlSections(parser).empty());
    EXPECT_TRUE(M2Sections(parser).empty());
    EXPECT_EQ(Show(Lsi(parser, 0)), Lines{"id=-1|global_hot_spares="});
    for (const std::string& line : LogFrom(mark)) {
        EXPECT_TRUE(line.rfind("TRACE Entering  ", 0) == 0 ||
                    line.rfind("TRACE Exiting  ", 0) == 0 ||
                    line.rfind("TRACE raw section -> ", 0) == 0)
            << line;
    }
}

TEST_F(RaidConfigParserTest, MisspelledKeyLeavesTheRightKeyAtItsDefault) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\nraidlevel=5\nstripsize=64K\n");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).raid_level, "");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).strip_size, "128K");
}

TEST_F(RaidConfigParserTest, VolumeIdIsTheFirstNumberBehindTheFirstDash) {
    const RaidConfigParser parser = Read("[ctrl3-vol007]\ndisks=1\n");
    EXPECT_EQ(Lsi(parser, 3).volumes.at(0).ctrlid, 3);
    EXPECT_EQ(Lsi(parser, 3).volumes.at(0).volid, 7);
}

TEST_F(RaidConfigParserTest, IdTooLargeForAnIntReadsAsTheLargestIntWithoutAborting) {
    const RaidConfigParser parser = Read("[ctrl99999999999]\nglobal_hot_spares=1\n"
                                         "[ctrl99999999999-vol99999999999]\ndisks=2\n");
    EXPECT_EQ(parser.GetSectionIds(), Ids{INT_MAX});
    const CtrlSection ctrl = Lsi(parser, INT_MAX);
    EXPECT_EQ(ctrl.id, INT_MAX);
    ASSERT_EQ(ctrl.volumes.size(), 1U);
    EXPECT_EQ(ctrl.volumes.at(0).ctrlid, INT_MAX);
    EXPECT_EQ(ctrl.volumes.at(0).volid, INT_MAX);
    EXPECT_EQ(CtrlSections(parser).count(INT_MAX), 1U);
}

// GetSectionIds

TEST_F(RaidConfigParserTest, GetSectionIdsIsSortedAndDistinct) {
    const RaidConfigParser parser = Read("[ctrl2-vol0]\ndisks=1\n[ctrl0]\nglobal_hot_spares=1\n"
                                         "[ctrl2]\nglobal_hot_spares=3\n[ctrl1-vol3]\ndisks=1\n"
                                         "[ctrl10-vol0]\ndisks=1\n");
    EXPECT_EQ(parser.GetSectionIds(), (Ids{0, 1, 2, 10}));
}

TEST_F(RaidConfigParserTest, GetSectionIdsListsAControllerWithOnlyVolumeSections) {
    EXPECT_EQ(Read("[ctrl4-vol0]\ndisks=1\n").GetSectionIds(), Ids{4});
}

TEST_F(RaidConfigParserTest, GetSectionIdsListsAControllerWithOnlyGlobalHotSpares) {
    EXPECT_EQ(Read("[ctrl4]\nglobal_hot_spares=1\n").GetSectionIds(), Ids{4});
}

TEST_F(RaidConfigParserTest, GetSectionIdsDoesNotListM2Sections) {
    EXPECT_EQ(Read("[m.2-1]\nraid_level=1\n[ctrl3-vol0]\ndisks=1\n").GetSectionIds(), Ids{3});
}

TEST_F(RaidConfigParserTest, GetSectionIdsLogsEachRawSectionAndEachControllerId) {
    const RaidConfigParser parser =
        Read("[ctrl2]\nglobal_hot_spares=1\n[ctrl0-vol1]\ndisks=1\n[m.2-1]\nraid_level=1\n");
    const std::size_t mark = Log().size();
    parser.GetSectionIds();
    EXPECT_EQ(LogFrom(mark), (Lines{
                                 "TRACE Entering  service::detail::RaidConfigParser::GetSectionIds",
                                 "TRACE raw section -> ctrl2",
                                 "TRACE controller id: 2",
                                 "TRACE raw section -> ctrl0-vol1",
                                 "TRACE controller id: 0",
                                 "TRACE raw section -> m.2-1",
                                 "TRACE Exiting  service::detail::RaidConfigParser::GetSectionIds",
                             }));
}

// ParseCtrlSections

TEST_F(RaidConfigParserTest, ParseCtrlSectionsReadsControllersAndTheirVolumes) {
    const RaidConfigParser parser = Read("[ctrl0]\nglobal_hot_spares=5,6\n[ctrl0-vol0]\n" +
                                         kEveryKey + "[ctrl1-vol2]\nraid_level=1\n");
    const std::string full = "ctrlid=0|volid=0|disks=1,2|hot_spares=3|raid_level=5|vol_name=data|"
                             "write_policy=11|read_policy=12|io_policy=13|access_policy=14|"
                             "cache_policy=15|volume_size=512MB|strip_size=64K|initialization=16";
    const std::string defaults =
        "ctrlid=1|volid=2|disks=|hot_spares=|raid_level=1|vol_name=|write_policy=|"
        "read_policy=|io_policy=|access_policy=|cache_policy=|volume_size=|"
        "strip_size=128K|initialization=";
    EXPECT_EQ(ShowMap(CtrlSections(parser)), (Lines{"0:", "id=0|global_hot_spares=5,6", full,
                                                    "1:", "id=1|global_hot_spares=", defaults}));
}

TEST_F(RaidConfigParserTest, EmptyGlobalHotSparesMakesNoEntryButTheIdIsStillListed) {
    const RaidConfigParser parser = Read("[ctrl0]\nglobal_hot_spares=\n");
    EXPECT_TRUE(CtrlSections(parser).empty());
    EXPECT_EQ(parser.GetSectionIds(), Ids{0});
}

TEST_F(RaidConfigParserTest, ControllerSectionWithoutGlobalHotSparesMakesNoEntry) {
    const RaidConfigParser parser = Read("[ctrl0]\nsomething=1\n");
    EXPECT_TRUE(CtrlSections(parser).empty());
    EXPECT_EQ(Show(Lsi(parser, 0)), Lines{"id=-1|global_hot_spares="});
}

TEST_F(RaidConfigParserTest, VolumesKeepTheOrderOfTheFile) {
    const RaidConfigParser parser = Read("[ctrl0-vol1]\ndisks=1\n[ctrl1-vol0]\ndisks=9\n"
                                         "[ctrl0-vol0]\ndisks=2\n[ctrl0-vol5]\ndisks=3\n");
    const std::vector<CtrlVolSection> volumes = CtrlSections(parser).at(0).volumes;
    ASSERT_EQ(volumes.size(), 3U);
    EXPECT_EQ(volumes.at(0).volid, 1);
    EXPECT_EQ(volumes.at(1).volid, 0);
    EXPECT_EQ(volumes.at(2).volid, 5);
    const std::vector<CtrlVolSection> one = Lsi(parser, 0).volumes;
    ASSERT_EQ(one.size(), 3U);
    EXPECT_EQ(one.at(0).disks, "1");
    EXPECT_EQ(one.at(1).disks, "2");
}

TEST_F(RaidConfigParserTest, ParseCtrlSectionsLogsRawSectionsAndIdsThenEveryField) {
    const RaidConfigParser parser =
        Read("[ctrl0]\nglobal_hot_spares=5\n[ctrl0-vol1]\n" + kEveryKey + "[m.2-1]\nx=1\n");
    const std::size_t mark = Log().size();
    CtrlSections(parser);
    EXPECT_EQ(LogFrom(mark),
              (Lines{
                  "TRACE Entering  service::detail::RaidConfigParser::ParseCtrlSections",
                  "TRACE raw section -> ctrl0",
                  "TRACE controller id: 0",
                  "TRACE raw section -> ctrl0-vol1",
                  "TRACE controller id: 0",
                  "TRACE vol id: 1",
                  "TRACE raw section -> m.2-1",
                  "TRACE Entering  service::detail::RaidConfigParser::LogCtrlSections",
                  "TRACE CtrlSection: id = 0",
                  "TRACE CtrlSection: global_hot_spares = 5",
                  "TRACE CtrlVolSection: ctrlid = 0",
                  "TRACE CtrlVolSection: volid = 1",
                  "TRACE CtrlVolSection: disks = 1,2",
                  "TRACE CtrlVolSection: raid_level = 5",
                  "TRACE CtrlVolSection: hot_spares = 3",
                  "TRACE CtrlVolSection: vol_name = data",
                  "TRACE CtrlVolSection: write_policy = 11",
                  "TRACE CtrlVolSection: read_policy = 12",
                  "TRACE CtrlVolSection: io_policy = 13",
                  "TRACE CtrlVolSection: access_policy = 14",
                  "TRACE CtrlVolSection: cache_policy = 15",
                  "TRACE CtrlVolSection: volume_size = 512MB",
                  "TRACE CtrlVolSection: strip_size = 64K",
                  "TRACE CtrlVolSection: initialization = 16",
                  "TRACE Exiting  service::detail::RaidConfigParser::LogCtrlSections",
                  "TRACE Exiting  service::detail::RaidConfigParser::ParseCtrlSections",
              }));
}

TEST_F(RaidConfigParserTest, LogCtrlSectionsWritesEachEntryWithItsVolumes) {
    std::map<int, CtrlSection> sections;
    sections[3].id = 3;
    sections[4].id = 4;
    sections[4].global_hot_spares = "7";
    sections[4].volumes.emplace_back();
    RaidConfigParser().LogCtrlSections(sections);
    EXPECT_EQ(Log(), (Lines{
                         "TRACE Entering  service::detail::RaidConfigParser::LogCtrlSections",
                         "TRACE CtrlSection: id = 3",
                         "TRACE CtrlSection: global_hot_spares = ",
                         "TRACE CtrlSection: id = 4",
                         "TRACE CtrlSection: global_hot_spares = 7",
                         "TRACE CtrlVolSection: ctrlid = -1",
                         "TRACE CtrlVolSection: volid = -1",
                         "TRACE CtrlVolSection: disks = ",
                         "TRACE CtrlVolSection: raid_level = ",
                         "TRACE CtrlVolSection: hot_spares = ",
                         "TRACE CtrlVolSection: vol_name = ",
                         "TRACE CtrlVolSection: write_policy = ",
                         "TRACE CtrlVolSection: read_policy = ",
                         "TRACE CtrlVolSection: io_policy = ",
                         "TRACE CtrlVolSection: access_policy = ",
                         "TRACE CtrlVolSection: cache_policy = ",
                         "TRACE CtrlVolSection: volume_size = ",
                         "TRACE CtrlVolSection: strip_size = ",
                         "TRACE CtrlVolSection: initialization = ",
                         "TRACE Exiting  service::detail::RaidConfigParser::LogCtrlSections",
                     }));
}

// One controller

TEST_F(RaidConfigParserTest, ParseCtrlSectionPassesOverOtherControllers) {
    const RaidConfigParser parser = Read("[ctrl0]\nglobal_hot_spares=1\n[ctrl1]\n"
                                         "global_hot_spares=2\n[ctrl0-vol0]\ndisks=3\n"
                                         "[ctrl1-vol0]\ndisks=4\n[ctrl1-vol1]\ndisks=5\n");
    const CtrlSection ctrl = Lsi(parser, 1);
    EXPECT_EQ(ctrl.id, 1);
    EXPECT_EQ(ctrl.global_hot_spares, "2");
    ASSERT_EQ(ctrl.volumes.size(), 2U);
    EXPECT_EQ(ctrl.volumes.at(0).disks, "4");
    EXPECT_EQ(ctrl.volumes.at(1).disks, "5");
}

TEST_F(RaidConfigParserTest, ParseCtrlSectionSetsTheIdForGlobalHotSparesAlone) {
    EXPECT_EQ(Show(Lsi(Read("[ctrl2]\nglobal_hot_spares=1\n"), 2)),
              Lines{"id=2|global_hot_spares=1"});
}

TEST_F(RaidConfigParserTest, ParseCtrlSectionSetsTheIdForAVolumeAlone) {
    const CtrlSection ctrl = Lsi(Read("[ctrl2-vol0]\ndisks=1\n"), 2);
    EXPECT_EQ(ctrl.id, 2);
    EXPECT_EQ(ctrl.global_hot_spares, "");
    EXPECT_EQ(ctrl.volumes.size(), 1U);
}

TEST_F(RaidConfigParserTest, ParseCtrlSectionEmptyGlobalHotSparesLeavesTheId) {
    EXPECT_EQ(Show(Lsi(Read("[ctrl2]\nglobal_hot_spares=\n"), 2)),
              Lines{"id=-1|global_hot_spares="});
}

TEST_F(RaidConfigParserTest, OneControllerOperationsLeaveTheRecordAsBuiltWhenNothingIsMet) {
    const RaidConfigParser parser =
        Read("[ctrl1]\nglobal_hot_spares=1\n[ctrl1-vol0]\ndisks=1\n[m.2-0]\nraid_level=1\n");
    CtrlSection lsi;
    lsi.id = 42;
    lsi.global_hot_spares = "keep";
    lsi.volumes.emplace_back();
    parser.ParseCtrlSection(0, lsi);
    EXPECT_EQ(Show(lsi).at(0), "id=42|global_hot_spares=keep");
    EXPECT_EQ(lsi.volumes.size(), 1U);
    MicroCtrlSection micro;
    micro.id = 42;
    parser.ParseMicroSection(0, micro);
    EXPECT_EQ(Show(micro), Lines{"id=42|global_hot_spares="});
    OobMicroCtrlSection oob_micro;
    oob_micro.id = 42;
    parser.ParseOobMicroSection(0, oob_micro);
    EXPECT_EQ(Show(oob_micro), Lines{"id=42"});
    OobVrocCtrlSection oob_vroc;
    oob_vroc.global_hot_spares = "keep";
    parser.ParseOobVrocSection(0, oob_vroc);
    EXPECT_EQ(Show(oob_vroc), Lines{"id=-1|global_hot_spares=keep"});
    VrocWinCtrlSection vroc_win;
    vroc_win.id = 42;
    parser.ParseVrocWinSection(0, vroc_win);
    EXPECT_EQ(Show(vroc_win), Lines{"id=42|global_hot_spares="});
    M2Section m2;
    m2.m2id = 42;
    m2.vol_name = "keep";
    parser.ParseM2Section(0, m2);
    EXPECT_EQ(Show(m2), "m2id=42|volid=-1|raid_level=|vol_name=keep|strip_size=");
}

TEST_F(RaidConfigParserTest, ParseCtrlSectionAppendsToTheVolumesTheCallerBuilt) {
    CtrlSection ctrl;
    ctrl.volumes.emplace_back();
    Read("[ctrl0-vol0]\ndisks=1\n").ParseCtrlSection(0, ctrl);
    ASSERT_EQ(ctrl.volumes.size(), 2U);
    EXPECT_EQ(ctrl.volumes.at(1).disks, "1");
}

TEST_F(RaidConfigParserTest, ParseCtrlSectionLogsIdsOfEveryControllerAndVolumeSection) {
    const RaidConfigParser parser =
        Read("[ctrl1]\nglobal_hot_spares=1\n[ctrl0-vol2]\ndisks=1\n[m.2-0]\nx=1\n");
    const std::size_t mark = Log().size();
    Lsi(parser, 0);
    EXPECT_EQ(LogFrom(mark),
              (Lines{
                  "TRACE Entering  service::detail::RaidConfigParser::ParseCtrlSection",
                  "TRACE raw section -> ctrl1",
                  "TRACE controller id: 1",
                  "TRACE raw section -> ctrl0-vol2",
                  "TRACE controller id: 0",
                  "TRACE vol id: 2",
                  "TRACE raw section -> m.2-0",
                  "TRACE Exiting  service::detail::RaidConfigParser::ParseCtrlSection",
              }));
}

TEST_F(RaidConfigParserTest, ParseMicroSectionReadsGlobalHotSparesAndVolumes) {
    const MicroCtrlSection ctrl =
        Micro(Read("[ctrl1]\nglobal_hot_spares=4\n[ctrl1-vol0]\ndisks=1\n"), 1);
    EXPECT_EQ(ctrl.id, 1);
    EXPECT_EQ(ctrl.global_hot_spares, "4");
    EXPECT_EQ(ctrl.volumes.size(), 1U);
}

TEST_F(RaidConfigParserTest, ParseOobMicroSectionLooksAtVolumeSectionsOnly) {
    const RaidConfigParser parser = Read("[ctrl1]\nglobal_hot_spares=4\n");
    const std::size_t mark = Log().size();
    EXPECT_EQ(Show(OobMicro(parser, 1)), Lines{"id=-1"});
    EXPECT_EQ(LogFrom(mark),
              (Lines{
                  "TRACE Entering  service::detail::RaidConfigParser::ParseOobMicroSection",
                  "TRACE raw section -> ctrl1",
                  "TRACE Exiting  service::detail::RaidConfigParser::ParseOobMicroSection",
              }));
}

TEST_F(RaidConfigParserTest, ParseOobMicroSectionReadsTheVolumesOfTheWantedController) {
    const OobMicroCtrlSection ctrl = OobMicro(
        Read("[ctrl1]\nglobal_hot_spares=4\n[ctrl1-vol0]\ndisks=1\n[ctrl2-vol0]\ndisks=2\n"), 1);
    EXPECT_EQ(ctrl.id, 1);
    ASSERT_EQ(ctrl.volumes.size(), 1U);
    EXPECT_EQ(ctrl.volumes.at(0).disks, "1");
}

TEST_F(RaidConfigParserTest, ParseOobVrocSectionReadsGlobalHotSparesAndVolumes) {
    const OobVrocCtrlSection ctrl =
        OobVroc(Read("[ctrl1]\nglobal_hot_spares=4\n[ctrl1-vol0]\ndisks=1\n"), 1);
    EXPECT_EQ(ctrl.id, 1);
    EXPECT_EQ(ctrl.global_hot_spares, "4");
    EXPECT_EQ(ctrl.volumes.size(), 1U);
}

TEST_F(RaidConfigParserTest, ParseVrocWinSectionReadsGlobalHotSparesAndVolumes) {
    const VrocWinCtrlSection ctrl =
        VrocWin(Read("[ctrl1]\nglobal_hot_spares=4\n[ctrl1-vol0]\ndisks=1 2\n"), 1);
    EXPECT_EQ(ctrl.id, 1);
    EXPECT_EQ(ctrl.global_hot_spares, "4");
    ASSERT_EQ(ctrl.volumes.size(), 1U);
    EXPECT_EQ(ctrl.volumes.at(0).disks, "1 2");
}

// Keys by family: every key a family reads, and its default

TEST_F(RaidConfigParserTest, LsiFamilyReadsItsKeys) {
    const CtrlSection ctrl =
        Lsi(Read("[ctrl0]\nglobal_hot_spares=7\n[ctrl0-vol1]\n" + kEveryKey), 0);
    EXPECT_EQ(Show(ctrl),
              (Lines{"id=0|global_hot_spares=7",
                     "ctrlid=0|volid=1|disks=1,2|hot_spares=3|raid_level=5|vol_name=data|"
                     "write_policy=11|read_policy=12|io_policy=13|access_policy=14|"
                     "cache_policy=15|volume_size=512MB|strip_size=64K|initialization=16"}));
}

TEST_F(RaidConfigParserTest, LsiFamilyDefaultsAreEmptyButStripSize128K) {
    EXPECT_EQ(Show(Lsi(Read("[ctrl0-vol0]\nunknown_key=1\n"), 0).volumes.at(0)),
              "ctrlid=0|volid=0|disks=|hot_spares=|raid_level=|vol_name=|write_policy=|"
              "read_policy=|io_policy=|access_policy=|cache_policy=|volume_size=|"
              "strip_size=128K|initialization=");
}

TEST_F(RaidConfigParserTest, MicrochipFamilyReadsItsKeys) {
    const MicroCtrlSection ctrl =
        Micro(Read("[ctrl0]\nglobal_hot_spares=7\n[ctrl0-vol1]\n" + kEveryKey), 0);
    EXPECT_EQ(Show(ctrl), (Lines{"id=0|global_hot_spares=7",
                                 "ctrlid=0|volid=1|disks=1,2|hot_spares=3|raid_level=5|"
                                 "io_policy=13|vol_name=data|volume_size=512MB|strip_size=64K"}));
}

TEST_F(RaidConfigParserTest, MicrochipFamilyDefaultsAreEmptyButStripSize128K) {
    EXPECT_EQ(Show(Micro(Read("[ctrl0-vol0]\nunknown_key=1\n"), 0).volumes.at(0)),
              "ctrlid=0|volid=0|disks=|hot_spares=|raid_level=|io_policy=|vol_name=|"
              "volume_size=|strip_size=128K");
}

TEST_F(RaidConfigParserTest, OobMicrochipFamilyReadsItsKeys) {
    const OobMicroCtrlSection ctrl =
        OobMicro(Read("[ctrl0]\nglobal_hot_spares=7\n[ctrl0-vol1]\n" + kEveryKey), 0);
    EXPECT_EQ(Show(ctrl),
              (Lines{"id=0", "ctrlid=0|volid=1|disks=1,2|hot_spares=3|raid_level=5|vol_name=data|"
                             "volume_size=512MB|strip_size=64K|write_policy=11|read_policy=12"}));
}

TEST_F(RaidConfigParserTest, OobMicrochipFamilyDefaultsAreEmptyButStripSize128K) {
    EXPECT_EQ(Show(OobMicro(Read("[ctrl0-vol0]\nunknown_key=1\n"), 0).volumes.at(0)),
              "ctrlid=0|volid=0|disks=|hot_spares=|raid_level=|vol_name=|volume_size=|"
              "strip_size=128K|write_policy=|read_policy=");
}

TEST_F(RaidConfigParserTest, OobVrocFamilyReadsItsKeys) {
    const OobVrocCtrlSection ctrl =
        OobVroc(Read("[ctrl0]\nglobal_hot_spares=7\n[ctrl0-vol1]\n" + kEveryKey), 0);
    EXPECT_EQ(Show(ctrl), (Lines{"id=0|global_hot_spares=7",
                                 "ctrlid=0|volid=1|disks=1,2|raid_level=5|vol_name=data|"
                                 "volume_size=512MB|strip_size=64K"}));
}

TEST_F(RaidConfigParserTest, OobVrocFamilyDefaultsAreEmptyButStripSize128K) {
    EXPECT_EQ(Show(OobVroc(Read("[ctrl0-vol0]\nunknown_key=1\n"), 0).volumes.at(0)),
              "ctrlid=0|volid=0|disks=|raid_level=|vol_name=|volume_size=|strip_size=128K");
}

TEST_F(RaidConfigParserTest, VrocWinFamilyReadsItsKeys) {
    const VrocWinCtrlSection ctrl =
        VrocWin(Read("[ctrl0]\nglobal_hot_spares=7\n[ctrl0-vol1]\n" + kEveryKey), 0);
    EXPECT_EQ(Show(ctrl), (Lines{"id=0|global_hot_spares=7",
                                 "ctrlid=0|volid=1|raid_level=5|vol_name=data|vol_capacity=100GB|"
                                 "vol_strip_size=32K|RAID_write_hole=Distributed|disks=1,2"}));
}

TEST_F(RaidConfigParserTest, VrocWinFamilyDefaultsAreEmptyAndRaidLevelMinusOne) {
    EXPECT_EQ(Show(VrocWin(Read("[ctrl0-vol0]\nunknown_key=1\n"), 0).volumes.at(0)),
              "ctrlid=0|volid=0|raid_level=-1|vol_name=|vol_capacity=|vol_strip_size=|"
              "RAID_write_hole=|disks=");
}

TEST_F(RaidConfigParserTest, M2VolumeReadsItsKeys) {
    EXPECT_EQ(Show(M2(Read("[ctrl0]\nglobal_hot_spares=7\n[ctrl0-vol1]\n" + kEveryKey), 0)),
              "m2id=0|volid=1|raid_level=5|vol_name=data|strip_size=64K");
}

TEST_F(RaidConfigParserTest, M2VolumeDefaultsAreEmptyStripSizeToo) {
    EXPECT_EQ(Show(M2(Read("[ctrl0-vol0]\nunknown_key=1\n"), 0)),
              "m2id=0|volid=0|raid_level=|vol_name=|strip_size=");
}

TEST_F(RaidConfigParserTest, M2SectionsReadTheirKeys) {
    EXPECT_EQ(ShowMap(M2Sections(Read("[m.2-1]\n" + kEveryKey))),
              (Lines{"1:", "m2id=1|volid=-1|raid_level=5|vol_name=data|strip_size=64K"}));
}

TEST_F(RaidConfigParserTest, M2SectionsDefaultsAreEmptyStripSizeToo) {
    EXPECT_EQ(ShowMap(M2Sections(Read("[m.2-1]\nunknown_key=1\n"))),
              (Lines{"1:", "m2id=1|volid=-1|raid_level=|vol_name=|strip_size="}));
}

// VROC_WIN conversions

TEST_F(RaidConfigParserTest, VrocWinRaidLevelIsConvertedToANumber) {
    const VrocWinCtrlSection ctrl =
        VrocWin(Read("[ctrl0-vol0]\nraid_level=0\n[ctrl0-vol1]\nraid_level=10\n[ctrl0-vol2]\n"
                     "raid_level=-3\n[ctrl0-vol3]\nraid_level=+5\n[ctrl0-vol4]\nraid_level=007\n"),
                0);
    ASSERT_EQ(ctrl.volumes.size(), 5U);
    EXPECT_EQ(ctrl.volumes.at(0).raid_level, 0);
    EXPECT_EQ(ctrl.volumes.at(1).raid_level, 10);
    EXPECT_EQ(ctrl.volumes.at(2).raid_level, -3);
    EXPECT_EQ(ctrl.volumes.at(3).raid_level, 5);
    EXPECT_EQ(ctrl.volumes.at(4).raid_level, 7);
}

TEST_F(RaidConfigParserTest, VrocWinRaidLevelReadsItsLeadingDigits) {
    const VrocWinCtrlSection ctrl =
        VrocWin(Read("[ctrl0-vol0]\nraid_level=5 ; five\n[ctrl0-vol1]\nraid_level=1E\n"
                     "[ctrl0-vol2]\nraid_level=10triple\n[ctrl0-vol3]\nraid_level=1.5\n"),
                0);
    ASSERT_EQ(ctrl.volumes.size(), 4U);
    EXPECT_EQ(ctrl.volumes.at(0).raid_level, 5);
    EXPECT_EQ(ctrl.volumes.at(1).raid_level, 1);
    EXPECT_EQ(ctrl.volumes.at(2).raid_level, 10);
    EXPECT_EQ(ctrl.volumes.at(3).raid_level, 1);
}

TEST_F(RaidConfigParserTest, VrocWinRaidLevelWithoutLeadingDigitsIsMinusOne) {
    const VrocWinCtrlSection ctrl =
        VrocWin(Read("[ctrl0-vol0]\nraid_level=five\n[ctrl0-vol1]\nraid_level=E1\n"
                     "[ctrl0-vol2]\nraid_level=\n[ctrl0-vol3]\nraid_level=-\n"),
                0);
    ASSERT_EQ(ctrl.volumes.size(), 4U);
    for (const VrocWinVolSection& volume : ctrl.volumes) {
        EXPECT_EQ(volume.raid_level, -1) << volume.volid;
    }
}

TEST_F(RaidConfigParserTest, VrocWinRaidLevelAbsentIsMinusOne) {
    EXPECT_EQ(VrocWin(Read("[ctrl0-vol0]\ndisks=1\n"), 0).volumes.at(0).raid_level, -1);
}

TEST_F(RaidConfigParserTest, VrocWinRaidLevelTooLargeForAnIntIsMinusOne) {
    const VrocWinCtrlSection ctrl = VrocWin(
        Read("[ctrl0-vol0]\nraid_level=99999999999\n[ctrl0-vol1]\nraid_level=-99999999999\n"), 0);
    EXPECT_EQ(ctrl.volumes.at(0).raid_level, -1);
    EXPECT_EQ(ctrl.volumes.at(1).raid_level, -1);
}

TEST_F(RaidConfigParserTest, VrocWinStripSizeIsUpperCased) {
    const VrocWinCtrlSection ctrl =
        VrocWin(Read("[ctrl0-vol0]\nvol_strip_size=64k\n[ctrl0-vol1]\nvol_strip_size=abc\n"), 0);
    EXPECT_EQ(ctrl.volumes.at(0).vol_strip_size, "64K");
    EXPECT_EQ(ctrl.volumes.at(1).vol_strip_size, "ABC");
}

TEST_F(RaidConfigParserTest, OtherFamiliesKeepTheCaseOfStripSize) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\nstrip_size=64k\nvol_strip_size=64k\n");
    EXPECT_EQ(Lsi(parser, 0).volumes.at(0).strip_size, "64k");
    EXPECT_EQ(M2(parser, 0).strip_size, "64k");
}

// ParseM2Section

TEST_F(RaidConfigParserTest, ParseM2SectionReadsTheVolumeSectionOfTheWantedController) {
    const RaidConfigParser parser =
        Read("[ctrl0-vol0]\nraid_level=1\n[ctrl1-vol3]\nraid_level=0\nvol_name=x\n");
    EXPECT_EQ(Show(M2(parser, 1)), "m2id=1|volid=3|raid_level=0|vol_name=x|strip_size=");
}

TEST_F(RaidConfigParserTest, ParseM2SectionLaterSectionReplacesTheEarlierValues) {
    const RaidConfigParser parser = Read("[ctrl1-vol0]\nraid_level=1\nvol_name=a\n"
                                         "strip_size=64K\n[ctrl1-vol1]\nvol_name=b\n");
    EXPECT_EQ(Show(M2(parser, 1)), "m2id=1|volid=1|raid_level=|vol_name=b|strip_size=");
}

TEST_F(RaidConfigParserTest, ParseM2SectionIgnoresControllerAndM2Sections) {
    const RaidConfigParser parser = Read("[ctrl1]\nglobal_hot_spares=1\n[m.2-1]\nraid_level=1\n");
    const std::size_t mark = Log().size();
    EXPECT_EQ(Show(M2(parser, 1)), "m2id=-1|volid=-1|raid_level=|vol_name=|strip_size=");
    EXPECT_EQ(LogFrom(mark),
              (Lines{
                  "TRACE Entering  service::detail::RaidConfigParser::ParseM2Section",
                  "TRACE raw section -> ctrl1",
                  "TRACE raw section -> m.2-1",
                  "TRACE Exiting  service::detail::RaidConfigParser::ParseM2Section",
              }));
}

// ParseM2Sections

TEST_F(RaidConfigParserTest, ParseM2SectionsTakesTheIdBehindTheDash) {
    EXPECT_EQ(ShowMap(M2Sections(Read("[m.2-3]\nraid_level=1\n[m.2-01]\nvol_name=a\n"))),
              (Lines{"1:", "m2id=1|volid=-1|raid_level=|vol_name=a|strip_size=", "3:",
                     "m2id=3|volid=-1|raid_level=1|vol_name=|strip_size="}));
}

TEST_F(RaidConfigParserTest, ParseM2SectionsDotOfTheNameMatchesAnyCharacter) {
    EXPECT_EQ(ShowMap(M2Sections(Read("[m-2-1]\nvol_name=a\n[mX2-2]\nvol_name=b\n"
                                      "[m22-3]\nvol_name=c\n[m 2-4]\nvol_name=d\n"))),
              (Lines{"1:", "m2id=1|volid=-1|raid_level=|vol_name=a|strip_size=", "2:",
                     "m2id=2|volid=-1|raid_level=|vol_name=b|strip_size=", "3:",
                     "m2id=3|volid=-1|raid_level=|vol_name=c|strip_size=", "4:",
                     "m2id=4|volid=-1|raid_level=|vol_name=d|strip_size="}));
}

TEST_F(RaidConfigParserTest, ParseM2SectionsMDashTwoAndMDotTwoAreBothOfId1) {
    const RaidConfigParser parser =
        Read("[m.2-1]\nraid_level=1\nvol_name=a\n[m-2-1]\nvol_name=b\n");
    EXPECT_EQ(ShowMap(M2Sections(parser)),
              (Lines{"1:", "m2id=1|volid=-1|raid_level=|vol_name=b|strip_size="}));
}

TEST_F(RaidConfigParserTest, ParseM2SectionsIgnoresOtherNames) {
    EXPECT_TRUE(M2Sections(Read("[m.2]\nx=1\n[m.2-1-2]\nx=1\n[M.2-1]\nx=1\n[m.2-x]\nx=1\n"
                                "[m..2-1]\nx=1\n[m.2-]\nx=1\n[ctrl0]\nglobal_hot_spares=1\n"
                                "[ctrl0-vol0]\ndisks=1\n[m2-1]\nx=1\n"))
                    .empty());
}

TEST_F(RaidConfigParserTest, ParseM2SectionsHugeIdReadsAsTheLargestInt) {
    EXPECT_EQ(M2Sections(Read("[m.2-99999999999]\nraid_level=1\n")).count(INT_MAX), 1U);
}

TEST_F(RaidConfigParserTest, ParseM2SectionsLogsRawSectionsThenEveryEntry) {
    const RaidConfigParser parser =
        Read("[ctrl0]\nglobal_hot_spares=1\n[m.2-1]\nraid_level=1\nvol_name=a\nstrip_size=64K\n");
    const std::size_t mark = Log().size();
    M2Sections(parser);
    EXPECT_EQ(LogFrom(mark),
              (Lines{
                  "TRACE Entering  service::detail::RaidConfigParser::ParseM2Sections",
                  "TRACE raw section -> ctrl0",
                  "TRACE raw section -> m.2-1",
                  "TRACE Entering  service::detail::RaidConfigParser::LogM2Sections",
                  "TRACE M2Section: m2id = 1",
                  "TRACE M2Section: raid_level = 1",
                  "TRACE M2Section: vol_name = a",
                  "TRACE M2Section: strip_size = 64K",
                  "TRACE Exiting  service::detail::RaidConfigParser::LogM2Sections",
                  "TRACE Exiting  service::detail::RaidConfigParser::ParseM2Sections",
              }));
}

// Repeatability and tracing

TEST_F(RaidConfigParserTest, ParseOperationsAreRepeatable) {
    const RaidConfigParser parser = Read("[ctrl0]\nglobal_hot_spares=1\n[ctrl0-vol0]\n" +
                                         kEveryKey + "[m.2-1]\nraid_level=1\n");
    EXPECT_EQ(Describe(parser), Describe(parser));
}

TEST_F(RaidConfigParserTest, EveryParseOperationLogsEnteringAndExitingWithItsQualifiedName) {
    const RaidConfigParser parser = Read("[ctrl0-vol0]\ndisks=1\n");
    const std::vector<std::pair<std::string, std::function<void()>>> operations = {
        {"ParseCtrlSection", [&] { Lsi(parser, 0); }},
        {"ParseMicroSection", [&] { Micro(parser, 0); }},
        {"ParseOobMicroSection", [&] { OobMicro(parser, 0); }},
        {"ParseOobVrocSection", [&] { OobVroc(parser, 0); }},
        {"ParseVrocWinSection", [&] { VrocWin(parser, 0); }},
        {"ParseM2Section", [&] { M2(parser, 0); }},
        {"ParseM2Sections", [&] { M2Sections(parser); }},
        {"GetSectionIds", [&] { parser.GetSectionIds(); }},
    };
    for (const auto& [name, run] : operations) {
        const std::size_t mark = Log().size();
        run();
        const Lines lines = LogFrom(mark);
        ASSERT_FALSE(lines.empty()) << name;
        EXPECT_EQ(lines.front(), "TRACE Entering  service::detail::RaidConfigParser::" + name);
        EXPECT_EQ(lines.back(), "TRACE Exiting  service::detail::RaidConfigParser::" + name);
    }
}

} // namespace
