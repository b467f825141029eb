#include "libvornwout/modify/xml/xml_utilities.h"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files/fetch_file.h"
#include "platform/files/path_factory.h"
#include "platform/strings/dictionary.h"
#include "platform/text/encoding.h"
#include "platform/text/multibyte.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

struct NamedColor {
  const char* keyword;
  int red = -1;  ///< -1 for a name that is declared and deliberately not known
  int green = -1;
  int blue = -1;
};

/// In the order of their declaration. RGB is the word before three components.
constexpr std::array kColors = {
    NamedColor{"BLACK", 0, 0, 0},
    NamedColor{"BLUE", 0, 0, 255},
    NamedColor{"CYAN", 0, 255, 255},
    NamedColor{"DARKGRAY", 64, 64, 64},
    NamedColor{"DARKGREY"},
    NamedColor{"GRAY", 128, 128, 128},
    NamedColor{"GREY"},
    NamedColor{"GREEN", 0, 255, 0},
    NamedColor{"LIGHTGRAY", 192, 192, 192},
    NamedColor{"LIGHTGREY"},
    NamedColor{"MAGENTA", 255, 0, 255},
    NamedColor{"ORANGE", 255, 200, 0},
    NamedColor{"PINK", 255, 175, 175},
    NamedColor{"RED", 255, 0, 0},
    NamedColor{"WHITE", 255, 255, 255},
    NamedColor{"YELLOW", 255, 255, 0},
    NamedColor{"RGB"},
};

bool isComponent(int value) { return value >= 0 && value <= 255; }

std::string lookPath(int pathKind, const std::string& name, const char* extension) {
  return PathFactory::getPathInstance(pathKind).getDirectory() + "/Looks/" + name + extension;
}

constexpr std::array kMonthKeys = {"TFOJanuary",   "TFOFebruary", "TFOMarch",    "TFOApril",
                                   "TFOMay",       "TFOJune",     "TFOJuly",     "TFOAugust",
                                   "TFOSeptember", "TFOOctober",  "TFONovember", "TFODecember"};

std::string twoDigits(int value) { return (value <= 9 ? "0" : "") + std::to_string(value); }

/// The hour of ")ETIME". The zero is put before every hour up to 11, deliberately: ten o'clock is
/// 010.
std::string hourOf24(int hour) { return (hour <= 11 ? "0" : "") + std::to_string(hour); }

void replaceAll(std::string& text, std::string_view token, const std::string& replacement) {
  std::size_t found = text.find(token);
  if (found == std::string::npos) return;
  // Built in one pass: no replacement holds a ")", so none can become part of a token.
  std::string result;
  std::size_t copied = 0;
  for (; found != std::string::npos; found = text.find(token, copied)) {
    result.append(text, copied, found - copied).append(replacement);
    copied = found + token.size();
  }
  text = result.append(text, copied, std::string::npos);
}

/// True for valid UTF-8 without a zero byte, at which the conversion would end.
bool isPlainUtf8(const std::string& text) {
  return isValidUtf8(text) && text.find('\0') == std::string::npos;
}

/// False for a text without any token, which most are: reading the clock for it would cost more
/// than anything else that is done to it.
bool mayHoldDateTime(const std::string& text) { return text.find(')') != std::string::npos; }

}  // namespace

std::vector<const char*> XMLUtilities::colorKeywords() {
  std::vector<const char*> keywords;
  for (const NamedColor& color : kColors) keywords.push_back(color.keyword);
  return keywords;
}

