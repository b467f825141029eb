#include "host/store/password_form.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include "host/store/store_error.h"
#include "platform/strings/localized.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr int kRounds = 10;
constexpr std::string_view kPurpose = "vornwout password form 1";
constexpr std::string_view kDigits = "0123456789ABCDEF";

/// Nibbles of a password, one to a byte; wiped when they end.
class Nibbles {
 public:
  explicit Nibbles(std::size_t size) : nibbles_(size) {}
  ~Nibbles() { OPENSSL_cleanse(nibbles_.data(), nibbles_.size()); }
  Nibbles(const Nibbles&) = delete;
  Nibbles& operator=(const Nibbles&) = delete;

  unsigned char& operator[](std::size_t i) { return nibbles_[i]; }
  unsigned char* data() { return nibbles_.data(); }
  std::size_t size() const { return nibbles_.size(); }

 private:
  std::vector<unsigned char> nibbles_;
};

void appendNumber(std::vector<unsigned char>& bytes, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<unsigned char>(number >> shift));
  }
}

/// Adds the round function of the half at `source` to the half at `target`, nibble by nibble.
void mix(const PasswordKey& key, int round, const unsigned char* source, unsigned char* target,
         std::size_t half) {
  std::vector<unsigned char> message(kPurpose.begin(), kPurpose.end());
  message.reserve(kPurpose.size() + 12 + half);
  appendNumber(message, static_cast<std::uint32_t>(round));
  appendNumber(message, static_cast<std::uint32_t>(half));
  const std::size_t counterAt = message.size();
  appendNumber(message, 0);
  message.insert(message.end(), source, source + half);
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int digestSize = 0;
  std::uint32_t block = 0;
  for (std::size_t done = 0; done < half; done += 2 * digestSize, ++block) {
    for (int i = 0; i < 4; ++i) {
      message[counterAt + static_cast<std::size_t>(i)] =
          static_cast<unsigned char>(block >> (24 - 8 * i));
    }
    if (HMAC(EVP_sha256(), key.bytes().data(), PasswordKey::kSize, message.data(), message.size(),
             digest, &digestSize) == nullptr) {
      OPENSSL_cleanse(message.data(), message.size());
      throw StoreError(StoreError::Kind::kWrongPassword,
                       localized("The password could not be encrypted."));
    }
    for (std::size_t i = done; i < half && i - done < 2 * digestSize; ++i) {
      const unsigned char byte = digest[(i - done) / 2];
      target[i] ^= (i - done) % 2 == 0 ? byte >> 4 : byte & 0xF;
    }
  }
  OPENSSL_cleanse(message.data(), message.size());
  OPENSSL_cleanse(digest, sizeof digest);
}

/// One round; even rounds change the right half, odd ones the left half.
void runRound(const PasswordKey& key, int round, Nibbles& nibbles) {
  const std::size_t half = nibbles.size() / 2;
  unsigned char* left = nibbles.data();
  unsigned char* right = left + half;
  if (round % 2 == 0) {
    mix(key, round, left, right, half);
  } else {
    mix(key, round, right, left, half);
  }
}

int digitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

}  // namespace

std::string encryptPassword(const PasswordKey& key, std::string_view plain) {
  Nibbles nibbles(2 * plain.size());
  for (std::size_t i = 0; i < plain.size(); ++i) {
    const auto byte = static_cast<unsigned char>(plain[i]);
    nibbles[2 * i] = byte >> 4;
    nibbles[2 * i + 1] = byte & 0xF;
  }
  for (int round = 0; round < kRounds; ++round) runRound(key, round, nibbles);
  std::string form;
  for (std::size_t i = 0; i < nibbles.size(); ++i) form += kDigits[nibbles[i]];
  return form;
}

std::optional<Secret> decryptPassword(const PasswordKey& key, std::string_view form) {
  if (form.empty() || form.size() % 2 != 0) return std::nullopt;
  Nibbles nibbles(form.size());
  for (std::size_t i = 0; i < form.size(); ++i) {
    const int value = digitValue(form[i]);
    if (value < 0) return std::nullopt;
    nibbles[i] = static_cast<unsigned char>(value);
  }
  for (int round = kRounds - 1; round >= 0; --round) runRound(key, round, nibbles);
  std::string plain(form.size() / 2, '\0');
  for (std::size_t i = 0; i < plain.size(); ++i) {
    plain[i] = static_cast<char>(nibbles[2 * i] << 4 | nibbles[2 * i + 1]);
  }
  Secret password(plain);
  OPENSSL_cleanse(plain.data(), plain.size());
  return password;
}

bool isTypeablePassword(std::string_view password) {
  while (!password.empty()) {
    const int length = validUtf8Length(password);
    if (length == 0) return false;
    const char32_t character = utf8CodePoint(password, length);
    if (character < 0x20 || (character >= 0x7F && character < 0xA0)) return false;
    password.remove_prefix(static_cast<std::size_t>(length));
  }
  return true;
}

}  // namespace vornwout
