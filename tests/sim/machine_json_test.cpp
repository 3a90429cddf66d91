#include <optional>
#include <string>
#include <vector>

#include "model/backend_operations.hpp"
#include "sim/machine.hpp"
#include "sim/machine_json.hpp"
#include "tests/support/file_text.hpp"

#include <gtest/gtest.h>

namespace {

using sim::Machine;
using sim::MachineJson;

// The example machine of the file format, key for key.
const char* const kExample = R"({
  "format": 1,
  "persist": true,
  "bmc": {
    "user": "admin", "password": "secret",
    "ssh": true, "rest": true, "cim": true, "rest_connections": 1,
    "bmc_type": 2, "vantor_v3": false, "support_info": true
  },
  "controllers": [
    {
      "family": "OOB_LSI", "id": 0,
      "product_name": "RAID 940-8i", "serial_no": "SV1", "fru_no": "", "part_no": "",
      "vendor": "Broadcom", "manufacturer": "", "version": "", "model": "", "name": "",
      "raid_levels": ["0", "1", "5", "6", "10", "50", "60"],
      "min_stripe_kb": 64, "max_stripe_kb": 1024,
      "connectors": [{"id": 0, "name": "C0", "mode": "RAID"}],
      "connector_modes": ["RAID", "HBA", "Mixed"],
      "fw_device_order": "Disabled", "fw_device_order_modes": ["Enabled", "Disabled"],
      "ekm_mode": "None", "ekm_modes": ["none", "local", "external"], "slot": 1,
      "disks": [
        {"id": 0, "slot_no": "0", "state": "UGood", "capacity_mb": 953869,
         "product_name": "HDD 1TB", "disk_type": "SAS", "media_type": "HDD",
         "health_status": "OK", "serial_no": "D0", "fru_no": "", "part_no": "",
         "manufacturer": "", "connector_id": 0},
        {"id": 1, "state": "Online"}, {"id": 2, "state": "DHS"}, {"id": 3, "state": "UGood"}
      ],
      "volumes": [
        {"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]],
         "size_mb": 953869, "strip_kb": 256, "status": "Optimal", "bootable": true,
         "write_policy": 1, "read_policy": 1, "io_policy": 0, "access_policy": 0,
         "cache_policy": 0, "initialization": 0, "encrypted": false,
         "dedicated_spares": [2]}
      ],
      "global_hot_spares": [3],
      "faults": [
        {"op": "AddGlobalHotSpare", "arg": "3", "code": 15, "error_text": "busy", "times": 1}
      ]
    }
  ]
}
)";

Machine ParseOk(const std::string& text) {
    Machine machine;
    std::string error;
    EXPECT_TRUE(MachineJson::Parse(text, "m.json", machine, error)) << error;
    EXPECT_EQ(error, "");
    return machine;
}

// The one-line error of a text that must not parse.
std::string ParseError(const std::string& text) {
    Machine machine;
    std::string error;
    EXPECT_FALSE(MachineJson::Parse(text, "m.json", machine, error));
    return error;
}

// One controller of family LSI with id 0 and the given extra keys.
std::string WithController(const std::string& keys) {
    return R"({"controllers": [{"family": "LSI", "id": 0, )" + keys + "}]}";
}

// One LSI controller whose disks are the given list text, plus extra keys.
std::size_t Count(const std::string& text, const std::string& what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
        ++count;
    }
    return count;
}

std::string WithDisks(const std::string& disks, const std::string& more = "") {
    return WithController(R"("disks": )" + disks + (more.empty() ? "" : ", " + more));
}

