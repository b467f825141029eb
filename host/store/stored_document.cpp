#include "host/store/stored_document.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "host/build/png_check.h"
#include "host/build/svg_sanitizer.h"
#include "host/document/media_size.h"
#include "host/store/content_reader.h"
#include "host/store/document_store.h"
#include "host/store/member_name.h"
#include "host/store/store_error.h"
#include "host/store/xml_reader.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

/// Parts that are kept parsed, and their bytes together; the one in use is kept in any case.
constexpr std::size_t kKeptParts = 8;
constexpr std::size_t kKeptBytes = std::size_t{64} << 20;
/// How often all parts may be parsed within as many contents as the document has.
constexpr std::size_t kMostParsings = 64;

/// Says in which member of the file the trouble is.
[[noreturn]] void rethrowFor(const std::string& member, const StoreError& error) {
  throw StoreError(error.kind(), localized("Its part ^1 cannot be read: ^2.", member, error.what()),
                   error.detail());
}

/// What a save gives names to itself.
bool isReservedName(const std::string& member) {
  const std::string folded = caseFoldedName(member);
  return folded == kManifestMember || folded == kPageMember || folded == "mimetype";
}

/// Refuses what could not be saved again: members that are not there, that stand for two things, or
/// whose names are taken.
void checkMembers(const Manifest& manifest, const ContainerReader& container) {
  const auto refuse = [](const std::string& member, const std::string& what) {
    throw StoreError(StoreError::Kind::kDamaged,
                     localized("the part ^1 ^2", quotedMemberName(member), what));
  };
  std::unordered_set<std::string_view> parts;
  for (const std::string& part : manifest.parts) {
    if (!container.contains(part)) refuse(part, localized("is missing"));
    if (isReservedName(part)) refuse(part, localized("holds no objects"));
    if (!parts.insert(part).second) refuse(part, localized("stands twice"));
  }
  for (const auto& [id, place] : manifest.places) {
    if (place.member.empty()) continue;
    if (!container.contains(place.member)) refuse(place.member, localized("is missing"));
    if (isReservedName(place.member) || parts.contains(place.member)) {
      refuse(place.member, localized("is no chart and no model"));
    }
  }
}

/// A picture of a file may come from anywhere, so it is taken as when one is added: sound, and
/// without what could run in it, whatever the type of its object. A chart is of one of the two
/// kinds that there are. A model is not shown, and stays as it is.
void clean(MediaContent& media, ObjectType type, const std::string& member) {
  if (type == ObjectType::kModel) return;
  const auto refuse = [&](const std::string& reason) {
    throw StoreError(StoreError::Kind::kDamaged,
                     localized("Its part ^1 cannot be shown. ^2", quotedMemberName(member), reason),
                     reason);
  };
  if (media.mediaType == kPngMediaType) {
    const std::string problem = pngProblem(*media.bytes);
    if (!problem.empty()) refuse(problem);
  } else if (media.mediaType == kSvgMediaType) {
    try {
      media.bytes = std::make_shared<const std::string>(sanitizeSvg(*media.bytes));
    } catch (const SvgError& error) {
      refuse(error.what());
    }
  } else if (type == ObjectType::kChart) {
    refuse(localized("A chart is image/svg+xml or image/png."));
  }
}

}  // namespace

std::shared_ptr<StoredDocument> StoredDocument::open(std::unique_ptr<ContainerReader> container,
                                                     DocumentObject& root) {
  std::string bytes = container->read(kManifestMember, kMemberLimit);
  auto stored = std::make_shared<StoredDocument>(std::move(container), Manifest{});
  try {
    readManifest(std::move(bytes), stored, root, stored->manifest_);
    checkMembers(stored->manifest_, *stored->container_);
  } catch (const StoreError& error) {
    rethrowFor(kManifestMember, error);
  }
  return stored;
}

ObjectContent StoredDocument::load(std::uint64_t id) {
  const StoredPlace& place = manifest_.places.at(id);
  if (place.part >= 0) {
    ObjectContent content = loadFromPart(place.part, id);
    auto* media = std::get_if<MediaContent>(&content);
    if (media != nullptr) clean(*media, place.type, nameOf(place.part));
    return content;
  }
  MediaContent media;
  media.mediaType = place.mediaType;
  media.bytes = std::make_shared<const std::string>(container_->read(place.member, kMemberLimit));
  clean(media, place.type, place.member);
  return media;
}

