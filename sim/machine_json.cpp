#include "sim/machine_json.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "model/backend_operations.hpp"

namespace sim {
namespace {

using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;

// The version of the file layout this program reads and writes.
constexpr int kFormat = 1;

constexpr std::array<const char*, 9> kFamilies = {"LSI",      "MICROCHIP",     "M2",
                                                  "VROC_WIN", "OOB_LSI",       "OOB_CFC",
                                                  "OOB_M2",   "OOB_MICROCHIP", "OOB_VROC"};
constexpr std::array<const char*, 8> kDiskStates = {"UGood", "UBad", "Online",  "JBOD",
                                                    "GHS",   "DHS",  "Offline", "Failed"};

// The keys each object may hold, in the order Serialize writes them.
constexpr std::array<const char*, 4> kTopKeys = {"format", "persist", "bmc", "controllers"};
constexpr std::array<const char*, 9> kBmcKeys = {"user",     "password",  "ssh",
                                                 "rest",     "cim",       "rest_connections",
                                                 "bmc_type", "vantor_v3", "support_info"};
constexpr std::array<const char*, 25> kControllerKeys = {"family",
                                                         "id",
                                                         "product_name",
                                                         "serial_no",
                                                         "fru_no",
                                                         "part_no",
                                                         "vendor",
                                                         "manufacturer",
                                                         "version",
                                                         "model",
                                                         "name",
                                                         "raid_levels",
                                                         "min_stripe_kb",
                                                         "max_stripe_kb",
                                                         "connectors",
                                                         "connector_modes",
                                                         "fw_device_order",
                                                         "fw_device_order_modes",
                                                         "ekm_mode",
                                                         "ekm_modes",
                                                         "slot",
                                                         "disks",
                                                         "volumes",
                                                         "global_hot_spares",
                                                         "faults"};
constexpr std::array<const char*, 3> kConnectorKeys = {"id", "name", "mode"};
constexpr std::array<const char*, 13> kDiskKeys = {
    "id",        "slot_no",      "state",         "capacity_mb", "product_name",
    "disk_type", "media_type",   "health_status", "serial_no",   "fru_no",
    "part_no",   "manufacturer", "connector_id"};
constexpr std::array<const char*, 16> kVolumeKeys = {
    "id",           "name",           "raid_level", "spans",
    "size_mb",      "strip_kb",       "status",     "bootable",
    "write_policy", "read_policy",    "io_policy",  "access_policy",
    "cache_policy", "initialization", "encrypted",  "dedicated_spares"};
constexpr std::array<const char*, 5> kFaultKeys = {"op", "arg", "code", "error_text", "times"};

template <std::size_t N> std::string JoinWords(const std::array<const char*, N>& words) {
    std::string text;
    for (const char* word : words) {
        if (!text.empty()) {
            text += ", ";
        }
        text += word;
    }
    return text;
}

template <std::size_t N>
bool Contains(const std::array<const char*, N>& words, const std::string& word) {
    for (const char* candidate : words) {
        if (word == candidate) {
            return true;
        }
    }
    return false;
}

// What a value is, in the words of an error message ("got a string").
std::string Describe(const Json& value) {
    switch (value.type()) {
    case Json::value_t::null:
        return "null";
    case Json::value_t::boolean:
        return "a boolean";
    case Json::value_t::string:
        return "a string";
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
        return "a whole number";
    case Json::value_t::number_float:
        return "a floating-point number";
    case Json::value_t::array:
        return "an array";
    case Json::value_t::object:
        return "an object";
    default:
        return "an unreadable value";
    }
}

// A string value as it stands in the file, quotes and escapes included.
std::string Quote(const std::string& text) {
    return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string Member(const std::string& path, const std::string& key) {
    return path.empty() ? key : path + "." + key;
}

std::string Item(const std::string& path, std::size_t index) {
    return path + "[" + std::to_string(index) + "]";
}

// Records the first syntax error of a text with its place, without exceptions.
class SyntaxErrorCatcher : public nlohmann::json_sax<Json> {
public:
    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool number_integer(number_integer_t /*value*/) override { return true; }
    bool number_unsigned(number_unsigned_t /*value*/) override { return true; }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return true; }
    bool string(string_t& /*value*/) override { return true; }
    bool binary(binary_t& /*value*/) override { return true; }
    bool start_object(std::size_t /*elements*/) override { return true; }
    bool key(string_t& /*value*/) override { return true; }
    bool end_object() override { return true; }
    bool start_array(std::size_t /*elements*/) override { return true; }
    bool end_array() override { return true; }
    bool parse_error(std::size_t position, const std::string& /*last_token*/,
                     const Json::exception& error) override {
        position_ = position;
        message_ = error.what();
        return false;
    }

    // "not valid JSON (byte N): parse error at line L, column C: ...", without the library's
    // own "[json.exception...]" prefix.
    std::string Problem() const {
        std::string message = message_;
        const std::size_t prefix_end = message.find("] ");
        if (message.rfind("[json.exception", 0) == 0 && prefix_end != std::string::npos) {
            message.erase(0, prefix_end + 2);
        }
        if (message.empty()) {
            message = "unreadable text";
        }
        return "not valid JSON (byte " + std::to_string(position_) + "): " + message;
    }

private:
    std::size_t position_ = 0;
    std::string message_;
};

// The JSON kind a model field takes, and its name in an error message.
template <typename T> struct Kind;
template <> struct Kind<int> {
    static constexpr const char* kName = "a whole number";
    static bool Is(const Json& value) { return value.is_number_integer(); }
};
template <> struct Kind<long long> {
    static constexpr const char* kName = "a whole number";
    static bool Is(const Json& value) { return value.is_number_integer(); }
};
template <> struct Kind<bool> {
    static constexpr const char* kName = "true or false";
    static bool Is(const Json& value) { return value.is_boolean(); }
};
template <> struct Kind<std::string> {
    static constexpr const char* kName = "a string";
    static bool Is(const Json& value) { return value.is_string(); }
};

// Walks a parsed document into the model. The first problem found ends the walk and is kept as
// the one-line error.
class Reader {
public:
    explicit Reader(const std::string& source) : source_(source) {}

