"""The hostile-input suite: the real programs (sorvane verify, sorvane export and
SorvanePlayer) against inputs an attacker would put on a stick, each run traced
for the files it opens, under a timeout, with its peak memory measured.

  python3 hostile.py --bin BUILD/bin [--keep] [-k PATTERN]

Exits 77 (skipped) when strace, ffmpeg or vips is missing."""

import argparse
import functools
import hashlib
import json
import os
import re
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import time
import unittest

import inputs
from inputs import BundleMaker

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "SorvanePlayer", "e2e"))
import harness  # noqa: E402

SKIPPED = 77
MEMORY_LIMIT_KB = 400 * 1024
TB = 1 << 40
BIN = None
WORK = None
OUT = None  # the folder outside every bundle that links point at

# --- running a program -----------------------------------------------------------

OPEN_CALL = re.compile(r"^\d+\s+(?:open|openat|openat2|creat)\((.*)\)\s+=\s+(\d+)<([^>]*)>")


def strace_prefix(log):
    # -y names the file behind every descriptor, so an open that followed a link shows where it landed.
    return ["strace", "--seccomp-bpf", "-f", "-qq", "-y", "-e", "trace=%file", "-o", log, "--"]


def opened_targets(log, targets):
    """Successful opens (not O_PATH) that landed on one of targets or under it."""
    hits = []
    with open(log, errors="replace") as lines:
        for line in lines:
            match = OPEN_CALL.match(line)
            if not match or "O_PATH" in match.group(1):
                continue
            landed = match.group(3)
            if any(landed == t or landed.startswith(t + "/") for t in targets):
                hits.append(line.strip())
    return hits


class Run:
    """One traced run of a command-line program: exit, peak memory, files opened."""

    def __init__(self, name, command, timeout=60, user=None):
        self.log = os.path.join(WORK, f"{name}.strace")
        # time forks the program from its own small process: a peak taken here would include
        # whatever this script held when it started the run.
        peak_file = os.path.join(WORK, f"{name}.peak")
        prefix = ["/usr/bin/time", "-f", "%M", "-o", peak_file]
        prefix += ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups"] if user else []
        started = time.monotonic()
        with open(os.path.join(WORK, f"{name}.out"), "w+b") as out:
            process = subprocess.Popen(strace_prefix(self.log) + prefix + command, stdout=out, stderr=out,
                                       stdin=subprocess.DEVNULL, start_new_session=True)
            self.hung = False
            while True:
                pid, status, usage = os.wait4(process.pid, os.WNOHANG)
                if pid:
                    break
                if time.monotonic() - started > timeout:
                    self.hung = True
                    os.killpg(process.pid, signal.SIGKILL)
                    pid, status, usage = os.wait4(process.pid, 0)
                    break
                time.sleep(0.02)
            process.returncode = status  # reaped here, not by Popen
            out.seek(0)
            self.output = out.read().decode(errors="replace")
        self.signal = os.WTERMSIG(status) if os.WIFSIGNALED(status) else None
        self.code = os.WEXITSTATUS(status) if os.WIFEXITED(status) else None
        with open(peak_file) as report:  # "Command terminated by signal 11" before the peak, if so
            *notes, peak = report.read().splitlines() or ["killed", usage.ru_maxrss]
        self.peak_kb = int(peak)
        killed = re.search(r"terminated by signal (\d+)", " ".join(notes))
        if killed:
            self.signal, self.code = int(killed.group(1)), None

    def json(self):
        return json.loads(self.output[self.output.index("{"):])


class HostileCase(unittest.TestCase):
    maxDiff = None

    def assert_survived(self, run, targets, what):
        self.assertFalse(run.hung, f"{what}: still running at its timeout\n{run.output[-2000:]}")
        self.assertIsNone(run.signal, f"{what}: killed by signal {run.signal}\n{run.output[-2000:]}")
        self.assertLessEqual(run.peak_kb, MEMORY_LIMIT_KB, f"{what}: peak memory {run.peak_kb} kB")
        self.assertEqual(opened_targets(run.log, targets), [], f"{what}: opened a planted target")


# --- the bundles -----------------------------------------------------------------

PLAYABLE = "playable"
MISSING, SHORT, UNDECODABLE = "itemAssetMissing", "itemAssetSizeMismatch", "itemAssetUndecodable"


def with_sha(maker):
    asset = next(iter(maker.items[-1]["assets"].values()))
    asset["sha256"] = harness.sha256_file(maker.path(asset["path"]))


