// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Work that runs in a process of its own, so that a crash, or running out of memory, ends nothing else.
/// Where the system cannot copy a process (Windows) the work is done at once, in this one.
class ChildProcess {
 public:
  /// Hands a message to the process that started the work; returns false when that one is gone.
  using Send = std::function<bool(std::string_view message)>;
  using Work = std::function<void(const Send& send)>;
  /// Takes what arrives: messages, or what the work printed on standard output.
  struct Receiver {
    std::function<void(std::string_view message)> message;
    std::function<void(std::string_view text)> output;
  };

  /// @param keepsInput  whether the work may read standard input
  /// @throws std::system_error when no process can be had
  ChildProcess(const Work& work, bool keepsInput);
  /// Ends the process if it still runs.
  ~ChildProcess();
  ChildProcess(ChildProcess&&) noexcept;
  ChildProcess& operator=(ChildProcess&&) = delete;

  /// Takes what has arrived. @return false once the work has ended and everything is taken
  bool Receive(const Receiver& receiver);
  /// After Receive() returned false: 0, or the number of the signal that ended the process.
  int Signal() const;

  /// Waits until one of `children` has something to take, at most a fifth of a second.
  static void WaitForAny(const std::vector<ChildProcess*>& children);

  /// Ends all that run, before this process ends: none can be started or waited for any more.
  static void EndAll();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace cli
