// SPDX-License-Identifier: MIT
#include "core/held_files.h"

#include "platform/files.h"

namespace ts3d {

bool HeldFiles::Put(std::string_view name, std::string_view bytes) {
  constexpr size_t kMostInMemory = 4 << 20;
  Erase(name);
  File file;
  file.size = bytes.size();
  if (heldBytes_ + bytes.size() <= kMostInMemory) {
    heldBytes_ += bytes.size();
    file.bytes = bytes;
  } else if (!Spool(file, bytes)) {
    return false;
  }
  files_.emplace(name, std::move(file));
  return true;
}

bool HeldFiles::Adopt(std::string_view name, platform::FilePtr content) {
  Erase(name);
  const bool isWritten = std::fflush(content.get()) == 0 && std::fseek(content.get(), 0, SEEK_END) == 0;
  const long size = isWritten ? std::ftell(content.get()) : -1;
  if (size < 0) return false;
  files_.emplace(name, File{{}, std::move(content), 0, static_cast<size_t>(size)});
  return true;
}

bool HeldFiles::Spool(File& file, std::string_view bytes) {
  if (!spool_) spool_ = platform::OpenTemporaryFile();
  file.spool = spool_;
  std::FILE* const spool = spool_.get();
  if (!spool || std::fseek(spool, 0, SEEK_END) != 0) return false;
  file.spooledAt = std::ftell(spool);
  return file.spooledAt >= 0 && std::fwrite(bytes.data(), 1, bytes.size(), spool) == bytes.size() &&
         std::fflush(spool) == 0;
}

std::optional<std::string> HeldFiles::Read(std::string_view name) const {
  const auto found = files_.find(name);
  if (found == files_.end()) return std::nullopt;
  const File& file = found->second;
  if (!file.spool) return file.bytes;
  std::string bytes(file.size, '\0');
  if (std::fseek(file.spool.get(), file.spooledAt, SEEK_SET) != 0 ||
      std::fread(bytes.data(), 1, bytes.size(), file.spool.get()) != bytes.size()) {
    return std::nullopt;
  }
  return bytes;
}

bool HeldFiles::Erase(std::string_view name) {
  const auto found = files_.find(name);
  if (found == files_.end()) return false;
  files_.erase(found);
  return true;
}

std::vector<std::string> HeldFiles::Names() const {
  std::vector<std::string> names;
  for (const auto& [name, file] : files_) names.push_back(name);
  return names;
}

}  // namespace ts3d
