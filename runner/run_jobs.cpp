// Sets up a run: encoding, language, paths, host, trace and what shows output; then runs the jobs.
#include <cerrno>
#include <cstring>
#include <iostream>
#include <optional>
#include <variant>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/controller/embedded_host.h"
#include "platform/adapter/host_adapter.h"
#include "platform/files/path_context.h"
#include "platform/strings/language.h"
#include "platform/strings/localized.h"
#include "platform/trace/trace_writer.h"
#include "platform/trace/tracing_adapter.h"
#include "runner/diagnostic_sink.h"
#include "runner/job_runner.h"
#include "runner/run_options.h"
#include "runner/scripted_host.h"
#include "runner/standard_streams.h"
#include "runner/terminal/progress.h"
#include "runner/terminal/terminal_sink.h"

namespace vornwout {
namespace {

constexpr std::string_view kScriptPrefix = "script=";

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

/// What tells a file from others, whatever its names are.
struct FileIdentity {
  dev_t device;
  ino_t number;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// The identity of a regular file; nothing for what is none, for a device keeps what it is when it
/// is written to. `path` "-" is standard input.
std::optional<FileIdentity> identityOf(const std::string& path) {
  struct stat status {};
  const int result = path == "-" ? fstat(STDIN_FILENO, &status) : stat(path.c_str(), &status);
  if (result != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

/// Why the trace cannot take the file that it was given; empty when it can. Opening it would empty
/// it, so that it must not be one that the run reads.
std::string traceFileProblem(const RunOptions& options) {
  const std::optional<FileIdentity> trace = identityOf(options.traceFile);
  if (!trace) return {};
  for (const std::string& job : options.jobs) {
    if (identityOf(job) == trace) {
      return localized("The trace ^1 is a job of this run. Name another file.", options.traceFile);
    }
  }
  if (options.host.starts_with(kScriptPrefix) &&
      identityOf(options.host.substr(kScriptPrefix.size())) == trace) {
    return localized("The trace ^1 is the scripted host's file. Name another file.",
                     options.traceFile);
  }
  return {};
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
  StandardProgress progress(options.quiet, options.color);
  DiagnosticSink diagnostics(std::cerr, errStyle, [oneTerminal, &progress] {
    progress.hide();
    if (oneTerminal) std::cout.flush();
  });
  const SinkRegistration diagnosticRegistration(diagnostics);

  std::optional<TracingAdapter> tracing;
  HostAdapter* adapter = hosts.adapter();
  if (adapter != nullptr && trace != nullptr) adapter = &tracing.emplace(*adapter, *trace);
  const AdapterRegistration adapterRegistration(adapter);

  JobRunner runner(diagnostics, trace, hosts.embedded ? &*hosts.embedded : nullptr, readerHasLeft);
  for (const Job& job : jobs) {
    if (!runner.run(job)) break;
  }
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
    const std::string script = options.host.substr(kScriptPrefix.size());
    if (script.empty())
      return refuse(localized("The scripted host has no file: write script=FILE."));
    auto loaded = ScriptedHost::load(script);
    if (const auto* error = std::get_if<HostScriptError>(&loaded)) return refuse(error->text());
    hosts.scripted = std::get<std::unique_ptr<ScriptedHost>>(std::move(loaded));
    paths.workingDirectory = hosts.scripted->workingDirectory();
    // A handle of the command line comes before one of the same name in the script.
    paths.handles.merge(hosts.scripted->fileHandles());
  } else if (options.host != "none") {
    return refuse(
        localized("There is no host \"^1\": write embedded, none or script=FILE.", options.host));
  }
  const ScopedPathContext pathContext(paths);

  if (options.traceFile.empty()) return runAll(options, jobs, hosts, nullptr);
  if (const std::string problem = traceFileProblem(options); !problem.empty()) {
    return refuse(problem);
  }
  const TraceFile file(options.traceFile);
  if (file.descriptor() < 0) {
    return refuse(
        localized("The trace ^1 cannot be written: ^2.", options.traceFile, std::strerror(errno)));
  }
  TraceWriter trace(file.descriptor(), options.traceSecrets ? TraceWriter::Secrets::kShown
                                                            : TraceWriter::Secrets::kHidden);
  return runAll(options, jobs, hosts, &trace);
}

}  // namespace vornwout
