// A document's file, open for reading: gives contents when they are asked for.
//
// Entry points: StoredDocument::open(), and load() through LazyContent. The file stays open as long
// as some object has a content in it, so that a document can be read on although its file was
// replaced. One part at a time is kept parsed: objects are mostly looked at in the order in which
// they lie.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include <pugixml.hpp>

#include "host/document/lazy_content.h"
#include "host/store/container_reader.h"
#include "host/store/manifest.h"

namespace vornwout {

class StoredDocument : public ContentSource {
 public:
  /// `manifest` says what the container holds.
  StoredDocument(std::unique_ptr<ContainerReader> container, Manifest manifest)
      : container_(std::move(container)), manifest_(std::move(manifest)) {}

  /// Opens a container and reads its outline into `root`. The container's password is set.
  static std::shared_ptr<StoredDocument> open(std::unique_ptr<ContainerReader> container,
                                              DocumentObject& root);

  ObjectContent load(std::uint64_t id) override;

  const Manifest& manifest() const { return manifest_; }
  ContainerReader& container() { return *container_; }

 private:
  struct ParsedPart {
    int part = -1;
    std::string bytes;
    pugi::xml_document xml;
    std::unordered_map<std::uint64_t, pugi::xml_node> contents;
  };

  ObjectContent loadFromPart(int part, std::uint64_t id);
  static void parsePart(std::string bytes, ParsedPart& parsed);

  std::unique_ptr<ContainerReader> container_;
  Manifest manifest_;
  std::optional<ParsedPart> parsed_;
};

}  // namespace vornwout