def escapes_bundle(root, photo):
    """Links out of the bundle, pipes and devices under asset names. Returns
    {item: (size, decode, full)} and the planted targets."""
    b = BundleMaker(root, branding={"display_name": "Escapes", "logo_asset": "assets/branding/logo.png"})
    targets = [OUT, "/dev/zero"]
    secret = os.path.join(OUT, "secret.jpg")
    expected = {}

    def add(item_id, relative, outcome, declared=len(photo)):
        b.item(item_id, "full", relative, declared=declared)
        if os.path.isfile(b.path(relative)):
            with_sha(b)
        expected[item_id] = outcome

    b.item("good", "full", "media/full/good.jpg", photo)
    with_sha(b)
    expected["good"] = (PLAYABLE,) * 3
    b.link("media/full/link-file.jpg", secret)
    add("link-file", "media/full/link-file.jpg", (MISSING,) * 3)
    b.link("media/out", OUT)
    add("link-folder", "media/out/secret.jpg", (MISSING,) * 3)
    b.link("media/full/chain-1.jpg", "chain-2.jpg")
    b.link("media/full/chain-2.jpg", "../chain-3.jpg")
    b.link("media/chain-3.jpg", os.path.relpath(secret, b.path("media")))
    add("link-chain", "media/full/chain-1.jpg", (MISSING,) * 3)
    b.link("media/full/zero.jpg", "/dev/zero")
    add("link-zero", "media/full/zero.jpg", (MISSING,) * 3, declared=0)
    b.link("media/full/pipe-out.jpg", os.path.join(OUT, "pipe"))
    add("link-fifo-out", "media/full/pipe-out.jpg", (MISSING,) * 3, declared=0)
    os.mkfifo(b.path("media/full/pipe.jpg"))
    targets.append(b.path("media/full/pipe.jpg"))
    add("fifo", "media/full/pipe.jpg", (MISSING,) * 3, declared=0)
    b.link("media/full/pipe-in.jpg", "pipe.jpg")
    add("link-fifo-in", "media/full/pipe-in.jpg", (MISSING,) * 3, declared=0)
    try:
        os.mknod(b.path("media/full/device.jpg"), 0o600 | stat.S_IFCHR, os.makedev(1, 5))
        targets.append(b.path("media/full/device.jpg"))
        add("device", "media/full/device.jpg", (MISSING,) * 3, declared=0)
    except PermissionError:
        pass  # only root makes device files; the other rows still run
    b.link("assets/branding/logo.png", secret)
    return b.write(), expected, targets, ["brandingLogoAssetMissing"]


def bombs_bundle(root, photo, folder):
    """Decompression bombs of every kind, a sparse terabyte and a logo that is a bomb."""
    b = BundleMaker(root, branding={"display_name": "Bombs", "logo_asset": "assets/branding/logo.png",
                                    "overlay": {"enabled": True}})
    b.put("assets/branding/logo.png", inputs.png_bomb())
    expected = {}
    rows = [("good", "full", "good.jpg", photo, (PLAYABLE,) * 3),
            ("png-bomb", "full", "png.png", inputs.png_bomb(), (PLAYABLE, UNDECODABLE, UNDECODABLE)),
            ("jpeg-bomb", "full", "jpeg.jpg", inputs.jpeg_bomb(folder), (PLAYABLE, UNDECODABLE, UNDECODABLE)),
            ("heic-bomb", "full", "heic.heic", inputs.heic_bomb(folder), (PLAYABLE, UNDECODABLE, UNDECODABLE)),
]
    for item_id, tier, name, data, outcome in rows:
        if data is None:
            continue  # no HEIC encoder here
        b.item(item_id, tier, f"media/{tier}/{name}", data)
        with_sha(b)
        expected[item_id] = outcome
    sparse = b.path("media/full/sparse.jpg")
    with open(sparse, "wb") as out:
        out.truncate(TB)
    b.item("sparse-tb", "full", "media/full/sparse.jpg", declared=TB)
    b.items[-1]["assets"]["full"]["sha256"] = "0" * 64
    expected["sparse-tb"] = (PLAYABLE, UNDECODABLE, UNDECODABLE)
    return b.write(), expected


