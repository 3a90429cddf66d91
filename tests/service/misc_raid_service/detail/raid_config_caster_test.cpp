#include <algorithm>
#include <climits>
#include <string>
#include <vector>

#include "collaborators/log.hpp"
#include "service/misc_raid_service/detail/raid_config_caster.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::CtrlVolSection;
using service::detail::M2Section;
using service::detail::MicroVolSection;
using service::detail::OobMicroVolSection;
using service::detail::OobVrocVolSection;
using service::detail::RaidConfigCaster;
using service::detail::VrocWinVolSection;
using Ints = std::vector<int>;
using Groups = std::vector<std::vector<int>>;

// The whole log line holding text, or "" when there is none.
std::string LineWith(const std::string& log, const std::string& text) {
    const auto at = log.find(text);
    if (at == std::string::npos) {
        return "";
    }
    const auto begin = log.rfind('\n', at);
    const auto start = begin == std::string::npos ? 0 : begin + 1;
    return log.substr(start, log.find('\n', at) - start);
}

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// A volume of the LSI families with every key set, as the parser hands it over.
CtrlVolSection FullCtrlVol() {
    CtrlVolSection section;
    section.ctrlid = 2;
    section.volid = 1;
    section.disks = "1,2:3,4";
    section.hot_spares = "5,6";
    section.raid_level = "10";
    section.vol_name = "data_1";
    section.write_policy = "1";
    section.read_policy = "2";
    section.io_policy = "1";
    section.access_policy = "3";
    section.cache_policy = "2";
    section.volume_size = "1.5GB";
    section.strip_size = "256K";
    section.initialization = "1";
    return section;
}

// A volume with only its ids and disks, every other key left out.
CtrlVolSection BareCtrlVol() {
    CtrlVolSection section;
    section.ctrlid = 0;
    section.volid = 0;
    section.disks = "1,2";
    return section;
}

OobMicroVolSection FullOobMicroVol() {
    OobMicroVolSection section;
    section.ctrlid = 3;
    section.volid = 2;
    section.disks = "4,5:6,7";
    section.hot_spares = "8";
    section.raid_level = "10triple";
    section.vol_name = "oob.vol";
    section.volume_size = "512MB";
    section.strip_size = "64K";
    section.write_policy = "1";
    section.read_policy = "1";
    return section;
}

class RaidConfigCasterTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }

    std::string LogFile() const { return dir_.File("raidcfg.log"); }
    std::string LogText() const { return ReadFile(LogFile()); }

    raidcfg_test::TempDir dir_;
    const RaidConfigCaster caster_{};
};

// ToIntList and ToHotSpareList

TEST_F(RaidConfigCasterTest, ToIntListOfTheEmptyTextIsEmptyNotOneZero) {
    EXPECT_EQ(caster_.ToIntList(""), Ints{});
}

TEST_F(RaidConfigCasterTest, ToIntListReadsEachCommaPieceInOrder) {
    EXPECT_EQ(caster_.ToIntList("7"), (Ints{7}));
    EXPECT_EQ(caster_.ToIntList("3,1,20"), (Ints{3, 1, 20}));
    EXPECT_EQ(caster_.ToIntList("0,0"), (Ints{0, 0}));
    EXPECT_EQ(caster_.ToIntList("007"), (Ints{7}));
}

TEST_F(RaidConfigCasterTest, ToIntListKeepsAnEmptyPieceAsMinusOne) {
    EXPECT_EQ(caster_.ToIntList("1,,2"), (Ints{1, -1, 2}));
    EXPECT_EQ(caster_.ToIntList("1,"), (Ints{1, -1}));
    EXPECT_EQ(caster_.ToIntList(",1"), (Ints{-1, 1}));
    EXPECT_EQ(caster_.ToIntList(","), (Ints{-1, -1}));
}

TEST_F(RaidConfigCasterTest, ToIntListGivesMinusOneForAPieceWithoutLeadingDigits) {
    EXPECT_EQ(caster_.ToIntList("a"), (Ints{-1}));
    EXPECT_EQ(caster_.ToIntList("1,x,3"), (Ints{1, -1, 3}));
    EXPECT_EQ(caster_.ToIntList("REST"), (Ints{-1}));
    EXPECT_EQ(caster_.ToIntList(" "), (Ints{-1}));
}

TEST_F(RaidConfigCasterTest, ToIntListTakesTheLeadingNumberOfAPieceWithJunkBehindIt) {
    EXPECT_EQ(caster_.ToIntList("12a,3"), (Ints{12, 3}));
    EXPECT_EQ(caster_.ToIntList("1 2"), (Ints{1}));
    EXPECT_EQ(caster_.ToIntList("1:2"), (Ints{1}));
    EXPECT_EQ(caster_.ToIntList(" 4"), (Ints{4}));
}

TEST_F(RaidConfigCasterTest, ToIntListReadsSignsAsTheStreamDoes) {
    EXPECT_EQ(caster_.ToIntList("-5,+6"), (Ints{-5, 6}));
}

