#include "host/store/document_store.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <functional>
#include <optional>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

#include "host/export/html/document_page.h"
#include "host/store/container_reader.h"
#include "host/store/container_writer.h"
#include "host/store/content_limits.h"
#include "host/store/content_names.h"
#include "host/store/content_writer.h"
#include "host/store/member_name.h"
#include "host/store/store_error.h"
#include "host/store/stored_document.h"
#include "host/store/xml_check.h"
#include "host/store/xml_reader.h"
#include "platform/adapter/progress_listener.h"
#include "platform/strings/localized.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

/// Contents are gathered in one part until it has this size; a larger content has one of its own.
constexpr std::size_t kPackedPartBytes = std::size_t{256} << 10;
constexpr std::size_t kOwnPartBytes = std::size_t{64} << 10;
/// In an encrypted file every member costs a derivation of its key, so smaller media are packed
/// too.
constexpr std::size_t kPackedMediaBytes = std::size_t{64} << 10;

/// Walks the objects that are saved, in the order of the outline.
void forEachObject(DocumentObject& parent, bool withModels,
                   const std::function<void(DocumentObject&)>& visit) {
  for (DocumentObject& child : parent.children) {
    if (child.type == ObjectType::kModel && !withModels) continue;
    visit(child);
    forEachObject(child, withModels, visit);
  }
}

bool hasContent(const DocumentObject& object) {
  return object.content.place().source != nullptr ||
         !std::holds_alternative<std::monostate>(object.content.get());
}

const char* extensionOf(const std::string& mediaType) {
  if (mediaType == "image/svg+xml") return "svg";
  if (mediaType == "image/png") return "png";
  return "bin";
}

/// Numbers of members go on from those of the old file, so that their order tells their age. What
/// is larger than this was not made by counting, and is passed over.
constexpr std::uint64_t kMaxMemberNumber = 1'000'000'000'000;

/// The number in the name of a part or a medium, 0 where there is none to go on from.
std::uint64_t numberIn(const std::string& member) {
  const std::size_t digits = member.find_first_of("0123456789");
  std::uint64_t number = 0;
  if (digits != std::string::npos) {
    std::from_chars(member.data() + digits, member.data() + member.size(), number);
  }
  return number <= kMaxMemberNumber ? number : 0;
}

/// The file's name without its folders, in valid UTF-8.
std::string nameIn(const std::string& path) {
  return repairedUtf8(path.substr(path.rfind('/') + 1));
}

/// One save: decides what can be taken over from the old file, writes the rest, and moves in.
class DocumentSaver {
 public:
  DocumentSaver(Document& document, const std::string& path, const SaveOptions& options)
      : document_(document),
        options_(options),
        progress_("Saving " + nameIn(path)),
        writer_(path, containerOptions(options)) {}

  SavedFile save() {
    collect();
    takeOver();
    // The outline and the flushing to the disk count as well. What is taken over is copied, and
    // maybe encrypted, no sooner than the container is written.
    total_ = manifest_.parts.size() + items_.size() + 2;
    commitUnits_ = 1 + manifest_.parts.size();
    if (options_.type == DocumentFileType::kQxw) ++total_;
    reportProgress(progress_, 0, total_);
    writer_.add("mimetype", kDocumentMediaType, false);
    manifest_.runs = document_.runs();
    numbers_.withModels = options_.storeModels;
    copyTakenOver();
    writeChanged();
    if (options_.type == DocumentFileType::kQxw) addPage();
    writer_.add(
        kManifestMember,
        checked(writeManifest(document_.root(), manifest_, numbers_), localized("The outline")),
        true);
    countDone();
    ContainerWriter::Written written = writer_.commit([this](double part) {
      const auto units = static_cast<std::uint64_t>(part * static_cast<double>(commitUnits_));
      // The last one is for the flushing.
      const std::uint64_t now = done_ + std::min(units, commitUnits_ - 1);
      if (now > reported_) reportProgress(progress_, reported_ = now, total_);
    });
    try {
      moveIn(std::move(written.file));
    } catch (const StoreError& error) {
      // The new file is whole and in its place; contents stay where they were.
      if (!written.warning.empty()) written.warning += ' ';
      written.warning += localized("The saved file could not be opened again. ^1", error.what());
    }
    reportProgress(progress_, total_, total_);
    return {std::move(written.lock), std::move(written.warning)};
  }

