#include "host/build/markdown_text.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include <cmark.h>

namespace vornwout {
namespace {

using Kind = TextParagraph::Kind;

std::string literalOf(cmark_node* node) {
  const char* literal = cmark_node_get_literal(node);
  return literal == nullptr ? std::string() : std::string(literal);
}

/// A link's address, or nothing for one that could do more than lead somewhere.
std::string linkOf(cmark_node* node) {
  const char* url = cmark_node_get_url(node);
  const std::string address = url == nullptr ? "" : url;
  constexpr std::array<std::string_view, 4> kSchemes = {"http://", "https://", "mailto:", "#"};
  std::string lower;
  for (const char c : address.substr(0, 8)) {
    lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  const bool isKnown = std::any_of(kSchemes.begin(), kSchemes.end(), [&](std::string_view scheme) {
    return std::string_view(lower).starts_with(scheme);
  });
  return isKnown ? address : std::string();
}

/// Walks over cmark's tree and writes paragraphs.
class TextWriter {
 public:
  TextContent write(cmark_node* root) {
    const std::unique_ptr<cmark_iter, decltype(&cmark_iter_free)> iterator(cmark_iter_new(root),
                                                                           cmark_iter_free);
    for (;;) {
      const cmark_event_type event = cmark_iter_next(iterator.get());
      if (event == CMARK_EVENT_DONE) break;
      cmark_node* node = cmark_iter_get_node(iterator.get());
      if (event == CMARK_EVENT_ENTER) {
        enter(node);
      } else {
        leave(node);
      }
    }
    return std::move(content_);
  }

 private:
  struct List {
    bool isNumbered = false;
    int next = 1;
  };

  void enter(cmark_node* node) {
    switch (cmark_node_get_type(node)) {
      case CMARK_NODE_BLOCK_QUOTE:
        ++quotes_;
        break;
      case CMARK_NODE_LIST:
        lists_.push_back({cmark_node_get_list_type(node) == CMARK_ORDERED_LIST,
                          cmark_node_get_list_start(node)});
        break;
      case CMARK_NODE_ITEM:
        startsItem_ = true;
        itemNumber_ = lists_.back().next++;
        break;
      case CMARK_NODE_PARAGRAPH:
        begin(blockKind(), blockLevel());
        break;
      case CMARK_NODE_HEADING:
        begin(Kind::kHeading, cmark_node_get_heading_level(node));
        break;
      case CMARK_NODE_CODE_BLOCK:
      case CMARK_NODE_HTML_BLOCK:
        addLines(node);
        break;
      case CMARK_NODE_THEMATIC_BREAK:
        begin(Kind::kPlain, 0);
        break;
      case CMARK_NODE_TEXT:
      case CMARK_NODE_HTML_INLINE:
        addRun(literalOf(node));
        break;
      case CMARK_NODE_CODE:
        ++code_;
        addRun(literalOf(node));
        --code_;
        break;
      case CMARK_NODE_SOFTBREAK:
        addRun(" ");
        break;
      case CMARK_NODE_LINEBREAK:
        addRun("\n");
        break;
      case CMARK_NODE_EMPH:
        ++italic_;
        break;
      case CMARK_NODE_STRONG:
        ++bold_;
        break;
      case CMARK_NODE_LINK:
        link_ = linkOf(node);
        break;
      default:
        break;
    }
  }

  void leave(cmark_node* node) {
    switch (cmark_node_get_type(node)) {
      case CMARK_NODE_BLOCK_QUOTE:
        --quotes_;
        break;
      case CMARK_NODE_LIST:
        lists_.pop_back();
        startsItem_ = false;
        break;
      case CMARK_NODE_ITEM:
        // An item with nothing in it is still one.
        if (startsItem_) begin(blockKind(), blockLevel());
        break;
      case CMARK_NODE_EMPH:
        --italic_;
        break;
      case CMARK_NODE_STRONG:
        --bold_;
        break;
      case CMARK_NODE_LINK:
        link_.clear();
        break;
      default:
        break;
    }
  }

  Kind blockKind() const {
    if (startsItem_) return lists_.back().isNumbered ? Kind::kNumbered : Kind::kBullet;
    return quotes_ > 0 ? Kind::kQuote : Kind::kPlain;
  }

  int blockLevel() const {
    if (startsItem_) return static_cast<int>(lists_.size());
    // What follows in an item stands as deep as the item.
    return quotes_ > 0 ? quotes_ : static_cast<int>(lists_.size());
  }

  void begin(Kind kind, int level) {
    TextParagraph& paragraph = content_.paragraphs.emplace_back();
    paragraph.kind = kind;
    paragraph.level = level;
    if (kind == Kind::kNumbered) paragraph.number = itemNumber_;
    startsItem_ = false;
  }

  /// A block of code is one paragraph with its line breaks.
  void addLines(cmark_node* node) {
    const bool isCode = cmark_node_get_type(node) == CMARK_NODE_CODE_BLOCK;
    std::string text = literalOf(node);
    while (!text.empty() && text.back() == '\n') text.pop_back();
    begin(isCode ? Kind::kCode : blockKind(), isCode ? 0 : blockLevel());
    if (isCode) ++code_;
    addRun(text);
    if (isCode) --code_;
  }

  void addRun(const std::string& text) {
    if (text.empty() || content_.paragraphs.empty()) return;
    TextStyle style;
    style.bold = bold_ > 0;
    style.italic = italic_ > 0;
    style.monospaced = code_ > 0;
    style.underlined = !link_.empty();
    std::vector<TextRun>& runs = content_.paragraphs.back().runs;
    if (!runs.empty() && runs.back().style == style && runs.back().link == link_) {
      runs.back().text += text;
    } else {
      runs.push_back({text, style, link_});
    }
  }

  TextContent content_;
  std::vector<List> lists_;
  bool startsItem_ = false;  ///< the next block is the first of its item
  int itemNumber_ = 0;
  int quotes_ = 0;
  int bold_ = 0;
  int italic_ = 0;
  int code_ = 0;
  std::string link_;
};

}  // namespace

TextContent textFromMarkdown(std::string_view markdown) {
  // A byte-order mark is none of the text.
  if (markdown.starts_with("\xEF\xBB\xBF")) markdown.remove_prefix(3);
  const std::unique_ptr<cmark_node, decltype(&cmark_node_free)> root(
      cmark_parse_document(markdown.data(), markdown.size(), CMARK_OPT_VALIDATE_UTF8),
      cmark_node_free);
  return TextWriter().write(root.get());
}

TextContent textFromPlain(std::string_view text) {
  TextContent content;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    TextParagraph& paragraph = content.paragraphs.emplace_back();
    if (!line.empty()) paragraph.runs.push_back({std::string(line), {}, {}});
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return content;
}

}  // namespace vornwout