TEST(MachineJson, ExampleParsesWithEveryField) {
    const Machine machine = ParseOk(kExample);
    EXPECT_EQ(machine.format, 1);
    EXPECT_TRUE(machine.persist);
    EXPECT_EQ(machine.bmc.user, "admin");
    EXPECT_EQ(machine.bmc.password, "secret");
    EXPECT_TRUE(machine.bmc.ssh);
    EXPECT_TRUE(machine.bmc.rest);
    EXPECT_TRUE(machine.bmc.cim);
    EXPECT_EQ(machine.bmc.rest_connections, 1);
    EXPECT_EQ(machine.bmc.bmc_type, 2);
    EXPECT_FALSE(machine.bmc.vantor_v3);
    EXPECT_TRUE(machine.bmc.support_info);

    ASSERT_EQ(machine.controllers.size(), 1U);
    const sim::Controller& controller = machine.controllers[0];
    EXPECT_EQ(controller.family, "OOB_LSI");
    EXPECT_EQ(controller.id, 0);
    EXPECT_EQ(controller.product_name, "RAID 940-8i");
    EXPECT_EQ(controller.serial_no, "SV1");
    EXPECT_EQ(controller.vendor, "Broadcom");
    EXPECT_EQ(controller.fru_no, "");
    EXPECT_EQ(controller.raid_levels,
              (std::vector<std::string>{"0", "1", "5", "6", "10", "50", "60"}));
    EXPECT_EQ(controller.min_stripe_kb, 64);
    EXPECT_EQ(controller.max_stripe_kb, 1024);
    ASSERT_EQ(controller.connectors.size(), 1U);
    EXPECT_EQ(controller.connectors[0].id, 0);
    EXPECT_EQ(controller.connectors[0].name, "C0");
    EXPECT_EQ(controller.connectors[0].mode, "RAID");
    EXPECT_EQ(controller.connector_modes, (std::vector<std::string>{"RAID", "HBA", "Mixed"}));
    EXPECT_EQ(controller.fw_device_order, "Disabled");
    EXPECT_EQ(controller.fw_device_order_modes, (std::vector<std::string>{"Enabled", "Disabled"}));
    EXPECT_EQ(controller.ekm_mode, "None");
    EXPECT_EQ(controller.ekm_modes, (std::vector<std::string>{"none", "local", "external"}));
    EXPECT_EQ(controller.slot, 1);

    ASSERT_EQ(controller.disks.size(), 4U);
    const sim::Disk& disk = controller.disks[0];
    EXPECT_EQ(disk.id, 0);
    EXPECT_EQ(disk.slot_no, "0");
    EXPECT_EQ(disk.state, "UGood");
    EXPECT_EQ(disk.capacity_mb, 953869);
    EXPECT_EQ(disk.product_name, "HDD 1TB");
    EXPECT_EQ(disk.disk_type, "SAS");
    EXPECT_EQ(disk.media_type, "HDD");
    EXPECT_EQ(disk.health_status, "OK");
    EXPECT_EQ(disk.serial_no, "D0");
    EXPECT_EQ(disk.connector_id, 0);
    EXPECT_EQ(controller.disks[2].state, "DHS");

    ASSERT_EQ(controller.volumes.size(), 1U);
    const sim::Volume& volume = controller.volumes[0];
    EXPECT_EQ(volume.id, 0);
    EXPECT_EQ(volume.name, "os");
    EXPECT_EQ(volume.raid_level, "1");
    EXPECT_EQ(volume.spans, (std::vector<std::vector<int>>{{0, 1}}));
    EXPECT_EQ(volume.size_mb, 953869);
    EXPECT_EQ(volume.strip_kb, 256);
    EXPECT_EQ(volume.status, "Optimal");
    EXPECT_TRUE(volume.bootable);
    EXPECT_EQ(volume.write_policy, 1);
    EXPECT_EQ(volume.read_policy, 1);
    EXPECT_EQ(volume.io_policy, 0);
    EXPECT_FALSE(volume.encrypted);
    EXPECT_EQ(volume.dedicated_spares, (std::vector<int>{2}));
    EXPECT_EQ(controller.global_hot_spares, (std::vector<int>{3}));

    ASSERT_EQ(controller.faults.size(), 1U);
    const sim::Fault& fault = controller.faults[0];
    EXPECT_EQ(fault.op, "AddGlobalHotSpare");
    EXPECT_EQ(fault.arg, "3");
    EXPECT_EQ(fault.code, 15);
    EXPECT_EQ(fault.error_text, "busy");
    EXPECT_EQ(fault.times, 1);
}

