// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <limits>

#include "base/plain_text.h"
#include "scene/container/container.h"
#include "scene/container/number_text.h"

namespace scene {
namespace {

/// Arrays are looked through in pieces of this size.
constexpr std::ptrdiff_t kPieceSize = 1 << 16;

/// Longer lists of numbers are kept as text.
constexpr size_t kLongestTextList = 8;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsWordCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '_' || c == '-' || c == '|' || c == '.' ||
         static_cast<unsigned char>(c) >= 0x80;
}

class AsciiReader {
 public:
  explicit AsciiReader(RecordTree& tree) : tree_(tree) {
    const std::string_view text = base::WithoutByteOrderMark(tree.bytes);
    p_ = counted_ = text.data();
    end_ = p_ + text.size();
  }

  ParseError Read() {
    for (;;) {
      SkipSpace();
      if (p_ == end_) break;
      tree_.ReadUpTo(OffsetOf(p_));
      if (*p_ == '}') {
        if (open_.empty()) return Error("a \"}\" closes nothing");
        ++p_;
        Close();
      } else if (!ReadRecord()) {
        return error_;
      }
    }
    if (!open_.empty()) {
      return Error("the file ends inside record \"" + std::string(tree_.records[open_.back()].name) + "\"");
    }
    return {};
  }

 private:
  ParseError Error(const std::string& what) {
    const char* begin = tree_.bytes.data();
    const auto line = std::count(begin, std::min(p_, end_), '\n') + 1;
    error_.text = what + " (at line " + std::to_string(line) + ")";
    return error_;
  }
  bool Fail(const std::string& what) {
    Error(what);
    return false;
  }

  size_t OffsetOf(const char* p) const { return static_cast<size_t>(p - tree_.bytes.data()); }

  void SkipSpace() {
    while (p_ != end_) {
      if (*p_ == ';') {
        const void* line = std::memchr(p_, '\n', static_cast<size_t>(end_ - p_));
        p_ = line ? static_cast<const char*>(line) : end_;
      } else if (IsBlank(*p_)) {
        ++p_;
      } else {
        // A zero byte ends the text.
        if (*p_ == '\0') end_ = p_;
        return;
      }
    }
  }

  void Close() {
    tree_.records[open_.back()].end = static_cast<uint32_t>(tree_.records.size());
    open_.pop_back();
  }

  /// The word at `p_`, and whether a ":" follows it directly, which makes it the name of a record.
  std::string_view PeekWord(bool& isName) const {
    const char* end = p_;
    while (end != end_ && IsWordCharacter(*end)) ++end;
    isName = end != end_ && *end == ':' && end != p_;
    return {p_, static_cast<size_t>(end - p_)};
  }

  bool ReadName(std::string_view& name) {
    if (*p_ == '"') {
      const char* close = FindQuote(p_ + 1);
      if (!close) return Fail("a text is not closed");
      name = {p_ + 1, static_cast<size_t>(close - p_ - 1)};
      p_ = close + 1;
    } else {
      bool isName = false;
      name = PeekWord(isName);
      p_ += name.size();
    }
    if (p_ == end_ || *p_ != ':') return Fail("expected a record's name and a colon");
    ++p_;
    return true;
  }

  const char* FindQuote(const char* from) const {
    return static_cast<const char*>(std::memchr(from, '"', static_cast<size_t>(end_ - from)));
  }

  bool ReadRecord() {
    std::string_view name;
    if (!ReadName(name)) return false;
    if (open_.size() >= kMaxRecordDepth)
      return Fail("record \"" + std::string(name) + "\": nested too deeply");
    constexpr size_t kMost = std::numeric_limits<uint32_t>::max() - 1;
    if (tree_.records.size() >= kMost || tree_.values.size() >= kMost || tree_.IsOvercrowded()) {
      return Fail("too many records for a file of this size");
    }
    Record record;
    record.name = name;
    record.firstValue = static_cast<uint32_t>(tree_.values.size());
    if (!ReadValues()) return false;
    record.valueCount = static_cast<uint32_t>(tree_.values.size()) - record.firstValue;
    const auto index = static_cast<uint32_t>(tree_.records.size());
    record.end = index + 1;
    tree_.records.push_back(record);
    SkipSpace();
    if (p_ != end_ && *p_ == '{') {
      ++p_;
      open_.push_back(index);
    }
    return true;
  }

