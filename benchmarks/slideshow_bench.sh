#!/usr/bin/env bash
# SorvaneSlideshow on a virtual two-screen display (Xvfb), with feh and an empty Qt Quick
# window as references in the same run:
#   1. launch to first photo on screen, a folder of 1,000 photos and one of 100,000 files;
#   2. frame intervals during cross-fades and the Ken Burns drift at 1920x1080;
#   3. CPU while one still is held;
#   4. resident memory over 1,000 advances on two screens.
# Prints each figure with its goal and ratio, and a table at the end.
#
#   SLIDESHOW=build-bench/bin/SorvaneSlideshow MAKE_PHOTOS=build-bench/bin/bench_make_photos \
#     EMPTY_WINDOW=build-bench/bin/bench_empty_window benchmarks/slideshow_bench.sh
#
# Environment: DISTINCT (different photos made, default 100), WIDTH/HEIGHT (2160x1440), CACHE
# (where the folders are kept, default build-bench/slideshow-bench), LAUNCHES (7), FRAME_SECONDS
# (15), SETTLE (5), IDLE_SECONDS (20), ADVANCES (1000), KEY_DELAY_MS (100).
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
repo=$(dirname "$here")
# shellcheck source=benchmarks/xvfb.sh
source "$here/xvfb.sh"
SLIDESHOW=${SLIDESHOW:-$repo/build-bench/bin/SorvaneSlideshow}
MAKE_PHOTOS=${MAKE_PHOTOS:-$repo/build-bench/bin/bench_make_photos}
EMPTY_WINDOW=${EMPTY_WINDOW:-$repo/build-bench/bin/bench_empty_window}
DISTINCT=${DISTINCT:-100}
WIDTH=${WIDTH:-2160}
HEIGHT=${HEIGHT:-1440}
CACHE=${CACHE:-$repo/build-bench/slideshow-bench}
export LAUNCHES=${LAUNCHES:-7} FRAME_SECONDS=${FRAME_SECONDS:-15} SETTLE=${SETTLE:-5}
export IDLE_SECONDS=${IDLE_SECONDS:-20} ADVANCES=${ADVANCES:-1000} KEY_DELAY_MS=${KEY_DELAY_MS:-100}

for tool in Xvfb xdpyinfo xdotool feh python3; do
    command -v "$tool" >/dev/null || { echo "slideshow_bench: $tool is missing" >&2; exit 1; }
done
for program in "$SLIDESHOW" "$MAKE_PHOTOS" "$EMPTY_WINDOW"; do
    [[ -x "$program" ]] || { echo "slideshow_bench: $program is not built" >&2; exit 1; }
done

# A few distinct photos, then folders of hard links to them: every name is its own file to
# the programs (the slideshow's caches key on the path), and 100,000 names cost no space.
stamp="$CACHE/made"
recipe="distinct=$DISTINCT size=${WIDTH}x${HEIGHT} folders=1000,100000"
if [[ ! -f "$stamp" || "$(cat "$stamp")" != "$recipe" ]]; then
    rm -rf "$CACHE"
    mkdir -p "$CACHE/distinct" "$CACHE/photos-1000" "$CACHE/files-100000"
    echo "Making $DISTINCT photos of ${WIDTH}x${HEIGHT} and the folders (once; kept in $CACHE) ..."
    "$MAKE_PHOTOS" "$CACHE/distinct" "$DISTINCT" "$WIDTH" "$HEIGHT"
    python3 - "$CACHE" <<'PY'
import os, sys
cache = sys.argv[1]
sources = sorted(os.path.join(cache, "distinct", name) for name in os.listdir(os.path.join(cache, "distinct")))
for folder, count in (("photos-1000", 1000), ("files-100000", 100000)):
    for i in range(count):
        os.link(sources[i % len(sources)], os.path.join(cache, folder, f"photo-{i + 1:06d}.jpg"))
PY
    echo "$recipe" >"$stamp"
fi
echo "Folders: $CACHE/photos-1000 (1,000 photos), $CACHE/files-100000 (100,000), links to $DISTINCT photos of ${WIDTH}x${HEIGHT}"

xvfb_session slideshow_bench 200 219 1920x1080 1280x720
echo "Display $display: screen 0 1920x1080, screen 1 1280x720 (Xvfb, Mesa llvmpipe GL)"

# No desktop session: no D-Bus, no window manager, the settings in a throwaway folder.
DISPLAY="$display" QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=disabled: XVFB_PID="$xvfb_pid" \
    python3 -u "$here/slideshow_bench.py" "$SLIDESHOW" "$EMPTY_WINDOW" "$CACHE" "$work"
