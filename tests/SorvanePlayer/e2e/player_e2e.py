"""End-to-end tests of SorvanePlayer: the real program on a virtual two-screen X
server, driven with xdotool and judged by its log, its windows and screenshots.

  python3 player_e2e.py --bin BUILD/bin [unittest options]

Exits 77 (skipped) when Xvfb, xdotool or ImageMagick's import is missing.
"""

import hashlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import types
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import harness  # noqa: E402
from harness import SHOWING, TWO_SCREENS, ONE_SCREEN, Bundle, wait_until  # noqa: E402

INTERVAL = 2.0  # the bundles' --interval
# Slack on top of the interval for an advance to reach the log on a busy 2-core machine.
SLACK = 3.0
QUIT_SECONDS = 5
INHIBIT_REASON = "Slidora is showing photos"

BIN = None
SUITE = None  # what setUpModule made, shared read-only by every test


def executable(name):
    return os.path.join(BIN, name)


def setUpModule():
    """The sample bundle, exported once per run."""
    global SUITE
    SUITE = types.SimpleNamespace(root=tempfile.mkdtemp(prefix="sorvane-e2e-"))
    media = os.path.join(SUITE.root, "media")
    try:
        subprocess.run([executable("sorvane-sample-media"), media], check=True, capture_output=True, timeout=120)
        subprocess.run([executable("sorvane"), "export", media, "--to", SUITE.root, "--name", "show", "--replace",
                        "--interval", str(int(INTERVAL)), "--sort", "sequential"],
                       check=True, capture_output=True, timeout=120)
        SUITE.bundle = Bundle(os.path.join(SUITE.root, "show"))
        # The last item; Left from the first one reaches it.
        SUITE.video_id = SUITE.bundle.item_ids[-1]
        if "video" not in SUITE.bundle.item(SUITE.video_id)["assets"]:
            raise RuntimeError("the sample bundle does not end with a video")
    except BaseException:
        tearDownModule()  # which does not run when setUpModule fails
        raise


def tearDownModule():
    shutil.rmtree(SUITE.root, ignore_errors=True)


