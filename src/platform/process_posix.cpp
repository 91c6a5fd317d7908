// SPDX-License-Identifier: MIT
#include "platform/process.h"

#include <dirent.h>
#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/files.h"

namespace platform {
namespace {

/// A record of type T at `offset` of `bytes`; false when it does not lie inside.
template <typename T>
bool ReadAt(std::string_view bytes, uint64_t offset, T& record) {
  if (offset > bytes.size() || bytes.size() - offset < sizeof(T)) return false;
  std::memcpy(&record, bytes.data() + offset, sizeof(T));
  return true;
}

/// Whether the section `symbols` of the library `elf`, whose
/// names stand in the section `names`, defines `wanted`.
bool DefinesSymbol(std::string_view elf, const Elf64_Shdr& symbols, const Elf64_Shdr& names,
                   std::string_view wanted) {
  if (names.sh_offset > elf.size() || names.sh_size > elf.size() - names.sh_offset) return false;
  const std::string_view texts = elf.substr(names.sh_offset, names.sh_size);
  Elf64_Sym symbol;
  for (uint64_t at = 0; at + sizeof symbol <= symbols.sh_size; at += sizeof symbol) {
    if (!ReadAt(elf, symbols.sh_offset + at, symbol)) return false;
    if (symbol.st_shndx == SHN_UNDEF || symbol.st_name >= texts.size()) continue;
    const std::string_view name = texts.substr(symbol.st_name);
    if (name.starts_with(wanted) && name.size() > wanted.size() && name[wanted.size()] == '\0') return true;
  }
  return false;
}

/// Whether the dynamic symbols of the library `path` define `symbol`. Looked up in the file, so that
/// libraries that have nothing to do with us are not loaded and their constructors do not run.
bool ExportsSymbol(const std::string& path, const char* symbol) {
  MappedFile file;
  std::string ignored;
  Elf64_Ehdr header;
  if (!file.Open(path, ignored)) return false;
  const std::string_view elf = file.Bytes();
  if (!elf.starts_with(ELFMAG) || !ReadAt(elf, 0, header) || header.e_ident[EI_CLASS] != ELFCLASS64)
    return false;
  for (uint64_t i = 0; i < header.e_shnum; ++i) {
    Elf64_Shdr section, names;
    if (!ReadAt(elf, header.e_shoff + i * sizeof section, section)) return false;
    if (section.sh_type == SHT_DYNSYM && section.sh_link < header.e_shnum &&
        ReadAt(elf, header.e_shoff + section.sh_link * sizeof names, names) &&
        DefinesSymbol(elf, section, names, symbol)) {
      return true;
    }
  }
  return false;
}

bool OnlyOwnerWrites(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && (info.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

constexpr int kMostLoadingMilliseconds = 5000;

/// Loads the library in a child process, so that a crash or a hang at load stays there.
bool SurvivesLoading(const std::string& path, const char* symbol) {
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    _exit(library && dlsym(library, symbol) ? 0 : 1);
  }
  int status = 0;
  pid_t ended = 0;
  for (int waited = 0; ended == 0 && waited < kMostLoadingMilliseconds; ++waited) {
    ended = waitpid(child, &status, WNOHANG);
    if (ended == 0) usleep(1000);
  }
  if (ended == 0) {
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
  }
  return ended == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

void DebugOutput(const char* text) {
  if (std::getenv("FBX_TO_TS3D_TRACE")) std::fputs(text, stderr);
}

bool IsTerminal(std::FILE* stream) { return isatty(fileno(stream)) == 1; }

size_t TerminalColumns(std::FILE* stream) {
  winsize size{};
  return ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::vector<std::string> CommandLineWords(int argc, char** argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

void OpenStandardStreams() {
  for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
    // The lowest free number is taken, which is this one.
    if (fcntl(file, F_GETFD) == -1 && open("/dev/null", O_RDWR) != file) return;
  }
}

std::string ExecutablePath() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  return length <= 0 ? std::string() : std::string(path, static_cast<size_t>(length));
}

std::string ExecutableFolder() {
  const std::string whole = ExecutablePath();
  return whole.substr(0, whole.rfind('/') + 1);
}

std::string OwnFolder() {
  // The loader knows a library by the path it was asked for, which may have been relative to another folder.
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> maps(std::fopen("/proc/self/maps", "r"), std::fclose);
  const auto own = reinterpret_cast<uintptr_t>(&OwnFolder);
  char line[PATH_MAX + 128];
  while (maps && std::fgets(line, sizeof line, maps.get())) {
    unsigned long first = 0, end = 0;
    if (std::sscanf(line, "%lx-%lx", &first, &end) != 2 || own < first || own >= end) continue;
    const char *path = std::strchr(line, '/'), *name = std::strrchr(line, '/');
    if (path) return {path, name + 1};
  }
  return ExecutableFolder();
}

const char* SharedLibraryExtension() { return "so"; }

std::vector<std::string> FindPlugins(std::string_view folder, std::string_view extension,
                                     const char* symbol) {
  std::vector<std::string> found;
  const std::string native = NativePath(folder);
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(native.c_str()), closedir);
  if (!entries || !OnlyOwnerWrites(native)) return found;
  const std::string ending = "." + std::string(extension);
  while (const dirent* entry = readdir(entries.get())) {
    const std::string_view name = entry->d_name;
    if (!name.ends_with(ending)) continue;
    const std::string path = native + "/" + std::string(name);
    if (OnlyOwnerWrites(path) && ExportsSymbol(path, symbol) && SurvivesLoading(path, symbol))
      found.push_back(path);
  }
  std::sort(found.begin(), found.end());
  return found;
}

void* LoadPlugin(const std::string& path, const char* symbol) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  return library ? dlsym(library, symbol) : nullptr;
}

}  // namespace platform
