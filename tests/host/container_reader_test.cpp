#include "host/store/container_reader.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/store/container_writer.h"
#include "host/store/store_error.h"
#include "tests/support/program_run.h"
#include "tests/support/zip_bytes.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using Kind = StoreError::Kind;

struct Failure {
  Kind kind;
  std::string reason;
};

/// What the action throws; fails the test when it throws nothing.
template <typename Action>
Failure failureOf(Action action) {
  try {
    action();
  } catch (const StoreError& error) {
    return {error.kind(), error.what()};
  }
  ADD_FAILURE() << "no StoreError was thrown";
  return {Kind::kNoFile, ""};
}

constexpr const char* kChanged = "The file was changed by another program since it was opened.";

std::string xmlText(int rows) {
  std::string text = "<rows>";
  for (int i = 0; i < rows; ++i) text += "<row number=\"" + std::to_string(i * 7919) + "\"/>";
  return text + "</rows>";
}

void writeContainer(const std::string& path, const std::string& password) {
  ContainerWriter writer(path, {password, 2});
  writer.add("mimetype", "application/test", false);
  writer.add("parts/one.xml", xmlText(60));
  writer.add("media/two.png", "not compressible", false);
  writer.add("empty", "");
  writer.commit();
}

class ContainerReaderTest : public testing::Test {
 protected:
  std::string path() const { return scratch_.file("container"); }
  void write(const std::string& bytes) const { scratch_.write("container", bytes); }

  ScratchDirectory scratch_;
};

TEST_F(ContainerReaderTest, ListsAndReadsTheMembersInTheirOrder) {
  writeContainer(path(), "");
  ContainerReader reader(path());
  std::vector<std::string> names;
  for (const ContainerMember& member : reader.members()) names.push_back(member.name);
  EXPECT_THAT(names, testing::ElementsAre("mimetype", "parts/one.xml", "media/two.png", "empty"));
  EXPECT_FALSE(reader.isEncrypted());
  EXPECT_TRUE(reader.checkPassword());
  EXPECT_EQ(reader.read("mimetype"), "application/test");
  EXPECT_EQ(reader.read("parts/one.xml"), xmlText(60));
  EXPECT_EQ(reader.read("media/two.png"), "not compressible");
  EXPECT_EQ(reader.read("empty"), "");
  EXPECT_TRUE(reader.contains("empty"));
  EXPECT_FALSE(reader.contains("Empty"));
  ASSERT_NE(reader.find("parts/one.xml"), nullptr);
  EXPECT_EQ(reader.find("parts/one.xml")->size, xmlText(60).size());
  EXPECT_LT(reader.find("parts/one.xml")->compressedSize, xmlText(60).size() / 2);
  EXPECT_EQ(reader.find("nothing"), nullptr);
  const Failure failure = failureOf([&] { reader.read("nothing"); });
  EXPECT_EQ(failure.kind, Kind::kDamaged);
  EXPECT_EQ(failure.reason, "The part \"nothing\" is missing.");
}

TEST_F(ContainerReaderTest, ToleratesDirectoriesAndDoesNotListThem) {
  write(zipBytes({{.name = "parts/"}, {.name = "parts/a", .bytes = ""}}));
  const ContainerReader reader(path());
  ASSERT_EQ(reader.members().size(), 1u);
  EXPECT_EQ(reader.members()[0].name, "parts/a");
}

struct NameCase {
  const char* condition;
  std::string name;
  const char* reason;
};

// Not declared as UTF-8, for the library itself refuses what then is none.
class RefusedName : public testing::TestWithParam<NameCase> {};

TEST_P(RefusedName, SaysWhatIsWrong) {
  const ScratchDirectory scratch;
  const std::string file =
      scratch.write("container", zipBytes({{.name = GetParam().name, .flags = 0}}));
  const Failure failure = failureOf([&] { ContainerReader reader(file); });
  EXPECT_EQ(failure.kind, Kind::kDamaged);
  EXPECT_THAT(failure.reason, HasSubstr(GetParam().reason));
  for (const char byte : failure.reason) EXPECT_GE(static_cast<unsigned char>(byte), 0x20);
  const Failure writing = failureOf([&] {
    ContainerWriter writer(scratch.file("new"));
    writer.add(GetParam().name, "x");
  });
  EXPECT_EQ(writing.kind, Kind::kNotWritten);
  EXPECT_THAT(writing.reason, HasSubstr("The name of the part"));
}

