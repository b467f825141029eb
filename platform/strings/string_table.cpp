#include "platform/strings/string_table.h"

#include "platform/files/fetch_file.h"
#include "platform/text/encoding.h"

namespace vornwout {

void FacSTStringTable::GetKeysAndValues(const std::string& path,
                                        std::vector<keyValueGloss>& entries) const {
  constexpr bool kExpandHandles = false;
  constexpr bool kBackslashIsSlash = true;
  entries = readTextBundle(FetchFile::fetch(path, kExpandHandles, kBackslashIsSlash))
                .value_or(std::vector<keyValueGloss>());
  const Encoding& encoding = currentEncoding();
  if (encoding.isUtf8()) return;
  for (keyValueGloss& entry : entries) {
    for (std::string* text : {&entry.key, &entry.value, &entry.gloss}) {
      *text = encoding.fromUtf8(*text);
    }
  }
}

}  // namespace vornwout
