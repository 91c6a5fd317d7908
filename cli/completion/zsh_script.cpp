// SPDX-License-Identifier: MIT
#include <sstream>

#include "completion/scripts.h"
#include "completion/words.h"

namespace cli {
namespace {

void AddZshValues(const CLI::App& app, std::ostream& script) {
  for (const CLI::App* command : app.get_subcommands({})) {
    ForEachWithValue(*command, [&](const CLI::Option& option, const OptionValues& values) {
      script << "    " << Alternatives(option, command->get_name() + ":") << ") ";
      if (!values.choices.empty()) {
        script << "compadd -- " << WithBlanks(values.choices);
      } else if (values.isFolder || values.isFile) {
        script << (values.isFolder ? "_files -/" : "_files");
      } else {
        script << ":";
      }
      script << "; return ;;\n";
    });
  }
}

}  // namespace

std::string ZshScript(const CLI::App& app) {
  std::ostringstream script;
  script << "#compdef fbx2czp\n"
            "_fbx2czp() {\n"
            "  local -a names\n"
            "  local kinds\n"
            "  if (( CURRENT == 2 )); then\n"
            "    names=(";
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "\n      " << ShellQuoted(command->get_name() + ":" + command->get_description());
  }
  script << ")\n"
            "    _describe command names\n"
            "    return\n"
            "  fi\n"
            "  case $words[2]:$words[CURRENT-1] in\n";
  AddZshValues(app, script);
  script << "  esac\n"
            "  case $words[2] in\n";
  for (const CLI::App* command : app.get_subcommands({})) {
    std::string kinds;
    for (const std::string& kind : FileKinds(*command))
      kinds += (kinds.empty() ? "(#i)*." : " (#i)*.") + kind;
    script << "    " << command->get_name() << ") names=(" << CompletedWords(*command) << ") kinds='" << kinds
           << "' ;;\n";
  }
  script << "  esac\n"
            "  if [[ $PREFIX == -* || -z $kinds ]]; then compadd -- $names; else _files -g $kinds; fi\n"
            "}\n"
            "# Called by the shell as a function of this name, or read as a script.\n"
            "if [[ ${funcstack[1]} == _fbx2czp ]]; then _fbx2czp \"$@\"; else compdef _fbx2czp fbx2czp; fi\n";
  return script.str();
}

}  // namespace cli
