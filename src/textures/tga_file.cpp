// SPDX-License-Identifier: MIT
#include "textures/tga_file.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/byte_cursor.h"
#include "core/file_writer.h"
#include "platform/replacement.h"

namespace textures {
namespace fs = platform::fs;
namespace {

constexpr size_t kHeaderSize = 18;
constexpr unsigned char kUncompressedColours = 2;
/// Stands behind the last pixel, where no reader looks.
constexpr std::string_view kMark = "made by fbx2czp";

[[noreturn]] void FailWriting(const fs::path& path, int reason) {
  throw std::runtime_error("is not converted: " + path.filename().string() + " cannot be written (" +
                           std::strerror(reason) + ")");
}

/// Puts a file into its place in one step; `write` fills it
/// under another name first and tells whether it could.
template <typename Write>
void Replace(const fs::path& path, Write write) {
  platform::Replacement target(path.string());
  platform::FilePtr file = target.Create("wb");
  if (!file) FailWriting(path, errno);
  const bool isWritten = write(file.get());
  if (std::fclose(file.release()) != 0 || !isWritten || !target.TakePlace()) FailWriting(path, errno);
}

bool HasTransparency(const Image& image) {
  for (size_t i = 3; i < image.rgba.size(); i += 4) {
    if (image.rgba[i] != 255) return true;
  }
  return false;
}

/// Pixels are blue, green, red and perhaps alpha; the last row comes first, as readers like it best.
bool WritePixels(const Image& image, bool hasAlpha, std::FILE* file) {
  ts3d::ByteWriter writer(file);
  unsigned char header[kHeaderSize] = {0, 0, kUncompressedColours};
  base::StoreLittleEndian(static_cast<uint16_t>(image.width), header + 12);
  base::StoreLittleEndian(static_cast<uint16_t>(image.height), header + 14);
  header[16] = hasAlpha ? 32 : 24;
  header[17] = hasAlpha ? 8 : 0;
  writer.Bytes(header, sizeof header);
  const auto width = static_cast<size_t>(image.width);
  for (auto y = static_cast<size_t>(image.height); y-- > 0;) {
    for (size_t x = 0; x < width; ++x) {
      const uint8_t* rgba = &image.rgba[(y * width + x) * 4];
      const uint8_t bgra[] = {rgba[2], rgba[1], rgba[0], rgba[3]};
      writer.Bytes(bgra, hasAlpha ? 4 : 3);
    }
  }
  writer.Bytes(kMark.data(), kMark.size());
  return writer.Flush();
}

}  // namespace

void WriteTga(const Image& image, const fs::path& path) {
  const bool hasAlpha = HasTransparency(image);
  Replace(path, [&](std::FILE* file) { return WritePixels(image, hasAlpha, file); });
}

void CopyTga(const fs::path& from, const fs::path& to) {
  platform::MappedFile source;
  std::string error;
  if (!source.Open(from.string(), error)) throw std::runtime_error("is not converted: " + error);
  Replace(to, [&](std::FILE* file) {
    return std::fwrite(source.Bytes().data(), 1, source.Bytes().size(), file) == source.Bytes().size();
  });
}

bool IsWrittenByUs(const fs::path& path) {
  char end[kMark.size()];
  const platform::FilePtr file = platform::OpenFile(path.string(), "rb");
  return file && std::fseek(file.get(), -static_cast<long>(sizeof end), SEEK_END) == 0 &&
         std::fread(end, 1, sizeof end, file.get()) == sizeof end &&
         std::string_view(end, sizeof end) == kMark;
}

bool IsPlainTga(const fs::path& path, int& width, int& height) {
  char header[kHeaderSize];
  const platform::FilePtr file = platform::OpenFile(path.string(), "rb");
  if (!file || std::fread(header, 1, sizeof header, file.get()) != sizeof header) return false;
  const int bits = header[16];
  const bool hasPalette = header[1] != 0;
  if (hasPalette || header[2] != kUncompressedColours || (bits != 24 && bits != 32)) return false;
  width = base::LoadNumber<uint16_t>(header + 12, false);
  height = base::LoadNumber<uint16_t>(header + 14, false);
  const int64_t size = static_cast<int64_t>(kHeaderSize) + static_cast<uint8_t>(header[0]) +
                       int64_t{width} * height * (bits / 8);
  return width > 0 && height > 0 && platform::FileSize(path.string()) >= size;
}

}  // namespace textures
