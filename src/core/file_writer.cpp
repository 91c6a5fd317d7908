// SPDX-License-Identifier: MIT
#include "core/file_writer.h"

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

WorkFileWriter::WorkFileWriter(WorkFiles& files, std::string name, Content content)
    : ByteWriter(nullptr), files_(files), name_(std::move(name)), content_(content) {
  const bool isBytes = content == Content::Binary || !platform::kTextModeChangesBytes;
  // What is on the disk already is written there, with the checks of OpenWorkFile.
  held_ = files.holdsSmallFiles && isBytes && platform::IsPlainFileName(name_) &&
          !platform::FileExists(files.modelDirectory + name_);
  if (!held_) Open();
}

void WorkFileWriter::Open() {
  // The system keeps what is written in pieces as large as the writes: large ones are made and freed faster.
  constexpr size_t kFileBufferSize = 1 << 18;
  held_ = false;
  files_.held.Erase(name_);
  file_ = CreateWorkFile(files_, name_, content_ == Content::Text ? "w" : "wb");
  fileBuffer_.reset(new (std::nothrow) char[kFileBufferSize]);
  if (file_ && fileBuffer_) std::setvbuf(file_.get(), fileBuffer_.get(), _IOFBF, kFileBufferSize);
}

bool WorkFileWriter::Finish() {
  if (held_ && files_.held.Put(name_, Buffered())) return true;
  bool complete = Flush();
  if (!file_) return false;
  complete &= std::fclose(file_.release()) == 0;
  // A torso would be packed as if it were the whole file.
  if (!complete) DiscardFile(files_, files_.modelDirectory + name_);
  return complete;
}

}  // namespace ts3d
