// SPDX-License-Identifier: MIT
#include "host/source_date.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>

#include "terminal/exit_codes.h"

namespace cli {

std::optional<uint32_t> SourceDate() {
  const char* variable = std::getenv("SOURCE_DATE_EPOCH");
  if (!variable || !*variable) return std::nullopt;
  const std::string_view text = variable;
  int64_t seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size() || seconds < 0)
    throw Failure(kUsageError, "SOURCE_DATE_EPOCH is not a number of seconds: " + std::string(text));
  // DOS dates begin with 1980 and end with 2107.
  constexpr int64_t kFirst = 315532800, kLast = 4354819198;
  using namespace std::chrono;
  const sys_seconds moment{std::chrono::seconds(std::clamp(seconds, kFirst, kLast))};
  const sys_days day = floor<days>(moment);
  const year_month_day date(day);
  const hh_mm_ss time(moment - day);
  const auto year = static_cast<uint32_t>(static_cast<int>(date.year()) - 1980);
  const uint32_t dosDate =
      (year << 9) | (static_cast<unsigned>(date.month()) << 5) | static_cast<unsigned>(date.day());
  const auto dosTime = static_cast<uint32_t>((time.hours().count() << 11) | (time.minutes().count() << 5) |
                                             (time.seconds().count() / 2));
  return (dosDate << 16) | dosTime;
}

}  // namespace cli
