// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <limits>

#include "scene/container/array_reader.h"
#include "support/load_scene.h"

namespace {

using scene::FbxArray;
using support::FbxValue;
using support::FbxValues;
using testing::ElementsAre;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr int32_t kLowest = std::numeric_limits<int32_t>::min();
constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();

template <typename T>
std::vector<T> ReadAs(FbxValues values) {
  const support::ReadResult result = support::ReadRecords(support::WriteBinary({{"V", std::move(values)}}));
  FbxArray<T> array;
  EXPECT_TRUE(ReadArray(result["V"], array));
  return {array.begin(), array.end()};
}

template <typename T>
std::vector<T> ReadText(const std::string& values) {
  const support::ReadResult result = support::ReadAsciiText("V: " + values);
  FbxArray<T> array;
  EXPECT_TRUE(ReadArray(result["V"], array));
  return {array.begin(), array.end()};
}

TEST(ArrayReader, NumbersAreCutAndClampedToIntegers) {
  EXPECT_THAT(ReadAs<int32_t>({FbxValue::Array('d', {1.9, -1.9, 3e9, -3e9, kNan, kInfinity})}),
              ElementsAre(1, -1, kHighest, kLowest, 0, 0));
  EXPECT_THAT(ReadAs<int32_t>({FbxValue::PackedArray('f', {2.5, -1e30})}), ElementsAre(2, kLowest));
  EXPECT_THAT(ReadAs<int32_t>({FbxValue::Array('l', {5e9, -5e9, 12})}), ElementsAre(kHighest, kLowest, 12));
  EXPECT_THAT(ReadText<int32_t>("*4 {a: 1.9,-1.9,3e9,-99999999999999999999}"),
              ElementsAre(1, -1, kHighest, kLowest));
}

TEST(ArrayReader, NumbersThatAreNotFiniteReadAsZero) {
  EXPECT_THAT(ReadAs<double>({FbxValue::Array('d', {kInfinity, -kInfinity, kNan, 1})}),
              ElementsAre(0, 0, 0, 1));
  EXPECT_THAT(ReadAs<double>({FbxValue::PackedArray('f', {kInfinity, kNan, 2})}), ElementsAre(0, 0, 2));
  EXPECT_THAT(ReadText<double>("*3 {a: inf,1.#IND,3}"), ElementsAre(0, 0, 3));
  EXPECT_THAT(ReadText<int32_t>("*3 {a: inf,1.#IND,3}"), ElementsAre(0, 0, 3));
}

TEST(ArrayReader, ListsOfSingleValuesAreArraysToo) {
  EXPECT_THAT(ReadAs<double>({1, 0.5, int64_t{3}}), ElementsAre(1, 0.5, 3));
  EXPECT_THAT(ReadAs<int32_t>({1, 2.9, -3e10}), ElementsAre(1, 2, kLowest));
  EXPECT_THAT(ReadAs<double>({1, "text", 3}), ElementsAre(1, 0, 3));
  EXPECT_THAT(ReadAs<double>({}), ElementsAre());
  EXPECT_THAT(ReadAs<int32_t>({1, 2, 3, 4, 5, 6, 7, 8.9, int64_t{5000000000}}),
              ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, kHighest));
}

TEST(RecordValues, ANumberOfAnyTypeIsTakenAsAnyOther) {
  const support::ReadResult result = support::ReadRecords(
      support::WriteBinary({{"A", {FbxValue::Number('C', 89), 2.75, 1e300, kInfinity, "word", "Y"}},
                            {"V", {FbxValue::Array('f', {4, 5})}}}));
  const scene::RecordRef record = result["A"];
  EXPECT_EQ(record.Number(0, 0), 89);
  EXPECT_EQ(record.Integer(1, 0), 2);
  EXPECT_EQ(record.Integer(2, 0), std::numeric_limits<int64_t>::max());
  EXPECT_EQ(record.Number(3, 7), 0);
  EXPECT_EQ(record.Number(4, 7), 7);
  EXPECT_EQ(record.Number(5, 7), 89);
  EXPECT_EQ(result["V"].Number(1, 7), 5);
  EXPECT_EQ(scene::RecordRef().Number(0, 7), 7);
}

}  // namespace
