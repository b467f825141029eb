#include "runner/host_script.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <system_error>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "platform/exportspec/response_spec.h"
#include "platform/strings/localized.h"
#include "platform/text/json_locator.h"
#include "platform/text/strict_json.h"
#include "platform/text/xml_text.h"

namespace vornwout {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kMaxFileSize = std::size_t{16} * 1024 * 1024;
constexpr std::size_t kMaxDepth = 64;

/// What a value is, as a complaint about it says.
std::string foundType(const Json& json) {
  switch (json.type()) {
    case Json::value_t::null:
      return localized("null");
    case Json::value_t::object:
      return localized("an object");
    case Json::value_t::array:
      return localized("a list");
    case Json::value_t::string:
      return localized("a string");
    case Json::value_t::boolean:
      return localized("true or false");
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
      return localized("a whole number");
    case Json::value_t::number_float:
      return localized("a number with decimals");
    default:
      return localized("something else");
  }
}

/// Reads a parsed document into a script. The first complaint ends the reading; members are read in
/// the order of their names, in which the parsed document holds them.
class ScriptReader {
 public:
  ScriptReader(std::string_view text, const std::string& file) : text_(text), file_(file) {}

  HostScriptResult read(const Json& json) {
    HostScript script;
    readMembers(
        json, {{"output_controller", [&](const Json& v) { readFlag(v, script.outputController); }},
               {"path_expansion_suppressed",
                [&](const Json& v) { readFlag(v, script.pathExpansionSuppressed); }},
               {"working_directory", [&](const Json& v) { readText(v, script.workingDirectory); }},
               {"file_handles", [&](const Json& v) { readHandles(v, script.fileHandles); }},
               {"responses",
                [&](const Json& v) { readList(v, script.responses, &ScriptReader::readResponse); }},
               {"modify",
                [&](const Json& v) { readList(v, script.modifyCalls, &ScriptReader::readModify); }},
               {"export", [&](const Json& v) {
                  readList(v, script.exportCalls, &ScriptReader::readExport);
                }}});
    if (error_) return *std::move(error_);
    return script;
  }

 private:
  struct Member {
    std::string_view name;
    std::function<void(const Json&)> read;
  };

  void fail(std::optional<std::size_t> offset, std::string message) {
    if (error_) return;
    error_ = HostScriptError{file_, placeInText(text_, offset.value_or(0)), jsonPointer(path_),
                             std::move(message)};
  }
  void failHere(std::string message) { fail(locateJsonValue(text_, path_), std::move(message)); }
  void failType(const Json& json, std::string_view expected) {
    failHere(localized("expected ^1, found ^2", expected, foundType(json)));
  }

  /// Reads below one step of the path.
  template <typename Read>
  void below(std::string step, Read read) {
    path_.push_back(std::move(step));
    read();
    path_.pop_back();
  }

  /// Reads an object; returns the names it has.
  std::unordered_set<std::string> readMembers(const Json& json,
                                              std::initializer_list<Member> members) {
    std::unordered_set<std::string> given;
    if (!json.is_object()) {
      failType(json, localized("an object"));
      return given;
    }
    for (const auto& [name, value] : json.items()) {
      if (error_) break;
      given.insert(name);
      below(name, [&, &memberName = name, &memberValue = value] {
        for (const Member& member : members) {
          if (member.name == memberName) return member.read(memberValue);
        }
        std::string known;
        for (const Member& member : members) {
          known += fmt::format("{}\"{}\"", known.empty() ? "" : ", ", member.name);
        }
        fail(locateJsonName(text_, path_),
             localized("unknown member \"^1\"; known here: ^2", memberName, known));
      });
    }
    return given;
  }

  template <typename Element>
  void readList(const Json& json, std::vector<Element>& list,
                void (ScriptReader::*readElement)(const Json&, Element&)) {
    if (!json.is_array()) return failType(json, localized("a list"));
    for (const Json& element : json) {
      if (error_) return;
      below(std::to_string(list.size()),
            [&] { (this->*readElement)(element, list.emplace_back()); });
    }
  }

  void readFlag(const Json& json, bool& flag) {
    if (!json.is_boolean()) return failType(json, localized("true or false"));
    flag = json.get<bool>();
  }

