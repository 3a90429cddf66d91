// The per-family scope checks of the checker and its value tests.
#include <string>
#include <vector>

#include "collaborators/log.hpp"
#include "service/misc_raid_service/detail/raid_config_checker.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using service::detail::CtrlSection;
using service::detail::CtrlVolSection;
using service::detail::MicroCtrlSection;
using service::detail::MicroVolSection;
using service::detail::OobMicroCtrlSection;
using service::detail::OobMicroVolSection;
using service::detail::OobVrocCtrlSection;
using service::detail::OobVrocVolSection;
using service::detail::RaidConfigChecker;
using Texts = std::vector<std::string>;

// Volumes that every check of their family accepts; each test spoils what it is about.
CtrlVolSection CtrlVolume() {
    CtrlVolSection volume;
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

CtrlSection Ctrl(const CtrlVolSection& volume) {
    CtrlSection section;
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

const char* const kPass = "pass";

class RaidConfigCheckerScopeTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }

    // Each family's answer as one text: "pass", or the failure's line taken from the checker.
    std::string Outcome(bool passed) {
        std::string line = checker_.TakeErrorText();
        if (passed) {
            return line.empty() ? kPass : "pass, yet the line is " + line;
        }
        return line;
    }
    std::string Lsi(const CtrlSection& section) {
        return Outcome(checker_.CheckLsiCtrlSection(section));
    }
    std::string OobLsi(const CtrlSection& section) {
        return Outcome(checker_.CheckOobCtrlSection(section));
    }
    std::string Cfc(const CtrlSection& section, const std::string& vendor = "Broadcom") {
        return Outcome(checker_.CheckCtrlSectionCFC(section, {"0", "1", "5", "10"}, vendor));
    }
    std::string Microchip(const MicroCtrlSection& section) {
        return Outcome(checker_.CheckMicroSection(section));
    }
    std::string OobMicrochip(const OobMicroCtrlSection& section) {
        return Outcome(checker_.CheckOobMicroSection(section));
    }
    std::string OobVrocFamily(const OobVrocCtrlSection& section) {
        return Outcome(checker_.CheckOobVrocSection(section));
    }

    raidcfg_test::TempDir dir_;
    RaidConfigChecker checker_;
};

std::string Line(const std::string& label, const std::string& value) {
    return label + " -> " + value + " is out of scope";
}

// Order of tests, family by family: every value is spoilt, then mended one by one, so that
// each failure's line names the next key in the family's order.

