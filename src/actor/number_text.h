// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <cmath>
#include <string_view>
#include <type_traits>

#include "base/plain_text.h"

namespace actor {

using base::kBlanks;
using base::Trimmed;

/// Takes a number and the blanks before it from the front of `text`.
/// @return false when no finite number stands there by itself; `number` stays then
template <class Number>
bool TakeNumber(std::string_view& text, Number& number) {
  text = Trimmed(text);
  Number read{};
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), read);
  if (failed != std::errc()) return false;
  if constexpr (std::is_floating_point_v<Number>) {
    if (!std::isfinite(read)) return false;
  }
  text.remove_prefix(static_cast<size_t>(end - text.data()));
  if (!text.empty() && kBlanks.find(text.front()) == std::string_view::npos) return false;
  number = read;
  return true;
}

}  // namespace actor
