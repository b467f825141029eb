// Where the installation's and the user's data are looked for.
#include "platform/files/path_factory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>

#include "gtest/gtest.h"
#include "platform/strings/language.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

/// An environment variable set, or unset, for one scope.
class ScopedVariable {
 public:
  ScopedVariable(std::string name, const std::optional<std::string>& value)
      : name_(std::move(name)) {
    if (const char* before = std::getenv(name_.c_str())) before_ = before;
    set(value);
  }
  ~ScopedVariable() { set(before_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void set(const std::optional<std::string>& value) const {
    if (value.has_value()) {
      setenv(name_.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name_.c_str());
    }
  }

  std::string name_;
  std::optional<std::string> before_;
};

TEST(PathFactoryTest, installationIsWhereTheVariableSays) {
  const struct {
    const char* home;
    const char* directory;
  } cases[] = {{"/opt/vornwout", "/opt/vornwout"}, {"/opt/vornwout/", "/opt/vornwout"}, {"/", "/"}};
  for (const auto& c : cases) {
    const ScopedVariable variable("VORNWOUT_HOME", c.home);
    EXPECT_EQ(PathFactory::getPathInstance(3).getDirectory(), c.directory);
  }
}

TEST(PathFactoryTest, anEmptyVariableCountsAsNone) {
  const ScopedVariable unset("VORNWOUT_HOME", std::nullopt);
  const std::string found = PathFactory::getPathInstance(3).getDirectory();
  EXPECT_FALSE(found.empty());
  const ScopedVariable empty("VORNWOUT_HOME", "");
  EXPECT_EQ(PathFactory::getPathInstance(3).getDirectory(), found);
}

TEST(PathFactoryTest, userDirectoryFollowsTheConventionForData) {
  const ScopedVariable home("HOME", "/home/ada");
  {
    const ScopedVariable data("XDG_DATA_HOME", "/data/ada");
    EXPECT_EQ(PathFactory::getPathInstance(0).getDirectory(), "/data/ada/vornwout");
  }
  for (const std::optional<std::string>& value :
       {std::optional<std::string>(), std::optional<std::string>(""),
        std::optional<std::string>("relative")}) {
    const ScopedVariable data("XDG_DATA_HOME", value);
    EXPECT_EQ(PathFactory::getPathInstance(0).getDirectory(), "/home/ada/.local/share/vornwout");
  }
  const ScopedVariable data("XDG_DATA_HOME", std::nullopt);
  const ScopedVariable noHome("HOME", std::nullopt);
  EXPECT_EQ(PathFactory::getPathInstance(0).getDirectory().front(), '/');
}

TEST(PathFactoryTest, stringTablesStandBelowTheCurrentLanguage) {
  const ScopedVariable variable("VORNWOUT_HOME", "/opt/v");
  EXPECT_EQ(PathFactory::getPathInstance(3).getStringTableLocation(), "/opt/v/lang/en/");
  const ScopedLanguage language("pt-br");
  EXPECT_EQ(PathFactory::getPathInstance(3).getStringTableLocation(), "/opt/v/lang/pt_BR/");
}

TEST(PathFactoryTest, otherKindsAreRefused) {
  for (const int kind : {-1, 1, 2, 4, 1000}) {
    EXPECT_THROW(PathFactory::getPathInstance(kind), std::out_of_range);
  }
}

TEST(PathFactoryTest, directoriesAreInTheCurrentEncoding) {
  const ScopedVariable variable("VORNWOUT_HOME", "/opt/\xE8\xA1\xA8");
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  EXPECT_EQ(PathFactory::getPathInstance(3).getDirectory(), "/opt/\x95\\");
}

class DataDirectoryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "vornwout-paths-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
  }
  void TearDown() override { fs::remove_all(directory_); }

  std::string directory_;
};

TEST_F(DataDirectoryTest, anInstalledBinaryHasItsPrefixsData) {
  fs::create_directories(directory_ + "/share/vornwout");
  const std::string expected = directory_ + "/share/vornwout";
  for (const char* binary : {"/bin/vornwout", "/lib/libvornplatform.so",
                             "/lib/x86_64-linux-gnu/libvornplatform.so", "/libexec/vornwout/x"}) {
    EXPECT_EQ(PathFactory::dataDirectoryBeside(directory_ + binary), expected) << binary;
    EXPECT_EQ(PathFactory::stringTablesBeside(directory_ + binary), expected + "/lang") << binary;
  }
  EXPECT_EQ(PathFactory::dataDirectoryBeside(directory_ + "/other/program"), std::nullopt);
  EXPECT_EQ(PathFactory::dataDirectoryBeside(directory_ + "/lib/a/b/c/d/e/x"), std::nullopt);
}

TEST_F(DataDirectoryTest, aFreshlyBuiltBinaryHasItsSourceTreesData) {
  const std::string source = directory_ + "/source";
  const std::string build = directory_ + "/build";
  fs::create_directories(source + "/Looks");
  fs::create_directories(build + "/runner");
  const auto find = [&] { return PathFactory::dataDirectoryBeside(build + "/runner/vornwout"); };
  EXPECT_EQ(find(), std::nullopt);
  std::ofstream(build + "/CMakeCache.txt")
      << "# cache\nOTHER:STRING=x\nCMAKE_HOME_DIRECTORY:INTERNAL=" << source << "\n";
  EXPECT_EQ(find(), source);
}

TEST_F(DataDirectoryTest, aFreshlyBuiltBinaryHasTheStringTablesOfItsBuild) {
  const std::string build = directory_ + "/build";
  fs::create_directories(directory_ + "/Looks");
  fs::create_directories(build + "/runner");
  std::ofstream(build + "/CMakeCache.txt")
      << "CMAKE_HOME_DIRECTORY:INTERNAL=" << directory_ << "\n";
  EXPECT_EQ(PathFactory::stringTablesBeside(build + "/runner/vornwout"), build + "/lang");
}

TEST(PathFactoryTest, thisBuildHasStringTables) {
  const ScopedVariable unset("VORNWOUT_HOME", std::nullopt);
  EXPECT_EQ(PathFactory::getPathInstance(3).getStringTableLocation(), VORN_BUILD_DIR "/lang/en/");
  EXPECT_TRUE(fs::exists(VORN_BUILD_DIR "/lang/en/output.qbb"));
}

TEST_F(DataDirectoryTest, aBinaryWithoutDataHasNone) {
  EXPECT_EQ(PathFactory::dataDirectoryBeside(directory_ + "/bin/vornwout"), std::nullopt);
  EXPECT_EQ(PathFactory::dataDirectoryBeside("/vornwout"), std::nullopt);
  EXPECT_EQ(PathFactory::stringTablesBeside(directory_ + "/bin/vornwout"), std::nullopt);
}

}  // namespace
}  // namespace vornwout
