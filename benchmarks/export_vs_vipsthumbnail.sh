#!/usr/bin/env bash
# Export throughput on 24-megapixel JPEGs into the two tiers (1200 and 2160 px,
# JPEG quality 85, metadata stripped), with SHA-256 of every file, against the
# plain baseline: vipsthumbnail run once per tier per photo. Both use every core.
# Then the peak memory of an export with --jobs 2.
#
#   SORVANE=build-bench/bin/sorvane MAKE_PHOTOS=build-bench/bin/bench_make_photos \
#     benchmarks/export_vs_vipsthumbnail.sh
#
# Environment: PHOTOS (default 24), RUNS (default 5), WIDTH/HEIGHT (6000x4000).
set -euo pipefail

SORVANE=${SORVANE:-build-bench/bin/sorvane}
MAKE_PHOTOS=${MAKE_PHOTOS:-build-bench/bin/bench_make_photos}
PHOTOS=${PHOTOS:-24}
RUNS=${RUNS:-5}
WIDTH=${WIDTH:-6000}
HEIGHT=${HEIGHT:-4000}
cores=$(nproc)

work=$(mktemp -d "${TMPDIR:-/tmp}/sorvane-export-bench.XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/photos"
echo "Generating $PHOTOS photos of ${WIDTH}x${HEIGHT} ..."
"$MAKE_PHOTOS" "$work/photos" "$PHOTOS" "$WIDTH" "$HEIGHT"
echo "  $(du -sh "$work/photos" | cut -f1) of JPEG"

ours="rm -rf '$work/ours' && '$SORVANE' export '$work/photos' --to '$work/ours' --sha256 --jobs $cores --quiet >/dev/null"
theirs="rm -rf '$work/theirs' && mkdir -p '$work/theirs' && ls '$work/photos'/*.jpg | xargs -P $cores -I{} sh -c \
'vipsthumbnail \"{}\" -s 1200 -o \"$work/theirs/%s_tile.jpg[Q=85,strip]\" && vipsthumbnail \"{}\" -s 2160 -o \"$work/theirs/%s_full.jpg[Q=85,strip]\"'"

# Both produce what they should before anything is timed.
bash -c "$ours"
bash -c "$theirs"
[ "$(ls "$work/theirs" | wc -l)" -eq $((PHOTOS * 2)) ] || { echo "baseline produced the wrong files" >&2; exit 1; }
"$SORVANE" verify --level decode "$work/ours/sorvane.bundle" >/dev/null || { echo "our bundle does not verify" >&2; exit 1; }

echo "Timing $RUNS interleaved rounds on $cores cores ..."
hyperfine --runs "$RUNS" --style none --export-json "$work/times.json" "$ours" "$theirs" >/dev/null
python3 - "$work/times.json" "$PHOTOS" <<'PY'
import json, statistics, sys
runs = json.load(open(sys.argv[1]))["results"]
photos = int(sys.argv[2])
ours, theirs = (statistics.median(r["times"]) for r in runs)
print(f"  sorvane export (hash + both tiers)    median {ours*1000:8.1f} ms  {photos/ours:6.2f} photos/s")
print(f"  vipsthumbnail once per tier per photo median {theirs*1000:8.1f} ms  {photos/theirs:6.2f} photos/s")
ratio = theirs / ours
print(f"ratio ours/baseline throughput: {ratio:.2f}  (goal >= 1.2: {'met' if ratio >= 1.2 else 'NOT met'})")
PY

rm -rf "$work/ours"
peak_kb=$(/usr/bin/time -f '%M' "$SORVANE" export "$work/photos" --to "$work/ours" --sha256 --jobs 2 --quiet 2>&1 >/dev/null | tail -n 1)
echo "peak resident memory, export --jobs 2: $((peak_kb / 1024)) MB  (goal <= 600 MB: $([ "$peak_kb" -le $((600 * 1024)) ] && echo met || echo 'NOT met'))"
