// A document's file, open for reading: gives contents when they are asked for.
//
// Entry points: StoredDocument::open(), and load() through LazyContent. The file stays open as long
// as some object has a content in it, so that a document can be read on although its file was
// replaced. The parts that were looked at last are kept parsed: objects are mostly looked at in the
// order in which they lie, but for those that were moved. While they are, a second thread reads
// every other part, contents and all: a parsed tree is read where it was made, since handing one
// from processor to processor costs more than parsing it. A document that is made so that every
// object asks for another part is given up.
#pragma once

#include <cstdint>
#include <future>
#include <list>
#include <memory>
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
    int number = -1;
    std::string bytes;  ///< into which the document points
    pugi::xml_document xml;
    std::unordered_map<std::uint64_t, pugi::xml_node> contents;
  };

  struct BuiltPart {
    int number = -1;
    std::unordered_map<std::uint64_t, ObjectContent> contents;  ///< those not asked for yet
  };

  ObjectContent loadFromPart(int part, std::uint64_t id);
  /// The part, parsed; it is the first of the kept ones then.
  ParsedPart& takePart(int part);
  void keep(std::unique_ptr<ParsedPart> part);
  void countParsing(int part);
  /// What the thread has read of this part, if that was its task; takes it, and sets the next task.
  void takeAhead(int part);
  void readAhead(int part);
  const std::string& nameOf(int part) const {
    return manifest_.parts[static_cast<std::size_t>(part)];
  }

  /// A part with all its contents; null where one of them is damaged, which is told where it is
  /// asked for.
  static std::unique_ptr<BuiltPart> buildPart(ContainerReader& container, const std::string& name);
  static std::unique_ptr<ParsedPart> parsePart(ContainerReader& container, const std::string& name);

  std::unique_ptr<ContainerReader> container_;
  Manifest manifest_;
  std::list<std::unique_ptr<ParsedPart>> parsed_;    ///< the one that was used last comes first
  int lastPart_ = -1;                                ///< also when it is let go again
  std::size_t loads_ = 0;                            ///< contents since parsedCount_ was 0
  std::size_t parsedCount_ = 0;                      ///< parts that were parsed for them
  std::unique_ptr<BuiltPart> built_;                 ///< the last one that the thread has read
  std::unique_ptr<ContainerReader> aheadContainer_;  ///< used by the thread alone while it runs
  int aheadPart_ = -1;
  std::future<std::unique_ptr<BuiltPart>> ahead_;
};

}  // namespace vornwout
