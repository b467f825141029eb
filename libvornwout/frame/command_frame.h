// The frame that every entry point runs from call to return.
//
// An entry makes a CommandFrame, declares its grammar, calls parse(), and acts on what parse()
// left. The members stand in the order in which the interface wants them made; they are destroyed
// in reverse, also when an exception passes: messages that were made last, parser, token sequence,
// the command's own part, descriptor, spec, messages, procedure. Nothing is caught here.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/adapter/host_adapter.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"
#include "platform/parser/token_sequence.h"
#include "platform/parser/universal_parser.h"
#include "platform/pivot/bp_procedure.h"

namespace vornwout {

/// The names of a command. Which of them are upper case differs from command to command and is the
/// system's settled behaviour.
struct CommandNames {
  const char* command;            ///< upper case, e.g. "OUTPUT NEW"
  const char* procedureTitle;     ///< null for a command that makes no ParserMessage
  const char* procedure;          ///< mixed case, names the output
  bool titledDescriptor = false;  ///< the descriptor is built from command and procedure
  bool asksController = true;     ///< false for a command that leaves the host to a later step
  bool messagesLast = false;      ///< the ParserMessage is made behind the parser, not before it
};

class CommandFrame {
 public:
  /// Opens the procedure, asks the host for its output controller and makes the messages, unless
  /// the names say otherwise.
  explicit CommandFrame(const CommandNames& names);

  CommandDescriptor& grammar() { return descriptor_; }

  /// Makes a part of the command's own on the grammar, one per frame. It is destroyed behind the
  /// parser, which parse() makes later, and before the grammar.
  template <typename Part>
  Part& makePart() {
    const auto part = std::make_shared<Part>(descriptor_);
    part_ = part;
    return *part;
  }

  /// Parses the command, then flushes the log whatever came of it. True when there was no error.
  bool parse();
  /// The same for a command that needs the output controller: reports when the host has none.
  bool parseForController();

  BpProcedure& procedure() { return procedure_; }
  const ParserMessage& messages() const { return lateMessages_ ? *lateMessages_ : *messages_; }
  const CommandSpec& spec() const { return spec_; }
  CommandSpec& spec() { return spec_; }
  /// Not null once parseForController() was true.
  OutputControllerInterface& controller() { return *controller_; }

 private:
  CommandNames names_;
  BpProcedure procedure_;
  OutputControllerInterface* controller_;
  std::optional<ParserMessage> messages_;
  CommandSpec spec_;
  CommandDescriptor descriptor_;
  std::shared_ptr<void> part_;
  std::optional<VORN_TokenSequence> tokens_;
  std::optional<UniversalParser> parser_;
  std::optional<ParserMessage> lateMessages_;
};

}  // namespace vornwout
