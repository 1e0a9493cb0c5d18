"""End-to-end tests of SorvaneSlideshow: the real program on a virtual two-screen X
server, driven with xdotool and judged by its windows, screenshots, stored preferences
and exit code.

  python3 slideshow_e2e.py --bin BUILD/bin [unittest options]

Exits 77 (skipped) when Xvfb, xdotool or ImageMagick's import is missing.
"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import types
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "SorvanePlayer", "e2e"))
import harness  # noqa: E402
from harness import TWO_SCREENS, wait_until  # noqa: E402

WINDOW_TITLE = "Sorvane Slideshow"
# Photos of the sample media that every build can show (no video, nothing damaged).
GOOD_PHOTOS = ("sunset.jpg", "small.jpg", "trips/meadow.jpg", "trips/panorama.jpg", "trips/2025 coast/harbour.jpg",
               "trips/2025 coast/lighthouse.jpg", "orientations/orientation-2.jpg", "orientations/orientation-4.jpg",
               "orientations/orientation-5.jpg", "orientations/orientation-7.jpg")
# Every log line carries the seconds since the program started, so that tests judge
# timing by the program's own clock rather than by when they happened to read the log.
MESSAGE_PATTERN = "%{time process} %{if-category}%{category}: %{endif}%{message}"
LOG_LINE = re.compile(r"^\s*(\d+\.\d+) ([\w.]+): (.*)$")
SHOWS = re.compile(r"^Screen (\d+) shows (.+)$")
# This suite's display numbers, apart from the player's.
DISPLAY_NUMBERS = range(140, 170)

BIN = None
SUITE = None


def executable(name):
    return os.path.join(BIN, name)


def setUpModule():
    """The sample media, painted once per run."""
    global SUITE
    SUITE = types.SimpleNamespace(root=tempfile.mkdtemp(prefix="sorvane-slideshow-e2e-"))
    SUITE.media = os.path.join(SUITE.root, "media")
    try:
        subprocess.run([executable("sorvane-sample-media"), SUITE.media], check=True, capture_output=True,
                       timeout=120)
    except BaseException:
        tearDownModule()
        raise


def tearDownModule():
    shutil.rmtree(SUITE.root, ignore_errors=True)


class ShowLog:
    """What one run logged, read again on every call: (seconds, category, text) per line."""

    def __init__(self, run):
        self.run = run

    def lines(self):
        with open(self.run.log_path, "rb") as log:
            # A line still being written has no newline yet.
            whole = log.read().decode(errors="replace").split("\n")[:-1]
        return [(float(m[1]), m[2], m[3]) for m in map(LOG_LINE.match, whole) if m]

    def items(self, after=0):
        """(seconds, screen, file) of every item change from line `after` on."""
        found = [(at, SHOWS.match(text)) for at, category, text in self.lines()[after:]
                 if category == "sorvane.slideshow.items"]
        return [(at, int(m[1]), m[2]) for at, m in found if m]

    def index(self, text):
        """Where the first line containing `text` is, or None."""
        return next((i for i, (_, _, line) in enumerate(self.lines()) if text in line), None)

    def wait_line(self, text, timeout=20):
        """The index of the line after the first one containing `text`."""
        return self.wait(lambda: self.index(text) is not None and self.index(text) + 1, f"a line with {text!r}",
                         timeout)

    def wait(self, predicate, what, timeout=20):
        def check():
            alive = self.run.alive()
            value = predicate()
            if not value and not alive:
                raise AssertionError(f"the show ended before {what}\n{self.run.tail()}")
            return value
        return wait_until(check, timeout, what, interval=0.1, detail=self.run.tail)

    def wait_items(self, count, after=0, what="item changes", timeout=20):
        return self.wait(lambda: len(self.items(after)) >= count and self.items(after), f"{count} {what}", timeout)

    def wait_scanned(self):
        """The index of the line after the scan's last: every item is known from there on."""
        return self.wait_line("Found ")


def settled(x, area, screen=0):
    """The part of the screen once a photo fills it (a new photo's layer stays empty until it
    is decoded) and two pictures in a row agree."""
    shots = [x.screenshot(screen).crop(*area)]

    def same():
        shots.append(x.screenshot(screen).crop(*area))
        drawn = shots[-1].fraction_brighter(16) > 0.9
        return shots[-1] if drawn and shots[-1].fraction_different(shots[-2]) < 0.01 else None
    return wait_until(same, 10, "a photo to settle on the screen", interval=0.1)


