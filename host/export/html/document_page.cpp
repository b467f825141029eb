#include "host/export/html/document_page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <variant>
#include <vector>

#include <fmt/format.h>

#include "host/document/content_view.h"
#include "host/document/media_size.h"
#include "host/export/export_scope.h"
#include "host/export/html/html_style.h"
#include "host/export/html/html_table.h"
#include "host/export/html/html_text.h"
#include "host/export/html/html_writer.h"
#include "host/layout/table_layout.h"
#include "host/store/xml_writer.h"
#include "platform/adapter/progress_listener.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr const char* kPolicy =
    "default-src 'none'; img-src data:; style-src 'unsafe-inline'; base-uri 'none'; "
    "form-action 'none'";

/// What a browser shows without running anything in it.
constexpr std::array<std::string_view, 6> kImageTypes = {kSvgMediaType, kPngMediaType, "image/jpeg",
                                                         "image/gif",   "image/webp",  "image/bmp"};

/// Layers that can be picked by buttons without losing sight of the table.
constexpr std::size_t kMostButtons = 30;

/// A table is read, laid out and written, and all three take long for a large one.
constexpr std::uint64_t kTableSteps = 3;

std::string idOf(const OutlineEntry& entry) { return fmt::format("o{}", entry.number); }

std::int64_t pixelsOf(double points) {
  return std::max<std::int64_t>(1, std::llround(points / kPointsPerPixel));
}

/// Writes one object's content.
class ContentWriter {
 public:
  ContentWriter(HtmlWriter& html, const OutlineEntry& entry, int headingLevel,
                const PageOptions& options)
      : html_(html),
        entry_(entry),
        object_(*entry.object),
        headingLevel_(headingLevel),
        options_(options) {}

  // A content that holds nothing is known by its label alone.
  void operator()(const std::monostate&) const {
    if (!object_.label.empty()) writeLines("p", outlineLabel(object_));
  }
  void operator()(const TableContent& table) const;
  void operator()(const LogContent& log) const;
  void operator()(const NotesContent& notes) const;
  void operator()(const MessageContent& message) const;
  void operator()(const TextContent& text) const;
  void operator()(const MediaContent& media) const;

 private:
  void writeLines(const char* name, const std::string& text) const;
  void writeGrid(GridRows& rows, std::size_t index) const;
  void writePicker(const TableLayout& layout) const;
  void writeLayerList(const TableLayout& layout) const;
  void writeImage(const MediaContent& media, const std::optional<MediaSize>& shown) const;

  HtmlWriter& html_;
  const OutlineEntry& entry_;
  const DocumentObject& object_;
  int headingLevel_;
  const PageOptions& options_;
};

/// What a layer is called where it is picked.
std::string layerName(const TableGrid& grid, std::size_t index) {
  const std::string heading = layerHeading(grid);
  return heading.empty() ? localized("Layer ^1", index + 1) : heading;
}

void ContentWriter::writeGrid(GridRows& rows, std::size_t index) const {
  writeLayerHeading(html_, rows.grid(), headingLevel_);
  writeHtmlTable(
      html_, rows,
      {fmt::format("t{}x{}", entry_.number, index + 1), object_.label, options_.withNotes});
}

/// Buttons of which one is pressed, each before the grid that it shows.
void ContentWriter::writePicker(const TableLayout& layout) const {
  html_.start("div");
  html_.attribute("class", "layers");
  html_.attribute("role", "radiogroup");
  html_.attribute("aria-label", "Layers of " + outlineLabel(object_));
  html_.newLine();
  const std::string name = fmt::format("l{}", entry_.number);
  for (std::size_t i = 0; i < layout.gridCount(); ++i) {
    const ProgressStep step(i, layout.gridCount());
    GridRows rows(layout, i);
    const std::string id = fmt::format("{}x{}", name, i + 1);
    html_.raw("<input type=\"radio\"");
    html_.attribute("name", name);
    html_.attribute("id", id);
    html_.raw(i == layout.chosenGrid() ? " checked>" : ">");
    html_.start("label");
    html_.attribute("for", id);
    const std::string label = layerName(rows.grid(), i);
    html_.direction(label);
    html_.text(label);
    html_.end("label");
    html_.start("div");
    html_.attribute("class", "panel");
    html_.newLine();
    writeGrid(rows, i);
    html_.raw("</div>\n");
  }
  html_.raw("</div>\n");
}

