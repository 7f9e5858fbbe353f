#!/usr/bin/env bash
# Configures and builds Kelvane into build/ (or $KELVANE_BUILD_DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir="${KELVANE_BUILD_DIR:-build}"
if [ ! -f "$build_dir/build.ninja" ]; then
    cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Release "$@"
fi
cmake --build "$build_dir"
