#include "runner/terminal/content_printer.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>

#include "host/document/media_size.h"
#include "host/layout/table_grid.h"
#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "runner/terminal/color.h"
#include "runner/terminal/table_printer.h"
#include "runner/terminal/terminal_text.h"
#include "runner/terminal/text_printer.h"

namespace vornwout {
namespace {

constexpr std::string_view kBold = "1";
constexpr std::string_view kDim = "2";
constexpr std::string_view kRed = "31";
constexpr int kWidestLabel = 30;
constexpr int kNarrowest = 10;

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kExtensions = {
    {{kSvgMediaType, "svg"},
     {kPngMediaType, "png"},
     {"image/jpeg", "jpg"},
     {"application/xml", "xml"},
     {"application/json", "json"}}};

/// Writes lines behind a lead; those after the first one stand below it.
void printIndented(std::ostream& out, const std::string& lead, std::string_view leadCodes,
                   const std::string& text, std::string_view codes, const TerminalStyle& style) {
  const int indent = displayWidth(lead);
  const int room = style.width > 0 ? std::max(kNarrowest, style.width - indent) : 0;
  bool isFirst = true;
  for (const std::string& line : shownLines(shownText(text), room)) {
    out << (isFirst ? withStyle(lead, leadCodes, style) : repeated(" ", indent))
        << withStyle(line, codes, style) << '\n';
    isFirst = false;
  }
}

std::string kindOf(const MediaContent& media) {
  if (media.mediaType == kSvgMediaType) return "SVG";
  if (media.mediaType == kPngMediaType) return "PNG";
  return shownLine(media.mediaType);
}

std::string sizeText(const MediaSize& size) {
  if (!size.isInPixels)
    return localized("^1 × ^2 points", fmt::format("{:.4g}", size.width),
                     fmt::format("{:.4g}", size.height));
  return localized("^1 × ^2 pixels", fmt::format("{:.0f}", size.width / kPointsPerPixel),
                   fmt::format("{:.0f}", size.height / kPointsPerPixel));
}

/// `text` as one word of a shell's command line.
std::string quoted(const std::string& text) {
  const bool isPlain = !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("/._-+@%=:,").find(c) != std::string_view::npos;
  });
  if (isPlain) return text;
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return result + "'";
}

class ContentPrinter {
 public:
  ContentPrinter(std::ostream& out, const DocumentObject& object, const ObjectPlace& place,
                 const TerminalStyle& style)
      : out_(out), object_(object), place_(place), style_(style) {}

  bool operator()(const std::monostate&) const { return true; }
  bool operator()(const TableContent& table) const;
  bool operator()(const LogContent& log) const;
  bool operator()(const NotesContent& notes) const;
  bool operator()(const MessageContent& message) const;
  bool operator()(const TextContent& text) const;
  bool operator()(const MediaContent& media) const;

 private:
  std::ostream& out_;
  const DocumentObject& object_;
  const ObjectPlace& place_;
  const TerminalStyle& style_;
};

bool ContentPrinter::operator()(const TableContent& table) const {
  std::vector<TableGrid> grids;
  try {
    grids = layoutTable(*table);
  } catch (const std::logic_error& error) {
    printRefusal(out_, localized("This table cannot be shown: ^1.", error.what()), style_);
    return false;
  }
  const char* separator = "";
  for (const TableGrid& grid : grids) {
    out_ << separator;
    printTable(out_, grid, style_);
    separator = "\n";
  }
  return true;
}

bool ContentPrinter::operator()(const LogContent& log) const {
  printIndented(out_, {}, {}, log.text, kDim, style_);
  return true;
}

bool ContentPrinter::operator()(const NotesContent& notes) const {
  int widest = 0;
  for (const NoteEntry& entry : notes.entries) {
    widest = std::max(widest, displayWidth(shownLine(renderText(entry.label))));
  }
  const int limit = style_.width > 0 ? std::min(kWidestLabel, style_.width / 2) : kWidestLabel;
  widest = std::min(widest, limit);
  for (const NoteEntry& entry : notes.entries) {
    const std::string label = cutLine(shownLine(renderText(entry.label)), widest);
    printIndented(out_, label + repeated(" ", widest - displayWidth(label) + 2), kDim,
                  renderText(entry.value), {}, style_);
  }
  return true;
}

bool ContentPrinter::operator()(const MessageContent& message) const {
  std::string name = localized("Error");
  std::string_view codes = "1;31";
  if (message.severity == MessageSeverity::kWarning) {
    name = localized("Warning");
    codes = "1;33";
  } else if (message.severity == MessageSeverity::kInformation) {
    name = localized("Information");
    codes = kBold;
  }
  printIndented(out_, name + ": ", codes, message.text, {}, style_);
  return true;
}

bool ContentPrinter::operator()(const TextContent& text) const {
  printTextContent(out_, text, style_);
  return true;
}

bool ContentPrinter::operator()(const MediaContent& media) const {
  const std::size_t size = media.bytes == nullptr ? 0 : media.bytes->size();
  const bool isChart = object_.type == ObjectType::kChart;
  std::string facts = kindOf(media);
  if (const auto shown = shownSize(media, object_.size)) facts += ", " + sizeText(*shown);
  facts += ", " + localized("^1 bytes", size);
  printIndented(out_, (isChart ? localized("Chart") : localized("Model")) + ": ", kBold,
                object_.label.empty() ? facts : object_.label + " (" + facts + ")", {}, style_);
  const std::string file = (isChart ? "chart." : "model.") + mediaExtension(media.mediaType);
  // A file whose name begins like an option is named in a way that it is none.
  const std::string path = (place_.file.starts_with('-') ? "./" : "") + place_.file;
  // Not wrapped, so that it can be copied.
  const std::string password =
      place_.passwordFile.empty() ? "" : " --password-file " + quoted(place_.passwordFile);
  const std::string command = fmt::format("vornwout show {} --object {}{} --raw > {}", quoted(path),
                                          place_.number, password, file);
  out_ << "  " << withStyle(shownLine(command), kDim, style_) << '\n';
  return true;
}

}  // namespace

bool printContent(std::ostream& out, const DocumentObject& object, const ObjectContent& content,
                  const ObjectPlace& place, const TerminalStyle& style) {
  return std::visit(ContentPrinter(out, object, place, style), content);
}

void printRefusal(std::ostream& out, const std::string& text, const TerminalStyle& style) {
  printIndented(out, {}, {}, text, kRed, style);
}

std::string mediaExtension(const std::string& mediaType) {
  const auto* known = std::find_if(kExtensions.begin(), kExtensions.end(),
                                   [&](const auto& entry) { return entry.first == mediaType; });
  return std::string(known == kExtensions.end() ? "bin" : known->second);
}

}  // namespace vornwout
