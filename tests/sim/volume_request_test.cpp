#include <string>
#include <vector>

#include "sim/volume_request.hpp"

#include <gtest/gtest.h>

namespace {

namespace rc = Quillon::RaidConfig;
namespace pc = Quillon::protocol;
using sim::VolumeRequest;
using Spans = std::vector<std::vector<int>>;

rc::VolumeObject LsiRecord() {
    rc::VolumeObject record;
    record.controller_id = 2;
    record.volume_id = 5;
    record.disks = {{1, 2}, {3, 4}};
    record.raid_level = "10";
    record.hot_spares = {6};
    record.vol_name = "data";
    record.volume_size = "102400";
    record.strip_size = "128K";
    record.write_policy = 1;
    record.read_policy = 2;
    record.io_policy = 1;
    record.access_policy = 3;
    record.cache_policy = 2;
    record.initialization = 1;
    return record;
}

pc::MicrochipConfig MicrochipRecord() {
    pc::MicrochipConfig record;
    record.controller_id = 1;
    record.volume_id = 0;
    record.disks = "0,1,2";
    record.hot_spares = "3,4";
    record.raid_level = "5";
    record.vol_name = "db";
    record.io_policy = 2;
    record.volume_size = "512MB";
    record.strip_size = "64K";
    return record;
}

rc::VolRaidConfig SoftwareRecord() {
    rc::VolRaidConfig record;
    record.raid_level = "5";
    record.vol_name = "Volume0";
    record.disks = "0,1,2";
    record.vol_capacity = "100GB";
    record.vol_strip_size = "64";
    record.raid_write_hole = "Off";
    record.volume_id = "0";
    record.controller_id = "4";
    return record;
}

// Refused, with a reason that quotes what could not be read.
template <typename Record>
void ExpectRefused(const Record& record, const std::string& reason_part) {
    VolumeRequest request;
    std::string error;
    EXPECT_FALSE(VolumeRequest::From(record, request, error));
    EXPECT_NE(error.find(reason_part), std::string::npos) << error;
}

TEST(VolumeObjectRequest, EveryFieldIsTaken) {
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(LsiRecord(), request, error)) << error;
    EXPECT_EQ(request.controller_id, 2);
    EXPECT_EQ(request.spans, (Spans{{1, 2}, {3, 4}}));
    EXPECT_FALSE(request.rest_disks);
    EXPECT_EQ(request.raid_level, "10");
    EXPECT_EQ(request.name, "data");
    EXPECT_EQ(request.size, "102400");
    EXPECT_EQ(request.strip, "128K");
    EXPECT_EQ(request.hot_spares, std::vector<int>{6});
    EXPECT_EQ(request.write_policy, 1);
    EXPECT_EQ(request.read_policy, 2);
    EXPECT_EQ(request.io_policy, 1);
    EXPECT_EQ(request.access_policy, 3);
    EXPECT_EQ(request.cache_policy, 2);
    EXPECT_EQ(request.initialization, 1);
    EXPECT_TRUE(error.empty());
}

TEST(VolumeObjectRequest, RestTakesTheRemainingDisks) {
    rc::VolumeObject record = LsiRecord();
    record.disks.clear();
    record.rest_disks = true;
    record.volume_size = "50%";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_TRUE(request.rest_disks);
    EXPECT_TRUE(request.spans.empty());
    EXPECT_EQ(request.size, "50%");
}

TEST(VolumeObjectRequest, EmptySizeAndStripStayEmpty) {
    rc::VolumeObject record = LsiRecord();
    record.volume_size = "";
    record.strip_size = "";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.size, "");
    EXPECT_EQ(request.strip, "");
}

TEST(VolumeObjectRequest, MalformedRecordsAreRefused) {
    rc::VolumeObject no_disks = LsiRecord();
    no_disks.disks.clear();
    ExpectRefused(no_disks, "names no disks");

    rc::VolumeObject empty_spans = LsiRecord();
    empty_spans.disks = {{}, {}};
    ExpectRefused(empty_spans, "names no disks");

    rc::VolumeObject negative_disk = LsiRecord();
    negative_disk.disks = {{1, -2}};
    ExpectRefused(negative_disk, "disk list: -2 is not a disk id");

    rc::VolumeObject negative_spare = LsiRecord();
    negative_spare.hot_spares = {-1};
    ExpectRefused(negative_spare, "hot spare list: -1 is not a disk id");

    rc::VolumeObject no_level = LsiRecord();
    no_level.raid_level = " ";
    ExpectRefused(no_level, "names no RAID level");
}