 private:
  static ContainerOptions containerOptions(const SaveOptions& options) {
    ContainerOptions container;
    container.password = options.password;
    container.threads = options.threads;
    container.ownLock = options.ownLock;
    return container;
  }

  struct Item {
    DocumentObject* object;
    std::uint64_t id = 0;  ///< 0 until it has one
    bool wasLoaded = true;
    bool isKept = false;  ///< lies in a part or medium that is taken over
  };

  void countDone() { reportProgress(progress_, reported_ = ++done_, total_); }

  void collect() {
    forEachObject(document_.indexedRoot(), options_.storeModels, [&](DocumentObject& object) {
      if (!hasContent(object)) return;
      items_.push_back({&object, 0, object.content.isLoaded()});
      if (old_ == nullptr) {
        old_ = std::dynamic_pointer_cast<StoredDocument>(object.content.place().source);
      }
    });
  }

  /// A part is taken over when all that lies in it is still wanted, and nothing of it twice; and
  /// nothing is that the new file would have in another form (packed media or not).
  void takeOver() {
    if (old_ == nullptr) return;
    const Manifest& old = old_->manifest();
    std::vector<int> missing(old.parts.size(), 0);
    for (const auto& [id, place] : old.places) nextId_ = std::max(nextId_, id + 1);
    if (nextId_ + items_.size() > kMaxObjectId) {
      // The numbers would run out, so all objects get new ones, and everything is written anew.
      nextId_ = 1;
      return;
    }
    for (const auto& [id, place] : old.places) {
      if (place.part >= 0) ++missing[static_cast<std::size_t>(place.part)];
      nextMember_ = std::max(nextMember_, numberIn(place.member) + 1);
    }
    for (const std::string& part : old.parts) {
      nextMember_ = std::max(nextMember_, numberIn(part) + 1);
    }
    std::unordered_set<std::uint64_t> taken;
    for (Item& item : items_) {
      const LazyContent::Place& place = item.object->content.place();
      if (place.source != old_ || !taken.insert(place.id).second) continue;
      item.id = place.id;
      const StoredPlace& stored = old.places.at(place.id);
      if (stored.part >= 0 && !isUnpacked(stored)) --missing[static_cast<std::size_t>(stored.part)];
    }
    newPart_.assign(old.parts.size(), -1);
    for (std::size_t i = 0; i < old.parts.size(); ++i) {
      if (missing[i] != 0) continue;
      newPart_[i] = static_cast<int>(manifest_.parts.size());
      manifest_.parts.push_back(old.parts[i]);
      keptNames_.insert(caseFoldedName(old.parts[i]));
    }
    for (Item& item : items_) {
      if (item.id == 0) continue;
      StoredPlace place = old.places.at(item.id);
      if (place.part >= 0) place.part = newPart_[static_cast<std::size_t>(place.part)];
      item.isKept = place.part >= 0 || (!place.member.empty() && !isPacked(place));
      if (!item.isKept) continue;
      if (!place.member.empty()) keptNames_.insert(caseFoldedName(place.member));
      manifest_.places.emplace(item.id, std::move(place));
    }
  }

  /// True for a medium of the old file, in a member of its own, that is packed in the new one.
  bool isPacked(const StoredPlace& old) const {
    return !options_.password.empty() &&
           old_->container().find(old.member)->size <= kPackedMediaBytes;
  }

