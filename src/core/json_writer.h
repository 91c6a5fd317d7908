// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <vector>

namespace ts3d {

/// Writes JSON as indented text. No memory is std::bad_alloc here, from a plain call: libraries whose values
/// take memory in their destructors would end the host.
class JsonWriter {
 public:
  void OpenObject() { Open('{'); }
  void CloseObject() { Close('}'); }
  void OpenArray() { Open('['); }
  void CloseArray() { Close(']'); }

  /// Names the value that comes next.
  void Key(std::string_view name);
  /// What is no UTF-8 becomes replacement characters.
  void Value(std::string_view text);
  void Value(const std::vector<std::string>& texts);
  template <std::integral T>
  void Value(T value) {
    if constexpr (std::same_as<T, bool>) {
      Plain(value ? "true" : "false");
    } else {
      Plain(std::to_string(value));
    }
  }

  template <typename Content>
  void Member(std::string_view name, const Content& value) {
    Key(name);
    Value(value);
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

  std::string text_;
  size_t depth_ = 0;
  bool isEmpty_ = true;  ///< the innermost object or array, so far
  bool hasKey_ = false;  ///< the next value has its key
};

}  // namespace ts3d
