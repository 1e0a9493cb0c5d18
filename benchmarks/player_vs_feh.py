#!/usr/bin/env python3
"""Measures SorvanePlayer and feh side by side on the X display in $DISPLAY (see
player_vs_feh.sh, which prepares the bundle and the display).

    player_vs_feh.py PLAYER BUNDLE WORKDIR

Environment: LAUNCHES, SETTLE, IDLE_SECONDS, ADVANCES, KEY_DELAY_MS, XVFB_PID, and PLAYER_ENV
(NAME=VALUE words added to the player's environment only, for experiments).
Only the standard library: X events are read through libX11 with ctypes. slideshow_bench.py
imports the helpers (X events, launches, CPU and memory readings); importing runs nothing.
"""
import ctypes
import ctypes.util
import json
import os
import re
import select
import shutil
import signal
import statistics
import subprocess
import sys
import threading
import time

# Set by main() from the command line, or by a script that imports these helpers.
PLAYER = BUNDLE = WORK = None
LAUNCHES = int(os.environ.get("LAUNCHES", "11"))
SETTLE = float(os.environ.get("SETTLE", "5"))
IDLE_SECONDS = float(os.environ.get("IDLE_SECONDS", "20"))
ADVANCES = int(os.environ.get("ADVANCES", "550"))
KEY_DELAY_MS = int(os.environ.get("KEY_DELAY_MS", "200"))
XVFB_PID = int(os.environ.get("XVFB_PID", "0"))
PLAYER_ENV = dict(word.split("=", 1) for word in os.environ.get("PLAYER_ENV", "").split())
BATCH = 50
HZ = os.sysconf("SC_CLK_TCK")
FIRST_PHOTO = re.compile(rb"First photo on screen after (\d+) ms")


# --- X: map events, a pixel probe -------------------------------------------------------
class XClassHint(ctypes.Structure):
    _fields_ = [("res_name", ctypes.c_void_p), ("res_class", ctypes.c_void_p)]  # raw, so they can be freed


x11 = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
x11.XRootWindow.restype = ctypes.c_ulong
x11.XRootWindow.argtypes = [ctypes.c_void_p, ctypes.c_int]
x11.XScreenCount.argtypes = [ctypes.c_void_p]
x11.XSelectInput.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_long]
x11.XConnectionNumber.argtypes = [ctypes.c_void_p]
x11.XPending.argtypes = [ctypes.c_void_p]
x11.XNextEvent.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
x11.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
x11.XGetClassHint.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.POINTER(XClassHint)]
x11.XGetImage.restype = ctypes.c_void_p
x11.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int, ctypes.c_uint,
                          ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
x11.XGetPixel.restype = ctypes.c_ulong
x11.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
x11.XDestroyImage.argtypes = [ctypes.c_void_p]  # a macro in Xlib.h; the function exists too
x11.XFree.argtypes = [ctypes.c_void_p]
x11.XSetInputFocus.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_ulong]

MAP_NOTIFY, SUBSTRUCTURE_NOTIFY_MASK, Z_PIXMAP, ALL_PLANES, POINTER_ROOT = 19, 1 << 19, 2, 0xFFFFFFFF, 1
display = x11.XOpenDisplay(None)
if not display:
    sys.exit("player_vs_feh: cannot open the X display")
roots = [x11.XRootWindow(display, s) for s in range(x11.XScreenCount(display))]
for root in roots:
    x11.XSelectInput(display, root, SUBSTRUCTURE_NOTIFY_MASK)
x_fd = x11.XConnectionNumber(display)
event = (ctypes.c_long * 24)()  # XEvent is a union of 24 longs


def drain_x():
    """Forgets earlier events and gives the keyboard back to the pointer before each launch.

    With no window manager, the focus stays where the last program left it: after the player
    quits, often on the root of screen 1, where keys sent to a window on screen 0 are lost."""
    x11.XSetInputFocus(display, POINTER_ROOT, POINTER_ROOT, 0)
    x11.XSync(display, 1)


def map_events():
    """Top-level windows mapped since the last call: (window, class)."""
    mapped = []
    while x11.XPending(display):
        x11.XNextEvent(display, event)
        if event[0] & 0xFFFFFFFF == MAP_NOTIFY:
            window = ctypes.c_ulong(event[5]).value  # XMapEvent.window, after type, serial, send_event, display, event
            hint = XClassHint()
            name = b""
            if x11.XGetClassHint(display, window, ctypes.byref(hint)):
                name = ctypes.string_at(hint.res_class) if hint.res_class else b""
                for text in (hint.res_name, hint.res_class):
                    if text:
                        x11.XFree(text)
            mapped.append((window, name.decode(errors="replace")))
    return mapped


