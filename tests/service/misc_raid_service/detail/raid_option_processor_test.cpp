#include <climits>
#include <string>
#include <tuple>
#include <vector>

#include "collaborators/log.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ReadFile;
using service::detail::RaidOptionProcessor;
using RaidTarget = Quillon::RaidConfig::RaidTarget;
using Ids = std::vector<int>;
using Words = std::vector<std::string>;

// One target as type, ids and container ids, so that a whole result compares in one line.
using Summary = std::tuple<int, Ids, Ids>;

std::vector<Summary> Summarize(const std::vector<RaidTarget>& targets) {
    std::vector<Summary> summary;
    summary.reserve(targets.size());
    for (const RaidTarget& target : targets) {
        summary.emplace_back(static_cast<int>(target.type), target.ids, target.container_ids);
    }
    return summary;
}

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

const std::vector<Summary> kAllInBand = {{0, {}, {}}, {2, {}, {}}, {3, {}, {}}};
const std::vector<Summary> kAllOutOfBand = {{4, {}, {}}, {6, {}, {}}};

class RaidOptionProcessorTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }

    std::vector<Summary> InBand(const std::string& text) const {
        return Summarize(processor_.ParseInbandTargets(text));
    }
    std::vector<Summary> OutOfBand(const std::string& text) const {
        return Summarize(processor_.ParseOobTargets(text));
    }
    std::string LogText() const { return ReadFile(dir_.File("raidcfg.log")); }

    raidcfg_test::TempDir dir_;
    const RaidOptionProcessor processor_{};
};

// Creating targets

TEST_F(RaidOptionProcessorTest, CreateAllRaidTargetGivesTypesZeroTwoThreeWithNoIds) {
    EXPECT_EQ(Summarize(processor_.CreateAllRaidTarget()), kAllInBand);
}

