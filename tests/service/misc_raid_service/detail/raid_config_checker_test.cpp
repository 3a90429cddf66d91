// The checker's entry operations, the duplicate test, the M.2 and VROC_WIN checks, the disk
// count of VROC_WIN levels and the failure's line. The scope checks and value tests are tested
// in raid_config_checker_scope_test.cpp.
#include <string>
#include <utility>
#include <vector>

#include "collaborators/log.hpp"
#include "service/misc_raid_service/detail/raid_config_checker.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ReadFile;
using service::detail::CtrlSection;
using service::detail::CtrlVolSection;
using service::detail::M2Section;
using service::detail::MicroCtrlSection;
using service::detail::MicroVolSection;
using service::detail::OobMicroCtrlSection;
using service::detail::OobMicroVolSection;
using service::detail::OobVrocCtrlSection;
using service::detail::OobVrocVolSection;
using service::detail::RaidConfigChecker;
using service::detail::VrocWinCtrlSection;
using service::detail::VrocWinVolSection;
using Texts = std::vector<std::string>;

const char* const kDuplicated = "the values of disks or hot_spares are duplicated.";

// Volumes that every check of their family accepts; each test spoils what it is about.
CtrlVolSection CtrlVolume() {
    CtrlVolSection volume;
    volume.ctrlid = 0;
    volume.volid = 0;
    volume.disks = "1,2";
    volume.raid_level = "1";
    volume.vol_name = "vol0";
    volume.volume_size = "100GB";
    volume.strip_size = "128K";
    return volume;
}

MicroVolSection MicroVolume() {
    MicroVolSection volume;
    volume.disks = "1,2";
    volume.raid_level = "1";
    volume.vol_name = "vol0";
    volume.volume_size = "100GB";
    volume.strip_size = "128K";
    return volume;
}

OobMicroVolSection OobMicroVolume() {
    OobMicroVolSection volume;
    volume.disks = "1,2";
    volume.raid_level = "1";
    volume.vol_name = "vol0";
    volume.volume_size = "100GB";
    volume.strip_size = "128K";
    return volume;
}

OobVrocVolSection OobVrocVolume() {
    OobVrocVolSection volume;
    volume.disks = "1,2";
    volume.raid_level = "1";
    volume.vol_name = "vol0";
    volume.volume_size = "100GB";
    volume.strip_size = "128K";
    return volume;
}

VrocWinVolSection VrocWinVolume() {
    VrocWinVolSection volume;
    volume.raid_level = 1;
    volume.vol_name = "vol0";
    volume.disks = "1,2";
    return volume;
}

M2Section M2Volume() {
    M2Section section;
    section.m2id = 0;
    section.volid = 0;
    section.raid_level = "1";
    section.vol_name = "vol0";
    section.strip_size = "128K";
    return section;
}

CtrlSection Ctrl(const CtrlVolSection& volume) {
    CtrlSection section;
    section.id = 0;
    section.volumes.push_back(volume);
    return section;
}

MicroCtrlSection Micro(const MicroVolSection& volume) {
    MicroCtrlSection section;
    section.volumes.push_back(volume);
    return section;
}

OobMicroCtrlSection OobMicro(const OobMicroVolSection& volume) {
    OobMicroCtrlSection section;
    section.volumes.push_back(volume);
    return section;
}

OobVrocCtrlSection OobVroc(const OobVrocVolSection& volume) {
    OobVrocCtrlSection section;
    section.volumes.push_back(volume);
    return section;
}

VrocWinCtrlSection VrocWin(const VrocWinVolSection& volume) {
    VrocWinCtrlSection section;
    section.volumes.push_back(volume);
    return section;
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

const Texts kCfcLevels = {"0", "1", "5"};

class RaidConfigCheckerTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }

    std::string LogText() const {
        const std::string file = dir_.File("raidcfg.log");
        return raidcfg_test::FileExists(file) ? ReadFile(file) : std::string();
    }

    bool Cfc(const CtrlSection& section, const std::string& vendor = "Broadcom") {
        return checker_.CheckCtrlSectionCFC(section, kCfcLevels, vendor);
    }

    raidcfg_test::TempDir dir_;
    RaidConfigChecker checker_;
};

