// Takes the grammar out of a command, so that help, the language reference and the fuzzers are made
// from what the command itself declares.
//
// While a GrammarCapture lives, a parser hands its descriptor over instead of parsing and reports
// one error, so that the command ends at once and does nothing.
#pragma once

#include <optional>

#include "platform/parser/descriptor.h"

namespace vornwout {

class GrammarCapture {
 public:
  GrammarCapture();
  ~GrammarCapture();
  GrammarCapture(const GrammarCapture&) = delete;
  GrammarCapture& operator=(const GrammarCapture&) = delete;

  /// The one that lives, or null.
  static GrammarCapture* current();

  void take(const CommandDescriptor& descriptor) { taken_ = descriptor; }
  const std::optional<CommandDescriptor>& taken() const { return taken_; }

 private:
  std::optional<CommandDescriptor> taken_;
  GrammarCapture* previous_;
};

/// The grammar that the command behind `entry` declares. Nothing is shown and no host is asked.
CommandDescriptor grammarOf(void (*entry)());

}  // namespace vornwout
