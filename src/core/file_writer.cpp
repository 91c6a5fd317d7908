// SPDX-License-Identifier: MIT
#include "core/file_writer.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace ts3d {

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

WorkFileWriter::WorkFileWriter(WorkFiles& files, std::string name)
    : ByteWriter(nullptr), files_(files), name_(std::move(name)) {
  // What an earlier run has left on the disk is written over there, with the checks of OpenWorkFile.
  const bool replaces = platform::FileExists(files.modelDirectory + name_) && HasOwnPlace();
  held_ = files.holdsSmallFiles && platform::IsMemberName(name_) && !replaces;
  if (!held_) Open();
}

/// Whether a file of that name would be none of the others that this run has written.
bool WorkFileWriter::HasOwnPlace() const {
  if (!platform::IsPlainFileName(name_)) return false;
  const std::string path = files_.modelDirectory + name_;
  return !platform::FileExists(path) ||
         std::none_of(files_.written.begin(), files_.written.end(), [&](const std::string& other) {
           return other != name_ && platform::IsSameFile(path, files_.modelDirectory + other);
         });
}

void WorkFileWriter::Open() {
  // The system keeps what is written in pieces as large as the writes: large ones are made and freed faster.
  constexpr size_t kFileBufferSize = 1 << 18;
  files_.held.Erase(name_);
  isNameless_ = held_ && !HasOwnPlace();
  held_ = false;
  file_ = isNameless_ ? platform::OpenTemporaryFile() : CreateWorkFile(files_, name_, "wb");
  if (!file_ || isNameless_) return;
  files_.written.insert(name_);
  fileBuffer_.reset(new (std::nothrow) char[kFileBufferSize]);
  if (fileBuffer_) std::setvbuf(file_.get(), fileBuffer_.get(), _IOFBF, kFileBufferSize);
}

bool WorkFileWriter::Finish() {
  if (held_ && files_.held.Put(name_, Buffered())) return true;
  bool complete = Flush();
  if (!file_) return false;
  if (isNameless_) {
    complete = complete && files_.held.Adopt(name_, std::move(file_));
    if (!complete) NoteLostWrite(files_);
    return complete;
  }
  complete &= std::fclose(file_.release()) == 0;
  // A torso would be packed as if it were the whole file.
  if (!complete) DiscardFile(files_, files_.modelDirectory + name_);
  return complete;
}

}  // namespace ts3d
