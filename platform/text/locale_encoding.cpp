#include "platform/text/locale_encoding.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>

#include <langinfo.h>
#include <locale.h>

namespace vornwout {
namespace {

constexpr const char* kAscii = "US-ASCII";

/// The locale's name by the order in which the system looks at the environment.
std::string localeName() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return "C";
}

/// What the system says, which knows the encodings of names that say none; of a locale that is not
/// installed what its name says.
std::string codeset() {
  const std::unique_ptr<std::remove_pointer_t<locale_t>, void (*)(locale_t)> locale(
      newlocale(LC_CTYPE_MASK, "", nullptr), freelocale);
  if (locale != nullptr) return nl_langinfo_l(CODESET, locale.get());
  const std::string name = localeName();
  const std::size_t dot = name.find('.');
  if (dot == std::string::npos) return {};
  return name.substr(dot + 1, name.find('@', dot) - dot - 1);
}

}  // namespace

std::shared_ptr<const Encoding> localeEncoding() {
  std::shared_ptr<const Encoding> encoding = Encoding::find(codeset());
  return encoding == nullptr || encoding->name() == kAscii ? Encoding::utf8() : encoding;
}

}  // namespace vornwout