def shown_states(items):
    """What every screen shows after each item change: a list of {screen: file}."""
    now, states = {}, []
    for _, screen, path in items:
        now = {**now, screen: path}
        states.append(now)
    return states


class SlideshowTestCase(unittest.TestCase):
    def setUp(self):
        self.tmp = tempfile.mkdtemp(prefix="sorvane-slideshow-test-")
        self.addCleanup(shutil.rmtree, self.tmp, True)
        self.config = self.folder("config")
        self.runs = 0

    def folder(self, name, mode=0o755):
        path = os.path.join(self.tmp, name)
        os.makedirs(path, mode, exist_ok=True)
        return path

    def x_server(self, screens=TWO_SCREENS):
        x = harness.XServer(self.tmp, screens, DISPLAY_NUMBERS).start()
        self.addCleanup(x.stop)
        return x

    def env(self, x):
        env = {key: value for key, value in os.environ.items() if not key.startswith(("QT_", "XDG_", "DBUS_"))}
        env.update(x.env(), QT_QPA_PLATFORM="xcb", QT_MESSAGE_PATTERN=MESSAGE_PATTERN,
                   QT_LOGGING_RULES="sorvane.slideshow.info=true;sorvane.slideshow.items.debug=true",
                   XDG_RUNTIME_DIR=self.folder("run", 0o700), XDG_CONFIG_HOME=self.config,
                   XDG_CACHE_HOME=self.folder("cache"), DBUS_SESSION_BUS_ADDRESS="disabled:")
        return env

    def start(self, x, *arguments, bus_address="disabled:"):
        self.runs += 1
        run = harness.Player(executable("SorvaneSlideshow"), list(arguments),
                             {**self.env(x), "DBUS_SESSION_BUS_ADDRESS": bus_address},
                             os.path.join(self.tmp, f"slideshow-{self.runs}.log"))
        self.addCleanup(run.stop)
        return run

    def store(self, entries):
        """Writes preferences before a run, typed the way the program stores them."""
        types_of = {bool: "bool", str: "string", float: "double", int: "integer", dict: "object"}
        folder = os.path.join(self.config, "SorvaneSlideshow")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "preferences.json"), "w", encoding="utf-8") as out:
            json.dump({key: {"type": types_of[type(value)], "value": value}
                       for key, value in entries.items()}, out)

    def photos(self, names=GOOD_PHOTOS, name="photos"):
        """A folder of sample photos, flat, in the order given (their names sort that way)."""
        folder = self.folder(name)
        for number, photo in enumerate(names):
            shutil.copy(os.path.join(SUITE.media, photo),
                        os.path.join(folder, f"{number:02d}-{os.path.basename(photo)}"))
        return folder

    def stored_preferences(self):
        path = os.path.join(self.config, "SorvaneSlideshow", "preferences.json")
        if not os.path.exists(path):
            return {}
        with open(path, encoding="utf-8") as stored:
            return json.load(stored)

    def wait_for_photo(self, x, screen):
        def showing():
            shot = x.screenshot(screen)
            return shot if shot.fraction_brighter(16) > 0.25 else None
        return wait_until(showing, 15, f"a photo filling much of screen {screen}", interval=0.2)


