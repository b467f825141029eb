#include "host/store/part_spool.h"

#include <algorithm>
#include <memory>

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <sys/random.h>

#include "host/store/store_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::uint64_t kCipherBlock = 16;
// One step of the cipher, well below what its lengths can say.
constexpr std::size_t kCipherStep = std::size_t{1} << 20;

[[noreturn]] void fail(const std::string& sentence) {
  throw StoreError(StoreError::Kind::kNotWritten, sentence);
}

}  // namespace

PartSpool::PartSpool(std::uint64_t memoryLimit, std::function<FileDescriptor()> makeFile)
    : memoryLimit_(memoryLimit), makeFile_(std::move(makeFile)) {
  if (uninterrupted([&] { return getrandom(key_, sizeof key_, 0); }) !=
      static_cast<ssize_t>(sizeof key_)) {
    fail(localized("The system gives no random bytes^1", systemReason(errno)));
  }
}

PartSpool::~PartSpool() { OPENSSL_cleanse(key_, sizeof key_); }

PartSpool::Place PartSpool::keep(std::string bytes) {
  Place place;
  place.size = bytes.size();
  {
    const std::lock_guard guard(mutex_);
    if (inMemory_ + bytes.size() <= memoryLimit_) {
      inMemory_ += bytes.size();
      place.bytes = std::move(bytes);
      return place;
    }
    if (!file_.isOpen()) file_ = makeFile_();
    place.isInFile = true;
    place.offset = fileSize_;
    // Each part starts a block of the cipher, so that it can be read by itself.
    fileSize_ += (place.size + kCipherBlock - 1) / kCipherBlock * kCipherBlock;
  }
  writeToFile(place, std::move(bytes));
  return place;
}

void PartSpool::writeToFile(Place& place, std::string bytes) {
  applyKeyStream(place.offset, bytes.data(), bytes.size());
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = uninterrupted([&] {
      return pwrite(file_.number(), bytes.data() + done, bytes.size() - done,
                    static_cast<off_t>(place.offset + done));
    });
    if (count <= 0) {
      fail(localized("The scratch file could not be written^1",
                     systemReason(count == 0 ? EIO : errno)));
    }
    done += static_cast<std::size_t>(count);
  }
}

std::size_t PartSpool::read(const Place& place, std::uint64_t offset, char* target,
                            std::size_t size) const {
  if (offset >= place.size) return 0;
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(size, place.size - offset));
  if (!place.isInFile) {
    std::copy_n(place.bytes.data() + offset, count, target);
    return count;
  }
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = uninterrupted([&] {
      return pread(file_.number(), target + done, count - done,
                   static_cast<off_t>(place.offset + offset + done));
    });
    if (got <= 0) {
      fail(localized("The scratch file could not be read^1", systemReason(got == 0 ? EIO : errno)));
    }
    done += static_cast<std::size_t>(got);
  }
  applyKeyStream(place.offset + offset, target, count);
  return count;
}

/// Encrypts or decrypts, which is the same, the bytes at an offset of the file (AES-256 in counter
/// mode, the counter being the number of the block).
void PartSpool::applyKeyStream(std::uint64_t offset, char* bytes, std::size_t size) const {
  const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(EVP_CIPHER_CTX_new(),
                                                                           EVP_CIPHER_CTX_free);
  unsigned char counter[kCipherBlock] = {};
  for (std::size_t i = 0; i < 8; ++i) {
    counter[kCipherBlock - 1 - i] = static_cast<unsigned char>((offset / kCipherBlock) >> (8 * i));
  }
  unsigned char skipped[kCipherBlock] = {};
  int length = 0;
  const auto skip = static_cast<int>(offset % kCipherBlock);
  bool good = context != nullptr &&
              EVP_EncryptInit_ex(context.get(), EVP_aes_256_ctr(), nullptr, key_, counter) == 1 &&
              EVP_EncryptUpdate(context.get(), skipped, &length, skipped, skip) == 1;
  auto* position = reinterpret_cast<unsigned char*>(bytes);
  while (good && size > 0) {
    const std::size_t step = std::min(size, kCipherStep);
    good =
        EVP_EncryptUpdate(context.get(), position, &length, position, static_cast<int>(step)) == 1;
    position += step;
    size -= step;
  }
  if (!good) fail(localized("The scratch file could not be encrypted."));
}

}  // namespace vornwout