class PlayerTestCase(unittest.TestCase):
    """Gives each test its own temp folders, X server and players, all cleaned up."""

    def setUp(self):
        self.tmp = tempfile.mkdtemp(prefix="sorvane-e2e-test-")
        self.addCleanup(shutil.rmtree, self.tmp, True)
        # A read-only copy must be writable again to be removed.
        self.addCleanup(subprocess.run, ["chmod", "-R", "u+w", self.tmp])
        self.data_home = self.folder("data")
        self.players = 0
        self.ids = SUITE.bundle.item_ids

    def folder(self, name, mode=0o755):
        path = os.path.join(self.tmp, name)
        os.makedirs(path, mode, exist_ok=True)
        return path

    def x_server(self, screens=TWO_SCREENS):
        x = harness.XServer(self.tmp, screens).start()
        self.addCleanup(x.stop)
        return x

    def start_player(self, x, arguments=(), program=None, bus_address="disabled:"):
        self.players += 1
        env = {key: value for key, value in os.environ.items() if not key.startswith(("QT_", "XDG_", "DBUS_"))}
        env.update(x.env(), QT_QPA_PLATFORM="xcb", QT_LOGGING_RULES="sorvane.player.info=true",
                   XDG_RUNTIME_DIR=self.folder("run", 0o700), XDG_DATA_HOME=self.data_home,
                   XDG_CONFIG_HOME=self.folder("config"), XDG_CACHE_HOME=self.folder("cache"),
                   DBUS_SESSION_BUS_ADDRESS=bus_address)
        player = harness.Player(program or executable("SorvanePlayer"), list(arguments), env,
                                os.path.join(self.tmp, f"player-{self.players}.log"))
        self.addCleanup(player.stop)
        return player

    def player_copy(self, folder):
        """The player's program copied into folder, as it sits on a stick."""
        os.makedirs(folder, exist_ok=True)
        return shutil.copy2(executable("SorvanePlayer"), os.path.join(folder, "SorvanePlayer"))

    def wait_for_screen(self, x, screen, check, what, timeout=8):
        """Takes screenshots until one passes check."""
        def passing():
            shot = x.screenshot(screen)
            return shot if check(shot) else None
        return wait_until(passing, timeout, f"{what} on screen {screen}", interval=0.2)

    def assert_one_window_per_screen(self, x, screens=TWO_SCREENS):
        windows = x.visible_windows()
        # A message box or error dialog would be a visible window with another title.
        self.assertEqual(sorted(name for _, name in windows), ["SorvanePlayer"] * len(screens), windows)

    def assert_screens(self, x, check, what, screens=TWO_SCREENS):
        shots = [self.wait_for_screen(x, screen, check, what) for screen in range(len(screens))]
        self.assertEqual([(shot.width, shot.height) for shot in shots], list(screens))
        return shots

    def assert_showing_photo(self, x, screens=TWO_SCREENS):
        self.assert_screens(x, lambda s: s.fraction_brighter(16) > 0.25, "a photo filling much of the screen", screens)

    def assert_holding_screens(self, x):
        # The words fade in; wait until they are there.
        for shot in self.assert_screens(x, lambda s: s.crop(0.2, 0.4, 0.8, 0.6).count_brighter(100) >= 150,
                                        "light text ('Waiting for photos') in the middle band"):
            self.assertLess(shot.fraction_brighter(40), 0.02, "the holding screen should be mostly black")
            for band in (shot.crop(0, 0, 1, 0.3), shot.crop(0, 0.7, 1, 1)):
                self.assertEqual(band.count_brighter(40), 0, "nothing but the words should be lit")

    def assert_holding(self, x, player):
        player.wait_line(r"^Holding on 2 screen\(s\)$")
        self.assertIsNone(player.find(r"^(Playing on|Showing item )"), player.tail())
        self.assert_holding_screens(x)
        self.assert_one_window_per_screen(x)

    def keys_reach(self, player):
        """Keys sent before the show's windows are mapped go to the root window and are lost."""
        if player.find(r"^Playing on"):
            player.wait_line(r"^(First photo on screen after \d+ ms|Holding on \d+ screen\(s\))$", 10)

    def assert_quits(self, player, *keys, x):
        self.keys_reach(player)
        x.key(*keys)
        self.assertEqual(player.wait_exit(QUIT_SECONDS), 0, player.tail())
        self.assertIsNotNone(player.find(r"^Quitting$"), player.tail())

    def showing(self, player, after=0, timeout=INTERVAL + SLACK):
        return player.wait_line(SHOWING, timeout, after)

    def go_to_the_video(self, x, player):
        """From the first item, Left wraps round to the last one: the sample's video."""
        self.showing(player, timeout=10)
        player.wait_line(r"^First photo on screen after \d+ ms$", 10)
        return self.press_and_see(x, player, "Left", rf"^Showing item {SUITE.video_id} \(video\)")

    def press_and_see(self, x, player, key, pattern=SHOWING, timeout=5):
        self.keys_reach(player)
        mark = player.mark()
        x.key(key)
        return player.wait_line(pattern, timeout, mark)

    def screen_saver(self):
        """A private bus with a fake screen saver that records its calls, or None without dbus-daemon."""
        if shutil.which("dbus-daemon") is None:
            return None
        saver = harness.FakeScreenSaver(executable("sorvane-test-screensaver"), self.folder("bus"))
        self.addCleanup(saver.stop)
        return saver


class HoldingTest(PlayerTestCase):

    def test_no_bundle_beside_the_player_holds_without_keeping_the_display_awake(self):
        x = self.x_server()
        saver = self.screen_saver()
        app = os.path.join(self.tmp, "stick", "app")
        player = self.start_player(x, program=self.player_copy(app),
                                   bus_address=saver.address if saver else "disabled:")
        player.wait_line(rf"^No bundle beside {re.escape(app)}; holding$")
        self.assert_holding(x, player)
        self.assert_quits(player, "Escape", x=x)
        if saver:
            self.assertEqual(saver.calls(), [])
            self.assertIsNone(player.find(r"^Display (kept awake|sleep could not)"), player.tail())


