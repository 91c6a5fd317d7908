// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/container/array_reader.h"
#include "support/load_scene.h"

namespace {

using namespace std::string_literals;
using support::BinaryFormat;
using support::FbxRecord;
using support::FbxRecords;
using support::FbxValue;
using support::Patched;
using support::ReadRecords;
using support::WriteBinary;

/// What a file of one version and byte order is called in failures.
std::string Describe(const BinaryFormat& format) {
  return std::to_string(format.version) + (format.bigEndian ? " big-endian" : " little-endian");
}

const BinaryFormat kFormats[] = {{.version = 7400},
                                 {.version = 7400, .bigEndian = true},
                                 {.version = 7500},
                                 {.version = 7700, .bigEndian = true}};

TEST(BinaryRecords, RecordsAndValuesAreReadInAllHeaderWidthsAndByteOrders) {
  FbxRecord leaf("Leaf", {"me"});
  leaf.endOffsetZero = true;
  const struct {
    FbxRecords records;
    const char* expected;
  } kCases[] = {{{{"A", {1}, {{"B", {2}, {{"C", {3}}}}, {"D"}}}, {"E", {"x"}}}, "A:1{B:2{C:3} D} E:\"x\""},
                {{{"A", {FbxValue::Number('C', 89), FbxValue::Number('B', 1), FbxValue::Number('Z', 255)}},
                  {"B", {FbxValue::Number('Y', -300), -70000, int64_t{-9000000000}}},
                  {"C", {FbxValue::Number('F', 0.5), -1e300, "text", FbxValue::Raw("raw")}}},
                 "A:89,1,255 B:-300,-70000,-9000000000 C:0.5,-1e+300,\"text\",<raw>"},
                {{{"V", {1, 2, 3, 4, 0.5, int64_t{6}, FbxValue::Number('F', 7), 8, 9, 10}}},
                 "V:[1 2 3 4 0.5 6 7 8 9 10]"},
                {{{"V", {1, 2, 3, 4, 5, 6, 7, 8, 9, "x"}}}, "V:1,2,3,4,5,6,7,8,9,\"x\""},
                {{leaf, {"B"}}, "Leaf:\"me\" B"}};
  for (const auto& c : kCases) {
    for (const BinaryFormat& format : kFormats) {
      const std::string file = WriteBinary(c.records, format) + "footer, whatever it says";
      EXPECT_EQ(ReadRecords(file).Dump(), c.expected) << Describe(format);
    }
  }
}

TEST(BinaryRecords, ArraysOfEveryTypeAreReadPlainAndPacked) {
  const auto records = [](FbxValue (*array)(char, std::vector<double>)) {
    return FbxRecords{{"F", {array('f', {0.5, -2})}},
                      {"D", {array('d', {1e300, -0.125, 3})}},
                      {"I", {array('i', {-7, 2147483647})}},
                      {"L", {array('l', {-9000000000, 5})}},
                      {"B", {array('b', {0, 1})}},
                      {"C", {array('c', {0, 255})}},
                      {"E", {array('d', {})}}};
  };
  const char* expected =
      "F:[0.5 -2] D:[1e+300 -0.125 3] I:[-7 2147483647] L:[-9000000000 5] B:[0 1] C:[0 255] E:[]";
  for (const BinaryFormat& format : kFormats) {
    EXPECT_EQ(ReadRecords(WriteBinary(records(FbxValue::Array), format)).Dump(), expected)
        << Describe(format);
    EXPECT_EQ(ReadRecords(WriteBinary(records(FbxValue::PackedArray), format)).Dump(), expected)
        << Describe(format);
  }
}

TEST(BinaryRecords, ANestedListMayLackItsNullRecord) {
  FbxRecord parent("A", {}, {{"B"}, {"C"}});
  parent.nullRecord = false;
  EXPECT_EQ(ReadRecords(WriteBinary({parent, {"D"}})).Dump(), "A{B C} D");
}

/// One record with the text "hi": end offset at byte 27, value count 31, value bytes 35, name length 39, name
/// 40, type byte 41, text length 42, text 46, null record 48.
std::string OneText() { return WriteBinary({{"A", {"hi"}}}); }

/// One record with two doubles: as above, then count at 42, encoding 46, size 50, elements 54 to 69.
std::string OneArray() { return WriteBinary({{"V", {FbxValue::Array('d', {1, 2})}}}); }

TEST(BinaryRecords, ADamagedRecordIsRefusedWithItsOffset) {
  // The parent's header and name take bytes 27 to 40, the child's 41 to 54.
  const std::string nested = WriteBinary({{"A", {}, {{"B"}}}, {"C"}});
  const struct {
    const char* what;
    std::string file;
    const char* error;
  } kCases[] = {
      {"end inside the values", Patched(OneText(), 27, 44), "\"A\": its end lies outside (at byte 41)"},
      {"end behind the file", Patched(OneText(), 27, 62), "\"A\": its end lies outside (at byte 41)"},
      {"child behind its parent", Patched(nested, 41, 69), "\"B\": its end lies outside (at byte 55)"},
      {"values behind the file", Patched(OneText(), 35, 0x7fffffff),
       "\"A\": its values reach too far (at byte 41)"},
      {"values behind the end", Patched(OneText(), 35, 8), "\"A\": its end lies outside (at byte 41)"},
      {"values cut short", Patched(OneText(), 35, 6), "\"A\": a text reaches too far (at byte 46)"},
      {"more values than there are", Patched(OneText(), 31, 2),
       "\"A\": a value of unknown type or cut off (at byte 49)"},
      {"impossible value count", Patched(OneText(), 31, 0xffffffff),
       "\"A\": more values than bytes (at byte 41)"},
      {"no values in the space of one", Patched(OneText(), 31, 0),
       "\"A\": its values do not fill their space (at byte 41)"},
      {"unknown type", OneText().replace(41, 1, "x"),
       "\"A\": a value of unknown type or cut off (at byte 42)"},
      {"endless text", Patched(OneText(), 42, 0xffffffff), "\"A\": a text reaches too far (at byte 46)"},
      {"array count too large", Patched(OneArray(), 42, 3),
       "\"V\": an array's size does not fit its count (at byte 54)"},
      {"array count whose bytes overflow 32 bits", Patched(OneArray(), 42, 0x20000002),
       "\"V\": an array's size does not fit its count (at byte 54)"},
      {"unknown encoding", Patched(OneArray(), 46, 2), "\"V\": an array of unknown encoding (at byte 54)"},
      {"array behind the values", Patched(OneArray(), 50, 17),
       "\"V\": an array reaches too far (at byte 54)"},
      {"array header cut off", Patched(OneArray(), 35, 10), "\"V\": an array reaches too far (at byte 54)"},
      // 16 packed bytes give at most 16576 bytes, which are 2072 doubles.
      {"packed bomb", Patched(Patched(OneArray(), 46, 1), 42, 2073),
       "\"V\": an array claims more elements than it can hold (at byte 54)"}};
  for (const auto& c : kCases)
    EXPECT_EQ(ReadRecords(c.file).error, std::string("record ") + c.error) << c.what;
  EXPECT_EQ(ReadRecords(OneText().replace(39, 1, "\xc8")).error, "a record is cut off (at byte 40)");
}

TEST(BinaryRecords, DamagedPackedDataLeavesTheArrayEmpty) {
  const std::string packed = WriteBinary({{"V", {FbxValue::PackedArray('d', {1, 2})}}});
  std::string badChecksum = packed;
  ++badChecksum[badChecksum.size() - 14];  // the last byte before the null record
  std::string dictionary = packed;
  dictionary[55] = '\xbb';  // asks for a preset dictionary; 0x78bb is a valid header
  const struct {
    const char* what;
    std::string file;
  } kCases[] = {{"longer than declared", Patched(packed, 42, 1)},
                {"shorter than declared", Patched(packed, 42, 3)},
                {"bad checksum", badChecksum},
                {"preset dictionary", dictionary},
                {"no stream at all", Patched(OneArray(), 46, 1)}};
  for (const auto& damage : kCases) {
    SCOPED_TRACE(damage.what);
    const support::ReadResult result = ReadRecords(damage.file);
    ASSERT_EQ(result.error, "");
    scene::FbxArray<double> doubles;
    doubles.Allocate(5);
    EXPECT_FALSE(ReadArray(result["V"], doubles));
    EXPECT_EQ(doubles.size(), 0u);
  }
}

TEST(BinaryRecords, AFileCutAnywhereIsRefusedUnlessItsSceneIsWhole) {
  const FbxRecords records = {{"Creator", {"me"}},
                              {"Objects", {}, {{"Model", {7, FbxValue::Array('i', {1, 2, 3})}}}},
                              {"Connections", {}, {{"C", {"OO", 1, 0}}}},
                              {"Takes", {0.5}}};
  const auto sizeOfFirst = [&](int count) {
    return WriteBinary({records.begin(), records.begin() + count}, {.nullRecord = false}).size();
  };
  const std::string file = WriteBinary(records);
  std::vector<size_t> accepted;
  for (size_t size = 0; size <= file.size(); ++size) {
    if (ReadRecords(file.substr(0, size)).error.empty()) accepted.push_back(size);
  }
  EXPECT_THAT(accepted, testing::ElementsAre(sizeOfFirst(3), sizeOfFirst(4), file.size()));
  EXPECT_EQ(ReadRecords(file.substr(0, sizeOfFirst(2))).error,
            "the file ends too early (at byte " + std::to_string(sizeOfFirst(2)) + ")");
}

}  // namespace