// The well-formed volumes pass, so every other test fails for the one reason it sets up.

TEST_F(RaidConfigCheckerTest, WellFormedVolumesPassEveryEntryOperation) {
    EXPECT_TRUE(checker_.CheckLsiCtrlSection(Ctrl(CtrlVolume())));
    EXPECT_TRUE(checker_.CheckOobCtrlSection(Ctrl(CtrlVolume())));
    EXPECT_TRUE(Cfc(Ctrl(CtrlVolume())));
    EXPECT_TRUE(checker_.CheckM2Section(M2Volume()));
    EXPECT_TRUE(checker_.CheckMicroSection(Micro(MicroVolume())));
    EXPECT_TRUE(checker_.CheckOobMicroSection(OobMicro(OobMicroVolume())));
    EXPECT_TRUE(checker_.CheckOobVrocSection(OobVroc(OobVrocVolume())));
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(VrocWinVolume())));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

// Failure's line

TEST_F(RaidConfigCheckerTest, TakeErrorTextOfAFreshCheckerIsEmpty) {
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, TakeErrorTextEmptiesTheLineSoASecondCallGivesEmptyText) {
    CtrlVolSection volume = CtrlVolume();
    volume.raid_level = "7";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> 7 is out of scope");
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, LaterFailureReplacesTheEarlierLine) {
    CtrlVolSection volume = CtrlVolume();
    volume.raid_level = "7";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    volume = CtrlVolume();
    volume.disks = "1,1";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, PassingCheckLeavesAnUntakenLineInPlace) {
    CtrlVolSection volume = CtrlVolume();
    volume.raid_level = "7";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    EXPECT_TRUE(checker_.CheckLsiCtrlSection(Ctrl(CtrlVolume())));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> 7 is out of scope");
}

TEST_F(RaidConfigCheckerTest, EmptyDisksFailOnLsiWithTwoBlanksInTheLine) {
    CtrlVolSection volume = CtrlVolume();
    volume.disks = "";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "disks ->  is out of scope");
}

// Sections without volumes

TEST_F(RaidConfigCheckerTest, SectionWithoutVolumesPassesEveryEntryOperation) {
    CtrlSection ctrl;
    ctrl.global_hot_spares = "3,4";
    MicroCtrlSection micro;
    micro.global_hot_spares = "3,4";
    OobVrocCtrlSection oob_vroc;
    oob_vroc.global_hot_spares = "3,4";
    VrocWinCtrlSection vroc_win;
    vroc_win.global_hot_spares = "3,4";
    EXPECT_TRUE(checker_.CheckLsiCtrlSection(ctrl));
    EXPECT_TRUE(checker_.CheckOobCtrlSection(ctrl));
    EXPECT_TRUE(Cfc(ctrl));
    EXPECT_TRUE(checker_.CheckMicroSection(micro));
    EXPECT_TRUE(checker_.CheckOobMicroSection(OobMicroCtrlSection()));
    EXPECT_TRUE(checker_.CheckOobVrocSection(oob_vroc));
    EXPECT_TRUE(checker_.CheckVroc_winSection(vroc_win));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, SectionWithoutVolumesFailsWhenItsGlobalHotSparesFail) {
    CtrlSection ctrl;
    ctrl.global_hot_spares = "3;4";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(ctrl));
    EXPECT_EQ(checker_.TakeErrorText(), "global_hot_spares -> 3;4 is out of scope");
    EXPECT_FALSE(checker_.CheckOobCtrlSection(ctrl));
    EXPECT_EQ(checker_.TakeErrorText(), "global_hot_spares -> 3;4 is out of scope");
    MicroCtrlSection micro;
    micro.global_hot_spares = "3;4";
    EXPECT_FALSE(checker_.CheckMicroSection(micro));
    EXPECT_EQ(checker_.TakeErrorText(), "global_hot_spares -> 3;4 is out of scope");
    OobVrocCtrlSection oob_vroc;
    oob_vroc.global_hot_spares = "3;4";
    EXPECT_FALSE(checker_.CheckOobVrocSection(oob_vroc));
    EXPECT_EQ(checker_.TakeErrorText(), "global_hot_spares -> 3;4 is out of scope");
    VrocWinCtrlSection vroc_win;
    vroc_win.global_hot_spares = "3;4";
    EXPECT_FALSE(checker_.CheckVroc_winSection(vroc_win));
    EXPECT_EQ(checker_.TakeErrorText(), "global_hot_spares -> 3;4 is out of scope");
}