class TwoScreens(SlideshowTestCase):
    def test_linked_show_on_every_screen_then_escape_stops_all(self):
        x = self.x_server()
        saver = None
        if shutil.which("dbus-daemon"):
            saver = harness.FakeScreenSaver(executable("sorvane-test-screensaver"), self.folder("bus"))
            self.addCleanup(saver.stop)
        show = self.start(x, "--screens", "all", "--scope", "linked", "--interval", "30", SUITE.media,
                          bus_address=saver.address if saver else "disabled:")
        shots = [self.wait_for_photo(x, screen) for screen in range(len(TWO_SCREENS))]
        self.assertEqual([(shot.width, shot.height) for shot in shots], list(TWO_SCREENS))
        windows = wait_until(lambda: x.visible_windows() if len(x.visible_windows()) == 2 else None, 10,
                             "one window per screen", detail=show.tail)
        self.assertEqual(sorted(name for _, name in windows), [WINDOW_TITLE] * 2, windows)

        x.key("Escape")
        self.assertEqual(show.wait_exit(10), 0, show.tail())
        with open(show.log_path, encoding="utf-8", errors="replace") as log:
            self.assertIn("The last show stopped", log.read())
        if saver:
            calls = saver.calls()
            self.assertEqual(len(calls), 2, calls)
            self.assertRegex(calls[0], r"^Inhibit SorvaneSlideshow\tSorvane is showing photos\t\d+$")
            self.assertEqual(calls[1], "UnInhibit " + calls[0].rsplit("\t", 1)[1], "the display is given back")
        stored = self.stored_preferences()
        # The tip is shown once for good; the scope asked for on the command line is not kept.
        self.assertEqual(stored.get("slideshow.globalSettings.hasShownMultiMonitorTip", {}).get("value"), True)
        self.assertNotIn("slideshow.globalSettings.controlScope", stored)


class Collage(SlideshowTestCase):
    def test_a_wall_on_each_screen_and_the_intro_once(self):
        x = self.x_server()
        show = self.start(x, "--screens", "all", "--layout", "scatter", SUITE.media)
        for screen in range(len(TWO_SCREENS)):
            self.wait_for_photo(x, screen)
        x.key("Escape")
        self.assertEqual(show.wait_exit(10), 0, show.tail())
        self.assertNotIn("slideshow.hasSeenCollageIntro", self.stored_preferences(), "not dismissed, not seen")


class SharedScreens(SlideshowTestCase):
    def test_linked_windows_never_show_one_photo_and_mirrored_ones_always_do(self):
        for scope in ("linked", "mirrored"):
            with self.subTest(scope=scope):
                x = self.x_server()
                # A long interval: the windows step on the keys, and a photo two windows
                # shared at the start would still be on both.
                show = ShowLog(self.start(x, "--screens", "all", "--scope", scope, "--interval", "20",
                                          "--transition", "none", "--sort", "sequential", self.photos()))
                show.wait_scanned()
                self.wait_for_photo(x, 0)
                start = len(show.items())
                x.key(*["Right"] * 30)
                items = show.wait_items(start + 60, what="item changes after 30 steps of two windows")
                states = shown_states(items)[start - 1:]
                if scope == "linked":
                    for state in states:
                        self.assertEqual(len(set(state.values())), len(state), f"one photo on two screens: {state}")
                else:
                    # Each change of the leader is followed at once by the same change of the other.
                    changes = items[start:]
                    self.assertEqual(len({screen for _, screen, _ in changes}), 2, changes)
                    for leader, follower in zip(changes[::2], changes[1::2]):
                        self.assertNotEqual(leader[1], follower[1], changes)
                        self.assertEqual(leader[2], follower[2], changes)
                    self.assertEqual(len(set(states[-1].values())), 1, states[-1])
                show.run.stop()
                x.stop()

    def test_phased_windows_change_one_phase_step_apart(self):
        x = self.x_server()
        # Step: the smaller of the delay and the interval shared among the windows (1 s).
        show = ShowLog(self.start(x, "--screens", "all", "--scope", "linked", "--sync", "phased", "--phase-delay",
                                  "0.5", "--interval", "2", "--transition", "none", self.photos()))
        after = show.wait_scanned()
        items = show.wait_items(6, after, what="phased changes", timeout=30)[:6]
        pairs = list(zip(items[::2], items[1::2]))
        # The same window leads every time and the other follows before the next lead.
        self.assertEqual({(lead[1], follow[1]) for lead, follow in pairs}, {(items[0][1], items[1][1])}, items)
        self.assertNotEqual(items[0][1], items[1][1], items)
        delays = sorted(round(follow[0] - lead[0], 3) for lead, follow in pairs)
        self.assertTrue(0.35 <= delays[1] <= 0.8, f"phase steps of {delays} s, not 0.5 s: {items}")


