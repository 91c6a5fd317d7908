#!/usr/bin/env python3
"""Write the sample character: scout.fbx (ASCII 7.5) and its textures skin.tga, textures/cloth.png and
textures/metal.png.

Usage: make_scout.py [output directory, default: the directory of this script]

Everything is computed from the tables and shapes below; two runs give the same bytes.
Units are centimetres, Y is up, the scout faces +Z and its left side is +X.
"""
import math
import os
import struct
import sys
import zlib

sys.dont_write_bytecode = True  # leave no cache directory beside the samples

from fbx_ascii import (Mesh, Y, Z, add, build_scene, document, dot, euler_angles, euler_matrix, frame,
                       lerp, matmul, right, rigid_inverse, smooth, translation, unit)

# ---- skeleton ---------------------------------------------------------------------------------------------------

CENTRE = [("Mobo", None, (0, 76, 0)), ("lowerspine", "Mobo", (0, 84, -0.5)), ("midspine", "lowerspine", (0, 94, -1)),
          ("upperspine", "midspine", (0, 104, -1.5)), ("lowerneck", "upperspine", (0, 115, -1.5)),
          ("midneck", "lowerneck", (0, 119, -0.8)), ("head", "midneck", (0, 123, 0)),
          ("headcontrol", "head", (0, 166, 0)), ("packcontrol", "upperspine", (0, 104, -30))]
LEFT = [("L_clav", "upperspine", (4, 111, -1)), ("L_shoulder", "L_clav", (15.5, 109.5, -2)),
        ("L_bicepA", "L_shoulder", (22.5, 101, -2.5)), ("L_forearm", "L_bicepA", (29.5, 92.5, -3)),
        ("L_forearmA", "L_forearm", (35.5, 84, -1)), ("L_hand", "L_forearmA", (41.5, 75.5, 1)),
        ("L_femur", "Mobo", (8.6, 72, 0)), ("L_tibia", "L_femur", (9, 41, 0.8)),
        ("L_foot", "L_tibia", (9.4, 10, -1.5)), ("L_toe", "L_foot", (10.8, 3, 9))]

RIGHT = [(right(n), right(p), (-x, y, z)) for n, p, (x, y, z) in LEFT]
TABLE = CENTRE + LEFT + RIGHT
JOINT = {n: p for n, _, p in TABLE}

def build_bones():
    """Local X of a bone points to its first child. The globals are computed back from the rounded local
    values that go into the file, so that pose, clusters and hierarchy agree."""
    bones, globl, axis = [], {}, {}
    for name, parent, pos in TABLE:
        child = next((p for _, q, p in TABLE if q == name), None)
        axis[name] = Z if name.endswith("toe") else unit(add(child, pos, -1)) if child else axis[parent]
        if parent is None:
            want = translation(pos)
        else:
            w = axis[name]
            u, v = frame(w, Y if abs(w[2]) > 0.75 else Z)
            want = [[w[r], u[r], v[r], pos[r]] for r in range(3)] + [[0, 0, 0, 1]]
            want = matmul(rigid_inverse(globl[parent]), want)
        t = [round(want[r][3], 4) + 0.0 for r in range(3)]
        r = [round(a, 4) + 0.0 for a in euler_angles(want)]
        local = euler_matrix(t, r)
        globl[name] = matmul(globl[parent], local) if parent else local
        bones.append((name, parent, t, r))
    return bones, globl

def chain(names, blend):
    """Weights along a chain of bones: at each joint the next bone takes over within +-blend."""
    pts = [JOINT[n] for n in names]
    def weights(p):
        w = {names[0]: 1.0}
        for j in range(1, len(pts)):
            n = unit(add(unit(add(pts[j], pts[j-1], -1)), unit(add(pts[min(j+1, len(pts)-1)], pts[j], -1))))
            f = smooth((dot(add(p, pts[j], -1), n) / blend + 1) / 2)
            w = {k: x * (1 - f) for k, x in w.items()}
            w[names[j]] = f
        return w
    return weights

