#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measure what SECURITY.md promises, row by row: check_security.py FBX2CZP [--megabytes N] [--only ROW]...

Each row of the table has at least one measurement here; a line says what was measured and whether the promise held.
The exit status is 1 when one did not. Needs room for some gigabytes of address space, and a few minutes.
"""
import argparse
import base64
import json
import os
import re
import resource
import signal
import stat
import struct
import subprocess
import sys
import tempfile
import time
import zipfile
import zlib

from make_hostile import MODELS, Tree, array, binary, mesh, text, thing, uv, whole

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SAMPLE = os.path.join(ROOT, "samples", "scout.fbx")
MEGABYTE = 1 << 20
ROWS = {}
failures = []


def row(name):
    return lambda function: ROWS.setdefault(name, []).append(function) or function


class Run:
    """One run of the tool in `folder`: exit status (negative: the signal), output, seconds, peak in megabytes."""

    def __init__(self, folder, *arguments, seconds=60, space=None, end_after=None):
        def limit():
            resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
            resource.setrlimit(resource.RLIMIT_FSIZE, (4 << 30, 4 << 30))
            if space:
                resource.setrlimit(resource.RLIMIT_AS, (space, space))
        began = time.time()
        with tempfile.TemporaryFile() as out:
            child = subprocess.Popen([TOOL, *arguments], cwd=folder, stdin=subprocess.DEVNULL, stdout=out, stderr=out,
                                     preexec_fn=limit)
            self.hung = asked = False
            usage = None
            while usage is None:
                pid, status, used = os.wait4(child.pid, os.WNOHANG)
                if pid:
                    usage = used
                elif time.time() - began > (end_after or 2 * seconds) + 10:
                    self.hung = True
                    os.kill(child.pid, signal.SIGKILL)
                elif end_after and time.time() - began > end_after and not asked:
                    os.kill(child.pid, signal.SIGTERM)
                    asked = True
                time.sleep(0.01)
            child.returncode = self.status = os.waitstatus_to_exitcode(status)
            out.seek(0)
            self.output = out.read()
        self.seconds, self.user, self.peak = time.time() - began, usage.ru_utime, usage.ru_maxrss / 1024


def hold(promise, holds, figures=""):
    print("    %-4s %s%s" % ("ok" if holds else "FAIL", promise, "  (%s)" % figures if figures else ""), flush=True)
    if not holds:
        failures.append(promise)


def write(folder, name, data):
    path = os.path.join(folder, name)
    with open(path, "wb") as file:
        file.write(data)
    return path


def read(folder, name):
    with open(os.path.join(folder, name), "rb") as file:
        return file.read()


def textured(*pictures):
    """A model of one triangle for each picture."""
    layer = uv(array("d", [0, 0, 1, 0, 0, 1]), array("i", [0, 1, 2]))
    objects, links = [], []
    for key, picture in enumerate(pictures):
        key = 10 + 4 * key
        objects += [thing("Model", key, "Mesh", name="m%d" % key),
                    mesh(key + 1, (0, 0, 0, 1, 0, 0, 0, 1, 0), (0, 1, -3), layer),
                    Tree("Material", [whole(key + 2), text("m%d" % key), text("")], [Tree("ShadingModel", [text("phong")])]),
                    Tree("Texture", [whole(key + 3), text(""), text("")],
                         [Tree("FileName", [text(picture)]), Tree("RelativeFilename", [text(picture)])])]
        links += [(key, 0), (key + 1, key), (key + 2, key), (key + 3, key + 2, "DiffuseColor")]
    return binary(objects, links)


def converted(folder):
    write(folder, "a.fbx", read(ROOT, "samples/scout.fbx"))
    Run(folder, "convert", "-q", "a.fbx")


@row("memory")
def models_that_ask_for_much(folder):
    worst = (0, "")
    for name, make in MODELS.items():
        data = make(int(MEGABYTES * MEGABYTE))
        write(folder, "model.fbx", data)
        run = Run(folder, "convert", "-q", "model.fbx", space=8 << 30)
        allowed = 16 * len(data) / MEGABYTE + 64
        worst = max(worst, (run.peak / allowed, name))
        if run.peak > allowed or run.status < 0:
            hold("%s within its memory" % name, False, "%.0f of %.0f MB, exit %d" % (run.peak, allowed, run.status))
    hold("%d models within 16 times their size and 64 MB" % len(MODELS), worst[0] <= 1, "most: %.0f %%, %s" % (
        100 * worst[0], worst[1]))


@row("time")
def twice_as_large_takes_twice_as_long(folder):
    for name in ("textures", "instances", "many_materials", "clusters_and_points", "bare_nodes"):
        seconds = []
        for factor in (1, 2):
            write(folder, "model.fbx", MODELS[name](int(factor * MEGABYTES * MEGABYTE)))
            seconds.append(Run(folder, "convert", "-q", "model.fbx").seconds)
        hold("%s take time in proportion" % name, seconds[1] < 3 * seconds[0] + 0.5, "%.2f s, %.2f s" % tuple(seconds))


@row("writing")
def names_that_lead_elsewhere(folder):
    names = ["../up", "..\\up", "/tmp/up", "a/../../up", "..", "hero"]
    objects = [o for i, name in enumerate(names) for o in (thing("Model", 10 + 2 * i, "Mesh", name=name), mesh(11 + 2 * i))]
    model = binary(objects, [l for i in range(len(names)) for l in ((10 + 2 * i, 0), (11 + 2 * i, 10 + 2 * i))])
    deep = os.path.join(folder, "deep")
    os.mkdir(deep)
    for name in ("hero.fbx", "m"):
        write(deep, name, model)
        Run(deep, "convert", "-q", name)
        hold("a model called %s writes into its folder only" % name, os.listdir(folder) == ["deep"], " ".join(sorted(os.listdir(folder))))
        hold("and stays as it is", read(deep, name) == model)


@row("replacing")
def planted_links_and_permissions(folder):
    converted(folder)
    victim = write(folder, "victim", b"somebody's")
    for name in ("a.czp", "a.xfg"):
        os.chmod(os.path.join(folder, name), 0o600)
        for ending in (".new", ".part"):
            os.symlink(victim, os.path.join(folder, name + ending))
    os.symlink(victim, os.path.join(folder, "r.json.part"))
    before = sorted(os.listdir(folder) + ["a.glb", "r.json"])
    for command in (["finish", "a.fbx", "--scale", "150"], ["repack", "a.czp"], ["export", "a.czp", "-o", "a.glb"],
                    ["convert", "a.fbx", "--report", "r.json"]):
        run = Run(folder, *command)
        hold("%s succeeds beside links in wait" % command[0], run.status == 0, "exit %d" % run.status)
        modes = [stat.S_IMODE(os.lstat(os.path.join(folder, name)).st_mode) for name in ("a.czp", "a.xfg")]
        hold("and keeps permissions", modes == [0o600, 0o600], " ".join(map(oct, modes)))
    hold("no other file is touched", read(folder, "victim") == b"somebody's" and sorted(os.listdir(folder)) == before)


@row("special files")
def pipes_and_devices(folder):
    write(folder, "a.fbx", textured("skin.tga", "zero.tga", "spout.png"))
    for name in ("skin.tga", "spout.png", "pipe.fbx", "pipe.czp"):
        os.mkfifo(os.path.join(folder, name))
    os.symlink("/dev/zero", os.path.join(folder, "zero.tga"))
    for command in (["convert", "a.fbx"], ["check", "a.fbx"], ["convert", "a.fbx", "pipe.fbx"], ["check", "pipe.fbx"],
                    ["inspect", "pipe.czp"], ["repack", "pipe.czp"], ["repack", "zero.tga"]):
        run = Run(folder, *command, seconds=5)
        hold(" ".join(command) + " ends", not run.hung and run.seconds < 5, "exit %d, %.2f s" % (run.status, run.seconds))


@row("special files")
def a_wish_to_end(folder):
    write(folder, "a.fbx", MODELS["ten_thousand_meshes"](0))
    run = Run(folder, "convert", "a.fbx", end_after=0.2)
    hold("SIGTERM ends a run", not run.hung and run.status == 143 and run.seconds < 2, "exit %d, %.2f s" % (run.status, run.seconds))


@row("crashes")
def damaged_models_and_packages(folder):
    converted(folder)
    number, statuses = 1, set()
    for name, command in (("a.fbx", "convert"), ("a.czp", "inspect")):
        whole_file = read(folder, name)
        for i in range(60):
            data = bytearray(whole_file)
            for _ in range(4):
                number = (number * 6364136223846793005 + 1442695040888963407) % 2**64
                data[(number >> 20) % len(data)] ^= 1 << (number >> 60) % 8
            if i % 3 == 0:
                del data[(number >> 24) % len(data):]
            write(folder, "damaged" + name[1:], bytes(data))
            statuses.add(Run(folder, command, "damaged" + name[1:]).status)
    hold("120 damaged files end no run by a signal", min(statuses) >= 0 and 70 not in statuses, "exits %s" % sorted(statuses))


def overlapping_package(count, size):
    data = zlib.compressobj(9, zlib.DEFLATED, -15)
    plain = os.urandom(size // 2) + bytes(size // 2)
    packed, crc = data.compress(plain) + data.flush(), zlib.crc32(plain)
    names = [b"%04d.tga" % i for i in range(count)]
    out = struct.pack("<IHHHHHIIIHH", 0x04034B50, 20, 0, 8, 0, 33, crc, len(packed), len(plain), len(names[0]), 0)
    out += names[0] + packed
    listed = b"".join(struct.pack("<IHHHHHHIIIHHHHHII", 0x02014B50, 20, 20, 0, 8, 0, 33, crc, len(packed), len(plain),
                                  len(name), 0, 0, 0, 0, 0, 0) + name for name in names)
    return out + listed + struct.pack("<IHHHHIIH", 0x06054B50, 0, 0, count, count, len(listed), len(out), 0)


@row("packages")
def packages_that_grow(folder):
    with zipfile.ZipFile(os.path.join(folder, "bomb.czp"), "w", zipfile.ZIP_DEFLATED) as package:
        for i in range(4):
            package.writestr("%d.tga" % i, bytes(400 * MEGABYTE))
    write(folder, "overlap.czp", overlapping_package(2000, 2 * MEGABYTE))
    with zipfile.ZipFile(os.path.join(folder, "zero.czp"), "w") as package:
        package.writestr("aXb.cmf", b"x")
    write(folder, "zero.czp", read(folder, "zero.czp").replace(b"aXb.cmf", b"a\0b.cmf"))
    for name in ("bomb.czp", "overlap.czp", "zero.czp"):
        before = read(folder, name)
        for command in (["inspect", name], ["export", name, "-o", "o.glb"], ["preview", name, "-o", "o.png"], ["repack", name]):
            run = Run(folder, *command)
            hold("%s of %s is refused" % (command[0], name), run.status > 0 and read(folder, name) == before and run.peak < 1100,
                 "exit %d, %.1f s, %.0f MB" % (run.status, run.seconds, run.peak))


def gif(side):
    """Without any pixels."""
    return (b"GIF89a" + struct.pack("<HHBBB", side, side, 0x80, 0, 0) + bytes(6) + b"," +
            struct.pack("<HHHHB", 0, 0, side, side, 0) + b"\x02\x01\x2c\0;")


def png(side):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    rows = zlib.compress(b"".join(b"\0" + os.urandom(16) * (side // 16) for _ in range(side)), 1)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", side, side, 8, 0, 0, 0, 0)) +
            chunk(b"IDAT", rows) + chunk(b"IEND", b""))


@row("pictures")
def pictures_without_pixels(folder):
    names = ["p%d.gif" % i for i in range(8)]
    write(folder, "a.fbx", textured(*names))
    for name in names:
        write(folder, name, gif(8192))
    run = Run(folder, "convert", "-q", "a.fbx")
    written = sum(os.path.getsize(os.path.join(folder, name)) for name in os.listdir(folder)) / MEGABYTE
    hold("eight pictures without pixels are refused", run.seconds < 3 and written < 1, "%.1f s, %.0f MB written" % (run.seconds, written))
    with zipfile.ZipFile(os.path.join(folder, "a.czp"), "a") as package:
        for i in range(40):
            package.writestr("p%d.tga" % i, gif(8192))
    for command in (["preview", "a.czp", "-o", "o.html"], ["export", "a.czp", "-o", "o.glb"]):
        run = Run(folder, *command)
        hold("%s of their package is small" % command[0], run.peak < 700, "exit %d, %.1f s, %.0f MB" % (run.status, run.seconds, run.peak))


@row("memory of a picture")
def a_large_picture(folder):
    side = 4096
    data = png(side)
    write(folder, "p.png", data)
    write(folder, "a.fbx", textured("p.png"))
    run = Run(folder, "convert", "-q", "a.fbx")
    allowed = (4 * side * side + len(data)) / MEGABYTE + 64
    hold("a picture of %d x %d takes 4 bytes a pixel" % (side, side), run.status == 0 and run.peak < allowed, "%.0f of %.0f MB" % (run.peak, allowed))


@row("output")
def names_that_command_a_terminal(folder):
    evil = "a\u009b31m\u202e"
    write(folder, evil + ".fbx", read(ROOT, "samples/scout.fbx"))
    for command in (["check", evil + ".fbx"], ["convert", "-v", evil + ".fbx"], ["finish", evil + ".fbx"], ["inspect", evil + ".czp"],
                    ["repack", evil + ".czp"], ["export", evil + ".czp", "-o", evil + ".glb"], ["inspect", "--json", evil + ".czp"]):
        output = Run(folder, *command).output.decode(errors="replace")
        hold("%s shows names safely" % command[0], "\u009b" not in output and "\u202e" not in output and "\x1b" not in output)


@row("programs")
def paths_of_other_computers(folder):
    write(folder, "a.fbx", textured("\\\\192.0.2.1\\share\\p.png", "//192.0.2.1/share/p.png", "file://192.0.2.1/p.png"))
    run = Run(folder, "convert", "-q", "a.fbx")
    hold("paths of other computers are not waited for", run.status == 0 and run.seconds < 2, "exit %d, %.2f s" % (run.status, run.seconds))


def compressed(points, faces):
    """A .gltf file of one mesh compressed with Draco, with as many points and faces as it claims, and none of them."""
    data = b"DRACO\2\2\1\0\0\0" + faces + bytes(500)
    primitive = {"attributes": {"POSITION": 0}, "indices": 1, "extensions": {
        "KHR_draco_mesh_compression": {"bufferView": 0, "attributes": {"POSITION": 0}}}}
    return json.dumps({
        "asset": {"version": "2.0"}, "nodes": [{"mesh": 0}], "meshes": [{"primitives": [primitive]}],
        "extensionsRequired": ["KHR_draco_mesh_compression"], "bufferViews": [{"buffer": 0, "byteLength": len(data)}],
        "accessors": [{"componentType": 5126, "type": "VEC3", "count": points},
                      {"componentType": 5125, "type": "SCALAR", "count": points}],
        "buffers": [{"byteLength": len(data), "uri": "data:;base64," + base64.b64encode(data).decode()}]}).encode()


@row("other formats")
def library_that_is_not_hardened(folder):
    triangle = b"v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"
    os.mkdir(os.path.join(folder, "models"))
    for pipe in ("outside.mtl", "models/pipe.mtl"):
        os.mkfifo(os.path.join(folder, pipe))
    os.symlink("../outside.mtl", os.path.join(folder, "models/link.mtl"))
    for name in ("../outside.mtl", "pipe.mtl", "link.mtl", os.path.join(folder, "outside.mtl")):
        write(folder, "models/a.obj", b"mtllib " + name.encode() + b"\n" + triangle)
        run = Run(folder, "convert", "-q", "models/a.obj")
        hold("a pipe called %s is not opened" % os.path.basename(name), run.status == 0 and run.seconds < 5,
             "exit %d, %.2f s" % (run.status, run.seconds))
    nested = b"Frame a {\n" * 100000
    hostile = {"claim.stl": bytes(80) + b"\xff\xff\xff\x7f" + bytes(500), "nested.x": b"xof 0303txt 0032\n" + nested,
               "nested.dae": b"<COLLADA>" + b"<node>" * 100000, "claim.ply": b"ply\nformat ascii 1.0\n"
               b"element vertex 4000000000\nproperty float x\nend_header\n1\n",
               "claim.gltf": compressed(3, b"\xff\xff\xff\x7f\xff\xff\xff\x7f"),
               "claims.gltf": compressed(600000000, b"\xff\xff\xff\x7f\xff\xff\xff\x7f")}
    for name, data in hostile.items():
        write(folder, name, data)
        run = Run(folder, "convert", "-q", name)
        allowed = 16 * len(data) / MEGABYTE + 64
        hold("%s is refused" % name, run.status == 2 and run.peak < allowed and run.seconds < 30, "exit %d, %.1f s, %.0f of %.0f MB" % (
            run.status, run.seconds, run.peak, allowed))


def promised():
    with open(os.path.join(ROOT, "SECURITY.md"), encoding="utf-8") as file:
        return [name for name in re.findall(r"^\| ([a-z ]+) \| \S", file.read(), re.MULTILINE)]


def main():
    global TOOL, MEGABYTES
    parser = argparse.ArgumentParser()
    parser.add_argument("tool")
    parser.add_argument("--megabytes", type=float, default=2)
    parser.add_argument("--only", action="append")
    arguments = parser.parse_args()
    TOOL, MEGABYTES = os.path.abspath(arguments.tool), arguments.megabytes
    for name in arguments.only or promised():
        print(name, flush=True)
        if name not in ROWS:
            hold("the row is measured", False)
        for measure in ROWS.get(name, []):
            with tempfile.TemporaryDirectory() as folder:
                measure(folder)
    print("%d promises did not hold" % len(failures) if failures else "all promises hold")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