TEST_F(RaidOptionProcessorTest, CreateHWRaidTargetGivesTypesZeroTwoWithNoIds) {
    EXPECT_EQ(Summarize(processor_.CreateHWRaidTarget()),
              (std::vector<Summary>{{0, {}, {}}, {2, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, CreateOObRaidTargetGivesTypesFourSixWithNoIds) {
    EXPECT_EQ(Summarize(processor_.CreateOObRaidTarget()), kAllOutOfBand);
}

TEST_F(RaidOptionProcessorTest, CreateRaidTargetKeepsTheIdsAsGiven) {
    const RaidTarget target = processor_.CreateRaidTarget(RaidTarget::M2, {3, 1, 3});
    EXPECT_EQ(target.type, RaidTarget::M2);
    EXPECT_EQ(target.ids, (Ids{3, 1, 3}));
    EXPECT_TRUE(target.container_ids.empty());
}

TEST_F(RaidOptionProcessorTest, CreateRaidContainerTargetPutsTheIdsIntoContainers) {
    const RaidTarget target = processor_.CreateRaidContainerTarget(RaidTarget::VROC_WIN, {2, 0});
    EXPECT_EQ(target.type, RaidTarget::VROC_WIN);
    EXPECT_TRUE(target.ids.empty());
    EXPECT_EQ(target.container_ids, (Ids{2, 0}));
}

TEST_F(RaidOptionProcessorTest, CreateRaidTargetLogsTheTypeThenEachId) {
    processor_.CreateRaidTarget(RaidTarget::OOB_LSI, {7, 5});
    const std::string log = LogText();
    const auto type = log.find("raid_target.type: 4");
    const auto first = log.find("raid_target id: 7");
    const auto second = log.find("raid_target id: 5");
    ASSERT_NE(type, std::string::npos) << log;
    ASSERT_NE(first, std::string::npos) << log;
    ASSERT_NE(second, std::string::npos) << log;
    EXPECT_LT(type, first);
    EXPECT_LT(first, second);
    EXPECT_NE(LineWith(log, "raid_target.type: 4").find("INFO "), std::string::npos) << log;
    EXPECT_NE(LineWith(log, "raid_target id: 7").find("INFO "), std::string::npos) << log;
    EXPECT_EQ(log.find("container_ids"), std::string::npos) << log;
}

TEST_F(RaidOptionProcessorTest, CreateRaidTargetWithNoIdsLogsOnlyTheType) {
    processor_.CreateRaidTarget(RaidTarget::M2, {});
    const std::string log = LogText();
    EXPECT_NE(log.find("raid_target.type: 2"), std::string::npos) << log;
    EXPECT_EQ(log.find("raid_target id: "), std::string::npos) << log;
}

TEST_F(RaidOptionProcessorTest, CreateRaidContainerTargetLogsTheTypeThenEachContainer) {
    processor_.CreateRaidContainerTarget(RaidTarget::VROC_WIN, {2, 4});
    const std::string log = LogText();
    const auto type = log.find("raid_target.type: 3");
    const auto first = log.find("raid_target container_ids: 2");
    const auto second = log.find("raid_target container_ids: 4");
    ASSERT_NE(type, std::string::npos) << log;
    ASSERT_NE(first, std::string::npos) << log;
    ASSERT_NE(second, std::string::npos) << log;
    EXPECT_LT(type, first);
    EXPECT_LT(first, second);
    EXPECT_EQ(log.find("raid_target id: "), std::string::npos) << log;
}

TEST_F(RaidOptionProcessorTest, ParsingTargetsLogsEnteringAndExitingWithTheQualifiedName) {
    processor_.ParseInbandTargets("1");
    const std::string log = LogText();
    const auto entering =
        log.find("Entering  service::detail::RaidOptionProcessor::ParseInbandTargets");
    const auto created = log.find("raid_target id: 1");
    const auto exiting =
        log.find("Exiting  service::detail::RaidOptionProcessor::ParseInbandTargets");
    ASSERT_NE(entering, std::string::npos) << log;
    ASSERT_NE(created, std::string::npos) << log;
    ASSERT_NE(exiting, std::string::npos) << log;
    EXPECT_LT(entering, created);
    EXPECT_LT(created, exiting);
    EXPECT_NE(LineWith(log, "Entering  ").find("TRACE "), std::string::npos) << log;
    EXPECT_NE(LineWith(log, "Exiting  ").find("TRACE "), std::string::npos) << log;
}

TEST_F(RaidOptionProcessorTest, ParsingAllTargetsLogsNoTargetLines) {
    processor_.ParseInbandTargets("all");
    EXPECT_EQ(LogText().find("raid_target"), std::string::npos);
}

// In-band target texts

TEST_F(RaidOptionProcessorTest, EmptyTextInBandGivesAllTargets) {
    EXPECT_EQ(InBand(""), kAllInBand);
}

TEST_F(RaidOptionProcessorTest, AllGivesAllTargets) {
    EXPECT_EQ(InBand("all"), kAllInBand);
}

TEST_F(RaidOptionProcessorTest, AllInCapitalsGivesAllTargets) {
    EXPECT_EQ(InBand("ALL"), kAllInBand);
    EXPECT_EQ(InBand("All"), kAllInBand);
}

TEST_F(RaidOptionProcessorTest, ListOfOneAndAllGivesAllTargets) {
    EXPECT_EQ(InBand("1,all"), kAllInBand);
    EXPECT_EQ(InBand("1,ALL"), kAllInBand);
}

TEST_F(RaidOptionProcessorTest, ListOfThreeOneThreeGivesOneLsiTargetWithOneAndThree) {
    EXPECT_EQ(InBand("3,1,3"), (std::vector<Summary>{{0, {1, 3}, {}}}));
}

TEST_F(RaidOptionProcessorTest, ControllerNumbersAreSortedAsNumbers) {
    EXPECT_EQ(InBand("10,9,2"), (std::vector<Summary>{{0, {2, 9, 10}, {}}}));
}

TEST_F(RaidOptionProcessorTest, SameNumberWrittenTwoWaysGivesTheIdTwice) {
    // The list is made unique as text before it is read.
    EXPECT_EQ(InBand("01,1"), (std::vector<Summary>{{0, {1, 1}, {}}}));
}

TEST_F(RaidOptionProcessorTest, EmptyTokenReadsAsControllerZero) {
    EXPECT_EQ(InBand("1,"), (std::vector<Summary>{{0, {0, 1}, {}}}));
    EXPECT_EQ(InBand(","), (std::vector<Summary>{{0, {0}, {}}}));
}

TEST_F(RaidOptionProcessorTest, ControllerNumberBeyondIntGivesIntMax) {
    EXPECT_EQ(InBand("99999999999"), (std::vector<Summary>{{0, {INT_MAX}, {}}}));
}

TEST_F(RaidOptionProcessorTest, TokenWithABlankIsDropped) {
    EXPECT_EQ(InBand("1, 2"), (std::vector<Summary>{{0, {1}, {}}}));
}

TEST_F(RaidOptionProcessorTest, HwGivesLsiAndM2WithNoIds) {
    EXPECT_EQ(InBand("hw"), (std::vector<Summary>{{0, {}, {}}, {2, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, HwOverridesControllerAndM2NumbersNextToIt) {
    EXPECT_EQ(InBand("1,hw,m2-1"), (std::vector<Summary>{{0, {}, {}}, {2, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, M2WordGivesTypeTwoWithNoIds) {
    EXPECT_EQ(InBand("m2"), (std::vector<Summary>{{2, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, M2WordWithDotGivesTypeTwoWithNoIds) {
    EXPECT_EQ(InBand("m.2"), (std::vector<Summary>{{2, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, M2WordWithAnM2NumberGivesTypeTwoWithNoIds) {
    EXPECT_EQ(InBand("m2,m2-1"), (std::vector<Summary>{{2, {}, {}}}));
    EXPECT_EQ(InBand("m.2-3,m.2"), (std::vector<Summary>{{2, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, M2NumbersGiveOneTypeTwoTargetSortedAndUnique) {
    EXPECT_EQ(InBand("m2-3,m.2-1,m2-3"), (std::vector<Summary>{{2, {1, 3}, {}}}));
}

TEST_F(RaidOptionProcessorTest, M2NumberIsTheTextBehindTheFirstDash) {
    // "m-2-5" fits the form with "-" as the optional character; "2-5" reads as 2.
    EXPECT_EQ(InBand("m-2-5"), (std::vector<Summary>{{2, {2}, {}}}));
}

TEST_F(RaidOptionProcessorTest, M2FormTakesAnyOneCharacterBetweenMAndTwo) {
    EXPECT_EQ(InBand("mx2-4"), (std::vector<Summary>{{2, {4}, {}}}));
}

TEST_F(RaidOptionProcessorTest, M2FormWithoutANumberIsDropped) {
    EXPECT_EQ(InBand("m2-"), std::vector<Summary>{});
    EXPECT_EQ(InBand("m..2-1"), std::vector<Summary>{});
}

TEST_F(RaidOptionProcessorTest, M2TokenInCapitalsMatches) {
    EXPECT_EQ(InBand("M.2-1"), (std::vector<Summary>{{2, {1}, {}}}));
    EXPECT_EQ(InBand("M2"), (std::vector<Summary>{{2, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, ControllerNumbersComeBeforeTheM2Word) {
    EXPECT_EQ(InBand("m2,1"), (std::vector<Summary>{{0, {1}, {}}, {2, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, ControllerNumbersComeBeforeM2Numbers) {
    EXPECT_EQ(InBand("m2-2,1"), (std::vector<Summary>{{0, {1}, {}}, {2, {2}, {}}}));
}

TEST_F(RaidOptionProcessorTest, SwGivesOneSoftwareTargetWithNoIds) {
    EXPECT_EQ(InBand("sw"), (std::vector<Summary>{{3, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, SwOverridesVrocAndMdNextToIt) {
    EXPECT_EQ(InBand("vroc1,sw,md2"), (std::vector<Summary>{{3, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, VrocOneMdTwoGivesTwoSoftwareTargets) {
    EXPECT_EQ(InBand("vroc1,md2"), (std::vector<Summary>{{3, {1}, {}}, {3, {}, {2}}}));
}

TEST_F(RaidOptionProcessorTest, VrocNumbersAreSortedAsNumbers) {
    EXPECT_EQ(InBand("vroc10,vroc2"), (std::vector<Summary>{{3, {2, 10}, {}}}));
}

TEST_F(RaidOptionProcessorTest, MdAloneGivesOneContainerTargetWithNoIds) {
    EXPECT_EQ(InBand("md0"), (std::vector<Summary>{{3, {}, {0}}}));
}

TEST_F(RaidOptionProcessorTest, VrocAndMdInCapitalsMatch) {
    EXPECT_EQ(InBand("MD2,VROC1"), (std::vector<Summary>{{3, {1}, {}}, {3, {}, {2}}}));
}

TEST_F(RaidOptionProcessorTest, VrocAndMdWithoutANumberAreDropped) {
    EXPECT_EQ(InBand("vroc,md"), std::vector<Summary>{});
}

TEST_F(RaidOptionProcessorTest, HwAndSwInBandGiveTypesZeroTwoThree) {
    EXPECT_EQ(InBand("hw,sw"), kAllInBand);
    EXPECT_EQ(InBand("SW,HW"), kAllInBand);
}

TEST_F(RaidOptionProcessorTest, HardwareTargetsComeBeforeSoftwareTargets) {
    EXPECT_EQ(InBand("md1,vroc0,m2-2,4"),
              (std::vector<Summary>{{0, {4}, {}}, {2, {2}, {}}, {3, {0}, {}}, {3, {}, {1}}}));
}

TEST_F(RaidOptionProcessorTest, UnknownTokensAreDropped) {
    EXPECT_EQ(InBand("foo,1,raid5"), (std::vector<Summary>{{0, {1}, {}}}));
}

TEST_F(RaidOptionProcessorTest, OnlyUnknownTokensGiveNothing) {
    EXPECT_EQ(InBand("foo,raid5"), std::vector<Summary>{});
}

// Out-of-band target texts

TEST_F(RaidOptionProcessorTest, EmptyTextOutOfBandGivesOutOfBandTargets) {
    EXPECT_EQ(OutOfBand(""), kAllOutOfBand);
}

TEST_F(RaidOptionProcessorTest, AllInCapitalsOutOfBandGivesOutOfBandTargets) {
    EXPECT_EQ(OutOfBand("ALL"), kAllOutOfBand);
}

TEST_F(RaidOptionProcessorTest, ListWithAllOutOfBandGivesOutOfBandTargets) {
    EXPECT_EQ(OutOfBand("2,All"), kAllOutOfBand);
}

TEST_F(RaidOptionProcessorTest, ControllerNumbersOutOfBandGiveTypeFour) {
    EXPECT_EQ(OutOfBand("3,1,3"), (std::vector<Summary>{{4, {1, 3}, {}}}));
}

TEST_F(RaidOptionProcessorTest, HwOutOfBandGivesTypesFourSix) {
    EXPECT_EQ(OutOfBand("hw,1"), kAllOutOfBand);
}

TEST_F(RaidOptionProcessorTest, HwAndSwOutOfBandGiveTypesFourSix) {
    EXPECT_EQ(OutOfBand("hw,sw"), kAllOutOfBand);
}

TEST_F(RaidOptionProcessorTest, SwOutOfBandGivesNothing) {
    EXPECT_EQ(OutOfBand("sw"), std::vector<Summary>{});
}

TEST_F(RaidOptionProcessorTest, VrocAndMdOutOfBandGiveNothing) {
    EXPECT_EQ(OutOfBand("vroc1,md2"), std::vector<Summary>{});
}

TEST_F(RaidOptionProcessorTest, M2WordOutOfBandGivesTypeSixWithNoIds) {
    EXPECT_EQ(OutOfBand("m.2,m2-1"), (std::vector<Summary>{{6, {}, {}}}));
}

TEST_F(RaidOptionProcessorTest, M2NumbersOutOfBandGiveTypeSix) {
    EXPECT_EQ(OutOfBand("M2-2,m.2-1"), (std::vector<Summary>{{6, {1, 2}, {}}}));
}

TEST_F(RaidOptionProcessorTest, ControllerAndM2NumbersOutOfBandGiveFourThenSix) {
    EXPECT_EQ(OutOfBand("m2-1,1"), (std::vector<Summary>{{4, {1}, {}}, {6, {1}, {}}}));
}

TEST_F(RaidOptionProcessorTest, UnknownTokensOutOfBandGiveNothing) {
    EXPECT_EQ(OutOfBand("foo"), std::vector<Summary>{});
}

// Token lists handed in directly

TEST_F(RaidOptionProcessorTest, ParseHwTargetsComparesTokensAsGiven) {
    EXPECT_EQ(Summarize(processor_.ParseHwTargets({"HW", "M2-1", "M2"})), std::vector<Summary>{});
}

TEST_F(RaidOptionProcessorTest, ParseHwTargetsKeepsRepeatedNumbers) {
    EXPECT_EQ(Summarize(processor_.ParseHwTargets({"2", "1", "2"})),
              (std::vector<Summary>{{0, {1, 2, 2}, {}}}));
}

TEST_F(RaidOptionProcessorTest, ParseHwTargetsIgnoresSoftwareTokens) {
    EXPECT_EQ(Summarize(processor_.ParseHwTargets({"sw", "vroc1", "md1"})), std::vector<Summary>{});
}

TEST_F(RaidOptionProcessorTest, ParseOobHwTargetsWithHwGivesTypesFourSix) {
    EXPECT_EQ(Summarize(processor_.ParseOobHwTargets({"1", "hw"})), kAllOutOfBand);
}

TEST_F(RaidOptionProcessorTest, ParseOobHwTargetsWithNumbersGivesTypesFourSix) {
    EXPECT_EQ(Summarize(processor_.ParseOobHwTargets({"m2-5", "0"})),
              (std::vector<Summary>{{4, {0}, {}}, {6, {5}, {}}}));
}

TEST_F(RaidOptionProcessorTest, ParseSwTargetsSortsControllersAndContainers) {
    EXPECT_EQ(Summarize(processor_.ParseSwTargets({"vroc3", "md4", "vroc1", "md0"})),
              (std::vector<Summary>{{3, {1, 3}, {}}, {3, {}, {0, 4}}}));
}

TEST_F(RaidOptionProcessorTest, ParseSwTargetsIgnoresHardwareTokens) {
    EXPECT_EQ(Summarize(processor_.ParseSwTargets({"hw", "1", "m2"})), std::vector<Summary>{});
}

// Classifying one target text, in-band

TEST_F(RaidOptionProcessorTest, ClassifyEmptyTextInBandIsZero) {
    EXPECT_EQ(processor_.ClassifyTarget("", true), RaidTarget::LSI);
}

TEST_F(RaidOptionProcessorTest, ClassifyNumberInBandIsZero) {
    EXPECT_EQ(processor_.ClassifyTarget("0", true), RaidTarget::LSI);
    EXPECT_EQ(processor_.ClassifyTarget("12", true), RaidTarget::LSI);
    EXPECT_EQ(processor_.ClassifyTarget("99999999999", true), RaidTarget::LSI);
}

TEST_F(RaidOptionProcessorTest, ClassifyM2NumberInBandIsTwo) {
    EXPECT_EQ(processor_.ClassifyTarget("m2-1", true), RaidTarget::M2);
    EXPECT_EQ(processor_.ClassifyTarget("m.2-10", true), RaidTarget::M2);
}

TEST_F(RaidOptionProcessorTest, ClassifyM2NumberInCapitalsInBandIsTwo) {
    EXPECT_EQ(processor_.ClassifyTarget("M.2-1", true), RaidTarget::M2);
}

TEST_F(RaidOptionProcessorTest, ClassifyVrocInBandIsThree) {
    EXPECT_EQ(processor_.ClassifyTarget("vroc0", true), RaidTarget::VROC_WIN);
    EXPECT_EQ(processor_.ClassifyTarget("VROC1", true), RaidTarget::VROC_WIN);
}

TEST_F(RaidOptionProcessorTest, ClassifyMdInBandIsThree) {
    EXPECT_EQ(processor_.ClassifyTarget("md126", true), RaidTarget::VROC_WIN);
    EXPECT_EQ(processor_.ClassifyTarget("MD2", true), RaidTarget::VROC_WIN);
}

TEST_F(RaidOptionProcessorTest, ClassifyListInBandIsInvalid) {
    EXPECT_EQ(processor_.ClassifyTarget("1,2", true), RaidTarget::INVALID);
    EXPECT_EQ(processor_.ClassifyTarget("vroc1,md2", true), RaidTarget::INVALID);
}

TEST_F(RaidOptionProcessorTest, ClassifyWordsInBandAreInvalid) {
    for (const char* word : {"all", "hw", "sw", "m2", "m.2"}) {
        EXPECT_EQ(processor_.ClassifyTarget(word, true), RaidTarget::INVALID) << word;
    }
}

TEST_F(RaidOptionProcessorTest, ClassifyUnknownTextInBandIsInvalid) {
    for (const char* text : {"foo", "vroc", "md", "m2-", "-1", " 1", "1a", "lsi:0"}) {
        EXPECT_EQ(processor_.ClassifyTarget(text, true), RaidTarget::INVALID) << text;
    }
}

// Classifying one target text, out-of-band

TEST_F(RaidOptionProcessorTest, ClassifyEmptyTextOutOfBandIsFour) {
    EXPECT_EQ(processor_.ClassifyTarget("", false), RaidTarget::OOB_LSI);
}

TEST_F(RaidOptionProcessorTest, ClassifyNumberOutOfBandIsFour) {
    EXPECT_EQ(processor_.ClassifyTarget("3", false), RaidTarget::OOB_LSI);
}

TEST_F(RaidOptionProcessorTest, ClassifyM2NumberOutOfBandIsSix) {
    EXPECT_EQ(processor_.ClassifyTarget("m2-1", false), RaidTarget::OOB_M2);
    EXPECT_EQ(processor_.ClassifyTarget("M.2-2", false), RaidTarget::OOB_M2);
}

TEST_F(RaidOptionProcessorTest, ClassifyVrocOutOfBandIsInvalid) {
    EXPECT_EQ(processor_.ClassifyTarget("vroc1", false), RaidTarget::INVALID);
}

TEST_F(RaidOptionProcessorTest, ClassifyMdOutOfBandIsInvalid) {
    EXPECT_EQ(processor_.ClassifyTarget("md2", false), RaidTarget::INVALID);
}

TEST_F(RaidOptionProcessorTest, ClassifyListOutOfBandIsInvalid) {
    EXPECT_EQ(processor_.ClassifyTarget("1,2", false), RaidTarget::INVALID);
}

TEST_F(RaidOptionProcessorTest, ClassifyWordsOutOfBandAreInvalid) {
    for (const char* word : {"all", "hw", "sw", "m2", "m.2", "foo"}) {
        EXPECT_EQ(processor_.ClassifyTarget(word, false), RaidTarget::INVALID) << word;
    }
}

// Id lists

TEST_F(RaidOptionProcessorTest, IdListOfEmptyTextIsEmpty) {
    EXPECT_EQ(processor_.ParseIdList(""), Ids{});
}

TEST_F(RaidOptionProcessorTest, IdListOfAllIsEmpty) {
    EXPECT_EQ(processor_.ParseIdList("all"), Ids{});
}

TEST_F(RaidOptionProcessorTest, IdListOfAllInCapitalsIsEmpty) {
    EXPECT_EQ(processor_.ParseIdList("ALL"), Ids{});
}

TEST_F(RaidOptionProcessorTest, IdListIsSortedAsNumbers) {
    EXPECT_EQ(processor_.ParseIdList("10,9,2"), (Ids{2, 9, 10}));
}

TEST_F(RaidOptionProcessorTest, IdListDropsRepeatedText) {
    EXPECT_EQ(processor_.ParseIdList("10,9,10"), (Ids{9, 10}));
}

TEST_F(RaidOptionProcessorTest, IdListKeepsSameNumberWrittenTwoWays) {
    // Made unique as text, not as numbers: intended.
    EXPECT_EQ(processor_.ParseIdList("1,01"), (Ids{1, 1}));
}

TEST_F(RaidOptionProcessorTest, IdListWordAmongNumbersReadsAsZero) {
    EXPECT_EQ(processor_.ParseIdList("3,all"), (Ids{0, 3}));
    EXPECT_EQ(processor_.ParseIdList("x,2"), (Ids{0, 2}));
}

TEST_F(RaidOptionProcessorTest, IdListEmptyTokenReadsAsZero) {
    EXPECT_EQ(processor_.ParseIdList("2,"), (Ids{0, 2}));
}

TEST_F(RaidOptionProcessorTest, IdListReadsNegativeNumbers) {
    EXPECT_EQ(processor_.ParseIdList("2,-1"), (Ids{-1, 2}));
}

// Disk lists

TEST_F(RaidOptionProcessorTest, DiskListOfEmptyTextIsEmpty) {
    EXPECT_EQ(processor_.ParseDiskList(""), Words{});
}

TEST_F(RaidOptionProcessorTest, DiskListOfAllInCapitalsIsEmpty) {
    EXPECT_EQ(processor_.ParseDiskList("all"), Words{});
    EXPECT_EQ(processor_.ParseDiskList("All"), Words{});
}

TEST_F(RaidOptionProcessorTest, DiskListKeepsOrderAndDuplicates) {
    EXPECT_EQ(processor_.ParseDiskList("3,1,3"), (Words{"3", "1", "3"}));
}

TEST_F(RaidOptionProcessorTest, DiskListIsLowerCased) {
    EXPECT_EQ(processor_.ParseDiskList("E1:S2,Abc"), (Words{"e1:s2", "abc"}));
}

TEST_F(RaidOptionProcessorTest, DiskListKeepsAllAmongOtherTokens) {
    EXPECT_EQ(processor_.ParseDiskList("1,ALL"), (Words{"1", "all"}));
}

TEST_F(RaidOptionProcessorTest, DiskListKeepsEmptyTokens) {
    EXPECT_EQ(processor_.ParseDiskList("1,,2"), (Words{"1", "", "2"}));
}

// String lists

TEST_F(RaidOptionProcessorTest, StringListOfEmptyTextIsEmpty) {
    EXPECT_EQ(processor_.ParseStringList(""), Words{});
}

TEST_F(RaidOptionProcessorTest, StringListKeepsAllAsAToken) {
    EXPECT_EQ(processor_.ParseStringList("all"), (Words{"all"}));
    EXPECT_EQ(processor_.ParseStringList("ALL"), (Words{"all"}));
}

TEST_F(RaidOptionProcessorTest, StringListKeepsOrderAndDuplicates) {
    EXPECT_EQ(processor_.ParseStringList("b,a,b"), (Words{"b", "a", "b"}));
}

TEST_F(RaidOptionProcessorTest, StringListIsLowerCased) {
    EXPECT_EQ(processor_.ParseStringList("Key,VALUE"), (Words{"key", "value"}));
}

// Policy file

TEST_F(RaidOptionProcessorTest, EmptyPolicyFileGivesFalseAndLeavesTheOutputAlone) {
    std::string file = "earlier";
    EXPECT_FALSE(processor_.GetPolicyFile("", file));
    EXPECT_EQ(file, "earlier");
}

TEST_F(RaidOptionProcessorTest, PolicyFileIsCopiedAsGiven) {
    std::string file;
    EXPECT_TRUE(processor_.GetPolicyFile("Policies/Raid One.XML", file));
    EXPECT_EQ(file, "Policies/Raid One.XML");
}

// Text to number

TEST_F(RaidOptionProcessorTest, StringToIntReadsANumber) {
    EXPECT_EQ(processor_.StringToInt("42"), 42);
    EXPECT_EQ(processor_.StringToInt("-7"), -7);
    EXPECT_EQ(processor_.StringToInt("007"), 7);
}

TEST_F(RaidOptionProcessorTest, StringToIntOfJunkIsZero) {
    EXPECT_EQ(processor_.StringToInt(""), 0);
    EXPECT_EQ(processor_.StringToInt("abc"), 0);
    EXPECT_EQ(processor_.StringToInt("-"), 0);
}

TEST_F(RaidOptionProcessorTest, StringToIntStopsAtTheFirstCharacterNotOfTheNumber) {
    EXPECT_EQ(processor_.StringToInt("12abc"), 12);
    EXPECT_EQ(processor_.StringToInt("2-5"), 2);
}

TEST_F(RaidOptionProcessorTest, StringToIntSkipsLeadingBlanks) {
    EXPECT_EQ(processor_.StringToInt("  5"), 5);
}

TEST_F(RaidOptionProcessorTest, StringToIntOverflowGivesIntMax) {
    EXPECT_EQ(processor_.StringToInt("2147483647"), INT_MAX);
    EXPECT_EQ(processor_.StringToInt("2147483648"), INT_MAX);
    EXPECT_EQ(processor_.StringToInt("99999999999999999999"), INT_MAX);
}

TEST_F(RaidOptionProcessorTest, StringToIntUnderflowGivesIntMin) {
    EXPECT_EQ(processor_.StringToInt("-2147483648"), INT_MIN);
    EXPECT_EQ(processor_.StringToInt("-99999999999"), INT_MIN);
}

// No state

TEST_F(RaidOptionProcessorTest, TwoProcessorsGiveTheSameTargets) {
    const RaidOptionProcessor other{};
    EXPECT_EQ(Summarize(other.ParseInbandTargets("vroc1,2,m2-3")), InBand("vroc1,2,m2-3"));
    EXPECT_EQ(InBand("vroc1,2,m2-3"), InBand("vroc1,2,m2-3"));
}

} // namespace