TEST_F(RaidConfigCheckerTest, CfcSectionWithoutVolumesPassesWhateverItsGlobalHotSpares) {
    CtrlSection ctrl;
    ctrl.global_hot_spares = "3;4";
    EXPECT_TRUE(Cfc(ctrl));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

// Duplicate test within the entry operations

TEST_F(RaidConfigCheckerTest, DisksOneOneFailTheDuplicateTest) {
    CtrlVolSection volume = CtrlVolume();
    volume.disks = "1,1";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, DisksOneOneFailTheDuplicateTestOnEveryFamilyThatHasIt) {
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.disks = "1,1";
    EXPECT_FALSE(checker_.CheckOobCtrlSection(Ctrl(ctrl)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
    EXPECT_FALSE(Cfc(Ctrl(ctrl)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
    MicroVolSection micro = MicroVolume();
    micro.disks = "1,1";
    EXPECT_FALSE(checker_.CheckMicroSection(Micro(micro)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.disks = "1,1";
    EXPECT_FALSE(checker_.CheckOobMicroSection(OobMicro(oob_micro)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
    OobVrocVolSection oob_vroc = OobVrocVolume();
    oob_vroc.disks = "1,1";
    EXPECT_FALSE(checker_.CheckOobVrocSection(OobVroc(oob_vroc)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, DiskThatIsAlsoHotSpareFailsOnLsiOobLsiMicrochipAndOobMicrochip) {
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.hot_spares = "2";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(ctrl)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
    EXPECT_FALSE(checker_.CheckOobCtrlSection(Ctrl(ctrl)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
    MicroVolSection micro = MicroVolume();
    micro.hot_spares = "2";
    EXPECT_FALSE(checker_.CheckMicroSection(Micro(micro)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.hot_spares = "2";
    EXPECT_FALSE(checker_.CheckOobMicroSection(OobMicro(oob_micro)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, DiskThatIsAlsoHotSparePassesOnOobCfc) {
    CtrlVolSection volume = CtrlVolume();
    volume.hot_spares = "2";
    EXPECT_TRUE(Cfc(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, DisksRestPassOobLsiWithoutDuplicateTest) {
    CtrlVolSection volume = CtrlVolume();
    volume.disks = "REST";
    volume.hot_spares = "1,1";
    EXPECT_TRUE(checker_.CheckOobCtrlSection(Ctrl(volume)));
    volume.disks = "rest";
    EXPECT_TRUE(checker_.CheckOobCtrlSection(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, DisksRestFailLsiAndOobCfc) {
    CtrlVolSection volume = CtrlVolume();
    volume.disks = "REST";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "disks -> REST is out of scope");
    EXPECT_FALSE(Cfc(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "disks -> REST is out of scope");
}

TEST_F(RaidConfigCheckerTest, DisksRestInOtherCaseFailOobLsi) {
    CtrlVolSection volume = CtrlVolume();
    volume.disks = "Rest";
    EXPECT_FALSE(checker_.CheckOobCtrlSection(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "disks -> Rest is out of scope");
}

TEST_F(RaidConfigCheckerTest, OobVrocDuplicateTestLooksAtDisksOnly) {
    OobVrocVolSection volume = OobVrocVolume();
    volume.disks = "1,2:2,3";
    EXPECT_FALSE(checker_.CheckOobVrocSection(OobVroc(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, SameDiskInTwoVolumesOfOneControllerPasses) {
    CtrlSection section = Ctrl(CtrlVolume());
    section.volumes.push_back(CtrlVolume());
    section.global_hot_spares = "1";
    EXPECT_TRUE(checker_.CheckLsiCtrlSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, GlobalHotSpareEqualToAMemberDiskPasses) {
    CtrlSection section = Ctrl(CtrlVolume());
    section.global_hot_spares = "2";
    EXPECT_TRUE(checker_.CheckLsiCtrlSection(section));
    EXPECT_TRUE(checker_.CheckOobCtrlSection(section));
    MicroCtrlSection micro = Micro(MicroVolume());
    micro.global_hot_spares = "2";
    EXPECT_TRUE(checker_.CheckMicroSection(micro));
    OobVrocCtrlSection oob_vroc = OobVroc(OobVrocVolume());
    oob_vroc.global_hot_spares = "2";
    EXPECT_TRUE(checker_.CheckOobVrocSection(oob_vroc));
}

TEST_F(RaidConfigCheckerTest, DuplicateInSecondVolumeFailsAfterFirstVolumePasses) {
    CtrlSection section = Ctrl(CtrlVolume());
    CtrlVolSection second = CtrlVolume();
    second.disks = "3,4";
    second.hot_spares = "4";
    section.volumes.push_back(second);
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, ScopeCheckOfEveryVolumeComesBeforeTheDuplicateTest) {
    CtrlVolSection first = CtrlVolume();
    first.disks = "1,1";
    CtrlVolSection second = CtrlVolume();
    second.strip_size = "128";
    CtrlSection section = Ctrl(first);
    section.volumes.push_back(second);
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "strip_size -> 128 is out of scope");
}

// DisksDupCheck

TEST_F(RaidConfigCheckerTest, DisksDupCheckPassesDistinctDisksAndHotSpares) {
    EXPECT_TRUE(checker_.DisksDupCheck("1,2:3,4", "5,6"));
    EXPECT_TRUE(checker_.DisksDupCheck("1", ""));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, DisksDupCheckFindsDuplicateWithinOneSpan) {
    EXPECT_FALSE(checker_.DisksDupCheck("3,1,3", ""));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, DisksDupCheckFindsDuplicateAcrossSpans) {
    EXPECT_FALSE(checker_.DisksDupCheck("1,2:2,3", ""));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, DisksDupCheckFindsDiskRepeatedAsHotSpare) {
    EXPECT_FALSE(checker_.DisksDupCheck("1,2:3,4", "5,3"));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, DisksDupCheckFindsHotSpareGivenTwice) {
    EXPECT_FALSE(checker_.DisksDupCheck("1,2", "5,5"));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, DisksDupCheckTakesZeroOneAndOneForDifferentDisks) {
    EXPECT_TRUE(checker_.DisksDupCheck("01,1", ""));
    EXPECT_TRUE(checker_.DisksDupCheck("1,2", "02"));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, ZeroOneAndOneAsMemberAndHotSparePassLsi) {
    CtrlVolSection volume = CtrlVolume();
    volume.disks = "01,2";
    volume.hot_spares = "1";
    EXPECT_TRUE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, DisksDupCheckCountsTwoEmptyPiecesAsDuplicates) {
    EXPECT_FALSE(checker_.DisksDupCheck("1,,,2", ""));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
    EXPECT_FALSE(checker_.DisksDupCheck("", "1,,2"));
    EXPECT_EQ(checker_.TakeErrorText(), kDuplicated);
}

TEST_F(RaidConfigCheckerTest, DisksDupCheckPassesOneEmptyPiece) {
    EXPECT_TRUE(checker_.DisksDupCheck("1,,2", ""));
    EXPECT_TRUE(checker_.DisksDupCheck("", ""));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, DisksDupCheckSplitsHotSparesAtCommasOnly) {
    // A ":" in the hot spares is no separator: "2:3" is one piece, unlike disk 3.
    EXPECT_TRUE(checker_.DisksDupCheck("1,3", "2:3"));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

// CFC

TEST_F(RaidConfigCheckerTest, CfcKeepsTheLevelsItIsHandedForItsScopeCheck) {
    CtrlVolSection volume = CtrlVolume();
    volume.raid_level = "6";
    EXPECT_FALSE(checker_.CheckCtrlSectionCFC(Ctrl(volume), {"0", "1"}, "Broadcom"));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> 6 is out of scope");
    EXPECT_TRUE(checker_.CheckCtrlSectionCFC(Ctrl(volume), {"6"}, "Broadcom"));
    // The scope check by itself reads the levels of the last entry call.
    EXPECT_TRUE(checker_.OobLsiScopeCheckCFC(Ctrl(volume), "Broadcom"));
    volume.raid_level = "1";
    EXPECT_FALSE(checker_.OobLsiScopeCheckCFC(Ctrl(volume), "Broadcom"));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> 1 is out of scope");
}

TEST_F(RaidConfigCheckerTest, CfcWithNoSupportedLevelsRefusesEveryLevel) {
    EXPECT_FALSE(checker_.CheckCtrlSectionCFC(Ctrl(CtrlVolume()), {}, "Broadcom"));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> 1 is out of scope");
}

// M.2

TEST_F(RaidConfigCheckerTest, M2TakesRaidLevelZeroAndOneOnly) {
    M2Section section = M2Volume();
    section.raid_level = "0";
    EXPECT_TRUE(checker_.CheckM2Section(section));
    for (const char* level : {"5", "10", "00", "01", " 1", "1E", ""}) {
        section.raid_level = level;
        EXPECT_FALSE(checker_.CheckM2Section(section)) << level;
        EXPECT_EQ(checker_.TakeErrorText(),
                  "raid_level -> " + std::string(level) + " is out of scope");
    }
}

TEST_F(RaidConfigCheckerTest, M2EmptyVolNameFailsWithTwoBlanks) {
    M2Section section = M2Volume();
    section.vol_name = "";
    EXPECT_FALSE(checker_.CheckM2Section(section));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_name ->  is out of scope");
}

TEST_F(RaidConfigCheckerTest, M2VolNameWithBlankFails) {
    M2Section section = M2Volume();
    section.vol_name = "my vol";
    EXPECT_FALSE(checker_.CheckM2Section(section));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_name -> my vol is out of scope");
}

TEST_F(RaidConfigCheckerTest, M2TakesEachOfItsStripSizes) {
    M2Section section = M2Volume();
    for (const char* size : {"32K", "64K", "128K", "256K", "512K"}) {
        section.strip_size = size;
        EXPECT_TRUE(checker_.CheckM2Section(section)) << size;
    }
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, M2StripSizeInLowerCaseFails) {
    M2Section section = M2Volume();
    section.strip_size = "128k";
    EXPECT_FALSE(checker_.CheckM2Section(section));
    EXPECT_EQ(checker_.TakeErrorText(), "strip_size -> 128k is out of scope");
}

TEST_F(RaidConfigCheckerTest, M2EmptyStripSizeFails) {
    M2Section section = M2Volume();
    section.strip_size = "";
    EXPECT_FALSE(checker_.CheckM2Section(section));
    EXPECT_EQ(checker_.TakeErrorText(), "strip_size ->  is out of scope");
}

TEST_F(RaidConfigCheckerTest, M2StripSizesOutsideItsListFail) {
    M2Section section = M2Volume();
    for (const char* size : {"16K", "1024K", "128", "128|", "128KB"}) {
        section.strip_size = size;
        EXPECT_FALSE(checker_.CheckM2Section(section)) << size;
        EXPECT_EQ(checker_.TakeErrorText(),
                  std::string("strip_size -> ") + size + " is out of scope");
    }
}

TEST_F(RaidConfigCheckerTest, M2OrderIsRaidLevelThenVolNameThenStripSize) {
    M2Section section;
    section.raid_level = "5";
    section.vol_name = "a b";
    section.strip_size = "1K";
    EXPECT_FALSE(checker_.CheckM2Section(section));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> 5 is out of scope");
    section.raid_level = "0";
    EXPECT_FALSE(checker_.CheckM2Section(section));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_name -> a b is out of scope");
    section.vol_name = "ab";
    EXPECT_FALSE(checker_.CheckM2Section(section));
    EXPECT_EQ(checker_.TakeErrorText(), "strip_size -> 1K is out of scope");
    section.strip_size = "64K";
    EXPECT_TRUE(checker_.CheckM2Section(section));
}

// VROC_WIN

TEST_F(RaidConfigCheckerTest, VrocWinRaidZeroWithOneDiskGivesItsSentence) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.raid_level = 0;
    volume.disks = "1";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "The RAID 0 must contain at least 2 disks.");
}

TEST_F(RaidConfigCheckerTest, VrocWinDiskCountSentenceIsLoggedAsError) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.raid_level = 0;
    volume.disks = "1";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    const std::string log = LogText();
    const std::string line = LineWith(log, "The RAID 0 must contain at least 2 disks.");
    ASSERT_NE(line, "") << log;
    EXPECT_NE(line.find("ERROR "), std::string::npos) << line;
}

TEST_F(RaidConfigCheckerTest, OutOfScopeLineIsNotLogged) {
    CtrlVolSection volume = CtrlVolume();
    volume.raid_level = "7";
    EXPECT_FALSE(checker_.CheckLsiCtrlSection(Ctrl(volume)));
    const std::string log = LogText();
    EXPECT_EQ(log.find("is out of scope"), std::string::npos) << log;
    EXPECT_EQ(log.find("ERROR "), std::string::npos) << log;
}

TEST_F(RaidConfigCheckerTest, VrocWinDisksWithCommaAndBlankCountTwoDisks) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.raid_level = 1;
    volume.disks = "1, 2";
    EXPECT_TRUE(checker_.IsVrocDiskList("1, 2"));
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "");
    // Three pieces for the disk list, but two disks for the count: RAID 5 wants three.
    volume.raid_level = 5;
    volume.RAID_write_hole = "Off";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "The RAID 5 must contain at least 3 disks.");
}

TEST_F(RaidConfigCheckerTest, VrocWinEmptyVolCapacityPasses) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.vol_capacity = "";
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
}

TEST_F(RaidConfigCheckerTest, VrocWinVolCapacityInLowerCasePasses) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.vol_capacity = "1.5gb";
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, VrocWinVolCapacityInPercentFails) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.vol_capacity = "50%";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_capacity -> 50% is out of scope");
}

TEST_F(RaidConfigCheckerTest, VrocWinLevelOneIgnoresVolStripSizeWhateverItHolds) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.raid_level = 1;
    for (const char* size : {"abc", "2K", "256K", "128|", "-"}) {
        volume.vol_strip_size = size;
        EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume))) << size;
    }
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, VrocWinOtherLevelsTestVolStripSize) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.raid_level = 0;
    volume.vol_strip_size = "256K";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_strip_size -> 256K is out of scope");
    volume.vol_strip_size = "128K";
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
    volume.vol_strip_size = "";
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
}

TEST_F(RaidConfigCheckerTest, VrocWinRaidFiveRequiresAWriteHolePolicy) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.raid_level = 5;
    volume.disks = "1,2,3";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "RAID_write_hole ->  is out of scope");
    volume.RAID_write_hole = "off";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "RAID_write_hole -> off is out of scope");
    volume.RAID_write_hole = "Off";
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
    volume.RAID_write_hole = "Distributed";
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, VrocWinOtherLevelsIgnoreTheWriteHolePolicy) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.RAID_write_hole = "anything";
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
    volume.raid_level = 0;
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
    volume.raid_level = 10;
    volume.disks = "1,2,3,4";
    EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume)));
}

TEST_F(RaidConfigCheckerTest, VrocWinRaidLevelLineShowsTheNumberAsDecimalText) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.raid_level = 6;
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> 6 is out of scope");
    volume.raid_level = -1;
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> -1 is out of scope");
}

TEST_F(RaidConfigCheckerTest, VrocWinTakesLevelsZeroOneFiveAndTen) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.RAID_write_hole = "Off";
    const std::vector<std::pair<int, const char*>> levels = {
        {0, "1,2"}, {1, "1,2"}, {5, "1,2,3"}, {10, "1,2,3,4"}};
    for (const auto& [level, disks] : levels) {
        volume.raid_level = level;
        volume.disks = disks;
        EXPECT_TRUE(checker_.CheckVroc_winSection(VrocWin(volume))) << level;
    }
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, VrocWinHasNoDuplicateTest) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.raid_level = 0;
    volume.disks = "1,1";
    VrocWinCtrlSection section = VrocWin(volume);
    section.global_hot_spares = "1";
    EXPECT_TRUE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, VrocWinEmptyDisksFailTheDiskList) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.disks = "";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "disks ->  is out of scope");
}

