// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cctype>

#include "base/byte_cursor.h"
#include "base/plain_text.h"
#include "scene/container/container.h"

namespace scene {
namespace {

constexpr std::string_view kBinaryMagic("Kaydara FBX Binary  \0\x1a", 22);
constexpr size_t kVersionOffset = 23;
/// How far into a text the header record is looked for when its first comment does not tell the format.
constexpr size_t kHeaderSearch = 4096;

void SkipBlanks(std::string_view& text) { text = base::WithoutBlanksBefore(text); }

bool TakeWord(std::string_view& text, std::string_view word) {
  SkipBlanks(text);
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

/// Takes a number of at most two digits.
bool TakeNumber(std::string_view& text, int& number) {
  size_t digits = 0;
  number = 0;
  while (digits < text.size() && digits < 2 && text[digits] >= '0' && text[digits] <= '9') {
    number = number * 10 + (text[digits++] - '0');
  }
  text.remove_prefix(digits);
  return digits > 0;
}

/// The version in "; FBX 7.5.0 project file", or 0.
int VersionOfComment(std::string_view text) {
  SkipBlanks(text);
  int major = 0, minor = 0, revision = 0;
  if (!TakeWord(text, ";") || !TakeWord(text, "FBX")) return 0;
  SkipBlanks(text);
  if (!TakeNumber(text, major) || !TakeWord(text, ".") || !TakeNumber(text, minor)) return 0;
  if (TakeWord(text, ".")) TakeNumber(text, revision);
  return major * 1000 + minor * 100 + revision * 10;
}

/// The version in "FBXVersion: 7500" near the start of a text, or 0.
int VersionOfRecord(std::string_view text) {
  text = text.substr(0, kHeaderSearch);
  const size_t at = text.find("FBXVersion:");
  if (at == std::string_view::npos) return 0;
  text.remove_prefix(at + 11);
  SkipBlanks(text);
  int version = 0;
  for (size_t i = 0; i < text.size() && i < 6 && text[i] >= '0' && text[i] <= '9'; ++i) {
    version = version * 10 + (text[i] - '0');
  }
  return version;
}

}  // namespace

ContainerKind DetectContainer(std::string_view bytes) {
  if (bytes.starts_with(kBinaryMagic)) return ContainerKind::Binary;
  const std::string_view text = base::WithoutByteOrderMark(bytes);
  if (VersionOfComment(text) != 0) return ContainerKind::Ascii;
  const size_t header = text.substr(0, kHeaderSearch).find("FBXHeaderExtension");
  const bool isText = text.substr(0, std::min(header, kHeaderSearch)).find('\0') == std::string_view::npos;
  return header != std::string_view::npos && isText ? ContainerKind::Ascii : ContainerKind::None;
}

int DetectVersion(std::string_view bytes, ContainerKind kind) {
  if (kind == ContainerKind::Binary) {
    if (bytes.size() < kVersionOffset + 4) return 0;
    const uint32_t version =
        base::LoadNumber<uint32_t>(bytes.data() + kVersionOffset, bytes[kVersionOffset - 1] != 0);
    return version > 1000000 ? 0 : static_cast<int>(version);
  }
  if (kind == ContainerKind::None) return 0;
  const std::string_view text = base::WithoutByteOrderMark(bytes);
  const int version = VersionOfComment(text);
  return version != 0 ? version : VersionOfRecord(text);
}

}  // namespace scene
