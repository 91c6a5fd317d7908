#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Put the library under loads that are too heavy for the tests. Not part of ./test.

Usage: stress_library.py LIBRARY [--folder FOLDER] [CASE...]

FOLDER (default: a temporary one) takes up to 12 GB. Cases, all by default:
  meshes     10,000 meshes in one model
  nodes      100,000 nodes, one below the other and side by side
  large      a model of 5 GB: its meshes lie behind a gap of that size
  member     a picture of 4.5 GB becomes a member
  archive    six pictures of 800 MB that cannot be packed any smaller: a package beyond 4 GB
  members    33,000 meshes: more members than a package can count have to be refused
  rounds     1,000 conversions and as many final settings in one process: the memory has to stay where it is
"""
import argparse
import ctypes
import os
import random
import resource
import shutil
import sys
import tempfile
import time
import zipfile

from make_fixtures import Binary, Doubles, Id, Ints, MAGIC, FOOTER_END, Name, Record

STATUS = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p)
GIGABYTE = 1 << 30


class Library:
    def __init__(self, path):
        self.library = ctypes.CDLL(os.path.abspath(path))
        self.lines = []
        self.status = STATUS(lambda _, line: self.note(line.decode("latin-1")))

    def note(self, line):
        if not line.endswith("% done"):
            self.lines.append(line)

    def convert(self, model):
        self.lines.clear()
        return self.library.ConvertFBXFile(model.replace("/", "\\").encode(), ctypes.c_float(0), 0, 0, 0, None, None, None,
                                           None, self.status, None)

    def finish(self, model):
        self.lines.clear()
        return self.library.ConvertFBXFileFinish(model.replace("/", "\\").encode(), ctypes.c_float(150), 0, 0, None,
                                                 b"m0=Skin", None, self.status)


class Model:
    """A model under construction: triangles on nodes."""

    def __init__(self):
        self.objects, self.connections, self.last = [], [], 1000

    def add(self, record):
        self.last += 1
        record.values.insert(0, Id(self.last))
        self.objects.append(record)
        return self.last

    def connect(self, child, parent, *values):
        self.connections.append(Record("C", "OP" if values else "OO", Id(child), Id(parent), *values))

    def node(self, name, parent=0, kind="Null"):
        node = self.add(Record("Model", Name(("Model", name)), kind, children=[Record("Version", 232)]))
        self.connect(node, parent)
        return node

    def triangle(self, name):
        node = self.node(name, kind="Mesh")
        geometry = self.add(Record("Geometry", Name(("Geometry", name)), "Mesh", children=[
            Record("Vertices", Doubles([0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.0])),
            Record("PolygonVertexIndex", Ints([0, 1, -3]))]))
        self.connect(geometry, node)
        return node

    def picture(self, node, name):
        material = self.add(Record("Material", Name(("Material", name)), "", children=[Record("ShadingModel", "phong")]))
        self.connect(material, node)
        texture = self.add(Record("Texture", Name(("Texture", name)), "", children=[Record("FileName", name)]))
        self.connect(texture, material, "DiffuseColor")
        coordinates = Record("LayerElementUV", 0, children=[
            Record("MappingInformationType", "ByPolygonVertex"), Record("ReferenceInformationType", "IndexToDirect"),
            Record("UV", Doubles([0.0, 0.0, 1.0, 0.0, 0.0, 1.0])), Record("UVIndex", Ints([0, 1, 2]))])
        next(o for o in reversed(self.objects) if o.name == "Geometry").add(coordinates)

    def write(self, path, gap=0):
        """With a gap that many zero bytes stand before the objects, which take no room on the disk."""
        binary = Binary(7500)
        with open(path, "wb") as file:
            file.write(MAGIC + b"\0" + binary.pack("I", 7500))
            if gap:
                # Raw bytes, 1 GB for each value.
                count, name = gap // GIGABYTE, b"Gap"
                values = file.tell() + 25 + len(name)
                size = count * (5 + GIGABYTE)
                file.write(binary.pack("QQQ", values + size, count, size) + bytes([len(name)]) + name)
                for i in range(count):
                    file.write(b"R" + binary.pack("I", GIGABYTE))
                    file.seek(GIGABYTE, os.SEEK_CUR)
            for name, children in ((b"Objects", self.objects), (b"Connections", self.connections)):
                start = file.tell()
                file.write(bytes(25) + name)
                for record in children:
                    file.write(binary.record(record, file.tell()))
                file.write(bytes(25))
                end = file.tell()
                file.seek(start)
                file.write(binary.pack("QQQ", end, 0, 0) + bytes([len(name)]))
                file.seek(end)
            file.write(bytes(25 + 16) + bytes(16 - (file.tell() + 41) % 16) + bytes(4) + binary.pack("I", 7500))
            file.write(bytes(120) + FOOTER_END)


def check(what, truth):
    print(f"  {'ok' if truth else 'FAILED'}: {what}", flush=True)
    check.failures += not truth


check.failures = 0


def convert(library, name, model, gap=0):
    os.chdir(os.path.dirname(name))
    model.write(name, gap)
    start = time.monotonic()
    code = library.convert(name)
    memory = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss // 1024
    print(f"  result {code} in {time.monotonic() - start:.1f} s, at most {memory} MB so far, "
          f"model {os.path.getsize(name) / 1e6:.1f} MB")
    return code


def package_of(name):
    return zipfile.ZipFile(name[:-3] + "czp")


def meshes(library, name, count=10000):
    model = Model()
    for i in range(count):
        model.triangle(f"m{i}")
    check("converted", convert(library, name, model) == 0)
    with package_of(name) as package:
        check(f"{2 * count + 2} members", len(package.namelist()) == 2 * count + 2)
        check("all sound", package.testzip() is None)


def nodes(library, name):
    model, parent = Model(), 0
    for i in range(50000):
        parent = model.node(f"deep{i}", parent)
    for i in range(50000):
        model.node(f"wide{i}")
    model.triangle("m0")
    check("converted", convert(library, name, model) == 0)


def large(library, name):
    model = Model()
    model.triangle("m0")
    check("converted", convert(library, name, model, gap=5 * GIGABYTE) == 0)


def member(library, name):
    model = Model()
    model.picture(model.triangle("m0"), "m0.tga")
    with open(os.path.join(os.path.dirname(name), "m0.tga"), "wb") as picture:
        picture.truncate(9 * GIGABYTE // 2)
    check("converted", convert(library, name, model) == 0)
    with package_of(name) as package:
        check("the member has its size", package.getinfo("m0.tga").file_size == 9 * GIGABYTE // 2)
        check("all sound", package.testzip() is None)
    check("final settings", library.finish(name) == 0)


def archive(library, name):
    model = Model()
    noise = random.Random(1).randbytes(1 << 24)
    for i in range(6):
        model.picture(model.triangle(f"m{i}"), f"m{i}.tga")
        with open(os.path.join(os.path.dirname(name), f"m{i}.tga"), "wb") as picture:
            for _ in range(50):
                picture.write(noise)
    check("converted", convert(library, name, model) == 0)
    check("beyond 4 GB", os.path.getsize(name[:-3] + "czp") > 4 * GIGABYTE)
    check("final settings", library.finish(name) == 0)
    with package_of(name) as package:
        check("20 members", len(package.namelist()) == 20 + 1)
        check("all sound", package.testzip() is None)


def members(library, name):
    model = Model()
    for i in range(33000):
        model.triangle(f"m{i}")
    check("refused", convert(library, name, model) == 3)
    check("told", library.lines[-1] == ">>> Failed to Complete CZP File")
    check("no package is left", not os.path.exists(name[:-3] + "czp"))


def rounds(library, name, count=1000):
    model = Model()
    for i in range(20):
        model.triangle(f"m{i}")
    check("converted", convert(library, name, model) == 0)

    def resident():
        with open("/proc/self/statm", encoding="ascii") as statistics:
            return int(statistics.read().split()[1]) * 4

    sizes = []
    for i in range(count):
        # The document is packed and deleted by the final settings here, so the conversion comes before.
        if library.convert(name) != 0 or library.finish(name) != 0:
            check(f"round {i}", False)
            return
        sizes.append(resident())
    print(f"  {sizes[count // 10]} KB after a tenth, {sizes[-1]} KB at the end")
    check("no growth", sizes[-1] - sizes[count // 10] < 512)
    check("no file left open", len(os.listdir("/proc/self/fd")) < 10)


CASES = {case.__name__: case for case in (meshes, nodes, large, member, archive, members, rounds)}


def main():
    parser = argparse.ArgumentParser(description="Put the library under heavy loads.")
    parser.add_argument("library")
    parser.add_argument("--folder")
    parser.add_argument("--rounds", type=int, default=1000)
    parser.add_argument("cases", nargs="*", metavar="CASE", help=", ".join(CASES))
    options = parser.parse_args()
    library = Library(options.library)
    for case in options.cases or CASES:
        folder = tempfile.mkdtemp(prefix="ts3d_stress_", dir=options.folder)
        print(case, flush=True)
        try:
            arguments = [options.rounds] if case == "rounds" else []
            CASES[case](library, os.path.join(folder, "model.fbx"), *arguments)
        finally:
            os.chdir("/")
            shutil.rmtree(folder)
    sys.exit(1 if check.failures else 0)


if __name__ == "__main__":
    main()
