// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Work that runs in a process of its own, so that a crash, or running out of memory, ends nothing else.
class ChildProcess {
 public:
  /// Hands a message to the process that started the work; returns false when that one is gone.
  using Send = std::function<bool(std::string_view message)>;
  /// The same work twice: for a copy of this process, and for a new process of this program, where the system
  /// copies none (Windows).
  struct Order {
    std::function<void(const Send& send)> work;
    std::function<std::string()> text;  ///< what Obey is given there
  };
  /// Takes what arrives: messages, or what the work printed on standard output.
  struct Receiver {
    std::function<void(std::string_view message)> message;
    std::function<void(std::string_view text)> output;
  };
  struct Ending {
    std::string text;      ///< "signal 9: it was killed, ..."
    bool isFault = false;  ///< nobody else than the work itself has ended the process
  };

  /// @param keepsInput  whether the work may read standard input
  /// @throws std::system_error when no process can be had
  ChildProcess(const Order& order, bool keepsInput);
  /// Ends the process if it still runs.
  ~ChildProcess();
  ChildProcess(ChildProcess&&) noexcept;
  ChildProcess& operator=(ChildProcess&&) = delete;

  /// Takes what has arrived. @return false once the work has ended and everything is taken
  bool Receive(const Receiver& receiver);
  /// How the process has ended, after Receive() returned false.
  Ending HowItEnded() const;

  /// Waits until one of `children` has something to take, at most a fifth of a second.
  static void WaitForAny(const std::vector<ChildProcess*>& children);

  /// Ends all that run, before this process ends: none can be started or waited for any more.
  static void EndAll();

  /// Lets `work` do the order that this process was started for.
  /// @param words  of the command line
  /// @return false when nobody has started it for an order
  static bool Obey(const std::vector<std::string>& words,
                   const std::function<void(const std::string& order, const Send& send)>& work);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace cli
