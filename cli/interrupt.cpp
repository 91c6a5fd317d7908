// SPDX-License-Identifier: MIT
#include "interrupt.h"

#include <csignal>

namespace cli {
namespace {

volatile std::sig_atomic_t interrupted = 0;

/// The second wish is obeyed at once.
void NoteInterrupt(int signal) {
  interrupted = 1;
  std::signal(signal, SIG_DFL);
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
  interrupted = 0;
  SetHandlers(NoteInterrupt);
}

InterruptWatch::~InterruptWatch() { SetHandlers(SIG_DFL); }

bool InterruptWatch::Interrupted() const { return interrupted != 0; }

}  // namespace cli