TEST_F(RaidConfigCasterTest, ToIntListGivesTheLimitOfIntForANumberBeyondIt) {
    EXPECT_EQ(caster_.ToIntList("2147483647"), (Ints{INT_MAX}));
    EXPECT_EQ(caster_.ToIntList("2147483648"), (Ints{INT_MAX}));
    EXPECT_EQ(caster_.ToIntList("99999999999999999999"), (Ints{INT_MAX}));
    EXPECT_EQ(caster_.ToIntList("-2147483649,1"), (Ints{INT_MIN, 1}));
}

TEST_F(RaidConfigCasterTest, ToIntListWritesNothingToTheLog) {
    caster_.ToIntList("1,x,,3");
    EXPECT_FALSE(FileExists(LogFile()));
}

TEST_F(RaidConfigCasterTest, ToHotSpareListForwardsToToIntList) {
    EXPECT_EQ(caster_.ToHotSpareList(""), Ints{});
    EXPECT_EQ(caster_.ToHotSpareList("3,4"), (Ints{3, 4}));
    EXPECT_EQ(caster_.ToHotSpareList("1,,2"), (Ints{1, -1, 2}));
    EXPECT_EQ(caster_.ToHotSpareList("9x"), (Ints{9}));
}

// ToMegabytes

TEST_F(RaidConfigCasterTest, ToMegabytesKeepsWholeMegabytes) {
    EXPECT_EQ(caster_.ToMegabytes("100MB"), "100");
    EXPECT_EQ(caster_.ToMegabytes("0MB"), "0");
    EXPECT_EQ(caster_.ToMegabytes("0512MB"), "512");
}

TEST_F(RaidConfigCasterTest, ToMegabytesDropsAFractionOfAMegabyte) {
    EXPECT_EQ(caster_.ToMegabytes("0.5MB"), "0");
    EXPECT_EQ(caster_.ToMegabytes("512.9MB"), "512");
    EXPECT_EQ(caster_.ToMegabytes("1.999999MB"), "1");
}

TEST_F(RaidConfigCasterTest, ToMegabytesMultipliesGigabytesBy1024) {
    EXPECT_EQ(caster_.ToMegabytes("1.5GB"), "1536");
    EXPECT_EQ(caster_.ToMegabytes("2GB"), "2048");
    EXPECT_EQ(caster_.ToMegabytes("0GB"), "0");
    EXPECT_EQ(caster_.ToMegabytes("100GB"), "102400");
}

TEST_F(RaidConfigCasterTest, ToMegabytesTruncatesGigabytesAfterTheMultiplication) {
    EXPECT_EQ(caster_.ToMegabytes("0.4GB"), "409");
    EXPECT_EQ(caster_.ToMegabytes("0.001GB"), "1");
    EXPECT_EQ(caster_.ToMegabytes("0.0009GB"), "0");
}

TEST_F(RaidConfigCasterTest, ToMegabytesTruncatesTowardZero) {
    EXPECT_EQ(caster_.ToMegabytes("-1.5MB"), "-1");
    EXPECT_EQ(caster_.ToMegabytes("-0.4GB"), "-409");
}

TEST_F(RaidConfigCasterTest, ToMegabytesGivesTheEmptyTextWithoutMbOrGb) {
    EXPECT_EQ(caster_.ToMegabytes("100|B"), "");
    EXPECT_EQ(caster_.ToMegabytes("1TB"), "");
    EXPECT_EQ(caster_.ToMegabytes("100mb"), "");
    EXPECT_EQ(caster_.ToMegabytes("1.5gb"), "");
    EXPECT_EQ(caster_.ToMegabytes("B"), "");
    EXPECT_EQ(caster_.ToMegabytes(""), "");
}

TEST_F(RaidConfigCasterTest, ToMegabytesGivesTheEmptyTextWhenTheNumberDoesNotRead) {
    EXPECT_EQ(caster_.ToMegabytes("MB"), "");
    EXPECT_EQ(caster_.ToMegabytes("GB"), "");
    EXPECT_EQ(caster_.ToMegabytes("xMB"), "");
    EXPECT_EQ(caster_.ToMegabytes("abcGB"), "");
}

TEST_F(RaidConfigCasterTest, ToMegabytesReadsOnlyTheLeadingNumberBeforeTheUnit) {
    EXPECT_EQ(caster_.ToMegabytes("12x5MB"), "12");
    EXPECT_EQ(caster_.ToMegabytes("2 GB"), "2048");
}

TEST_F(RaidConfigCasterTest, ToMegabytesLetsGigabytesWinWhenTheTextHoldsBothUnits) {
    EXPECT_EQ(caster_.ToMegabytes("1GB2MB"), "1024");
    EXPECT_EQ(caster_.ToMegabytes("1MB2GB"), "1024");
}

TEST_F(RaidConfigCasterTest, ToMegabytesKeepsTheLargestSizesThatFitTheInteger) {
    EXPECT_EQ(caster_.ToMegabytes("2147483647MB"), "2147483647");
    EXPECT_EQ(caster_.ToMegabytes("2147483647.9MB"), "2147483647");
    EXPECT_EQ(caster_.ToMegabytes("2097151GB"), "2147482624");
    EXPECT_EQ(caster_.ToMegabytes("2097151.999GB"), "2147483646");
}

