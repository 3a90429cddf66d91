// The ekm and envol actions on a simulated machine: key management shown and changed, volumes
// shown with their encryption and encrypted, always through the BMC's REST connection.
#include <cstdint>
#include <sstream>
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

// LSI 0 (local keys, volumes 0 and 3, volume 3 encrypted; its faults in place of FAULTS) and
// LSI 1 (no keys yet, no volumes) under 1 and 2; Microchip 0 under 3.
const char* const kOob = R"({"controllers": [
  {"family": "OOB_LSI", "id": 0, "product_name": "RAID 9560-16i", "slot": 4, FAULTS
   "ekm_mode": "local", "ekm_modes": ["none", "local", "external"],
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000},
             {"id": 2, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 3, "name": "data", "raid_level": "0", "spans": [[2]], "size_mb": 1000,
                "encrypted": true},
               {"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 1000}]},
  {"family": "OOB_LSI", "id": 1, "product_name": "RAID 9540-8i", "slot": 7,
   "ekm_mode": "None", "ekm_modes": ["none", "local", "external"], "disks": []},
  {"family": "OOB_MICROCHIP", "id": 0, "disks": []}
]})";

std::string WithFaults(const std::string& faults = "") {
    std::string text = kOob;
    const std::size_t at = text.find("FAULTS");
    text.replace(at, 6, faults.empty() ? std::string() : "\"faults\": " + faults + ",");
    return text;
}

using client_test::Row;
using client_test::Rows;

const std::string kOk = "Success.";
const std::string kPrompt = "Enable Volume Encryption is irreversible, the data on the volume will "
                            "be encrypted after the operation is completed.";

class RaidClientEncryptionTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
        option_.assume_yes = true;
        option_.connect_option.kind = 2;
        option_.connect_option.target = "admin:secret@sim";
        option_.connect_option.user = "admin";
        option_.connect_option.password = "secret";
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    std::string MachinePath() const { return dir_.File("machine.json"); }

    void UseMachine(const std::string& json) {
        raidcfg_test::WriteFile(MachinePath(), json);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(MachinePath(), error)) << error;
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

    const sim::Controller* Find(const sim::Machine& machine, int id) const {
        for (const sim::Controller& controller : machine.controllers) {
            if (controller.family == "OOB_LSI" && controller.id == id) {
                return &controller;
            }
        }
        return nullptr;
    }
    std::string ModeOf(int id) const {
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(sim::MachineStore(MachinePath()).Read(machine, error)) << error;
        const sim::Controller* controller = Find(machine, id);
        return controller == nullptr ? "(missing)" : controller->ekm_mode.value_or("(none)");
    }
    // The ids of the encrypted volumes of an LSI controller, in file order.
    std::vector<int> EncryptedOf(int id) const {
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(sim::MachineStore(MachinePath()).Read(machine, error)) << error;
        std::vector<int> encrypted;
        if (const sim::Controller* controller = Find(machine, id)) {
            for (const sim::Volume& volume : controller->volumes) {
                if (volume.encrypted) {
                    encrypted.push_back(volume.id);
                }
            }
        }
        return encrypted;
    }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
    std::string printed_;
};

TEST_F(RaidClientEncryptionTest, ShowKeyManagementListsOnlyFamilyFourUnderItsNumbers) {
    UseMachine(WithFaults());
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ShowEKMOOB(List()); }), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", kOk, 0}, {"ctrl2", kOk, 0}}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "encryption/ekm_show_all.txt", printed_);
}

TEST_F(RaidClientEncryptionTest, ShowKeyManagementWithoutFamilyFourHasNoControllers) {
    UseMachine(R"({"controllers": [{"family": "OOB_MICROCHIP", "id": 0, "disks": []}]})");
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ShowEKMOOB(List()); }), result::RaidNoControllers);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_, "");
}

TEST_F(RaidClientEncryptionTest, ShowKeyManagementOfOneControllerOfAnotherFamilyIsCode29) {
    UseMachine(WithFaults());
    option_.ctrl_index = "3";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(Capture([&] { return client.ShowEKMOOB(List()); }), result::FunctionNotSupported);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl3",
                                                   "Function isn't supported on the target "
                                                   "device.",
                                                   29}}));
    }
    option_.ctrl_index = "6";
    {
        RaidClient client(option_, Connection());
        Capture([&] { return client.ShowEKMOOB(List()); });
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl6", "The controller ID 6 does not exist.", 5}}));
    }
    option_.ctrl_index = "2";
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ShowEKMOOB(List()); }), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl2", kOk, 0}}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "encryption/ekm_show_one.txt", printed_);
}

