// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/byte_cursor.h"

namespace preview {

/// Collects numbers as little-endian bytes.
class NumberBytes {
 public:
  template <class Number>
  void Add(Number number) {
    base::AppendLittleEndian(number, bytes_);
  }
  const std::string& Bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

/// `bytes` in base64.
std::string ToBase64(std::string_view bytes);

}  // namespace preview
