// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>

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

}  // namespace scene
