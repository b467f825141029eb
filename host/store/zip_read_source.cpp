#include "host/store/zip_read_source.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>

#include "host/store/store_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

struct ReadSource {
  std::shared_ptr<const ReadableFile> file;
  ReadSourceState& state;
  std::uint64_t offset = 0;
  zip_error_t error = {};
};

zip_int64_t readBytes(ReadSource& source, void* data, zip_uint64_t length) {
  const std::uint64_t left = source.file->size() - std::min(source.offset, source.file->size());
  auto* target = static_cast<char*>(data);
  std::uint64_t wanted = std::min<std::uint64_t>(length, left);
  zip_int64_t done = 0;
  while (wanted > 0) {
    const ssize_t count = uninterrupted([&] {
      return pread(source.file->descriptor(), target + done, wanted,
                   static_cast<off_t>(source.offset));
    });
    if (count <= 0) {
      if (count == 0) {
        source.state.isCutShort = true;
      } else {
        source.state.systemError = errno;
      }
      zip_error_set(&source.error, ZIP_ER_READ, count == 0 ? 0 : errno);
      return -1;
    }
    done += count;
    wanted -= static_cast<std::uint64_t>(count);
    source.offset += static_cast<std::uint64_t>(count);
  }
  return done;
}

zip_int64_t seek(ReadSource& source, void* data, zip_uint64_t length) {
  const zip_int64_t offset = zip_source_seek_compute_offset(source.offset, source.file->size(),
                                                            data, length, &source.error);
  if (offset < 0) return -1;
  source.offset = static_cast<std::uint64_t>(offset);
  return 0;
}

zip_int64_t describe(const ReadSource& source, void* data, zip_uint64_t length) {
  if (length < sizeof(zip_stat_t)) return -1;
  auto* status = static_cast<zip_stat_t*>(data);
  zip_stat_init(status);
  status->size = source.file->size();
  status->valid = ZIP_STAT_SIZE;
  return sizeof(zip_stat_t);
}

zip_int64_t serve(void* context, void* data, zip_uint64_t length, zip_source_cmd_t command) {
  auto& source = *static_cast<ReadSource*>(context);
  switch (command) {
    case ZIP_SOURCE_OPEN:
      source.offset = 0;
      return 0;
    case ZIP_SOURCE_CLOSE:
      return 0;
    case ZIP_SOURCE_READ:
      return readBytes(source, data, length);
    case ZIP_SOURCE_SEEK:
      return seek(source, data, length);
    case ZIP_SOURCE_TELL:
      return static_cast<zip_int64_t>(source.offset);
    case ZIP_SOURCE_STAT:
      return describe(source, data, length);
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&source.error, data, length);
    case ZIP_SOURCE_SUPPORTS:
      return ZIP_SOURCE_SUPPORTS_SEEKABLE;
    case ZIP_SOURCE_FREE:
      zip_error_fini(&source.error);
      delete &source;
      return 0;
    default:
      zip_error_set(&source.error, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

}  // namespace

ReadableFile::ReadableFile(const std::string& path) {
  // Without O_NONBLOCK a named pipe would wait for its other end.
  constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  file_ = FileDescriptor(uninterrupted([&] { return open(path.c_str(), kFlags); }));
  if (!file_.isOpen()) {
    throw StoreError(StoreError::Kind::kNoFile,
                     localized("The file cannot be read^1", systemReason(errno)));
  }
  examine();
}

ReadableFile::ReadableFile(FileDescriptor file) : file_(std::move(file)) { examine(); }

void ReadableFile::examine() {
  struct stat status = {};
  if (fstat(file_.number(), &status) != 0) {
    throw StoreError(StoreError::Kind::kNoFile,
                     localized("The file cannot be read^1", systemReason(errno)));
  }
  if (!S_ISREG(status.st_mode)) {
    throw StoreError(StoreError::Kind::kNoFile, S_ISDIR(status.st_mode)
                                                    ? localized("It is a folder.")
                                                    : localized("This is no ordinary file."));
  }
  size_ = static_cast<std::uint64_t>(status.st_size);
  modified_ = status.st_mtim;
}

void ReadableFile::requireUnchanged() const {
  struct stat status = {};
  if (fstat(file_.number(), &status) != 0) {
    throw StoreError(StoreError::Kind::kNoFile,
                     localized("The file cannot be read^1", systemReason(errno)));
  }
  if (static_cast<std::uint64_t>(status.st_size) != size_ ||
      status.st_mtim.tv_sec != modified_.tv_sec || status.st_mtim.tv_nsec != modified_.tv_nsec) {
    throw StoreError(StoreError::Kind::kDamaged,
                     localized("The file was changed by another program since it was opened."));
  }
}

zip_source_t* makeZipReadSource(std::shared_ptr<const ReadableFile> file, ReadSourceState& state) {
  auto source = std::make_unique<ReadSource>(ReadSource{std::move(file), state});
  zip_error_init(&source->error);
  zip_source_t* made = zip_source_function_create(serve, source.get(), nullptr);
  if (made != nullptr) source.release();
  return made;
}

}  // namespace vornwout
