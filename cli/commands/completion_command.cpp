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

std::string BashScript(const CLI::App& app) {
  std::ostringstream script;
  script << "_fbx2czp() {\n"
            "  local word=${COMP_WORDS[COMP_CWORD]} words\n"
            "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
            "    COMPREPLY=($(compgen -W \""
         << CommandNames(app) << " " << Joined(OptionNames(app))
         << "\" -- \"$word\"))\n"
            "    return\n"
            "  fi\n"
            "  case ${COMP_WORDS[1]} in\n";
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "    " << command->get_name() << ") words=\"" << Joined(OptionNames(*command)) << "\" ;;\n";
  }
  script << "  esac\n"
            "  case $word in\n"
            "    -*) COMPREPLY=($(compgen -W \"$words\" -- \"$word\")) ;;\n"
            "    *) COMPREPLY=($(compgen -f -- \"$word\")) ;;\n"
            "  esac\n"
            "}\n"
            "complete -o filenames -F _fbx2czp fbx2czp\n";
  return script.str();
}

std::string ZshScript(const CLI::App& app) {
  std::ostringstream script;
  script << "#compdef fbx2czp\n"
            "_fbx2czp() {\n"
            "  local -a names\n"
            "  if (( CURRENT == 2 )); then\n"
            "    names=(";
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "\n      " << Quoted(command->get_name() + ":" + command->get_description());
  }
  script << ")\n"
            "    _describe command names\n"
            "    return\n"
            "  fi\n"
            "  case $words[2] in\n";
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "    " << command->get_name() << ") names=(" << Joined(OptionNames(*command)) << ") ;;\n";
  }
  script << "  esac\n"
            "  if [[ $PREFIX == -* ]]; then compadd -- $names; else _files; fi\n"
            "}\n"
            "# Called by the shell as a function of this name, or read as a script.\n"
            "if [[ ${funcstack[1]} == _fbx2czp ]]; then _fbx2czp \"$@\"; else compdef _fbx2czp fbx2czp; fi\n";
  return script.str();
}

std::string FishScript(const CLI::App& app) {
  std::ostringstream script;
  for (const CLI::App* command : app.get_subcommands({})) {
    script << "complete -c fbx2czp -n __fish_use_subcommand -a " << command->get_name() << " -d "
           << Quoted(command->get_description()) << "\n";
  }
  for (const CLI::App* command : app.get_subcommands({})) {
    for (const CLI::Option* option : command->get_options()) {
      if (option->get_positional()) continue;
      script << "complete -c fbx2czp -n '__fish_seen_subcommand_from " << command->get_name() << "'";
      for (const std::string& name : option->get_snames()) script << " -s " << name;
      for (const std::string& name : option->get_lnames()) script << " -l " << name;
      if (option->get_items_expected_max() > 0) script << " -r";
      script << " -d " << Quoted(option->get_description()) << "\n";
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
  completion.add_option("SHELL", *shell, "bash, zsh or fish")
      ->required()
      ->type_name("")
      ->check(CLI::IsMember({"bash", "zsh", "fish"}));
  completion.footer(
      "Examples:\n"
      "  fbx2czp completion bash > ~/.local/share/bash-completion/completions/fbx2czp\n"
      "  fbx2czp completion zsh > ~/.zfunc/_fbx2czp\n"
      "  fbx2czp completion fish > ~/.config/fish/completions/fbx2czp.fish\n");
}

}  // namespace cli
