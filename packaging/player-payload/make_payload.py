#!/usr/bin/env python3
"""Makes the player payload: a folder that plays a bundle on a Debian computer with
nothing installed. It holds the "Slidora" launcher, the player, every shared library
it needs that the system does not bring (see system-libraries.txt), the Qt plugins
and QML modules it loads, the GStreamer plugins for the bundles' videos with the
plugin scanner, qt.conf and a fallback font.

Every ELF file finds its libraries through a RUNPATH relative to $ORIGIN, so the
folder works wherever it is copied. The folder is built beside OUT and renamed into
place, so an interrupted run never leaves half a payload.

  make_payload.py --player BUILD/bin/SorvanePlayer --out BUILD/payload \
      --qml-sources DIR... --forbid BUILD_DIR --forbid SOURCE_DIR
"""

import argparse
import os
import re
import shutil
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))

# Qt plugins, by folder: the xcb platform (only X11 travels; Wayland desktops run it
# through XWayland) with its GL integrations, the image formats the slides use
# (JPEG and PNG are built into Qt), SVG for the icons, and the GStreamer media backend.
QT_PLUGINS = {
    "platforms": ["libqxcb.so"],
    "xcbglintegrations": ["libqxcb-glx-integration.so", "libqxcb-egl-integration.so"],
    "imageformats": ["libqgif.so", "libqjpeg.so", "libqsvg.so", "libqtiff.so", "libqwebp.so"],
    "iconengines": ["libqsvgicon.so"],
    "multimedia": ["libgstreamermediaplugin.so"],
}

# GStreamer plugins: what playbin needs to find, demux and decode MP4, Matroska and
# WebM with H.264, H.265 or VP9 video and AAC or Opus audio, convert and scale the
# result for Qt's sink, and play the sound through PulseAudio (or PipeWire's stand-in);
# with no sound server the audio sink falls back to a fake one and the video plays on.
GST_PLUGINS = [
    "coreelements", "typefindfunctions", "playback", "app", "autodetect", "pbtypes",
    "videoconvertscale", "audioconvert", "audioresample", "volume",
    "isomp4", "matroska", "audioparsers",
    "libav", "opus",
    "pulseaudio",
]

FONT_FILES = ["DejaVuSans.ttf", "DejaVuSans-Bold.ttf"]


def fail(message):
    print(f"make_payload: {message}", file=sys.stderr)
    sys.exit(1)


def run(*command):
    return subprocess.run(list(command), capture_output=True, text=True, check=True).stdout


def is_elf(path):
    with open(path, "rb") as file:
        return file.read(4) == b"\x7fELF"


def read_system_libraries(path):
    names = set()
    with open(path) as file:
        for line in file:
            line = line.split("#", 1)[0].strip()
            if line:
                names.update(line.split())
    return names


def is_system(soname, system):
    return any(soname == name or (name.endswith("*") and soname.startswith(name[:-1])) for name in system)


def resolved_libraries(elf):
    """soname -> path of every library the dynamic loader would load for `elf`."""
    found = {}
    for line in run("ldd", elf).splitlines():
        match = re.match(r"\s*(\S+) => (.*?)(?: \(0x[0-9a-f]+\))?$", line)
        if not match:
            continue
        soname, target = match.groups()
        if target == "not found":
            fail(f"{elf} needs {soname}, which this computer does not have")
        found[soname] = target
    return found


def qml_imports(folders):
    """Module names imported by the QML files under `folders` (our own modules are compiled in)."""
    modules = set()
    for folder in folders:
        for root, _, files in os.walk(folder):
            for name in files:
                if name.endswith(".qml"):
                    with open(os.path.join(root, name), encoding="utf-8") as file:
                        for line in file:
                            match = re.match(r"\s*import\s+([A-Za-z][\w.]*)", line)
                            if match and not match.group(1).startswith("Sorvane"):
                                modules.add(match.group(1))
    return modules


