// Checks after every test that it leaked nothing, where the build has a leak checker.
#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
#define VORN_LEAK_CHECK 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VORN_LEAK_CHECK 1
#endif
#endif

#ifdef VORN_LEAK_CHECK
#include <sanitizer/lsan_interface.h>

// Fontconfig drops some of what it reads of the system's configuration, once in a process.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }

namespace {

class LeakListener : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo& test) override {
    // A test that failed may have left its objects behind; its own failure is the news.
    if (test.result()->Passed() && __lsan_do_recoverable_leak_check() != 0) {
      ADD_FAILURE() << "the test leaked memory";
    }
  }
};

const bool kRegistered = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
  return true;
}();

}  // namespace
#endif
