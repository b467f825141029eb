#include "host/changes/installed_fonts.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <string_view>

#include <dlfcn.h>
#include <fontconfig/fontconfig.h>

namespace vornwout {
namespace {

constexpr const char* kLibrary = "libfontconfig.so.1";

/// The few functions that are needed, found by name.
class Fontconfig {
 public:
  /// The one of the process; null where the library is not installed.
  static const Fontconfig* get() {
    static const Fontconfig library;
    return library.isComplete_ ? &library : nullptr;
  }

  bool has(const std::string& family) const {
    const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> pattern(createPattern_(),
                                                                          destroyPattern_);
    const std::unique_ptr<FcObjectSet, decltype(&FcObjectSetDestroy)> wanted(createObjects_(),
                                                                             destroyObjects_);
    if (pattern == nullptr || wanted == nullptr) throw std::bad_alloc();
    addString_(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    addObject_(wanted.get(), FC_FAMILY);
    const std::unique_ptr<FcFontSet, decltype(&FcFontSetDestroy)> fonts(
        list_(nullptr, pattern.get(), wanted.get()), destroyFonts_);
    return fonts != nullptr && fonts->nfont > 0;
  }

 private:
  Fontconfig() {
    // Never closed: its caches are meant to live as long as the process.
    void* const library = dlopen(kLibrary, RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr) return;
    isComplete_ = find(library, "FcPatternCreate", createPattern_) &&
                  find(library, "FcPatternDestroy", destroyPattern_) &&
                  find(library, "FcPatternAddString", addString_) &&
                  find(library, "FcObjectSetCreate", createObjects_) &&
                  find(library, "FcObjectSetDestroy", destroyObjects_) &&
                  find(library, "FcObjectSetAdd", addObject_) &&
                  find(library, "FcFontList", list_) &&
                  find(library, "FcFontSetDestroy", destroyFonts_);
  }

  template <typename Function>
  static bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
  }

  bool isComplete_ = false;
  decltype(&FcPatternCreate) createPattern_ = nullptr;
  decltype(&FcPatternDestroy) destroyPattern_ = nullptr;
  decltype(&FcPatternAddString) addString_ = nullptr;
  decltype(&FcObjectSetCreate) createObjects_ = nullptr;
  decltype(&FcObjectSetDestroy) destroyObjects_ = nullptr;
  decltype(&FcObjectSetAdd) addObject_ = nullptr;
  decltype(&FcFontList) list_ = nullptr;
  decltype(&FcFontSetDestroy) destroyFonts_ = nullptr;
};

constexpr std::array<std::string_view, 6> kGenericFamilies = {
    "serif", "sans-serif", "sans", "monospace", "cursive", "system-ui"};

bool isGeneric(const std::string& family) {
  return std::any_of(kGenericFamilies.begin(), kGenericFamilies.end(), [&](std::string_view known) {
    return known.size() == family.size() &&
           std::equal(known.begin(), known.end(), family.begin(), [](char a, char b) {
             return a == (b >= 'A' && b <= 'Z' ? static_cast<char>(b - 'A' + 'a') : b);
           });
  });
}

}  // namespace

bool isFontInstalled(const std::string& family) {
  if (isGeneric(family)) return true;
  const Fontconfig* fontconfig = Fontconfig::get();
  return fontconfig == nullptr || fontconfig->has(family);
}

}  // namespace vornwout
