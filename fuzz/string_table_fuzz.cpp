// Arbitrary bytes as a string table.
//
// Properties: a bundle is read whole or not at all; its texts are valid UTF-8 and together not
// larger than UTF-8 can make the bundle's own bytes; the table that a command reads from a file has
// the same entries, and reading changes nothing.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/fuzz_check.h"
#include "platform/strings/string_table.h"
#include "platform/text/utf8.h"

namespace {

constexpr std::size_t kHeadSize = 32;
/// Where a bundle says how many words it has.
constexpr std::size_t kSizeAt = kHeadSize + 16;

/// The entries of a file with these bytes.
std::vector<vornwout::keyValueGloss> readFile(const std::string& bytes) {
  const int file = memfd_create("table", 0);
  VORN_FUZZ_CHECK(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
  std::vector<vornwout::keyValueGloss> entries;
  const std::string path = "\\proc\\self\\fd\\" + std::to_string(file);
  vornwout::FacSTStringTable().GetKeysAndValues(path, entries);
  close(file);
  return entries;
}

void check(const std::string& bytes) {
  // In memory of its own size, so that a byte read behind it is seen.
  const std::vector<char> exact(bytes.begin(), bytes.end());
  const auto entries = vornwout::readTextBundle({exact.data(), exact.size()});
  std::size_t size = 0;
  if (entries) {
    for (const vornwout::keyValueGloss& entry : *entries) {
      VORN_FUZZ_CHECK(!entry.key.empty());
      for (const std::string* text : {&entry.key, &entry.value, &entry.gloss}) {
        VORN_FUZZ_CHECK(vornwout::isValidUtf8(*text));
        size += text->size();
      }
    }
  }
  // A unit of two bytes becomes three at most.
  VORN_FUZZ_CHECK(size <= bytes.size() * 3 / 2);
  VORN_FUZZ_CHECK(readFile(bytes) == entries.value_or(std::vector<vornwout::keyValueGloss>()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string bytes(data, data + size);
  check(bytes);
  if (size < kSizeAt + 4 || size % 4 != 0) return 0;
  // Once more behind a good head and with the right size, which mutations seldom leave alone.
  bytes.replace(
      0, 20,
      std::string("\x20\x00\xDA\x27\x14\x00\x00\x00\x00\x00\x02\x00ResB\x01\x03\x00\x00", 20));
  const auto words = static_cast<std::uint32_t>((size - kHeadSize) / 4);
  std::memcpy(bytes.data() + kSizeAt, &words, sizeof words);
  check(bytes);
  return 0;
}
