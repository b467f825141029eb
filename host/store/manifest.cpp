#include "host/store/manifest.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <utility>

#include "host/store/content_names.h"
#include "host/store/store_error.h"
#include "host/store/xml_check.h"
#include "host/store/xml_reader.h"
#include "host/store/xml_writer.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr int kFormatVersion = 1;

bool is(pugi::xml_node node, const char* name) { return std::strcmp(node.name(), name) == 0; }

class ManifestReader {
 public:
  ManifestReader(const std::shared_ptr<ContentSource>& source, Manifest& manifest)
      : source_(source), manifest_(manifest) {}

  void read(pugi::xml_node document, DocumentObject& root) {
    const std::int64_t version = integerAttribute(document, "version", 0, 0);
    if (version != kFormatVersion) {
      refuseElement(document, localized("version ^1 of the format is not known; a newer program "
                                        "may read it",
                                        version));
    }
    const auto [runs, parts, outline] = sectionsOf(document);
    readRuns(runs);
    readParts(parts);
    root.type = ObjectType::kHeading;
    readChildren(outline, root, 1);
  }

 private:
  struct Sections {
    pugi::xml_node runs;
    pugi::xml_node parts;
    pugi::xml_node outline;
  };

  /// The three sections, each of which stands once. One that were passed over would be gone for
  /// good with the next save.
  static Sections sectionsOf(pugi::xml_node document) {
    Sections sections;
    const std::pair<const char*, pugi::xml_node*> known[] = {
        {"runs", &sections.runs}, {"parts", &sections.parts}, {"outline", &sections.outline}};
    for (const pugi::xml_node child : document.children()) {
      const auto* found = std::find_if(std::begin(known), std::end(known),
                                       [&](const auto& one) { return is(child, one.first); });
      if (found == std::end(known)) {
        refuseChild(child);
      } else if (*found->second) {
        refuseElement(document, localized("its element ^1 stands twice", found->first));
      } else {
        *found->second = child;
      }
    }
    for (const auto& [name, section] : known) {
      if (!*section) refuseElement(document, localized("it has no element ^1", name));
    }
    return sections;
  }

  void readRuns(pugi::xml_node runs) {
    for (const pugi::xml_node run : runs.children()) {
      if (!is(run, "run")) {
        refuseChild(run);
        continue;
      }
      refuseContent(run);
      if (!hasText(run, "command")) refuseElement(run, localized("it has no command"));
      if (!run.attribute("count")) refuseElement(run, localized("it has no count"));
      const auto count = static_cast<int>(integerAttribute(run, "count", 0, 0));
      if (!manifest_.runs.emplace(shortText(run, "command"), count).second) {
        refuseElement(run, localized("its command stands twice"));
      }
    }
  }

  void readParts(pugi::xml_node parts) {
    for (const pugi::xml_node part : parts.children()) {
      if (!is(part, "part")) {
        refuseChild(part);
        continue;
      }
      refuseContent(part);
      manifest_.parts.push_back(textAttribute(part, "name"));
    }
  }

  static void refuseContent(pugi::xml_node node) {
    for (const pugi::xml_node child : node.children()) refuseChild(child);
  }

  static std::string shortText(pugi::xml_node node, const char* name) {
    std::string text = textAttribute(node, name);
    if (text.size() > kMaxOutlineText) {
      refuseElement(node, localized("its ^1 has more than 1 MiB", name));
    }
    return text;
  }

  static bool hasText(pugi::xml_node node, const char* name) {
    return node.attribute(name) || node.attribute((std::string(name) + "-base64").c_str());
  }

  void readChildren(pugi::xml_node parent, DocumentObject& heading, int depth) {
    if (depth > kMaxOutlineDepth && parent.child("object")) {
      refuseElement(parent, localized("headings are nested too deeply"));
    }
    for (const pugi::xml_node child : parent.children()) {
      if (!is(child, "object")) {
        refuseChild(child);
        continue;
      }
      if (++objects_ > kMaxObjects)
        refuseElement(parent, localized("it holds more than 1,000,000 objects"));
      DocumentObject& object = heading.children.emplace_back();
      readObject(child, object);
      if (child.child("object") && object.type != ObjectType::kHeading) {
        refuseElement(child, localized("objects stand below one that is no heading"));
      }
      readChildren(child, object, depth + 1);
    }
  }

  void readObject(pugi::xml_node node, DocumentObject& object) {
    const auto type = findObjectType(node.attribute("type").value());
    if (!type) refuseElement(node, localized("its type is unknown"));
    object.type = *type;
    object.command = shortText(node, "command");
    object.run = static_cast<int>(integerAttribute(node, "run", 0, 0));
    object.subtype = shortText(node, "subtype");
    object.label = shortText(node, "label");
    object.index = shortText(node, "index");
    object.visible = flagAttribute(node, "visible", true);
    if (node.attribute("width") || node.attribute("height")) {
      readSize(node, object);
    } else if (node.attribute("unit")) {
      refuseElement(node, localized("it has the unit of a size and no size"));
    }
    if (node.attribute("id")) {
      readPlace(node, object);
    } else if (node.attribute("part") || hasText(node, "media") || hasText(node, "media-type")) {
      refuseElement(node, localized("it says where its content is and has no id"));
    }
  }

  static void readSize(pugi::xml_node node, DocumentObject& object) {
    ObjectSize& size = object.size.emplace();
    size.width = readSide(node, "width");
    size.height = readSide(node, "height");
    const pugi::xml_attribute unit = node.attribute("unit");
    size.percent = std::strcmp(unit.value(), "percent") == 0;
    if (unit && !size.percent && std::strcmp(unit.value(), "points") != 0) {
      refuseElement(node, localized("its unit is unknown"));
    }
  }

