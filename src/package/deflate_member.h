// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

struct libdeflate_compressor;

namespace ts3d {

/// Larger members are deflated by zlib, piece by piece: here content and result are in memory together. The
/// same on every system, so that packages are.
inline constexpr int64_t kMostDeflatedAtOnce = int64_t{256} << 20;

/// zlib's level for those, and for all members that are streamed.
int StreamLevel(std::optional<int> packLevel);

/// What an archive takes as a raw member of method 8.
struct DeflatedMember {
  std::unique_ptr<char[]> bytes;
  size_t size = 0;
  size_t unpackedSize = 0;
  uint32_t checksum = 0;  ///< CRC-32 of what was deflated
  bool isText = false;    ///< for the archive's note of what text is, by zlib's rule
};

/// Deflates members at one level, with tables that are made once.
class MemberDeflater {
 public:
  /// @param level  of libdeflate, 0 to 12
  explicit MemberDeflater(int level);

  /// Deflates `bytes`, at most `kMostDeflatedAtOnce`; false when there is not enough memory.
  [[nodiscard]] bool Deflate(std::string_view bytes, DeflatedMember& member) const;

 private:
  struct Free {
    void operator()(libdeflate_compressor* compressor) const;
  };

  std::unique_ptr<libdeflate_compressor, Free> compressor_;
};

}  // namespace ts3d
