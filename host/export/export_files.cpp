#include "host/export/export_files.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/store/store_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

/// Why no file can have this path; empty when one can.
std::string faultOf(const std::string& path) {
  if (path.empty()) return localized("it is empty");
  if (path.find('\0') != std::string::npos) return localized("it has a zero byte");
  const fs::path target(path);
  if (!target.has_filename()) return localized("it names a folder");
  std::error_code error;
  if (fs::is_directory(target, error)) return localized("it is a folder");
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  if (!fs::is_directory(folder, error)) return localized("its folder is not there");
  return "";
}

}  // namespace

ReplacedFile& ExportFiles::begin(const std::string& path, ExportErrorCode code) {
  const std::string fault = faultOf(path);
  if (!fault.empty()) throw ExportError(code, fault);
  std::error_code error;
  const std::string place = fs::weakly_canonical(path, error).string();
  const bool isTaken = std::any_of(entries_.begin(), entries_.end(),
                                   [&](const Entry& entry) { return entry.path == place; });
  if (isTaken) throw ExportError(code, localized("two files of this export would have it"));
  entries_.push_back({place, std::make_unique<ReplacedFile>(path)});
  return *entries_.back().file;
}

std::string ExportFiles::commit() {
  for (const Entry& entry : entries_) entry.file->prepare();
  std::size_t placed = 0;
  try {
    for (; placed < entries_.size(); ++placed) entries_[placed].file->place();
  } catch (const StoreError&) {
    while (placed > 0) entries_[--placed].file->takeBack();
    throw;
  }
  std::string warning;
  for (const Entry& entry : entries_) {
    ReplacedFile::Committed committed = entry.file->settle();
    if (warning.empty()) warning = std::move(committed.warning);
  }
  entries_.clear();
  return warning;
}

}  // namespace vornwout
