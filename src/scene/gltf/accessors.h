// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/gltf/bytes.h"

namespace scene::gltf {

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
  /// Gives back what was taken since `Used()` was `used`.
  void ReturnTo(uint64_t used) { used_ = used; }

 private:
  uint64_t most_, used_ = 0;
};

/// Reads accessors: strided, sparse, normalised, of any component type.
class AccessorReader {
 public:
  AccessorReader(const Document& document, const BufferBytes& bytes, Budget& budget)
      : document_(document), bytes_(bytes), budget_(budget) {}

  uint64_t CountOf(uint32_t accessor) const { return document_.accessors[accessor].count; }
  /// All numbers, `width` to an element; normalised ones in 0..1 or -1..1, those that are not finite as 0.
  /// @throws Fault when the elements have another width, are not all in the file or ask for too much memory
  std::vector<float> Floats(uint32_t accessor, uint32_t width) const;
  /// The same for whole numbers; fractions are cut off, negative ones are 0.
  std::vector<uint32_t> Integers(uint32_t accessor, uint32_t width) const;

 private:
  template <class T>
  std::vector<T> Read(uint32_t index, uint32_t width) const;
  template <class T>
  void ReadSparse(const Accessor& accessor, std::vector<T>& out) const;

  const Document& document_;
  const BufferBytes& bytes_;
  Budget& budget_;
};

}  // namespace scene::gltf
