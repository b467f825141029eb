#include "host/export/export_output.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/controller/document_file.h"
#include "host/export/document_exporter.h"
#include "host/export/html/html_exporter.h"
#include "host/export/text/text_exporter.h"
#include "host/store/store_error.h"
#include "platform/strings/full_stop.h"
#include "platform/strings/language.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"
#include "platform/text/html_text.h"

namespace vornwout {
namespace {

template <typename Exporter>
std::unique_ptr<DocumentExporter> make() {
  return std::make_unique<Exporter>();
}

/// A format by the element that asks for it.
struct ExportFormat {
  std::string_view element;
  std::unique_ptr<DocumentExporter> (*make)();
};

constexpr std::array kFormats = {
    ExportFormat{"html", make<HtmlExporter>},
    ExportFormat{"text", make<TextExporter>},
};

/// Elements that go along with others and are no format of their own there.
constexpr std::array<std::string_view, 2> kOptions = {"global", "contents"};
constexpr std::array<std::string_view, 6> kImages = {"bmp", "emf", "eps", "jpg", "png", "tif"};

template <typename Names>
bool contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// The element of the format that is asked for: a document type where there is one.
std::string formatOf(const ExportSpec& spec) {
  std::string document;
  std::string image;
  ExportSpec::visit(spec, [&](std::string_view name, const auto& option) {
    if (!option.isPresent() || contains(kOptions, name)) return;
    (contains(kImages, name) ? image : document) = name;
  });
  return document.empty() ? image : document;
}

std::unique_ptr<DocumentExporter> exporterFor(const ExportSpec& spec) {
  const std::string element = formatOf(spec);
  const auto* const format =
      std::find_if(kFormats.begin(), kFormats.end(),
                   [&](const ExportFormat& known) { return known.element == element; });
  if (format != kFormats.end()) return format->make();
  if (element.empty()) throw std::runtime_error(localized("because no format is asked for"));
  std::string name = element;
  for (char& c : name) c = static_cast<char>(c - 'a' + 'A');
  throw std::runtime_error(
      localized("because this version cannot export ^1; it can export HTML and TEXT", name));
}

const Document& documentFor(const ExportSpec& spec, OutputController& controller,
                            ExportResponse& response) {
  const std::string name = unescapedHtml(spec.global.getName());
  if (name.empty()) {
    const Document* const active = controller.activeDocument();
    if (active == nullptr)
      throw ExportError(ExportErrorCode::kNoDocument, localized("none is open"));
    response.name = active->name();
    return *active;
  }
  const std::vector<Document*> documents = controller.documentsNamed(name);
  if (documents.empty()) {
    response.name = name;
    if (controller.documents().empty()) {
      throw ExportError(ExportErrorCode::kNoDocument, localized("none is open"));
    }
    throw ExportError(ExportErrorCode::kNoSuchDocument, localized("there is no such document"));
  }
  response.name = documents.front()->name();
  return *documents.front();
}

}  // namespace

std::string asClause(std::string sentence) {
  sentence = withoutFullStop(std::move(sentence));
  if (currentLanguage() != kOriginalLanguage) return sentence;
  const bool isName = sentence.size() > 1 && sentence[1] >= 'A' && sentence[1] <= 'Z';
  if (!isName && !sentence.empty() && sentence[0] >= 'A' && sentence[0] <= 'Z') {
    sentence[0] = static_cast<char>(sentence[0] - 'A' + 'a');
  }
  return sentence;
}

std::string exportPath(const std::string& path) {
  return documentPath(currentEncoding().fromUtf8(path).c_str());
}

ExportResponse exportOutput(const ExportSpec& spec, OutputController& controller) {
  ExportResponse response;
  try {
    const std::unique_ptr<DocumentExporter> exporter = exporterFor(spec);
    const Document& document = documentFor(spec, controller, response);
    const ExportScope scope = scopeOf(document, spec.contents);
    ExportFiles files;
    exporter->run({document, scope, spec}, files, response);
    const std::string warning = files.commit();
    // The response has no place for it.
    if (!warning.empty()) throw std::runtime_error(localized("because ^1", asClause(warning)));
  } catch (const ExportError& error) {
    ExportResponse failed;
    failed.success = false;
    failed.errorCode = static_cast<int>(error.code());
    failed.name = response.name;
    return failed;
  } catch (const StoreError& error) {
    if (error.kind() == StoreError::Kind::kLocked) {
      throw std::runtime_error(
          localized("because the file is locked, by another process or an open document"));
    }
    throw std::runtime_error(localized("because ^1", asClause(error.what())));
  }
  return response;
}

}  // namespace vornwout
