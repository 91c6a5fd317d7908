// SPDX-License-Identifier: MIT
#include "platform/process.h"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/files.h"

namespace platform {
namespace {

/// Whether the file holds `symbol` as a whole zero-terminated text, as a symbol table does. Keeps libraries
/// that have nothing to do with us from being loaded, and their constructors from running.
bool NamesSymbol(const std::string& path, const char* symbol) {
  MappedFile file;
  std::string ignored;
  if (!file.Open(path, ignored) || !file.Bytes().starts_with("\x7f"
                                                             "ELF"))
    return false;
  std::string wanted(1, '\0');
  wanted.append(symbol).push_back('\0');
  return file.Bytes().find(wanted) != std::string_view::npos;
}

/// Loads the library in a child process, so that a crash at load stays there.
bool SurvivesLoading(const std::string& path, const char* symbol) {
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    _exit(library && dlsym(library, symbol) ? 0 : 1);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

void DebugOutput(const char* text) {
  if (std::getenv("FBX_TO_TS3D_TRACE")) std::fputs(text, stderr);
}

std::string ExecutableFolder() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0) return {};
  const std::string whole(path, static_cast<size_t>(length));
  return whole.substr(0, whole.rfind('/') + 1);
}

const char* SharedLibraryExtension() { return "so"; }

std::vector<std::string> FindPlugins(std::string_view folder, std::string_view extension,
                                     const char* symbol) {
  std::vector<std::string> found;
  const std::string native = NativePath(folder);
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(native.c_str()), closedir);
  if (!entries) return found;
  const std::string ending = "." + std::string(extension);
  while (const dirent* entry = readdir(entries.get())) {
    const std::string_view name = entry->d_name;
    if (!name.ends_with(ending)) continue;
    const std::string path = native + "/" + std::string(name);
    if (NamesSymbol(path, symbol) && SurvivesLoading(path, symbol)) found.push_back(path);
  }
  std::sort(found.begin(), found.end());
  return found;
}

void* LoadPlugin(const std::string& path, const char* symbol) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  return library ? dlsym(library, symbol) : nullptr;
}

}  // namespace platform
