// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/gltf/bytes.h"

namespace scene::gltf {

/// Bytes of a number.
size_t SizeOf(Component component);

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
