// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>

#include "scene/container/array_reader.h"

namespace scene {

/// What is made when it is first asked for, and made again once it was given up. Asking is const although it
/// makes: of one object by one thread at a time.
template <typename T>
class Lazy {
 public:
  /// @param make  gives the value
  template <typename Make>
  const T& Get(const Make& make) const {
    if (!value_) value_.emplace(make());
    return *value_;
  }
  /// The value if it is there, else null.
  const T* Known() const { return value_ ? &*value_ : nullptr; }
  T* Known() { return value_ ? &*value_ : nullptr; }
  /// What the making of something else comes across.
  void Learn(T value) const { value_.emplace(std::move(value)); }

  /// The value, for the caller to keep; it is given up here.
  template <typename Make>
  T Take(const Make& make) {
    T taken = value_ ? std::move(*value_) : make();
    value_.reset();
    return taken;
  }
  void Release() { value_.reset(); }

 private:
  mutable std::optional<T> value_;
};

/// An array of a file, decoded when it is first read.
template <typename T>
using LazyArray = Lazy<FbxArray<T>>;

/// The numbers of `record`, see ReadArray; none when they are damaged.
template <typename T>
FbxArray<T> ArrayOf(RecordRef record) {
  FbxArray<T> numbers;
  if (!ReadArray(record, numbers)) numbers.Release();
  return numbers;
}

}  // namespace scene
