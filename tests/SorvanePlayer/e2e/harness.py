"""Runs SorvanePlayer on a virtual X server and watches it from outside: its log,
its windows, screenshots of every screen and its exit code.

Standard library only, so the suite runs wherever the player builds."""

import argparse
import hashlib
import json
import os
import re
import select
import shutil
import signal
import subprocess
import sys
import time
import unittest

REQUIRED_TOOLS = ("Xvfb", "xdotool", "import")
# Display numbers this suite may take; other suites use other numbers.
DISPLAY_NUMBERS = range(100, 140)
TWO_SCREENS = ((1920, 1080), (1280, 720))
ONE_SCREEN = ((1920, 1080),)
SHOWING = r"^Showing item (\S+) \((\w+)\), (\d+) of (\d+)$"


class WaitTimeout(AssertionError):
    """A condition the test waited for never came: a test failure, not an error."""


def run_suite(name, module, set_bin):
    """The command line of an end-to-end suite: --bin names the build's bin folder; 77 (skipped)
    when a tool the suite drives is missing, else 0 or 1."""
    parser = argparse.ArgumentParser(add_help=False)
    parser.add_argument("--bin", required=True, help="the build's bin folder")
    options, rest = parser.parse_known_args()
    set_bin(os.path.abspath(options.bin))
    missing = [tool for tool in REQUIRED_TOOLS if shutil.which(tool) is None]
    if missing:
        print(f"{name}: skipped, missing {', '.join(missing)}", file=sys.stderr)
        return 77
    program = unittest.main(module=module, argv=[sys.argv[0], *rest], exit=False, verbosity=2)
    return 0 if program.result.wasSuccessful() else 1


def wait_until(predicate, timeout, what, interval=0.05, detail=None):
    """Polls predicate until it returns something truthy, which is returned."""
    deadline = time.monotonic() + timeout
    while True:
        value = predicate()
        if value:
            return value
        if time.monotonic() >= deadline:
            extra = ("\n" + detail()) if detail else ""
            raise WaitTimeout(f"timed out after {timeout:.1f} s waiting for {what}{extra}")
        time.sleep(interval)


def read_line(stream, timeout):
    """One line from a child's pipe, or None when none comes in time."""
    deadline, data = time.monotonic() + timeout, b""
    while not data.endswith(b"\n"):
        left = deadline - time.monotonic()
        if left <= 0 or not select.select([stream.fileno()], [], [], left)[0]:
            return None
        chunk = os.read(stream.fileno(), 1)
        if not chunk:
            return None
        data += chunk
    return data.decode(errors="replace").strip()


def start_process(command, **options):
    """A child in a session of its own, so stop_process ends whatever it starts too."""
    return subprocess.Popen(command, start_new_session=True, **options)


def stop_process(process, grace=3.0):
    """Ends a child we started (and anything it started in its session)."""
    if process is None or process.poll() is not None:
        return
    for sig in (signal.SIGTERM, signal.SIGKILL):
        try:
            os.killpg(process.pid, sig)
            process.wait(grace)
            return
        except ProcessLookupError:
            return
        except subprocess.TimeoutExpired:
            continue


class Screenshot:
    """An 8-bit RGB picture of one screen."""

    def __init__(self, width, height, rgb):
        self.width, self.height, self.rgb = width, height, rgb

    def crop(self, x0, y0, x1, y1):
        """The part between fractions of the width and height (0..1)."""
        left, right = int(self.width * x0), int(self.width * x1)
        top, bottom = int(self.height * y0), int(self.height * y1)
        stride = self.width * 3
        rows = [self.rgb[y * stride + left * 3:y * stride + right * 3] for y in range(top, bottom)]
        return Screenshot(right - left, bottom - top, b"".join(rows))

    def count_brighter(self, threshold):
        """Pixels with any channel above threshold."""
        flags = self.rgb.translate(bytes(1 if value > threshold else 0 for value in range(256)))
        # Each byte is 0 or 1, so OR-ing the three planes as big integers and counting
        # bits counts pixels, at C speed.
        any_channel = 0
        for channel in range(3):
            any_channel |= int.from_bytes(flags[channel::3], "little")
        return any_channel.bit_count()

    def fraction_brighter(self, threshold):
        return self.count_brighter(threshold) / max(1, self.width * self.height)

    def fraction_different(self, other, threshold=24):
        """Share of pixels where some channel differs by more than threshold."""
        if (self.width, self.height) != (other.width, other.height):
            return 1.0
        a, b = self.rgb, other.rgb
        different = sum(1 for i in range(0, len(a), 3)
                        if max(abs(a[i + c] - b[i + c]) for c in range(3)) > threshold)
        return different / max(1, self.width * self.height)


