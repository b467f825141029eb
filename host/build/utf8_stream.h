// The bytes of a text file as UTF-8, chunk by chunk, whatever encoding they came in.
//
// A byte-order mark says the encoding and is left out; without one it is the one that was asked
// for, UTF-8 unless told otherwise. The chunks together are valid UTF-8 without control characters
// other than tab, line feed and carriage return; what breaks that ends the stream with an
// InvalidByte. Chunks end between characters. Memory is that of a chunk, but for a multibyte
// encoding, whose chunks end at line ends, that of its longest line.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/build/build_files.h"
#include "platform/text/encoding.h"

namespace vornwout {

/// What is no text in the encoding.
struct InvalidByte {
  std::string before;  ///< the characters since the last chunk that are text
  std::string what;    ///< "The byte 0xE4 is no character in UTF-8."
};

class Utf8Stream {
 public:
  /// `encoding` is a name that Encoding::find() knows, or UTF-16 or UTF-32, as they are or with LE
  /// or BE behind them, or UTF-8-SIG, in any case and with or without hyphens; empty for UTF-8. The
  /// source is read from its start.
  Utf8Stream(ByteSource& source, const std::string& encoding);

  /// Whether there is such an encoding.
  static bool isKnown(const std::string& encoding);

  /// The next characters; empty at the end. Throws InvalidByte, BuildError. The view lasts until
  /// the next call.
  std::string_view next();

 private:
  enum class Form { kUtf8, kUtf16Little, kUtf16Big, kUtf32Little, kUtf32Big, kOther };

  static std::optional<Form> unicodeForm(std::string_view encoding);

  void fill();
  void readMark();
  std::size_t wholeLength() const;
  std::string_view nextUtf8(std::size_t length);
  void convertUtf16(std::size_t length);
  void convertUtf32(std::size_t length);
  void convertOther(std::size_t length);
  char32_t unitAt(std::size_t at) const;
  std::string_view checked(std::string_view text) const;
  [[noreturn]] void refuse(std::string_view before, const std::string& what) const;
  [[noreturn]] void refuseByte(std::string_view before, unsigned char byte) const;

  ByteSource& source_;
  Form form_ = Form::kUtf8;
  std::shared_ptr<const Encoding> encoding_;
  std::string bytes_;  ///< read and not given yet, from consumed_ on
  std::size_t consumed_ = 0;
  bool atEnd_ = false;
  bool started_ = false;
  std::string converted_;
};

}  // namespace vornwout
