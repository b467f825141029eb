#include "host/draw/draw_module.h"

#include <array>

#include "platform/files/loaded_module.h"
#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "platform/text/shortened_text.h"

namespace vornwout {
namespace {

constexpr int kMaxColumns = 72;

struct LibraryPackage {
  std::string_view library;  ///< how the names of its files start
  std::string_view package;
};

constexpr std::array<LibraryPackage, 7> kPackages = {{{"librsvg-2.so", "librsvg2-2"},
                                                      {"libcairo.so", "libcairo2"},
                                                      {"libjpeg.so", "libjpeg62-turbo"},
                                                      {"libgdk_pixbuf", "libgdk-pixbuf-2.0-0"},
                                                      {"libgio-2.0", "libglib2.0-0"},
                                                      {"libgobject-2.0", "libglib2.0-0"},
                                                      {"libglib-2.0", "libglib2.0-0"}}};

DrawModule& loadModule() {
  try {
    return *reinterpret_cast<DrawModuleEntry>(moduleFunction(kDrawModule, kDrawModuleEntry))();
  } catch (const ModuleError& error) {
    throw DrawError(drawModuleProblem(error.what()));
  }
}

}  // namespace

DrawModule& drawModule() {
  static DrawModule& loaded = loadModule();
  return loaded;
}

std::string drawProblem(std::string_view text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.remove_suffix(1);
  std::string sentence = sanitizeForTerminal(text);
  if (!sentence.ends_with('.')) sentence += '.';
  return textHead(sentence, kMaxColumns);
}

std::string drawModuleProblem(std::string_view loaderText) {
  constexpr std::string_view kMissing = ": cannot open shared object file: No such file";
  const std::size_t missing = loaderText.find(kMissing);
  if (missing == std::string_view::npos) {
    return drawProblem(localized("Charts cannot be drawn: ^1", loaderText));
  }
  std::string_view file = loaderText.substr(0, missing);
  file.remove_prefix(file.rfind('/') + 1);
  if (file == kDrawModule) {
    return localized("This build draws no charts; it needs librsvg2-dev and libjpeg-dev.");
  }
  for (const LibraryPackage& known : kPackages) {
    if (file.starts_with(known.library)) {
      return drawProblem(localized("Charts need ^1 of package ^2.", file, known.package));
    }
  }
  return drawProblem(localized("Charts need the library ^1.", file));
}

}  // namespace vornwout
