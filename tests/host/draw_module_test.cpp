#include "host/draw/draw_module.h"

#include <string>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "platform/text/display_width.h"

namespace vornwout {
namespace {

TEST(DrawModule, WhatIsMissingIsNamedWithItsPackage) {
  struct Case {
    const char* library;
    const char* problem;
  };
  const Case cases[] = {
      {"libvorndraw.so", "This build draws no charts; it needs librsvg2-dev and libjpeg-dev."},
      {"/a/b/libvorndraw.so", "This build draws no charts; it needs librsvg2-dev and libjpeg-dev."},
      {"librsvg-2.so.2", "Charts need librsvg-2.so.2 of package librsvg2-2."},
      {"libcairo.so.2", "Charts need libcairo.so.2 of package libcairo2."},
      {"libjpeg.so.62", "Charts need libjpeg.so.62 of package libjpeg62-turbo."},
      {"libgio-2.0.so.0", "Charts need libgio-2.0.so.0 of package libglib2.0-0."},
      {"libgdk_pixbuf-2.0.so.0",
       "Charts need libgdk_pixbuf-2.0.so.0 of package libgdk-pixbuf-2.0-0."},
      {"libother.so.1", "Charts need the library libother.so.1."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.library);
    const std::string problem = drawModuleProblem(
        std::string(c.library) + ": cannot open shared object file: No such file or directory");
    EXPECT_EQ(problem, c.problem);
    EXPECT_LE(displayWidth(problem), 72);
  }
}

TEST(DrawModule, LoaderSaysWhatIsMissingInTheseWords) {
  ASSERT_EQ(dlopen("/nowhere/libvorndraw.so", RTLD_NOW), nullptr);
  EXPECT_EQ(drawModuleProblem(dlerror()),
            "This build draws no charts; it needs librsvg2-dev and libjpeg-dev.");
}

TEST(DrawModule, OtherWordsOfTheLoaderAreTold) {
  const std::string problem = drawModuleProblem("/a/libvorndraw.so: undefined symbol: \x1B[1m f");
  EXPECT_EQ(problem, "Charts cannot be drawn: /a/libvorndraw.so: undefined symbol: \uFFFD[1m f.");
}

TEST(DrawModule, ProblemIsOneShortLine) {
  EXPECT_EQ(drawProblem("It fails.\n"), "It fails.");
  EXPECT_EQ(drawProblem("It\nfails"), "It\uFFFDfails.");
  EXPECT_EQ(displayWidth(drawProblem(std::string(71, 'x'))), 72);
  const std::string cut = drawProblem(std::string(500, 'x'));
  EXPECT_EQ(displayWidth(cut), 72);
  EXPECT_TRUE(cut.ends_with("\u2026"));
}

#if VORN_HAS_DRAWING
TEST(DrawModule, DrawsAgainAndAgainInThisProcess) {
  DrawRequest request;
  request.bytes =
      "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'><text y='9'>a</text></svg>";
  request.isSvg = true;
  request.shownWidth = request.width = 20;
  request.shownHeight = request.height = 10;
  const std::string first = drawModule().draw(request);
  EXPECT_EQ(first.substr(1, 3), "PNG");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(drawModule().draw(request) == first);
  for (const ImageFormat format : {ImageFormat::kJpg, ImageFormat::kBmp}) {
    request.format = format;
    EXPECT_TRUE(drawModule().draw(request) == drawModule().draw(request));
  }
  request.bytes = "<svg";
  EXPECT_THROW(drawModule().draw(request), std::runtime_error);
}
#endif

}  // namespace
}  // namespace vornwout
