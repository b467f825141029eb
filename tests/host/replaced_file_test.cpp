#include "host/store/replaced_file.h"

#include <filesystem>
#include <functional>
#include <set>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/store/file_lock.h"
#include "host/store/store_error.h"
#include "tests/support/program_run.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

std::set<std::string> namesIn(const std::string& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

void save(const std::string& path, const std::string& content) {
  ReplacedFile file(path);
  file.write(content);
  file.commit();
}

/// The reason of the refusal to replace the file.
std::string refusalOf(const std::string& path) {
  try {
    ReplacedFile file(path);
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::kNotWritten);
    return error.what();
  }
  ADD_FAILURE() << "not refused";
  return {};
}

mode_t modeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

class ReplacedFileTest : public testing::Test {
 protected:
  std::string path(const std::string& name = "report.qxv") const { return scratch_.file(name); }
  std::set<std::string> names() const { return namesIn(scratch_.file("")); }

  ScratchDirectory scratch_;
};

TEST_F(ReplacedFileTest, OldFileStaysUntilTheNewOneIsCommitted) {
  scratch_.write("report.qxv", "old");
  {
    ReplacedFile file(path());
    file.write("new");
    EXPECT_EQ(scratch_.read("report.qxv"), "old");
    EXPECT_EQ(names().size(), 2u);
    for (const std::string& name : names()) {
      EXPECT_TRUE(name == "report.qxv" || name.starts_with(".report.qxv.")) << name;
    }
    file.commit();
    EXPECT_EQ(scratch_.read("report.qxv"), "new");
    EXPECT_EQ(names(), std::set<std::string>{"report.qxv"});
  }
  EXPECT_EQ(scratch_.read("report.qxv"), "new");
}

TEST_F(ReplacedFileTest, LeavesNoTraceWithoutCommit) {
  scratch_.write("report.qxv", "old");
  {
    ReplacedFile file(path());
    file.write(std::string(1'000'000, 'x'));
    const FileDescriptor scratch = file.makeScratchFile();
    EXPECT_EQ(names().size(), 2u);
  }
  EXPECT_EQ(scratch_.read("report.qxv"), "old");
  EXPECT_EQ(names(), std::set<std::string>{"report.qxv"});
}

