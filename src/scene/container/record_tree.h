// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "scene/container/chunk_list.h"
#include "scene/container/fbx_array.h"

namespace scene {

/// What a container reader could not read, in words, and where.
struct ParseError {
  std::string text;

  bool Failed() const { return !text.empty(); }
};

/// Makes an array whose numbers are in no file as they are read.
template <class T>
using MakeArray = std::function<FbxArray<T>()>;
using ArrayMaker = std::variant<MakeArray<int32_t>, MakeArray<double>>;

/// One value of a record. Arrays and long lists stay as the bytes of the file until somebody reads them.
struct Value {
  enum class Kind : uint8_t {
    Integer,     ///< `integer`
    Real,        ///< `real`
    Text,        ///< `size` bytes at `data`; the word of an ASCII file too
    Bytes,       ///< raw bytes of a binary file
    Array,       ///< typed array of a binary file: `count` elements of type `element` in `size` bytes
    Made,        ///< `count` numbers at most, which `maker` makes each time that they are read
    ScalarRun,   ///< `count` numeric properties of a binary file, type bytes included
    NumberText,  ///< comma list of an ASCII file; `count` is a guess
  };

  Kind kind = Kind::Integer;
  char element = 0;         ///< type code of an array: f d i l b c
  bool compressed = false;  ///< an array in a zlib stream
  uint32_t count = 0;
  union {
    int64_t integer = 0;
    double real;
    const char* data;
    const ArrayMaker* maker;
  };
  uint64_t size = 0;

  std::string_view Span() const { return {data, static_cast<size_t>(size)}; }
  bool IsList() const { return kind >= Kind::Array; }
};

/// One record. Records stand in pre-order, so the children of record i start at i + 1 and end before `end`.
struct Record {
  std::string_view name;
  uint32_t firstValue = 0;
  uint32_t valueCount = 0;
  uint32_t end = 0;  ///< index behind the last record below this one
};

class RecordRef;

/// All records of a file, whichever container it came in, and the bytes that they point into.
class RecordTree {
 public:
  std::string_view bytes;               ///< the file
  uint64_t otherFiles = 0;              ///< bytes of the files beside it that belong to it
  std::shared_ptr<const void> storage;  ///< keeps `bytes` alive
  std::function<void()> releasePages;   ///< gives back memory of `bytes` that can be read again; may be empty
  std::function<void(double fraction)> onRead;  ///< told how much of `bytes` was read; may be empty
  bool ascii = false;
  bool bigEndian = false;
  int version = 0;  ///< 7400 for 7.4
  ChunkList<Record> records;
  ChunkList<Value> values;
  std::deque<std::string> decodedTexts;  ///< texts and numbers that are not in the file as they stand
  std::deque<ArrayMaker> arrayMakers;
  uint64_t unpackedBytes = 0;  ///< of the numbers among `decodedTexts`, and what those arrays keep

  /// Counts bytes of the file that were read for now, and gives their memory back when they have become many:
  /// a text is many times as large as the numbers in it.
  void PassedOver(size_t count) const {
    passed_ += count;
    if (passed_ < kMostPassed) return;
    passed_ = 0;
    if (releasePages) releasePages();
  }
  /// Tells `onRead` of the place that a reader has come to, when it is much farther than the last.
  void ReadUpTo(size_t offset) {
    if (offset < nextTold_) return;
    constexpr size_t kSteps = 50, kSmallestStep = 1 << 16;
    const size_t step = bytes.size() / kSteps;
    nextTold_ = offset + (step < kSmallestStep ? kSmallestStep : step);
    if (onRead) onRead(static_cast<double>(offset) / static_cast<double>(bytes.size()));
  }
  /// The most that may be unpacked at a time: what a file of this size can honestly ask for.
  uint64_t MemoryAllowance() const { return 16 * FileSize() + (64 << 20); }
  uint64_t FileSize() const { return bytes.size() + otherFiles; }
  /// Bytes that the records take.
  uint64_t RecordMemory() const {
    return records.size() * sizeof(Record) + values.size() * sizeof(Value) + unpackedBytes;
  }
  /// Whether the records take more memory than those of any honest file of this size.
  bool IsOvercrowded() const { return RecordMemory() > 10 * bytes.size() + (size_t{16} << 20); }

  /// Remembers that the array of a record cannot be unpacked.
  void NoteDamaged(uint32_t record) const;
  /// The first such records, each once.
  const std::vector<uint32_t>& Damaged() const { return damaged_; }

  /// The first top-level record `name`; an invalid reference when there is none.
  RecordRef Find(std::string_view name) const;

 private:
  static constexpr size_t kMostPassed = 1 << 16;
  mutable size_t passed_ = 0;
  size_t nextTold_ = 0;
  mutable std::vector<uint32_t> damaged_;
};

/// A record of a tree, or none: then it has no name, no values and no children.
class RecordRef {
 public:
  RecordRef() = default;
  RecordRef(const RecordTree* tree, uint32_t index) : tree_(tree), index_(index) {}

  explicit operator bool() const { return tree_ != nullptr; }
  std::string_view Name() const { return tree_ ? Get().name : std::string_view(); }
  size_t ValueCount() const { return tree_ ? Get().valueCount : 0; }
  /// Value `i`, or null.
  const Value* ValueAt(size_t i) const;

  /// Value `i` as a number; `otherwise` when there is none or it
  /// is no number. Never infinite or not-a-number.
  double Number(size_t i, double otherwise) const;
  int64_t Integer(size_t i, int64_t otherwise) const;
  /// Value `i` as text; empty when there is none or it is no text.
  std::string_view Text(size_t i) const;

  /// The first child called `name`, or none.
  RecordRef Child(std::string_view name) const;

  /// Children in file order: for (RecordRef child : record).
  class Iterator {
   public:
    Iterator(const RecordTree* tree, uint32_t index) : tree_(tree), index_(index) {}
    RecordRef operator*() const { return {tree_, index_}; }
    Iterator& operator++() {
      index_ = tree_->records[index_].end;
      return *this;
    }
    bool operator!=(const Iterator& o) const { return index_ != o.index_; }

   private:
    const RecordTree* tree_;
    uint32_t index_;
  };
  Iterator begin() const { return {tree_, tree_ ? index_ + 1 : 0}; }
  Iterator end() const { return {tree_, tree_ ? Get().end : 0}; }

  const RecordTree& Tree() const { return *tree_; }
  /// Number of the record in its tree; how many records are below it.
  uint32_t Index() const { return index_; }
  uint32_t CountBelow() const { return tree_ ? Get().end - index_ - 1 : 0; }
  /// Whether record number `index` is this one or below it.
  bool Holds(uint32_t index) const { return tree_ && index >= index_ && index < Get().end; }

 private:
  const Record& Get() const { return tree_->records[index_]; }

  const RecordTree* tree_ = nullptr;
  uint32_t index_ = 0;
};

}  // namespace scene
