#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backend/raid_driver.hpp"
#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

// The common base of every RAID backend class: the operations all families share. Each call
// is carried out by the driver the backend platform made for the family; a failing call leaves
// its reason in error_text, which the caller moves out so each text is told once.
class Raid {
public:
    virtual ~Raid() = 0;
    Raid(const Raid&) = delete;
    Raid& operator=(const Raid&) = delete;

    virtual int count() const;
    virtual void GetControllerIds(std::vector<int>& ids) const;
    virtual RaidErrorCode ClearConfig(int controller);
    virtual RaidErrorCode RemoveVolume(int controller, int volume);
    virtual RaidErrorCode GetCanMakeGoodDiskIds(int controller, std::vector<int>& disks);
    virtual RaidErrorCode GetCanMakeJbodDiskIds(int controller, std::vector<int>& disks);
    virtual RaidErrorCode MakeGood(int controller, int disk);
    virtual RaidErrorCode MakeJbod(int controller, int disk);
    virtual RaidErrorCode AddGlobalHotSpare(int controller, const std::string& disk);
    virtual RaidErrorCode AddDedicatedHotSpare(int controller, const std::string& disk,
                                               const std::vector<std::string>& disk_groups);
    virtual RaidErrorCode RemoveHotSpare(int controller, const std::string& disk);
    virtual RaidErrorCode FastInit(int controller, int volume);
    virtual RaidErrorCode GetAllVolumes(int controller, std::vector<int>& volumes);
    virtual RaidErrorCode RaidChangeConnectorMode(int controller, const std::string& connector,
                                                  const std::string& mode);

    // The text of the last failure.
    std::string error_text;

protected:
    explicit Raid(std::shared_ptr<RaidDriver> driver);
    RaidDriver& driver() const { return *driver_; }

private:
    std::shared_ptr<RaidDriver> driver_;
};

} // namespace RaidConfig
} // namespace Quillon
