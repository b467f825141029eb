#include "platform/strings/dictionary.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>

#include "platform/files/fetch_file.h"
#include "platform/files/file_specification.h"
#include "platform/strings/language.h"
#include "platform/strings/text_bundle.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

/// The string table that holds these texts.
constexpr std::string_view kBundle = "output.qbb";

constexpr std::string_view kMonthPrefix = "TFO";
constexpr std::size_t kMonthCount = 12;
using Months = std::array<std::string, kMonthCount>;
/// The keys' month part, which at the same time are the English names.
constexpr std::array<std::string_view, kMonthCount> kEnglishMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

constexpr std::array<std::pair<std::string_view, std::string_view>, 1> kLabels = {
    {{"E60801", "Objects"}}};

using TextMap = std::unordered_map<std::string, std::string>;

std::string monthKey(std::size_t month) {
  return std::string(kMonthPrefix).append(kEnglishMonths[month]);
}

/// The month names of a language as ICU has them, in UTF-8.
Months knownMonths(std::string_view language) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::DateFormatSymbols symbols(icu::Locale::createFromName(std::string(language).c_str()),
                                       status);
  std::int32_t count = 0;
  const icu::UnicodeString* names =
      symbols.getMonths(count, icu::DateFormatSymbols::STANDALONE, icu::DateFormatSymbols::WIDE);
  if (U_FAILURE(status) != 0 || count < static_cast<std::int32_t>(kMonthCount)) {
    throw std::runtime_error("no month names for the language " + std::string(language));
  }
  Months months;
  for (std::size_t i = 0; i < kMonthCount; ++i) names[i].toUTF8String(months[i]);
  return months;
}

/// The texts of a string table in UTF-8; a key without a text is none.
TextMap readTexts(const std::string& path) {
  TextMap texts;
  if (path.empty()) return texts;
  auto entries = readTextBundle(FetchFile::fetch(path, false, true));
  if (!entries) return texts;
  for (keyValueGloss& entry : *entries) {
    if (!entry.value.empty()) texts.try_emplace(std::move(entry.key), std::move(entry.value));
  }
  return texts;
}

void addMissing(TextMap& texts, std::string_view language) {
  for (const auto& [key, text] : kLabels) texts.try_emplace(std::string(key), text);
  std::optional<Months> known;
  for (std::size_t i = 0; i < kMonthCount; ++i) {
    const std::string key = monthKey(i);
    if (texts.contains(key)) continue;
    // Only now: ICU takes long to make them.
    if (!known) known = knownMonths(language);
    texts.emplace(key, (*known)[i]);
  }
}

/// The texts in an encoding. What that cannot hold is replaced by the built-in English text, or
/// left out where there is none.
TextMap inEncoding(const TextMap& texts, const Encoding& encoding) {
  TextMap result;
  for (const auto& [key, text] : texts) {
    bool keyIsWhole = false;
    bool textIsWhole = false;
    std::string encodedKey = encoding.fromUtf8(key, &keyIsWhole);
    std::string encoded = encoding.fromUtf8(text, &textIsWhole);
    if (keyIsWhole && textIsWhole) result.emplace(std::move(encodedKey), std::move(encoded));
  }
  for (const auto& [key, text] : kLabels) result.try_emplace(std::string(key), text);
  bool hasAllMonths = true;
  for (std::size_t i = 0; i < kMonthCount; ++i) {
    hasAllMonths = hasAllMonths && result.contains(monthKey(i));
  }
  // All of them then: a year has one language.
  for (std::size_t i = 0; i < kMonthCount && !hasAllMonths; ++i) {
    result[monthKey(i)] = kEnglishMonths[i];
  }
  return result;
}

/// The last component of a location, which may end with a separator.
std::string_view lastComponent(std::string_view location) {
  const Encoding& encoding = currentEncoding();
  std::string_view last;
  while (!location.empty()) {
    std::size_t end = 0;
    while (end < location.size() && location[end] != '/' && location[end] != '\\') {
      end += static_cast<std::size_t>(encoding.characterLength(location.substr(end)));
    }
    if (end > 0) last = location.substr(0, end);
    location.remove_prefix(std::min(end + 1, location.size()));
  }
  return last;
}

/// The path of the string table at a location.
std::string bundleAt(const std::string& location) {
  return expandPath(std::string(location).append("/").append(kBundle));
}

}  // namespace

struct FacSTDictionary::Texts {
  std::string encoding;
  TextMap byKey;
};

FacSTDictionary::FacSTDictionary(const std::string& stringTableLocation)
    : language_(kOriginalLanguage) {
  const auto language = findLanguage(lastComponent(stringTableLocation));
  if (!language) return;
  language_ = *language;
  path_ = bundleAt(stringTableLocation);
}

const FacSTDictionary::Texts& FacSTDictionary::texts() const {
  const Encoding& encoding = currentEncoding();
  if (texts_ != nullptr && texts_->encoding == encoding.name()) return *texts_;
  static std::mutex mutex;
  static std::map<std::pair<std::string, std::string>, std::shared_ptr<const Texts>> loaded;
  const std::lock_guard lock(mutex);
  std::shared_ptr<const Texts>& made = loaded[{path_, encoding.name()}];
  if (made == nullptr) {
    TextMap texts = readTexts(path_);
    addMissing(texts, language_);
    if (!encoding.isUtf8()) texts = inEncoding(texts, encoding);
    made = std::make_shared<const Texts>(Texts{encoding.name(), std::move(texts)});
  }
  texts_ = made;
  return *texts_;
}

std::string FacSTDictionary::LookUp(const std::string& key) const {
  const TextMap& byKey = texts().byKey;
  const auto found = byKey.find(key);
  return found == byKey.end() ? key : found->second;
}

}  // namespace vornwout
