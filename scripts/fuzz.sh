#!/usr/bin/env bash
# Runs the libFuzzer targets, each for a given time, on seed corpora made from
# the examples, the test fixtures and ../shared/corpus (when present).
#   scripts/fuzz.sh [SECONDS] [TARGET ...]      default: 600 s, every target
# Findings land in build-fuzz/artifacts/<target>/; a summary line per target
# (runs, coverage, findings) is printed at the end.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-600}"
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    targets=(fuzz_old_style fuzz_xml fuzz_binary fuzz_workspace fuzz_scan fuzz_xcconfig fuzz_config)
fi

KELVANE_WITH_APP=0 KELVANE_WITH_FUZZ=1 ./scripts/install-deps.sh
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${targets[@]}"

root=build-fuzz
shared=../shared/corpus
seed() { # seed TARGET FILE...
    local dir="$root/seeds/$1"
    shift
    mkdir -p "$dir"
    for f in "$@"; do
        [ -f "$f" ] && [ "$(stat -c %s "$f")" -le 1048576 ] || continue
        cp "$f" "$dir/$(sha1sum "$f" | cut -c1-16)"
    done
}
mapfile -t pbxproj < <(find examples tests/fixtures "$shared" -name '*.pbxproj' 2>/dev/null | sort | head -n 400)
mapfile -t plists < <(find examples tests/fixtures "$shared" \( -name '*.plist' -o -name '*.entitlements' \) 2>/dev/null | sort | head -n 400)
mapfile -t workspaces < <(find examples tests/fixtures "$shared" -name 'contents.xcworkspacedata' 2>/dev/null | sort | head -n 200)
mapfile -t xcconfigs < <(find examples tests/fixtures "$shared" -name '*.xcconfig' 2>/dev/null | sort | head -n 300)
mapfile -t yamls < <(find examples tests/fixtures "$shared" \( -name '*.yml' -o -name '*.yaml' \) 2>/dev/null | sort | head -n 200)
seed fuzz_old_style "${pbxproj[@]}"
seed fuzz_scan "${pbxproj[@]}"
seed fuzz_xml "${plists[@]}" "${workspaces[@]}"
seed fuzz_workspace "${workspaces[@]}"
seed fuzz_xcconfig "${xcconfigs[@]}"
seed fuzz_config "${yamls[@]}"
# The options the configuration file knows, in both forms of list.
printf 'skip: [signing.inconsistent]\nonly:\n  - test.host.missing\nexclude: [Pods, Vendor/]\nbaseline: ci/known.json\nreading: as-built\nconfiguration: Release\n' \
    >"$root/seeds/fuzz_config/options"
# Binary seeds: the XML property lists converted by Python's plistlib.
mkdir -p "$root/seeds/fuzz_binary"
python3 - "$root/seeds/fuzz_binary" "${plists[@]}" <<'PY'
import hashlib, plistlib, sys
out = sys.argv[1]
for path in sys.argv[2:]:
    try:
        with open(path, 'rb') as f:
            value = plistlib.load(f)
        data = plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
    except Exception:
        continue
    with open(f"{out}/{hashlib.sha1(data).hexdigest()[:16]}", 'wb') as f:
        f.write(data)
PY

summary=()
for t in "${targets[@]}"; do
    corpus="$root/corpus/$t"
    artifacts="$root/artifacts/$t/"
    mkdir -p "$corpus" "$artifacts" "$root/seeds/$t"
    log="$root/$t.log"
    echo "== fuzz $t for ${seconds}s"
    set +e
    "$root/fuzz/$t" "$corpus" "$root/seeds/$t" -max_total_time="$seconds" -timeout=5 \
        -rss_limit_mb=2048 -max_len=262144 -artifact_prefix="$artifacts" \
        -print_final_stats=1 >"$log" 2>&1
    status=$?
    set -e
    runs=$(grep -oE 'stat::number_of_executed_units: *[0-9]+' "$log" | grep -oE '[0-9]+$' || echo "?")
    cov=$(grep -E '^#[0-9]+' "$log" | tail -n 1 | grep -oE 'cov: [0-9]+ ft: [0-9]+' || echo "cov: ?")
    found=$(find "$artifacts" -type f | wc -l)
    summary+=("$t: exit $status, $runs runs in ${seconds}s, $cov, $found findings")
done
printf '%s\n' "== summary" "${summary[@]}"
