#!/usr/bin/env bash
# Builds the policy file fuzzer with clang and runs it for a while.
#   scripts/fuzz.sh [SECONDS]    default 60; build tree build-fuzz/ (RAIDCFG_FUZZ_BUILD to change)
# New inputs the fuzzer finds go to a scratch corpus in the build tree; the kept corpus in
# tests/fuzz/policy_file_corpus/ is only read. A crashing input is written to the build tree as
# crash-*: copy it into the kept corpus, so that the fuzz_corpus_test runs it from then on, and
# fix the cause. The exit status is non-zero when the fuzzer found something.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
build=${RAIDCFG_FUZZ_BUILD:-build-fuzz}
if ! [[ "$seconds" =~ ^[0-9]+$ ]]; then
    echo "usage: scripts/fuzz.sh [SECONDS]" >&2
    exit 2
fi

CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRAIDCFG_FUZZ=ON \
    -DRAIDCFG_BUILD_TESTS=OFF -DRAIDCFG_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" -j"${RAIDCFG_JOBS:-2}" --target policy_file_fuzzer

scratch="$build/policy_file_corpus"
mkdir -p "$scratch"
exec "$build/bin/policy_file_fuzzer" -max_total_time="$seconds" -artifact_prefix="$build/" \
    "$scratch" tests/fuzz/policy_file_corpus
