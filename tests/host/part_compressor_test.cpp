#include "host/store/part_compressor.h"

#include <deque>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include "host/store/store_error.h"

namespace vornwout {
namespace {

FileDescriptor memoryFile() { return FileDescriptor(memfd_create("spool", 0)); }

TEST(PartCompressor, EveryPartLandsWhereItBelongs) {
  PartSpool spool(1'000'000, memoryFile);
  std::deque<CompressedPart> parts;
  {
    PartCompressor compressor(4, spool);
    for (std::size_t i = 0; i < 200; ++i) {
      compressor.add(parts.emplace_back(), std::string(i * 100, 'x'));
    }
    compressor.finish();
  }
  for (std::size_t i = 0; i < parts.size(); ++i) {
    EXPECT_EQ(parts[i].size, i * 100);
    EXPECT_EQ(parts[i].isDeflated, i > 0);
    EXPECT_LE(parts[i].place.size, parts[i].size);
  }
}

TEST(PartCompressor, PartLargerThanWhatMayWaitIsTaken) {
  PartSpool spool(1'000'000, memoryFile);
  std::deque<CompressedPart> parts;
  PartCompressor compressor(2, spool);
  for (int i = 0; i < 3; ++i) compressor.add(parts.emplace_back(), std::string(20 << 20, 'x'));
  compressor.finish();
  for (const CompressedPart& part : parts) EXPECT_LT(part.place.size, 200'000u);
}

TEST(PartCompressor, FailureOfAThreadComesOutOfFinish) {
  PartSpool spool(0, []() -> FileDescriptor {
    throw StoreError(StoreError::Kind::kNotWritten, "There is no room.");
  });
  std::deque<CompressedPart> parts;
  PartCompressor compressor(2, spool);
  for (int i = 0; i < 100; ++i) compressor.add(parts.emplace_back(), std::string(1 << 20, 'x'));
  try {
    compressor.finish();
    ADD_FAILURE() << "no failure came out";
  } catch (const StoreError& error) {
    EXPECT_STREQ(error.what(), "There is no room.");
  }
}

TEST(PartCompressor, EndsWithoutFinishWhilePartsWait) {
  PartSpool spool(1 << 20, memoryFile);
  std::deque<CompressedPart> parts;
  PartCompressor compressor(1, spool);
  for (int i = 0; i < 30; ++i) compressor.add(parts.emplace_back(), std::string(1 << 20, 'x'));
  EXPECT_EQ(parts.size(), 30u);
}

}  // namespace
}  // namespace vornwout