INSTANTIATE_TEST_SUITE_P(
    Every, RefusedName,
    testing::Values(NameCase{"Empty", "", "is empty"},
                    NameCase{"Absolute", "/etc/passwd", "is an absolute path"},
                    NameCase{"ParentFirst", "../a", "leaves its place"},
                    NameCase{"ParentInside", "a/../../b", "leaves its place"},
                    NameCase{"ParentLast", "a/..", "leaves its place"},
                    NameCase{"ParentDirectory", "a/../", "leaves its place"},
                    NameCase{"ThisDirectory", "a/./b", "leaves its place"},
                    NameCase{"EmptyComponent", "a//b", "has an empty component"},
                    NameCase{"Backslash", "a\\b", "has a backslash"},
                    NameCase{"Drive", "C:/a", "has a colon"},
                    NameCase{"ZeroByte", std::string("a\0b", 3), "has a blank or a zero byte"},
                    NameCase{"Blank", "a b", "has a blank or a zero byte"},
                    NameCase{"LineBreak", "a\nb", "has a control character"},
                    NameCase{"Delete", "a\x7f", "has a control character"},
                    NameCase{"C1Control", "a\xC2\x85", "has a control character"},
                    NameCase{"InvalidUtf8", "a\xFF", "is not valid UTF-8"},
                    NameCase{"Surrogate", "a\xED\xA0\x80", "is not valid UTF-8"},
                    NameCase{"TooLong", std::string(256, 'a'), "is longer than 255 bytes"}),
    [](const auto& test) { return test.param.condition; });

TEST_F(ContainerReaderTest, NameOf255BytesInAnyScriptIsAllowed) {
  std::string name;
  for (int i = 0; i < 85; ++i) name += "表";
  write(zipBytes({{.name = name}}));
  EXPECT_TRUE(ContainerReader(path()).contains(name));
}

struct RefusedCase {
  const char* condition;
  std::vector<ZipBytesMember> members;
  const char* reason;
};

std::string aesExtra(int strength, int method) {
  std::string extra(
      "\x01\x99\x07\x00\x02\x00"
      "AE",
      8);
  extra += static_cast<char>(strength);
  appendLittleEndian(extra, static_cast<std::uint64_t>(method), 2);
  return extra;
}

class RefusedContainer : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedContainer, SaysWhatIsWrong) {
  const ScratchDirectory scratch;
  const std::string file = scratch.write("container", zipBytes(GetParam().members));
  const Failure failure = failureOf([&] {
    ContainerReader reader(file);
    for (const ContainerMember& member : reader.members()) reader.read(member.name);
  });
  EXPECT_EQ(failure.kind, Kind::kDamaged);
  EXPECT_THAT(failure.reason, HasSubstr(GetParam().reason));
}

// "aaaa" deflated, and its checksum.
const std::string kDeflatedA("KLLL\4\0", 6);
constexpr std::uint32_t kChecksumOfA = 0xAD98E545;

