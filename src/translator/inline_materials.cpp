// SPDX-License-Identifier: MIT
#include "translator/inline_materials.h"

#include <algorithm>
#include <map>

namespace translator {
namespace {

constexpr std::string_view kBlanks = " \t\r\n", kMaterial = "Material";

/// Reads a text piece by piece: words, single marks, and what is to be passed over.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  size_t At() const { return at_; }
  bool HasMore() const { return at_ < text_.size(); }

  /// The next piece; blanks, comments and texts in quotes are pieces of their own, and empty here.
  std::string_view Next() {
    const size_t start = at_;
    if (text_[at_] == '"') {
      at_ = After(text_.find('"', at_ + 1));
    } else if (text_[at_] == '#' || text_.substr(at_, 2) == "//") {
      at_ = After(text_.find('\n', at_));
    } else if (kBlanks.find(text_[at_]) != kBlanks.npos) {
      at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
    } else if (kMarks.find(text_[at_]) != kMarks.npos) {
      return text_.substr(at_++, 1);
    } else {
      at_ = std::min(text_.find_first_of(" \t\r\n\"#{};,", at_ + 1), text_.size());
      return text_.substr(start, at_ - start);
    }
    return {};
  }

  /// The next piece that is not empty.
  std::string_view NextWord() {
    while (HasMore()) {
      if (const std::string_view piece = Next(); !piece.empty()) return piece;
    }
    return {};
  }

 private:
  static constexpr std::string_view kMarks = "{};,";

  size_t After(size_t found) const { return found == text_.npos ? text_.size() : found + 1; }

  std::string_view text_;
  size_t at_ = 0;
};

/// The materials that stand by themselves, by their names.
std::map<std::string_view, std::string_view> FindMaterials(std::string_view text) {
  std::map<std::string_view, std::string_view> materials;
  std::string_view name;
  size_t depth = 0, start = 0;
  for (Scanner scanner(text); scanner.HasMore();) {
    const size_t place = scanner.At();
    const std::string_view piece = scanner.Next();
    if (piece == "{") {
      ++depth;
    } else if (piece == "}" && depth > 0 && --depth == 0 && !name.empty()) {
      materials[name] = text.substr(start, scanner.At() - start);
      name = {};
    } else if (depth == 0 && piece == kMaterial) {
      name = scanner.NextWord();
      start = place;
      // That of a template has no name.
      if (name == "{") ++depth, name = {};
    }
  }
  return materials;
}

}  // namespace

std::string InlineMaterials(std::string file) {
  constexpr size_t kHeader = 16;
  if (file.size() < kHeader || file.substr(8, 3) != "txt") return file;
  const std::string_view text = file;
  const auto materials = FindMaterials(text.substr(kHeader));
  std::string result(text.substr(0, kHeader));
  const std::string_view body = text.substr(kHeader);
  for (Scanner scanner(body); scanner.HasMore();) {
    const size_t place = scanner.At();
    if (scanner.Next() == "{") {
      Scanner ahead = scanner;
      const auto known = materials.find(ahead.NextWord());
      if (known != materials.end() && ahead.NextWord() == "}") {
        result += known->second;
        scanner = ahead;
        continue;
      }
    }
    result += body.substr(place, scanner.At() - place);
  }
  return result;
}

}  // namespace translator
