// Encodings in two kinds: UTF-8 by itself, and everything else from tables that are read out of an
// ICU converter when the encoding is first asked for.
//
// The tables hold what every single byte and every pair of bytes decodes to, so lengths and
// conversions of characters up to two bytes need no converter. Longer characters (GB18030, EUC-JP,
// EUC-TW) are rare and go to a clone of the converter, which keeps an Encoding usable from any
// thread. Length and conversion come from one lookup; they cannot disagree.
//
// The lower half is ASCII by construction: bytes below 0x80 never reach the converter, because some
// of ICU's tables for PC code pages exchange control characters there.
#include "platform/text/encoding.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/utf16.h>

#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::size_t kMaxNameLength = 60;
constexpr int kMaxCharacterLength = 4;
constexpr char kSubstitute = '?';
constexpr char32_t kReplacementCharacter = 0xFFFD;

bool isAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

std::size_t asSize(int length) { return static_cast<std::size_t>(length); }

void appendUtf16(std::u16string& text, char32_t codePoint) {
  if (codePoint > 0xFFFF) {
    text.push_back(static_cast<char16_t>(U16_LEAD(codePoint)));
    text.push_back(static_cast<char16_t>(U16_TRAIL(codePoint)));
  } else {
    text.push_back(static_cast<char16_t>(codePoint));
  }
}

std::u16string utf8ToUtf16(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const int length = validUtf8Length(text);
    appendUtf16(result, length == 0 ? kReplacementCharacter : utf8CodePoint(text, length));
    text.remove_prefix(asSize(std::max(length, 1)));
  }
  return result;
}

// --- UTF-8 ---

class Utf8Encoding final : public Encoding {
 public:
  Utf8Encoding() : Encoding("UTF-8", true) {
    for (unsigned char byte = 0; byte < 0x80; ++byte) letters_[byte] = u_isalpha(byte) != 0;
  }

  int characterLength(std::string_view text) const override {
    return std::max(validUtf8Length(text), 1);
  }
  std::string toUtf8(std::string_view text) const override { return repairedUtf8(text); }
  std::string fromUtf8(std::string_view text, bool* lossless) const override {
    std::string result = repairedUtf8(text);
    if (lossless != nullptr) *lossless = result == text;
    return result;
  }
  std::u16string toUtf16(std::string_view text) const override { return utf8ToUtf16(text); }
};

// --- Everything else ---

struct ConverterDeleter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterDeleter>;

enum class Probe { kInvalid, kPrefix, kCharacter };

/// What `bytes` are to the converter when nothing follows them; their text goes to `decoded`.
Probe probe(UConverter* converter, std::string_view bytes, std::u16string& decoded) {
  std::array<char16_t, 8> buffer{};
  char16_t* target = buffer.data();
  const char* source = bytes.data();
  UErrorCode status = U_ZERO_ERROR;
  ucnv_resetToUnicode(converter);
  ucnv_toUnicode(converter, &target, buffer.data() + buffer.size(), &source,
                 bytes.data() + bytes.size(), nullptr, 1, &status);
  if (status == U_TRUNCATED_CHAR_FOUND) return Probe::kPrefix;
  if (U_FAILURE(status) != 0 || target == buffer.data()) return Probe::kInvalid;
  decoded.assign(buffer.data(), target);
  return Probe::kCharacter;
}

/// True for the kinds of converter that keep no state from one character to the next.
bool isStateless(UConverterType type) {
  return type == UCNV_SBCS || type == UCNV_MBCS || type == UCNV_LATIN_1 || type == UCNV_US_ASCII;
}