def animations_bundle(root, photo, folder):
    """Animations the decoder accepts frame by frame but that would not fit all at once.
    They are not probed when a bundle opens (they stay playable at every level): the player
    bounds them. Each shows for 3 s, time enough to grow past any budget."""
    b = BundleMaker(root)
    b.manifest["playback"]["interval_seconds"] = 3
    b.item("good", "full", "media/full/good.jpg", photo)
    b.item("gif-bomb", "animated", "media/animated/gif.gif", inputs.gif_bomb())
    b.item("gif-canvas", "animated", "media/animated/canvas.gif", inputs.gif_bomb(side=5000))
    b.item("webp-bomb", "animated", "media/animated/webp.webp", inputs.webp_bomb(folder))
    for item in b.items:
        asset = next(iter(item["assets"].values()))
        asset["sha256"] = harness.sha256_file(b.path(asset["path"]))
    return b.write(), {item["id"]: (PLAYABLE,) * 3 for item in b.items}


def videos_bundle(root, photo, folder):
    b = BundleMaker(root)
    b.item("good", "full", "media/full/good.jpg", photo)
    for faststart in (True, False):
        clip = inputs.mp4(folder, faststart)
        b.item(f"truncated-{faststart}", "video", f"media/video/truncated-{faststart}.mp4", clip[:len(clip) // 2],
               media_type="video")
    b.item("random", "video", "media/video/random.mp4", inputs.garbage(300_000), media_type="video")
    return b.write()


@functools.lru_cache(maxsize=1)
def manifest_rows(photo):
    """(name, manifest bytes, exit status, error code, report codes that must be there)."""
    good = {"id": "good", "media_type": "image",
            "assets": {"full": {"path": "media/full/good.jpg", "bytes": len(photo),
                                "sha256": hashlib.sha256(photo).hexdigest()}}}
    base = {"format": "sorvane.bundle", "format_version": 2, "min_reader_version": 1, "items": [good]}

    def manifest(**changes):
        return json.dumps({**base, **changes}).encode()

    def missing(count, id_prefix="i"):
        return [{"id": f"{id_prefix}{n}", "media_type": "image", "assets": {"full": {"path": f"media/{n}.jpg", "bytes": 1}}}
                for n in range(count)]
    huge = 2 ** 70
    out_of_range = manifest(playback={"interval_seconds": 1e308, "seed": -huge,
                                                           "flow": {"column_adjustment": huge}},
                            display={"per_screen": [{"screen": huge}]},
                            items=[good, {"id": "big", "media_type": "image",
                                          "assets": {"full": {"path": "media/full/good.jpg", "bytes": 1e300,
                                                              "w": -huge, "h": 1e308}}},
                                   {"id": "neg", "media_type": "image",
                                    "assets": {"full": {"path": "media/full/good.jpg", "bytes": -1}}}])
    return [
        ("deep", inputs.deep_manifest(), 1, "manifestMalformed", []),
        ("sixty-mb", manifest(padding="x" * 60_000_000), 1, "manifestUnreadable", []),
        ("items-200k", json.dumps({**base, "items": missing(200_000)}).encode(), 1, "noPlayableMedia", []),
        # As many items as the size limit lets through, each with a long id its reports repeat.
        ("long-ids", json.dumps({**base, "items": missing(100_000, "x" * 200)}).encode(), 1, "noPlayableMedia", []),
        ("items-over-limit", manifest(items=[0] * 250_001), 1, "manifestMalformed", []),
        # Qt's document costs up to fifty times its text on lists of small arrays.
        ("amplifying", manifest(padding=[[0]] * 6_000_000), 0, None, ["unknownFieldsIgnored"]),
        ("invalid-utf8", manifest(title="@@").replace(b"@@", b"\xff\xfe\xc0\x80"), 1, "manifestMalformed", []),
        ("duplicate-ids", manifest(items=[good, good, good]), 0, None, []),
        ("out-of-range", out_of_range, 0, None, [SHORT]),
        # Beyond a double: no JSON parser has to take it.
        ("overflowing-number", manifest(format_version=2).replace(b'"format_version": 2', b'"format_version": 1e400'),
         1, "manifestMalformed", []),
        # Past 64 bits: not an integer, so absent, and the member is required.
        ("huge-version", manifest(format_version=huge), 1, "manifestMalformed", []),
        ("future-reader", manifest(min_reader_version=2 ** 53), 1, "unsupportedFutureVersion", []),
        # Not an integer, so absent: the manifest lacks a required member.
        ("fractional-reader", manifest(min_reader_version=1e300), 1, "manifestMalformed", []),
        ("negative-reader", manifest(min_reader_version=-(2 ** 63)), 0, None, []),
    ]


# --- the cases -------------------------------------------------------------------


def verify(name, bundle, level, *extra):
    return Run(f"verify-{name}-{level}", [os.path.join(BIN, "sorvane"), "verify", bundle, "--level", level,
                                         *extra], timeout=60)


def item_outcomes(result, ids):
    """Each item's fate: playable, or the code of the report about it."""
    outcomes = {}
    for item_id in ids:
        if any(item["id"] == item_id for item in result.get("items", [])):
            outcomes[item_id] = PLAYABLE
        else:
            codes = [r["code"] for r in result["reports"] if r.get("itemId") == item_id]
            outcomes[item_id] = codes[-1] if codes else None
    return outcomes


class Verify(HostileCase):
    def test_bundles_at_every_level(self):
        for name, (root, expected, targets, other_reports) in MATERIAL.file_bundles.items():
            for level_index, level in enumerate(("size", "decode", "full")):
                with self.subTest(bundle=name, level=level):
                    run = verify(name, root, level, "--json")
                    self.assert_survived(run, targets, f"verify {name} --level {level}")
                    self.assertEqual(run.code, 0, run.output[-2000:])
                    result = run.json()
                    wanted = {item: outcome[level_index] for item, outcome in expected.items()}
                    self.assertEqual(item_outcomes(result, wanted), wanted)
                    codes = {r["code"] for r in result["reports"]}
                    self.assertTrue(set(other_reports) <= codes, codes)
            with self.subTest(bundle=name, output="text"):
                run = verify(name, root, "decode", "--verbose")
                self.assert_survived(run, targets, f"verify {name} (text)")
                self.assertIn("good", run.output)

    def test_manifests(self):
        for name, raw, status, error, reports in manifest_rows(MATERIAL.photo):
            with self.subTest(manifest=name):
                root = os.path.join(WORK, "manifests", name)
                shutil.copytree(MATERIAL.good_media, os.path.join(root, "media"))
                BundleMaker(root).write(raw)
                run = verify(name, root, "full", "--json")
                self.assert_survived(run, [OUT], f"verify {name}")
                self.assertEqual(run.code, status, run.output[-2000:])
                result = run.json()
                self.assertEqual((result.get("error") or {}).get("code"), error)
                codes = {r["code"] for r in result.get("reports", [])}
                self.assertTrue(set(reports) <= codes, codes)

    def test_manifest_that_links_out(self):
        root = os.path.join(WORK, "linked-manifest")
        os.makedirs(root)
        os.symlink(os.path.join(OUT, "bundle.json"), os.path.join(root, "bundle.json"))
        run = verify("linked-manifest", root, "size", "--json")
        self.assert_survived(run, [OUT], "verify of a manifest outside the bundle")
        self.assertEqual((run.code, run.json()["error"]["code"]), (1, "manifestUnreadable"))


# --- export ----------------------------------------------------------------------


def mount_tmpfs(path, options):
    os.makedirs(path, exist_ok=True)
    if os.geteuid() != 0 or subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", path],
                                           capture_output=True).returncode != 0:
        return False
    MATERIAL.mounts.append(path)
    return True


