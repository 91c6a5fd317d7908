// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "scene/gltf/document.h"

namespace scene::gltf {

/// The two parts of a file: its JSON and, of a binary one, the data behind it.
struct FileParts {
  std::string_view json, binary;
  bool hasBinary = false;
};

/// Takes a file apart.
/// @throws Fault
FileParts SplitFile(std::string_view bytes);

/// Memory that a model may take while it is read, held against the size of its files.
class Budget {
 public:
  explicit Budget(uint64_t most) : most_(most) {}
  /// @throws Fault when that is too much
  void Take(uint64_t bytes) {
    if (bytes > most_ - used_) throw Fault("its data asks for too much memory for files of this size");
    used_ += bytes;
  }
  uint64_t Used() const { return used_; }
  uint64_t Left() const { return most_ - used_; }
  /// Gives back what was taken since `Used()` was `used`.
  void ReturnTo(uint64_t used) { used_ = used; }

 private:
  uint64_t most_, used_ = 0;
};

/// The buffers of a document: parts of the file, decoded from its JSON, or files beside it. Each is opened when
/// it is first asked for and stays as long as the object.
class BufferBytes {
 public:
  /// @param folder  of the model, with a separator at its end; nothing outside is opened
  BufferBytes(const FileParts& file, std::string folder) : file_(file), folder_(std::move(folder)) {}

  /// Makes all buffers of `document` ready. One that is missing, or shorter than it says, is told where somebody
  /// needs it: it may be a copy of what the file has compressed as well.
  void Open(const Document& document);
  /// Unpacks the views that are compressed; those that cannot be unpacked here stay plain where they are there.
  /// @param budget  what they unpack to is taken from it
  /// @throws Fault when one is damaged, or cannot be unpacked here
  void Unpack(const Document& document, Budget& budget);
  /// Adds a buffer to `document` that this object keeps.
  /// @return its number
  uint32_t Add(Document& document, std::string bytes);
  /// All bytes of a buffer.
  std::string_view AllOf(uint32_t buffer) const { return buffers_[buffer]; }
  /// Size of the files beside the model that were opened, each counted once.
  uint64_t SizeOfOtherFiles() const { return otherFiles_; }

  /// Their paths.
  std::vector<std::string> PathsOfOtherFiles() const;

  /// `size` bytes at `place`.
  /// @throws Fault when they are not all there
  std::string_view At(const Document& document, const Place& place, uint64_t size) const;
  /// Whether the data of a view is there.
  bool Has(const BufferView& view) const;
  /// All bytes of a view.
  std::string_view View(const Document& document, uint32_t view) const;

 private:
  std::string_view BytesOf(uint32_t buffer, uint64_t offset, uint64_t size) const;
  std::string_view OpenBuffer(const Buffer& buffer, size_t index);
  std::string_view OpenFile(const std::string& uri);

  FileParts file_;
  std::string folder_;
  std::vector<std::string_view> buffers_;
  std::map<uint32_t, std::string> faults_;  ///< why buffers are not there
  std::deque<std::string> decoded_;
  std::map<uint32_t, std::string> unpacked_;  ///< by the numbers of their views
  std::map<std::string, platform::MappedFile> files_;
  uint64_t otherFiles_ = 0;
};

}  // namespace scene::gltf
