#include "host/build/csv_reader.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "host/build/build_error.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

using Records = std::vector<std::vector<std::string>>;

/// Gives a few bytes at a time, so that every chunk ends in the middle of something.
class SlowSource : public MemorySource {
 public:
  SlowSource(const std::string& bytes, std::size_t step) : MemorySource(bytes), step_(step) {}
  std::size_t read(char* buffer, std::size_t size) override {
    return MemorySource::read(buffer, std::min(size, step_));
  }

 private:
  std::size_t step_;
};

Records recordsOf(const std::string& text, const CsvOptions& options = {}) {
  MemorySource source(text);
  CsvReader reader(source, "a.csv", options);
  Records records;
  reader.read([&](std::uint64_t number, std::span<const std::string_view> fields) {
    EXPECT_EQ(number, records.size());
    records.emplace_back(fields.begin(), fields.end());
  });
  return records;
}

std::string errorOf(const std::string& text, const CsvOptions& options = {}) {
  try {
    recordsOf(text, options);
  } catch (const BuildError& error) {
    return fmt::format("{}:{}:{}: {}", error.file(), error.place().line, error.place().column,
                       error.text());
  }
  return "no error";
}

TEST(CsvReader, FieldsAreRead) {
  struct Case {
    const char* text;
    Records records;
  };
  const Case cases[] = {
      {"a,b\n1,2\n", {{"a", "b"}, {"1", "2"}}},
      {"a,b\n1,2", {{"a", "b"}, {"1", "2"}}},
      {"a,b\r\n1,2\r\n", {{"a", "b"}, {"1", "2"}}},
      {"a,b\r1,2\r", {{"a", "b"}, {"1", "2"}}},
      {"\n\r\n a,b \n\n1,2\n\n", {{" a", "b "}, {"1", "2"}}},
      {"a,b\n,\n", {{"a", "b"}, {"", ""}}},
      {"a,b\n\"\",x\n", {{"a", "b"}, {"", "x"}}},
      {"a,b\n\"1,5\",\"say \"\"so\"\"\"\n", {{"a", "b"}, {"1,5", "say \"so\""}}},
      {"a,b\n\"one\ntwo\",2\n", {{"a", "b"}, {"one\ntwo", "2"}}},
      {"a,b\n\"one\r\ntwo\rthree\",2\n", {{"a", "b"}, {"one\ntwo\nthree", "2"}}},
      {"a\n1\n\n2\n", {{"a"}, {"1"}, {"2"}}},
      {"a\tb\n1\t 2\n", {{"a", "b"}, {"1", " 2"}}},
      {"\xEF\xBB\xBF"
       "a,b\n1,2\n",
       {{"a", "b"}, {"1", "2"}}},
      {"\xC3\xA4,b\n1,\xE2\x82\xAC\n", {{"\xC3\xA4", "b"}, {"1", "\xE2\x82\xAC"}}},
  };
  for (const Case& c : cases) EXPECT_EQ(recordsOf(c.text), c.records) << c.text;
}

TEST(CsvReader, SeparatorIsTheMostFrequentOfTheFirstLineUnlessGiven) {
  struct Case {
    const char* text;
    std::optional<char> given;
    std::size_t columns;
  };
  const Case cases[] = {
      {"a,b,c\n", {}, 3},         {"a;b;c\n", {}, 3},   {"a\tb\tc\n", {}, 3},
      {"a|b|c\n", {}, 3},         {"a;b;c,d\n", {}, 3}, {"a,b;c\n", {}, 2},
      {"\"a;b;c\",d\n", {}, 2},   {"abc\n", {}, 1},     {"a,b,c;d\n", ';', 2},
      {"\n\na;b\n,,,;\n", {}, 2},
  };
  for (const Case& c : cases) {
    const Records records = recordsOf(c.text, {c.given, {}});
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records[0].size(), c.columns) << c.text;
  }
}

