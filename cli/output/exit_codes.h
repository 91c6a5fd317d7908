// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace cli {

/// Exit status for a wrong command line; all others are the converter's result codes.
inline constexpr int kUsageError = 64;

/// Exit status when the conversion of a model crashed, or memory ran out.
inline constexpr int kCrashed = 70;
/// Exit status when standard output takes no more, as on a full disk.
inline constexpr int kOutputFailed = 74;
/// Exit status after Ctrl-C.
inline constexpr int kInterrupted = 130;

/// What the exit status `code` means to the person at the keyboard.
const char* DescribeExitCode(int code);

/// The code of the message that tells of it.
const char* NameOfExitCode(int code);

/// The table of all exit codes, for the help text.
std::string ExitCodeTable();

}  // namespace cli
