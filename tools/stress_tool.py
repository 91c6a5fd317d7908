#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Kill fbx2czp at random moments and look at what is left. Not part of ./test.

Usage: stress_tool.py FBX2CZP [--times N] [--seed N]

Batches, final settings and repackings are killed (signal 9, all processes at once). Whatever lies under the name of
a package or document then has to be whole, and a second run has to complete.
"""
import argparse
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import zipfile

SAMPLE = pathlib.Path(__file__).parents[1] / "samples" / "scout.fbx"
MODELS = 12


def run(arguments, folder, kill_after=None):
    """The exit status; with `kill_after` seconds everything that runs is killed then."""
    environment = dict(os.environ, TMPDIR=str(folder / "tmp"))
    process = subprocess.Popen(arguments, cwd=folder, env=environment, start_new_session=True,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    if kill_after is not None:
        time.sleep(kill_after)
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
    return process.wait()


def broken(folder):
    """What looks like a package or a document and is not whole."""
    found = []
    for package in folder.rglob("*.czp"):
        try:
            with zipfile.ZipFile(package) as archive:
                whole = archive.testzip() is None and "skeleton.csf" in archive.namelist()
                whole = whole and len(archive.namelist()) >= MEMBERS and all(i.file_size for i in archive.infolist())
        except zipfile.BadZipFile:
            whole = False
        if not whole:
            found.append(str(package))
    for document in folder.rglob("*.xfg"):
        if not document.read_text("latin-1").rstrip().endswith("</cal_config>"):
            found.append(str(document))
    return found


def kill_runs(name, arguments, folder, times, dice, before=lambda: None):
    durations = []
    for _ in range(3):
        before()
        start = time.monotonic()
        if run(arguments, folder) != 0:
            sys.exit(f"{name}: does not run at all")
        durations.append(time.monotonic() - start)
    duration = min(durations)
    killed = 0
    for i in range(times):
        before()
        killed += run(arguments, folder, dice.uniform(0, duration)) == -signal.SIGKILL
        if wrong := broken(folder / "out"):
            sys.exit(f"{name}: run {i} left {wrong}")
    before()
    if run(arguments, folder) != 0 or broken(folder / "out"):
        sys.exit(f"{name}: the run after that did not complete")
    print(f"{name}: {killed} of {times} runs killed within {duration * 1000:.0f} ms each, nothing broken", flush=True)


def main():
    global MEMBERS
    parser = argparse.ArgumentParser(description="Kill fbx2czp at random moments.")
    parser.add_argument("fbx2czp")
    parser.add_argument("--times", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    tool, dice = os.path.abspath(options.fbx2czp), random.Random(options.seed)
    folder = pathlib.Path(tempfile.mkdtemp(prefix="ts3d_stress_"))
    try:
        for name in ("in", "out", "tmp"):
            (folder / name).mkdir()
        for i in range(MODELS):
            shutil.copy(SAMPLE, folder / "in" / f"m{i}.fbx")
        convert = [tool, "convert", "in", "-o", "out", "--jobs", "2"]
        MEMBERS = 0
        if run(convert, folder) != 0:
            sys.exit("convert: does not run at all")
        with zipfile.ZipFile(folder / "out" / "m0.czp") as archive:
            MEMBERS = len(archive.namelist())

        def empty_at_times():
            # New packages half of the time, replaced ones the other half.
            if dice.random() < 0.5:
                shutil.rmtree(folder / "out")
                (folder / "out").mkdir()
            shutil.rmtree(folder / "tmp")
            (folder / "tmp").mkdir()

        kill_runs("convert", convert, folder, options.times // 4, dice, empty_at_times)
        shutil.copy(SAMPLE, folder / "out" / "m0.fbx")
        finish = [tool, "finish", "out/m0.fbx", "--scale", "95", "--mesh", "body=Skin"]
        kill_runs("finish", finish, folder, options.times, dice)
        kill_runs("repack", [tool, "repack", "out/m0.czp"], folder, options.times, dice, lambda: run(finish, folder))
    finally:
        shutil.rmtree(folder)


if __name__ == "__main__":
    main()