    const std::string& error() const { return error_; }

    bool Fail(const std::string& path, const std::string& problem) {
        error_ = source_ + ": " + (path.empty() ? std::string("(top)") : path) + ": " + problem;
        return false;
    }

    bool ReadMachine(const Json& root, Machine& machine) {
        if (!CheckObject(root, "", kTopKeys) || !Field(root, "", "format", machine.format)) {
            return false;
        }
        if (machine.format != kFormat) {
            return Fail("format", "unsupported format " + std::to_string(machine.format) +
                                      "; this program reads format " + std::to_string(kFormat));
        }
        if (!Field(root, "", "persist", machine.persist)) {
            return false;
        }
        if (const Json* bmc = Find(root, "bmc"); bmc != nullptr && !ReadBmc(*bmc, machine.bmc)) {
            return false;
        }
        const Json* controllers = Find(root, "controllers");
        if (controllers == nullptr) {
            return true;
        }
        if (!controllers->is_array()) {
            return WrongType("controllers", "an array", *controllers);
        }
        // family -> controller id -> index of the first controller with it
        std::map<std::string, std::map<int, std::size_t>> seen_ids;
        for (std::size_t index = 0; index < controllers->size(); ++index) {
            const std::string path = Item("controllers", index);
            Controller controller;
            if (!ReadController((*controllers)[index], path, controller)) {
                return false;
            }
            auto& ids = seen_ids[controller.family];
            const auto [first, inserted] = ids.emplace(controller.id, index);
            if (!inserted) {
                return Fail(Member(path, "id"),
                            controller.family + " controller id " + std::to_string(controller.id) +
                                " is already used by " + Item("controllers", first->second));
            }
            machine.controllers.push_back(std::move(controller));
        }
        return true;
    }

private:
    static const Json* Find(const Json& object, const char* key) {
        const auto found = object.find(key);
        return found == object.end() ? nullptr : &*found;
    }