INSTANTIATE_TEST_SUITE_P(
    Every, RefusedContainer,
    testing::Values(
        RefusedCase{"NameTwice", {{.name = "a"}, {.name = "a"}}, "\"a\" is there twice"},
        RefusedCase{"NameInOtherCase", {{.name = "Part"}, {.name = "paRT"}}, "is there twice"},
        RefusedCase{"NameInOtherUnicodeCase", {{.name = "ÄÖ"}, {.name = "äö"}}, "is there twice"},
        RefusedCase{"LargerThanTheLimit",
                    {{.name = "a",
                      .bytes = std::string(300'000, '\0'),
                      .method = 8,
                      .size = (256u << 20) + 1}},
                    "\"a\" is too large"},
        RefusedCase{"MoreThanDeflateCanMake",
                    {{.name = "a",
                      .bytes = std::string(10, '\0'),
                      .method = 8,
                      .size = 1032 * 10 + 64 * 1024 + 1}},
                    "claims to be larger than its bytes can become"},
        RefusedCase{"StoredWithAnotherSize",
                    {{.name = "a", .bytes = "abc", .size = 4}},
                    "\"a\" has a wrong size"},
        RefusedCase{"OtherMethod",
                    {{.name = "a", .bytes = "abc", .method = 12}},
                    "compressed by a method other than deflate"},
        RefusedCase{"OldEncryption",
                    {{.name = "a", .bytes = "012345678901234", .flags = 1}},
                    "encrypted by a method other than AES-256"},
        RefusedCase{"WeakerEncryption",
                    {{.name = "a",
                      .bytes = std::string(40, 'x'),
                      .method = 99,
                      .size = 20,
                      .flags = 1,
                      .extra = aesExtra(1, 0)}},
                    "encrypted by a method other than AES-256"},
        RefusedCase{"EncryptedWithoutRoomForIt",
                    {{.name = "a",
                      .bytes = "abc",
                      .method = 99,
                      .size = 3,
                      .flags = 1,
                      .extra = aesExtra(3, 0)}},
                    "\"a\" has a wrong size"},
        RefusedCase{"PlainAmongEncrypted",
                    {{.name = "a",
                      .bytes = std::string(40, 'x'),
                      .method = 99,
                      .size = 12,
                      .flags = 1,
                      .extra = aesExtra(3, 0)},
                     {.name = "b"}},
                    "\"b\" is not encrypted, although others are"},
        RefusedCase{"LargerThanTheFile",
                    {{.name = "a", .bytes = "abc", .size = 100'000, .compressedSize = 100'000}},
                    "overlap"},
        RefusedCase{
            "WrongChecksum", {{.name = "a", .bytes = "abc", .checksum = 1}}, "\"a\" is damaged"},
        RefusedCase{"WrongChecksumOfDeflated",
                    {{.name = "a", .bytes = kDeflatedA, .method = 8, .size = 4, .checksum = 1}},
                    "its checksum does not fit"},
        RefusedCase{
            "InflatesToMore",
            {{.name = "a", .bytes = kDeflatedA, .method = 8, .size = 3, .checksum = kChecksumOfA}},
            "\"a\" is damaged"},
        RefusedCase{
            "InflatesToLess",
            {{.name = "a", .bytes = kDeflatedA, .method = 8, .size = 5, .checksum = kChecksumOfA}},
            "\"a\" is damaged"},
        RefusedCase{"BytesBehindTheEnd",
                    {{.name = "a",
                      .bytes = kDeflatedA + "x",
                      .method = 8,
                      .size = 4,
                      .checksum = kChecksumOfA}},
                    "\"a\" is damaged"},
        RefusedCase{"NoDeflate",
                    {{.name = "a", .bytes = "\xFF\xFF\xFF\xFF", .method = 8, .size = 4}},
                    "\"a\" is damaged"}),
    [](const auto& test) { return test.param.condition; });

TEST_F(ContainerReaderTest, ReadsWhatTheRefusedCasesSpoil) {
  write(zipBytes(
      {{.name = "a", .bytes = kDeflatedA, .method = 8, .size = 4, .checksum = kChecksumOfA}}));
  EXPECT_EQ(ContainerReader(path()).read("a"), "aaaa");
}

TEST_F(ContainerReaderTest, MembersThatShareTheirBytesAreRefused) {
  std::vector<ZipBytesMember> members;
  for (int i = 0; i < 10; ++i) {
    members.push_back({.name = "a" + std::to_string(i), .bytes = std::string(5'000, 'x')});
  }
  write(zipBytes(members, true));
  const Failure failure = failureOf([&] { ContainerReader reader(path()); });
  EXPECT_EQ(failure.reason, "The file's parts overlap.");
}

TEST_F(ContainerReaderTest, SumOfSizesHasALimit) {
  std::vector<ZipBytesMember> members;
  const std::string bytes(270'000, '\0');
  for (int i = 0; i < 65; ++i) {
    members.push_back({.name = std::to_string(i), .bytes = bytes, .method = 8, .size = 256u << 20});
  }
  write(zipBytes(members));
  const Failure failure = failureOf([&] { ContainerReader reader(path()); });
  EXPECT_EQ(failure.reason, "The file's parts have more than 16 GiB together.");
}

TEST_F(ContainerReaderTest, NumberOfMembersHasALimit) {
  // 65,535 is the most that the short form of the end record can say; the long form takes over.
  constexpr std::size_t kCount = kMostMembers + 1;
  std::string list;
  for (std::size_t i = 0; i < kCount; ++i) {
    const ZipBytesMember member{.name = std::to_string(i)};
    list += "PK\1\2";
    appendLittleEndian(list, 20, 2);
    list += zipFields(member) + std::string(14, '\0') + member.name;
  }
  std::string file = list;
  file += "PK\6\6";
  appendLittleEndian(file, 44, 8);
  appendLittleEndian(file, 45, 2);
  appendLittleEndian(file, 45, 2);
  appendLittleEndian(file, 0, 8);
  appendLittleEndian(file, kCount, 8);
  appendLittleEndian(file, kCount, 8);
  appendLittleEndian(file, list.size(), 8);
  appendLittleEndian(file, 0, 8);
  file += "PK\6\7";
  appendLittleEndian(file, 0, 4);
  appendLittleEndian(file, list.size(), 8);
  appendLittleEndian(file, 1, 4);
  write(file + zipEnd(0xFFFF, 0xFFFFFFFF, 0xFFFFFFFF));
  const Failure failure = failureOf([&] { ContainerReader reader(path()); });
  EXPECT_EQ(failure.kind, Kind::kDamaged);
  EXPECT_EQ(failure.reason, "The file has more than 200000 parts.");
}

TEST_F(ContainerReaderTest, CallersLimitsAreKept) {
  writeContainer(path(), "");
  const std::uint64_t size = xmlText(60).size();
  ContainerReader reader(path());
  EXPECT_EQ(reader.read("parts/one.xml", size), xmlText(60));
  EXPECT_EQ(failureOf([&] { reader.read("parts/one.xml", size - 1); }).reason,
            "The part \"parts/one.xml\" is too large.");
  EXPECT_EQ(ContainerReader(path(), size).members().size(), 4u);
  EXPECT_EQ(failureOf([&] { ContainerReader narrow(path(), size - 1); }).reason,
            "The part \"parts/one.xml\" is too large.");
}

TEST_F(ContainerReaderTest, WhatIsNoZipIsRefused) {
  for (const std::string& bytes :
       {std::string(), std::string("x"), std::string(22, '\0'), std::string(100'000, 'P'),
        std::string("%PDF-1.7 and what follows it in such a file")}) {
    write(bytes);
    EXPECT_EQ(failureOf([&] { ContainerReader reader(path()); }).kind, Kind::kDamaged)
        << bytes.size();
  }
}

TEST_F(ContainerReaderTest, WhatIsNoOrdinaryFileIsRefused) {
  const Failure missing = failureOf([&] { ContainerReader reader(scratch_.file("missing")); });
  EXPECT_EQ(missing.kind, Kind::kNoFile);
  EXPECT_EQ(missing.reason, "The file cannot be read: No such file or directory.");
  const Failure directory = failureOf([&] { ContainerReader reader(scratch_.file("")); });
  EXPECT_EQ(directory.kind, Kind::kNoFile);
  EXPECT_EQ(directory.reason, "It is a folder.");
  // Nobody ever writes to it, so waiting would be forever.
  ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
  const Failure pipe = failureOf([&] { ContainerReader reader(path()); });
  EXPECT_EQ(pipe.kind, Kind::kNoFile);
  EXPECT_EQ(pipe.reason, "This is no ordinary file.");
}

/// Reads all members; true when it went through, and then all must be as they were.
bool readsAll(const std::string& file, const std::string& password, const ContainerReader& whole) {
  try {
    ContainerReader original = whole.reopen();
    ContainerReader reader(file);
    reader.setPassword(password);
    for (const ContainerMember& member : reader.members()) {
      const std::string bytes = reader.read(member.name);
      if (!original.contains(member.name)) continue;
      EXPECT_EQ(bytes, original.read(member.name));
    }
    return true;
  } catch (const StoreError& error) {
    EXPECT_STRNE(error.what(), "");
    return false;
  }
}

class SpoiledContainer : public testing::TestWithParam<const char*> {};

TEST_P(SpoiledContainer, CutAtEveryByteIsRefused) {
  const ScratchDirectory scratch;
  writeContainer(scratch.file("whole"), GetParam());
  ContainerReader whole(scratch.file("whole"));
  whole.setPassword(GetParam());
  const std::string bytes = scratch.read("whole");
  ASSERT_TRUE(readsAll(scratch.file("whole"), GetParam(), whole));
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const std::string cut = scratch.write("cut", bytes.substr(0, length));
    ASSERT_FALSE(readsAll(cut, GetParam(), whole)) << "cut after " << length << " bytes";
  }
}

TEST_P(SpoiledContainer, WithAnyByteChangedGivesNothingButWhatWasWritten) {
  const ScratchDirectory scratch;
  writeContainer(scratch.file("whole"), GetParam());
  ContainerReader whole(scratch.file("whole"));
  whole.setPassword(GetParam());
  const std::string bytes = scratch.read("whole");
  // Keys are made from the password again for every member: the encrypted one is a sample.
  const std::size_t step = *GetParam() == '\0' ? 1 : 7;
  int refused = 0;
  for (std::size_t i = 0; i < bytes.size(); i += step) {
    for (const int change : {0x01, 0x80, 0xFF}) {
      std::string spoiled = bytes;
      spoiled[i] = static_cast<char>(spoiled[i] ^ change);
      if (!readsAll(scratch.write("spoiled", spoiled), GetParam(), whole)) ++refused;
    }
  }
  EXPECT_GT(refused, static_cast<int>(bytes.size() / step));
}

INSTANTIATE_TEST_SUITE_P(PlainAndEncrypted, SpoiledContainer, testing::Values("", "secret"),
                         [](const auto& test) {
                           return *test.param == '\0' ? "Plain" : "Encrypted";
                         });

TEST_F(ContainerReaderTest, PasswordOpensAndOthersDoNot) {
  writeContainer(path(), "secret");
  ContainerReader reader(path());
  EXPECT_TRUE(reader.isEncrypted());
  EXPECT_FALSE(reader.checkPassword());
  EXPECT_EQ(reader.read("mimetype"), "application/test");
  Failure failure = failureOf([&] { reader.read("parts/one.xml"); });
  EXPECT_EQ(failure.kind, Kind::kWrongPassword);
  EXPECT_EQ(failure.reason, "The file is encrypted, and no password was given.");
  for (const std::string& wrong : {std::string("Secret"), std::string("secret "),
                                   std::string("secret\0", 7), std::string("secret\0x", 8)}) {
    reader.setPassword(wrong);
    EXPECT_FALSE(reader.checkPassword()) << wrong;
    failure = failureOf([&] { reader.read("parts/one.xml"); });
    EXPECT_EQ(failure.kind, Kind::kWrongPassword);
    EXPECT_EQ(failure.reason, "The password is wrong.");
  }
  reader.setPassword("secret");
  EXPECT_TRUE(reader.checkPassword());
  for (const ContainerMember& member : reader.members()) {
    EXPECT_EQ(member.isEncrypted, member.name != "mimetype");
  }
  EXPECT_EQ(reader.read("parts/one.xml"), xmlText(60));
  EXPECT_EQ(reader.read("media/two.png"), "not compressible");
  EXPECT_EQ(reader.read("empty"), "");
}

TEST_F(ContainerReaderTest, WrongPasswordThatPassesTheFirstCheckIsCalledWrongOrDamaged) {
  {
    ContainerWriter writer(path(), {"secret", 1});
    writer.add("one", std::string(100, 'a'), false);
    writer.add("two", std::string(200, 'b'), false);
    writer.commit();
  }
  // A spoiled byte of the content shows in the authentication code only, as such a password does.
  std::string bytes = scratch_.read("container");
  const std::size_t content = bytes.find("one") + 3 + 11 + 16 + 2 + 50;
  bytes[content] = static_cast<char>(bytes[content] ^ 1);
  write(bytes);
  ContainerReader reader(path());
  reader.setPassword("secret");
  for (int i = 0; i < 2; ++i) {
    const Failure failure = failureOf([&] { (void)reader.checkPassword(); });
    EXPECT_EQ(failure.kind, Kind::kWrongPassword);
    EXPECT_EQ(failure.reason, "The password is wrong, or the file is damaged.");
  }
  // Where another member proves the password, it can only be damage.
  EXPECT_EQ(reader.read("two"), std::string(200, 'b'));
  const Failure damage = failureOf([&] { reader.read("one"); });
  EXPECT_EQ(damage.kind, Kind::kDamaged);
  EXPECT_EQ(damage.reason, "The part \"one\" is damaged.");
}

TEST_F(ContainerReaderTest, GoesOnReadingTheOldFileAfterItWasReplaced) {
  writeContainer(path(), "");
  ContainerReader reader(path());
  {
    ContainerWriter writer(path());
    writer.add("other", "new");
    writer.commit();
  }
  EXPECT_EQ(reader.read("parts/one.xml"), xmlText(60));
  EXPECT_EQ(reader.reopen().read("media/two.png"), "not compressible");
  ASSERT_EQ(unlink(path().c_str()), 0);
  EXPECT_EQ(reader.read("mimetype"), "application/test");
  EXPECT_EQ(failureOf([&] { ContainerReader again(path()); }).kind, Kind::kNoFile);
}

TEST_F(ContainerReaderTest, FileThatIsCutShortWhileItIsOpenIsDamaged) {
  writeContainer(path(), "");
  ContainerReader reader(path());
  ASSERT_EQ(truncate(path().c_str(), 60), 0);
  const Failure failure = failureOf([&] { reader.read("parts/one.xml"); });
  EXPECT_EQ(failure.kind, Kind::kDamaged);
  EXPECT_EQ(failure.reason, "The part \"parts/one.xml\" is missing: the file has been cut short.");
  // What is still there need not be what was there.
  EXPECT_EQ(failureOf([&] { reader.read("mimetype"); }).reason, kChanged);
}

TEST_F(ContainerReaderTest, FileThatIsWrittenOverWhileItIsOpenIsNoticed) {
  for (const char* password : {"", "secret"}) {
    writeContainer(path(), password);
    const std::string bytes = scratch_.read("container");
    ContainerReader reader(path());
    reader.setPassword(password);
    const std::unique_ptr<RawMember> raw = reader.rawMember("parts/one.xml");
    // Another name, none, and other permissions leave the bytes as they are.
    ASSERT_EQ(rename(path().c_str(), scratch_.file("other").c_str()), 0);
    ASSERT_EQ(chmod(scratch_.file("other").c_str(), 0600), 0);
    EXPECT_EQ(reader.read("parts/one.xml"), xmlText(60));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    scratch_.write("other", bytes);
    const Failure failure = failureOf([&] { reader.read("parts/one.xml"); });
    EXPECT_EQ(failure.kind, Kind::kDamaged);
    EXPECT_EQ(failure.reason, kChanged);
    EXPECT_EQ(failureOf([&] {
                std::string target(raw->compressedSize(), '\0');
                raw->open();
                raw->readSome(target.data(), target.size());
              }).reason,
              kChanged);
  }
}

TEST_F(ContainerReaderTest, ReadersOfOneFileWorkInTheirOwnThreads) {
  {
    ContainerWriter writer(path(), {"secret", 2});
    for (int i = 0; i < 20; ++i) writer.add("part" + std::to_string(i), xmlText(100 + i));
    writer.commit();
  }
  ContainerReader first(path());
  first.setPassword("secret");
  ContainerReader second = first.reopen();
  const auto readAll = [](ContainerReader& reader, int& right) {
    for (int i = 0; i < 20; ++i) {
      if (reader.read("part" + std::to_string(i)) == xmlText(100 + i)) ++right;
    }
  };
  int rightInFirst = 0;
  int rightInSecond = 0;
  std::thread thread([&] { readAll(second, rightInSecond); });
  readAll(first, rightInFirst);
  thread.join();
  EXPECT_EQ(rightInFirst, 20);
  EXPECT_EQ(rightInSecond, 20);
}

TEST_F(ContainerReaderTest, LeavesNoDescriptorOpen) {
  const auto openFiles = [] {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return std::distance(begin(entries), end(entries));
  };
  writeContainer(path(), "");
  const auto before = openFiles();
  {
    ContainerReader reader(path());
    ContainerReader other = reader.reopen();
    EXPECT_EQ(openFiles(), before + 1);
    const auto raw = reader.rawMember("parts/one.xml");
  }
  write("no container, and of some length at that");
  EXPECT_EQ(failureOf([&] { ContainerReader reader(path()); }).kind, Kind::kDamaged);
  EXPECT_EQ(openFiles(), before);
}

}  // namespace
}  // namespace vornwout