  void readInteger(const Json& json, int& number) {
    if (!json.is_number_integer()) return failType(json, localized("a whole number"));
    constexpr auto kMin = std::numeric_limits<int>::min();
    constexpr auto kMax = std::numeric_limits<int>::max();
    const bool fits = json.is_number_unsigned()
                          ? json.get<std::uint64_t>() <= static_cast<std::uint64_t>(kMax)
                          : json.get<std::int64_t>() >= kMin && json.get<std::int64_t>() <= kMax;
    if (!fits) {
      return failHere(
          localized("expected a whole number from ^1 to ^2, found ^3", kMin, kMax, json.dump()));
    }
    number = json.get<int>();
  }

  void readText(const Json& json, std::string& text) {
    if (!json.is_string()) return failType(json, localized("a string"));
    text = json.get<std::string>();
    // Requests and responses carry zero-terminated texts, which would be cut there.
    if (text.find('\0') != std::string::npos)
      failHere(localized("a text cannot hold the character U+0000"));
  }

  void readXmlText(const Json& json, std::string& text) {
    readText(json, text);
    if (!isXmlText(text)) failHere(localized("XML cannot hold a control character of this text"));
  }

  void readHandles(const Json& json, std::map<std::string, std::string>& handles) {
    if (!json.is_object()) return failType(json, localized("an object"));
    for (const auto& [name, value] : json.items()) {
      if (error_) return;
      below(name, [&, &handle = name, &directory = value] {
        if (handle.empty()) {
          return fail(locateJsonName(text_, path_), localized("a file handle needs a name"));
        }
        readText(directory, handles[handle]);
      });
    }
  }

  void readResponse(const Json& json, ScriptedResponse& response) {
    readMembers(json,
                {{"success", [&](const Json& v) { readFlag(v, response.success); }},
                 {"severity", [&](const Json& v) { readInteger(v, response.severity.emplace()); }},
                 {"message", [&](const Json& v) { readText(v, response.message); }},
                 {"argument", [&](const Json& v) { readText(v, response.argument); }},
                 {"documents", [&](const Json& v) {
                    readList(v, response.documents, &ScriptReader::readDocument);
                  }}});
  }

  void readDocument(const Json& json, std::optional<ScriptedResponse::Document>& entry) {
    if (json.is_null()) return;
    if (!json.is_object()) return failType(json, localized("an object or null"));
    ScriptedResponse::Document& document = entry.emplace();
    readMembers(json, {{"name", [&](const Json& v) { readText(v, document.name); }},
                       {"active", [&](const Json& v) { readFlag(v, document.active); }}});
  }

  void readThrow(const Json& json, ScriptedCall::Throw& thrown) {
    static constexpr std::array<std::pair<std::string_view, ScriptedCall::Throw>, 4> kKinds = {
        {{"standard", ScriptedCall::Throw::kStandard},
         {"string", ScriptedCall::Throw::kString},
         {"other", ScriptedCall::Throw::kOther},
         {"unwind", ScriptedCall::Throw::kUnwind}}};
    std::string kind;
    readText(json, kind);
    for (const auto& [name, value] : kKinds) {
      if (name == kind) thrown = value;
    }
    if (thrown == ScriptedCall::Throw::kNothing) {
      failHere(localized("expected \"standard\", \"string\", \"other\" or \"unwind\", found \"^1\"",
                         kind));
    }
  }

  /// A call either throws or answers, and answers in one way.
  void refuseBoth(const std::unordered_set<std::string>& given, const std::string& one,
                  const std::string& other) {
    if (given.count(one) > 0 && given.count(other) > 0) {
      failHere(localized("\"^1\" and \"^2\" exclude each other", one, other));
    }
  }

  void refuseTextAlone(const std::unordered_set<std::string>& given) {
    if (given.count("text") > 0 && given.count("throw") == 0) {
      failHere(localized("\"text\" belongs to a \"throw\", which is missing"));
    }
  }

  void readModify(const Json& json, ScriptedCall& call) {
    const auto given =
        readMembers(json, {{"result", [&](const Json& v) { readText(v, call.result); }},
                           {"throw", [&](const Json& v) { readThrow(v, call.thrown); }},
                           {"text", [&](const Json& v) { readText(v, call.text); }}});
    refuseBoth(given, "result", "throw");
    refuseTextAlone(given);
  }

