#include "host/store/container_reader.h"

#include <algorithm>
#include <new>
#include <unordered_map>
#include <unordered_set>

#include <zip.h>

#include "host/store/deflate.h"
#include "host/store/member_name.h"
#include "host/store/store_error.h"
#include "host/store/zip_read_source.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

using Kind = StoreError::Kind;

// The end record alone, which every zip file has.
constexpr std::uint64_t kSmallestZip = 22;
constexpr std::uint64_t kLocalHeader = 30;
// AES-256: the salt, the value that verifies the password, and the authentication code.
constexpr std::uint64_t kEncryptionOverhead = 16 + 2 + 10;
constexpr std::string_view kReadableMember = "mimetype";

[[noreturn]] void refuse(const std::string& sentence) {
  throw StoreError(Kind::kDamaged, sentence);
}

[[noreturn]] void refuseMember(std::string_view name, const std::string& what) {
  refuse(localized("The part ^1 ^2.", quotedMemberName(name), what));
}

struct ZipClose {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct ZipFileClose {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using ZipFile = std::unique_ptr<zip_file_t, ZipFileClose>;

/// What a member's record says, beyond what callers see.
struct Record {
  zip_uint64_t index = 0;
  std::uint16_t method = 0;
  std::uint32_t checksum = 0;
};

}  // namespace

RawMember::~RawMember() = default;

/// The zip library's archive, and what was found out about it.
class ContainerReader::Archive {
 public:
  Archive(std::shared_ptr<const ReadableFile> file, std::uint64_t memberLimit)
      : file_(std::move(file)), memberLimit_(std::min(memberLimit, kMostOfAMember)) {
    openArchive();
    listMembers();
  }

  const std::shared_ptr<const ReadableFile>& file() const { return file_; }
  std::uint64_t memberLimit() const { return memberLimit_; }
  const std::vector<ContainerMember>& members() const { return members_; }
  bool isEncrypted() const { return isEncrypted_; }
  const Secret& password() const { return password_; }

  void setPassword(std::string_view password) {
    password_ = Secret(password);
    isPasswordProven_ = false;
  }

  const ContainerMember* find(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : &members_[found->second];
  }

  /// The position of a member that must be there.
  std::size_t require(std::string_view name) const {
    const auto found = byName_.find(name);
    if (found == byName_.end()) refuseMember(name, localized("is missing"));
    return found->second;
  }

  const Record& record(std::size_t member) const { return records_[member]; }

  bool checkPassword() {
    if (!isEncrypted_ || isPasswordProven_) return true;
    std::size_t smallest = members_.size();
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (members_[i].isEncrypted &&
          (smallest == members_.size() ||
           members_[i].compressedSize < members_[smallest].compressedSize)) {
        smallest = i;
      }
    }
    isPasswordRefused_ = false;
    try {
      readCompressed(smallest);
    } catch (const StoreError&) {
      if (!isPasswordRefused_) throw;
      return false;
    }
    return true;
  }

  /// Opens a member for reading its bytes, as `flags` of the library ask for them.
  ZipFile openMember(std::size_t member, zip_flags_t flags) {
    state_ = {};
    const bool decrypts = members_[member].isEncrypted && (flags & ZIP_FL_ENCRYPTED) == 0;
    // The library takes the password up to its first zero byte.
    if (decrypts && password_.view().find('\0') != std::string_view::npos) {
      refusePassword(localized("The password is wrong."));
    }
    ZipFile opened(
        zip_fopen_index_encrypted(archive_.get(), records_[member].index, flags,
                                  password_.empty() ? nullptr : password_.zeroTerminated()));
    if (opened == nullptr) failReading(member, zip_error_code_zip(zip_get_error(archive_.get())));
    return opened;
  }

  /// Reads up to `size` bytes; 0 at the end.
  std::size_t readSome(std::size_t member, zip_file_t* opened, char* target, std::size_t size) {
    const zip_int64_t count = zip_fread(opened, target, size);
    if (count < 0) failReading(member, zip_error_code_zip(zip_file_get_error(opened)));
    return static_cast<std::size_t>(count);
  }

