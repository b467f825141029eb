// What the module that draws gives the host, how it is found, and what is said where it is not.
//
// Entry points: drawModule(), drawProblem().
#pragma once

#include <string>
#include <string_view>

#include "host/draw/chart_image.h"

namespace vornwout {

/// A chart that was checked, and the image to make of it.
struct DrawRequest {
  std::string_view bytes;
  bool isSvg = false;      ///< otherwise PNG
  double shownWidth = 0;   ///< of an SVG, in the pixels of style sheets
  double shownHeight = 0;  ///< the same
  int width = 0;           ///< of the image, in its own pixels, within the bounds of chart_image.h
  int height = 0;
  ImageFormat format = ImageFormat::kPng;
  bool grayscale = false;
  bool compressBmp = false;
};

class DrawModule {
 public:
  virtual ~DrawModule() = default;
  /// The bytes of the image file. Throws std::runtime_error in the words of whichever library
  /// failed, and std::bad_alloc.
  virtual std::string draw(const DrawRequest& request) = 0;
};

inline constexpr const char* kDrawModule = "libvorndraw.so";
/// The one function of the module, by this name.
inline constexpr const char* kDrawModuleEntry = "vorndrawModule";
using DrawModuleEntry = DrawModule* (*)();

/// The module, loaded by the first call; the next one tries again where that failed. Throws
/// DrawError.
DrawModule& drawModule();

/// The words of a library as the text of a DrawError: one line of at most 72 columns, with a full
/// stop.
std::string drawProblem(std::string_view text);

/// What is missing, and the package that brings it, where the loader says `loaderText`.
std::string drawModuleProblem(std::string_view loaderText);

}  // namespace vornwout
