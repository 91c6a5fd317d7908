// SPDX-License-Identifier: MIT
#include "completion/words.h"

#include <string_view>

#include "command_line/command.h"
#include "host/find_files.h"

namespace cli {

std::vector<std::string> OptionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

std::string WithBlanks(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string CommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return WithBlanks(names);
}

std::string ShellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::vector<std::string> FileKinds(const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    if (!option->get_positional()) continue;
    const std::string name = option->get_name(true);
    std::vector<std::string> kinds;
    for (const std::string_view extension : kModelExtensions) kinds.emplace_back(extension.substr(1));
    if (name == "MODEL") return kinds;
    if (name == "PACKAGE" || name == "OLD") return {"czp"};
    kinds.emplace_back("czp");
    if (name == "INPUT") return kinds;
  }
  return {};
}

OptionValues ValuesOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return {ChoicesOf(option), type == "FOLDER", type == "FILE" || type == "LIST"};
}

std::string Alternatives(const CLI::Option& option, const std::string& before) {
  std::string all;
  const auto add = [&](const std::string& name) { all += (all.empty() ? "" : "|") + before + name; };
  for (const std::string& name : option.get_snames()) add("-" + name);
  for (const std::string& name : option.get_lnames()) add("--" + name);
  return all;
}

std::string CompletedWords(const CLI::App& command) {
  std::vector<std::string> words = OptionNames(command);
  for (const CLI::Option* option : command.get_options()) {
    if (!option->get_positional()) continue;
    for (const std::string& choice : ChoicesOf(*option)) words.push_back(choice);
  }
  return WithBlanks(words);
}

}  // namespace cli