  /// True for a medium that was packed for the sake of an encryption that the new file has not.
  bool isUnpacked(const StoredPlace& old) const {
    return options_.password.empty() && old_->container().isEncrypted() &&
           (old.type == ObjectType::kChart || old.type == ObjectType::kModel);
  }

  void copyTakenOver() {
    for (const std::string& part : manifest_.parts) writer_.copy(old_->container(), part);
    for (const Item& item : items_) {
      if (!item.isKept) continue;
      const StoredPlace& place = manifest_.places.at(item.id);
      if (place.part >= 0) continue;
      if (copied_.insert(place.member).second) writer_.copy(old_->container(), place.member);
      ++commitUnits_;
    }
  }

  void writeChanged() {
    for (Item& item : items_) {
      if (item.id == 0) item.id = nextId_++;
      numbers_.ids.emplace(item.object, item.id);
      if (!item.isKept) {
        const ProgressStep step(progress_, done_, total_);
        writeContentOf(item);
        if (!item.wasLoaded) item.object->content.unload();
      } else if (manifest_.places.at(item.id).part < 0) {
        continue;  // counts when it is copied
      }
      countDone();
    }
    finishPart();
  }

  void writeContentOf(const Item& item) {
    const ObjectContent& content = item.object->content.get();
    const auto* media = std::get_if<MediaContent>(&content);
    if (media != nullptr && media->bytes != nullptr &&
        (options_.password.empty() || media->bytes->size() > kPackedMediaBytes)) {
      addMedia(item.id, *media);
      return;
    }
    std::string bytes;
    XmlWriter xml(bytes);
    writeContent(xml, item.id, content);
    if (const std::string excess = excessOf(content, bytes); !excess.empty()) {
      throw StoreError(StoreError::Kind::kNotWritten,
                       localized("An object ^1.", localizedText(excess)));
    }
    bytes += '\n';
    if (bytes.size() >= kOwnPartBytes) {
      addPart(bytes, {item.id});
      return;
    }
    packed_ += bytes;
    packedIds_.push_back(item.id);
    if (packed_.size() >= kPackedPartBytes) finishPart();
  }

  /// A member's name that nothing has which is taken over.
  std::string newName(const char* folder, const char* extension) {
    for (;;) {
      std::string name = fmt::format("{}/{:06}.{}", folder, nextMember_++, extension);
      if (!keptNames_.contains(name)) return name;
    }
  }

  void addMedia(std::uint64_t id, const MediaContent& media) {
    StoredPlace place;
    place.member = newName("media", extensionOf(media.mediaType));
    place.mediaType = media.mediaType;
    writer_.add(place.member, checked(*media.bytes, localized("A chart or a model")), true);
    manifest_.places.emplace(id, std::move(place));
  }

  void finishPart() {
    if (!packedIds_.empty()) addPart(std::exchange(packed_, {}), std::exchange(packedIds_, {}));
  }

  void addPart(const std::string& contents, const std::vector<std::uint64_t>& ids) {
    std::string bytes;
    bytes.reserve(contents.size() + 128);
    XmlWriter xml(bytes);
    xml.declaration();
    xml.start("objects");
    xml.attribute("xmlns", kDocumentNamespace);
    xml.newLine();
    bytes += contents;
    xml.end("objects");
    bytes += '\n';
    // A node takes four bytes at least.
    if (bytes.size() > 4 * kMaxXmlNodes && xmlNodeCount(bytes) > kMaxXmlNodes) {
      throw StoreError(StoreError::Kind::kNotWritten,
                       localized("An object is too large for one part: it has too many elements."));
    }
    const std::string name = newName("objects", "xml");
    const auto part = static_cast<int>(manifest_.parts.size());
    manifest_.parts.push_back(name);
    for (const std::uint64_t id : ids) manifest_.places.emplace(id, StoredPlace{part, {}, {}});
    writer_.add(name, checked(std::move(bytes), localized("An object")), true);
  }

