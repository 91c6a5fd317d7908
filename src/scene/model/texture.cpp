// SPDX-License-Identifier: MIT
#include "scene/model/texture.h"

#include <algorithm>
#include <array>

#include "scene/document/properties.h"

namespace scene {
namespace {

/// The end of a path, with the file's name: systems take no longer ones.
std::string_view EndOf(std::string_view path) {
  constexpr size_t kLongestPath = 4096;
  return path.substr(path.size() - std::min(path.size(), kLongestPath));
}

/// First text among children that files spell in several ways.
std::string_view FirstText(RecordRef record, std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) {
    const std::string_view text = EndOf(record.Child(name).Text(0));
    if (!text.empty()) return text;
  }
  return {};
}

std::string_view FileNameOf(RecordRef record) { return FirstText(record, {"FileName", "Filename"}); }
std::string_view RelativeFileNameOf(RecordRef record) {
  return FirstText(record, {"RelativeFilename", "RelativeFileName"});
}

}  // namespace

KString DecodeBase64(std::string_view text) {
  static constexpr std::string_view kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  while (!text.empty() && text.back() == '=') text.remove_suffix(1);
  std::array<int, 256> digits;
  digits.fill(-1);
  for (size_t i = 0; i < kAlphabet.size(); ++i)
    digits[static_cast<unsigned char>(kAlphabet[i])] = static_cast<int>(i);
  KString bytes;
  bytes.reserve(text.size() / 4 * 3 + 3);
  uint32_t bits = 0;
  int bitCount = 0;
  for (const char c : text) {
    const int digit = digits[static_cast<unsigned char>(c)];
    if (digit < 0) return {};
    bits = (bits << 6 | static_cast<uint32_t>(digit)) & 0xffffff;
    bitCount += 6;
    if (bitCount >= 8) {
      bitCount -= 8;
      bytes += static_cast<char>(bits >> bitCount & 0xff);
    }
  }
  return bytes;
}

KFbxVideo::KFbxVideo(std::string_view name, RecordRef record)
    : KFbxObject(name),
      record_(record),
      fileName_(FileNameOf(record)),
      relativeFileName_(RelativeFileNameOf(record)),
      isNameless_(record.Child("Nameless")) {}

KString KFbxVideo::ReadContent() const {
  const RecordRef content = record_.Child("Content");
  KString bytes;
  for (size_t i = 0; i < content.ValueCount(); ++i) {
    const Value& chunk = *content.ValueAt(i);
    if (chunk.kind == Value::Kind::Bytes) {
      bytes += chunk.Span();
    } else if (chunk.kind == Value::Kind::Text && content.Tree().ascii) {
      // Each chunk is a complete text with its own padding.
      const KString part = DecodeBase64(chunk.Span());
      if (part.empty()) return {};
      bytes += part;
    }
  }
  return bytes;
}

KFbxTexture::KFbxTexture(std::string_view name, RecordRef record)
    : KFbxObject(name),
      fileName_(FileNameOf(record)),
      relativeFileName_(RelativeFileNameOf(record)),
      uvSet_(Properties(record).Text("UVSet")) {}

KFbxTexture* KFbxLayeredTexture::GetBaseTexture() const {
  const auto named = std::find_if(layers_.begin(), layers_.end(), [](const KFbxTexture* layer) {
    return !layer->GetFileName().empty() || !layer->GetRelativeFileName().empty();
  });
  return named == layers_.end() ? nullptr : *named;
}

}  // namespace scene
