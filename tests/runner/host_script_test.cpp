#include "runner/host_script.h"

#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/program_run.h"

namespace vornwout {
namespace {

std::string errorOf(const HostScriptResult& result) {
  const auto* error = std::get_if<HostScriptError>(&result);
  return error == nullptr ? "no error" : error->text();
}

/// The error of a script that must be wrong.
std::string errorOf(std::string_view script) {
  return errorOf(parseHostScript(script, "host.json"));
}

TEST(HostScript, IsReadFromAFile) {
  const ScratchDirectory scratch;
  const HostScriptResult result =
      loadHostScript(scratch.write("h.json", "\xEF\xBB\xBF{\"file_handles\": {\"a\": \"/b\"}}"));
  ASSERT_TRUE(std::holds_alternative<HostScript>(result)) << errorOf(result);
  EXPECT_EQ(std::get<HostScript>(result).fileHandles,
            (std::map<std::string, std::string>{{"a", "/b"}}));
}

TEST(HostScript, FileThatCannotBeReadIsNamedWithTheReason) {
  EXPECT_EQ(errorOf(loadHostScript("/nowhere/h.json")),
            "The scripted host's file /nowhere/h.json cannot be read: No such file or directory.");
  EXPECT_EQ(errorOf(loadHostScript("/")),
            "The scripted host's file / cannot be read: Is a directory.");
}

TEST(HostScript, FileHandleWithoutANameIsRefusedAtItsPlace) {
  EXPECT_EQ(
      errorOf(parseHostScript("{\"file_handles\":\n  {\"a\": \"x\", \"\": \"y\"}}", "h.json")),
      "h.json:2:14: /file_handles/: a file handle needs a name");
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
  EXPECT_EQ(errorOf(script),
            "The scripted host's file host.json cannot be read: the file is larger than 16 MiB.");
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
  const HostScriptResult result = parseHostScript(script, "host.json");
  ASSERT_TRUE(std::holds_alternative<HostScript>(result)) << errorOf(result);
  EXPECT_EQ(std::get<HostScript>(result).fileHandles.size(), 200'001U);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  EXPECT_LT(seconds.count(), 20);
}

}  // namespace
}  // namespace vornwout
