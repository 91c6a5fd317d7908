// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// How a helper program ended, and what it said.
struct HelperAnswer {
  std::string output;   ///< what it wrote to its standard output
  std::string problem;  ///< why there is nothing, or not all of it; empty when the program ended well
};

/// Runs a program with `input` as its standard input. It has none of this process's files but standard error.
/// @param arguments    behind the program's name
/// @param mostOutput   bytes; a program that writes more is ended
/// @param wait         called several times a second; may throw, which ends the program
/// @return with `problem` set as well when the system knows no such programs, as on Windows
HelperAnswer RunHelper(const std::string& program, const std::vector<std::string>& arguments,
                       std::string_view input, size_t mostOutput, const std::function<void()>& wait);

/// The file `name` among what belongs to this code: beside the installed library, beside the one that was just built, or
/// where the tool has such files. The last place where it was looked for when there is none.
std::string FindOwnPart(const std::string& name);

}  // namespace platform
