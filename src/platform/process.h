// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Sends `text` to the system's debug output. POSIX has none: there it goes to standard error when the
/// environment variable FBX_TO_TS3D_TRACE is set, else nowhere.
void DebugOutput(const char* text);

/// Whether `stream` goes to a terminal that understands the usual control sequences.
bool IsTerminal(std::FILE* stream);

/// Columns of the terminal that `stream` goes to; 0 when there is none.
size_t TerminalColumns(std::FILE* stream);

/// The words of the command line behind the program's name. On Windows they are UTF-8, and a word with wildcards outside
/// of quotes stands for the files and folders that it matches, if there are any.
std::vector<std::string> CommandLineWords(int argc, char** argv);

/// Gives the process the three standard streams that it was
/// started without, so that no other file takes their places. A console shows UTF-8 until
/// the process ends.
void OpenStandardStreams();

/// Folder of the running executable with a trailing separator; empty when it cannot be told.
std::string ExecutableFolder();

/// Path of the running executable; empty when it cannot be told.
std::string ExecutablePath();

/// Folder of the file, program or library, that this code is in, likewise.
std::string OwnFolder();

/// File extension of shared libraries, without the dot.
const char* SharedLibraryExtension();

/// Paths of the shared libraries in `folder` whose extension is `extension` and that export `symbol`, sorted
/// by name. What others than the owner could have put there is left out: all of a folder that the group or
/// others may write to, and such files. So is a library that cannot be loaded, or that crashes while it is
/// loaded: each candidate is tried in a child process first. Windows has no such children; there a crash ends
/// the process. Access lists, as Windows has them, are not looked at.
std::vector<std::string> FindPlugins(std::string_view folder, std::string_view extension, const char* symbol);

/// Loads the library `path` for the rest of the process and returns the address of `symbol`, or null.
void* LoadPlugin(const std::string& path, const char* symbol);

}  // namespace platform