TEST_F(RaidClientEncryptionTest, ChangeKeyManagementWithoutCtrlIndexIsARowForMinusOne) {
    UseMachine(WithFaults());
    option_.mode_value = "external";
    RaidClient client(option_, Connection());
    Capture([&] { return client.ChangeEKMModeOOB(List()); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl-1", "The controller ID -1 does not exist.", 5}}));
    EXPECT_EQ(ModeOf(0), "local");
    EXPECT_EQ(ModeOf(1), "None");
}

TEST_F(RaidClientEncryptionTest, ChangeKeyManagementLowerCasesTheModeWord) {
    UseMachine(WithFaults());
    option_.ctrl_index = "2";
    option_.mode_value = "EXTERNAL";
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ChangeEKMModeOOB(List()); }), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl2", kOk, 0}}));
    EXPECT_EQ(ModeOf(1), "external");
    EXPECT_NE(printed_.find("External Key Management Result"), std::string::npos);
}

TEST_F(RaidClientEncryptionTest, ChangeOfANumberNotInTheMapGoesToControllerZero) {
    UseMachine(WithFaults());
    option_.ctrl_index = "9";
    option_.mode_value = "external";
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ChangeEKMModeOOB(List()); }), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl9", kOk, 0}}));
    EXPECT_EQ(ModeOf(0), "external");
}

TEST_F(RaidClientEncryptionTest, ChangeKeyManagementFailureTexts) {
    option_.ctrl_index = "1";
    option_.mode_value = "none";
    const std::vector<std::pair<int, std::string>> cases = {
        {32, "Failed to operate Rest API."},
        {5, "The target controller may no exist."},
        {3, "the BMC refused"}};
    for (const auto& [code, text] : cases) {
        UseMachine(WithFaults(R"([{"op": "changeEKMmode", "code": )" + std::to_string(code) +
                              R"(, "error_text": "the BMC refused"}])"));
        RaidClient client(option_, Connection());
        Capture([&] { return client.ChangeEKMModeOOB(List()); });
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", text, code}}));
        EXPECT_EQ(ModeOf(0), "local");
    }
}

TEST_F(RaidClientEncryptionTest, ShowVolumesOfAllControllersAsksEveryNumber) {
    UseMachine(WithFaults());
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ShowVolumeEncryptionOOB(List()); }), result::Success);
    // Number 3 is asked about with its own id 0, which the key manager knows as LSI 0.
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", "Success", 0},
                                              {"ctrl2", "The controllers may not have volumes", 0},
                                              {"ctrl3", "Success", 0}}));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "encryption/envol_show_all.txt", printed_);
}

TEST_F(RaidClientEncryptionTest, ShowVolumesWhereEveryQueryFailsHasNoVolumesAndNoTable) {
    UseMachine(R"({"controllers": [{"family": "OOB_LSI", "id": 0, "disks": []},
                                   {"family": "OOB_MICROCHIP", "id": 0, "disks": []}]})");
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ShowVolumeEncryptionOOB(List()); }),
              result::RaidNoVolumes);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_, "");
}

TEST_F(RaidClientEncryptionTest, ShowVolumesOfOneControllerWithAListThatMatchesNothing) {
    UseMachine(WithFaults());
    option_.ctrl_index = "1";
    option_.volume_ids = "5,6";
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ShowVolumeEncryptionOOB(List()); }), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", "The specified volume may not exist", 0}}));
    EXPECT_NE(printed_.find("External Key Management Information"), std::string::npos);
    EXPECT_EQ(printed_.find("Volume Encryption Information"), std::string::npos);
    EXPECT_NE(printed_.find("Volume Encryption Result"), std::string::npos);
}