def exported_items(destination):
    with open(os.path.join(destination, "out", "bundle.json"), "rb") as manifest:
        return len(json.load(manifest)["items"])


class Export(HostileCase):
    def export(self, name, sources, destination, user=None, timeout=90):
        command = [os.path.join(BIN, "sorvane"), "export", *sources, "--to", destination, "--name", "out",
                   "--jobs", "2"]
        return Run(f"export-{name}", command, timeout=timeout, user=user)

    def test_hostile_sources(self):
        """Link loops, a pipe named .jpg, names with a newline and invalid UTF-8, an unreadable photo."""
        source = MATERIAL.sources
        destination = os.path.join(WORK, "exported")
        os.makedirs(destination)
        os.chmod(destination, 0o777)
        os.chmod(WORK, 0o755)
        # Root reads any file whatever its mode, so the export runs as nobody.
        # The pipe is also named on the command line, where no folder listing filters it.
        run = self.export("sources", [source, os.path.join(source, "pipe.jpg")], destination,
                          user=os.geteuid() == 0)
        self.assert_survived(run, [os.path.join(source, "pipe.jpg")], "export of hostile sources")
        self.assertEqual(run.code, 0, run.output[-3000:])
        # good.jpg and the name with a newline; a name that is not UTF-8 cannot be spelled
        # in the toolkit's file names, so that file is reported; the pipe that was named is too.
        self.assertEqual(exported_items(destination), 2, run.output[-3000:])
        self.assertIn("unreadable.jpg could not be read", run.output)
        self.assertIn("pipe.jpg could not be read: not a regular file", run.output)
        self.assertIn(f"A file in {source} was left out: its name is not valid UTF-8.", run.output)

    def test_destinations(self):
        rows = [("full", "size=300k", 1, "writeFailed"), ("read-only", "ro,size=1m", 1, "destinationUnwritable")]
        for name, options, status, code in rows:
            with self.subTest(destination=name):
                destination = os.path.join(WORK, f"dest-{name}")
                if not mount_tmpfs(destination, options):
                    self.skipTest("mounting a small file system needs root")
                run = self.export(name, [MATERIAL.big_sources], destination)
                self.assert_survived(run, [], f"export to a {name} destination")
                self.assertEqual(run.code, status, run.output[-2000:])
                self.assertIn(code, run.output)
                # Nothing half-written stays behind: no bundle, no staged files.
                left = [os.path.join(d, n) for d, _, files in os.walk(destination) for n in files]
                self.assertEqual([n for n in os.listdir(destination) if n != ".bundle-staging"] + left, [])

    def test_destination_removed_midway(self):
        destination = os.path.join(WORK, "dest-removed")
        os.makedirs(destination)
        log = os.path.join(WORK, "export-removed.strace")
        command = strace_prefix(log) + [os.path.join(BIN, "sorvane"), "export", MATERIAL.big_sources, "--to",
                                        destination, "--name", "out", "--jobs", "1"]
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   start_new_session=True)
        staging = os.path.join(destination, ".bundle-staging")
        harness.wait_until(lambda: os.path.isdir(staging) and os.listdir(staging), 30, "the staging folder")
        # Gone from its path at once (as when the stick is pulled), then deleted for good.
        os.rename(destination, destination + "-gone")
        shutil.rmtree(destination + "-gone", ignore_errors=True)
        try:
            output = process.communicate(timeout=60)[0].decode(errors="replace")
        except subprocess.TimeoutExpired:
            harness.stop_process(process)
            raise
        # The folders its later writes made again hold only part of the bundle: the export
        # fails with nothing staged left, never finishing a half-written bundle.
        self.assertEqual(process.returncode, 1, output[-2000:])
        self.assertIn("writeFailed", output)
        self.assertFalse(os.path.exists(os.path.join(destination, "out")), "a partial bundle was finished")
        self.assertFalse(os.path.isdir(staging) and os.listdir(staging), "a staging folder was left")