TEST_F(ReplacedFileTest, WritesAtAnyOffsetWhateverTheBufferHolds) {
  std::string expected;
  const auto put = [&](ReplacedFile& file, std::size_t offset, const std::string& bytes) {
    file.seek(offset);
    file.write(bytes);
    EXPECT_EQ(file.tell(), offset + bytes.size());
    if (expected.size() < offset + bytes.size()) expected.resize(offset + bytes.size(), '\0');
    expected.replace(offset, bytes.size(), bytes);
    EXPECT_EQ(file.size(), expected.size());
  };
  ReplacedFile file(path());
  put(file, 0, "header");
  put(file, 2, "AD");
  put(file, 4, "longer than before");
  put(file, 22, std::string(200'000, 'a'));
  put(file, 10, std::string(300'000, 'b'));
  put(file, 5, "far back");
  put(file, 400'000, "beyond the end");
  put(file, 399'990, std::string(20, 'c'));
  put(file, 400'014, std::string(256 * 1024 - 14, 'd'));
  put(file, 400'000 + 256 * 1024, "e");
  put(file, 0, "");
  file.commit();
  EXPECT_EQ(scratch_.read("report.qxv"), expected);
}

TEST_F(ReplacedFileTest, KeepsThePermissionsOfTheOldFile) {
  for (const mode_t mode : {0600u, 0640u, 0664u, 0444u | 0200u}) {
    scratch_.write("report.qxv", "old");
    ASSERT_EQ(chmod(path().c_str(), mode), 0);
    save(path(), "new");
    EXPECT_EQ(modeOf(path()), mode);
  }
}

TEST_F(ReplacedFileTest, NewFileGetsThePermissionsOfAnyNewFile) {
  const mode_t before = umask(027);
  save(path(), "new");
  EXPECT_EQ(modeOf(path()), 0640u);
  umask(before);
}

TEST_F(ReplacedFileTest, TemporaryOfAPrivateFileIsPrivate) {
  scratch_.write("report.qxv", "old");
  ASSERT_EQ(chmod(path().c_str(), 0600), 0);
  const ReplacedFile file(path());
  for (const std::string& name : names()) EXPECT_EQ(modeOf(path(name)), 0600u) << name;
}

TEST_F(ReplacedFileTest, KeepsTheOwnerWhereTheSystemAllowsIt) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
  scratch_.write("report.qxv", "old");
  ASSERT_EQ(chown(path().c_str(), 1234, 2345), 0);
  save(path(), "new");
  struct stat status = {};
  ASSERT_EQ(stat(path().c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1234u);
  EXPECT_EQ(status.st_gid, 2345u);
}

TEST_F(ReplacedFileTest, GroupThatCannotBeKeptGetsNoMoreThanOthersHave) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may become another user";
  ASSERT_EQ(chmod(scratch_.file("").c_str(), 0777), 0);
  scratch_.write("report.qxv", "old");
  ASSERT_EQ(chown(path().c_str(), 1234, 2345), 0);
  ASSERT_EQ(chmod(path().c_str(), 0664), 0);
  const pid_t child = fork();
  if (child == 0) {
    if (setgid(3456) != 0 || setuid(1234) != 0) _exit(2);
    try {
      save(path(), "new");
    } catch (const StoreError&) {
      _exit(1);
    }
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), WIFEXITED(status) ? 0 : 1);
  EXPECT_EQ(modeOf(path()), 0644u);
}

TEST_F(ReplacedFileTest, SymbolicLinkStaysOne) {
  ASSERT_EQ(mkdir(path("there").c_str(), 0700), 0);
  scratch_.write("there/real.qxv", "old");
  fs::create_symlink("there/real.qxv", path("inner"));
  fs::create_symlink(path("inner"), path("link.qxv"));
  save(path("link.qxv"), "new");
  EXPECT_TRUE(fs::is_symlink(path("link.qxv")));
  EXPECT_TRUE(fs::is_symlink(path("inner")));
  EXPECT_EQ(scratch_.read("there/real.qxv"), "new");
  EXPECT_EQ(namesIn(path("there")), std::set<std::string>{"real.qxv"});
}

TEST_F(ReplacedFileTest, LinkToNothingMakesWhatItNames) {
  fs::create_symlink("real.qxv", path("link.qxv"));
  save(path("link.qxv"), "new");
  EXPECT_TRUE(fs::is_symlink(path("link.qxv")));
  EXPECT_EQ(scratch_.read("real.qxv"), "new");
}

TEST_F(ReplacedFileTest, RefusesWhatItMustNotReplace) {
  fs::create_symlink("b", path("a"));
  fs::create_symlink("a", path("b"));
  EXPECT_EQ(refusalOf(path("a")),
            "The file's path could not be followed: Too many levels of symbolic links.");
  ASSERT_EQ(mkdir(path("directory").c_str(), 0700), 0);
  EXPECT_EQ(refusalOf(path("directory")), "It is a folder.");
  EXPECT_EQ(refusalOf("/dev/null"), "There is something else than an ordinary file at this path.");
  EXPECT_EQ(refusalOf(path("directory/")), "The path names no file.");
  EXPECT_EQ(refusalOf(""), "The path names no file.");
  EXPECT_EQ(refusalOf(path("missing/file")),
            "The file's directory could not be opened: No such file or directory.");
}

TEST_F(ReplacedFileTest, RefusesADirectoryThatNobodyCanWriteTo) {
  // Root may write anywhere but here.
  const std::string refusal = refusalOf("/proc/report.qxv");
  EXPECT_TRUE(refusal.starts_with("No temporary file could be made beside the file")) << refusal;
}

TEST_F(ReplacedFileTest, RefusesAReadOnlyFile) {
  if (geteuid() == 0) {
    ASSERT_EQ(chmod(scratch_.file("").c_str(), 0777), 0);
    scratch_.write("report.qxv", "old");
    ASSERT_EQ(chmod(path().c_str(), 0444), 0);
    const pid_t child = fork();
    if (child == 0) {
      if (setgid(3456) != 0 || setuid(1234) != 0) _exit(2);
      _exit(refusalOf(path()) == "The old file may not be written: Permission denied." ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
  } else {
    scratch_.write("report.qxv", "old");
    ASSERT_EQ(chmod(path().c_str(), 0444), 0);
    EXPECT_EQ(refusalOf(path()), "The old file may not be written: Permission denied.");
  }
  EXPECT_EQ(scratch_.read("report.qxv"), "old");
}

TEST_F(ReplacedFileTest, RemovesWhatAKilledProcessLeftAndNothingElse) {
  const pid_t child = fork();
  if (child == 0) {
    ReplacedFile file(path());
    file.write("half");
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  ASSERT_EQ(names().size(), 1u);
  const std::set<std::string> strangers = {
      ".report.qxv.backup", ".report.qxv.save-short", ".report.qxv.save-TOOLARGE99",
      ".other.qxv.save-0123456789", "report.qxv.save-0123456789"};
  for (const std::string& name : strangers) scratch_.write(name, "mine");
  const ReplacedFile living(path("another.qxv"));
  const std::set<std::string> before = names();
  std::set<std::string> expected = strangers;
  for (const std::string& name : before) {
    if (name.starts_with(".another")) expected.insert(name);
  }
  expected.insert("report.qxv");
  save(path(), "new");
  EXPECT_EQ(names(), expected);
}

TEST_F(ReplacedFileTest, LeavesTheTemporaryOfALivingProcessAlone) {
  ReplacedFile first(path());
  first.write("first");
  save(path(), "second");
  EXPECT_EQ(scratch_.read("report.qxv"), "second");
  EXPECT_EQ(names().size(), 2u);
  first.commit();
  EXPECT_EQ(scratch_.read("report.qxv"), "first");
  EXPECT_EQ(names().size(), 1u);
}

/// Whether the file is refused because another holds it.
bool isHeldByAnother(const std::function<void()>& act) {
  try {
    act();
    return false;
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::kLocked) << error.what();
    return true;
  }
}

TEST_F(ReplacedFileTest, RefusesAFileThatAnotherHasLocked) {
  scratch_.write("report.qxv", "old");
  {
    // Locks of two opens exclude each other within one process as well.
    const std::optional<FileLock> lock = FileLock::tryLock(path());
    EXPECT_TRUE(isHeldByAnother([&] { ReplacedFile file(path()); }));
    const std::optional<FileLock> other = FileLock::tryLock(scratch_.write("other", "x"));
    EXPECT_TRUE(isHeldByAnother([&] { ReplacedFile file(path(), &*other); }));
    EXPECT_EQ(names(), (std::set<std::string>{"other", "report.qxv"}));
    ReplacedFile own(path(), &*lock);
    own.write("new");
    own.commit();
  }
  EXPECT_EQ(scratch_.read("report.qxv"), "new");
}

TEST_F(ReplacedFileTest, NobodyLocksOrReplacesAFileThatIsBeingReplaced) {
  scratch_.write("report.qxv", "old");
  {
    ReplacedFile file(path());
    EXPECT_FALSE(FileLock::tryLock(path()));
    EXPECT_TRUE(isHeldByAnother([&] { save(path(), "another"); }));
    file.write("new");
    const std::optional<FileLock> lock = file.commit().lock;
    EXPECT_FALSE(FileLock::tryLock(path())) << "the new file's lock is the caller's";
  }
  EXPECT_TRUE(FileLock::tryLock(path()));
  { const ReplacedFile abandoned(path()); }
  EXPECT_TRUE(FileLock::tryLock(path()));
}

TEST_F(ReplacedFileTest, FileThatCameMeanwhileIsNotReplacedWhileItIsLocked) {
  ReplacedFile file(path());
  file.write("mine");
  scratch_.write("report.qxv", "theirs");
  {
    const std::optional<FileLock> lock = FileLock::tryLock(path());
    EXPECT_TRUE(isHeldByAnother([&] { file.commit(); }));
    EXPECT_EQ(scratch_.read("report.qxv"), "theirs");
  }
  file.commit();
  EXPECT_EQ(scratch_.read("report.qxv"), "mine");
}

TEST_F(ReplacedFileTest, DuplicateReadsTheNewFileWhateverItsNameStandsFor) {
  ReplacedFile file(path());
  file.write("mine");
  const FileDescriptor duplicate = file.duplicate();
  file.commit();
  save(path(), "another");
  char bytes[8] = {};
  EXPECT_EQ(pread(duplicate.number(), bytes, sizeof bytes, 0), 4);
  EXPECT_STREQ(bytes, "mine");
}

TEST_F(ReplacedFileTest, LongestNamesCanBeSaved) {
  std::string name;
  for (int i = 0; i < 85; ++i) name += "表";
  save(path(name), "new");
  EXPECT_EQ(scratch_.read(name), "new");
  EXPECT_EQ(names(), std::set<std::string>{name});
}

TEST_F(ReplacedFileTest, ManyAtOnceGiveOneOfTheFilesWhole) {
  std::vector<pid_t> children;
  for (int i = 0; i < 4; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      int saves = 0;
      for (int k = 0; k < 20'000 && saves < 20; ++k) {
        try {
          save(path(), std::string(50'000, static_cast<char>('a' + i)));
          ++saves;
        } catch (const StoreError& error) {
          // Another one is at it.
          if (error.kind() != StoreError::Kind::kLocked) _exit(1);
          usleep(1000);
        }
      }
      _exit(saves == 20 ? 0 : 2);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  const std::string content = scratch_.read("report.qxv");
  EXPECT_EQ(content, std::string(50'000, content.empty() ? '?' : content[0]));
  EXPECT_EQ(names(), std::set<std::string>{"report.qxv"});
}

}  // namespace
}  // namespace vornwout
