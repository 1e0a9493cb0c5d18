#!/usr/bin/env python3
"""Measures SorvaneSlideshow beside feh and an empty Qt Quick window on the X display in
$DISPLAY (see slideshow_bench.sh, which makes the folders and starts the display).

    slideshow_bench.py SLIDESHOW EMPTY_WINDOW CACHE WORKDIR

Environment: LAUNCHES, FRAME_SECONDS, SETTLE, IDLE_SECONDS, ADVANCES, KEY_DELAY_MS, XVFB_PID.
The X events, launches and /proc readings are player_vs_feh.py's; the figures slideshow_figures.py's.
"""
import os
import statistics
import subprocess
import sys
import time

import player_vs_feh as common
from slideshow_figures import frame_intervals, interval_summary, rss_swing, verdict

SLIDESHOW, EMPTY_WINDOW, CACHE, WORK = sys.argv[1:5]
LAUNCHES = int(os.environ.get("LAUNCHES", "7"))
FRAME_SECONDS = float(os.environ.get("FRAME_SECONDS", "15"))
ADVANCES = int(os.environ.get("ADVANCES", "1000"))
FOLDERS = {"1,000 photos": os.path.join(CACHE, "photos-1000"), "100,000 files": os.path.join(CACHE, "files-100000")}
LAUNCH_GOALS = {"1,000 photos": 400, "100,000 files": 600}
PHOTOS = FOLDERS["1,000 photos"]
FIRST = os.path.join(PHOTOS, "photo-000001.jpg")
FALLBACK = "Transitions fall back to cross-fades"

# The helpers give every run a fresh runtime and data folder; the settings stay in this one.
common.WORK = WORK
os.environ["XDG_CONFIG_HOME"] = os.path.join(WORK, "config")
rows = []


def slideshow(*options):
    return [SLIDESHOW, "--sort", "sequential", *options]


def start_logged(command, log, extra_env=None):
    env = common.player_env()
    env.update(extra_env or {})
    common.drain_x()
    with open(log, "wb") as err:
        return subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=err, env=env)


def read(path):
    with open(path, "rb") as f:
        return f.read().decode(errors="replace")


def centre_pixel():
    image = common.x11.XGetImage(common.display, common.roots[0], 960, 540, 1, 1, common.ALL_PLANES,
                                 common.Z_PIXMAP)
    if not image:
        return None
    pixel = common.x11.XGetPixel(image, 0, 0)
    common.x11.XDestroyImage(image)
    return pixel


def wait_first_photo(process, log):
    if not common.wait_for_line(log, common.FIRST_PHOTO, process):
        sys.exit("slideshow_bench: the slideshow showed no first photo:\n" + read(log))


print(f"load average at the start: {common.load_average()} on {os.cpu_count()} cores "
      "(figures are noisy when other work runs)")

# --- 1. launch --------------------------------------------------------------------------
for name, folder in FOLDERS.items():
    print(f"\n== 1. Launch to first photo on screen, a folder of {name} ==")
    print(f"{LAUNCHES} alternating runs after one warm-up run of each ...")
    command = slideshow("--interval", "60", "--transition", "none", folder)
    common.launch_player(command)
    common.launch_feh(folder)
    ours, feh = [], []
    for _ in range(LAUNCHES):
        ours.append(common.launch_player(command))
        feh.append(common.launch_feh(folder))
    trace, feh_mapped = [r[0] for r in ours], [r[0] for r in feh]
    print("  slideshow, own trace (process start -> first frame with the photo swapped):", common.spread(trace))
    print("  slideshow, external clock at that log line (exec -> line read):         ",
          common.spread([r[1] for r in ours]))
    print("  feh --fullscreen --auto-zoom FOLDER, exec -> window mapped:              ", common.spread(feh_mapped))
    print(f"  centre of screen 0 not black when measured: slideshow {sum(r[3] for r in ours)}/{LAUNCHES}, "
          f"feh {sum(r[1] for r in feh)}/{LAUNCHES}")
    median, goal = statistics.median(trace), LAUNCH_GOALS[name]
    ratio = median / statistics.median(feh_mapped)
    print(f"ratio slideshow/feh launch: {ratio:.2f}  (goal slideshow median <= {goal} ms: {verdict(median, goal)})")
    rows.append((f"launch, {name}", f"{median:.0f} ms", f"feh {statistics.median(feh_mapped):.0f} ms",
                 f"{ratio:.2f}", f"<= {goal} ms", verdict(median, goal)))


# --- 2. frames --------------------------------------------------------------------------
def frames_of(command, seconds, extra_env=None):
    log = os.path.join(WORK, "frames.log")
    process = start_logged(command, log, extra_env)
    time.sleep(seconds)
    common.stop(process)
    text = read(log)
    return frame_intervals(text), FALLBACK in text


print(f"\n== 2. Frame intervals at 1920x1080 ({FRAME_SECONDS:.0f} s each; photos change every second) ==")
empty = frame_intervals(subprocess.run([EMPTY_WINDOW, "--seconds", str(FRAME_SECONDS)], capture_output=True,
                                       text=True, env=dict(os.environ)).stderr).get("empty", [])
if len(empty) < 20:
    sys.exit("slideshow_bench: the empty window swapped too few frames")
reference = interval_summary(empty[10:])  # its first frames include start-up
print(f"  empty window: {reference['frames']} frames, median {reference['median']:.1f} ms, "
      f"99th percentile {reference['p99']:.1f}, longest {reference['longest']:.1f}")
