#!/usr/bin/env bash
# From a fresh Debian 12 machine to a passing test suite: installs what is
# missing, builds, and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
echo "== install dependencies"
./scripts/install-deps.sh
echo "== build"
./scripts/build.sh
echo "== test"
ctest --test-dir "${KELVANE_BUILD_DIR:-build}" --output-on-failure -j 2