TEST(CsvReader, LineThatNamesTheSeparatorIsNoHeader) {
  const Records wanted = {{"a", "b,c"}, {"1", "2"}};
  for (const char* text : {"sep=;\na;b,c\n1;2\n", "sep=;\r\na;b,c\r\n1;2\r\n",
                           "sep=;\ra;b,c\r1;2\r", "\xEF\xBB\xBFsep=;\na;b,c\n1;2\n"}) {
    EXPECT_EQ(recordsOf(text), wanted) << text;
  }
  EXPECT_EQ(recordsOf("sep=;\na|b\n", {'|', {}}), (Records{{"a", "b"}}));
  EXPECT_EQ(recordsOf("sep=x\n1\n"), (Records{{"sep=x"}, {"1"}}));
  EXPECT_EQ(recordsOf("sep=;d\n1;2\n"), (Records{{"sep=", "d"}, {"1", "2"}}));
  EXPECT_EQ(errorOf("sep=;\n"), "a.csv:1:1: The file is empty.");
  // Places count the line.
  EXPECT_EQ(errorOf("sep=;\na;b\n1;2;3\n"), "a.csv:3:5: This row has 3 fields, the header has 2.");
  EXPECT_EQ(errorOf("sep=;\na;b\n1;x\"y\n"),
            "a.csv:3:4: A quote stands within a field that does not start with one.");
  EXPECT_EQ(errorOf("sep=;\na;b\n1;\xFF\n"), "a.csv:3:3: The byte 0xFF is no character in UTF-8.");
}

TEST(CsvReader, EncodingsAreRead) {
  const Records wanted = {{"\xC3\xA4", "b"}, {"\xE2\x82\xAC", "2"}};
  EXPECT_EQ(recordsOf("\xE4,b\n\x80,2\n", {{}, "windows-1252"}), wanted);
  const std::string little("\xFF\xFE\xE4\0,\0b\0\n\0\xAC\x20,\0002\0\n\0", 18);
  EXPECT_EQ(recordsOf(little), wanted);
  const std::string big("\xFE\xFF\0\xE4\0,\0b\0\n\x20\xAC\0,\0002\0\n", 18);
  EXPECT_EQ(recordsOf(big), wanted);
  EXPECT_EQ(recordsOf(little.substr(2), {{}, "UTF-16LE"}), wanted);
  EXPECT_EQ(recordsOf(big.substr(2), {{}, "UTF-16BE"}), wanted);
  // A second byte that equals the separator of another table is part of its character.
  EXPECT_EQ(recordsOf("a|b\n\x83\x7C|2\n", {{}, "Shift-JIS"}),
            (Records{{"a", "b"}, {"\xE3\x83\x9D", "2"}}));
  const std::string emoji(
      "\xFF\xFE"
      "a\0\n\0\x3D\xD8\x00\xDE",
      10);
  EXPECT_EQ(recordsOf(emoji), (Records{{"a"}, {"\xF0\x9F\x98\x80"}}));
}

TEST(CsvReader, NamesOfUnicodeFormsAreComparedWithoutCaseAndHyphens) {
  const std::string little("a\0\n\0\x31\0\n\0", 8);
  const Records wanted = {{"a"}, {"1"}};
  for (const char* name : {"UTF-16", "utf-16", "utf16", "UTF16LE", "utf_16le"}) {
    EXPECT_EQ(recordsOf(little, {{}, name}), wanted) << name;
  }
  EXPECT_EQ(recordsOf(std::string("\0a\0\n\0\x31\0\n", 8), {{}, "utf16be"}), wanted);
  for (const char* name : {"UTF-8-SIG", "utf8sig", "utf-8", "UTF8"}) {
    EXPECT_EQ(recordsOf("\xEF\xBB\xBF"
                        "a\n1\n",
                        {{}, name}),
              wanted)
        << name;
  }
  EXPECT_EQ(errorOf("a\n", {{}, "UTF-64"}), "a.csv:0:0: There is no encoding UTF-64.");
}

