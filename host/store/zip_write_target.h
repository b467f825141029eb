// A zip library's target that writes through a ReplacedFile.
//
// Entry point: makeZipWriteTarget(). Exceptions must not pass through the library, so the first one
// is kept; the library sees a write that failed and gives up.
#pragma once

#include <exception>

#include <zip.h>

#include "host/store/replaced_file.h"

namespace vornwout {

/// `file` and `failure` outlive the target. The library never commits the file; the owner does,
/// once the archive is closed. Null when there is no memory.
zip_source_t* makeZipWriteTarget(ReplacedFile& file, std::exception_ptr& failure);

}  // namespace vornwout
