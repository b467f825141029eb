#include "libvornwout/modify/modify_indexing.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "libvornwout/modify/modify_values.h"
#include "libvornwout/modify/xml/xml_element.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kIndexing = "INDEXING";
constexpr const char* kIndexType = "INDEXTYPE";
constexpr const char* kIndexStart = "INDEXSTART";

enum class Style { kNumber, kLetters, kRoman };

struct IndexType {
  int number;
  const char* keyword;
  /// The two capital forms differ in case, deliberately: a host reads these names.
  const char* written;
  Style style;
  std::string_view alphabet;
};

constexpr std::array kIndexTypes = {
    IndexType{1, "NUMBER", "number", Style::kNumber, ""},
    IndexType{2, "LETTERLOW", "letter", Style::kLetters, "abcdefghijklmnopqrstuvwxyz"},
    IndexType{3, "LETTERCAP", "letterCAP", Style::kLetters, "ABCDEFGHIJKLMNOPQRSTUVWXYZ"},
    IndexType{4, "ROMANLOW", "roman", Style::kRoman, "ivxlcdm"},
    IndexType{5, "ROMANCAP", "romanCap", Style::kRoman, "IVXLCDM"},
};

const IndexType& typeOf(int number) { return kIndexTypes[static_cast<std::size_t>(number) - 1]; }

/// The number that letters stand for; nothing when it does not fit 32 bits.
std::optional<int> letterNumber(const std::string& letters, char base) {
  constexpr long kLetterCount = 26;
  long number = 0;
  for (const char letter : letters) {
    number = number * kLetterCount + (letter - base + 1);
    if (number > std::numeric_limits<int>::max()) return std::nullopt;
  }
  return static_cast<int>(number);
}

struct RomanPair {
  std::string_view letters;
  int value;
  /// The letter of which at most one more may follow; 0 when the usual rule holds.
  char restricted;
};

constexpr std::array kRomanPairs = {
    RomanPair{"CM", 900, 'M'}, RomanPair{"CD", 400, 'C'}, RomanPair{"XC", 90, 0},
    RomanPair{"XL", 40, 0},    RomanPair{"IX", 9, 0},     RomanPair{"IV", 4, 0},
};

struct RomanLetter {
  char letter;
  int value;  ///< what it adds
  int rank;   ///< what it is worth to the rule of subtractive pairs
};

constexpr std::array kRomanLetters = {
    RomanLetter{'M', 1000, 1000}, RomanLetter{'D', 500, 500}, RomanLetter{'C', 100, 100},
    RomanLetter{'L', 500, 50},    RomanLetter{'X', 10, 10},   RomanLetter{'V', 5, 5},
    RomanLetter{'I', 1, 1},
};

std::size_t indexOf(char letter) {
  std::size_t i = 0;
  while (kRomanLetters[i].letter != letter) ++i;
  return i;
}

constexpr int kMostRepetitions = 4;
/// So that one more may follow.
constexpr int kRestrictedCount = kMostRepetitions - 1;

/// The number of a numeral in capitals that holds roman letters only; nothing when it is none.
std::optional<int> romanNumber(std::string_view numeral) {
  std::array<int, kRomanLetters.size()> counts{};
  int rankLimit = std::numeric_limits<int>::max();  // all that follows ranks below
  long number = 0;
  while (!numeral.empty()) {
    const std::size_t first = indexOf(numeral[0]);
    if (kRomanLetters[first].rank >= rankLimit) return std::nullopt;
    const RomanPair* pair = nullptr;
    for (const RomanPair& candidate : kRomanPairs) {
      if (numeral.starts_with(candidate.letters)) pair = &candidate;
    }
    if (pair == nullptr) {
      if (++counts[first] > kMostRepetitions) return std::nullopt;
      number += kRomanLetters[first].value;
      numeral.remove_prefix(1);
      continue;
    }
    if (pair->restricted != 0) {
      int& count = counts[indexOf(pair->restricted)];
      count = std::max(count, kRestrictedCount);  // raised, never lowered
    } else {
      rankLimit = kRomanLetters[first].rank;
    }
    number += pair->value;
    numeral.remove_prefix(2);
  }
  if (number > std::numeric_limits<int>::max()) return std::nullopt;
  return static_cast<int>(number);
}

}  // namespace

ModifyIndexing::ModifyIndexing(GroupComDescriptor& group) {
  SubComDescriptor subcommand(kIndexing, UPSpecTypes::kKeywords, false, false);
  ParamDescriptor type = modifierKeyword(kIndexType, UPSpecTypes::kDeclaredValue);
  for (const IndexType& known : kIndexTypes) type.addStringValue(known.keyword);
  subcommand.addParamDesc(std::move(type));
  subcommand.addParamDesc(modifierKeyword(kIndexStart, UPSpecTypes::kRawTokens));
  group.addSubComDesc(std::move(subcommand), false);
}

bool ModifyIndexing::populateSpecification(const GroupComObj& group,
                                           const ParserMessage& messages) {
  data_.specified = false;
  data_.indexType = 0;
  const SubComObj* subcommand = group.getSubComObj(kIndexing);
  if (subcommand == nullptr) return true;
  data_.specified = true;
  data_.indexType = kIndexTypes.front().number;
  const ParamObj* type = subcommand->getParamObj(kIndexType);
  if (type != nullptr) {
    for (const IndexType& known : kIndexTypes) {
      if (type->isStringValueCase(known.keyword)) data_.indexType = known.number;
    }
  }
  const ParamObj* start = subcommand->getParamObj(kIndexStart);
  return start == nullptr || readStart(type, *start, messages);
}

bool ModifyIndexing::readStart(const ParamObj* typeGiven, const ParamObj& start,
                               const ParserMessage& messages) {
  const IndexType& type = typeOf(data_.indexType);
  if (type.style == Style::kNumber) {
    return start.getIntegerValue(data_.indexStart, kIndexing, messages);
  }
  std::string text;
  bool quoted = false;
  // An empty text in quotes was given, and stands for 0.
  const bool isText = start.getStringOrLiteral(text, quoted);
  const bool matches = isText && text.find_first_not_of(type.alphabet) == std::string::npos;
  std::optional<int> number;
  if (matches && type.style == Style::kLetters) number = letterNumber(text, type.alphabet.front());
  if (matches && type.style == Style::kRoman) {
    number = romanNumber(toUpperCase(text));
    if (!number) {
      messages.GenericError("Parameter ^1 of subcommand ^2 is not a valid roman numeral",
                            kIndexStart, kIndexing);
      return false;
    }
  }
  if (!number) {
    // Letters that count beyond any index do not match their type either.
    const std::string given = typeGiven == nullptr ? std::string() : typeGiven->getStringToken();
    messages.GenericError("Index start value (^1) does not match the index type (^2)",
                          isText ? MessageArgument(text) : start.writtenText(), given);
    return false;
  }
  data_.indexStart = *number;
  return true;
}

void ModifyIndexing::write(xmlModifyEvent& event) const {
  event.addConditionObject();
  populateIndexing(event.document());
}

void ModifyIndexing::populateIndexing(std::string& document) const {
  XmlElement element(document, "indexObject");
  element.attribute("type", typeOf(data_.indexType).written);
  element.attribute("indexStart", data_.indexStart);
  element.end();
}

}  // namespace vornwout