def rigid(name): return lambda p: {name: 1.0}

# ---- the scout --------------------------------------------------------------------------------------------------

# Areas of the textures: u0, v0, u1, v1 with v upwards. Limbs that are lofted downwards use a half turn.
SHIRT, SLEEVE, TROUSERS = (.01, .51, .49, .99), (.38, .52, .49, .99), (.51, .51, .99, .99)
BOOT, SHAFT, FELT = (.01, .01, .49, .49), (.08, .02, .42, .48), (.51, .01, .99, .24)
SCARF, BUCKLE, LEATHER = (.51, .39, .99, .49), (.52, .379, .98, .4), (.51, .27, .99, .36)
FACE, PLAIN, EYE = (.01, .51, .99, .99), (.02, .02, .48, .48), (.52, .01, .73, .49)
HAIR, LIPS = (.77, .27, .98, .48), (.77, .02, .98, .23)
PANEL, PLATE, BRASS = (.01, .01, .99, .61), (.01, .66, .49, .99), (.52, .66, .98, .98)

def turned(r): return (r[2], r[3], r[0], r[1])

def build_body():
    m = Mesh("body", ["cloth", "skin"])
    spine = chain(["Mobo", "lowerspine", "midspine", "upperspine", "lowerneck"], 5.0)
    def torso(p):
        w, side = spine(p), "L_" if p[0] > 0 else "R_"
        for bone, f in ((side + "clav", 0.7 * smooth((abs(p[0]) - 5) / 8) * smooth((p[1] - 101) / 9)),
                        (side + "femur", 0.5 * smooth((abs(p[0]) - 2) / 6) * smooth((77 - p[1]) / 8))):
            w = {k: x * (1 - f) for k, x in w.items()}
            w[bone] = f
        return w
    m.lathe([(64.5, 0, 8, 6), (67, 0, 12.5, 8.6), (72, 0, 15, 10), (81, -.2, 14.4, 9.8)],
            16, "cloth", TROUSERS, torso, 2.3, "f-")
    m.lathe([(81, -.3, 14, 9.6), (89, -.5, 13.6, 9.6), (98, -.9, 14.6, 10.2), (104, -1.2, 15.6, 10.3),
             (109, -1.4, 14.8, 9.4), (112.5, -1.5, 11.5, 8), (115, -1.5, 7.5, 6.5)],
            16, "cloth", SHIRT, torso, 2.4, "--")
    m.lathe([(79.2, 0, 14, 9.4), (79.4, 0, 15.6, 10.8), (83.2, -.2, 15, 10.4), (83.4, -.3, 13.4, 9.2)],
            16, "cloth", LEATHER, torso, 2.3, "--")
    m.tube([((0, 81.3, 9), 3.6, 2.9), ((0, 81.3, 11), 3.6, 2.9), ((0, 81.3, 11.5), 3, 2.3)],
           Y, 8, "cloth", BUCKLE, torso, 5, "-f")
    m.lathe([(111, -1.5, 6, 6), (117, -1.2, 5.5, 5.5), (124, 0, 5.8, 5.8)],
            10, "skin", PLAIN, chain(["upperspine", "lowerneck", "midneck", "head"], 2.5), 2, "--")
    m.lathe([(112, -1, 12.6, 9.9), (114.6, -1, 11.4, 9.6), (117, -1, 8.4, 8), (116.6, -1, 5.6, 5.6)],
            14, "cloth", SCARF, chain(["upperspine", "lowerneck"], 4), 2, "--",
            lambda p: (p[0], p[1] - 0.22 * max(0, p[2]), p[2]))
    m.blob((0, 109.8, 9.4), (2.2, 1.9, 2.2), "cloth", LEATHER, torso, 6, 3)

    mark = m.mark()  # from here on the left side only
    m.tube([((.6, 109, 9.6), 1.2, .7), ((2, 105, 10.6), 2.2, .6), ((4.2, 99, 10.6), 2.6, .4)],
           Z, 6, "cloth", SCARF, torso)
    m.tube([((9.2, 110, -11.5), 1.8, .8), ((9.2, 114, -5), 1.8, .9), ((9.2, 114.2, 1.5), 1.8, .9),
            ((9.4, 109, 6.9), 1.8, .8), ((9.4, 102, 8.3), 1.8, .8), ((9.8, 94, 8), 1.8, .8), ((11, 90, 6.8), 1.8, .8),
            ((14, 87, 1), 1.6, 1.0), ((13.2, 86, -6), 1.6, .9)],
           (0, .45, .9), 4, "cloth", LEATHER, torso, 2, "--")

    arm = chain(["L_clav", "L_shoulder", "L_bicepA", "L_forearm", "L_forearmA", "L_hand"], 4.0)
    s, e, w = JOINT["L_shoulder"], JOINT["L_forearm"], JOINT["L_hand"]
    m.tube([((8.5, 110.2, -1.6), 5, 6), ((13, 110, -1.8), 6.6, 7.2), (lerp(s, e, .12), 7.5, 7.4),
            (lerp(s, e, .4), 7, 6.8), (lerp(s, e, .72), 6.7, 6.6), (lerp(s, e, .74), 7.6, 7.5),
            (lerp(s, e, .93), 7.4, 7.3), (lerp(s, e, .94), 5, 5)], Z, 10, "cloth", turned(SLEEVE), arm, 2, "--")
    m.tube([(lerp(s, e, .75), 5, 5), (e, 5.2, 5.3), (lerp(e, w, .2), 5.4, 5.4), (lerp(e, w, .55), 4.9, 4.8),
            (lerp(e, w, 1.02), 3.5, 3.9)], Z, 10, "skin", turned(PLAIN), arm, 2, "--")
    m.tube([(lerp(e, w, .68), 4, 4), (lerp(e, w, .69), 5.2, 5.2), (lerp(e, w, .88), 4.7, 4.9),
            (lerp(e, w, .89), 3.5, 3.5)], Z, 10, "cloth", LEATHER, arm, 2, "--")
    d = unit(add(w, e, -1))
    u, v = frame(d, Z)
    def at(along, out, fore): return add(add(add(w, d, along), u, out), v, fore)
    m.tube([(at(-1, 0, 0), 3.1, 3.6), (at(2, 0, .2), 3.1, 4.6), (at(5.5, 0, .2), 3.1, 5.4),
            (at(8.5, -.2, 0), 2.7, 5.2)], Z, 10, "skin", turned(PLAIN), arm, 2.4, "-t")
    for fore, size in ((3.5, 5.4), (0, 6.4), (-3.5, 5)):
        m.tube([(at(7.5, 0, fore), 1.8, 1.8), (at(8 + size, -1.3, fore * 1.1), 1.8, 1.8),
                (at(9 + size, -2, fore * 1.1), 1.0, 1.1)], Z, 6, "skin", PLAIN, rigid("L_hand"), 2, "-t")
    m.tube([(at(2, -.5, 3), 1.9, 2), (at(4, -1, 6), 2, 2), (at(7, -1.8, 7.6), 1.8, 1.8),
            (at(8.4, -2.2, 7.9), 1.1, 1.1)], d, 6, "skin", PLAIN, rigid("L_hand"), 2, "-t")

    leg = chain(["Mobo", "L_femur", "L_tibia", "L_foot"], 5.0)
    m.tube([((8.2, 74, 0), 6.6, 8.6), ((8.4, 68, 0), 8, 9), ((8.7, 57, .2), 8, 8.6), ((9, 47, .6), 7.4, 7.8),
            ((9, 41, 1), 7.2, 7.7), ((9.1, 34, .6), 7, 7.4), ((9.3, 24, -.3), 7.9, 8.1), ((9.3, 21.5, -.3), 5.8, 6)],
           Z, 12, "cloth", turned(TROUSERS), leg, 2, "--")
    m.tube([((9.3, 22.4, -.4), 7, 7.3), ((9.3, 19.6, -.6), 7, 7.3), ((9.3, 19.2, -.6), 6.3, 6.6),
            ((9.4, 13, -1), 6.2, 6.6), ((9.5, 7, -1), 6.2, 6.8)], Z, 12, "cloth", turned(SHAFT), leg, 2, "--")
    ankle, ball = chain(["L_tibia", "L_foot"], 4.0), chain(["L_foot", "L_toe"], 4.0)
    def boot(p):
        f = ankle(p)["L_tibia"] * smooth((p[1] - 6) / 6)
        return {"L_tibia": f, **{k: x * (1 - f) for k, x in ball(p).items()}}
    m.tube([((9.2, 4, -8.2), 3.6, 4.6), ((9.2, 4.4, -7), 5.6, 6), ((9.3, 4.8, -3), 6.6, 7.6), ((9.6, 4.6, 2), 6.6, 7.8),
            ((10.1, 4, 6), 6.9, 6.6), ((10.6, 3.3, 12), 7.2, 5.3), ((11, 2.8, 16.8), 4.8, 3.8),
            ((11, 2.5, 17.8), 2.6, 2.4)],
           Y, 12, "cloth", BOOT, boot, 2.3, "tt", lambda p: (p[0], max(p[1], 0.0), p[2]))
    m.mirror(mark)
    return m

