#include "host/store/password_key.h"

#include <filesystem>
#include <optional>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/store/store_error.h"
#include "tests/support/program_run.h"

namespace vornwout {
namespace {

using testing::HasSubstr;

mode_t modeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 0777;
}

std::string refusalOf(const std::string& path) {
  try {
    PasswordKey::loadOrCreate(path);
  } catch (const StoreError& error) {
    return error.what();
  }
  ADD_FAILURE() << "not refused";
  return {};
}

TEST(PasswordKey, IsMadeOnceForTheUserAlone) {
  const ScratchDirectory scratch;
  const std::string path = scratch.file("new/directory/password-key");
  const PasswordKey made = PasswordKey::loadOrCreate(path);
  EXPECT_EQ(modeOf(path), 0600u);
  EXPECT_EQ(modeOf(scratch.file("new")), 0700u);
  EXPECT_EQ(modeOf(scratch.file("new/directory")), 0700u);
  EXPECT_EQ(std::filesystem::file_size(path), PasswordKey::kSize);
  EXPECT_EQ(PasswordKey::loadOrCreate(path).bytes(), made.bytes());
  EXPECT_NE(PasswordKey::loadOrCreate(scratch.file("other")).bytes(), made.bytes());
  const std::filesystem::directory_iterator entries(scratch.file("new/directory"));
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1) << "a temporary file is left";
}

TEST(PasswordKey, ProcessesAtOnceGetTheSameKey) {
  const ScratchDirectory scratch;
  std::vector<pid_t> children;
  for (int i = 0; i < 8; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      try {
        const PasswordKey key = PasswordKey::loadOrCreate(scratch.file("deep/key"));
        scratch.write("seen" + std::to_string(i),
                      std::string(key.bytes().begin(), key.bytes().end()));
      } catch (const StoreError&) {
        _exit(1);
      }
      _exit(0);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  std::set<std::string> seen = {scratch.read("deep/key")};
  for (int i = 0; i < 8; ++i) seen.insert(scratch.read("seen" + std::to_string(i)));
  EXPECT_EQ(seen.size(), 1u);
}

TEST(PasswordKey, FileThatOthersMayReadIsRefusedWithTheRemedy) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("key", std::string(32, 'k'));
  for (const mode_t mode : {0640u, 0604u, 0620u, 0644u}) {
    ASSERT_EQ(chmod(path.c_str(), mode), 0);
    EXPECT_THAT(refusalOf(path), HasSubstr("chmod 600 \"" + path + "\""));
  }
  ASSERT_EQ(chmod(path.c_str(), 0600), 0);
  EXPECT_EQ(PasswordKey::loadOrCreate(path).bytes()[0], 'k');
}

TEST(PasswordKey, FileOfAnotherUserIsRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
  const ScratchDirectory scratch;
  const std::string path = scratch.write("key", std::string(32, 'k'));
  ASSERT_EQ(chmod(path.c_str(), 0600), 0);
  ASSERT_EQ(chown(path.c_str(), 1234, 1234), 0);
  EXPECT_THAT(refusalOf(path), HasSubstr("belongs to another user"));
}

TEST(PasswordKey, WhatIsNoKeyIsRefused) {
  const ScratchDirectory scratch;
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{31}, std::size_t{33}, std::size_t{99}}) {
    const std::string path = scratch.write("key", std::string(size, 'k'));
    ASSERT_EQ(chmod(path.c_str(), 0600), 0);
    EXPECT_THAT(refusalOf(path), HasSubstr("is damaged")) << size;
  }
  ASSERT_EQ(mkdir(scratch.file("directory").c_str(), 0700), 0);
  EXPECT_THAT(refusalOf(scratch.file("directory")), HasSubstr("is no ordinary file"));
  ASSERT_EQ(symlink("directory", scratch.file("link").c_str()), 0);
  EXPECT_THAT(refusalOf(scratch.file("link")), HasSubstr("cannot be read"));
  EXPECT_THAT(refusalOf(scratch.file("key/below")), HasSubstr("cannot be read"));
}

/// Sets an environment variable, or removes it, while it lives.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    if (value != nullptr) {
      setenv(name, value, 1);
    } else {
      unsetenv(name);
    }
  }
  ~Variable() {
    if (old_) {
      setenv(name_, old_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

struct PlaceCase {
  const char* condition;
  const char* configuration;
  const char* home;
  const char* path;
};

class DefaultPlace : public testing::TestWithParam<PlaceCase> {};

TEST_P(DefaultPlace, FollowsTheEnvironment) {
  const Variable configuration("XDG_CONFIG_HOME", GetParam().configuration);
  const Variable home("HOME", GetParam().home);
  if (*GetParam().path != '\0') {
    EXPECT_EQ(defaultPasswordKeyPath(), GetParam().path);
  } else {
    EXPECT_THROW(defaultPasswordKeyPath(), StoreError);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Every, DefaultPlace,
    testing::Values(
        PlaceCase{"ConfigurationFirst", "/conf", "/home/a", "/conf/vornwout/password-key"},
        PlaceCase{"HomeWithoutIt", nullptr, "/home/a", "/home/a/.config/vornwout/password-key"},
        PlaceCase{"HomeWhereItIsEmpty", "", "/home/a", "/home/a/.config/vornwout/password-key"},
        PlaceCase{"HomeWhereItIsRelative", "conf", "/home/a",
                  "/home/a/.config/vornwout/password-key"},
        PlaceCase{"NothingWithoutEither", nullptr, nullptr, ""},
        PlaceCase{"NothingWhereHomeIsRelative", nullptr, "home", ""}),
    [](const auto& test) { return test.param.condition; });

}  // namespace
}  // namespace vornwout
