// SPDX-License-Identifier: MIT
#include <limits>

#include "base/byte_cursor.h"
#include "scene/container/array_reader.h"
#include "scene/container/container.h"
#include "scene/container/inflate.h"

namespace scene {
namespace {

constexpr uint64_t kHeaderSize = 27;
constexpr int kWideRecordVersion = 7500;  ///< record headers have 64-bit fields from here on
constexpr uint64_t kLargestArray = 0x7fffffff;
/// Longer lists of single numbers are kept as one run of bytes.
constexpr uint64_t kLongestPlainList = 8;

class BinaryReader {
 public:
  explicit BinaryReader(RecordTree& tree)
      : tree_(tree),
        wide_(tree.version >= kWideRecordVersion),
        bytes_(tree.bytes),
        in_(bytes_, tree.bigEndian) {}

  ParseError Read() {
    in_.Seek(kHeaderSize);
    while (!done_) {
      tree_.ReadUpTo(static_cast<size_t>(in_.Offset()));
      if (!open_.empty() && in_.Offset() == open_.back().end) {
        Close();  // a list without its null record
      } else if (open_.empty() && in_.Remaining() == 0) {
        return CheckCutFile();
      } else if (!ReadRecord()) {
        return error_;
      }
    }
    return {};
  }

 private:
  struct OpenRecord {
    uint32_t index;
    uint64_t end;
  };
  struct Header {
    uint64_t end = 0, valueCount = 0, valueBytes = 0;
    std::string_view name;
  };

  ParseError Error(const std::string& what) {
    error_.text = what + " (at byte " + std::to_string(in_.Offset()) + ")";
    return error_;
  }
  bool Fail(const std::string& what) {
    Error(what);
    return false;
  }

  /// A file may end without its null record and footer, but not before what makes it a scene.
  ParseError CheckCutFile() {
    return tree_.Find("Objects") && tree_.Find("Connections") ? ParseError{}
                                                              : Error("the file ends too early");
  }

  uint64_t Word() { return wide_ ? in_.Number<uint64_t>() : in_.Number<uint32_t>(); }

  uint64_t Limit() const { return open_.empty() ? bytes_.size() : open_.back().end; }

  void Close() {
    tree_.records[open_.back().index].end = static_cast<uint32_t>(tree_.records.size());
    in_.Seek(open_.back().end);
    open_.pop_back();
  }

  bool ReadHeader(Header& header) {
    header.end = Word();
    header.valueCount = Word();
    header.valueBytes = Word();
    header.name = in_.Bytes(in_.Number<uint8_t>());
    return !in_.Failed() && in_.Offset() <= Limit();
  }

  bool ReadRecord() {
    const uint64_t start = in_.Offset();
    Header header;
    if (!ReadHeader(header)) return Fail("a record is cut off");
    if (header.end == 0 && header.name.empty()) {
      if (open_.empty()) {
        done_ = true;
      } else {
        Close();
      }
      return true;
    }
    const uint64_t limit = Limit();
    if (header.valueBytes > limit - in_.Offset()) return Fail(Quoted(header) + ": its values reach too far");
    const uint64_t valuesEnd = in_.Offset() + header.valueBytes;
    // Leaf records of some writers leave the end at 0.
    const uint64_t end = header.end == 0 ? valuesEnd : header.end;
    if (end < valuesEnd || end > limit || end <= start)
      return Fail(Quoted(header) + ": its end lies outside");
    if (open_.size() >= kMaxRecordDepth) return Fail(Quoted(header) + ": nested too deeply");
    if (tree_.records.size() >= std::numeric_limits<uint32_t>::max() - 1 || tree_.IsOvercrowded()) {
      return Fail("too many records for a file of this size");
    }

    Record record;
    record.name = header.name;
    record.firstValue = static_cast<uint32_t>(tree_.values.size());
    if (!ReadValues(header, valuesEnd)) return false;
    record.valueCount = static_cast<uint32_t>(tree_.values.size()) - record.firstValue;
    const auto index = static_cast<uint32_t>(tree_.records.size());
    record.end = index + 1;
    tree_.records.push_back(record);
    if (end > valuesEnd) open_.push_back({index, end});
    return true;
  }

  static std::string Quoted(const Header& header) { return "record \"" + std::string(header.name) + "\""; }

