// The fwdeviceorder action on simulated machines: the local road through the in-band LSI
// backend and the out-of-band road through the BMC, showing and changing the order.
#include <cstdint>
#include <string>
#include <vector>

#include "backend/backend_platform.hpp"
#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/raid_error_code.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "sim/machine.hpp"
#include "sim/machine_store.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/service/misc_raid_service/detail/client_rows.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ExpectGolden;
using raidcfg_test::ReadFile;
using service::detail::RaidClient;

// Local: LSI 0 (order "Disabled"), LSI 1 (no such function) and LSI 2 (order "Enabled", its
// faults in place of FAULTS) under 1, 2 and 3; Microchip 0 under 4.
const char* const kLocal = R"({"controllers": [
  {"family": "LSI", "id": 0, "product_name": "RAID 9560-8i", "serial_no": "SK0", "disks": [],
   "fw_device_order": "Disabled", "fw_device_order_modes": ["Enabled", "Disabled"]},
  {"family": "LSI", "id": 1, "product_name": "RAID 9540-8i", "serial_no": "SK1", "disks": []},
  {"family": "LSI", "id": 2, "product_name": "RAID 9560-16i", "serial_no": "SK2", FAULTS
   "disks": [], "fw_device_order": "Enabled", "fw_device_order_modes": ["Enabled", "Disabled"]},
  {"family": "MICROCHIP", "id": 0, "disks": []}
]})";

// Out-of-band: LSI 0 (order "Enabled") and LSI 1 (no such function) under 1 and 2, Microchip 0
// under 3. LSI 0's faults stand in place of FAULTS.
const char* const kOob = R"({"controllers": [
  {"family": "OOB_LSI", "id": 0, "product_name": "RAID 9560-16i", "serial_no": "SV0", FAULTS
   "fru_no": "03GX1", "part_no": "PN-1", "disks": [],
   "fw_device_order": "Enabled", "fw_device_order_modes": ["Enabled", "Disabled"]},
  {"family": "OOB_LSI", "id": 1, "product_name": "RAID 9540-8i", "disks": []},
  {"family": "OOB_MICROCHIP", "id": 0, "disks": []}
]})";

std::string WithFaults(const char* json, const std::string& faults = "") {
    std::string text = json;
    const std::size_t at = text.find("FAULTS");
    text.replace(at, 6, faults.empty() ? std::string() : "\"faults\": " + faults + ",");
    return text;
}

using client_test::Row;
using client_test::Rows;

const std::string kOk = "Success.";
const std::string kNotSupported = "Function isn't supported on the target device.";

class RaidClientFwOrderTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    std::string MachinePath() const { return dir_.File("machine.json"); }

    void UseMachine(const std::string& json) {
        raidcfg_test::WriteFile(MachinePath(), json);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(MachinePath(), error)) << error;
    }
    void OutOfBand() {
        option_.connect_option.kind = 2;
        option_.connect_option.target = "admin:secret@sim";
        option_.connect_option.user = "admin";
        option_.connect_option.password = "secret";
    }
    QuillonConnection::ConnectionInfo Connection() const {
        QuillonConnection::ConnectionInfo info;
        TesselConnect::GetRESTConnection(option_.connect_option, info);
        return info;
    }
    std::vector<QuillonConnection::ConnectionInfo> List() const {
        std::vector<QuillonConnection::ConnectionInfo> list;
        TesselConnect::GetRESTConnectionList(option_.connect_option, list);
        return list;
    }

    template <typename Action> std::uint32_t Capture(Action action) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = action();
        printed_ = testing::internal::GetCapturedStdout();
        return value;
    }

    // The firmware device order of a controller as the machine file holds it.
    std::string OrderOf(const std::string& family, int id) const {
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(sim::MachineStore(MachinePath()).Read(machine, error)) << error;
        for (const sim::Controller& controller : machine.controllers) {
            if (controller.family == family && controller.id == id) {
                return controller.fw_device_order.value_or("(none)");
            }
        }
        return "(missing)";
    }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
    std::string printed_;
};