class Keys(SlideshowTestCase):
    def test_arrow_steps_and_slash_shows_then_hides_the_shortcut_card(self):
        x = self.x_server(((1280, 720),))
        # Good photos only: a file that cannot be shown would move the show on by itself.
        photos = self.folder("good-photos")
        for name in ("sunset.jpg", "small.jpg", "trips/meadow.jpg"):
            shutil.copy(os.path.join(SUITE.media, name), os.path.join(photos, os.path.basename(name)))
        show = self.start(x, "--sort", "sequential", "--interval", "60", "--transition", "none", photos)
        middle = (0.3, 0.25, 0.7, 0.6)  # clear of the controls and the file-name line

        def middle_changes_after(key, before, what):
            x.key(key)

            def changed():
                shot = x.screenshot(0).crop(*middle)
                return shot if shot.fraction_different(before) > 0.3 else None
            return wait_until(changed, 10, what, interval=0.2, detail=show.tail)

        first = self.wait_for_photo(x, 0).crop(*middle)
        middle_changes_after("Right", first, "the next photo after Right")
        stepped = settled(x, middle)
        carded = middle_changes_after("slash", stepped, "the shortcut card after /")
        x.key("slash")
        wait_until(lambda: x.screenshot(0).crop(*middle).fraction_different(stepped) < 0.02, 10,
                   "the card gone after a second /", interval=0.2, detail=show.tail)
        self.assertGreater(carded.fraction_different(stepped), 0.3)
        x.key("Escape")
        self.assertEqual(show.wait_exit(10), 0, show.tail())

    def test_bound_keys_step_pause_zoom_and_change_the_interval(self):
        x = self.x_server(((1280, 720),))
        self.store({"slideshowSettings": {"defaultDuration": 1.0, "transitionStyle": "None"}})
        folder = self.photos(GOOD_PHOTOS[:4])
        names = sorted(os.listdir(folder))
        show = ShowLog(self.start(x, "--sort", "sequential", folder))
        show.wait_scanned()
        self.wait_for_photo(x, 0)

        def step(keys, what):
            count = len(show.items())
            x.key(*keys.split())
            return [os.path.basename(path) for _, _, path in show.wait_items(count + 1, what=what)]

        # Right after Space: once its line is there, the pause has been taken.
        *_, left_from, stepped = step("space Right", "a step after Space Right")
        paused_at = len(show.items())
        self.assertEqual(names.index(stepped), (names.index(left_from) + 1) % len(names), (left_from, stepped))
        self.assertEqual(step("Left", "a step back after Left")[-1], left_from)
        since = time.monotonic()

        middle = (0.3, 0.3, 0.7, 0.7)
        fitted = settled(x, middle)
        for keys, zoomed in (("ctrl+equal", True), ("ctrl+minus", False), ("ctrl+equal ctrl+equal", True),
                             ("ctrl+0", False)):
            x.key(*keys.split())
            # A fine threshold: the sample photos are smooth gradients that a zoom shifts only a little.
            wait_until(lambda: (x.screenshot(0).crop(*middle).fraction_different(fitted, 4) > 0.1 if zoomed
                                else x.screenshot(0).crop(*middle).fraction_different(fitted, 4) < 0.01), 10,
                       f"the photo {'zoomed' if zoomed else 'fitted again'} after {keys}", interval=0.2)
        time.sleep(max(0.0, since + 3.0 - time.monotonic()))  # three intervals in all: time for a wrong advance
        self.assertEqual(len(show.items()), paused_at + 1, "no advance while paused")

        def stored_interval():
            return self.stored_preferences().get("slideshowSettings", {}).get("value", {}).get("defaultDuration")
        x.key("space", "ctrl+bracketright", "ctrl+bracketright")
        wait_until(lambda: stored_interval() == 3.0, 10, "an interval of 3 s stored after two ctrl+]")
        x.key("ctrl+bracketleft")
        wait_until(lambda: stored_interval() == 2.0, 10, "an interval of 2 s stored after ctrl+[")
        count = len(show.items())
        timed = show.wait_items(count + 3, what="three advances after the interval changed")[count:]
        gaps = [later[0] - earlier[0] for earlier, later in zip(timed, timed[1:])]
        self.assertTrue(all(1.7 <= gap <= 2.8 for gap in gaps), f"advances {gaps} s apart, not 2 s")


