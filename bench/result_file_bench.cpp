// Writing "raid_result.xml" with many device rows, as a large controller's action leaves it.
#include <filesystem>
#include <string>

#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"

#include <benchmark/benchmark.h>

namespace {

void BM_WriteResultFile(benchmark::State& state) {
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() / "raidcfg-bench-result-file";
    std::filesystem::create_directories(dir);
    std::string error;
    Quillon::SetLogDir(dir.string(), error);
    RaidConfig::RaidConfigOption option;
    option.output_dir = dir.string() + "/";
    service::detail::ServiceRaidImpl impl(option);
    for (int row = 0; row < state.range(0); ++row) {
        impl.AddResult("disk" + std::to_string(row), "Success.");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(impl.WriteResultFile(TesselResult(result::Success)));
    }
    std::filesystem::remove_all(dir);
}
BENCHMARK(BM_WriteResultFile)->Arg(0)->Arg(64)->Arg(1024);

} // namespace
