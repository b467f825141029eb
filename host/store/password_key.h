// The user's key for encrypted passwords, and the file that it lies in.
//
// Entry points: PasswordKey::loadOrCreate(defaultPasswordKeyPath()).
//
// A new key is written to a file of its own, flushed, and then linked to its name, which fails if
// the name is taken: whoever comes second reads the key of whoever came first, and nobody ever sees
// half a key.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include <openssl/crypto.h>

namespace vornwout {

/// The user's secret key; wiped when it ends.
class PasswordKey {
 public:
  static constexpr std::size_t kSize = 32;
  using Bytes = std::array<unsigned char, kSize>;

  explicit PasswordKey(const Bytes& bytes) : bytes_(bytes) {}
  PasswordKey(const PasswordKey&) = default;
  PasswordKey& operator=(const PasswordKey&) = default;
  ~PasswordKey() { OPENSSL_cleanse(bytes_.data(), bytes_.size()); }

  /// Reads the key file, or makes one with random bytes if there is none; processes that do so at
  /// once get the same key. Throws StoreError when the file is another user's, when others may
  /// read it, or when it is no key.
  static PasswordKey loadOrCreate(const std::string& path);

  const Bytes& bytes() const { return bytes_; }

 private:
  Bytes bytes_;
};

/// Where a user's key lies: "vornwout/password-key" in $XDG_CONFIG_HOME, otherwise in
/// $HOME/.config. Throws StoreError when neither says where.
std::string defaultPasswordKeyPath();

}  // namespace vornwout
