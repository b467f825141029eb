#include "host/build/counted_files.h"

#include <map>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "host/build/manifest.h"
#include "platform/adapter/progress_listener.h"
#include "tests/support/memory_files.h"

namespace vornwout {
namespace {

class Reports : public ProgressListener {
 public:
  void progress(std::string_view what, std::uint64_t done, std::uint64_t total) override {
    texts.push_back(fmt::format("{} {}/{}", what, done, total));
  }
  std::vector<std::string> texts;
};

using Texts = std::vector<std::string>;

TEST(CountedFiles, BytesAreReportedOnceAgainstWhatIsExpected) {
  MemoryFiles files({{"a", "12345678"}, {"b", "12"}});
  CountedFiles counted(files);
  counted.expect("a");
  counted.expect("b");
  counted.expect("none");
  Reports reports;
  const ProgressRegistration registration(reports);
  char buffer[8];
  const auto source = counted.open("a");
  source->read(buffer, 3);
  source->rewind();
  source->read(buffer, 3);
  source->read(buffer, 8);
  EXPECT_EQ(reports.texts, (Texts{"Building 3/10", "Building 8/10"}));
  EXPECT_EQ(readWhole(counted, "b", 10), "12");
  counted.finish();
  EXPECT_EQ(reports.texts,
            (Texts{"Building 3/10", "Building 8/10", "Building 9/10", "Building 10/10"}));
}

TEST(CountedFiles, FileOfUnknownSizeIsReportedAtTheEndOnly) {
  MemoryFiles files({{"a", "1234"}, {"b", ""}});
  CountedFiles counted(files);
  Reports reports;
  const ProgressRegistration registration(reports);
  EXPECT_EQ(readWhole(counted, "a", 10), "1234");
  counted.finish();
  EXPECT_EQ(reports.texts, (Texts{"Building 0/0"}));
}

TEST(CountedFiles, ManifestIsReportedByTheBytesOfAllItsFiles) {
  std::string csv = "k,v\n";
  for (int i = 0; i < 100000; ++i) csv += fmt::format("{},1\n", i);
  MemoryFiles files({{"a.csv", csv}, {"a.md", "text"}, {"m.xml", "<m/>"}});
  Reports reports;
  const ProgressRegistration registration(reports);
  Document document(1, "", false);
  buildFromManifest(
      R"({"objects": [{"type": "heading", "label": "h", "objects": [
           {"type": "table", "csv": "a.csv", "rows": ["k"], "value": "v"},
           {"type": "text", "markdown": "a.md"}]},
           {"type": "model", "file": "m.xml"}]})",
      "m.json", files, document);
  const std::string total = "/" + std::to_string(csv.size() + 8);
  // Several steps within the one large table, and all of it at the end.
  ASSERT_GE(reports.texts.size(), 5U);
  EXPECT_EQ(reports.texts[0], "Building 262144" + total);
  EXPECT_EQ(reports.texts[1], "Building 524288" + total);
  EXPECT_EQ(reports.texts.back(), "Building " + total.substr(1) + total);
}

}  // namespace
}  // namespace vornwout