/// True when the lower half is ASCII. Control characters other than tab and line ends may be
/// exchanged among themselves; they are read as ASCII all the same.
bool isAsciiCompatible(UConverter* converter) {
  std::u16string decoded;
  for (int value = 0; value < 0x80; ++value) {
    const char byte = static_cast<char>(value);
    if (probe(converter, {&byte, 1}, decoded) != Probe::kCharacter || decoded.size() != 1) {
      return false;
    }
    const bool mayDiffer =
        value == 0x7F || (value < 0x20 && value != '\t' && value != '\n' && value != '\r');
    const bool isControl = decoded[0] < 0x20 || decoded[0] == 0x7F;
    if (mayDiffer ? !isControl : decoded[0] != value) return false;
  }
  return true;
}

class TableEncoding final : public Encoding {
 public:
  TableEncoding(std::string name, Converter converter)
      : Encoding(std::move(name), false), converter_(std::move(converter)) {
    // Position 0 of both tables says "starts nothing", 1 "start of something longer".
    texts_.assign(2, {});
    readSingles();
  }

  int characterLength(std::string_view text) const override {
    return isAscii(text[0]) ? 1 : lookUp(text).length;
  }

  std::string toUtf8(std::string_view text) const override {
    std::string result;
    result.reserve(text.size() + text.size() / 2);
    decode(
        text, [&](std::string_view ascii) { result.append(ascii); },
        [&](char32_t codePoint) { appendUtf8(result, codePoint); });
    return result;
  }

  std::u16string toUtf16(std::string_view text) const override {
    std::u16string result;
    result.reserve(text.size());
    decode(
        text, [&](std::string_view ascii) { result.append(ascii.begin(), ascii.end()); },
        [&](char32_t codePoint) { appendUtf16(result, codePoint); });
    return result;
  }

  std::string fromUtf8(std::string_view text, bool* lossless) const override {
    std::string result;
    result.reserve(text.size());
    bool whole = true;
    Converter encoder;
    while (!text.empty()) {
      const std::size_t ascii = asciiPrefixLength(text);
      result.append(text.substr(0, ascii));
      text.remove_prefix(ascii);
      const auto next = std::find_if(text.begin(), text.end(), isAscii);
      const auto run = text.substr(0, static_cast<std::size_t>(next - text.begin()));
      if (run.empty()) continue;
      if (encoder == nullptr) encoder = clone();
      if (!encodeRun(encoder.get(), utf8ToUtf16(run), result)) whole = false;
      text.remove_prefix(run.size());
    }
    if (lossless != nullptr) *lossless = whole;
    return result;
  }

 private:
  /// One character as found: its length and its place in `texts_`, or its text where it is a long
  /// one.
  struct Found {
    int length = 1;
    std::size_t place = 0;
    std::u16string longText;
  };

  void readSingles() {
    std::u16string decoded;
    for (unsigned value = 0; value < 0x80; ++value) {
      letters_[value] = u_isalpha(static_cast<UChar32>(value)) != 0;
    }
    for (unsigned value = 0x80; value < 0x100; ++value) {
      const char byte = static_cast<char>(value);
      switch (probe(converter_.get(), {&byte, 1}, decoded)) {
        case Probe::kCharacter:
          singles_[value] = place(decoded);
          letters_[value] = decoded.size() == 1 && u_isalpha(decoded[0]) != 0;
          break;
        case Probe::kPrefix:
          singles_[value] = kPrefixPlace;
          readPairs(value);
          break;
        case Probe::kInvalid:
          break;
      }
    }
  }

  void readPairs(unsigned lead) {
    pairRows_[lead] = pairs_.size();
    pairs_.resize(pairs_.size() + 256, kInvalidPlace);
    std::u16string decoded;
    for (unsigned trail = 0; trail < 0x100; ++trail) {
      const std::array<char, 2> bytes{static_cast<char>(lead), static_cast<char>(trail)};
      const Probe found = probe(converter_.get(), {bytes.data(), bytes.size()}, decoded);
      if (found == Probe::kInvalid) continue;
      pairs_[pairRows_[lead] + trail] = found == Probe::kPrefix ? kPrefixPlace : place(decoded);
    }
  }

