// Every entry point, with every single one of its allocations failing in turn.
//
// The program replaces operator new: while a test asks for it, the n-th allocation throws. A run is
// repeated for n = 1, 2, 3, ... until it needs fewer than n. Each failing run must let bad_alloc
// out or end as usual, leave nothing of the call behind, and not disturb the next run. Memory that
// the failing run keeps would show in the leak check that follows each test.
#include <algorithm>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/message/parser_message.h"
#include "platform/pivot/bp_procedure.h"
#include "tests/support/command_run.h"
#include "vornwout/entry_points.h"

namespace {

/// Allocations until one fails; negative while none shall.
long allocationsLeft = -1;
bool allocationFailed = false;

bool failsNow() {
  if (allocationsLeft < 0 || allocationsLeft-- > 0) return false;
  allocationFailed = true;
  return true;
}

void* allocate(std::size_t size) {
  if (failsNow()) return nullptr;
  return std::malloc(std::max<std::size_t>(size, 1));
}

void* allocateOrThrow(std::size_t size) {
  void* memory = allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace vornwout {
namespace {

/// Makes the n-th allocation (from 1) fail while it lives; only that one.
class FailingAllocation {
 public:
  explicit FailingAllocation(long n) {
    allocationFailed = false;
    allocationsLeft = n - 1;
  }
  ~FailingAllocation() { allocationsLeft = -1; }
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
};

/// A host that answers without keeping anything, and counts.
class CountingHost : public HostAdapter, public OutputControllerInterface {
 public:
  bool IsPathExpansionSuppressed() override { return false; }
  OutputControllerInterface* GetOutputController() override { return this; }
  std::string ExportOutput(const std::string& document) override {
    ++requests;
    lastName.assign(document);
    if (refuses) throw std::runtime_error("The output is kept by someone else at the moment.");
    return "<outputExportResponse success='true' errorCode='0' name='a rather long name' "
           "documentFile='/tmp/a/rather/long/name' imageRoot='/tmp/a/rather/long/root' "
           "imageFormat='PNG' imageCount='3'><warning code='0' name='a table with a long name'/>"
           "</outputExportResponse>";
  }
  std::string ModifyOutput(const std::string& document) override {
    ++requests;
    lastName.assign(document);
    if (refuses) throw std::runtime_error("The output is kept by someone else at the moment.");
    return "(3,2,1) Invalid format (a_format_beyond_the_short_string) Invalid font (Foo)";
  }
  bool SendRequest(const VornwMsgOutputControllerRequest& request,
                   VornwMsgOutputControllerResponse& response) override {
    ++requests;
    lastName.assign(request.getName());
    if (refuses) {
      response.setError(3, "There is no document ^1 in this list of documents.", lastName.c_str());
      return false;
    }
    response.addDocument(OutputDocumentItem{"a document with a rather long name", true});
    response.addDocument(std::nullopt);
    response.addDocument(OutputDocumentItem{"", false});
    return true;
  }

  bool refuses = false;
  int requests = 0;
  std::string lastName;
};

/// Counts what it is told of openings and closings; it allocates nothing.
class BalanceSink : public OutputSink {
 public:
  void procedureOpened(const ProcedureRecord&) override { ++open; }
  void procedureClosed(const ProcedureRecord&) override { --open; }
  int open = 0;
};

struct FaultCase {
  const char* condition;
  void (*entry)();
  const char* text;
  bool refuses;
};

class AllocationFault : public testing::TestWithParam<FaultCase> {
 protected:
  /// Everything that an undisturbed run shows, and what it sent.
  std::vector<std::string> usualRun() {
    CountingHost host;
    host.refuses = GetParam().refuses;
    const CommandRun run(GetParam().entry, GetParam().text, &host);
    std::vector<std::string> seen = run.events;
    for (const std::string& call : run.parserCalls()) seen.push_back(call);
    for (const auto& table : run.tables) {
      seen.push_back(std::to_string(table->cells.size()) + " cells");
      for (const PivotCell& cell : table->cells) seen.push_back(renderText(cell.value));
    }
    seen.push_back(std::to_string(host.requests) + " requests, the last for " + host.lastName);
    return seen;
  }
};

TEST_P(AllocationFault, LeavesNothingBehindWhereverItStrikes) {
  const std::vector<std::string> usual = usualRun();
  Tokenizer tokenizer(GetParam().text);
  TokenizedCommand command;
  ASSERT_TRUE(tokenizer.next(command));
  CountingHost host;
  host.refuses = GetParam().refuses;
  host.lastName.reserve(1000);

  constexpr long kMost = 100000;
  long n = 1;
  for (bool struck = true; struck; ++n) {
    ASSERT_LT(n, kMost);
    BalanceSink sink;
    host.requests = 0;
    bool threw = false;
    {
      const SinkRegistration registration(sink);
      const AdapterRegistration adapter(&host);
      const CurrentCommand current(command, 2);
      const FailingAllocation fault(n);
      try {
        GetParam().entry();
      } catch (const std::bad_alloc&) {
        threw = true;
      }
    }
    struck = allocationFailed;
    EXPECT_TRUE(!threw || struck) << n;
    EXPECT_EQ(sink.open, 0) << n;
    EXPECT_LE(host.requests, 1) << n;
    EXPECT_EQ(BpProcedure::current(), nullptr) << n;
    EXPECT_EQ(ParserMessage::current(), nullptr) << n;
    EXPECT_EQ(CurrentCommand::current(), nullptr) << n;
    EXPECT_EQ(GetAdapter(), nullptr) << n;
    EXPECT_TRUE(outputSinks().empty()) << n;
    ASSERT_EQ(usualRun(), usual) << "after the failure of allocation " << n;
  }
  EXPECT_GT(n, 5) << "the faults did not reach the entry";
}

INSTANTIATE_TEST_SUITE_P(
    EveryEntry, AllocationFault,
    testing::Values(
        FaultCase{"NewWithName", outnew_,
                  "OUTPUT NEW NAME=a_name_beyond_the_short_string MINIMIZED=YES.", false},
        FaultCase{"NewRefusedByTheParser", outnew_, "OUTPUT NEW TYPE=PAPER COLOR=RED MINIMIZED=.",
                  false},
        FaultCase{"NewWithNameTooLong", outnew_,
                  "OUTPUT NEW NAME="
                  "a123456789b123456789c123456789d123456789e123456789f123456789g123456789.",
                  false},
        FaultCase{"NewWithInvalidName", outnew_, "OUTPUT NEW NAME='no valid name, and not short'.",
                  false},
        FaultCase{"NewRefusedByTheHost", outnew_, "OUTPUT NEW NAME=a_name_beyond_the_short_string.",
                  true},
        FaultCase{"Name", outname_,
                  "OUTPUT NAME NAME=a_name_beyond_the_short_string MINIMIZED=YES.", false},
        FaultCase{"StringTable", stbprint_, "STB PRINT PROCEDURE='output.qbb' LANGUAGE='de'.",
                  false},
        FaultCase{"NameOfWrongShape", outname_, "OUTPUT NAME a b.", false},
        FaultCase{"Activate", outactiv8_, "OUTPUT ACTIVATE a_name_beyond_the_short_string.", false},
        FaultCase{"ActivateRefusedByTheHost", outactiv8_,
                  "OUTPUT ACTIVATE a_name_beyond_the_short_string.", true},
        FaultCase{"Close", outclose_, "OUTPUT CLOSE NAME=a_name_beyond_the_short_string.", false},
        FaultCase{"CloseAll", outclose_, "OUTPUT CLOSE ALL.", false},
        FaultCase{"Open", outopen_,
                  "OUTPUT OPEN FILE='/a/file/beyond/the/short/string' PASSWORD='a long password'.",
                  false},
        FaultCase{"Export", outexport_,
                  "OUTPUT EXPORT NAME=a_name_beyond_the_short_string /CONTENTS LAYERS=ALL /HTML "
                  "DOCUMENTFILE='/tmp/a name beyond the short string' INTERACTLAYERS=YES /PNG "
                  "PERCENTSIZE=200 IMAGEROOT='/tmp/a root beyond the short string'.",
                  false},
        FaultCase{"ExportThatTheHostThrowsAt", outexport_,
                  "OUTPUT EXPORT /TEXT DOCUMENTFILE='/tmp/a name beyond the short string'.", true},
        FaultCase{"ExportOfWrongValues", outexport_,
                  "OUTPUT EXPORT /DOC DOCUMENTFILE='/tmp/a name beyond the short string' "
                  "PAGESIZE=INCHES(8.5) /REPORT DOCUMENTFILE='/tmp/b' URL=('one') /EMF "
                  "PERCENTSIZE=300.",
                  false},
        FaultCase{"OpenWithSecretsInItsMessages", outopen_,
                  "OUTPUT OPEN FILE= PASSWORD='a password beyond the short string' NAEM=1.", false},
        FaultCase{"SaveWithSecretsInItsMessages", outsave_,
                  "OUTPUT SAVE OUTFILE=a PASSWORD 'a long password' /PASSPROTECT 'a longer one'.",
                  false},
        FaultCase{"SaveWithPasswordTooLong", outsave_,
                  "OUTPUT SAVE OUTFILE='/a' /PASSPROTECT PASSWORD='a long password' "
                  "ENCRYPTEDPW=NO.",
                  false},
        FaultCase{"Display", outdisp_, "OUTPUT DISPLAY.", false},
        FaultCase{"DisplayRefusedByTheHost", outdisp_, "OUTPUT DISPLAY.", true},
        FaultCase{"DisplayRefusedByTheParser", outdisp_, "OUTPUT DISPLAY and what follows it.",
                  false},
        FaultCase{"Comment", outcomnt_,
                  "OUTPUT COMMENT TEXT='a text beyond the short string' COLOR=magenta WIDTH=300 "
                  "/LINE TEXT='another text beyond it' BGCOLOR='#a0b0c0' BOLD=YES /LINE.",
                  false},
        FaultCase{"CommentWithWarnings", outcomnt_,
                  "OUTPUT COMMENT COLOR=mauve WIDTH=5000 /LINE TEXT='a' 'b' BGCOLOR=RGB(1 2 3).",
                  false},
        FaultCase{"ModifyWithReport", outmodify_,
                  "OUTPUT MODIFY NAME='a name & beyond the short string' "
                  "/REPORT PRINTREPORT=YES /SELECT ALL EXCEPT=TABLES LOGS.",
                  false},
        FaultCase{"ModifyByEveryModifier", outmodify_,
                  "OUTPUT MODIFY /SELECT TABLES /IF COMMANDS='FREQUENCIES(2,3)' LAST SUBTYPES='a "
                  "subtype beyond it' LABELS=EXACT('a') ENDS('b') INSTANCES=1 LAST VISIBLEONLY=YES "
                  "/INDEXING INDEXTYPE=ROMANLOW INDEXSTART=xiv /DELETEOBJECT "
                  "/GRAPHS VIZSTYLESHEET='a style sheet beyond it' "
                  "/OBJECTPROPERTIES OUTLINELABEL='a label & beyond it' SIZE=2 1 INCHES "
                  "/TABLE TABLETITLE='a title & beyond it' SELECTEDLAYER=['a' 1 ALL 'b'] "
                  "SORT=COLLABEL('a label beyond it') "
                  "/TABLECELLS SELECT=['a label' BODY POSITION(1 2)] COLUMNWIDTH=POINTS(20) "
                  "STYLE=BOLD TEXTCOLOR=RGB(1 2 3) REPLACE='a text' "
                  "/TEXTS TEXT='a text & beyond it' /SELECT LOGS /DELETEOBJECT.",
                  false},
        FaultCase{"ModifyWithFailingGroups", outmodify_,
                  "OUTPUT MODIFY /SELECT TABLES /DELETEOBJECT /SELECT TABLES /IF COMMANDS='F(2' "
                  "INSTANCES=A /SELECT TABLES EXCEPT=CHARTS.",
                  false},
        FaultCase{"ModifyRefusedByTheParser", outmodify_,
                  "OUTPUT MODIFY NAME= /SELECT FOO /TABLE TRANSPOSE=MAYBE.", false},
        FaultCase{"ModifyRefusedByTheHost", outmodify_,
                  "OUTPUT MODIFY /REPORT PRINTREPORT=YES /SELECT TABLES /DELETEOBJECT.", true}),
    [](const auto& test) { return test.param.condition; });

}  // namespace
}  // namespace vornwout
