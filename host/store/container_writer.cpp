#include "host/store/container_writer.h"

#include <deque>
#include <exception>
#include <new>
#include <unordered_set>

#include <zip.h>

#include "host/store/member_name.h"
#include "host/store/part_compressor.h"
#include "host/store/part_spool.h"
#include "host/store/replaced_file.h"
#include "host/store/secret.h"
#include "host/store/store_error.h"
#include "host/store/zip_write_target.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::string_view kReadableMember = "mimetype";
// 1 January 1980, 0:00: the first moment that the format can express.
constexpr zip_uint16_t kFixedDate = 1 << 5 | 1;

// How much of the members is written between two reports.
constexpr double kProgressStep = 0.001;

[[noreturn]] void fail(const std::string& sentence) {
  throw StoreError(StoreError::Kind::kNotWritten, sentence);
}

/// A member that waits to be written: a part of this container, or one as it lies in another.
struct Member {
  std::string name;
  bool isEncrypted = false;  // in the new container
  CompressedPart part;
  std::unique_ptr<RawMember> raw;
};

/// Reads one member for the zip library.
struct MemberSource {
  Member& member;
  const PartSpool& spool;
  std::exception_ptr& failure;
  std::uint64_t offset = 0;
  zip_error_t error = {};
};

zip_int64_t readMember(MemberSource& source, void* data, zip_uint64_t length) {
  try {
    auto* target = static_cast<char*>(data);
    const std::size_t count =
        source.member.raw != nullptr
            ? source.member.raw->readSome(target, length)
            : source.spool.read(source.member.part.place, source.offset, target, length);
    source.offset += count;
    return static_cast<zip_int64_t>(count);
  } catch (...) {
    if (source.failure == nullptr) source.failure = std::current_exception();
    zip_error_set(&source.error, ZIP_ER_READ, 0);
    return -1;
  }
}

zip_int64_t openMember(MemberSource& source) {
  source.offset = 0;
  if (source.member.raw == nullptr) return 0;
  try {
    source.member.raw->open();
    return 0;
  } catch (...) {
    if (source.failure == nullptr) source.failure = std::current_exception();
    zip_error_set(&source.error, ZIP_ER_OPEN, 0);
    return -1;
  }
}

/// Says that the bytes are compressed already (and encrypted, where they are), so that the library
/// takes them as they come. An encrypted member has no checksum: that of the readable bytes would
/// tell who guesses them that the guess is right, and the authentication code serves as well. (Of
/// what is stored the library makes one itself.)
zip_int64_t describeMember(const MemberSource& source, void* data, zip_uint64_t length) {
  if (length < sizeof(zip_stat_t)) return -1;
  auto* status = static_cast<zip_stat_t*>(data);
  zip_stat_init(status);
  status->valid = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_CRC |
                  ZIP_STAT_ENCRYPTION_METHOD;
  if (const RawMember* raw = source.member.raw.get()) {
    status->size = raw->size();
    status->comp_size = raw->compressedSize();
    status->comp_method = raw->method();
    status->crc = source.member.isEncrypted ? 0 : raw->checksum();
    status->encryption_method = raw->isEncrypted() ? ZIP_EM_AES_256 : ZIP_EM_NONE;
    return sizeof(zip_stat_t);
  }
  const CompressedPart& part = source.member.part;
  status->size = part.size;
  status->comp_size = part.place.size;
  status->comp_method = part.isDeflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE;
  status->crc = source.member.isEncrypted ? 0 : part.checksum;
  status->encryption_method = ZIP_EM_NONE;
  return sizeof(zip_stat_t);
}

zip_int64_t serveMember(void* context, void* data, zip_uint64_t length, zip_source_cmd_t command) {
  auto& source = *static_cast<MemberSource*>(context);
  switch (command) {
    case ZIP_SOURCE_OPEN:
      return openMember(source);
    case ZIP_SOURCE_READ:
      return readMember(source, data, length);
    case ZIP_SOURCE_CLOSE:
      if (source.member.raw != nullptr) source.member.raw->close();
      return 0;
    case ZIP_SOURCE_STAT:
      return describeMember(source, data, length);
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&source.error, data, length);
    case ZIP_SOURCE_SUPPORTS:
      return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE,
                                            ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE,
                                            ZIP_SOURCE_SUPPORTS, -1);
    case ZIP_SOURCE_FREE:
      zip_error_fini(&source.error);
      delete &source;
      return 0;
    default:
      zip_error_set(&source.error, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

struct ZipDiscard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ZipArchive = std::unique_ptr<zip_t, ZipDiscard>;

}  // namespace