class PlaybackTest(PlayerTestCase):

    def test_plays_the_bundle_it_lives_in_on_both_screens_kept_awake(self):
        x = self.x_server()
        saver = self.screen_saver()
        bundle = SUITE.bundle.copy_to(os.path.join(self.tmp, "stick", "show"))
        player = self.start_player(x, program=self.player_copy(os.path.join(bundle.root, "app")),
                                   bus_address=saver.address if saver else "disabled:")
        player.wait_line(rf"^Bundle root {re.escape(bundle.root)}$")
        player.wait_line(r"^Playing on 2 screen\(s\)$")
        first = self.showing(player, timeout=10)
        self.assertEqual(first.match.groups(), (self.ids[0], "full", "1", str(len(self.ids))))
        # It moves on by itself, after the interval and not long before.
        second = self.showing(player, after=first.index + 1)
        self.assertEqual((second.match[1], second.match[3]), (self.ids[1], "2"))
        self.assertGreater(second.seen_at - first.seen_at, INTERVAL - 0.7)
        player.wait_line(r"^First photo on screen after \d+ ms$")
        self.assert_showing_photo(x)
        self.assert_one_window_per_screen(x)
        self.assertIsNone(player.find(r"^Could not show"), player.tail())
        # A second copy quits at once and the first plays on.
        second = self.start_player(x, [bundle.root])
        self.assertEqual(second.wait_exit(QUIT_SECONDS), 0, second.tail())
        self.assertIsNotNone(second.find(r"^Another copy is running; quitting$"), second.tail())
        self.assertIsNone(second.find(r"^(Playing|Holding) on"), second.tail())
        self.showing(player, player.mark())
        self.assert_one_window_per_screen(x)
        if saver:
            cookie = player.wait_line(r"^Display kept awake \(cookie (\d+)\)$", 10).match[1]
            inhibit = f"Inhibit SorvanePlayer\t{INHIBIT_REASON}\t{cookie}"
            self.assertEqual(saver.calls(), [inhibit])
        self.assert_quits(player, "Escape", x=x)
        if saver:
            self.assertIsNotNone(player.find(r"^Display sleep released$"), player.tail())
            self.assertEqual(saver.calls(), [inhibit, f"UnInhibit {cookie}"])


class KeysTest(PlayerTestCase):
    """Keys and the controls panel share one run of the player."""

    def test_pause_steps_panel_styles_and_quit_keys(self):
        x = self.x_server()
        player = self.start_player(x, [SUITE.bundle.root])
        self.showing(player, timeout=10)
        n = len(self.ids)

        with self.subTest("space pauses"):
            paused = self.press_and_see(x, player, "space", r"^Paused$")
            time.sleep(INTERVAL + 1.5)  # longer than an item's hold: nothing may move on
            self.assertIsNone(player.find(SHOWING, paused.index), player.tail())

        with self.subTest("steps while paused; plain q does not quit"):
            position = int(player.find_all(SHOWING)[-1].match[3]) - 1
            # Right then Left comes back; Left from the first item wraps to the last.
            for key, delta in (("Right", 1), ("Left", -1), ("Left", -1), ("Right", 1)):
                shown = self.press_and_see(x, player, key)
                position = (position + delta) % n
                self.assertEqual((shown.match[1], int(shown.match[3])), (self.ids[position], position + 1), key)
            mark = player.mark()
            # Keys arrive in order: the step after q shows q did not end the player.
            x.key("q", "Right")
            position = (position + 1) % n
            self.assertEqual(player.wait_line(SHOWING, 5, mark).match[1], self.ids[position])
            self.assertIsNone(player.find(r"^(Playing|Quitting)$"), "a step or q must not end the pause")

        with self.subTest("the pointer shows the panel until it rests"):
            def bottom_changed(shot):
                return shot.crop(0.3, 0.75, 0.7, 1.0).fraction_different(before.crop(0.3, 0.75, 0.7, 1.0))

            # The last step's fade must be over, or the photo itself would still be changing.
            tops = [x.screenshot(0).crop(0, 0, 1, 0.4)]

            def standing_still(shot):
                tops.append(shot.crop(0, 0, 1, 0.4))
                return tops[-1].fraction_different(tops[-2]) < 0.001 and shot.fraction_brighter(16) > 0.25
            before = self.wait_for_screen(x, 0, standing_still, "the photo standing still")
            mark = player.mark()
            # Away from the bottom, where resting on the panel would keep it up.
            x.move_pointer(700, 300)
            x.move_pointer(960, 400)
            shown = player.wait_line(r"^Controls shown$", 5, mark)
            panel = self.wait_for_screen(x, 0, lambda s: bottom_changed(s) > 0.02, "the panel in the bottom centre", 3)
            self.assertLess(panel.crop(0, 0, 1, 0.4).fraction_different(before.crop(0, 0, 1, 0.4)), 0.001,
                            "only the bottom should change: the photo must be the same")
            hidden = player.wait_line(r"^Controls hidden$", 7, shown.index)
            self.assertTrue(2.5 <= hidden.seen_at - shown.seen_at <= 5.0, "hidden 2.5 to 5 s after it was shown")
            self.wait_for_screen(x, 0, lambda s: bottom_changed(s) < 0.002, "the bottom as it was before the panel", 3)
            self.assertIsNone(player.find(SHOWING, mark), "paused: no item should have been shown meanwhile")

        with self.subTest("space plays on"):
            playing = self.press_and_see(x, player, "space", r"^Playing$")
            self.assertEqual(self.showing(player, playing.index).match[1], self.ids[(position + 1) % n])

        with self.subTest("style keys"):
            # Shift-1 types '!' on this layout; the key still counts by its place.
            for key, style, shown in (("shift+1", "photo-wall", r"^Wall flow on 2 screen\(s\)$"),
                                      ("2", "memory-table", r"^Wall scatter on 2 screen\(s\)$"),
                                      ("3", "classic", SHOWING)):
                mark = self.press_and_see(x, player, key, rf"^Style {style}$").index
                player.wait_line(shown, 5, mark)

        self.assert_quits(player, "ctrl+q", x=x)