def qml_module_closure(qml_root, modules):
    """The modules and everything their qmldir files import or depend on, with their folders."""
    pending, seen = list(modules), {}
    while pending:
        module = pending.pop()
        if module in seen:
            continue
        folder = os.path.join(qml_root, *module.split("."))
        qmldir = os.path.join(folder, "qmldir")
        # Modules without a qmldir (QtQml itself) are built into Qt's libraries.
        seen[module] = folder if os.path.isfile(qmldir) else None
        if seen[module]:
            with open(qmldir) as file:
                for line in file:
                    words = line.split()
                    if words[:1] == ["optional"]:
                        words = words[1:]
                    # "import X [version|auto]" and "depends X [version]" name other modules.
                    if len(words) >= 2 and words[0] in ("import", "depends"):
                        pending.append(words[1])
    return {module: folder for module, folder in seen.items() if folder}


def copy_qml_module(source, target):
    """A module's own files, and its subfolders that are not modules of their own."""
    os.makedirs(target, exist_ok=True)
    for name in os.listdir(source):
        path = os.path.join(source, name)
        if os.path.isdir(path):
            if not os.path.isfile(os.path.join(path, "qmldir")):
                shutil.copytree(path, os.path.join(target, name), symlinks=False)
        else:
            shutil.copy(path, os.path.join(target, name))


def copy_file(source, target, mode):
    os.makedirs(os.path.dirname(target), exist_ok=True)
    shutil.copyfile(source, target)  # follows links: the payload holds none (FAT sticks have none)
    os.chmod(target, mode)


def set_runpath(elf, lib_dir):
    relative = os.path.relpath(lib_dir, os.path.dirname(elf))
    runpath = "$ORIGIN" if relative == "." else f"$ORIGIN/{relative}"
    subprocess.run(["patchelf", "--set-rpath", runpath, elf], check=True)