  /// A member's bytes, decrypted and not inflated.
  std::string readCompressed(std::size_t member) {
    const ContainerMember& item = members_[member];
    const ZipFile opened = openMember(member, ZIP_FL_COMPRESSED);
    std::string bytes(item.compressedSize - (item.isEncrypted ? kEncryptionOverhead : 0), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
      const std::size_t count =
          readSome(member, opened.get(), bytes.data() + done, bytes.size() - done);
      if (count == 0) refuseMember(item.name, localized("ends too early"));
      done += count;
    }
    // The library checks the authentication code where it is asked for what comes after the end.
    char beyond = 0;
    if (readSome(member, opened.get(), &beyond, 1) != 0) {
      refuseMember(item.name, localized("is longer than it says"));
    }
    file_->requireUnchanged();
    if (item.isEncrypted) isPasswordProven_ = true;
    return bytes;
  }

  /// The bytes of a member made from the compressed ones, and their checksum.
  std::string expand(std::size_t member, std::string compressed, std::uint32_t& checksum) const {
    const ContainerMember& item = members_[member];
    std::string bytes;
    if (records_[member].method == ZIP_CM_STORE) {
      bytes = std::move(compressed);
    } else {
      bytes.resize(item.size);
      if (!inflateAll(compressed, bytes)) refuseMember(item.name, "is damaged");
    }
    checksum = checksumOf(bytes);
    // Encrypted members may go without a checksum; they have an authentication code.
    const std::uint32_t stated = records_[member].checksum;
    if (checksum != stated && !(item.isEncrypted && stated == 0)) {
      refuseMember(item.name, localized("is damaged: its checksum does not fit"));
    }
    return bytes;
  }

 private:
  void openArchive() {
    if (file_->size() < kSmallestZip) refuse(localized("The file is no container."));
    zip_source_t* source = makeZipReadSource(file_, state_);
    if (source == nullptr) throw std::bad_alloc();
    zip_error_t error;
    zip_error_init(&error);
    archive_.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
    const int code = zip_error_code_zip(&error);
    zip_error_fini(&error);
    if (archive_ != nullptr) return;
    zip_source_free(source);
    failOpening(code);
  }

