"""Helpers of make_scout.py: vectors, lofted meshes and an ASCII FBX 7.5 scene writer."""
import math

# ---- vectors and matrices (nested rows, column vectors) ---------------------------------------------------------

X, Y, Z = (1.0, 0.0, 0.0), (0.0, 1.0, 0.0), (0.0, 0.0, 1.0)

def add(a, b, k=1.0): return tuple(x + k * y for x, y in zip(a, b))
def dot(a, b): return sum(x * y for x, y in zip(a, b))
def cross(a, b): return (a[1]*b[2] - a[2]*b[1], a[2]*b[0] - a[0]*b[2], a[0]*b[1] - a[1]*b[0])
def unit(a): return tuple(x / (math.sqrt(dot(a, a)) or 1.0) for x in a)
def lerp(a, b, t): return tuple(x + (y - x) * t for x, y in zip(a, b))
def smooth(x): x = min(1.0, max(0.0, x)); return x * x * (3 - 2 * x)

def matmul(a, b): return [[sum(a[r][k] * b[k][c] for k in range(4)) for c in range(4)] for r in range(4)]
def flat(m):
    """File order, translation in numbers 12 to 14; rounded so that all platforms write the same digits."""
    return [round(m[r][c], 12) for c in range(4) for r in range(4)]

def translation(t): return [[1, 0, 0, t[0]], [0, 1, 0, t[1]], [0, 0, 1, t[2]], [0, 0, 0, 1]]

def rigid_inverse(m):
    cols = [tuple(m[r][c] for r in range(3)) for c in range(4)]
    return [list(cols[r]) + [-dot(cols[r], cols[3])] for r in range(3)] + [[0, 0, 0, 1]]

def euler_matrix(t, r):
    (sx, cx), (sy, cy), (sz, cz) = ((math.sin(math.radians(a)), math.cos(math.radians(a))) for a in r)
    return [[cz*cy, cz*sy*sx - sz*cx, cz*sy*cx + sz*sx, t[0]],
            [sz*cy, sz*sy*sx + cz*cx, sz*sy*cx - cz*sx, t[1]], [-sy, cy*sx, cy*cx, t[2]], [0, 0, 0, 1]]

def euler_angles(m):
    h = math.hypot(m[0][0], m[1][0])
    if h > 1e-9:
        x, z = math.atan2(m[2][1], m[2][2]), math.atan2(m[1][0], m[0][0])
    else:
        x, z = math.atan2(-m[1][2], m[1][1]), 0.0
    return tuple(math.degrees(a) for a in (x, math.atan2(-m[2][0], h), z))

def frame(w, ref):
    """Axes u, v for a direction w, with v as near to ref as possible and u x v = w."""
    v = unit(add(ref, w, -dot(ref, w)))
    return cross(v, w), v

# ---- mesh building ----------------------------------------------------------------------------------------------

def right(name): return "R_" + name[2:] if name and name.startswith("L_") else name

def quantise(w):
    """Thousandths that sum to exactly 1; slivers are dropped."""
    w = dict(sorted(((k, x) for k, x in w.items() if x > 0.02), key=lambda e: (-e[1], e[0]))[:4])
    total = sum(w.values())
    q = {k: int(round(1000 * x / total)) for k, x in w.items()}
    q[next(iter(q))] += 1000 - sum(q.values())
    return q

