// What a signal that ends the program in the middle of a save leaves: the old file and nothing
// else.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/clean_environment.h"
#include "tests/support/program_run.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

std::string noise(std::size_t size) {
  std::string bytes;
  std::uint32_t state = 1;
  while (bytes.size() < size) {
    state = state * 1664525 + 1013904223;
    bytes += static_cast<char>(state >> 24);
  }
  return bytes;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

class EndingSignals : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directory(scratch_.file("place"));
    scratch_.write("place/report.qxv", "the old file");
    scratch_.write("model.bin", noise(16'000'000));
    scratch_.write("report.json",
                   R"({"objects": [{"type": "model", "file": "model.bin", "mediaType": "a/b"}]})");
  }

  /// Starts a save that takes a while; returns once its temporary is there.
  pid_t startSaving(void (*prepare)() = nullptr) const {
    const std::string manifest = scratch_.file("report.json");
    const pid_t child = fork();
    if (child == 0) {
      const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
      dup2(nowhere, STDERR_FILENO);
      cleanEnvironment();
      if (prepare != nullptr) prepare();
      execl(VORN_BUILD_DIR "/runner/vornwout", "vornwout", "build", manifest.c_str(), "-o",
            path().c_str(), nullptr);
      _exit(127);
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (namesIn(place()).size() < 2 && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(namesIn(place()).size(), 2U) << "no save has begun";
    return child;
  }

  std::string place() const { return scratch_.file("place"); }
  std::string path() const { return scratch_.file("place/report.qxv"); }

  ScratchDirectory scratch_;
};

TEST_F(EndingSignals, TakeTheTemporaryOfASaveAlong) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    const pid_t child = startSaving();
    kill(child, number);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), number);
    EXPECT_EQ(namesIn(place()), std::vector<std::string>{"report.qxv"});
    EXPECT_TRUE(scratch_.read("place/report.qxv") == "the old file");
  }
}

TEST_F(EndingSignals, StayIgnoredWhereTheyWere) {
  const pid_t child = startSaving([] { signal(SIGHUP, SIG_IGN); });
  kill(child, SIGHUP);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(namesIn(place()), std::vector<std::string>{"report.qxv"});
  EXPECT_TRUE(scratch_.read("place/report.qxv") != "the old file");
}

}  // namespace
}  // namespace vornwout
