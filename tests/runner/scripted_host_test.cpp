// The scripted host: its answers in their order, and how it comes from its file.
#include "runner/scripted_host.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <typeinfo>

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/adapter/go_to_caller.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

/// A host of a script that must be right.
std::unique_ptr<ScriptedHost> host(std::string_view script) {
  HostScriptResult result = parseHostScript(script, "host.json");
  if (const auto* error = std::get_if<HostScriptError>(&result)) ADD_FAILURE() << error->text();
  auto* read = std::get_if<HostScript>(&result);
  return std::make_unique<ScriptedHost>(read != nullptr ? std::move(*read) : HostScript());
}

struct Answer {
  bool success;
  VornwMsgOutputControllerResponse response;
};

Answer ask(ScriptedHost& scripted) {
  const VornwMsgOutputControllerRequest request(1, OutputControllerCommand::kDisplay, "", "",
                                                OutputDocumentMinimized::kNotApplicable);
  VornwMsgOutputControllerResponse response;
  const bool success = scripted.GetOutputController()->SendRequest(request, response);
  return {success, response};
}

constexpr const char* kPlainSuccess = R"(<outputExportResponse success="true" errorCode="0"/>)";

TEST(ScriptedHost, HasUsefulDefaults) {
  const auto scripted = host("{}");
  EXPECT_FALSE(scripted->IsPathExpansionSuppressed());
  EXPECT_NE(scripted->GetOutputController(), nullptr);
  EXPECT_EQ(scripted->workingDirectory(), "");
  EXPECT_TRUE(scripted->fileHandles().empty());
  const Answer answer = ask(*scripted);
  EXPECT_TRUE(answer.success);
  EXPECT_EQ(answer.response.GetOutputDocumentCount(), 0);
  EXPECT_EQ(scripted->ModifyOutput("<m/>"), "");
  EXPECT_EQ(scripted->ExportOutput("<e/>"), kPlainSuccess);
}

TEST(ScriptedHost, ReadsItsSettings) {
  const auto scripted = host(R"({
    "output_controller": false, "path_expansion_suppressed": true,
    "working_directory": "/srv/jobs", "file_handles": {"reports": "/srv/reports", "x": ""}})");
  EXPECT_TRUE(scripted->IsPathExpansionSuppressed());
  EXPECT_EQ(scripted->GetOutputController(), nullptr);
  EXPECT_EQ(scripted->workingDirectory(), "/srv/jobs");
  EXPECT_EQ(scripted->fileHandles(),
            (std::map<std::string, std::string>{{"reports", "/srv/reports"}, {"x", ""}}));
}

TEST(ScriptedHost, AnswersRequestsInOrder) {
  const auto scripted = host(R"({"responses": [
    {"success": false, "severity": 2, "message": "No document is named ^1.", "argument": "doc1"},
    {"success": true, "documents": [{"name": "a", "active": false}, null, {"name": "", "active": true}, {}]},
    {"success": false},
    {}]})");
  const Answer failure = ask(*scripted);
  EXPECT_FALSE(failure.success);
  EXPECT_EQ(failure.response.GetErrorSeverity(), 2);
  EXPECT_EQ(failure.response.GetMsgString().view(), "No document is named ^1.");
  EXPECT_EQ(failure.response.GetArgumentString().view(), "doc1");

  const Answer list = ask(*scripted);
  EXPECT_TRUE(list.success);
  ASSERT_EQ(list.response.GetOutputDocumentCount(), 4);
  EXPECT_EQ(list.response.GetOutputDocumentItem(0)->name.view(), "a");
  EXPECT_FALSE(list.response.GetOutputDocumentItem(0)->active);
  EXPECT_EQ(list.response.GetOutputDocumentItem(1), nullptr);
  EXPECT_EQ(list.response.GetOutputDocumentItem(2)->name.view(), "");
  EXPECT_TRUE(list.response.GetOutputDocumentItem(2)->active);
  EXPECT_FALSE(list.response.GetOutputDocumentItem(3)->active);

  const Answer plainFailure = ask(*scripted);
  EXPECT_FALSE(plainFailure.success);
  EXPECT_EQ(plainFailure.response.GetErrorSeverity(), 3);
  EXPECT_TRUE(ask(*scripted).success);
  const Answer behindTheLast = ask(*scripted);
  EXPECT_TRUE(behindTheLast.success);
  EXPECT_EQ(behindTheLast.response.GetErrorSeverity(), 0);
}