# --- the player ------------------------------------------------------------------


HOLDING = r"^Holding on 2 screen"


class Player(HostileCase):
    """Each bundle played once, with every hostile item given its turn on screen."""

    def play(self, name, bundle, tried, targets, until=r"^Showing item good", seconds=40):
        """Plays bundle until every item in tried was shown and then a line matching until came."""
        tmp = os.path.join(WORK, f"player-{name}")
        folders = {key: os.path.join(tmp, key) for key in ("run", "data", "config", "cache")}
        for folder in folders.values():
            os.makedirs(folder, mode=0o700)
        env = {k: v for k, v in os.environ.items() if not k.startswith(("QT_", "XDG_", "DBUS_"))}
        env.update(MATERIAL.x.env())
        env.update({"QT_QPA_PLATFORM": "xcb", "QT_LOGGING_RULES": "sorvane.player.info=true",
                    "XDG_RUNTIME_DIR": folders["run"], "XDG_DATA_HOME": folders["data"],
                    "XDG_CONFIG_HOME": folders["config"], "XDG_CACHE_HOME": folders["cache"],
                    "DBUS_SESSION_BUS_ADDRESS": "disabled:"})
        log = os.path.join(WORK, f"player-{name}.strace")
        program = os.path.join(BIN, "SorvanePlayer")
        player = harness.Player("strace", strace_prefix(log)[1:] + [program, bundle], env,
                                os.path.join(WORK, f"player-{name}.log"))
        peak = 0
        try:
            pid = harness.wait_until(lambda: player_pid(player.pid, program), 10, "the player under strace")

            def done():
                nonlocal peak
                peak = max(peak, high_water_kb(pid))
                shown = {line.match.group(1) for line in player.find_all(harness.SHOWING)}
                return tried <= shown and player.find(until, after=last_try(player, tried))

            harness.wait_until(done, seconds, f"{name}: every item tried", interval=0.2, detail=player.tail)
            self.assertTrue(player.alive(), player.tail())
            peak = max(peak, high_water_kb(pid))
        finally:
            player.stop()
        print(f"\n{name}: the player's peak memory was {peak // 1024} MB", file=sys.stderr)
        self.assertLessEqual(peak, MEMORY_LIMIT_KB, f"{name}: player peak {peak} kB")
        self.assertEqual(opened_targets(log, targets), [], f"{name}: the player opened a planted target")
        return player

    def test_bundles(self):
        """(name, bundle, items that must each get their turn, planted targets, line that ends the run)."""
        escapes, _, escape_targets, _ = MATERIAL.file_bundles["escapes"]
        rows = [("bombs", *MATERIAL.bombs, [OUT], None), ("animations", *MATERIAL.animations, [OUT], None),
                ("videos", MATERIAL.videos, {"truncated-True", "truncated-False", "random"}, [OUT], None),
                ("escapes", escapes, {}, escape_targets, r"^First photo on screen")]
        for name, root, expected, targets, until in rows:
            with self.subTest(bundle=name):
                player = self.play(name, root, set(expected) - {"good"}, targets, until=until or r"^Showing item good")
                self.assertEqual(player.find_all(harness.SHOWING)[0].match.group(1), "good")

    def test_huge_and_broken_manifests(self):
        manifests = {name: raw for name, raw, *_ in manifest_rows(MATERIAL.photo)}
        for name, why in (("deep", "not valid JSON"), ("items-200k", "none of them resolved"),
                          ("long-ids", "none of them resolved"), ("amplifying", None)):
            with self.subTest(manifest=name):
                root = os.path.join(WORK, f"{name}-player")
                if why is None:
                    shutil.copytree(MATERIAL.good_media, os.path.join(root, "media"))
                BundleMaker(root).write(manifests[name])
                player = self.play(name, root, set(), [OUT], until=r"^Showing item good" if why is None else HOLDING,
                                   seconds=30)
                if why:
                    self.assertIsNotNone(player.find(rf"^Bundle could not be opened .*{why}"), player.tail())