class ContainerWriter::Work {
 public:
  Work(const std::string& path, const ContainerOptions& options)
      : file_(path, options.ownLock),
        password_(options.password),
        spool_(options.memoryLimit, [this] { return file_.makeScratchFile(); }),
        compressor_(options.threads, spool_) {
    // The library would take it up to there.
    if (password_.view().find('\0') != std::string_view::npos) {
      fail(localized("The password has a zero byte."));
    }
  }

  void add(std::string_view name, std::string bytes, bool compress) {
    Member& member = addMember(name, bytes.size());
    if (compress && name != kReadableMember) {
      compressor_.add(member.part, std::move(bytes));
      return;
    }
    member.part.size = bytes.size();
    member.part.place = spool_.keep(std::move(bytes));
  }

  void copy(ContainerReader& reader, std::string_view name) {
    std::unique_ptr<RawMember> raw = reader.rawMember(name);
    Member& member = addMember(name, raw->size());
    // The library cannot tell stored encrypted bytes from plain ones.
    const bool isAsWanted = raw->isEncrypted()
                                ? member.isEncrypted && raw->method() == ZIP_CM_DEFLATE &&
                                      reader.opensWith(password_.view())
                                : true;
    if (isAsWanted) {
      member.raw = std::move(raw);
      return;
    }
    ContainerReader::CompressedBytes compressed = reader.readCompressed(name);
    member.part = {compressed.method == ZIP_CM_DEFLATE, compressed.size, compressed.checksum,
                   spool_.keep(std::move(compressed.bytes))};
  }

  Written commit(const std::function<void(double part)>& progress) {
    compressor_.finish();
    if (members_.empty()) fail(localized("A container needs at least one part."));
    std::exception_ptr failure;
    {
      ZipArchive archive = makeArchive(failure);
      for (Member& member : members_) declare(archive.get(), member, failure);
      WritingProgress writing{progress, failure};
      if (progress) watch(archive.get(), writing);
      if (zip_close(archive.get()) != 0) {
        if (failure != nullptr) std::rethrow_exception(failure);
        fail(localized("The container could not be written: ^1.", zip_strerror(archive.get())));
      }
      // Closed, it is gone.
      static_cast<void>(archive.release());
    }
    // Before the rename: afterwards nothing may fail any more.
    FileDescriptor reading = file_.duplicate();
    ReplacedFile::Committed committed = file_.commit();
    return {std::move(committed.lock), std::move(reading), std::move(committed.warning)};
  }

 private:
  /// Who wants to know how far the library is. Exceptions must not pass through it.
  struct WritingProgress {
    const std::function<void(double part)>& tell;
    std::exception_ptr& failure;
  };

  /// `writing` outlives the archive.
  static void watch(zip_t* archive, WritingProgress& writing) {
    const auto tell = [](zip_t*, double part, void* context) {
      auto& to = *static_cast<WritingProgress*>(context);
      if (to.failure != nullptr) return;
      try {
        to.tell(part);
      } catch (...) {
        to.failure = std::current_exception();
      }
    };
    const auto isEnded = [](zip_t*, void* context) {
      return static_cast<WritingProgress*>(context)->failure == nullptr ? 0 : 1;
    };
    if (zip_register_progress_callback_with_state(archive, kProgressStep, tell, nullptr,
                                                  &writing) != 0 ||
        zip_register_cancel_callback_with_state(archive, isEnded, nullptr, &writing) != 0) {
      throw std::bad_alloc();
    }
  }