  std::uint32_t place(const std::u16string& decoded) {
    std::u32string codePoints;
    for (std::size_t i = 0; i < decoded.size();) {
      char32_t codePoint = 0;
      U16_NEXT(decoded, i, decoded.size(), codePoint);
      codePoints.push_back(codePoint);
    }
    texts_.push_back(std::move(codePoints));
    return static_cast<std::uint32_t>(texts_.size() - 1);
  }

  /// The character at `text[0]`, which is not ASCII.
  Found lookUp(std::string_view text) const {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (singles_[lead] != kPrefixPlace) return {1, singles_[lead], {}};
    if (text.size() < 2) return {};
    const std::uint32_t pair = pairs_[pairRows_[lead] + static_cast<unsigned char>(text[1])];
    if (pair == kInvalidPlace) return {};
    if (pair != kPrefixPlace) return {2, pair, {}};
    return lookUpLong(text);
  }

  Found lookUpLong(std::string_view text) const {
    const Converter decoder = clone();
    Found found;
    const std::size_t most = std::min(text.size(), asSize(kMaxCharacterLength));
    for (std::size_t length = 3; length <= most; ++length) {
      const Probe result = probe(decoder.get(), text.substr(0, length), found.longText);
      if (result == Probe::kCharacter) {
        found.length = static_cast<int>(length);
        return found;
      }
    }
    return {};
  }

  template <typename Ascii, typename Other>
  void decode(std::string_view text, const Ascii& takeAscii, const Other& takeCodePoint) const {
    while (!text.empty()) {
      const std::size_t ascii = asciiPrefixLength(text);
      takeAscii(text.substr(0, ascii));
      text.remove_prefix(ascii);
      if (text.empty()) return;
      const Found found = lookUp(text);
      if (!found.longText.empty()) {
        for (std::size_t i = 0; i < found.longText.size();) {
          char32_t codePoint = 0;
          U16_NEXT(found.longText, i, found.longText.size(), codePoint);
          takeCodePoint(codePoint);
        }
      } else if (found.place == kInvalidPlace) {
        takeCodePoint(kReplacementCharacter);
      } else {
        for (const char32_t codePoint : texts_[found.place]) takeCodePoint(codePoint);
      }
      text.remove_prefix(asSize(found.length));
    }
  }

  /// Appends the bytes of a text without ASCII characters; false when something was replaced.
  bool encodeRun(UConverter* encoder, const std::u16string& run, std::string& result) const {
    if (const std::string bytes = encode(encoder, run); !bytes.empty() && toUtf16(bytes) == run) {
      result.append(bytes);
      return true;
    }
    bool whole = true;
    for (std::size_t i = 0; i < run.size();) {
      const std::size_t start = i;
      U16_FWD_1(run, i, run.size());
      const std::u16string character = run.substr(start, i - start);
      const std::string bytes = encode(encoder, character);
      if (bytes.empty()) {
        result.push_back(kSubstitute);
        whole = false;
      } else {
        result.append(bytes);
        // Some tables hold a look-alike: accepted, but not the text that was given.
        whole = whole && toUtf16(bytes) == character;
      }
    }
    return whole;
  }

  /// The bytes of a text, empty when the encoding cannot hold one of its characters. The converter
  /// has its fallbacks off, so nothing turns into an ASCII character: a yen sign that became a
  /// backslash could split a path or end a string.
  static std::string encode(UConverter* encoder, const std::u16string& text) {
    std::string bytes(text.size() * kMaxCharacterLength, '\0');
    UErrorCode status = U_ZERO_ERROR;
    ucnv_resetFromUnicode(encoder);
    const std::int32_t length =
        ucnv_fromUChars(encoder, bytes.data(), static_cast<std::int32_t>(bytes.size()), text.data(),
                        static_cast<std::int32_t>(text.size()), &status);
    if (U_FAILURE(status) != 0) return {};
    bytes.resize(asSize(length));
    return bytes;
  }

  Converter clone() const {
    UErrorCode status = U_ZERO_ERROR;
    Converter copy(ucnv_clone(converter_.get(), &status));
    if (U_FAILURE(status) != 0 || copy == nullptr) throw std::bad_alloc();
    return copy;
  }