TEST_F(RaidConfigCheckerScopeTest, LsiOrderOfTestsFirstFailureWins) {
    CtrlSection section = Ctrl(CtrlVolSection());
    CtrlVolSection& volume = section.volumes[0];
    section.global_hot_spares = "x";
    volume.disks = "x";
    volume.hot_spares = "x";
    volume.raid_level = "x";
    volume.vol_name = "a b";
    volume.write_policy = "9";
    volume.read_policy = "9";
    volume.io_policy = "2";
    volume.access_policy = "1";
    volume.cache_policy = "3";
    volume.volume_size = "1TB";
    volume.strip_size = "1M";
    volume.initialization = "x";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("global_hot_spares", "x"));
    section.global_hot_spares = "";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("disks", "x"));
    volume.disks = "1,2";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("hot_spares", "x"));
    volume.hot_spares = "3";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("raid_level", "x"));
    volume.raid_level = "1";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("vol_name", "a b"));
    volume.vol_name = "v";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("write_policy", "9"));
    volume.write_policy = "2";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("read_policy", "9"));
    volume.read_policy = "2";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("io_policy", "2"));
    volume.io_policy = "1";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("access_policy", "1"));
    volume.access_policy = "3";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("cache_policy", "3"));
    volume.cache_policy = "0";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("volume_size", "1TB"));
    volume.volume_size = "1GB";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), Line("strip_size", "1M"));
    volume.strip_size = "64k";
    EXPECT_EQ(Outcome(checker_.LsiScopeCheck(section)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, OobLsiOrderOfTestsFirstFailureWins) {
    CtrlSection section = Ctrl(CtrlVolSection());
    CtrlVolSection& volume = section.volumes[0];
    section.global_hot_spares = "x";
    volume.disks = "x";
    volume.hot_spares = "x";
    volume.raid_level = "x";
    volume.vol_name = "";
    volume.write_policy = "9";
    volume.read_policy = "9";
    volume.io_policy = "2";
    volume.access_policy = "1";
    volume.cache_policy = "3";
    volume.volume_size = "50";
    volume.strip_size = "1M";
    volume.initialization = "3";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("global_hot_spares", "x"));
    section.global_hot_spares = "4";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("disks", "x"));
    volume.disks = "rest";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("hot_spares", "x"));
    volume.hot_spares = "3";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("raid_level", "x"));
    volume.raid_level = "1";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("vol_name", ""));
    volume.vol_name = "v";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("write_policy", "9"));
    volume.write_policy = "0";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("read_policy", "9"));
    volume.read_policy = "0";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("io_policy", "2"));
    volume.io_policy = "0";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("access_policy", "1"));
    volume.access_policy = "0";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("cache_policy", "3"));
    volume.cache_policy = "2";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("volume_size", "50"));
    volume.volume_size = "50%";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("strip_size", "1M"));
    volume.strip_size = "64K";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), Line("initialization", "3"));
    volume.initialization = "2";
    EXPECT_EQ(Outcome(checker_.OobLsiScopeCheck(section)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, CfcOrderOfTestsFirstFailureWinsForBroadcom) {
    EXPECT_EQ(Cfc(CtrlSection()), kPass); // keeps the supported levels for the calls below
    CtrlSection section = Ctrl(CtrlVolSection());
    CtrlVolSection& volume = section.volumes[0];
    section.global_hot_spares = "x"; // not looked at
    volume.disks = "x";
    volume.hot_spares = "x"; // not looked at
    volume.raid_level = "6";
    volume.vol_name = "a b";
    volume.write_policy = "9";
    volume.read_policy = "9";
    volume.io_policy = "x"; // not looked at
    volume.access_policy = "1";
    volume.cache_policy = "3";
    volume.volume_size = "50%";
    volume.strip_size = "1|";
    volume.initialization = "3";
    const auto check = [&] { return Outcome(checker_.OobLsiScopeCheckCFC(section, "Broadcom")); };
    EXPECT_EQ(check(), Line("disks", "x"));
    volume.disks = "1:2";
    EXPECT_EQ(check(), Line("raid_level", "6"));
    volume.raid_level = "10";
    EXPECT_EQ(check(), Line("vol_name", "a b"));
    volume.vol_name = "";
    EXPECT_EQ(check(), Line("volume_size", "50%"));
    volume.volume_size = "0.5GB";
    EXPECT_EQ(check(), Line("strip_size", "1|"));
    volume.strip_size = "1mb";
    EXPECT_EQ(check(), Line("write_policy", "9"));
    volume.write_policy = "0";
    EXPECT_EQ(check(), Line("read_policy", "9"));
    volume.read_policy = "1";
    EXPECT_EQ(check(), Line("access_policy", "1"));
    volume.access_policy = "2";
    EXPECT_EQ(check(), Line("cache_policy", "3"));
    volume.cache_policy = "1";
    EXPECT_EQ(check(), Line("initialization", "3"));
    volume.initialization = "0";
    EXPECT_EQ(check(), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, MicrochipOrderOfTestsFirstFailureWins) {
    MicroCtrlSection section = Micro(MicroVolSection());
    MicroVolSection& volume = section.volumes[0];
    section.global_hot_spares = "x";
    volume.disks = "1:2";
    volume.hot_spares = "x";
    volume.raid_level = "x";
    volume.vol_name = "";
    volume.io_policy = "3";
    volume.volume_size = "50%";
    volume.strip_size = "";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), Line("global_hot_spares", "x"));
    section.global_hot_spares = "";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), Line("disks", "1:2"));
    volume.disks = "";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), Line("hot_spares", "x"));
    volume.hot_spares = "";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), Line("raid_level", "x"));
    volume.raid_level = "1triple";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), Line("vol_name", ""));
    volume.vol_name = "v";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), Line("io_policy", "3"));
    volume.io_policy = "2";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), Line("volume_size", "50%"));
    volume.volume_size = "10MB";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), Line("strip_size", ""));
    volume.strip_size = "256K";
    EXPECT_EQ(Outcome(checker_.MicroScopeCheck(section)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, OobMicrochipOrderOfTestsFirstFailureWins) {
    OobMicroCtrlSection section = OobMicro(OobMicroVolSection());
    OobMicroVolSection& volume = section.volumes[0];
    volume.disks = "1:2,3";
    volume.hot_spares = "x";
    volume.raid_level = "x";
    volume.vol_name = "";
    volume.volume_size = "50%";
    volume.strip_size = "";
    volume.write_policy = "0";
    volume.read_policy = "2";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), Line("disks", "1:2,3"));
    volume.disks = "1,2:3,4";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), Line("hot_spares", "x"));
    volume.hot_spares = "5";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), Line("raid_level", "x"));
    volume.raid_level = "10";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), Line("vol_name", ""));
    volume.vol_name = "v";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), Line("volume_size", "50%"));
    volume.volume_size = "10MB";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), Line("strip_size", ""));
    volume.strip_size = "256K";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), Line("write_policy", "0"));
    volume.write_policy = "3";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), Line("read_policy", "2"));
    volume.read_policy = "1";
    EXPECT_EQ(Outcome(checker_.OobMicroScopeCheck(section)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, OobVrocOrderOfTestsFirstFailureWins) {
    OobVrocCtrlSection section = OobVroc(OobVrocVolSection());
    OobVrocVolSection& volume = section.volumes[0];
    section.global_hot_spares = "x";
    volume.disks = "";
    volume.raid_level = "6";
    volume.vol_name = "";
    volume.volume_size = "50%";
    volume.strip_size = "";
    EXPECT_EQ(Outcome(checker_.OobVrocScopeCheck(section)), Line("global_hot_spares", "x"));
    section.global_hot_spares = "7";
    EXPECT_EQ(Outcome(checker_.OobVrocScopeCheck(section)), Line("disks", ""));
    volume.disks = "1,2,3";
    EXPECT_EQ(Outcome(checker_.OobVrocScopeCheck(section)), Line("raid_level", "6"));
    volume.raid_level = "5";
    EXPECT_EQ(Outcome(checker_.OobVrocScopeCheck(section)), Line("vol_name", ""));
    volume.vol_name = "v";
    EXPECT_EQ(Outcome(checker_.OobVrocScopeCheck(section)), Line("volume_size", "50%"));
    volume.volume_size = "10GB";
    EXPECT_EQ(Outcome(checker_.OobVrocScopeCheck(section)), Line("strip_size", ""));
    volume.strip_size = "64K";
    EXPECT_EQ(Outcome(checker_.OobVrocScopeCheck(section)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, LaterVolumesAreNotLookedAtAfterAFailure) {
    CtrlVolSection first = CtrlVolume();
    first.strip_size = "64";
    CtrlVolSection second = CtrlVolume();
    second.disks = "x";
    CtrlSection section = Ctrl(first);
    section.volumes.push_back(second);
    EXPECT_EQ(Lsi(section), Line("strip_size", "64"));
}

TEST_F(RaidConfigCheckerScopeTest, EveryVolumeIsTestedInTurn) {
    CtrlVolSection second = CtrlVolume();
    second.vol_name = "two words";
    CtrlSection section = Ctrl(CtrlVolume());
    section.volumes.push_back(second);
    EXPECT_EQ(Lsi(section), Line("vol_name", "two words"));
    MicroVolSection micro = MicroVolume();
    micro.raid_level = "7";
    MicroCtrlSection micro_section = Micro(MicroVolume());
    micro_section.volumes.push_back(micro);
    EXPECT_EQ(Microchip(micro_section), Line("raid_level", "7"));
}

// Edge cases of the families

TEST_F(RaidConfigCheckerScopeTest, RaidLevelOneELowerCaseFailsOnLsi) {
    CtrlVolSection volume = CtrlVolume();
    volume.raid_level = "1e";
    EXPECT_EQ(Lsi(Ctrl(volume)), Line("raid_level", "1e"));
    volume.raid_level = "1E";
    EXPECT_EQ(Lsi(Ctrl(volume)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, WritePolicyThreeFailsOnLsiAndPassesOnOobMicrochip) {
    CtrlVolSection lsi = CtrlVolume();
    lsi.write_policy = "3";
    EXPECT_EQ(Lsi(Ctrl(lsi)), Line("write_policy", "3"));
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.write_policy = "3";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, WritePolicyZeroPassesOnLsiAndFailsOnOobMicrochip) {
    CtrlVolSection lsi = CtrlVolume();
    lsi.write_policy = "0";
    EXPECT_EQ(Lsi(Ctrl(lsi)), kPass);
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.write_policy = "0";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), Line("write_policy", "0"));
}

TEST_F(RaidConfigCheckerScopeTest, AccessPolicyOneFailsOnLsi) {
    CtrlVolSection volume = CtrlVolume();
    volume.access_policy = "1";
    EXPECT_EQ(Lsi(Ctrl(volume)), "access_policy -> 1 is out of scope");
}

TEST_F(RaidConfigCheckerScopeTest, VolumeSizeInPercentPassesOnOobLsiOnly) {
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.volume_size = "50%";
    EXPECT_EQ(OobLsi(Ctrl(ctrl)), kPass);
    EXPECT_EQ(Lsi(Ctrl(ctrl)), Line("volume_size", "50%"));
    EXPECT_EQ(Cfc(Ctrl(ctrl)), Line("volume_size", "50%"));
    MicroVolSection micro = MicroVolume();
    micro.volume_size = "50%";
    EXPECT_EQ(Microchip(Micro(micro)), Line("volume_size", "50%"));
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.volume_size = "50%";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), Line("volume_size", "50%"));
    OobVrocVolSection oob_vroc = OobVrocVolume();
    oob_vroc.volume_size = "50%";
    EXPECT_EQ(OobVrocFamily(OobVroc(oob_vroc)), Line("volume_size", "50%"));
}

TEST_F(RaidConfigCheckerScopeTest, VolumeSizeInTerabytesFailsEverywhere) {
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.volume_size = "1TB";
    EXPECT_EQ(Lsi(Ctrl(ctrl)), Line("volume_size", "1TB"));
    EXPECT_EQ(OobLsi(Ctrl(ctrl)), Line("volume_size", "1TB"));
    EXPECT_EQ(Cfc(Ctrl(ctrl)), Line("volume_size", "1TB"));
    EXPECT_EQ(Cfc(Ctrl(ctrl), "Microchip"), Line("volume_size", "1TB"));
    MicroVolSection micro = MicroVolume();
    micro.volume_size = "1TB";
    EXPECT_EQ(Microchip(Micro(micro)), Line("volume_size", "1TB"));
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.volume_size = "1TB";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), Line("volume_size", "1TB"));
    OobVrocVolSection oob_vroc = OobVrocVolume();
    oob_vroc.volume_size = "1TB";
    EXPECT_EQ(OobVrocFamily(OobVroc(oob_vroc)), Line("volume_size", "1TB"));
}

