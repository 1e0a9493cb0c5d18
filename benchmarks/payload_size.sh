#!/usr/bin/env bash
# The player payload: its size, what dominates it, and what carrying it costs an
# export: media-only against --with-player on the demo's sample media, medians of
# interleaved runs, as a ratio.
#
#   benchmarks/payload_size.sh            (uses build/, builds the payload if needed)
#
# Environment: BUILD_DIR (default build), RUNS (default 5), TOP (default 12).
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
BUILD_DIR=${BUILD_DIR:-$(dirname "$here")/build}
RUNS=${RUNS:-5}
TOP=${TOP:-12}
payload="$BUILD_DIR/payload"

cmake --build "$BUILD_DIR" --target player_payload sorvane sorvane-sample-media >/dev/null

work=$(mktemp -d "${TMPDIR:-/tmp}/sorvane-payload-bench.XXXXXX")
trap 'rm -rf "$work"' EXIT

echo "== Payload $payload =="
total=$(du -sb "$payload" | cut -f1)
echo "total: $((total / 1048576)) MiB ($total bytes) in $(find "$payload" -type f | wc -l) files"
echo "by folder (MiB):"
for part in lib lib/gstreamer-1.0 plugins qml fonts SorvanePlayer; do
    printf '  %-20s %6.1f\n' "$part" "$(du -sb "$payload/$part" | awk '{print $1 / 1048576}')"
done
echo "largest files (MiB):"
find "$payload" -type f -printf '%s %P\n' | sort -rn | head -n "$TOP" |
    awk '{printf "  %6.1f  %s\n", $1 / 1048576, $2}'
# What the decoding libraries of gst-libav bring: FFmpeg and every library only it needs.
python3 - "$payload" <<'PY'
import os, re, subprocess, sys
lib = os.path.join(sys.argv[1], "lib")
def needed(path):
    out = subprocess.run(["readelf", "-d", path], capture_output=True, text=True).stdout
    return [n for n in re.findall(r"\(NEEDED\)\s+Shared library: \[(.*)\]", out) if os.path.isfile(os.path.join(lib, n))]
def closure(roots):
    seen, todo = set(), list(roots)
    while todo:
        name = todo.pop()
        if name not in seen:
            seen.add(name)
            todo += needed(os.path.join(lib, name))
    return seen
everything = set(os.listdir(lib)) - {"gstreamer-1.0"}
others = set()
for root, _, files in os.walk(sys.argv[1]):
    for f in files:
        path = os.path.join(root, f)
        if f != "libgstlibav.so" and os.path.dirname(path) != lib and open(path, "rb").read(4) == b"\x7fELF":
            others |= closure(needed(path))
only_libav = closure(["libavcodec.so.59", "libavformat.so.59", "libavfilter.so.8"]) - others
size = sum(os.path.getsize(os.path.join(lib, n)) for n in only_libav)
print(f"FFmpeg and the libraries only it needs (for gst-libav): {size / 1048576:.1f} MiB in {len(only_libav)} files")
PY

echo
echo "== Export of the sample media: media-only against --with-player ($RUNS runs each) =="
"$BUILD_DIR/bin/sorvane-sample-media" "$work/media" >/dev/null
sorvane="$BUILD_DIR/bin/sorvane"
plain="rm -rf '$work/out' && '$sorvane' export '$work/media' --to '$work/out' --quiet >/dev/null 2>&1"
with="rm -rf '$work/out' && '$sorvane' export '$work/media' --to '$work/out' --with-player --quiet >/dev/null 2>&1"
hyperfine --warmup 1 --runs "$RUNS" --style none --export-json "$work/times.json" "$plain" "$with" >/dev/null
python3 - "$work/times.json" <<'PY'
import json, statistics, sys
plain, with_player = (statistics.median(r["times"]) for r in json.load(open(sys.argv[1]))["results"])
print(f"  media-only   median {plain * 1000:8.1f} ms")
print(f"  with player  median {with_player * 1000:8.1f} ms")
print(f"ratio with-player/media-only export time: {with_player / plain:.2f}")
PY
