// SPDX-License-Identifier: MIT
#include "command_line/meant_command.h"

#include <algorithm>

#include "core/similar_names.h"
#include "host/find_files.h"
#include "host/host_paths.h"
#include "platform/file_system.h"

namespace cli {
namespace fs = platform::fs;
namespace {

bool IsOption(const std::string& word) { return word.size() > 1 && word.front() == '-'; }

bool Contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Whether a word can only be meant as a file: it is there, or is written like a model or a path.
bool IsFile(const std::string& word) {
  std::error_code unknown;
  const fs::path path = word;
  return fs::exists(path, unknown) || path.has_parent_path() || IsModelName(path);
}

bool IsPackage(const std::string& word) {
  std::error_code unknown;
  return HasExtension(word, ".czp") && fs::exists(word, unknown);
}

/// "; the nearest is \"x\"", or nothing when there is none.
std::string Nearest(const std::string& name, const std::vector<std::string>& known) {
  const std::vector<std::string> nearest = ts3d::NearestNames(name, known, 1);
  // A word that is something else is no slip.
  const bool isSlip = !nearest.empty() && 2 * ts3d::EditDistance(name, nearest[0]) <= name.size() + 1;
  return !isSlip ? "" : "; the nearest one is " + ts3d::QuotedNames(nearest);
}

std::vector<std::string> OptionsOf(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

/// What is left over behind a command's own options and inputs; empty when nothing is.
std::string DescribeLeftOver(const CLI::App& command) {
  for (const std::string& word : command.remaining()) {
    if (!IsOption(word)) continue;
    const std::string name = word.substr(0, word.find('='));
    return "\"" + command.get_name() + "\" has no option \"" + name + "\"" +
           Nearest(name, OptionsOf(command));
  }
  const std::vector<std::string> words = command.remaining();
  return words.empty()
             ? ""
             : "\"" + words.front() + "\" is one input more than \"" + command.get_name() + "\" takes";
}

}  // namespace

std::vector<std::string> MeantCommandLine(std::vector<std::string> words,
                                          const std::vector<std::string>& commands) {
  if (words.empty()) return {"--help"};
  if (words.front() == "help") {
    words.erase(words.begin());
    if (words.empty() || !Contains(commands, words.front()))
      return words.empty() ? MeantCommandLine({}, {}) : words;
    return {words.front(), "--help"};
  }
  const bool isOwnOption = Contains({"-h", "--help", "-V", "--version"}, words.front());
  if (isOwnOption || Contains(commands, words.front())) return words;
  if (std::all_of(words.begin(), words.end(), IsPackage)) {
    words.insert(words.begin(), {"preview", "--format", "html", "--open"});
    return words;
  }
  const bool hasFile =
      IsOption(words.front()) ? std::any_of(words.begin(), words.end(), IsFile) : IsFile(words.front());
  if (hasFile) words.insert(words.begin(), "convert");
  return words;
}

std::string DescribeMistake(const CLI::App& app, const CLI::ParseError& error,
                            const std::vector<std::string>& words, const std::vector<std::string>& commands) {
  const std::string& first = words.front();
  if (!IsOption(first) && !Contains(commands, first))
    return "there is no command \"" + first + "\"" + Nearest(first, commands);
  for (const CLI::App* command : app.get_subcommands()) {
    std::string mistake = DescribeLeftOver(*command);
    if (!mistake.empty()) return mistake;
  }
  if (IsOption(first)) return "\"" + first + "\" is not an option of fbx2czp itself; the command comes first";
  return error.what();
}

}  // namespace cli