TEST_F(RaidConfigCasterTest, ToMegabytesGivesIntMinForASizeBeyondTheInteger) {
    EXPECT_EQ(caster_.ToMegabytes("2147483648MB"), "-2147483648");
    EXPECT_EQ(caster_.ToMegabytes("2097152GB"), "-2147483648");
    EXPECT_EQ(caster_.ToMegabytes("99999999999GB"), "-2147483648");
}

TEST_F(RaidConfigCasterTest, ToMegabytesLogsTheResultWithMbBehindItAtLevelFour) {
    caster_.ToMegabytes("1.5GB");
    const std::string line = LineWith(LogText(), "result: ");
    EXPECT_TRUE(EndsWith(line, " result: 1536MB")) << line;
    EXPECT_NE(line.find(" TRACE "), std::string::npos) << line;
}

TEST_F(RaidConfigCasterTest, ToMegabytesLogsAnEmptyResultAsJustMb) {
    caster_.ToMegabytes("100|B");
    const std::string line = LineWith(LogText(), "result: ");
    EXPECT_TRUE(EndsWith(line, " result: MB")) << line;
    EXPECT_NE(line.find(" TRACE "), std::string::npos) << line;
}

TEST_F(RaidConfigCasterTest, ToMegabytesLogsEnteringAndExitingAroundTheResult) {
    caster_.ToMegabytes("100MB");
    const std::string log = LogText();
    const auto entering = log.find("Entering  service::detail::RaidConfigCaster::ToMegabytes");
    const auto result = log.find("result: 100MB");
    const auto exiting = log.find("Exiting  service::detail::RaidConfigCaster::ToMegabytes");
    ASSERT_NE(entering, std::string::npos) << log;
    ASSERT_NE(result, std::string::npos) << log;
    ASSERT_NE(exiting, std::string::npos) << log;
    EXPECT_LT(entering, result);
    EXPECT_LT(result, exiting);
}

// ToVolumeObject: LSI, OOB_LSI and OOB_CFC

