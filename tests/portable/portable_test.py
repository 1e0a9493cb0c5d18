"""The player that travels in a bundle, on a Debian 12 system that has nothing of ours:
a minimal system made with debootstrap (Debian's required packages and the graphics
driver stack, no Qt, no GStreamer), where the bundle sits on a read-only "stick".
The X server runs here and its socket is shared with that system, so screenshots and
the player's log are taken from outside.

  python3 portable_test.py --bin BUILD/bin [--artifacts DIR] [unittest options]

Exits 77 (skipped) when it cannot run here: not root, debootstrap, unshare, Xvfb,
ImageMagick's import or ffmpeg missing, or no Debian mirror reachable for a first
system. The system is kept in /var/cache/sorvane/portable-rootfs (SORVANE_ROOTFS_CACHE),
one folder per package list, so later runs start at once.
"""

import argparse
import fcntl
import hashlib
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.request

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "SorvanePlayer", "e2e"))
import harness  # noqa: E402
from harness import SHOWING, TWO_SCREENS, wait_until  # noqa: E402

SKIPPED = 77
SUITE_NAME, VARIANT = "bookworm", "minbase"
# What a bare desktop has beyond Debian's required packages: the graphics driver stack.
PACKAGES = ["libgl1", "libegl1", "libglx-mesa0", "libgl1-mesa-dri"]
CACHE = os.environ.get("SORVANE_ROOTFS_CACHE", "/var/cache/sorvane/portable-rootfs")
MIRROR = os.environ.get("SORVANE_DEBIAN_MIRROR", "http://deb.debian.org/debian")
DISPLAY_NUMBERS = range(200, 240)
STICK = "/media/stick"  # where the bundle is mounted inside that system
INTERVAL = 2
SLACK = 8.0  # a video's end reaches the log late on a busy 2-core machine
REQUIRED_TOOLS = ("debootstrap", "unshare", "chroot", "mount", "Xvfb", "import", "ffmpeg")

BIN = None
ARTIFACTS = None
STATE = None


class Skip(Exception):
    pass


def rootfs_key():
    return hashlib.sha256(json.dumps([SUITE_NAME, VARIANT, PACKAGES]).encode()).hexdigest()[:16]


def mirror_reachable():
    try:
        with urllib.request.urlopen(f"{MIRROR}/dists/{SUITE_NAME}/Release", timeout=15) as answer:
            return answer.status == 200
    except OSError:
        return False