ObjectContent StoredDocument::loadFromPart(int part, std::uint64_t id) {
  // A walk through the whole document asks for every content once.
  if (++loads_ > manifest_.places.size()) loads_ = parsedCount_ = 0;
  takeAhead(part);
  if (built_ != nullptr && built_->number == part) {
    if (const auto found = built_->contents.extract(id)) return std::move(found.mapped());
  }
  ParsedPart& parsed = takePart(part);
  try {
    const auto found = parsed.contents.find(id);
    if (found == parsed.contents.end()) {
      throw StoreError(StoreError::Kind::kDamaged, localized("object ^1 is missing", id));
    }
    ObjectContent content = readContent(found->second, parsed.bytes.size());
    // A part with one object in it is a large one, and nobody else will ask for it.
    if (parsed.contents.size() == 1) parsed_.pop_front();
    return content;
  } catch (const StoreError& error) {
    rethrowFor(nameOf(part), error);
  }
}

StoredDocument::ParsedPart& StoredDocument::takePart(int part) {
  const auto kept = std::find_if(parsed_.begin(), parsed_.end(),
                                 [&](const auto& one) { return one->number == part; });
  const bool isNext = part == lastPart_ + 1 && part > 0;
  lastPart_ = part;
  if (kept != parsed_.end()) {
    parsed_.splice(parsed_.begin(), parsed_, kept);
    return *parsed_.front();
  }
  countParsing(part);
  if (isNext && !(ahead_.valid() && aheadPart_ == part + 1)) readAhead(part + 1);
  std::unique_ptr<ParsedPart> taken = parsePart(*container_, nameOf(part));
  taken->number = part;
  keep(std::move(taken));
  return *parsed_.front();
}

void StoredDocument::takeAhead(int part) {
  if (!ahead_.valid() || aheadPart_ != part) return;
  built_ = ahead_.get();
  if (built_ == nullptr) return;
  built_->number = part;
  lastPart_ = part;
  countParsing(part);
  // The next one is this thread's.
  readAhead(part + 2);
}

void StoredDocument::keep(std::unique_ptr<ParsedPart> part) {
  std::size_t bytes = part->bytes.size();
  std::size_t count = 1;
  for (auto one = parsed_.begin(); one != parsed_.end();) {
    bytes += (*one)->bytes.size();
    one = ++count > kKeptParts || bytes > kKeptBytes ? parsed_.erase(one) : std::next(one);
  }
  parsed_.push_front(std::move(part));
}

void StoredDocument::countParsing(int part) {
  if (++parsedCount_ > kMostParsings * manifest_.parts.size()) {
    parsedCount_ = loads_ = 0;
    rethrowFor(nameOf(part),
               StoreError(StoreError::Kind::kDamaged,
                          localized("the document's objects ask for its parts again and again")));
  }
}

void StoredDocument::readAhead(int part) {
  if (static_cast<std::size_t>(part) >= manifest_.parts.size()) return;
  if (aheadContainer_ == nullptr) {
    aheadContainer_ = std::make_unique<ContainerReader>(container_->reopen());
  }
  // One thread at a time reads the container: the part before may still be on its way, when
  // somebody jumped over it.
  ahead_ = {};
  aheadPart_ = part;
  ahead_ = std::async(std::launch::async,
                      [this, part] { return buildPart(*aheadContainer_, nameOf(part)); });
}

std::unique_ptr<StoredDocument::BuiltPart> StoredDocument::buildPart(ContainerReader& container,
                                                                     const std::string& name) {
  try {
    const std::unique_ptr<ParsedPart> parsed = parsePart(container, name);
    auto built = std::make_unique<BuiltPart>();
    for (const auto& [id, node] : parsed->contents)
      built->contents.emplace(id, readContent(node, parsed->bytes.size()));
    return built;
  } catch (const StoreError&) {
    // Nothing is lost: whoever asks for the part reads it again, and gets the error.
    return nullptr;
  }
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
        refuseElement(node, localized("object ^1 stands twice", id));
      }
    }
  } catch (const StoreError& error) {
    rethrowFor(name, error);
  }
  return parsed;
}

}  // namespace vornwout
