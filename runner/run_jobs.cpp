// Sets up a run: encoding, language, paths, host, trace and what shows output; then runs the jobs.
#include <cerrno>
#include <cstring>
#include <iostream>
#include <optional>
#include <variant>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "host/controller/embedded_host.h"
#include "platform/adapter/host_adapter.h"
#include "platform/files/path_context.h"
#include "platform/strings/language.h"
#include "platform/text/display_width.h"
#include "platform/trace/trace_writer.h"
#include "platform/trace/tracing_adapter.h"
#include "runner/diagnostic_sink.h"
#include "runner/job_runner.h"
#include "runner/run_options.h"
#include "runner/scripted_host.h"
#include "runner/terminal/terminal_sink.h"

namespace vornwout {
namespace {

constexpr std::string_view kScriptPrefix = "script=";

int refuse(const std::string& text) {
  // Names of files and members come from outside.
  std::cerr << "vornwout: error: " << sanitizeForTerminal(text) << "\n";
  return kExitUsage;
}

/// The trace's file, closed with it.
class TraceFile {
 public:
  explicit TraceFile(const std::string& path)
      : descriptor_(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {}
  ~TraceFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  TraceFile(const TraceFile&) = delete;
  TraceFile& operator=(const TraceFile&) = delete;

  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

/// Finds the first byte of a job that its encoding does not know, and tells of it: what cannot be
/// read as text is most often text in another encoding.
void warnOfForeignBytes(const Job& job, const Encoding& encoding) {
  if (!encoding.isUtf8()) return;
  int line = 1;
  std::string_view rest = job.text;
  while (!rest.empty()) {
    const int length = encoding.characterLength(rest);
    const auto byte = static_cast<unsigned char>(rest.front());
    if (length == 1 && byte >= 0x80) {
      std::cerr << fmt::format(
          "{}:{}: warning: The byte {:02X} is no valid UTF-8. Name the job's encoding with "
          "--encoding, for instance --encoding windows-1252.\n",
          sanitizeForTerminal(job.name), line, byte);
      return;
    }
    if (byte == '\n') ++line;
    rest.remove_prefix(static_cast<std::size_t>(length));
  }
}

/// The host that the user chose, and what goes with it.
struct Hosts {
  std::optional<EmbeddedHost> embedded;
  std::unique_ptr<ScriptedHost> scripted;

  HostAdapter* adapter() {
    if (embedded) return &*embedded;
    return scripted.get();
  }
};

/// Runs the jobs once everything they need stands.
int runAll(const RunOptions& options, const std::vector<Job>& jobs, Hosts& hosts,
           TraceWriter* trace) {
  const bool oneTerminal = isatty(STDOUT_FILENO) != 0 || isatty(STDERR_FILENO) != 0;
  const TerminalStyle outStyle = chooseStyle(options.color, readTerminalFacts(STDOUT_FILENO));
  const TerminalStyle errStyle = chooseStyle(options.color, readTerminalFacts(STDERR_FILENO));

  // The order of registration is the order of delivery: the trace tells what happens as it happens,
  // documents come before what shows them.
  std::optional<SinkRegistration> traceRegistration;
  if (trace != nullptr) traceRegistration.emplace(*trace);
  std::optional<SinkRegistration> documentRegistration;
  if (hosts.embedded) documentRegistration.emplace(hosts.embedded->sink());
  TerminalSink terminal(std::cout, outStyle, [&hosts]() -> std::optional<std::string> {
    if (!hosts.embedded) return std::nullopt;
    return hosts.embedded->activeDocumentLabel();
  });
  std::optional<SinkRegistration> terminalRegistration;
  if (!options.quiet) terminalRegistration.emplace(terminal);
  DiagnosticSink diagnostics(std::cerr, errStyle, [oneTerminal] {
    if (oneTerminal) std::cout.flush();
  });
  const SinkRegistration diagnosticRegistration(diagnostics);

  std::optional<TracingAdapter> tracing;
  HostAdapter* adapter = hosts.adapter();
  if (adapter != nullptr && trace != nullptr) adapter = &tracing.emplace(*adapter, *trace);
  const AdapterRegistration adapterRegistration(adapter);

  JobRunner runner(diagnostics, trace, hosts.embedded ? &*hosts.embedded : nullptr);
  for (const Job& job : jobs) {
    warnOfForeignBytes(job, *options.encoding);
    runner.run(job);
  }
  std::cout.flush();
  if (!std::cout) return refuse("The output could not be written to the end.");
  if (trace != nullptr && trace->failed()) {
    return refuse("The trace could not be written to the end: " + trace->error() + ".");
  }
  return diagnostics.errors() > 0 ? kExitErrors : kExitSuccess;
}

}  // namespace

int runJobs(const RunOptions& options) {
  const ScopedEncoding encoding(options.encoding);
  const ScopedLanguage language(options.language);

  // All jobs are read before the first one runs, so that a wrong name changes nothing.
  std::vector<Job> jobs;
  for (const std::string& path : options.jobs) {
    std::variant<Job, JobError> job = readJob(path);
    if (const auto* error = std::get_if<JobError>(&job)) return refuse(error->text);
    jobs.push_back(std::get<Job>(std::move(job)));
  }

  Hosts hosts;
  PathContext paths;
  paths.handles = options.handles;
  if (options.host == "embedded") {
    hosts.embedded.emplace();
  } else if (options.host.starts_with(kScriptPrefix)) {
    auto loaded = ScriptedHost::load(options.host.substr(kScriptPrefix.size()));
    if (const auto* error = std::get_if<HostScriptError>(&loaded)) return refuse(error->text());
    hosts.scripted = std::get<std::unique_ptr<ScriptedHost>>(std::move(loaded));
    paths.workingDirectory = hosts.scripted->workingDirectory();
    // A handle of the command line comes before one of the same name in the script.
    paths.handles.merge(hosts.scripted->fileHandles());
  } else if (options.host != "none") {
    return refuse(
        fmt::format("There is no host \"{}\": write embedded, none or script=FILE.", options.host));
  }
  const ScopedPathContext pathContext(paths);

  if (options.traceFile.empty()) return runAll(options, jobs, hosts, nullptr);
  const TraceFile file(options.traceFile);
  if (file.descriptor() < 0) {
    return refuse(fmt::format("The trace {} cannot be written: {}.", options.traceFile,
                              std::strerror(errno)));
  }
  TraceWriter trace(file.descriptor(), options.traceSecrets ? TraceWriter::Secrets::kShown
                                                            : TraceWriter::Secrets::kHidden);
  return runAll(options, jobs, hosts, &trace);
}

}  // namespace vornwout
