#!/usr/bin/env bash
# Quick start: installs what is missing, builds the programs and shows the demo server.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j2 --target raidcfg
exec build/bin/raidcfg show --machine demo "$@"
