// Deflate and the checksum of zip members, whole buffers at a time.
//
// libdeflate does the work: parts are at most 256 MiB and held whole anyway, and without the state
// that a stream needs it takes half of zlib's time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct libdeflate_compressor;

namespace vornwout {

/// One thread's compressor, used for one part after the other.
class Deflater {
 public:
  /// Throws std::bad_alloc.
  Deflater();
  ~Deflater();
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  /// Deflates all of `bytes` into `result`; false, and `result` is empty then, for what would not
  /// become smaller.
  bool deflateAll(std::string_view bytes, std::string& result);

 private:
  struct Free {
    void operator()(libdeflate_compressor* compressor) const;
  };
  std::unique_ptr<libdeflate_compressor, Free> compressor_;
  std::string output_;  ///< kept from part to part
};

/// Inflates all of `packed`, which may be hostile; false unless it fills `result` exactly and
/// nothing is left over. Throws std::bad_alloc.
bool inflateAll(std::string_view packed, std::string& result);

/// The checksum that zip members carry, CRC-32.
std::uint32_t checksumOf(std::string_view bytes);

}  // namespace vornwout
