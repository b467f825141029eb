#include "host/store/xml_check.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string>

#include "host/store/store_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

/// More than any element of the format has; it keeps the search for one that stands twice short.
constexpr std::size_t kMostAttributes = 64;

/// What a byte may be, looked up for every byte of every document.
enum ByteClass : std::uint8_t { kBlank = 1, kNameStart = 2, kNamePart = 4 };

constexpr std::array<std::uint8_t, 256> makeClasses() {
  std::array<std::uint8_t, 256> classes{};
  for (std::size_t c = 0; c < 256; ++c) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (isLetter || c == '_' || c == ':' || c >= 0x80) classes[c] = kNameStart | kNamePart;
    if ((c >= '0' && c <= '9') || c == '-' || c == '.') classes[c] = kNamePart;
  }
  classes[' '] = classes['\t'] = classes['\n'] = classes['\r'] = kBlank;
  return classes;
}

constexpr std::array<std::uint8_t, 256> kClasses = makeClasses();

constexpr bool is(char c, ByteClass wanted) {
  return (kClasses[static_cast<unsigned char>(c)] & wanted) != 0;
}
constexpr bool isBlank(char c) { return is(c, kBlank); }

/// Bytes that a text cannot be passed over with: what has a meaning, what is forbidden, and the
/// first byte of the two characters that are.
constexpr std::array<bool, 256> makeStops() {
  std::array<bool, 256> stops{};
  for (std::size_t i = 0; i < 0x20; ++i) stops[i] = true;
  stops['\t'] = stops['\n'] = stops['\r'] = false;
  stops['<'] = stops['&'] = stops['"'] = stops['\''] = stops[']'] = stops[0xEF] = true;
  return stops;
}

constexpr std::array<bool, 256> kStops = makeStops();

bool isXmlCharacter(std::uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code <= 0xD7FF || (code >= 0xE000 && code <= 0xFFFD) ||
         (code >= 0x10000 && code <= 0x10FFFF);
}

class XmlCheck {
 public:
  XmlCheck(std::string_view bytes, std::size_t maxNodes) : bytes_(bytes), maxNodes_(maxNodes) {}

  bool check() {
    if (bytes_.starts_with("\xEF\xBB\xBF")) at_ = 3;
    if (startsWith("<?xml") && at_ + 5 < bytes_.size() && isBlank(bytes_[at_ + 5])) {
      skipPast("?>");
    }
    while (at_ < bytes_.size()) {
      if (bytes_[at_] != '<') {
        checkText();
        continue;
      }
      // Start tags are most of all that there is, and the only ones with a name here.
      switch (at_ + 1 < bytes_.size() ? bytes_[at_ + 1] : '\0') {
        case '!':
          checkDeclaration();
          break;
        case '?':
          checkInstruction();
          break;
        case '/':
          checkEndTag();
          break;
        default:
          checkStartTag();
      }
    }
    return isParted_;
  }

 private:
  bool startsWith(std::string_view text) const {
    return bytes_.compare(at_, text.size(), text) == 0;
  }

  [[noreturn]] void refuse(std::string_view what) const {
    const std::string_view before = bytes_.substr(0, at_);
    throw StoreError(
        StoreError::Kind::kDamaged,
        localized("near line ^1: ^2", 1 + std::count(before.begin(), before.end(), '\n'), what));
  }
  [[noreturn]] void refuseShape() const { refuse(localized("it is no well-formed XML")); }

  void skipPast(std::string_view end) {
    const std::size_t found = bytes_.find(end, at_);
    if (found == std::string_view::npos) refuseShape();
    checkCharacters(bytes_.substr(at_, found - at_));
    at_ = found + end.size();
  }

  void checkCharacters(std::string_view text) const {
    for (std::size_t i = 0; i < text.size(); ++i) checkByte(text, i);
  }

  void checkByte(std::string_view text, std::size_t i) const {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool isControl = byte < 0x20 && !isBlank(text[i]);
    const std::string_view character = text.substr(i, 3);
    if (isControl || character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF") {
      refuse(localized("it has a character that XML cannot hold"));
    }
  }

  void checkDeclaration() {
    if (startsWith("<!--")) return checkComment();
    if (!startsWith("<![CDATA[")) {
      throw StoreError(StoreError::Kind::kDamaged, localized("it has a document type declaration"));
    }
    if (depth_ == 0) refuse(localized("a text stands outside of its root element"));
    checkCdata();
  }

  // These are counted as well: what they part becomes as many texts.
  void checkComment() {
    isParted_ = true;
    countNode();
    at_ += 4;
    const std::size_t dashes = bytes_.find("--", at_);
    if (dashes == std::string_view::npos || bytes_.compare(dashes, 3, "-->") != 0) refuseShape();
    skipPast("-->");
  }

  void checkCdata() {
    isParted_ = true;
    countNode();
    at_ += 9;
    skipPast("]]>");
  }

  void checkInstruction() {
    isParted_ = true;
    countNode();
    at_ += 2;
    const std::string_view name = takeName();
    if (name.size() == 3 && (name[0] | 0x20) == 'x' && (name[1] | 0x20) == 'm' &&
        (name[2] | 0x20) == 'l') {
      refuseShape();
    }
    skipPast("?>");
  }

