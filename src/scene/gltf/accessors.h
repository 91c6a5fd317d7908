// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/bytes.h"
#include "scene/gltf/elements.h"

namespace scene::gltf {

/// Bytes of a number.
size_t SizeOf(Component component);

struct StoredElements;

/// Reads accessors: strided, sparse, normalised, of any component type.
class AccessorReader {
 public:
  AccessorReader(const Document& document, const BufferBytes& bytes, Budget& budget)
      : document_(document), bytes_(bytes), budget_(budget) {}

  uint64_t CountOf(uint32_t accessor) const { return document_.accessors[accessor].count; }
  /// All elements, `width` numbers to each; normalised ones in 0..1 or -1..1. They point into the file, or take
  /// from the budget what they are converted to.
  /// @throws Fault when the elements have another width, are not all in the file or ask for too much memory
  FloatElements Floats(uint32_t accessor, uint32_t width) const;
  /// The same for whole numbers; fractions are cut off, negative ones are 0.
  IntegerElements Integers(uint32_t accessor, uint32_t width) const;

 private:
  StoredElements Find(uint32_t index, uint32_t width) const;
  template <class T>
  Elements Read(uint32_t index, uint32_t width) const;
  template <class T>
  void ReadSparse(const Accessor& accessor, T* out) const;

  const Document& document_;
  const BufferBytes& bytes_;
  Budget& budget_;
};

}  // namespace scene::gltf
