// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace cli {

// Scripts that complete the commands of `app`, their options and what may stand behind these.
std::string BashScript(const CLI::App& app);
std::string ZshScript(const CLI::App& app);
std::string FishScript(const CLI::App& app);

}  // namespace cli
