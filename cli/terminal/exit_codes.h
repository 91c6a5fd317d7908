// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace cli {

// Exit statuses of all commands, beside the converter's result codes from 2 to 8.
inline constexpr int kSuccess = 0;
/// Something is wrong: what "check" and "inspect" look for, or any warning with --strict.
inline constexpr int kWarnings = 1;
inline constexpr int kUnreadable = 2;
inline constexpr int kNotWritten = 3;
inline constexpr int kNothingToDo = 5;
/// A package moves otherwise than its model, and that is no fault of the rig.
inline constexpr int kConverterWrong = 9;
inline constexpr int kUsageError = 64;
/// An input does not exist, or may not be read.
inline constexpr int kNoInput = 66;
/// The conversion of a model crashed, or memory ran out.
inline constexpr int kCrashed = 70;
/// Standard output takes no more, as on a full disk.
inline constexpr int kOutputFailed = 74;
/// What a shell makes of the signals that end a process: Ctrl-C and SIGTERM.
inline constexpr int kInterrupted = 130, kTerminated = 143;

/// A failure of a whole command, in words, with the exit status that belongs to it.
struct Failure : std::runtime_error {
  Failure(int status, const std::string& text) : std::runtime_error(text), exitStatus(status) {}
  int exitStatus;
};

/// The exit status of a command with several inputs: that of the first that failed; without any, kWarnings
/// when one has warnings.
class ExitStatus {
 public:
  void Add(int status) {
    if (status_ <= kWarnings && status > status_) status_ = status;
  }
  int Get() const { return status_; }

 private:
  int status_ = kSuccess;
};

/// What the exit status `code` means to the person at the keyboard.
const char* DescribeExitCode(int code);

/// The code of the message that tells of it.
const char* NameOfExitCode(int code);

/// The table of all exit codes, for the help text.
std::string ExitCodeTable();

}  // namespace cli