TEST_F(RaidConfigCasterTest, ToVolumeObjectCastsEveryField) {
    const auto volume = caster_.ToVolumeObject(FullCtrlVol());
    EXPECT_EQ(volume.controller_id, 2);
    EXPECT_EQ(volume.volume_id, 1);
    EXPECT_EQ(volume.disks, (Groups{{1, 2}, {3, 4}}));
    EXPECT_FALSE(volume.rest_disks);
    EXPECT_EQ(volume.raid_level, "10");
    EXPECT_EQ(volume.hot_spares, (Ints{5, 6}));
    EXPECT_EQ(volume.vol_name, "data_1");
    EXPECT_EQ(volume.volume_size, "1536");
    EXPECT_EQ(volume.strip_size, "256K");
    EXPECT_EQ(volume.write_policy, 1);
    EXPECT_EQ(volume.read_policy, 2);
    EXPECT_EQ(volume.io_policy, 1);
    EXPECT_EQ(volume.access_policy, 3);
    EXPECT_EQ(volume.cache_policy, 2);
    EXPECT_EQ(volume.initialization, 1);
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectLeavesPoliciesAtZeroWhenTheKeysAreEmpty) {
    const auto volume = caster_.ToVolumeObject(BareCtrlVol());
    EXPECT_EQ(volume.controller_id, 0);
    EXPECT_EQ(volume.volume_id, 0);
    EXPECT_EQ(volume.disks, (Groups{{1, 2}}));
    EXPECT_FALSE(volume.rest_disks);
    EXPECT_EQ(volume.raid_level, "");
    EXPECT_EQ(volume.hot_spares, Ints{});
    EXPECT_EQ(volume.vol_name, "");
    EXPECT_EQ(volume.volume_size, "");
    EXPECT_EQ(volume.strip_size, "");
    EXPECT_EQ(volume.write_policy, 0);
    EXPECT_EQ(volume.read_policy, 0);
    EXPECT_EQ(volume.io_policy, 0);
    EXPECT_EQ(volume.access_policy, 0);
    EXPECT_EQ(volume.cache_policy, 0);
    EXPECT_EQ(volume.initialization, 0);
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectOfAnUntouchedSectionKeepsMinusOneIdsAndOneEmptyGroup) {
    const auto volume = caster_.ToVolumeObject(CtrlVolSection{});
    EXPECT_EQ(volume.controller_id, -1);
    EXPECT_EQ(volume.volume_id, -1);
    EXPECT_EQ(volume.disks, (Groups{{}}));
    EXPECT_FALSE(volume.rest_disks);
    EXPECT_EQ(volume.raid_level, "");
    EXPECT_EQ(volume.hot_spares, Ints{});
    EXPECT_EQ(volume.vol_name, "");
    EXPECT_EQ(volume.volume_size, "");
    EXPECT_EQ(volume.strip_size, "");
    EXPECT_EQ(volume.write_policy, 0);
    EXPECT_EQ(volume.read_policy, 0);
    EXPECT_EQ(volume.io_policy, 0);
    EXPECT_EQ(volume.access_policy, 0);
    EXPECT_EQ(volume.cache_policy, 0);
    EXPECT_EQ(volume.initialization, 0);
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectWithUpperCaseRestSetsRestDisksAndNoGroups) {
    CtrlVolSection section = FullCtrlVol();
    section.disks = "REST";
    const auto volume = caster_.ToVolumeObject(section);
    EXPECT_TRUE(volume.rest_disks);
    EXPECT_EQ(volume.disks, Groups{});
    EXPECT_EQ(volume.controller_id, 2);
    EXPECT_EQ(volume.volume_id, 1);
    EXPECT_EQ(volume.hot_spares, (Ints{5, 6}));
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectWithLowerCaseRestSetsRestDisksAndNoGroups) {
    CtrlVolSection section = BareCtrlVol();
    section.disks = "rest";
    const auto volume = caster_.ToVolumeObject(section);
    EXPECT_TRUE(volume.rest_disks);
    EXPECT_EQ(volume.disks, Groups{});
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectReadsOtherSpellingsOfRestAsDisks) {
    CtrlVolSection section = BareCtrlVol();
    section.disks = "Rest";
    auto volume = caster_.ToVolumeObject(section);
    EXPECT_FALSE(volume.rest_disks);
    EXPECT_EQ(volume.disks, (Groups{{-1}}));

    section.disks = "REST,1";
    volume = caster_.ToVolumeObject(section);
    EXPECT_FALSE(volume.rest_disks);
    EXPECT_EQ(volume.disks, (Groups{{-1, 1}}));
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectCastsDisksWithoutColonAsOneGroup) {
    CtrlVolSection section = BareCtrlVol();
    section.disks = "1,2,3";
    EXPECT_EQ(caster_.ToVolumeObject(section).disks, (Groups{{1, 2, 3}}));
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectCastsEachColonPieceAsOneGroup) {
    CtrlVolSection section = BareCtrlVol();
    section.disks = "1,2:3,4";
    EXPECT_EQ(caster_.ToVolumeObject(section).disks, (Groups{{1, 2}, {3, 4}}));
    section.disks = "1,2:3";
    EXPECT_EQ(caster_.ToVolumeObject(section).disks, (Groups{{1, 2}, {3}}));
    section.disks = "1,2,3,4:5,6";
    EXPECT_EQ(caster_.ToVolumeObject(section).disks, (Groups{{1, 2, 3, 4}, {5, 6}}));
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectKeepsEmptyDiskPiecesAsEmptyGroupsAndMinusOnes) {
    CtrlVolSection section = BareCtrlVol();
    section.disks = "";
    EXPECT_EQ(caster_.ToVolumeObject(section).disks, (Groups{{}}));
    section.disks = "1,2:";
    EXPECT_EQ(caster_.ToVolumeObject(section).disks, (Groups{{1, 2}, {}}));
    section.disks = "1,,2:3";
    EXPECT_EQ(caster_.ToVolumeObject(section).disks, (Groups{{1, -1, 2}, {3}}));
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectGivesAnEmptyHotSpareListForAnEmptyKey) {
    CtrlVolSection section = FullCtrlVol();
    section.hot_spares = "";
    EXPECT_EQ(caster_.ToVolumeObject(section).hot_spares, Ints{});
    section.hot_spares = "1,,2";
    EXPECT_EQ(caster_.ToVolumeObject(section).hot_spares, (Ints{1, -1, 2}));
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectKeepsRaidLevelAsWritten) {
    CtrlVolSection section = FullCtrlVol();
    section.raid_level = "1triple";
    EXPECT_EQ(caster_.ToVolumeObject(section).raid_level, "1triple");
    section.raid_level = "10triple";
    EXPECT_EQ(caster_.ToVolumeObject(section).raid_level, "10triple");
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectConvertsAVolumeSizeThatHoldsB) {
    CtrlVolSection section = FullCtrlVol();
    section.volume_size = "1.5GB";
    EXPECT_EQ(caster_.ToVolumeObject(section).volume_size, "1536");
    section.volume_size = "0.4GB";
    EXPECT_EQ(caster_.ToVolumeObject(section).volume_size, "409");
    section.volume_size = "512MB";
    EXPECT_EQ(caster_.ToVolumeObject(section).volume_size, "512");
    section.volume_size = "100|B";
    EXPECT_EQ(caster_.ToVolumeObject(section).volume_size, "");
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectCopiesAVolumeSizeWithoutB) {
    CtrlVolSection section = FullCtrlVol();
    section.volume_size = "50%";
    EXPECT_EQ(caster_.ToVolumeObject(section).volume_size, "50%");
    section.volume_size = "100mb";
    EXPECT_EQ(caster_.ToVolumeObject(section).volume_size, "100mb");
    section.volume_size = "";
    EXPECT_EQ(caster_.ToVolumeObject(section).volume_size, "");
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectLogsAMegabyteResultOnlyForASizeThatHoldsB) {
    CtrlVolSection section = FullCtrlVol();
    section.volume_size = "50%";
    caster_.ToVolumeObject(section);
    EXPECT_EQ(LogText().find("result: "), std::string::npos) << LogText();

    section.volume_size = "2GB";
    caster_.ToVolumeObject(section);
    EXPECT_TRUE(EndsWith(LineWith(LogText(), "result: "), " result: 2048MB")) << LogText();
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectKeepsTheKOfTheStripSize) {
    CtrlVolSection section = FullCtrlVol();
    section.strip_size = "64k";
    EXPECT_EQ(caster_.ToVolumeObject(section).strip_size, "64k");
    section.strip_size = "1MB";
    EXPECT_EQ(caster_.ToVolumeObject(section).strip_size, "1MB");
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectReadsPolicyCodesThroughAStream) {
    CtrlVolSection section = BareCtrlVol();
    section.write_policy = "2a";
    section.read_policy = "x";
    section.io_policy = "99999999999";
    section.access_policy = " 3";
    section.cache_policy = "-1";
    section.initialization = "9";
    const auto volume = caster_.ToVolumeObject(section);
    EXPECT_EQ(volume.write_policy, 2);
    // Nothing converts: 0, as stream extraction gives; too large: the limit of int.
    EXPECT_EQ(volume.read_policy, 0);
    EXPECT_EQ(volume.io_policy, INT_MAX);
    EXPECT_EQ(volume.access_policy, 3);
    EXPECT_EQ(volume.cache_policy, -1);
    EXPECT_EQ(volume.initialization, 9);
}

