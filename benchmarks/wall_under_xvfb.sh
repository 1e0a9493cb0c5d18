#!/usr/bin/env bash
# The collage walls on a virtual 1920x1080 display (Xvfb, Mesa llvmpipe), with bench_wall:
#   1. frames per second, CPU per frame and the gaps between frames of the Flow, Varied and
#      Scatter walls and of an empty window (the baseline), WALL_RUNS rounds, interleaved;
#   2. the Flow wall's CPU per frame against the empty window's;
#   3. resident memory of a Flow wall of 5,000 items changing every second, for 10 minutes.
# Prints the runs, medians and a table at the end.
#
#   benchmarks/wall_under_xvfb.sh
#
# Environment: BUILD_DIR (default build-bench), CACHE (where the photos are kept between runs,
# default BUILD_DIR/wall-bench), WALL_RUNS (3), WALL_SECONDS (60 per run), WALL_POOL (500),
# WALL_MEMORY_SECONDS (600; 0 leaves the memory run out), WALL_MEMORY_POOL (5000),
# SCREENSHOT (the Flow wall at the end of its last run, default CACHE/flow.png).
# QSG_RENDER_LOOP and other Qt variables pass through to the benchmark.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
repo=$(dirname "$here")
# shellcheck source=benchmarks/xvfb.sh
source "$here/xvfb.sh"
BUILD_DIR=${BUILD_DIR:-$repo/build-bench}
CACHE=${CACHE:-$BUILD_DIR/wall-bench}
WALL_RUNS=${WALL_RUNS:-3}
WALL_SECONDS=${WALL_SECONDS:-60}
WALL_POOL=${WALL_POOL:-500}
WALL_MEMORY_SECONDS=${WALL_MEMORY_SECONDS:-600}
WALL_MEMORY_POOL=${WALL_MEMORY_POOL:-5000}
SCREENSHOT=${SCREENSHOT:-$CACHE/flow.png}
layouts=(flow varied scatter none)

"$repo/scripts/bootstrap"
if [[ ! -f "$BUILD_DIR/build.ninja" ]]; then
    cmake -S "$repo" -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang -DSORVANE_BUILD_TESTS=OFF
fi
cmake --build "$BUILD_DIR" --target bench_wall bench_make_photos >/dev/null
bench="$BUILD_DIR/bin/bench_wall"

for tool in Xvfb xdpyinfo; do
    command -v "$tool" >/dev/null || { echo "wall_under_xvfb: $tool is missing" >&2; exit 1; }
done

