// SPDX-License-Identifier: MIT
#include "textures/image_reader.h"

#include <stdexcept>

#include "platform/files.h"
#include "textures/picture_formats.h"

namespace textures {
namespace {

using Decoder = Image (*)(std::string_view bytes, PictureBudget& budget);

/// What files of a kind hold at their start, or 8 bytes further in.
struct Signature {
  size_t at;
  std::string_view text;
  Decoder decode;
};

constexpr Signature kSignatures[] = {{0, "\x89PNG", DecodePng},     {0, "\xff\xd8\xff", DecodeJpeg},
                                     {0, {"II*\0", 4}, DecodeTiff}, {0, {"MM\0*", 4}, DecodeTiff},
                                     {8, "WEBP", DecodeWebp},       {0, "DDS ", DecodeDds},
                                     {0, "8BPS", DecodePsd}};

}  // namespace

Image DecodeImage(std::string_view bytes, PictureBudget& budget) {
  if (bytes.empty()) throw std::runtime_error("is empty");
  for (const Signature& signature : kSignatures) {
    if (bytes.size() > signature.at && bytes.substr(signature.at).starts_with(signature.text)) {
      return signature.decode(bytes, budget);
    }
  }
  return DecodeWithStb(bytes, budget);
}

Image ReadImage(const platform::fs::path& path, PictureBudget& budget) {
  platform::MappedFile file;
  std::string error;
  if (!file.Open(path.string(), error)) throw std::runtime_error("cannot be read: " + error);
  budget.AddFile(file.Bytes().size());
  return DecodeImage(file.Bytes(), budget);
}

}  // namespace textures