class Mesh:
    def __init__(self, name, materials, origin=(0, 0, 0)):
        self.name, self.materials, self.origin = name, materials, origin
        self.points, self.weights, self.uvs, self.polys = [], [], [], []  # polys: (material, [(point, uv)...])

    def tube(self, rings, ref, n, material, rect, weights, power=2.0, caps="tt", warp=lambda p: p, axis=None):
        """Loft n-sided rings (centre, radius along u, radius along v) around a path.
        Caps, start and end: t = tip of triangles, f = flat polygon, - = open. rect: u0, v0, u1, v1."""
        mat, base, ubase = self.materials.index(material), len(self.points), len(self.uvs)
        centres = [r[0] for r in rings]
        last = len(rings) - 1
        u0, v0, u1, v1 = rect
        lengths = [0.0]
        for a, b in zip(rings, rings[1:]):
            lengths.append(lengths[-1] + math.hypot(math.dist(a[0], b[0]), a[1] - b[1]))
        def put(p):
            p = tuple(round(c, 2) + 0.0 for c in warp(p))
            self.points.append(p)
            self.weights.append(quantise(weights(p)))
            return len(self.points) - 1
        def coord(u, v):
            self.uvs.append((u, v))
            return len(self.uvs) - 1
        for k, (c, ru, rv) in enumerate(rings):
            au, av = frame(axis or unit(add(centres[min(k + 1, last)], centres[max(k - 1, 0)], -1)), ref)
            for i in range(n + 1):
                a = 2 * math.pi * i / n - math.pi / 2  # the seam lies opposite to ref
                co, si = (math.copysign(abs(x) ** (2 / power), x) for x in (math.cos(a), math.sin(a)))
                if i < n:
                    put(add(add(c, au, ru * co), av, rv * si))
                coord(u0 + (u1 - u0) * i / n, v0 + (v1 - v0) * lengths[k] / (lengths[-1] or 1))
        for k in range(last):
            for i in range(n):
                j = (i + 1) % n
                at = lambda kk, ii, uu: (base + kk * n + ii, ubase + kk * (n + 1) + uu)
                self.polys.append((mat, [at(k, i, i), at(k, j, i + 1), at(k + 1, j, i + 1), at(k + 1, i, i)]))
        for kind, k, other in ((caps[0], 0, 1), (caps[1], last, last - 1)):
            ids = [base + k * n + i for i in range(n)]
            if kind == "f":
                um, vm = (u0 + u1) / 2, v0 + (v1 - v0) * (0.15 if k == 0 else 0.85)
                cap = [(p, coord(um + 0.15 * (u1 - u0) * math.sin(2 * math.pi * i / n),
                                 vm - 0.15 * (v1 - v0) * math.cos(2 * math.pi * i / n))) for i, p in enumerate(ids)]
                self.polys.append((mat, cap if k else cap[::-1]))
            elif kind == "t":
                bulge = lerp(centres[other], centres[k], 1.0 + 0.35 * min(1.0, min(rings[k][1:]) /
                             (math.dist(centres[other], centres[k]) or 1.0)))
                tip = put(bulge)
                for i in range(n):
                    row = ubase + k * (n + 1) + i
                    tri = [(ids[i], row), (ids[(i + 1) % n], row + 1),
                           (tip, coord(u0 + (u1 - u0) * (i + 0.5) / n, v1 if k else v0))]
                    self.polys.append((mat, tri if k else tri[::-1]))

    def lathe(self, rows, *args):
        """Horizontal rings (height, z of the centre, radius in x, radius in z); the heights may go up and down."""
        self.tube([((0, y, z), rx, rz) for y, z, rx, rz in rows], Z, *args, axis=Y)

    def blob(self, c, radii, material, rect, weights, n=8, rows=4, along=Y, ref=Z):
        """Ellipsoid; radii are given along u, v and the axis."""
        steps = [math.cos(math.pi * (k + 0.7) / (rows + 0.4)) for k in range(rows)]
        rings = [(add(c, along, -radii[2] * s), radii[0] * math.sqrt(1 - s * s), radii[1] * math.sqrt(1 - s * s))
                 for s in steps]
        self.tube(rings, ref, n, material, rect, weights)

    def mark(self): return len(self.points), len(self.polys)

    def mirror(self, mark):
        """Copy everything since mark to the other side; both sides share their texture area."""
        p0, f0, shift = mark[0], mark[1], len(self.points) - mark[0]
        for (x, y, z), w in list(zip(self.points, self.weights))[p0:]:
            self.points.append((0.0 - x, y, z))
            self.weights.append({right(k): v for k, v in w.items()})
        for mat, corners in self.polys[f0:]:
            self.polys.append((mat, [(p + shift, u) for p, u in reversed(corners)]))

    def normals(self):
        acc = [(0.0, 0.0, 0.0)] * len(self.points)
        for _, corners in self.polys:
            ps = [self.points[p] for p, _ in corners]
            area = (0.0, 0.0, 0.0)
            for a, b in zip(ps, ps[1:] + ps[:1]):
                area = add(area, cross(add(a, ps[0], -1), add(b, ps[0], -1)))
            for p, _ in corners:
                acc[p] = add(acc[p], area)
        return [unit(a) for a in acc]

# ---- FBX text ---------------------------------------------------------------------------------------------------

def value(v):
    if isinstance(v, str):
        return '"%s"' % v
    return "%d" % v if isinstance(v, int) else ("%.15g" % v if v else "0")

def record(name, *values, body=None):
    """Lines of one record; body is a list of records, each a list of lines."""
    head = "%s: %s" % (name, ", ".join(map(value, values)))
    if body is None:
        return [head]
    return [head.rstrip() + " {"] + ["\t" + line for child in body for line in child] + ["}"]

def array(name, numbers):
    lines, row = [], "a: "
    for i, v in enumerate(map(value, numbers)):
        if len(row) > 900:
            lines.append(row)
            row = ""
        row += ("," if i else "") + v
    return ["%s: *%d {" % (name, len(numbers))] + ["\t" + r for r in lines + [row]] + ["}"]

def properties(*rows):
    return record("Properties70", body=[record("P", *row) for row in rows])

def prop(name, kind, *values, flags="", sub=""): return (name, kind, sub, flags) + values