TEST(MachineJson, EmptyObjectIsAMachineWithDefaults) {
    const Machine machine = ParseOk("{}");
    EXPECT_EQ(machine.format, 1);
    EXPECT_TRUE(machine.persist);
    EXPECT_EQ(machine.bmc.user, "admin");
    EXPECT_EQ(machine.bmc.password, "secret");
    EXPECT_TRUE(machine.bmc.ssh && machine.bmc.rest && machine.bmc.cim);
    EXPECT_EQ(machine.bmc.rest_connections, 1);
    EXPECT_EQ(machine.bmc.bmc_type, 2);
    EXPECT_FALSE(machine.bmc.vantor_v3);
    EXPECT_TRUE(machine.bmc.support_info);
    EXPECT_TRUE(machine.controllers.empty());
}

TEST(MachineJson, MissingKeysTakeTheirDefaults) {
    const Machine machine = ParseOk(R"({"bmc": {"user": "root"}, "controllers": [
        {"family": "M2", "id": 3, "disks": [{"id": 7}],
         "volumes": [{"id": 1}], "faults": [{"op": "Add", "code": 3}]}]})");
    EXPECT_EQ(machine.bmc.user, "root");
    EXPECT_EQ(machine.bmc.password, "secret");
    ASSERT_EQ(machine.controllers.size(), 1U);
    const sim::Controller& controller = machine.controllers[0];
    EXPECT_EQ(controller.family, "M2");
    EXPECT_EQ(controller.id, 3);
    EXPECT_EQ(controller.product_name, "");
    EXPECT_TRUE(controller.raid_levels.empty());
    EXPECT_EQ(controller.min_stripe_kb, 0);
    EXPECT_TRUE(controller.connectors.empty());
    EXPECT_FALSE(controller.fw_device_order.has_value());
    EXPECT_FALSE(controller.ekm_mode.has_value());
    EXPECT_EQ(controller.slot, 0);
    EXPECT_TRUE(controller.global_hot_spares.empty());
    ASSERT_EQ(controller.disks.size(), 1U);
    EXPECT_EQ(controller.disks[0].id, 7);
    EXPECT_EQ(controller.disks[0].state, "UGood");
    EXPECT_EQ(controller.disks[0].capacity_mb, 0);
    EXPECT_EQ(controller.disks[0].serial_no, "");
    ASSERT_EQ(controller.volumes.size(), 1U);
    EXPECT_EQ(controller.volumes[0].status, "Optimal");
    EXPECT_TRUE(controller.volumes[0].spans.empty());
    EXPECT_FALSE(controller.volumes[0].bootable);
    ASSERT_EQ(controller.faults.size(), 1U);
    EXPECT_FALSE(controller.faults[0].arg.has_value());
    EXPECT_FALSE(controller.faults[0].times.has_value());
    EXPECT_FALSE(controller.faults[0].error_text.has_value());
}

TEST(MachineJson, NullMeansTheFunctionIsMissing) {
    const Machine machine = ParseOk(R"({"bmc": {"bmc_type": null}, "controllers": [
        {"family": "LSI", "id": 0, "disks": [], "fw_device_order": null, "ekm_mode": null,
         "faults": [{"op": "Add", "code": 3, "arg": null, "times": null}]}]})");
    EXPECT_FALSE(machine.bmc.bmc_type.has_value());
    EXPECT_FALSE(machine.controllers[0].fw_device_order.has_value());
    EXPECT_FALSE(machine.controllers[0].ekm_mode.has_value());
    EXPECT_FALSE(machine.controllers[0].faults[0].arg.has_value());
    EXPECT_FALSE(machine.controllers[0].faults[0].times.has_value());
}

