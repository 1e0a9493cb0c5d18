#!/usr/bin/env bash
# Full verification (SHA-256 of every asset) against `openssl dgst -sha256` on the
# same files, both with a warm page cache.
#
#   SORVANE=build/bin/sorvane benchmarks/sha256_vs_openssl.sh
#
# Environment:
#   SORVANE    the sorvane binary (default: build/bin/sorvane under the repository)
#   ROUNDS     timed runs of each command, interleaved (default 5)
#   TOTAL_MIB  size of the generated bundle (default 1024)
#   KEEP_DIR   set to 1 to keep the generated bundle (its path is printed)
#   NO_HYPERFINE  set to 1 to time with date even when hyperfine is installed
#
# Prints the medians, the throughput of each and the ratio ours/openssl.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
repo=$(dirname "$here")
SORVANE=${SORVANE:-$repo/build/bin/sorvane}
ROUNDS=${ROUNDS:-5}
TOTAL_MIB=${TOTAL_MIB:-1024}

case "$SORVANE" in /*) ;; *) SORVANE="$PWD/$SORVANE" ;; esac
if [[ ! -x "$SORVANE" ]]; then
    echo "sha256_vs_openssl: no sorvane binary at $SORVANE (build it, or set SORVANE)" >&2
    exit 2
fi
for tool in openssl python3; do
    command -v "$tool" >/dev/null || { echo "sha256_vs_openssl: $tool is required" >&2; exit 2; }
done

work=$(mktemp -d "${TMPDIR:-/tmp}/sorvane-sha-bench.XXXXXX")
cleanup() {
    if [[ "${KEEP_DIR:-0}" == 1 ]]; then echo "kept $work"; else rm -rf "$work"; fi
}
trap cleanup EXIT
bundle=$work/bundle
mkdir -p "$bundle/media/video" "$bundle/media/full"

# A 16x16 JPEG: each photo is this followed by random bytes. Decoders stop at the
# end-of-image marker, so the photos pass the decode probe cheaply and the run
# measures hashing, not decoding.
jpeg_head=$work/head.jpg
base64 -d >"$jpeg_head" <<'EOF'
/9j/2wBDABALDA4MChAODQ4SERATGCgaGBYWGDEjJR0oOjM9PDkzODdASFxOQERXRTc4UG1RV19iZ2hnPk1xeXBkeFxlZ2P/2wBDARESEhgVGC8aGi9jQjhCY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2P/wAARCAAQABADASIAAhEBAxEB/8QAHwAAAQUBAQEBAQEAAAAAAAAAAAECAwQFBgcICQoL/8QAtRAAAgEDAwIEAwUFBAQAAAF9AQIDAAQRBRIhMUEGE1FhByJxFDKBkaEII0KxwRVS0fAkM2JyggkKFhcYGRolJicoKSo0NTY3ODk6Q0RFRkdISUpTVFVWV1hZWmNkZWZnaGlqc3R1dnd4eXqDhIWGh4iJipKTlJWWl5iZmqKjpKWmp6ipqrKztLW2t7i5usLDxMXGx8jJytLT1NXW19jZ2uHi4+Tl5ufo6erx8vP09fb3+Pn6/8QAHwEAAwEBAQEBAQEBAQAAAAAAAAECAwQFBgcICQoL/8QAtREAAgECBAQDBAcFBAQAAQJ3AAECAxEEBSExBhJBUQdhcRMiMoEIFEKRobHBCSMzUvAVYnLRChYkNOEl8RcYGRomJygpKjU2Nzg5OkNERUZHSElKU1RVVldYWVpjZGVmZ2hpanN0dXZ3eHl6goOEhYaHiImKkpOUlZaXmJmaoqOkpaanqKmqsrO0tba3uLm6wsPExcbHyMnK0tPU1dbX2Nna4uPk5ebn6Onq8vP09fb3+Pn6/9oADAMBAAIRAxEAPwAooooA/9k=
EOF
head_bytes=$(stat -c %s "$jpeg_head")

# File sizes are fixed by a seed so that every run hashes the same layout: three
# videos of 100-200 MB, then 2-5 MB photos up to the total.
mib=1048576
video_sizes=(188743680 157286400 125829120)
sizes_file=$work/sizes
python3 - "$TOTAL_MIB" "${video_sizes[@]}" >"$sizes_file" <<'PY'
import random, sys
total = int(sys.argv[1]) * 1048576
videos = [int(v) for v in sys.argv[2:]]
rng = random.Random(7)
left = total - sum(videos)
for i, size in enumerate(videos):
    print(f"video v{i:02d} {size}")
i = 0
while left > 2_000_000:
    size = min(left, rng.randint(2_000_000, 5_000_000))
    print(f"photo p{i:04d} {size}")
    left -= size
    i += 1
PY

echo "Generating a ${TOTAL_MIB} MiB bundle in $bundle ..."
listing=$work/listing
: >"$listing"
while read -r kind name size; do
    if [[ $kind == video ]]; then
        rel=media/video/$name.mp4
        head -c "$size" /dev/urandom >"$bundle/$rel"
    else
        rel=media/full/$name.jpg
        { cat "$jpeg_head"; head -c $((size - head_bytes)) /dev/urandom; } >"$bundle/$rel"
    fi
    echo "$kind $rel" >>"$listing"
done <"$sizes_file"

# Digests come from openssl (`-r` prints "hex *path"); the manifest is written from them.
(cd "$bundle" && cut -d' ' -f2 "$listing" | xargs openssl dgst -sha256 -r) >"$work/digests"
python3 - "$bundle" "$listing" "$work/digests" <<'PY'
import json, os, sys
bundle, listing, digests = sys.argv[1:4]
sha = {}
for line in open(digests):
    hexdigest, path = line.split()
    sha[path.lstrip("*")] = hexdigest
items = []
for line in open(listing):
    kind, rel = line.split()
    asset = {"path": rel, "bytes": os.path.getsize(os.path.join(bundle, rel)), "sha256": sha[rel]}
    if kind == "video":
        asset.update({"w": 1920, "h": 1080, "duration_seconds": 60.0})
        items.append({"id": os.path.basename(rel).split(".")[0], "media_type": "video", "assets": {"video": asset}})
    else:
        asset.update({"w": 16, "h": 16})
        items.append({"id": os.path.basename(rel).split(".")[0], "media_type": "image", "assets": {"full": asset}})
manifest = {"format": "sorvane.bundle", "format_version": 2, "min_reader_version": 1,
            "playback": {"sort": "random", "shuffle_seed": 42}, "items": items}
with open(os.path.join(bundle, "bundle.json"), "w") as f:
    json.dump(manifest, f, indent=2)
PY

mapfile -t files < <(cut -d' ' -f2 "$listing" | sed "s|^|$bundle/|")
total_bytes=$(stat -c %s "${files[@]}" | awk '{s += $1} END {print s}')
nfiles=${#files[@]}
nvideos=$(grep -c '^video' "$listing")
echo "  $nfiles files ($nvideos videos, $((nfiles - nvideos)) photos), $total_bytes bytes"

# The open must succeed with no report, or the timing would not be of a full check.
check_json() { # $1 = expected number of reports
    "$SORVANE" verify --level full --json "$bundle" | python3 -c '
import json, sys
r = json.load(sys.stdin)
want, count = int(sys.argv[1]), int(sys.argv[2])
ok = r["opened"] and len(r["reports"]) == want and r["integrity"]["manifestItemCount"] == count
sys.exit(0 if ok else 1)' "$1" "$nfiles"
}
check_json 0 || { echo "sha256_vs_openssl: the bundle did not verify cleanly" >&2; exit 1; }
# One flipped byte in the last photo must be caught: proof that every file is hashed.
victim=${files[$((nfiles - 1))]}
flip() { python3 -c '
import sys
with open(sys.argv[1], "r+b") as f:
    f.seek(-1, 2); b = f.read(1); f.seek(-1, 2); f.write(bytes([b[0] ^ 1]))' "$victim"; }
flip
check_json 1 || { echo "sha256_vs_openssl: a corrupted file went unnoticed" >&2; exit 1; }
flip
check_json 0 || { echo "sha256_vs_openssl: the restored file does not verify" >&2; exit 1; }

# Warm page cache for both commands.
cat "${files[@]}" >/dev/null

ours=("$SORVANE" verify --level full "$bundle")
theirs=(openssl dgst -sha256 "${files[@]}")
# References only: openssl on every core, as our verification uses several threads;
# and the verification without hashing (start-up, manifest, decode probes).
# The files are split into one list per core, balanced by size, largest first.
python3 - "$work" "$(nproc)" "${files[@]}" <<'PY'
import os, sys
work, cores, files = sys.argv[1], int(sys.argv[2]), sys.argv[3:]
parts = [[0, []] for _ in range(cores)]
for f in sorted(files, key=os.path.getsize, reverse=True):
    part = min(parts, key=lambda p: p[0])
    part[0] += os.path.getsize(f)
    part[1].append(f)
for i, (_, names) in enumerate(parts):
    with open(f"{work}/part{i}", "w") as out:
        out.write("\n".join(names) + "\n")
PY
parallel="for p in $work/part*; do xargs openssl dgst -sha256 <\$p >/dev/null & done; wait"
nohash="$SORVANE verify --level decode $bundle"

declare -a t_ours t_theirs t_parallel t_nohash
echo "Timing $ROUNDS interleaved rounds (load average before: $(cut -d' ' -f1-3 /proc/loadavg)) ..."
if [[ -z "${NO_HYPERFINE:-}" ]] && command -v hyperfine >/dev/null; then
    for ((r = 0; r < ROUNDS; r++)); do
        out=$work/round$r.json
        # Alternate which command goes first, so neither always follows the other.
        if ((r % 2 == 0)); then
            hyperfine -N --runs 1 --style none --export-json "$out" "${ours[*]}" "${theirs[*]}" >/dev/null
        else
            hyperfine -N --runs 1 --style none --export-json "$out" "${theirs[*]}" "${ours[*]}" >/dev/null
        fi
        hyperfine --runs 1 --style none --export-json "$work/ref$r.json" "$parallel" "$nohash" >/dev/null
        read -r a b < <(python3 -c '
import json, sys
res = json.load(open(sys.argv[1]))["results"]
byname = {r["command"].split()[0]: r["mean"] for r in res}
print(byname[sys.argv[2]], byname["openssl"])' "$out" "$SORVANE")
        t_ours+=("$a")
        t_theirs+=("$b")
        read -r a b < <(python3 -c '
import json, sys
res = json.load(open(sys.argv[1]))["results"]
print(res[0]["mean"], res[1]["mean"])' "$work/ref$r.json")
        t_parallel+=("$a")
        t_nohash+=("$b")
    done
else
    wall() { local s e; s=$(date +%s.%N); "$@" >/dev/null; e=$(date +%s.%N); awk -v s="$s" -v e="$e" 'BEGIN {print e - s}'; }
    for ((r = 0; r < ROUNDS; r++)); do
        if ((r % 2 == 0)); then
            t_ours+=("$(wall "${ours[@]}")"); t_theirs+=("$(wall "${theirs[@]}")")
        else
            t_theirs+=("$(wall "${theirs[@]}")"); t_ours+=("$(wall "${ours[@]}")")
        fi
        t_parallel+=("$(wall sh -c "$parallel")")
        t_nohash+=("$(wall $nohash)")
    done
fi

python3 - "$total_bytes" "$(nproc)" "${t_ours[*]}" "${t_theirs[*]}" "${t_parallel[*]}" "${t_nohash[*]}" <<'PY'
import statistics, sys
total, cores = int(sys.argv[1]), int(sys.argv[2])
ours, theirs, par, nohash = ([float(x) for x in a.split()] for a in sys.argv[3:7])
def line(label, times, rate=True):
    m = statistics.median(times)
    speed = f"{total/m/1e9:6.2f} GB/s" if rate else ""
    print(f"  {label:<36} median {m*1000:8.1f} ms  ({min(times)*1000:.1f} .. {max(times)*1000:.1f})  {speed}")
    return m
print(f"\n{total} bytes ({total/1e9:.2f} GB), {len(ours)} runs each, warm page cache:")
mo = line("sorvane verify --level full", ours)
mt = line("openssl dgst -sha256 (1 process)", theirs)
mp = line(f"openssl dgst -sha256, {cores} in parallel", par)
mn = line("sorvane verify --level decode", nohash, rate=False)
ratio = mt / mo
print(f"\nratio ours/openssl throughput: {ratio:.2f}  (goal >= 0.8: {'met' if ratio >= 0.8 else 'NOT met'})")
print(f"ratio ours/openssl on {cores} cores (reference): {mp / mo:.2f}")
print(f"time outside hashing (level decode): {mn*1000:.0f} ms = {100*mn/mo:.0f} % of the full verification")
PY
echo "load average after: $(cut -d' ' -f1-3 /proc/loadavg)"