class XServer:
    """An Xvfb of our own with the given screens, on a display number nobody holds."""

    def __init__(self, workdir, screens=TWO_SCREENS, numbers=DISPLAY_NUMBERS):
        # Suites that may run at once take display numbers from ranges of their own.
        self.workdir, self.screens, self.numbers, self.process, self.number = workdir, screens, numbers, None, None

    @property
    def name(self):
        return f":{self.number}"

    def start(self):
        for number in self.numbers:
            if not (os.path.exists(f"/tmp/.X{number}-lock") or os.path.exists(f"/tmp/.X11-unix/X{number}")) \
                    and self._try_start(number):
                self.number = number
                return self
        raise RuntimeError("no free X display number")

    def _try_start(self, number):
        command = ["Xvfb", f":{number}"]
        for index, (width, height) in enumerate(self.screens):
            command += ["-screen", str(index), f"{width}x{height}x24"]
        # -noreset: the player is started again on the same server within a test.
        read_end, write_end = os.pipe()
        command += ["-nolisten", "tcp", "-noreset", "-displayfd", str(write_end)]
        with open(os.path.join(self.workdir, f"xvfb-{number}.log"), "wb") as log:
            process = start_process(command, stdout=log, stderr=log, pass_fds=(write_end,))
        os.close(write_end)
        # Xvfb writes its display number once it accepts clients.
        with os.fdopen(read_end, "rb") as pipe:
            ready = read_line(pipe, 15)
        if ready == str(number):
            self.process = process
            return True
        stop_process(process)  # lost a race for that number, or it never came up
        return False

    def env(self):
        return {"DISPLAY": self.name}

    def run(self, *command, check=True, timeout=15):
        return subprocess.run(list(command), env={**os.environ, **self.env()}, capture_output=True,
                              text=True, timeout=timeout, check=check)

    def screenshot(self, screen):
        data = subprocess.run(["import", "-display", f"{self.name}.{screen}", "-window", "root",
                               "-depth", "8", "ppm:-"], capture_output=True, timeout=30, check=True).stdout
        # "P6 <w> <h> 255" then one whitespace byte, then the pixels.
        header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
        width, height = int(header[1]), int(header[2])
        rgb = data[header.end():header.end() + width * height * 3]
        if len(rgb) != width * height * 3:
            raise ValueError("short or not an 8-bit PPM")
        return Screenshot(width, height, rgb)

    def key(self, *keys):
        self.run("xdotool", "key", "--delay", "30", *keys)

    def move_pointer(self, x, y, screen=0):
        self.run("xdotool", "mousemove", "--screen", str(screen), str(x), str(y))

    def click(self, button=1, repeat=1):
        self.run("xdotool", "click", "--repeat", str(repeat), "--delay", "80", str(button))

    def visible_windows(self):
        """(id, name) of every mapped window on any screen."""
        found = self.run("xdotool", "search", "--onlyvisible", "--name", "", check=False).stdout.split()
        # The screens' root windows are always there and count as visible.
        roots = self.run("xdotool", "search", "--maxdepth", "0", "--name", "", check=False).stdout.split()
        return [(w, self.run("xdotool", "getwindowname", w, check=False).stdout.strip())
                for w in found if w not in roots]

    def window_size(self, window):
        shown = self.run("xdotool", "getwindowgeometry", "--shell", window).stdout
        values = dict(line.split("=", 1) for line in shown.split() if "=" in line)
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def stop(self):
        stop_process(self.process)


class LogLine:
    def __init__(self, index, text, match):
        self.index, self.text, self.match, self.seen_at = index, text, match, time.monotonic()