bool XMLUtilities::getRGB(const ParamObj& param, int& red, int& green, int& blue) {
  for (const NamedColor& color : kColors) {
    if (color.red < 0 || !param.isStringValueCase(color.keyword)) continue;
    red = color.red;
    green = color.green;
    blue = color.blue;
    return true;
  }
  std::vector<TokenInfoObj> tokens;
  if (!param.getTokenList(tokens) || tokens.size() != 6) return false;
  if (!AreStringsEqualCase(tokens[0].getUpperString(), "RGB")) return false;
  if (!tokens[1].getString().starts_with('(') || !tokens[5].getString().starts_with(')')) {
    return false;
  }
  // Blue is deliberately not tested for being an integer: its value is whatever the token gives.
  if (!tokens[2].IsInteger() || !tokens[3].IsInteger()) return false;
  red = tokens[2].getInteger();
  green = tokens[3].getInteger();
  blue = tokens[4].getInteger();
  return isComponent(red) && isComponent(green) && isComponent(blue);
}

std::string XMLUtilities::genericToUTF8(const std::string& text) {
  // Nearly every text is what it should become already.
  if (currentEncoding().isUtf8() && isPlainUtf8(text)) return text;
  const char16_t* transcoded = VORNMBTranscodeGeneric(text.c_str());
  if (transcoded == nullptr) return {};
  std::string result;
  VORNMBU16ToU8(std::u16string(transcoded), result);
  return result;
}

std::string XMLUtilities::escapeHTML(const std::string& text) {
  std::string escaped;
  escaped.reserve(text.size());
  const char* const end = text.data() + text.size();
  for (const char* at = text.data(); at < end;) {
    const int length = VORNMBmbclen_A(at);
    if (length != 1) {
      // A trail byte may have the value of a special character. A zero byte has no length.
      const auto copied = static_cast<std::size_t>(length == 0 ? 1 : length);
      escaped.append(at, copied);
      at += copied;
      continue;
    }
    switch (*at) {
      case '"':
        escaped += "&quot;";
        break;
      case '&':
        escaped += "&amp;";
        break;
      case '\'':
        escaped += "&apos;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += *at;
    }
    ++at;
  }
  return escaped;
}

bool XMLUtilities::getFilePath(std::string& name, const char* extension) {
  if (!FetchFile::fetch(name, true, true).empty()) return true;
  if (extension == nullptr) return true;
  for (const int pathKind : {PathFactory::kInstallation, PathFactory::kUserDirectory}) {
    std::string path = lookPath(pathKind, name, extension);
    if (FetchFile::fetch(path, true, true).empty()) continue;
    name = std::move(path);
    return true;
  }
  return false;
}

std::string XMLUtilities::insertDateTime(const std::string& text) {
  if (!mayHoldDateTime(text)) return text;
  const std::time_t now = std::time(nullptr);
  return insertDateTime(text, *std::localtime(&now));
}

std::string XMLUtilities::insertDateTime(const std::string& text, const std::tm& instant) {
  if (!mayHoldDateTime(text)) return text;
  FacSTDictionary dictionary(
      PathFactory::getPathInstance(PathFactory::kInstallation).getStringTableLocation());
  dictionary.SetProcedure("Output Modify");

  const std::string day = std::to_string(instant.tm_mday);
  const std::string month = std::to_string(instant.tm_mon + 1);
  const std::string monthName =
      dictionary.LookUp(kMonthKeys[static_cast<std::size_t>(instant.tm_mon)]);
  const std::string year = std::to_string(instant.tm_year + 1900);
  const std::string clock = ":" + twoDigits(instant.tm_min) + ":" + twoDigits(instant.tm_sec);
  // Noon and midnight both give 0 and no AM or PM is written, deliberately.
  const std::string hourOf12 = std::to_string(instant.tm_hour % 12);

  std::string expanded = text;
  replaceAll(expanded, ")DATE", day + "-" + monthName + "-" + year);
  replaceAll(expanded, ")ADATE", month + "/" + day + "/" + year);
  replaceAll(expanded, ")EDATE", day + "." + month + "." + year);
  replaceAll(expanded, ")SDATE", year + "/" + month + "/" + day);
  replaceAll(expanded, ")TIME", hourOf12 + clock);
  replaceAll(expanded, ")ETIME", hourOf24(instant.tm_hour) + clock);
  return expanded;
}

}  // namespace vornwout
