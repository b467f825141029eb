#include "host/build/utf8_stream.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include <fmt/format.h>

#include "platform/strings/localized.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::size_t kChunk = std::size_t{256} << 10;
/// A line of a multibyte encoding that is longer is no line of a table.
constexpr std::size_t kMaxLine = std::size_t{256} << 20;

bool isForbidden(unsigned char c) { return c < 0x20 && c != '\t' && c != '\n' && c != '\r'; }

/// Offset of the first forbidden control character, or the text's length.
std::size_t findControl(std::string_view text) {
  // Looking for none first, without leaving the loop, is what the compiler makes fast.
  unsigned found = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    found |= static_cast<unsigned>(byte < 0x20) & static_cast<unsigned>(byte != '\t') &
             static_cast<unsigned>(byte != '\n') & static_cast<unsigned>(byte != '\r');
  }
  if (found == 0) return text.size();
  const auto* at = std::find_if(text.begin(), text.end(),
                                [](char c) { return isForbidden(static_cast<unsigned char>(c)); });
  return static_cast<std::size_t>(at - text.begin());
}

/// Bytes at the start of `text` that are valid UTF-8.
std::size_t validPrefix(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    at += asciiPrefixLength(text.substr(at));
    if (at == text.size()) break;
    const int length = validUtf8Length(text.substr(at));
    if (length == 0) break;
    at += static_cast<std::size_t>(length);
  }
  return at;
}

}  // namespace

/// The forms of Unicode that Encoding does not know, since they are no superset of ASCII, and the
/// one whose name says that a byte-order mark comes first, as it may anyway.
std::optional<Utf8Stream::Form> Utf8Stream::unicodeForm(std::string_view encoding) {
  constexpr std::array<std::pair<std::string_view, Form>, 7> kForms = {{
      {"UTF16", Form::kUtf16Little},
      {"UTF16LE", Form::kUtf16Little},
      {"UTF16BE", Form::kUtf16Big},
      {"UTF32", Form::kUtf32Little},
      {"UTF32LE", Form::kUtf32Little},
      {"UTF32BE", Form::kUtf32Big},
      {"UTF8SIG", Form::kUtf8},
  }};
  std::string name;
  for (const char c : encoding) {
    if (c == '-' || c == '_' || c == ' ') continue;
    name += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  for (const auto& [known, form] : kForms) {
    if (name == known) return form;
  }
  return std::nullopt;
}

Utf8Stream::Utf8Stream(ByteSource& source, const std::string& encoding) : source_(source) {
  source_.rewind();
  if (const auto form = unicodeForm(encoding)) {
    form_ = *form;
  } else {
    encoding_ = encoding.empty() ? Encoding::utf8() : Encoding::find(encoding);
    if (encoding_ == nullptr) encoding_ = Encoding::utf8();
    form_ = encoding_->isUtf8() ? Form::kUtf8 : Form::kOther;
  }
}

bool Utf8Stream::isKnown(const std::string& encoding) {
  return encoding.empty() || unicodeForm(encoding) || Encoding::find(encoding) != nullptr;
}

void Utf8Stream::fill() {
  bytes_.erase(0, consumed_);
  consumed_ = 0;
  const std::size_t start = bytes_.size();
  bytes_.resize(start + kChunk);
  std::size_t count = 0;
  while (count < kChunk) {
    const std::size_t read = source_.read(bytes_.data() + start + count, kChunk - count);
    if (read == 0) {
      atEnd_ = true;
      break;
    }
    count += read;
  }
  bytes_.resize(start + count);
}

void Utf8Stream::readMark() {
  started_ = true;
  const std::string_view text = bytes_;
  if (text.starts_with("\xEF\xBB\xBF")) {
    form_ = Form::kUtf8;
    consumed_ = 3;
  } else if (text.starts_with(std::string_view("\xFF\xFE\0\0", 4))) {
    // In UTF-16 it would be the mark and a character that no text has.
    form_ = Form::kUtf32Little;
    consumed_ = 4;
  } else if (text.starts_with(std::string_view("\0\0\xFE\xFF", 4))) {
    form_ = Form::kUtf32Big;
    consumed_ = 4;
  } else if (text.starts_with("\xFF\xFE")) {
    form_ = Form::kUtf16Little;
    consumed_ = 2;
  } else if (text.starts_with("\xFE\xFF")) {
    form_ = Form::kUtf16Big;
    consumed_ = 2;
  }
}

std::size_t Utf8Stream::wholeLength() const {
  const std::size_t length = bytes_.size() - consumed_;
  if (atEnd_) return length;
  const std::string_view text = std::string_view(bytes_).substr(consumed_);
  switch (form_) {
    case Form::kUtf8: {
      // At most three bytes of a character are missing their last.
      for (std::size_t back = 1; back <= std::min<std::size_t>(3, length); ++back) {
        const auto byte = static_cast<unsigned char>(text[length - back]);
        if (byte < 0x80) return length;
        if (byte >= 0xC0) {
          const std::size_t wanted = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
          return back < wanted ? length - back : length;
        }
      }
      return length;
    }
    case Form::kUtf16Little:
    case Form::kUtf16Big: {
      // The first half of a character waits for the second.
      const std::size_t even = length / 2 * 2;
      if (even == 0) return 0;
      const char32_t last = unitAt(even - 2);
      return last >= 0xD800 && last < 0xDC00 ? even - 2 : even;
    }
    case Form::kUtf32Little:
    case Form::kUtf32Big:
      return length / 4 * 4;
    case Form::kOther: {
      // In no encoding that is known here a line end is a part of a longer character.
      const std::size_t last = text.find_last_of("\r\n");
      return last == std::string_view::npos ? 0 : last + 1;
    }
  }
  return length;
}

std::string_view Utf8Stream::next() {
  std::size_t length = 0;
  do {
    if (started_) length = wholeLength();
    if (length == 0 && !atEnd_) {
      if (bytes_.size() - consumed_ > kMaxLine) {
        refuse({}, localized("A line is longer than 256 MiB."));
      }
      fill();
      if (!started_) readMark();
      length = wholeLength();
    }
  } while (length == 0 && !atEnd_);
  if (length == 0) return {};
  std::string_view text;
  if (form_ == Form::kUtf8) {
    text = nextUtf8(length);
  } else {
    converted_.clear();
    if (form_ == Form::kOther) {
      convertOther(length);
    } else if (form_ == Form::kUtf32Little || form_ == Form::kUtf32Big) {
      convertUtf32(length);
    } else {
      convertUtf16(length);
    }
    text = checked(converted_);
  }
  consumed_ += length;
  return text;
}

std::string_view Utf8Stream::nextUtf8(std::size_t length) {
  const std::string_view text = std::string_view(bytes_).substr(consumed_, length);
  const std::size_t valid = validPrefix(text);
  if (valid < length) refuseByte(text.substr(0, valid), static_cast<unsigned char>(text[valid]));
  return checked(text);
}

char32_t Utf8Stream::unitAt(std::size_t at) const {
  const auto first = static_cast<unsigned char>(bytes_[consumed_ + at]);
  const auto second = static_cast<unsigned char>(bytes_[consumed_ + at + 1]);
  return static_cast<char32_t>(form_ == Form::kUtf16Big ? first << 8 | second
                                                        : second << 8 | first);
}

void Utf8Stream::convertUtf16(std::size_t length) {
  for (std::size_t at = 0; at < length; at += 2) {
    if (at + 1 == length)
      refuse(converted_, localized("The file ends within a character of UTF-16."));
    char32_t unit = unitAt(at);
    if (unit >= 0xD800 && unit < 0xE000) {
      const char32_t low = unit < 0xDC00 && at + 3 < length ? unitAt(at + 2) : 0;
      if (low < 0xDC00 || low >= 0xE000) {
        refuse(converted_, localized("Half a character of UTF-16 stands alone."));
      }
      unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
      at += 2;
    }
    appendUtf8(converted_, unit);
  }
}

void Utf8Stream::convertUtf32(std::size_t length) {
  for (std::size_t at = 0; at < length; at += 4) {
    if (at + 4 > length)
      refuse(converted_, localized("The file ends within a character of UTF-32."));
    char32_t character = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const std::size_t byte = form_ == Form::kUtf32Big ? i : 3 - i;
      character = character << 8 | static_cast<unsigned char>(bytes_[consumed_ + at + byte]);
    }
    if (character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) {
      refuse(converted_, fmt::format("The number 0x{:X} is no character in UTF-32.",
                                     static_cast<std::uint32_t>(character)));
    }
    appendUtf8(converted_, character);
  }
}

