# SPDX-License-Identifier: MIT
"""Converts the sample and all fixtures with the Windows tool under Wine and with this machine's, and compares.

    compare_packages.py i686|x86_64 FOLDER_OF_WINDOWS_PROGRAMS NATIVE_TOOL

Members have to be the same byte for byte; text members end their lines with CR LF on Windows. Exit status 77: not
tested, because Wine cannot run programs of this width here.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
MODELS = sorted((ROOT / "tests/fixtures").glob("*.fbx")) + [ROOT / "samples/scout.fbx"]
TEXT = (".xfg", ".xrf")


def run(command, folder, environment):
    # Not through pipes: the services of Wine would keep them open.
    with open(folder / "output.txt", "w+b") as output:
        code = subprocess.run(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=output,
                              stderr=subprocess.STDOUT, timeout=120, check=False).returncode
        output.seek(0)
        return code, output.read().decode(errors="replace")


def members(package):
    with zipfile.ZipFile(package) as archive:
        return [(info.filename, archive.read(info)) for info in archive.infolist()]


def as_on_windows(name, content):
    return content.replace(b"\n", b"\r\n") if name.endswith(TEXT) else content


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
    folders = {name: work / name for name in ("native", "windows", "host")}
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


def main():
    width = {"i686": "32", "x86_64": "64"}[sys.argv[1]]
    programs, native_tool = Path(sys.argv[2]), sys.argv[3] if len(sys.argv) > 3 else ""
    if not native_tool or not shutil.which("wine"):
        print("SKIPPED: needs Wine and this machine's fbx2czp (./build-windows --test)")
        return 77
    # Wine does not like prefixes of other users, and leaves services behind that have to be ended.
    with tempfile.TemporaryDirectory() as folder:
        work = Path(folder)
        environment = dict(os.environ, WINEPREFIX=str(work / "prefix"), WINEDEBUG="-all",
                           WINEDLLOVERRIDES="mscoree,mshtml=")
        try:
            run(["wineboot", "-i"], work, environment)
            # For a program that it cannot run Wine may report success.
            if "fbx2czp" not in run(["wine", str(programs / "fbx2czp.exe"), "--version"], work, environment)[1]:
                print(f"SKIPPED: Wine cannot run {width}-bit programs on this machine (package wine{width})")
                return 77
            differences = convert_all(work, environment, programs, native_tool)
        finally:
            run(["wineserver", "-k"], work, environment)
    print("\n".join(differences) or f"{len(MODELS)} models: the same members as on this machine")
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
