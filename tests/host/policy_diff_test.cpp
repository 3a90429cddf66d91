// diff's comparison of a live configuration (as save writes it) with a policy file: every kind
// of difference, and what is not one.
#include <string>
#include <vector>

#include "host/policy_diff.hpp"
#include "host/policy_sections.hpp"

#include <gtest/gtest.h>

namespace {

using host::PolicyDiff;
using host::PolicySections;

// The demo's LSI controller as save writes it.
const char* const kLive = R"([ctrl1-vol0]
    disks=0,1,2,3
    hot_spares=4
    raid_level=6
    vol_name=vd0
    write_policy=1
    read_policy=1
    io_policy=0
    access_policy=0
    cache_policy=0
    volume_size=2288818MB
    strip_size=256K

[ctrl1]
    global_hot_spares=5

[ctrl4-vol0]
    raid_level=1
    vol_name=boot
    strip_size=64K
)";

std::vector<PolicySections::Section> Sections(const std::string& text) {
    std::vector<PolicySections::Section> sections;
    std::string error;
    EXPECT_TRUE(PolicySections::Parse(text, sections, error)) << error;
    return sections;
}

std::vector<PolicyDiff::Difference> Diff(const std::string& wanted) {
    return PolicyDiff::Compare(Sections(wanted), Sections(kLive));
}

TEST(PolicyDiff, TheSavedConfigurationMatchesItself) {
    const auto differences = Diff(kLive);
    EXPECT_TRUE(differences.empty());
    EXPECT_EQ(PolicyDiff::Text(differences), "The server matches the policy.\n");
    EXPECT_EQ(PolicyDiff::Json(differences).dump(), R"({"differences":[],"matches":true})");
}

TEST(PolicyDiff, WhatThePolicyLeavesOutOrWritesOtherwiseIsNoDifference) {
    // No policies, a size in GB within save's rounding, a strip size in other letters, the
    // disks in another order and grouping, and a controller the policy does not name.
    const auto differences = Diff("[ctrl1-vol0]\n"
                                  "disks=3,2:1,0\n"
                                  "raid_level=6\n"
                                  "volume_size=2235.17GB\n"
                                  "strip_size=256k\n"
                                  "hot_spares=4\n");
    EXPECT_TRUE(differences.empty()) << PolicyDiff::Text(differences);
}

TEST(PolicyDiff, AVolumeOnOtherDisksIsToBeCreatedAndTheLiveOneIsNotInThePolicy) {
    const auto differences = Diff("[ctrl1-vol1]\ndisks=6,7\nraid_level=1\nvol_name=new\n"
                                  "volume_size=100GB\n");
    ASSERT_EQ(differences.size(), 2U);
    EXPECT_EQ(PolicyDiff::Text(differences),
              "ctrl1-vol1    create: RAID 1 on disks 6,7, 100GB, \"new\"\n"
              "ctrl1-vol0    not in the policy: RAID 6 on disks 0,1,2,3, 2288818MB, \"vd0\"\n"
              "2 differences from the policy.\n");
    EXPECT_EQ(differences[0].kind, PolicyDiff::Kind::Create);
    EXPECT_EQ(differences[1].kind, PolicyDiff::Kind::NotInPolicy);
}

TEST(PolicyDiff, EveryStatedFieldOfAMatchedVolumeIsCompared) {
    const auto differences = Diff("[ctrl1-vol0]\n"
                                  "disks=0,1,2,3\n"
                                  "hot_spares=4,8\n"
                                  "raid_level=5\n"
                                  "vol_name=data\n"
                                  "write_policy=0\n"
                                  "io_policy=0\n"
                                  "volume_size=100GB\n"
                                  "strip_size=1MB\n");
    ASSERT_EQ(differences.size(), 1U);
    EXPECT_EQ(differences[0].kind, PolicyDiff::Kind::Differs);
    EXPECT_EQ(differences[0].section, "ctrl1-vol0");
    EXPECT_EQ(differences[0].details,
              (std::vector<std::string>{R"(raid_level is "6", the policy says "5")",
                                        R"(vol_name is "vd0", the policy says "data")",
                                        R"(volume_size is "2288818MB", the policy says "100GB")",
                                        R"(strip_size is "256K", the policy says "1MB")",
                                        R"(write_policy is "1", the policy says "0")",
                                        "dedicated hot spares are 4, the policy says 4,8"}));
}

