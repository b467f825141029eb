#include "platform/adapter/output_sink.h"

#include <algorithm>
#include <utility>

#include "platform/pivot/localized_content.h"
#include "platform/strings/localized.h"
#include "platform/text/shortened_text.h"

namespace vornwout {
namespace {

std::vector<OutputSink*>& sinks() {
  static std::vector<OutputSink*> registered;
  return registered;
}

/// An argument may be a whole sentence: why a host cannot do what it is asked for.
constexpr int kMostReasonColumns = 160;

void shorten(Rare<std::vector<CellText>>& arguments) {
  if (arguments.empty()) return;
  for (CellText& argument : arguments.edit()) {
    if (argument.kind == CellText::Kind::kString) {
      argument.text = shortenedText(argument.text, kMostReasonColumns);
    }
    shorten(argument.arguments);
    shorten(argument.sublist);
  }
}

}  // namespace

MessageSeverity OutputMessageRecord::severity() const {
  if (level >= 3) return MessageSeverity::kError;
  return level == 2 ? MessageSeverity::kWarning : MessageSeverity::kInformation;
}

std::string OutputMessageRecord::shownText() const {
  std::string text = renderText(localizedContent(message));
  if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
    text = localized("The host refused the command and gave no reason.");
  }
  return text;
}

std::string OutputMessageRecord::briefText() const {
  OutputMessageRecord brief = *this;
  shorten(brief.message.arguments);
  shorten(brief.message.sublist);
  return brief.shownText();
}

OutputSink::~OutputSink() = default;

SinkRegistration::SinkRegistration(OutputSink& sink) : sink_(&sink) { sinks().push_back(sink_); }

SinkRegistration::~SinkRegistration() { std::erase(sinks(), sink_); }

SinkSuspension::SinkSuspension() : suspended_(std::exchange(sinks(), {})) {}

SinkSuspension::~SinkSuspension() { sinks() = std::move(suspended_); }

const std::vector<OutputSink*>& outputSinks() { return sinks(); }

}  // namespace vornwout

void bp_flushlog_() {
  for (vornwout::OutputSink* sink : vornwout::outputSinks()) sink->logFlushed();
}
