# SPDX-License-Identifier: MIT
"""Converts many models at once with the Windows tool under Wine: a worker that is killed loses one model, Ctrl-C ends
all of them, and nothing is left behind.

    try_workers.py i686|x86_64 FOLDER_OF_WINDOWS_PROGRAMS NATIVE_TOOL

Exit status 77: not tested.
"""
import json
import os
import pty
import re
import select
import shutil
import signal
import struct
import subprocess
import sys
import time
import zipfile
import zlib
from pathlib import Path

from wine import ROOT, set_temporary_folder, test_in_wine

MODELS = 6
PATIENCE = 90  # seconds


def png(side):
    """A picture that takes a while to be converted."""
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))
    rows = (b"\0" + bytes(3 * side)) * side
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", side, side, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows, 1)) + chunk(b"IEND", b""))


def make_models(folder):
    (folder / "models/textures").mkdir(parents=True)
    (folder / "models/textures/cloth.png").write_bytes(png(6000))
    for number in range(MODELS):
        shutil.copy(ROOT / "samples/scout.fbx", folder / f"models/m{number}.fbx")


class Tool:
    """The tool in a terminal of its own, converting the models two at a time."""

    def __init__(self, work, environment, programs, arguments):
        self.screen = b""
        command = ["wine", str(programs / "fbx2czp.exe"), "convert", "-q", "models", "-o", "out", "--jobs", "2",
                   *arguments]
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(work)
            os.execvpe("wine", command, environment)

    def read(self):
        """Takes what has come to the terminal, which would stand still otherwise."""
        while select.select([self.terminal], [], [], 0)[0]:
            try:
                self.screen += os.read(self.terminal, 4096)
            except OSError:
                return

    def workers(self):
        """Waits until two are at work. @return their process ids"""
        def at_work():
            found = [process for process in running("--obey") if seconds(process) > 0.1]
            return found if len(found) > 1 else None
        return self.wait_for(at_work)

    def press(self, key):
        os.write(self.terminal, key)

    def finish(self):
        """@return the exit status, None when it goes on"""
        def has_ended():
            # Some versions of Wine take the terminal for a console that nobody else has.
            if "Pressanykey" in self.told():
                self.press(b" ")
            return os.waitid(os.P_PID, self.pid, os.WEXITED | os.WNOHANG)
        ended = self.wait_for(has_ended)
        return ended and (ended.si_status if ended.si_code == os.CLD_EXITED else -ended.si_status)

    def told(self):
        """All that came, without spaces: the terminal gets letter by letter where it is to stand."""
        return re.sub(rb"\x1b\[[?0-9;]*[A-Za-z]|\s", b"", self.screen).decode(errors="replace")

    def wait_for(self, what):
        """@return what it returns, when that is something, else after a while nothing"""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            self.read()
            if found := what():
                return found
            time.sleep(0.02)
        return None


def running(word):
    found = []
    for process in Path("/proc").iterdir():
        try:
            words = (process / "cmdline").read_bytes().split(b"\0")
            if process.name.isdigit() and any(b"fbx2czp" in text for text in words[:2]) and word.encode() in words:
                found.append(int(process.name))
        except OSError:
            pass
    return found


def seconds(process):
    """@return how long it has had a processor"""
    try:
        fields = Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
    except OSError:
        return 0


def broken_packages(folder):
    broken = []
    for package in folder.glob("*.czp"):
        try:
            with zipfile.ZipFile(package) as archive:
                if archive.testzip() or len(archive.namelist()) < 10:
                    broken.append(package.name)
        except zipfile.BadZipFile:
            broken.append(package.name)
    return broken


def kill_a_worker(tool, work):
    os.kill(tool.workers()[0], signal.SIGKILL)
    code, totals = tool.finish(), json.loads((work / "report.json").read_text())["totals"]
    lost = tool.told().count("theconversionendedwith")
    return (code, totals["failed"], totals["succeeded"], lost) == (70, 1, MODELS - 1, 1)


def press_ctrl_c(tool, _work):
    tool.workers()
    tool.press(b"\x03")
    return tool.finish() == 130 and "interrupted;" in tool.told() and "conversionended" not in tool.told()


def kill_the_tool(tool, _work):
    tool.workers()
    for process in running("models"):
        os.kill(process, signal.SIGKILL)
    tool.finish()
    return tool.wait_for(lambda: not running("--obey"))


def try_all(work, environment, programs, _native_tool):
    temporary = set_temporary_folder(work, environment)
    make_models(work)
    differences = []
    for attempt in (kill_a_worker, press_ctrl_c, kill_the_tool):
        tool = Tool(work, environment, programs, ["--report", "report.json"])
        if not attempt(tool, work):
            differences.append(f"{attempt.__name__}: {tool.told()}")
        differences += [f"{attempt.__name__}: {name} is no whole package" for name in broken_packages(work / "out")]
        left = list(temporary.iterdir())
        if attempt is not kill_the_tool and left:
            differences.append(f"{attempt.__name__}: left are {left}")
        shutil.rmtree(work / "out", ignore_errors=True)
    return differences


if __name__ == "__main__":
    sys.exit(test_in_wine(sys.argv[1:], try_all, "workers"))
