#include "host/changes/request_xml.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "host/changes/change_notes.h"
#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "platform/text/encoding.h"
#include "platform/text/shortened_text.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

/// The text with a sign for each control character, none of which a message could show: it would
/// end at a NUL.
std::string withVisibleControls(std::string_view utf8) {
  constexpr char32_t kControlPictures = 0x2400;
  constexpr char32_t kDeletePicture = 0x2421;
  std::string shown;
  while (!utf8.empty()) {
    const int length = std::max(1, validUtf8Length(utf8));
    const char32_t code = utf8CodePoint(utf8, length);
    if (code < 0x20) {
      appendUtf8(shown, kControlPictures + code);
    } else if (code == 0x7F) {
      appendUtf8(shown, kDeletePicture);
    } else if (code >= 0x80 && code < 0xA0) {
      appendUtf8(shown, U'\uFFFD');
    } else {
      shown += utf8.substr(0, static_cast<std::size_t>(length));
    }
    utf8.remove_prefix(static_cast<std::size_t>(length));
  }
  return shown;
}

/// Some of the document around a place, for an error.
std::string excerptAt(std::string_view xml, std::size_t offset) {
  constexpr std::size_t kReach = 6;
  const auto isInside = [&](std::size_t at) {
    return at < xml.size() && (static_cast<unsigned char>(xml[at]) & 0xC0) == 0x80;
  };
  std::size_t begin = offset > kReach ? offset - kReach : 0;
  while (isInside(begin) && begin < offset) ++begin;
  std::size_t end = std::min(offset + kReach, xml.size());
  while (isInside(end) && end > offset) --end;
  return shownBytes(xml.substr(begin, end - begin));
}

/// What holds the content of a file.
struct EmbeddedFile {
  std::string name;          ///< "in the table look"
  std::size_t begin = 0;     ///< of its content
  std::string_view content;  ///< up to its end, or that of all
};

/// The files that a document embeds, up to a place in it. Found by their tags alone, as the
/// document is not well-formed.
std::vector<EmbeddedFile> embeddedFiles(std::string_view xml, std::size_t last) {
  constexpr std::string_view kTemplate = "chartTemplate";
  std::vector<EmbeddedFile> files;
  std::size_t templates = 0;
  for (std::size_t at = 0; (at = xml.find('<', at)) < last; ++at) {
    const std::string_view rest = xml.substr(at + 1);
    if (rest.starts_with("modifyGraph")) templates = 0;
    for (const std::string_view element : {std::string_view("tableLook"), kTemplate}) {
      if (!rest.starts_with(element) || !rest.substr(element.size()).starts_with('>')) continue;
      EmbeddedFile file;
      file.name = element == kTemplate ? chartTemplateName(++templates) : localized(kTableLookName);
      file.begin = at + element.size() + 2;
      const std::size_t end = xml.find(fmt::format("</{}>", element), file.begin);
      file.content = xml.substr(file.begin, std::min(end, xml.size()) - file.begin);
      files.push_back(std::move(file));
      at = std::min(end, last);
    }
  }
  return files;
}

/// Where the text stops being well-formed; nothing for one that is.
std::optional<std::size_t> firstMistake(std::string_view xml, pugi::xml_document& document,
                                        unsigned int options) {
  // Line ends, blanks and "&" in values stay: they are text of the user.
  const pugi::xml_parse_result parsed = document.load_buffer(
      xml.data(), xml.size(), pugi::parse_cdata | options, pugi::encoding_utf8);
  if (parsed) return std::nullopt;
  return std::min(static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, parsed.offset)), xml.size());
}

/// A document that is not well-formed; its first mistake is at `offset`. What is wrong with an
/// embedded file is said of the file, which is what the user knows.
[[noreturn]] void refuseXml(std::string_view xml, std::size_t offset) {
  std::string place = localized("at byte ^1: ", offset);
  for (const EmbeddedFile& file : embeddedFiles(xml, offset)) {
    pugi::xml_document document;
    // A tag without its end, or a quotation mark, makes a mistake of what follows the file.
    const auto mistake = firstMistake(file.content, document, pugi::parse_fragment);
    if (mistake) offset = file.begin + *mistake;
    // For itself a file may pass that the document cannot hold: to the parser a NUL is its end.
    const bool isWithin = offset >= file.begin && offset - file.begin <= file.content.size();
    if (mistake || isWithin) {
      place = inFile(file.name);
      break;
    }
  }
  const std::string excerpt = excerptAt(xml, offset);
  const bool hasQuote = excerpt.find('"') != std::string::npos;
  refuseAt(place,
           hasQuote ? localized("not well-formed near \"{}\": stray quote?")
                    : localized("not well-formed near \"{}\""),
           excerpt);
}

}  // namespace

void parseRequest(std::string_view xml, pugi::xml_document& document) {
  if (const auto mistake = firstMistake(xml, document, 0)) refuseXml(xml, *mistake);
}

void refuseAt(const std::string& place, std::string_view what, std::string_view foreign) {
  constexpr int kLeastShown = 6;
  constexpr std::string_view kHole = "{}";
  std::string text = place + std::string(what);
  const std::size_t hole = text.find(kHole, place.size());
  if (hole != std::string::npos) {
    const int room = kReasonColumns - displayWidth(text) + static_cast<int>(kHole.size());
    text.replace(hole, kHole.size(), textHead(shownBytes(foreign), std::max(kLeastShown, room)));
  }
  throw ChangeError(text);
}

std::string inFile(const std::string& name) { return localized("in ^1, ", name); }

std::string shownBytes(std::string_view bytes) {
  return withVisibleControls(isValidUtf8(bytes) ? std::string(bytes) : currentToUtf8(bytes));
}

}  // namespace vornwout
