# SPDX-License-Identifier: MIT
"""A host in Python: checks and converts a model and applies final settings to its package.

    host.py LIBRARY MODEL.fbx PACKAGE.czp

LIBRARY is libfbx_to_ts3d.so, or fbx_to_ts3d.dll with a Python of the same width. `Converter` may be taken over as it is.
"""
import ctypes
import json
import os
import sys
from ctypes import c_char_p, c_double, c_float, c_int32, c_size_t, c_uint32, c_void_p

LineCallback = ctypes.CFUNCTYPE(None, c_void_p, c_char_p)
ProgressCallback = ctypes.CFUNCTYPE(c_int32, c_void_p, c_double)
WriteCallback = ctypes.CFUNCTYPE(c_int32, c_void_p, c_void_p, c_size_t)

REPAIR_AS_NEEDED = 32  # of FbxToTs3dRepair


class Options(ctypes.Structure):
    """FbxToTs3dOptions of the header, in its order; texts are UTF-8 bytes."""
    _fields_ = ([("size", c_uint32)] +
                [(name, c_int32) for name in ("rotationX", "rotationY", "actorType", "meshOptionMode", "repairs",
                                              "keepsPictures", "longestPictureSide", "packageLevel", "reserved")] +
                [(name, c_char_p) for name in ("boneRenames", "meshOptions", "exclusions", "pictureFolder")] +
                [("context", c_void_p), ("onLine", LineCallback), ("onProgress", ProgressCallback),
                 ("onPackage", WriteCallback)])


class FinalSettings(ctypes.Structure):
    """FbxToTs3dFinalSettings of the header."""
    _fields_ = [("size", c_uint32), ("scalePercent", c_float), ("rotationX", c_int32), ("rotationY", c_int32),
                ("boneRenames", c_char_p), ("meshes", c_char_p)]


class ConverterError(Exception):
    """A call that failed, with its code of FbxToTs3dResult."""

    def __init__(self, result, text):
        super().__init__(text)
        self.result = result


class Converter:
    """One converter of the library; different ones may work in different threads at once."""

    def __init__(self, library):
        self._library = ctypes.CDLL(os.path.abspath(library))
        for name, arguments, result in (
                ("Create", [], c_void_p), ("Destroy", [c_void_p], c_int32),
                ("SetOptions", [c_void_p, ctypes.POINTER(Options)], c_int32),
                ("Convert", [c_void_p, c_char_p, c_char_p], c_int32),
                ("ConvertMemory", [c_void_p, c_char_p, c_char_p, c_size_t, c_char_p], c_int32),
                ("Finish", [c_void_p, c_char_p, ctypes.POINTER(FinalSettings)], c_int32),
                ("Check", [c_void_p, c_char_p], c_int32),
                ("ErrorText", [c_void_p], c_char_p), ("ResultJson", [c_void_p], c_char_p)):
            function = getattr(self._library, "FbxToTs3d" + name)
            function.argtypes, function.restype = arguments, result
        self._handle = self._library.FbxToTs3dCreate()
        self._options = None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._library.FbxToTs3dDestroy(self._handle)

    def set_options(self, on_line=None, on_progress=None, **options):
        """Takes the fields of Options by name; on_progress returns True to cancel."""
        texts = {key: value.encode() if isinstance(value, str) else value for key, value in options.items()}
        # The callback objects have to live as long as the library may call them.
        self._options = Options(size=ctypes.sizeof(Options), **texts)
        if on_line:
            self._options.onLine = LineCallback(lambda _, line: on_line(line.decode(errors="replace")))
        if on_progress:
            self._options.onProgress = ProgressCallback(lambda _, fraction: 1 if on_progress(fraction) else 0)
        self._require(self._library.FbxToTs3dSetOptions(self._handle, self._options))

    def convert(self, model, package=None):
        self._require(self._library.FbxToTs3dConvert(self._handle, model.encode(), package and package.encode()))
        return json.loads(self._library.FbxToTs3dResultJson(self._handle))

    def finish(self, package, **settings):
        given = FinalSettings(size=ctypes.sizeof(FinalSettings), **settings)
        self._require(self._library.FbxToTs3dFinish(self._handle, package.encode(), given))

    def check(self, model):
        self._library.FbxToTs3dCheck(self._handle, model.encode())
        return json.loads(self._library.FbxToTs3dResultJson(self._handle))["check"]

    def _require(self, result):
        if result != 0:
            raise ConverterError(result, self._library.FbxToTs3dErrorText(self._handle).decode(errors="replace"))


def main(library, model, package):
    with Converter(library) as converter:
        for finding in converter.check(model)["messages"]:
            print(f"{finding['severity']}: {finding['message']}")
        converter.set_options(repairs=REPAIR_AS_NEEDED, on_line=lambda line: print(line) if line.startswith(">") else None)
        done = converter.convert(model, package)
        print(f"{done['triangles']} triangles in {len(done['members'])} files")
        converter.finish(package, scalePercent=95, rotationY=180, boneRenames=b"L_femur=left femur", meshes=b"hat=~Cap|hat_a=~Cap band")
    print("finished with result 0")


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]) if len(sys.argv) == 4 else __doc__)
