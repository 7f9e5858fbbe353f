#!/usr/bin/env bash
# From a fresh Debian 12 machine to Kelvane's report on a bundled example.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh >&2
./scripts/build.sh release >&2
exec build/src/cli/kelvane inspect examples/Aurora/Aurora.xcodeproj "$@"
