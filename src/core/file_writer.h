// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "base/byte_cursor.h"
#include "core/work_files.h"

namespace ts3d {

/// Writes little-endian numbers to a file through a buffer of its own. A failed write is remembered, not
/// reported; without a file every write fails.
class ByteWriter {
 public:
  explicit ByteWriter(std::FILE* file) : file_(file) {}
  virtual ~ByteWriter() { Flush(); }
  ByteWriter(const ByteWriter&) = delete;
  ByteWriter& operator=(const ByteWriter&) = delete;

  void Bytes(const void* data, size_t size);
  void Int32(int32_t value) {
    if (sizeof buffer_ - used_ < 4) Flush();
    base::StoreLittleEndian(value, buffer_ + used_);
    used_ += 4;
  }
  void Float32(float value);

  /// Writes what is buffered. False once any write has failed.
  bool Flush();

 protected:
  /// Where the bytes go; asked for when the buffer is written.
  virtual std::FILE* File() { return file_; }
  std::string_view Buffered() const { return {reinterpret_cast<const char*>(buffer_), used_}; }

 private:
  std::FILE* file_;
  size_t used_ = 0;
  bool failed_ = false;
  unsigned char buffer_[1 << 15];
};

inline void ByteWriter::Float32(float value) { Int32(std::bit_cast<int32_t>(value)); }

/// Writes one work file, to the disk or, where small files are held, into the memory.
class WorkFileWriter : public ByteWriter {
 public:
  /// Starts the work file `name`: opens it, or waits whether it can be held.
  WorkFileWriter(WorkFiles& files, std::string name);

  /// Completes the file. False, with no file left, when it could not be opened or any write has failed. The
  /// package is damaged by the latter.
  bool Finish();

 private:
  bool HasOwnPlace() const;
  void Open();
  std::FILE* File() override {
    if (held_) Open();
    return file_.get();
  }

  WorkFiles& files_;
  std::string name_;
  std::unique_ptr<char[]> fileBuffer_;
  platform::FilePtr file_;
  bool held_;                ///< everything is in the buffer so far, and may stay in memory
  bool isNameless_ = false;  ///< the file is a temporary one, which will be held
};

}  // namespace ts3d
