// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <limits>

#include "scene/container/array_reader.h"
#include "support/load_scene.h"

namespace {

using namespace std::string_literals;
using support::ReadAsciiText;

struct TextCase {
  const char* what;
  std::string text;
  std::string expected;
};

void ExpectDumps(std::initializer_list<TextCase> cases) {
  for (const TextCase& c : cases) {
    const support::ReadResult result = ReadAsciiText(c.text);
    EXPECT_EQ(result.error, "") << c.what;
    EXPECT_EQ(result.Dump(), c.expected) << c.what;
  }
}

TEST(AsciiRecords, RecordsNestByBraces) {
  ExpectDumps({{"children", "A: 1, \"x\" {\n B: 2 {\n C: 3\n }\n}\nD: 4", "A:1,\"x\"{B:2{C:3}} D:4"},
               {"empty block", "A: {\n}\nB: 1\n", "A B:1"},
               {"record behind a brace", "A: {\n B: 1 } C: 2 { D: 3 }", "A{B:1} C:2{D:3}"},
               {"brace on its own line", "A: 1\n{\n B: 2\n}\n", "A:1{B:2}"},
               {"name with a dash", "Post-Extrapolation: {\nA: 1\n}", "Post-Extrapolation{A:1}"},
               {"quoted name", "\"My Record\": 1", "My Record:1"}});
}

TEST(AsciiRecords, CommentsAreSkippedWhateverTheyHold) {
  ExpectDumps(
      {{"lines of their own", "; top {\nA: 1\n; the end", "A:1"},
       {"quote and brace", "A: { ; \"open } {\n B: 1\n}", "A{B:1}"},
       {"inside a list", "A: 1, ;Model::\"'&\"\n 2\n", "A:1,2"},
       {"inside a long list", "A: 1,2,3,4,5, ; 99,99\n6,7,8,9,10\n", "A:[1 2 3 4 5 6 7 8 9 10]"},
       {"inside an array", "V: *4 {\n a: 1, ; } \" { 9\n 2, ;}\n3 ; }\n,4 }\nB: 5", "V:[1 2 3 4] B:5"},
       {"behind a value", "A: 1 ; 2, 3\nB: 4", "A:1 B:4"}});
}

TEST(AsciiRecords, ALongArrayIsReadWholeWhereverItsCommentsFall) {
  // Longer than the pieces that arrays are looked through in; the comments' ends move against the pieces'.
  std::string text = "V: *40000 {\n a: 0";
  for (int i = 1; i < 40000; ++i) {
    text += "," + std::to_string(i);
    if (i % 997 == 0) text += " ; } " + std::string(static_cast<size_t>(i) % 2000, '}') + "\n";
  }
  const support::ReadResult result = ReadAsciiText(text + "\n}\nB: 5");
  scene::FbxArray<int32_t> numbers;
  ASSERT_TRUE(scene::ReadArray(result["V"], numbers));
  ASSERT_EQ(numbers.size(), 40000u);
  for (int32_t i = 0; i < 40000; ++i) ASSERT_EQ(numbers[static_cast<size_t>(i)], i);
  EXPECT_EQ(result["B"].Integer(0, 0), 5);
  EXPECT_NE(ReadAsciiText(text).error, "");
}

TEST(AsciiRecords, LineEndsByteOrderMarkAndZeroBytesAreTakenAsFilesHaveThem) {
  ExpectDumps({{"carriage returns", "A: 1,\r\n2\r\nB: 3 {\r\n}\r\n", "A:1,2 B:3"},
               {"byte order mark",
                "\xef\xbb\xbf"
                "A: 1",
                "A:1"},
               {"zero byte ends the text", "A: 1\n\0B: 2"s, "A:1"}});
}

TEST(AsciiRecords, AListEndsWhereNoCommaLeadsOn) {
  ExpectDumps(
      {{"comma before the line end", "A: 1,2,\n3\nB: 4", "A:1,2,3 B:4"},
       {"comma behind the line end", "A: 1,2\n,3\nB: 4", "A:1,2,3 B:4"},
       {"leading comma", "Content: ,\n\"QUJD\"\nB: 1", "Content:\"QUJD\" B:1"},
       {"trailing comma", "A: 1,2,\nB: 3", "A:1,2 B:3"},
       {"trailing comma of a long list", "A: 1,2,3,4,5,6,7,8,9,\nB: 3", "A:[1 2 3 4 5 6 7 8 9] B:3"},
       {"no value before a line end", "TextureId: \nB: 1", "TextureId B:1"},
       {"no value before a brace", "A: {\nTextureId: }", "A{TextureId}"},
       {"texts and numbers mixed", "P: \"a\", \"\", \"A\",1,0.5,\"~\"", "P:\"a\",\"\",\"A\",1,0.5,\"~\""}});
}

TEST(AsciiRecords, TextsKeepEverythingButTheirThreeEscapes) {
  ExpectDumps({{"quote", R"(A: "a&quot;b")", "A:\"a\"b\""},
               {"line ends", R"(A: "a&cr;&lf;b")", "A:\"a\r\nb\""},
               {"other ampersands", R"(A: "&amp; &quo &q & &&quot;")", "A:\"&amp; &quo &q & &\"\""},
               {"structure characters", R"(A: "C:\new; {x} // y, z:")", R"(A:"C:\new; {x} // y, z:")"},
               {"bytes that are no UTF-8", "A: \"\xe4\xff\"", "A:\"\xe4\xff\""}});
}

TEST(AsciiRecords, WordsAreTextsAndLettersAlsoNumbers) {
  ExpectDumps({{"letters", "Shading: Y\nKey: 0,1,L", "Shading:\"Y\" Key:0,1,\"L\""}});
  const support::ReadResult result = ReadAsciiText("Shading: Y\nCulling: CullingOff");
  EXPECT_EQ(result["Shading"].Number(0, -1), 89);
  EXPECT_EQ(result["Culling"].Number(0, -1), -1);
}

TEST(AsciiRecords, TheCountOfAnArrayIsNotTrusted) {
  ExpectDumps({{"too small", "V: *1 { a: 1,2,3 }", "V:[1 2 3]"},
               {"too large", "V: *99 { a: 1,2,3 }", "V:[1 2 3]"},
               {"zero", "V: *0 { a: }", "V:[]"},
               {"larger than any integer", "V: *99999999999999999999 { a: 7 }", "V:[7]"}});
}

TEST(AsciiRecords, NumbersAreReadInEverySpelling) {
  const auto expectNumber = [](const std::string& text, double expected) {
    const support::ReadResult result = ReadAsciiText("S: " + text + "\nV: *3 {a: 1," + text + ",2}");
    ASSERT_EQ(result.error, "") << text;
    EXPECT_EQ(result["S"].Number(0, -99), expected) << text;
    EXPECT_EQ(result["V"].Number(1, -99), expected) << text;
    EXPECT_EQ(result["V"].Number(2, -99), 2) << text;
  };
  for (const char* text : {"+2.5", "2.5", "25e-1", ".25E+001"}) expectNumber(text, 2.5);
  for (const char* text : {"-5", "-5.", "-0.5e1"}) expectNumber(text, -5);
  for (const char* text : {"1.#QNAN", "-1.#IND", "1.#INF00", "nan", "-nan(ind)", "NaN", "inf", "-infinity",
                           "1e400", "-1e999999999", "1e-999999999"}) {
    expectNumber(text, 0);
  }
  expectNumber("1.7976931348623157e308", 1.7976931348623157e308);
}

TEST(AsciiRecords, IntegersBeyondDoublePrecisionKeepTheirDigits) {
  const support::ReadResult result = ReadAsciiText("A: 9007199254740993, -9223372036854775808");
  EXPECT_EQ(result["A"].Integer(0, 0), 9007199254740993);
  EXPECT_EQ(result["A"].Integer(1, 0), std::numeric_limits<int64_t>::min());
}

TEST(AsciiRecords, DamagedTextIsRefusedWithItsLine) {
  ASSERT_EQ(ReadAsciiText("A: {\n}\n").error, "");
  const TextCase kCases[] = {
      {"open text", "A: 1\nB: \"abc\nC: 2\n", "a text is not closed (at line 2)"},
      {"open quoted name", "A: 1\n\"B: 2\n", "a text is not closed (at line 2)"},
      {"open block", "A: {\nB: 1\n", "the file ends inside record \"A\" (at line 3)"},
      {"open array", "V: *3 {\n a: 1,2\n", "an array is not closed (at line 2)"},
      {"array closed in a comment only", "V: *3 {\n a: 1,2 ; }\n", "an array is not closed (at line 2)"},
      {"array without count", "A: 1\nV: * { a: 1 }", "an array without its count (at line 2)"},
      {"array of negative count", "V: *-3 { a: 1 }", "an array without its count (at line 1)"},
      {"array without block", "V: *3 1,2,3", "an array without its block (at line 1)"},
      {"brace too many", "A: {\n}\n}\n", "a \"}\" closes nothing (at line 3)"},
      {"no colon", "A 1\n", "expected a record's name and a colon (at line 1)"},
      {"value without a record", "A: 1\n\n5\n", "expected a record's name and a colon (at line 3)"},
      {"no value at all", "A: @\n", "a value that is not a number, word or text (at line 1)"}};
  for (const TextCase& c : kCases) EXPECT_EQ(ReadAsciiText(c.text).error, c.expected) << c.what;
}

support::FbxRecords Nested(int depth) {
  support::FbxRecord record("N", {1});
  for (int i = 1; i < depth; ++i) record = support::FbxRecord("N", {}, {record});
  return {record};
}

TEST(RecordsOfBothContainers, AreRefusedWhenNestedDeeperThanThirtyTwo) {
  const char* const refusal = "record \"N\": nested too deeply (at ";
  for (const auto& write : {+[](int depth) { return support::WriteAscii(Nested(depth)); },
                            +[](int depth) { return support::WriteBinary(Nested(depth)); }}) {
    EXPECT_EQ(support::ReadRecords(write(32)).error, "");
    EXPECT_THAT(support::ReadRecords(write(33)).error, testing::StartsWith(refusal));
  }
}

}  // namespace
