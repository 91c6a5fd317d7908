// SPDX-License-Identifier: MIT
#include "commands/completion_command.h"

#include <cstdio>
#include <memory>
#include <sstream>

namespace cli {
namespace {

/// "-v" and "--verbose" of every option of `command`.
std::vector<std::string> OptionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string CommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return Joined(names);
}

/// `text` inside single quotes of a shell.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

/// Endings of the files that a command takes: they follow from what its help calls them.
std::vector<std::string> FileKinds(const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    if (!option->get_positional()) continue;
    const std::string name = option->get_name(true);
    if (name == "MODEL") return {"fbx"};
    if (name == "PACKAGE" || name == "OLD") return {"czp"};
    if (name == "INPUT") return {"fbx", "czp"};
  }
  return {};
}

/// What may stand behind an option or in place of a positional one.
struct Values {
  std::vector<std::string> choices;
  bool isFolder = false;
  bool isFile = false;
};

Values ValuesOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return {ChoicesOf(option), type == "FOLDER", type == "FILE" || type == "LIST"};
}

/// Calls `take` with all options of the command that have values.
template <class Take>
void ForEachWithValue(const CLI::App& command, const Take& take) {
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_items_expected_max() > 0 && !option->get_positional()) take(*option, ValuesOf(*option));
  }
}

/// "-o|--output" with `before` in front of each.
std::string Alternatives(const CLI::Option& option, const std::string& before) {
  std::string all;
  const auto add = [&](const std::string& name) { all += (all.empty() ? "" : "|") + before + name; };
  for (const std::string& name : option.get_snames()) add("-" + name);
  for (const std::string& name : option.get_lnames()) add("--" + name);
  return all;
}

/// Choices of the command's positional options, as of "completion".
std::string Words(const CLI::App& command) {
  std::vector<std::string> words = OptionNames(command);
  for (const CLI::Option* option : command.get_options()) {
    if (!option->get_positional()) continue;
    for (const std::string& choice : ChoicesOf(*option)) words.push_back(choice);
  }
  return Joined(words);
}

void AddBashValues(const CLI::App& app, std::ostream& script) {
  for (const CLI::App* command : app.get_subcommands({})) {
    ForEachWithValue(*command, [&](const CLI::Option& option, const Values& values) {
      script << "    " << Alternatives(option, command->get_name() + ":") << ") ";
      if (!values.choices.empty()) {
        script << "COMPREPLY=($(compgen -W \"" << Joined(values.choices) << "\" -- \"$word\"))";
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

std::string BashScript(const CLI::App& app) {
  std::ostringstream script;
  script << "_fbx2czp() {\n"
            "  local word=${COMP_WORDS[COMP_CWORD]} words kinds kind\n"
            "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
            "    COMPREPLY=($(compgen -W \""
         << CommandNames(app) << " " << Joined(OptionNames(app))
         << "\" -- \"$word\"))\n"
            "    return\n"
            "  fi\n"
            "  case ${COMP_WORDS[1]}:${COMP_WORDS[COMP_CWORD-1]} in\n";
  AddBashValues(app, script);
  script << "  esac\n"
            "  case ${COMP_WORDS[1]} in\n";
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "    " << command->get_name() << ") words=\"" << Words(*command) << "\" kinds=\""
           << Joined(FileKinds(*command)) << "\" ;;\n";
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

void AddZshValues(const CLI::App& app, std::ostream& script) {
  for (const CLI::App* command : app.get_subcommands({})) {
    ForEachWithValue(*command, [&](const CLI::Option& option, const Values& values) {
      script << "    " << Alternatives(option, command->get_name() + ":") << ") ";
      if (!values.choices.empty()) {
        script << "compadd -- " << Joined(values.choices);
      } else if (values.isFolder || values.isFile) {
        script << (values.isFolder ? "_files -/" : "_files");
      } else {
        script << ":";
      }
      script << "; return ;;\n";
    });
  }
}

std::string ZshScript(const CLI::App& app) {
  std::ostringstream script;
  script << "#compdef fbx2czp\n"
            "_fbx2czp() {\n"
            "  local -a names\n"
            "  local kinds\n"
            "  if (( CURRENT == 2 )); then\n"
            "    names=(";
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "\n      " << Quoted(command->get_name() + ":" + command->get_description());
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
    for (const std::string& kind : FileKinds(*command)) kinds += (kinds.empty() ? "" : "|") + kind;
    script << "    " << command->get_name() << ") names=(" << Words(*command) << ") kinds='" << kinds
           << "' ;;\n";
  }
  script << "  esac\n"
            "  if [[ $PREFIX == -* || -z $kinds ]]; then compadd -- $names; else _files -g "
            "\"*.(#i)($kinds)\"; fi\n"
            "}\n"
            "# Called by the shell as a function of this name, or read as a script.\n"
            "if [[ ${funcstack[1]} == _fbx2czp ]]; then _fbx2czp \"$@\"; else compdef _fbx2czp fbx2czp; fi\n";
  return script.str();
}

void AddFishOption(const CLI::Option& option, std::ostream& script) {
  for (const std::string& name : option.get_snames()) script << " -s " << name;
  for (const std::string& name : option.get_lnames()) script << " -l " << name;
  if (option.get_items_expected_max() > 0) {
    const Values values = ValuesOf(option);
    script << (values.isFile ? " -rF" : " -x");
    if (!values.choices.empty()) script << " -a " << Quoted(Joined(values.choices));
    if (values.isFolder) script << " -a '(__fish_complete_directories)'";
  }
  script << " -d " << Quoted(option.get_description()) << "\n";
}

std::string FishScript(const CLI::App& app) {
  std::ostringstream script;
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "complete -c fbx2czp -n __fish_use_subcommand -a " << command->get_name() << " -d "
           << Quoted(command->get_description()) << "\n";
  }
  for (const CLI::App* command : app.get_subcommands({})) {
    const std::string begin =
        "complete -c fbx2czp -n '__fish_seen_subcommand_from " + command->get_name() + "'";
    for (const std::string& kind : FileKinds(*command))
      script << begin << " -f -a '(__fish_complete_suffix ." << kind << ")'\n";
    for (const CLI::Option* option : command->get_options()) {
      if (!option->get_positional()) {
        script << begin;
        AddFishOption(*option, script);
      } else if (const auto choices = ChoicesOf(*option); !choices.empty()) {
        script << begin << " -f -a " << Quoted(Joined(choices)) << "\n";
      }
    }
  }
  return script.str();
}

}  // namespace

void AddCompletionCommand(CLI::App& app, RunCommand& run) {
  const auto shell = std::make_shared<std::string>();
  CLI::App& completion = AddCommand(
      app, "completion", "Print a script that completes commands and options in a shell", run, [&app, shell] {
        const std::string script = *shell == "bash"  ? BashScript(app)
                                   : *shell == "zsh" ? ZshScript(app)
                                                     : FishScript(app);
        std::fputs(script.c_str(), stdout);
        return 0;
      });
  TakesOneOf(completion.add_option("SHELL", *shell, "bash, zsh or fish")->required()->type_name(""),
             {"bash", "zsh", "fish"});
  completion.footer(
      "Examples:\n"
      "  fbx2czp completion bash > ~/.local/share/bash-completion/completions/fbx2czp\n"
      "  fbx2czp completion zsh > ~/.zfunc/_fbx2czp\n"
      "  fbx2czp completion fish > ~/.config/fish/completions/fbx2czp.fish\n");
}

}  // namespace cli
