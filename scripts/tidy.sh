#!/usr/bin/env bash
# Runs clang-tidy with the repository's .clang-tidy over our own sources, using the compile
# database of a configured build tree (default build/).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
# Only what this build compiles: the package consumer and the clang-only fuzzer entry are not in
# its compile database.
mapfile -t files < <(git ls-files '*.cpp' | while read -r file; do
    grep -q "\"file\": \"$PWD/$file\"" "$build/compile_commands.json" && echo "$file"
done)
[ ${#files[@]} -eq 0 ] && exit 0
printf '%s\n' "${files[@]}" | xargs -P "${RAIDCFG_JOBS:-2}" -n 8 \
    clang-tidy -p "$build" --quiet 2>/dev/null
echo "tidy: ${#files[@]} files checked"
