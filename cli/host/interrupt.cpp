// SPDX-License-Identifier: MIT
#include "host/interrupt.h"

#include <csignal>
#ifdef SIGALRM
#include <unistd.h>
#endif

namespace cli {
namespace {

volatile std::sig_atomic_t interrupted = 0;
/// How many watches live. What comes between two of them inside another is not lost.
int watches = 0;

/// What may not take more than a moment can hang for ever: in a library, or at the question for a password.
void SetDeadline([[maybe_unused]] unsigned seconds) {
#ifdef SIGALRM
  alarm(seconds);
#endif
}

/// The second wish is obeyed at once, the first one soon.
void NoteInterrupt(int signal) {
  constexpr unsigned kSeconds = 3;
  interrupted = signal;
  std::signal(signal, SIG_DFL);
  SetDeadline(kSeconds);
}

void Handle(int signal, void (*handler)(int)) {
  // What the shell has switched off, as nohup does, stays off.
  if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

void SetHandlers(void (*handler)(int)) {
  Handle(SIGINT, handler);
  Handle(SIGTERM, handler);
#ifdef SIGHUP
  Handle(SIGHUP, handler);
  // Whoever read our output is gone: the models are converted all the same.
  std::signal(SIGPIPE, handler == SIG_DFL ? SIG_DFL : SIG_IGN);
#endif
}

}  // namespace

InterruptWatch::InterruptWatch() {
  if (watches++ > 0) return;
  interrupted = 0;
  SetHandlers(NoteInterrupt);
}

InterruptWatch::~InterruptWatch() {
  if (--watches > 0) return;
  SetDeadline(0);
  SetHandlers(SIG_DFL);
}

int InterruptWatch::Signal() const { return interrupted; }

}  // namespace cli
