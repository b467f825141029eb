#include "host/store/deflate.h"

#include <algorithm>
#include <new>

#include <libdeflate.h>

namespace vornwout {
namespace {

/// The fastest: a document is saved more often than it is copied over a network.
constexpr int kLevel = 1;
/// An output buffer that is larger is given back.
constexpr std::size_t kKeptOutput = std::size_t{8} << 20;

}  // namespace

void Deflater::Free::operator()(libdeflate_compressor* compressor) const {
  libdeflate_free_compressor(compressor);
}

Deflater::Deflater() : compressor_(libdeflate_alloc_compressor(kLevel)) {
  if (compressor_ == nullptr) throw std::bad_alloc();
}

Deflater::~Deflater() = default;

bool Deflater::deflateAll(std::string_view bytes, std::string& result) {
  result.clear();
  if (output_.size() < bytes.size()) output_.resize(bytes.size());
  // With less room than the bytes have themselves it gives up where it saves nothing.
  const std::size_t room = std::max<std::size_t>(bytes.size(), 1) - 1;
  const std::size_t size = libdeflate_deflate_compress(compressor_.get(), bytes.data(),
                                                       bytes.size(), output_.data(), room);
  result.assign(output_, 0, size);
  if (output_.size() > kKeptOutput) std::string().swap(output_);
  return size > 0;
}

bool inflateAll(std::string_view packed, std::string& result) {
  struct Free {
    void operator()(libdeflate_decompressor* made) const { libdeflate_free_decompressor(made); }
  };
  const std::unique_ptr<libdeflate_decompressor, Free> decompressor(
      libdeflate_alloc_decompressor());
  if (decompressor == nullptr) throw std::bad_alloc();
  std::size_t taken = 0;
  std::size_t made = 0;
  const libdeflate_result outcome =
      libdeflate_deflate_decompress_ex(decompressor.get(), packed.data(), packed.size(),
                                       result.data(), result.size(), &taken, &made);
  return outcome == LIBDEFLATE_SUCCESS && taken == packed.size() && made == result.size();
}

std::uint32_t checksumOf(std::string_view bytes) {
  return libdeflate_crc32(0, bytes.data(), bytes.size());
}

}  // namespace vornwout