def rootfs():
    """The cached minimal system, made on first use (a few minutes)."""
    root = os.path.join(CACHE, rootfs_key())
    os.makedirs(CACHE, exist_ok=True)
    with open(os.path.join(CACHE, ".lock"), "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)  # two runs at once make it once
        if os.path.isdir(root):
            return root
        if not mirror_reachable():
            raise Skip(f"no Debian mirror reachable at {MIRROR} to make the test system")
        partial = root + ".partial"
        shutil.rmtree(partial, ignore_errors=True)
        started = time.monotonic()
        made = subprocess.run(["debootstrap", f"--variant={VARIANT}", "--include=" + ",".join(PACKAGES),
                               SUITE_NAME, partial, MIRROR], capture_output=True, text=True)
        if made.returncode != 0:
            raise RuntimeError(f"debootstrap failed:\n{made.stdout[-3000:]}\n{made.stderr[-3000:]}")
        os.makedirs(partial + STICK)
        os.rename(partial, root)
        print(f"made the test system {root} in {time.monotonic() - started:.0f} s", file=sys.stderr)
        return root


def tree_state(root):
    """Every file and folder under root with its size, mode and content hash."""
    state = {}
    for folder, folders, files in os.walk(root):
        for name in folders + files:
            path = os.path.join(folder, name)
            info = os.lstat(path)
            digest = harness.sha256_file(path) if os.path.isfile(path) and not os.path.islink(path) else ""
            state[os.path.relpath(path, root)] = (info.st_size, info.st_mode, digest)
    return state


class State:
    """The test bundle, written once per run with the default player payload."""

    def __init__(self):
        self.tmp = tempfile.mkdtemp(prefix="sorvane-portable-")
        try:
            self.root = rootfs()
            self.make_bundle()
        except BaseException:
            shutil.rmtree(self.tmp, ignore_errors=True)
            raise

    def make_bundle(self):
        media = os.path.join(self.tmp, "media")
        subprocess.run([os.path.join(BIN, "sorvane-sample-media"), media], check=True, capture_output=True,
                       timeout=120)
        # The sample has H.264 with AAC; H.265 with AAC and VP9 with Opus are made here.
        clips = {"hevc.mp4": ["-c:v", "libx265", "-x265-params", "log-level=error", "-tag:v", "hvc1",
                              "-c:a", "aac"],
                 "vp9.webm": ["-c:v", "libvpx-vp9", "-deadline", "realtime", "-c:a", "libopus"]}
        for name, codecs in clips.items():
            subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", "testsrc2=size=640x360:rate=25",
                            "-f", "lavfi", "-i", "sine=frequency=440", "-t", "2", "-pix_fmt", "yuv420p", *codecs,
                            os.path.join(media, name)], check=True, timeout=120)
        sources = [os.path.join(media, "sunset.jpg"), os.path.join(media, "trips", "2025 coast", "waves.mp4"),
                   os.path.join(media, "hevc.mp4"), os.path.join(media, "vp9.webm")]
        export = subprocess.run([os.path.join(BIN, "sorvane"), "export", *sources, "--to", self.tmp, "--name",
                                 "show", "--interval", str(INTERVAL), "--sort", "sequential", "--with-player"],
                                capture_output=True, text=True, timeout=300)
        if export.returncode != 0:
            raise RuntimeError(f"export failed:\n{export.stdout}\n{export.stderr}")
        self.bundle = harness.Bundle(os.path.join(self.tmp, "show"))
        items = self.bundle.manifest["items"]
        self.video_ids = [item["id"] for item in items if item.get("media_type") == "video"]
        self.codecs = {item["id"]: item["assets"]["video"].get("video_codec") for item in items
                       if item.get("media_type") == "video"}

    def cleanup(self):
        shutil.rmtree(self.tmp, ignore_errors=True)


