// SPDX-License-Identifier: MIT
#include "package/deflate_member.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <new>

#include "core/pack_level.h"

namespace ts3d {
namespace {

/// Control characters that no text holds make a file binary.
bool IsTextByZlibsRule(std::string_view bytes) {
  const auto isBinary = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte <= 6 || (byte >= 14 && byte <= 25) || (byte >= 28 && byte <= 31);
  };
  const auto isText = [](char c) {
    return c == '\t' || c == '\n' || c == '\r' || static_cast<unsigned char>(c) >= 32;
  };
  return std::none_of(bytes.begin(), bytes.end(), isBinary) &&
         std::any_of(bytes.begin(), bytes.end(), isText);
}

}  // namespace

int StreamLevel(std::optional<int> packLevel) {
  const bool isUsual = !packLevel || *packLevel == kDefaultPackLevel;
  return isUsual ? Z_DEFAULT_COMPRESSION : std::min(*packLevel, Z_BEST_COMPRESSION);
}

MemberDeflater::MemberDeflater(int level) : compressor_(libdeflate_alloc_compressor(level)) {}

void MemberDeflater::Free::operator()(libdeflate_compressor* compressor) const {
  libdeflate_free_compressor(compressor);
}

bool MemberDeflater::Deflate(std::string_view bytes, DeflatedMember& member) const {
  if (!compressor_) return false;
  const size_t most = libdeflate_deflate_compress_bound(compressor_.get(), bytes.size());
  member.bytes.reset(new (std::nothrow) char[most]);
  if (!member.bytes) return false;
  member.size =
      libdeflate_deflate_compress(compressor_.get(), bytes.data(), bytes.size(), member.bytes.get(), most);
  member.unpackedSize = bytes.size();
  member.checksum = libdeflate_crc32(0, bytes.data(), bytes.size());
  member.isText = IsTextByZlibsRule(bytes);
  return member.size > 0;
}

}  // namespace ts3d