TEST_F(RaidConfigCasterTest, ToVolumeObjectWritesNoMessageForUnreadableText) {
    CtrlVolSection section = BareCtrlVol();
    section.disks = "a,b";
    section.hot_spares = "x";
    section.write_policy = "y";
    caster_.ToVolumeObject(section);
    const std::string log = LogText();
    EXPECT_NE(log.find("Entering  service::detail::RaidConfigCaster::ToVolumeObject\n"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("Exiting  service::detail::RaidConfigCaster::ToVolumeObject\n"),
              std::string::npos)
        << log;
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2) << log;
}

// OOB_LSI takes the same record: the edge cases of that family.

TEST_F(RaidConfigCasterTest, OobLsiRestGivesRestDisksAndNoGroups) {
    CtrlVolSection section = BareCtrlVol();
    section.disks = "REST";
    section.volume_size = "50%";
    const auto volume = caster_.ToVolumeObject(section);
    EXPECT_TRUE(volume.rest_disks);
    EXPECT_TRUE(volume.disks.empty());
    EXPECT_EQ(volume.volume_size, "50%");
}

TEST_F(RaidConfigCasterTest, OobLsiWritePolicyLeftOutGivesZero) {
    EXPECT_EQ(caster_.ToVolumeObject(BareCtrlVol()).write_policy, 0);
}

TEST_F(RaidConfigCasterTest, LsiIoPolicyLeftOutGivesZero) {
    EXPECT_EQ(caster_.ToVolumeObject(BareCtrlVol()).io_policy, 0);
}

// ToMicrochipConfig: MICROCHIP

TEST_F(RaidConfigCasterTest, ToMicrochipConfigCopiesEveryTextUnchanged) {
    MicroVolSection section;
    section.ctrlid = 1;
    section.volid = 4;
    section.disks = "1,2:3";
    section.hot_spares = "4,,5";
    section.raid_level = "1triple";
    section.io_policy = "2";
    section.vol_name = "micro-1";
    section.volume_size = "512MB";
    section.strip_size = "128K";
    const auto config = caster_.ToMicrochipConfig(section);
    EXPECT_EQ(config.controller_id, 1);
    EXPECT_EQ(config.volume_id, 4);
    EXPECT_EQ(config.disks, "1,2:3");
    EXPECT_EQ(config.hot_spares, "4,,5");
    EXPECT_EQ(config.raid_level, "1triple");
    EXPECT_EQ(config.vol_name, "micro-1");
    EXPECT_EQ(config.io_policy, 2);
    EXPECT_EQ(config.volume_size, "512MB");
    EXPECT_EQ(config.strip_size, "128K");
}

TEST_F(RaidConfigCasterTest, ToMicrochipConfigKeepsAGigabyteSizeAsWritten) {
    MicroVolSection section;
    section.volume_size = "1.5GB";
    EXPECT_EQ(caster_.ToMicrochipConfig(section).volume_size, "1.5GB");
}

TEST_F(RaidConfigCasterTest, ToMicrochipConfigLogsNoMegabyteResult) {
    MicroVolSection section;
    section.volume_size = "1.5GB";
    caster_.ToMicrochipConfig(section);
    EXPECT_EQ(LogText().find("result: "), std::string::npos) << LogText();
}

TEST_F(RaidConfigCasterTest, ToMicrochipConfigIoPolicyLeftOutGivesMinusOne) {
    MicroVolSection section;
    section.ctrlid = 0;
    section.volid = 0;
    section.disks = "1";
    const auto config = caster_.ToMicrochipConfig(section);
    EXPECT_EQ(config.controller_id, 0);
    EXPECT_EQ(config.volume_id, 0);
    EXPECT_EQ(config.disks, "1");
    EXPECT_EQ(config.hot_spares, "");
    EXPECT_EQ(config.raid_level, "");
    EXPECT_EQ(config.vol_name, "");
    EXPECT_EQ(config.io_policy, -1);
    EXPECT_EQ(config.volume_size, "");
    EXPECT_EQ(config.strip_size, "");
}

