// The family operations of the simulated driver: records rendered from the machine, and volume
// requests of every family turned into one form and created.
#include "model/controller_reader.hpp"
#include "sim/sim_raid_driver.hpp"
#include "sim/volume_creator.hpp"

namespace sim {

using namespace Quillon::RaidConfig;

template <typename Reader>
SimRaidDriver::Code SimRaidDriver::Read(const std::string& op, int controller,
                                        std::string& error_text, Reader reader) {
    return access_.Act(op, controller, std::nullopt, false, error_text,
                       [&reader](Controller& c, std::string& error) { return reader(c, error); });
}

namespace {

using model::ControllerReader;

// What a record reader answers: the record rendered from the controller.
template <typename Record> auto Renders(Record& record) {
    return [&record](const Controller& c, std::string& /*error*/) {
        return ControllerReader::Show(c, record);
    };
}

} // namespace

SimRaidDriver::Code SimRaidDriver::GetController(int controller,
                                                 Quillon::protocol::StorcliCtrl& record,
                                                 std::string& error_text) {
    return Read("GetController", controller, error_text, Renders(record));
}
SimRaidDriver::Code SimRaidDriver::GetController(int controller,
                                                 Quillon::ARCCONF::ControllerInfo& record,
                                                 std::string& error_text) {
    return Read("GetController", controller, error_text, Renders(record));
}
SimRaidDriver::Code SimRaidDriver::GetController(int controller,
                                                 Quillon::RaidConfig::Controller& record,
                                                 std::string& error_text) {
    return Read("GetController", controller, error_text, Renders(record));
}
SimRaidDriver::Code SimRaidDriver::GetController(int controller, M2CtrlInfo& record,
                                                 std::string& error_text) {
    return Read("GetController", controller, error_text, Renders(record));
}
SimRaidDriver::Code SimRaidDriver::GetController(int controller,
                                                 Quillon::protocol::MicrochipCtrl& record,
                                                 std::string& error_text) {
    return Read("GetController", controller, error_text, Renders(record));
}
SimRaidDriver::Code SimRaidDriver::GetController(int controller,
                                                 Quillon::protocol::VolManDevCtrl& record,
                                                 std::string& error_text) {
    return Read("GetController", controller, error_text, Renders(record));
}
SimRaidDriver::Code SimRaidDriver::GetController(int controller, SWWinController& record,
                                                 std::string& error_text) {
    return Read("GetController", controller, error_text, Renders(record));
}

SimRaidDriver::Code SimRaidDriver::GetConfig(int controller, std::vector<VolumeObject>& volumes,
                                             std::vector<int>& hot_spares,
                                             std::string& error_text) {
    volumes.clear();
    hot_spares.clear();
    return Read("GetConfig", controller, error_text, [&](const Controller& c, std::string& error) {
        return ControllerReader::Config(c, error, volumes, hot_spares);
    });
}
SimRaidDriver::Code SimRaidDriver::GetConfig(int controller,
                                             std::vector<Quillon::ARCCONF::VolumeCfg>& volumes,
                                             std::vector<std::string>& hot_spares,
                                             std::string& error_text) {
    volumes.clear();
    hot_spares.clear();
    return Read("GetConfig", controller, error_text, [&](const Controller& c, std::string& error) {
        return ControllerReader::Config(c, error, volumes, hot_spares);
    });
}
SimRaidDriver::Code SimRaidDriver::GetConfig(int controller, M2VolumeInfo& volume,
                                             std::string& error_text) {
    volume = M2VolumeInfo();
    return Read("GetConfig", controller, error_text, [&](const Controller& c, std::string& error) {
        return ControllerReader::Config(c, error, volume);
    });
}
SimRaidDriver::Code
SimRaidDriver::GetConfig(int controller, std::vector<Quillon::protocol::OobMicroConfig>& volumes,
                         std::string& error_text) {
    volumes.clear();
    return Read("GetConfig", controller, error_text, [&](const Controller& c, std::string& error) {
        return ControllerReader::Config(c, error, volumes);
    });
}
SimRaidDriver::Code
SimRaidDriver::GetConfig(int controller, std::vector<Quillon::protocol::VolManDevConfig>& volumes,
                         std::vector<int>& hot_spares, std::string& error_text) {
    volumes.clear();
    hot_spares.clear();
    return Read("GetConfig", controller, error_text, [&](const Controller& c, std::string& error) {
        return ControllerReader::Config(c, error, volumes, hot_spares);
    });
}
SimRaidDriver::Code SimRaidDriver::GetConfig(int controller, std::vector<SWWinArray>& arrays,
                                             std::vector<int>& hot_spares,
                                             std::string& error_text) {
    arrays.clear();
    hot_spares.clear();
    return Read("GetConfig", controller, error_text, [&](const Controller& c, std::string& error) {
        return ControllerReader::Config(c, error, arrays, hot_spares);
    });
}

SimRaidDriver::Code SimRaidDriver::Create(const std::string& op, int controller, bool parsed,
                                          const std::string& parse_error,
                                          const VolumeRequest& request, std::string& error_text) {
    const bool m2 = access_.family() == "M2" || access_.family() == "OOB_M2";
    return access_.Act(op, controller, std::nullopt, true, error_text,
                       [&](Controller& c, std::string& error) {
                           if (!parsed) {
                               error = parse_error;
                               return RAID_OPERATION_FAILED;
                           }
                           if (m2 && !c.volumes.empty()) {
                               error = "an M.2 controller holds one volume, and it has one";
                               return RAID_OPERATION_FAILED;
                           }
                           return VolumeCreator::Create(c, request, error);
                       });
}

SimRaidDriver::Code SimRaidDriver::Add(const VolumeObject& record, std::string& error_text) {
    VolumeRequest request;
    std::string error;
    const bool parsed = VolumeRequest::From(record, request, error);
    return Create("Add", record.controller_id, parsed, error, request, error_text);
}
SimRaidDriver::Code SimRaidDriver::Add(const Quillon::protocol::MicrochipConfig& record,
                                       std::string& error_text) {
    VolumeRequest request;
    std::string error;
    const bool parsed = VolumeRequest::From(record, request, error);
    return Create("Add", record.controller_id, parsed, error, request, error_text);
}
SimRaidDriver::Code SimRaidDriver::Add(const M2ControllerObject& record, std::string& error_text) {
    VolumeRequest request;
    std::string error;
    const bool parsed = VolumeRequest::From(record, request, error);
    // The in-band M.2 class names this operation AddRaidIndex.
    const char* op = access_.family() == "M2" ? "AddRaidIndex" : "Add";
    return Create(op, record.controller_id, parsed, error, request, error_text);
}
SimRaidDriver::Code SimRaidDriver::Add(const Quillon::protocol::OobMicroConfig& record,
                                       std::string& error_text) {
    VolumeRequest request;
    std::string error;
    const bool parsed = VolumeRequest::From(record, request, error);
    return Create("Add", record.controller_id, parsed, error, request, error_text);
}
SimRaidDriver::Code SimRaidDriver::Add(const Quillon::protocol::VolManDevConfig& record,
                                       std::string& error_text) {
    VolumeRequest request;
    std::string error;
    const bool parsed = VolumeRequest::From(record, request, error);
    return Create("Add", record.controller_id, parsed, error, request, error_text);
}
SimRaidDriver::Code SimRaidDriver::Add(VolRaidConfig& record, std::string& error_text) {
    VolumeRequest request;
    std::string error;
    const bool parsed = VolumeRequest::From(record, request, error);
    return Create("Add", request.controller_id, parsed, error, request, error_text);
}

SimRaidDriver::Code
SimRaidDriver::GetFirmwareDeviceOrderCtrl(int controller, Quillon::protocol::FWDevOrderCtrl& record,
                                          std::string& error_text) {
    return Read("GetFirmwareDeviceOrderCtrl", controller, error_text,
                [&record](const Controller& c, std::string& error) {
                    return ControllerReader::FirmwareOrder(c, record, error);
                });
}

SimRaidDriver::Code SimRaidDriver::GetSupportedRaidLevels(int controller,
                                                          std::vector<std::string>& levels,
                                                          std::string& error_text) {
    levels.clear();
    return Read("GetSupportedRaidLevels", controller, error_text,
                [&levels](const Controller& c, std::string& /*error*/) {
                    levels = c.raid_levels;
                    return RAID_OK;
                });
}

} // namespace sim
