# SPDX-License-Identifier: MIT
"""Models with a picture of every kind, for comparing what is made of them."""
import base64
import random
import struct
import zlib

from wine import ROOT

WEBP = ("UklGRrIAAABXRUJQVlA4WAoAAAAQAAAAEwAADQAAQUxQSBoAAAABmS5E9D+gNAAhiG7/dVX35ogJSIdPSBI4C1ZQOCByAAAA8AQAnQEqFAAOAD8R"
        "crBQLCakorAIAYAiCWwAnTKEeE+V24doI1WAWqbRkJZr8bNIAP6oX4vVzxANvCIqDRbSPRp729CPmJ1NvrkqZseH5qaZn93oiqKwikVa6Fl2"
        "u58+9fKh099jDUfakwDkHeg+AAAA")
SIDE = 32
PIXELS = random.Random(1).randbytes(SIDE * SIDE * 4)  # noise shows every difference


def png(depth, colour, row_bytes):
    rows = b"".join(b"\0" + PIXELS[row * row_bytes:][:row_bytes] for row in range(SIDE // 4))
    chunks = [(b"IHDR", struct.pack(">IIBBBBB", SIDE, SIDE // 4, depth, colour, 0, 0, 0)),
              (b"IDAT", zlib.compress(rows)), (b"IEND", b"")]
    return b"\x89PNG\r\n\x1a\n" + b"".join(
        struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data)) for name, data in chunks)


def tiff(compression, kind, width, height, samples, data):
    """One strip; three or four samples of 8 bits."""
    tags = [(256, 3, 1, width), (257, 3, 1, height), (258, 3, samples, 8), (259, 3, 1, compression), (262, 3, 1, kind),
            (273, 4, 1, 0), (277, 3, 1, samples), (278, 3, 1, height), (279, 4, 1, len(data))]
    after = 8 + 2 + 12 * len(tags) + 4
    values = {258: after, 273: after + 2 * samples}
    entries = b"".join(struct.pack("<HHII", tag, form, count, values.get(tag, value)) for tag, form, count, value in tags)
    head = b"II*\0" + struct.pack("<IH", 8, len(tags)) + entries + bytes(4)
    return head + struct.pack(f"<{samples}H", *[8] * samples) + data


def dds(name):
    return (b"DDS " + struct.pack("<5I", 124, 0x1007, SIDE, SIDE, 0) + bytes(52) + struct.pack("<II", 32, 4) + name +
            bytes(20) + struct.pack("<I", 0x1000) + bytes(16) + PIXELS)


def psd():
    return b"8BPS\0\1" + bytes(6) + struct.pack(">HIIHHIIIH", 3, SIDE, SIDE, 8, 3, 0, 0, 0, 0) + PIXELS[:SIDE * SIDE * 3]


def all_pictures():
    """@return file names and contents"""
    photo = (ROOT / "docs/pictures/page.jpg").read_bytes()
    return {
        "photo.jpg": photo, "drawing.webp": base64.b64decode(WEBP), "drawn.png": png(8, 6, SIDE * 4),
        "grey.png": png(8, 0, SIDE), "deep.png": png(16, 2, SIDE * 6), "layers.psd": psd(),
        "plain.tif": tiff(1, 2, SIDE, SIDE, 4, PIXELS), "packed.tif": tiff(8, 2, SIDE, SIDE, 3, zlib.compress(PIXELS[:SIDE * SIDE * 3])),
        "photo.tif": tiff(7, 6, 900, 600, 3, photo), "one.dds": dds(b"DXT1"), "three.dds": dds(b"DXT3"),
        "five.dds": dds(b"DXT5"), "cloth.png": (ROOT / "samples/textures/cloth.png").read_bytes()}


def make_models(folder):
    """A model for each picture, which it has as its texture."""
    model = (ROOT / "tests/fixtures/strip_7300_ascii.fbx").read_bytes()
    for name, content in all_pictures().items():
        (folder / name).write_bytes(content)
        (folder / f"{name}.fbx").write_bytes(model.replace(b"cloth.tga", name.encode()))
