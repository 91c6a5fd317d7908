// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "core/conversion_job.h"
#include "platform/files.h"

namespace ts3d {

/// Opens the work file `name` in the model's folder like fopen. Null when that fails, and for every name that
/// could lead out of that folder or to the model or the package itself: names come from the model and are not
/// to be trusted.
platform::FilePtr OpenWorkFile(const ConversionJob& job, std::string_view name, const char* mode);

/// Opens `path`, which the host has named and no model, like fopen. Null when that fails, and for the model
/// and the package.
platform::FilePtr OpenHostFile(const ConversionJob& job, const std::string& path, const char* mode);

/// Maps `path` in the same way; false when that fails, and for the model and the package.
bool MapHostFile(const ConversionJob& job, const std::string& path, platform::MappedFile& file);

/// Opens the work file `name` like OpenWorkFile to write all of it. What an earlier run left under that name
/// is never taken for it: where that cannot be written over, it goes, or the package is damaged.
platform::FilePtr CreateWorkFile(ConversionJob& job, std::string_view name, const char* mode);
/// The same for a path that the host has named.
platform::FilePtr CreateHostFile(ConversionJob& job, const std::string& path, const char* mode);

/// Whether the model's folder holds a file `name`, or the job
/// does; false for every name that could lead out of it.
bool WorkFileExists(const ConversionJob& job, std::string_view name);

/// Puts what the job still holds onto the disk, where a run that does not hold files leaves it.
void WriteHeldFiles(ConversionJob& job);

/// Notes that a write has just failed, with the system's reason. The package is damaged by that.
void NoteLostWrite(ConversionJob& job);

/// Deletes the file `path`, whose writing failed half-way. The package it was for is damaged by that.
void DiscardFile(ConversionJob& job, std::string_view path);

/// Writes the whole of `text` and closes the file; false when any of it failed.
bool WriteAndClose(platform::FilePtr file, std::string_view text);

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
    unsigned char* out = buffer_ + used_;
    const auto bits = static_cast<uint32_t>(value);
    out[0] = static_cast<unsigned char>(bits);
    out[1] = static_cast<unsigned char>(bits >> 8);
    out[2] = static_cast<unsigned char>(bits >> 16);
    out[3] = static_cast<unsigned char>(bits >> 24);
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

/// Writes one work file, to the disk or, where the job holds small files, into the job.
class WorkFileWriter : public ByteWriter {
 public:
  enum class Content { Binary, Text };

  /// Starts the work file `name`: opens it, or waits whether the job can hold it.
  WorkFileWriter(ConversionJob& job, std::string name, Content content);

  /// Completes the file. False, with no file left, when it could not be opened or any write has failed. The
  /// package is damaged by the latter.
  bool Finish();

 private:
  void Open();
  std::FILE* File() override {
    if (held_) Open();
    return file_.get();
  }

  ConversionJob& job_;
  std::string name_;
  Content content_;
  std::unique_ptr<char[]> fileBuffer_;
  platform::FilePtr file_;
  bool held_;  ///< everything is in the buffer so far, and may stay in memory
};

}  // namespace ts3d
