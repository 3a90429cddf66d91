#!/usr/bin/env bash
# Fails when a C++ file of ours differs from what clang-format makes of it.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files '*.cpp' '*.hpp')
[ ${#files[@]} -eq 0 ] && exit 0
clang-format --dry-run -Werror "${files[@]}"
echo "check-format: ${#files[@]} files formatted"