  /// Values up to the first that no comma leads on from. Lists go on over line ends; a comma may also stand
  /// before the first value or behind the last.
  bool ReadValues() {
    SkipSpace();
    if (p_ != end_ && *p_ == ',') ++p_;
    for (;;) {
      SkipSpace();
      if (p_ == end_ || *p_ == '{' || *p_ == '}') return true;
      if (*p_ == ',') {
        ++p_;
        continue;
      }
      bool isName = false;
      const std::string_view word = PeekWord(isName);
      if (isName) return true;
      if (!ReadValue(word)) return false;
      SkipSpace();
      if (p_ == end_ || *p_ != ',') return true;
      ++p_;
    }
  }

  bool ReadValue(std::string_view word) {
    if (*p_ == '"') return ReadText();
    if (*p_ == '*') return ReadCountedArray();
    if (IsDigit(*p_) || *p_ == '-' || *p_ == '+' || *p_ == '.') {
      ReadNumbers();
      return true;
    }
    if (word.empty()) return Fail("a value that is not a number, word or text");
    Value value;
    if (IsNotANumber(word)) {
      value.kind = Value::Kind::Real;
      value.real = 0.0;
      tree_.values.push_back(value);
      p_ += FindTokenSize();
      return true;
    }
    value.kind = Value::Kind::Text;
    value.data = word.data();
    value.size = word.size();
    tree_.values.push_back(value);
    p_ += word.size();
    return true;
  }

  /// "nan", "nan(ind)", "inf" and "infinity" in any letter case.
  static bool IsNotANumber(std::string_view word) {
    const auto starts = [&](std::string_view lower) {
      return word.size() >= lower.size() && std::equal(lower.begin(), lower.end(), word.begin(),
                                                       [](char a, char b) { return a == (b | 0x20); });
    };
    return starts("nan") || starts("inf");
  }

  size_t FindTokenSize() const {
    const char* end = p_;
    while (end != end_ && IsNumberCharacter(*end)) ++end;
    return static_cast<size_t>(end - p_);
  }

  bool ReadText() {
    const char* begin = p_ + 1;
    const char* close = FindQuote(begin);
    if (!close) return Fail("a text is not closed");
    const std::string_view raw(begin, static_cast<size_t>(close - begin));
    const std::string_view text = raw.find('&') == std::string_view::npos ? raw : Decode(raw);
    Value value;
    value.kind = Value::Kind::Text;
    value.data = text.data();
    value.size = text.size();
    tree_.values.push_back(value);
    p_ = close + 1;
    return true;
  }

  /// Texts escape a quote and the two line ends, and nothing else.
  std::string_view Decode(std::string_view raw) {
    std::string& text = tree_.decodedTexts.emplace_back();
    while (!raw.empty()) {
      size_t used = 1;
      char c = raw[0];
      if (raw.starts_with("&quot;")) {
        c = '"';
        used = 6;
      } else if (raw.starts_with("&lf;")) {
        c = '\n';
        used = 4;
      } else if (raw.starts_with("&cr;")) {
        c = '\r';
        used = 4;
      }
      text += c;
      raw.remove_prefix(used);
    }
    return text;
  }

  /// "*24 { a: 1,2,3 }". The count is not trusted, only kept as a guess.
  bool ReadCountedArray() {
    ++p_;
    int64_t count = 0;
    if (p_ == end_ || !IsDigit(*p_)) return Fail("an array without its count");
    p_ = ParseNumber(p_, end_, count);
    SkipSpace();
    if (p_ == end_ || *p_ != '{') return Fail("an array without its block");
    ++p_;
    SkipSpace();
    bool isName = false;
    const std::string_view name = PeekWord(isName);
    if (isName) p_ += name.size() + 1;
    const char* close = FindArrayEnd(p_);
    if (!close) return Fail("an array is not closed");
    AddNumberText(p_, close, static_cast<uint64_t>(count));
    p_ = close + 1;
    return true;
  }

