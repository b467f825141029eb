// Tells how far the building of a document is, by the bytes that were read of its files.
//
// CountedFiles stands before other files and reports what is read through it. Bytes are the measure
// because they follow the work: one table of 100 MB among ten small objects is most of it. What is
// read a second time, to find the place of a mistake, is not counted.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/build/build_files.h"

namespace vornwout {

class CountedFiles : public BuildFiles {
 public:
  /// `files` must outlive this and what it opens.
  explicit CountedFiles(BuildFiles& files) : files_(files) {}

  /// Says before the work that a file will be read; once for every time.
  void expect(const std::string& name) { total_ += files_.sizeOf(name); }

  /// Reports that nothing is left to read.
  void finish() const;

  std::unique_ptr<ByteSource> open(const std::string& name) override;
  std::string shownName(const std::string& name) const override { return files_.shownName(name); }
  std::uint64_t sizeOf(const std::string& name) override { return files_.sizeOf(name); }

 private:
  class Source;

  void count(std::uint64_t bytes);

  BuildFiles& files_;
  std::uint64_t done_ = 0;
  std::uint64_t total_ = 0;
};

}  // namespace vornwout
