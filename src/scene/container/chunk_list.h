// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace scene {

/// A list that grows without copying, so that it never takes twice its size.
template <typename T>
class ChunkList {
 public:
  void push_back(const T& value) {
    if (size_ % kChunk == 0) chunks_.push_back(std::make_unique_for_overwrite<T[]>(kChunk));
    (*this)[size_++] = value;
  }

  size_t size() const { return size_; }
  T& operator[](size_t i) { return chunks_[i / kChunk][i % kChunk]; }
  const T& operator[](size_t i) const { return chunks_[i / kChunk][i % kChunk]; }

 private:
  static constexpr size_t kChunk = 1024;

  std::vector<std::unique_ptr<T[]>> chunks_;
  size_t size_ = 0;
};

}  // namespace scene