class PortablePlayerTest(unittest.TestCase):
    def setUp(self):
        self.tmp = tempfile.mkdtemp(prefix="sorvane-portable-test-")
        self.addCleanup(shutil.rmtree, self.tmp, True)
        self.artifacts = None
        if ARTIFACTS:
            self.artifacts = os.path.join(ARTIFACTS, self.id().split(".", 1)[-1])
            shutil.rmtree(self.artifacts, ignore_errors=True)
            os.makedirs(self.artifacts)
        self.x = harness.XServer(self.tmp, TWO_SCREENS, DISPLAY_NUMBERS).start()
        self.addCleanup(self.x.stop)
        self.runs = 0

    def start(self, command):
        """Runs `command` (a shell line) in the test system as a user would, in a private
        mount namespace, so every mount goes away with it: the system and the stick are
        read-only, /tmp is a folder here."""
        self.runs += 1
        scratch = os.path.join(self.tmp, f"run-{self.runs}")
        os.makedirs(os.path.join(scratch, ".X11-unix"))
        os.makedirs(os.path.join(scratch, "run"), mode=0o700)
        root, q = STATE.root, shlex.quote
        inside = " ".join([
            "env", "-i", "PATH=/usr/bin:/bin", "HOME=/tmp/home", "XDG_RUNTIME_DIR=/tmp/run",
            f"DISPLAY={self.x.name}", "QT_LOGGING_RULES=sorvane.player.info=true",
            "DBUS_SESSION_BUS_ADDRESS=disabled:", "sh", "-c", q(command)])
        script = " && ".join([
            f"mount --bind {q(root)} {q(root)}", f"mount -o remount,bind,ro {q(root)}",
            f"mount --bind {q(scratch)} {q(root)}/tmp", f"mount -t proc proc {q(root)}/proc",
            f"mount --rbind /dev {q(root)}/dev",
            f"mount --bind /tmp/.X11-unix {q(root)}/tmp/.X11-unix",
            f"mount --bind {q(STATE.bundle.root)} {q(root + STICK)}",
            f"mount -o remount,bind,ro {q(root + STICK)}",
            f"exec chroot {q(root)} {inside}"])
        log = os.path.join(self.tmp, f"player-{self.runs}.log")
        player = harness.Player("unshare", ["--mount", "--propagation", "private", "sh", "-c", script], None, log)
        self.addCleanup(self.keep, log)
        self.addCleanup(player.stop)
        return player, scratch

    def keep(self, path):
        if self.artifacts and os.path.exists(path):
            shutil.copy(path, self.artifacts)

    def wait_for_photo(self, screen, name):
        def passing():
            shot = self.x.screenshot(screen)
            return shot if shot.fraction_brighter(16) > 0.25 else None
        shot = wait_until(passing, 10, f"a photo filling much of screen {screen}", interval=0.2)
        if self.artifacts:
            with open(os.path.join(self.artifacts, f"{name}-screen{screen}.ppm"), "wb") as out:
                out.write(b"P6 %d %d 255\n" % (shot.width, shot.height) + shot.rgb)
        return shot

    def test_plays_photos_and_videos_from_a_read_only_stick(self):
        before = tree_state(STATE.bundle.root)
        player, scratch = self.start(f"exec {STICK}/player/Slidora")
        player.wait_line(rf"^Bundle root {STICK}$", 20)
        first = player.wait_line(r"^First photo on screen after (\d+) ms$", 30)
        for screen, size in enumerate(TWO_SCREENS):
            shot = self.wait_for_photo(screen, "first")
            self.assertEqual((shot.width, shot.height), size)

        # Every video plays to its end, then the next item comes; none fails over to its poster.
        for video_id in STATE.video_ids:
            shown = player.wait_line(rf"^Showing item {video_id} \(video\)", 3 * INTERVAL + SLACK)
            following = player.wait_line(SHOWING, 2 + SLACK, shown.index + 1)
            self.assertGreater(following.seen_at - shown.seen_at, 1.0,
                               f"{STATE.codecs[video_id]} video ended at once\n{player.tail()}")
        self.assertEqual(player.find_all(r"^Could not show"), [], player.tail())
        print(f"first photo after {first.match.group(1)} ms", file=sys.stderr)

        player.stop()
        self.assertEqual(tree_state(STATE.bundle.root), before, "the player wrote into the bundle")
        registries = os.listdir(os.path.join(scratch, "home", ".cache", "SorvanePlayer"))
        self.assertTrue(any(re.match(r"gstreamer-registry-\d+\.bin$", name) for name in registries), registries)

    def test_started_by_relative_path_or_through_a_link_it_plays_the_bundle_around_it(self):
        starts = {"relative": f"cd {STICK} && exec player/Slidora",
                  "link": f"ln -s {STICK}/player/Slidora /tmp/Slidora && cd / && exec /tmp/Slidora"}
        for name, command in starts.items():
            with self.subTest(name):
                player, _ = self.start(command)
                player.wait_line(rf"^Bundle root {STICK}$", 20)
                player.wait_line(r"^First photo on screen after \d+ ms$", 30)
                self.wait_for_photo(0, name)
                player.stop()


def main():
    global BIN, ARTIFACTS
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--artifacts")
    args, rest = parser.parse_known_args()
    BIN = os.path.abspath(args.bin)
    ARTIFACTS = os.path.abspath(args.artifacts) if args.artifacts else None
    if os.geteuid() != 0:
        print("SKIPPED: making and entering the test system needs root", file=sys.stderr)
        return SKIPPED
    missing = [tool for tool in REQUIRED_TOOLS + harness.REQUIRED_TOOLS if shutil.which(tool) is None]
    if missing:
        print(f"SKIPPED: missing {', '.join(missing)} (scripts/bootstrap installs them)", file=sys.stderr)
        return SKIPPED
    if not os.path.isfile(os.path.join(BIN, "..", "payload", "Slidora")):
        print("the player payload is not built: cmake --build BUILD --target player_payload", file=sys.stderr)
        return 1
    try:
        global STATE
        STATE = State()
    except Skip as reason:
        print(f"SKIPPED: {reason}", file=sys.stderr)
        return SKIPPED
    try:
        program = unittest.main(argv=[sys.argv[0], *rest], exit=False, verbosity=2)
    finally:
        STATE.cleanup()
    return 0 if program.result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
