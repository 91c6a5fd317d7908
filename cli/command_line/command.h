// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/pack_level.h"
#include "terminal/status_printer.h"

namespace cli {

/// What the chosen command does once the whole command line is understood; its result is the exit status.
using RunCommand = std::function<int()>;

/// Adds a command: `run` is set when the user chose it.
CLI::App& AddCommand(CLI::App& app, const char* name, const char* description, RunCommand& run,
                     RunCommand command);

/// An option that may be given more than once, one value each time.
CLI::Option* Repeatable(CLI::Option* option);

/// Refuses what holds a "|": the converter separates list entries by it.
CLI::Option* TakesName(CLI::Option* option);

/// Refuses what holds no "=" or a "|"; `form` shows in the help.
CLI::Option* TakesPair(CLI::Option* option, const char* form);

/// Refuses all but `choices`, which shells can complete.
CLI::Option* TakesOneOf(CLI::Option* option, const std::vector<std::string>& choices);
/// The choices of an option that TakesOneOf has set; none for another.
std::vector<std::string> ChoicesOf(const CLI::Option& option);

/// The keys of a map, as TakesOneOf takes them.
template <class Map>
std::vector<std::string> KeysOf(const Map& map) {
  std::vector<std::string> keys;
  keys.reserve(map.size());
  for (const auto& [key, value] : map) keys.push_back(key);
  return keys;
}

/// Refuses numbers outside `least` to `most`.
CLI::Option* TakesNumber(CLI::Option* option, int least, int most);

/// --verbose and --quiet.
void AddVerbosity(CLI::App& command, Verbosity& verbosity);

/// --pack; `level` is that of ts3d::Settings.
void AddPackLevel(CLI::App& command, std::optional<int>& level);

/// --max-influences; `most` is that of the Settings.
void AddMaxInfluences(CLI::App& command, int& most);

/// --settings and --no-settings, for the settings files of models.
void AddSettingsOptions(CLI::App& command, std::string& file, bool& takesSettings);

/// The long names of all options that the command line has.
std::set<std::string> GivenOptions(const CLI::App& command);

/// Puts them into `given` once it is understood.
void NoteGivenOptions(CLI::App& command, std::set<std::string>& given);

/// All options that the command line has, as words that another process understands in the same way.
std::vector<std::string> OptionWords(const CLI::App& command);

/// --no-plugins.
void AddNoPlugins(CLI::App& command, bool& loadsPlugins);

/// --rename-preset, which puts the name of a preset into `preset`.
void AddRenamePreset(CLI::App& command, std::string& preset, const char* description);

/// The examples and exit codes below the help of a command. `examples` are whole lines.
void SetFooter(CLI::App& command, const std::string& examples);

/// --strict: warnings count as failures.
void AddStrict(CLI::App& command, bool& strict);

/// @throws Failure when one of `folders`, which an option has named, is not there
void RequireFolders(const std::vector<std::string>& folders);

/// --unit, which puts the unit of models that do not tell theirs into `unit`.
void AddModelUnit(CLI::App& command, std::string& unit);

/// --textures, which puts the folders of pictures into `folders`.
void AddTextureFolders(CLI::App& command, std::vector<std::string>& folders);

}  // namespace cli