def check(out, system, forbidden):
    """Refuses a payload that would only work on this computer."""
    for root, folders, files in os.walk(out):
        for name in folders + files:
            path = os.path.join(root, name)
            if os.path.islink(path):
                fail(f"{path} is a symbolic link")
        for name in files:
            path = os.path.join(root, name)
            with open(path, "rb") as file:
                data = file.read()
            for text in forbidden:
                if text.encode() in data:
                    fail(f"{path} names {text}")
            if not data.startswith(b"\x7fELF"):
                continue
            dynamic = run("readelf", "-d", path)
            for runpath in re.findall(r"R(?:UN)?PATH\)\s+Library r(?:un)?path: \[(.*)\]", dynamic):
                if not runpath.startswith("$ORIGIN"):
                    fail(f"{path} has the search path {runpath}")
            # Each library an ELF file names must travel or be left to the system on purpose.
            for soname in re.findall(r"\(NEEDED\)\s+Shared library: \[(.*)\]", dynamic):
                if not os.path.isfile(os.path.join(out, "lib", soname)) and not is_system(soname, system):
                    fail(f"{path} needs {soname}, which is neither in the payload nor the system's")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--player", required=True, help="the SorvanePlayer executable")
    parser.add_argument("--out", required=True, help="the payload folder to make")
    parser.add_argument("--qml-sources", nargs="+", default=[], help="folders of the player's QML files")
    parser.add_argument("--qt-plugins", help="Qt's plugin folder (default: from the player's QtCore)")
    parser.add_argument("--qt-qml", help="Qt's QML module folder (default: beside the plugin folder)")
    parser.add_argument("--fonts", default="/usr/share/fonts/truetype/dejavu")
    parser.add_argument("--forbid", action="append", default=[],
                        help="a path no payload file may name (the build and source folders)")
    parser.add_argument("--no-strip", action="store_true")
    args = parser.parse_args()

    for tool in ("ldd", "readelf", "patchelf", "strip"):
        if shutil.which(tool) is None:
            fail(f"{tool} is missing (scripts/bootstrap installs it)")
    system = read_system_libraries(os.path.join(HERE, "system-libraries.txt"))
    player_libraries = resolved_libraries(args.player)
    qt_core = os.path.realpath(player_libraries["libQt6Core.so.6"])
    qt_root = os.path.join(os.path.dirname(qt_core), "qt6")
    qt_plugins = args.qt_plugins or os.path.join(qt_root, "plugins")
    qt_qml = args.qt_qml or os.path.join(qt_root, "qml")
    gst_core = resolved_libraries(os.path.join(qt_plugins, "multimedia", "libgstreamermediaplugin.so"))
    gst_lib_dir = os.path.dirname(os.path.realpath(gst_core["libgstreamer-1.0.so.0"]))
    gst_plugins = os.path.join(gst_lib_dir, "gstreamer-1.0")
    gst_scanner = os.path.join(gst_lib_dir, "gstreamer1.0", "gstreamer-1.0", "gst-plugin-scanner")

    out = os.path.abspath(args.out)
    staging = out + ".partial"
    shutil.rmtree(staging, ignore_errors=True)
    os.makedirs(staging)
    lib_dir = os.path.join(staging, "lib")

    # Roots: the files we place by name. Their libraries are gathered afterwards.
    roots = [(args.player, os.path.join(staging, "SorvanePlayer"), 0o755),
             (gst_scanner, os.path.join(staging, "libexec", "gst-plugin-scanner"), 0o755)]
    for folder, names in QT_PLUGINS.items():
        for name in names:
            roots.append((os.path.join(qt_plugins, folder, name), os.path.join(staging, "plugins", folder, name),
                          0o644))
    for plugin in GST_PLUGINS:
        name = f"libgst{plugin}.so"
        roots.append((os.path.join(gst_plugins, name), os.path.join(lib_dir, "gstreamer-1.0", name), 0o644))
    for source, target, mode in roots:
        if not os.path.isfile(source):
            fail(f"{source} is missing (scripts/bootstrap installs it)")
        copy_file(source, target, mode)

    # QtQml is built into Qt's libraries and its qmldir is not installed, but it imports
    # QtQml.WorkerScript, which is a plugin of its own.
    modules = qml_module_closure(qt_qml, qml_imports(args.qml_sources) | {"QtQml.WorkerScript"})
    for module, folder in sorted(modules.items()):
        copy_qml_module(folder, os.path.join(staging, "qml", *module.split(".")))

    elves = []
    for root, _, files in os.walk(staging):
        elves += [os.path.join(root, name) for name in files if is_elf(os.path.join(root, name))]
    libraries = {}
    for elf in elves:
        libraries.update(resolved_libraries(elf))
    for soname, path in sorted(libraries.items()):
        if not is_system(soname, system):
            target = os.path.join(lib_dir, soname)
            copy_file(path, target, 0o644)
            elves.append(target)

    for elf in elves:
        if not args.no_strip:
            subprocess.run(["strip", "--strip-unneeded", elf], check=True)
        set_runpath(elf, lib_dir)

    shutil.copy(os.path.join(HERE, "Slidora"), os.path.join(staging, "Slidora"))
    os.chmod(os.path.join(staging, "Slidora"), 0o755)
    shutil.copy(os.path.join(HERE, "qt.conf"), os.path.join(staging, "qt.conf"))
    copy_file(os.path.join(HERE, "fonts.conf"), os.path.join(staging, "fonts", "fonts.conf"), 0o644)
    for name in FONT_FILES:
        copy_file(os.path.join(args.fonts, name), os.path.join(staging, "fonts", name), 0o644)

    check(staging, system, [os.path.realpath(path) for path in args.forbid])
    shutil.rmtree(out, ignore_errors=True)
    os.rename(staging, out)
    print(f"Player payload: {out}")


if __name__ == "__main__":
    main()