  static constexpr std::uint32_t kInvalidPlace = 0;
  static constexpr std::uint32_t kPrefixPlace = 1;

  Converter converter_;
  std::array<std::uint32_t, 256> singles_{};
  std::array<std::size_t, 256> pairRows_{};
  std::vector<std::uint32_t> pairs_;
  std::vector<std::u32string> texts_;
};

/// Names that ICU does not know, or knows as a table whose lower half is not ASCII.
std::string converterName(const std::string& name) {
  static const std::map<std::string, std::string> kAliases = {{"cp949", "windows-949-2000"},
                                                              {"uhc", "windows-949-2000"},
                                                              {"euckr", "EUC-KR"},
                                                              {"cp950", "windows-950-2000"},
                                                              {"ms950", "windows-950-2000"}};
  std::string key;
  for (const char c : name) {
    if (c >= 'A' && c <= 'Z') {
      key.push_back(static_cast<char>(c - 'A' + 'a'));
    } else if (c != '-' && c != '_') {
      key.push_back(c);
    }
  }
  const auto alias = kAliases.find(key);
  return alias == kAliases.end() ? name : alias->second;
}

/// The name that other programs know best: the one of mail and web, else the registered one.
std::string canonicalName(const char* icuName) {
  for (const char* standard : {"MIME", "IANA"}) {
    UErrorCode status = U_ZERO_ERROR;
    const char* name = ucnv_getStandardName(icuName, standard, &status);
    if (U_SUCCESS(status) != 0 && name != nullptr) return name;
  }
  return icuName;
}

/// A name that is safe to hand to ICU, for which a comma starts options and a slash a path.
bool isPlainName(std::string_view name) {
  const auto allowed = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || c == '.' || c == ':' || c == '+';
  };
  return !name.empty() && name.size() <= kMaxNameLength &&
         std::all_of(name.begin(), name.end(), allowed);
}

std::shared_ptr<const Encoding>& current() {
  static std::shared_ptr<const Encoding> encoding = Encoding::utf8();
  return encoding;
}

}  // namespace

Encoding::~Encoding() = default;

const std::shared_ptr<const Encoding>& Encoding::utf8() {
  static const std::shared_ptr<const Encoding> kUtf8 = std::make_shared<Utf8Encoding>();
  return kUtf8;
}

std::shared_ptr<const Encoding> Encoding::find(std::string_view name) {
  if (!isPlainName(name)) return nullptr;
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(converterName(std::string(name)).c_str(), &status));
  if (U_FAILURE(status) != 0 || converter == nullptr) return nullptr;
  const UConverterType type = ucnv_getType(converter.get());
  if (type == UCNV_UTF8) return utf8();
  if (!isStateless(type)) return nullptr;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  const char* icuName = ucnv_getName(converter.get(), &status);
  if (U_FAILURE(status) != 0 || !isAsciiCompatible(converter.get())) return nullptr;

  // Reading a table takes milliseconds, so each is read once per process.
  static std::mutex mutex;
  static std::map<std::string, std::shared_ptr<const Encoding>, std::less<>> known;
  const std::lock_guard lock(mutex);
  std::shared_ptr<const Encoding>& encoding = known[icuName];
  if (encoding == nullptr) {
    encoding = std::make_shared<TableEncoding>(canonicalName(icuName), std::move(converter));
  }
  return encoding;
}

const Encoding& currentEncoding() { return *current(); }

ScopedEncoding::ScopedEncoding(std::shared_ptr<const Encoding> encoding) {
  if (encoding == nullptr) throw std::invalid_argument("no encoding to make the current one");
  previous_ = std::exchange(current(), std::move(encoding));
}

ScopedEncoding::~ScopedEncoding() { current() = std::move(previous_); }

std::string currentToUtf8(std::string_view text) { return currentEncoding().toUtf8(text); }

}  // namespace vornwout
