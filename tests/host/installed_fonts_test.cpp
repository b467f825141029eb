// Which fonts the system has.
#include "host/changes/installed_fonts.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(InstalledFonts, GenericFamiliesAreAlwaysThere) {
  for (const char* family : {"serif", "Sans-Serif", "MONOSPACE", "sans"}) {
    EXPECT_TRUE(isFontInstalled(family)) << family;
  }
}

TEST(InstalledFonts, AFamilyThatNobodyMakesIsNotThere) {
  void* const library = dlopen("libfontconfig.so.1", RTLD_LAZY | RTLD_LOCAL);
  const bool canTell = library != nullptr;
  if (canTell) dlclose(library);
  // Without Fontconfig nobody can tell, and every font is taken to be there.
  EXPECT_EQ(isFontInstalled("No Such Family 4711"), !canTell);
}

}  // namespace
}  // namespace vornwout