def vec(name, *v): return prop(name, "Vector3D", *v, sub="Vector")
def lcl(name, v): return prop(name, name, *v, flags="A")
def color(name, *v): return prop(name, "Color", *v, flags="A")
def number(name, v): return prop(name, "Number", v, flags="A")

TEMPLATES = [
    ("Model", "FbxNode", [
        prop("RotationOrder", "enum", 0), prop("RotationActive", "bool", 0), prop("InheritType", "enum", 0),
        *(vec(n, 0, 0, 0) for n in ("PreRotation", "PostRotation", "RotationOffset", "RotationPivot", "ScalingOffset",
                                    "ScalingPivot", "GeometricTranslation", "GeometricRotation")),
        vec("GeometricScaling", 1, 1, 1), prop("DefaultAttributeIndex", "int", -1, sub="Integer"),
        lcl("Lcl Translation", (0, 0, 0)), lcl("Lcl Rotation", (0, 0, 0)), lcl("Lcl Scaling", (1, 1, 1)),
        prop("Visibility", "Visibility", 1, flags="A")]),
    ("Geometry", "FbxMesh", [
        prop("Color", "ColorRGB", .8, .8, .8, sub="Color"), vec("BBoxMin", 0, 0, 0), vec("BBoxMax", 0, 0, 0)]),
    ("Material", "FbxSurfacePhong", [
        prop("ShadingModel", "KString", "Phong"), prop("MultiLayer", "bool", 0),
        color("EmissiveColor", 0, 0, 0), number("EmissiveFactor", 1), color("AmbientColor", .2, .2, .2),
        number("AmbientFactor", 1), color("DiffuseColor", .8, .8, .8), number("DiffuseFactor", 1),
        color("TransparentColor", 0, 0, 0), number("TransparencyFactor", 0), color("SpecularColor", .2, .2, .2),
        number("SpecularFactor", 1), number("ShininessExponent", 20), color("ReflectionColor", 0, 0, 0),
        number("ReflectionFactor", 1)]),
    ("Texture", "FbxFileTexture", [
        prop("TextureTypeUse", "enum", 0), prop("Texture alpha", "Number", 1, flags="A"),
        prop("WrapModeU", "enum", 0), prop("WrapModeV", "enum", 0), vec("Translation", 0, 0, 0),
        vec("Rotation", 0, 0, 0), vec("Scaling", 1, 1, 1), prop("UVSet", "KString", "default")])]

class Scene:
    def __init__(self):
        self.objects, self.links, self.count, self.next_id = [], [], {}, 100000

    def add(self, kind, title, sub, body):
        self.next_id += 1
        self.objects.append(record(kind, self.next_id, title, sub, body=body))
        self.count[kind] = self.count.get(kind, 0) + 1
        return self.next_id

    def connect(self, src, dst, to=None):
        self.links.append(record("C", "OO", src, dst) if to is None else record("C", "OP", src, dst, to))

    def model(self, name, sub, t, r):
        return self.add("Model", "Model::" + name, sub, [
            record("Version", 232),
            properties(prop("RotationActive", "bool", 1), prop("InheritType", "enum", 1),
                       prop("DefaultAttributeIndex", "int", 0, sub="Integer"),
                       lcl("Lcl Translation", t), lcl("Lcl Rotation", r), lcl("Lcl Scaling", (1, 1, 1))),
            ["Shading: Y"], record("Culling", "CullingOff")])

def layer(kind, mapping, reference, *arrays, name=""):
    return record(kind, 0, body=[
        record("Version", 101), record("Name", name), record("MappingInformationType", mapping),
        record("ReferenceInformationType", reference), *arrays])

def geometry(scene, m):
    corners = [c for _, poly in m.polys for c in poly]
    ends = [~p if k == len(poly) - 1 else p for _, poly in m.polys for k, (p, _) in enumerate(poly)]
    kinds = ("LayerElementNormal", "LayerElementUV", "LayerElementMaterial")
    one = len(m.materials) == 1
    return scene.add("Geometry", "Geometry::" + m.name, "Mesh", [
        array("Vertices", [round(c, 2) for p in m.points for c in add(p, m.origin, -1)]),
        array("PolygonVertexIndex", ends),
        record("GeometryVersion", 124),
        layer(kinds[0], "ByVertice", "Direct", array("Normals", [round(c, 3) for n in m.normals() for c in n])),
        layer(kinds[1], "ByPolygonVertex", "IndexToDirect", array("UV", [round(c, 3) for uv in m.uvs for c in uv]),
              array("UVIndex", [u for _, u in corners]), name="map1"),
        layer(kinds[2], "AllSame" if one else "ByPolygon", "IndexToDirect",
              array("Materials", [0] if one else [mat for mat, _ in m.polys])),
        record("Layer", 0, body=[record("Version", 100)] + [
            record("LayerElement", body=[record("Type", k), record("TypedIndex", 0)]) for k in kinds])])