TEST_F(RaidConfigCheckerTest, VrocWinSpansAreNoDiskList) {
    VrocWinVolSection volume = VrocWinVolume();
    volume.disks = "1,2:3,4";
    EXPECT_FALSE(checker_.CheckVroc_winSection(VrocWin(volume)));
    EXPECT_EQ(checker_.TakeErrorText(), "disks -> 1,2:3,4 is out of scope");
}

TEST_F(RaidConfigCheckerTest, VrocWinOrderOfTestsFirstFailureWins) {
    VrocWinVolSection volume;
    volume.raid_level = 5;
    volume.disks = "1;2";
    volume.vol_name = "";
    volume.vol_capacity = "1TB";
    volume.vol_strip_size = "2K";
    volume.RAID_write_hole = "On";
    VrocWinCtrlSection section = VrocWin(volume);
    section.global_hot_spares = "x";
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "global_hot_spares -> x is out of scope");
    section.global_hot_spares = "";
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "disks -> 1;2 is out of scope");
    section.volumes[0].disks = "1,2";
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_name ->  is out of scope");
    section.volumes[0].vol_name = "vol0";
    section.volumes[0].raid_level = 7;
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level -> 7 is out of scope");
    section.volumes[0].raid_level = 5;
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_capacity -> 1TB is out of scope");
    section.volumes[0].vol_capacity = "100GB";
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_strip_size -> 2K is out of scope");
    section.volumes[0].vol_strip_size = "64K";
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "RAID_write_hole -> On is out of scope");
    section.volumes[0].RAID_write_hole = "Distributed";
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "The RAID 5 must contain at least 3 disks.");
    section.volumes[0].disks = "1 2 3";
    EXPECT_TRUE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "");
}

