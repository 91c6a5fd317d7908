// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "scene/container/record_tree.h"

namespace scene::gltf {

/// Writes records of FBX 7.4 into a tree, which keeps their texts and numbers.
class RecordWriter {
 public:
  explicit RecordWriter(RecordTree& tree) : tree_(tree) {}

  /// Begins a record below the one that is open. Values come before the records below.
  /// @param name  stays as long as the tree, as literals do
  RecordWriter& Begin(std::string_view name);
  void End();
  RecordWriter& Integer(int64_t value);
  RecordWriter& Real(double value);
  /// @param text  is copied
  RecordWriter& Text(std::string_view text);
  /// @param bytes  are kept
  RecordWriter& Data(std::string bytes);
  /// Bytes that stay as long as the tree.
  RecordWriter& Bytes(std::string_view bytes);
  /// Numbers that stay as long as the tree.
  RecordWriter& Array(std::span<const float> numbers) { return List('f', numbers); }
  RecordWriter& Array(std::span<const int32_t> numbers) { return List('i', numbers); }
  /// Numbers that are made when somebody reads them.
  /// @param count  the most of them
  /// @param maker  what it uses stays as long as the tree
  RecordWriter& Later(size_t count, ArrayMaker maker);
  /// @param numbers  are copied
  RecordWriter& Copy(std::span<const double> numbers);

 private:
  template <class T>
  RecordWriter& List(char element, std::span<const T> numbers) {
    return AddList(element, {reinterpret_cast<const char*>(numbers.data()), numbers.size_bytes()},
                   numbers.size());
  }
  RecordWriter& AddList(char element, std::string_view bytes, size_t count);
  RecordWriter& Add(const Value& value);

  RecordTree& tree_;
  std::vector<uint32_t> open_;
};

}  // namespace scene::gltf
