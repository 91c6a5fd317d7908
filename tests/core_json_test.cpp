// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

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

}  // namespace
