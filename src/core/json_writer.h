// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>

namespace ts3d {

/// Writes JSON as text. No memory is std::bad_alloc here, from a plain call: libraries whose values
/// take memory in their destructors would end the host.
class JsonWriter {
 public:
  enum class Layout {
    Lines,   ///< each value on a line of its own
    Compact  ///< all on one line, without spaces
  };

  explicit JsonWriter(Layout layout = Layout::Lines) : layout_(layout) {}

  void OpenObject() { Open('{'); }
  void CloseObject() { Close('}'); }
  void OpenArray() { Open('['); }
  void CloseArray() { Close(']'); }
  void OpenObject(std::string_view name) { Key(name), OpenObject(); }
  void OpenArray(std::string_view name) { Key(name), OpenArray(); }

  /// Names the value that comes next.
  void Key(std::string_view name);
  /// What is no UTF-8 becomes replacement characters.
  void Value(std::string_view text);
  void Value(std::nullptr_t) { Plain("null"); }
  /// The shortest number that is read as this one; what is none: null.
  void Value(double number);
  template <std::integral T>
  void Value(T value) {
    if constexpr (std::same_as<T, bool>) {
      Plain(value ? "true" : "false");
    } else {
      Plain(std::to_string(value));
    }
  }

  template <std::ranges::input_range T>
  requires(!std::convertible_to<T, std::string_view>) void Value(const T& values) {
    OpenArray();
    for (const auto& value : values) Value(value);
    CloseArray();
  }
  /// Nothing: null.
  template <typename T>
  void Value(const std::optional<T>& value) {
    value ? Value(*value) : Value(nullptr);
  }
  /// A value that is JSON already.
  void Raw(std::string_view json) { Plain(json); }

  template <typename Content>
  void Member(std::string_view name, const Content& value) {
    Key(name);
    Value(value);
  }

  /// An array with an object for each of `values`, whose members `write` writes.
  template <std::ranges::input_range T, typename Write>
  void Objects(std::string_view name, const T& values, const Write& write) {
    OpenArray(name);
    for (const auto& value : values) {
      OpenObject();
      write(value);
      CloseObject();
    }
    CloseArray();
  }

  const std::string& Text() const { return text_; }

 private:
  void Open(char bracket);
  void Close(char bracket);
  void Plain(std::string_view value);
  void Quote(std::string_view text);
  /// Goes to where the next value or key stands.
  void Advance();
  void StartLine();

  Layout layout_;
  std::string text_;
  size_t depth_ = 0;
  bool isEmpty_ = true;  ///< the innermost object or array, so far
  bool hasKey_ = false;  ///< the next value has its key
};

}  // namespace ts3d
