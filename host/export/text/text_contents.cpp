#include "host/export/text/text_contents.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <fmt/format.h>

#include "host/document/content_view.h"
#include "host/document/media_size.h"
#include "host/document/outline.h"
#include "platform/adapter/progress_listener.h"
#include "platform/strings/localized.h"
#include "platform/text/display_width.h"

namespace vornwout {
namespace {

constexpr int kWidestRule = 80;
constexpr int kWidestNoteLabel = 30;
constexpr int kIndent = 2;
constexpr int kCodeIndent = 4;
constexpr int kDeepest = 16;
/// A table is read and written, and both take long for a large one.
constexpr std::uint64_t kTableSteps = 2;

std::string blanks(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

/// What stands before the first line of a paragraph and before the others.
struct Lead {
  std::string first;
  std::string other;
};

Lead leadOf(const TextParagraph& paragraph) {
  using Kind = TextParagraph::Kind;
  const int level = std::clamp(paragraph.level, 1, kDeepest);
  switch (paragraph.kind) {
    case Kind::kBullet:
    case Kind::kNumbered: {
      const std::string mark =
          paragraph.kind == Kind::kBullet ? "* " : std::to_string(paragraph.number) + ". ";
      const std::string indent = blanks(level * kIndent);
      return {indent + mark, indent + blanks(static_cast<int>(mark.size()))};
    }
    case Kind::kQuote: {
      std::string marks;
      for (int i = 0; i < level; ++i) marks += "> ";
      return {marks, marks};
    }
    case Kind::kCode:
      return {blanks(kCodeIndent), blanks(kCodeIndent)};
    case Kind::kHeading:
    case Kind::kPlain:
      break;
  }
  return {};
}

bool isListItem(const TextParagraph& paragraph) {
  return paragraph.kind == TextParagraph::Kind::kBullet ||
         paragraph.kind == TextParagraph::Kind::kNumbered;
}

/// Writes the lines of a shown text behind their leads.
void writeLines(TextOutput& out, const Lead& lead, std::string_view shown) {
  const std::string* before = &lead.first;
  while (true) {
    const std::size_t end = shown.find('\n');
    std::string line = *before;
    line += shown.substr(0, end);
    out.line(line);
    if (end == std::string_view::npos) return;
    shown.remove_prefix(end + 1);
    before = &lead.other;
  }
}

void writeLines(TextOutput& out, const std::string& lead, std::string_view shown) {
  writeLines(out, {lead, blanks(displayWidth(lead))}, shown);
}

bool isEmpty(const TextContent& text) {
  return std::all_of(text.paragraphs.begin(), text.paragraphs.end(),
                     [](const TextParagraph& paragraph) {
                       return std::all_of(paragraph.runs.begin(), paragraph.runs.end(),
                                          [](const TextRun& run) { return run.text.empty(); });
                     });
}

}  // namespace

/// Writes one object's content.
class TextContents::Writer {
 public:
  Writer(TextContents& contents, const DocumentObject& object)
      : contents_(contents), out_(contents.out_), object_(object) {}

  // A content that holds nothing is known by its label alone.
  void operator()(const std::monostate&) const { writeLabel(); }
  void operator()(const TableContent& table) const;
  void operator()(const LogContent& log) const;
  void operator()(const NotesContent& notes) const;
  void operator()(const MessageContent& message) const;
  void operator()(const TextContent& text) const;
  void operator()(const MediaContent& media) const;

 private:
  void writeLabel() const {
    if (!object_.label.empty()) out_.line(out_.shownLine(outlineLabel(object_)));
  }
  void warn(WARNING_CODE code) const {
    contents_.response_.warnings[static_cast<std::size_t>(code)].push_back(outlineLabel(object_));
  }
  std::string textOf(const TextParagraph& paragraph) const;