TEST_F(RaidConfigCheckerTest, VrocWinStopsAtTheFirstFailingVolume) {
    VrocWinVolSection first = VrocWinVolume();
    first.raid_level = 10;
    VrocWinVolSection second = VrocWinVolume();
    second.vol_name = "";
    VrocWinCtrlSection section = VrocWin(first);
    section.volumes.push_back(second);
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "The RAID 10 only supports 4 disks.");
}

TEST_F(RaidConfigCheckerTest, VrocWinTestsEveryVolumeInTurn) {
    VrocWinVolSection second = VrocWinVolume();
    second.vol_capacity = "5MB";
    VrocWinCtrlSection section = VrocWin(VrocWinVolume());
    section.volumes.push_back(second);
    EXPECT_FALSE(checker_.CheckVroc_winSection(section));
    EXPECT_EQ(checker_.TakeErrorText(), "vol_capacity -> 5MB is out of scope");
}

// IsVrocSupportedDisknum

class RaidConfigCheckerDisknumTest : public RaidConfigCheckerTest {
protected:
    // The sentence of a refusal, or "pass" when the count is accepted.
    std::string Judge(const std::string& level, const std::string& disks) {
        std::string message;
        if (checker_.IsVrocSupportedDisknum(level, disks, message)) {
            return message.empty() ? "pass" : "pass with " + message;
        }
        return message;
    }
};

