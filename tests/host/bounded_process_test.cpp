#include "host/draw/bounded_process.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vornwout {
namespace {

std::string problemOf(const std::function<std::string()>& work, const ProcessBounds& bounds = {}) {
  try {
    runBounded(work, bounds);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "none";
}

std::size_t openDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++count;
  }
  return count;
}

TEST(BoundedProcess, ResultComesBackWhole) {
  std::string all;
  for (int i = 0; i < 3'000'000; ++i) all += static_cast<char>(i * 7);
  for (const std::string& text : {std::string(), std::string("\0e", 2), all}) {
    EXPECT_TRUE(runBounded([&] { return text; }) == text) << text.size();
  }
}

TEST(BoundedProcess, WorkChangesNothingHere) {
  int value = 1;
  EXPECT_EQ(runBounded([&] { return std::to_string(++value); }), "2");
  EXPECT_EQ(value, 1);
}

TEST(BoundedProcess, WhatItThrowsIsTold) {
  EXPECT_EQ(problemOf([]() -> std::string { throw std::runtime_error("so"); }), "so");
  EXPECT_EQ(problemOf([]() -> std::string { throw std::logic_error("such"); }), "such");
  EXPECT_EQ(problemOf([]() -> std::string { throw std::bad_alloc(); }), "it takes too much memory");
  EXPECT_EQ(problemOf([]() -> std::string { throw 5; }), "a library failed while it worked");
}

TEST(BoundedProcess, OtherEndsAreTold) {
  const auto raised = [](int signal) {
    return [signal]() -> std::string {
      std::signal(signal, SIG_DFL);
      raise(signal);
      return "";
    };
  };
  EXPECT_EQ(problemOf(raised(SIGABRT)), "memory ran out, or it failed (signal 6)");
  EXPECT_EQ(problemOf(raised(SIGKILL)), "memory ran out, or it failed (signal 9)");
  EXPECT_EQ(problemOf([]() -> std::string { _exit(0); }), "it ended without a result");
}

TEST(BoundedProcess, TimeIsBounded) {
  EXPECT_EQ(problemOf(
                []() -> std::string {
                  for (std::atomic<unsigned> i = 0;; ++i) {
                  }
                },
                {.seconds = 1}),
            "it takes more than 1 seconds");
}

TEST(BoundedProcess, WaitingIsBounded) {
  // Whatever the caller does with the signal.
  const auto handler = std::signal(SIGALRM, SIG_IGN);
  EXPECT_EQ(problemOf(
                []() -> std::string {
                  for (;;) pause();
                },
                {.waitSeconds = 1}),
            "it does not end");
  std::signal(SIGALRM, handler);
}

TEST(BoundedProcess, MemoryIsBounded) {
  constexpr std::size_t kMegabyte = 1 << 20;
  const auto taking = [](std::size_t bytes) {
    return [bytes] {
      const std::unique_ptr<char[]> memory(new char[bytes]);
      memory[bytes - 1] = 'x';
      return std::string(1, memory[bytes - 1]);
    };
  };
  const ProcessBounds bounds{.bytes = 256 * kMegabyte};
  EXPECT_EQ(runBounded(taking(64 * kMegabyte), bounds), "x");
  // A sanitizer ends the process before anything can be thrown.
  EXPECT_THROW(runBounded(taking(512 * kMegabyte), bounds), ProcessError);
}

TEST(BoundedProcess, NothingIsLeftBehind) {
  const std::size_t before = openDescriptors();
  for (int i = 0; i < 20; ++i) {
    runBounded([] { return "x"; });
    problemOf([]() -> std::string { _exit(3); });
  }
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(BoundedProcess, WorksWhereChildrenAreForgotten) {
  const auto handler = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(runBounded([] { return "x"; }), "x");
  EXPECT_EQ(problemOf([]() -> std::string { _exit(3); }), "it ended without a result");
  std::signal(SIGCHLD, handler);
}

}  // namespace
}  // namespace vornwout
