#!/usr/bin/env bash
# Measures the project-file reader and the parser in MB/s, and the whole
# `kelvane inspect --format json` process (time and peak memory) on generated
# projects of 1 and 50 MB. Figures depend on the machine: run it on an idle one.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh >&2
./scripts/build.sh release >&2

echo "== reader and parser (in process)"
build/bench/reader_benchmark --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
build/bench/parse_project_benchmark --benchmark_repetitions=3 --benchmark_report_aggregates_only=true

echo "== kelvane inspect --format json, whole process"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for mb in 1 50; do
    build/bench/generate-project "$work/Gen$mb.xcodeproj" "$mb" >/dev/null
    size=$(stat -c %s "$work/Gen$mb.xcodeproj/project.pbxproj")
    build/src/cli/kelvane inspect --format json "$work/Gen$mb.xcodeproj" >/dev/null # warm the cache
    best=""
    for _ in 1 2 3 4 5; do
        line=$(/usr/bin/time -f '%e %M' build/src/cli/kelvane inspect --format json \
            "$work/Gen$mb.xcodeproj" 2>&1 >/dev/null | tail -n 1)
        if [ -z "$best" ] || awk -v a="${line%% *}" -v b="${best%% *}" 'BEGIN{exit !(a<b)}'; then
            best=$line
        fi
    done
    awk -v s="$size" -v t="${best%% *}" -v m="${best##* }" 'BEGIN {
        printf "%6.1f MB project.pbxproj: best of 5 %.3f s, peak memory %.1f MB (%.2fx the file)\n",
               s/1e6, t, m*1024/1e6, m*1024/s }'
done
