// The content of a file that a test needs.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace vornwout {

/// All bytes of a file; a file that cannot be read fails the test.
inline std::string fileContent(const std::filesystem::path& path) {
  const std::ifstream stream(path, std::ios::binary);
  EXPECT_TRUE(stream.good()) << path << " cannot be read";
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

}  // namespace vornwout
