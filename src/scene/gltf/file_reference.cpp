// SPDX-License-Identifier: MIT
#include "scene/gltf/file_reference.h"

#include <algorithm>
#include <array>

#include "base/plain_text.h"
#include "platform/files.h"
#include "scene/gltf/document.h"
#include "scene/model/texture.h"

namespace scene::gltf {
namespace {

constexpr std::string_view kData = "data:", kBase64 = ";base64";

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// `uri` with what is written as "%20" in it.
std::string DecodePercents(std::string_view uri) {
  std::string text;
  for (size_t i = 0; i < uri.size(); ++i) {
    const int high = uri[i] == '%' && i + 2 < uri.size() ? HexDigit(uri[i + 1]) : -1;
    const int low = high >= 0 ? HexDigit(uri[i + 2]) : -1;
    text += low >= 0 ? static_cast<char>(high * 16 + low) : uri[i];
    if (low >= 0) i += 2;
  }
  return text;
}

}  // namespace

bool IsDataUri(std::string_view uri) {
  return base::LowerCase(std::string(uri.substr(0, kData.size()))) == kData;
}

std::string DecodeDataUri(std::string_view uri) {
  const size_t comma = uri.find(',');
  if (comma == std::string_view::npos) throw Fault("embedded data is damaged");
  if (!uri.substr(0, comma).ends_with(kBase64)) return DecodePercents(uri.substr(comma + 1));
  const std::string_view text = uri.substr(comma + 1);
  std::string bytes = DecodeBase64(text);
  if (bytes.empty() && !text.empty()) throw Fault("embedded data is damaged");
  return bytes;
}

std::string PathBelowModel(std::string_view uri) {
  const std::string text = DecodePercents(uri);
  std::string path;
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find_first_of("/\\", start), text.size());
    const std::string_view part(text.data() + start, end - start);
    start = end + 1;
    if (part == ".") continue;
    // Plain names are neither ".." nor empty, as before the slash of an absolute path.
    if (!platform::IsPlainNameOfModel(part)) return {};
    path += (path.empty() ? "" : "\\") + std::string(part);
  }
  return path;
}

}  // namespace scene::gltf