    // value must be an object whose keys are all known here.
    template <std::size_t N>
    bool CheckObject(const Json& value, const std::string& path,
                     const std::array<const char*, N>& known) {
        if (!value.is_object()) {
            return WrongType(path, "an object", value);
        }
        for (const auto& entry : value.items()) {
            if (!Contains(known, entry.key())) {
                return Fail(path, "unknown key " + Quote(entry.key()) +
                                      " (known keys: " + JoinWords(known) + ")");
            }
        }
        return true;
    }

    bool Require(const Json& object, const std::string& path, const char* key) {
        if (Find(object, key) == nullptr) {
            return Fail(path, "missing required key \"" + std::string(key) + "\"");
        }
        return true;
    }

    bool NotNegative(const std::string& path, long long value) {
        if (value < 0) {
            return Fail(path, "must not be negative, got " + std::to_string(value));
        }
        return true;
    }

    template <typename T> bool Whole(const Json& value, const std::string& path, T& out) {
        const bool fits = value.is_number_unsigned()
                              ? value.get<std::uint64_t>() <=
                                    static_cast<std::uint64_t>(std::numeric_limits<T>::max())
                              : value.get<std::int64_t>() >= std::numeric_limits<T>::min() &&
                                    value.get<std::int64_t>() <= std::numeric_limits<T>::max();
        if (!fits) {
            return Fail(path, value.dump() + " is out of range (" +
                                  std::to_string(std::numeric_limits<T>::min()) + " to " +
                                  std::to_string(std::numeric_limits<T>::max()) + ")");
        }
        out = value.is_number_unsigned() ? static_cast<T>(value.get<std::uint64_t>())
                                         : static_cast<T>(value.get<std::int64_t>());
        return true;
    }

    // Converts a value already known to be of the right kind.
    bool Convert(const Json& value, const std::string& path, int& out) {
        return Whole(value, path, out);
    }
    bool Convert(const Json& value, const std::string& path, long long& out) {
        return Whole(value, path, out);
    }
    bool Convert(const Json& value, const std::string& /*path*/, bool& out) {
        out = value.get<bool>();
        return true;
    }
    bool Convert(const Json& value, const std::string& /*path*/, std::string& out) {
        out = value.get<std::string>();
        return true;
    }

    bool WrongType(const std::string& path, const std::string& expected, const Json& value) {
        return Fail(path, "expected " + expected + ", got " + Describe(value));
    }

    template <typename T> bool Value(const Json& value, const std::string& path, T& out) {
        if (!Kind<T>::Is(value)) {
            return WrongType(path, Kind<T>::kName, value);
        }
        return Convert(value, path, out);
    }
    // null stands for "not there".
    template <typename T>
    bool Value(const Json& value, const std::string& path, std::optional<T>& out) {
        if (value.is_null()) {
            out.reset();
            return true;
        }
        if (!Kind<T>::Is(value)) {
            return WrongType(path, std::string(Kind<T>::kName) + " or null", value);
        }
        T inner{};
        if (!Convert(value, path, inner)) {
            return false;
        }
        out = std::move(inner);
        return true;
    }
    template <typename T>
    bool Value(const Json& value, const std::string& path, std::vector<T>& out) {
        if (!value.is_array()) {
            return WrongType(path, "an array", value);
        }
        out.clear();
        for (std::size_t index = 0; index < value.size(); ++index) {
            T item{};
            if (!Value(value[index], Item(path, index), item)) {
                return false;
            }
            out.push_back(std::move(item));
        }
        return true;
    }

    // An optional key: absent leaves out at its default.
    template <typename T>
    bool Field(const Json& object, const std::string& path, const char* key, T& out) {
        const Json* value = Find(object, key);
        return value == nullptr || Value(*value, Member(path, key), out);
    }