void Utf8Stream::convertOther(std::size_t length) {
  const std::string_view text = std::string_view(bytes_).substr(consumed_, length);
  converted_ = encoding_->toUtf8(text);
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  if (converted_.find(kReplacement) == std::string::npos) return;
  // A character of its own in some encodings, otherwise the trace of a byte that is none.
  std::string before;
  for (std::size_t at = 0; at < text.size();) {
    const auto characterLength =
        static_cast<std::size_t>(encoding_->characterLength(text.substr(at)));
    const std::string character = encoding_->toUtf8(text.substr(at, characterLength));
    if (characterLength == 1 && character == kReplacement) {
      refuseByte(before, static_cast<unsigned char>(text[at]));
    }
    before += character;
    at += characterLength;
  }
}

std::string_view Utf8Stream::checked(std::string_view text) const {
  const std::size_t control = findControl(text);
  if (control < text.size()) {
    throw InvalidByte{std::string(text.substr(0, control)),
                      fmt::format("The control character 0x{:02X} is no part of a text.",
                                  static_cast<unsigned char>(text[control]))};
  }
  return text;
}

void Utf8Stream::refuse(std::string_view before, const std::string& what) const {
  throw InvalidByte{std::string(checked(before)), what};
}

void Utf8Stream::refuseByte(std::string_view before, unsigned char byte) const {
  refuse(before, fmt::format("The byte 0x{:02X} is no character in {}.", byte,
                             form_ == Form::kUtf8 ? "UTF-8" : encoding_->name()));
}

}  // namespace vornwout
