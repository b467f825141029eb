#include "host/store/part_spool.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "host/store/store_error.h"

namespace vornwout {
namespace {

std::string readAll(const PartSpool& spool, const PartSpool::Place& place, std::size_t step) {
  std::string bytes;
  std::string piece(step, '\0');
  while (const std::size_t count = spool.read(place, bytes.size(), piece.data(), step)) {
    bytes.append(piece, 0, count);
  }
  return bytes;
}

TEST(PartSpool, KeepsInMemoryUpToTheLimitAndTheRestInOneFile) {
  int made = 0;
  PartSpool spool(100, [&] {
    ++made;
    return FileDescriptor(memfd_create("spool", 0));
  });
  const PartSpool::Place first = spool.keep(std::string(60, 'a'));
  const PartSpool::Place second = spool.keep(std::string(40, 'b'));
  EXPECT_EQ(made, 0);
  const PartSpool::Place third = spool.keep("c");
  const PartSpool::Place fourth = spool.keep(std::string(1'000, 'd'));
  EXPECT_EQ(made, 1);
  EXPECT_FALSE(first.isInFile || second.isInFile);
  EXPECT_TRUE(third.isInFile && fourth.isInFile);
  for (const std::size_t step : {1u, 7u, 16u, 1000u, 5000u}) {
    EXPECT_EQ(readAll(spool, first, step), std::string(60, 'a'));
    EXPECT_EQ(readAll(spool, second, step), std::string(40, 'b'));
    EXPECT_EQ(readAll(spool, third, step), "c");
    EXPECT_EQ(readAll(spool, fourth, step), std::string(1'000, 'd'));
  }
}

TEST(PartSpool, FileHoldsNothingReadableAndNoTwoPartsAlike) {
  const FileDescriptor file(memfd_create("spool", 0));
  PartSpool spool(0, [&] { return FileDescriptor(dup(file.number())); });
  const std::string part(64, 'a');
  const PartSpool::Place first = spool.keep(part);
  const PartSpool::Place second = spool.keep(part);
  std::string bytes(128, '\0');
  ASSERT_EQ(pread(file.number(), bytes.data(), bytes.size(), 0), 128);
  EXPECT_EQ(bytes.find("aaaa"), std::string::npos);
  EXPECT_NE(bytes.substr(0, 64), bytes.substr(64));
  EXPECT_EQ(readAll(spool, second, 64), part);
}

TEST(PartSpool, FileThatCannotBeWrittenIsReported) {
  PartSpool spool(0, [] { return FileDescriptor(open("/dev/full", O_RDWR | O_CLOEXEC)); });
  try {
    spool.keep("x");
    ADD_FAILURE() << "not reported";
  } catch (const StoreError& error) {
    EXPECT_STREQ(error.what(), "The scratch file could not be written: No space left on device.");
  }
}

}  // namespace
}  // namespace vornwout