/// So many that buttons would push the table off the screen: a list, each with its grid below it.
void ContentWriter::writeLayerList(const TableLayout& layout) const {
  html_.start("div");
  html_.attribute("class", "layerlist");
  html_.newLine();
  for (std::size_t i = 0; i < layout.gridCount(); ++i) {
    const ProgressStep step(i, layout.gridCount());
    GridRows rows(layout, i);
    html_.raw(i == layout.chosenGrid() ? "<details open>" : "<details>");
    html_.element("summary", layerName(rows.grid(), i));
    html_.newLine();
    writeGrid(rows, i);
    html_.raw("</details>\n");
  }
  html_.raw("</div>\n");
}

void ContentWriter::operator()(const TableContent& table) const {
  std::optional<TableLayout> layout;
  try {
    const ProgressStep step(1, kTableSteps);
    LayoutOptions wanted;
    wanted.layers = options_.layers;
    const bool picks = options_.pickLayers && options_.withStyles;
    if (picks && wanted.layers == ShownLayers::kAsChosen) wanted.layers = ShownLayers::kAll;
    layout.emplace(*table, wanted);
  } catch (const std::logic_error& error) {
    html_.element("p", localized("This table cannot be shown: ^1.", error.what()), "aside");
    const bool isTooLarge = dynamic_cast<const std::length_error*>(&error) != nullptr;
    if (isTooLarge && options_.missing) options_.missing(object_);
    return;
  }
  const ProgressStep writing(2, kTableSteps);
  if (options_.pickLayers && options_.withStyles && layout->gridCount() > kMostButtons) {
    writeLayerList(*layout);
  } else if (options_.pickLayers && options_.withStyles && layout->gridCount() > 1) {
    writePicker(*layout);
  } else {
    for (std::size_t i = 0; i < layout->gridCount(); ++i) {
      const ProgressStep step(i, layout->gridCount());
      GridRows rows(*layout, i);
      writeGrid(rows, i);
    }
  }
}

void ContentWriter::operator()(const LogContent& log) const {
  html_.start("pre");
  html_.element("code", log.text);
  html_.end("pre");
}

void ContentWriter::writeLines(const char* name, const std::string& text) const {
  html_.start(name);
  html_.direction(text);
  html_.lines(text);
  html_.end(name);
}

void ContentWriter::operator()(const NotesContent& notes) const {
  if (notes.entries.empty()) return;
  html_.start("dl");
  html_.attribute("class", "facts");
  html_.newLine();
  for (const NoteEntry& entry : notes.entries) {
    writeLines("dt", renderText(entry.label));
    writeLines("dd", renderText(entry.value));
    html_.newLine();
  }
  html_.end("dl");
}

void ContentWriter::operator()(const MessageContent& message) const {
  std::string name = localized("Error");
  const char* cssClass = "message error";
  if (message.severity == MessageSeverity::kWarning) {
    name = localized("Warning");
    cssClass = "message warning";
  } else if (message.severity == MessageSeverity::kInformation) {
    name = localized("Information");
    cssClass = "message";
  }
  html_.start("p");
  html_.attribute("class", cssClass);
  html_.direction(message.text);
  html_.element("strong", name);
  html_.lines(" " + message.text);
  html_.end("p");
}

void ContentWriter::operator()(const TextContent& text) const {
  html_.start("div");
  html_.attribute("class", "text");
  html_.newLine();
  writeHtmlText(html_, text, headingLevel_);
  html_.end("div");
}

