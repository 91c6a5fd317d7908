// SPDX-License-Identifier: MIT
#include <sstream>

#include "completion/scripts.h"
#include "completion/words.h"

namespace cli {
namespace {

void AddBashValues(const CLI::App& app, std::ostream& script) {
  for (const CLI::App* command : app.get_subcommands({})) {
    ForEachWithValue(*command, [&](const CLI::Option& option, const OptionValues& values) {
      script << "    " << Alternatives(option, command->get_name() + ":") << ") ";
      if (!values.choices.empty()) {
        script << "COMPREPLY=($(compgen -W \"" << WithBlanks(values.choices) << "\" -- \"$word\"))";
      } else if (values.isFolder || values.isFile) {
        script << "local IFS=$'\\n'; COMPREPLY=($(compgen -" << (values.isFolder ? "d" : "f")
               << " -- \"$word\"))";
      } else {
        script << "COMPREPLY=()";
      }
      script << "; return ;;\n";
    });
  }
}

}  // namespace

std::string BashScript(const CLI::App& app) {
  std::ostringstream script;
  script << "_fbx2czp() {\n"
            "  local word=${COMP_WORDS[COMP_CWORD]} words kinds kind\n"
            "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
            "    COMPREPLY=($(compgen -W \""
         << CommandNames(app) << " " << WithBlanks(OptionNames(app))
         << "\" -- \"$word\"))\n"
            "    return\n"
            "  fi\n"
            "  case ${COMP_WORDS[1]}:${COMP_WORDS[COMP_CWORD-1]} in\n";
  AddBashValues(app, script);
  script << "  esac\n"
            "  case ${COMP_WORDS[1]} in\n";
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "    " << command->get_name() << ") words=\"" << CompletedWords(*command) << "\" kinds=\""
           << WithBlanks(FileKinds(*command)) << "\" ;;\n";
  }
  script
      << "  esac\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n"
         "  case $word in -*) return ;; esac\n"
         "  [ -n \"$kinds\" ] || { [ -z \"$word\" ] || return; COMPREPLY=(${COMPREPLY[@]##-*}); return; }\n"
         "  COMPREPLY=()\n"
         "  set -- $kinds\n"
         "  local IFS=$'\\n'\n"
         "  COMPREPLY=($(compgen -d -- \"$word\"))\n"
         "  for kind in \"$@\"; do\n"
         "    COMPREPLY+=($(compgen -f -X \"!*.$kind\" -- \"$word\")\n"
         "      $(compgen -f -X \"!*.${kind^^}\" -- \"$word\"))\n"
         "  done\n"
         "}\n"
         "complete -o filenames -F _fbx2czp fbx2czp\n";
  return script.str();
}

}  // namespace cli