  static double readSide(pugi::xml_node node, const char* name) {
    const double side = parseDouble(node, node.attribute(name).as_string("0"));
    if (!std::isfinite(side) || side < 0) refuseElement(node, localized("its size is none"));
    return side;
  }

  void readPlace(pugi::xml_node node, DocumentObject& object) {
    const auto id =
        static_cast<std::uint64_t>(integerAttribute(node, "id", 0, 1, std::int64_t{kMaxObjectId}));
    StoredPlace place;
    place.type = object.type;
    if (node.attribute("part") && (hasText(node, "media") || hasText(node, "media-type"))) {
      refuseElement(node, localized("it has a part and a medium"));
    }
    place.member = textAttribute(node, "media");
    if (place.member.empty()) {
      const auto parts = static_cast<std::int64_t>(manifest_.parts.size());
      place.part = static_cast<int>(integerAttribute(node, "part", -1, 1, parts)) - 1;
      if (place.part < 0) refuseElement(node, localized("it says neither its part nor its medium"));
    } else {
      place.mediaType = textAttribute(node, "media-type");
    }
    if (!manifest_.places.emplace(id, std::move(place)).second) {
      refuseElement(node, localized("the number ^1 stands twice", id));
    }
    object.content = LazyContent(LazyContent::Place{source_, id});
  }

  const std::shared_ptr<ContentSource>& source_;
  Manifest& manifest_;
  std::size_t objects_ = 0;
};

class ManifestWriter {
 public:
  ManifestWriter(const Manifest& manifest, const OutlineNumbers& numbers)
      : manifest_(manifest), numbers_(numbers) {}

  std::string write(const DocumentObject& root) {
    xml_.declaration();
    xml_.start("document");
    xml_.attribute("xmlns", kDocumentNamespace);
    xml_.attribute("version", std::int64_t{kFormatVersion});
    xml_.newLine();
    xml_.start("runs");
    for (const auto& [command, count] : manifest_.runs) {
      xml_.newLine();
      xml_.start("run");
      xml_.attribute("command", command);
      xml_.attribute("count", std::int64_t{count});
      xml_.end("run");
    }
    xml_.end("runs");
    xml_.newLine();
    xml_.start("parts");
    for (const std::string& part : manifest_.parts) {
      xml_.newLine();
      xml_.start("part");
      xml_.attribute("name", part);
      xml_.end("part");
    }
    xml_.end("parts");
    xml_.newLine();
    xml_.start("outline");
    writeChildren(root, 1);
    xml_.end("outline");
    xml_.newLine();
    xml_.end("document");
    xml_.newLine();
    if (objects_ > kMaxObjects || xmlNodeCount(out_) > kMaxManifestNodes) {
      throw StoreError(StoreError::Kind::kNotWritten,
                       localized("It has more objects than a file can hold: ^1 of at most ^2.",
                                 objects_, kMaxObjects));
    }
    return std::move(out_);
  }

 private:
  void writeChildren(const DocumentObject& heading, int depth) {
    if (depth > kMaxOutlineDepth && !heading.children.empty()) {
      throw StoreError(
          StoreError::Kind::kNotWritten,
          localized("Its headings are nested deeper than ^1 levels.", kMaxOutlineDepth));
    }
    for (const DocumentObject& child : heading.children) {
      if (child.type == ObjectType::kModel && !numbers_.withModels) continue;
      xml_.newLine();
      ++objects_;
      xml_.start("object");
      writeObject(child);
      writeChildren(child, depth + 1);
      xml_.end("object");
    }
  }

  /// What is no size is left to whoever shows the object.
  static double writableSide(double side) { return std::isfinite(side) && side > 0 ? side : 0; }

  void writeText(const char* name, const std::string& text) {
    if (text.size() > kMaxOutlineText) {
      throw StoreError(StoreError::Kind::kNotWritten,
                       localized("The ^1 of an object has more than 1 MiB.", name));
    }
    xml_.optionalAttribute(name, text);
  }

  void writeObject(const DocumentObject& object) {
    xml_.attribute("type", objectTypeName(object.type));
    writeText("label", object.label);
    writeText("command", object.command);
    if (object.run != 0) xml_.attribute("run", std::int64_t{object.run});
    writeText("subtype", object.subtype);
    writeText("index", object.index);
    if (!object.visible) xml_.attribute("visible", "false");
    if (object.size) {
      xml_.attribute("width", writableSide(object.size->width));
      xml_.attribute("height", writableSide(object.size->height));
      xml_.attribute("unit", object.size->percent ? "percent" : "points");
    }
    const auto id = numbers_.ids.find(&object);
    if (id == numbers_.ids.end()) return;
    const StoredPlace& place = manifest_.places.at(id->second);
    xml_.attribute("id", static_cast<std::int64_t>(id->second));
    if (place.part >= 0) {
      xml_.attribute("part", std::int64_t{place.part} + 1);
    } else {
      xml_.attribute("media", place.member);
      xml_.attribute("media-type", place.mediaType);
    }
  }

  const Manifest& manifest_;
  const OutlineNumbers& numbers_;
  std::size_t objects_ = 0;
  std::string out_;
  XmlWriter xml_{out_};
};

}  // namespace

void readManifest(std::string bytes, const std::shared_ptr<ContentSource>& source,
                  DocumentObject& root, Manifest& manifest) {
  pugi::xml_document xml;
  parseXml(bytes, xml, kMaxManifestNodes);
  ManifestReader(source, manifest).read(rootElement(xml, "document"), root);
}

std::string writeManifest(const DocumentObject& root, const Manifest& manifest,
                          const OutlineNumbers& numbers) {
  return ManifestWriter(manifest, numbers).write(root);
}

}  // namespace vornwout
