#include "host/store/container_writer.h"

#include <filesystem>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zip.h>

#include "host/store/store_error.h"
#include "tests/support/program_run.h"
#include "tests/support/zip_bytes.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

std::string partText(int number) {
  std::string text;
  for (int i = 0; i < 50 + 37 * number; ++i) text += "<v n='" + std::to_string(i * number) + "'/>";
  return text;
}

/// Bytes that deflate cannot make smaller.
std::string noise(std::size_t size) {
  std::string bytes;
  std::uint32_t state = 1;
  while (bytes.size() < size) {
    state = state * 1664525 + 1013904223;
    bytes += static_cast<char>(state >> 24);
  }
  return bytes;
}

void writeParts(const std::string& path, const ContainerOptions& options, int count) {
  ContainerWriter writer(path, options);
  writer.add("mimetype", "application/test");
  for (int i = 0; i < count; ++i) writer.add("parts/" + std::to_string(i), partText(i));
  writer.add("noise", noise(10'000));
  writer.add("stored", std::string(1'000, 's'), false);
  writer.commit();
}

/// The member's bytes as they lie in the container.
std::string rawBytes(ContainerReader& reader, const std::string& name) {
  const std::unique_ptr<RawMember> raw = reader.rawMember(name);
  std::string bytes(raw->compressedSize(), '\0');
  raw->open();
  std::size_t done = 0;
  while (const std::size_t count = raw->readSome(bytes.data() + done, bytes.size() - done)) {
    done += count;
  }
  raw->close();
  EXPECT_EQ(done, bytes.size());
  return bytes;
}

std::string refusalOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::kNotWritten);
    return error.what();
  }
  ADD_FAILURE() << "not refused";
  return {};
}

class ContainerWriterTest : public testing::Test {
 protected:
  std::string path(const std::string& name = "new") const { return scratch_.file(name); }
  std::size_t files() const {
    const fs::directory_iterator entries(scratch_.file(""));
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }

  ScratchDirectory scratch_;
};

TEST_F(ContainerWriterTest, MimetypeStandsReadableAtTheStart) {
  for (const char* password : {"", "secret"}) {
    writeParts(path(), {password, 2}, 3);
    const std::string bytes = scratch_.read("new");
    EXPECT_EQ(bytes.substr(0, 4), "PK\3\4");
    EXPECT_EQ(bytes.substr(30, 24), "mimetypeapplication/test");
  }
}

TEST_F(ContainerWriterTest, MembersStandInTheOrderOfTheirAddingWhoeverCompressesThem) {
  writeParts(path("one"), {"", 1}, 60);
  writeParts(path("many"), {"", 8}, 60);
  EXPECT_EQ(scratch_.read("one"), scratch_.read("many"));
  ContainerReader reader(path("many"));
  ASSERT_EQ(reader.members().size(), 63u);
  for (int i = 0; i < 60; ++i) {
    const ContainerMember& member = reader.members()[static_cast<std::size_t>(i + 1)];
    EXPECT_EQ(member.name, "parts/" + std::to_string(i));
    EXPECT_EQ(reader.read(member.name), partText(i));
  }
}

TEST_F(ContainerWriterTest, EqualMembersGiveEqualFilesInEveryTimeZone) {
  const char* zone = std::getenv("TZ");
  const std::string before = zone != nullptr ? zone : "";
  std::vector<std::string> files;
  for (const char* name : {"UTC", "Asia/Tokyo", "America/New_York"}) {
    setenv("TZ", name, 1);
    tzset();
    writeParts(path(), {}, 5);
    files.push_back(scratch_.read("new"));
  }
  if (zone != nullptr) {
    setenv("TZ", before.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
  EXPECT_EQ(files[0], files[1]);
  EXPECT_EQ(files[0], files[2]);
  // 1 January 1980 at midnight.
  EXPECT_EQ(files[0].substr(10, 4), std::string("\0\0\x21\0", 4));
}

TEST_F(ContainerWriterTest, CompressesOnlyWhatShallBeAndGetsSmaller) {
  writeParts(path(), {}, 5);
  ContainerReader reader(path());
  EXPECT_LT(reader.find("parts/4")->compressedSize, partText(4).size() / 3);
  EXPECT_EQ(reader.find("noise")->compressedSize, 10'000u);
  EXPECT_EQ(reader.rawMember("noise")->method(), ZIP_CM_STORE);
  EXPECT_EQ(reader.find("stored")->compressedSize, 1'000u);
  EXPECT_EQ(reader.read("noise"), noise(10'000));
}

TEST_F(ContainerWriterTest, NamesAreMarkedAsUtf8) {
  {
    ContainerWriter writer(path());
    writer.add("表.xml", "x", false);
    writer.commit();
  }
  const std::string bytes = scratch_.read("new");
  EXPECT_EQ(bytes[7] & 0x08, 0x08);
  EXPECT_TRUE(ContainerReader(path()).contains("表.xml"));
}

TEST_F(ContainerWriterTest, EncryptedMembersHaveNoChecksumOfTheirReadableBytes) {
  writeParts(path("old"), {"secret", 2}, 5);
  ContainerReader old(path("old"));
  old.setPassword("secret");
  for (const char* password : {"secret", "other", ""}) {
    {
      ContainerWriter writer(path(), {password, 2});
      writer.add("mimetype", "application/test");
      for (int i = 0; i < 5; ++i) writer.copy(old, "parts/" + std::to_string(i));
      writer.copy(old, "stored");
      writer.add("new", partText(2));
      writer.commit();
    }
    ContainerReader reader(path());
    reader.setPassword(password);
    for (const char* name : {"parts/0", "parts/4", "new"}) {
      EXPECT_EQ(reader.rawMember(name)->checksum() == 0, *password != '\0') << name;
    }
    EXPECT_NE(reader.rawMember("mimetype")->checksum(), 0u);
    EXPECT_EQ(reader.read("parts/4"), partText(4));
    EXPECT_EQ(reader.read("stored"), std::string(1'000, 's'));
    // The header before each member says the same as the list at the end.
    const std::string bytes = scratch_.read("new");
    const std::string local("PK\3\4", 4);
    for (std::size_t at = bytes.find("parts/4"); at != std::string::npos;
         at = bytes.find("parts/4", at + 1)) {
      if (at < 30 || bytes.compare(at - 30, 4, local) != 0) continue;
      EXPECT_EQ(bytes.substr(at - 16, 4) == std::string(4, '\0'), *password != '\0');
    }
  }
}

TEST_F(ContainerWriterTest, OtherReadersFindTheSame) {
  for (const char* password : {"", "secret"}) {
    writeParts(path(), {password, 2}, 20);
    int error = 0;
    zip_t* archive = zip_open(path().c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
    ASSERT_NE(archive, nullptr) << error;
    zip_set_default_password(archive, password);
    for (int i = 0; i < 20; ++i) {
      zip_file_t* file = zip_fopen(archive, ("parts/" + std::to_string(i)).c_str(), 0);
      ASSERT_NE(file, nullptr) << zip_strerror(archive);
      std::string bytes(partText(i).size() + 1, '\0');
      bytes.resize(static_cast<std::size_t>(zip_fread(file, bytes.data(), bytes.size())));
      EXPECT_EQ(bytes, partText(i));
      EXPECT_EQ(zip_fclose(file), 0);
    }
    zip_discard(archive);
  }
}

TEST_F(ContainerWriterTest, PasswordHidesEveryMemberButMimetype) {
  {
    ContainerWriter writer(path(), {"secret", 1});
    writer.add("mimetype", "application/test");
    writer.add("stored", "a text that can be found", false);
    writer.commit();
  }
  const std::string bytes = scratch_.read("new");
  EXPECT_EQ(bytes.find("that can be"), std::string::npos);
  EXPECT_EQ(bytes.find("secret"), std::string::npos);
  ContainerReader reader(path());
  reader.setPassword("secret");
  EXPECT_EQ(reader.read("stored"), "a text that can be found");
}

struct CopyCase {
  const char* condition;
  const char* from;
  const char* to;
  bool keepsEncryption;
};

class CopiedMembers : public testing::TestWithParam<CopyCase> {};

TEST_P(CopiedMembers, AreTheSameAndWhereItCanBeTheSameBytes) {
  const ScratchDirectory scratch;
  writeParts(scratch.file("from"), {GetParam().from, 2}, 10);
  ContainerReader from(scratch.file("from"));
  from.setPassword(GetParam().from);
  {
    ContainerWriter writer(scratch.file("to"), {GetParam().to, 2});
    for (const ContainerMember& member : from.members()) writer.copy(from, member.name);
    writer.add("another", "added");
    writer.commit();
  }
  ContainerReader to(scratch.file("to"));
  to.setPassword(GetParam().to);
  EXPECT_TRUE(to.checkPassword());
  EXPECT_EQ(to.isEncrypted(), *GetParam().to != '\0');
  ASSERT_EQ(to.members().size(), from.members().size() + 1);
  for (std::size_t i = 0; i < from.members().size(); ++i) {
    const std::string& name = from.members()[i].name;
    EXPECT_EQ(to.members()[i].name, name);
    EXPECT_EQ(to.read(name), from.read(name)) << name;
    EXPECT_EQ(to.readCompressed(name).bytes, from.readCompressed(name).bytes) << name;
  }
  EXPECT_EQ(rawBytes(to, "parts/5") == rawBytes(from, "parts/5"), GetParam().keepsEncryption);
}

INSTANTIATE_TEST_SUITE_P(Every, CopiedMembers,
                         testing::Values(CopyCase{"PlainToPlain", "", "", true},
                                         CopyCase{"PlainToEncrypted", "", "secret", false},
                                         CopyCase{"EncryptedToPlain", "secret", "", false},
                                         CopyCase{"WithTheSamePassword", "secret", "secret", true},
                                         CopyCase{"WithAnotherPassword", "secret", "other", false}),
                         [](const auto& test) { return test.param.condition; });

TEST_F(ContainerWriterTest, CopyIsNotCompressedAnew) {
  // A deflated text that no compressor would write like that: it is only stored in it.
  const std::string packed(
      "\1\4\0\xFB\xFF"
      "aaaa",
      9);
  scratch_.write(
      "from",
      zipBytes({{.name = "a", .bytes = packed, .method = 8, .size = 4, .checksum = 0xAD98E545}}));
  ContainerReader from(path("from"));
  for (const char* password : {"", "secret"}) {
    {
      ContainerWriter writer(path(), {password, 1});
      writer.copy(from, "a");
      writer.commit();
    }
    ContainerReader reader(path());
    reader.setPassword(password);
    EXPECT_EQ(reader.read("a"), "aaaa");
    EXPECT_EQ(reader.readCompressed("a").bytes, packed);
  }
}

TEST_F(ContainerWriterTest, CopiesFromTheFileThatItReplacesAndFromAReaderThatHasEnded) {
  for (const char* password : {"", "secret"}) {
    writeParts(path(), {password, 2}, 5);
    ContainerWriter writer(path(), {password, 2});
    {
      ContainerReader old(path());
      old.setPassword(password);
      writer.copy(old, "parts/3");
    }
    writer.add("added", "new");
    writer.commit();
    ContainerReader reader(path());
    reader.setPassword(password);
    EXPECT_EQ(reader.members().size(), 2u);
    EXPECT_EQ(reader.read("parts/3"), partText(3));
    EXPECT_EQ(reader.read("added"), "new");
  }
}

TEST_F(ContainerWriterTest, DamagedOriginalKeepsTheOldFileAndSaysWhichPart) {
  writeParts(path("from"), {}, 5);
  scratch_.write("new", "old");
  ContainerReader from(path("from"));
  ContainerWriter writer(path());
  writer.copy(from, "parts/4");
  fs::resize_file(path("from"), 40);
  try {
    writer.commit();
    ADD_FAILURE() << "not refused";
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::kDamaged);
    EXPECT_THAT(error.what(), HasSubstr("\"parts/4\""));
  }
  EXPECT_EQ(scratch_.read("new"), "old");
}

TEST_F(ContainerWriterTest, CopyWithTheWrongPasswordIsRefused) {
  writeParts(path("from"), {"secret", 1}, 2);
  ContainerReader from(path("from"));
  from.setPassword("wrong");
  ContainerWriter writer(path(), {"wrong", 1});
  try {
    writer.copy(from, "parts/1");
    ADD_FAILURE() << "not refused";
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::kWrongPassword);
  }
}

TEST_F(ContainerWriterTest, WhatDoesNotFitInMemoryWaitsInAScratchFileThatNobodyCanRead) {
  writeParts(path("usual"), {}, 30);
  ContainerWriter writer(path("new"), {"", 2, 100});
  writer.add("mimetype", "application/test");
  for (int i = 0; i < 30; ++i) writer.add("parts/" + std::to_string(i), partText(i));
  writer.add("noise", noise(10'000));
  writer.add("stored", std::string(1'000, 's'), false);
  std::string waiting;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    const std::string target = fs::read_symlink(entry.path(), gone).string();
    if (!target.starts_with(scratch_.file("")) || !target.ends_with(" (deleted)")) continue;
    std::ifstream stream(entry.path(), std::ios::binary);
    waiting.assign(std::istreambuf_iterator<char>(stream), {});
  }
  EXPECT_GE(waiting.size(), 1'000u);
  EXPECT_EQ(waiting.find("ssssssss"), std::string::npos);
  writer.commit();
  EXPECT_EQ(scratch_.read("new"), scratch_.read("usual"));
}

TEST_F(ContainerWriterTest, WithoutCommitLeavesTheOldFileAndNothingElse) {
  scratch_.write("new", "old");
  {
    ContainerWriter writer(path(), {"secret", 2, 1'000});
    for (int i = 0; i < 40; ++i) writer.add(std::to_string(i), std::string(1'000'000, 'x'));
  }
  EXPECT_EQ(scratch_.read("new"), "old");
  EXPECT_EQ(files(), 1u);
}

TEST_F(ContainerWriterTest, GivesTheLockOfTheNewFile) {
  ContainerWriter writer(path());
  writer.add("a", "x");
  const std::optional<FileLock> lock = writer.commit().lock;
  ASSERT_TRUE(lock);
  EXPECT_TRUE(lock->holds(path()));
  EXPECT_TRUE(FileLock::isLockedByAnother(path()));
}

TEST_F(ContainerWriterTest, RefusesWhatCouldNotBeReadAgain) {
  ContainerWriter writer(path());
  EXPECT_EQ(refusalOf([&] { ContainerWriter(path("none")).commit(); }),
            "A container needs at least one part.");
  writer.add("Part", "x");
  EXPECT_EQ(refusalOf([&] { writer.add("mimetype", "x"); }),
            "\"mimetype\" must be the first part.");
  EXPECT_EQ(refusalOf([&] { writer.add("pART", "x"); }), "The part \"pART\" is there twice.");
  EXPECT_EQ(refusalOf([&] { writer.add("a/", "x"); }),
            "The name of the part \"a/\" ends in a slash.");
  EXPECT_EQ(refusalOf([&] { writer.add("large", std::string(kMemberLimit + 1, '\0'), false); }),
            "The part \"large\" is larger than 256 MiB.");
  EXPECT_EQ(refusalOf([&] {
              ContainerWriter other(path(), {std::string("a\0b", 3), 1});
            }),
            "The password has a zero byte.");
  EXPECT_THAT(refusalOf([&] { ContainerWriter other(path("missing/new")); }),
              HasSubstr("No such file or directory."));
}

}  // namespace
}  // namespace vornwout
