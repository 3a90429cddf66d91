#!/usr/bin/env bash
# Installs the Debian packages raidcfg builds and tests with. Safe to run again: when every
# package is already there it installs nothing and prints nothing.
set -euo pipefail

packages=(
    g++ cmake make pkg-config
    libboost-dev libboost-regex-dev libboost-filesystem-dev
    nlohmann-json3-dev libcurl4-openssl-dev libssl-dev libcpp-httplib-dev
    libcli11-dev libspdlog-dev libfmt-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    clang clang-format clang-tidy
    python3-sushy python3-pytest ansible-core
)

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
    if [ "$status" != "install ok installed" ]; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
        echo "install-deps: missing packages (${missing[*]}) and no root rights to install them" >&2
        exit 1
    fi
    sudo=(sudo)
fi
echo "install-deps: installing ${missing[*]}"
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