TEST(MicrochipRequest, TextListsBecomeOneSpanAndSpares) {
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(MicrochipRecord(), request, error)) << error;
    EXPECT_EQ(request.controller_id, 1);
    EXPECT_EQ(request.spans, (Spans{{0, 1, 2}}));
    EXPECT_EQ(request.hot_spares, (std::vector<int>{3, 4}));
    EXPECT_EQ(request.raid_level, "5");
    EXPECT_EQ(request.name, "db");
    EXPECT_EQ(request.size, "512MB");
    EXPECT_EQ(request.strip, "64K");
    EXPECT_EQ(request.io_policy, 2);
}

TEST(MicrochipRequest, FractionalSizeBecomesWholeMegabytes) {
    pc::MicrochipConfig record = MicrochipRecord();
    record.volume_size = "1.5GB";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.size, "1536");

    record.volume_size = "0.4GB";
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.size, "409");
}

TEST(MicrochipRequest, UnsetIoPolicyAndNoSparesAndBlanks) {
    pc::MicrochipConfig record = MicrochipRecord();
    record.io_policy = -1;
    record.hot_spares = "";
    record.disks = " 4, 5 ,6 ";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.io_policy, 0);
    EXPECT_TRUE(request.hot_spares.empty());
    EXPECT_EQ(request.spans, (Spans{{4, 5, 6}}));
}

TEST(MicrochipRequest, RestWordTakesTheRemainingDisks) {
    for (const char* word : {"REST", "rest"}) {
        pc::MicrochipConfig record = MicrochipRecord();
        record.disks = word;
        VolumeRequest request;
        std::string error;
        ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
        EXPECT_TRUE(request.rest_disks);
        EXPECT_TRUE(request.spans.empty());
    }
}

TEST(MicrochipRequest, MalformedRecordsAreRefused) {
    pc::MicrochipConfig letter = MicrochipRecord();
    letter.disks = "0,a,2";
    ExpectRefused(letter, R"(disk list "0,a,2": "a" is not a disk id)");

    pc::MicrochipConfig signed_id = MicrochipRecord();
    signed_id.disks = "0,-1";
    ExpectRefused(signed_id, "\"-1\" is not a disk id");

    pc::MicrochipConfig too_large = MicrochipRecord();
    too_large.disks = "99999999999";
    ExpectRefused(too_large, "\"99999999999\" is not a disk id");

    pc::MicrochipConfig empty_entry = MicrochipRecord();
    empty_entry.disks = "1,,2";
    ExpectRefused(empty_entry, "disk list \"1,,2\" has an empty entry");

    pc::MicrochipConfig trailing = MicrochipRecord();
    trailing.disks = "1,2,";
    ExpectRefused(trailing, "has an empty entry");

    pc::MicrochipConfig spans = MicrochipRecord();
    spans.disks = "1,2:3,4";
    ExpectRefused(spans, "\"2:3\" is not a disk id");

    pc::MicrochipConfig no_disks = MicrochipRecord();
    no_disks.disks = "";
    ExpectRefused(no_disks, "names no disks");

    pc::MicrochipConfig spare = MicrochipRecord();
    spare.hot_spares = "3,x";
    ExpectRefused(spare, R"(hot spare list "3,x": "x" is not a disk id)");

    pc::MicrochipConfig no_level = MicrochipRecord();
    no_level.raid_level = "";
    ExpectRefused(no_level, "names no RAID level");
}

TEST(M2Request, TakesTheTwoLowestFreeDisksOfTheAdapter) {
    rc::M2ControllerObject record;
    record.controller_id = 7;
    record.vol_name = "boot";
    record.raid_level = "1";
    record.strip_size = "64K";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.controller_id, 7);
    EXPECT_TRUE(request.rest_disks);
    EXPECT_EQ(request.rest_count, 2);
    EXPECT_TRUE(request.spans.empty());
    EXPECT_EQ(request.raid_level, "1");
    EXPECT_EQ(request.name, "boot");
    EXPECT_EQ(request.size, "");
    EXPECT_EQ(request.strip, "64K");

    record.raid_level = "";
    ExpectRefused(record, "names no RAID level");
}

TEST(OobMicrochipRequest, ShortTripleLevelsAreSpelledOut) {
    pc::OobMicroConfig record;
    record.controller_id = 0;
    record.disks = {{0, 1, 2}};
    record.hot_spares = {5};
    record.raid_level = "1T";
    record.vol_name = "app";
    record.volume_size = "2048";
    record.strip_size = "256K";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.raid_level, "1triple");
    EXPECT_EQ(request.spans, (Spans{{0, 1, 2}}));
    EXPECT_EQ(request.hot_spares, std::vector<int>{5});
    EXPECT_EQ(request.size, "2048");
    EXPECT_EQ(request.strip, "256K");
    EXPECT_EQ(request.write_policy, 3); // the record's default
    EXPECT_EQ(request.read_policy, 0);

    record.raid_level = "10T";
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.raid_level, "10triple");
    record.raid_level = "1triple";
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.raid_level, "1triple");
}

