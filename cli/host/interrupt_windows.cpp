// SPDX-License-Identifier: MIT
#include <windows.h>

#include <atomic>
#include <csignal>
#include <cstdio>

#include "host/interrupt.h"
#include "platform/unfinished.h"

namespace cli {
namespace {

constexpr DWORD kGraceMilliseconds = 200;

std::atomic<int> interrupted = 0, gracefulEnds = 0;

/// The system calls it on a thread of its own.
BOOL WINAPI EndProcess(DWORD) {
  interrupted = SIGINT;
  if (gracefulEnds > 0) Sleep(kGraceMilliseconds);
  platform::RemoveUnfinished();
  std::fputs("\nfbx2czp: error: interrupted; nothing half done is left\n", stderr);
  ExitProcess(128 + SIGINT);
}

}  // namespace

InterruptWatch::InterruptWatch() { SetConsoleCtrlHandler(EndProcess, TRUE); }
InterruptWatch::~InterruptWatch() { SetConsoleCtrlHandler(EndProcess, FALSE); }

GracefulEnd::GracefulEnd() { ++gracefulEnds; }
GracefulEnd::~GracefulEnd() { --gracefulEnds; }

int InterruptSignal() { return interrupted; }

}  // namespace cli
