#!/usr/bin/env bash
# From a fresh Debian 12 machine to a passing test suite: installs what is
# missing, builds, and runs every test. `--sanitize` runs the same suite
# built with AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=release
if [ "${1:-}" = "--sanitize" ]; then
    preset=sanitize
fi
echo "== install dependencies"
./scripts/install-deps.sh
echo "== build ($preset)"
./scripts/build.sh "$preset"
echo "== test ($preset)"
ctest --preset "$preset"