TEST(OobMicrochipRequest, MalformedRecordsAreRefused) {
    pc::OobMicroConfig record;
    record.raid_level = "1";
    ExpectRefused(record, "names no disks");
    record.disks = {{0, -3}};
    ExpectRefused(record, "-3 is not a disk id");
    record.disks = {{0, 1}};
    record.hot_spares = {-4};
    ExpectRefused(record, "hot spare list: -4");
    record.hot_spares.clear();
    record.raid_level = "";
    ExpectRefused(record, "names no RAID level");
}

TEST(OobVrocRequest, SpansAndTexts) {
    pc::VolManDevConfig record;
    record.controller_id = 0;
    record.disks = {{0, 1}, {2, 3}};
    record.raid_level = "10";
    record.vol_name = "Volume1";
    record.volume_size = "1.5GB";
    record.strip_size = "64K";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.spans, (Spans{{0, 1}, {2, 3}}));
    EXPECT_EQ(request.raid_level, "10");
    EXPECT_EQ(request.size, "1536");
    EXPECT_EQ(request.strip, "64K");
    EXPECT_TRUE(request.hot_spares.empty());

    record.disks = {{0, -1}};
    ExpectRefused(record, "-1 is not a disk id");
    record.disks.clear();
    ExpectRefused(record, "names no disks");
    record.disks = {{0, 1}};
    record.raid_level = "";
    ExpectRefused(record, "names no RAID level");
}

TEST(SoftwareRequest, TextsAreRead) {
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(SoftwareRecord(), request, error)) << error;
    EXPECT_EQ(request.controller_id, 4);
    EXPECT_EQ(request.spans, (Spans{{0, 1, 2}}));
    EXPECT_EQ(request.raid_level, "5");
    EXPECT_EQ(request.name, "Volume0");
    EXPECT_EQ(request.size, "100GB");
    EXPECT_EQ(request.strip, "64");
}

TEST(SoftwareRequest, BlanksAndCommasBothSeparate) {
    rc::VolRaidConfig record = SoftwareRecord();
    record.disks = "0, 1 2,,3";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.spans, (Spans{{0, 1, 2, 3}}));
}

TEST(SoftwareRequest, CapacityInGigabytesWithAFraction) {
    rc::VolRaidConfig record = SoftwareRecord();
    record.vol_capacity = "7152.556640625GB";
    VolumeRequest request;
    std::string error;
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.size, "7324218");

    record.vol_capacity = "1.5gb";
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.size, "1536");

    record.vol_capacity = "";
    ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
    EXPECT_EQ(request.size, "");
}

TEST(SoftwareRequest, MalformedRecordsAreRefused) {
    rc::VolRaidConfig controller = SoftwareRecord();
    controller.controller_id = "x";
    ExpectRefused(controller, "controller id \"x\" is not a number");

    rc::VolRaidConfig no_controller = SoftwareRecord();
    no_controller.controller_id = "";
    ExpectRefused(no_controller, "controller id \"\" is not a number");

    rc::VolRaidConfig level = SoftwareRecord();
    level.raid_level = "5a";
    ExpectRefused(level, "RAID level \"5a\" is not a number");

    rc::VolRaidConfig no_level = SoftwareRecord();
    no_level.raid_level = "";
    ExpectRefused(no_level, "names no RAID level");

    rc::VolRaidConfig disk = SoftwareRecord();
    disk.disks = "0,1;2";
    ExpectRefused(disk, R"(disk list "0,1;2": "1;2" is not a disk id)");

    rc::VolRaidConfig no_disks = SoftwareRecord();
    no_disks.disks = " , ";
    ExpectRefused(no_disks, "names no disks");
}

TEST(SizeText, FormsWithoutAFractionStayAsGiven) {
    rc::VolumeObject record = LsiRecord();
    for (const char* size : {"512MB", "1GB", "2T", "50%", "abc", "1.5.5GB", "1.GB", "1.5XB"}) {
        record.volume_size = size;
        VolumeRequest request;
        std::string error;
        ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
        EXPECT_EQ(request.size, size);
    }
}

TEST(SizeText, FractionsInEveryUnit) {
    rc::VolumeObject record = LsiRecord();
    const std::vector<std::pair<std::string, std::string>> cases = {{"0.5MB", "0"},
                                                                    {"10.9", "10"},
                                                                    {"1.25g", "1280"},
                                                                    {"0.5TB", "524288"},
                                                                    {" 2.5 GB ", "2560"}};
    for (const auto& [size, megabytes] : cases) {
        record.volume_size = size;
        VolumeRequest request;
        std::string error;
        ASSERT_TRUE(VolumeRequest::From(record, request, error)) << error;
        EXPECT_EQ(request.size, megabytes) << size;
    }
}

} // namespace