  void readExport(const Json& json, ScriptedCall& call) {
    call.result = exportResponseXml(ExportResponse());
    const auto given = readMembers(
        json, {{"response",
                [&](const Json& v) {
                  // Byte for byte, whatever it holds: a host may answer anything.
                  if (!v.is_string()) return failType(v, localized("a string"));
                  call.result = v.get<std::string>();
                }},
               {"response_spec", [&](const Json& v) { readResponseSpec(v, call.result); }},
               {"throw", [&](const Json& v) { readThrow(v, call.thrown); }},
               {"text", [&](const Json& v) { readText(v, call.text); }}});
    refuseBoth(given, "response", "response_spec");
    refuseBoth(given, "response", "throw");
    refuseBoth(given, "response_spec", "throw");
    refuseTextAlone(given);
  }

  void readResponseSpec(const Json& json, std::string& xml) {
    ExportResponse response;
    readMembers(json,
                {{"success", [&](const Json& v) { readFlag(v, response.success); }},
                 {"error_code", [&](const Json& v) { readInteger(v, response.errorCode); }},
                 {"name", [&](const Json& v) { readXmlText(v, response.name); }},
                 {"document_file", [&](const Json& v) { readXmlText(v, response.documentFile); }},
                 {"image_root", [&](const Json& v) { readXmlText(v, response.imageRoot); }},
                 {"image_format", [&](const Json& v) { readXmlText(v, response.imageFormat); }},
                 {"image_count",
                  [&](const Json& v) {
                    if (v.is_null()) return;
                    if (!v.is_number_integer())
                      return failType(v, localized("a whole number or null"));
                    readInteger(v, response.imageCount.emplace());
                    if (!error_ && *response.imageCount < 0)
                      failType(v, localized("0 or more, or null"));
                  }},
                 {"warnings", [&](const Json& v) { readWarnings(v, response); }}});
    if (!error_) xml = exportResponseXml(response);
  }

  void readWarnings(const Json& json, ExportResponse& response) {
    if (!json.is_array()) return failType(json, localized("a list"));
    if (json.size() > response.warnings.size()) {
      return failHere(localized("expected at most ^1 lists, one per warning code, found ^2",
                                response.warnings.size(), json.size()));
    }
    for (std::size_t code = 0; code < json.size() && !error_; ++code) {
      below(std::to_string(code),
            [&] { readList(json[code], response.warnings[code], &ScriptReader::readXmlText); });
    }
  }

  std::string_view text_;
  const std::string& file_;
  JsonPath path_;
  std::optional<HostScriptError> error_;
};

HostScriptError unreadable(const std::string& file, std::string message) {
  return HostScriptError{file, SourcePlace{}, "", std::move(message)};
}

HostScriptError tooLarge(const std::string& file) {
  return unreadable(file, localized("the file is larger than ^1 MiB", kMaxFileSize >> 20U));
}

}  // namespace

std::string HostScriptError::text() const {
  if (place.line == 0) {
    return localized("The scripted host's file ^1 cannot be read: ^2.", file, message);
  }
  std::string shown = file;
  shown += fmt::format(":{}:{}", place.line, place.column);
  if (!pointer.empty()) shown += ": " + pointer;
  return shown + ": " + message;
}

HostScriptResult parseHostScript(std::string_view text, const std::string& file) {
  if (text.size() > kMaxFileSize) return tooLarge(file);
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    text.remove_prefix(kByteOrderMark.size());
  }
  if (const std::optional<JsonProblem> problem = findJsonProblem(text, kMaxDepth)) {
    return HostScriptError{file, placeInText(text, problem->offset), jsonPointer(problem->path),
                           problem->message};
  }
  return ScriptReader(text, file).read(Json::parse(text));
}

HostScriptResult loadHostScript(const std::string& file) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "rbe"),
                                                               &std::fclose);
  if (stream == nullptr) return unreadable(file, std::generic_category().message(errno));
  std::string text;
  std::array<char, 65536> block;
  while (text.size() <= kMaxFileSize) {
    const std::size_t read = std::fread(block.data(), 1, block.size(), stream.get());
    if (read == 0) break;
    text.append(block.data(), read);
  }
  if (std::ferror(stream.get()) != 0) {
    return unreadable(file, std::generic_category().message(errno));
  }
  return parseHostScript(text, file);
}

}  // namespace vornwout