TEST_F(RaidClientFwOrderTest, ShowOfAllLeavesOutControllersWithoutTheFunctionSilently) {
    UseMachine(WithFaults(kLocal));
    RaidClient client(option_);
    EXPECT_EQ(Capture([&] { return client.ShowWithFirmwareDeviceOrder(); }), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", kOk, 0}, {"ctrl3", kOk, 0}}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "fw_order/local_show_all.txt", printed_);
}

TEST_F(RaidClientFwOrderTest, ShowOfAllTellsAFailureWithTheProtocolLayersText) {
    UseMachine(WithFaults(
        kLocal, R"([{"op": "GetFirmwareDeviceOrderCtrl", "code": 3, "error_text": "no answer"}])"));
    RaidClient client(option_);
    EXPECT_EQ(Capture([&] { return client.ShowWithFirmwareDeviceOrder(); }),
              result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", kOk, 0}, {"ctrl3", "no answer", 3}}));
    // The text is the second one of the LSI backend, not its error_text.
    const auto backend = client.GetRaidIndex(3).backend;
    ASSERT_NE(backend, nullptr);
    EXPECT_EQ(backend->error_text, "");
}

TEST_F(RaidClientFwOrderTest, MachineWithoutLsiControllersHasNoFirmwareDeviceOrderController) {
    UseMachine(R"({"controllers": [{"family": "MICROCHIP", "id": 0, "disks": []}]})");
    RaidClient client(option_);
    EXPECT_EQ(Capture([&] { return client.ShowWithFirmwareDeviceOrder(); }),
              result::RaidNoFwDeviceOrderController);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_, "\nraidconfig firmware device order:\n");
}

TEST_F(RaidClientFwOrderTest, ShowOfOneControllerByItsNumber) {
    UseMachine(WithFaults(kLocal));
    option_.ctrl_index = "3";
    {
        RaidClient client(option_);
        EXPECT_EQ(Capture([&] { return client.ShowWithFirmwareDeviceOrder(); }), result::Success);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl3", kOk, 0}}));
        ExpectGolden(RAIDCFG_TEST_DATA_DIR, "fw_order/local_show_one.txt", printed_);
    }
    option_.ctrl_index = "4";
    {
        RaidClient client(option_);
        Capture([&] { return client.ShowWithFirmwareDeviceOrder(); });
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl4", kNotSupported, 33}}));
    }
    option_.ctrl_index = "9";
    {
        RaidClient client(option_);
        Capture([&] { return client.ShowWithFirmwareDeviceOrder(); });
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl9", "The controller ID 9 does not exist.", 5}}));
    }
    // Named, a controller without the function is a row with the protocol layer's text.
    option_.ctrl_index = "2";
    RaidClient client(option_);
    Capture([&] { return client.ShowWithFirmwareDeviceOrder(); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl2", "the controller has no firmware device order", 33}}));
}

TEST_F(RaidClientFwOrderTest, ShowTablePrintsAlsoWhenConsoleOutputIsZero) {
    UseMachine(WithFaults(kLocal));
    option_.console_output = false;
    RaidClient client(option_);
    Capture([&] { return client.ShowWithFirmwareDeviceOrder(); });
    EXPECT_NE(printed_.find("\nraidconfig firmware device order:\n"), std::string::npos);
    EXPECT_NE(printed_.find("Firmware Device Order"), std::string::npos) << printed_;
    EXPECT_NE(printed_.find("SK2"), std::string::npos) << printed_;
    // Only the result table follows the console setting.
    EXPECT_EQ(printed_.find("Show Firmware Device Order Result"), std::string::npos);
}

TEST_F(RaidClientFwOrderTest, ChangeWithoutCtrlIndexAddressesMinusOne) {
    UseMachine(WithFaults(kLocal));
    option_.mode_value = "Enabled";
    RaidClient client(option_);
    EXPECT_EQ(Capture([&] { return client.TurnFirmwareDeviceOrder(); }),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND));
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl-1", "The controller ID -1 does not exist.", 5}}));
    EXPECT_NE(printed_.find("\nraidconfig change firmware device order mode:\n"),
              std::string::npos);
    EXPECT_NE(printed_.find("Change Firmware Device Order Mode Result"), std::string::npos);
}

TEST_F(RaidClientFwOrderTest, ChangeThenAlreadyNamesTheModeAsTheUserWroteIt) {
    UseMachine(WithFaults(kLocal));
    option_.ctrl_index = "1";
    option_.mode_value = "Enabled";
    {
        RaidClient client(option_);
        EXPECT_EQ(Capture([&] { return client.TurnFirmwareDeviceOrder(); }), result::Success);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl1",
                                     "The firmware device order mode for controller ID 1 has been "
                                     "successfully changed. Please reboot the system for the "
                                     "changes to take effect.",
                                     0}}));
    }
    EXPECT_EQ(OrderOf("LSI", 0), "Enabled");
    option_.mode_value = "eNABLED";
    RaidClient client(option_);
    // A single row of code 34 sums up to success.
    EXPECT_EQ(Capture([&] { return client.TurnFirmwareDeviceOrder(); }), result::Success);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1",
                                 "The firmware device order mode for controller ID 1 is already "
                                 "eNABLED.",
                                 34}}));
}

TEST_F(RaidClientFwOrderTest, UnknownFailureOfTheChangeIsCodeTwentySixWithoutTheBackendsText) {
    UseMachine(WithFaults(
        kLocal, R"([{"op": "SetFirmwareDeviceOrderCtrl", "code": 3, "error_text": "busy"}])"));
    option_.ctrl_index = "3";
    option_.mode_value = "Disabled";
    RaidClient client(option_);
    EXPECT_EQ(Capture([&] { return client.TurnFirmwareDeviceOrder(); }), result::GenericFailure);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl3", "Unknown error.", 26}}));
    EXPECT_EQ(printed_.find("busy"), std::string::npos);
    EXPECT_EQ(OrderOf("LSI", 2), "Enabled");
}

