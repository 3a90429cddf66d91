#!/usr/bin/env bash
# Installs the service from a build tree into a scratch prefix and builds a small host tool
# against it with find_package(RaidService), the way another tool would load the service.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
cmake --install "$build" --prefix "$stage/prefix" >/dev/null
cmake -S tests/package -B "$stage/consumer" -DCMAKE_PREFIX_PATH="$stage/prefix" >/dev/null
cmake --build "$stage/consumer" >/dev/null
"$stage/consumer/raid_package_consumer"
