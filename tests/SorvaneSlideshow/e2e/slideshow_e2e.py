"""End-to-end tests of SorvaneSlideshow: the real program on a virtual two-screen X
server, driven with xdotool and judged by its windows, screenshots, stored preferences
and exit code.

  python3 slideshow_e2e.py --bin BUILD/bin [unittest options]

Exits 77 (skipped) when Xvfb, xdotool or ImageMagick's import is missing.
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import types
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "SorvanePlayer", "e2e"))
import harness  # noqa: E402
from harness import TWO_SCREENS, wait_until  # noqa: E402

WINDOW_TITLE = "Sorvane Slideshow"
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
        env.update(x.env(), QT_QPA_PLATFORM="xcb", QT_LOGGING_RULES="sorvane.slideshow.info=true",
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
        stepped = middle_changes_after("Right", first, "the next photo after Right")
        carded = middle_changes_after("slash", stepped, "the shortcut card after /")
        x.key("slash")
        wait_until(lambda: x.screenshot(0).crop(*middle).fraction_different(stepped) < 0.02, 10,
                   "the card gone after a second /", interval=0.2, detail=show.tail)
        self.assertGreater(carded.fraction_different(stepped), 0.3)
        x.key("Escape")
        self.assertEqual(show.wait_exit(10), 0, show.tail())


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
