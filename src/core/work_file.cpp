// SPDX-License-Identifier: MIT
#include "core/work_file.h"

#include <cerrno>
#include <cstring>
#include <new>

#include "core/names.h"

namespace ts3d {
namespace {

/// The system keeps what is written in pieces as large as the writes: large ones are made and freed faster.
constexpr size_t kFileBufferSize = 1 << 18;

bool IsInputOrPackage(const ConversionJob& job, const std::string& path) {
  return platform::IsSameFile(path, job.inputPath) || platform::IsSameFile(path, job.packagePath);
}

}  // namespace

platform::FilePtr OpenWorkFile(const ConversionJob& job, std::string_view name, const char* mode) {
  if (!IsPlainFileName(name)) return nullptr;
  return OpenHostFile(job, job.modelDirectory + std::string(name), mode);
}

platform::FilePtr OpenHostFile(const ConversionJob& job, const std::string& path, const char* mode) {
  return IsInputOrPackage(job, path) ? nullptr : platform::OpenFile(path, mode);
}

bool MapHostFile(const ConversionJob& job, const std::string& path, platform::MappedFile& file) {
  std::string reason;
  return !IsInputOrPackage(job, path) && file.Open(path, reason);
}

platform::FilePtr CreateWorkFile(ConversionJob& job, std::string_view name, const char* mode) {
  if (!IsPlainFileName(name)) return nullptr;
  return CreateHostFile(job, job.modelDirectory + std::string(name), mode);
}

platform::FilePtr CreateHostFile(ConversionJob& job, const std::string& path, const char* mode) {
  platform::FilePtr file = OpenHostFile(job, path, mode);
  if (!file && !IsInputOrPackage(job, path) && platform::FileSize(path) >= 0) {
    job.packageIsDamaged |= !platform::RemoveFile(path);
  }
  return file;
}

bool WorkFileExists(const ConversionJob& job, std::string_view name) {
  return IsPlainFileName(name) &&
         (job.heldFiles.Contains(name) || platform::FileExists(job.modelDirectory + std::string(name)));
}

void WriteHeldFiles(ConversionJob& job) {
  for (const std::string& name : job.heldFiles.Names()) {
    const std::optional<std::string> bytes = job.heldFiles.Read(name);
    platform::FilePtr file = bytes ? OpenWorkFile(job, name, "wb") : nullptr;
    if (file) WriteAndClose(std::move(file), *bytes);
  }
  job.heldFiles.Clear();
}

void NoteLostWrite(ConversionJob& job) {
  if (job.writeError == 0) job.writeError = errno;
  job.packageIsDamaged = true;
}

void DiscardFile(ConversionJob& job, std::string_view path) {
  NoteLostWrite(job);
  platform::RemoveFile(path);
}

bool WriteAndClose(platform::FilePtr file, std::string_view text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  return std::fclose(file.release()) == 0 && written;
}

void ByteWriter::Bytes(const void* data, size_t size) {
  if (sizeof buffer_ - used_ < size) Flush();
  if (size > sizeof buffer_) {
    std::FILE* file = File();
    failed_ |= !file || std::fwrite(data, 1, size, file) != size;
    return;
  }
  std::memcpy(buffer_ + used_, data, size);
  used_ += size;
}

bool ByteWriter::Flush() {
  if (used_ > 0) {
    std::FILE* file = File();
    failed_ |= !file || std::fwrite(buffer_, 1, used_, file) != used_;
  }
  used_ = 0;
  return !failed_;
}

WorkFileWriter::WorkFileWriter(ConversionJob& job, std::string name, Content content)
    : ByteWriter(nullptr), job_(job), name_(std::move(name)), content_(content) {
  const bool isBytes = content == Content::Binary || !platform::kTextModeChangesBytes;
  // What is on the disk already is written there, with the checks of OpenWorkFile.
  held_ = job.holdsSmallFiles && isBytes && IsPlainFileName(name_) &&
          !platform::FileExists(job.modelDirectory + name_);
  if (!held_) Open();
}

void WorkFileWriter::Open() {
  held_ = false;
  job_.heldFiles.Erase(name_);
  file_ = CreateWorkFile(job_, name_, content_ == Content::Text ? "w" : "wb");
  fileBuffer_.reset(new (std::nothrow) char[kFileBufferSize]);
  if (file_ && fileBuffer_) std::setvbuf(file_.get(), fileBuffer_.get(), _IOFBF, kFileBufferSize);
}

bool WorkFileWriter::Finish() {
  if (held_ && job_.heldFiles.Put(name_, Buffered())) return true;
  bool complete = Flush();
  if (!file_) return false;
  complete &= std::fclose(file_.release()) == 0;
  // A torso would be packed as if it were the whole file.
  if (!complete) DiscardFile(job_, job_.modelDirectory + name_);
  return complete;
}

}  // namespace ts3d