  std::string_view takeName() {
    const std::size_t start = at_;
    if (at_ >= bytes_.size() || !is(bytes_[at_], kNameStart)) refuseShape();
    while (at_ < bytes_.size() && is(bytes_[at_], kNamePart)) ++at_;
    return bytes_.substr(start, at_ - start);
  }

  /// True when there was any.
  bool skipBlanks() {
    const std::size_t start = at_;
    while (at_ < bytes_.size() && isBlank(bytes_[at_])) ++at_;
    return at_ > start;
  }

  void take(char expected) {
    if (at_ >= bytes_.size() || bytes_[at_] != expected) refuseShape();
    ++at_;
  }

  void countNode() {
    if (++nodes_ > maxNodes_) {
      throw StoreError(StoreError::Kind::kDamaged, localized("it has too many elements"));
    }
  }

  void checkEndTag() {
    at_ += 2;
    takeName();
    skipBlanks();
    take('>');
    if (depth_ == 0) refuseShape();
    --depth_;
  }

  void checkStartTag() {
    if (depth_ == 0 && hasRoot_) refuse(localized("it has a second root element"));
    hasRoot_ = true;
    ++at_;
    takeName();
    countNode();
    std::size_t count = 0;
    for (;;) {
      const bool isApart = skipBlanks();
      if (at_ >= bytes_.size()) refuseShape();
      if (bytes_[at_] == '>') {
        ++at_;
        ++depth_;
        return;
      }
      if (bytes_[at_] == '/') {
        ++at_;
        take('>');
        return;
      }
      if (!isApart || count == kMostAttributes) refuseShape();
      const std::string_view name = takeName();
      const auto end = names_.begin() + static_cast<std::ptrdiff_t>(count);
      if (std::find(names_.begin(), end, name) != end)
        refuse(localized("an attribute stands twice"));
      names_[count++] = name;
      countNode();
      skipBlanks();
      take('=');
      skipBlanks();
      checkValue();
    }
  }

  void checkValue() {
    if (at_ >= bytes_.size() || (bytes_[at_] != '"' && bytes_[at_] != '\'')) refuseShape();
    const char quote = bytes_[at_++];
    for (;;) {
      skipPlain();
      if (at_ >= bytes_.size()) refuseShape();
      if (bytes_[at_] == quote) {
        ++at_;
        return;
      }
      if (bytes_[at_] == '<') refuse(localized("an attribute has a \"<\""));
      if (bytes_[at_] == '&') {
        checkReference();
      } else {
        checkByte(bytes_, at_++);
      }
    }
  }

  void checkText() {
    while (at_ < bytes_.size() && bytes_[at_] != '<') {
      const std::size_t start = at_;
      skipPlain();
      if (depth_ == 0) {
        const std::string_view passed = bytes_.substr(start, at_ - start);
        const bool isMore = at_ < bytes_.size() && bytes_[at_] != '<';
        if (isMore || !std::all_of(passed.begin(), passed.end(), isBlank)) {
          refuse(localized("a text stands outside of its root element"));
        }
      }
      if (at_ >= bytes_.size() || bytes_[at_] == '<') return;
      if (bytes_[at_] == '&') {
        checkReference();
      } else if (startsWith("]]>")) {
        refuse(localized("a text has a \"]]>\""));
      } else {
        checkByte(bytes_, at_++);
      }
    }
  }

  void skipPlain() {
    while (at_ < bytes_.size() && !kStops[static_cast<unsigned char>(bytes_[at_])]) ++at_;
  }

  void checkReference() {
    const std::string_view rest = bytes_.substr(at_ + 1, 12);
    const std::size_t length = rest.find(';');
    const std::string_view name = rest.substr(0, length);
    if (length == std::string_view::npos || !isReference(name)) {
      refuse(localized("a reference stands for nothing"));
    }
    at_ += length + 2;
  }

  static bool isReference(std::string_view name) {
    if (!name.starts_with('#')) {
      return name == "lt" || name == "gt" || name == "amp" || name == "quot" || name == "apos";
    }
    const bool isHex = name.starts_with("#x");
    const std::string_view digits = name.substr(isHex ? 2 : 1);
    std::uint32_t code = 0;
    const char* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, code, isHex ? 16 : 10);
    return result.ec == std::errc() && result.ptr == end && isXmlCharacter(code);
  }

  std::string_view bytes_;
  std::size_t maxNodes_;
  std::size_t at_ = 0;
  std::size_t depth_ = 0;
  std::size_t nodes_ = 0;
  bool hasRoot_ = false;
  bool isParted_ = false;
  std::array<std::string_view, kMostAttributes> names_;
};

}  // namespace

bool checkXml(std::string_view bytes, std::size_t maxNodes) {
  return XmlCheck(bytes, maxNodes).check();
}

std::size_t xmlNodeCount(std::string_view written) {
  std::size_t count = 0;
  for (std::size_t i = 0; i + 1 < written.size(); ++i) {
    if (written[i] == '<') count += written[i + 1] != '/' ? 1 : 0;
    if (written[i] == '=') count += written[i + 1] == '"' ? 1 : 0;
  }
  return count;
}

}  // namespace vornwout
