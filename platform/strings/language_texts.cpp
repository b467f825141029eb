#include "platform/strings/language_texts.h"

#include <array>
#include <utility>

#include "platform/files/fetch_file.h"
#include "platform/strings/text_bundle.h"

namespace vornwout {
namespace {

/// The tables of this project, those first whose texts are shown most.
constexpr std::array<std::string_view, 5> kTables = {"output.qbb", "parser.qbb", "command.qbb",
                                                     "host.qbb", "program.qbb"};

}  // namespace

LanguageTexts::LanguageTexts(std::string directory) : directory_(std::move(directory)) {}

std::string_view LanguageTexts::find(std::string_view original) {
  const std::lock_guard lock(mutex_);
  for (;;) {
    const auto found = texts_.find(original);
    if (found != texts_.end()) return found->second;
    if (tablesRead_ == kTables.size()) return original;
    readNext();
  }
}

void LanguageTexts::readNext() {
  constexpr bool kExpandHandles = false;
  constexpr bool kBackslashIsSlash = false;
  const std::string path = directory_ + std::string(kTables[tablesRead_]);
  auto entries = readTextBundle(FetchFile::fetch(path, kExpandHandles, kBackslashIsSlash));
  ++tablesRead_;
  // A table that is missing or damaged has nothing: its texts come in English.
  if (!entries) return;
  for (keyValueGloss& entry : *entries) {
    // Without a text, a key is its own.
    if (!entry.value.empty()) texts_.try_emplace(std::move(entry.key), std::move(entry.value));
  }
}

}  // namespace vornwout