TEST_F(RaidClientFwOrderTest, ChangeOfAnotherFamilyOrAMissingNumber) {
    UseMachine(WithFaults(kLocal));
    option_.mode_value = "Enabled";
    option_.ctrl_index = "4";
    {
        RaidClient client(option_);
        Capture([&] { return client.TurnFirmwareDeviceOrder(); });
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl4", kNotSupported, 33}}));
    }
    option_.ctrl_index = "7";
    RaidClient client(option_);
    Capture([&] { return client.TurnFirmwareDeviceOrder(); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl7", "The controller ID 7 does not exist.", 5}}));
}

TEST_F(RaidClientFwOrderTest, OutOfBandShowOfAllListsFamilyFourAndTitlesThePage) {
    UseMachine(WithFaults(kOob));
    OutOfBand();
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ShowOobWithFirmwareDeviceOrder(List()); }),
              result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", kOk, 0}}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "fw_order/oob_show_all.txt", printed_);
    ASSERT_NE(client.result_page(), nullptr);
    EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig Frimware Device Order");
    // The order table and the result table.
    ASSERT_EQ(client.result_page()->GetTableBox().size(), 2U);
    EXPECT_EQ(client.result_page()->GetTableBox().front().GetColumns(), 6U);
}

TEST_F(RaidClientFwOrderTest, OutOfBandShowOfAllWithoutTheFunctionAnywhere) {
    UseMachine(R"({"controllers": [{"family": "OOB_LSI", "id": 0, "disks": []},
                                   {"family": "OOB_MICROCHIP", "id": 0, "disks": []}]})");
    OutOfBand();
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ShowOobWithFirmwareDeviceOrder(List()); }),
              result::RaidNoFwDeviceOrderController);
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientFwOrderTest, OutOfBandShowOfOneControllerHasNoFamilyTest) {
    UseMachine(WithFaults(kOob));
    OutOfBand();
    // Number 3 is the Microchip controller 0; the BMC is asked about controller 0 all the same.
    option_.ctrl_index = "3";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(Capture([&] { return client.ShowOobWithFirmwareDeviceOrder(List()); }),
                  result::Success);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl3", kOk, 0}}));
        EXPECT_NE(printed_.find("RAID 9560-16i"), std::string::npos) << printed_;
    }
    option_.ctrl_index = "2";
    {
        RaidClient client(option_, Connection());
        Capture([&] { return client.ShowOobWithFirmwareDeviceOrder(List()); });
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl2", "the controller has no firmware device order", 33}}));
    }
    option_.ctrl_index = "8";
    RaidClient client(option_, Connection());
    Capture([&] { return client.ShowOobWithFirmwareDeviceOrder(List()); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl8", "The controller ID 8 does not exist.", 5}}));
}

TEST_F(RaidClientFwOrderTest, OutOfBandChangeThenAlreadyAndAFailureWithItsOwnCode) {
    UseMachine(WithFaults(
        kOob,
        R"([{"op": "TurnFirmwareDeviceOrder", "code": 3, "error_text": "busy", "times": 1}])"));
    OutOfBand();
    option_.ctrl_index = "1";
    option_.mode_value = "disabled";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(Capture([&] { return client.TurnOobFirmwareDeviceOrder(List()); }),
                  result::RaidResultFromError(Quillon::RaidConfig::RAID_OPERATION_FAILED));
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", "busy", 3}}));
        EXPECT_EQ(client.result_page()->GetPageTitle(),
                  "RaidConfig Change Frimware Device Order Mode");
    }
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(Capture([&] { return client.TurnOobFirmwareDeviceOrder(List()); }),
                  result::Success);
        EXPECT_EQ(Rows(client)[0].code, 0);
    }
    EXPECT_EQ(OrderOf("OOB_LSI", 0), "Disabled");
    RaidClient client(option_, Connection());
    Capture([&] { return client.TurnOobFirmwareDeviceOrder(List()); });
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1",
                                               "The firmware device order mode for controller "
                                               "ID 1 is already disabled.",
                                               34}}));
}

TEST_F(RaidClientFwOrderTest, OutOfBandChangeWithoutCtrlIndexAddressesMinusOne) {
    UseMachine(WithFaults(kOob));
    OutOfBand();
    option_.mode_value = "Disabled";
    RaidClient client(option_, Connection());
    Capture([&] { return client.TurnOobFirmwareDeviceOrder(List()); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl-1", "The controller ID -1 does not exist.", 5}}));
    EXPECT_EQ(OrderOf("OOB_LSI", 0), "Enabled");
}

} // namespace
