// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>

#include "core/json_writer.h"

namespace {

using nlohmann::ordered_json;

std::string Dump(const ordered_json& json) {
  return json.dump(2, ' ', false, ordered_json::error_handler_t::replace);
}

std::string Quoted(std::string_view text) {
  ts3d::JsonWriter json;
  json.Value(text);
  return json.Text();
}

TEST(JsonWriter, QuotesAnyBytesAsTheLibraryForJsonDoes) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string text{static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(Quoted(text), Dump(text)) << first << " " << second;
    }
  }
  // Bytes that matter to UTF-8, in any order.
  constexpr std::string_view kBytes =
      "a\"\x7f\x80\x8f\x90\x9f\xa0\xbf\xc1\xc2\xe0\xe1\xed\xef\xf0\xf1\xf4\xf5\xff";
  std::mt19937 random(1);
  for (int i = 0; i < 20000; ++i) {
    std::string text(random() % 9, ' ');
    for (char& c : text) c = kBytes[random() % kBytes.size()];
    ASSERT_EQ(Quoted(text), Dump(text)) << i;
  }
}

TEST(JsonWriter, NestsAndIndents) {
  ts3d::JsonWriter json;
  json.OpenObject();
  json.Member("none", std::vector<std::string>());
  json.Key("list");
  json.OpenArray();
  json.OpenObject();
  json.CloseObject();
  json.Value(true);
  json.Value(uint64_t{18446744073709551615u});
  json.Value(std::vector<std::string>{"a", "b"});
  json.CloseArray();
  json.Member("least", -2147483648);
  json.CloseObject();
  const std::vector<std::string> texts{"a", "b"};
  EXPECT_EQ(json.Text(),
            Dump({{"none", ordered_json::array()},
                  {"list", {ordered_json::object(), true, uint64_t{18446744073709551615u}, texts}},
                  {"least", -2147483648}}));
}

TEST(JsonWriter, NumbersAreReadAsTheyWere) {
  std::mt19937_64 random(1);
  ts3d::JsonWriter json(ts3d::JsonWriter::Layout::Compact);
  std::vector<double> numbers{0.0, -0.0, 1.0, 1e300, 5e-324, 0.1f};
  for (int i = 0; i < 1000; ++i) {
    const double number = std::bit_cast<double>(random());
    if (std::isfinite(number)) numbers.push_back(number);
  }
  json.OpenObject();
  json.Member("numbers", numbers);
  json.Member("none", std::numeric_limits<double>::quiet_NaN());
  json.Member("nothing", std::optional<int>());
  json.CloseObject();
  const ordered_json read = ordered_json::parse(json.Text());
  EXPECT_EQ(read.at("numbers").get<std::vector<double>>(), numbers);
  EXPECT_TRUE(read.at("none").is_null());
  EXPECT_TRUE(read.at("nothing").is_null());
  EXPECT_EQ(json.Text().find_first_of(" \n"), std::string::npos);
}

}  // namespace
