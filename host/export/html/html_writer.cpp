#include "host/export/html/html_writer.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Control characters, which HTML cannot hold, non-characters, and controls of direction.
bool isForbidden(char32_t codePoint) {
  if (codePoint < 0x20) return codePoint != '\t' && codePoint != '\n';
  if (codePoint >= 0x7F && codePoint < 0xA0) return true;
  // What turns texts round can make one look like another; a mark turns nothing but its place.
  if ((codePoint >= 0x202A && codePoint <= 0x202E) ||
      (codePoint >= 0x2066 && codePoint <= 0x2069)) {
    return true;
  }
  return (codePoint >= 0xFDD0 && codePoint <= 0xFDEF) || (codePoint & 0xFFFEU) == 0xFFFE;
}

/// Whether a byte is a character that may stand in HTML as it is.
bool isPlain(char byte) {
  return byte >= ' ' && byte <= '~' && byte != '&' && byte != '<' && byte != '>' && byte != '"' &&
         byte != '\'';
}

void appendEscaped(std::string& out, std::string_view utf8) {
  while (!utf8.empty()) {
    const auto* const special = std::find_if_not(utf8.begin(), utf8.end(), isPlain);
    const auto plain = static_cast<std::size_t>(special - utf8.begin());
    out += utf8.substr(0, plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) return;
    const int length = validUtf8Length(utf8);
    const std::string_view character =
        utf8.substr(0, length == 0 ? 1 : static_cast<std::size_t>(length));
    utf8.remove_prefix(character.size());
    if (character == "\r") {
      // A line end of whatever kind is one line feed.
      if (!utf8.starts_with('\n')) out += '\n';
    } else if (length == 0 || isForbidden(utf8CodePoint(character, length))) {
      out += kReplacement;
    } else if (character == "&") {
      out += "&amp;";
    } else if (character == "<") {
      out += "&lt;";
    } else if (character == ">") {
      out += "&gt;";
    } else if (character == "\"") {
      out += "&quot;";
    } else if (character == "'") {
      out += "&#39;";
    } else {
      out += character;
    }
  }
}

}  // namespace

std::string escapedHtml(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size());
  appendEscaped(out, utf8);
  return out;
}

bool isSafeLink(std::string_view target) {
  // A browser drops blanks and control characters where it looks for the scheme.
  const bool hasNoBlanks = std::all_of(target.begin(), target.end(), [](char c) {
    return static_cast<unsigned char>(c) > 0x20 && c != 0x7F;
  });
  if (!hasNoBlanks) return false;
  constexpr std::array<std::string_view, 4> kStarts = {"http://", "https://", "mailto:", "#"};
  return std::any_of(kStarts.begin(), kStarts.end(), [&](std::string_view start) {
    return target.size() > start.size() &&
           std::equal(start.begin(), start.end(), target.begin(), [](char wanted, char c) {
             return wanted == (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
           });
  });
}

bool mayTurn(std::string_view utf8) {
  // The first such script begins at U+0590, whose first byte is this one.
  constexpr unsigned char kFirst = 0xD6;
  while (!utf8.empty()) {
    const auto* const found = std::find_if(
        utf8.begin(), utf8.end(), [](char c) { return static_cast<unsigned char>(c) >= kFirst; });
    utf8.remove_prefix(static_cast<std::size_t>(found - utf8.begin()));
    const int length = validUtf8Length(utf8);
    if (length > 0) {
      const char32_t code = utf8CodePoint(utf8, length);
      if ((code >= 0x590 && code <= 0x8FF) || (code >= 0xFB1D && code <= 0xFDFF) ||
          (code >= 0xFE70 && code <= 0xFEFE) || (code >= 0x10800 && code <= 0x10FFF) ||
          (code >= 0x1E800 && code <= 0x1EFFF)) {
        return true;
      }
    }
    if (!utf8.empty()) utf8.remove_prefix(length > 0 ? static_cast<std::size_t>(length) : 1);
  }
  return false;
}

std::string htmlColor(Rgb color) {
  return fmt::format("#{:02x}{:02x}{:02x}", color.red, color.green, color.blue);
}

void HtmlWriter::start(std::string_view name) {
  close();
  out_ += '<';
  out_ += name;
  isOpen_ = true;
}

void HtmlWriter::end(std::string_view name) {
  close();
  out_ += "</";
  out_ += name;
  out_ += '>';
}

void HtmlWriter::attribute(std::string_view name, std::string_view value) {
  if (isPlain_ && (name == "class" || name == "style")) return;
  out_ += ' ';
  out_ += name;
  out_ += "=\"";
  appendEscaped(out_, value);
  out_ += '"';
}

void HtmlWriter::attribute(std::string_view name, std::int64_t value) {
  attribute(name, std::string_view(std::to_string(value)));
}

void HtmlWriter::newLine() {
  constexpr std::size_t kMuch = std::size_t{1} << 16U;
  raw("\n");
  if (!receive_ || out_.size() < kMuch) return;
  receive_(out_);
  out_.clear();
}

void HtmlWriter::lines(std::string_view utf8) {
  if (!isPlain_) return text(utf8);
  for (std::size_t at = utf8.find('\n'); at != std::string_view::npos; at = utf8.find('\n')) {
    text(utf8.substr(0, at));
    raw("<br>");
    utf8.remove_prefix(at + 1);
  }
  text(utf8);
}

void HtmlWriter::text(std::string_view utf8) {
  close();
  appendEscaped(out_, utf8);
}

void HtmlWriter::element(std::string_view name, std::string_view utf8, std::string_view cssClass) {
  start(name);
  optionalAttribute("class", cssClass);
  direction(utf8);
  text(utf8);
  end(name);
}

void HtmlWriter::raw(std::string_view html) {
  close();
  out_ += html;
}

void HtmlWriter::close() {
  if (isOpen_) out_ += '>';
  isOpen_ = false;
}

}  // namespace vornwout
