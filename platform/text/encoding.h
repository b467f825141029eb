// The current multibyte encoding: the one in which jobs, command texts and requests are written.
//
// One encoding is current at a time, UTF-8 unless another was set. Conversion is ICU's; the length
// of a character and its class come from tables built once per encoding, because the tokeniser asks
// for them at every byte.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vornwout {

/// One character set with what the parser and the conversions need to know of it.
class Encoding {
 public:
  /// Finds an encoding by any of its usual names ("UTF-8", "windows-1252", "Shift-JIS", "Big5",
  /// "GB18030", "EUC-KR" and what else ICU converts, as long as it is ASCII in its lower half and
  /// keeps no state). Null when there is none; never throws for a bad name.
  static std::shared_ptr<const Encoding> find(std::string_view name);

  static const std::shared_ptr<const Encoding>& utf8();

  virtual ~Encoding();

  /// The canonical name.
  const std::string& name() const { return name_; }
  bool isUtf8() const { return isUtf8_; }

  /// Length in bytes of the character at `text[0]`, at least 1 and at most `text.size()`. A byte
  /// that starts no valid character is a character of one byte. `text` must not be empty.
  virtual int characterLength(std::string_view text) const = 0;

  /// True when the one-byte character `byte` is a letter.
  bool isLetterByte(unsigned char byte) const { return letters_[byte]; }

  /// Converts to UTF-8; every byte that is not valid becomes U+FFFD.
  virtual std::string toUtf8(std::string_view text) const = 0;
  /// Converts from valid UTF-8; what the encoding cannot hold becomes its substitute. `lossless`,
  /// where given, tells whether nothing was replaced.
  virtual std::string fromUtf8(std::string_view text, bool* lossless = nullptr) const = 0;
  /// Converts to UTF-16; every byte that is not valid becomes U+FFFD.
  virtual std::u16string toUtf16(std::string_view text) const = 0;

 protected:
  Encoding(std::string name, bool isUtf8) : name_(std::move(name)), isUtf8_(isUtf8) {}
  std::array<bool, 256> letters_{};

 private:
  std::string name_;
  bool isUtf8_;
};

/// The current encoding.
const Encoding& currentEncoding();

/// Makes an encoding the current one while it lives; the one before is back afterwards.
class ScopedEncoding {
 public:
  explicit ScopedEncoding(std::shared_ptr<const Encoding> encoding);
  ~ScopedEncoding();
  ScopedEncoding(const ScopedEncoding&) = delete;
  ScopedEncoding& operator=(const ScopedEncoding&) = delete;

 private:
  std::shared_ptr<const Encoding> previous_;
};

/// `text` from the current encoding in UTF-8.
std::string currentToUtf8(std::string_view text);

}  // namespace vornwout
