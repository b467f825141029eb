#include "runner/job_runner.h"

#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/controller/embedded_host.h"
#include "platform/adapter/go_to_caller.h"
#include "platform/text/encoding.h"
#include "tests/support/command_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Runs a job with everything that belongs to it, and keeps what was shown and traced.
class JobRun {
 public:
  JobRun(const std::string& text, HostAdapter* adapter, EmbeddedHost* host = nullptr)
      : JobRun(Job{"job.qxs", text}, adapter, host) {}

  std::string shown() const { return shown_.str(); }
  std::string trace() const { return traced_.str(); }
  int errors() const { return errors_; }

 private:
  JobRun(const Job& job, HostAdapter* adapter, EmbeddedHost* host) {
    TraceWriter trace(traced_);
    const SinkRegistration traceRegistration(trace);
    std::optional<SinkRegistration> documents;
    if (host != nullptr) documents.emplace(host->sink());
    DiagnosticSink diagnostics(shown_, TerminalStyle(), [] {});
    const SinkRegistration diagnosticRegistration(diagnostics);
    const AdapterRegistration registration(adapter);
    JobRunner(diagnostics, &trace, host).run(job);
    errors_ = diagnostics.errors();
  }

  std::ostringstream shown_;
  std::ostringstream traced_;
  int errors_ = 0;
};