def centre_is_lit(screen=0, w=1920, h=1080):
    """Whether a 32 x 32 patch in the middle of a screen has any non-black pixel."""
    image = x11.XGetImage(display, roots[screen], w // 2 - 16, h // 2 - 16, 32, 32, ALL_PLANES, Z_PIXMAP)
    if not image:
        return False
    lit = any(x11.XGetPixel(image, x, y) & 0xFFFFFF for y in range(0, 32, 4) for x in range(0, 32, 4))
    x11.XDestroyImage(image)
    return lit


# --- processes ----------------------------------------------------------------------------
run_counter = 0


def player_env():
    """A throwaway home per run: no lock held by an earlier run, no resume point."""
    global run_counter
    run_counter += 1
    home = os.path.join(WORK, f"home{run_counter}")
    shutil.rmtree(home, ignore_errors=True)
    os.makedirs(os.path.join(home, "run"), mode=0o700)
    os.makedirs(os.path.join(home, "data"))
    env = dict(os.environ)
    env.update(XDG_RUNTIME_DIR=os.path.join(home, "run"), XDG_DATA_HOME=os.path.join(home, "data"))
    env.update(PLAYER_ENV)
    return env


def stop(process):
    if process.poll() is None:
        process.send_signal(signal.SIGTERM)
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
    time.sleep(0.3)  # lets the server finish tearing the windows down before the next run


def quit_with_escape(process):
    subprocess.run(["xdotool", "key", "Escape"], check=False)
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        pass
    stop(process)


def cpu_ticks(pid):
    with open(f"/proc/{pid}/stat", "rb") as f:
        fields = f.read().rsplit(b")", 1)[1].split()
    return int(fields[11]) + int(fields[12])  # utime, stime (fields 14 and 15), every thread


def status_kb(pid, key):
    with open(f"/proc/{pid}/status") as f:
        for line in f:
            if line.startswith(key + ":"):
                return int(line.split()[1])
    return 0


def load_average():
    with open("/proc/loadavg") as f:
        return " ".join(f.read().split()[:3])


def wait_for_line(path, pattern, process, timeout=60):
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        with open(path, "rb") as f:
            if pattern.search(f.read()):
                return True
        if process.poll() is not None:
            return False
        time.sleep(0.05)
    return False


def wait_for_map(process, klass=None, timeout=60):
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        select.select([x_fd], [], [], 0.05)
        if any(klass is None or name == klass for _, name in map_events()):
            return True
        if process.poll() is not None:
            return False
    return False


# --- 1. launch ----------------------------------------------------------------------------
def launch_player(command=None):
    """The player's own trace (or that of `command`, which prints the same line); the external
    clock at that line and at its first window map."""
    env = player_env()
    drain_x()
    t0 = time.monotonic()
    process = subprocess.Popen(command or [PLAYER, BUNDLE], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, env=env)
    err_fd = process.stderr.fileno()
    buffer, mapped_at, result = b"", None, None
    deadline = t0 + 60
    while result is None and time.monotonic() < deadline:
        readable, _, _ = select.select([x_fd, err_fd], [], [], 0.05)
        now = time.monotonic()
        if mapped_at is None and map_events():
            mapped_at = now
        if err_fd in readable:
            chunk = os.read(err_fd, 65536)
            if not chunk:
                break
            buffer += chunk
            found = FIRST_PHOTO.search(buffer)
            if found:
                lit = centre_is_lit()
                result = (int(found.group(1)), (now - t0) * 1000, (mapped_at - t0) * 1000 if mapped_at else None, lit)
    stop(process)
    process.stderr.close()
    if result is None:
        sys.exit("player_vs_feh: the player showed no first photo:\n" + buffer.decode(errors="replace"))
    return result


def launch_feh(*paths):
    """From just before exec to feh's window mapped (feh decodes and paints before it maps)."""
    drain_x()
    t0 = time.monotonic()
    process = subprocess.Popen(["feh", "--fullscreen", "--auto-zoom", *paths],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    result = None
    deadline = t0 + 60
    while result is None and time.monotonic() < deadline:
        select.select([x_fd], [], [], 0.05)
        if any(name == "feh" for _, name in map_events()):
            result = ((time.monotonic() - t0) * 1000, centre_is_lit())
    stop(process)
    if result is None:
        sys.exit("player_vs_feh: feh mapped no window")
    return result


def spread(values):
    return f"{statistics.median(values):7.1f} ms  (min {min(values):.1f}, max {max(values):.1f})"




# --- 2. idle CPU --------------------------------------------------------------------------
def idle_cpu(process):
    time.sleep(SETTLE)
    ticks0, server0, t0 = cpu_ticks(process.pid), cpu_ticks(XVFB_PID) if XVFB_PID else 0, time.monotonic()
    time.sleep(IDLE_SECONDS)
    ticks1, server1, t1 = cpu_ticks(process.pid), cpu_ticks(XVFB_PID) if XVFB_PID else 0, time.monotonic()
    seconds = t1 - t0
    return (100.0 * (ticks1 - ticks0) / HZ / seconds, ticks1 - ticks0,
            100.0 * (server1 - server0) / HZ / seconds)




# --- 3. resident memory over advances -----------------------------------------------------
def advance_and_sample(process, advances=None, batch=BATCH):
    """Right in batches of `batch` (50), VmRSS a second after each batch (time for the last
    decode), and the highest VmRSS seen during each batch, read every 0.1 s."""
    advances = ADVANCES if advances is None else advances
    curve, batch_peaks, batch_seconds = [], [], []
    peak, done = [0], threading.Event()

    def watch():
        while not done.wait(0.1):
            try:
                peak[0] = max(peak[0], status_kb(process.pid, "VmRSS"))
            except OSError:
                return

    watcher = threading.Thread(target=watch)
    watcher.start()
    sent = 0
    try:
        while sent < advances:
            count = min(batch, advances - sent)
            peak[0] = 0
            t0 = time.monotonic()
            subprocess.run(["xdotool", "key", "--delay", str(KEY_DELAY_MS)] + ["Right"] * count, check=True)
            batch_seconds.append((time.monotonic() - t0) / count)
            sent += count
            time.sleep(1.0)
            if process.poll() is not None:
                sys.exit("player_vs_feh: the program under test exited while advancing")
            curve.append((sent, status_kb(process.pid, "VmRSS")))
            batch_peaks.append(peak[0])
        private = (status_kb(process.pid, "RssAnon"), status_kb(process.pid, "RssFile"), status_kb(process.pid, "RssShmem"))
    finally:
        done.set()
        watcher.join()
    return curve, batch_peaks, status_kb(process.pid, "VmHWM"), statistics.median(batch_seconds), private


def rss_summary(curve, peak):
    at = dict(curve)
    base, last = at.get(BATCH), curve[-1][1]
    return {"at50": base, "at500": at.get(500), "last": last, "last_n": curve[-1][0],
            "growth": 100.0 * (last - base) / base if base else float("nan"), "peak": peak}




# --- table --------------------------------------------------------------------------------
def mb(kb):
    return f"{kb / 1024:.0f} MB" if kb else "-"


# --- the run ------------------------------------------------------------------------------
def main():
    global PLAYER, BUNDLE, WORK
    PLAYER, BUNDLE, WORK = sys.argv[1:4]
    manifest = json.load(open(os.path.join(BUNDLE, "bundle.json")))
    items = manifest["items"]
    first_photo = os.path.join(BUNDLE, items[0]["assets"]["full"]["path"])
    full_photos = [os.path.join(BUNDLE, item["assets"]["full"]["path"]) for item in items]

    if PLAYER_ENV:
        print(f"player environment added: {' '.join(f'{k}={v}' for k, v in PLAYER_ENV.items())}")
    print(f"load average at the start: {load_average()} on {os.cpu_count()} cores (figures are noisy when other work runs)")
    print(f"\n== 1. Launch to first photo on screen ({len(items)} items; first {os.path.basename(first_photo)}) ==")
    print(f"{LAUNCHES} alternating runs after one warm-up run of each ...")
    launch_player()
    launch_feh(first_photo)
    player_runs, feh_runs = [], []
    for _ in range(LAUNCHES):
        player_runs.append(launch_player())
        feh_runs.append(launch_feh(first_photo))
    player_trace = [r[0] for r in player_runs]
    player_external = [r[1] for r in player_runs]
    player_mapped = [r[2] for r in player_runs if r[2] is not None]
    feh_mapped = [r[0] for r in feh_runs]
    print("  player, own trace (process start -> first frame with the photo swapped):", spread(player_trace))
    print("  player, external clock at that log line (exec -> line read):         ", spread(player_external))
    print("  player, external clock at its first window mapped (no photo yet):    ", spread(player_mapped))
    print("  feh --fullscreen --auto-zoom, exec -> window mapped:                  ", spread(feh_mapped))
    print(f"  centre of screen 0 not black when measured: player {sum(r[3] for r in player_runs)}/{LAUNCHES}, "
          f"feh {sum(r[1] for r in feh_runs)}/{LAUNCHES}")
    print("  runs (player trace / feh):", " ".join(f"{p[0]}/{f[0]:.0f}" for p, f in zip(player_runs, feh_runs)))
    launch_ratio = statistics.median(player_trace) / statistics.median(feh_mapped)
    print(f"ratio player/feh launch: {launch_ratio:.2f}  "
          f"(goal player median <= 500 ms: {'met' if statistics.median(player_trace) <= 500 else 'NOT met'})")

    print(f"\n== 2. CPU while one still is shown ({SETTLE:.0f} s to settle, then {IDLE_SECONDS:.0f} s sampled) ==")
    log = os.path.join(WORK, "idle-player.log")
    drain_x()
    with open(log, "wb") as err:
        process = subprocess.Popen([PLAYER, BUNDLE], stdout=subprocess.DEVNULL, stderr=err, env=player_env())
    if not wait_for_line(log, FIRST_PHOTO, process):
        sys.exit("player_vs_feh: the player showed no first photo")
    player_idle = idle_cpu(process)
    player_threads = status_kb(process.pid, "Threads")
    quit_with_escape(process)
    drain_x()
    process = subprocess.Popen(["feh", "--fullscreen", "--auto-zoom", first_photo],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    if not wait_for_map(process, "feh"):
        sys.exit("player_vs_feh: feh mapped no window")
    feh_idle = idle_cpu(process)
    stop(process)
    print(f"  player: {player_idle[0]:5.2f} % of one core ({player_idle[1]} ticks of 1/{HZ} s; {player_threads} threads); "
          f"X server meanwhile {player_idle[2]:.2f} %")
    print(f"  feh:    {feh_idle[0]:5.2f} % of one core ({feh_idle[1]} ticks); X server meanwhile {feh_idle[2]:.2f} %")
    idle_ratio = player_idle[0] / feh_idle[0] if feh_idle[1] else None
    print(f"ratio player/feh idle CPU: {f'{idle_ratio:.1f}' if idle_ratio else 'n/a (feh used no tick)'}  "
          f"(goal player <= 2 %: {'met' if player_idle[0] <= 2 else 'NOT met'})")

    print(f"\n== 3. Resident memory over {ADVANCES} advances (Right, {KEY_DELAY_MS} ms apart; photos 2160 px) ==")
    log = os.path.join(WORK, "rss-player.log")
    drain_x()
    with open(log, "wb") as err:
        process = subprocess.Popen([PLAYER, BUNDLE], stdout=subprocess.DEVNULL, stderr=err, env=player_env())
    if not wait_for_line(log, FIRST_PHOTO, process):
        sys.exit("player_vs_feh: the player showed no first photo")
    time.sleep(1.0)
    start_kb = status_kb(process.pid, "VmRSS")
    player_curve, player_peaks, player_peak, player_step, player_kinds = advance_and_sample(process)
    quit_with_escape(process)
    with open(log, "rb") as f:
        text = f.read().decode(errors="replace")
    shown = text.count("Showing item")
    screens = re.search(r"Playing on (\d+) screen", text)
    last_shown = re.findall(r"Showing item \S+ \(\S+\), (\d+) of", text)

    drain_x()
    process = subprocess.Popen(["feh", "--fullscreen", "--auto-zoom"] + full_photos,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    if not wait_for_map(process, "feh"):
        sys.exit("player_vs_feh: feh mapped no window")
    time.sleep(1.0)
    feh_start_kb = status_kb(process.pid, "VmRSS")
    feh_curve, feh_peaks, feh_peak, feh_step, feh_kinds = advance_and_sample(process)
    title = subprocess.run(["xdotool", "search", "--class", "feh", "getwindowname", "%@"],
                           capture_output=True, text=True).stdout.strip().splitlines()
    stop(process)
    feh_position = re.search(r"\[(\d+) of", title[-1]) if title else None

    player_rss, feh_rss = rss_summary(player_curve, player_peak), rss_summary(feh_curve, feh_peak)
    print(f"  player on {screens.group(1) if screens else '?'} screen(s): {shown} 'Showing item' lines "
          f"(1 + {ADVANCES} expected), last position {last_shown[-1] if last_shown else '?'}; "
          f"{player_step * 1000:.0f} ms per key; {start_kb // 1024} MB before the first key")
    print(f"  feh on screen 0: position {feh_position.group(1) if feh_position else '?'} at the end (from its window title); "
          f"{feh_step * 1000:.0f} ms per key; {feh_start_kb // 1024} MB before the first key")
    expected = ADVANCES % len(items) + 1
    if shown != ADVANCES + 1 or not last_shown or int(last_shown[-1]) != expected \
            or not feh_position or int(feh_position.group(1)) != expected:
        print(f"  WARNING: not every key was an advance (position {expected} expected at the end for both)")
    print("  VmRSS in MB a second after N advances, and the highest seen while advancing to N:")
    print("    N           " + " ".join(f"{n:>5}" for n, _ in player_curve))
    print("    player      " + " ".join(f"{kb / 1024:5.0f}" for _, kb in player_curve))
    print("    player high " + " ".join(f"{kb / 1024:5.0f}" for kb in player_peaks))
    print("    feh         " + " ".join(f"{kb / 1024:5.0f}" for _, kb in feh_curve))
    print("    feh high    " + " ".join(f"{kb / 1024:5.0f}" for kb in feh_peaks))
    for name, kinds in (("player", player_kinds), ("feh", feh_kinds)):
        print(f"  {name} at the end: {kinds[0] / 1024:.0f} MB anonymous, {kinds[1] / 1024:.0f} MB file-backed "
              f"(libraries), {kinds[2] / 1024:.0f} MB shared memory (RssAnon, RssFile, RssShmem)")
    for name, r in (("player", player_rss), ("feh", feh_rss)):
        print(f"  {name}: {r['at50'] / 1024:.0f} MB at 50, {r['last'] / 1024:.0f} MB at {r['last_n']}, "
              f"growth {r['growth']:+.1f} %, peak (VmHWM) {r['peak'] / 1024:.0f} MB")
    print(f"ratio player/feh peak resident: {player_rss['peak'] / feh_rss['peak']:.2f}  "
          f"(goals player: growth <= 10 % {'met' if player_rss['growth'] <= 10 else 'NOT met'}, "
          f"peak < 300 MB {'met' if player_rss['peak'] < 300 * 1024 else 'NOT met'})")

    rows = [
        ("launch -> first photo, median", f"{statistics.median(player_trace):.0f} ms",
         f"{statistics.median(feh_mapped):.0f} ms", f"{launch_ratio:.2f}", "<= 500 ms"),
        ("idle CPU, one still", f"{player_idle[0]:.2f} %", f"{feh_idle[0]:.2f} %",
         f"{idle_ratio:.1f}" if idle_ratio else "n/a", "<= 2 %"),
        ("VmRSS after 50 advances", mb(player_rss["at50"]), mb(feh_rss["at50"]),
         f"{player_rss['at50'] / feh_rss['at50']:.2f}", ""),
        ("VmRSS after 500 advances", mb(player_rss["at500"]), mb(feh_rss["at500"]),
         f"{player_rss['at500'] / feh_rss['at500']:.2f}" if player_rss["at500"] and feh_rss["at500"] else "-", ""),
        (f"VmRSS after {player_rss['last_n']} advances", mb(player_rss["last"]), mb(feh_rss["last"]),
         f"{player_rss['last'] / feh_rss['last']:.2f}", ""),
        (f"growth 50 -> {player_rss['last_n']}", f"{player_rss['growth']:+.1f} %", f"{feh_rss['growth']:+.1f} %",
         "", "<= +10 %"),
        ("peak VmHWM", mb(player_rss["peak"]), mb(feh_rss["peak"]),
         f"{player_rss['peak'] / feh_rss['peak']:.2f}", "< 300 MB"),
        (f"RssAnon after {player_rss['last_n']}", mb(player_kinds[0]), mb(feh_kinds[0]),
         f"{player_kinds[0] / feh_kinds[0]:.2f}", ""),
    ]
    print("\n== Player against feh ==")
    print(f"load average at the end: {load_average()}")
    print(f"{'measure':<32} {'player':>10} {'feh':>10} {'player/feh':>11}  goal (player)")
    for row in rows:
        print(f"{row[0]:<32} {row[1]:>10} {row[2]:>10} {row[3]:>11}  {row[4]}")


if __name__ == "__main__":
    main()
