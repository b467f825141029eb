// The files that a document is built from, behind an interface, so that they may lie in memory.
//
// Entry points: DiskFiles for a folder, BuildFiles::open() for bytes in order, readWhole() for what
// is small enough to be held. A manifest comes from outside: by the names in it nothing is read but
// what lies in its folder, neither by ".." nor by a symbolic link that leads out, unless the user
// allowed it. Such a name leads to an ordinary file only: a pipe could make the build wait for
// ever.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace vornwout {

/// The bytes of a file, from the start to the end, more than once.
class ByteSource {
 public:
  virtual ~ByteSource();
  /// Reads up to `size` bytes; 0 at the end. Throws BuildError.
  virtual std::size_t read(char* buffer, std::size_t size) = 0;
  /// Goes back to the start.
  virtual void rewind() = 0;
};

/// Bytes that lie in memory.
class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string bytes) : bytes_(std::move(bytes)) {}
  std::size_t read(char* buffer, std::size_t size) override;
  void rewind() override { position_ = 0; }

 private:
  std::string bytes_;
  std::size_t position_ = 0;
};

class BuildFiles {
 public:
  virtual ~BuildFiles();
  /// Opens a file by the name that the user or a manifest gave it; throws BuildError.
  virtual std::unique_ptr<ByteSource> open(const std::string& name) = 0;
  /// What messages call the file.
  virtual std::string shownName(const std::string& name) const { return name; }
  /// Bytes that the file has, for telling how far its reading is; 0 where nobody knows.
  virtual std::uint64_t sizeOf(const std::string&) { return 0; }
};

/// Which files a folder's names may reach.
enum class FileReach { kFolder, kAnywhere };

/// Files on disk, named relative to a folder; an empty one is the working directory.
class DiskFiles : public BuildFiles {
 public:
  DiskFiles(std::string folder, FileReach reach) : folder_(std::move(folder)), reach_(reach) {}
  std::unique_ptr<ByteSource> open(const std::string& name) override;
  std::string shownName(const std::string& name) const override;
  std::uint64_t sizeOf(const std::string& name) override;

 private:
  void checkReach(const std::string& name) const;

  std::string folder_;
  FileReach reach_;
};

/// All bytes of a file; throws BuildError when there are more than `limit`.
std::string readWhole(BuildFiles& files, const std::string& name, std::size_t limit);

}  // namespace vornwout