    bool ReadBmc(const Json& value, Bmc& bmc) {
        const std::string path = "bmc";
        if (!CheckObject(value, path, kBmcKeys) || !Field(value, path, "user", bmc.user) ||
            !Field(value, path, "password", bmc.password) || !Field(value, path, "ssh", bmc.ssh) ||
            !Field(value, path, "rest", bmc.rest) || !Field(value, path, "cim", bmc.cim) ||
            !Field(value, path, "rest_connections", bmc.rest_connections) ||
            !NotNegative(Member(path, "rest_connections"), bmc.rest_connections) ||
            !Field(value, path, "bmc_type", bmc.bmc_type) ||
            !Field(value, path, "vantor_v3", bmc.vantor_v3) ||
            !Field(value, path, "support_info", bmc.support_info)) {
            return false;
        }
        return true;
    }

    bool ReadConnector(const Json& value, const std::string& path, Connector& connector) {
        return CheckObject(value, path, kConnectorKeys) && Require(value, path, "id") &&
               Field(value, path, "id", connector.id) &&
               Field(value, path, "name", connector.name) &&
               Field(value, path, "mode", connector.mode);
    }

    bool ReadDisk(const Json& value, const std::string& path, Disk& disk) {
        if (!CheckObject(value, path, kDiskKeys) || !Require(value, path, "id") ||
            !Field(value, path, "id", disk.id) || !Field(value, path, "slot_no", disk.slot_no) ||
            !Field(value, path, "state", disk.state)) {
            return false;
        }
        if (!Contains(kDiskStates, disk.state)) {
            return Fail(Member(path, "state"),
                        Quote(disk.state) + " is not one of " + JoinWords(kDiskStates));
        }
        return Field(value, path, "capacity_mb", disk.capacity_mb) &&
               Field(value, path, "product_name", disk.product_name) &&
               Field(value, path, "disk_type", disk.disk_type) &&
               Field(value, path, "media_type", disk.media_type) &&
               Field(value, path, "health_status", disk.health_status) &&
               Field(value, path, "serial_no", disk.serial_no) &&
               Field(value, path, "fru_no", disk.fru_no) &&
               Field(value, path, "part_no", disk.part_no) &&
               Field(value, path, "manufacturer", disk.manufacturer) &&
               Field(value, path, "connector_id", disk.connector_id);
    }

    bool ReadVolume(const Json& value, const std::string& path, Volume& volume) {
        return CheckObject(value, path, kVolumeKeys) && Require(value, path, "id") &&
               Field(value, path, "id", volume.id) && Field(value, path, "name", volume.name) &&
               Field(value, path, "raid_level", volume.raid_level) &&
               Field(value, path, "spans", volume.spans) &&
               Field(value, path, "size_mb", volume.size_mb) &&
               Field(value, path, "strip_kb", volume.strip_kb) &&
               Field(value, path, "status", volume.status) &&
               Field(value, path, "bootable", volume.bootable) &&
               Field(value, path, "write_policy", volume.write_policy) &&
               Field(value, path, "read_policy", volume.read_policy) &&
               Field(value, path, "io_policy", volume.io_policy) &&
               Field(value, path, "access_policy", volume.access_policy) &&
               Field(value, path, "cache_policy", volume.cache_policy) &&
               Field(value, path, "initialization", volume.initialization) &&
               Field(value, path, "encrypted", volume.encrypted) &&
               Field(value, path, "dedicated_spares", volume.dedicated_spares);
    }