TEST(CsvReader, Utf32IsReadByItsMarkOrItsName) {
  const Records wanted = {{"\xF0\x9F\x98\x80", "b"}};
  const std::string little("\0\xF6\1\0,\0\0\0b\0\0\0", 12);
  const std::string big("\0\1\xF6\0\0\0\0,\0\0\0b", 12);
  EXPECT_EQ(recordsOf(little, {{}, "UTF-32"}), wanted);
  EXPECT_EQ(recordsOf(little, {{}, "utf32le"}), wanted);
  EXPECT_EQ(recordsOf(big, {{}, "UTF-32BE"}), wanted);
  EXPECT_EQ(recordsOf(std::string("\xFF\xFE\0\0", 4) + little), wanted);
  EXPECT_EQ(recordsOf(std::string("\0\0\xFE\xFF", 4) + big), wanted);
  EXPECT_EQ(errorOf(little + "b", {{}, "UTF-32"}),
            "a.csv:1:4: The file ends within a character of UTF-32.");
  EXPECT_EQ(errorOf(std::string("a\0\0\0\0\0\x11\0", 8), {{}, "UTF-32"}),
            "a.csv:1:2: The number 0x110000 is no character in UTF-32.");
  EXPECT_EQ(errorOf(std::string("a\0\0\0\0\xD8\0\0", 8), {{}, "UTF-32"}),
            "a.csv:1:2: The number 0xD800 is no character in UTF-32.");
}

TEST(CsvReader, WhatIsNoTableIsRefusedAtItsPlace) {
  struct Case {
    const char* text;
    const char* error;
  };
  const Case cases[] = {
      {"", "a.csv:1:1: The file is empty."},
      {"\n\n", "a.csv:1:1: The file is empty."},
      {"a,b\n1,2\n1,2,3\n", "a.csv:3:5: This row has 3 fields, the header has 2."},
      {"a,b\n\n1,2\n1\n", "a.csv:4:1: This row has 1 field, the header has 2."},
      {"a,b\r\n\"x\r\ny\",2\r\n1\r\n", "a.csv:4:1: This row has 1 field, the header has 2."},
      {"a,b\n1,\xC3\xA4\xC3\xA4,\n", "a.csv:2:6: This row has 3 fields, the header has 2."},
      {"a,b\n1,x\"y\n", "a.csv:2:4: A quote stands within a field that does not start with one."},
      {"a,b\n\"x\" ,2\n", "a.csv:2:4: Something stands behind the quote that closes the field."},
      {"a,b\n1,2\n3,\"x\ny,z\n", "a.csv:3:3: The quote that opens this field is never closed."},
      {"a,b\n1,\"", "a.csv:2:3: The quote that opens this field is never closed."},
      {"a,b\n1,\xE4\n", "a.csv:2:3: The byte 0xE4 is no character in UTF-8."},
      {"a,b\n\xC3\xA4,\xC3", "a.csv:2:3: The byte 0xC3 is no character in UTF-8."},
      {"a,b\n1,\x07\n", "a.csv:2:3: The control character 0x07 is no part of a text."},
      {"\xFF\xFE"
       "a",
       "a.csv:1:1: The file ends within a character of UTF-16."},
  };
  for (const Case& c : cases) EXPECT_EQ(errorOf(c.text), c.error);
  EXPECT_EQ(errorOf(std::string("a\n\0\n", 4)),
            "a.csv:2:1: The control character 0x00 is no part of a text.");
  EXPECT_EQ(errorOf(std::string("\xFF\xFE"
                                "a\0\n\0\x3D\xD8"
                                "b\0",
                                10)),
            "a.csv:2:1: Half a character of UTF-16 stands alone.");
  EXPECT_EQ(
      errorOf("a\n\xA0\xFF\n", {{}, "Shift-JIS"}),
      "a.csv:2:1: The byte 0xA0 is no character in " + Encoding::find("Shift-JIS")->name() + ".");
  EXPECT_EQ(errorOf("a\n", {{}, "UTF-99"}), "a.csv:0:0: There is no encoding UTF-99.");
}