  TextContents& contents_;
  TextOutput& out_;
  const DocumentObject& object_;
};

void TextContents::Writer::operator()(const TableContent& table) const {
  const ProgressStep writing(1, kTableSteps);
  const TextTableProblems problems = contents_.tables_.write(*table);
  if (problems.hasLongRowLabel) warn(WARNING_CODE::LONG_ROW_LABEL);
  if (problems.isTooLarge) warn(WARNING_CODE::TOO_MANY_COLUMNS);
}

void TextContents::Writer::operator()(const LogContent& log) const {
  std::string text = out_.shownText(log.text);
  if (text.ends_with('\n')) text.pop_back();
  if (!text.empty()) writeLines(out_, Lead(), text);
}

void TextContents::Writer::operator()(const NotesContent& notes) const {
  int widest = 0;
  std::vector<std::string> labels;
  for (const NoteEntry& entry : notes.entries) {
    labels.push_back(out_.shownLine(renderText(entry.label)));
    widest = std::max(widest, std::min(displayWidth(labels.back()), kWidestNoteLabel));
  }
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const std::string value = renderText(notes.entries[i].value);
    if (contents_.isTabbed_) {
      out_.line(labels[i] + '\t' + out_.shownLine(value));
    } else {
      writeLines(out_, labels[i] + blanks(widest - displayWidth(labels[i])) + blanks(kIndent),
                 out_.shownText(value));
    }
  }
}

void TextContents::Writer::operator()(const MessageContent& message) const {
  std::string name = localized("Error");
  if (message.severity == MessageSeverity::kWarning) name = localized("Warning");
  if (message.severity == MessageSeverity::kInformation) name = localized("Information");
  writeLines(out_, name + ": ", out_.shownText(message.text));
}

std::string TextContents::Writer::textOf(const TextParagraph& paragraph) const {
  std::string result;
  for (const TextRun& run : paragraph.runs) {
    const std::string text = out_.shownText(run.text);
    result += text;
    const std::string link = out_.shownLine(run.link);
    if (!link.empty() && link != text && link != "mailto:" + text) result += " <" + link + ">";
  }
  return result;
}

void TextContents::Writer::operator()(const TextContent& text) const {
  // A page title may have nothing but its label.
  if (object_.type == ObjectType::kPageTitle && isEmpty(text)) return writeLabel();
  const TextParagraph* before = nullptr;
  for (const TextParagraph& paragraph : text.paragraphs) {
    if (before != nullptr && !(isListItem(*before) && isListItem(paragraph))) out_.separate();
    writeLines(out_, leadOf(paragraph), textOf(paragraph));
    before = &paragraph;
  }
}

void TextContents::Writer::operator()(const MediaContent& media) const {
  const std::string label = outlineLabel(object_);
  if (!isPicture(media) && object_.type != ObjectType::kChart) {
    const std::size_t size = media.bytes == nullptr ? 0 : media.bytes->size();
    out_.line(out_.shownLine(fmt::format("[{}: {}, {} bytes]", label, media.mediaType, size)));
    return;
  }
  std::string what;
  try {
    what = contents_.charts_.add(object_, media);
  } catch (const DrawError& error) {
    what = localized("not drawn. ^1", error.what());
  }
  out_.line(out_.shownLine(fmt::format("[{}: {}]", label, what)));
}

TextContents::TextContents(TextOutput& out, const ExportTextSpec& spec, ShownLayers layers,
                           ChartFiles& charts, ExportResponse& response)
    : out_(out),
      isTabbed_(spec.getSeparator() == ExportTextSpec::SEPARATOR_TYPE::TAB),
      tables_(out, spec, layers),
      charts_(charts),
      response_(response) {}

void TextContents::writeHeading(const OutlineEntry& entry) {
  const std::string label = out_.shownLine(outlineLabel(*entry.object));
  out_.separate();
  out_.line(label);
  const int width = std::clamp(displayWidth(label), 1, kWidestRule);
  out_.line(std::string(static_cast<std::size_t>(width), entry.depth == 0 ? '=' : '-'));
}

void TextContents::writeObject(const DocumentObject& object) {
  out_.separate();
  const ContentView content(object.content);
  std::visit(Writer(*this, object), *content);
}

}  // namespace vornwout
