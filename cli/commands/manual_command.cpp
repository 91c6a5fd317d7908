// SPDX-License-Identifier: MIT
#include "commands/manual_command.h"

#include <cstdio>
#include <sstream>

namespace cli {
namespace {

/// `text` with what troff would take for commands made harmless.
std::string Escaped(const std::string& text) {
  std::string escaped;
  bool atLineStart = true;
  for (const char c : text) {
    if (atLineStart && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == '\\' || c == '-') escaped += '\\';
    escaped += c == '\\' ? 'e' : c;
    atLineStart = c == '\n';
  }
  return escaped;
}

void AddOptions(const CLI::App& command, std::ostream& page) {
  for (const CLI::Option* option : command.get_options()) {
    page << ".TP\n.B " << Escaped(option->get_name(option->get_positional(), true));
    if (option->get_items_expected_max() > 0 && !option->get_positional())
      page << " \\fI" << Escaped(option->get_type_name()) << "\\fR";
    page << "\n" << Escaped(option->get_description()) << "\n";
  }
}

void AddFooter(const CLI::App& command, std::ostream& page) {
  if (command.get_footer().empty()) return;
  page << ".PP\n.nf\n" << Escaped(command.get_footer()) << "\n.fi\n";
}

std::string ManualPage(const CLI::App& app) {
  std::ostringstream page;
  page << ".TH FBX2CZP 1 \"\" \"fbx2czp " FBX_TO_TS3D_VERSION "\" \"User Commands\"\n.SH NAME\n"
       << "fbx2czp \\- " << Escaped(app.get_description()) << "\n.SH SYNOPSIS\n"
       << ".B fbx2czp\n\\fICOMMAND\\fR [\\fIOPTION\\fR]... \\fIFILE\\fR...\n.SH OPTIONS\n";
  AddOptions(app, page);
  page << ".SH COMMANDS\n";
  for (const CLI::App* command : app.get_subcommands({})) {
    page << ".SS fbx2czp " << Escaped(command->get_name()) << "\n"
         << Escaped(command->get_description()) << ".\n";
    AddOptions(*command, page);
    AddFooter(*command, page);
  }
  return page.str();
}

}  // namespace

void AddManualCommand(CLI::App& app, RunCommand& run) {
  AddCommand(app, "manual", "Print the manual page (fbx2czp manual | man -l -)", run, [&app] {
    std::fputs(ManualPage(app).c_str(), stdout);
    return 0;
  });
}

}  // namespace cli