  void listMembers() {
    const zip_int64_t count = zip_get_num_entries(archive_.get(), 0);
    if (count < 0 || static_cast<std::uint64_t>(count) > kMostMembers) {
      refuse(localized("The file has more than 200000 parts."));
    }
    members_.reserve(static_cast<std::size_t>(count));
    records_.reserve(static_cast<std::size_t>(count));
    std::unordered_set<std::string> foldedNames;
    std::uint64_t total = 0;
    std::uint64_t occupied = 0;
    for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
      zip_stat_t status;
      if (zip_stat_index(archive_.get(), i, ZIP_FL_ENC_RAW, &status) != 0) {
        refuse(localized("The file's list of parts is damaged."));
      }
      checkName(status.name, foldedNames);
      checkSizes(status);
      total += status.size;
      occupied += kLocalHeader + status.comp_size;
      if (total > kContainerLimit)
        refuse(localized("The file's parts have more than 16 GiB together."));
      if (occupied > file_->size()) refuse(localized("The file's parts overlap."));
      if (std::string_view(status.name).ends_with('/')) continue;
      members_.push_back(
          {status.name, status.size, status.comp_size, status.encryption_method == ZIP_EM_AES_256});
      records_.push_back({i, status.comp_method, status.crc});
    }
    for (std::size_t i = 0; i < members_.size(); ++i) byName_.emplace(members_[i].name, i);
    checkEncryption();
  }

  static void checkName(std::string_view name, std::unordered_set<std::string>& foldedNames) {
    if (const std::string fault = faultOfMemberName(name); !fault.empty()) {
      refuse(localized("The name of the part ^1 ^2.", quotedMemberName(name), fault));
    }
    if (!foldedNames.insert(caseFoldedName(name)).second) {
      refuseMember(name, localized("is there twice"));
    }
  }

  void checkSizes(const zip_stat_t& status) const {
    constexpr zip_uint64_t kNeeded =
        ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_ENCRYPTION_METHOD;
    if ((status.valid & kNeeded) != kNeeded) refuseMember(status.name, localized("has no sizes"));
    if (status.comp_method != ZIP_CM_STORE && status.comp_method != ZIP_CM_DEFLATE) {
      refuseMember(status.name, localized("is compressed by a method other than deflate"));
    }
    if (status.encryption_method != ZIP_EM_NONE && status.encryption_method != ZIP_EM_AES_256) {
      refuseMember(status.name, localized("is encrypted by a method other than AES-256"));
    }
    if (status.size > memberLimit_) refuseMember(status.name, localized("is too large"));
    const std::uint64_t overhead =
        status.encryption_method == ZIP_EM_NONE ? 0 : kEncryptionOverhead;
    if (status.comp_size < overhead || status.comp_size > kMostOfAMember) {
      refuseMember(status.name, localized("has a wrong size"));
    }
    const std::uint64_t payload = status.comp_size - overhead;
    if (status.comp_method == ZIP_CM_STORE && payload != status.size) {
      refuseMember(status.name, localized("has a wrong size"));
    }
    if (status.size > kMostExpansion * payload + kExpansionAllowance) {
      refuseMember(status.name, localized("claims to be larger than its bytes can become"));
    }
  }

  /// A plain member among encrypted ones could have been put there without the password.
  void checkEncryption() {
    const auto encrypted = [](const ContainerMember& member) { return member.isEncrypted; };
    isEncrypted_ = std::any_of(members_.begin(), members_.end(), encrypted);
    if (!isEncrypted_) return;
    for (const ContainerMember& member : members_) {
      if (!member.isEncrypted && member.name != kReadableMember) {
        refuseMember(member.name, localized("is not encrypted, although others are"));
      }
    }
  }

  [[noreturn]] void failOpening(int code) const {
    if (code == ZIP_ER_MEMORY) throw std::bad_alloc();
    if (state_.systemError != 0) {
      throw StoreError(Kind::kNoFile,
                       localized("The file cannot be read^1", systemReason(state_.systemError)));
    }
    refuse(code == ZIP_ER_NOZIP ? localized("The file is no container, or its end is missing.")
                                : localized("The file's list of parts is damaged."));
  }

  /// Where the password is certainly wrong, or missing.
  [[noreturn]] void refusePassword(const std::string& sentence) {
    isPasswordRefused_ = true;
    throw StoreError(Kind::kWrongPassword, sentence);
  }

  [[noreturn]] void failReading(std::size_t member, int code) {
    const ContainerMember& item = members_[member];
    if (code == ZIP_ER_MEMORY) throw std::bad_alloc();
    if (state_.systemError != 0) {
      throw StoreError(Kind::kNoFile,
                       localized("The part ^1 cannot be read^2", quotedMemberName(item.name),
                                 systemReason(state_.systemError)));
    }
    if (state_.isCutShort)
      refuseMember(item.name, localized("is missing: the file has been cut short"));
    file_->requireUnchanged();
    if (code == ZIP_ER_NOPASSWD) {
      refusePassword(localized("The file is encrypted, and no password was given."));
    }
    if (item.isEncrypted && !isPasswordProven_) {
      // Of 65,536 wrong passwords one passes the first check, and fails where the content does.
      if (code == ZIP_ER_WRONGPASSWD) refusePassword(localized("The password is wrong."));
      if (code == ZIP_ER_CRC) {
        throw StoreError(Kind::kWrongPassword,
                         localized("The password is wrong, or the file is damaged."));
      }
    }
    refuseMember(item.name, "is damaged");
  }

  std::shared_ptr<const ReadableFile> file_;
  std::uint64_t memberLimit_;
  ReadSourceState state_;
  std::unique_ptr<zip_t, ZipClose> archive_;
  std::vector<ContainerMember> members_;
  std::vector<Record> records_;                               // as many as members_
  std::unordered_map<std::string_view, std::size_t> byName_;  // views into members_
  bool isEncrypted_ = false;
  Secret password_;
  bool isPasswordProven_ = false;
  bool isPasswordRefused_ = false;

  friend class ContainerReader;
};