TEST_F(RaidConfigCasterTest, ToMicrochipConfigReadsIoPolicyThroughAStream) {
    MicroVolSection section;
    section.io_policy = "0";
    EXPECT_EQ(caster_.ToMicrochipConfig(section).io_policy, 0);
    section.io_policy = "1x";
    EXPECT_EQ(caster_.ToMicrochipConfig(section).io_policy, 1);
    // Nothing converts: 0, not the -1 an empty text gives.
    section.io_policy = "x";
    EXPECT_EQ(caster_.ToMicrochipConfig(section).io_policy, 0);
}

// ToOobMicroConfig: OOB_MICROCHIP

TEST_F(RaidConfigCasterTest, ToOobMicroConfigCastsEveryField) {
    const auto config = caster_.ToOobMicroConfig(FullOobMicroVol());
    EXPECT_EQ(config.controller_id, 3);
    EXPECT_EQ(config.volume_id, 2);
    EXPECT_EQ(config.disks, (Groups{{4, 5}, {6, 7}}));
    EXPECT_EQ(config.hot_spares, (Ints{8}));
    EXPECT_EQ(config.raid_level, "10T");
    EXPECT_EQ(config.vol_name, "oob.vol");
    EXPECT_EQ(config.volume_size, "512");
    EXPECT_EQ(config.strip_size, "64K");
    EXPECT_EQ(config.write_policy, 1);
    EXPECT_EQ(config.read_policy, 1);
}

TEST_F(RaidConfigCasterTest, ToOobMicroConfigWithKeysLeftOutGivesWritePolicyThreeReadPolicyZero) {
    OobMicroVolSection section;
    section.ctrlid = 0;
    section.volid = 0;
    section.disks = "1,2";
    const auto config = caster_.ToOobMicroConfig(section);
    EXPECT_EQ(config.controller_id, 0);
    EXPECT_EQ(config.volume_id, 0);
    EXPECT_EQ(config.disks, (Groups{{1, 2}}));
    EXPECT_EQ(config.hot_spares, Ints{});
    EXPECT_EQ(config.raid_level, "");
    EXPECT_EQ(config.vol_name, "");
    EXPECT_EQ(config.volume_size, "");
    EXPECT_EQ(config.strip_size, "");
    EXPECT_EQ(config.write_policy, 3);
    EXPECT_EQ(config.read_policy, 0);
}

TEST_F(RaidConfigCasterTest, ToOobMicroConfigShortensTheTripleLevels) {
    OobMicroVolSection section = FullOobMicroVol();
    section.raid_level = "1triple";
    EXPECT_EQ(caster_.ToOobMicroConfig(section).raid_level, "1T");
    section.raid_level = "10triple";
    EXPECT_EQ(caster_.ToOobMicroConfig(section).raid_level, "10T");
}

TEST_F(RaidConfigCasterTest, ToOobMicroConfigCopiesOtherLevels) {
    OobMicroVolSection section = FullOobMicroVol();
    for (const char* level : {"0", "1", "5", "1E", "6", "10", "50", "60", "00", "1TRIPLE", ""}) {
        section.raid_level = level;
        EXPECT_EQ(caster_.ToOobMicroConfig(section).raid_level, level);
    }
}

TEST_F(RaidConfigCasterTest, ToOobMicroConfigAppliesTheVolumeSizeRule) {
    OobMicroVolSection section = FullOobMicroVol();
    section.volume_size = "1.5GB";
    EXPECT_EQ(caster_.ToOobMicroConfig(section).volume_size, "1536");
    section.volume_size = "50%";
    EXPECT_EQ(caster_.ToOobMicroConfig(section).volume_size, "50%");
    section.volume_size = "100|B";
    EXPECT_EQ(caster_.ToOobMicroConfig(section).volume_size, "");
}

TEST_F(RaidConfigCasterTest, ToOobMicroConfigHasNoRestWord) {
    OobMicroVolSection section = FullOobMicroVol();
    section.disks = "REST";
    EXPECT_EQ(caster_.ToOobMicroConfig(section).disks, (Groups{{-1}}));
}

TEST_F(RaidConfigCasterTest, ToOobMicroConfigCastsDisksAsSpansAndHotSparesAsAList) {
    OobMicroVolSection section = FullOobMicroVol();
    section.disks = "1,2,3";
    section.hot_spares = "";
    auto config = caster_.ToOobMicroConfig(section);
    EXPECT_EQ(config.disks, (Groups{{1, 2, 3}}));
    EXPECT_EQ(config.hot_spares, Ints{});

    section.disks = "1:2";
    section.hot_spares = "3,,4";
    config = caster_.ToOobMicroConfig(section);
    EXPECT_EQ(config.disks, (Groups{{1}, {2}}));
    EXPECT_EQ(config.hot_spares, (Ints{3, -1, 4}));
}

