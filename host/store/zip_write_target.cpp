#include "host/store/zip_write_target.h"

#include <memory>
#include <string_view>

namespace vornwout {
namespace {

struct WriteTarget {
  ReplacedFile& file;
  std::exception_ptr& failure;
  zip_error_t error = {};
};

zip_int64_t writeBytes(WriteTarget& target, const void* data, zip_uint64_t length) {
  try {
    target.file.write({static_cast<const char*>(data), length});
    return static_cast<zip_int64_t>(length);
  } catch (...) {
    if (target.failure == nullptr) target.failure = std::current_exception();
    zip_error_set(&target.error, ZIP_ER_WRITE, 0);
    return -1;
  }
}

zip_int64_t seek(WriteTarget& target, void* data, zip_uint64_t length) {
  const zip_int64_t offset = zip_source_seek_compute_offset(target.file.tell(), target.file.size(),
                                                            data, length, &target.error);
  if (offset < 0) return -1;
  target.file.seek(static_cast<std::uint64_t>(offset));
  return 0;
}

zip_int64_t serve(void* context, void* data, zip_uint64_t length, zip_source_cmd_t command) {
  auto& target = *static_cast<WriteTarget*>(context);
  switch (command) {
    case ZIP_SOURCE_BEGIN_WRITE:
    case ZIP_SOURCE_COMMIT_WRITE:
    case ZIP_SOURCE_ROLLBACK_WRITE:
    case ZIP_SOURCE_REMOVE:
    case ZIP_SOURCE_CLOSE:
      return 0;
    case ZIP_SOURCE_WRITE:
      return writeBytes(target, data, length);
    case ZIP_SOURCE_SEEK_WRITE:
      return seek(target, data, length);
    case ZIP_SOURCE_TELL_WRITE:
      return static_cast<zip_int64_t>(target.file.tell());
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&target.error, data, length);
    case ZIP_SOURCE_SUPPORTS:
      return zip_source_make_command_bitmap(
          ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR,
          ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL, ZIP_SOURCE_SUPPORTS,
          ZIP_SOURCE_BEGIN_WRITE, ZIP_SOURCE_COMMIT_WRITE, ZIP_SOURCE_ROLLBACK_WRITE,
          ZIP_SOURCE_WRITE, ZIP_SOURCE_SEEK_WRITE, ZIP_SOURCE_TELL_WRITE, ZIP_SOURCE_REMOVE, -1);
    case ZIP_SOURCE_FREE:
      zip_error_fini(&target.error);
      delete &target;
      return 0;
    default:
      // There is nothing to read yet: the library takes that for a new archive.
      zip_error_set(&target.error, ZIP_ER_READ, ENOENT);
      return -1;
  }
}

}  // namespace

zip_source_t* makeZipWriteTarget(ReplacedFile& file, std::exception_ptr& failure) {
  auto target = std::make_unique<WriteTarget>(WriteTarget{file, failure});
  zip_error_init(&target->error);
  zip_source_t* made = zip_source_function_create(serve, target.get(), nullptr);
  if (made != nullptr) target.release();
  return made;
}

}  // namespace vornwout