  void addPage() {
    const ProgressStep step(progress_, done_, total_);
    writer_.add(kPageMember,
                checked(renderPage(document_, options_.storeModels), localized("The page")), true);
    countDone();
    // The page needed every content; what was not in memory before need not stay there.
    for (const Item& item : items_) {
      if (!item.wasLoaded) item.object->content.unload();
    }
  }

  /// What is larger could never be read again.
  static std::string checked(std::string bytes, const std::string& what) {
    if (bytes.size() > kMemberLimit) {
      throw StoreError(StoreError::Kind::kNotWritten,
                       localized("^1 is too large for one part: ^2 MiB of at most ^3.", what,
                                 bytes.size() >> 20, kMemberLimit >> 20));
    }
    return bytes;
  }

  /// From now on the contents lie in the new file, so that the next save can take them from there.
  /// The file itself is read, and not what its name stands for by now.
  void moveIn(FileDescriptor file) {
    for (const Item& item : items_) manifest_.places.at(item.id).type = item.object->type;
    auto container = std::make_unique<ContainerReader>(std::move(file));
    container->setPassword(options_.password);
    const auto stored =
        std::make_shared<StoredDocument>(std::move(container), std::move(manifest_));
    for (const Item& item : items_) item.object->content.setPlace({stored, item.id});
  }

  Document& document_;
  const SaveOptions& options_;
  std::string progress_;    ///< what is being done, for whoever shows how far it is
  std::uint64_t done_ = 0;  ///< parts, objects and so on
  std::uint64_t reported_ = 0;
  std::uint64_t total_ = 0;
  std::uint64_t commitUnits_ = 1;  ///< of total_, for writing the container
  ContainerWriter writer_;
  std::vector<Item> items_;
  std::shared_ptr<StoredDocument> old_;  ///< the file that contents are taken from, if there is one
  std::vector<int> newPart_;             ///< by part of the old file, -1 for one that is not kept
  std::unordered_set<std::string> copied_;
  Manifest manifest_;
  OutlineNumbers numbers_;
  std::uint64_t nextId_ = 1;
  std::uint64_t nextMember_ = 1;
  std::unordered_set<std::string> keptNames_;  ///< with their case folded
  std::string packed_;
  std::vector<std::uint64_t> packedIds_;
};

void unlock(ContainerReader& container, const std::string& password) {
  if (!container.isEncrypted()) return;
  if (password.empty()) {
    throw StoreError(StoreError::Kind::kWrongPassword,
                     localized("The file is encrypted, and no password was given."));
  }
  container.setPassword(password);
  if (!container.checkPassword()) {
    throw StoreError(StoreError::Kind::kWrongPassword, localized("The password is wrong."));
  }
}

}  // namespace

std::unique_ptr<Document> openDocument(const std::string& path, const OpenOptions& options) {
  const std::string progress = "Opening " + nameIn(path);
  constexpr std::uint64_t kStages = 2;
  reportProgress(progress, 0, kStages);
  auto container = std::make_unique<ContainerReader>(path);
  unlock(*container, options.password);
  reportProgress(progress, 1, kStages);
  if (!container->contains(kManifestMember)) {
    throw StoreError(StoreError::Kind::kDamaged,
                     localized("It is no output document: it has no manifest.xml."));
  }
  auto document = std::make_unique<Document>(1, std::string(), false);
  DocumentObject root;
  document->setWasEncrypted(container->isEncrypted());
  const auto stored = StoredDocument::open(std::move(container), root);
  document->setContents(std::move(root), stored->manifest().runs);
  reportProgress(progress, kStages, kStages);
  return document;
}

SavedFile saveDocument(Document& document, const std::string& path, const SaveOptions& options) {
  return DocumentSaver(document, path, options).save();
}

DocumentFileType documentFileType(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  std::string extension = dot == std::string::npos ? std::string() : path.substr(dot);
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension == ".qxw" ? DocumentFileType::kQxw : DocumentFileType::kQxv;
}

}  // namespace vornwout