TEST_F(RaidConfigCheckerScopeTest, VolumeSizeLeftOutFailsOnEveryFamilyThatReadsIt) {
    const std::string line = "volume_size ->  is out of scope";
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.volume_size = "";
    EXPECT_EQ(Lsi(Ctrl(ctrl)), line);
    EXPECT_EQ(OobLsi(Ctrl(ctrl)), line);
    EXPECT_EQ(Cfc(Ctrl(ctrl)), line);
    MicroVolSection micro = MicroVolume();
    micro.volume_size = "";
    EXPECT_EQ(Microchip(Micro(micro)), line);
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.volume_size = "";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), line);
    OobVrocVolSection oob_vroc = OobVrocVolume();
    oob_vroc.volume_size = "";
    EXPECT_EQ(OobVrocFamily(OobVroc(oob_vroc)), line);
}

// A strip_size the file leaves out reaches the checker as the parser's default "128K".
TEST_F(RaidConfigCheckerScopeTest, StripSizeLeftOutPassesThroughItsDefault) {
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.strip_size = "128K";
    EXPECT_EQ(Lsi(Ctrl(ctrl)), kPass);
    EXPECT_EQ(OobLsi(Ctrl(ctrl)), kPass);
    EXPECT_EQ(Cfc(Ctrl(ctrl)), kPass);
    MicroVolSection micro = MicroVolume();
    micro.strip_size = "128K";
    EXPECT_EQ(Microchip(Micro(micro)), kPass);
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.strip_size = "128K";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), kPass);
    OobVrocVolSection oob_vroc = OobVrocVolume();
    oob_vroc.raid_level = "0";
    oob_vroc.strip_size = "128K";
    EXPECT_EQ(OobVrocFamily(OobVroc(oob_vroc)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, EmptyStripSizeFailsOnEveryFamilyThatReadsIt) {
    const std::string line = "strip_size ->  is out of scope";
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.strip_size = "";
    EXPECT_EQ(Lsi(Ctrl(ctrl)), line);
    EXPECT_EQ(OobLsi(Ctrl(ctrl)), line);
    EXPECT_EQ(Cfc(Ctrl(ctrl)), line);
    MicroVolSection micro = MicroVolume();
    micro.strip_size = "";
    EXPECT_EQ(Microchip(Micro(micro)), line);
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.strip_size = "";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), line);
    OobVrocVolSection oob_vroc = OobVrocVolume();
    oob_vroc.raid_level = "0";
    oob_vroc.strip_size = "";
    EXPECT_EQ(OobVrocFamily(OobVroc(oob_vroc)), line);
}

