#!/usr/bin/env bash
# Draws the desktop application's screens from the example projects into
# docs/screenshots/, without a display (Qt's offscreen platform).
#   scripts/screenshots.sh [path/to/kelvane-app]
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
app=${1:-$root/build/src/app/kelvane-app}
out=$root/docs/screenshots
if [ ! -x "$app" ]; then
    echo "screenshots: $app not found; build the kelvane-app target first" >&2
    exit 2
fi
mkdir -p "$out"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
# Settings of their own: the pictures show a first launch, and the user's
# recent projects and window size are left alone.
settings=$(mktemp -d)
trap 'rm -rf "$settings"' EXIT
export XDG_CONFIG_HOME=$settings
# Paths in the window read as a person would type them from the repository.
cd "$root"

shot() {
    local name=$1
    shift
    "$app" --size 1100x720 --screenshot "$out/$name.png" "$@" 2>/dev/null
    echo "screenshots: docs/screenshots/$name.png"
}

shot picker
shot picker-selection-error examples/Nimbus
shot scanning --screenshot-after-ms 600 examples/Nimbus/Nimbus.xcodeproj
shot results-failing-check --select watch.companion.mismatch --expand-evidence \
    examples/Nimbus/Nimbus.xcodeproj
shot results-passed-check --select app.group.consistency examples/Aurora/Aurora.xcodeproj
shot fix-requires-review --select bundle.identifier.collision --show-fix \
    examples/Nimbus/Nimbus.xcodeproj
shot scan-failed examples/Aurora
# Around the screens: the menu bar, a drag held over the window, the export dialog.
shot menu-file --open-menu File examples/Aurora/Aurora.xcodeproj
shot drop --drag examples/Nimbus/Nimbus.xcworkspace
shot export-report --show-export --select watch.companion.mismatch examples/Nimbus/Nimbus.xcodeproj