TEST_F(RaidClientEncryptionTest, ShowVolumesOfOneControllerNamedOrAll) {
    UseMachine(WithFaults());
    option_.ctrl_index = "1";
    option_.volume_ids = "3";
    {
        RaidClient client(option_, Connection());
        Capture([&] { return client.ShowVolumeEncryptionOOB(List()); });
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", "Success", 0}}));
        ExpectGolden(RAIDCFG_TEST_DATA_DIR, "encryption/envol_show_named.txt", printed_);
    }
    option_.ctrl_index = "2";
    option_.volume_ids.clear();
    {
        RaidClient client(option_, Connection());
        Capture([&] { return client.ShowVolumeEncryptionOOB(List()); });
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl2", "This controller may not has volumes", 0}}));
    }
    option_.ctrl_index = "7";
    RaidClient client(option_, Connection());
    Capture([&] { return client.ShowVolumeEncryptionOOB(List()); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl7", "The controller ID 7 does not exist.", 5}}));
}

TEST_F(RaidClientEncryptionTest, FailedQueryOfOneControllerShowsTheNotFoundTextWithItsCode) {
    UseMachine(
        WithFaults(R"([{"op": "getControllerWithVolumes", "code": 3, "error_text": "timeout"}])"));
    option_.ctrl_index = "1";
    RaidClient client(option_, Connection());
    Capture([&] { return client.ShowVolumeEncryptionOOB(List()); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1", "This controller may not has volumes", 3}}));
}

TEST_F(RaidClientEncryptionTest, EncryptWithoutCtrlIndexShowsNoPrompt) {
    UseMachine(WithFaults());
    option_.assume_yes = false;
    std::istringstream answers("");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    Capture([&] { return client.ChangeVolModeOOB(List()); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl-1", "The controller ID -1 does not exist.", 5}}));
    EXPECT_EQ(printed_.find(kPrompt), std::string::npos);
}

TEST_F(RaidClientEncryptionTest, VolumeIdsAllEncryptsAllVolumesOfTheController) {
    UseMachine(WithFaults());
    option_.ctrl_index = "1";
    option_.volume_ids = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(Capture([&] { return client.ChangeVolModeOOB(List()); }), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", "Success. 1 volume newly encrypted.", 0}}));
    EXPECT_EQ(EncryptedOf(0), (std::vector<int>{3, 0}));
    // Assumed yes: no prompt.
    EXPECT_EQ(printed_.find(kPrompt), std::string::npos);
}

TEST_F(RaidClientEncryptionTest, DecliningTheIrreversiblePromptChangesNothing) {
    UseMachine(WithFaults());
    const std::string before = ReadFile(MachinePath());
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    option_.volume_ids = "0";
    std::istringstream answers("n\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    EXPECT_EQ(Capture([&] { return client.ChangeVolModeOOB(List()); }), result::Success);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_NE(printed_.find(kPrompt), std::string::npos);
    EXPECT_EQ(printed_.find("Volume Encryption Result"), std::string::npos);
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientEncryptionTest, NamedVolumesAreEncryptedAfterTheUsersYes) {
    UseMachine(WithFaults());
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    option_.volume_ids = "0";
    std::istringstream answers("y\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    EXPECT_EQ(Capture([&] { return client.ChangeVolModeOOB(List()); }), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", "Success. 1 volume newly encrypted.", 0}}));
    EXPECT_EQ(EncryptedOf(0), (std::vector<int>{3, 0}));
}

TEST_F(RaidClientEncryptionTest, EncryptOfANumberNotInTheMapGoesToControllerZero) {
    UseMachine(WithFaults());
    option_.ctrl_index = "8";
    RaidClient client(option_, Connection());
    Capture([&] { return client.ChangeVolModeOOB(List()); });
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl8", "Success. 1 volume newly encrypted.", 0}}));
    EXPECT_EQ(EncryptedOf(0), (std::vector<int>{3, 0}));
}

TEST_F(RaidClientEncryptionTest, TheTwoNoVolumeTextsDiffer) {
    UseMachine(WithFaults());
    option_.ctrl_index = "2";
    // Turn key management on first: encryption needs it.
    option_.mode_value = "local";
    {
        RaidClient client(option_, Connection());
        Capture([&] { return client.ChangeEKMModeOOB(List()); });
    }
    option_.volume_ids = "0";
    {
        RaidClient client(option_, Connection());
        Capture([&] { return client.ChangeVolModeOOB(List()); });
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl2", "The target controller has no volumes", 24}}));
    }
    option_.volume_ids.clear();
    RaidClient client(option_, Connection());
    Capture([&] { return client.ChangeVolModeOOB(List()); });
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl2", "There is no volumes under this controller", 24}}));
}

TEST_F(RaidClientEncryptionTest, EncryptionFailureTexts) {
    option_.ctrl_index = "1";
    const std::vector<std::pair<int, std::string>> cases = {
        {32, "Failed to operate Rest API."},
        {5, "The target controller may no exist."},
        {3, "locked"}};
    for (const auto& [code, text] : cases) {
        // No volume named: the operation is enableEncryptionAllVolumes.
        UseMachine(WithFaults(R"([{"op": "enableEncryptionAllVolumes", "code": )" +
                              std::to_string(code) + R"(, "error_text": "locked"}])"));
        RaidClient client(option_, Connection());
        Capture([&] { return client.ChangeVolModeOOB(List()); });
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", text, code}}));
        EXPECT_EQ(EncryptedOf(0), (std::vector<int>{3}));
    }
}

} // namespace
