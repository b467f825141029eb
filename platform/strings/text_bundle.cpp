#include "platform/strings/text_bundle.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include <unicode/ustring.h>

namespace vornwout {
namespace {

// The head of every data file of ICU: its size, two magic bytes, and what the data is.
constexpr std::size_t kHeadSize = 24;
constexpr std::size_t kMagicAt = 2;
constexpr std::size_t kInfoAt = 4;
constexpr std::size_t kInfoSize = 20;
constexpr std::size_t kByteOrderAt = 8;
constexpr std::size_t kFormatAt = 12;
constexpr std::string_view kMagic = "\xDA\x27";
/// Characters are ASCII's, and a unit of text has two bytes.
constexpr std::string_view kCharacters = std::string_view("\x00\x02", 2);
/// A resource bundle of format version 1.
constexpr std::string_view kFormat = "ResB\x01";

// Words of the body: the root, then the indexes, the first of which says how many there are.
constexpr std::size_t kWordSize = 4;
constexpr std::size_t kIndexCountAt = 1;
constexpr std::size_t kBundleTopAt = 4;

/// An entry takes an element of each array, and a key with its length, one unit and the end.
constexpr std::size_t kSmallestEntry = 3 * kWordSize + kWordSize + 2 * sizeof(char16_t);

enum class ResourceType : std::uint32_t { kString = 0, kTable = 2, kArray = 8 };

/// A resource: its type in four bits, and where it stands, in words.
struct Resource {
  ResourceType type;
  std::size_t at;

  explicit Resource(std::uint32_t word)
      : type(static_cast<ResourceType>(word >> 28U)), at(word & 0x0FFFFFFFU) {}
};

/// Walks the body of a bundle; every access is checked. What is wrong ends the walk: the result of
/// each step says whether it could be made.
class BundleWalk {
 public:
  explicit BundleWalk(std::string_view body) : body_(body) {}

  bool read(std::vector<keyValueGloss>& entries) {
    const std::size_t words = body_.size() / kWordSize;
    if (body_.size() % kWordSize != 0 || words <= kBundleTopAt) return false;
    // A bundle knows its size: one that was cut off, or added to, is not whole.
    if ((word(kIndexCountAt) & 0xFFU) < kBundleTopAt || word(kBundleTopAt) != words) return false;
    const Resource root(word(0));
    Array keys;
    Array texts;
    Array helps;
    if (root.type != ResourceType::kTable || !findArray(root, "Keys", keys) ||
        !findArray(root, "Texts", texts) || !findArray(root, "Helps", helps)) {
      return false;
    }
    if (texts.count != keys.count || helps.count != keys.count) return false;
    // No more than can be there: a count costs nothing to write.
    entries.reserve(std::min(keys.count, body_.size() / kSmallestEntry));
    for (std::size_t i = 0; i < keys.count; ++i) {
      keyValueGloss& entry = entries.emplace_back();
      if (!readString(keys, i, entry.key) || entry.key.empty() ||
          !readString(texts, i, entry.value) || !readString(helps, i, entry.gloss)) {
        return false;
      }
    }
    return true;
  }

 private:
  struct Array {
    std::size_t first = 0;  ///< the word of the first element
    std::size_t count = 0;
  };

  bool has(std::size_t at, std::size_t bytes) const {
    return at <= body_.size() && bytes <= body_.size() - at;
  }
  std::uint32_t word(std::size_t index) const {
    std::uint32_t value = 0;
    std::memcpy(&value, body_.data() + index * kWordSize, sizeof value);
    return value;
  }
  std::size_t half(std::size_t at) const {
    std::uint16_t value = 0;
    std::memcpy(&value, body_.data() + at, sizeof value);
    return value;
  }

