// SPDX-License-Identifier: MIT
#include "platform/process.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/files.h"
#include "platform/wide_paths_windows.h"

namespace platform {
namespace {

/// The bytes of a library as the system maps it, header by header; an address is an offset from its start.
class LibraryFile {
 public:
  explicit LibraryFile(std::string_view bytes) : bytes_(bytes) {}

  /// Whether the library is one for this process and its export table holds `symbol`.
  bool Exports(std::string_view symbol) {
    IMAGE_EXPORT_DIRECTORY exports;
    if (!ReadHeaders() || exportAddress_ == 0 || !ReadMapped(exportAddress_, exports)) return false;
    for (DWORD i = 0; i < exports.NumberOfNames; ++i) {
      DWORD name = 0;
      if (!ReadMapped(uint64_t{exports.AddressOfNames} + uint64_t{i} * sizeof name, name)) return false;
      if (TextAt(name, symbol)) return true;
    }
    return false;
  }

 private:
  /// A record of type T at `offset` of the file; false when it does not lie inside.
  template <typename T>
  bool Read(uint64_t offset, T& record) const {
    if (offset > bytes_.size() || bytes_.size() - offset < sizeof(T)) return false;
    std::memcpy(&record, bytes_.data() + offset, sizeof(T));
    return true;
  }

  bool ReadHeaders() {
    IMAGE_DOS_HEADER dos;
    IMAGE_NT_HEADERS headers;
    if (!Read(0, dos) || dos.e_magic != IMAGE_DOS_SIGNATURE || dos.e_lfanew < 0) return false;
    const auto at = static_cast<uint64_t>(dos.e_lfanew);
    if (!Read(at, headers) || headers.Signature != IMAGE_NT_SIGNATURE) return false;
    if (headers.OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR_MAGIC) return false;
    exportAddress_ = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
    sections_ = at + offsetof(IMAGE_NT_HEADERS, OptionalHeader) + headers.FileHeader.SizeOfOptionalHeader;
    sectionCount_ = headers.FileHeader.NumberOfSections;
    return true;
  }

  /// Offset in the file of the mapped `address`; past the end when no section holds it.
  uint64_t FileOffset(uint64_t address) const {
    for (WORD i = 0; i < sectionCount_; ++i) {
      IMAGE_SECTION_HEADER section;
      if (!Read(sections_ + uint64_t{i} * sizeof section, section)) break;
      if (address >= section.VirtualAddress && address - section.VirtualAddress < section.SizeOfRawData) {
        return address - section.VirtualAddress + section.PointerToRawData;
      }
    }
    return bytes_.size();
  }

  template <typename T>
  bool ReadMapped(uint64_t address, T& record) const {
    return Read(FileOffset(address), record);
  }

  bool TextAt(uint64_t address, std::string_view text) const {
    const uint64_t offset = FileOffset(address);
    const std::string_view rest =
        bytes_.substr(static_cast<size_t>(std::min<uint64_t>(offset, bytes_.size())));
    return rest.starts_with(text) && rest.size() > text.size() && rest[text.size()] == '\0';
  }

  std::string_view bytes_;
  uint64_t sections_ = 0;
  uint64_t exportAddress_ = 0;
  WORD sectionCount_ = 0;
};

/// Looked up in the file, so that libraries that have nothing to do with us are not loaded.
bool ExportsSymbol(const std::string& path, const char* symbol) {
  MappedFile file;
  std::string ignored;
  return file.Open(path, ignored) && LibraryFile(file.Bytes()).Exports(symbol);
}

}  // namespace

void DebugOutput(const char* text) { OutputDebugStringA(text); }

bool IsTerminal(std::FILE* stream) {
  void* console = GetStdHandle(stream == stderr ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) &&
         SetConsoleMode(console, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

size_t TerminalColumns(std::FILE* stream) {
  void* console = GetStdHandle(stream == stderr ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (!GetConsoleScreenBufferInfo(console, &info)) return 0;
  return static_cast<size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

void OpenStandardStreams() {
  static const UINT before = GetConsoleOutputCP();
  if (before == 0 || !SetConsoleOutputCP(CP_UTF8)) return;
  std::atexit([] { SetConsoleOutputCP(before); });
}

std::string ExecutablePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const auto room = static_cast<DWORD>(path.size());
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), room);
    if (length < room) return Utf8Text({path.data(), length});
    path.resize(2 * path.size());
  }
}

std::string ExecutableFolder() {
  const std::string whole = ExecutablePath();
  return whole.substr(0, whole.rfind('\\') + 1);
}

const char* SharedLibraryExtension() { return "dll"; }

std::vector<std::string> FindPlugins(std::string_view folder, std::string_view extension,
                                     const char* symbol) {
  std::vector<std::string> found;
  std::string prefix = NativePath(folder);
  if (!prefix.empty() && !prefix.ends_with('\\')) prefix += '\\';
  WIN32_FIND_DATAW entry;
  void* search = FindFirstFileW(CallPath(prefix + "*." + std::string(extension)).c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return found;
  do {
    const std::string path = prefix + Utf8Text(entry.cFileName);
    if (ExportsSymbol(path, symbol)) found.push_back(path);
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  std::sort(found.begin(), found.end());
  return found;
}

void* LoadPlugin(const std::string& path, const char* symbol) {
  const HMODULE library = LoadLibraryW(CallPath(path).c_str());
  return library ? reinterpret_cast<void*>(GetProcAddress(library, symbol)) : nullptr;
}

}  // namespace platform
