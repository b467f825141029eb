// What passes between the commands and a host is reported, then forwarded.
#include "platform/trace/tracing_adapter.h"

#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/adapter/go_to_caller.h"

namespace vornwout {
namespace {

/// Answers, and notes how much of the trace was written when it was asked.
class FakeHost : public HostAdapter, public OutputControllerInterface {
 public:
  explicit FakeHost(const std::ostringstream& trace) : trace_(trace) {}

  bool IsPathExpansionSuppressed() override { return suppressed; }
  OutputControllerInterface* GetOutputController() override {
    return hasController ? this : nullptr;
  }
  std::string ExportOutput(const std::string& xml) override {
    traceWhenAsked = trace_.str();
    if (unwinds) throw VornGoToCaller();
    return "exported " + xml;
  }
  std::string ModifyOutput(const std::string& xml) override {
    traceWhenAsked = trace_.str();
    if (unwinds) throw VornGoToCaller();
    return "modified " + xml;
  }
  bool SendRequest(const VornwMsgOutputControllerRequest& request,
                   VornwMsgOutputControllerResponse& response) override {
    traceWhenAsked = trace_.str();
    if (unwinds) throw VornGoToCaller();
    response.setError(3, "No document is named ^1.", request.getName());
    return false;
  }

  bool suppressed = false;
  bool hasController = true;
  bool unwinds = false;
  std::string traceWhenAsked;

 private:
  const std::ostringstream& trace_;
};

class TracingAdapterTest : public testing::Test {
 protected:
  nlohmann::json onlyLine() const { return nlohmann::json::parse(stream_.str()); }

  std::ostringstream stream_;
  TraceWriter trace_{stream_};
  FakeHost host_{stream_};
  TracingAdapter adapter_{host_, trace_};
  VornwMsgOutputControllerRequest request_{1, OutputControllerCommand::kActivate, "doc1", "",
                                           OutputDocumentMinimized::kNo};
  VornwMsgOutputControllerResponse response_;
};

TEST_F(TracingAdapterTest, ForwardsWhetherPathsAreExpandedWithoutReportingIt) {
  EXPECT_FALSE(adapter_.IsPathExpansionSuppressed());
  host_.suppressed = true;
  EXPECT_TRUE(adapter_.IsPathExpansionSuppressed());
  EXPECT_EQ(stream_.str(), "");
}

TEST_F(TracingAdapterTest, ReportsARequestBeforeItIsForwarded) {
  OutputControllerInterface* controller = adapter_.GetOutputController();
  ASSERT_NE(controller, nullptr);
  EXPECT_FALSE(controller->SendRequest(request_, response_));
  EXPECT_EQ(response_.GetErrorSeverity(), 3);
  EXPECT_EQ(response_.GetArgumentString().view(), "doc1");
  EXPECT_EQ(onlyLine().at("event"), "request");
  EXPECT_EQ(onlyLine().at("name"), "doc1");
  EXPECT_EQ(host_.traceWhenAsked, stream_.str());
}

TEST_F(TracingAdapterTest, HasNoControllerWhenTheHostHasNone) {
  host_.hasController = false;
  EXPECT_EQ(adapter_.GetOutputController(), nullptr);
}

TEST_F(TracingAdapterTest, ReportsAChangeBeforeItIsForwarded) {
  EXPECT_EQ(adapter_.ModifyOutput("<m/>"), "modified <m/>");
  EXPECT_EQ(onlyLine(), nlohmann::json({{"event", "modify"}, {"xml", "<m/>"}}));
  EXPECT_EQ(host_.traceWhenAsked, stream_.str());
}

TEST_F(TracingAdapterTest, ReportsAnExportBeforeItIsForwarded) {
  EXPECT_EQ(adapter_.ExportOutput("<e/>"), "exported <e/>");
  EXPECT_EQ(onlyLine(), nlohmann::json({{"event", "export"}, {"xml", "<e/>"}}));
  EXPECT_EQ(host_.traceWhenAsked, stream_.str());
}

TEST_F(TracingAdapterTest, LetsTheHostUnwind) {
  host_.unwinds = true;
  EXPECT_THROW(adapter_.ModifyOutput("<m/>"), VornGoToCaller);
  EXPECT_THROW(adapter_.ExportOutput("<e/>"), VornGoToCaller);
  EXPECT_THROW(adapter_.GetOutputController()->SendRequest(request_, response_), VornGoToCaller);
}

}  // namespace
}  // namespace vornwout
