// SPDX-License-Identifier: MIT
#include "command_line/command.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "options/choice_names.h"
#include "options/rename_preset.h"
#include "platform/file_system.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace {

std::string CheckEntry(const std::string& entry) {
  return entry.find('|') == std::string::npos ? std::string() : "\"" + entry + "\" holds a \"|\"";
}

std::string CheckPair(const std::string& entry) {
  return entry.find('=') == std::string::npos ? "\"" + entry + "\" holds no \"=\"" : CheckEntry(entry);
}

}  // namespace

CLI::App& AddCommand(CLI::App& app, const char* name, const char* description, RunCommand& run,
                     RunCommand command) {
  CLI::App& added = *app.add_subcommand(name, description);
  added.final_callback([&run, command = std::move(command)] { run = command; });
  return added;
}

CLI::Option* Repeatable(CLI::Option* option) { return option->allow_extra_args(false); }

CLI::Option* TakesName(CLI::Option* option) {
  return option->type_name("NAME")->check(CLI::Validator(CheckEntry, ""));
}

CLI::Option* TakesPair(CLI::Option* option, const char* form) {
  return option->type_name(form)->check(CLI::Validator(CheckPair, ""));
}

CLI::Option* TakesOneOf(CLI::Option* option, const std::vector<std::string>& choices) {
  std::string name;
  for (const std::string& choice : choices) name += (name.empty() ? "" : "|") + choice;
  return option->check(CLI::IsMember(choices).description("").name(name));
}

std::vector<std::string> ChoicesOf(const CLI::Option& option) {
  std::vector<std::string> choices;
  try {
    // Only TakesOneOf names its check, which is the first.
    std::istringstream names(const_cast<CLI::Option&>(option).get_validator(0)->get_name());
    for (std::string choice; std::getline(names, choice, '|');) choices.push_back(choice);
  } catch (const CLI::OptionNotFound&) {
    return {};
  }
  return choices;
}

CLI::Option* TakesNumber(CLI::Option* option, int least, int most) {
  return option->type_name("NUMBER")->check(CLI::Range(least, most).description(""));
}

void AddVerbosity(CLI::App& command, Verbosity& verbosity) {
  auto* verbose = command.add_flag_callback(
      "-v,--verbose", [&] { verbosity = Verbosity::Verbose; }, "Show every status line");
  command
      .add_flag_callback(
          "-q,--quiet", [&] { verbosity = Verbosity::Quiet; }, "Show warnings and errors only")
      ->excludes(verbose);
}

void AddPackLevel(CLI::App& command, std::optional<int>& level) {
  const auto take = [&level](const std::string& name) { level = PackLevelOfName(name); };
  TakesOneOf(
      command
          .add_option_function<std::string>(
              "--pack", take,
              "How hard packing tries: \"fast\", \"default\" or \"small\", which takes several times as long")
          ->type_name("LEVEL"),
      PackLevelNames());
}

void AddSettingsOptions(CLI::App& command, std::string& file, bool& takesSettings) {
  auto* settings =
      command.add_option("--settings", file, "Settings file in place of the nearest fbx2czp.json")
          ->type_name("FILE");
  command.add_flag("!--no-settings", takesSettings, "Take no settings file")->excludes(settings);
}

std::set<std::string> GivenOptions(const CLI::App& command) {
  std::set<std::string> given;
  for (const CLI::Option* option : command.get_options()) {
    if (option->count() > 0) given.insert(option->get_name());
  }
  return given;
}

void NoteGivenOptions(CLI::App& command, std::set<std::string>& given) {
  command.parse_complete_callback([&command, &given] { given = GivenOptions(command); });
}

std::vector<std::string> OptionWords(const CLI::App& command) {
  std::vector<std::string> words;
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_lnames().empty()) continue;
    const std::string& name = option->get_lnames().front();
    for (const std::string& value : option->results()) {
      if (option->get_items_expected_max() == 0) {
        // A flag may be a negation, or be given a value.
        const bool isPlain = option->get_flag_value(name, "") == value;
        words.push_back("--" + name);
        if (!isPlain)
          words.back().append("=").append(option->get_flag_value(name, "true") == value ? "true" : "false");
      } else if (value.empty()) {
        words.insert(words.end(), {"--" + name, value});
      } else {
        words.push_back("--" + name + "=" + value);
      }
    }
  }
  return words;
}

void AddMaxInfluences(CLI::App& command, int& most) {
  TakesNumber(
      command.add_option("--max-influences", most,
                         "Most bones that move a vertex: the strongest, made to add up to 1; tells what it "
                         "costs (all)"),
      1, kMostInfluences);
}

void AddNoPlugins(CLI::App& command, bool& loadsPlugins) {
  command.add_flag("!--no-plugins", loadsPlugins, "Load no reader plug-ins from the folder of this program");
}

void AddTextureFolders(CLI::App& command, std::vector<std::string>& folders) {
  Repeatable(command.add_option("--textures", folders,
                                "Folder to search for pictures, with all folders below; repeat for more"))
      ->type_name("FOLDER");
}

void AddStrict(CLI::App& command, bool& strict) {
  command.add_flag("--strict", strict, "Exit with status 1 when there are warnings");
}

void RequireFolders(const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    std::error_code unknown;
    if (!platform::fs::is_directory(folder, unknown))
      throw Failure(kNoInput, folder + ": there is no such folder");
  }
}

void AddModelUnit(CLI::App& command, std::string& unit) {
  TakesOneOf(
      command
          .add_option("--unit", unit,
                      "What the lengths of a model are: m, cm, mm or inch (m for glTF, what the file\n"
                      "says for Collada, 8 cm for PMX, inch for MD5 and SMD, cm for others). FBX files\n"
                      "are taken as they are")
          ->type_name("UNIT"),
      ModelUnitNames());
}

void AddRenamePreset(CLI::App& command, std::string& preset, const char* description) {
  TakesOneOf(command.add_option("--rename-preset", preset, description)->type_name("RIG"),
             KeysOf(RenamePresetTexts()));
}

void SetFooter(CLI::App& command, const std::string& examples) {
  command.footer("Examples:\n" + examples + "\nExit codes:\n" + ExitCodeTable());
}

}  // namespace cli
