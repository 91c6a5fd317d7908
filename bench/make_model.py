#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Write a rigged body of any size: a bumpy tube of rings around a chain of bones.

Each point hangs on the four nearest bones. There are normals for each corner, which a converter need not read,
and texture coordinates with a seam along the tube. Two runs give the same bytes.
"""
import argparse
import math
import os
import sys
from array import array

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tools"))
import glb_body
from make_fixtures import Ascii, Binary, Doubles, Identified, Ints, Name, Record, element, header, layer, translation

HEIGHT = 170.0
INFLUENCES = 4


class ExactAscii(Ascii):
    """Numbers with all their digits, in lines of some dozens, as exporters write them."""

    def value(self, value):
        if not isinstance(value, (Doubles, Ints)):
            return super().value(value)
        digits = list(map(repr, value))
        return ",\n".join(",".join(digits[i:i + 64]) for i in range(0, len(digits), 64))


def single(numbers):
    """Doubles that hold single precision, as most exporters have it."""
    return Doubles(array("f", numbers))


class Tube:
    """The arrays of one mesh. Rings run around the height; the first and the last are left open."""

    def __init__(self, triangles, bone_count, quads, materials, offset):
        self.columns = max(4, round(math.sqrt(triangles / 16)))
        self.rows = max(3, round(triangles / (2 * self.columns)))
        self.offset, self.bone_count = offset, bone_count
        self.points, self.normals, self.uvs = array("d"), array("d"), array("d")
        self.corners, self.uv_indices, self.materials = array("i"), array("i"), array("i")
        self.weights = [(Ints(), array("d")) for _ in range(bone_count)]
        for row in range(self.rows + 1):
            self.ring(row / self.rows)
        for row in range(self.rows):
            for column in range(self.columns):
                self.square(row, column, quads, row * materials // self.rows)
        normals = self.normals
        self.corner_normals = array("d")
        for corner in self.corners:
            at = 3 * (corner if corner >= 0 else ~corner)
            self.corner_normals.extend(normals[at:at + 3])

    def ring(self, up):
        for column in range(self.columns + 1):
            turn = 2 * math.pi * column / self.columns
            self.uvs.extend((column / self.columns, up))
            if column == self.columns:
                break
            radius = 14 * (1 + 0.06 * math.sin(7 * up + 2 * turn) + 0.02 * math.sin(41 * up - 5 * turn))
            c, s = math.cos(turn), math.sin(turn)
            self.points.extend((self.offset + radius * c, HEIGHT * up + 0.3 * math.sin(23 * up + 3 * turn), radius * s))
            tilt = 0.2 * math.cos(7 * up + 2 * turn)
            length = math.hypot(1, tilt)
            self.normals.extend((c / length, -tilt / length, s / length))
            self.hang(len(self.points) // 3 - 1, up + 0.01 * c)

    def hang(self, point, up):
        at = up * self.bone_count
        first = min(max(int(at) - 1, 0), max(self.bone_count - INFLUENCES, 0))
        bones = range(first, min(first + INFLUENCES, self.bone_count))
        pulls = [math.exp(-0.8 * (at - 0.5 - bone) ** 2) + 0.004 for bone in bones]
        for bone, pull in zip(bones, pulls):
            self.weights[bone][0].append(point)
            self.weights[bone][1].append(pull / sum(pulls))

    def square(self, row, column, quads, material):
        beside = (column + 1) % self.columns
        a, b = row * self.columns, (row + 1) * self.columns
        points = (a + column, a + beside, b + beside, b + column)
        u, v = row * (self.columns + 1) + column, (row + 1) * (self.columns + 1) + column
        uvs = (u, u + 1, v + 1, v)
        for order in [(0, 1, 2, 3)] if quads else [(0, 1, 2), (0, 2, 3)]:
            self.corners.extend(points[k] for k in order[:-1])
            self.corners.append(~points[order[-1]])
            self.uv_indices.extend(uvs[k] for k in order)
            self.materials.append(material)

    def geometry(self, materials):
        by_polygon = materials > 1
        return [Record("Vertices", single(self.points)), Record("PolygonVertexIndex", Ints(self.corners)),
                Record("LayerElementNormal", 0).add(
                    Record("MappingInformationType", "ByPolygonVertex"), Record("ReferenceInformationType", "Direct"),
                    Record("Normals", single(self.corner_normals))),
                element("UV", "ByPolygonVertex", Record("UV", single(self.uvs)),
                        Record("UVIndex", Ints(self.uv_indices))),
                element("Material", "ByPolygon" if by_polygon else "AllSame",
                        Record("Materials", Ints(self.materials if by_polygon else [0]))),
                layer("Normal", "UV", "Material")]


class Body(Identified):
    """All objects of the model."""

    def __init__(self, options):
        super().__init__(7500 if options.quads else 7400, inline_shape=False)
        self.options = options

    def bone_height(self, bone):
        return HEIGHT * bone / self.options.bones

    def bones(self):
        for bone in range(self.options.bones):
            parent = None if bone == 0 else 0 if self.options.wide else bone - 1
            below = 0.0 if parent is None else self.bone_height(parent)
            key = f"bone{bone}"
            self.new("NodeAttribute", key + " bone", Name(("NodeAttribute", "")), "LimbNode",
                     Record("TypeFlags", "Skeleton"))
            self.new("Model", key, Name(("Model", key)), "LimbNode",
                     self.properties(Lcl_Translation=(0.0, self.bone_height(bone) - below, 0.0)))
            self.connect(key, None if parent is None else f"bone{parent}")
            self.connect(key + " bone", key)

    def mesh(self, number):
        o, key = self.options, f"body{number}"
        tube = Tube(o.triangles // o.meshes, o.bones, o.quads, o.materials, 40.0 * number)
        self.new("Model", key, Name(("Model", key)), "Mesh", self.properties(Lcl_Translation=(0.0, 0.0, 0.0)))
        self.new("Geometry", key + " mesh", Name(("Geometry", "")), "Mesh", *tube.geometry(o.materials))
        self.connect(key, None)
        self.connect(key + " mesh", key)
        for material in range(o.materials):
            name = f"{key} material{material}"
            self.new("Material", name, Name(("Material", name)), "", Record("ShadingModel", "phong"),
                     self.properties(DiffuseColor=(0.8, 0.7, 0.6)))
            self.connect(name, key)
        skin = key + " skin"
        self.new("Deformer", skin, Name(("Deformer", "")), "Skin", Record("Version", 101))
        self.connect(skin, key + " mesh")
        for bone, (points, weights) in enumerate(tube.weights):
            if not points:
                continue
            cluster, place = f"{skin} {bone}", (0.0, self.bone_height(bone), 0.0)
            self.new("Deformer", cluster, Name(("SubDeformer", "")), "Cluster", Record("Indexes", points),
                     Record("Weights", single(weights)),
                     Record("Transform", Doubles(translation([-n for n in place]))),
                     Record("TransformLink", Doubles(translation(place))))
            self.connect(cluster, skin)
            self.connect(f"bone{bone}", cluster)

    def pose(self):
        keys = [(f"body{m}", 0.0) for m in range(self.options.meshes)]
        keys += [(f"bone{b}", self.bone_height(b)) for b in range(self.options.bones)]
        self.new("Pose", "pose", Name(("Pose", "bind")), "BindPose", Record("Type", "BindPose"), *[
            Record("PoseNode").add(Record("Node", self.ids[key]),
                                   Record("Matrix", Doubles(translation((0.0, height, 0.0))))) for key, height in keys])

    def records(self):
        self.bones()
        for number in range(self.options.meshes):
            self.mesh(number)
        self.pose()
        return [header(self.version), Record("Objects").add(*self.objects),
                Record("Connections").add(*self.connections)]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("output")
    parser.add_argument("--triangles", type=int, default=10000, help="of all meshes together (10000)")
    parser.add_argument("--bones", type=int, default=60)
    parser.add_argument("--wide", action="store_true", help="all bones but the first are children of the first")
    parser.add_argument("--meshes", type=int, default=1)
    parser.add_argument("--materials", type=int, default=1, help="of each mesh")
    parser.add_argument("--quads", action="store_true", help="quads, in a file of version 7.5")
    parser.add_argument("--ascii", action="store_true")
    parser.add_argument("--glb", action="store_true", help="GLB: one mesh of triangles on a chain of bones")
    options = parser.parse_args()
    body = Body(options)
    if options.glb:
        tube = Tube(options.triangles, options.bones, False, 1, 0.0)
        heights = [body.bone_height(bone) for bone in range(options.bones)]
        with open(options.output, "wb") as file:
            file.write(glb_body.document(tube, heights))
        return
    writer = ExactAscii(body.version) if options.ascii else Binary(body.version, packed=True)
    with open(options.output, "wb") as file:
        file.write(writer.document(body.records()))


if __name__ == "__main__":
    main()