TEST(MachineJson, FaultArgumentMayBeANumber) {
    const Machine machine = ParseOk(
        WithDisks("[]", R"("faults": [{"op": "MakeJbod", "arg": 12, "code": 12, "times": 0}])"));
    EXPECT_EQ(machine.controllers[0].faults[0].arg, "12");
    EXPECT_EQ(machine.controllers[0].faults[0].times, 0);
}

TEST(MachineJson, SameIdInTwoFamiliesIsFine) {
    const Machine machine = ParseOk(R"({"controllers": [
        {"family": "LSI", "id": 0, "disks": []}, {"family": "OOB_LSI", "id": 0, "disks": []}]})");
    EXPECT_EQ(machine.controllers.size(), 2U);
}

TEST(MachineJson, FailedParseLeavesTheMachineAlone) {
    Machine machine;
    machine.persist = false;
    std::string error;
    EXPECT_FALSE(MachineJson::Parse(R"({"persist": true, "format": 7})", "m.json", machine, error));
    EXPECT_FALSE(machine.persist);
}

TEST(MachineJson, NotJson) {
    EXPECT_EQ(ParseError(R"({"format": 1,)"),
              "m.json: (top): not valid JSON (byte 14): parse error at line 1, column 14: syntax "
              "error while parsing object key - unexpected end of input; expected string literal");
    EXPECT_EQ(ParseError("{\n  \"format\": 1 x\n}"),
              "m.json: (top): not valid JSON (byte 17): parse error at line 2, column 15: syntax "
              "error while parsing object - invalid literal; last read: '1 x'; expected '}'");
    EXPECT_EQ(ParseError(""),
              "m.json: (top): not valid JSON (byte 1): parse error at line 1, column 1: syntax "
              "error while parsing value - unexpected end of input; expected '[', '{', or a "
              "literal");
}

TEST(MachineJson, TopLevelNotAnObject) {
    EXPECT_EQ(ParseError("[1, 2]"), "m.json: (top): expected an object, got an array");
    EXPECT_EQ(ParseError("\"machine\""), "m.json: (top): expected an object, got a string");
}

TEST(MachineJson, UnknownKey) {
    EXPECT_EQ(ParseError(R"({"controlers": []})"),
              "m.json: (top): unknown key \"controlers\" (known keys: format, persist, bmc, "
              "controllers)");
    EXPECT_EQ(ParseError(R"({"bmc": {"pass": "x"}})"),
              "m.json: bmc: unknown key \"pass\" (known keys: user, password, ssh, rest, cim, "
              "rest_connections, bmc_type, vantor_v3, support_info)");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("speed": 12)")),
              "m.json: controllers[0]: unknown key \"speed\" (known keys: family, id, "
              "product_name, serial_no, fru_no, part_no, vendor, manufacturer, version, model, "
              "name, raid_levels, min_stripe_kb, max_stripe_kb, connectors, connector_modes, "
              "fw_device_order, fw_device_order_modes, ekm_mode, ekm_modes, slot, disks, "
              "volumes, global_hot_spares, faults)");
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0}, {"id": 1, "status": "UGood"}])")),
              "m.json: controllers[0].disks[1]: unknown key \"status\" (known keys: id, slot_no, "
              "state, capacity_mb, product_name, disk_type, media_type, health_status, "
              "serial_no, fru_no, part_no, manufacturer, connector_id)");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("volumes": [{"id": 0, "level": "1"}])")),
              "m.json: controllers[0].volumes[0]: unknown key \"level\" (known keys: id, name, "
              "raid_level, spans, size_mb, strip_kb, status, bootable, write_policy, "
              "read_policy, io_policy, access_policy, cache_policy, initialization, encrypted, "
              "dedicated_spares)");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("connectors": [{"id": 0, "speed": "12G"}])")),
              "m.json: controllers[0].connectors[0]: unknown key \"speed\" (known keys: id, "
              "name, mode)");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("faults": [{"op": "Add", "code": 1, "count": 2}])")),
              "m.json: controllers[0].faults[0]: unknown key \"count\" (known keys: op, arg, "
              "code, error_text, times)");
}