void ContentWriter::operator()(const MediaContent& media) const {
  const bool isImage =
      std::find(kImageTypes.begin(), kImageTypes.end(), media.mediaType) != kImageTypes.end();
  const std::size_t size = media.bytes == nullptr ? 0 : media.bytes->size();
  if (!isImage || size == 0) {
    html_.element("p",
                  localized("^1: ^2, ^3 bytes. A browser does not show it.", outlineLabel(object_),
                            media.mediaType, size),
                  "aside");
    return;
  }
  std::optional<MediaSize> shown = shownSize(media, object_.size);
  if (!options_.image || !isPicture(media)) return writeImage(media, shown);
  // An image is as large as it was drawn, whatever its own file says.
  if (shown) {
    shown->width *= options_.imagePercent / 100;
    shown->height *= options_.imagePercent / 100;
  }
  writeImage(options_.image(object_, media), shown);
}

void ContentWriter::writeImage(const MediaContent& media,
                               const std::optional<MediaSize>& shown) const {
  html_.start("figure");
  html_.start("img");
  std::string source = "data:" + media.mediaType + ";base64,";
  source.reserve(source.size() + media.bytes->size() / 3 * 4 + 4);
  appendBase64(source, *media.bytes);
  html_.attribute("alt", outlineLabel(object_));
  if (shown) {
    html_.attribute("width", pixelsOf(shown->width));
    html_.attribute("height", pixelsOf(shown->height));
  }
  html_.attribute("src", source);
  html_.end("figure");
}

/// Whether a content is a text without anything but `label`, or is nothing.
bool saysNoMoreThan(const ObjectContent& content, const std::string& label) {
  if (std::holds_alternative<std::monostate>(content)) return true;
  const auto* text = std::get_if<TextContent>(&content);
  if (text == nullptr) return false;
  std::string whole;
  for (const TextParagraph& paragraph : text->paragraphs) {
    if (!whole.empty()) whole += '\n';
    for (const TextRun& run : paragraph.runs) whole += run.text;
  }
  return whole.empty() || whole == label;
}

/// Writes the page from its first line to its last.
class PageWriter {
 public:
  PageWriter(const std::string& documentName, const std::vector<OutlineEntry>& entries,
             const PageOptions& options, const HtmlReceiver& receive)
      : html_(out_), entries_(entries), options_(options), receive_(receive) {
    html_.sendTo(receive);
    if (!options.withStyles) html_.makePlain();
    chooseTitle(documentName);
  }

  void write();

 private:
  void chooseTitle(const std::string& documentName);
  void writeHead();
  void writeNavigation();
  void writeObject(const OutlineEntry& entry);
  /// Sections whose heading is at `depth` or deeper end.
  void closeSections(int depth);
  int headingLevel(int depth) const { return std::min(depth + 2, 6); }

  std::string out_;
  HtmlWriter html_;
  const std::vector<OutlineEntry>& entries_;
  const PageOptions& options_;
  const HtmlReceiver& receive_;
  std::string title_;
  const DocumentObject* titleObject_ = nullptr;  ///< the page title that is the page's heading
  int openSections_ = 0;
};

void PageWriter::chooseTitle(const std::string& documentName) {
  title_ = options_.title.empty() ? documentName : options_.title;
  const auto first = std::find_if(entries_.begin(), entries_.end(),
                                  [](const OutlineEntry& entry) { return entry.isShown; });
  if (options_.title.empty() && first != entries_.end() &&
      first->object->type == ObjectType::kPageTitle && !first->object->label.empty()) {
    title_ = first->object->label;
    // A document that begins with a title says it once, unless the title's text says more.
    if (saysNoMoreThan(*ContentView(first->object->content), title_)) titleObject_ = first->object;
  }
  if (title_.empty()) title_ = localized("Output");
}

void PageWriter::writeHead() {
  html_.raw("<!DOCTYPE html>\n");
  html_.start("html");
  html_.attribute("lang", options_.language);
  html_.newLine();
  html_.raw("<head>\n<meta charset=\"utf-8\">\n");
  html_.start("meta");
  html_.attribute("http-equiv", "Content-Security-Policy");
  html_.attribute("content", kPolicy);
  html_.raw(
      "\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"generator\" content=\"vornwout\">\n");
  html_.element("title", title_);
  html_.newLine();
  if (!options_.withStyles) {
    html_.raw("</head>\n<body>\n");
    return;
  }
  html_.raw("<style>");
  html_.raw(htmlStyleSheet());
  html_.raw(
      "</style>\n</head>\n<body>\n<a class=\"skip\" href=\"#output\">Skip to the output</a>\n");
}

