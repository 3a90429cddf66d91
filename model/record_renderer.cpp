// Every family record of the simulated controllers, rendered from the machine model. The texts
// are listed field by field in docs/machine-file.md ("How each family's records are rendered");
// a change here is a change there.
#include "model/record_renderer.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

#include "model/raid_capacity.hpp"

namespace model {

namespace {

namespace rc = Quillon::RaidConfig;
namespace pc = Quillon::protocol;
namespace ac = Quillon::ARCCONF;

// The enclosure number the in-band LSI family puts in front of a slot ("252:3").
constexpr const char* kEnclosure = "252:";

constexpr std::array<const char*, 3> kWritePolicies = {"Write Through", "Write Back",
                                                       "Always Write Back"};
constexpr std::array<const char*, 3> kReadPolicies = {"No Read Ahead", "Read Ahead",
                                                      "Adaptive Read Ahead"};
constexpr std::array<const char*, 2> kIoPolicies = {"Direct IO", "Cached IO"};
constexpr std::array<const char*, 3> kDiskCachePolicies = {"Unchanged", "Enabled", "Disabled"};

// The word of a policy code; a code without a word shows as its number, one not reported as
// the empty text.
template <std::size_t N> std::string Word(const std::array<const char*, N>& words, int code) {
    if (code == kNotReported) {
        return {};
    }
    if (code >= 0 && static_cast<std::size_t>(code) < N) {
        return words[static_cast<std::size_t>(code)];
    }
    return std::to_string(code);
}

// Access policy codes are those a policy file takes: 0, 2 and 3.
std::string AccessPolicy(int code) {
    switch (code) {
    case kNotReported:
        return {};
    case 0:
        return "Read Write";
    case 2:
        return "Read Only";
    case 3:
        return "Blocked";
    default:
        return std::to_string(code);
    }
}

// The out-of-band Microchip family counts its write policy codes from 1.
std::string WritePolicy(const Controller& controller, int code) {
    if (code == kNotReported) {
        return {};
    }
    const int index = controller.family == "OOB_MICROCHIP" ? code - 1 : code;
    return index >= 0 && static_cast<std::size_t>(index) < kWritePolicies.size()
               ? Word(kWritePolicies, index)
               : std::to_string(code);
}

std::string Bool(bool value) {
    return value ? "True" : "False";
}

// Whether a volume boots; the empty text where its source did not say.
std::string Bootable(const Volume& volume) {
    return volume.bootable_known ? Bool(volume.bootable) : std::string();
}

// "256K"; an unset size (0) is the empty text.
std::string Kilobytes(int kilobytes) {
    return kilobytes > 0 ? std::to_string(kilobytes) + "K" : std::string();
}

// "953869MB": the form a policy file's volume_size takes and add reads back.
std::string Megabytes(long long megabytes) {
    if (megabytes == kNotReported) {
        return {};
    }
    return std::to_string(megabytes) + "MB";
}

// "RAID5": the level with the word RAID in front, as the show tables print it.
std::string RaidWord(const std::string& level) {
    return level.empty() ? std::string() : "RAID" + level;
}

std::string Join(const std::vector<std::string>& texts, const std::string& separator) {
    std::string joined;
    for (const std::string& text : texts) {
        if (!joined.empty()) {
            joined += separator;
        }
        joined += text;
    }
    return joined;
}

std::vector<int> Members(const Volume& volume) {
    std::vector<int> ids;
    for (const auto& span : volume.spans) {
        ids.insert(ids.end(), span.begin(), span.end());
    }
    return ids;
}

std::vector<std::string> Texts(const std::vector<int>& ids) {
    std::vector<std::string> texts;
    texts.reserve(ids.size());
    for (int id : ids) {
        texts.push_back(std::to_string(id));
    }
    return texts;
}

// "0,1,2": the volume's disk ids, spans run together.
std::string MemberList(const Volume& volume) {
    return Join(Texts(Members(volume)), ",");
}

const Disk* FindDisk(const Controller& controller, int id) {
    const auto found = std::find_if(controller.disks.begin(), controller.disks.end(),
                                    [id](const Disk& disk) { return disk.id == id; });
    return found == controller.disks.end() ? nullptr : &*found;
}

// The volume the disk is a member of, if any.
const Volume* VolumeOf(const Controller& controller, int disk) {
    for (const Volume& volume : controller.volumes) {
        for (const auto& span : volume.spans) {
            if (std::find(span.begin(), span.end(), disk) != span.end()) {
                return &volume;
            }
        }
    }
    return nullptr;
}

// What the disks of the volume give at its level, in megabytes; the volume's own size where the
// level or its disks do not allow a reckoning.
long long UsableMegabytes(const Controller& controller, const Volume& volume) {
    long long smallest = -1;
    for (int id : Members(volume)) {
        const Disk* disk = FindDisk(controller, id);
        if (disk != nullptr && disk->capacity_mb == kNotReported) {
            return volume.size_mb;
        }
        if (disk != nullptr && (smallest < 0 || disk->capacity_mb < smallest)) {
            smallest = disk->capacity_mb;
        }
    }
    std::string ignored;
    const long long usable =
        smallest < 0
            ? -1
            : RaidCapacity::UsableMegabytes(volume.raid_level, volume.spans, smallest, ignored);
    return std::max(usable, volume.size_mb);
}

// The size of a volume in gigabytes, exactly ("7152.556640625 GB"): what a software RAID volume
// reports, so that its saved vol_capacity gives back the same megabytes.
std::string ExactGigabytes(long long megabytes) {
    if (megabytes == kNotReported) {
        return {};
    }
    const long long size = std::max(megabytes, 0LL);
    const long long whole = size / 1024;
    const long long rest = size % 1024;
    std::string text = std::to_string(whole);
    if (rest != 0) {
        // rest / 1024 == rest * 5^10 / 10^10, so ten decimals hold it exactly.
        std::string fraction = std::to_string(rest * 9765625LL);
        fraction.insert(0, 10 - fraction.size(), '0');
        fraction.erase(fraction.find_last_not_of('0') + 1);
        text += "." + fraction;
    }
    return text + " GB";
}

// The "Type" column of an in-band LSI disk: the drive group of a member, else its state.
std::string StorcliType(const Controller& controller, const Disk& disk) {
    const Volume* volume = VolumeOf(controller, disk.id);
    return volume != nullptr ? "DG" + std::to_string(volume->id) : disk.state;
}

// What a software RAID disk is used for.
std::string Usage(const Controller& controller, const Disk& disk) {
    if (VolumeOf(controller, disk.id) != nullptr) {
        return "Array member";
    }
    if (disk.state == "GHS" || disk.state == "DHS") {
        return "Spare";
    }
    if (disk.state == "UGood") {
        return "Available";
    }
    if (disk.state == "JBOD") {
        return "Pass-through";
    }
    return disk.state;
}

rc::Disk OobDisk(const Disk& disk) {
    rc::Disk record;
    record.id = disk.id;
    record.product_name = disk.product_name;
    record.state = disk.state;
    record.slot_no = disk.slot_no;
    record.disk_type = disk.disk_type;
    record.media_type = disk.media_type;
    record.health_status = disk.health_status;
    record.capacity = RecordRenderer::HumanSize(disk.capacity_mb);
    record.serial_no = disk.serial_no;
    record.fru_no = disk.fru_no;
    record.part_no = disk.part_no;
    return record;
}

pc::ProtocolDisk ProtocolDisk(const Disk& disk) {
    pc::ProtocolDisk record;
    record.id = disk.id;
    record.product_name = disk.product_name;
    record.state = disk.state;
    record.slot_no = disk.slot_no;
    record.disk_type = disk.disk_type;
    record.media_type = disk.media_type;
    record.health_status = disk.health_status;
    record.capacity = RecordRenderer::HumanSize(disk.capacity_mb);
    record.manufacturer = disk.manufacturer;
    record.serial_no = disk.serial_no;
    record.fru_no = disk.fru_no;
    record.part_no = disk.part_no;
    return record;
}

// The disk records of a volume's members, in span order; a member the machine lacks is left out.
template <typename Record, typename Make>
std::vector<Record> MemberDisks(const Controller& controller, const Volume& volume, Make make) {
    std::vector<Record> records;
    for (int id : Members(volume)) {
        if (const Disk* disk = FindDisk(controller, id)) {
            records.push_back(make(*disk));
        }
    }
    return records;
}

// The volumes of a controller by the pool they stand in: volumes on the same set of disks
// share one (a BMC that carves several volumes out of one drive group), any other volume has
// one of its own. Pools come in the order of their first volume.
std::vector<std::vector<const Volume*>> PoolsOf(const Controller& controller) {
    std::vector<std::vector<const Volume*>> pools;
    std::vector<std::vector<int>> keys;
    for (const Volume& volume : controller.volumes) {
        std::vector<int> key = Members(volume);
        std::sort(key.begin(), key.end());
        const auto found = key.empty() ? keys.end() : std::find(keys.begin(), keys.end(), key);
        if (found == keys.end()) {
            keys.push_back(std::move(key));
            pools.push_back({&volume});
        } else {
            pools[static_cast<std::size_t>(found - keys.begin())].push_back(&volume);
        }
    }
    return pools;
}

// A pool: numbered as its first volume, its capacity what its disks give, and one hole where
// its volumes leave part of that free.
template <typename Pool>
void FillPool(const Controller& controller, const std::vector<const Volume*>& volumes,
              const std::string& raid_state, Pool& pool) {
    const Volume& first = *volumes.front();
    const long long usable = UsableMegabytes(controller, first);
    long long used = 0;
    for (const Volume* volume : volumes) {
        used = volume->size_mb == kNotReported || used == kNotReported ? kNotReported
                                                                       : used + volume->size_mb;
    }
    pool.id = first.id;
    pool.raid_state = raid_state;
    pool.raid_capacity = RecordRenderer::HumanSize(usable);
    pool.holes = usable == kNotReported || used == kNotReported ? std::string()
                 : usable > used                                ? "1"
                                                                : "0";
}

// The policy texts of an out-of-band pool volume (LSI, CFC and Microchip records alike).
template <typename PoolVolume>
void FillPoolVolume(const Controller& controller, const Volume& volume, PoolVolume& record) {
    record.id = volume.id;
    record.name = volume.name;
    record.status = volume.status;
    record.stripe_size = Kilobytes(volume.strip_kb);
    record.bootable = Bootable(volume);
    record.capacity = RecordRenderer::HumanSize(volume.size_mb);
    record.read_policy = Word(kReadPolicies, volume.read_policy);
    record.write_policy = WritePolicy(controller, volume.write_policy);
    record.default_write_policy = record.write_policy;
    record.io_policy = Word(kIoPolicies, volume.io_policy);
    record.access_policy = AccessPolicy(volume.access_policy);
    record.disk_cache_policy = Word(kDiskCachePolicies, volume.cache_policy);
}

// The one array a software RAID volume stands in, "Array_<id>". config picks the texts save
// writes (plain level, exact size, "64 KB") over those show prints.
rc::SWWinArray SoftwareArray(const Controller& controller, const Volume& volume, bool config) {
    const long long usable = UsableMegabytes(controller, volume);
    const std::vector<int> members = Members(volume);
    rc::SWWinArray array;
    array.name = "Array_" + std::to_string(volume.id);
    array.size = RecordRenderer::HumanSize(usable);
    array.free = RecordRenderer::HumanSize(usable - volume.size_mb);
    array.num_disks = std::to_string(members.size());
    array.num_vols = "1";
    array.write_cache = Word(kDiskCachePolicies, volume.cache_policy);
    array.volumes_in_array = volume.name;
    array.disks_in_array = MemberList(volume);

    rc::SWWinVolume record;
    record.id = volume.id;
    record.name = volume.name;
    record.raid_level = config ? volume.raid_level : RaidWord(volume.raid_level);
    record.size =
        config ? ExactGigabytes(volume.size_mb) : RecordRenderer::HumanSize(volume.size_mb);
    record.stripe_size =
        config ? std::to_string(volume.strip_kb) + " KB" : Kilobytes(volume.strip_kb);
    record.num_disks = array.num_disks;
    record.state = volume.status;
    record.system = Bool(volume.bootable);
    record.cache_policy = Word(kWritePolicies, volume.write_policy);
    record.disks_in_volume = array.disks_in_array;
    // The write hole closure applies to parity volumes only; "Off" is what such a volume has here.
    record.rwh_closure_policy = volume.raid_level == "5" ? "Off" : "";
    array.volumes.push_back(record);
    return array;
}

} // namespace

std::string RecordRenderer::HumanSize(long long megabytes) {
    if (megabytes == kNotReported) {
        return {};
    }
    static constexpr std::array<const char*, 4> kUnits = {"MB", "GB", "TB", "PB"};
    const long long value = std::max(megabytes, 0LL);
    std::size_t unit = 0;
    long long divisor = 1;
    // Tenths of the unit, rounded half up; a value that rounds to 1024.0 goes one unit up.
    auto tenths = [&value](long long by) {
        return value / by * 10 + ((value % by) * 10 + by / 2) / by;
    };
    while (unit + 1 < kUnits.size() && tenths(divisor) >= 10240) {
        ++unit;
        divisor *= 1024;
    }
    const long long shown = tenths(divisor);
    return std::to_string(shown / 10) + "." + std::to_string(shown % 10) + " " + kUnits[unit];
}

void RecordRenderer::Render(const Controller& controller, pc::StorcliCtrl& record) {
    record.target_id = controller.id;
    record.product_name = controller.product_name;
    record.serial_no = controller.serial_no;
    for (const Volume& volume : controller.volumes) {
        std::vector<std::string>& group = record.drive_groups[volume.id];
        for (int id : Members(volume)) {
            const Disk* disk = FindDisk(controller, id);
            const std::string slot =
                disk != nullptr && !disk->slot_no.empty() ? disk->slot_no : std::to_string(id);
            group.push_back(kEnclosure + slot);
        }
    }
    for (const Disk& disk : controller.disks) {
        pc::StorcliDisk out;
        out.id = disk.id;
        out.product_name = disk.product_name;
        out.state = disk.state;
        out.slot_no = disk.slot_no;
        out.disk_type = disk.disk_type;
        out.media_type = disk.media_type;
        out.capacity = HumanSize(disk.capacity_mb);
        out.serial_no = disk.serial_no;
        out.fru_no = disk.fru_no;
        out.type = StorcliType(controller, disk);
        record.disks.push_back(out);
    }
    for (const Volume& volume : controller.volumes) {
        pc::StorcliVolume out;
        out.id = volume.id;
        out.drive_group = volume.id;
        out.name = volume.name;
        out.raid_state = RaidWord(volume.raid_level);
        out.status = volume.status;
        out.stripe_size = Kilobytes(volume.strip_kb);
        out.capacity = HumanSize(volume.size_mb);
        out.read_policy = Word(kReadPolicies, volume.read_policy);
        out.write_policy = WritePolicy(controller, volume.write_policy);
        out.io_policy = Word(kIoPolicies, volume.io_policy);
        out.access_policy = AccessPolicy(volume.access_policy);
        out.disk_cache_policy = Word(kDiskCachePolicies, volume.cache_policy);
        record.volumes.push_back(out);
    }
}

void RecordRenderer::Render(const Controller& controller, ac::ControllerInfo& record) {
    record.target_id = std::to_string(controller.id);
    record.product_name = controller.product_name;
    record.serial_no = controller.serial_no;
    for (const Connector& connector : controller.connectors) {
        ac::ArcconfConnector out;
        out.id = std::to_string(connector.id);
        out.name = connector.name;
        out.mode = connector.mode;
        record.connectors.push_back(out);
    }
    for (const Disk& disk : controller.disks) {
        ac::ArcconfDisk out;
        out.id = std::to_string(disk.id);
        out.product_name = disk.product_name;
        out.state = disk.state;
        out.slot_no = disk.slot_no;
        out.disk_type = disk.disk_type;
        out.media_type = disk.media_type;
        out.capacity = HumanSize(disk.capacity_mb);
        out.serial_no = disk.serial_no;
        out.fru = disk.fru_no;
        out.connector_id = std::to_string(disk.connector_id);
        record.disks.push_back(out);
    }
    for (const Volume& volume : controller.volumes) {
        ac::ArcconfVolume out;
        out.id = std::to_string(volume.id);
        out.name = volume.name;
        out.raid_state = volume.raid_level;
        out.status = volume.status;
        out.stripe_size = std::to_string(volume.strip_kb);
        out.capacity = HumanSize(volume.size_mb);
        // This family's three I/O policy codes are its acceleration methods.
        out.acceleration = volume.io_policy;
        out.disks = Texts(Members(volume));
        record.volumes.push_back(out);
    }
}

void RecordRenderer::Render(const Controller& controller, rc::Controller& record) {
    const bool cfc = controller.family == "OOB_CFC";
    record.id = controller.id;
    record.product_name = controller.product_name;
    record.serial_no = controller.serial_no;
    record.fru_no = controller.fru_no;
    record.part_no = controller.part_no;
    record.vendor = controller.vendor;
    record.raid_url =
        "/redfish/v1/Systems/1/Storage/" + controller.family + "-" + std::to_string(controller.id);
    // The stripe limits and levels are the support helper's to fill (ControllerReader::
    // SupportInfo): without a helper they stay empty.
    for (const Disk& disk : controller.disks) {
        record.disks.push_back(OobDisk(disk));
    }
    for (const auto& volumes : PoolsOf(controller)) {
        const Volume& first = *volumes.front();
        rc::Pool pool;
        // The CFC tables put "RAID" in front of the level themselves.
        FillPool(controller, volumes, cfc ? first.raid_level : RaidWord(first.raid_level), pool);
        pool.disks = MemberDisks<rc::Disk>(controller, first, OobDisk);
        for (const Volume* volume : volumes) {
            rc::PoolVolume out;
            FillPoolVolume(controller, *volume, out);
            pool.volumes.push_back(out);
        }
        record.pools.push_back(pool);
    }
}

void RecordRenderer::Render(const Controller& controller, rc::M2CtrlInfo& record) {
    record.id = controller.id;
    record.version = controller.version;
    record.name = controller.name;
    // The stripe limits and levels are the support helper's to fill (ControllerReader::
    // SupportInfo): without a helper they stay empty.
    for (const Disk& disk : controller.disks) {
        rc::M2DiskInfo out;
        out.slot_no = disk.slot_no;
        out.product_name = disk.product_name;
        out.media_type = disk.media_type;
        out.capacity = HumanSize(disk.capacity_mb);
        out.manufacturer = disk.manufacturer;
        record.disks.push_back(out);
    }
    for (const Volume& volume : controller.volumes) {
        rc::M2VolumeInfo out;
        out.volume_id = std::to_string(volume.id);
        out.name = volume.name;
        out.physical_disks = MemberList(volume);
        out.raid_level = RaidWord(volume.raid_level);
        out.stripe_size = Kilobytes(volume.strip_kb);
        out.capacity = HumanSize(volume.size_mb);
        out.status = volume.status;
        record.volumes.push_back(out);
    }
}

void RecordRenderer::Render(const Controller& controller, pc::MicrochipCtrl& record) {
    record.id = controller.id;
    record.product_name = controller.product_name;
    record.serial_no = controller.serial_no;
    record.fru_no = controller.fru_no;
    record.part_no = controller.part_no;
    record.manufacturer = controller.manufacturer;
    // The stripe limits and levels are the support helper's to fill (ControllerReader::
    // SupportInfo): without a helper they stay empty.
    for (const Disk& disk : controller.disks) {
        record.disks.push_back(ProtocolDisk(disk));
    }
    for (const auto& volumes : PoolsOf(controller)) {
        const Volume& first = *volumes.front();
        pc::MicrochipPool pool;
        FillPool(controller, volumes, RaidWord(first.raid_level), pool);
        pool.disks = MemberDisks<pc::ProtocolDisk>(controller, first, ProtocolDisk);
        for (const Volume* volume : volumes) {
            pc::MicrochipVolume out;
            FillPoolVolume(controller, *volume, out);
            pool.volumes.push_back(out);
        }
        record.pools.push_back(pool);
    }
}

void RecordRenderer::Render(const Controller& controller, pc::VolManDevCtrl& record) {
    record.id = controller.id;
    record.product_name = controller.product_name;
    record.version = controller.version;
    record.manufacturer = controller.manufacturer;
    record.model = controller.model;
    // The stripe limits and levels are the support helper's to fill (ControllerReader::
    // SupportInfo): without a helper they stay empty.
    for (const Disk& disk : controller.disks) {
        record.disks.push_back(ProtocolDisk(disk));
    }
    for (const auto& volumes : PoolsOf(controller)) {
        const Volume& first = *volumes.front();
        pc::VolManDevPool pool;
        FillPool(controller, volumes, RaidWord(first.raid_level), pool);
        pool.disks = MemberDisks<pc::ProtocolDisk>(controller, first, ProtocolDisk);
        for (const Volume* volume : volumes) {
            pc::VolManDevVolume out;
            out.id = volume->id;
            out.name = volume->name;
            out.status = volume->status;
            out.stripe_size = Kilobytes(volume->strip_kb);
            out.bootable = Bootable(*volume);
            out.capacity = HumanSize(volume->size_mb);
            pool.volumes.push_back(out);
        }
        record.pools.push_back(pool);
    }
}

void RecordRenderer::Render(const Controller& controller, rc::SWWinController& record) {
    record.id = controller.id;
    record.target_id = std::to_string(controller.id);
    record.name = controller.name;
    record.supported_raid_levels = Join(controller.raid_levels, ",");
    for (const Disk& disk : controller.disks) {
        const Volume* volume = VolumeOf(controller, disk.id);
        rc::SWWinDisk out;
        out.id = disk.id;
        out.disk_type = disk.disk_type;
        out.state = disk.state;
        out.size = HumanSize(disk.capacity_mb);
        out.system_disk = Bool(volume != nullptr && volume->bootable);
        out.usage = Usage(controller, disk);
        out.serial_no = disk.serial_no;
        out.product_name = disk.product_name;
        out.fru_no = disk.fru_no;
        record.disks.push_back(out);
    }
    for (const Volume& volume : controller.volumes) {
        record.arrays.push_back(SoftwareArray(controller, volume, false));
    }
}

void RecordRenderer::Render(const Controller& controller, pc::FWDevOrderCtrl& record) {
    record.product_name = controller.product_name;
    record.serial_no = controller.serial_no;
    record.firmware_device_order = controller.fw_device_order.value_or("");
}

void RecordRenderer::Render(const Controller& controller, rc::FWDevOrderController& record) {
    record.product_name = controller.product_name;
    record.serial_no = controller.serial_no;
    record.fru_no = controller.fru_no;
    record.part_no = controller.part_no;
    record.firmware_device_order = controller.fw_device_order.value_or("");
}

void RecordRenderer::Render(const Controller& controller, rc::EKMController& record,
                            bool with_volumes) {
    record.product_name = controller.product_name;
    record.encryption_mode = controller.ekm_mode.value_or("");
    record.slot = controller.slot;
    if (!with_volumes) {
        return;
    }
    for (const Volume& volume : controller.volumes) {
        rc::EKMVolume out;
        out.name = volume.name;
        out.raid_type = RaidWord(volume.raid_level);
        out.id = volume.id;
        out.encrypted = volume.encrypted ? 1 : 0;
        record.volumes.push_back(out);
    }
}

void RecordRenderer::RenderConfig(const Controller& controller,
                                  std::vector<rc::VolumeObject>& volumes,
                                  std::vector<int>& hot_spares) {
    for (const Volume& volume : controller.volumes) {
        rc::VolumeObject out;
        out.controller_id = controller.id;
        out.volume_id = volume.id;
        out.disks = volume.spans;
        out.raid_level = volume.raid_level;
        out.hot_spares = volume.dedicated_spares;
        out.vol_name = volume.name;
        out.volume_size = Megabytes(volume.size_mb);
        out.strip_size = Kilobytes(volume.strip_kb);
        out.write_policy = volume.write_policy;
        out.read_policy = volume.read_policy;
        out.io_policy = volume.io_policy;
        out.access_policy = volume.access_policy;
        out.cache_policy = volume.cache_policy;
        out.initialization = volume.initialization;
        volumes.push_back(out);
    }
    hot_spares = controller.global_hot_spares;
}

void RecordRenderer::RenderConfig(const Controller& controller, std::vector<ac::VolumeCfg>& volumes,
                                  std::vector<std::string>& hot_spares) {
    for (const Volume& volume : controller.volumes) {
        ac::VolumeCfg out;
        out.controller_id = controller.id;
        out.volume_id = volume.id;
        out.disks = Texts(Members(volume));
        out.raid_level = volume.raid_level;
        out.vol_name = volume.name;
        out.volume_size = Megabytes(volume.size_mb);
        out.strip_size = std::to_string(volume.strip_kb); // the policy writer adds the "K"
        out.hot_spares = Texts(volume.dedicated_spares);
        out.io_policy = volume.io_policy;
        volumes.push_back(out);
    }
    hot_spares = Texts(controller.global_hot_spares);
}

void RecordRenderer::RenderConfig(const Controller& controller, rc::M2VolumeInfo& volume) {
    if (controller.volumes.empty()) {
        return;
    }
    const Volume& first = controller.volumes.front();
    volume.volume_id = std::to_string(first.id);
    volume.name = first.name;
    volume.physical_disks = MemberList(first);
    volume.raid_level = first.raid_level;
    volume.stripe_size = Kilobytes(first.strip_kb);
    volume.capacity = Megabytes(first.size_mb);
    volume.status = first.status;
}

void RecordRenderer::RenderConfig(const Controller& controller,
                                  std::vector<pc::OobMicroConfig>& volumes) {
    for (const Volume& volume : controller.volumes) {
        pc::OobMicroConfig out;
        out.controller_id = controller.id;
        out.volume_id = volume.id;
        out.disks = volume.spans;
        out.hot_spares = volume.dedicated_spares;
        out.raid_level = volume.raid_level;
        out.vol_name = volume.name;
        out.volume_size = Megabytes(volume.size_mb);
        out.strip_size = Kilobytes(volume.strip_kb);
        out.write_policy = volume.write_policy;
        out.read_policy = volume.read_policy;
        volumes.push_back(out);
    }
}

void RecordRenderer::RenderConfig(const Controller& controller,
                                  std::vector<pc::VolManDevConfig>& volumes,
                                  std::vector<int>& hot_spares) {
    for (const Volume& volume : controller.volumes) {
        pc::VolManDevConfig out;
        out.controller_id = controller.id;
        out.volume_id = volume.id;
        out.disks = volume.spans;
        out.raid_level = volume.raid_level;
        out.vol_name = volume.name;
        out.volume_size = Megabytes(volume.size_mb);
        out.strip_size = Kilobytes(volume.strip_kb);
        volumes.push_back(out);
    }
    hot_spares = controller.global_hot_spares;
}

void RecordRenderer::RenderConfig(const Controller& controller, std::vector<rc::SWWinArray>& arrays,
                                  std::vector<int>& hot_spares) {
    for (const Volume& volume : controller.volumes) {
        arrays.push_back(SoftwareArray(controller, volume, true));
    }
    hot_spares = controller.global_hot_spares;
}

} // namespace model
