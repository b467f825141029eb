#include "host/store/manifest.h"

#include <cmath>
#include <cstring>
#include <utility>

#include <fmt/format.h>

#include "host/store/content_names.h"
#include "host/store/store_error.h"
#include "host/store/xml_check.h"
#include "host/store/xml_reader.h"
#include "host/store/xml_writer.h"

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
      refuseElement(document, fmt::format("version {} of the format is not known; a newer program "
                                          "may read it",
                                          version));
    }
    for (const pugi::xml_node run : document.child("runs").children("run")) {
      const auto count = static_cast<int>(integerAttribute(run, "count", 0, 0));
      if (!manifest_.runs.emplace(textAttribute(run, "command"), count).second) {
        refuseElement(run, "its command stands twice");
      }
    }
    for (const pugi::xml_node part : document.child("parts").children("part")) {
      manifest_.parts.push_back(textAttribute(part, "name"));
    }
    root.type = ObjectType::kHeading;
    readChildren(document.child("outline"), root, 1);
  }

 private:
  void readChildren(pugi::xml_node parent, DocumentObject& heading, int depth) {
    if (depth > kMaxOutlineDepth && parent.child("object")) {
      refuseElement(parent, "headings are nested too deeply");
    }
    for (const pugi::xml_node child : parent.children()) {
      if (!is(child, "object")) {
        refuseChild(child);
        continue;
      }
      if (++objects_ > kMaxObjects) refuseElement(parent, "it holds more than 1,000,000 objects");
      DocumentObject& object = heading.children.emplace_back();
      readObject(child, object);
      if (child.child("object") && object.type != ObjectType::kHeading) {
        refuseElement(child, "objects stand below one that is no heading");
      }
      readChildren(child, object, depth + 1);
    }
  }

  void readObject(pugi::xml_node node, DocumentObject& object) {
    const auto type = findObjectType(node.attribute("type").value());
    if (!type) refuseElement(node, "its type is unknown");
    object.type = *type;
    object.command = textAttribute(node, "command");
    object.run = static_cast<int>(integerAttribute(node, "run", 0, 0));
    object.subtype = textAttribute(node, "subtype");
    object.label = textAttribute(node, "label");
    object.index = textAttribute(node, "index");
    object.visible = flagAttribute(node, "visible", true);
    if (node.attribute("width") || node.attribute("height")) readSize(node, object);
    if (node.attribute("id")) readPlace(node, object);
  }

  static void readSize(pugi::xml_node node, DocumentObject& object) {
    ObjectSize& size = object.size.emplace();
    size.width = readSide(node, "width");
    size.height = readSide(node, "height");
    const pugi::xml_attribute unit = node.attribute("unit");
    size.percent = std::strcmp(unit.value(), "percent") == 0;
    if (unit && !size.percent && std::strcmp(unit.value(), "points") != 0) {
      refuseElement(node, "its unit is unknown");
    }
  }

  static double readSide(pugi::xml_node node, const char* name) {
    const double side = parseDouble(node, node.attribute(name).as_string("0"));
    if (!std::isfinite(side) || side < 0) refuseElement(node, "its size is none");
    return side;
  }

  void readPlace(pugi::xml_node node, DocumentObject& object) {
    const auto id =
        static_cast<std::uint64_t>(integerAttribute(node, "id", 0, 1, std::int64_t{kMaxObjectId}));
    StoredPlace place;
    place.isChart = object.type == ObjectType::kChart;
    place.member = textAttribute(node, "media");
    if (place.member.empty()) {
      const auto parts = static_cast<std::int64_t>(manifest_.parts.size());
      place.part = static_cast<int>(integerAttribute(node, "part", -1, 1, parts)) - 1;
      if (place.part < 0) refuseElement(node, "it says neither its part nor its medium");
    } else {
      place.mediaType = textAttribute(node, "media-type");
    }
    if (!manifest_.places.emplace(id, std::move(place)).second) {
      refuseElement(node, fmt::format("the number {} stands twice", id));
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
                       fmt::format("It has more objects than a file can hold: {} of at most {}.",
                                   objects_, kMaxObjects));
    }
    return std::move(out_);
  }

 private:
  void writeChildren(const DocumentObject& heading, int depth) {
    if (depth > kMaxOutlineDepth && !heading.children.empty()) {
      throw StoreError(
          StoreError::Kind::kNotWritten,
          fmt::format("Its headings are nested deeper than {} levels.", kMaxOutlineDepth));
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

  void writeObject(const DocumentObject& object) {
    xml_.attribute("type", objectTypeName(object.type));
    xml_.optionalAttribute("label", object.label);
    xml_.optionalAttribute("command", object.command);
    if (object.run != 0) xml_.attribute("run", std::int64_t{object.run});
    xml_.optionalAttribute("subtype", object.subtype);
    xml_.optionalAttribute("index", object.index);
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
