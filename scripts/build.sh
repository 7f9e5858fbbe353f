#!/usr/bin/env bash
# Configures and builds Kelvane with a CMake preset: release (default, into
# build/) or sanitize (into build-sanitize/).
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-release}"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