def player_pid(strace_pid, program):
    """The traced player: strace's child once it runs the player's program."""
    try:
        with open(f"/proc/{strace_pid}/task/{strace_pid}/children") as children:
            for pid in children.read().split():
                if os.path.realpath(f"/proc/{pid}/exe") == os.path.realpath(program):
                    return int(pid)
    except FileNotFoundError:
        pass
    return None


def high_water_kb(pid):
    try:
        with open(f"/proc/{pid}/status") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmHWM:"))
    except (FileNotFoundError, StopIteration, ProcessLookupError):
        return 0


def last_try(player, tried):
    lines = [line.index for line in player.find_all(harness.SHOWING) if line.match.group(1) in tried]
    return lines[-1] + 1 if lines else (0 if not tried else 10 ** 9)


# --- the slideshow application ---------------------------------------------------

SHOWN = re.compile(r"^sorvane\.slideshow\.items: Screen (\d+) shows (.*)$", re.M)
FOUND = re.compile(r"^sorvane\.slideshow: Found (\d+) photos and (\d+) videos", re.M)


def crowded_folder(root, photo):
    """100,000 names of photos, nearly all empty; a real photo every 25,000 (one link each)."""
    os.makedirs(root)
    good = os.path.join(root, "photo-000003.jpg")
    with open(good, "wb") as out:
        out.write(photo)
    for index in range(100_000):
        path = os.path.join(root, f"photo-{index:06}.jpg")
        if index % 25_000 == 3 and index != 3:
            os.link(good, path)
        elif index != 3:
            open(path, "wb").close()
    goods = {f"photo-{n:06}.jpg" for n in range(3, 100_000, 25_000)}
    return root, {f"photo-{n:06}.jpg" for n in range(3)}, goods, (100_000, 0)


