// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "host/child_process.h"

namespace cli {

// Done at once, in this process: what it prints goes straight to standard output.
struct ChildProcess::State {
  std::vector<std::string> messages;
};

ChildProcess::ChildProcess(const Work& work, bool) : state_(std::make_unique<State>()) {
  work([this](std::string_view message) {
    state_->messages.emplace_back(message);
    return true;
  });
}

ChildProcess::~ChildProcess() = default;
ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;

bool ChildProcess::Receive(const Receiver& receiver) {
  for (const std::string& message : state_->messages) receiver.message(message);
  state_->messages.clear();
  return false;
}

int ChildProcess::Signal() const { return 0; }

void ChildProcess::WaitForAny(const std::vector<ChildProcess*>&) {}

}  // namespace cli
