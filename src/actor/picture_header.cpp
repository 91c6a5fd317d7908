// SPDX-License-Identifier: MIT
#include "actor/picture_header.h"

#include <cstdint>

#include "base/byte_cursor.h"

namespace actor {
namespace {

constexpr size_t kHeaderSize = 18;
constexpr int kCompressed = 8;

bool IsDepth(int bits) { return bits == 8 || bits == 15 || bits == 16 || bits == 24 || bits == 32; }

}  // namespace

const char* ReadPictureHeader(std::string_view bytes, PictureHeader& header) {
  if (bytes.size() < kHeaderSize) return "is too short to be a picture";
  const auto byte = [bytes](size_t at) { return static_cast<int>(static_cast<unsigned char>(bytes[at])); };
  const auto word = [bytes](size_t at) -> int {
    return base::LoadNumber<uint16_t>(bytes.data() + at, false);
  };
  header = {word(12), word(14), byte(16)};
  const int type = byte(2), kind = type & ~kCompressed;
  if (byte(1) > 1 || kind < 1 || kind > 3 || !IsDepth(header.bits)) return "is not a .tga picture";
  if (header.width == 0 || header.height == 0) return "is a picture without any pixels";
  if (type & kCompressed) return nullptr;
  const auto size = [](int number) { return static_cast<uint64_t>(number); };
  const uint64_t colourMap = byte(1) == 1 ? size(word(5)) * ((size(byte(7)) + 7) / 8) : 0;
  const uint64_t pixels = size(header.width) * size(header.height) * ((size(header.bits) + 7) / 8);
  return kHeaderSize + size(byte(0)) + colourMap + pixels > bytes.size() ? "ends within its pixels" : nullptr;
}

}  // namespace actor
