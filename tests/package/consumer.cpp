// Loads the installed service the way another host tool would and asks it for its action name.
#include <iostream>

#include "service/misc_raid_service/service_raid.hpp"

int main() {
    const RaidConfig::RaidConfigOption option;
    const service::ServiceRaid raid(option);
    if (raid.ActionName() != "Raid") {
        std::cerr << "unexpected action name\n";
        return 1;
    }
    std::cout << "package consumer: found the installed service (" << raid.ActionName() << ")\n";
    return 0;
}