/// Keeps the archive, and so the file, open.
class ContainerReader::StoredMember : public RawMember {
 public:
  StoredMember(std::shared_ptr<Archive> archive, std::size_t member)
      : archive_(std::move(archive)), member_(member) {}

  std::uint16_t method() const override { return archive_->record(member_).method; }
  std::uint64_t size() const override { return archive_->members()[member_].size; }
  std::uint64_t compressedSize() const override {
    return archive_->members()[member_].compressedSize;
  }
  std::uint32_t checksum() const override { return archive_->record(member_).checksum; }
  bool isEncrypted() const override { return archive_->members()[member_].isEncrypted; }

  void open() override {
    opened_ = archive_->openMember(member_, ZIP_FL_COMPRESSED | ZIP_FL_ENCRYPTED);
    left_ = compressedSize();
  }
  std::size_t readSome(char* target, std::size_t size) override {
    if (left_ == 0) return 0;
    const std::size_t count =
        archive_->readSome(member_, opened_.get(), target, std::min<std::uint64_t>(size, left_));
    if (count == 0) refuseMember(archive_->members()[member_].name, localized("ends too early"));
    left_ -= count;
    // Whoever copies the bytes as they are looks at none of them.
    if (left_ == 0) archive_->file()->requireUnchanged();
    return count;
  }
  void close() override { opened_.reset(); }

 private:
  std::shared_ptr<Archive> archive_;
  std::size_t member_;
  ZipFile opened_;
  std::uint64_t left_ = 0;
};

ContainerReader::ContainerReader(const std::string& path, std::uint64_t memberLimit)
    : archive_(std::make_shared<Archive>(std::make_shared<const ReadableFile>(path), memberLimit)) {
}

ContainerReader::ContainerReader(FileDescriptor file, std::uint64_t memberLimit)
    : archive_(std::make_shared<Archive>(std::make_shared<const ReadableFile>(std::move(file)),
                                         memberLimit)) {}

ContainerReader::ContainerReader(std::shared_ptr<Archive> archive) : archive_(std::move(archive)) {}
ContainerReader::~ContainerReader() = default;
ContainerReader::ContainerReader(ContainerReader&&) noexcept = default;
ContainerReader& ContainerReader::operator=(ContainerReader&&) noexcept = default;

ContainerReader ContainerReader::reopen() const {
  auto archive = std::make_shared<Archive>(archive_->file(), archive_->memberLimit());
  archive->password_ = Secret(archive_->password_.view());
  archive->isPasswordProven_ = archive_->isPasswordProven_;
  return ContainerReader(std::move(archive));
}

const std::vector<ContainerMember>& ContainerReader::members() const { return archive_->members(); }

bool ContainerReader::contains(std::string_view name) const { return find(name) != nullptr; }

const ContainerMember* ContainerReader::find(std::string_view name) const {
  return archive_->find(name);
}

bool ContainerReader::isEncrypted() const { return archive_->isEncrypted(); }

void ContainerReader::setPassword(std::string_view password) { archive_->setPassword(password); }

bool ContainerReader::checkPassword() { return archive_->checkPassword(); }

std::string ContainerReader::read(std::string_view name, std::uint64_t limit) {
  const std::size_t member = archive_->require(name);
  if (members()[member].size > limit) refuseMember(name, localized("is too large"));
  std::uint32_t checksum = 0;
  return archive_->expand(member, archive_->readCompressed(member), checksum);
}

std::unique_ptr<RawMember> ContainerReader::rawMember(std::string_view name) {
  return std::make_unique<StoredMember>(archive_, archive_->require(name));
}

ContainerReader::CompressedBytes ContainerReader::readCompressed(std::string_view name) {
  const std::size_t member = archive_->require(name);
  CompressedBytes result;
  result.method = archive_->record(member).method;
  result.size = members()[member].size;
  result.bytes = archive_->readCompressed(member);
  archive_->expand(member, result.bytes, result.checksum);
  return result;
}

bool ContainerReader::opensWith(std::string_view password) {
  if (!isEncrypted() || !(archive_->password() == Secret(password))) return false;
  return archive_->checkPassword();
}

}  // namespace vornwout
