// Makes PNG files chunk by chunk, sound ones and others.
#pragma once

#include <cstdint>
#include <string>

namespace vornwout {

inline std::string pngNumber(std::uint32_t value) {
  std::string bytes;
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(value >> shift & 0xFFU);
  return bytes;
}

/// The checksum of PNG, bit by bit.
inline std::uint32_t pngChecksum(const std::string& bytes) {
  std::uint32_t sum = 0xFFFFFFFFU;
  for (const char c : bytes) {
    sum ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  return ~sum;
}

inline std::string pngChunk(const std::string& name, const std::string& data) {
  return pngNumber(static_cast<std::uint32_t>(data.size())) + name + data +
         pngNumber(pngChecksum(name + data));
}

inline std::string pngHeader(std::uint32_t width, std::uint32_t height, char depth, char type) {
  return pngChunk("IHDR",
                  pngNumber(width) + pngNumber(height) + depth + type + std::string(3, '\0'));
}

/// A picture of one pixel that carries `data`.
inline std::string pngPicture(const std::string& data = "xx") {
  return std::string("\x89PNG\r\n\x1A\n", 8) + pngHeader(1, 1, 8, 6) + pngChunk("IDAT", data) +
         pngChunk("IEND", "");
}

}  // namespace vornwout