SKULL = [(122, 2.6, 6.5, 6.5), (125, 2.1, 11, 10.8), (130, 1.5, 15, 14.2), (136, 1, 17, 16), (142, .6, 17.5, 16.8),
         (148, 0, 17, 16.6), (154, -.2, 13.8, 13.8), (159, -.2, 6, 6)]

def on_face(x, y, lift=0.0):
    """A point on the front of the head."""
    for a, b in zip(SKULL, SKULL[1:]):
        if a[0] <= y <= b[0]:
            _, zc, rx, rz = lerp(a, b, (y - a[0]) / (b[0] - a[0]))
            return (x, y, zc + (rz + lift) * math.sqrt(1 - (x / rx) ** 2))
    raise ValueError(y)

def build_head():
    m = Mesh("head", ["skin"])
    bone = rigid("head")
    def jaw(p):
        f = 0.5 * smooth((126 - p[1]) / 5)
        return {"head": 1 - f, "midneck": f}
    m.lathe(SKULL, 16, "skin", FACE, jaw)
    m.lathe([(127, -4.6, 13, 11), (130, -4.9, 16.2, 12.9), (136, -5, 18.4, 14.4), (143, -5, 18.9, 15.4),
             (150, -4.2, 17.6, 15)], 16, "skin", HAIR, bone, 2, "--")
    m.blob(on_face(0, 134.6, .4), (2.7, 2.6, 2.3), "skin", PLAIN, bone)
    smile = [(-6.4, 129.9), (-4, 128.4), (0, 127.7), (4, 128.4), (6.4, 129.9)]
    m.tube([(on_face(x, y, .1), .5 - .03 * abs(x), .9 - .09 * abs(x)) for x, y in smile], Y, 6, "skin", LIPS, bone)

    mark = m.mark()
    m.blob(add(on_face(6.9, 140.2), (0, 0, -.6)), (3.9, 4.9, 2.4), "skin", EYE, bone, 10, 6, unit((.3, 0, 1)), Y)
    brow = [(3.6, 145.4, .5), (5.6, 146.2, .9), (8, 146.4, .9), (10.4, 145.6, .4)]
    m.tube([(on_face(x, y, .2), .7, r) for x, y, r in brow], Y, 6, "skin", HAIR, bone)
    m.blob((17.6, 136.8, .4), (2.6, 3.6, 4.6), "skin", PLAIN, bone)
    m.mirror(mark)
    return m

