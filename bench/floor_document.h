// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What the floor keeps of a version 7 file. It trusts its input.
namespace bench {

struct Array {
  std::unique_ptr<char[]> bytes;
  size_t count = 0;

  const double* Doubles() const { return reinterpret_cast<const double*>(bytes.get()); }
  const int32_t* Ints() const { return reinterpret_cast<const int32_t*>(bytes.get()); }
};

struct Object {
  std::string kind, subType;
  std::map<std::string, Array, std::less<>> arrays;

  /// The first array of the name, or an empty one.
  const Array& operator[](std::string_view name) const {
    static const Array none;
    const auto found = arrays.find(name);
    return found == arrays.end() ? none : found->second;
  }
};

struct Document {
  std::map<int64_t, Object> objects;
  std::multimap<int64_t, int64_t> children;  ///< by parent, in file order
};

/// Reads the file and unpacks all of its arrays with zlib.
Document ReadDocument(const std::string& path);

[[noreturn]] void Fail(const std::string& what);

}  // namespace bench
