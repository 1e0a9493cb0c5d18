"""Hostile inputs, built on the spot: bombs, broken videos, links out, pipes and
manifests no writer would make. Standard library plus the ffmpeg and vips tools."""

import json
import os
import struct
import subprocess
import sys
import zlib

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "SorvanePlayer", "e2e"))
from harness import garbage  # noqa: E402,F401


def run(*command):
    subprocess.run(list(command), check=True, capture_output=True, timeout=60)


def png_bomb(width=50000, height=50000):
    """A tiny PNG whose header claims a huge picture: a decoder that trusts it allocates gigabytes."""

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    # A few rows of black, far short of what the header promises.
    return b"\x89PNG\r\n\x1a\n" + _png_chunk(b"IHDR", header) \
        + _png_chunk(b"IDAT", zlib.compress(b"\x00" * (1 + width * 3) * 4)) + _png_chunk(b"IEND", b"")


def _png_chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF)


def huge_png(path, side=50000):
    """A valid side x side PNG, stripes one bit per pixel, compressed row by row: a few MB on
    disk and a second to make, billions of pixels for a decoder that expands it."""
    row_bytes = (side + 7) // 8
    rows = [b"\x00" + b"\x0f" * row_bytes, b"\x00" + b"\xf0" * row_bytes]
    squeeze = zlib.compressobj(1)
    with open(path, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + _png_chunk(b"IHDR", struct.pack(">IIBBBBB", side, side, 1, 0, 0, 0, 0)))
        for y in range(side):
            data = squeeze.compress(rows[(y // 64) % 2])
            if data:
                out.write(_png_chunk(b"IDAT", data))
        out.write(_png_chunk(b"IDAT", squeeze.flush()) + _png_chunk(b"IEND", b""))


def gif_bomb(frames=3000, side=65535):
    """A canvas of side x side pixels with thousands of one-pixel frames: tiny on disk,
    gigabytes for a player that keeps a full canvas per frame."""
    out = bytearray(b"GIF89a" + struct.pack("<HHBBB", side, side, 0x80, 0, 0) + b"\x00\x00\x00\xff\xff\xff")
    out += b"!\xff\x0bNETSCAPE2.0\x03\x01\x00\x00\x00"  # loop forever
    for index in range(frames):
        out += b"!\xf9\x04\x00\x01\x00\x00\x00"  # 10 ms per frame
        x, y = index % 251, index // 251
        out += b"," + struct.pack("<HHHHB", x, y, 1, 1, 0) + b"\x02\x02\x44\x01\x00"
    return bytes(out + b";")


def _riff_chunk(kind, body):
    return kind + struct.pack("<I", len(body)) + body + (b"\x00" if len(body) % 2 else b"")


def webp_bomb(folder, frames=2000, side=16383):
    """An animated WebP whose canvas is side x side (the format's largest), every frame one pixel."""
    tiny = os.path.join(folder, "tiny.webp")
    run("vips", "black", tiny + "[lossless,strip]", "1", "1")
    with open(tiny, "rb") as data:
        riff = data.read()
    at = riff.index(b"VP8L")
    vp8l = riff[at:at + 8 + struct.unpack("<I", riff[at + 4:at + 8])[0]]
    canvas = struct.pack("<I", side - 1)[:3]
    body = b"WEBP" + _riff_chunk(b"VP8X", b"\x12\x00\x00\x00" + canvas + canvas)
    body += _riff_chunk(b"ANIM", b"\x00\x00\x00\x00\x00\x00")
    for index in range(frames):
        position = struct.pack("<I", (index % 200))[:3] + struct.pack("<I", index // 200)[:3]
        body += _riff_chunk(b"ANMF", position + b"\x00\x00\x00\x00\x00\x00" + b"\x0a\x00\x00\x00" + vp8l)
    return b"RIFF" + struct.pack("<I", len(body)) + body


def jpeg_bomb(folder, side=65500):
    """A small JPEG whose frame header claims side x side pixels."""
    path = os.path.join(folder, "small.jpg")
    run("vips", "black", path, "16", "16")
    with open(path, "rb") as data:
        jpeg = bytearray(data.read())
    sof = jpeg.index(b"\xff\xc0")
    jpeg[sof + 5:sof + 9] = struct.pack(">HH", side, side)
    return bytes(jpeg)


def heic_bomb(folder, side=65535):
    """A HEIC whose image size box claims side x side pixels; None when no HEIC encoder."""
    path = os.path.join(folder, "small.heic")
    try:
        run("vips", "black", path, "64", "64")
    except subprocess.CalledProcessError:
        return None
    with open(path, "rb") as data:
        heic = bytearray(data.read())
    at = heic.index(b"ispe")
    heic[at + 8:at + 16] = struct.pack(">II", side, side)
    return bytes(heic)


def mp4(folder, faststart, seconds=4, size="1920x1080"):
    """An H.264 clip, full HD unless asked; with faststart its index comes first, so a truncated
    copy still plays up to where it was cut."""
    path = os.path.join(folder, f"clip-{faststart}-{size}.mp4")
    run("ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", f"testsrc=size={size}:rate=30:duration={seconds}",
        "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p",
        *(["-movflags", "+faststart"] if faststart else []), path)
    with open(path, "rb") as data:
        return data.read()


def photo(folder, name="photo.jpg", size=(640, 480)):
    path = os.path.join(folder, name)
    run("vips", "gaussnoise", path + "[Q=80]", str(size[0]), str(size[1]))
    with open(path, "rb") as data:
        return data.read()


def deep_manifest(depth=100_000):
    return b'{"format":"sorvane.bundle","format_version":2,"min_reader_version":1,"x":' + b"[" * depth + b"]" * depth + b',"items":[]}'


class BundleMaker:
    """Writes a bundle folder: files at their asset paths and a manifest naming them."""

    def __init__(self, root, **sections):
        self.root = root
        self.items = []
        self.manifest = {"format": "sorvane.bundle", "format_version": 2, "min_reader_version": 1,
                         "bundle_id": os.path.basename(root), "title": os.path.basename(root),
                         "playback": {"interval_seconds": 1, "sort": "sequential", "mode": "classic"}}
        self.manifest.update(sections)
        os.makedirs(root, exist_ok=True)

    def path(self, relative):
        return os.path.join(self.root, relative)

    def put(self, relative, data):
        path = self.path(relative)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as out:
            out.write(data)
        return path

    def link(self, relative, target):
        path = self.path(relative)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        os.symlink(target, path)

    def item(self, item_id, tier, relative, data=None, declared=None, media_type="image"):
        """An item with one tier; data is written unless the caller planted the file."""
        if data is not None:
            self.put(relative, data)
        size = declared if declared is not None else (len(data) if data is not None else 0)
        self.items.append({"id": item_id, "media_type": media_type,
                           "assets": {tier: {"path": relative, "bytes": size, "w": 640, "h": 480}}})

    def write(self, raw=None):
        if raw is None:
            raw = json.dumps({**self.manifest, "items": self.items}).encode()
        with open(self.path("bundle.json"), "wb") as out:
            out.write(raw)
        return self.root
