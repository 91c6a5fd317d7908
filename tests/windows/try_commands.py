# SPDX-License-Identifier: MIT
"""Tries every command of the Windows tool under Wine, in folders of many names, and compares with this machine's.

    try_commands.py i686|x86_64 FOLDER_OF_WINDOWS_PROGRAMS NATIVE_TOOL

Exit codes and files have to be the same; text files end their lines with CR LF on Windows. Exit status 77: not tested.
"""
import shutil
import sys

from pictures import make_models
from wine import FIXTURES, ROOT, as_on_windows, members, run, set_temporary_folder, test_in_wine

DEEP = "/".join(["a folder with a long name, one of many"] * 8)  # more than 300 characters
PLACES = ["plain", "Jürgen & Søn", "Жанна", "日本語", DEEP]
# "@" stands for the place. Nothing else than Windows itself keeps a folder that deep from being the current one.
COMMANDS = [
    # Workers get the options in other words.
    ["convert", "-q", "@/models", "-o", "@/packages", "--report", "@/report.json", "--jobs", "2", "--rotation-y", "-90",
     "--rename", "L_femur=left=femur \"Größe\"", "--mesh-mode", "2", "--mesh", "", "--mesh", "head", "--no-settings",
     "--repair=false", "--double-sided", "hat", "--textures", "@", "--pack", "small"],
    ["convert", "-q", "@/scöut.fbx", "--scale", "95", "--pack", "small"],
    ["check", "--json", "@/scöut.fbx", "@/models"],
    ["inspect", "--json", "@/packages"],
    ["preview", "@/scöut.czp", "-o", "@/scöut.png"],
    ["preview", "@/scöut.czp", "-o", "@/scöut.html"],
    ["export", "@/scöut.czp", "-o", "@/scöut.glb"],
    ["export", "@/scöut.czp", "-o", "@/scöut.obj"],
    ["prove", "@/scöut.fbx"],
    ["finish", "-q", "@/scöut.fbx", "--rotation-y", "180", "--switch-on", "hat=Cap"],
    ["diff", "@/packages/strip_7500_binary.czp", "@/scöut.czp"],
    ["repack", "@/scöut.czp"],
    ["settings", "@/scöut.fbx"],
    ["manual"],
    ["completion", "bash"],
    ["convert", "-q", "@/fehlt.fbx"],
]


def fill(folder, place):
    (folder / "models/übrige").mkdir(parents=True)
    shutil.copy(ROOT / "samples/scout.fbx", folder / "scöut.fbx")
    for file in FIXTURES:
        shutil.copy(file, folder / "models")
    shutil.copy(FIXTURES[0], folder / "models/übrige/Größe.fbx")
    shutil.copy(ROOT / "samples/skin.tga", folder)
    # Windows has no place for most of these names, or takes them for each other.
    model = (ROOT / "samples/scout.fbx").read_bytes()
    for name, other in {b"head": b"BODY", b"hat": b"<h>a|t:?", b"backpack": b"nul"}.items():
        model = model.replace(b'Model::' + name + b'", "Mesh"', b"Model::" + other + b'", "Mesh"')
    (folder / "models/names.fbx").write_bytes(model)
    if place == PLACES[0]:
        make_models(folder / "models")


def content(file):
    """What has to be the same."""
    if file.suffix == ".czp":
        return [(name, as_on_windows(name, bytes_)) for name, bytes_ in members(file)]
    if file.suffix == ".json":  # holds paths and times; whether it is there is what counts
        return None
    return file.read_bytes().replace(b"\r\n", b"\n")


def compare(native, windows):
    """@return one line for each difference"""
    files = [{str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()}
             for folder in (native, windows)]
    if files[0] != files[1]:
        return [f"files: {sorted(files[0] ^ files[1])} are on one side only"]
    return [f"{name} differs" for name in sorted(files[0]) if content(native / name) != content(windows / name)]


def try_place(place, work, environment, tools):
    differences = []
    folders = {which: work / which / place for which in tools}
    for folder in folders.values():
        fill(folder, place)
    for command in COMMANDS:
        codes = {}
        for which, tool in tools.items():
            words = [word.replace("@", place) for word in command]
            codes[which], text = run(tool + words, work / which, environment)
        if codes["native"] != codes["windows"]:
            differences.append(f"{' '.join(command)}: {codes['windows']} in place of {codes['native']}: {text[:300]}")
    differences += compare(folders["native"], folders["windows"])
    return [f"{place[:20]}: {text}" for text in differences]


def try_all(work, environment, programs, native_tool):
    tools = {"native": [native_tool], "windows": ["wine", str(programs / "fbx2czp.exe")]}
    temporary = set_temporary_folder(work, environment)
    environment = dict(environment, SOURCE_DATE_EPOCH="1000000000")
    differences = []
    for place in PLACES:
        differences += try_place(place, work, environment, tools)
    return differences + [f"left in the temporary folder: {path.name}" for path in temporary.iterdir()]


if __name__ == "__main__":
    sys.exit(test_in_wine(sys.argv[1:], try_all, f"{len(COMMANDS)} commands in {len(PLACES)} folders"))