class Escape(SlideshowTestCase):
    def test_each_escape_behaviour_over_two_screens(self):
        full, windowed = set(TWO_SCREENS), {(width // 2, height // 2) for width, height in TWO_SCREENS}
        # After each Escape: (full-screen windows, ordinary windows), or None when the program has ended.
        rows = [("Stop All Slideshows", [None]), ("Stop Current Slideshow", [(1, 0), None]),
                ("Exit Fullscreen First", [(1, 1), (1, 0), (0, 1), None])]
        photos = self.photos()
        for behaviour, states in rows:
            with self.subTest(behaviour=behaviour):
                x = self.x_server()
                self.store({"slideshow.globalSettings.escBehavior": behaviour})
                run = self.start(x, "--screens", "all", "--interval", "30", photos)
                for screen in range(len(TWO_SCREENS)):
                    self.wait_for_photo(x, screen)

                def windows():
                    try:
                        sizes = [x.window_size(window) for window, _ in x.visible_windows()]
                    except subprocess.CalledProcessError:
                        return None  # a window closed between listing and measuring
                    return sum(size in full for size in sizes), sum(size in windowed for size in sizes)
                for number, state in enumerate(states, start=1):
                    x.key("Escape")
                    if state is None:
                        self.assertEqual(run.wait_exit(10), 0, run.tail())
                    else:
                        wait_until(lambda: windows() == state, 10, f"windows {state} after Escape {number}",
                                   interval=0.2, detail=run.tail)
                x.stop()


class Video(SlideshowTestCase):
    def test_a_video_holds_the_show_until_it_ends(self):
        if not shutil.which("ffmpeg"):
            self.skipTest("no ffmpeg")
        x = self.x_server(((640, 480),))
        folder = self.photos(GOOD_PHOTOS[:1])
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=25",
                        "-pix_fmt", "yuv420p", os.path.join(folder, "01-clip.mp4")], check=True, timeout=60)
        show = ShowLog(self.start(x, "--sort", "sequential", "--interval", "1", "--transition", "none", folder))
        items = show.wait_items(3, what="the photo, the video and the photo again", timeout=30)[:3]
        self.assertEqual([os.path.basename(path) for _, _, path in items],
                         ["00-sunset.jpg", "01-clip.mp4", "00-sunset.jpg"])
        # Longer than the 1 s interval: it played to its end and did not fail.
        held = items[2][0] - items[1][0]
        self.assertTrue(1.8 <= held <= 10, f"the 2 s video held the show {held:.2f} s\n{show.run.tail()}")


class ScreenLoss(SlideshowTestCase):
    """One X screen split into two RandR monitors, which Qt takes for two displays; a monitor
    deleted while the show plays is a display unplugged."""
    MONITORS = {"A": ("1920/508x1080/286+0+0", (1920, 1080)), "B": ("1280/339x720/190+1920+0", (1280, 720))}

    def test_a_display_that_goes_leaves_one_window_and_the_show_goes_on(self):
        photos = self.photos()
        # The display that goes, the scope, and the transition running: a cut, or a 5 s
        # cross-fade that every 1 s advance interrupts, so the display goes in the middle of one.
        # The first display's window times linked windows and leads mirrored ones.
        for gone, kept, scope, settings in (
                ("B", "A", "linked", {"transitionStyle": "None"}),
                ("A", "B", "mirrored", {"transitionStyle": "Cross-fade", "transitionDuration": 5.0})):
            with self.subTest(gone=gone, scope=scope, transition=settings["transitionStyle"]):
                x = self.x_server(((3200, 1080),))
                # The display kept holds the X screen's output, else the server adds a monitor of its own.
                x.run("xrandr", "--setmonitor", kept, self.MONITORS[kept][0], "screen")
                x.run("xrandr", "--setmonitor", gone, self.MONITORS[gone][0], "none")
                self.store({"slideshowSettings": {"defaultDuration": 1.0, **settings}})
                show = ShowLog(self.start(x, "--screens", "all", "--scope", scope, photos))
                for name in self.MONITORS:
                    show.wait_line(f"Window opened on display {name} ")
                show.wait_items(2, show.wait_scanned(), what="changes on both displays")
                self.assertEqual(sum("Window opened" in line for _, _, line in show.lines()), 2, show.run.tail())

                x.run("xrandr", "--delmonitor", gone)
                lost = show.wait_line(f"Display {gone} disconnected")
                left = wait_until(lambda: x.visible_windows() if len(x.visible_windows()) == 1 else None, 10,
                                  "one window left", detail=show.run.tail)
                self.assertEqual(x.window_size(left[0][0]), self.MONITORS[kept][1])
                later = show.wait_items(3, lost, what="changes after the display went")
                self.assertEqual(len({screen for _, screen, _ in later}), 1, later)
                # The display comes back, and the show opens on it again.
                x.run("xrandr", "--setmonitor", gone, self.MONITORS[gone][0], "none")
                show.wait(lambda: sum(f"display {gone} " in line for _, _, line in show.lines()[lost:]) == 1,
                          f"a window on display {gone} again")
                x.key("Escape")
                self.assertEqual(show.run.wait_exit(10), 0, show.run.tail())
                x.stop()