TEST(PolicyDiff, ASizeMatchesToHalfOfItsLastWrittenDigit) {
    // 2288818 MB is 2235.17 GB: "2235GB" is within half a gigabyte, "2234GB" is not.
    EXPECT_TRUE(Diff("[ctrl1-vol0]\ndisks=0,1,2,3\nvolume_size=2235GB\n").empty());
    EXPECT_TRUE(Diff("[ctrl1-vol0]\ndisks=0,1,2,3\nvolume_size=2288819MB\n").empty());
    EXPECT_EQ(Diff("[ctrl1-vol0]\ndisks=0,1,2,3\nvolume_size=2234GB\n").size(), 1U);
    EXPECT_EQ(Diff("[ctrl1-vol0]\ndisks=0,1,2,3\nvolume_size=2288816MB\n").size(), 1U);
}

TEST(PolicyDiff, AShareOfTheSpaceIsNotComparedWithTheSizeItBecame) {
    EXPECT_TRUE(Diff("[ctrl1-vol0]\ndisks=0,1,2,3\nraid_level=6\nvolume_size=100%\n").empty());
}

TEST(PolicyDiff, GlobalHotSparesAreComparedAsSets) {
    EXPECT_TRUE(Diff("[ctrl1-vol0]\ndisks=0,1,2,3\n[ctrl1]\nglobal_hot_spares=5\n").empty());
    const auto differences = Diff("[ctrl1-vol0]\ndisks=0,1,2,3\n[ctrl1]\nglobal_hot_spares=6,5\n");
    ASSERT_EQ(differences.size(), 1U);
    EXPECT_EQ(PolicyDiff::Text(differences),
              "ctrl1    hot spares differ: global hot spares are 5, the policy says 5,6\n"
              "1 difference from the policy.\n");
    EXPECT_EQ(PolicyDiff::Json(differences)["differences"][0]["missing"],
              nlohmann::json::array({"6"}));
    const auto replaced = Diff("[ctrl1-vol0]\ndisks=0,1,2,3\n[ctrl1]\nglobal_hot_spares=7\n");
    ASSERT_EQ(replaced.size(), 1U);
    EXPECT_EQ(replaced[0].missing, std::vector<std::string>{"7"});
    EXPECT_EQ(replaced[0].extra, std::vector<std::string>{"5"});
}

TEST(PolicyDiff, AnM2VolumeIsMatchedByItsController) {
    EXPECT_TRUE(Diff("[ctrl4-vol0]\nraid_level=1\nvol_name=boot\nstrip_size=64K\n").empty());
    const auto differences = Diff("[ctrl4-vol0]\nraid_level=0\n");
    ASSERT_EQ(differences.size(), 1U);
    EXPECT_EQ(differences[0].details,
              (std::vector<std::string>{R"(raid_level is "1", the policy says "0")"}));
}

TEST(PolicyDiff, APolicyThatNamesTheDisksOfALiveM2VolumeMatchesIt) {
    EXPECT_TRUE(Diff("[ctrl4-vol0]\ndisks=0,1\nraid_level=1\n").empty());
}

TEST(PolicyDiff, RestIsMatchedByItsLevel) {
    EXPECT_TRUE(Diff("[ctrl1-vol0]\ndisks=REST\nraid_level=6\n").empty());
    const auto differences = Diff("[ctrl1-vol0]\ndisks=rest\nraid_level=5\n");
    ASSERT_EQ(differences.size(), 2U);
    EXPECT_EQ(differences[0].kind, PolicyDiff::Kind::Create);
    EXPECT_EQ(differences[0].details, (std::vector<std::string>{"RAID 5 on the remaining disks"}));
}

TEST(PolicyDiff, AControllerThePolicyNamesWithNothingOnItGetsEveryVolume) {
    const auto differences =
        PolicyDiff::Compare(Sections("[ctrl2-vol0]\ndisks=1\nraid_level=0\n"), Sections(kLive));
    ASSERT_EQ(differences.size(), 1U);
    EXPECT_EQ(differences[0].kind, PolicyDiff::Kind::Create);
    EXPECT_EQ(differences[0].controller, "ctrl2");
}

TEST(PolicyDiff, JsonCarriesEveryDifferenceForPrograms) {
    const auto differences = Diff("[ctrl1-vol1]\ndisks=6\nraid_level=0\n");
    EXPECT_EQ(PolicyDiff::Json(differences).dump(),
              R"({"differences":[{"controller":"ctrl1","details":["RAID 0 on disks 6"],)"
              R"("kind":"create","section":"ctrl1-vol1"},{"controller":"ctrl1","details":)"
              R"(["RAID 6 on disks 0,1,2,3, 2288818MB, \"vd0\""],"kind":"not_in_policy",)"
              R"("section":"ctrl1-vol0"}],"matches":false})");
}

} // namespace
