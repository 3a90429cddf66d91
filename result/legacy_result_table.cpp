#include "result/legacy_result_table.hpp"

namespace result {

std::map<std::int32_t, std::string>& LegacyResultTable() {
    // The update command registers its rows here; the RAID service contributes none.
    static std::map<std::int32_t, std::string> table;
    return table;
}

} // namespace result
