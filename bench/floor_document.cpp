// SPDX-License-Identifier: MIT
#include "floor_document.h"

#include <zlib.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench {
namespace {

size_t ElementSize(char code) { return code == 'd' || code == 'l' ? 8 : code == 'f' || code == 'i' ? 4 : 0; }

template <typename T>
T Load(const char* p) {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

class BinaryFile {
 public:
  BinaryFile(std::string_view bytes, Document& document) : p_(bytes.data()), document_(document) {
    constexpr uint32_t kWideVersion = 7500;
    wide_ = Load<uint32_t>(p_ + 23) >= kWideVersion;
    ReadList(27, bytes.size(), 0, nullptr);
  }

 private:
  uint64_t Word(uint64_t at) const { return wide_ ? Load<uint64_t>(p_ + at) : Load<uint32_t>(p_ + at); }

  void ReadList(uint64_t at, uint64_t end, int depth, Object* object) {
    const uint64_t word = wide_ ? 8 : 4;
    while (at + 3 * word < end) {
      const uint64_t next = Word(at);
      if (next == 0) return;
      const uint64_t valueCount = Word(at + word), valueBytes = Word(at + 2 * word);
      const auto nameSize = static_cast<uint8_t>(p_[at + 3 * word]);
      const std::string_view name(p_ + at + 3 * word + 1, nameSize);
      const char* value = name.data() + nameSize;
      Object* inside = object;
      if (depth == 1 && valueCount == 3 && *value == 'L') inside = &AddObject(name, value);
      if (depth == 1 && name == "C") AddChild(value);
      if (inside && valueCount == 1 && ElementSize(*value) != 0) AddArray(*inside, name, value);
      const auto body = static_cast<uint64_t>(value - p_) + valueBytes;
      if (body < next) ReadList(body, next, depth + 1, inside);
      at = next;
    }
  }

  static const char* SkipText(const char* value) { return value + 5 + Load<uint32_t>(value + 1); }

  Object& AddObject(std::string_view kind, const char* id) {
    Object& object = document_.objects[Load<int64_t>(id + 1)];
    const char* subType = SkipText(id + 9);
    object.kind = kind;
    object.subType.assign(subType + 5, Load<uint32_t>(subType + 1));
    return object;
  }

  void AddChild(const char* type) {
    const char* child = SkipText(type);
    document_.children.emplace(Load<int64_t>(child + 10), Load<int64_t>(child + 1));
  }

  static void AddArray(Object& object, std::string_view name, const char* header) {
    const auto [entry, isNew] = object.arrays.try_emplace(std::string(name));
    if (!isNew) return;
    Array& array = entry->second;
    array.count = Load<uint32_t>(header + 1);
    const bool packed = Load<uint32_t>(header + 5) != 0;
    const uint32_t stored = Load<uint32_t>(header + 9);
    uLongf size = array.count * ElementSize(*header);
    array.bytes = std::make_unique_for_overwrite<char[]>(size);
    if (!packed) {
      std::memcpy(array.bytes.get(), header + 13, size);
    } else if (uncompress(reinterpret_cast<Bytef*>(array.bytes.get()), &size,
                          reinterpret_cast<const Bytef*>(header + 13), stored) != Z_OK) {
      Fail("a packed array is damaged");
    }
  }

  const char* p_;
  Document& document_;
  bool wide_ = false;
};

/// Takes the text line by line, as exporters write it: one record or one closing brace each.
class AsciiFile {
 public:
  AsciiFile(std::string_view text, Document& document)
      : p_(text.data()), end_(p_ + text.size()), document_(document) {
    Object* object = nullptr;
    for (int depth = 0; p_ < end_;) {
      const std::string_view line = NextLine();
      if (line.empty() || line[0] == ';') continue;
      if (line[0] == '}') {
        --depth;
        continue;
      }
      const size_t colon = line.find(':');
      const std::string_view name = line.substr(0, colon), values = line.substr(colon + 1);
      const bool opens = line.back() == '{';
      if (depth == 1 && name == "C") AddChild(values);
      if (depth == 1 && opens) object = AddObject(name, values);
      if (depth > 1 && opens && object && values.starts_with(" *")) AddArray(*object, name, values);
      depth += opens ? 1 : 0;
    }
  }

 private:
  std::string_view NextLine() {
    const char* begin = p_;
    const void* found = std::memchr(p_, '\n', static_cast<size_t>(end_ - p_));
    const char* end = found ? static_cast<const char*>(found) : end_;
    p_ = end + 1;
    while (begin < end && (*begin == ' ' || *begin == '\t')) ++begin;
    while (end > begin && (end[-1] == ' ' || end[-1] == '\r')) --end;
    return {begin, static_cast<size_t>(end - begin)};
  }

  static int64_t Number(std::string_view text) {
    int64_t number = 0;
    text.remove_prefix(std::min(text.find_first_of("-0123456789"), text.size()));
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
  }

  Object* AddObject(std::string_view kind, std::string_view values) {
    const int64_t id = Number(values.substr(0, values.find(',')));
    if (id == 0) return nullptr;
    Object& object = document_.objects[id];
    object.kind = kind;
    const size_t close = values.rfind('"'), open = values.rfind('"', close - 1);
    object.subType = values.substr(open + 1, close - open - 1);
    return &object;
  }

  void AddChild(std::string_view values) {
    const size_t first = values.find(','), second = values.find(',', first + 1);
    document_.children.emplace(Number(values.substr(second)), Number(values.substr(first, second - first)));
  }

  void AddArray(Object& object, std::string_view name, std::string_view values) {
    const auto [entry, isNew] = object.arrays.try_emplace(std::string(name));
    if (!isNew) return;
    entry->second.count = static_cast<size_t>(Number(values));
    const bool integers = name == "PolygonVertexIndex" || name == "UVIndex" || name == "Materials" ||
                          name == "Indexes" || name == "Edges";
    integers ? ReadNumbers<int32_t>(entry->second) : ReadNumbers<double>(entry->second);
  }

  template <typename T>
  void ReadNumbers(Array& array) {
    array.bytes = std::make_unique_for_overwrite<char[]>(array.count * sizeof(T));
    T* numbers = reinterpret_cast<T*>(array.bytes.get());
    while (*p_ != ':') ++p_;
    for (size_t i = 0; i < array.count; ++i) {
      do ++p_;
      while (*p_ == ' ' || *p_ == '\n' || *p_ == '\t' || *p_ == '\r');
      p_ = std::from_chars(p_, end_, numbers[i]).ptr;
    }
  }

  const char* p_;
  const char* end_;
  Document& document_;
};

}  // namespace

void Fail(const std::string& what) {
  std::fprintf(stderr, "floor: %s\n", what.c_str());
  std::exit(1);
}

Document ReadDocument(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (!file || std::fseek(file, 0, SEEK_END) != 0) Fail("cannot open " + path);
  const auto size = static_cast<size_t>(std::ftell(file));
  std::rewind(file);
  const auto bytes = std::make_unique_for_overwrite<char[]>(size);
  if (std::fread(bytes.get(), 1, size, file) != size) Fail("cannot read " + path);
  std::fclose(file);
  Document document;
  const std::string_view all(bytes.get(), size);
  if (all.starts_with("Kaydara FBX Binary")) {
    BinaryFile(all, document);
  } else {
    AsciiFile(all, document);
  }
  return document;
}

}  // namespace bench
