// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "core/finding.h"

namespace cli {

/// Whether a person watches `stream`.
bool IsTerminal(std::FILE* stream);

/// Whether a person watches `stream` and wants colours: NO_COLOR is unset or empty, and TERM is not "dumb".
bool WantsColour(std::FILE* stream);

enum class Colour { Red, Yellow, Green, Bold };

/// `text` in `colour` where `stream` wants colours, else as it is.
std::string Painted(std::FILE* stream, Colour colour, std::string_view text);

/// `text` with what could control a terminal made visible: names come from models and file systems.
std::string Printable(std::string_view text);

using ts3d::Severity;

/// "note:", "warning:" or "error:" in its colour.
std::string Label(std::FILE* stream, Severity severity);

/// Prints "fbx2czp: <subject>: <severity>: <text>" to standard error, in the one voice of the tool. Without a
/// subject: "fbx2czp: <severity>: <text>".
void PrintMessage(const std::string& subject, Severity severity, std::string_view text);

}  // namespace cli
