#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Write the sample character of samples/make_scout.py in other formats, with its pictures beside it:
scout.dae, scout.x, scout.b3d, scout.pmx, scout.md5mesh, scout.smd, scout.glb, scout.gltf with scout.bin, and scout.vrm.

Usage: export_scout.py FOLDER

Every format gets the lengths, the axes and the bind pose that it is known for, so that all of them are the character
of scout.fbx again. All faces are triangles: polygons are split as a fan from their first corner.
"""
import json
import math
import os
import struct
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "samples"))

from fbx_ascii import flat, matmul, rigid_inverse  # noqa: E402
from make_scout import MATERIALS, build_body, build_bones, build_hat, build_head, build_pack, png, tga  # noqa: E402

COLOUR = (.8, .8, .8)
CENTIMETRES = 100.0  # in a metre
INCH = 2.54


class Part:
    """The triangles of a mesh that have one material: their corners are (point, texture coordinate)."""

    def __init__(self, mesh, material):
        self.mesh, self.material, self.triangles = mesh, material, []


def triangles(mesh):
    """material name, three corners, of each triangle."""
    for material, corners in mesh.polys:
        for i in range(1, len(corners) - 1):
            yield mesh.materials[material], (corners[0], corners[i], corners[i + 1])


def parts(mesh):
    found = {}
    for material, corners in triangles(mesh):
        found.setdefault(material, Part(mesh, material)).triangles.append(corners)
    return [found[m] for m in mesh.materials if m in found]


class Vertices:
    """Distinct pairs of point and texture coordinate of some corners."""

    def __init__(self, mesh):
        self.mesh, self.known, self.pairs = mesh, {}, []

    def of(self, corner):
        if corner not in self.known:
            self.known[corner] = len(self.pairs)
            self.pairs.append(corner)
        return self.known[corner]

    def uv(self, pair):
        return tuple(round(c, 3) for c in self.mesh.uvs[pair[1]])


def rows(matrix):
    return [matrix[r][c] for r in range(4) for c in range(4)]


def transposed(matrix):
    """In the order of row vectors: translation at the end."""
    return [matrix[r][c] for c in range(4) for r in range(4)]


def scaled(matrix, k):
    return [[matrix[r][c] * (k if c == 3 and r < 3 else 1) for c in range(4)] for r in range(4)]


def numbers(values):
    return " ".join("%.9g" % (v + 0.0) for v in values)


def quaternion(m):
    """x, y, z, w of a rotation."""
    t = m[0][0] + m[1][1] + m[2][2]
    q = [math.sqrt(max(0.0, 1 + 2 * m[i][i] - t)) / 2 for i in range(3)] + [math.sqrt(max(0.0, 1 + t)) / 2]
    k = q.index(max(q))
    f = 4 * q[k]
    if k == 3:
        return ((m[2][1] - m[1][2]) / f, (m[0][2] - m[2][0]) / f, (m[1][0] - m[0][1]) / f, q[3])
    i, j = (k + 1) % 3, (k + 2) % 3
    out = [0.0] * 4
    out[k], out[i], out[j] = q[k], (m[i][k] + m[k][i]) / f, (m[j][k] + m[k][j]) / f
    out[3] = (m[j][i] - m[i][j]) / f
    return tuple(out)


class Scout:
    def __init__(self):
        bones, self.globl = build_bones()
        self.bones = [(name, parent) for name, parent, *_ in bones]
        self.names = [name for name, _ in self.bones]
        self.meshes = [build_body(), build_head(), build_hat(), build_pack()]

    def local(self, name, parent):
        return matmul(rigid_inverse(self.globl[parent]), self.globl[name]) if parent else self.globl[name]

    def children(self, parent):
        return [n for n, p in self.bones if p == parent]


def picture(material):
    return next(p for n, _, p, *_ in MATERIALS if n == material).replace("\\", "/")


# ---- Collada: centimetres, Y up ---------------------------------------------------------------------------------


def collada_source(name, values, parameters, kind="float"):
    width = len(parameters)
    text = numbers(values) if kind == "float" or kind == "float4x4" else " ".join(values)
    array = "Name_array" if kind == "name" else "float_array"
    stride = 16 if kind == "float4x4" else width
    names = "".join('<param name="%s" type="%s"/>' % (p, kind) for p in parameters)
    return ('<source id="%s"><%s id="%s-array" count="%d">%s</%s><technique_common><accessor source="#%s-array" '
            'count="%d" stride="%d">%s</accessor></technique_common></source>'
            % (name, array, name, len(values), text, array, name, len(values) // stride, stride, names))


def collada_geometry(mesh):
    groups = []
    for part in parts(mesh):
        corners = " ".join("%d %d" % c for t in part.triangles for c in t)
        groups.append('<triangles material="%s" count="%d"><input semantic="VERTEX" source="#%s-v" offset="0"/><input '
                      'semantic="TEXCOORD" source="#%s-uv" offset="1" set="0"/><p>%s</p></triangles>'
                      % (part.material, len(part.triangles), mesh.name, mesh.name, corners))
    return ('<geometry id="%s-g" name="%s"><mesh>%s%s<vertices id="%s-v"><input semantic="POSITION" source="#%s-p"/>'
            '</vertices>%s</mesh></geometry>'
            % (mesh.name, mesh.name,
               collada_source(mesh.name + "-p", [c for p in mesh.points for c in p], "XYZ"),
               collada_source(mesh.name + "-uv", [round(c, 3) for uv in mesh.uvs for c in uv], "ST"),
               mesh.name, mesh.name, "".join(groups)))


def collada_skin(scout, mesh):
    n = mesh.name + "-s"
    weights = sorted({w for point in mesh.weights for w in point.values()})
    place = {w: i for i, w in enumerate(weights)}
    counts = " ".join(str(len(point)) for point in mesh.weights)
    pairs = " ".join("%d %d" % (scout.names.index(b), place[w]) for point in mesh.weights for b, w in point.items())
    inverse = [v for b in scout.names for v in rows(rigid_inverse(scout.globl[b]))]
    joints = '<input semantic="JOINT" source="#%s-j"%s/>'
    return ('<controller id="%s"><skin source="#%s-g"><bind_shape_matrix>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1'
            '</bind_shape_matrix>%s%s%s<joints>%s<input semantic="INV_BIND_MATRIX" source="#%s-m"/></joints>'
            '<vertex_weights count="%d">%s<input semantic="WEIGHT" source="#%s-w" offset="1"/><vcount>%s</vcount>'
            '<v>%s</v></vertex_weights></skin></controller>'
            % (n, mesh.name, collada_source(n + "-j", scout.names, ["JOINT"], "name"),
               collada_source(n + "-m", inverse, ["TRANSFORM"], "float4x4"),
               collada_source(n + "-w", [w / 1000 for w in weights], ["WEIGHT"]), joints % (n, ""), n,
               len(mesh.weights), joints % (n, ' offset="0"'), n, counts, pairs))


def collada(scout):
    def joint(name, parent):
        return ('<node id="%s-node" name="%s" sid="%s" type="JOINT"><matrix sid="transform">%s</matrix>%s</node>'
                % (name, name, name, numbers(rows(scout.local(name, parent))),
                   "".join(joint(c, name) for c in scout.children(name))))

    images = effects = materials = ""
    for name, *_ in MATERIALS:
        images += '<image id="%s-i"><init_from>%s</init_from></image>' % (name, picture(name))
        effects += ('<effect id="%s-e"><profile_COMMON><newparam sid="s"><surface type="2D"><init_from>%s-i</init_from>'
                    '</surface></newparam><newparam sid="t"><sampler2D><source>s</source></sampler2D></newparam>'
                    '<technique sid="common"><lambert><diffuse><texture texture="t" texcoord="UV"/></diffuse></lambert>'
                    '</technique></profile_COMMON></effect>' % (name, name))
        materials += '<material id="%s" name="%s"><instance_effect url="#%s-e"/></material>' % (name, name, name)
    nodes = joint(*scout.bones[0])
    for mesh in scout.meshes:
        bound = "".join('<instance_material symbol="%s" target="#%s"><bind_vertex_input semantic="UV" '
                        'input_semantic="TEXCOORD" input_set="0"/></instance_material>' % (m, m) for m in mesh.materials)
        nodes += ('<node id="%s-mesh" name="%s"><instance_controller url="#%s-s"><skeleton>#%s-node</skeleton>'
                  '<bind_material><technique_common>%s</technique_common></bind_material></instance_controller></node>'
                  % (mesh.name, mesh.name, mesh.name, scout.names[0], bound))
    return ('<?xml version="1.0" encoding="utf-8"?>\n<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" '
            'version="1.4.1"><asset><unit name="centimeter" meter="0.01"/><up_axis>Y_UP</up_axis></asset>\n'
            '<library_images>%s</library_images>\n<library_effects>%s</library_effects>\n<library_materials>%s'
            '</library_materials>\n<library_geometries>%s</library_geometries>\n<library_controllers>%s'
            '</library_controllers>\n<library_visual_scenes><visual_scene id="scene">%s</visual_scene>'
            '</library_visual_scenes>\n<scene><instance_visual_scene url="#scene"/></scene></COLLADA>\n'
            % (images, effects, materials, "\n".join(map(collada_geometry, scout.meshes)),
               "\n".join(collada_skin(scout, m) for m in scout.meshes), nodes))


# ---- X: a left hand's axes, Z pointing away ---------------------------------------------------------------------


def flipped(matrix):
    """The same with the third axis turned round."""
    return [[v * (-1 if (r == 2) != (c == 2) else 1) for c, v in enumerate(row)] for r, row in enumerate(matrix)]


def x_matrix(matrix):
    return ",".join("%.9f" % (v + 0.0) for v in transposed(flipped(matrix))) + ";;"


def x_list(items):
    return "%d;\n%s;\n" % (len(items), ",\n".join(items))


def x_mesh(scout, mesh):
    vertices, faces, slots = Vertices(mesh), [], []
    for material, corners in triangles(mesh):
        faces.append("3;%d,%d,%d;" % tuple(vertices.of(c) for c in reversed(corners)))
        slots.append(str(mesh.materials.index(material)))
    points = ["%.6f;%.6f;%.6f;" % (x, y, -z + 0.0) for x, y, z in (mesh.points[p] for p, _ in vertices.pairs)]
    text = "Frame %s {\nFrameTransformMatrix {\n%s\n}\nMesh {\n" % (mesh.name, x_matrix(rigid_inverse(IDENTITY)))
    text += x_list(points) + x_list(faces)
    text += "MeshTextureCoords {\n" + x_list(["%.6f;%.6f;" % (u, 1 - v) for u, v in map(vertices.uv, vertices.pairs)]) + "}\n"
    text += "MeshMaterialList {\n%d;\n" % len(mesh.materials) + x_list(slots)
    text += "".join("{%s}\n" % m for m in mesh.materials) + "}\n"
    used = [b for b in scout.names if any(b in w for w in mesh.weights)]
    most = max(len(w) for w in mesh.weights)
    text += "XSkinMeshHeader {\n%d;\n%d;\n%d;\n}\n" % (most, most, len(used))
    for bone in used:
        pairs = [(i, mesh.weights[p][bone] / 1000) for i, (p, _) in enumerate(vertices.pairs) if bone in mesh.weights[p]]
        text += 'SkinWeights {\n"%s";\n%d;\n%s;\n%s;\n%s\n}\n' % (
            bone, len(pairs), ",\n".join(str(i) for i, _ in pairs), ",\n".join("%.6f" % w for _, w in pairs),
            x_matrix(rigid_inverse(scout.globl[bone])))
    return text + "}\n}\n"


IDENTITY = [[float(r == c) for c in range(4)] for r in range(4)]
HALF_TURN = [[v * (1 if r % 2 else -1) for v in row] for r, row in enumerate(IDENTITY[:3])] + IDENTITY[3:]  # about Y


def x_file(scout):
    def frame(name, parent):
        return "Frame %s {\nFrameTransformMatrix {\n%s\n}\n%s}\n" % (
            name, x_matrix(scout.local(name, parent)), "".join(frame(c, name) for c in scout.children(name)))

    text = "xof 0302txt 0032\n"
    for name, *_ in MATERIALS:
        text += ('Material %s {\n%g;%g;%g;1.0;;\n0.0;\n0.0;0.0;0.0;;\n0.0;0.0;0.0;;\nTextureFilename {\n"%s";\n}\n}\n'
                 % ((name,) + COLOUR + (picture(name),)))
    return text + frame(*scout.bones[0]) + "".join(x_mesh(scout, m) for m in scout.meshes)


# ---- B3D: a left hand's axes, looking along Z; one mesh above all bones ----------------------------------------


def b3d_chunk(kind, content):
    return struct.pack("<4si", kind, len(content)) + content


def b3d_name(name):
    return name.encode() + b"\0"


def b3d_node(name, matrix, content):
    m = flipped(matrix)
    x, y, z, w = quaternion(m)
    return b3d_chunk(b"NODE", b3d_name(name) + struct.pack("<10f", *(m[r][3] for r in range(3)), 1, 1, 1, -w, x, y, z) +
                     content)


def b3d(scout):
    corners, groups, base = [], {}, 0
    for mesh in scout.meshes:
        vertices = Vertices(mesh)
        for material, triangle in triangles(mesh):
            groups.setdefault(material, []).extend(base + vertices.of(c) for c in reversed(triangle))
        corners += [(mesh, pair) for pair in vertices.pairs]
        base += len(vertices.pairs)
    points = b""
    for mesh, (p, uv) in corners:
        x, y, z = mesh.points[p]
        u, v = (round(c, 3) for c in mesh.uvs[uv])
        points += struct.pack("<5f", -x, y, z, u, 1 - v)
    names = [n for n, *_ in MATERIALS]
    faces = b"".join(b3d_chunk(b"TRIS", struct.pack("<%di" % (1 + len(g)), names.index(m), *g))
                     for m, g in groups.items())
    whole = b3d_chunk(b"MESH", struct.pack("<i", -1) + b3d_chunk(b"VRTS", struct.pack("<3i", 0, 1, 2) + points) + faces)

    def bone(name, parent):
        weights = [(i, mesh.weights[p][name] / 1000) for i, (mesh, (p, _)) in enumerate(corners) if name in mesh.weights[p]]
        content = b3d_chunk(b"BONE", b"".join(struct.pack("<if", *w) for w in weights))
        place = scout.local(name, parent) if parent else matmul(HALF_TURN, scout.globl[name])
        return b3d_node(name, place, content + b"".join(bone(c, name) for c in scout.children(name)))

    pictures = b"".join(b3d_name(picture(n)) + struct.pack("<2i5f", 1, 2, 0, 0, 1, 1, 0) for n in names)
    brushes = b"".join(b3d_name(n) + struct.pack("<5f3i", *COLOUR, 1, 0, 1, 0, i) for i, n in enumerate(names))
    return b3d_chunk(b"BB3D", struct.pack("<i", 1) + b3d_chunk(b"TEXS", pictures) +
                     b3d_chunk(b"BRUS", struct.pack("<i", 1) + brushes) +
                     b3d_node("scout", IDENTITY, whole + bone(*scout.bones[0])))


# ---- PMX: units of 8 cm, a left hand's axes, looking against Z; bones have places and no rotations ----------------

PMX_UNIT = 8.0
PMX_DEFORMS = {1: (0, 1, 0), 2: (1, 2, 1)}  # number of influences: kind, bones, weights; else four of both


def pmx_text(text):
    content = text.encode("utf-16-le")
    return struct.pack("<i", len(content)) + content


def pmx_point(point):
    x, y, z = (c / PMX_UNIT for c in point)
    return struct.pack("<3f", x, y, -z)


def pmx_vertex(scout, mesh, normal, pair):
    u, v = (round(c, 3) for c in mesh.uvs[pair[1]])
    influences = [(scout.names.index(b), w / 1000) for b, w in mesh.weights[pair[0]].items()]
    kind, bones, weights = PMX_DEFORMS.get(len(influences), (2, 4, 4))
    influences += [(0, 0.0)] * (bones - len(influences))
    return (pmx_point(mesh.points[pair[0]]) + struct.pack("<5f", normal[0], normal[1], -normal[2], u, 1 - v) +
            struct.pack("<B%dH%df" % (bones, weights), kind, *(b for b, _ in influences),
                        *(w for _, w in influences[:weights])) + struct.pack("<f", 1))


def pmx(scout):
    vertices, groups = [], {}
    for mesh in scout.meshes:
        own, normals, base = Vertices(mesh), mesh.normals(), len(vertices)
        for material, triangle in triangles(mesh):
            groups.setdefault(material, []).extend(base + own.of(c) for c in reversed(triangle))
        vertices += [pmx_vertex(scout, mesh, normals[pair[0]], pair) for pair in own.pairs]
    names = [n for n, *_ in MATERIALS]
    corners = [c for n in names for c in groups[n]]
    file = b"PMX " + struct.pack("<f9B", 2.0, 8, 0, 0, 2, 1, 1, 2, 1, 1) + pmx_text("scout") + 3 * pmx_text("")
    file += struct.pack("<i", len(vertices)) + b"".join(vertices)
    file += struct.pack("<i%dH" % len(corners), len(corners), *corners)
    file += struct.pack("<i", len(names)) + b"".join(pmx_text(picture(n).replace("/", "\\")) for n in names)
    file += struct.pack("<i", len(names))
    for i, name in enumerate(names):
        file += 2 * pmx_text(name) + struct.pack("<11f", *COLOUR, 1, 0, 0, 0, 5, .4, .4, .4)
        file += struct.pack("<B5f2b3B", 0, 0, 0, 0, 1, 1, i, -1, 0, 1, 0) + pmx_text("")
        file += struct.pack("<i", len(groups[name]))
    file += struct.pack("<i", len(scout.names))
    for name, parent in scout.bones:
        file += 2 * pmx_text(name) + pmx_point([scout.globl[name][r][3] for r in range(3)])
        file += struct.pack("<hiH3f", scout.names.index(parent) if parent else -1, 0, 0x1e, 0, 1, 0)
    return file + struct.pack("<4i", 0, 0, 0, 0)  # morphs, frames of the list, bodies, joints of bodies


# ---- MD5: inches, Z up, looking along +X; SMD: inches, Z up, looking along -Y ------------------------------------


def turned(matrix, axes):
    """`matrix` in other axes, given as (old axis, sign) of each new one, and in inches."""
    turn = [[float(sign) if c == axis else 0.0 for c in range(4)] for axis, sign in axes] + [[0, 0, 0, 1]]
    return scaled(matmul(turn, matrix), 1 / INCH)


MD5_AXES = ((2, 1), (0, 1), (1, 1))
SMD_AXES = ((0, 1), (2, -1), (1, 1))


def turned_point(point, axes):
    return tuple(point[axis] * sign / INCH for axis, sign in axes)


def md5_joints(scout):
    text = ""
    for name, parent in scout.bones:
        m = turned(scout.globl[name], MD5_AXES)
        x, y, z, w = quaternion(m)
        sign = 1 if w > 0 else -1  # w is the negative root of what the others leave
        text += '\t"%s" %d ( %s ) ( %s )\n' % (
            name, scout.names.index(parent) if parent else -1, numbers(m[r][3] for r in range(3)),
            numbers(-sign * c for c in (x, y, z)))
    return text


def md5_mesh(scout, part):
    mesh, vertices, weights = part.mesh, Vertices(part.mesh), []
    faces = [[vertices.of(c) for c in reversed(t)] for t in part.triangles]
    inverse = {b: rigid_inverse(turned(scout.globl[b], MD5_AXES)) for b in scout.names}
    lines = []
    for i, pair in enumerate(vertices.pairs):
        point, influences = turned_point(mesh.points[pair[0]], MD5_AXES), mesh.weights[pair[0]]
        u, v = vertices.uv(pair)
        lines.append("\tvert %d ( %.9g %.9g ) %d %d\n" % (i, u, 1 - v, len(weights), len(influences)))
        for bone, w in influences.items():
            own = [sum(inverse[bone][r][c] * point[c] for c in range(3)) + inverse[bone][r][3] for r in range(3)]
            weights.append("\tweight %d %d %.6f ( %s )\n" % (len(weights), scout.names.index(bone), w / 1000, numbers(own)))
    return ('\nmesh {\n\tshader "%s"\n\n\tnumverts %d\n%s\n\tnumtris %d\n%s\n\tnumweights %d\n%s}\n'
            % (picture(part.material), len(lines), "".join(lines), len(faces),
               "".join("\ttri %d %d %d %d\n" % (i, *f) for i, f in enumerate(faces)), len(weights), "".join(weights)))


def md5(scout):
    meshes = [md5_mesh(scout, part) for mesh in scout.meshes for part in parts(mesh)]
    return ('MD5Version 10\ncommandline ""\n\nnumJoints %d\nnumMeshes %d\n\njoints {\n%s}\n%s'
            % (len(scout.names), len(meshes), md5_joints(scout), "".join(meshes)))


def angles(m):
    """Of rotations about x, then y, then z, in radians."""
    flat_length = math.hypot(m[0][0], m[1][0])
    if flat_length > 1e-6:
        return math.atan2(m[2][1], m[2][2]), math.atan2(-m[2][0], flat_length), math.atan2(m[1][0], m[0][0])
    return math.atan2(-m[1][2], m[1][1]), math.atan2(-m[2][0], flat_length), 0.0


def smd(scout):
    text = "version 1\nnodes\n"
    for i, (name, parent) in enumerate(scout.bones):
        text += '%d "%s" %d\n' % (i, name, scout.names.index(parent) if parent else -1)
    text += "end\nskeleton\ntime 0\n"
    for i, (name, parent) in enumerate(scout.bones):
        m = scaled(scout.local(name, parent), 1 / INCH) if parent else turned(scout.globl[name], SMD_AXES)
        text += "%d %s\n" % (i, numbers([m[r][3] for r in range(3)] + list(angles(m))))
    text += "end\ntriangles\n"
    for mesh in scout.meshes:
        normals = mesh.normals()
        for material, corners in triangles(mesh):
            text += picture(material) + "\n"
            for p, uv in corners:
                place, way = turned_point(mesh.points[p], SMD_AXES), turned_point(normals[p], SMD_AXES)
                links = " ".join("%d %.6f" % (scout.names.index(b), w / 1000) for b, w in mesh.weights[p].items())
                text += "0 %s %s %s %d %s\n" % (numbers(place), numbers(c * INCH for c in way),
                                                 numbers(round(c, 3) for c in mesh.uvs[uv]), len(mesh.weights[p]), links)
    return text + "end\n"


# ---- glTF: metres, Y up -----------------------------------------------------------------------------------------


class Gltf:
    def __init__(self, scout):
        self.scout, self.data = scout, b""
        self.json = {"asset": {"version": "2.0", "generator": "export_scout.py"}, "scene": 0, "nodes": [], "meshes": [],
                     "skins": [], "accessors": [], "bufferViews": [], "materials": [], "textures": [], "images": []}
        for i, (name, *_) in enumerate(MATERIALS):
            self.json["images"].append({"uri": picture(name)})
            self.json["textures"].append({"source": i})
            self.json["materials"].append({"name": name, "pbrMetallicRoughness": {
                "baseColorFactor": [*COLOUR, 1], "baseColorTexture": {"index": i}}})
        for name, parent in scout.bones:
            node = {"name": name, "matrix": self.matrix(scout.local(name, parent))}
            if scout.children(name):
                node["children"] = [scout.names.index(c) for c in scout.children(name)]
            self.json["nodes"].append(node)
        inverse = [v for b in scout.names for v in self.matrix(rigid_inverse(scout.globl[b]))]
        self.json["skins"].append({"joints": list(range(len(scout.names))),
                                   "inverseBindMatrices": self.accessor("f", "MAT4", inverse)})
        for mesh in scout.meshes:
            self.json["nodes"].append({"name": mesh.name, "mesh": len(self.json["meshes"]), "skin": 0})
            self.json["meshes"].append({"name": mesh.name, "primitives": [self.primitive(p) for p in parts(mesh)]})
        self.json["scenes"] = [{"nodes": [0] + list(range(len(scout.names), len(self.json["nodes"])))}]

    @staticmethod
    def matrix(matrix):
        return flat(scaled(matrix, 1 / CENTIMETRES))

    def view(self, content):
        self.data += b"\0" * (-len(self.data) % 4)
        self.json["bufferViews"].append({"buffer": 0, "byteOffset": len(self.data), "byteLength": len(content)})
        self.data += content
        return len(self.json["bufferViews"]) - 1

    def accessor(self, code, kind, values):
        width = {"SCALAR": 1, "VEC2": 2, "VEC3": 3, "VEC4": 4, "MAT4": 16}[kind]
        view = self.view(struct.pack("<%d%s" % (len(values), code), *values))
        self.json["accessors"].append({"bufferView": view, "componentType": {"f": 5126, "B": 5121, "I": 5125}[code],
                                       "type": kind, "count": len(values) // width})
        return len(self.json["accessors"]) - 1

    def primitive(self, part):
        mesh, vertices = part.mesh, Vertices(part.mesh)
        corners = [vertices.of(c) for t in part.triangles for c in t]
        points = [tuple(c / CENTIMETRES for c in mesh.points[p]) for p, _ in vertices.pairs]
        coordinates = [c for u, v in map(vertices.uv, vertices.pairs) for c in (u, 1 - v)]
        joints, weights = [], []
        for p, _ in vertices.pairs:
            influences = list(mesh.weights[p].items()) + [(None, 0)] * (4 - len(mesh.weights[p]))
            joints += [self.scout.names.index(b) if b else 0 for b, _ in influences]
            weights += [w / 1000 for _, w in influences]
        positions = self.accessor("f", "VEC3", [c for p in points for c in p])
        self.json["accessors"][positions].update(min=[min(p[i] for p in points) for i in range(3)],
                                                 max=[max(p[i] for p in points) for i in range(3)])
        return {"attributes": {"POSITION": positions, "TEXCOORD_0": self.accessor("f", "VEC2", coordinates),
                               "JOINTS_0": self.accessor("B", "VEC4", joints),
                               "WEIGHTS_0": self.accessor("f", "VEC4", weights)},
                "indices": self.accessor("I", "SCALAR", corners),
                "material": [n for n, *_ in MATERIALS].index(part.material)}

    def embed_pictures(self):
        for image, (name, paint, *_) in zip(self.json["images"], MATERIALS):
            image.clear()
            image.update(name="own_" + name, mimeType="image/png", bufferView=self.view(png(paint)))

    def become_avatar(self):
        human = {"hips": "Mobo", "leftFoot": "L_foot", "rightFoot": "R_foot", "head": "head"}
        self.json["extensionsUsed"] = ["VRMC_vrm"]
        self.json["extensions"] = {"VRMC_vrm": {
            "specVersion": "1.0",
            "meta": {"name": "Scout", "authors": ["Ada"], "licenseUrl": "https://example.com/free"},
            "humanoid": {"humanBones": {k: {"node": self.scout.names.index(b)} for k, b in human.items()}}}}

    def text(self, uri):
        buffer = {"byteLength": len(self.data)}
        if uri:
            buffer["uri"] = uri
        return json.dumps({**self.json, "buffers": [buffer]}, separators=(",", ":")).encode()

    def glb(self):
        text, data = self.text(None), self.data + b"\0" * (-len(self.data) % 4)
        text += b" " * (-len(text) % 4)
        return (struct.pack("<4sII", b"glTF", 2, 28 + len(text) + len(data)) + struct.pack("<I4s", len(text), b"JSON") +
                text + struct.pack("<I4s", len(data), b"BIN\0") + data)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder, scout = sys.argv[1], Scout()
    os.makedirs(os.path.join(folder, "textures"), exist_ok=True)

    def write(name, content):
        with open(os.path.join(folder, name), "wb") as f:
            f.write(content if isinstance(content, bytes) else content.encode())

    for _, paint, name, *_ in MATERIALS:
        write(name.replace("\\", "/"), tga(paint) if name.endswith(".tga") else png(paint))
    for name, make in (("dae", collada), ("x", x_file), ("b3d", b3d), ("pmx", pmx), ("md5mesh", md5), ("smd", smd)):
        write("scout." + name, make(scout))
    parted, whole, avatar = Gltf(scout), Gltf(scout), Gltf(scout)
    write("scout.gltf", parted.text("scout.bin"))
    write("scout.bin", parted.data)
    for gltf in (whole, avatar):
        gltf.embed_pictures()
    avatar.become_avatar()
    write("scout.glb", whole.glb())
    write("scout.vrm", avatar.glb())


if __name__ == "__main__":
    main()
