// SPDX-License-Identifier: MIT
#include "core/work_files.h"

#include <cerrno>
#include <optional>

namespace ts3d {
namespace {

bool IsInputOrPackage(const WorkFiles& files, const std::string& path) {
  return platform::IsSameFile(path, files.inputPath) || platform::IsSameFile(path, files.packagePath);
}

}  // namespace

platform::FilePtr OpenWorkFile(const WorkFiles& files, std::string_view name, const char* mode) {
  if (!platform::IsPlainFileName(name)) return nullptr;
  return OpenHostFile(files, files.modelDirectory + std::string(name), mode);
}

platform::FilePtr OpenHostFile(const WorkFiles& files, const std::string& path, const char* mode) {
  return IsInputOrPackage(files, path) ? nullptr : platform::OpenFile(path, mode);
}

bool MapHostFile(const WorkFiles& files, const std::string& path, platform::MappedFile& file) {
  std::string reason;
  return !IsInputOrPackage(files, path) && file.Open(path, reason);
}

platform::FilePtr CreateWorkFile(WorkFiles& files, std::string_view name, const char* mode) {
  if (!platform::IsPlainFileName(name)) return nullptr;
  return CreateHostFile(files, files.modelDirectory + std::string(name), mode);
}

platform::FilePtr CreateHostFile(WorkFiles& files, const std::string& path, const char* mode) {
  platform::FilePtr file = OpenHostFile(files, path, mode);
  if (!file && !IsInputOrPackage(files, path) && platform::FileSize(path) >= 0) {
    files.packageIsDamaged |= !platform::RemoveFile(path);
  }
  return file;
}

bool WorkFileExists(const WorkFiles& files, std::string_view name) {
  return files.held.Contains(name) ||
         (platform::IsPlainFileName(name) && platform::FileExists(files.modelDirectory + std::string(name)));
}

void WriteHeldFiles(WorkFiles& files) {
  for (const std::string& name : files.held.Names()) {
    const std::optional<std::string> bytes = files.held.Read(name);
    platform::FilePtr file = bytes ? OpenWorkFile(files, name, "wb") : nullptr;
    if (file) WriteAndClose(std::move(file), *bytes);
  }
  files.held.Clear();
}

void NoteLostWrite(WorkFiles& files) {
  if (files.writeError == 0) files.writeError = errno;
  files.packageIsDamaged = true;
}

void DiscardFile(WorkFiles& files, std::string_view path) {
  NoteLostWrite(files);
  platform::RemoveFile(path);
}

std::string WithNativeLineEnds(std::string text) {
  if constexpr (!platform::kTextModeChangesBytes) return text;
  std::string native;
  for (const char c : text) native.append(c == '\n' ? "\r" : "").push_back(c);
  return native;
}

bool WriteAndClose(platform::FilePtr file, std::string_view text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  return std::fclose(file.release()) == 0 && written;
}

}  // namespace ts3d