def build_scene(bones, globl, meshes, materials, texture_dir):
    scene = Scene()
    ids, slots, pose = {}, {}, []
    for name, parent, t, r in bones:
        ids[name] = scene.model(name, "LimbNode", t, r)
        scene.connect(ids[name], ids.get(parent, 0))
        attribute = scene.add("NodeAttribute", "NodeAttribute::" + name, "LimbNode", [
            properties(prop("Size", "double", 6.0, sub="Number")), record("TypeFlags", "Skeleton")])
        scene.connect(attribute, ids[name])
        pose.append((ids[name], globl[name]))
    for name, _, picture, ambient, specular, factor, shininess in materials:
        slots[name] = scene.add("Material", "Material::" + name, "", [
            record("Version", 102), record("ShadingModel", "phong"), record("MultiLayer", 0),
            properties(color("AmbientColor", *ambient), color("DiffuseColor", .8, .8, .8),
                       color("SpecularColor", *specular), number("SpecularFactor", factor),
                       number("ShininessExponent", shininess))])
        texture = scene.add("Texture", "Texture::" + name, "", [
            record("Type", "TextureVideoClip"), record("Version", 202), record("TextureName", "Texture::" + name),
            properties(prop("UVSet", "KString", "map1"), prop("UseMaterial", "bool", 1)),
            record("FileName", texture_dir + picture), record("RelativeFilename", picture)])
        scene.connect(texture, slots[name], "DiffuseColor")
    for m in meshes:
        node = scene.model(m.name, "Mesh", m.origin, (0, 0, 0))
        scene.connect(node, 0)
        shape = geometry(scene, m)
        scene.connect(shape, node)
        for name in m.materials:
            scene.connect(slots[name], node)
        place = translation(m.origin)
        pose.append((node, place))
        skin = scene.add("Deformer", "Deformer::", "Skin", [record("Version", 101), record("Link_DeformAcuracy", 50)])
        scene.connect(skin, shape)
        for bone, *_ in bones:
            pairs = [(i, w[bone] / 1000) for i, w in enumerate(m.weights) if w.get(bone)]
            if not pairs:
                continue
            cluster = scene.add("Deformer", "SubDeformer::" + bone, "Cluster", [
                record("Version", 100), record("UserData", "", ""),
                array("Indexes", [i for i, _ in pairs]), array("Weights", [w for _, w in pairs]),
                array("Transform", flat(matmul(rigid_inverse(globl[bone]), place))),
                array("TransformLink", flat(globl[bone]))])
            scene.connect(cluster, skin)
            scene.connect(ids[bone], cluster)
    scene.add("Pose", "Pose::scout", "BindPose", [
        record("Type", "BindPose"), record("Version", 100), record("NbPoseNodes", len(pose)),
        *(record("PoseNode", body=[record("Node", n), array("Matrix", flat(g))]) for n, g in pose)])
    return scene

def document(scene, creator):
    stamp = [("Version", 1000), ("Year", 2000), ("Month", 1), ("Day", 1), ("Hour", 0), ("Minute", 0), ("Second", 0),
             ("Millisecond", 0)]  # fixed, so that the file only changes when the character does
    settings = [prop(n, "int", v, sub="Integer") for n, v in (
        ("UpAxis", 1), ("UpAxisSign", 1), ("FrontAxis", 2), ("FrontAxisSign", 1), ("CoordAxis", 0),
        ("CoordAxisSign", 1))]
    settings += [prop(n, "double", 1.0, sub="Number") for n in ("UnitScaleFactor", "OriginalUnitScaleFactor")]
    templates = {kind: [record("PropertyTemplate", name, body=[properties(*rows)])] for kind, name, rows in TEMPLATES}
    counts = {"GlobalSettings": 1, **scene.count}
    parts = [
        record("FBXHeaderExtension", body=[
            record("FBXHeaderVersion", 1003), record("FBXVersion", 7500),
            record("CreationTimeStamp", body=[record(*s) for s in stamp]), record("Creator", creator)]),
        record("GlobalSettings", body=[record("Version", 1000), properties(*settings)]),
        record("Documents", body=[
            record("Count", 1), record("Document", 100000, "", "Scene", body=[record("RootNode", 0)])]),
        record("References", body=[]),
        record("Definitions", body=[record("Version", 100), record("Count", sum(counts.values()))] + [
            record("ObjectType", k, body=[record("Count", c)] + templates.get(k, [])) for k, c in counts.items()]),
        record("Objects", body=scene.objects),
        record("Connections", body=scene.links)]
    return "\n".join(["; FBX 7.5.0 project file", ""] + [line for part in parts for line in part + [""]])
