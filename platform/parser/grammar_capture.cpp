#include "platform/parser/grammar_capture.h"

#include <stdexcept>

#include "platform/adapter/host_adapter.h"
#include "platform/adapter/output_sink.h"

namespace vornwout {
namespace {

GrammarCapture* innermost = nullptr;

}  // namespace

GrammarCapture::GrammarCapture() : previous_(innermost) { innermost = this; }

GrammarCapture::~GrammarCapture() { innermost = previous_; }

GrammarCapture* GrammarCapture::current() { return innermost; }

CommandDescriptor grammarOf(void (*entry)()) {
  const SinkSuspension nothingIsShown;
  const AdapterRegistration noHost(nullptr);
  const GrammarCapture capture;
  entry();
  if (!capture.taken()) throw std::logic_error("the entry point declared no grammar");
  return *capture.taken();
}

}  // namespace vornwout