  Member& addMember(std::string_view name, std::uint64_t size) {
    const std::string quoted = quotedMemberName(name);
    if (const std::string fault = faultOfMemberName(name); !fault.empty() || name.ends_with('/')) {
      fail(localized("The name of the part ^1 ^2.", quoted,
                     fault.empty() ? localized("ends in a slash") : fault));
    }
    if (name == kReadableMember && !members_.empty())
      fail(localized("\"mimetype\" must be the first part."));
    if (!names_.insert(caseFoldedName(name)).second)
      fail(localized("The part ^1 is there twice.", quoted));
    if (members_.size() >= kMostMembers) fail(localized("The file has more than 200000 parts."));
    if (size > kMemberLimit) fail(localized("The part ^1 is larger than 256 MiB.", quoted));
    totalSize_ += size;
    if (totalSize_ > kContainerLimit)
      fail(localized("The file's parts have more than 16 GiB together."));
    Member& member = members_.emplace_back();
    member.name = name;
    member.isEncrypted = !password_.empty() && name != kReadableMember;
    return member;
  }

  ZipArchive makeArchive(std::exception_ptr& failure) {
    zip_source_t* target = makeZipWriteTarget(file_, failure);
    if (target == nullptr) throw std::bad_alloc();
    zip_error_t error;
    zip_error_init(&error);
    ZipArchive archive(zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, &error));
    const std::string reason = archive == nullptr ? zip_error_strerror(&error) : "";
    zip_error_fini(&error);
    if (archive == nullptr) {
      zip_source_free(target);
      fail(localized("The container could not be written: ^1.", reason));
    }
    if (!password_.empty() &&
        zip_set_default_password(archive.get(), password_.zeroTerminated()) != 0) {
      throw std::bad_alloc();
    }
    return archive;
  }

  void declare(zip_t* archive, Member& member, std::exception_ptr& failure) {
    auto context = std::make_unique<MemberSource>(MemberSource{member, spool_, failure});
    zip_error_init(&context->error);
    zip_source_t* source = zip_source_function(archive, serveMember, context.get());
    if (source == nullptr) throw std::bad_alloc();
    static_cast<void>(context.release());
    const zip_int64_t added = zip_file_add(archive, member.name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (added < 0) {
      zip_source_free(source);
      failDeclaring(archive, member);
    }
    const auto index = static_cast<zip_uint64_t>(added);
    const std::uint16_t method = member.raw != nullptr    ? member.raw->method()
                                 : member.part.isDeflated ? ZIP_CM_DEFLATE
                                                          : ZIP_CM_STORE;
    // Left to itself the library would deflate what is stored.
    if (method == ZIP_CM_STORE && zip_set_file_compression(archive, index, ZIP_CM_STORE, 0) != 0) {
      failDeclaring(archive, member);
    }
    if (zip_file_set_dostime(archive, index, 0, kFixedDate, 0) != 0) {
      failDeclaring(archive, member);
    }
    // Without a password of its own: bytes that are encrypted already then stay as they are.
    if (member.isEncrypted &&
        zip_file_set_encryption(archive, index, ZIP_EM_AES_256, nullptr) != 0) {
      failDeclaring(archive, member);
    }
  }

  [[noreturn]] static void failDeclaring(zip_t* archive, const Member& member) {
    fail(localized("The part ^1 could not be written: ^2.", quotedMemberName(member.name),
                   zip_strerror(archive)));
  }

  ReplacedFile file_;
  Secret password_;
  PartSpool spool_;
  std::deque<Member> members_;  // which stay where they are, for the threads write to them
  std::unordered_set<std::string> names_;
  std::uint64_t totalSize_ = 0;
  // Last: its threads end before what they write to.
  PartCompressor compressor_;
};

ContainerWriter::ContainerWriter(const std::string& path, const ContainerOptions& options)
    : work_(std::make_unique<Work>(path, options)) {}

ContainerWriter::~ContainerWriter() = default;

void ContainerWriter::add(std::string_view name, std::string bytes, bool compress) {
  work_->add(name, std::move(bytes), compress);
}

void ContainerWriter::copy(ContainerReader& reader, std::string_view name) {
  work_->copy(reader, name);
}

ContainerWriter::Written ContainerWriter::commit(const std::function<void(double part)>& progress) {
  return work_->commit(progress);
}

}  // namespace vornwout