class ResumeTest(PlayerTestCase):

    def test_item_and_style_come_back_after_a_restart_from_a_read_only_bundle(self):
        x = self.x_server()
        bundle = SUITE.bundle.copy_to(os.path.join(self.tmp, "read-only"))
        subprocess.run(["chmod", "-R", "a-w", bundle.root], check=True)
        before = bundle.listing()
        first_run = self.start_player(x, [bundle.root])
        self.showing(first_run, timeout=10)
        for _ in range(3):
            self.press_and_see(x, first_run, "Right")
        self.press_and_see(x, first_run, "1", r"^Style photo-wall$")
        self.assert_quits(first_run, "Escape", x=x)
        self.assertEqual(bundle.listing(), before, "the bundle on the stick is never written")
        last = first_run.find_all(SHOWING)[-1]
        last_index = self.ids.index(last.match[1])
        self.assertNotEqual(last_index, 0, "the run should have moved on from the first item")

        # The resume record belongs in the data folder (its contents are the store's unit test's).
        digest = hashlib.sha256(bundle.manifest["bundle_id"].encode()).hexdigest()
        self.assertTrue(os.path.isfile(os.path.join(self.data_home, "SorvanePlayer", "resume", f"{digest}.json")))

        second_run = self.start_player(x, [bundle.root])
        second_run.wait_line(r"^Wall flow on 2 screen\(s\)$", 10)
        second_run.wait_line(r"^First photo on screen after \d+ ms$", 10)
        self.assertIsNone(second_run.find(SHOWING), "the wall draws itself; no single item is shown")
        # The classic style takes up the item the first run stopped at.
        resumed = self.press_and_see(x, second_run, "3")
        self.assertEqual((resumed.match[1], int(resumed.match[3])), (last.match[1], last_index + 1))
        self.assert_quits(second_run, "Escape", x=x)


class WallTest(PlayerTestCase):

    # Where the Flow wall's gaps fall: 1920 wide has five strips of 376.8, 1280 three of 418.7,
    # each after a 6-point gap.
    GAPS = {0: (1920, 376.8), 1: (1280, 418.67)}

    @staticmethod
    def tile_gaps(shot, x0=60, x1=300):
        """Rows of screen 0's first strip that are dark all across: the gaps between its tiles."""
        stride = shot.width * 3
        return [y for y in range(int(shot.height * 0.7))
                if max(shot.rgb[y * stride + x0 * 3:y * stride + x1 * 3]) <= 30]

    def assert_flow_strips(self, x):
        for screen, (width, thickness) in self.GAPS.items():
            def strips(shot, width=width, thickness=thickness):
                gap = shot.crop(1 / width, 0.05, 4 / width, 0.7)
                second_gap = shot.crop((6 + thickness + 1) / width, 0.05, (6 + thickness + 4) / width, 0.7)
                inside = shot.crop(60 / width, 0.05, (thickness - 60) / width, 0.7)
                return (gap.count_brighter(30) == 0 and second_gap.count_brighter(30) == 0
                        and inside.fraction_brighter(30) > 0.5)
            self.wait_for_screen(x, screen, strips, "Flow strips with dark gaps between them")

    def test_walls_draw_step_and_open_the_photo_double_clicked(self):
        x = self.x_server()
        player = self.start_player(x, [SUITE.bundle.root])
        self.showing(player, timeout=10)

        with self.subTest("photo wall"):
            self.press_and_see(x, player, "1", r"^Wall flow on 2 screen\(s\)$")
            self.assert_flow_strips(x)
            # The strips scroll, with the pointer resting where it was left over the wall: the
            # dark gaps between the first strip's tiles move (a tile changing its photo would not).
            before = self.tile_gaps(x.screenshot(0))
            self.assertTrue(before, "the first strip should show gaps between its tiles")
            self.wait_for_screen(x, 0, lambda s: self.tile_gaps(s) not in ([], before),
                                 "the first strip's tiles moving", timeout=5)
            mark = player.mark()
            for key in ("Right", "Left", "Right"):
                x.key(key)
            time.sleep(INTERVAL + 1)
            self.assertIsNone(player.find(SHOWING, mark), "steps go to the wall, not through the items")

        with self.subTest("memory table"):
            self.press_and_see(x, player, "2", r"^Wall scatter on 2 screen\(s\)$")
            # The warm table shows in the corners, where the first photo never lands.
            self.assert_screens(x, lambda s: s.crop(0, 0, 0.08, 0.08).fraction_brighter(25) > 0.9 and s.crop(
                0.25, 0.25, 0.75, 0.75).fraction_different(s.crop(0, 0, 0.5, 0.5)) > 0.05, "a photo lying on the table")

        with self.subTest("double click opens the photo"):
            self.press_and_see(x, player, "1", r"^Wall flow on 2 screen\(s\)$")
            self.assert_flow_strips(x)
            mark = player.mark()
            # A double click that lands in the narrow gap between two tiles opens nothing; try a little lower.
            for y in (540, 580, 620):
                x.move_pointer(190, y)
                x.click(repeat=2)
                try:
                    opened = player.wait_line(r"^Opening item (\S+) from the wall$", 2, mark)
                    break
                except harness.WaitTimeout:
                    continue
            else:
                self.fail("no double click on the wall opened a photo\n" + player.tail())
            player.wait_line(r"^Style classic$", 3, mark)
            shown = player.wait_line(SHOWING, 5, mark)
            self.assertEqual(shown.match[1], opened.match[1])
            self.assert_showing_photo(x)

        self.assert_quits(player, "Escape", x=x)


