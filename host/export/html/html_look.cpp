#include "host/export/html/html_look.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "host/export/html/html_writer.h"
#include "platform/pivot/cell_color.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr double kSmallestFont = 4;
constexpr double kLargestFont = 96;

/// A family's name that can stand between quotes in a style sheet; empty for any other.
std::string usableFont(const std::string& font) {
  const bool isPlain = std::all_of(font.begin(), font.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z') || c == ' ' || c == '-' || c == '_';
  });
  return isPlain ? repairedUtf8(font) : std::string();
}

}  // namespace

std::string fontCss(const std::string& family, double size) {
  std::string css;
  if (const std::string font = usableFont(family); !font.empty()) {
    css += "font-family:'" + font + "';";
  }
  if (size >= kSmallestFont && size <= kLargestFont) {
    css += fmt::format("font-size:{:.6g}pt;", size);
  }
  return css;
}

LookCss lookCss(const TextLook& look) {
  LookCss css;
  std::optional<Rgb> color = parseCellColor(look.textColor);
  const std::optional<Rgb> background = parseCellColor(look.backgroundColor);
  css.needsLight = color && !background;
  if (background && !color) color = readableOn(*background);
  if (color) css.style += "color:" + htmlColor(*color) + ";";
  if (background) css.style += "background:" + htmlColor(*background) + ";";
  if (look.bold) css.style += *look.bold ? "font-weight:bold;" : "font-weight:normal;";
  if (look.italic) css.style += *look.italic ? "font-style:italic;" : "font-style:normal;";
  if (look.underlined) {
    css.style += *look.underlined ? "text-decoration:underline;" : "text-decoration:none;";
  }
  css.style += fontCss(look.font, look.size);
  return css;
}

}  // namespace vornwout