TEST(CsvReader, NeitherChunksNorShortReadsMatter) {
  std::string text = "name,value\n";
  for (int i = 0; i < 20000; ++i) {
    text += fmt::format("\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80 {} \"\"q\"\"\n\",{}\r\n", i, i);
  }
  const Records whole = recordsOf(text);
  ASSERT_EQ(whole.size(), 20001U);
  EXPECT_EQ(whole[20000][0], "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80 19999 \"q\"\n");
  for (const std::size_t pad : {1U, 2U, 3U, 5U}) {
    // Shifted, so that the chunk ends in another byte of its character.
    EXPECT_EQ(recordsOf(std::string(pad, '\n') + text), whole);
  }
  SlowSource source(text, 7);
  CsvReader reader(source, "a.csv", {});
  std::size_t records = 0;
  reader.read([&](std::uint64_t, std::span<const std::string_view>) { ++records; });
  EXPECT_EQ(records, whole.size());
}

TEST(CsvReader, PlaceFarInAFileIsFound) {
  std::string text = "a,b\n";
  for (int i = 0; i < 100000; ++i) text += "\xC3\xA4,1\n";
  EXPECT_EQ(errorOf(text + "x,y,z\n"), "a.csv:100002:5: This row has 3 fields, the header has 2.");
  EXPECT_EQ(errorOf(text + "x,\"y\"z\n"),
            "a.csv:100002:6: Something stands behind the quote that closes the field.");
  EXPECT_EQ(errorOf(text + "x,\xFF\n"), "a.csv:100002:3: The byte 0xFF is no character in UTF-8.");
}

TEST(CsvReader, PlacesOfFieldsAreThoseOfTheirFirstCharacter) {
  MemorySource source("\n\"a\",b\r\n,\"x\ny\"\r\n\r\n1,2\n");
  CsvReader reader(source, "a.csv", {});
  reader.read([](std::uint64_t, std::span<const std::string_view>) {});
  struct Case {
    std::uint64_t record;
    std::size_t field;
    SourcePlace place;
  };
  const Case cases[] = {{0, 0, {2, 1}}, {0, 1, {2, 5}}, {1, 0, {3, 1}},
                        {1, 1, {3, 2}}, {2, 0, {6, 1}}, {2, 1, {6, 3}}};
  for (const Case& c : cases) EXPECT_EQ(reader.placeOf(c.record, c.field), c.place) << c.record;
}

TEST(CsvReader, LimitsHold) {
  std::string header;
  for (std::size_t i = 0; i < kMaxCsvColumns; ++i) header += ",";
  EXPECT_EQ(errorOf(header), "a.csv:1:10001: There are more than 10000 columns.");
  header.pop_back();
  EXPECT_EQ(errorOf(header), "no error");
  EXPECT_EQ(errorOf("a\n" + std::string(kMaxCsvFieldBytes, 'x') + "\n"), "no error");
  EXPECT_EQ(errorOf("a\n" + std::string(kMaxCsvFieldBytes + 1, 'x') + "\n"),
            "a.csv:2:1: The field is longer than 16 MiB.");
  EXPECT_EQ(errorOf("a\n\"" + std::string(kMaxCsvFieldBytes + 200000, 'x')),
            "a.csv:2:1: The field is longer than 16 MiB.");
}

TEST(CsvReader, WhatTheHandlerThrowsComesOutAndEndsTheReading) {
  MemorySource source("a\n1\n2\n3\n");
  CsvReader reader(source, "a.csv", {});
  int records = 0;
  EXPECT_THROW(reader.read([&](std::uint64_t number, std::span<const std::string_view>) {
    ++records;
    if (number == 1) throw std::out_of_range("x");
  }),
               std::out_of_range);
  EXPECT_EQ(records, 2);
}

}  // namespace
}  // namespace vornwout