TEST_F(RaidConfigCasterTest, ToOobMicroConfigGivesWhatTheStreamGivesForAnUnreadablePolicy) {
    OobMicroVolSection section = FullOobMicroVol();
    section.write_policy = "x";
    section.read_policy = "99999999999";
    const auto config = caster_.ToOobMicroConfig(section);
    EXPECT_EQ(config.write_policy, 0);
    EXPECT_EQ(config.read_policy, INT_MAX);
}

// ToVolManDevConfig: OOB_VROC

TEST_F(RaidConfigCasterTest, ToVolManDevConfigCastsEveryField) {
    OobVrocVolSection section;
    section.ctrlid = 5;
    section.volid = 3;
    section.disks = "1,2:3,4";
    section.raid_level = "1triple";
    section.vol_name = "vroc_0";
    section.volume_size = "0.4GB";
    section.strip_size = "128K";
    const auto config = caster_.ToVolManDevConfig(section);
    EXPECT_EQ(config.controller_id, 5);
    EXPECT_EQ(config.volume_id, 3);
    EXPECT_EQ(config.disks, (Groups{{1, 2}, {3, 4}}));
    EXPECT_EQ(config.raid_level, "1triple");
    EXPECT_EQ(config.vol_name, "vroc_0");
    EXPECT_EQ(config.volume_size, "409");
    EXPECT_EQ(config.strip_size, "128K");
}

TEST_F(RaidConfigCasterTest, ToVolManDevConfigWithKeysLeftOutKeepsEmptyTexts) {
    OobVrocVolSection section;
    section.ctrlid = 0;
    section.volid = 1;
    section.disks = "7";
    const auto config = caster_.ToVolManDevConfig(section);
    EXPECT_EQ(config.controller_id, 0);
    EXPECT_EQ(config.volume_id, 1);
    EXPECT_EQ(config.disks, (Groups{{7}}));
    EXPECT_EQ(config.raid_level, "");
    EXPECT_EQ(config.vol_name, "");
    EXPECT_EQ(config.volume_size, "");
    EXPECT_EQ(config.strip_size, "");
}

TEST_F(RaidConfigCasterTest, ToVolManDevConfigAppliesTheVolumeSizeRule) {
    OobVrocVolSection section;
    section.volume_size = "100MB";
    EXPECT_EQ(caster_.ToVolManDevConfig(section).volume_size, "100");
    section.volume_size = "50%";
    EXPECT_EQ(caster_.ToVolManDevConfig(section).volume_size, "50%");
    section.volume_size = "1TB";
    EXPECT_EQ(caster_.ToVolManDevConfig(section).volume_size, "");
}

TEST_F(RaidConfigCasterTest, ToVolManDevConfigCastsEmptyDisksAsOneEmptyGroup) {
    OobVrocVolSection section;
    const auto config = caster_.ToVolManDevConfig(section);
    EXPECT_EQ(config.controller_id, -1);
    EXPECT_EQ(config.volume_id, -1);
    EXPECT_EQ(config.disks, (Groups{{}}));
}

// ToVolRaidConfig: VROC_WIN

TEST_F(RaidConfigCasterTest, ToVolRaidConfigMakesTextOfEveryField) {
    VrocWinVolSection section;
    section.ctrlid = 2;
    section.volid = 0;
    section.raid_level = 5;
    section.vol_name = "win.vol";
    section.vol_capacity = "1.5gb";
    section.vol_strip_size = "128K";
    section.RAID_write_hole = "Distributed";
    section.disks = "1, 2,3";
    const auto config = caster_.ToVolRaidConfig(section);
    EXPECT_EQ(config.reserved_text, "");
    EXPECT_EQ(config.raid_level, "5");
    EXPECT_EQ(config.vol_name, "win.vol");
    EXPECT_EQ(config.disks, "1, 2,3");
    EXPECT_EQ(config.vol_capacity, "1.5gb");
    EXPECT_EQ(config.vol_strip_size, "128");
    EXPECT_EQ(config.raid_write_hole, "Distributed");
    EXPECT_EQ(config.volume_id, "0");
    EXPECT_EQ(config.controller_id, "2");
}

TEST_F(RaidConfigCasterTest, ToVolRaidConfigOfAnUntouchedSectionGivesMinusOneTexts) {
    const auto config = caster_.ToVolRaidConfig(VrocWinVolSection{});
    EXPECT_EQ(config.reserved_text, "");
    EXPECT_EQ(config.raid_level, "-1");
    EXPECT_EQ(config.vol_name, "");
    EXPECT_EQ(config.disks, "");
    EXPECT_EQ(config.vol_capacity, "");
    EXPECT_EQ(config.vol_strip_size, "");
    EXPECT_EQ(config.raid_write_hole, "");
    EXPECT_EQ(config.volume_id, "-1");
    EXPECT_EQ(config.controller_id, "-1");
}

TEST_F(RaidConfigCasterTest, ToVolRaidConfigCutsTheParsersUpperCaseStripSize) {
    // vol_strip_size=64k in the file: the parser hands "64K" over.
    VrocWinVolSection section;
    section.vol_strip_size = "64K";
    EXPECT_EQ(caster_.ToVolRaidConfig(section).vol_strip_size, "64");
}