TEST_F(RaidConfigCheckerDisknumTest, RaidZeroNeedsAtLeastTwoDisks) {
    EXPECT_EQ(Judge("0", ""), "The RAID 0 must contain at least 2 disks.");
    EXPECT_EQ(Judge("0", "1"), "The RAID 0 must contain at least 2 disks.");
    EXPECT_EQ(Judge("0", "1,2"), "pass");
    EXPECT_EQ(Judge("0", "1,2,3,4,5,6,7,8"), "pass");
}

TEST_F(RaidConfigCheckerDisknumTest, RaidOneTakesExactlyTwoDisks) {
    EXPECT_EQ(Judge("1", "1"), "The RAID 1 only supports 2 disks.");
    EXPECT_EQ(Judge("1", "1,2"), "pass");
    EXPECT_EQ(Judge("1", "1,2,3"), "The RAID 1 only supports 2 disks.");
}

TEST_F(RaidConfigCheckerDisknumTest, RaidFiveNeedsAtLeastThreeDisks) {
    EXPECT_EQ(Judge("5", "1,2"), "The RAID 5 must contain at least 3 disks.");
    EXPECT_EQ(Judge("5", "1,2,3"), "pass");
    EXPECT_EQ(Judge("5", "1,2,3,4,5"), "pass");
}

