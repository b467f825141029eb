// Zip files made byte by byte, so that tests can make the ones that no library would write.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vornwout {

/// One member; what is not set is as a plain stored member has it.
struct ZipBytesMember {
  std::string name = {};
  std::string bytes = {};  ///< as they lie in the file
  std::uint16_t method = 0;
  std::uint32_t size = 0xFFFFFFFF;  ///< that it declares; the number of bytes unless set
  std::uint32_t checksum = 0;
  std::uint16_t flags = 1 << 11;  ///< names in UTF-8
  std::string extra = {};
  std::uint32_t compressedSize = 0xFFFFFFFF;  ///< likewise
};

inline void appendLittleEndian(std::string& bytes, std::uint64_t number, int size) {
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

/// What the local header and the list of members have in common.
inline std::string zipFields(const ZipBytesMember& member) {
  const auto stored = static_cast<std::uint32_t>(member.bytes.size());
  const auto orStored = [&](std::uint32_t size) { return size == 0xFFFFFFFF ? stored : size; };
  std::string fields;
  appendLittleEndian(fields, 20, 2);  // version
  appendLittleEndian(fields, member.flags, 2);
  appendLittleEndian(fields, member.method, 2);
  appendLittleEndian(fields, 0, 2);   // time
  appendLittleEndian(fields, 33, 2);  // date
  appendLittleEndian(fields, member.checksum, 4);
  appendLittleEndian(fields, orStored(member.compressedSize), 4);
  appendLittleEndian(fields, orStored(member.size), 4);
  appendLittleEndian(fields, member.name.size(), 2);
  appendLittleEndian(fields, member.extra.size(), 2);
  return fields;
}

/// The end of a zip file whose list of members stands at `offset`.
inline std::string zipEnd(std::size_t count, std::size_t listSize, std::size_t offset) {
  std::string end("PK\5\6\0\0\0\0", 8);
  appendLittleEndian(end, count, 2);
  appendLittleEndian(end, count, 2);
  appendLittleEndian(end, listSize, 4);
  appendLittleEndian(end, offset, 4);
  appendLittleEndian(end, 0, 2);
  return end;
}

/// A zip file of the members. With `shared`, all list the local header of the first.
inline std::string zipBytes(const std::vector<ZipBytesMember>& members, bool shared = false) {
  std::string file;
  std::string list;
  for (const ZipBytesMember& member : members) {
    const std::size_t offset = shared ? 0 : file.size();
    if (!shared || file.empty()) {
      file += "PK\3\4" + zipFields(member) + member.name + member.extra + member.bytes;
    }
    list += "PK\1\2";
    appendLittleEndian(list, 20, 2);  // made by
    list += zipFields(member);
    list.append(2 + 2 + 2 + 4, 0);  // comment, disk, attributes
    appendLittleEndian(list, offset, 4);
    list += member.name + member.extra;
  }
  const std::size_t offset = file.size();
  return file + list + zipEnd(members.size(), list.size(), offset);
}

}  // namespace vornwout