/// The events of a trace that begin or end an entry, without their other members.
std::vector<std::string> entryEvents(const std::string& trace) {
  std::vector<std::string> events;
  std::istringstream lines(trace);
  for (std::string line; std::getline(lines, line);) {
    for (const char* event : {"enter", "leave", "unwind"}) {
      if (line.starts_with(std::string(R"({"event":")") + event + '"')) events.emplace_back(event);
    }
  }
  return events;
}

TEST(JobRunner, UnwindingHostEndsTheCommandAndTheJobGoesOn) {
  FakeHost host;
  host.whenAsked = [&host] {
    if (host.requests.size() == 1) throw VornGoToCaller();
  };
  const JobRun run("OUTPUT NEW NAME=a.\nOUTPUT NEW NAME=b.\n", &host);
  EXPECT_THAT(entryEvents(run.trace()), ElementsAre("enter", "unwind", "enter", "leave"));
  EXPECT_THAT(run.trace(), HasSubstr(R"({"event":"unwind","entry":"outnew_"})"));
  EXPECT_EQ(run.errors(), 1);
  EXPECT_THAT(run.shown(), HasSubstr("job.qxs:1:1: error: The host broke the command off."));
  ASSERT_EQ(host.requests.size(), 2u);
  EXPECT_EQ(host.requests[1].name, "b");
}

struct Thrown {
  const char* description;
  std::function<void()> raise;
  const char* reason;
};

TEST(JobRunner, WhateverTheHostThrowsIsAnErrorAndTheJobGoesOn) {
  const char* const nothing = nullptr;
  const Thrown cases[] = {
      {"runtime_error", [] { throw std::runtime_error("disk full"); }, "disk full"},
      {"runtime_error without a text", [] { throw std::runtime_error(""); },
       "an unknown failure of the host"},
      {"int", [] { throw 5; }, "an unknown failure of the host"},
      {"const char*", [] { throw "no space"; }, "no space"},
      {"null const char*", [nothing] { throw nothing; }, "an unknown failure of the host"},
  };
  for (const Thrown& thrown : cases) {
    SCOPED_TRACE(thrown.description);
    FakeHost host;
    host.whenAsked = [&] {
      if (host.requests.size() == 1) thrown.raise();
    };
    const JobRun run("OUTPUT NEW NAME=a.\nOUTPUT NEW NAME=b.\n", &host);
    EXPECT_THAT(entryEvents(run.trace()), ElementsAre("enter", "leave", "enter", "leave"));
    EXPECT_EQ(run.errors(), 1);
    EXPECT_THAT(run.shown(), HasSubstr("job.qxs:1:1: error: The command was broken off: " +
                                       std::string(thrown.reason) + "."));
    EXPECT_EQ(host.requests.size(), 2u);
  }
}

/// Labels of what stands below a document's root: "heading[child child] log".
std::string outline(const DocumentObject& object) {
  std::string text;
  for (const DocumentObject& child : object.children) {
    text += (text.empty() ? "" : " ") + child.label;
    if (!child.children.empty()) text += "[" + outline(child) + "]";
  }
  return text;
}

struct Misnamed {
  const char* command;
  const char* heading;
};

TEST(JobRunner, ErrorOfAnUnknownCommandStandsBelowItsOwnHeading) {
  const Misnamed cases[] = {
      {"FREQUENCIES x.", "FREQUENCIES X"},
      {"pivot dance.", "PIVOT DANCE"},
      {"'text'.", "Messages"},
      {"OUTPUT.", "OUTPUT"},
      {"pr\xC3\xBC"
       "fe 5.",
       "PRÜFE"},
  };
  for (const Misnamed& misnamed : cases) {
    SCOPED_TRACE(misnamed.command);
    EmbeddedHost host;
    const JobRun run("OUTPUT COMMENT TEXT='a'.\n" + std::string(misnamed.command) + "\n", &host,
                     &host);
    ASSERT_EQ(host.documents().size(), 1u);
    const DocumentObject& root = host.documents()[0]->root();
    EXPECT_EQ(outline(root),
              "Output Comment[Log Comment] " + std::string(misnamed.heading) + "[Log Error]");
    const auto& log = std::get<LogContent>(root.children.at(1).children.at(0).content.get());
    EXPECT_EQ(log.text + ".", misnamed.command);
  }
}

TEST(JobRunner, NamesNoSecretInTheHeadingOfAnUnknownCommand) {
  EmbeddedHost host;
  const JobRun run("PASSWORD s3cret.\n", &host, &host);
  ASSERT_EQ(host.documents().size(), 1u);
  EXPECT_EQ(outline(host.documents()[0]->root()), "PASSWORD[Log Error]");
  EXPECT_THAT(run.shown(),
              HasSubstr("error: There is no command PASSWORD ***.\n  PASSWORD ***.\n"));
  EXPECT_THAT(run.trace(), Not(HasSubstr("s3cret")));
}

TEST(JobRunner, RunsNoCommandOnceItIsOver) {
  std::ostringstream shown;
  DiagnosticSink diagnostics(shown, TerminalStyle(), [] {});
  const SinkRegistration registration(diagnostics);
  int asked = 0;
  JobRunner runner(diagnostics, nullptr, nullptr, [&asked] { return ++asked == 2; });
  const Job job{"job.qxs", "A.\nB.\nC.\n"};
  EXPECT_FALSE(runner.run(job));
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(diagnostics.errors(), 2);
  EXPECT_TRUE(runner.run(job)) << "nobody says that it is over";
}

TEST(JobRunner, ErrorOfACommandWithoutTokensStandsBelowItsOwnHeading) {
  EmbeddedHost host;
  const JobRun run("OUTPUT COMMENT TEXT='a'.\n/* without an end\n", &host, &host);
  ASSERT_EQ(host.documents().size(), 1u);
  EXPECT_THAT(outline(host.documents()[0]->root()), testing::StartsWith("Output Comment[Log "
                                                                        "Comment] Messages["));
  EXPECT_EQ(run.errors(), 1);
}

TEST(JobRunner, LogOfACommandNamesTheEntrysCommand) {
  EmbeddedHost host;
  const JobRun run("output\n  new name=a.\n", &host, &host);
  const DocumentObject& log = host.documents().at(0)->root().children.at(0);
  EXPECT_EQ(log.command, "OUTPUT NEW");
  EXPECT_EQ(std::get<LogContent>(log.content.get()).text, "output\n  new name=a");
}

struct Foreign {
  const char* encoding;
  std::string job;
  const char* shown;
};

TEST(JobRunner, FirstForeignByteOfAJobIsAWarningWithItsPlace) {
  const Foreign cases[] = {
      {"UTF-8", "\r* Gr\xC3\xBC n\xFC \xFF.\r",
       "job.qxs:2:8: warning: The byte FC is no valid UTF-8.\n"
       "  * Grü n� �.\n"
       "         ^\n"
       "  help: Name the job's encoding with --encoding, for instance --encoding windows-1252.\n"},
      {"Shift-JIS", "* \x83\x5C\xFF.\n",
       "job.qxs:1:4: warning: The byte FF is no valid Shift_JIS.\n"
       "  * ソ�.\n"
       "      ^\n"
       "  help: Name the job's encoding with --encoding, for instance --encoding UTF-8.\n"},
  };
  for (const Foreign& c : cases) {
    SCOPED_TRACE(c.encoding);
    const ScopedEncoding encoding(Encoding::find(c.encoding));
    FakeHost host;
    const JobRun run(c.job, &host);
    EXPECT_EQ(run.shown(), c.shown);
    EXPECT_EQ(run.trace(), "") << "a job's bytes are no event";
    EXPECT_EQ(run.errors(), 0);
  }
}

}  // namespace
}  // namespace vornwout
