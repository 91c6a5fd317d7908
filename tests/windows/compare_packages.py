# SPDX-License-Identifier: MIT
"""Converts the sample and all fixtures with the Windows tool under Wine and with this machine's, and compares.

    compare_packages.py i686|x86_64 FOLDER_OF_WINDOWS_PROGRAMS NATIVE_TOOL

Members have to be the same byte for byte; text members end their lines with CR LF on Windows. Exit status 77: not
tested, because Wine cannot run programs of this width here.
"""
import shutil
import sys

from wine import FIXTURES, ROOT, as_on_windows, members, run, test_in_wine

MODELS = FIXTURES + [ROOT / "samples/scout.fbx"]


def compare(model, native, windows):
    """@return one line for each difference"""
    packages = [members((folder / model).with_suffix(".czp")) for folder in (native, windows)]
    names = [[name for name, _ in package] for package in packages]
    if names[0] != names[1]:
        return [f"{model}: members {names[0]} and {names[1]}"]
    return [f"{model}: {name} differs" for (name, expected), (_, content) in zip(*packages)
            if as_on_windows(name, expected) != content]


def convert_all(work, environment, programs, native_tool):
    differences = []
    folders = {name: work / name for name in ("native", "windows")} | {"host": work / "Jürgen"}
    for folder in folders.values():
        folder.mkdir()
        for file in MODELS + sorted((ROOT / "samples").glob("*.tga")):
            shutil.copy(file, folder)
    names = [model.name for model in MODELS]
    tools = {"native": [native_tool], "windows": ["wine", str(programs / "fbx2czp.exe")]}
    for which, tool in tools.items():
        code, text = run(tool + ["convert", "-q"] + names, folders[which], environment)
        if code != 0:
            return [f"{which} tool ended with {code}: {text}"]
    for name in names:
        differences += compare(name, folders["native"], folders["windows"])

    # The library itself, through a host in C, and the tool's way to the same settings.
    code, text = run(["wine", str(programs / "ts3d_host.exe"), ".", "scout.fbx"], folders["host"], environment)
    if code != 0 or "finished with result 0" not in text:
        differences.append(f"the host ended with {code}: {text}")
    finish = ["finish", "-q", "scout.fbx", "--scale", "95", "--rotation-y", "180", "--switch-on", "hat=Cap"]
    for which, tool in tools.items():
        for arguments in (finish, ["repack", "scout.czp"]):
            code, text = run(tool + arguments, folders[which], environment)
            if code != 0:
                differences.append(f"{which} tool, {arguments[0]}: {code}: {text}")
    differences += compare("scout.fbx", folders["native"], folders["windows"])
    models = [{name: content for name, content in members(folders[which] / "scout.czp") if name != "scout.xfg"}
              for which in ("host", "windows")]
    if models[0] != models[1]:
        differences.append("the host's package is not the tool's")
    return differences


if __name__ == "__main__":
    sys.exit(test_in_wine(sys.argv[1:], convert_all, f"{len(MODELS)} models"))
