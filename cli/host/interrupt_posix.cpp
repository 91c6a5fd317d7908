// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <string_view>
#include <thread>

#include "host/child_process.h"
#include "host/interrupt.h"
#include "platform/unfinished.h"

namespace cli {
namespace {

constexpr int kGraceMilliseconds = 200;

std::atomic<int> interrupted = 0, gracefulEnds = 0;
int wakeUp[2] = {-1, -1};  ///< a pipe: whoever writes to it, or closes its end, wakes the watch
std::thread watch;
std::atomic<bool> isWatching = false;

void NoteInterrupt(int signal) {
  interrupted = signal;
  [[maybe_unused]] const ssize_t ignored = write(wakeUp[1], "i", 1);
}

void Handle(int signal, void (*handler)(int)) {
  // What the shell has switched off, as nohup does, stays off.
  if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

void SetHandlers(void (*handler)(int)) {
  Handle(SIGINT, handler);
  Handle(SIGTERM, handler);
  Handle(SIGHUP, handler);
  // Whoever read our output is gone: the models are converted all the same.
  std::signal(SIGPIPE, handler == SIG_DFL ? SIG_DFL : SIG_IGN);
}

/// @return whether the watch is over
bool WaitForByte(int milliseconds) {
  pollfd query{wakeUp[0], POLLIN, 0};
  char byte = 0;
  if (poll(&query, 1, milliseconds) <= 0) return false;
  return read(wakeUp[0], &byte, 1) == 1 && byte == 'e';
}

void Watch() {
  isWatching = true;
  isWatching.notify_one();
  while (!interrupted) {
    if (WaitForByte(-1)) return;
  }
  if (gracefulEnds > 0 && WaitForByte(kGraceMilliseconds)) return;
  // What still runs would go on writing into folders that are being removed.
  ChildProcess::EndAll();
  platform::RemoveUnfinished();
  constexpr std::string_view kTold = "\nfbx2czp: error: interrupted; nothing half done is left\n";
  [[maybe_unused]] const ssize_t ignored = write(STDERR_FILENO, kTold.data(), kTold.size());
  _exit(128 + interrupted);
}

}  // namespace

InterruptWatch::InterruptWatch() {
  if (pipe2(wakeUp, O_CLOEXEC) != 0) return;
  watch = std::thread(Watch);
  // A process that forks while a thread starts may copy locks that the thread holds, and nobody gives back.
  isWatching.wait(false);
  SetHandlers(NoteInterrupt);
}

InterruptWatch::~InterruptWatch() {
  if (!watch.joinable()) return;
  SetHandlers(SIG_DFL);
  [[maybe_unused]] const ssize_t ignored = write(wakeUp[1], "e", 1);
  watch.join();
  isWatching = false;
  close(wakeUp[0]);
  close(wakeUp[1]);
}

GracefulEnd::GracefulEnd() { ++gracefulEnds; }
GracefulEnd::~GracefulEnd() { --gracefulEnds; }

int InterruptSignal() { return interrupted; }

}  // namespace cli