  /// Lets go of what lies before `p`: most of a text is arrays that nobody may ever read.
  void PassOver(const char* p) {
    if (p - counted_ < kPieceSize) return;
    tree_.PassedOver(static_cast<size_t>(p - counted_));
    tree_.ReadUpTo(OffsetOf(p));
    counted_ = p;
  }

  /// The "}" of the array at `from`, or null. Looks for it piece by piece.
  const char* FindArrayEnd(const char* from) {
    const auto find = [](char c, const char* begin, const char* end) {
      return static_cast<const char*>(std::memchr(begin, c, static_cast<size_t>(end - begin)));
    };
    const char* piece = from;  // ends at the next "}", if there is one
    bool closes = false;
    for (;;) {
      // A comment may hold anything, so look behind it.
      if (const char* comment = find(';', from, piece)) {
        const char* line = find('\n', comment, end_);
        if (!line) return nullptr;
        from = line + 1;
        if (from <= piece) continue;
      } else if (closes) {
        return piece;
      } else {
        from = piece;
      }
      if (from == end_) return nullptr;
      PassOver(from);
      const char* const end = end_ - from > kPieceSize ? from + kPieceSize : end_;
      const char* close = find('}', from, end);
      closes = close != nullptr;
      piece = closes ? close : end;
    }
  }

  void AddNumberText(const char* begin, const char* end, uint64_t guess) {
    Value value;
    value.kind = Value::Kind::NumberText;
    value.data = begin;
    value.size = static_cast<uint64_t>(end - begin);
    value.count = static_cast<uint32_t>(std::min<uint64_t>(guess, std::numeric_limits<uint32_t>::max()));
    tree_.values.push_back(value);
  }

  /// A run of numbers and commas: one value each, or the run's text when it is long.
  void ReadNumbers() {
    size_t count = 0;
    const char* const end = FindNumbersEnd(p_, count);
    if (count > kLongestTextList) {
      AddNumberText(p_, end, count);
      p_ = end;
    } else {
      AddNumber();
    }
  }

  void AddNumber() {
    const std::string_view token(p_, FindTokenSize());
    const char* const stop = p_ + token.size();
    Value value;
    if (token.find_first_not_of("+-0123456789") == std::string_view::npos) {
      value.kind = Value::Kind::Integer;
      ParseNumber(p_, stop, value.integer);
    } else {
      value.kind = Value::Kind::Real;
      ParseNumber(p_, stop, value.real);
    }
    tree_.values.push_back(value);
    p_ = stop;
  }

  const char* SkipBlanksAndComments(const char* p) const {
    while (p != end_ && (IsBlank(*p) || *p == ';')) {
      if (*p == ';') {
        const void* line = std::memchr(p, '\n', static_cast<size_t>(end_ - p));
        p = line ? static_cast<const char*>(line) : end_;
      } else {
        ++p;
      }
    }
    return p;
  }

  /// Behind the last number of the list that starts at `p`: number tokens with a comma between each two.
  const char* FindNumbersEnd(const char* p, size_t& count) {
    const char* last = p;
    for (;;) {
      const char* token = p;
      while (p != end_ && IsNumberCharacter(*p)) ++p;
      // A word before a colon names the next record, a text ends the run.
      if (p == token || (p != end_ && *p == ':')) return last;
      last = p;
      ++count;
      PassOver(p);
      p = SkipBlanksAndComments(p);
      if (p == end_ || *p != ',') return last;
      while (p != end_ && *p == ',') p = SkipBlanksAndComments(p + 1);
    }
  }

  RecordTree& tree_;
  const char* p_ = nullptr;
  const char* counted_ = nullptr;  ///< up to here the tree knows what was read
  const char* end_ = nullptr;
  std::vector<uint32_t> open_;
  ParseError error_;
};

}  // namespace

ParseError ReadAsciiRecords(RecordTree& tree) { return AsciiReader(tree).Read(); }

}  // namespace scene