TEST_F(RaidConfigCheckerDisknumTest, RaidTenTakesExactlyFourDisks) {
    EXPECT_EQ(Judge("10", "1,2,3"), "The RAID 10 only supports 4 disks.");
    EXPECT_EQ(Judge("10", "1,2,3,4"), "pass");
    EXPECT_EQ(Judge("10", "1,2,3,4,5"), "The RAID 10 only supports 4 disks.");
}

TEST_F(RaidConfigCheckerDisknumTest, OtherLevelsPassWithAnyCount) {
    EXPECT_EQ(Judge("6", ""), "pass");
    EXPECT_EQ(Judge("-1", "1"), "pass");
    EXPECT_EQ(Judge("", ""), "pass");
}

TEST_F(RaidConfigCheckerDisknumTest, CommaAndBlankRunsCountAsOneSeparator) {
    EXPECT_EQ(Judge("1", "1, 2"), "pass");
    EXPECT_EQ(Judge("1", "1 ,, 2"), "pass");
    EXPECT_EQ(Judge("1", "1  2"), "pass");
    EXPECT_EQ(Judge("5", "1, 2 ,3"), "pass");
}

TEST_F(RaidConfigCheckerDisknumTest, SeparatorAtEitherEndGivesOneEmptyPiece) {
    EXPECT_EQ(Judge("1", "1,"), "pass");
    EXPECT_EQ(Judge("1", " 1"), "pass");
    EXPECT_EQ(Judge("0", ","), "pass");
}

