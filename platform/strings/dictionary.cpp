#include "platform/strings/dictionary.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>

#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>

#include "platform/strings/language.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

constexpr std::string_view kMonthPrefix = "TFO";
constexpr std::size_t kMonthCount = 12;
using Months = std::array<std::string, kMonthCount>;
/// The keys' month part, which at the same time are the English names.
constexpr std::array<std::string_view, kMonthCount> kEnglishMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

constexpr std::array<std::pair<std::string_view, std::string_view>, 1> kLabels = {
    {{"E60801", "Objects"}}};

/// The month names of a language in an encoding.
Months makeMonths(std::string_view language, const Encoding& encoding) {
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
  for (std::size_t i = 0; i < kMonthCount; ++i) {
    std::string name;
    names[i].toUTF8String(name);
    bool lossless = false;
    months[i] = encoding.fromUtf8(name, &lossless);
    if (!lossless) {
      // All of them then: a year has one language.
      std::copy(kEnglishMonths.begin(), kEnglishMonths.end(), months.begin());
      break;
    }
  }
  return months;
}

const Months& monthsOf(std::string_view language) {
  static std::mutex mutex;
  static std::map<std::pair<std::string_view, std::string>, Months> made;
  const Encoding& encoding = currentEncoding();
  const std::pair key(language, encoding.name());
  const std::lock_guard lock(mutex);
  const auto found = made.find(key);
  if (found != made.end()) return found->second;
  return made.emplace(key, makeMonths(language, encoding)).first->second;
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

}  // namespace

FacSTDictionary::FacSTDictionary(const std::string& stringTableLocation)
    : language_(findLanguage(lastComponent(stringTableLocation)).value_or("en")) {}

std::string FacSTDictionary::LookUp(const std::string& key) const {
  const std::string_view name = key;
  if (name.substr(0, kMonthPrefix.size()) == kMonthPrefix) {
    const auto* const month =
        std::find(kEnglishMonths.begin(), kEnglishMonths.end(), name.substr(kMonthPrefix.size()));
    if (month != kEnglishMonths.end()) {
      return monthsOf(language_)[static_cast<std::size_t>(month - kEnglishMonths.begin())];
    }
  }
  for (const auto& [labelKey, text] : kLabels) {
    if (name == labelKey) return std::string(text);
  }
  return key;
}

}  // namespace vornwout