  /// The array with that name in a table, which is a count, the places of the names, all of two
  /// bytes, filled up to a whole word, and the resources.
  bool findArray(const Resource& table, std::string_view name, Array& array) const {
    const std::size_t begin = table.at * kWordSize;
    if (!has(begin, sizeof(std::uint16_t))) return false;
    const std::size_t count = half(begin);
    const std::size_t names = begin + sizeof(std::uint16_t);
    const std::size_t head = (count + 2) / 2;
    if (!has(begin, (head + count) * kWordSize)) return false;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t at = half(names + i * sizeof(std::uint16_t));
      // With its end, which is a zero byte.
      if (!has(at, name.size() + 1) || body_.substr(at, name.size()) != name ||
          body_[at + name.size()] != '\0') {
        continue;
      }
      const Resource found(word(table.at + head + i));
      return found.type == ResourceType::kArray && readArray(found.at, array);
    }
    return false;
  }

  bool readArray(std::size_t at, Array& array) const {
    // An array without elements has no place.
    if (at == 0) return true;
    if (!has(at * kWordSize, kWordSize)) return false;
    array = {at + 1, word(at)};
    return has(array.first * kWordSize, array.count * kWordSize);
  }

  bool readString(const Array& array, std::size_t index, std::string& text) {
    const Resource resource(word(array.first + index));
    if (resource.type != ResourceType::kString) return false;
    if (resource.at == 0) return true;
    if (!has(resource.at * kWordSize, kWordSize)) return false;
    const std::size_t length = word(resource.at);
    const std::size_t begin = (resource.at + 1) * kWordSize;
    const std::size_t bytes = length * sizeof(char16_t);
    // Every string is stored for itself, so that all of them together are never larger than the
    // bundle; otherwise a small file could ask for any amount of memory.
    if (!has(begin, bytes) || bytes > body_.size() - textSize_) return false;
    textSize_ += bytes;
    return convert(body_.data() + begin, length, text);
  }

  bool convert(const char* from, std::size_t length, std::string& text) {
    constexpr std::size_t kLongestUnit = 3;  // in UTF-8
    if (units_.size() < length) {
      units_.resize(length);
      utf8_.resize(length * kLongestUnit);
    }
    std::memcpy(units_.data(), from, length * sizeof(char16_t));
    std::int32_t size = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(utf8_.data(), static_cast<std::int32_t>(utf8_.size()), &size, units_.data(),
                static_cast<std::int32_t>(length), &status);
    if (U_FAILURE(status) != 0) return false;
    text.assign(utf8_.data(), static_cast<std::size_t>(size));
    return true;
  }

  std::string_view body_;
  std::size_t textSize_ = 0;  ///< bytes of the strings read so far
  std::u16string units_;
  std::string utf8_;
};

/// What stands behind the head; empty when that is not the head of a bundle of this form.
std::string_view bodyOf(std::string_view bytes) {
  constexpr char kByteOrder = std::endian::native == std::endian::big ? 1 : 0;
  if (bytes.size() < kHeadSize || bytes.size() > kMaxBundleSize) return {};
  std::uint16_t headSize = 0;
  std::memcpy(&headSize, bytes.data(), sizeof headSize);
  std::uint16_t infoSize = 0;
  std::memcpy(&infoSize, bytes.data() + kInfoAt, sizeof infoSize);
  const bool isBundle = headSize >= kHeadSize && headSize <= bytes.size() &&
                        infoSize >= kInfoSize && bytes.substr(kMagicAt, kMagic.size()) == kMagic &&
                        bytes[kByteOrderAt] == kByteOrder &&
                        bytes.substr(kByteOrderAt + 1, kCharacters.size()) == kCharacters &&
                        bytes.substr(kFormatAt, kFormat.size()) == kFormat;
  return isBundle ? bytes.substr(headSize) : std::string_view();
}

}  // namespace

std::optional<std::vector<keyValueGloss>> readTextBundle(std::string_view bytes) {
  std::vector<keyValueGloss> entries;
  if (!BundleWalk(bodyOf(bytes)).read(entries)) return std::nullopt;
  return entries;
}

}  // namespace vornwout
