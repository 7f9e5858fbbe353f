#!/usr/bin/env bash
# Packs the build into a .deb, unpacks it without root (dpkg-deb -x) and runs
# what it holds: the programs, the compiled-in check pages, the man page and
# the bash completion, all from the unpacked tree.
#   deb-round-trip.sh CPACK BUILD_DIR SOURCE_DIR VERSION WITH_APP
# Exits 77 (skipped) where the Debian packaging tools are missing.
set -euo pipefail
cpack=$1 build=$2 source=$3 version=$4 with_app=$5

for tool in "$cpack" dpkg-deb dpkg-shlibdeps; do
    if ! command -v "$tool" >/dev/null 2>&1; then
        echo "skipped: $tool is not installed (scripts/install-deps.sh installs dpkg-dev)"
        exit 77
    fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

if ! "$cpack" --config "$build/CPackConfig.cmake" -G DEB -B "$work/out" >"$work/cpack.log" 2>&1; then
    cat "$work/cpack.log"
    echo "FAIL: cpack could not make the package"
    exit 1
fi
debs=("$work"/out/*.deb)
deb=${debs[0]}
echo "package: $(basename "$deb")"
dpkg-deb -x "$deb" "$work/root"
root=$work/root/usr

# Dependencies: what the programs link, so installing the package on a clean
# machine brings everything they need.
depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"
needed=(libc6 libstdc++6 libexpat1)
if [ "$with_app" = ON ]; then
    needed+=(libqt6widgets6 libqt6gui6 libqt6core6 libqt6svg6)
fi
for package in "${needed[@]}"; do
    [[ ", $depends," == *", $package "* || ", $depends," == *", $package,"* ]] ||
        fail "Depends does not name $package"
done
[ "$(dpkg-deb -f "$deb" Version)" = "$version" ] || fail "package version is not $version"

# The terminal front-end, from the unpacked tree.
kelvane=$root/bin/kelvane
[ "$("$kelvane" --version)" = "$version" ] || fail "kelvane --version did not print $version"
set +e
report=$("$kelvane" scan "$source/examples/Aurora/Aurora.xcodeproj" 2>&1)
status=$?
set -e
[ $status -eq 0 ] || fail "scan of the clean example exited $status: $report"
[[ $report == *"Scanned Aurora"* ]] || fail "scan printed no report: $report"
"$kelvane" explain signing.inconsistent | grep -q '^# signing.inconsistent' ||
    fail "explain printed no page"

# The man page renders without warnings and covers every command.
page=$root/share/man/man1/kelvane.1
if [ ! -f "$page" ]; then
    fail "no man page"
else
    grep -q '@' "$page" && fail "the man page has an unconfigured @VARIABLE@"
    if command -v groff >/dev/null 2>&1; then
        warnings=$(groff -man -ww -z "$page" 2>&1)
        [ -z "$warnings" ] || fail "man page warnings: $warnings"
    fi
    for command in scan inspect checks explain; do
        grep -q "^\.B kelvane $command" "$page" || fail "man page lacks $command"
    done
fi

# The bash completion completes the commands and the check ids.
completion=$root/share/bash-completion/completions/kelvane
[ -f "$root/share/zsh/vendor-completions/_kelvane" ] || fail "no zsh completion"
[ -f "$root/share/fish/vendor_completions.d/kelvane.fish" ] || fail "no fish completion"
complete_words() {
    PATH="$root/bin:$PATH" bash -c '
        source "$1"; shift
        COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        _kelvane; printf "%s\n" "${COMPREPLY[@]}"' _ "$completion" "$@"
}
[ "$(complete_words kelvane exp)" = explain ] || fail "bash completion of 'exp'"
[[ $(complete_words kelvane explain sign) == signing.inconsistent ]] ||
    fail "bash completion of a check id"
[[ $(complete_words kelvane scan --format s) == sarif ]] || fail "bash completion of a format"

if [ "$with_app" = ON ]; then
    desktop=$root/share/applications/kelvane-app.desktop
    [ -f "$desktop" ] || fail "no desktop entry"
    exec_line=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$desktop")
    [ -x "$root/bin/$exec_line" ] || fail "the desktop entry runs $exec_line, which is not packed"
    icon=$(sed -n 's/^Icon=//p' "$desktop")
    [ -f "$root/share/icons/hicolor/scalable/apps/$icon.svg" ] || fail "no icon $icon.svg"
    QT_QPA_PLATFORM=offscreen "$root/bin/kelvane-app" --help >/dev/null 2>&1 ||
        fail "kelvane-app --help did not run"
fi

if [ $failures -ne 0 ]; then
    echo "$failures failed"
    exit 1
fi
echo "the package installs and runs"
