// Deflate and the checksum of zip members.
#include "host/store/deflate.h"

#include <random>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

std::string noise(std::size_t size) {
  std::mt19937 random(7);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

TEST(Deflate, WhatIsDeflatedInflatesToTheSame) {
  Deflater deflater;
  for (const std::size_t size : {std::size_t{64}, std::size_t{4096}, std::size_t{20} << 20}) {
    std::string bytes;
    while (bytes.size() < size) bytes += "<cell at=\"1 2\" value=\"3.25\"/>";
    std::string packed;
    ASSERT_TRUE(deflater.deflateAll(bytes, packed)) << size;
    EXPECT_LT(packed.size(), bytes.size());
    std::string back(bytes.size(), '\0');
    EXPECT_TRUE(inflateAll(packed, back)) << size;
    EXPECT_EQ(back, bytes);
  }
}

TEST(Deflate, WhatWouldNotBecomeSmallerIsLeft) {
  Deflater deflater;
  for (const std::string& bytes : {std::string(), std::string("x"), noise(10'000)}) {
    std::string packed = "before";
    EXPECT_FALSE(deflater.deflateAll(bytes, packed)) << bytes.size();
    EXPECT_EQ(packed, "");
  }
}

TEST(Deflate, OnlyAWholeStreamOfTheStatedSizeInflates) {
  const std::string bytes(1000, 'a');
  std::string packed;
  ASSERT_TRUE(Deflater().deflateAll(bytes, packed));
  const auto inflates = [](std::string stream, std::size_t size) {
    std::string result(size, '\0');
    return inflateAll(stream, result);
  };
  EXPECT_TRUE(inflates(packed, 1000));
  EXPECT_FALSE(inflates(packed, 999));
  EXPECT_FALSE(inflates(packed, 1001));
  EXPECT_FALSE(inflates(packed + 'x', 1000));
  for (std::size_t length = 0; length < packed.size(); ++length) {
    EXPECT_FALSE(inflates(packed.substr(0, length), 1000)) << length;
  }
  EXPECT_FALSE(inflates(noise(500), 1000));
}

TEST(Deflate, TheChecksumIsThatOfZip) {
  EXPECT_EQ(checksumOf(""), 0U);
  EXPECT_EQ(checksumOf("123456789"), 0xCBF43926U);  // the check value of CRC-32
}

}  // namespace
}  // namespace vornwout
