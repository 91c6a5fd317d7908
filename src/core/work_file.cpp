// SPDX-License-Identifier: MIT
#include "core/work_file.h"

#include <cstring>

#include "core/names.h"

namespace ts3d {

namespace {

bool IsInputOrPackage(const ConversionJob& job, const std::string& path) {
  return platform::IsSameFile(path, job.inputPath) || platform::IsSameFile(path, job.packagePath);
}

}  // namespace

platform::FilePtr OpenWorkFile(const ConversionJob& job, std::string_view name, const char* mode) {
  const std::string path = job.modelDirectory + std::string(name);
  if (!IsPlainFileName(name) || IsInputOrPackage(job, path)) return nullptr;
  return platform::OpenFile(path, mode);
}

platform::FilePtr CreateWorkFile(ConversionJob& job, std::string_view name, const char* mode) {
  platform::FilePtr file = OpenWorkFile(job, name, mode);
  const std::string path = job.modelDirectory + std::string(name);
  if (!file && IsPlainFileName(name) && !IsInputOrPackage(job, path) && platform::FileSize(path) >= 0) {
    job.packageIsDamaged |= !platform::RemoveFile(path);
  }
  return file;
}

bool WorkFileExists(const ConversionJob& job, std::string_view name) {
  return IsPlainFileName(name) && platform::FileExists(job.modelDirectory + std::string(name));
}

void DiscardWorkFile(ConversionJob& job, std::string_view name) {
  job.packageIsDamaged = true;
  platform::RemoveFile(job.modelDirectory + std::string(name));
}

bool WriteAndClose(platform::FilePtr file, std::string_view text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  return std::fclose(file.release()) == 0 && written;
}

void ByteWriter::Bytes(const void* data, size_t size) {
  if (sizeof buffer_ - used_ < size) Flush();
  if (size > sizeof buffer_) {
    failed_ |= !file_ || std::fwrite(data, 1, size, file_) != size;
    return;
  }
  std::memcpy(buffer_ + used_, data, size);
  used_ += size;
}

bool ByteWriter::Flush() {
  if (used_ > 0) failed_ |= !file_ || std::fwrite(buffer_, 1, used_, file_) != used_;
  used_ = 0;
  return !failed_;
}

}  // namespace ts3d
