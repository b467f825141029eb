#include "host/build/manifest.h"

#include <algorithm>
#include <utility>

#include "host/build/build_error.h"
#include "host/build/counted_files.h"
#include "host/build/manifest_reader.h"
#include "host/build/object_builder.h"
#include "host/build/table_manifest.h"
#include "platform/strings/localized.h"
#include "platform/text/multibyte.h"
#include "platform/text/strict_json.h"

namespace vornwout {
namespace {

using Json = ManifestReader::Json;
using Members = std::vector<ManifestReader::Member>;

/// The run of a command that objects below a heading belong to.
struct Run {
  std::string command;
  int number = 0;
};

class DocumentBuilder {
 public:
  DocumentBuilder(std::string_view text, const std::string& file, BuildFiles& files,
                  Document& document)
      : reader_(text, file), counted_(files), files_(counted_), document_(document) {}

  void build(const Json& json) {
    expectFiles(json);
    reader_.readMembers(
        json, {{"$schema", [&](const Json& v) { reader_.text(v); }},
               {"title", [&](const Json& v) { document_.append(titleObject(reader_.name(v))); }},
               {"objects",
                [&](const Json& v) {
                  reader_.readList(
                      v, [&](const Json& element) { document_.append(readObject(element, {})); });
                },
                true}});
    counted_.finish();
  }

 private:
  /// Announces every file that will be read. What is wrong here is complained about where it is
  /// read.
  void expectFiles(const Json& json) {
    const auto objects = json.is_object() ? json.find("objects") : json.end();
    if (objects == json.end() || !objects->is_array()) return;
    for (const Json& object : *objects) {
      if (!object.is_object()) continue;
      for (const char* member : {"csv", "file", "markdown"}) {
        const auto name = object.find(member);
        if (name != object.end() && name->is_string()) {
          counted_.expect(name->get_ref<const std::string&>());
        }
      }
      expectFiles(object);
    }
  }

  DocumentObject readObject(const Json& json, const Run& around) {
    if (++count_ > kMaxManifestObjects) {
      reader_.refuse(localized("There are more than ^1 objects.", kMaxManifestObjects));
    }
    if (!json.is_object()) reader_.refuseType(json, localized("an object"));
    std::size_t type = 0;
    const auto given = json.find("type");
    if (given == json.end()) {
      reader_.refuse(localized("\"type\" is missing here."),
                     localized("It is \"heading\", \"table\", \"chart\", \"text\" or \"model\"."));
    }
    reader_.enter("type", [&] {
      type = reader_.choice(*given, {"heading", "table", "chart", "text", "model"});
    });
    switch (type) {
      case 0:
        return readHeading(json, around);
      case 1:
        return readTable(json, around);
      case 2:
        return readChart(json, around);
      case 3:
        return readText(json, around);
      default:
        return readModel(json, around);
    }
  }

  /// What every object may have.
  struct Common {
    std::optional<std::string> command;
    std::optional<std::string> subtype;
    std::optional<std::string> label;
    bool visible = true;
    std::optional<ObjectSize> size;
  };

  Members commonMembers(Common& common) {
    return {{"type", nullptr},
            {"command", [&](const Json& v) { common.command = toUpperCase(reader_.name(v)); }},
            {"subtype", [&](const Json& v) { common.subtype = reader_.text(v); }},
            {"label", [&](const Json& v) { common.label = reader_.text(v); }},
            {"visible", [&](const Json& v) { common.visible = reader_.flag(v); }},
            {"size", [&](const Json& v) { common.size = readSize(v); }}};
  }

  ObjectSize readSize(const Json& json) {
    constexpr double kMost = 100000;
    ObjectSize size;
    reader_.readMembers(
        json, {{"width", [&](const Json& v) { size.width = reader_.number(v, 0, kMost); }},
               {"height", [&](const Json& v) { size.height = reader_.number(v, 0, kMost); }},
               {"unit", [&](const Json& v) {
                  size.percent = reader_.choice(v, {"points", "percent"}) == 1;
                }}});
    return size;
  }

  static Members joined(Members first, const Members& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
  }

  /// The run that an object belongs to: that of the heading around it, unless it names a command.
  Run runOf(const Common& common, const Run& around) {
    if (!common.command || *common.command == around.command) return around;
    return {*common.command, document_.beginRun(*common.command)};
  }

  static void dress(DocumentObject& object, const Common& common, const Run& run) {
    object.command = run.command;
    object.run = run.number;
    if (common.subtype) object.subtype = *common.subtype;
    if (common.label) object.label = *common.label;
    object.visible = common.visible;
    object.size = common.size;
  }

