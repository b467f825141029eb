#include "runner/show_document.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include "host/document/content_view.h"
#include "host/document/outline.h"
#include "host/store/document_store.h"
#include "host/store/store_error.h"
#include "platform/adapter/progress_listener.h"
#include "platform/strings/localized.h"
#include "runner/document_json.h"
#include "runner/password_file.h"
#include "runner/run_options.h"
#include "runner/standard_streams.h"
#include "runner/terminal/content_printer.h"
#include "runner/terminal/heading_line.h"
#include "runner/terminal/outline_printer.h"
#include "runner/terminal/pager.h"
#include "runner/terminal/progress.h"

namespace vornwout {
namespace {

/// The entries of an outline that an option asks for: all, or one with what stands below it.
using Entries = std::vector<OutlineEntry>;

Entries chosenEntries(Entries entries, std::optional<std::int64_t> object) {
  if (!object) return entries;
  const auto first = static_cast<std::ptrdiff_t>(*object - 1);
  const std::size_t next = entries[static_cast<std::size_t>(*object - 1)].nextNumber;
  const auto last = static_cast<std::ptrdiff_t>(next - 1);
  Entries chosen(entries.begin() + first, entries.begin() + last);
  // Who names an object wants to see it, hidden or not, and below it what is not hidden itself.
  std::vector<bool> isShownAbove = {true};
  const int top = chosen.front().depth;
  chosen.front().isLast = true;
  for (OutlineEntry& entry : chosen) {
    const auto depth = static_cast<std::size_t>(entry.depth - top);
    isShownAbove.resize(depth + 1);
    entry.isShown = isShownAbove[depth] && (depth == 0 || entry.object->visible);
    isShownAbove.push_back(entry.isShown);
  }
  return chosen;
}

int writeRaw(std::ostream& out, const OutlineEntry& entry, bool isTerminal) {
  try {
    const ContentView content(entry.object->content);
    const auto* media = std::get_if<MediaContent>(&*content);
    if (media == nullptr) {
      return refuse(localized("Object ^1 is a ^2; --raw writes charts and models.", entry.number,
                              localized(objectTypeName(entry.object->type))));
    }
    // The bytes come from anywhere, and a terminal obeys some of them.
    if (isTerminal)
      return refuse(localized("--raw does not write to a terminal: add > and a file's name."));
    if (media->bytes != nullptr) out << *media->bytes;
    return kExitSuccess;
  } catch (const StoreError& error) {
    std::cerr << fmt::format("vornwout: error: {}\n",
                             localized("Object ^1 cannot be read. ^2", entry.number, error.what()));
    return kExitErrors;
  }
}

/// Shows objects one after the other, each below an empty line.
int writeContents(std::ostream& out, const Entries& entries, const ShowOptions& options,
                  const TerminalStyle& style, bool hasOutput) {
  bool isWhole = true;
  const std::string progress = showingText(options.file);
  std::uint64_t done = 0;
  const auto separate = [&] {
    if (std::exchange(hasOutput, true)) out << '\n';
  };
  for (const OutlineEntry& entry : entries) {
    // A reader who has left the pager needs no more of it.
    if (!out) break;
    const ProgressStep step(progress, done, entries.size());
    reportProgress(progress, done++, entries.size());
    if (!entry.isShown) continue;
    const DocumentObject& object = *entry.object;
    if (object.type == ObjectType::kHeading) {
      separate();
      printHeading(out, object.index.empty() ? object.label : object.index + " " + object.label,
                   style);
      continue;
    }
    try {
      const ContentView content(object.content);
      if (std::holds_alternative<std::monostate>(*content)) continue;
      separate();
      isWhole = printContent(out, object, *content,
                             {options.file, entry.number, options.passwordFile}, style) &&
                isWhole;
    } catch (const StoreError& error) {
      separate();
      printRefusal(out, localized("Object ^1 cannot be read. ^2", entry.number, error.what()),
                   style);
      isWhole = false;
    }
  }
  reportProgress(progress, entries.size(), entries.size());
  return isWhole ? kExitSuccess : kExitErrors;
}

std::unique_ptr<Document> open(const ShowOptions& options) {
  OpenOptions how;
  if (!options.passwordFile.empty()) {
    std::variant<std::string, PasswordFileError> password =
        readPasswordFile(options.passwordFile, PasswordUse::kOpen);
    if (const auto* error = std::get_if<PasswordFileError>(&password)) {
      refuse(error->text);
      return nullptr;
    }
    how.password = std::get<std::string>(std::move(password));
  }
  StandardProgress progress(false);
  try {
    return openDocument(options.file, how);
  } catch (const StoreError& error) {
    progress.hide();
    std::string text = localized("^1 cannot be opened. ^2", options.file, error.what());
    if (error.kind() == StoreError::Kind::kWrongPassword) {
      if (options.passwordFile.empty()) {
        text += " " + localized("Give its password with --password-file.");
      }
    }
    refuse(text);
    return nullptr;
  }
}

std::optional<std::string> variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

}  // namespace

int showDocument(std::ostream& out, const Document& document, const ShowOptions& options,
                 const TerminalStyle& style, bool isTerminal) {
  Entries all = outlineOf(document.root());
  if (options.object &&
      (*options.object < 1 || *options.object > static_cast<std::int64_t>(all.size()))) {
    return refuse(all.empty() ? localized("The document has no objects.")
                              : localized("There is no object ^1; the document has ^2.",
                                          *options.object, all.size()));
  }
  const Entries entries = chosenEntries(std::move(all), options.object);
  if (options.raw) return writeRaw(out, entries.front(), isTerminal);
  if (options.json) {
    const bool isWhole =
        writeDocumentJson(out, entries, {options.file, !options.outline, isTerminal});
    return isWhole ? kExitSuccess : kExitErrors;
  }
  bool hasOutput = false;
  if (!options.object || options.outline) {
    printRule(out, options.file, style);
    out << '\n';
    if (entries.empty()) out << localized("The document has no objects.") << '\n';
    printOutline(out, entries, style);
    hasOutput = true;
  }
  if (options.outline) return kExitSuccess;
  return writeContents(out, entries, options, style, hasOutput);
}

int runShow(const ShowOptions& options) {
  const std::unique_ptr<Document> document = open(options);
  if (document == nullptr) return kExitUsage;
  const TerminalFacts facts = readTerminalFacts(STDOUT_FILENO);
  TerminalStyle style =
      chooseStyle(parseStyleMode(options.color).value_or(StyleMode::kAuto), facts);
  if (options.width > 0) style.width = options.width;
  std::unique_ptr<Pager> pager;
  if (!options.noPager && !options.raw) {
    if (const auto command = pagerCommand(facts, variable)) pager = Pager::start(*command);
  }
  std::ostream& out = pager != nullptr ? pager->out() : std::cout;
  // On a terminal the output itself shows how far it is.
  std::optional<StandardProgress> progress;
  if (!facts.isTerminal) progress.emplace(false);
  return showDocument(out, *document, options, style, facts.isTerminal);
}

}  // namespace vornwout
