#!/usr/bin/env bash
# Builds everything and runs the whole test suite.
#   scripts/test.sh             Release build in build/
#   scripts/test.sh --sanitize  AddressSanitizer and UndefinedBehaviorSanitizer build in build-sanitize/
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

jobs=${RAIDCFG_JOBS:-2}
if [ "${1:-}" = "--sanitize" ]; then
    cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=Debug -DRAIDCFG_SANITIZE=ON >/dev/null
    cmake --build build-sanitize -j"$jobs"
    ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
        ctest --test-dir build-sanitize -j"$jobs" --output-on-failure
    exit 0
fi

cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j"$jobs"
ctest --test-dir build -j"$jobs" --output-on-failure
bash scripts/check-package.sh build
