// What the program asks of the system for itself.
#include "runner/process_resources.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "tests/support/program_run.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

TEST(ProcessResources, AllowAsManyOpenFilesAsTheSystemDoes) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  allowManyOpenFiles();
  rlimit after{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &after), 0);
  EXPECT_EQ(after.rlim_cur, before.rlim_max);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
}

TEST(ProcessResources, AnExportMayHaveMoreImagesThanFilesAreOpenAtFirst) {
  constexpr int kCharts = 60;
  const ScratchDirectory scratch;
  std::string manifest = "{\"objects\": [";
  for (int i = 0; i < kCharts; ++i) {
    // Each carries something of its own, so that none is kept twice.
    const std::string name = std::to_string(i) + ".svg";
    scratch.write(name,
                  "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'><rect width='" +
                      std::to_string(i + 1) + "' height='2'/></svg>");
    manifest += std::string(i == 0 ? "" : ",") + "{\"type\": \"chart\", \"file\": \"" + name +
                "\", \"label\": \"c\"}";
  }
  const std::string path = scratch.write("m.json", manifest + "]}");
  ASSERT_EQ(runProgram({"build", path, "-o", scratch.file("m.qxv")}).status, 0);
  const std::string job =
      scratch.write("a.qxs", "OUTPUT OPEN FILE='" + scratch.file("m.qxv") +
                                 "'.\nOUTPUT EXPORT PRINT=ERRORS /TEXT DOCUMENTFILE='" +
                                 scratch.file("m.txt") + "'.\n");
  ProgramSetup setup;
  setup.prepare = [] {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = 40;
    setrlimit(RLIMIT_NOFILE, &limit);
  };
  const ProgramResult result = runProgram({"run", job}, setup);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(std::filesystem::exists(scratch.file("m060.png"))) << result.out << result.err;
}

}  // namespace
}  // namespace vornwout
