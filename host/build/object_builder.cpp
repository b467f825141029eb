#include "host/build/object_builder.h"

#include <memory>
#include <utility>

#include "host/build/build_error.h"
#include "host/build/markdown_text.h"
#include "host/build/png_check.h"
#include "host/build/svg_sanitizer.h"
#include "host/build/table_builder.h"
#include "platform/strings/localized.h"
#include "platform/text/json_locator.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

DocumentObject objectOf(ObjectType type, ObjectContent content, const std::string& file) {
  DocumentObject object;
  object.type = type;
  object.content.set(std::move(content));
  const std::size_t slash = file.rfind('/');
  const std::string name = slash == std::string::npos ? file : file.substr(slash + 1);
  const std::size_t point = name.rfind('.');
  object.label =
      repairedUtf8(point == std::string::npos || point == 0 ? name : name.substr(0, point));
  return object;
}

}  // namespace

DocumentObject tableObject(const TableDescription& description, BuildFiles& files) {
  DocumentObject object =
      objectOf(ObjectType::kTable, buildTable(description, files), description.csv);
  if (!description.title.empty()) object.label = description.title;
  object.subtype = description.subtype;
  return object;
}

DocumentObject chartObject(const std::string& file, BuildFiles& files) {
  const std::string bytes = readWhole(files, file, kMaxMediumBytes);
  MediaContent content;
  if (hasPngSignature(bytes)) {
    if (const std::string problem = pngProblem(bytes); !problem.empty()) {
      throw BuildError(files.shownName(file), {}, problem);
    }
    content.mediaType = "image/png";
    content.bytes = std::make_shared<const std::string>(bytes);
  } else {
    content.mediaType = "image/svg+xml";
    try {
      content.bytes = std::make_shared<const std::string>(sanitizeSvg(bytes));
    } catch (const SvgError& error) {
      const bool hasPlace = error.offset() != std::string::npos;
      throw BuildError(files.shownName(file),
                       hasPlace ? placeInText(bytes, error.offset()) : SourcePlace{}, error.what(),
                       localized("Charts are files in SVG or PNG."));
    }
  }
  return objectOf(ObjectType::kChart, std::move(content), file);
}

DocumentObject markdownObject(const std::string& file, BuildFiles& files) {
  const std::string markdown = readWhole(files, file, kMaxTextBytes);
  if (repairedUtf8(markdown) != markdown) {
    std::size_t at = 0;
    while (const int length = validUtf8Length(std::string_view(markdown).substr(at))) {
      at += static_cast<std::size_t>(length);
    }
    throw BuildError(files.shownName(file), placeInText(markdown, at),
                     localized("This byte is no character in UTF-8."),
                     localized("Save the text as UTF-8."));
  }
  return objectOf(ObjectType::kText, textFromMarkdown(markdown), file);
}

DocumentObject textObject(std::string_view text) {
  return objectOf(ObjectType::kText, textFromPlain(text), "Text");
}

DocumentObject modelObject(const std::string& file, const std::string& mediaType,
                           BuildFiles& files) {
  MediaContent content;
  content.mediaType = mediaType;
  content.bytes = std::make_shared<const std::string>(readWhole(files, file, kMaxMediumBytes));
  return objectOf(ObjectType::kModel, std::move(content), file);
}

DocumentObject titleObject(const std::string& title) {
  TextContent content;
  TextParagraph& paragraph = content.paragraphs.emplace_back();
  paragraph.kind = TextParagraph::Kind::kHeading;
  paragraph.level = 1;
  paragraph.runs.push_back({title, {}, {}});
  DocumentObject object = objectOf(ObjectType::kPageTitle, std::move(content), "");
  object.label = title;
  return object;
}

}  // namespace vornwout
