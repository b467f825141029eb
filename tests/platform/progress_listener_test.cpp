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

TEST(ProgressListener, PartsOfAStepAreToldAsPartsOfItsWork) {
  Recorder recorder;
  const ProgressRegistration registration(recorder);
  reportWithinStep(1, 2);
  { const ProgressStep alone(1, 2); }
  EXPECT_THAT(recorder.heard, testing::IsEmpty()) << "there is no step";
  {
    const ProgressStep step("a", 2, 4);
    reportWithinStep(1, 2);
    {
      const ProgressStep second(1, 2);
      reportWithinStep(1, 4);
      const ProgressStep last(3, 4);
      reportWithinStep(1, 2);
    }
    reportWithinStep(3, 4);
    reportWithinStep(1, 0);
  }
  reportWithinStep(1, 2);
  EXPECT_THAT(recorder.heard, testing::ElementsAre("a 2500/4000", "a 2625/4000", "a 2937/4000",
                                                   "a 2750/4000", "a 2000/4000"));
  recorder.heard.clear();
  const ProgressStep end("b", 0, 1);
  reportWithinStep(9, 9);
  EXPECT_THAT(recorder.heard, testing::ElementsAre("b 999/1000")) << "the work tells its end";
}

}  // namespace
}  // namespace vornwout
