// The firmware device order and key management tables: what reaches standard output, the page,
// and the answers of the two volume printers.
#include <iostream>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "backend/records.hpp"
#include "collaborators/basic_element_page.hpp"
#include "collaborators/element_table_data.hpp"
#include "collaborators/log.hpp"
#include "service/misc_raid_service/detail/service_raid_utils.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using HtmlPrint::BasicElementPage;
using HtmlPrint::ElementTableData;
using Quillon::protocol::FWDevOrderCtrl;
using Quillon::RaidConfig::EKMController;
using Quillon::RaidConfig::EKMVolume;
using Quillon::RaidConfig::FWDevOrderController;
using raidcfg_test::ExpectGolden;
using raidcfg_test::ReadFile;
using service::detail::RaidUtils;

// Sends std::cout into a string while it lives.
class CoutCapture {
public:
    CoutCapture() : old_(std::cout.rdbuf(captured_.rdbuf())) {}
    ~CoutCapture() { std::cout.rdbuf(old_); }
    CoutCapture(const CoutCapture&) = delete;
    CoutCapture& operator=(const CoutCapture&) = delete;

    std::string Text() const { return captured_.str(); }

private:
    std::ostringstream captured_;
    std::streambuf* old_;
};

EKMVolume Volume(int id, const std::string& name, const std::string& raid_type, int encrypted) {
    EKMVolume volume;
    volume.id = id;
    volume.name = name;
    volume.raid_type = raid_type;
    volume.encrypted = encrypted;
    return volume;
}

EKMController KeyController(std::vector<EKMVolume> volumes) {
    EKMController record;
    record.product_name = "RAID 9560-16i";
    record.encryption_mode = "local";
    record.slot = 4;
    record.volumes = std::move(volumes);
    return record;
}

class RaidUtilsKeysTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }
    std::string Log() const { return ReadFile(dir_.File("raidcfg.log")); }

    raidcfg_test::TempDir dir_;
    RaidUtils utils_;
};

TEST_F(RaidUtilsKeysTest, FirmwareDeviceOrderTablePairsEachIdWithItsRecord) {
    FWDevOrderCtrl first{"RAID 9560-8i", "SK001", "Enabled"};
    FWDevOrderCtrl second{"RAID 9540-8i", "SK002", "Disabled"};
    CoutCapture out;
    utils_.PrintFwDeviceOrder({1, 3}, {first, second});
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "keys/fw_device_order.txt", out.Text());
}

TEST_F(RaidUtilsKeysTest, OutOfBandFirmwareDeviceOrderTableAlsoGoesOntoThePage) {
    FWDevOrderController record;
    record.product_name = "RAID 9560-16i";
    record.serial_no = "SV1";
    record.fru_no = "03GX123";
    record.part_no = "PN-9";
    record.firmware_device_order = "Enabled";
    auto page = std::make_shared<BasicElementPage>(dir_.File("raid_result.html"), "");
    CoutCapture out;
    utils_.PrintOobFwDeviceOrder({5}, {record}, page);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "keys/oob_fw_device_order.txt", out.Text());
    ASSERT_EQ(page->GetTableBox().size(), 1U);
    const ElementTableData& table = page->GetTableBox().front();
    EXPECT_EQ(table.GetTitle(), "Broadcom Controller Information");
    EXPECT_EQ(table.GetTableClassBox(),
              (std::vector<std::string>{"Controller ID", "Product Name", "Serial No", "FRU No",
                                        "Part No", "Firmware Device Order"}));
    EXPECT_EQ(table.GetContextBox(), (std::vector<std::string>{"5", "RAID 9560-16i", "SV1",
                                                               "03GX123", "PN-9", "Enabled"}));
}

TEST_F(RaidUtilsKeysTest, EmptyInputPrintsNothingAndLeavesTheExitLineOut) {
    auto page = std::make_shared<BasicElementPage>(dir_.File("raid_result.html"), "");
    CoutCapture out;
    utils_.PrintFwDeviceOrder({}, {});
    utils_.PrintOobFwDeviceOrder({}, {}, page);
    utils_.PrintEKM({}, {});
    EXPECT_EQ(out.Text(), "");
    EXPECT_TRUE(page->GetTableBox().empty());
    const std::string log = Log();
    for (const char* name : {"PrintFwDeviceOrder", "PrintOobFwDeviceOrder", "PrintEKM"}) {
        EXPECT_NE(log.find(std::string("Entering  service::detail::RaidUtils::") + name),
                  std::string::npos)
            << name;
        EXPECT_EQ(log.find(std::string("Exiting  service::detail::RaidUtils::") + name),
                  std::string::npos)
            << name;
    }
}

TEST_F(RaidUtilsKeysTest, KeyManagementTableShowsSlotProductAndMode) {
    EKMController other = KeyController({});
    other.slot = 7;
    other.encryption_mode = "None";
    CoutCapture out;
    utils_.PrintEKM({1, 2}, {KeyController({}), other});
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "keys/ekm.txt", out.Text());
}

TEST_F(RaidUtilsKeysTest, VolumesAreTabledOneByOneAscendingWithRepeatedHeads) {
    CoutCapture out;
    const int printed = utils_.PrintVolumesEncryption(
        2, KeyController({Volume(3, "data", "RAID5", 0), Volume(0, "os", "RAID1", 1)}));
    EXPECT_EQ(printed, 1);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "keys/volumes_encryption.txt", out.Text());
}

TEST_F(RaidUtilsKeysTest, ControllerWithoutVolumesPrintsItsTableAloneAndAnswersZero) {
    CoutCapture out;
    EXPECT_EQ(utils_.PrintVolumesEncryption(2, KeyController({})), 0);
    EXPECT_EQ(out.Text().find("Volume Encryption Information"), std::string::npos);
    EXPECT_NE(out.Text().find("External Key Management Information"), std::string::npos);
}

TEST_F(RaidUtilsKeysTest, WantedVolumesPrintInTheirGivenOrder) {
    CoutCapture out;
    const int found = utils_.PrintVolumeEncryption(
        2, {3, 9, 0}, KeyController({Volume(0, "os", "RAID1", 1), Volume(3, "data", "RAID5", 2)}));
    EXPECT_EQ(found, 1);
    const std::string text = out.Text();
    const std::size_t data = text.find("data");
    const std::size_t os = text.find("os ");
    ASSERT_NE(data, std::string::npos);
    ASSERT_NE(os, std::string::npos);
    EXPECT_LT(data, os) << text;
    // Only a value of 1 counts as encrypted.
    EXPECT_NE(text.find("false"), std::string::npos);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "keys/volume_encryption_wanted.txt", text);
}

TEST_F(RaidUtilsKeysTest, WantedVolumesOfWhichNoneExistsAnswerZeroAfterTheControllerTable) {
    CoutCapture out;
    EXPECT_EQ(utils_.PrintVolumeEncryption(2, {7, 8}, KeyController({Volume(0, "os", "RAID1", 1)})),
              0);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "keys/volume_encryption_none_found.txt", out.Text());
    EXPECT_EQ(out.Text().find("Volume Encryption Information"), std::string::npos);
}

} // namespace