def misleading_folder(root, photo, scratch):
    """Files that are not what their names say, link loops and links out, a 50,000-pixel-square PNG,
    videos that break half-way, pipes and, for a run as nobody, locked files and folders."""
    b = BundleMaker(root)
    # Two screens decoding full HD at once cost some 180 MB with software graphics, whatever
    # the files: HD keeps this budget about what broken files add.
    clip = inputs.mp4(scratch, True, size="1280x720")
    garbled = clip[:len(clip) // 3] + inputs.garbage(len(clip) // 3) + clip[2 * len(clip) // 3:]
    tried = {"b-text.jpg": b"not a photo\n" * 100, "b-video.png": clip, "b-photo.mp4": photo,
             "b-random.jpg": inputs.garbage(200_000), "c-claims.png": inputs.png_bomb(),
             "d-truncated.mp4": clip[:len(clip) // 2], "d-garbled.mp4": garbled}
    for name, data in {**tried, "a-good.jpg": photo, "z-good.jpg": photo, "e-locked.jpg": photo,
                       "e-locked/inside.jpg": photo}.items():
        b.put(name, data)
    inputs.huge_png(b.path("c-huge.png"))
    tried["c-huge.png"] = None
    for name, target in (("loops/parent", ".."), ("loops/self", "."), ("loops/ring-1.jpg", "ring-2.jpg"),
                         ("loops/ring-2.jpg", "ring-1.jpg"), ("loops/chain", "parent/loops/self"),
                         ("out-file.jpg", os.path.join(OUT, "secret.jpg")), ("out-folder", OUT),
                         ("out-pipe.jpg", os.path.join(OUT, "pipe"))):
        b.link(name, target)
    for name in ("b-pipe.jpg", "b-pipe.mp4", "e-locked/pipe.gif"):
        os.mkfifo(b.path(name))
    for name in ("e-locked.jpg", "e-locked"):
        os.chmod(b.path(name), 0)
    targets = [OUT] + [b.path(name) for name in ("b-pipe.jpg", "b-pipe.mp4", "e-locked.jpg", "e-locked")]
    return root, set(tried), {"a-good.jpg", "z-good.jpg"}, (7, 3), targets


class Slideshow(HostileCase):
    """SorvaneSlideshow on both screens of a folder, until every hostile item had its turn and a
    good photo came after the last of them."""

    def show(self, name, folder, tried, goods, found, targets, seconds):
        tmp = os.path.join(WORK, f"slideshow-{name}")
        for sub in ("run", "config", "cache", "data"):
            os.makedirs(os.path.join(tmp, sub), mode=0o700)
        subprocess.run(["chown", "-R", "nobody:nogroup", tmp], check=True)
        os.chmod(WORK, 0o755)
        env = {k: v for k, v in os.environ.items() if not k.startswith(("QT_", "XDG_", "DBUS_"))}
        env.update(MATERIAL.x.env(), QT_QPA_PLATFORM="xcb", DBUS_SESSION_BUS_ADDRESS="disabled:",
                   QT_LOGGING_RULES="sorvane.slideshow.info=true\nsorvane.slideshow.items.debug=true",
                   XDG_RUNTIME_DIR=os.path.join(tmp, "run"), XDG_CONFIG_HOME=os.path.join(tmp, "config"),
                   XDG_CACHE_HOME=os.path.join(tmp, "cache"), XDG_DATA_HOME=os.path.join(tmp, "data"))
        program = os.path.join(BIN, "SorvaneSlideshow")
        # Root reads any file whatever its mode: the show runs as nobody, so locked entries stay locked.
        trace = os.path.join(WORK, f"slideshow-{name}.strace")
        command = strace_prefix(trace)[1:] + [
            "setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", program, "--screens", "all",
            "--sort", "sequential", "--interval", "1", "--transition", "none", folder]
        show = harness.Player("strace", command, env, os.path.join(WORK, f"slideshow-{name}.log"))
        peak, log = 0, ""
        try:
            pid = harness.wait_until(lambda: player_pid(show.pid, program), 10, "the slideshow under strace")

            def done():
                nonlocal peak, log
                peak = max(peak, high_water_kb(pid))
                with open(show.log_path, errors="replace") as lines:
                    log = lines.read()
                shown = [(match.end(), os.path.basename(match.group(2))) for match in SHOWN.finditer(log)]
                if not FOUND.search(log) or not tried <= {file for _, file in shown}:
                    return False
                last = max((at for at, file in shown if file in tried), default=0)
                return any(at > last and file in goods for at, file in shown)

            harness.wait_until(done, seconds, f"{name}: every item tried, then a good photo", interval=0.2,
                               detail=show.tail)
            self.assertTrue(show.alive(), show.tail())
            windows = MATERIAL.x.visible_windows()
            self.assertEqual([title for _, title in windows], ["Sorvane Slideshow"] * 2, windows)
        finally:
            show.stop()
        print(f"\nslideshow {name}: peak memory {peak // 1024} MB", file=sys.stderr)
        self.assertLessEqual(peak, MEMORY_LIMIT_KB, f"{name}: slideshow peak {peak} kB")
        self.assertEqual(tuple(map(int, FOUND.search(log).groups())), found, log[-3000:])
        self.assertEqual(opened_targets(trace, targets), [],
                         f"{name}: the slideshow opened a planted target")

    def test_folders(self):
        scratch = os.path.join(WORK, "scratch")
        rows = [("crowded", *crowded_folder(os.path.join(WORK, "crowded"), MATERIAL.photo), [OUT], 60),
                ("misleading", *misleading_folder(os.path.join(WORK, "misleading"), MATERIAL.photo, scratch), 60)]
        for name, folder, tried, goods, found, targets, seconds in rows:
            with self.subTest(folder=name):
                self.show(name, folder, tried, goods, found, targets, seconds)


# --- shared material -------------------------------------------------------------


class Material:
    """Everything the cases share, built once: photos, bundles, sources, the X server."""

    def __init__(self):
        self.mounts = []
        global OUT
        OUT = os.path.join(WORK, "outside")
        os.makedirs(OUT)
        scratch = os.path.join(WORK, "scratch")
        os.makedirs(scratch)
        self.photo = inputs.photo(scratch)
        with open(os.path.join(OUT, "secret.jpg"), "wb") as out:
            out.write(self.photo)
        os.mkfifo(os.path.join(OUT, "pipe"))
        with open(os.path.join(OUT, "bundle.json"), "w") as out:
            json.dump({"format": "sorvane.bundle", "format_version": 2, "min_reader_version": 1, "items": []}, out)
        self.good_media = os.path.join(WORK, "good-media")
        os.makedirs(os.path.join(self.good_media, "full"))
        shutil.copy(os.path.join(OUT, "secret.jpg"), os.path.join(self.good_media, "full", "good.jpg"))
        escapes = escapes_bundle(os.path.join(WORK, "escapes"), self.photo)
        self.bombs = bombs_bundle(os.path.join(WORK, "bombs"), self.photo, scratch)
        self.animations = animations_bundle(os.path.join(WORK, "animations"), self.photo, scratch)
        self.file_bundles = {"escapes": escapes, "bombs": (*self.bombs, [OUT], []),
                             "animations": (*self.animations, [OUT], [])}
        self.videos = videos_bundle(os.path.join(WORK, "videos"), self.photo, scratch)
        self.sources = self.make_sources(os.path.join(WORK, "sources"), scratch)
        self.big_sources = os.path.join(WORK, "big-sources")
        os.makedirs(self.big_sources)
        for index in range(12):
            inputs.photo(self.big_sources, f"photo-{index:02}.jpg", (1600, 1200))
        self.x = harness.XServer(WORK, harness.TWO_SCREENS).start()

    @staticmethod
    def make_sources(source, scratch):
        os.makedirs(os.path.join(source, "inner"))
        names = ["good.jpg", "new\nline.jpg", os.fsdecode(b"bad-\xff\xfe.jpg"), "unreadable.jpg"]
        for index, name in enumerate(names):
            with open(os.path.join(source, name), "wb") as out:
                out.write(inputs.photo(scratch, f"source-{index}.jpg"))
        os.chmod(os.path.join(source, "unreadable.jpg"), 0)
        os.symlink("..", os.path.join(source, "inner", "loop"))
        os.symlink(source, os.path.join(source, "inner", "loop-absolute"))
        os.mkfifo(os.path.join(source, "pipe.jpg"))
        return source

    def close(self):
        self.x.stop()
        for mount in self.mounts:
            subprocess.run(["umount", "-l", mount], capture_output=True)


MATERIAL = None


def main():
    global BIN, WORK, MATERIAL
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--keep", action="store_true", help="keep the work folder with its logs and traces")
    options, rest = parser.parse_known_args()
    BIN = os.path.abspath(options.bin)
    missing = [tool for tool in ("strace", "ffmpeg", "vips", "setpriv", *harness.REQUIRED_TOOLS)
               if shutil.which(tool) is None]
    if missing:
        print(f"skipped: {', '.join(missing)} missing")
        return SKIPPED
    WORK = tempfile.mkdtemp(prefix="sorvane-hostile-")
    try:
        MATERIAL = Material()
        result = unittest.main(argv=[sys.argv[0], *rest], exit=False, verbosity=2).result
        return 0 if result.wasSuccessful() else 1
    finally:
        if MATERIAL:
            MATERIAL.close()
        if not options.keep:
            shutil.rmtree(WORK, ignore_errors=True)
        else:
            print(f"logs and traces kept in {WORK}")


if __name__ == "__main__":
    sys.exit(main())