class HostileBundleTest(PlayerTestCase):
    """Bundles damaged on the stick: the player may skip what it cannot show, never crash,
    hang, or put up a dialog."""

    def test_nothing_showable_holds(self):
        x = self.x_server()
        bundle = SUITE.bundle.copy_to(os.path.join(self.tmp, "garbled"))
        for folder, _, files in os.walk(os.path.join(bundle.root, "media")):
            for name in files:
                # Same size, so the open's size checks pass and only decoding fails.
                with open(os.path.join(folder, name), "r+b") as out:
                    out.write(harness.garbage(os.fstat(out.fileno()).st_size, name.encode()))
        player = self.start_player(x, [bundle.root])
        # Every failure is seen at once, bar animations that wait out their hold.
        nothing = player.wait_line(r"^Nothing in the bundle could be shown; holding$", 20)
        self.assertIsNotNone(player.find(r"^Could not show "), player.tail())
        player.wait_line(r"^Holding on 2 screen\(s\)$", 5, nothing.index)
        self.assert_holding_screens(x)
        self.assertTrue(player.alive(), player.tail())
        self.assert_one_window_per_screen(x)
        self.assertIsNone(player.find(r"^Quitting$"))
        self.assert_quits(player, "Escape", x=x)


class ScreensTest(PlayerTestCase):

    def test_resolution_change_while_a_video_plays(self):
        if shutil.which("xrandr") is None:
            self.skipTest("xrandr is not installed (x11-xserver-utils)")
        x = self.x_server(ONE_SCREEN)
        video = SUITE.video_id
        player = self.start_player(x, [SUITE.bundle.root])
        player.wait_line(r"^Playing on 1 screen\(s\)$", 10)
        shown = self.go_to_the_video(x, player)
        # Let it play a moment: the change comes in the middle of the video.
        time.sleep(1)

        output = re.search(r"^(\S+) connected", x.run("xrandr").stdout, re.M)[1]
        mark = player.mark()
        x.run("xrandr", "--newmode", "e2e-720p", "74.25", "1280", "1390", "1430", "1650",
              "720", "725", "730", "750")
        x.run("xrandr", "--addmode", output, "e2e-720p")
        x.run("xrandr", "--output", output, "--mode", "e2e-720p")
        player.wait_line(r"^Screens changed: 1 screen\(s\)$", 5, mark)
        player.wait_line(r"^Playing on 1 screen\(s\)$", 5, mark)
        # The show goes on past the video.
        player.wait_line(rf"^Showing item (?!{video} )", 10, shown.index + 1)
        self.assert_showing_photo(x, ((1280, 720),))
        self.assert_one_window_per_screen(x, ONE_SCREEN)
        self.assertEqual(x.window_size(x.visible_windows()[0][0]), (1280, 720))
        self.assert_quits(player, "Escape", x=x)


def set_bin(folder):
    global BIN
    BIN = folder


def main():
    return harness.run_suite("player_e2e", __name__, set_bin)


if __name__ == "__main__":
    sys.exit(main())