    bool ReadFault(const Json& value, const std::string& path, Fault& fault) {
        if (!CheckObject(value, path, kFaultKeys) || !Require(value, path, "op") ||
            !Require(value, path, "code") || !Field(value, path, "op", fault.op)) {
            return false;
        }
        // A name no operation has would never fire, and a test that relies on it would pass
        // for the wrong reason.
        if (!model::BackendOperations::Known(fault.op)) {
            return Fail(Member(path, "op"), "\"" + fault.op +
                                                "\" is not an operation of the backend contract (" +
                                                model::BackendOperations::List() + ")");
        }
        // The argument is compared as decimal text, so a number is kept as its digits.
        if (const Json* arg = Find(value, "arg"); arg != nullptr && !arg->is_null()) {
            long long number = 0;
            if (arg->is_string()) {
                fault.arg = arg->get<std::string>();
            } else if (!arg->is_number_integer()) {
                return WrongType(Member(path, "arg"), "a string or a whole number", *arg);
            } else if (Whole(*arg, Member(path, "arg"), number)) {
                fault.arg = std::to_string(number);
            } else {
                return false;
            }
        }
        if (!Field(value, path, "code", fault.code) ||
            !Field(value, path, "error_text", fault.error_text) ||
            !Field(value, path, "times", fault.times)) {
            return false;
        }
        return !fault.times.has_value() || NotNegative(Member(path, "times"), *fault.times);
    }

    template <typename T, typename ReadItem>
    bool List(const Json& object, const std::string& path, const char* key, std::vector<T>& out,
              ReadItem read_item) {
        const Json* value = Find(object, key);
        if (value == nullptr) {
            return true;
        }
        const std::string list_path = Member(path, key);
        if (!value->is_array()) {
            return WrongType(list_path, "an array", *value);
        }
        for (std::size_t index = 0; index < value->size(); ++index) {
            T item;
            if (!(this->*read_item)((*value)[index], Item(list_path, index), item)) {
                return false;
            }
            out.push_back(std::move(item));
        }
        return true;
    }

    bool ReadController(const Json& value, const std::string& path, Controller& controller) {
        if (!CheckObject(value, path, kControllerKeys) || !Require(value, path, "family") ||
            !Require(value, path, "id") || !Require(value, path, "disks") ||
            !Field(value, path, "family", controller.family)) {
            return false;
        }
        if (!Contains(kFamilies, controller.family)) {
            return Fail(Member(path, "family"),
                        Quote(controller.family) + " is not one of " + JoinWords(kFamilies));
        }
        if (!Field(value, path, "id", controller.id) ||
            !Field(value, path, "product_name", controller.product_name) ||
            !Field(value, path, "serial_no", controller.serial_no) ||
            !Field(value, path, "fru_no", controller.fru_no) ||
            !Field(value, path, "part_no", controller.part_no) ||
            !Field(value, path, "vendor", controller.vendor) ||
            !Field(value, path, "manufacturer", controller.manufacturer) ||
            !Field(value, path, "version", controller.version) ||
            !Field(value, path, "model", controller.model) ||
            !Field(value, path, "name", controller.name) ||
            !Field(value, path, "raid_levels", controller.raid_levels) ||
            !Field(value, path, "min_stripe_kb", controller.min_stripe_kb) ||
            !Field(value, path, "max_stripe_kb", controller.max_stripe_kb) ||
            !List(value, path, "connectors", controller.connectors, &Reader::ReadConnector) ||
            !Field(value, path, "connector_modes", controller.connector_modes) ||
            !Field(value, path, "fw_device_order", controller.fw_device_order) ||
            !Field(value, path, "fw_device_order_modes", controller.fw_device_order_modes) ||
            !Field(value, path, "ekm_mode", controller.ekm_mode) ||
            !Field(value, path, "ekm_modes", controller.ekm_modes) ||
            !Field(value, path, "slot", controller.slot) ||
            !List(value, path, "disks", controller.disks, &Reader::ReadDisk) ||
            !List(value, path, "volumes", controller.volumes, &Reader::ReadVolume) ||
            !Field(value, path, "global_hot_spares", controller.global_hot_spares) ||
            !List(value, path, "faults", controller.faults, &Reader::ReadFault)) {
            return false;
        }
        return CheckReferences(path, controller);
    }

