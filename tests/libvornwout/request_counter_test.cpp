// Request numbers: from 1 to two thousand million, then from 1 again.
#include "libvornwout/frame/request_counter.h"

#include <gtest/gtest.h>

#include "libvornwout/frame/output_request.h"
#include "tests/support/command_run.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

struct Call {
  void (*entry)();
  const char* text;
};

TEST(RequestCounter, StartsAtOne) {
  RequestCounter counter;
  EXPECT_EQ(counter.next(), 1);
  EXPECT_EQ(counter.next(), 2);
  EXPECT_EQ(counter.next(), 3);
}

TEST(RequestCounter, StartsOverBehindTheHighestNumber) {
  RequestCounter counter(1999999998);
  EXPECT_EQ(counter.next(), 1999999999);
  EXPECT_EQ(counter.next(), 2000000000);
  EXPECT_EQ(counter.next(), 1);
  EXPECT_EQ(counter.next(), 2);
}

TEST(RequestCounter, StartsOverFromANumberThatIsTooHigh) {
  RequestCounter counter(RequestCounter::kHighest + 1);
  EXPECT_EQ(counter.next(), 1);
}

TEST(NextOutputRequestId, NumbersTheRequestsOfAllCommandsInOneRow) {
  FakeHost host;
  const int last = NextOutputRequestId();
  for (const auto& [entry, text] :
       {Call{outnew_, "OUTPUT NEW."}, Call{outname_, "OUTPUT NAME a."},
        Call{outactiv8_, "OUTPUT ACTIVATE a."}, Call{outdisp_, "OUTPUT DISPLAY."},
        Call{outclose_, "OUTPUT CLOSE a."}}) {
    const CommandRun run(entry, text, &host);
  }
  ASSERT_EQ(host.requests.size(), 5U);
  for (std::size_t i = 0; i < host.requests.size(); ++i) {
    EXPECT_EQ(host.requests[i].id, last + 1 + static_cast<int>(i));
  }
  EXPECT_EQ(NextOutputRequestId(), last + 6);
}

TEST(NextOutputRequestId, IsNotSpentOnACommandThatSendsNothing) {
  FakeHost host;
  const int last = NextOutputRequestId();
  for (const auto& [entry, text] :
       {Call{outnew_, "OUTPUT NEW NAME=1."}, Call{outname_, "OUTPUT NAME a b."},
        Call{outclose_, "OUTPUT CLOSE."}, Call{outdisp_, "OUTPUT DISPLAY a."},
        Call{outcomnt_, "OUTPUT COMMENT TEXT='a'."}}) {
    const CommandRun run(entry, text, &host);
  }
  const CommandRun withoutHost(outnew_, "OUTPUT NEW.", nullptr);
  EXPECT_EQ(NextOutputRequestId(), last + 1);
}

}  // namespace
}  // namespace vornwout
