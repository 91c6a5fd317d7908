// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

#include "scene/container/record_tree.h"

namespace scene {

/// A block of numbers that is filled once and can be given up early.
template <typename T>
class FbxArray {
 public:
  FbxArray() = default;
  FbxArray(FbxArray&& other) noexcept : data_(std::move(other.data_)), size_(std::exchange(other.size_, 0)) {}
  FbxArray& operator=(FbxArray&& other) noexcept {
    data_ = std::move(other.data_);
    size_ = std::exchange(other.size_, 0);
    return *this;
  }

  T* Allocate(size_t size) {
    data_ = std::make_unique_for_overwrite<T[]>(size);
    size_ = size;
    return data_.get();
  }
  void Release() {
    data_.reset();
    size_ = 0;
  }
  /// Keeps the first `size` elements.
  void Shorten(size_t size) { size_ = size < size_ ? size : size_; }

  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  T* begin() { return data_.get(); }
  T* end() { return data_.get() + size_; }
  const T* begin() const { return data_.get(); }
  const T* end() const { return data_.get() + size_; }
  T& operator[](size_t i) { return data_[i]; }
  const T& operator[](size_t i) const { return data_[i]; }
  std::span<const T> View() const { return {data_.get(), size_}; }

 private:
  std::unique_ptr<T[]> data_;
  size_t size_ = 0;
};

/// Decodes the numbers of a record, however the file holds them: as a typed array, packed or not, as a
/// sequence of single values or as a text list. Numbers that are not finite become 0. False, with `out`
/// empty, when the data is damaged or claims more than `most` numbers or than the file's memory allowance; a
/// record without numbers gives none.
[[nodiscard]] bool ReadArray(RecordRef record, FbxArray<double>& out, size_t most = SIZE_MAX);
[[nodiscard]] bool ReadArray(RecordRef record, FbxArray<int32_t>& out, size_t most = SIZE_MAX);

/// How many numbers the record says that it holds, without decoding any.
size_t ClaimedCount(RecordRef record);

/// Bytes of one element of the array type `code`, or 0 for a code that is no array type.
size_t ArrayElementSize(char code);

/// Reads the numeric property at `p` of a binary file whose type byte is `code`.
/// @return the bytes after the type byte, or 0 when `code` is no number or less than that is left.
size_t ReadScalar(char code, const char* p, size_t left, bool bigEndian, Value& value);

}  // namespace scene
