#include "host/store/file_lock.h"

#include <fstream>
#include <optional>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/store/replaced_file.h"
#include "host/store/store_error.h"
#include "tests/support/program_run.h"

namespace vornwout {
namespace {

/// True when a process of its own can take the lock.
bool otherProcessCanLock(const std::string& path) {
  const pid_t child = fork();
  if (child == 0) {
    try {
      _exit(FileLock::tryLock(path).has_value() ? 0 : 1);
    } catch (const StoreError&) {
      _exit(2);
    }
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_NE(WEXITSTATUS(status), 2);
  return WEXITSTATUS(status) == 0;
}

std::optional<FileLock> replace(const std::string& path, const std::string& content,
                                const FileLock* own) {
  ReplacedFile file(path, own);
  file.write(content);
  return file.commit().lock;
}

TEST(FileLock, ExcludesEveryOtherUntilItEnds) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("document", "x");
  EXPECT_FALSE(FileLock::isLockedByAnother(path));
  {
    const std::optional<FileLock> lock = FileLock::tryLock(path);
    ASSERT_TRUE(lock);
    EXPECT_TRUE(lock->holds(path));
    EXPECT_FALSE(FileLock::tryLock(path)) << "within the same process";
    EXPECT_FALSE(otherProcessCanLock(path));
    EXPECT_TRUE(FileLock::isLockedByAnother(path));
    EXPECT_FALSE(FileLock::isLockedByAnother(path, &*lock));
  }
  EXPECT_FALSE(FileLock::isLockedByAnother(path));
  EXPECT_TRUE(otherProcessCanLock(path));
}

TEST(FileLock, LookingTakesNoLockAndLosesNone) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("document", "x");
  const std::optional<FileLock> lock = FileLock::tryLock(path);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(FileLock::isLockedByAnother(path));
  // Closing another descriptor of the file would end a lock of the older kind.
  std::ifstream(path).get();
  EXPECT_FALSE(otherProcessCanLock(path));
}

TEST(FileLock, PassesToTheFileThatReplacesTheLockedOne) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("document", "old");
  std::optional<FileLock> lock = FileLock::tryLock(path);
  ASSERT_TRUE(lock);
  std::optional<FileLock> next = replace(path, "new", &*lock);
  ASSERT_TRUE(next);
  EXPECT_FALSE(lock->holds(path));
  EXPECT_TRUE(next->holds(path));
  lock = std::move(next);
  EXPECT_FALSE(otherProcessCanLock(path));
  lock.reset();
  EXPECT_TRUE(otherProcessCanLock(path));
}

TEST(FileLock, NewFileIsLockedFromTheMomentItIsThere) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("document", "old");
  std::optional<FileLock> lock = FileLock::tryLock(path);
  ASSERT_TRUE(lock);
  // Another process tries without a pause while this one saves again and again.
  const std::string stop = scratch.file("stop");
  const pid_t child = fork();
  if (child == 0) {
    int gotIn = 0;
    while (access(stop.c_str(), F_OK) != 0 && gotIn == 0) {
      if (FileLock::tryLock(path)) gotIn = 1;
    }
    _exit(gotIn);
  }
  for (int i = 0; i < 200; ++i) lock = replace(path, std::to_string(i), &*lock);
  scratch.write("stop", "");
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), 0) << "another process got in between two saves";
}

TEST(FileLock, EndsWithItselfAndNotWithADuplicateOfItsDescriptor) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("document", "x");
  std::optional<FileLock> lock = FileLock::tryLock(path);
  ASSERT_TRUE(lock);
  const FileDescriptor duplicate(fcntl(lock->descriptor(), F_DUPFD_CLOEXEC, 0));
  ASSERT_TRUE(duplicate.isOpen());
  FileLock moved = std::move(*lock);
  lock.reset();
  EXPECT_FALSE(otherProcessCanLock(path)) << "only moved";
  moved = *FileLock::tryLock(scratch.write("other", "x"));
  EXPECT_TRUE(otherProcessCanLock(path));
}

TEST(FileLock, ChildThatEndsItsCopyUnlocksNothing) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("document", "x");
  std::optional<FileLock> lock = FileLock::tryLock(path);
  const pid_t child = fork();
  if (child == 0) {
    lock.reset();
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_FALSE(otherProcessCanLock(path));
}

TEST(FileLock, ChildKeepsItOnlyUntilItRunsAnotherProgram) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("document", "x");
  std::optional<FileLock> lock = FileLock::tryLock(path);
  int ready[2] = {};
  ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
  const pid_t child = fork();
  if (child == 0) {
    // Its end of the pipe closes when the other program runs.
    execlp("sleep", "sleep", "60", nullptr);
    _exit(127);
  }
  close(ready[1]);
  char none = 0;
  EXPECT_EQ(read(ready[0], &none, 1), 0);
  close(ready[0]);
  lock.reset();
  EXPECT_TRUE(otherProcessCanLock(path));
  kill(child, SIGKILL);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
}

TEST(FileLock, FileThatIsNotThereIsNotLockedAndCannotBe) {
  const ScratchDirectory scratch;
  EXPECT_FALSE(FileLock::isLockedByAnother(scratch.file("missing")));
  try {
    FileLock::tryLock(scratch.file("missing"));
    ADD_FAILURE() << "locked nothing";
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::kNoFile);
    EXPECT_STREQ(error.what(), "The file cannot be locked: No such file or directory.");
  }
}

TEST(FileLock, FolderIsRefusedAsOne) {
  const ScratchDirectory scratch;
  const auto refusal = [](const auto& act) {
    try {
      act();
    } catch (const StoreError& error) {
      EXPECT_EQ(error.kind(), StoreError::Kind::kNoFile);
      return std::string(error.what());
    }
    return std::string("none");
  };
  EXPECT_EQ(refusal([&] { FileLock::tryLock(scratch.file("")); }), "It is a folder.");
  EXPECT_EQ(refusal([&] { FileLock::isLockedByAnother(scratch.file("")); }), "It is a folder.");
}

TEST(FileLock, NamedPipeIsRefusedAndNotWaitedFor) {
  const ScratchDirectory scratch;
  ASSERT_EQ(mkfifo(scratch.file("pipe").c_str(), 0600), 0);
  EXPECT_THROW(FileLock::tryLock(scratch.file("pipe")), StoreError);
  EXPECT_THROW(FileLock::isLockedByAnother(scratch.file("pipe")), StoreError);
}

}  // namespace
}  // namespace vornwout