def build_hat():
    m = Mesh("hat", ["cloth", "metal"])
    bone = rigid("head")
    def curl(p): return (p[0], p[1] + 0.0075 * p[0] ** 2 - 0.003 * p[2] ** 2 - 0.07 * min(0, p[2]), p[2])
    def dent(p): return (p[0] * (1 - 0.22 * smooth((p[1] - 158) / 9) * smooth(p[2] / 12)), p[1], p[2])
    m.lathe([(149.6, 0, 16, 16), (149, 0, 23, 22.6), (149.2, 0, 28.8, 28), (149.8, 0, 29.4, 28.6),
             (150.4, 0, 28.8, 28), (150.8, 0, 18, 17.8)], 20, "cloth", FELT, bone, 2, "--", curl)
    m.lathe([(149.5, 0, 18.2, 18), (154, 0, 17.4, 17.3), (160, -.3, 15.8, 16.2), (165, -.6, 13, 14),
             (168.8, -.8, 9, 10.4), (169.8, -.8, 6.5, 8), (168.6, -.6, 3, 4.5)],
            20, "cloth", FELT, bone, 2, "-f", dent)
    m.lathe([(150, 0, 18, 17.8), (150.6, 0, 19, 18.8), (154.2, 0, 18.2, 18), (154.6, 0, 17, 17)],
            20, "cloth", LEATHER, bone, 2, "--")
    m.tube([((0, 156.2, 16), 3.4, 3.6), ((0, 156.2, 18.6), 3.4, 3.6), ((0, 156.2, 19.3), 2.5, 2.7)],
           Y, 10, "metal", BRASS, bone, 2, "-f")
    return m

