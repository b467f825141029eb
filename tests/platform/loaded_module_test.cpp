#include "platform/files/loaded_module.h"

#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

std::string problemOf(const char* file, const char* function) {
  try {
    moduleFunction(file, function);
  } catch (const ModuleError& error) {
    return error.what();
  }
  return "";
}

TEST(LoadedModule, IsFoundBesideThePlatform) {
  void* const function = moduleFunction("libvornxml.so", "vornXmlModule");
  EXPECT_NE(function, nullptr);
  EXPECT_EQ(moduleFunction("libvornxml.so", "vornXmlModule"), function);
}

TEST(LoadedModule, WhatIsMissingIsTold) {
  EXPECT_NE(problemOf("libvornnothing.so", "f").find("libvornnothing.so: cannot open"),
            std::string::npos);
  EXPECT_NE(problemOf("libvornxml.so", "nothing").find("undefined symbol: nothing"),
            std::string::npos);
}

TEST(LoadedModule, IsLookedForNowhereElse) {
  // Every system has this one, elsewhere.
  EXPECT_NE(problemOf("libm.so.6", "sqrt").find("cannot open"), std::string::npos);
}

}  // namespace
}  // namespace vornwout
