#!/usr/bin/env bash
# Builds the benchmark targets (Release, in build-bench/ unless BUILD_DIR says
# otherwise) and runs every benchmark, then prints a summary.
#
#   benchmarks/run_all.sh
#
# Environment: BUILD_DIR, RUNS (bench_open runs, default 21), ROUNDS and
# TOTAL_MIB (passed to sha256_vs_openssl.sh).
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
repo=$(dirname "$here")
BUILD_DIR=${BUILD_DIR:-$repo/build-bench}
RUNS=${RUNS:-21}

"$repo/scripts/bootstrap"

if [[ ! -f "$BUILD_DIR/build.ninja" ]]; then
    cmake -S "$repo" -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang -DSORVANE_BUILD_TESTS=OFF
fi
cmake --build "$BUILD_DIR" --target bench_open bench_make_photos sorvane

logs=$(mktemp -d "${TMPDIR:-/tmp}/sorvane-bench-logs.XXXXXX")
trap 'rm -rf "$logs"' EXIT

echo
echo "== Opening a bundle (bench_open) =="
"$BUILD_DIR/bin/bench_open" --runs "$RUNS" | tee "$logs/open"

echo
echo "== Full verification (sha256_vs_openssl.sh) =="
SORVANE="$BUILD_DIR/bin/sorvane" "$here/sha256_vs_openssl.sh" | tee "$logs/sha"

echo
echo "== Export against vipsthumbnail (export_vs_vipsthumbnail.sh) =="
SORVANE="$BUILD_DIR/bin/sorvane" MAKE_PHOTOS="$BUILD_DIR/bin/bench_make_photos" \
    "$here/export_vs_vipsthumbnail.sh" | tee "$logs/export"

echo
echo "== Summary =="
echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2- | sed 's/^ *//')"
echo "load average now: $(cut -d' ' -f1-3 /proc/loadavg) (figures are noisy when other work runs)"
grep -E '^open median' "$logs/open"
grep -E '^ +(JSON parse|manifest build|file checks|play order)' "$logs/open"
grep -E 'median .*GB/s|^ratio' "$logs/sha"
grep -E '^ratio ours/baseline|^peak resident' "$logs/export"
