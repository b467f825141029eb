// What a text output writes, for the tests of what is written through it.
#pragma once

#include <functional>
#include <string>

#include "host/export/text/text_output.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {

/// The bytes of the file that `write` fills.
inline std::string textFileOf(
    const std::function<void(TextOutput&)>& write,
    ExportTextSpec::ENCODING_TYPE encoding = ExportTextSpec::ENCODING_TYPE::UTF8) {
  const ScratchDirectory scratch;
  ReplacedFile file(scratch.file("text.txt"));
  TextOutput out(file, encoding);
  write(out);
  out.finish();
  file.commit();
  return scratch.read("text.txt");
}

}  // namespace vornwout