def build_pack():
    m = Mesh("backpack", ["metal", "cloth"], (0, 96, -18))
    bone = rigid("upperspine")
    m.lathe([(81, -18.6, 10, 5), (82.5, -18.6, 12.4, 7.2), (104, -18.6, 12.8, 7.5), (109.5, -18.4, 12, 7),
             (111, -18.2, 9.5, 5)], 16, "metal", PANEL, bone, 5, "ff")
    m.lathe([(84, -26.6, 6.5, 1.6), (85, -26.6, 8, 2.6), (96, -26.6, 8, 2.6), (97, -26.6, 6.5, 1.6)],
            12, "metal", PLATE, bone, 5, "ff")
    roll = [(-16, 4), (-15.6, 5.2), (0, 5.4), (15.6, 5.2), (16, 4)]
    m.tube([((x, 115.6, -17.6), r, r) for x, r in roll], Y, 10, "cloth", SHAFT, bone, 2, "ff")
    for x in (-8, 8):
        band = [(-1.5, 5), (-1.4, 5.9), (1.4, 5.9), (1.5, 5)]
        m.tube([((x + k, 115.6, -17.6), r, r) for k, r in band], Y, 10, "cloth", LEATHER, bone, 2, "--")
    m.blob((14.6, 92, -18.6), (4.2, 4.6, 7), "metal", BRASS, bone)
    m.tube([((14.6, 98, -18.6), 1.5, 1.5), ((14.6, 101, -18.6), 1.5, 1.5)], Z, 8, "metal", PLATE, bone, 2, "-f")
    m.tube([((-11.5, 103, -22.5), 1.3, 1.3), ((-12.6, 109, -22.6), 1.1, 1.1), ((-20, 136, -23.5), .45, .45)],
           Z, 6, "metal", PLATE, bone, 2, "f-")
    m.blob((-20.2, 136.8, -23.5), (1.7, 1.7, 1.7), "metal", BRASS, bone, 6, 3)
    return m

# ---- textures ---------------------------------------------------------------------------------------------------

def grain(x, y): return ((x * 7919 + y * 104729 + x * y * 31) % 97) / 97 - 0.5  # repeatable noise