TEST(MachineJson, WrongType) {
    EXPECT_EQ(ParseError(R"({"controllers": [{"family": "LSI", "id": "0", "disks": []}]})"),
              "m.json: controllers[0].id: expected a whole number, got a string");
    EXPECT_EQ(ParseError(R"({"persist": 1})"),
              "m.json: persist: expected true or false, got a whole number");
    EXPECT_EQ(ParseError(R"({"format": 1.0})"),
              "m.json: format: expected a whole number, got a floating-point number");
    EXPECT_EQ(ParseError(R"({"bmc": []})"), "m.json: bmc: expected an object, got an array");
    EXPECT_EQ(ParseError(R"({"bmc": {"user": null}})"),
              "m.json: bmc.user: expected a string, got null");
    EXPECT_EQ(ParseError(R"({"bmc": {"bmc_type": "2"}})"),
              "m.json: bmc.bmc_type: expected a whole number or null, got a string");
    EXPECT_EQ(ParseError(R"({"controllers": {}})"),
              "m.json: controllers: expected an array, got an object");
    EXPECT_EQ(ParseError(R"({"controllers": [7]})"),
              "m.json: controllers[0]: expected an object, got a whole number");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("raid_levels": ["0", 1])")),
              "m.json: controllers[0].raid_levels[1]: expected a string, got a whole number");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("fw_device_order": true)")),
              "m.json: controllers[0].fw_device_order: expected a string or null, got a boolean");
    EXPECT_EQ(ParseError(WithDisks(R"({"id": 0})")),
              "m.json: controllers[0].disks: expected an array, got an object");
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0, "capacity_mb": "1TB"}])")),
              "m.json: controllers[0].disks[0].capacity_mb: expected a whole number, got a "
              "string");
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0}])", R"("volumes": [{"id": 0, "spans": [0]}])")),
              "m.json: controllers[0].volumes[0].spans[0]: expected an array, got a whole number");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("faults": [{"op": "Add", "code": 1, "arg": true}])")),
              "m.json: controllers[0].faults[0].arg: expected a string or a whole number, got a "
              "boolean");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("slot": 4294967296)")),
              "m.json: controllers[0].slot: 4294967296 is out of range (-2147483648 to "
              "2147483647)");
}

TEST(MachineJson, FormatMustBeOne) {
    EXPECT_EQ(ParseError(R"({"format": 2})"),
              "m.json: format: unsupported format 2; this program reads format 1");
    EXPECT_EQ(ParseError(R"({"format": 0})"),
              "m.json: format: unsupported format 0; this program reads format 1");
}

TEST(MachineJson, MissingRequiredKey) {
    EXPECT_EQ(ParseError(R"({"controllers": [{"id": 0, "disks": []}]})"),
              "m.json: controllers[0]: missing required key \"family\"");
    EXPECT_EQ(ParseError(R"({"controllers": [{"family": "LSI", "disks": []}]})"),
              "m.json: controllers[0]: missing required key \"id\"");
    EXPECT_EQ(ParseError(R"({"controllers": [{"family": "LSI", "id": 0}]})"),
              "m.json: controllers[0]: missing required key \"disks\"");
    EXPECT_EQ(ParseError(WithDisks(R"([{"state": "UGood"}])")),
              "m.json: controllers[0].disks[0]: missing required key \"id\"");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("volumes": [{"name": "os"}])")),
              "m.json: controllers[0].volumes[0]: missing required key \"id\"");
    EXPECT_EQ(ParseError(WithDisks("[]", R"("connectors": [{"name": "C0"}])")),
              "m.json: controllers[0].connectors[0]: missing required key \"id\"");
}

