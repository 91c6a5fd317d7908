# SPDX-License-Identifier: MIT
"""Which paths the Windows tool opens under Wine: pictures on drives and shares, names with wildcards, deep folders.

    try_paths.py i686|x86_64 FOLDER_OF_WINDOWS_PROGRAMS NATIVE_TOOL

Exit status 77: not tested.
"""
import shutil
import sys

from wine import FIXTURES, ROOT, members, run, test_in_wine

PICTURE = ROOT / "samples/textures/cloth.png"


def model(path, picture):
    """Writes a model that names a picture by this path alone."""
    path.parent.mkdir(parents=True, exist_ok=True)
    text = (ROOT / "samples/scout.fbx").read_bytes()
    text = text.replace(rb"C:\art\scout\textures\cloth.png", picture.encode()).replace(rb"textures\cloth.png", b"")
    path.write_bytes(text)


def place(path):
    path.parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(PICTURE, path)


def has_picture(package):
    return any(name == "cloth.tga" and len(content) > 1000 for name, content in members(package))


def try_paths(work, environment, programs, _native_tool):
    tool = ["wine", str(programs / "fbx2czp.exe")]
    drive, shares = work / "prefix/drive_c", work / "prefix/dosdevices/unc"
    for folder in (drive / "art", shares / "server/share/art", shares / "server/other"):
        place(folder / "cloth.png")
    share = r"\\server\share\art\cloth.png"
    cases = [  # where the model is, how the tool is told, the picture that it names, whether it is taken
        (work / "a/a.fbx", "a/a.fbx", r"C:\art\cloth.png", True),
        (work / "b/b.fbx", f"\\\\?\\Z:{work}/b/b.fbx".replace("/", "\\"), r"C:\art\cloth.png", True),
        (work / "c/c.fbx", "c/c.fbx", share, False),
        (work / "c/d.fbx", "c/d.fbx", r"\\?\UNC\server\share\art\cloth.png", False),
        (shares / "server/share/e.fbx", r"\\server\share\e.fbx", r"\\server\other\cloth.png", False),
        (shares / "server/share/f.fbx", r"\\server\share\f.fbx", share, True),
    ]
    differences = []
    for path, told, picture, taken in cases:
        model(path, picture)
        code, text = run(tool + ["convert", "-q", "--force", told], work, environment)
        package = path.with_suffix(".czp")
        if code != 0 or not package.exists() or has_picture(package) != taken:
            differences.append(f"{told} with {picture}: {code}, wanted is {taken}: {text[:300]}")

    deep = work / "models" / "/".join(["a-folder-with-a-long-name-one-of-many"] * 8)
    deep.mkdir(parents=True)
    for name in ("one.fbx", "two.fbx", "three.txt"):
        shutil.copy(FIXTURES[0], deep / name)
        shutil.copy(FIXTURES[0], work / "models" / name)
    for words, count in ((["models/*.fbx"], 2), (["models/t*"], 2), ([str(deep.relative_to(work)) + "/*.fbx"], 2),
                         (["models"], 4)):
        code, text = run(tool + ["check", "--json"] + words, work, environment)
        found = text.count('"model": ')
        if found != count:
            differences.append(f"{words[0][:40]}: {found} models in place of {count}: {code}: {text[:300]}")
    return differences


if __name__ == "__main__":
    sys.exit(test_in_wine(sys.argv[1:], try_paths, "paths"))
