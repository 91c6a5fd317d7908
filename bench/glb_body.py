# SPDX-License-Identifier: MIT
"""The body of make_model.py as GLB: in metres, with a vertex for each pair of a point and its coordinates."""
import json
import struct
import sys
from array import array

BYTE, SHORT, INTEGER, FLOAT = 5121, 5123, 5125, 5126
WIDTHS = {"SCALAR": 1, "VEC2": 2, "VEC3": 3, "VEC4": 4, "MAT4": 16}


class Glb:
    def __init__(self):
        self.data, self.views, self.accessors = b"", [], []

    def add(self, component, kind, numbers, **more):
        """The accessor of an array of numbers."""
        size = numbers.itemsize * len(numbers)
        self.views.append({"buffer": 0, "byteOffset": len(self.data), "byteLength": size})
        if sys.byteorder == "big":
            numbers.byteswap()
        self.data += numbers.tobytes() + bytes(-size % 4)
        self.accessors.append({"bufferView": len(self.views) - 1, "componentType": component, "type": kind,
                               "count": len(numbers) // WIDTHS[kind], **more})
        return len(self.accessors) - 1

    def document(self, **root):
        root.update(asset={"version": "2.0"}, buffers=[{"byteLength": len(self.data)}], bufferViews=self.views,
                    accessors=self.accessors)
        text = json.dumps(root).encode()
        text += b" " * (-len(text) % 4)
        chunks = struct.pack("<I4s", len(text), b"JSON") + text + struct.pack("<I4s", len(self.data), b"BIN\0") + self.data
        return b"glTF" + struct.pack("<II", 2, 12 + len(chunks)) + chunks


def metres(numbers):
    return [number / 100 for number in numbers]


def attributes(glb, tube):
    """Rings have one vertex more than points, as the coordinates do."""
    columns, held = tube.columns, [[] for _ in range(len(tube.points) // 3)]
    for bone, (points, weights) in enumerate(tube.weights):
        for point, weight in zip(points, weights):
            held[point].append((bone, weight))
    positions, normals, joints, weights = array("f"), array("f"), array("H"), array("f")
    for row in range(tube.rows + 1):
        for column in range(columns + 1):
            point = row * columns + column % columns
            positions.extend(metres(tube.points[3 * point:3 * point + 3]))
            normals.extend(list(tube.normals[3 * point:3 * point + 3]))
            four = held[point] + [(0, 0.0)] * (4 - len(held[point]))
            joints.extend(bone for bone, _ in four)
            weights.extend(weight for _, weight in four)
    uvs = array("f", (1 - n if i % 2 else n for i, n in enumerate(tube.uvs)))
    low, high = ([pick(positions[axis::3]) for axis in range(3)] for pick in (min, max))
    return {"POSITION": glb.add(FLOAT, "VEC3", positions, min=low, max=high),
            "NORMAL": glb.add(FLOAT, "VEC3", normals), "TEXCOORD_0": glb.add(FLOAT, "VEC2", uvs),
            "JOINTS_0": glb.add(SHORT, "VEC4", joints), "WEIGHTS_0": glb.add(FLOAT, "VEC4", weights)}


def document(tube, heights):
    """A GLB file of the triangles of `tube` on bones at `heights`, each of which hangs on the one before."""
    glb = Glb()
    primitive = {"attributes": attributes(glb, tube), "material": 0,
                 "indices": glb.add(INTEGER, "SCALAR", array("I", tube.uv_indices))}
    heights = metres(heights)
    inverse = array("f")
    for height in heights:
        inverse.extend([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -height, 0, 1])
    nodes = [{"name": f"bone{i}", "translation": [0, height - (heights[i - 1] if i else 0), 0], "children": [i + 1]}
             for i, height in enumerate(heights)]
    del nodes[-1]["children"]
    nodes.append({"name": "body0", "mesh": 0, "skin": 0})
    skin = {"joints": list(range(len(heights))), "inverseBindMatrices": glb.add(FLOAT, "MAT4", inverse)}
    return glb.document(scene=0, scenes=[{"nodes": [0, len(heights)]}], nodes=nodes, skins=[skin],
                        meshes=[{"primitives": [primitive]}], materials=[{"name": "body0 material0"}])
