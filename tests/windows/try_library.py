# SPDX-License-Identifier: MIT
"""Calls the Windows library in eight threads at once under Wine: converters side by side, and the functions
ConvertFBXFile... one after the other. Each thread has to get what one alone gets.

    try_library.py i686|x86_64 FOLDER_OF_WINDOWS_PROGRAMS NATIVE_TOOL

Exit status 77: not tested.
"""
import sys

from wine import ROOT, run, test_in_wine


def call_in_threads(work, environment, programs, _native_tool):
    models = [str(ROOT / folder) for folder in ("tests/fixtures", "samples")]
    code, text = run(["wine", str(programs / "ts3d_thread_test.exe")] + models, work, environment)
    return [] if code == 0 and " in 8 threads, 0 differences" in text else [f"threads: {code}: {text}"]


if __name__ == "__main__":
    sys.exit(test_in_wine(sys.argv[1:], call_in_threads, "models in eight threads"))