  DocumentObject readHeading(const Json& json, const Run& around) {
    Common common;
    const Json* below = nullptr;
    Members members = commonMembers(common);
    members.push_back({"objects", [&](const Json& v) { below = &v; }, true});
    reader_.readMembers(json, members);
    // A heading with a command is a run of its own, also below one of the same command.
    Run run = around;
    if (common.command) run = {*common.command, document_.beginRun(*common.command)};
    DocumentObject heading;
    heading.type = ObjectType::kHeading;
    dress(heading, common, run);
    if (++depth_ > kMaxManifestHeadings) {
      reader_.refuse(localized("Headings are nested deeper than ^1 levels.", kMaxManifestHeadings));
    }
    reader_.enter("objects", [&] {
      reader_.readList(*below, [&](const Json& element) {
        heading.children.push_back(readObject(element, run));
      });
    });
    --depth_;
    return heading;
  }

  DocumentObject readTable(const Json& json, const Run& around) {
    Common common;
    TableDescription table;
    reader_.readMembers(json, joined(commonMembers(common), tableMembers(reader_, table)));
    finishTable(reader_, table);
    table.subtype = common.subtype.value_or("");
    try {
      DocumentObject object = tableObject(table, files_);
      dress(object, common, runOf(common, around));
      return object;
    } catch (const DescriptionError& error) {
      JsonPath path = reader_.path();
      path.insert(path.end(), error.path().begin(), error.path().end());
      reader_.refuseAt(path, error.what(), error.help());
    }
  }

  DocumentObject readChart(const Json& json, const Run& around) {
    Common common;
    std::string file;
    Members members = commonMembers(common);
    members.push_back({"file", [&](const Json& v) { file = reader_.name(v); }, true});
    reader_.readMembers(json, members);
    DocumentObject object = chartObject(file, files_);
    dress(object, common, runOf(common, around));
    return object;
  }

  DocumentObject readText(const Json& json, const Run& around) {
    Common common;
    std::optional<std::string> markdown;
    std::optional<std::string> text;
    Members members = commonMembers(common);
    members.push_back({"markdown", [&](const Json& v) { markdown = reader_.name(v); }});
    members.push_back({"text", [&](const Json& v) { text = reader_.text(v); }});
    reader_.readMembers(json, members);
    if (markdown.has_value() == text.has_value()) {
      reader_.refuse(localized("A text has either \"markdown\" or \"text\"."),
                     localized("\"markdown\" names a file, \"text\" is the text itself."));
    }
    DocumentObject object = markdown ? markdownObject(*markdown, files_) : textObject(*text);
    dress(object, common, runOf(common, around));
    return object;
  }

  DocumentObject readModel(const Json& json, const Run& around) {
    Common common;
    std::string file;
    std::string mediaType = "application/octet-stream";
    Members members = commonMembers(common);
    members.push_back({"file", [&](const Json& v) { file = reader_.name(v); }, true});
    members.push_back({"mediaType", [&](const Json& v) { mediaType = readMediaType(v); }});
    reader_.readMembers(json, members);
    DocumentObject object = modelObject(file, mediaType, files_);
    dress(object, common, runOf(common, around));
    return object;
  }

  std::string readMediaType(const Json& json) {
    constexpr std::size_t kLongest = 127;
    std::string type = reader_.name(json);
    const auto isPart = [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
             std::string_view("!#$&^_.+-").find(c) != std::string_view::npos;
    };
    const std::size_t slash = type.find('/');
    const bool fits =
        type.size() <= kLongest && slash != std::string::npos && slash > 0 &&
        slash + 1 < type.size() &&
        std::all_of(type.begin(), type.begin() + static_cast<std::ptrdiff_t>(slash), isPart) &&
        std::all_of(type.begin() + static_cast<std::ptrdiff_t>(slash) + 1, type.end(), isPart);
    if (!fits)
      reader_.refuse(localized("This is no media type."),
                     localized("It is written as \"application/xml\"."));
    return type;
  }

  ManifestReader reader_;
  CountedFiles counted_;
  BuildFiles& files_;
  Document& document_;
  std::size_t count_ = 0;
  int depth_ = 0;  ///< of headings around what is being read
};

}  // namespace

void buildFromManifest(std::string_view json, const std::string& file, BuildFiles& files,
                       Document& document) {
  if (json.size() > kMaxManifestBytes) {
    throw BuildError(file, {}, localized("The manifest is larger than 64 MiB."));
  }
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (json.starts_with(kByteOrderMark)) json.remove_prefix(kByteOrderMark.size());
  if (const auto problem = findJsonProblem(json, kMaxManifestDepth)) {
    throw BuildError(file, placeInText(json, problem->offset),
                     localized("The manifest is no JSON that is read: ^1.", problem->message));
  }
  DocumentBuilder(json, file, files, document).build(Json::parse(json));
}

}  // namespace vornwout
