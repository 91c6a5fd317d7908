// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace cli {

/// "-v" and "--verbose" of every option of `command`.
std::vector<std::string> OptionNames(const CLI::App& command);

std::string CommandNames(const CLI::App& app);

/// Options of the command and choices of its positional ones, as of "completion".
std::string CompletedWords(const CLI::App& command);

/// Endings of the files that a command takes: they follow from what its help calls them.
std::vector<std::string> FileKinds(const CLI::App& command);

/// What may stand behind an option or in place of a positional one.
struct OptionValues {
  std::vector<std::string> choices;
  bool isFolder = false;
  bool isFile = false;
};

OptionValues ValuesOf(const CLI::Option& option);

/// Calls `take` with all options of the command that have values.
template <class Take>
void ForEachWithValue(const CLI::App& command, const Take& take) {
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_items_expected_max() > 0 && !option->get_positional()) take(*option, ValuesOf(*option));
  }
}

/// "-o|--output" with `before` in front of each.
std::string Alternatives(const CLI::Option& option, const std::string& before);

/// The words with blanks between them.
std::string WithBlanks(const std::vector<std::string>& words);

/// `text` inside single quotes of a shell.
std::string ShellQuoted(const std::string& text);

}  // namespace cli