TEST_F(RaidConfigCasterTest, ToVolRaidConfigRemovesOnlyTheFirstUpperCaseK) {
    VrocWinVolSection section;
    section.vol_strip_size = "K";
    EXPECT_EQ(caster_.ToVolRaidConfig(section).vol_strip_size, "");
    section.vol_strip_size = "4KK";
    EXPECT_EQ(caster_.ToVolRaidConfig(section).vol_strip_size, "4K");
    section.vol_strip_size = "K16";
    EXPECT_EQ(caster_.ToVolRaidConfig(section).vol_strip_size, "16");
    section.vol_strip_size = "16";
    EXPECT_EQ(caster_.ToVolRaidConfig(section).vol_strip_size, "16");
    // Upper-casing is the parser's work; a record that did not come from it keeps a lower "k".
    section.vol_strip_size = "64k";
    EXPECT_EQ(caster_.ToVolRaidConfig(section).vol_strip_size, "64k");
}

TEST_F(RaidConfigCasterTest, ToVolRaidConfigKeepsTheCapacityUnitAndCase) {
    VrocWinVolSection section;
    section.vol_capacity = "100GB";
    EXPECT_EQ(caster_.ToVolRaidConfig(section).vol_capacity, "100GB");
    section.vol_capacity = "1.5Gb";
    EXPECT_EQ(caster_.ToVolRaidConfig(section).vol_capacity, "1.5Gb");
}

TEST_F(RaidConfigCasterTest, ToVolRaidConfigLogsNoMegabyteResult) {
    VrocWinVolSection section;
    section.vol_capacity = "100GB";
    caster_.ToVolRaidConfig(section);
    EXPECT_EQ(LogText().find("result: "), std::string::npos) << LogText();
}

// ToM2ControllerObject: M2 and OOB_M2

TEST_F(RaidConfigCasterTest, ToM2ControllerObjectTakesTheM2IdAndCopiesTheTexts) {
    M2Section section;
    section.m2id = 3;
    section.volid = 7;
    section.raid_level = "1";
    section.vol_name = "boot";
    section.strip_size = "64K";
    const auto controller = caster_.ToM2ControllerObject(section);
    EXPECT_EQ(controller.controller_id, 3);
    EXPECT_EQ(controller.vol_name, "boot");
    EXPECT_EQ(controller.raid_level, "1");
    EXPECT_EQ(controller.strip_size, "64K");
}

TEST_F(RaidConfigCasterTest, ToM2ControllerObjectOfAnUntouchedSectionKeepsMinusOne) {
    const auto controller = caster_.ToM2ControllerObject(M2Section{});
    EXPECT_EQ(controller.controller_id, -1);
    EXPECT_EQ(controller.vol_name, "");
    EXPECT_EQ(controller.raid_level, "");
    EXPECT_EQ(controller.strip_size, "");
}

// Trace lines

TEST_F(RaidConfigCasterTest, EachRecordCastLogsEnteringAndExitingWithItsQualifiedName) {
    caster_.ToVolumeObject(BareCtrlVol());
    caster_.ToMicrochipConfig(MicroVolSection{});
    caster_.ToOobMicroConfig(OobMicroVolSection{});
    caster_.ToVolManDevConfig(OobVrocVolSection{});
    caster_.ToVolRaidConfig(VrocWinVolSection{});
    caster_.ToM2ControllerObject(M2Section{});
    const std::string log = LogText();
    for (const char* name : {"ToVolumeObject", "ToMicrochipConfig", "ToOobMicroConfig",
                             "ToVolManDevConfig", "ToVolRaidConfig", "ToM2ControllerObject"}) {
        const std::string qualified = std::string("service::detail::RaidConfigCaster::") + name;
        const std::string entering = LineWith(log, "Entering  " + qualified);
        const std::string exiting = LineWith(log, "Exiting  " + qualified);
        EXPECT_TRUE(EndsWith(entering, " Entering  " + qualified)) << log;
        EXPECT_TRUE(EndsWith(exiting, " Exiting  " + qualified)) << log;
        EXPECT_NE(entering.find(" TRACE "), std::string::npos) << entering;
        EXPECT_LT(log.find("Entering  " + qualified), log.find("Exiting  " + qualified));
    }
}

TEST_F(RaidConfigCasterTest, TheVolumeSizeResultIsLoggedInsideTheRecordCast) {
    caster_.ToVolumeObject(FullCtrlVol());
    const std::string log = LogText();
    const auto entering = log.find("Entering  service::detail::RaidConfigCaster::ToVolumeObject");
    const auto result = log.find("result: 1536MB");
    const auto exiting = log.find("Exiting  service::detail::RaidConfigCaster::ToVolumeObject");
    ASSERT_NE(entering, std::string::npos) << log;
    ASSERT_NE(result, std::string::npos) << log;
    ASSERT_NE(exiting, std::string::npos) << log;
    EXPECT_LT(entering, result);
    EXPECT_LT(result, exiting);
}

} // namespace