void PageWriter::writeNavigation() {
  const bool isEmpty = std::none_of(entries_.begin(), entries_.end(),
                                    [](const OutlineEntry& entry) { return entry.isShown; });
  if (isEmpty) return;
  html_.raw("<nav aria-label=\"Outline\">\n<details open>\n<summary>Contents</summary>\n<ul>\n");
  int depth = 0;
  bool isFirst = true;
  for (const OutlineEntry& entry : entries_) {
    if (!entry.isShown) continue;
    if (entry.depth > depth) {
      // One step at most: what stands above a shown object is shown.
      html_.raw("\n<ul>\n");
      ++depth;
    } else if (!isFirst) {
      html_.raw("</li>\n");
      for (; depth > entry.depth; --depth) html_.raw("</ul></li>\n");
    }
    isFirst = false;
    html_.start("li");
    if (entry.object->type == ObjectType::kHeading) html_.attribute("class", "heading");
    html_.start("a");
    html_.attribute("href", "#" + idOf(entry));
    html_.direction(outlineLabel(*entry.object));
    html_.text(outlineLabel(*entry.object));
    html_.end("a");
  }
  html_.raw("</li>\n");
  for (; depth > 0; --depth) html_.raw("</ul></li>\n");
  html_.raw("</ul>\n</details>\n</nav>\n");
}

void PageWriter::closeSections(int depth) {
  for (; openSections_ > depth; --openSections_) html_.raw("</section>\n");
}

void PageWriter::writeObject(const OutlineEntry& entry) {
  const DocumentObject& object = *entry.object;
  closeSections(entry.depth);
  if (object.type == ObjectType::kHeading) {
    html_.start("section");
    html_.attribute("aria-labelledby", idOf(entry));
    html_.newLine();
    const std::string name = fmt::format("h{}", headingLevel(entry.depth));
    html_.start(name);
    html_.attribute("id", idOf(entry));
    html_.direction(outlineLabel(object));
    html_.text(outlineLabel(object));
    html_.end(name);
    html_.newLine();
    ++openSections_;
    return;
  }
  html_.start("div");
  html_.attribute("class", "object");
  html_.attribute("id", idOf(entry));
  html_.newLine();
  const ContentView content(object.content);
  std::visit(ContentWriter(html_, entry, headingLevel(entry.depth), options_), *content);
  html_.newLine();
  html_.raw("</div>");
  html_.newLine();
}

void PageWriter::write() {
  writeHead();
  writeNavigation();
  html_.raw("<main id=\"output\">\n");
  html_.start("h1");
  for (const OutlineEntry& entry : entries_) {
    if (entry.object == titleObject_) html_.attribute("id", idOf(entry));
  }
  html_.direction(title_);
  html_.text(title_);
  html_.end("h1");
  html_.newLine();
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const OutlineEntry& entry = entries_[i];
    if (i > 0) reportWithinStep(i, entries_.size());
    const ProgressStep step(i, entries_.size());
    if (entry.isShown && entry.object != titleObject_) writeObject(entry);
  }
  closeSections(0);
  html_.raw("</main>\n</body>\n</html>\n");
  receive_(out_);
}

}  // namespace

void writePage(const std::string& documentName, const std::vector<OutlineEntry>& entries,
               const PageOptions& options, const HtmlReceiver& receive) {
  PageWriter(documentName, entries, options, receive).write();
}

std::string renderPage(const Document& document, bool withModels) {
  std::vector<OutlineEntry> entries = outlineOf(document.root());
  if (!withModels) leaveOutModels(entries);
  std::string page;
  writePage(document.name(), entries, {}, [&](std::string_view html) { page += html; });
  return page;
}

}  // namespace vornwout
