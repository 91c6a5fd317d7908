// SPDX-License-Identifier: MIT
#include "terminal/terminal.h"

#include <cstdlib>

#include "core/visible_text.h"
#include "platform/process.h"

namespace cli {
namespace {

const char* Code(Colour colour) {
  switch (colour) {
    case Colour::Red:
      return "31";
    case Colour::Yellow:
      return "33";
    case Colour::Green:
      return "32";
    case Colour::Bold:
      break;
  }
  return "1";
}

}  // namespace

bool IsTerminal(std::FILE* stream) { return platform::IsTerminal(stream); }

bool WantsColour(std::FILE* stream) {
  const char* noColour = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  if ((noColour && *noColour) || (terminal && std::string_view(terminal) == "dumb")) return false;
  return IsTerminal(stream);
}

std::string Painted(std::FILE* stream, Colour colour, std::string_view text) {
  if (!WantsColour(stream)) return std::string(text);
  return std::string("\033[") + Code(colour) + "m" + std::string(text) + "\033[0m";
}

std::string Printable(std::string_view text) { return ts3d::VisibleText(text); }

std::string Label(std::FILE* stream, Severity severity) {
  const Colour colour = severity == Severity::Error     ? Colour::Red
                        : severity == Severity::Warning ? Colour::Yellow
                                                        : Colour::Bold;
  return Painted(stream, colour, std::string(NameOf(severity)) + ":");
}

void PrintMessage(const std::string& subject, Severity severity, std::string_view text) {
  const std::string line = "fbx2czp: " + (subject.empty() ? "" : Printable(subject) + ": ") +
                           Label(stderr, severity) + " " + Printable(text) + "\n";
  std::fputs(line.c_str(), stderr);
}

}  // namespace cli
