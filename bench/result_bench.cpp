// Message look-ups happen for every row of every action; they must stay cheap.
#include <sstream>

#include "result/result_catalogue.hpp"
#include "result/result_values.hpp"
#include "result/tessel_result.hpp"

#include <benchmark/benchmark.h>

namespace {

void BM_GetResultMessageRaidFamily(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(result::GetResultMessage(0x180076));
    }
}
BENCHMARK(BM_GetResultMessageRaidFamily);

void BM_GetResultMessageLegacyMiss(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(result::GetResultMessage(0x2B02));
    }
}
BENCHMARK(BM_GetResultMessageLegacyMiss);

void BM_TesselResultStreamForm(benchmark::State& state) {
    const TesselResult outcome(result::RaidFailsOnSomeTargets);
    for (auto _ : state) {
        std::ostringstream out;
        out << outcome;
        benchmark::DoNotOptimize(out.str());
    }
}
BENCHMARK(BM_TesselResultStreamForm);

} // namespace