def cloth(x, y):
    if y >= 32:
        weave = 7 * ((x + y) % 2) + 10 * grain(x, y)
        if x >= 32:
            return add((78, 84, 96), (1, 1, 1), weave - (12 if x % 16 == 8 else 0))
        pocket = abs(abs(x - 15.5) - 5) < 2.6 and 47 <= y <= 53
        button = x in (15, 16) and y % 5 == 2
        return add((104, 92, 58) if button else (150, 134, 86) if pocket else (172, 156, 104), (1, 1, 1), weave)
    if x < 32:  # boots; both ends of u are the sole
        return add((44, 36, 32) if x < 4 or x > 27 else (112, 68, 40), (1, 1, 1), 14 * grain(x, y))
    if y >= 24:
        return (226, 196, 92) if y < 26 or y > 29 else add((186, 52, 40), (1, 1, 1), 10 * grain(x, y))
    return add((74, 46, 30) if y >= 16 else (74, 96, 62), (1, 1, 1), 12 * grain(x, y))

def skin(x, y):
    base = add((232, 178, 140), (1, 1, 1), 6 * grain(x, y))
    if y >= 32:  # the head: cheeks, darker under the chin
        blush = max(0.0, 1 - math.hypot(abs(x - 31.5) - 8, (y - 42) * 1.3) / 4.5)
        return add(add(base, (6, -46, -40), blush), (-40, -40, -36), max(0, 35 - y) / 4)
    if x < 32:
        return base
    if x < 48:  # eye: white, iris, pupil towards the front pole
        return (24, 20, 24) if y >= 26 else (64, 112, 84) if y >= 23 else (246, 244, 238)
    return add((82, 46, 28), (1, 1, 1), 14 * grain(x * 3, y // 4)) if y >= 16 else (120, 40, 38)

def metal(x, y):
    if y >= 41:
        tone = (132, 140, 146) if x < 32 else (214, 168, 72)
        return add(tone, (1, 1, 1), 10 * grain(x // 4, y))
    seam = x % 16 in (0, 15) or y in (4, 5, 33, 34)
    rivet = x % 16 in (3, 12) and y % 8 == 1
    return add((70, 92, 88) if seam else (176, 190, 182) if rivet else (98, 128, 120), (1, 1, 1), 10 * grain(x, y // 3))

SIZE = 64  # pixels a side

def pixel(paint, x, y): return bytes(max(0, min(255, int(round(c)))) for c in paint(x, y))

def tga(paint):
    rows = [pixel(paint, x, y)[::-1] for y in range(SIZE) for x in range(SIZE)]  # from the bottom up
    return struct.pack("<BBBHHBHHHHBB", 0, 0, 2, 0, 0, 0, 0, 0, SIZE, SIZE, 24, 0) + b"".join(rows)

def png(paint):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    rows = [b"\0" + b"".join(pixel(paint, x, y) for x in range(SIZE)) for y in reversed(range(SIZE))]
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", SIZE, SIZE, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(b"".join(rows), 9)) + chunk(b"IEND", b""))

# name, painter, picture, ambient, specular, specular factor, shininess
MATERIALS = [("cloth", cloth, "textures\\cloth.png", (.24, .22, .18), (.1, .1, .1), .3, 6.0),
             ("skin", skin, "skin.tga", (.3, .22, .2), (.3, .26, .24), .5, 14.0),
             ("metal", metal, "textures\\metal.png", (.16, .18, .18), (.9, .9, .85), 1.0, 48.0)]

def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    meshes = [build_body(), build_head(), build_hat(), build_pack()]
    scene = build_scene(*build_bones(), meshes, MATERIALS, "C:\\art\\scout\\")
    with open(os.path.join(out, "scout.fbx"), "w", encoding="ascii", newline="\n") as f:
        f.write(document(scene, "make_scout.py"))
    os.makedirs(os.path.join(out, "textures"), exist_ok=True)
    for _, paint, picture, *_ in MATERIALS:
        with open(os.path.join(out, picture.replace("\\", "/")), "wb") as f:
            f.write(tga(paint) if picture.endswith(".tga") else png(paint))
    for m in meshes:
        print("%-9s %5d points %5d polygons" % (m.name, len(m.points), len(m.polys)))

if __name__ == "__main__":
    main()