TEST_F(RaidConfigCheckerScopeTest, StripSizeWithoutUnitFailsAndWithUnitPassesOnLsi) {
    CtrlVolSection volume = CtrlVolume();
    volume.strip_size = "256";
    EXPECT_EQ(Lsi(Ctrl(volume)), Line("strip_size", "256"));
    volume.strip_size = "256k";
    EXPECT_EQ(Lsi(Ctrl(volume)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, StripSizeOfAnyNumberPassesOnLsiSinceNoListIsKnown) {
    CtrlVolSection volume = CtrlVolume();
    volume.strip_size = "3K";
    EXPECT_EQ(Lsi(Ctrl(volume)), kPass);
    volume.strip_size = "999999K";
    EXPECT_EQ(Lsi(Ctrl(volume)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, CfcOtherVendorWritePolicyNinePasses) {
    CtrlVolSection volume = CtrlVolume();
    volume.write_policy = "9";
    EXPECT_EQ(Cfc(Ctrl(volume), "Microchip"), kPass);
    EXPECT_EQ(Cfc(Ctrl(volume), "Broadcom"), Line("write_policy", "9"));
}

TEST_F(RaidConfigCheckerScopeTest, CfcOtherVendorLooksAtNoPolicy) {
    CtrlVolSection volume = CtrlVolume();
    volume.write_policy = "9";
    volume.read_policy = "9";
    volume.access_policy = "9";
    volume.cache_policy = "9";
    volume.initialization = "9";
    EXPECT_EQ(Cfc(Ctrl(volume), ""), kPass);
    EXPECT_EQ(Cfc(Ctrl(volume), "Marvell"), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, CfcVendorMustBeBroadcomExactly) {
    CtrlVolSection volume = CtrlVolume();
    volume.cache_policy = "9";
    EXPECT_EQ(Cfc(Ctrl(volume), "broadcom"), kPass);
    EXPECT_EQ(Cfc(Ctrl(volume), "Broadcom "), kPass);
    EXPECT_EQ(Cfc(Ctrl(volume), "BROADCOM"), kPass);
    EXPECT_EQ(Cfc(Ctrl(volume), "Broadcom"), Line("cache_policy", "9"));
}

TEST_F(RaidConfigCheckerScopeTest, CfcEmptyRaidLevelFailsEvenIfTheControllerReportsIt) {
    CtrlVolSection volume = CtrlVolume();
    volume.raid_level = "";
    EXPECT_FALSE(checker_.CheckCtrlSectionCFC(Ctrl(volume), {"", "1"}, "Broadcom"));
    EXPECT_EQ(checker_.TakeErrorText(), "raid_level ->  is out of scope");
}

TEST_F(RaidConfigCheckerScopeTest, CfcRaidLevelIsComparedExactlyWithTheReportedLevels) {
    CtrlVolSection volume = CtrlVolume();
    volume.raid_level = "1E";
    EXPECT_EQ(Cfc(Ctrl(volume)), Line("raid_level", "1E"));
    volume.raid_level = "RAID1";
    EXPECT_FALSE(checker_.CheckCtrlSectionCFC(Ctrl(volume), {"raid1"}, "Broadcom"));
    EXPECT_EQ(checker_.TakeErrorText(), Line("raid_level", "RAID1"));
    EXPECT_TRUE(checker_.CheckCtrlSectionCFC(Ctrl(volume), {"RAID1"}, "Broadcom"));
}

TEST_F(RaidConfigCheckerScopeTest, CfcEmptyVolNamePassesAndABadOneFails) {
    CtrlVolSection volume = CtrlVolume();
    volume.vol_name = "";
    EXPECT_EQ(Cfc(Ctrl(volume)), kPass);
    volume.vol_name = "a/b";
    EXPECT_EQ(Cfc(Ctrl(volume)), Line("vol_name", "a/b"));
}

TEST_F(RaidConfigCheckerScopeTest, CfcTakesStripSizeInMegabytes) {
    CtrlVolSection volume = CtrlVolume();
    volume.strip_size = "1mb";
    EXPECT_EQ(Cfc(Ctrl(volume)), kPass);
    EXPECT_EQ(Lsi(Ctrl(volume)), Line("strip_size", "1mb"));
    EXPECT_EQ(OobLsi(Ctrl(volume)), Line("strip_size", "1mb"));
}

TEST_F(RaidConfigCheckerScopeTest, CfcLooksAtNoHotSparesAndNoIoPolicy) {
    CtrlVolSection volume = CtrlVolume();
    volume.hot_spares = "x";
    volume.io_policy = "x";
    CtrlSection section = Ctrl(volume);
    section.global_hot_spares = "x";
    EXPECT_EQ(Cfc(section), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, CfcTakesNoSizeInPercent) {
    CtrlVolSection volume = CtrlVolume();
    volume.volume_size = "100%";
    EXPECT_EQ(Cfc(Ctrl(volume), "Microchip"), Line("volume_size", "100%"));
}

TEST_F(RaidConfigCheckerScopeTest, OobVrocRaidOneStripSizeAbcPasses) {
    OobVrocVolSection volume = OobVrocVolume();
    volume.raid_level = "1";
    volume.strip_size = "abc";
    EXPECT_EQ(OobVrocFamily(OobVroc(volume)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, OobVrocOtherLevelsTestStripSize) {
    OobVrocVolSection volume = OobVrocVolume();
    volume.strip_size = "abc";
    for (const char* level : {"0", "5", "10"}) {
        volume.raid_level = level;
        volume.disks = "1,2,3,4";
        EXPECT_EQ(OobVrocFamily(OobVroc(volume)), Line("strip_size", "abc")) << level;
    }
}

TEST_F(RaidConfigCheckerScopeTest, OobVrocTakesItsFourLevelsOnly) {
    OobVrocVolSection volume = OobVrocVolume();
    for (const char* level : {"0", "1", "5", "10"}) {
        volume.raid_level = level;
        EXPECT_EQ(OobVrocFamily(OobVroc(volume)), kPass) << level;
    }
    for (const char* level : {"6", "1E", "50", "00", ""}) {
        volume.raid_level = level;
        EXPECT_EQ(OobVrocFamily(OobVroc(volume)), Line("raid_level", level)) << level;
    }
}

TEST_F(RaidConfigCheckerScopeTest, LsiLooksAtNoInitialization) {
    CtrlVolSection volume = CtrlVolume();
    volume.initialization = "anything";
    EXPECT_EQ(Lsi(Ctrl(volume)), kPass);
    EXPECT_EQ(OobLsi(Ctrl(volume)), Line("initialization", "anything"));
}

TEST_F(RaidConfigCheckerScopeTest, OobLsiInitializationTakesThePolicyCodes) {
    CtrlVolSection volume = CtrlVolume();
    for (const char* code : {"", "0", "1", "2"}) {
        volume.initialization = code;
        EXPECT_EQ(OobLsi(Ctrl(volume)), kPass) << code;
    }
    volume.initialization = "3";
    EXPECT_EQ(OobLsi(Ctrl(volume)), Line("initialization", "3"));
    volume.initialization = "Full_Initialization";
    EXPECT_EQ(OobLsi(Ctrl(volume)), Line("initialization", "Full_Initialization"));
}

TEST_F(RaidConfigCheckerScopeTest, OobLsiRestSkipsOnlyTheDisksTest) {
    CtrlVolSection volume = CtrlVolume();
    volume.disks = "REST";
    volume.raid_level = "7";
    EXPECT_EQ(OobLsi(Ctrl(volume)), Line("raid_level", "7"));
}

TEST_F(RaidConfigCheckerScopeTest, IoPolicyTwoFailsOnLsiAndPassesOnMicrochip) {
    CtrlVolSection lsi = CtrlVolume();
    lsi.io_policy = "2";
    EXPECT_EQ(Lsi(Ctrl(lsi)), Line("io_policy", "2"));
    EXPECT_EQ(OobLsi(Ctrl(lsi)), Line("io_policy", "2"));
    MicroVolSection micro = MicroVolume();
    micro.io_policy = "2";
    EXPECT_EQ(Microchip(Micro(micro)), kPass);
    micro.io_policy = "3";
    EXPECT_EQ(Microchip(Micro(micro)), Line("io_policy", "3"));
}

TEST_F(RaidConfigCheckerScopeTest, MicrochipAloneLetsDisksBeEmpty) {
    MicroVolSection micro = MicroVolume();
    micro.disks = "";
    EXPECT_EQ(Microchip(Micro(micro)), kPass);
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.disks = "";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), Line("disks", ""));
    OobVrocVolSection oob_vroc = OobVrocVolume();
    oob_vroc.disks = "";
    EXPECT_EQ(OobVrocFamily(OobVroc(oob_vroc)), Line("disks", ""));
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.disks = "";
    EXPECT_EQ(OobLsi(Ctrl(ctrl)), Line("disks", ""));
    EXPECT_EQ(Cfc(Ctrl(ctrl)), Line("disks", ""));
}

TEST_F(RaidConfigCheckerScopeTest, MicrochipAloneRefusesSpans) {
    MicroVolSection micro = MicroVolume();
    micro.disks = "1,2:3,4";
    EXPECT_EQ(Microchip(Micro(micro)), Line("disks", "1,2:3,4"));
    CtrlVolSection ctrl = CtrlVolume();
    ctrl.disks = "1,2:3,4";
    EXPECT_EQ(Lsi(Ctrl(ctrl)), kPass);
    OobMicroVolSection oob_micro = OobMicroVolume();
    oob_micro.disks = "1,2:3,4";
    EXPECT_EQ(OobMicrochip(OobMicro(oob_micro)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, OobMicrochipReadPolicyTakesZeroAndOne) {
    OobMicroVolSection volume = OobMicroVolume();
    for (const char* code : {"", "0", "1"}) {
        volume.read_policy = code;
        EXPECT_EQ(OobMicrochip(OobMicro(volume)), kPass) << code;
    }
    volume.read_policy = "2";
    EXPECT_EQ(OobMicrochip(OobMicro(volume)), Line("read_policy", "2"));
}

TEST_F(RaidConfigCheckerScopeTest, PolicyWordsAreNoAcceptedValues) {
    CtrlVolSection volume = CtrlVolume();
    volume.write_policy = "Write Through";
    EXPECT_EQ(Lsi(Ctrl(volume)), Line("write_policy", "Write Through"));
    volume = CtrlVolume();
    volume.read_policy = "Read Ahead";
    EXPECT_EQ(OobLsi(Ctrl(volume)), Line("read_policy", "Read Ahead"));
}

TEST_F(RaidConfigCheckerScopeTest, EmptyPoliciesPass) {
    CtrlVolSection volume = CtrlVolume();
    EXPECT_EQ(Lsi(Ctrl(volume)), kPass);
    EXPECT_EQ(OobLsi(Ctrl(volume)), kPass);
    EXPECT_EQ(Cfc(Ctrl(volume)), kPass);
}

TEST_F(RaidConfigCheckerScopeTest, GlobalHotSparesDigitListPassesWithEmptyPieces) {
    CtrlSection section = Ctrl(CtrlVolume());
    section.global_hot_spares = "1,,2";
    EXPECT_EQ(Lsi(section), kPass);
    section.global_hot_spares = "1, 2";
    EXPECT_EQ(Lsi(section), Line("global_hot_spares", "1, 2"));
}

// Value tests

TEST_F(RaidConfigCheckerScopeTest, IsDigitListTakesDigitsAndEmptyPieces) {
    for (const char* value : {"", "0", "1", "12", "0123", "1,2", "1,,2", "1,2,", ",", ",,"}) {
        EXPECT_TRUE(checker_.IsDigitList(value)) << value;
    }
    for (const char* value : {"a", "1,a", "1 ,2", " 1", "-1", "+1", "1.5", "1:2", "1;2", "0x1"}) {
        EXPECT_FALSE(checker_.IsDigitList(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsRaidLevelValidComparesExactly) {
    for (const char* value :
         {"0", "1", "5", "1E", "6", "10", "50", "60", "00", "1triple", "10triple"}) {
        EXPECT_TRUE(checker_.IsRaidLevelValid(value)) << value;
    }
    for (const char* value : {"", "1e", "7", "2", "100", "01", " 1", "1 ", "1Triple", "raid1"}) {
        EXPECT_FALSE(checker_.IsRaidLevelValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsVrocRaidLevelValidTakesFourLevels) {
    for (const char* value : {"0", "1", "5", "10"}) {
        EXPECT_TRUE(checker_.IsVrocRaidLevelValid(value)) << value;
    }
    for (const char* value : {"", "6", "1E", "00", "50", "010"}) {
        EXPECT_FALSE(checker_.IsVrocRaidLevelValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsDisksValidRefusesTheEmptyValue) {
    EXPECT_FALSE(checker_.IsDisksValid(""));
}

TEST_F(RaidConfigCheckerScopeTest, IsDisksValidTakesDigitListsAndSpans) {
    for (const char* value : {"1", "1,2", "01,2", "1,2:3,4", "1,2:3,4:5,6", "1:2:3", "1,,2"}) {
        EXPECT_TRUE(checker_.IsDisksValid(value)) << value;
    }
    for (const char* value : {"a", "1,a", "1;2", "1 2", "1,2:a,4", "-1", "1.2"}) {
        EXPECT_FALSE(checker_.IsDisksValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsDisksValidSpanTestIsWeakerThanEqualSpans) {
    EXPECT_TRUE(checker_.IsDisksValid("1,2,3,4:5,6"));       // 6 is a multiple of 2
    EXPECT_TRUE(checker_.IsDisksValid("1,2:3"));             // 3 is a multiple of 1
    EXPECT_FALSE(checker_.IsDisksValid("1:2,3"));            // 3 is no multiple of 2
    EXPECT_FALSE(checker_.IsDisksValid("1,2:3,4,5"));        // 5 is no multiple of 3
    EXPECT_FALSE(checker_.IsDisksValid("1,2,3:4,5"));        // 5 is no multiple of 2
    EXPECT_FALSE(checker_.IsDisksValid("1,2:3,4,5,6"));      // 6 is no multiple of 4
    EXPECT_TRUE(checker_.IsDisksValid("1,2,3,4,5,6:7,8,9")); // 9 is a multiple of 3
}

TEST_F(RaidConfigCheckerScopeTest, IsDisksValidCountsEmptyPiecesAsIds) {
    EXPECT_TRUE(checker_.IsDisksValid(":"));
    EXPECT_TRUE(checker_.IsDisksValid("1,2:"));
    EXPECT_TRUE(checker_.IsDisksValid("1,2,"));
    EXPECT_FALSE(checker_.IsDisksValid(":1,2")); // 3 is no multiple of 2
}

TEST_F(RaidConfigCheckerScopeTest, IsVolNameValidTakesWordCharactersDashAndDot) {
    for (const char* value : {"a", "Z", "0", "_", "-", ".", "vol_0-1.data", "..", "VOL"}) {
        EXPECT_TRUE(checker_.IsVolNameValid(value)) << value;
    }
    for (const char* value : {"", " ", "a b", "a/b", "a|b", "a\\b", "a*", "a\n", "a\t", "\\w"}) {
        EXPECT_FALSE(checker_.IsVolNameValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsVolNameValidSetsNoLengthLimit) {
    EXPECT_TRUE(checker_.IsVolNameValid(std::string(300, 'v')));
}

TEST_F(RaidConfigCheckerScopeTest, IsOptionalVolNameValidAlsoTakesTheEmptyValue) {
    EXPECT_TRUE(checker_.IsOptionalVolNameValid(""));
    EXPECT_TRUE(checker_.IsOptionalVolNameValid("vol.0"));
    EXPECT_FALSE(checker_.IsOptionalVolNameValid(" "));
    EXPECT_FALSE(checker_.IsOptionalVolNameValid("a b"));
}

TEST_F(RaidConfigCheckerScopeTest, IsVolumeSizeValidTakesMegabytesAndGigabytes) {
    for (const char* value : {"100GB", "100MB", "0MB", "1.5GB", "0.25MB", "007GB"}) {
        EXPECT_TRUE(checker_.IsVolumeSizeValid(value)) << value;
    }
    for (const char* value : {"", "100", "100G", "100M", "100gb", "100Gb", "100mB", "100TB",
                              "100KB", "1.GB", ".5GB", "1.5.5GB", "50%", "GB", "-1GB", "1,5GB"}) {
        EXPECT_FALSE(checker_.IsVolumeSizeValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsVolumeSizeValidTakesTheBarInsideTheBrackets) {
    EXPECT_TRUE(checker_.IsVolumeSizeValid("100|B"));
    EXPECT_TRUE(checker_.IsVolumeSizeValid("1.5|B"));
    EXPECT_FALSE(checker_.IsVolumeSizeValid("100||B"));
    EXPECT_FALSE(checker_.IsVolumeSizeValid("100B"));
}

TEST_F(RaidConfigCheckerScopeTest, IsVolumeSizeValidMatchesTheWholeValue) {
    for (const char* value : {" 100GB", "100GB ", "100GB\n", "x100GB", "100GBx", "100GB100GB"}) {
        EXPECT_FALSE(checker_.IsVolumeSizeValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsOobVolumeSizeValidAlsoTakesPercent) {
    for (const char* value : {"50%", "100%", "0%", "12.5%", "150%", "100GB", "1.5MB", "100|B"}) {
        EXPECT_TRUE(checker_.IsOobVolumeSizeValid(value)) << value;
    }
    for (const char* value :
         {"", "%", "50", "50 %", "50%%", ".5%", "5.%", "50%GB", "1TB", "100gb", " 50%"}) {
        EXPECT_FALSE(checker_.IsOobVolumeSizeValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsStripSizeValidTakesDigitsWithKOrBar) {
    for (const char* value : {"256k", "256K", "0k", "1K", "128|", "99999999K"}) {
        EXPECT_TRUE(checker_.IsStripSizeValid(value)) << value;
    }
    for (const char* value : {"", "256", "k", "K", "256kb", "256KB", "256kk", "256M", "1mb", "1.5K",
                              " 256K", "256K ", "|", "128||"}) {
        EXPECT_FALSE(checker_.IsStripSizeValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsCfcStripSizeValidTakesKilobytesAndMegabytes) {
    for (const char* value : {"64k", "64K", "1mb", "1MB", "0k"}) {
        EXPECT_TRUE(checker_.IsCfcStripSizeValid(value)) << value;
    }
    // The bars here separate alternatives: no bar is taken as a unit.
    for (const char* value :
         {"", "64", "1Mb", "1mB", "1m", "1M", "1kb", "1KB", "1|", "mb", "1.5mb", "64k "}) {
        EXPECT_FALSE(checker_.IsCfcStripSizeValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsPolicyValidTakesZeroOneAndTwo) {
    for (const char* value : {"0", "1", "2"}) {
        EXPECT_TRUE(checker_.IsPolicyValid(value)) << value;
    }
    for (const char* value : {"", "3", "-1", "00", "01", " 1", "1 ", "Write Through"}) {
        EXPECT_FALSE(checker_.IsPolicyValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsOobWritePolicyValidCountsFromOne) {
    for (const char* value : {"1", "2", "3"}) {
        EXPECT_TRUE(checker_.IsOobWritePolicyValid(value)) << value;
    }
    for (const char* value : {"", "0", "4", "03"}) {
        EXPECT_FALSE(checker_.IsOobWritePolicyValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsIoPolicyValidTakesZeroAndOne) {
    for (const char* value : {"0", "1"}) {
        EXPECT_TRUE(checker_.IsIoPolicyValid(value)) << value;
    }
    for (const char* value : {"", "2", "-1", "Direct I/O"}) {
        EXPECT_FALSE(checker_.IsIoPolicyValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsAccessPolicyValidTakesZeroTwoAndThree) {
    for (const char* value : {"0", "2", "3"}) {
        EXPECT_TRUE(checker_.IsAccessPolicyValid(value)) << value;
    }
    for (const char* value : {"", "1", "4", "Read Write"}) {
        EXPECT_FALSE(checker_.IsAccessPolicyValid(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsVrocDiskListTakesCommaAndBlankAsSeparators) {
    for (const char* value : {"1", "1,2", "1 2", "1, 2", "1,,2", "1  2", ",", " ", "1,"}) {
        EXPECT_TRUE(checker_.IsVrocDiskList(value)) << value;
    }
    for (const char* value : {"", "a", "1;2", "1\t2", "1:2", "1,a", "-1"}) {
        EXPECT_FALSE(checker_.IsVrocDiskList(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsVrocSupportVolCapacityTakesGigabytesInAnyCase) {
    for (const char* value : {"", "100GB", "100gb", "100Gb", "100gB", "1.5gb", "0GB"}) {
        EXPECT_TRUE(checker_.IsVrocSupportVolCapacity(value)) << value;
    }
    for (const char* value :
         {"50%", "100MB", "100", "100G", "1.GB", ".5GB", " 100GB", "100|B", "1TB", "100GB "}) {
        EXPECT_FALSE(checker_.IsVrocSupportVolCapacity(value)) << value;
    }
}

TEST_F(RaidConfigCheckerScopeTest, IsVrocStripSizeTakesItsListInAnyCase) {
    for (const char* value :
         {"4K", "8K", "16K", "32K", "64K", "128K", "4k", "8k", "16k", "32k", "64k", "128k"}) {
        EXPECT_TRUE(checker_.IsVrocStripSize(value)) << value;
    }
    for (const char* value : {"", "2K", "256K", "04K", "128", "128|", "128KB", "K", " 4K"}) {
        EXPECT_FALSE(checker_.IsVrocStripSize(value)) << value;
    }
}

} // namespace
