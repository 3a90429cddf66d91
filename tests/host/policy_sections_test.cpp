// A policy file read as sections and keys, for diff.
#include <string>
#include <vector>

#include "host/policy_sections.hpp"

#include <gtest/gtest.h>

namespace {

using host::PolicySections;

TEST(PolicySections, SectionsAndKeysInFileOrderTrimmedAndWithoutComments) {
    std::vector<PolicySections::Section> sections;
    std::string error;
    ASSERT_TRUE(PolicySections::Parse("\xEF\xBB\xBF[ctrl1-vol0]\n"
                                      "    disks = 0,1\n"
                                      "# a comment\n"
                                      "; another\n"
                                      "\n"
                                      "    hot_spares=\r\n"
                                      "[ ctrl1 ]\n"
                                      "global_hot_spares=5\n",
                                      sections, error))
        << error;
    ASSERT_EQ(sections.size(), 2U);
    EXPECT_EQ(sections[0].name, "ctrl1-vol0");
    EXPECT_EQ(sections[0].Controller(), "ctrl1");
    EXPECT_TRUE(sections[0].IsVolume());
    EXPECT_EQ(sections[0].Value("disks"), "0,1");
    EXPECT_TRUE(sections[0].Has("hot_spares"));
    EXPECT_EQ(sections[0].Value("hot_spares"), "");
    EXPECT_FALSE(sections[0].Has("raid_level"));
    EXPECT_EQ(sections[1].name, "ctrl1");
    EXPECT_EQ(sections[1].Controller(), "ctrl1");
    EXPECT_FALSE(sections[1].IsVolume());
    EXPECT_EQ(sections[1].Value("global_hot_spares"), "5");
}

TEST(PolicySections, WhatIsNotAPolicyFileIsRefusedWithItsLine) {
    std::vector<PolicySections::Section> sections;
    std::string error;
    EXPECT_FALSE(PolicySections::Parse("disks=1\n", sections, error));
    EXPECT_EQ(error, "line 1: a key before any section");
    EXPECT_FALSE(PolicySections::Parse("[ctrl1]\nnonsense\n", sections, error));
    EXPECT_EQ(error, "line 2: \"nonsense\" is not key=value");
    EXPECT_FALSE(PolicySections::Parse("[ctrl1\n", sections, error));
    EXPECT_EQ(error, "line 1: \"[ctrl1\" is not a section");
}

} // namespace
