#include "host/export/html/html_text.h"

#include <algorithm>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "host/export/html/html_look.h"

namespace vornwout {
namespace {

using Kind = TextParagraph::Kind;

constexpr int kDeepest = 32;

std::string inlineStyle(const TextStyle& style) {
  std::string css;
  if (const auto color = parseCellColor(style.color)) css += "color:" + htmlColor(*color) + ";";
  return css + fontCss(style.font, style.size);
}

void writeRun(HtmlWriter& html, const TextRun& run) {
  std::vector<const char*> open;
  const auto begin = [&](const char* name) {
    html.start(name);
    open.push_back(name);
  };
  if (isSafeLink(run.link)) {
    begin("a");
    html.attribute("href", run.link);
    html.attribute("rel", "noopener noreferrer");
  }
  if (const std::string css = inlineStyle(run.style); !css.empty()) {
    begin("span");
    if (parseCellColor(run.style.color)) html.attribute("class", "ink");
    html.attribute("style", css);
  }
  if (run.style.bold) begin("strong");
  if (run.style.italic) begin("em");
  if (run.style.underlined) begin("u");
  if (run.style.monospaced) begin("code");
  html.lines(run.text);
  for (; !open.empty(); open.pop_back()) html.end(open.back());
}

/// Keeps the lists and quotes that are open while paragraphs come.
class TextWriter {
 public:
  /// The text's topmost headings are of the level `topmost` and stand at `headingLevel`.
  TextWriter(HtmlWriter& html, int headingLevel, int topmost)
      : html_(html), headingLevel_(headingLevel), topmost_(topmost), deepestNext_(headingLevel) {}

  void write(const TextParagraph& paragraph);
  void closeDownTo(std::size_t depth);

 private:
  struct Block {
    const char* name;  ///< "ul", "ol" or "blockquote"
    bool hasItem;      ///< a list item is open in it
  };

  void writeRuns(const TextParagraph& paragraph);
  /// An attribute of the element that the paragraph stands in.
  void direction(const TextParagraph& paragraph);
  void openListItem(const TextParagraph& paragraph);
  void openQuote(std::size_t depth);

  HtmlWriter& html_;
  int headingLevel_;
  int topmost_;
  int deepestNext_;  ///< a heading is one level below the one before it at most
  std::vector<Block> open_;
};

int headingRank(const TextParagraph& paragraph) { return std::clamp(paragraph.level, 1, 6); }

std::size_t depthOf(const TextParagraph& paragraph) {
  return static_cast<std::size_t>(std::clamp(paragraph.level, 1, kDeepest));
}

void TextWriter::closeDownTo(std::size_t depth) {
  while (open_.size() > depth) {
    if (open_.back().hasItem) html_.end("li");
    html_.end(open_.back().name);
    open_.pop_back();
    // Inside a list item a line break would be shown.
    if (open_.empty()) html_.newLine();
  }
}

void TextWriter::writeRuns(const TextParagraph& paragraph) {
  for (const TextRun& run : paragraph.runs) writeRun(html_, run);
}

void TextWriter::direction(const TextParagraph& paragraph) {
  if (std::any_of(paragraph.runs.begin(), paragraph.runs.end(),
                  [](const TextRun& run) { return mayTurn(run.text); })) {
    html_.attribute("dir", "auto");
  }
}

void TextWriter::openListItem(const TextParagraph& paragraph) {
  const char* const list = paragraph.kind == Kind::kNumbered ? "ol" : "ul";
  const std::size_t depth = depthOf(paragraph);
  closeDownTo(depth);
  if (open_.size() == depth && std::string_view(open_.back().name) != list) closeDownTo(depth - 1);
  while (open_.size() < depth) {
    // A level that the text leaves out still needs an item to stand in.
    if (!open_.empty() && !open_.back().hasItem && open_.back().name[0] != 'b') {
      html_.start("li");
      open_.back().hasItem = true;
    }
    html_.start(list);
    if (paragraph.kind == Kind::kNumbered && open_.size() + 1 == depth && paragraph.number != 1) {
      html_.attribute("start", paragraph.number);
    }
    open_.push_back({list, false});
  }
  if (open_.back().hasItem) html_.end("li");
  html_.start("li");
  open_.back().hasItem = true;
}

void TextWriter::openQuote(std::size_t depth) {
  const bool isInList = std::any_of(open_.begin(), open_.end(),
                                    [](const Block& block) { return block.name[0] != 'b'; });
  closeDownTo(isInList ? 0 : depth);
  while (open_.size() < depth) {
    html_.start("blockquote");
    open_.push_back({"blockquote", false});
  }
}

void TextWriter::write(const TextParagraph& paragraph) {
  switch (paragraph.kind) {
    case Kind::kBullet:
    case Kind::kNumbered:
      openListItem(paragraph);
      direction(paragraph);
      writeRuns(paragraph);
      return;
    case Kind::kQuote:
      openQuote(depthOf(paragraph));
      html_.start("p");
      direction(paragraph);
      writeRuns(paragraph);
      html_.end("p");
      break;
    case Kind::kHeading: {
      closeDownTo(0);
      const int below = headingRank(paragraph) - topmost_;
      const int level = std::clamp(std::min(headingLevel_ + below, deepestNext_), 1, 6);
      deepestNext_ = level + 1;
      const std::string name = fmt::format("h{}", level);
      html_.start(name);
      direction(paragraph);
      writeRuns(paragraph);
      html_.end(name);
      break;
    }
    case Kind::kCode:
      closeDownTo(0);
      html_.start("pre");
      html_.start("code");
      for (const TextRun& run : paragraph.runs) html_.text(run.text);
      html_.end("code");
      html_.end("pre");
      break;
    case Kind::kPlain:
      closeDownTo(0);
      html_.start("p");
      direction(paragraph);
      writeRuns(paragraph);
      html_.end("p");
      break;
  }
  html_.newLine();
}

}  // namespace

void writeHtmlText(HtmlWriter& html, const TextContent& text, int headingLevel) {
  int topmost = 6;
  for (const TextParagraph& paragraph : text.paragraphs) {
    if (paragraph.kind == Kind::kHeading) topmost = std::min(topmost, headingRank(paragraph));
  }
  TextWriter writer(html, headingLevel, topmost);
  for (const TextParagraph& paragraph : text.paragraphs) writer.write(paragraph);
  writer.closeDownTo(0);
}

}  // namespace vornwout
