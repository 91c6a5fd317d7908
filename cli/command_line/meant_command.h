// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// What the user means by `words`, which follow the name of the program: nothing and "help" ask for the help,
/// "help COMMAND" for that of a command, and files without a command are to be converted, as when they are
/// dropped on the program; packages are to be shown on a page.
std::vector<std::string> MeantCommandLine(std::vector<std::string> words,
                                          const std::vector<std::string>& commands);

/// What is wrong with a command line that `app` has refused, in one sentence without its point: unknown
/// commands and options are told with the nearest ones.
std::string DescribeMistake(const CLI::App& app, const CLI::ParseError& error,
                            const std::vector<std::string>& words, const std::vector<std::string>& commands);

}  // namespace cli
