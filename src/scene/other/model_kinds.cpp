// SPDX-License-Identifier: MIT
#include "scene/other/model_kinds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/byte_cursor.h"
#include "base/plain_text.h"

namespace scene::other {
namespace {

using namespace std::string_view_literals;

/// `text` from its first line that does not start like a comment.
std::string_view SkipComments(std::string_view text, std::string_view comment) {
  text = base::TextStart(text);
  while (text.starts_with(comment))
    text = base::WithoutBlanksBefore(text.substr(std::min(text.find('\n'), text.size())));
  return text;
}

bool StartsWithAny(std::string_view text, std::span<const std::string_view> words) {
  return std::any_of(words.begin(), words.end(), [&](auto word) { return text.starts_with(word); });
}

bool IsCollada(std::string_view head) {
  return base::TextStart(head).starts_with('<') && head.find("<COLLADA") != head.npos;
}

bool IsB3d(std::string_view head) { return head.starts_with("BB3D"); }

/// Its name and version 2.0 or 2.1.
bool IsPmx(std::string_view head) {
  base::ByteCursor cursor(head.substr(std::min(head.size(), "PMX "sv.size())));
  const auto version = cursor.Number<float>();
  return head.starts_with("PMX ") && !cursor.Failed() && version >= 2.0f && version < 2.2f;
}

bool IsX(std::string_view head) { return head.starts_with("xof "); }

bool IsMd5(std::string_view head) { return SkipComments(head, "//").starts_with("MD5Version"); }

bool IsSmd(std::string_view head) {
  const std::string_view text = SkipComments(head, "//");
  return text.starts_with("version 1") && text.find("nodes") != text.npos;
}

bool IsObj(std::string_view head) {
  static constexpr std::array kWords = {"v "sv, "vn "sv, "vt "sv,     "o "sv,     "g "sv,
                                        "f "sv, "s "sv,  "mtllib "sv, "usemtl "sv};
  return StartsWithAny(SkipComments(head, "#"), kWords);
}

bool IsPly(std::string_view head) { return head.starts_with("ply\n") || head.starts_with("ply\r"); }

/// A main chunk, and in it a version, an editor or meshes.
bool Is3ds(std::string_view head) {
  base::ByteCursor cursor(head);
  const auto main = cursor.Number<uint16_t>();
  cursor.Number<uint32_t>();
  const auto first = cursor.Number<uint16_t>();
  return !cursor.Failed() && main == 0x4d4d && (first == 0x0002 || (first >= 0x3d3d && first <= 0x3d3f));
}

/// Behind 80 bytes of anything a number of triangles: a normal, three points and two bytes each. Normals have length 1,
/// or that of the triangle's area, or none where they are not told; of other files these numbers are tiny or huge.
bool IsBinaryStl(std::string_view head) {
  constexpr size_t kHeader = 80, kTriangle = 50, kWholeHead = 4096, kMostTriangles = 1 << 27;
  if (head.size() < kHeader + 4 + kTriangle) return false;
  base::ByteCursor cursor(head.substr(kHeader));
  const uint64_t count = cursor.Number<uint32_t>();
  if (count == 0 || count > kMostTriangles) return false;
  if (head.size() < kWholeHead && head.size() != kHeader + 4 + kTriangle * count) return false;
  size_t seen = 0, sensible = 0;
  for (; seen < count && cursor.Remaining() >= kTriangle; ++seen) {
    double square = 0;
    for (int k = 0; k < 12; ++k) {
      const double number = static_cast<double>(cursor.Number<float>());
      constexpr double kFarthest = 1e12;
      if (!std::isfinite(number) || std::abs(number) > kFarthest) return false;
      if (k < 3) square += number * number;
    }
    if (square > 1.1) return false;
    constexpr double kTiny = 1e-6;
    sensible += square == 0 || square > kTiny;
    cursor.Bytes(2);
  }
  return 2 * sensible >= seen;
}

bool IsStl(std::string_view head) {
  return (head.starts_with("solid") && head.find("facet") != head.npos) || IsBinaryStl(head);
}

bool BeginsValue(std::string_view text) { return base::WithoutBlanksBefore(text).starts_with('='); }

constexpr const char* kAsFbx = "Y is up, and its characters are taken to look along +Z, as FBX characters do";
constexpr const char* kAsItStands = "its axes are taken as they stand";
constexpr double kMetre = 100, kInch = 2.54;

constexpr ModelKind kKinds[] = {
    {"Collada",
     "dae",
     IsCollada,
     kMetre,
     {0, 0},
     "Y is made to be up where the file says that another axis is"},
    {"X", "x", IsX, 1, {0, 0}, "Z is turned round, as it points away there; Y is up"},
    {"B3D",
     "b3d",
     IsB3d,
     1,
     {0, 180},
     "Z is turned round, as it points away there, and its characters look along it; they are made to look "
     "along +Z, "
     "with Y up"},
    {"PMX", "pmx", IsPmx, 8, {0, 0}, "Z is turned round, as its characters look against it; Y is up"},
    {"MD5",
     "md5mesh",
     IsMd5,
     kInch,
     {0, -90},
     "Z is up there and its characters look along +X; they are made to look along +Z, with Y up"},
    {"SMD",
     "smd",
     IsSmd,
     kInch,
     {-90, 0},
     "Z is up there and its characters look along -Y; they are made to look along +Z, with Y up"},
    {"OBJ", "obj", IsObj, 1, {0, 0}, kAsFbx},
    {"PLY", "ply", IsPly, 1, {0, 0}, kAsItStands},
    {"3DS", "3ds", Is3ds, 1, {0, 0}, "Z is up there, and Y is made to be up"},
    {"STL", "stl", IsStl, 1, {0, 0}, kAsItStands}};

}  // namespace

std::span<const ModelKind> ModelKinds() { return kKinds; }

double ColladaUnit(std::string_view bytes) {
  constexpr std::string_view kMeter = "meter";
  const size_t unit = bytes.find("<unit");
  const std::string_view element =
      unit == bytes.npos ? ""sv : bytes.substr(unit, bytes.find('>', unit) - unit);
  size_t attribute = element.find(kMeter);
  // Units have names like "centimeter", which may come first.
  while (attribute != element.npos &&
         (element[attribute - 1] > ' ' || !BeginsValue(element.substr(attribute + kMeter.size()))))
    attribute = element.find(kMeter, attribute + 1);
  const size_t quote = attribute == element.npos ? element.npos : element.find_first_of("\"'", attribute);
  if (quote == element.npos) return 1;
  constexpr size_t kLongest = 40;
  const double metres = std::strtod(std::string(element.substr(quote + 1, kLongest)).c_str(), nullptr);
  return metres > 0 && std::isfinite(metres) ? metres : 1;
}

}  // namespace scene::other