// Trace lines

TEST_F(RaidConfigCheckerTest, EntryOperationLogsEnteringAndExitingWithTwoBlanks) {
    EXPECT_TRUE(checker_.CheckLsiCtrlSection(Ctrl(CtrlVolume())));
    const std::string log = LogText();
    const std::string entering =
        LineWith(log, "Entering  service::detail::RaidConfigChecker::CheckLsiCtrlSection");
    const std::string exiting =
        LineWith(log, "Exiting  service::detail::RaidConfigChecker::CheckLsiCtrlSection");
    ASSERT_NE(entering, "") << log;
    ASSERT_NE(exiting, "") << log;
    EXPECT_NE(entering.find("TRACE "), std::string::npos) << entering;
    EXPECT_LT(log.find("Entering  service::detail::RaidConfigChecker::LsiScopeCheck"),
              log.find("Exiting  service::detail::RaidConfigChecker::LsiScopeCheck"));
    EXPECT_LT(log.find("Exiting  service::detail::RaidConfigChecker::LsiScopeCheck"),
              log.find("Entering  service::detail::RaidConfigChecker::DisksDupCheck"));
}

TEST_F(RaidConfigCheckerTest, FailingEntryOperationStillLogsExiting) {
    M2Section section = M2Volume();
    section.raid_level = "5";
    EXPECT_FALSE(checker_.CheckM2Section(section));
    const std::string log = LogText();
    EXPECT_NE(log.find("Exiting  service::detail::RaidConfigChecker::CheckM2Section"),
              std::string::npos)
        << log;
}

} // namespace
