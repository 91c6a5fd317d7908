# SPDX-License-Identifier: MIT
"""What the tests under Wine share."""
import os
import shutil
import subprocess
import tempfile
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FIXTURES = sorted((ROOT / "tests/fixtures").glob("*.fbx"))
TEXT = (".xfg", ".xrf")


def run(command, folder, environment):
    # Not through pipes: the services of Wine would keep them open.
    output = Path(environment["WINEPREFIX"]).parent / "output.txt"
    with open(output, "w+b") as stream:
        code = subprocess.run(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=stream,
                              stderr=subprocess.STDOUT, timeout=600, check=False).returncode
        stream.seek(0)
        return code, stream.read().decode(errors="replace")


def set_temporary_folder(work, environment):
    """@return the folder that the Windows programs take for their temporary files"""
    temporary = work / "Überreste"
    temporary.mkdir()
    for variable in ("TEMP", "TMP"):
        run(["wine", "reg", "add", r"HKCU\Environment", "/f", "/v", variable, "/d", f"Z:{temporary}"], work, environment)
    return temporary


def members(package):
    with zipfile.ZipFile(package) as archive:
        return [(info.filename, archive.read(info)) for info in archive.infolist()]


def as_on_windows(name, content):
    return content.replace(b"\r\n", b"\n").replace(b"\n", b"\r\n") if name.endswith(TEXT) else content


def test_in_wine(arguments, test, what):
    """Calls `test` with a folder, an environment, the folder of the Windows programs and this machine's tool.

    @return 0, 1 when it returns differences, or 77 when Wine cannot run programs of this width here
    """
    width = {"i686": "32", "x86_64": "64"}[arguments[0]]
    programs, native_tool = Path(arguments[1]).resolve(), str(Path(arguments[2]).resolve()) if len(arguments) > 2 else ""
    if not native_tool or not shutil.which("wine"):
        print("SKIPPED: needs Wine and this machine's fbx2czp (./build-windows --test)")
        return 77
    # Wine does not like prefixes of other users, and leaves services behind that have to be ended.
    with tempfile.TemporaryDirectory() as folder:
        work = Path(folder)
        environment = dict(os.environ, WINEPREFIX=str(work / "prefix"), WINEDEBUG="-all", LC_ALL="C.UTF-8",
                           WINEDLLOVERRIDES="mscoree,mshtml=")
        try:
            run(["wineboot", "-i"], work, environment)
            # For a program that it cannot run Wine may report success.
            if "fbx2czp" not in run(["wine", str(programs / "fbx2czp.exe"), "--version"], work, environment)[1]:
                print(f"SKIPPED: Wine cannot run {width}-bit programs on this machine (package wine{width})")
                return 77
            differences = test(work, environment, programs, native_tool)
        finally:
            run(["wineserver", "-k"], work, environment)
    print("\n".join(differences) or what + ": as on this machine")
    return 1 if differences else 0