# Camera-sized photos, three landscape to one portrait so Flow tiles differ in length; made once.
photos="$CACHE/photos"
recipe="75x2160x1440 25x1440x2160"
if [[ ! -f "$photos/made" || "$(cat "$photos/made")" != "$recipe" ]]; then
    rm -rf "$photos"
    mkdir -p "$photos/landscape" "$photos/portrait"
    echo "Generating 100 photos (once; kept in $photos) ..."
    "$BUILD_DIR/bin/bench_make_photos" "$photos/landscape" 75 2160 1440
    "$BUILD_DIR/bin/bench_make_photos" "$photos/portrait" 25 1440 2160
    for file in "$photos"/portrait/*.jpg; do mv "$file" "$photos/portrait-$(basename "$file")"; done
    mv "$photos"/landscape/*.jpg "$photos/"
    rmdir "$photos/landscape" "$photos/portrait"
    echo "$recipe" >"$photos/made"
fi

xvfb_session wall_under_xvfb 260 279 1920x1080
mkdir -m 700 "$work/xdg"
echo "Display $display: 1920x1080 (Xvfb, Mesa llvmpipe GL); $(nproc) cores, load average $(cut -d' ' -f1-3 /proc/loadavg)"

# No desktop session: no D-Bus, no window manager.
run_bench() {
    DISPLAY="$display" QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=disabled: XDG_RUNTIME_DIR="$work/xdg" \
        "$bench" --xserver-pid "$xvfb_pid" "$@" "$photos"
}

# value FILE LINE-START PATTERN: the number before PATTERN on the line that starts with LINE-START.
value() { grep -m1 "^$2" "$1" | grep -oE "[0-9.]+ $3" | head -1 | cut -d' ' -f1; }
fps() { value "$1" 'frames:' fps; }
cpu_core() { value "$1" 'cpu:' '%'; }
cpu_frame() { value "$1" 'cpu:' 'ms per frame'; }
x_frame() { value "$1" 'x server cpu:' 'ms per frame'; }
p99_gap() { grep -m1 '^frame gaps:' "$1" | grep -oE 'p99 [0-9.]+' | cut -d' ' -f2; }
longest_gap() { grep -m1 '^frame gaps:' "$1" | grep -oE 'longest [0-9.]+' | cut -d' ' -f2; }
long_gaps() { value "$1" 'frame gaps:' '> 50 ms'; }
gui_stalls() { value "$1" 'gui thread:' '> 50 ms'; }
rss_max() { grep -m1 '^rss:' "$1" | grep -oE 'max [0-9.]+' | cut -d' ' -f2; }
median() {
    sort -g | awk '{ v[NR] = $1 } END { if (NR == 0) print "?"; else if (NR % 2) print v[(NR + 1) / 2];
        else printf "%.2f\n", (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}

echo
echo "== Frames: ${WALL_RUNS} rounds of ${layouts[*]}, ${WALL_SECONDS} s each, pool $WALL_POOL =="
for round in $(seq "$WALL_RUNS"); do
    for layout in "${layouts[@]}"; do
        out="$work/$layout-$round.out"
        extra=()
        [[ "$layout" != flow ]] || extra=(--screenshot "$SCREENSHOT")
        run_bench --layout "$layout" --pool "$WALL_POOL" --seconds "$WALL_SECONDS" --rss-every 10 \
            "${extra[@]}" >"$out" 2>"$work/$layout-$round.err"
        [[ "$round" != 1 || "$layout" != flow ]] || grep -E '^render loop' "$out"
        printf '%-8s run %s: %6s fps, cpu %6s ms/frame (%5s %% of a core), gaps: p99 %s ms, longest %s ms, %s > 50 ms; GUI thread stalls > 50 ms: %s\n' \
            "$layout" "$round" "$(fps "$out")" "$(cpu_frame "$out")" "$(cpu_core "$out")" "$(p99_gap "$out")" \
            "$(longest_gap "$out")" "$(long_gaps "$out")" "$(gui_stalls "$out")"
        grep -E '^(cpu by thread|flow scroll)' "$out" | sed 's/^/             /'
        grep -E '^gaps > 50 ms' "$out" | sed 's/^/             /' || true
    done
done

echo
echo "== Collage walls under Xvfb =="
echo "medians of $WALL_RUNS runs of $WALL_SECONDS s (the first 5 s left out), 1920x1080, pool $WALL_POOL, $(grep -m1 -oE "interval [0-9.]+ s" "$work/flow-1.out")"
printf '%-8s %6s %9s %12s %10s %8s %11s %9s %9s %7s\n' layout fps "cpu %core" "cpu ms/frame" "X ms/frame" "p99 gap" "longest gap" "gaps>50ms" "GUI>50ms" "RSS MB"
declare -A cpu_per_frame
for layout in "${layouts[@]}"; do
    files=("$work/$layout"-*.out)
    each() { for f in "${files[@]}"; do "$1" "$f"; done; }
    fps=$(each fps | median)
    core=$(each cpu_core | median)
    cpf=$(each cpu_frame | median)
    xpf=$(each x_frame | median)
    p99=$(each p99_gap | median)
    longest=$(each longest_gap | sort -g | tail -1)
    long=$(each long_gaps | paste -sd/)
    stalls=$(each gui_stalls | paste -sd/)
    rss=$(each rss_max | median)
    cpu_per_frame[$layout]=$cpf
    printf '%-8s %6s %9s %12s %10s %8s %11s %9s %9s %7s\n' "$layout" "$fps" "$core" "$cpf" "$xpf" "$p99" "$longest" "$long" "$stalls" "$rss"
done
echo "(longest gap: the longest in any run; gaps>50ms and GUI>50ms (the GUI thread's event loop late by more"
echo " than 50 ms): per run; X: the X server's CPU; RSS: the highest sample)"
awk -v flow="${cpu_per_frame[flow]}" -v none="${cpu_per_frame[none]}" \
    'BEGIN { if (none > 0) printf "ratio Flow wall / empty window, CPU per frame: %.2f (%s / %s ms)\n", flow / none, flow, none }'

warnings=$(cat "$work"/*.err | grep -v 'XDG_RUNTIME_DIR' | sort | uniq -c | sort -rn || true)

if [[ "$WALL_MEMORY_SECONDS" != 0 ]]; then
    warmup=60
    ((WALL_MEMORY_SECONDS > 2 * warmup)) || warmup=$((WALL_MEMORY_SECONDS / 4))
    echo
    echo "== Memory: Flow wall, pool $WALL_MEMORY_POOL, interval 1 s, auto-cycle, $WALL_MEMORY_SECONDS s =="
    out="$work/memory.out"
    run_bench --layout flow --pool "$WALL_MEMORY_POOL" --interval 1 --auto-cycle --seconds "$WALL_MEMORY_SECONDS" \
        --warmup "$warmup" --rss-every 30 >"$out" 2>"$work/memory.err"
    grep -E '^(frames|cpu|x server|frame gaps|gaps > 50|gui|wall changes|flow|rss)' "$out"
    samples=$(grep -m1 '^rss samples' "$out" | sed 's/^rss samples (s: MB)://')
    awk -v samples="$samples" -v warmup="$warmup" 'BEGIN {
        n = split(samples, s, " ")
        for (i = 1; i <= n; ++i) { split(s[i], p, ":"); t[i] = p[1]; r[i] = p[2]; if (r[i] > peak) peak = r[i] }
        for (i = 1; i <= n && t[i] < warmup; ++i) ;
        printf "memory: first %.1f MB at %d s, after warm-up %.1f MB at %d s, peak %.1f MB, last %.1f MB at %d s, growth after warm-up %+.1f %% (goals: under 400 MB, under 10 %%)\n",
            r[1], t[1], r[i], t[i], peak, r[n], t[n], 100 * (r[n] - r[i]) / r[i]
    }'
    grep -oE 'peak \(VmHWM\) [0-9.]+ MB' "$out" | sed 's/^/memory: /'
    warnings=$(cat "$work"/*.err | grep -v 'XDG_RUNTIME_DIR' | sort | uniq -c | sort -rn || true)
fi

echo
if [[ -n "$warnings" ]]; then
    echo "Messages printed by the benchmark (count, message):"
    echo "$warnings"
else
    echo "No warnings printed."
fi
[[ ! -f "$SCREENSHOT" ]] || echo "Flow wall screenshot: $SCREENSHOT"
