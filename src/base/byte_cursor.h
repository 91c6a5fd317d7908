// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace base {

/// Reads numbers from the start of `bytes`, which must hold enough of them, in either byte order.
template <typename T>
T LoadNumber(const char* bytes, bool bigEndian) {
  unsigned char raw[sizeof(T)];
  std::memcpy(raw, bytes, sizeof(T));
  if (bigEndian != (std::endian::native == std::endian::big)) {
    for (size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(raw[i], raw[sizeof(T) - 1 - i]);
  }
  T value;
  std::memcpy(&value, raw, sizeof(T));
  return value;
}

/// Puts the bytes of `value` at `bytes`, the lowest first.
template <typename T>
void StoreLittleEndian(T value, void* bytes) {
  unsigned char raw[sizeof(T)];
  std::memcpy(raw, &value, sizeof(T));
  if constexpr (std::endian::native == std::endian::big) {
    for (size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(raw[i], raw[sizeof(T) - 1 - i]);
  }
  std::memcpy(bytes, raw, sizeof(T));
}

/// Appends them to `bytes`.
template <typename T>
void AppendLittleEndian(T value, std::string& bytes) {
  bytes.resize(bytes.size() + sizeof(T));
  StoreLittleEndian(value, bytes.data() + bytes.size() - sizeof(T));
}

/// Checked reader over bytes that it does not own. A failed read returns zero and moves nothing, so a parser
/// reads a whole record and tests Failed() once.
class ByteCursor {
 public:
  explicit ByteCursor(std::string_view bytes, bool bigEndian = false)
      : bytes_(bytes), bigEndian_(bigEndian) {}

  uint64_t Offset() const { return offset_; }
  uint64_t Remaining() const { return bytes_.size() - offset_; }
  bool Failed() const { return failed_; }
  /// Whether `count` records of at least `size` bytes can follow.
  bool HasRoomFor(int32_t count, size_t size) const {
    return !failed_ && count >= 0 && static_cast<uint64_t>(count) <= Remaining() / size;
  }

  /// Moves to `offset`, which may lie at the end.
  void Seek(uint64_t offset) {
    if (offset > bytes_.size()) {
      failed_ = true;
    } else {
      offset_ = offset;
    }
  }

  template <typename T>
  T Number() {
    if (failed_ || Remaining() < sizeof(T)) {
      failed_ = true;
      return T{};
    }
    const T value = LoadNumber<T>(bytes_.data() + offset_, bigEndian_);
    offset_ += sizeof(T);
    return value;
  }

  template <typename T, size_t N>
  std::array<T, N> Numbers() {
    std::array<T, N> values{};
    for (T& value : values) value = Number<T>();
    return values;
  }

  std::string_view Bytes(uint64_t size) {
    if (failed_ || Remaining() < size) {
      failed_ = true;
      return {};
    }
    const std::string_view taken = bytes_.substr(static_cast<size_t>(offset_), static_cast<size_t>(size));
    offset_ += size;
    return taken;
  }

 private:
  std::string_view bytes_;
  uint64_t offset_ = 0;
  bool bigEndian_;
  bool failed_ = false;
};

}  // namespace base
