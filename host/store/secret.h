// A password in memory: one copy on the heap, wiped when it ends.
#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include <openssl/crypto.h>

namespace vornwout {

class Secret {
 public:
  Secret() : Secret(std::string_view()) {}
  explicit Secret(std::string_view text)
      : size_(text.size()), bytes_(std::make_unique<char[]>(text.size() + 1)) {
    text.copy(bytes_.get(), text.size());
  }
  Secret(Secret&& other) noexcept
      : size_(std::exchange(other.size_, 0)), bytes_(std::move(other.bytes_)) {}
  Secret& operator=(Secret&& other) noexcept {
    if (this != &other) {
      wipe();
      size_ = std::exchange(other.size_, 0);
      bytes_ = std::move(other.bytes_);
    }
    return *this;
  }
  ~Secret() { wipe(); }

  bool empty() const { return size_ == 0; }
  std::string_view view() const { return {bytes_ ? bytes_.get() : "", size_}; }
  /// Ends with a zero byte.
  const char* zeroTerminated() const { return bytes_ ? bytes_.get() : ""; }

  friend bool operator==(const Secret& left, const Secret& right) {
    return left.size_ == right.size_ &&
           CRYPTO_memcmp(left.zeroTerminated(), right.zeroTerminated(), left.size_) == 0;
  }

 private:
  void wipe() {
    if (bytes_) OPENSSL_cleanse(bytes_.get(), size_);
  }

  std::size_t size_ = 0;
  std::unique_ptr<char[]> bytes_;
};

}  // namespace vornwout