    // Ids are unique within the controller, and every disk a volume or a hot spare list names
    // exists on it.
    bool CheckReferences(const std::string& path, const Controller& controller) {
        std::map<int, std::size_t> disk_index;
        for (std::size_t index = 0; index < controller.disks.size(); ++index) {
            const int id = controller.disks[index].id;
            const auto [first, inserted] = disk_index.emplace(id, index);
            if (!inserted) {
                return Fail(Member(Item(Member(path, "disks"), index), "id"),
                            "disk id " + std::to_string(id) + " is already used by " +
                                Item("disks", first->second));
            }
        }
        const auto check_disk = [&](const std::string& place, int id) {
            if (disk_index.count(id) == 0) {
                return Fail(place, "no disk with id " + std::to_string(id) + " on this controller");
            }
            return true;
        };
        std::map<int, std::size_t> volume_index;
        for (std::size_t index = 0; index < controller.volumes.size(); ++index) {
            const Volume& volume = controller.volumes[index];
            const std::string volume_path = Item(Member(path, "volumes"), index);
            const auto [first, inserted] = volume_index.emplace(volume.id, index);
            if (!inserted) {
                return Fail(Member(volume_path, "id"), "volume id " + std::to_string(volume.id) +
                                                           " is already used by " +
                                                           Item("volumes", first->second));
            }
            for (std::size_t span = 0; span < volume.spans.size(); ++span) {
                for (std::size_t member = 0; member < volume.spans[span].size(); ++member) {
                    if (!check_disk(Item(Item(Member(volume_path, "spans"), span), member),
                                    volume.spans[span][member])) {
                        return false;
                    }
                }
            }
            for (std::size_t spare = 0; spare < volume.dedicated_spares.size(); ++spare) {
                if (!check_disk(Item(Member(volume_path, "dedicated_spares"), spare),
                                volume.dedicated_spares[spare])) {
                    return false;
                }
            }
        }
        for (std::size_t spare = 0; spare < controller.global_hot_spares.size(); ++spare) {
            if (!check_disk(Item(Member(path, "global_hot_spares"), spare),
                            controller.global_hot_spares[spare])) {
                return false;
            }
        }
        return true;
    }

