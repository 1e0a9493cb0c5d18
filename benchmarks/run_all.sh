#!/usr/bin/env bash
# Builds the benchmark targets (Release, in build-bench/ unless BUILD_DIR says
# otherwise) and runs every benchmark, then prints a summary.
#
#   benchmarks/run_all.sh
#
# Environment: BUILD_DIR, RUNS (bench_open runs, default 21), ROUNDS and
# TOTAL_MIB (passed to sha256_vs_openssl.sh), PLAYER_BENCH=0 to leave out the
# player against feh (about 8 minutes, plus about 8 the first time for its bundle),
# WALL_BENCH=0 to leave out the collage walls under Xvfb (about 24 minutes; its own
# variables, such as WALL_RUNS and WALL_MEMORY_SECONDS, pass through), SLIDESHOW_BENCH=0 to
# leave out the slideshow application against feh and an empty window (about 11 minutes).
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
PLAYER_BENCH=${PLAYER_BENCH:-1}
WALL_BENCH=${WALL_BENCH:-1}
SLIDESHOW_BENCH=${SLIDESHOW_BENCH:-1}
targets=(bench_open bench_make_photos bench_flow_frame bench_slideshow sorvane)
[[ "$PLAYER_BENCH" == 0 ]] || targets+=(SorvanePlayer)
[[ "$WALL_BENCH" == 0 ]] || targets+=(bench_wall)
[[ "$SLIDESHOW_BENCH" == 0 ]] || targets+=(SorvaneSlideshow bench_empty_window)
cmake --build "$BUILD_DIR" --target "${targets[@]}"

logs=$(mktemp -d "${TMPDIR:-/tmp}/sorvane-bench-logs.XXXXXX")
trap 'rm -rf "$logs"' EXIT

echo
echo "== Opening a bundle (bench_open) =="
"$BUILD_DIR/bin/bench_open" --runs "$RUNS" | tee "$logs/open"

echo
echo "== One Flow wall frame (bench_flow_frame) =="
"$BUILD_DIR/bin/bench_flow_frame" | tee "$logs/flow"

echo
echo "== Slideshow order and steps (bench_slideshow) =="
"$BUILD_DIR/bin/bench_slideshow" | tee "$logs/slideshow"

echo
echo "== Full verification (sha256_vs_openssl.sh) =="
SORVANE="$BUILD_DIR/bin/sorvane" "$here/sha256_vs_openssl.sh" | tee "$logs/sha"

echo
echo "== Export against vipsthumbnail (export_vs_vipsthumbnail.sh) =="
SORVANE="$BUILD_DIR/bin/sorvane" MAKE_PHOTOS="$BUILD_DIR/bin/bench_make_photos" \
    "$here/export_vs_vipsthumbnail.sh" | tee "$logs/export"

if [[ "$PLAYER_BENCH" != 0 ]]; then
    echo
    echo "== Player against feh (player_vs_feh.sh) =="
    PLAYER="$BUILD_DIR/bin/SorvanePlayer" SORVANE="$BUILD_DIR/bin/sorvane" \
        MAKE_PHOTOS="$BUILD_DIR/bin/bench_make_photos" CACHE="$BUILD_DIR/player-bench" \
        "$here/player_vs_feh.sh" | tee "$logs/player"
fi

if [[ "$WALL_BENCH" != 0 ]]; then
    echo
    echo "== Collage walls under Xvfb (wall_under_xvfb.sh) =="
    BUILD_DIR="$BUILD_DIR" "$here/wall_under_xvfb.sh" | tee "$logs/wall"
fi

if [[ "$SLIDESHOW_BENCH" != 0 ]]; then
    echo
    echo "== Slideshow against feh and an empty window (slideshow_bench.sh) =="
    SLIDESHOW="$BUILD_DIR/bin/SorvaneSlideshow" EMPTY_WINDOW="$BUILD_DIR/bin/bench_empty_window" \
        MAKE_PHOTOS="$BUILD_DIR/bin/bench_make_photos" CACHE="$BUILD_DIR/slideshow-bench" \
        "$here/slideshow_bench.sh" | tee "$logs/slideshow-app"
fi

echo
echo "== Summary =="
echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2- | sed 's/^ *//')"
echo "load average now: $(cut -d' ' -f1-3 /proc/loadavg) (figures are noisy when other work runs)"
grep -E '^open median' "$logs/open"
grep -E '^ +(JSON parse|manifest build|file checks|play order)' "$logs/open"
grep -E '^frame median' "$logs/flow"
grep -E '^(view model in path order median|sort -V|ratio ours/sort -V|next median)' "$logs/slideshow"
grep -E 'median .*GB/s|^ratio' "$logs/sha"
grep -E '^ratio ours/baseline|^peak resident' "$logs/export"
if [[ "$PLAYER_BENCH" != 0 ]]; then
    sed -n '/^== Player against feh ==$/,$p' "$logs/player" | tail -n +2
fi
if [[ "$WALL_BENCH" != 0 ]]; then
    sed -n '/^== Collage walls under Xvfb ==$/,/^ratio /p' "$logs/wall"
    grep -E '^memory: ' "$logs/wall" || true
fi
if [[ "$SLIDESHOW_BENCH" != 0 ]]; then
    sed -n '/^== Slideshow ==$/,$p' "$logs/slideshow-app" | tail -n +2
fi