/// What a call throws: "runtime_error x", "string x", "int", "unwind", or "nothing".
template <typename Call>
std::string thrownBy(Call call) {
  try {
    call();
  } catch (const VornGoToCaller&) {
    return "unwind";
  } catch (const std::runtime_error& error) {
    return std::string("runtime_error ") + error.what();
  } catch (const char* text) {
    return std::string("string ") + text;
  } catch (int) {
    return "int";
  }
  return "nothing";
}

constexpr const char* kThrows =
    R"([{"throw": "standard", "text": "disk full"}, {"throw": "string", "text": "x"},
        {"throw": "other"}, {"throw": "unwind"}, {"throw": "standard"}, {}])";

TEST(ScriptedHost, ThrowsEveryKindFromAChange) {
  const auto scripted = host(std::string(R"({"modify": )") + kThrows + "}");
  for (const char* expected :
       {"runtime_error disk full", "string x", "int", "unwind", "runtime_error ", "nothing"}) {
    EXPECT_EQ(thrownBy([&] { scripted->ModifyOutput("<m/>"); }), expected);
  }
}

TEST(ScriptedHost, ThrowsEveryKindFromAnExport) {
  const auto scripted = host(std::string(R"({"export": )") + kThrows + "}");
  for (const char* expected :
       {"runtime_error disk full", "string x", "int", "unwind", "runtime_error ", "nothing"}) {
    EXPECT_EQ(thrownBy([&] { scripted->ExportOutput("<e/>"); }), expected);
  }
}

TEST(ScriptedHost, AnswersChangesInOrder) {
  const auto scripted =
      host(R"json({"modify": [{"result": "(3,2,1)"}, {}, {"result": "(1)"}]})json");
  EXPECT_EQ(scripted->ModifyOutput("<m/>"), "(3,2,1)");
  EXPECT_EQ(scripted->ModifyOutput("<m/>"), "");
  EXPECT_EQ(scripted->ModifyOutput("<m/>"), "(1)");
  EXPECT_EQ(scripted->ModifyOutput("<m/>"), "");
}

TEST(ScriptedHost, AnswersExportsInOrder) {
  const auto scripted = host(R"({"export": [
    {"response": ""}, {"response": "<not xml"}, {},
    {"response_spec": {"success": false, "error_code": 6, "name": "doc1", "document_file": "a.pdf",
      "image_root": "r", "image_format": "PNG", "image_count": 4,
      "warnings": [["Table 1", "T2"], [], ["T3"]]}},
    {"response_spec": {"image_count": null, "warnings": []}}]})");
  EXPECT_EQ(scripted->ExportOutput("<e/>"), "");
  EXPECT_EQ(scripted->ExportOutput("<e/>"), "<not xml");
  EXPECT_EQ(scripted->ExportOutput("<e/>"), kPlainSuccess);
  EXPECT_EQ(scripted->ExportOutput("<e/>"),
            R"(<outputExportResponse success="false" errorCode="6" name="doc1" )"
            R"(documentFile="a.pdf" imageRoot="r" imageFormat="PNG" imageCount="4">)"
            R"(<warning code="0" name="Table 1"/><warning code="0" name="T2"/>)"
            R"(<warning code="2" name="T3"/></outputExportResponse>)");
  EXPECT_EQ(scripted->ExportOutput("<e/>"), kPlainSuccess);
  EXPECT_EQ(scripted->ExportOutput("<e/>"), kPlainSuccess);
}

