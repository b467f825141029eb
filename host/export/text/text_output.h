// The text file of an export: takes UTF-8, writes the encoding that is asked for.
//
// Texts of a document pass through shownText() or shownLine() first, so that nothing in them moves
// what stands around them, and so that their widths are those of what the file has: what its
// encoding cannot hold is a question mark there already. The file is written in pieces; what waits
// is a piece and the longest line.
//
// UTF-16 is little endian behind a byte-order mark; the others have none.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/store/replaced_file.h"
#include "platform/exportspec/export_spec.h"
#include "platform/text/encoding.h"

namespace vornwout {

class TextOutput {
 public:
  /// The file must outlive it.
  TextOutput(ReplacedFile& file, ExportTextSpec::ENCODING_TYPE encoding);

  /// A text of a document as it may be appended, with "\n" for its line ends.
  std::string shownText(std::string_view utf8) const;
  /// The same as one line.
  std::string shownLine(std::string_view utf8) const;

  /// What comes next stands behind an empty line, if anything stands before it.
  void separate() { isSeparated_ = true; }
  /// Appends whole lines, their ends included. Throws StoreError.
  void append(std::string_view lines);
  /// Appends one line and its end; throws StoreError.
  void line(std::string_view text);
  /// Writes what waits; nothing may follow. Throws StoreError.
  void finish();

  /// For what waits longer than a line.
  FileDescriptor makeScratchFile() const { return file_.makeScratchFile(); }

 private:
  std::string held(std::string shown) const;
  void put(std::string_view utf8);
  void flush();

  ReplacedFile& file_;
  bool isUtf16_;
  std::shared_ptr<const Encoding> encoding_;
  std::string waiting_;
  bool isSeparated_ = false;
  bool isEmpty_ = true;
};

}  // namespace vornwout
