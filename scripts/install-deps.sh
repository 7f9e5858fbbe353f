#!/usr/bin/env bash
# Installs every Debian package Kelvane needs to build, test and benchmark.
# Idempotent: packages already present are skipped, so a second run is quick
# and works offline.
set -euo pipefail

packages=(
    cmake
    ninja-build
    g++
    pkg-config
    libexpat1-dev
    nlohmann-json3-dev
    libcli11-dev
    # .kelvane.yml
    libyaml-cpp-dev
    libgtest-dev
    libgmock-dev
    libbenchmark-dev
    time
    # CPack's .deb: dpkg-shlibdeps finds its Depends, `file` tells it what to scan.
    dpkg-dev
    file
)
if [ "${KELVANE_WITH_APP:-1}" = 1 ]; then
    # The offscreen window (tests, screenshots) draws text with fontconfig fonts.
    packages+=(qt6-base-dev qt6-svg-dev libgl-dev fonts-dejavu-core)
fi

if [ "${KELVANE_WITH_FUZZ:-0}" = 1 ]; then
    packages+=(clang-16 libclang-rt-16-dev python3)
fi

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "install-deps: all ${#packages[@]} packages present"
    exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then
    sudo="sudo"
fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
