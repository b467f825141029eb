#include "host/export/text/text_output.h"

#include <stdexcept>
#include <utility>

#include "platform/strings/localized.h"
#include "platform/text/locale_encoding.h"
#include "platform/text/shown_text.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::size_t kPiece = 64 * 1024;
constexpr char16_t kByteOrderMark = 0xFEFF;

void appendUnit(std::string& bytes, char16_t unit) {
  bytes += static_cast<char>(unit & 0xFF);
  bytes += static_cast<char>(unit >> 8);
}

}  // namespace

TextOutput::TextOutput(ReplacedFile& file, ExportTextSpec::ENCODING_TYPE encoding)
    : file_(file),
      isUtf16_(encoding == ExportTextSpec::ENCODING_TYPE::UTF16),
      encoding_(encoding == ExportTextSpec::ENCODING_TYPE::LOCALE ? localeEncoding()
                                                                  : Encoding::utf8()) {
  if (!isUtf16_) return;
  std::string mark;
  appendUnit(mark, kByteOrderMark);
  file_.write(mark);
}

std::string TextOutput::held(std::string shown) const {
  if (encoding_->isUtf8() || asciiPrefixLength(shown) == shown.size()) return shown;
  // What stands for what nobody should see may be a question mark.
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  for (std::size_t at = shown.find(kReplacement); at != std::string::npos;
       at = shown.find(kReplacement, at)) {
    shown.replace(at, kReplacement.size(), "?");
  }
  bool isWhole = true;
  const std::string encoded = encoding_->fromUtf8(shown, &isWhole);
  if (!isWhole) {
    throw std::runtime_error(
        localized("because ^1 cannot hold all of the text; ENCODING=UTF8 can", encoding_->name()));
  }
  // An encoding may read one of its characters back as another; that one is what is seen.
  return encoding_->toUtf8(encoded);
}

std::string TextOutput::shownText(std::string_view utf8) const {
  return held(vornwout::shownText(utf8));
}

std::string TextOutput::shownLine(std::string_view utf8) const {
  return held(vornwout::shownLine(utf8));
}

void TextOutput::append(std::string_view lines) {
  if (lines.empty()) return;
  if (std::exchange(isSeparated_, false) && !isEmpty_) put("\n");
  isEmpty_ = false;
  put(lines);
}

void TextOutput::line(std::string_view text) {
  append(text.empty() ? "\n" : text);
  if (!text.empty()) put("\n");
}

void TextOutput::finish() { flush(); }

void TextOutput::put(std::string_view utf8) {
  waiting_ += utf8;
  if (waiting_.size() >= kPiece) flush();
}

void TextOutput::flush() {
  if (isUtf16_) {
    std::string bytes;
    bytes.reserve(waiting_.size() * 2);
    for (const char16_t unit : encoding_->toUtf16(waiting_)) appendUnit(bytes, unit);
    file_.write(bytes);
  } else if (encoding_->isUtf8()) {
    file_.write(waiting_);
  } else {
    file_.write(encoding_->fromUtf8(waiting_));
  }
  waiting_.clear();
}

}  // namespace vornwout