frames_env = {"QT_LOGGING_RULES": "sorvane.frames.info=true"}
# The display's frames may fall behind here (software GL): the windows then turn to cross-fades
# for good, as they would on a slow machine. The last run keeps Ken Burns anyway, to measure it.
runs = [("cross-fade", slideshow("--transition", "crossFade", "--interval", "1", PHOTOS), {}),
        ("Ken Burns", slideshow("--transition", "kenBurns", "--interval", "1", PHOTOS), {}),
        ("Ken Burns kept", slideshow("--transition", "kenBurns", "--interval", "1", PHOTOS),
         {"SORVANE_TRANSITION_BUDGET": "off"})]
for label, command, env in runs:
    kinds, fell_back = frames_of(command, FRAME_SECONDS, {**frames_env, **env})
    print(f"  {label}: {'FELL BACK to cross-fades (frames fell behind)' if fell_back else 'no fall-back'}")
    for kind, values in sorted(kinds.items()):
        figures = interval_summary(values)
        ratio = figures["longest"] / reference["median"]
        print(f"    {kind:<22} {figures['frames']:5d} frames, median {figures['median']:6.1f} ms, "
              f"99th percentile {figures['p99']:6.1f}, longest {figures['longest']:6.1f}; "
              f"longest/empty median {ratio:.2f} (goal <= 2: {verdict(ratio, 2)})")
        rows.append((f"longest frame, {label}: {kind}", f"{figures['longest']:.1f} ms",
                     f"empty {reference['median']:.1f} ms", f"{ratio:.2f}", "<= 2x", verdict(ratio, 2)))

# --- 3. idle CPU ------------------------------------------------------------------------
print(f"\n== 3. CPU while one still is held ({common.SETTLE:.0f} s to settle, then {common.IDLE_SECONDS:.0f} s) ==")
log = os.path.join(WORK, "idle.log")
process = start_logged(slideshow("--interval", "60", "--transition", "none", PHOTOS), log)
wait_first_photo(process, log)
ours = common.idle_cpu(process)
common.quit_with_escape(process)
common.drain_x()
process = subprocess.Popen(["feh", "--fullscreen", "--auto-zoom", FIRST], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
if not common.wait_for_map(process, "feh"):
    sys.exit("slideshow_bench: feh mapped no window")
feh = common.idle_cpu(process)
common.stop(process)
print(f"  slideshow: {ours[0]:5.2f} % of one core ({ours[1]} ticks); X server meanwhile {ours[2]:.2f} %")
print(f"  feh:       {feh[0]:5.2f} % of one core ({feh[1]} ticks); X server meanwhile {feh[2]:.2f} %")
idle_ratio = f"{ours[0] / feh[0]:.1f}" if feh[1] else "n/a"
print(f"ratio slideshow/feh idle CPU: {idle_ratio}  (goal slideshow <= 1 %: {verdict(ours[0], 1)})")
rows.append(("CPU, one still held", f"{ours[0]:.2f} %", f"feh {feh[0]:.2f} %", idle_ratio, "<= 1 %",
             verdict(ours[0], 1)))

# --- 4. memory --------------------------------------------------------------------------
print(f"\n== 4. Resident memory over {ADVANCES} advances on two screens (Right, {common.KEY_DELAY_MS} ms apart) ==")
log = os.path.join(WORK, "rss.log")
process = start_logged(slideshow("--screens", "all", "--scope", "linked", "--interval", "60", "--transition", "none",
                                 PHOTOS), log)
wait_first_photo(process, log)
time.sleep(1.0)
# Consecutive photos differ in the middle of the screen: one key shows whether keys reach the show.
before = centre_pixel()
subprocess.run(["xdotool", "key", "Right"], check=True)
time.sleep(1.0)
keys_reach = centre_pixel() != before
start_kb = common.status_kb(process.pid, "VmRSS")
curve, highs, peak, step, kinds = common.advance_and_sample(process, ADVANCES, 100)
common.quit_with_escape(process)
rise, fall = rss_swing(curve)
print(f"  {step * 1000:.0f} ms per key; {start_kb // 1024} MB before the first key; a key moved the show on: "
      f"{'yes' if keys_reach else 'NO (the figures below are not of advances)'}")
print("    N        " + " ".join(f"{n:>5}" for n, _ in curve))
print("    VmRSS MB " + " ".join(f"{kb / 1024:5.0f}" for _, kb in curve))
print("    high MB  " + " ".join(f"{kb / 1024:5.0f}" for kb in highs))
print(f"  at the end: {kinds[0] / 1024:.0f} MB anonymous, {kinds[1] / 1024:.0f} MB file-backed, "
      f"{kinds[2] / 1024:.0f} MB shared (RssAnon, RssFile, RssShmem); peak (VmHWM) {peak / 1024:.0f} MB")
flat = max(rise, -fall)
print(f"after the first 100: from {fall:+.1f} % to {rise:+.1f} % (goal within 10 %: {verdict(flat, 10)}); "
      f"peak {peak / 1024:.0f} MB (goal <= 300 MB: {verdict(peak / 1024, 300)})")
rows.append(("VmRSS swing after 100 advances", f"{fall:+.0f}..{rise:+.0f} %", "", "", "within 10 %",
             verdict(flat, 10)))
rows.append(("peak VmHWM, two screens", f"{peak / 1024:.0f} MB", "", "", "<= 300 MB", verdict(peak / 1024, 300)))

print("\n== Slideshow ==")
print(f"load average at the end: {common.load_average()}")
print(f"{'measure':<52} {'ours':>12} {'reference':>16} {'ratio':>6}  {'goal':<12} verdict")
for row in rows:
    print(f"{row[0]:<52} {row[1]:>12} {row[2]:>16} {row[3]:>6}  {row[4]:<12} {row[5]}")
