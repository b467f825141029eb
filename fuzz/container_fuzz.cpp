// Arbitrary bytes as a container, opened and read with and without a password.
//
// Properties: a container is read, or refused with a sentence; no member is larger than it says; a
// container that was read whole can be copied, and the copy reads the same.
#include <cstdint>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/fuzz_check.h"
#include "host/store/container_reader.h"
#include "host/store/container_writer.h"
#include "host/store/store_error.h"

namespace {

// What a single input may claim; more would only measure how fast memory is cleared.
constexpr std::uint64_t kLimit = 1 << 20;

class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* data, std::size_t size) : file_(memfd_create("container", 0)) {
    VORN_FUZZ_CHECK(write(file_, data, size) == static_cast<ssize_t>(size));
  }
  ~MemoryFile() { close(file_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
};

/// Reads all members; false when one is refused.
bool readAll(vornwout::ContainerReader& reader) {
  bool isWhole = true;
  for (const vornwout::ContainerMember& member : reader.members()) {
    try {
      VORN_FUZZ_CHECK(reader.read(member.name).size() == member.size);
    } catch (const vornwout::StoreError& error) {
      VORN_FUZZ_CHECK(*error.what() != '\0');
      isWhole = false;
    }
  }
  return isWhole;
}

void copyAndCompare(vornwout::ContainerReader& reader, const std::string& password) {
  const std::string copy = "/dev/shm/vornwout-container-fuzz-" + std::to_string(getpid());
  {
    vornwout::ContainerWriter writer(copy, {password, 1});
    for (std::size_t i = 0; i < reader.members().size(); ++i) {
      // Only the first may be called that.
      if (i > 0 && reader.members()[i].name == "mimetype") return;
      writer.copy(reader, reader.members()[i].name);
    }
    writer.commit();
  }
  vornwout::ContainerReader again(copy);
  again.setPassword(password);
  unlink(copy.c_str());
  VORN_FUZZ_CHECK(again.members().size() == reader.members().size());
  for (const vornwout::ContainerMember& member : reader.members()) {
    VORN_FUZZ_CHECK(again.read(member.name) == reader.read(member.name));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile file(data, size);
  for (const char* password : {"", "secret"}) {
    try {
      vornwout::ContainerReader reader(file.path(), kLimit);
      reader.setPassword(password);
      if (readAll(reader) && !reader.members().empty()) copyAndCompare(reader, password);
      // Without encryption the password changes nothing.
      if (!reader.isEncrypted()) break;
    } catch (const vornwout::StoreError& error) {
      VORN_FUZZ_CHECK(error.kind() != vornwout::StoreError::Kind::kNotWritten);
      VORN_FUZZ_CHECK(*error.what() != '\0');
    }
  }
  return 0;
}