TEST(ScriptedHost, ConvertsItsTextsToTheCurrentEncoding) {
  const auto scripted =
      host(R"({"working_directory": "/\u00e4", "file_handles": {"\u00e4": "/\u00f6"},
    "responses": [{"success": false, "message": "\u00e4", "argument": "\u00f6"},
                  {"documents": [{"name": "\u00fc"}]}],
    "modify": [{"result": "\u00e4"}, {"throw": "standard", "text": "\u00f6"},
               {"throw": "string", "text": "\u00fc"}],
    "export": [{"response": "\u00e4"}, {"response_spec": {"name": "\u00e4"}}]})");
  const ScopedEncoding scope(Encoding::find("windows-1252"));
  EXPECT_EQ(scripted->workingDirectory(), "/\xE4");
  EXPECT_EQ(scripted->fileHandles(), (std::map<std::string, std::string>{{"\xE4", "/\xF6"}}));
  const Answer failure = ask(*scripted);
  EXPECT_EQ(failure.response.GetMsgString().view(), "\xE4");
  EXPECT_EQ(failure.response.GetArgumentString().view(), "\xF6");
  EXPECT_EQ(ask(*scripted).response.GetOutputDocumentItem(0)->name.view(), "\xFC");
  EXPECT_EQ(scripted->ModifyOutput(""), "\xE4");
  EXPECT_EQ(thrownBy([&] { scripted->ModifyOutput(""); }), "runtime_error \xF6");
  EXPECT_EQ(thrownBy([&] { scripted->ModifyOutput(""); }), "string \xFC");
  // A response is UTF-8, whatever the encoding of the job.
  EXPECT_EQ(scripted->ExportOutput(""), "\xC3\xA4");
  EXPECT_NE(scripted->ExportOutput("").find("name=\"\xC3\xA4\""), std::string::npos);
}

/// A file that is gone when its owner is.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string_view content)
      : name_(testing::TempDir() + "host_script_" + std::to_string(::getpid()) + ".json") {
    std::ofstream(name_, std::ios::binary) << content;
  }
  ~TemporaryFile() { std::remove(name_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

TEST(ScriptedHostLoad, ReadsAFile) {
  const TemporaryFile file(R"({"working_directory": "/x"})");
  const auto loaded = ScriptedHost::load(file.name());
  ASSERT_TRUE(std::holds_alternative<std::unique_ptr<ScriptedHost>>(loaded));
  EXPECT_EQ(std::get<std::unique_ptr<ScriptedHost>>(loaded)->workingDirectory(), "/x");
}

TEST(ScriptedHostLoad, NamesTheFileInItsErrors) {
  const TemporaryFile file("{\n1}");
  const auto loaded = ScriptedHost::load(file.name());
  ASSERT_TRUE(std::holds_alternative<HostScriptError>(loaded));
  const auto& error = std::get<HostScriptError>(loaded);
  EXPECT_EQ(error.file, file.name());
  EXPECT_EQ(error.place, (SourcePlace{2, 1}));
}

TEST(ScriptedHostLoad, TellsWhyAFileCannotBeRead) {
  struct Case {
    const char* file;
    const char* error;
  };
  const Case cases[] = {
      {"/nowhere/host.json",
       "The scripted host's file /nowhere/host.json cannot be read: No such file or directory."},
      {"/", "The scripted host's file / cannot be read: Is a directory."},
      {"/dev/zero",
       "The scripted host's file /dev/zero cannot be read: the file is larger than 16 MiB."},
  };
  for (const Case& c : cases) {
    const auto loaded = ScriptedHost::load(c.file);
    ASSERT_TRUE(std::holds_alternative<HostScriptError>(loaded)) << c.file;
    EXPECT_EQ(std::get<HostScriptError>(loaded).text(), c.error);
  }
}

}  // namespace
}  // namespace vornwout
