#!/usr/bin/env bash
# SorvanePlayer against feh on a virtual two-screen display (Xvfb), in one run:
#   1. launch to first photo on screen, 1,000-item bundle of 2160 px photos;
#   2. CPU while a still is shown (interval 300 s, so nothing advances);
#   3. resident memory over 550 advances with the Right key.
# Prints medians, ratios player/feh and a table at the end.
#
#   PLAYER=build-bench/bin/SorvanePlayer SORVANE=build-bench/bin/sorvane \
#     MAKE_PHOTOS=build-bench/bin/bench_make_photos benchmarks/player_vs_feh.sh
#
# Environment: ITEMS (default 1000), WIDTH/HEIGHT (2160x1440), CACHE (where the
# generated bundle is kept between runs, default build-bench/player-bench),
# LAUNCHES (11), SETTLE (5 s), IDLE_SECONDS (20), ADVANCES (550), KEY_DELAY_MS (200).
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
repo=$(dirname "$here")
# shellcheck source=benchmarks/xvfb.sh
source "$here/xvfb.sh"
PLAYER=${PLAYER:-$repo/build-bench/bin/SorvanePlayer}
SORVANE=${SORVANE:-$repo/build-bench/bin/sorvane}
MAKE_PHOTOS=${MAKE_PHOTOS:-$repo/build-bench/bin/bench_make_photos}
ITEMS=${ITEMS:-1000}
WIDTH=${WIDTH:-2160}
HEIGHT=${HEIGHT:-1440}
CACHE=${CACHE:-$repo/build-bench/player-bench}
export LAUNCHES=${LAUNCHES:-11} SETTLE=${SETTLE:-5} IDLE_SECONDS=${IDLE_SECONDS:-20}
export ADVANCES=${ADVANCES:-550} KEY_DELAY_MS=${KEY_DELAY_MS:-200}

for tool in Xvfb xdpyinfo xdotool feh python3; do
    command -v "$tool" >/dev/null || { echo "player_vs_feh: $tool is missing" >&2; exit 1; }
done
for program in "$PLAYER" "$SORVANE" "$MAKE_PHOTOS"; do
    [[ -x "$program" ]] || { echo "player_vs_feh: $program is not built" >&2; exit 1; }
done

# The bundle takes minutes to make, so it is kept; the stamp says what it was made from.
bundle="$CACHE/bundle-${ITEMS}x${WIDTH}x${HEIGHT}/sorvane.bundle"
stamp="$CACHE/bundle-${ITEMS}x${WIDTH}x${HEIGHT}/made"
recipe="items=$ITEMS size=${WIDTH}x${HEIGHT} export=--sort sequential --interval 300"
if [[ ! -f "$stamp" || "$(cat "$stamp")" != "$recipe" ]]; then
    rm -rf "$CACHE/bundle-${ITEMS}x${WIDTH}x${HEIGHT}" "$CACHE/photos"
    mkdir -p "$CACHE/photos"
    echo "Generating $ITEMS photos of ${WIDTH}x${HEIGHT} (once; kept in $CACHE) ..."
    "$MAKE_PHOTOS" "$CACHE/photos" "$ITEMS" "$WIDTH" "$HEIGHT"
    # Sequential, so the first item is known; a long interval, so a still stays on screen.
    "$SORVANE" export "$CACHE/photos" --to "$(dirname "$bundle")" --sort sequential --interval 300 --quiet >/dev/null
    rm -rf "$CACHE/photos"
    echo "$recipe" >"$stamp"
fi
echo "Bundle: $bundle ($(du -sh "$bundle" | cut -f1), $ITEMS items)"

xvfb_session player_vs_feh 140 179 1920x1080 1280x720
echo "Display $display: screen 0 1920x1080, screen 1 1280x720 (Xvfb, Mesa llvmpipe GL)"

# No desktop session: no D-Bus, no window manager, the player's state in throwaway folders.
DISPLAY="$display" QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=disabled: XVFB_PID="$xvfb_pid" \
    python3 -u "$here/player_vs_feh.py" "$PLAYER" "$bundle" "$work"
