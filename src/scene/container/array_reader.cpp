// SPDX-License-Identifier: MIT
#include "scene/container/array_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "base/byte_cursor.h"
#include "scene/container/inflate.h"
#include "scene/container/number_text.h"

namespace scene {
namespace {

/// The most that one array may take when it is decoded.
constexpr size_t kMostBytes = 0x7fffffff;

/// `value` as T: integers are cut and clamped, numbers that are not finite become 0.
template <typename T, typename S>
T ConvertNumber(S value) {
  if constexpr (std::is_floating_point_v<T>) {
    const T number = static_cast<T>(value);
    return std::isfinite(number) ? number : T{};
  } else {
    int64_t whole;
    if constexpr (std::is_floating_point_v<S>) {
      whole = std::isfinite(value) ? ToInteger(static_cast<double>(value)) : 0;
    } else {
      whole = static_cast<int64_t>(value);
    }
    constexpr int64_t kLowest = std::numeric_limits<T>::min(), kHighest = std::numeric_limits<T>::max();
    return static_cast<T>(whole < kLowest ? kLowest : whole > kHighest ? kHighest : whole);
  }
}

template <typename S, typename T>
void ConvertElements(const char* from, size_t count, bool bigEndian, T* to) {
  for (size_t i = 0; i < count; ++i) {
    to[i] = ConvertNumber<T>(base::LoadNumber<S>(from + i * sizeof(S), bigEndian));
  }
}

template <typename T>
void ConvertArray(char element, const char* from, size_t count, bool bigEndian, T* to) {
  switch (element) {
    case 'f':
      return ConvertElements<float>(from, count, bigEndian, to);
    case 'd':
      return ConvertElements<double>(from, count, bigEndian, to);
    case 'i':
      return ConvertElements<int32_t>(from, count, bigEndian, to);
    case 'l':
      return ConvertElements<int64_t>(from, count, bigEndian, to);
    default:
      return ConvertElements<uint8_t>(from, count, bigEndian, to);
  }
}

template <typename T>
constexpr char NativeElement() {
  return std::is_same_v<T, double> ? 'd' : 'i';
}

template <typename T>
bool ReadTypedArray(const Value& value, bool bigEndian, FbxArray<T>& out) {
  const size_t elementSize = ArrayElementSize(value.element);
  const size_t bytes = value.count * elementSize;
  const bool native = value.element == NativeElement<T>();
  if (value.count > kMostBytes / sizeof(T)) return false;
  T* to = out.Allocate(value.count);
  if (!value.compressed) {
    ConvertArray(value.element, value.data, value.count, bigEndian, to);
    return true;
  }
  if (native) {
    // Straight into its final place, then made right in place.
    if (!Inflate(value.Span(), to, bytes)) return false;
    ConvertArray(value.element, reinterpret_cast<const char*>(to), value.count, bigEndian, to);
    return true;
  }
  const auto raw = std::make_unique_for_overwrite<char[]>(bytes);
  if (!Inflate(value.Span(), raw.get(), bytes)) return false;
  ConvertArray(value.element, raw.get(), value.count, bigEndian, to);
  return true;
}

template <typename T>
bool ReadMadeArray(const Value& value, FbxArray<T>& out) {
  const auto* make = std::get_if<MakeArray<T>>(value.maker);
  if (!make || value.count > kMostBytes / sizeof(T)) return false;
  out = (*make)();
  return true;
}

template <typename T>
void ReadScalarRun(const Value& run, bool bigEndian, FbxArray<T>& out) {
  T* to = out.Allocate(run.count);
  const char* p = run.data;
  const char* end = run.data + run.size;
  for (uint32_t i = 0; i < run.count; ++i) {
    Value value;
    p += 1 + ReadScalar(*p, p + 1, static_cast<size_t>(end - p) - 1, bigEndian, value);
    to[i] =
        value.kind == Value::Kind::Integer ? ConvertNumber<T>(value.integer) : ConvertNumber<T>(value.real);
  }
}

/// Numbers of a text list; blanks, commas, line ends and comments separate them.
template <typename T>
void ReadNumberText(const RecordTree& tree, const Value& list, FbxArray<T>& out) {
  constexpr std::ptrdiff_t kPieceSize = 1 << 16;
  const char* p = list.data;
  const char* counted = p;  ///< up to here the tree knows what was read
  const char* const end = list.data + list.size;
  // Every number but the last is followed by at least one separator.
  const size_t most = static_cast<size_t>(list.size) / 2 + 1;
  const size_t guess = list.count < most ? list.count : most;
  FbxArray<T> numbers;
  T* to = numbers.Allocate(guess);
  size_t count = 0;
  while (p != end) {
    if (*p == ';') {
      const void* line = std::memchr(p, '\n', static_cast<size_t>(end - p));
      p = line ? static_cast<const char*>(line) : end;
    } else if (IsNumberCharacter(*p)) {
      if (count == numbers.size()) {
        FbxArray<T> larger;
        T* place = larger.Allocate(count * 2 + 16);
        std::memcpy(place, to, count * sizeof(T));
        numbers = std::move(larger);
        to = numbers.begin();
      }
      p = ParseNumber(p, end, to[count++]);
      if (p - counted >= kPieceSize) {
        tree.PassedOver(static_cast<size_t>(p - counted));
        counted = p;
      }
    } else {
      ++p;
    }
  }
  tree.PassedOver(static_cast<size_t>(end - counted));
  numbers.Shorten(count);
  out = std::move(numbers);
}

template <typename T>
bool ReadNumbers(RecordRef record, FbxArray<T>& out, size_t most) {
  out.Release();
  const Value* first = record.ValueAt(0);
  if (!first) return true;
  const size_t count = ClaimedCount(record);
  if (count > most || count * sizeof(double) > record.Tree().MemoryAllowance()) return false;
  const bool bigEndian = record.Tree().bigEndian;
  if (first->kind == Value::Kind::Array || first->kind == Value::Kind::Made) {
    const bool read = first->kind == Value::Kind::Array ? ReadTypedArray(*first, bigEndian, out)
                                                        : ReadMadeArray(*first, out);
    if (!read) {
      out.Release();
      record.Tree().NoteDamaged(record.Index());
    }
    record.Tree().PassedOver(static_cast<size_t>(first->size));
    return read;
  }
  if (first->kind == Value::Kind::ScalarRun) {
    ReadScalarRun(*first, bigEndian, out);
    return true;
  }
  if (first->kind == Value::Kind::NumberText) {
    ReadNumberText(record.Tree(), *first, out);
    return true;
  }
  T* to = out.Allocate(record.ValueCount());
  for (size_t i = 0; i < out.size(); ++i) {
    const Value& value = *record.ValueAt(i);
    to[i] = value.kind == Value::Kind::Integer ? ConvertNumber<T>(value.integer)
                                               : ConvertNumber<T>(record.Number(i, 0.0));
  }
  return true;
}

}  // namespace

bool ReadArray(RecordRef record, FbxArray<double>& out, size_t most) {
  return ReadNumbers(record, out, most);
}
bool ReadArray(RecordRef record, FbxArray<int32_t>& out, size_t most) {
  return ReadNumbers(record, out, most);
}

size_t ClaimedCount(RecordRef record) {
  const Value* first = record.ValueAt(0);
  if (!first || !first->IsList()) return record.ValueCount();
  // A text cannot hold more numbers than it has room for separators.
  const size_t room = static_cast<size_t>(first->size) / 2 + 1;
  return first->kind == Value::Kind::NumberText ? std::min<size_t>(first->count, room) : first->count;
}

size_t ArrayElementSize(char code) {
  switch (code) {
    case 'd':
    case 'l':
      return 8;
    case 'f':
    case 'i':
      return 4;
    case 'b':
    case 'c':
      return 1;
    default:
      return 0;
  }
}

size_t ReadScalar(char code, const char* p, size_t left, bool bigEndian, Value& value) {
  const auto integer = [&](auto number) {
    value.kind = Value::Kind::Integer;
    value.integer = static_cast<int64_t>(number);
    return sizeof number;
  };
  const auto real = [&](auto number) {
    value.kind = Value::Kind::Real;
    value.real = static_cast<double>(number);
    return sizeof number;
  };
  switch (code) {
    case 'C':
    case 'B':
    case 'Z':
      return left < 1 ? 0 : integer(base::LoadNumber<uint8_t>(p, bigEndian));
    case 'Y':
      return left < 2 ? 0 : integer(base::LoadNumber<int16_t>(p, bigEndian));
    case 'I':
      return left < 4 ? 0 : integer(base::LoadNumber<int32_t>(p, bigEndian));
    case 'L':
      return left < 8 ? 0 : integer(base::LoadNumber<int64_t>(p, bigEndian));
    case 'F':
      return left < 4 ? 0 : real(base::LoadNumber<float>(p, bigEndian));
    case 'D':
      return left < 8 ? 0 : real(base::LoadNumber<double>(p, bigEndian));
    default:
      return 0;
  }
}

}  // namespace scene