class Trash(SlideshowTestCase):
    def test_delete_asks_in_the_window_and_return_moves_the_file_to_the_trash(self):
        x = self.x_server(((1280, 720),))
        photos = self.folder("photos")
        for name in ("sunset.jpg", "small.jpg"):
            shutil.copy(os.path.join(SUITE.media, name), os.path.join(photos, name))
        data_home = self.folder("data")
        env = {**self.env(x), "XDG_DATA_HOME": data_home}
        self.runs += 1
        show = harness.Player(executable("SorvaneSlideshow"), ["--sort", "sequential", "--interval", "60", photos],
                              env, os.path.join(self.tmp, "slideshow-trash.log"))
        self.addCleanup(show.stop)
        middle = (0.25, 0.3, 0.75, 0.6)
        before = self.wait_for_photo(x, 0).crop(*middle)

        x.key("Delete")
        wait_until(lambda: x.screenshot(0).crop(*middle).fraction_different(before) > 0.3, 10,
                   "the trash question", interval=0.2, detail=show.tail)
        self.assertEqual(sorted(os.listdir(photos)), ["small.jpg", "sunset.jpg"], "nothing moves before the answer")
        x.key("Return")
        trash = os.path.join(data_home, "Trash", "files")
        moved = wait_until(lambda: os.path.isdir(trash) and os.listdir(trash), 10, "a file in the trash",
                           detail=show.tail)
        self.assertEqual(len(moved), 1, moved)
        self.assertEqual(sorted(os.listdir(photos) + moved), ["small.jpg", "sunset.jpg"])
        self.assertTrue(show.alive(), show.tail())
        x.key("Escape")
        self.assertEqual(show.wait_exit(10), 0, show.tail())


class WrongUse(SlideshowTestCase):
    def test_usage_and_nothing_to_play(self):
        x = self.x_server(((640, 480),))
        empty = self.folder("empty")
        os.makedirs(os.path.join(empty, ".hidden"))
        shutil.copy(os.path.join(SUITE.media, "sunset.jpg"), os.path.join(empty, ".hidden", "sunset.jpg"))
        cases = [
            (["--screens", "left", SUITE.media], 2, "--screens takes current|all"),
            (["--bogus", SUITE.media], 2, "unknown option --bogus"),
            ([], 2, "no folder or file to play"),
            ([empty], 1, "Nothing to play"),
            ([os.path.join(empty, "missing")], 1, "no such file or folder: "),
            (["--help"], 0, "Usage: SorvaneSlideshow"),
        ]
        for arguments, code, text in cases:
            with self.subTest(arguments=arguments):
                done = subprocess.run([executable("SorvaneSlideshow"), *arguments], env=self.env(x),
                                      capture_output=True, text=True, timeout=30)
                self.assertEqual(done.returncode, code, done.stderr)
                self.assertIn(text, done.stdout + done.stderr)
                if code == 2:
                    self.assertEqual(len(done.stderr.strip().splitlines()), 1, done.stderr)
        self.assertEqual(x.visible_windows(), [])


def set_bin(folder):
    global BIN
    BIN = folder


def main():
    return harness.run_suite("slideshow_e2e", __name__, set_bin)


if __name__ == "__main__":
    sys.exit(main())
