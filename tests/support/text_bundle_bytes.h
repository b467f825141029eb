// Makes the bytes of string-table bundles, whole ones and forged ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/strings/text_bundle.h"
#include "platform/text/encoding.h"

namespace vornwout {

/// Lays out a bundle as ICU's compiler does: head, root and indexes, names, strings, arrays, root
/// table. What a test wants to forge it sets before bytes() or by setWord() afterwards.
class TextBundleBytes {
 public:
  static constexpr std::size_t kHeadSize = 32;
  static constexpr std::uint32_t kArrayType = 8U << 28U;
  static constexpr std::uint32_t kTableType = 2U << 28U;

  TextBundleBytes() : body_(kNamesAt, 0) {
    for (const char c : std::string_view("Keys\0Texts\0Helps\0\xAA\xAA\xAA", 20)) names_ += c;
    body_.resize(kNamesAt + names_.size() / sizeof(std::uint32_t));
    std::memcpy(&body_[kNamesAt], names_.data(), names_.size());
  }
  explicit TextBundleBytes(const std::vector<keyValueGloss>& entries) : TextBundleBytes() {
    std::vector<std::uint32_t> keys;
    std::vector<std::uint32_t> texts;
    std::vector<std::uint32_t> helps;
    for (const keyValueGloss& entry : entries) {
      keys.push_back(addText(entry.key));
      texts.push_back(addText(entry.value));
      helps.push_back(addText(entry.gloss));
    }
    addTable({addArray(keys), addArray(texts), addArray(helps)});
  }

  /// Each returns the resource; the strings of an array are resources.
  std::uint32_t addUnits(std::u16string text) {
    const std::uint32_t at = end();
    body_.push_back(static_cast<std::uint32_t>(text.size()));
    text.resize((text.size() + 2) / 2 * 2);  // its end, and up to a whole word
    const std::uint32_t first = end();
    body_.resize(body_.size() + text.size() / 2);
    std::memcpy(&body_[first], text.data(), text.size() * sizeof(char16_t));
    return at;
  }
  std::uint32_t addText(const std::string& text) {
    if (text.empty()) return 0;
    return addUnits(Encoding::utf8()->toUtf16(text));
  }
  std::uint32_t addArray(const std::vector<std::uint32_t>& elements) {
    if (elements.empty()) return kArrayType;
    const std::uint32_t at = end();
    body_.push_back(static_cast<std::uint32_t>(elements.size()));
    body_.insert(body_.end(), elements.begin(), elements.end());
    return kArrayType | at;
  }
  /// The root table, of Keys, Texts and Helps in that order.
  void addTable(const std::vector<std::uint32_t>& arrays) {
    // In the order of the names, as ICU looks for them: Helps, Keys, Texts.
    const std::uint32_t at = end();
    constexpr std::uint32_t kNames = kNamesAt * sizeof(std::uint32_t);
    body_.push_back(3U | (kNames + 11) << 16U);
    body_.push_back(kNames | (kNames + 5) << 16U);
    for (const std::size_t array : {2, 0, 1}) body_.push_back(arrays.at(array));
    body_[0] = kTableType | at;
    body_[1] = 6;
    body_[2] = kNamesAt + static_cast<std::uint32_t>(names_.size() / sizeof(std::uint32_t));
    body_[3] = body_[4] = end();
    body_[5] = 3;
    body_[6] = 1;
  }

  std::uint32_t word(std::size_t index) const { return body_.at(index); }
  void setWord(std::size_t index, std::uint32_t value) { body_.at(index) = value; }
  void addWord(std::uint32_t value) { body_.push_back(value); }
  std::uint32_t end() const { return static_cast<std::uint32_t>(body_.size()); }

  std::string bytes() const {
    std::string bytes("\x20\x00\xDA\x27\x14\x00\x00\x00\x00\x00\x02\x00ResB\x01\x03\x00\x00", 20);
    bytes.resize(kHeadSize);
    bytes.append(reinterpret_cast<const char*>(body_.data()), body_.size() * sizeof(std::uint32_t));
    return bytes;
  }

 private:
  static constexpr std::uint32_t kNamesAt = 7;

  std::string names_;
  std::vector<std::uint32_t> body_;
};

/// The bytes of a bundle with these entries.
inline std::string textBundleBytes(const std::vector<keyValueGloss>& entries) {
  return TextBundleBytes(entries).bytes();
}

}  // namespace vornwout
