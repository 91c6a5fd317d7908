// SPDX-License-Identifier: MIT
#include <windows.h>

#include <atomic>
#include <csignal>
#include <string_view>

#include "host/child_process.h"
#include "host/interrupt.h"
#include "platform/unfinished.h"

namespace cli {
namespace {

constexpr DWORD kGraceMilliseconds = 200;

std::atomic<int> interrupted = 0, gracefulEnds = 0;
void* watchIsOver = nullptr;  ///< an event

/// The system calls it on a thread of its own.
BOOL WINAPI EndProcess(DWORD event) {
  interrupted = SIGINT;
  if (gracefulEnds > 0 && WaitForSingleObject(watchIsOver, kGraceMilliseconds) == WAIT_OBJECT_0) {
    // When the console is closed, the system ends the process as soon as this returns.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
  }
  // What still runs would go on writing into folders that are being removed.
  ChildProcess::EndAll();
  platform::RemoveUnfinished();
  // Past the C library, whose locks may belong to threads that are at work.
  constexpr std::string_view kTold = "\r\nfbx2czp: error: interrupted; nothing half done is left\r\n";
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_ERROR_HANDLE), kTold.data(), kTold.size(), &written, nullptr);
  TerminateProcess(GetCurrentProcess(), 128 + SIGINT);
  return TRUE;
}

}  // namespace

InterruptWatch::InterruptWatch() {
  watchIsOver = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  SetConsoleCtrlHandler(EndProcess, TRUE);
}

InterruptWatch::~InterruptWatch() {
  SetEvent(watchIsOver);
  // The event stays, and so does a handler that is at work: it would be waited for.
  if (!interrupted) SetConsoleCtrlHandler(EndProcess, FALSE);
}

GracefulEnd::GracefulEnd() { ++gracefulEnds; }
GracefulEnd::~GracefulEnd() { --gracefulEnds; }

int InterruptSignal() { return interrupted; }

}  // namespace cli
