// Reads a container: a zip file, whose every byte is taken to be hostile.
//
// Entry points: the constructor, which reads the list of members and refuses what breaks a rule;
// read() for one member; rawMember() for a writer that takes a member over as it lies there.
//
// The file is open from the constructor on, by one descriptor. A save that puts another file in its
// place changes nothing for a reader that is open; a program that writes into this very file is
// noticed by the file's size and time, and what was read meanwhile is refused.
//
// What bounds the cost of a hostile file: the members' compressed sizes together must fit into the
// file, so none is counted twice; a member may declare only what deflate can make of its bytes; and
// reading produces the declared size or an error, never more. So memory is bounded by the caller's
// limit and by 1,032 times the file, whichever is less.
//
// A member is inflated by one call from memory, which is faster than the zip library's reading in
// pieces; the library finds it and decrypts it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/store/container_limits.h"
#include "host/store/file_descriptor.h"
#include "host/store/secret.h"

namespace vornwout {

/// One member as the container lists it.
struct ContainerMember {
  std::string name;  ///< UTF-8, with slashes
  std::uint64_t size = 0;
  std::uint64_t compressedSize = 0;  ///< as it lies in the file, with what encryption adds
  bool isEncrypted = false;
};

/// A member as it lies in the file, for a writer; usable by one thread, the reader's.
class RawMember {
 public:
  virtual ~RawMember();
  virtual std::uint16_t method() const = 0;  ///< of compression, by the zip format's numbers
  virtual std::uint64_t size() const = 0;
  virtual std::uint64_t compressedSize() const = 0;
  virtual std::uint32_t checksum() const = 0;
  virtual bool isEncrypted() const = 0;
  /// Starts from the first byte.
  virtual void open() = 0;
  /// Reads the next bytes into `target`; 0 at the end. Throws StoreError.
  virtual std::size_t readSome(char* target, std::size_t size) = 0;
  virtual void close() = 0;
};

/// Used by one thread at a time. Members throw StoreError; its sentence names the member.
class ContainerReader {
 public:
  /// Opens a container. `memberLimit` is the largest size that a member may declare, at most
  /// kMostOfAMember.
  explicit ContainerReader(const std::string& path, std::uint64_t memberLimit = kMemberLimit);
  /// Opens a container that is open as a file already.
  explicit ContainerReader(FileDescriptor file, std::uint64_t memberLimit = kMemberLimit);
  ~ContainerReader();
  ContainerReader(ContainerReader&&) noexcept;
  ContainerReader& operator=(ContainerReader&&) noexcept;

  /// Another reader of the same open file, for another thread; with the same password.
  ContainerReader reopen() const;

  /// The members in the order of the container, without directories.
  const std::vector<ContainerMember>& members() const;
  bool contains(std::string_view name) const;
  /// The member of that name; null when there is none.
  const ContainerMember* find(std::string_view name) const;

  /// True when the members are encrypted: all but "mimetype", which stays readable.
  bool isEncrypted() const;
  /// The password to read with; an empty one for none.
  void setPassword(std::string_view password);
  /// False when the container is encrypted and the password does not open it. Reads its smallest
  /// member. Throws StoreError when that is damaged; of the kind kWrongPassword where one cannot
  /// tell a wrong password from damage.
  [[nodiscard]] bool checkPassword();

  /// The bytes of a member, checked against its size and checksum. Throws also when it is larger
  /// than `limit`.
  std::string read(std::string_view name, std::uint64_t limit = kMostOfAMember);

  /// The member as it lies there, with the compression and encryption that it has. It goes on
  /// working when the reader ends.
  std::unique_ptr<RawMember> rawMember(std::string_view name);
  /// A member's compressed bytes, decrypted and not inflated, after a check that they are whole.
  struct CompressedBytes {
    std::uint16_t method = 0;
    std::uint64_t size = 0;
    std::uint32_t checksum = 0;
    std::string bytes;
  };
  CompressedBytes readCompressed(std::string_view name);
  /// True when the container is encrypted with this password, which is also the reader's.
  bool opensWith(std::string_view password);

 private:
  class Archive;
  class StoredMember;
  explicit ContainerReader(std::shared_ptr<Archive> archive);

  std::shared_ptr<Archive> archive_;
};

}  // namespace vornwout