  bool ReadValues(const Header& header, uint64_t valuesEnd) {
    // Each value takes at least its type byte.
    if (header.valueCount > header.valueBytes) return Fail(Quoted(header) + ": more values than bytes");
    if (header.valueCount > kLongestPlainList && ReadScalarRun(header)) return true;
    for (uint64_t i = 0; i < header.valueCount; ++i) {
      if (!ReadValue(header, valuesEnd)) return false;
    }
    return in_.Offset() == valuesEnd || Fail(Quoted(header) + ": its values do not fill their space");
  }

  /// Takes all values of a record as one run when they are numbers; else leaves everything as it was.
  bool ReadScalarRun(const Header& header) {
    const char* const begin = bytes_.data() + in_.Offset();
    const char* p = begin;
    const char* const end = begin + header.valueBytes;
    for (uint64_t i = 0; i < header.valueCount; ++i) {
      Value ignored;
      if (p == end) return false;
      const size_t used =
          scene::ReadScalar(*p, p + 1, static_cast<size_t>(end - p) - 1, tree_.bigEndian, ignored);
      if (used == 0) return false;
      p += used + 1;
    }
    if (p != end || header.valueCount > std::numeric_limits<uint32_t>::max()) return false;
    Value run;
    run.kind = Value::Kind::ScalarRun;
    run.count = static_cast<uint32_t>(header.valueCount);
    run.data = begin;
    run.size = header.valueBytes;
    tree_.values.push_back(run);
    in_.Seek(in_.Offset() + header.valueBytes);
    return true;
  }

  bool ReadValue(const Header& header, uint64_t valuesEnd) {
    const char code = in_.Number<char>();
    const bool hasRoom = !in_.Failed() && in_.Offset() <= valuesEnd;
    const auto left = static_cast<size_t>(hasRoom ? valuesEnd - in_.Offset() : 0);
    Value value;
    if (const size_t used =
            scene::ReadScalar(code, bytes_.data() + in_.Offset(), left, tree_.bigEndian, value)) {
      in_.Seek(in_.Offset() + used);
    } else if (code == 'S' || code == 'R') {
      const uint64_t size = in_.Number<uint32_t>();
      if (left < 4 || size > left - 4) return Fail(Quoted(header) + ": a text reaches too far");
      SetBytes(value, code == 'S' ? Value::Kind::Text : Value::Kind::Bytes, size);
    } else if (ArrayElementSize(code) != 0) {
      if (!ReadArrayHeader(header, code, left, value)) return false;
    } else {
      return Fail(Quoted(header) + ": a value of unknown type or cut off");
    }
    tree_.values.push_back(value);
    return true;
  }

  void SetBytes(Value& value, Value::Kind kind, uint64_t size) {
    value.kind = kind;
    value.data = in_.Bytes(size).data();
    value.size = size;
  }

  bool ReadArrayHeader(const Header& header, char code, uint64_t left, Value& value) {
    const uint64_t count = in_.Number<uint32_t>();
    const uint32_t encoding = in_.Number<uint32_t>();
    const uint64_t size = in_.Number<uint32_t>();
    const uint64_t unpacked = count * ArrayElementSize(code);
    if (left < 12 || size > left - 12) return Fail(Quoted(header) + ": an array reaches too far");
    if (encoding > 1) return Fail(Quoted(header) + ": an array of unknown encoding");
    if (encoding == 0 && unpacked != size)
      return Fail(Quoted(header) + ": an array's size does not fit its count");
    if (unpacked > kLargestArray || (encoding == 1 && unpacked > LargestInflatedSize(size))) {
      return Fail(Quoted(header) + ": an array claims more elements than it can hold");
    }
    value.element = code;
    value.compressed = encoding == 1;
    value.count = static_cast<uint32_t>(count);
    SetBytes(value, Value::Kind::Array, size);
    return true;
  }

  RecordTree& tree_;
  bool wide_;
  std::string_view bytes_;
  base::ByteCursor in_;
  std::vector<OpenRecord> open_;
  ParseError error_;
  bool done_ = false;
};

}  // namespace

ParseError ReadBinaryRecords(RecordTree& tree) {
  constexpr size_t kByteOrderOffset = 22;
  if (tree.bytes.size() < kHeaderSize) return {"the file ends inside its header"};
  tree.bigEndian = tree.bytes[kByteOrderOffset] != 0;
  return BinaryReader(tree).Read();
}

}  // namespace scene
