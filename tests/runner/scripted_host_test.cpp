// The scripted host: its file, what is refused in it, and the answers in their order.
#include "runner/scripted_host.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <typeinfo>

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/adapter/go_to_caller.h"
#include "platform/text/encoding.h"
#include "runner/response_xml.h"

namespace vornwout {
namespace {

/// A host of a script that must be right.
std::unique_ptr<ScriptedHost> host(std::string_view script) {
  HostScriptResult result = parseHostScript(script, "host.json");
  if (const auto* error = std::get_if<HostScriptError>(&result)) ADD_FAILURE() << error->text();
  auto* read = std::get_if<HostScript>(&result);
  return std::make_unique<ScriptedHost>(read != nullptr ? std::move(*read) : HostScript());
}

/// The error of a script that must be wrong.
std::string errorOf(std::string_view script) {
  const HostScriptResult result = parseHostScript(script, "host.json");
  const auto* error = std::get_if<HostScriptError>(&result);
  return error != nullptr ? error->text() : "no error";
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

TEST(HostScript, NamesThePlaceAndTheReasonOfWhatItRefuses) {
  struct Case {
    const char* script;
    const char* error;
  };
  const Case cases[] = {
      {"[]", "host.json:1:1: expected an object, found a list"},
      {"{\n  \"respones\": []}",
       "host.json:2:3: /respones: unknown member \"respones\"; known here: \"output_controller\", "
       "\"path_expansion_suppressed\", \"working_directory\", \"file_handles\", \"responses\", "
       "\"modify\", \"export\""},
      {R"({"responses": [{}, {"ok": 1}]})",
       "host.json:1:21: /responses/1/ok: unknown member \"ok\"; known here: \"success\", "
       "\"severity\", \"message\", \"argument\", \"documents\""},
      {R"({"responses": [{"documents": [null, {"title": ""}]}]})",
       "host.json:1:38: /responses/0/documents/1/title: unknown member \"title\"; known here: "
       "\"name\", \"active\""},
      {R"({"modify": [{"response": ""}]})",
       "host.json:1:14: /modify/0/response: unknown member \"response\"; known here: \"result\", "
       "\"throw\", \"text\""},
      {R"({"export": [{"result": ""}]})",
       "host.json:1:14: /export/0/result: unknown member \"result\"; known here: \"response\", "
       "\"response_spec\", \"throw\", \"text\""},
      {R"({"export": [{"response_spec": {"code": 1}}]})",
       "host.json:1:32: /export/0/response_spec/code: unknown member \"code\"; known here: "
       "\"success\", \"error_code\", \"name\", \"document_file\", \"image_root\", "
       "\"image_format\", \"image_count\", \"warnings\""},
      {R"({"output_controller": "yes"})",
       "host.json:1:23: /output_controller: expected true or false, found a string"},
      {R"({"path_expansion_suppressed": 0})",
       "host.json:1:31: /path_expansion_suppressed: expected true or false, found a whole number"},
      {R"({"working_directory": null})",
       "host.json:1:23: /working_directory: expected a string, found null"},
      {R"({"file_handles": []})",
       "host.json:1:18: /file_handles: expected an object, found a list"},
      {R"({"file_handles": {"a/b": 1}})",
       "host.json:1:26: /file_handles/a~1b: expected a string, found a whole number"},
      {R"({"responses": {}})", "host.json:1:15: /responses: expected a list, found an object"},
      {R"({"responses": [null]})", "host.json:1:16: /responses/0: expected an object, found null"},
      {R"({"responses": [{"severity": 1.5}]})",
       "host.json:1:29: /responses/0/severity: expected a whole number, found a number with "
       "decimals"},
      {R"({"responses": [{"severity": 2147483648}]})",
       "host.json:1:29: /responses/0/severity: expected a whole number from -2147483648 to "
       "2147483647, found 2147483648"},
      {R"({"responses": [{"severity": -2147483649}]})",
       "host.json:1:29: /responses/0/severity: expected a whole number from -2147483648 to "
       "2147483647, found -2147483649"},
      {R"({"responses": [{"message": "a\u0000b"}]})",
       "host.json:1:28: /responses/0/message: a text cannot hold the character U+0000"},
      {R"({"responses": [{"documents": [3]}]})",
       "host.json:1:31: /responses/0/documents/0: expected an object or null, found a whole "
       "number"},
      {R"({"responses": [{"documents": [{"active": null}]}]})",
       "host.json:1:42: /responses/0/documents/0/active: expected true or false, found null"},
      {R"({"modify": [{"throw": "bad"}]})",
       "host.json:1:23: /modify/0/throw: expected \"standard\", \"string\", \"other\" or "
       "\"unwind\", found \"bad\""},
      {R"({"export": [{"throw": true}]})",
       "host.json:1:23: /export/0/throw: expected a string, found true or false"},
      {R"({"modify": [{"result": "", "throw": "other"}]})",
       "host.json:1:13: /modify/0: \"result\" and \"throw\" exclude each other"},
      {R"({"export": [{"response": "", "throw": "other"}]})",
       "host.json:1:13: /export/0: \"response\" and \"throw\" exclude each other"},
      {R"({"export": [{"response_spec": {}, "throw": "other"}]})",
       "host.json:1:13: /export/0: \"response_spec\" and \"throw\" exclude each other"},
      {R"({"export": [{"response": "", "response_spec": {}}]})",
       "host.json:1:13: /export/0: \"response\" and \"response_spec\" exclude each other"},
      {R"({"modify": [{"text": "x"}]})",
       "host.json:1:13: /modify/0: \"text\" belongs to a \"throw\", which is missing"},
      {R"({"export": [{"text": "x"}]})",
       "host.json:1:13: /export/0: \"text\" belongs to a \"throw\", which is missing"},
      {R"({"export": [{"response": 1}]})",
       "host.json:1:26: /export/0/response: expected a string, found a whole number"},
      {R"({"export": [{"response_spec": {"image_count": "4"}}]})",
       "host.json:1:47: /export/0/response_spec/image_count: expected a whole number or null, "
       "found a string"},
      {R"({"export": [{"response_spec": {"warnings": [[], [], [], []]}}]})",
       "host.json:1:44: /export/0/response_spec/warnings: expected at most 3 lists, one per "
       "warning code, found 4"},
      {R"({"export": [{"response_spec": {"warnings": [[], "x"]}}]})",
       "host.json:1:49: /export/0/response_spec/warnings/1: expected a list, found a string"},
      {R"({"export": [{"response_spec": {"warnings": [["\u0001"]]}}]})",
       "host.json:1:46: /export/0/response_spec/warnings/0/0: XML cannot hold a control character "
       "of this text"},
      {R"({"export": [{"response_spec": {"name": "\ufffe"}}]})",
       "host.json:1:40: /export/0/response_spec/name: XML cannot hold a control character of this "
       "text"},
  };
  for (const Case& c : cases) EXPECT_EQ(errorOf(c.script), c.error);
}

TEST(HostScript, NamesThePlaceOfASyntaxError) {
  struct Case {
    const char* script;
    const char* start;
  };
  const Case cases[] = {
      {"", "host.json:1:1: syntax error"},
      {"{\"a\"", "host.json:1:5: /a: syntax error"},
      {"{\"responses\": [\n {},\n x]}", "host.json:3:2: /responses/1: syntax error"},
      {"{\"modify\": [{} {}]}", "host.json:1:16: /modify/1: syntax error"},
      {"{\"modify\": [] \"export\": []}", "host.json:1:22: syntax error"},
      {"{} x", "host.json:1:4: syntax error"},
      {"{\"working_directory\": \"\xC3\xA4\", \"x\": tru }", "host.json:1:36: /x: syntax error"},
      {"{\"working_directory\": \"a\xFF\"}", "host.json:1:25: /working_directory: syntax error"},
      {"{\"working_directory\": \"\\ud800\"}", "host.json:1:30: /working_directory: syntax error"},
      {"/* no comments */ {}", "host.json:1:1: syntax error"},
      {"{\"responses\": 1e999}", "host.json:1:19: /responses: number overflow"},
  };
  for (const Case& c : cases) {
    const std::string error = errorOf(c.script);
    EXPECT_EQ(error.substr(0, std::string_view(c.start).size()), c.start) << error;
    EXPECT_EQ(error.find("json.exception"), std::string::npos) << error;
    EXPECT_EQ(error.find('\xFF'), std::string::npos) << error;
  }
}

TEST(HostScript, RefusesAMemberThatStandsTwice) {
  EXPECT_EQ(errorOf("{\"modify\": [],\n \"modify\": []}"),
            "host.json:2:2: /modify: member \"modify\" stands twice");
  EXPECT_EQ(errorOf(R"({"file_handles": {"a": "1", "\u0061": "2"}})"),
            "host.json:1:29: /file_handles/a: member \"a\" stands twice");
  EXPECT_EQ(errorOf(R"({"responses": [{"success": true}, {"success": true}]})"), "no error");
}

TEST(HostScript, RefusesNestingDeeperThanItsLimit) {
  const std::string atLimit = std::string(63, '[') + std::string(63, ']');
  EXPECT_EQ(errorOf("{\"x\":" + atLimit + "}").substr(0, 35),
            "host.json:1:2: /x: unknown member \"");
  const std::string deep = "{\"x\":" + std::string(64, '[');
  const std::string error = errorOf(deep + std::string(1'000'000, '['));
  EXPECT_EQ(error.substr(0, 23), "host.json:1:69: /x/0/0/");
  EXPECT_NE(error.find(": nested deeper than 64 levels"), std::string::npos) << error;
}

TEST(HostScript, RefusesATextLargerThanItsLimit) {
  std::string script = "{}";
  script.resize(std::size_t{16} * 1024 * 1024, ' ');
  EXPECT_EQ(errorOf(script), "no error");
  script += ' ';
  EXPECT_EQ(errorOf(script), "host.json: the file is larger than 16 MiB");
}

TEST(HostScript, TakesAByteOrderMarkForNoCharacter) {
  EXPECT_EQ(errorOf("\xEF\xBB\xBF{}"), "no error");
  EXPECT_EQ(errorOf("\xEF\xBB\xBF{\"x\": 1}").substr(0, 15), "host.json:1:2: ");
}

TEST(HostScript, ReadsAsManyMembersAsFitInLinearTime) {
  std::string script = "{\"file_handles\": {";
  for (int i = 0; i < 200'000; ++i) script += "\"h" + std::to_string(i) + "\": \"/d\", ";
  script += "\"last\": \"/d\"}}";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(host(script)->fileHandles().size(), 200'001U);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  EXPECT_LT(seconds.count(), 20);
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
      {"/nowhere/host.json", "/nowhere/host.json: No such file or directory"},
      {"/", "/: Is a directory"},
      {"/dev/zero", "/dev/zero: the file is larger than 16 MiB"},
  };
  for (const Case& c : cases) {
    const auto loaded = ScriptedHost::load(c.file);
    ASSERT_TRUE(std::holds_alternative<HostScriptError>(loaded)) << c.file;
    EXPECT_EQ(std::get<HostScriptError>(loaded).text(), c.error);
  }
}

TEST(ExportResponseXml, EscapesItsAttributes) {
  ExportResponse response;
  response.name = "a&b<c>\"d'\t\n\r\xC3\xA4";
  EXPECT_EQ(exportResponseXml(response),
            "<outputExportResponse success=\"true\" errorCode=\"0\" "
            "name=\"a&amp;b&lt;c&gt;&quot;d'&#9;&#10;&#13;\xC3\xA4\"/>");
}

}  // namespace
}  // namespace vornwout