class Player:
    """One run of SorvanePlayer, with its stderr in a file."""

    def __init__(self, executable, arguments, env, log_path):
        self.log_path = log_path
        with open(log_path, "wb") as log:
            self.process = start_process([executable, *arguments], stdin=subprocess.DEVNULL, stdout=log,
                                         stderr=log, env=env)

    @property
    def pid(self):
        return self.process.pid

    def lines(self):
        with open(self.log_path, "rb") as log:
            # A line still being written has no newline yet.
            whole = log.read().decode(errors="replace").split("\n")[:-1]
        prefix = "sorvane.player: "
        return [line[len(prefix):] for line in whole if line.startswith(prefix)]

    def mark(self):
        """Where the log is now: later waits can look only at what comes after."""
        return len(self.lines())

    def find(self, pattern, after=0):
        found = self.find_all(pattern, after)
        return found[0] if found else None

    def find_all(self, pattern, after=0):
        regex = re.compile(pattern)
        return [LogLine(i, line, regex.search(line)) for i, line in enumerate(self.lines()[after:], start=after)
                if regex.search(line)]

    def wait_line(self, pattern, timeout=10, after=0):
        def found():
            alive = self.alive()
            # Looked for after the liveness check: a line logged just before the end still counts.
            line = self.find(pattern, after)
            if line is None and not alive:
                raise AssertionError(f"player ended (code {self.process.returncode}) before "
                                     f"logging /{pattern}/\n{self.tail()}")
            return line

        return wait_until(found, timeout, f"log line /{pattern}/", detail=self.tail)

    def wait_exit(self, timeout):
        try:
            return self.process.wait(timeout)
        except subprocess.TimeoutExpired:
            raise WaitTimeout(f"player still running after {timeout} s\n{self.tail()}") from None

    def alive(self):
        return self.process.poll() is None

    def tail(self, count=25):
        with open(self.log_path, "rb") as log:
            lines = log.read().decode(errors="replace").splitlines()[-count:]
        return "--- player log (last lines) ---\n" + "\n".join(lines)

    def stop(self):
        stop_process(self.process)


def sha256_file(path):
    digest = hashlib.sha256()
    with open(path, "rb") as data:
        for block in iter(lambda: data.read(1 << 20), b""):
            digest.update(block)
    return digest.hexdigest()


class Bundle:
    """A bundle folder on disk and its parsed manifest."""

    def __init__(self, root):
        self.root = root
        with open(os.path.join(root, "bundle.json"), "rb") as manifest:
            self.manifest = json.load(manifest)

    @property
    def item_ids(self):
        return [item["id"] for item in self.manifest["items"]]

    def item(self, item_id):
        return next(item for item in self.manifest["items"] if item["id"] == item_id)

    def copy_to(self, root):
        shutil.copytree(self.root, root, symlinks=True)
        return Bundle(root)

    def refresh_asset(self, item_id, tier):
        """Makes the manifest's size and hash fit the file now on disk, as if it had been written so."""
        asset = self.item(item_id)["assets"][tier]
        path = os.path.join(self.root, asset["path"])
        asset["bytes"] = os.path.getsize(path)
        if "sha256" in asset:
            asset["sha256"] = sha256_file(path)
        with open(os.path.join(self.root, "bundle.json"), "w") as manifest:
            json.dump(self.manifest, manifest, indent=2)

    def listing(self):
        """Every file and folder with its size, modification time and mode."""
        return sorted(subprocess.run(["find", self.root, "-printf", r"%P %y %s %T@ %m\n"], capture_output=True,
                                     text=True, check=True).stdout.splitlines())


def garbage(size, seed=b"sorvane"):
    """Deterministic bytes that are no known file format."""
    out, block = bytearray(), hashlib.sha256(seed).digest()
    while len(out) < size:
        out += block
        block = hashlib.sha256(block).digest()
    return bytes(out[:size])


BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:dir={folder}</listen><auth>EXTERNAL</auth>
  <policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
    <allow own="*"/></policy></busconfig>
"""


class FakeScreenSaver:
    """A private session bus (no activatable services, so only what a test puts on it is
    there) with sorvane-test-screensaver on it, recording Inhibit and UnInhibit calls."""

    def __init__(self, executable, workdir):
        config = os.path.join(workdir, "bus.conf")
        with open(config, "w") as out:
            out.write(BUS_CONFIG.format(folder=workdir))
        self.record_path = os.path.join(workdir, "screensaver-calls.txt")
        self.processes = [start_process(["dbus-daemon", f"--config-file={config}", "--print-address", "--nofork"],
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)]
        self.address = read_line(self.processes[0].stdout, 10)
        if self.address:
            self.processes.append(start_process(
                [executable, self.record_path], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                env={**os.environ, "DBUS_SESSION_BUS_ADDRESS": self.address}))
        if not self.address or read_line(self.processes[1].stdout, 10) != "ready":
            self.stop()
            raise RuntimeError("the private bus or the fake screen saver did not come up")

    def calls(self):
        if not os.path.exists(self.record_path):
            return []
        with open(self.record_path, encoding="utf-8") as record:
            return [line.rstrip("\n") for line in record if line.strip()]

    def stop(self):
        for process in reversed(self.processes):
            stop_process(process)
            process.stdout.close()
