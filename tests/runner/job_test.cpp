#include "runner/job.h"

#include <gtest/gtest.h>

#include "tests/support/program_run.h"

namespace vornwout {
namespace {

std::string errorOf(const std::string& path) {
  const std::variant<Job, JobError> result = readJob(path);
  const auto* error = std::get_if<JobError>(&result);
  return error == nullptr ? "no error" : error->text;
}

TEST(Job, IsTheFileByteForByte) {
  const ScratchDirectory scratch;
  // More than one block of reading, with bytes that a text stream would change.
  const std::string text =
      "\xEF\xBB\xBF"
      "a\r\n\r" +
      std::string(1, '\0') + std::string(200'000, 'x');
  const std::string path = scratch.write("a.qxs", text);
  const std::variant<Job, JobError> result = readJob(path);
  ASSERT_TRUE(std::holds_alternative<Job>(result));
  EXPECT_EQ(std::get<Job>(result).name, path);
  EXPECT_TRUE(std::get<Job>(result).text.view() == text);
}

/// A job of more than what is held in memory.
std::string largeJob() {
  std::string text;
  for (int i = 0; text.size() < 20'000'000; ++i) {
    text += "OUTPUT COMMENT TEXT='" + std::to_string(i) + "'.\n";
  }
  return text;
}

TEST(Job, LargeOneIsReadByteForByteAndAgainAfterItsMemoryWentBack) {
  const ScratchDirectory scratch;
  const std::string text = largeJob();
  const std::variant<Job, JobError> result = readJob(scratch.write("a.qxs", text));
  ASSERT_TRUE(std::holds_alternative<Job>(result));
  const JobText& read = std::get<Job>(result).text;
  EXPECT_TRUE(read.view() == text);
  read.release(text.size());
  EXPECT_TRUE(read.view() == text);
}

TEST(Job, LargeOneLeavesNoFileAndStaysWhenItsOwnIsCutShort) {
  const ScratchDirectory scratch;
  const ScratchDirectory spool;
  setenv("TMPDIR", spool.path().c_str(), 1);
  const std::string text = largeJob();
  const std::string path = scratch.write("a.qxs", text);
  const std::variant<Job, JobError> result = readJob(path);
  unsetenv("TMPDIR");
  ASSERT_TRUE(std::holds_alternative<Job>(result));
  EXPECT_EQ(spool.entryCount(), 0U);
  std::filesystem::resize_file(path, 10);
  EXPECT_TRUE(std::get<Job>(result).text.view() == text);
}

TEST(Job, LargeOneIsHeldInMemoryWhereNoFileCanBeMade) {
  const ScratchDirectory scratch;
  const std::string text = largeJob();
  const std::string path = scratch.write("a.qxs", text);
  setenv("TMPDIR", "/nowhere", 1);
  const std::variant<Job, JobError> result = readJob(path);
  unsetenv("TMPDIR");
  ASSERT_TRUE(std::holds_alternative<Job>(result));
  EXPECT_TRUE(std::get<Job>(result).text.view() == text);
}

TEST(Job, EmptyFileIsAnEmptyJob) {
  const ScratchDirectory scratch;
  const std::variant<Job, JobError> result = readJob(scratch.write("a.qxs", ""));
  ASSERT_TRUE(std::holds_alternative<Job>(result));
  EXPECT_EQ(std::get<Job>(result).text.view(), "");
}

TEST(Job, MissingFileIsAnErrorWithItsReason) {
  EXPECT_EQ(errorOf("/nowhere/a.qxs"),
            "The job /nowhere/a.qxs cannot be read: No such file or directory.");
}

TEST(Job, DirectoryIsAnErrorWithItsReason) {
  EXPECT_EQ(errorOf("/"), "The job / cannot be read: Is a directory.");
}

TEST(Job, Utf16IsRefusedWithARemedy) {
  const ScratchDirectory scratch;
  for (const char* mark : {"\xFF\xFE", "\xFE\xFF"}) {
    const std::string path = scratch.write("a.qxs", std::string(mark) + "O");
    EXPECT_EQ(errorOf(path),
              "The job " + path + " cannot be read: it is UTF-16 text. Save it as UTF-8.");
  }
}

}  // namespace
}  // namespace vornwout
