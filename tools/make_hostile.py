#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Write models that ask for far more memory or time than their size, and measure conversions of them.

Usage: make_hostile.py FOLDER [--megabytes N] [--measure FBX2CZP] [--only NAME]...

Each model is about N megabytes (default 2) of one thing. With --measure each is converted and the line says
size, seconds, peak memory, the memory that is allowed (16 x size + 64 MB) and how the conversion ended. The
last two, 10,000 meshes and 100,000 nodes, are large but honest: they have to succeed.
"""
import argparse
import os
import resource
import struct
import subprocess
import time
import zlib

MODELS = {}


def model(function):
    MODELS[function.__name__] = function
    return function


# ---- records as bytes ---------------------------------------------------------------------------------------

def text(value):
    data = value if isinstance(value, bytes) else value.encode()
    return b"S" + struct.pack("<I", len(data)) + data


def whole(value):
    return b"I" + struct.pack("<i", value)


def array(code, numbers):
    data = struct.pack("<%d%s" % (len(numbers), code), *numbers)
    return code.encode() + struct.pack("<III", len(numbers), 0, len(data)) + data


def bomb(code, megabytes):
    """An array of zeros that takes a thousandth of what it unpacks to."""
    size = min(megabytes, 1000) << 20
    packed = zlib.compress(bytes(size), 9)
    return code.encode() + struct.pack("<III", size // struct.calcsize(code), 1, len(packed)) + packed


def packed(code, data):
    stream = zlib.compress(data, 6)
    return code.encode() + struct.pack("<III", len(data) // struct.calcsize(code), 1, len(stream)) + stream


class Tree:
    """Records with their end offsets set when the file is written."""

    def __init__(self, name, values=(), children=()):
        self.name, self.values, self.children = name.encode(), list(values), list(children)

    def write(self, out):
        start = len(out)
        values = b"".join(self.values)
        out += struct.pack("<IIIB", 0, len(self.values), len(values), len(self.name)) + self.name + values
        for child in self.children:
            if isinstance(child, bytes):
                out += child
            else:
                child.write(out)
        if self.children:
            out += bytes(13)
        struct.pack_into("<I", out, start, len(out))


def binary(objects, links, extra=()):
    out = bytearray(b"Kaydara FBX Binary  \0\x1a\0" + struct.pack("<I", 7400))
    connections = [Tree("C", [text("OP" if to else "OO"), whole(a), whole(b), *map(text, to)]) for a, b, *to in links]
    for record in [*extra, Tree("Objects", [], objects), Tree("Connections", [], connections)]:
        record.write(out)
    return bytes(out + bytes(13))


def thing(record, key, kind, *children, name=""):
    return Tree(record, [whole(key), text(name), text(kind)], children)


def mesh(key, points=(0, 0, 0, 1, 0, 0, 0, 1, 0), polygons=(0, 1, -3), *children):
    return thing("Geometry", key, "Mesh", Tree("Vertices", [array("d", points)]),
                 Tree("PolygonVertexIndex", [array("i", polygons)]), *children)


def one_mesh(*children, points=None, polygons=None):
    geometry = thing("Geometry", 2, "Mesh", *([Tree("Vertices", [points])] if points else []),
                     *([Tree("PolygonVertexIndex", [polygons])] if polygons else []), *children)
    return [thing("Model", 1, "Mesh", name="Body"), geometry], [(1, 0), (2, 1)]


def uv(direct, index):
    return Tree("LayerElementUV", [whole(0)],
                [Tree("MappingInformationType", [text("ByPolygonVertex")]),
                 Tree("ReferenceInformationType", [text("IndexToDirect")]),
                 Tree("UV", [direct]), Tree("UVIndex", [index])])


POINTS, TRIANGLE = array("d", [0, 0, 0, 1, 0, 0, 0, 1, 0]), array("i", [0, 1, -3])

# ---- the container --------------------------------------------------------------------------------------------


@model
def short_records(size):
    return b"; FBX 7.4.0 project file\n" + b"a:" * (size // 2) + b"\nObjects:  {}\nConnections:  {}\n"


@model
def short_values(size):
    return b"; FBX 7.4.0 project file\na: \"\"" + b",\"\"" * (size // 3) + b"\nObjects: {}\nConnections: {}\n"


@model
def short_binary_values(size):
    return binary([], [], [Tree("a", [text("")] + [b"C\0"] * (size // 2))])


@model
def short_binary_records(size):
    return binary([], [], [Tree("a", [], [Tree("a")] * (size // 14))])


@model
def escaped_texts(size):
    return b"; FBX 7.4.0 project file\na: \"&\"" + b",\"&\"" * (size // 4) + b"\nObjects: {}\nConnections: {}\n"


@model
def long_list_of_digits(size):
    numbers = b"1," * (size // 4)
    return (b"; FBX 7.4.0 project file\nObjects: {\nModel: 1, \"Model::a\", \"Mesh\" {}\nGeometry: 2, \"\", \"Mesh\" {\n"
            b"Vertices: " + numbers + b"1\nPolygonVertexIndex: " + numbers + b"-1\n}\n}\n"
            b"Connections: {\nC: \"OO\",1,0\nC: \"OO\",2,1\n}\n")

# ---- arrays -----------------------------------------------------------------------------------------------------


@model
def bomb_points(size):
    return binary(*one_mesh(points=bomb("d", size >> 10), polygons=TRIANGLE))


@model
def bomb_floats(size):
    return binary(*one_mesh(points=bomb("f", size >> 10), polygons=TRIANGLE))


@model
def bomb_corners(size):
    return binary(*one_mesh(points=POINTS, polygons=bomb("i", size >> 10)))


@model
def bomb_coordinates(size):
    return binary(*one_mesh(uv(bomb("d", size >> 11), bomb("i", size >> 11)), points=POINTS, polygons=TRIANGLE))


@model
def bomb_materials(size):
    element = Tree("LayerElementMaterial", [whole(0)],
                   [Tree("MappingInformationType", [text("ByPolygon")]), Tree("Materials", [bomb("i", size >> 10)])])
    return binary(*one_mesh(element, points=POINTS, polygons=TRIANGLE))


@model
def bomb_unread_normals(size):
    """Nobody reads normals: this one has to succeed."""
    element = Tree("LayerElementNormal", [whole(0)], [Tree("Normals", [bomb("d", size >> 10)])])
    return binary(*one_mesh(element, points=POINTS, polygons=TRIANGLE))


@model
def bomb_matrices(size):
    cluster = Tree("Deformer", [whole(9), text(""), text("Cluster")],
                   [Tree(name, [bomb("d", size >> 12)])
                    for name in ("Transform", "TransformLink", "TransformAssociateModel")])
    element = Tree("LayerElementUV", [bomb("i", size >> 12)])
    objects, links = one_mesh(element, points=POINTS, polygons=TRIANGLE)
    return binary(objects + [cluster], links)


def just_allowed(size, memory):
    """Padding of half the size, and how many things of so many bytes in memory a mesh may have beside it."""
    padding = os.urandom(size // 2)
    return Tree("Padding", [text(padding)]), (16 * len(padding) + (64 << 20)) * 2 // 3 // memory


def repeated(pattern, count):
    data = struct.pack("<%di" % len(pattern), *pattern)
    return packed("i", (data * (count // len(pattern) + 1))[:4 * count])


@model
def bombs_just_allowed(size):
    """Arrays that stay just below what may be unpacked for one mesh, if they are counted right."""
    padding, count = just_allowed(size, 68)
    data = b"".join(struct.pack("<ddd", i % 97, i % 89, i % 3) for i in range(count))
    corners = b"".join(struct.pack("<iii", i % count, (i + 1) % count, -1 - (i + 2) % count)
                       for i in range(0, count, 3))
    return binary(*one_mesh(padding, points=packed("d", data), polygons=packed("i", corners)))


@model
def weights_just_allowed(size):
    padding, count = just_allowed(size, 84)
    objects, links = one_mesh(padding, points=packed("d", bytes(24 * count)), polygons=TRIANGLE)
    indices = packed("i", struct.pack("<%di" % count, *range(count)))
    weights = packed("d", struct.pack("<d", 1) * count)
    objects += [thing("Model", 3, "LimbNode", name="bone"), thing("NodeAttribute", 4, "LimbNode"),
                thing("Deformer", 5, "Skin"),
                thing("Deformer", 6, "Cluster", Tree("Indexes", [indices]), Tree("Weights", [weights])),
                thing("Pose", 7, "BindPose", *(Tree("PoseNode", [], [Tree("Node", [whole(key)])]) for key in (1, 3)))]
    return binary(objects, links + [(3, 0), (4, 3), (5, 2), (6, 5), (3, 6)])


def corners_that_differ(count):
    """No two corners have a point and a coordinate in common, so that each makes a vertex."""
    corners = [i % 1024 if i % 3 < 2 else -1 - i % 1024 for i in range(3 * 1024)]
    return {"uvs": uv(packed("d", bytes(16 * 1023)), repeated(range(1023), count)),
            "points": packed("d", bytes(24 * 1024)), "polygons": repeated(corners, count // 3 * 3)}


@model
def vertices_just_allowed(size):
    padding, count = just_allowed(size, 94)
    mesh_arrays = corners_that_differ(count)
    return binary(*one_mesh(padding, mesh_arrays.pop("uvs"), **mesh_arrays))


@model
def vertices_beside_records(size):
    """Records that take much memory themselves, and a mesh that would take most of the rest."""
    mesh_arrays = corners_that_differ((15 * size + (64 << 20)) * 2 // 3 // 94)
    return binary(*one_mesh(mesh_arrays.pop("uvs"), **mesh_arrays),
                  [Tree("a", [], [Tree("a")] * (size // 15))])


@model
def polygon_just_allowed(size):
    padding, count = just_allowed(size, 76)
    points = b"".join(struct.pack("<ddd", i % 37, i // 37, i % 5) for i in range(1024))
    return binary(*one_mesh(padding, points=packed("d", points), polygons=repeated(range(1024), count)))


@model
def bombs_in_many_clusters(size):
    count = 64
    objects, links = one_mesh(points=POINTS, polygons=TRIANGLE)
    objects += [thing("Model", 3, "LimbNode", name="bone"), thing("NodeAttribute", 4, "LimbNode"),
                thing("Deformer", 5, "Skin")]
    links += [(3, 0), (4, 3), (5, 2)]
    each = max(size // count >> 11, 1)
    for key in range(10, 10 + count):
        objects.append(thing("Deformer", key, "Cluster", Tree("Indexes", [bomb("i", each)]),
                             Tree("Weights", [bomb("d", each)])))
        links += [(key, 5), (3, key)]
    return binary(objects, links)

# ---- geometry ---------------------------------------------------------------------------------------------------


@model
def one_polygon(size):
    count = size // 32
    points = [c for i in range(count) for c in (i % 1000, i // 1000 + i % 7, 0)]
    return binary(*one_mesh(points=array("d", points), polygons=array("i", [*range(count - 1), -count])))


@model
def single_corners(size):
    return binary(*one_mesh(points=POINTS, polygons=array("i", [-1] * (size // 4))))


@model
def every_corner_its_coordinate(size):
    count = size // 24 // 3 * 3
    corners = array("i", [0, 1, -3] * (count // 3))
    return binary(*one_mesh(uv(array("d", [0.5] * (2 * count)), array("i", range(count))), points=POINTS,
                            polygons=corners))


@model
def packed_corners_with_coordinates(size):
    """Every corner of a packed list makes a vertex of its own."""
    count = 600000
    index = struct.pack("<%di" % count, *range(count))
    return binary(*one_mesh(Tree("Padding", [text(os.urandom(size // 2))]),
                            uv(packed("d", bytes(16 * count)), packed("i", index)), points=POINTS,
                            polygons=packed("i", struct.pack("<3i", 0, 1, -3) * (count // 3))))


@model
def instances(size):
    """One mesh of half the file under as many nodes as fit into the other half."""
    points = [float(i % 1000) for i in range(size // 2 // 40 * 3)]
    corners = [i if i % 3 < 2 else -1 - i for i in range(len(points) // 3 // 3 * 3)]
    keys = range(10, 10 + size // 2 // 140)
    return binary([mesh(2, points, corners)] + [thing("Model", k, "Mesh", name="m%d" % k) for k in keys],
                  [link for k in keys for link in ((k, 0), (2, k))])


@model
def instances_of_many_records(size):
    keys = range(10, 10 + size // 2 // 140)
    filler = [Tree("x")] * (size // 2 // 14)
    return binary([mesh(2, (0, 0, 0, 1, 0, 0, 0, 1, 0), (0, 1, -3), *filler)] +
                  [thing("Model", k, "Mesh", name="m%d" % k) for k in keys],
                  [link for k in keys for link in ((k, 0), (2, k))])


@model
def clusters_and_points(size):
    objects, links = one_mesh(points=array("d", [0.0] * 300), polygons=TRIANGLE)
    objects += [thing("Model", 3, "LimbNode", name="bone"), thing("NodeAttribute", 4, "LimbNode"),
                thing("Deformer", 5, "Skin")]
    links += [(3, 0), (4, 3), (5, 2)]
    for key in range(10, 10 + size // 800):
        objects.append(thing("Deformer", key, "Cluster", Tree("Indexes", [array("i", [0] * 40)]),
                             Tree("Weights", [array("d", [0.5] * 40)])))
        links += [(key, 5), (3, key)]
    return binary(objects, links)


@model
def one_shape_in_many_channels(size):
    count = size // 2 // 28
    objects, links = one_mesh(points=POINTS, polygons=TRIANGLE)
    objects += [thing("Geometry", 3, "Shape", Tree("Indexes", [array("i", [0] * count)]),
                      Tree("Vertices", [array("d", [0.5] * 3 * count)])),
                thing("Deformer", 4, "BlendShape"), thing("Model", 5, "LimbNode", name="bone"),
                thing("NodeAttribute", 6, "LimbNode"),
                Tree("Pose", [whole(7), text(""), text("BindPose")],
                     [Tree("PoseNode", [], [Tree("Node", [whole(k)]),
                                            Tree("Matrix", [array("d", [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1])])])
                      for k in (1, 5)])]
    links += [(4, 2), (5, 0), (6, 5)]
    for key in range(10, 10 + size // 2 // 220):
        objects.append(thing("Deformer", key, "BlendShapeChannel", Tree("DeformPercent", [whole(50)])))
        links += [(key, 4), (3, key)]
    return binary(objects, links)


@model
def inline_shapes(size):
    return binary(*one_mesh(*[Tree("Shape", [text("s")])] * (size // 25), points=POINTS, polygons=TRIANGLE))

# ---- objects ----------------------------------------------------------------------------------------------------


@model
def bare_nodes(size):
    return binary([thing("Model", k, "") for k in range(1, size // 33)], [])


@model
def nodes_below_root(size):
    keys = range(1, size // 72)
    return binary([thing("Model", k, "") for k in keys], [(k, 0) for k in keys])


@model
def deep_bones(size):
    keys = range(1, size // 200)
    objects = [thing("Model", k, "LimbNode", name="b") for k in keys]
    objects += [thing("NodeAttribute", 10000000, "LimbNode")]
    return binary(objects, [(k, k - 1) for k in keys] + [(10000000, k) for k in keys])


@model
def bare_materials(size):
    return binary([Tree("Material", [whole(k), text(""), text("")], [Tree("ShadingModel", [text("phong")])])
                   for k in range(1, size // 80)], [])


@model
def bare_clusters(size):
    return binary([thing("Deformer", k, "Cluster") for k in range(1, size // 43)], [])


@model
def bare_geometries(size):
    return binary([thing("Geometry", k, "Mesh") for k in range(1, size // 40)], [])


@model
def materials_of_a_long_name(size):
    """One mesh with a long name and as many materials as fit."""
    key = 10
    objects, links = one_mesh(points=POINTS, polygons=TRIANGLE)
    objects[0] = thing("Model", 1, "Mesh", name="n" * (size // 2))
    return binary(objects + [thing("Material", key, "")], links + [(key, 1)] * 256)


@model
def many_materials(size):
    objects, links = one_mesh(points=POINTS, polygons=TRIANGLE)
    objects[0] = thing("Model", 1, "Mesh", name="n" * 2000)
    keys = range(10, 10 + size // 72)
    return binary(objects + [thing("Material", k, "") for k in keys], links + [(k, 1) for k in keys])


@model
def clusters_of_a_long_bone(size):
    objects, links = one_mesh(points=POINTS, polygons=TRIANGLE)
    objects += [thing("Model", 3, "Null", name="b" * (size // 2)), thing("Deformer", 5, "Skin")]
    links += [(3, 0), (5, 2)]
    for key in range(10, 10 + size // 2 // 120):
        objects.append(thing("Deformer", key, "Cluster"))
        links += [(key, 5), (3, key)]
    return binary(objects, links)


@model
def repeated_connections(size):
    objects, links = one_mesh(points=POINTS, polygons=TRIANGLE)
    return binary(objects, links + [(2, 1)] * (size // 31))


@model
def cycles(size):
    keys = range(1, size // 110)
    links = [(k, k % (len(keys)) + 1) for k in keys] + [(k, (k * 7) % len(keys) + 1) for k in keys]
    return binary([thing("Model", k, "Null") for k in keys], links)


@model
def pose_entries(size):
    entry = Tree("PoseNode", [], [Tree("Node", [whole(1)]), Tree("Matrix", [packed("d", bytes(128))])])
    objects, links = one_mesh(points=POINTS, polygons=TRIANGLE)
    pose = Tree("Pose", [whole(7), text(""), text("BindPose")], [entry] * (size // 100))
    return binary(objects + [pose], links)


@model
def property_tables(size):
    """Nodes whose properties are all there is, the wanted ones last."""
    properties = [Tree("P", [text("Lcl Scaling"), text(""), text(""), text("")] + [whole(2)] * 3)]
    table = Tree("Properties70", [], [Tree("P", [text("x")])] * (size // 20) + properties)
    return binary([Tree("Model", [whole(1), text("a"), text("Null")], [table])], [(1, 0)])


@model
def old_take(size):
    """Models of one name that all look up the same long list of channels."""
    half = size // 2
    channels = b"Channel:\"x\"{}\n" * (half // 30)
    models = b"Model:\"a\"{}\n" * (half // 13)
    return (b"; FBX 5.8.0 project file\n" + models + b"Takes:{\nCurrent:\"t\"\nTake:\"t\"{\nModel:\"a\"{\n" + channels +
            b"Channel:\"Transform\"{\n" + channels + b"}\n}\n}\n}\nObjects:{}\nConnections:{}\n")


@model
def layers(size):
    count = size // 60
    layer = Tree("Layer", [whole(0)], [Tree("LayerElement", [], [Tree("Type", [text("x")])])])
    return binary(*one_mesh(*[layer] * count, points=POINTS, polygons=TRIANGLE))



@model
def textures(size):
    """Small meshes, each with a material and a texture of its own that is nowhere."""
    layer = uv(array("d", [0, 0, 1, 0, 0, 1]), TRIANGLE)
    objects, links, count = [], [], size // 750
    for key in range(10, 10 + 4 * count, 4):
        path = text("pictures/%d.png" % key)
        objects += [thing("Model", key, "Mesh", name="m%d" % key),
                    mesh(key + 1, (0, 0, 0, 1, 0, 0, 0, 1, 0), (0, 1, -3), layer),
                    Tree("Material", [whole(key + 2), text("m%d" % key), text("")],
                         [Tree("ShadingModel", [text("phong")])]),
                    Tree("Texture", [whole(key + 3), text(""), text("")],
                         [Tree("FileName", [path]), Tree("RelativeFilename", [path])])]
        links += [(key, 0), (key + 1, key), (key + 2, key), (key + 3, key + 2, "DiffuseColor")]
    return binary(objects, links)

# ---- large but honest ---------------------------------------------------------------------------------------------


@model
def ten_thousand_meshes(_):
    keys = range(10, 20010, 2)
    objects = [o for k in keys for o in (thing("Model", k, "Mesh", name="m%d" % k), mesh(k + 1))]
    return binary(objects, [link for k in keys for link in ((k, 0), (k + 1, k))])


@model
def hundred_thousand_nodes(_):
    keys = range(10, 100010)
    objects = [thing("Model", k, "Null", name="n%d" % k) for k in keys] + one_mesh(points=POINTS, polygons=TRIANGLE)[0]
    return binary(objects, [(k, k // 3 if k > 30 else 0) for k in keys] + [(1, 0), (2, 1)])


def measure(tool, path, size, seconds=30):
    """Converts `path` in a child and prints what it took."""
    began = time.time()
    pid = os.fork()
    if pid == 0:
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))
        with open(os.devnull, "r+") as null:
            for stream in (0, 1, 2):
                os.dup2(null.fileno(), stream)
        os.execv(tool, [tool, "convert", "-q", path])
    _, status, usage = os.wait4(pid, 0)
    peak, allowed = usage.ru_maxrss / 1024, 16 * size / 2**20 + 64
    code = os.waitstatus_to_exitcode(status)
    print("%-32s %7.2f MB %7.2f s (%6.2f s user) %7.0f MB of %6.0f %s exit %d" %
          (os.path.basename(path), size / 2**20, time.time() - began, usage.ru_utime, peak, allowed,
           "OVER" if peak > allowed else "    ", code), flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder")
    parser.add_argument("--megabytes", type=float, default=2)
    parser.add_argument("--measure")
    parser.add_argument("--only", action="append")
    arguments = parser.parse_args()
    for name in arguments.only or MODELS:
        folder = os.path.join(arguments.folder, name)
        os.makedirs(folder, exist_ok=True)
        path = os.path.join(folder, name + ".fbx")
        data = MODELS[name](int(arguments.megabytes * 2**20))
        with open(path, "wb") as file:
            file.write(data)
        if arguments.measure:
            measure(os.path.abspath(arguments.measure), path, len(data))
            subprocess.run(["rm", "-rf", folder], check=True)


if __name__ == "__main__":
    main()
