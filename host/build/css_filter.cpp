#include "host/build/css_filter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "platform/text/utf8.h"

namespace vornwout {
namespace {

/// What loads or runs in some browser, written without escapes and in lower case.
constexpr std::array<std::string_view, 8> kLoading = {"image-set(", "image(",      "cross-fade(",
                                                      "src(",       "expression(", "-moz-binding",
                                                      "behavior",   "javascript:"};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }

int hexValue(char c) {
  c = lower(c);
  if (c >= '0' && c <= '9') return c - '0';
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// Without comments; nothing when one does not end. Quotes hide no comment from every parser, so a
/// comment in quotes goes too.
std::optional<std::string> withoutComments(std::string_view css) {
  std::string result;
  for (std::size_t at = 0; at < css.size();) {
    if (css.substr(at, 2) == "/*") {
      const std::size_t end = css.find("*/", at + 2);
      if (end == std::string_view::npos) return std::nullopt;
      at = end + 2;
      result += ' ';
    } else {
      result += css[at++];
    }
  }
  return result;
}

std::string withoutEscapes(std::string_view css) {
  std::string result;
  for (std::size_t at = 0; at < css.size();) {
    if (css[at] != '\\' || at + 1 == css.size()) {
      result += css[at++];
      continue;
    }
    ++at;
    std::uint32_t code = 0;
    int digits = 0;
    for (; digits < 6 && at < css.size() && hexValue(css[at]) >= 0; ++digits, ++at) {
      code = code * 16 + static_cast<std::uint32_t>(hexValue(css[at]));
    }
    if (digits == 0) {
      // An escaped line end is nothing.
      if (css[at] != '\n' && css[at] != '\r' && css[at] != '\f') result += css[at];
      ++at;
    } else {
      appendUtf8(result, code);
      if (at < css.size() && isBlank(css[at])) ++at;
    }
  }
  return result;
}

bool loadsSomething(const std::string& css) {
  return std::any_of(kLoading.begin(), kLoading.end(),
                     [&](std::string_view what) { return css.find(what) != std::string::npos; });
}

}  // namespace

std::size_t endOfDeclaration(std::string_view css, std::size_t at) {
  char quote = 0;
  int brackets = 0;
  for (; at < css.size(); ++at) {
    const char c = css[at];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '(') {
      ++brackets;
    } else if (c == ')') {
      --brackets;
    } else if (c == ';' && brackets <= 0) {
      break;
    }
  }
  return at;
}

std::string asciiLowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

std::string foldedAddress(std::string_view address) {
  std::string folded;
  for (const char c : address) {
    if (static_cast<unsigned char>(c) > 0x20 && c != 0x7F) folded += lower(c);
  }
  return folded;
}

bool isInnerAddress(std::string_view address) {
  const std::string folded = foldedAddress(address);
  if (folded.starts_with('#')) return true;
  constexpr std::string_view kPicture = "data:image/";
  if (!folded.starts_with(kPicture)) return false;
  const std::string_view rest = std::string_view(folded).substr(kPicture.size());
  for (const std::string_view type : {"png", "jpeg", "gif", "webp"}) {
    if (rest.starts_with(type) && rest.size() > type.size() &&
        (rest[type.size()] == ';' || rest[type.size()] == ',')) {
      return true;
    }
  }
  return false;
}

std::string filteredCss(std::string_view css) {
  const std::optional<std::string> plain = withoutComments(css);
  if (!plain) return {};
  const std::string lowerPlain = asciiLowered(*plain);
  if (plain->find('\\') != std::string::npos) {
    // Escapes in the text of labels are fine, those that write an address or a rule are not.
    const std::string resolved = asciiLowered(withoutEscapes(*plain));
    if (loadsSomething(resolved) || resolved.find("url") != std::string::npos ||
        resolved.find("@import") != std::string::npos) {
      return {};
    }
  }
  if (loadsSomething(lowerPlain)) return {};
  std::string result;
  for (std::size_t at = 0; at < plain->size();) {
    const std::string_view rest = std::string_view(lowerPlain).substr(at);
    if (rest.starts_with("@import")) {
      at = std::min(endOfDeclaration(lowerPlain, at) + 1, lowerPlain.size());
    } else if (rest.starts_with("url(")) {
      const std::size_t end = lowerPlain.find(')', at);
      if (end == std::string::npos) return {};
      std::string_view address = std::string_view(*plain).substr(at + 4, end - at - 4);
      while (!address.empty() && isBlank(address.front())) address.remove_prefix(1);
      while (!address.empty() && isBlank(address.back())) address.remove_suffix(1);
      const char quote = address.empty() ? 0 : address.front();
      const bool isQuoted = quote == '"' || quote == '\'';
      if (isQuoted) {
        // A bracket within the quotes would end it for us and not for a browser.
        if (address.size() < 2 || address.back() != quote) return {};
        address = address.substr(1, address.size() - 2);
      }
      if (address.find_first_of("\"'(\n\r") != std::string_view::npos) return {};
      if (isInnerAddress(address)) {
        result.append(*plain, at, end + 1 - at);
      } else {
        result += "none";
      }
      at = end + 1;
    } else {
      result += (*plain)[at++];
    }
  }
  // What was taken out may have joined its neighbours into something new.
  const std::string joined = asciiLowered(result);
  if (joined.find("@import") != std::string::npos || loadsSomething(joined)) return {};
  return result;
}

}  // namespace vornwout
