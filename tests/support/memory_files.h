// The files that a document is built from, held in memory.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "host/build/build_error.h"
#include "host/build/build_files.h"

namespace vornwout {

class MemoryFiles : public BuildFiles {
 public:
  MemoryFiles() = default;
  explicit MemoryFiles(std::map<std::string, std::string> files) : files_(std::move(files)) {}
  std::unique_ptr<ByteSource> open(const std::string& name) override {
    const auto found = files_.find(name);
    if (found == files_.end()) throw BuildError::unreadable(name, "There is no such file.");
    return std::make_unique<MemorySource>(found->second);
  }
  std::uint64_t sizeOf(const std::string& name) override {
    const auto found = files_.find(name);
    return found == files_.end() ? 0 : found->second.size();
  }

 private:
  std::map<std::string, std::string> files_;
};

}  // namespace vornwout