    std::string source_;
    std::string error_;
};

OrderedJson Optional(const std::optional<std::string>& value) {
    return value.has_value() ? OrderedJson(*value) : OrderedJson(nullptr);
}

OrderedJson Optional(const std::optional<int>& value) {
    return value.has_value() ? OrderedJson(*value) : OrderedJson(nullptr);
}

OrderedJson ToJson(const Bmc& bmc) {
    OrderedJson out = OrderedJson::object();
    out["user"] = bmc.user;
    out["password"] = bmc.password;
    out["ssh"] = bmc.ssh;
    out["rest"] = bmc.rest;
    out["cim"] = bmc.cim;
    out["rest_connections"] = bmc.rest_connections;
    out["bmc_type"] = Optional(bmc.bmc_type);
    out["vantor_v3"] = bmc.vantor_v3;
    out["support_info"] = bmc.support_info;
    return out;
}

OrderedJson ToJson(const Connector& connector) {
    OrderedJson out = OrderedJson::object();
    out["id"] = connector.id;
    out["name"] = connector.name;
    out["mode"] = connector.mode;
    return out;
}

OrderedJson ToJson(const Disk& disk) {
    OrderedJson out = OrderedJson::object();
    out["id"] = disk.id;
    out["slot_no"] = disk.slot_no;
    out["state"] = disk.state;
    out["capacity_mb"] = disk.capacity_mb;
    out["product_name"] = disk.product_name;
    out["disk_type"] = disk.disk_type;
    out["media_type"] = disk.media_type;
    out["health_status"] = disk.health_status;
    out["serial_no"] = disk.serial_no;
    out["fru_no"] = disk.fru_no;
    out["part_no"] = disk.part_no;
    out["manufacturer"] = disk.manufacturer;
    out["connector_id"] = disk.connector_id;
    return out;
}

OrderedJson ToJson(const Volume& volume) {
    OrderedJson out = OrderedJson::object();
    out["id"] = volume.id;
    out["name"] = volume.name;
    out["raid_level"] = volume.raid_level;
    out["spans"] = volume.spans;
    out["size_mb"] = volume.size_mb;
    out["strip_kb"] = volume.strip_kb;
    out["status"] = volume.status;
    out["bootable"] = volume.bootable;
    out["write_policy"] = volume.write_policy;
    out["read_policy"] = volume.read_policy;
    out["io_policy"] = volume.io_policy;
    out["access_policy"] = volume.access_policy;
    out["cache_policy"] = volume.cache_policy;
    out["initialization"] = volume.initialization;
    out["encrypted"] = volume.encrypted;
    out["dedicated_spares"] = volume.dedicated_spares;
    return out;
}

OrderedJson ToJson(const Fault& fault) {
    OrderedJson out = OrderedJson::object();
    out["op"] = fault.op;
    if (fault.arg.has_value()) {
        out["arg"] = *fault.arg;
    }
    out["code"] = fault.code;
    if (fault.error_text.has_value()) {
        out["error_text"] = *fault.error_text;
    }
    if (fault.times.has_value()) {
        out["times"] = *fault.times;
    }
    return out;
}

OrderedJson ToJson(const Controller& controller);

template <typename T> OrderedJson ListToJson(const std::vector<T>& items) {
    OrderedJson out = OrderedJson::array();
    for (const T& item : items) {
        out.push_back(ToJson(item));
    }
    return out;
}

OrderedJson ToJson(const Controller& controller) {
    OrderedJson out = OrderedJson::object();
    out["family"] = controller.family;
    out["id"] = controller.id;
    out["product_name"] = controller.product_name;
    out["serial_no"] = controller.serial_no;
    out["fru_no"] = controller.fru_no;
    out["part_no"] = controller.part_no;
    out["vendor"] = controller.vendor;
    out["manufacturer"] = controller.manufacturer;
    out["version"] = controller.version;
    out["model"] = controller.model;
    out["name"] = controller.name;
    out["raid_levels"] = controller.raid_levels;
    out["min_stripe_kb"] = controller.min_stripe_kb;
    out["max_stripe_kb"] = controller.max_stripe_kb;
    out["connectors"] = ListToJson(controller.connectors);
    out["connector_modes"] = controller.connector_modes;
    out["fw_device_order"] = Optional(controller.fw_device_order);
    out["fw_device_order_modes"] = controller.fw_device_order_modes;
    out["ekm_mode"] = Optional(controller.ekm_mode);
    out["ekm_modes"] = controller.ekm_modes;
    out["slot"] = controller.slot;
    out["disks"] = ListToJson(controller.disks);
    out["volumes"] = ListToJson(controller.volumes);
    out["global_hot_spares"] = controller.global_hot_spares;
    out["faults"] = ListToJson(controller.faults);
    return out;
}

} // namespace

bool MachineJson::Parse(const std::string& text, const std::string& source, Machine& machine,
                        std::string& error) {
    const Json root = Json::parse(text, nullptr, false);
    if (root.is_discarded()) {
        // The quiet parse tells only that it failed; a second pass finds where.
        SyntaxErrorCatcher catcher;
        static_cast<void>(Json::sax_parse(text, &catcher));
        error = source + ": (top): " + catcher.Problem();
        return false;
    }
    Reader reader(source);
    Machine parsed;
    if (!reader.ReadMachine(root, parsed)) {
        error = reader.error();
        return false;
    }
    machine = std::move(parsed);
    return true;
}

std::string MachineJson::Serialize(const Machine& machine) {
    OrderedJson out = OrderedJson::object();
    out["format"] = machine.format;
    out["persist"] = machine.persist;
    out["bmc"] = ToJson(machine.bmc);
    out["controllers"] = ListToJson(machine.controllers);
    // Texts changed by a backend may hold broken UTF-8; those bytes are replaced, never thrown.
    return out.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

} // namespace sim