TEST(MachineJson, UnknownFamily) {
    EXPECT_EQ(ParseError(R"({"controllers": [{"family": "lsi", "id": 0, "disks": []}]})"),
              "m.json: controllers[0].family: \"lsi\" is not one of LSI, MICROCHIP, M2, "
              "VROC_WIN, OOB_LSI, OOB_CFC, OOB_M2, OOB_MICROCHIP, OOB_VROC");
}

TEST(MachineJson, UnknownDiskState) {
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0}, {"id": 1}, {"id": 2}, {"id": 3,
                                        "state": "Good"}])")),
              "m.json: controllers[0].disks[3].state: \"Good\" is not one of UGood, UBad, "
              "Online, JBOD, GHS, DHS, Offline, Failed");
}

TEST(MachineJson, DuplicateControllerIdInAFamily) {
    EXPECT_EQ(ParseError(R"({"controllers": [{"family": "LSI", "id": 0, "disks": []},
        {"family": "M2", "id": 0, "disks": []}, {"family": "LSI", "id": 0, "disks": []}]})"),
              "m.json: controllers[2].id: LSI controller id 0 is already used by controllers[0]");
}

TEST(MachineJson, DuplicateDiskId) {
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0}, {"id": 1}, {"id": 0}])")),
              "m.json: controllers[0].disks[2].id: disk id 0 is already used by disks[0]");
}

TEST(MachineJson, DuplicateVolumeId) {
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0}])", R"("volumes": [{"id": 4}, {"id": 4}])")),
              "m.json: controllers[0].volumes[1].id: volume id 4 is already used by volumes[0]");
}

TEST(MachineJson, SpanDiskDoesNotExist) {
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0}, {"id": 1}])",
                                   R"("volumes": [{"id": 0, "spans": [[0, 1], [9]]}])")),
              "m.json: controllers[0].volumes[0].spans[1][0]: no disk with id 9 on this "
              "controller");
}

TEST(MachineJson, DedicatedSpareDoesNotExist) {
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0}, {"id": 1}])",
                                   R"("volumes": [{"id": 0, "dedicated_spares": [1, 5]}])")),
              "m.json: controllers[0].volumes[0].dedicated_spares[1]: no disk with id 5 on this "
              "controller");
}

TEST(MachineJson, GlobalHotSpareDoesNotExist) {
    EXPECT_EQ(ParseError(WithDisks(R"([{"id": 0}])", R"("global_hot_spares": [3])")),
              "m.json: controllers[0].global_hot_spares[0]: no disk with id 3 on this "
              "controller");
}

TEST(MachineJson, FaultWithoutOp) {
    EXPECT_EQ(ParseError(WithDisks("[]", R"("faults": [{"code": 3}])")),
              "m.json: controllers[0].faults[0]: missing required key \"op\"");
}

TEST(MachineJson, FaultWithoutCode) {
    EXPECT_EQ(ParseError(WithDisks("[]", R"("faults": [{"op": "Add"}])")),
              "m.json: controllers[0].faults[0]: missing required key \"code\"");
}

TEST(MachineJson, NegativeTimes) {
    EXPECT_EQ(ParseError(WithDisks("[]", R"("faults": [{"op": "Add", "code": 3, "times": -1}])")),
              "m.json: controllers[0].faults[0].times: must not be negative, got -1");
}

TEST(MachineJson, AFaultNamingNoOperationOfTheContractIsRefused) {
    EXPECT_EQ(
        ParseError(WithDisks("[]", R"("faults": [{"op": "getControllerWithVolume", "code": 3}])")),
        "m.json: controllers[0].faults[0].op: \"getControllerWithVolume\" is not an operation of "
        "the backend contract (" +
            model::BackendOperations::List() + ")");
}

TEST(MachineJson, EveryOperationOfTheContractMayBeFaulted) {
    for (const std::string& op : model::BackendOperations::Names()) {
        const Machine machine =
            ParseOk(WithDisks("[]", R"("faults": [{"op": ")" + op + R"(", "code": 3}])"));
        EXPECT_EQ(machine.controllers.at(0).faults.at(0).op, op);
    }
}

