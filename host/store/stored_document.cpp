#include "host/store/stored_document.h"

#include <limits>
#include <utility>

#include <fmt/format.h>

#include "host/store/content_reader.h"
#include "host/store/document_store.h"
#include "host/store/store_error.h"
#include "host/store/xml_reader.h"

namespace vornwout {
namespace {

/// Says in which member of the file the trouble is.
[[noreturn]] void rethrowFor(const std::string& member, const StoreError& error) {
  throw StoreError(error.kind(),
                   fmt::format("Its part {} cannot be read: {}.", member, error.what()));
}

}  // namespace

std::shared_ptr<StoredDocument> StoredDocument::open(std::unique_ptr<ContainerReader> container,
                                                     DocumentObject& root) {
  std::string bytes = container->read(kManifestMember, kMemberLimit);
  auto stored = std::make_shared<StoredDocument>(std::move(container), Manifest{});
  try {
    readManifest(std::move(bytes), stored, root, stored->manifest_);
    for (const std::string& part : stored->manifest_.parts) {
      if (!stored->container_->contains(part)) {
        throw StoreError(StoreError::Kind::kDamaged, fmt::format("the part {} is missing", part));
      }
    }
  } catch (const StoreError& error) {
    rethrowFor(kManifestMember, error);
  }
  return stored;
}

ObjectContent StoredDocument::load(std::uint64_t id) {
  const StoredPlace& place = manifest_.places.at(id);
  if (place.part >= 0) return loadFromPart(place.part, id);
  MediaContent media;
  media.mediaType = place.mediaType;
  media.bytes = std::make_shared<const std::string>(container_->read(place.member, kMemberLimit));
  return media;
}

ObjectContent StoredDocument::loadFromPart(int part, std::uint64_t id) {
  if (parsed_ == nullptr || parsedPart_ != part) takePart(part);
  try {
    const auto found = parsed_->contents.find(id);
    if (found == parsed_->contents.end()) {
      throw StoreError(StoreError::Kind::kDamaged, fmt::format("object {} is missing", id));
    }
    ObjectContent content = readContent(found->second);
    // A part with one object in it is a large one, and nobody else will ask for it.
    if (parsed_->contents.size() == 1) parsed_.reset();
    return content;
  } catch (const StoreError& error) {
    rethrowFor(nameOf(part), error);
  }
}

void StoredDocument::takePart(int part) {
  parsed_.reset();
  const bool isNext = part == parsedPart_ + 1 && part > 0;
  parsedPart_ = part;
  if (ahead_.valid()) {
    // Waited for in any case: the thread has the second reader.
    std::future<std::unique_ptr<ParsedPart>> ahead = std::move(ahead_);
    ahead.wait();
    if (aheadPart_ == part) parsed_ = ahead.get();
  }
  if (parsed_ == nullptr) parsed_ = parsePart(*container_, nameOf(part));
  if (isNext && static_cast<std::size_t>(part) + 1 < manifest_.parts.size()) readAhead(part + 1);
}

void StoredDocument::readAhead(int part) {
  if (aheadContainer_ == nullptr) {
    aheadContainer_ = std::make_unique<ContainerReader>(container_->reopen());
  }
  aheadPart_ = part;
  ahead_ = std::async(std::launch::async,
                      [this, part] { return parsePart(*aheadContainer_, nameOf(part)); });
}

std::unique_ptr<StoredDocument::ParsedPart> StoredDocument::parsePart(ContainerReader& container,
                                                                      const std::string& name) {
  auto parsed = std::make_unique<ParsedPart>();
  parsed->bytes = container.read(name, kMemberLimit);
  try {
    parseXml(parsed->bytes, parsed->xml);
    for (const pugi::xml_node node : rootElement(parsed->xml, "objects").children()) {
      const auto id = static_cast<std::uint64_t>(
          integerAttribute(node, "object", 0, 0, std::numeric_limits<std::int64_t>::max()));
      if (!parsed->contents.emplace(id, node).second) {
        refuseElement(node, fmt::format("object {} stands twice", id));
      }
    }
  } catch (const StoreError& error) {
    rethrowFor(name, error);
  }
  return parsed;
}

}  // namespace vornwout
