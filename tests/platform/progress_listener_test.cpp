#include "platform/adapter/progress_listener.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vornwout {
namespace {

class Recorder : public ProgressListener {
 public:
  void progress(std::string_view what, std::uint64_t done, std::uint64_t total) override {
    heard.push_back(std::string(what) + " " + std::to_string(done) + "/" + std::to_string(total));
  }
  std::vector<std::string> heard;
};

TEST(ProgressListener, NobodyHearsAReportWhileNobodyIsRegistered) {
  Recorder recorder;
  reportProgress("before", 1, 2);
  { const ProgressRegistration registration(recorder); }
  reportProgress("after", 1, 2);
  EXPECT_THAT(recorder.heard, testing::IsEmpty());
}

TEST(ProgressListener, InnermostListenerHearsAndTheOneBeforeIsBackBehindIt) {
  Recorder outer;
  Recorder inner;
  const ProgressRegistration registration(outer);
  reportProgress("a", 1, 2);
  {
    const ProgressRegistration nested(inner);
    reportProgress("b", 0, 0);
  }
  reportProgress("c", 2, 2);
  EXPECT_THAT(outer.heard, testing::ElementsAre("a 1/2", "c 2/2"));
  EXPECT_THAT(inner.heard, testing::ElementsAre("b 0/0"));
}

}  // namespace
}  // namespace vornwout
