# SPDX-License-Identifier: MIT
"""A host in Python by the four functions ConvertFBXFile...: converts a model and applies final settings to it.

    classic_host.py LIBRARY FOLDER MODEL.fbx     afterwards FOLDER holds MODEL.czp and MODEL.xfg

LIBRARY is libfbx_to_ts3d.so, or fbx_to_ts3d.dll with a Python of the same width.
"""
import ctypes
import os
import sys
from ctypes import POINTER, byref, c_char_p, c_float, c_int32, c_uint8, c_void_p

StatusCallback = ctypes.CFUNCTYPE(None, c_void_p, c_char_p)
TextureCallback = ctypes.CFUNCTYPE(None, c_void_p, c_char_p, POINTER(c_uint8))

CONVERT3 = [c_char_p, c_float, c_int32, c_int32, c_int32, c_char_p, POINTER(c_int32), POINTER(c_int32), c_void_p,
            StatusCallback, TextureCallback, c_int32, c_char_p]
FINISH = [c_char_p, c_float, c_int32, c_int32, c_char_p, c_char_p, c_void_p, StatusCallback]

# Every mesh file of samples/scout.fbx, as the pass hides those that it is not given. The hat gets a switch.
MESHES = b"body=body|body_a=body_a|head=head|hat=~Cap|hat_a=~Cap band|backpack=backpack|backpack_a=backpack_a"


def load(path):
    library = ctypes.CDLL(os.path.abspath(path))
    library.ConvertFBXFile3.argtypes = CONVERT3
    library.ConvertFBXFileFinish.argtypes = FINISH
    return library


@StatusCallback
def on_status(_context, text):
    print(os.fsdecode(text))


@TextureCallback
def on_texture(_context, path, converted):
    # A host that can convert pictures writes the ".tga" file here and sets converted[0] to 1.
    print(os.fsdecode(path) + (": its .tga file is taken" if converted[0] else ": has no .tga file"))


def main():
    library = load(sys.argv[1])
    # Work files are deleted from the current directory: it has to be the model's folder.
    os.chdir(sys.argv[2])
    # The library splits paths at the backslash, on every system.
    path = os.path.join(os.getcwd(), sys.argv[3]).replace("/", "\\")
    # Windows: the system's code page, which os.fsencode does not use there.
    model = path.encode("mbcs") if os.name == "nt" else os.fsencode(path)
    vertices, triangles = c_int32(), c_int32()
    result = library.ConvertFBXFile3(model, 0.0, 0, 0, 0, None, byref(vertices), byref(triangles), None, on_status,
                                     on_texture, 0, None)
    print(f"converted with result {result}: {vertices.value} vertices, {triangles.value} triangles")
    if result != 0:
        return result
    # In the same process: the library remembers the skeleton and the actor type. The pass deletes the document from
    # the current directory; from another one it stays beside the package for the next change.
    os.chdir("..")
    result = library.ConvertFBXFileFinish(model, 95.0, 180, 0, b"L_femur=left femur", MESHES, None, on_status)
    print(f"finished with result {result}")
    return result


if __name__ == "__main__":
    sys.exit(main() if len(sys.argv) == 4 else __doc__)
