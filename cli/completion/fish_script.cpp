// SPDX-License-Identifier: MIT
#include <sstream>

#include "command_line/command.h"
#include "completion/scripts.h"
#include "completion/words.h"

namespace cli {
namespace {

void AddFishOption(const CLI::Option& option, std::ostream& script) {
  for (const std::string& name : option.get_snames()) script << " -s " << name;
  for (const std::string& name : option.get_lnames()) script << " -l " << name;
  if (option.get_items_expected_max() > 0) {
    const OptionValues values = ValuesOf(option);
    script << (values.isFile ? " -rF" : " -x");
    if (!values.choices.empty()) script << " -a " << ShellQuoted(WithBlanks(values.choices));
    if (values.isFolder) script << " -a '(__fish_complete_directories)'";
  }
  script << " -d " << ShellQuoted(option.get_description()) << "\n";
}

}  // namespace

std::string FishScript(const CLI::App& app) {
  std::ostringstream script;
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "complete -c fbx2czp -n __fish_use_subcommand -a " << command->get_name() << " -d "
           << ShellQuoted(command->get_description()) << "\n";
  }
  for (const CLI::App* command : app.get_subcommands({})) {
    const std::string begin =
        "complete -c fbx2czp -n '__fish_seen_subcommand_from " + command->get_name() + "'";
    std::string kinds;
    for (const std::string& kind : FileKinds(*command)) kinds += (kinds.empty() ? "" : "|") + kind;
    // The files that the shell would complete, if their ending fits, and folders.
    if (!kinds.empty()) {
      script << begin
             << " -f -a \"(complete -C \\\"'' \\\"(commandline -ct) | string match -rie '(?:/|\\.(?:" << kinds
             << "))(?:\\t|\\$)')\"\n";
    }
    for (const CLI::Option* option : command->get_options()) {
      if (!option->get_positional()) {
        script << begin;
        AddFishOption(*option, script);
      } else if (const auto choices = ChoicesOf(*option); !choices.empty()) {
        script << begin << " -f -a " << ShellQuoted(WithBlanks(choices)) << "\n";
      }
    }
  }
  return script.str();
}

}  // namespace cli