TEST(MachineJson, AFaultTextIsKeptEmptyAndLeftOutWhenNotGiven) {
    const Machine machine = ParseOk(WithDisks(
        "[]",
        R"("faults": [{"op": "Add", "code": 3, "error_text": ""}, {"op": "Add", "code": 4}])"));
    EXPECT_EQ(machine.controllers.at(0).faults.at(0).error_text, std::optional<std::string>(""));
    EXPECT_FALSE(machine.controllers.at(0).faults.at(1).error_text.has_value());
    const std::string text = MachineJson::Serialize(machine);
    EXPECT_EQ(Count(text, "error_text"), 1U) << text;
}

TEST(MachineJson, NegativeRestConnections) {
    EXPECT_EQ(ParseError(R"({"bmc": {"rest_connections": -2}})"),
              "m.json: bmc.rest_connections: must not be negative, got -2");
}

TEST(MachineJson, SerializeWritesEveryKeyInOrder) {
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "example-machine.json",
                               MachineJson::Serialize(ParseOk(kExample)));
}

TEST(MachineJson, SerializeWritesUnsetValuesAsNullOrNotAtAll) {
    const std::string text = MachineJson::Serialize(ParseOk(R"({"bmc": {"bmc_type": null},
        "controllers": [{"family": "LSI", "id": 0, "disks": [],
                         "faults": [{"op": "Add", "code": 3}]}]})"));
    EXPECT_NE(text.find(R"("bmc_type": null,)"), std::string::npos);
    EXPECT_NE(text.find(R"("fw_device_order": null,)"), std::string::npos);
    EXPECT_NE(text.find(R"("ekm_mode": null,)"), std::string::npos);
    EXPECT_EQ(text.find(R"("arg")"), std::string::npos);
    EXPECT_EQ(text.find(R"("times")"), std::string::npos);
    EXPECT_EQ(text.back(), '\n');
}

TEST(MachineJson, RoundTripGivesTheMachineBack) {
    for (const std::string& text :
         {std::string(kExample), std::string("{}"),
          std::string(R"({"persist": false, "bmc": {"bmc_type": null, "ssh": false},
              "controllers": [{"family": "VROC_WIN", "id": 5, "name": "caf\u00e9 \"x\"\n",
                               "disks": [{"id": -1, "capacity_mb": 9007199254740993}],
                               "faults": [{"op": "Add", "code": 3, "arg": 7}]}]})")}) {
        const Machine first = ParseOk(text);
        const std::string serialized = MachineJson::Serialize(first);
        const Machine second = ParseOk(serialized);
        EXPECT_EQ(MachineJson::Serialize(second), serialized);
        EXPECT_EQ(second.persist, first.persist);
        EXPECT_EQ(second.bmc.bmc_type, first.bmc.bmc_type);
        EXPECT_EQ(second.controllers.size(), first.controllers.size());
    }
    const Machine odd = ParseOk(MachineJson::Serialize(ParseOk(R"({"controllers": [
        {"family": "VROC_WIN", "id": 5, "name": "caf\u00e9 \"x\"\n",
         "disks": [{"id": -1, "capacity_mb": 9007199254740993}]}]})")));
    EXPECT_EQ(odd.controllers[0].name, "caf\xc3\xa9 \"x\"\n");
    EXPECT_EQ(odd.controllers[0].disks[0].capacity_mb, 9007199254740993LL);
}

TEST(MachineJson, BrokenTextFromABackendIsWrittenAnyway) {
    Machine machine;
    machine.controllers.emplace_back();
    machine.controllers[0].family = "LSI";
    machine.controllers[0].name = "bad \xff byte";
    const Machine back = ParseOk(MachineJson::Serialize(machine));
    EXPECT_EQ(back.controllers[0].name, "bad \xef\xbf\xbd byte");
}

} // namespace
