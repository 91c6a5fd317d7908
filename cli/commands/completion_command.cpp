// SPDX-License-Identifier: MIT
#include "commands/completion_command.h"

#include <cstdio>
#include <memory>

#include "completion/scripts.h"

namespace cli {

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
