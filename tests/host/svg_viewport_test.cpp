// Where an svg element within another draws.
#include "host/looks/svg_viewport.h"

#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

pugi::xml_node svgWith(pugi::xml_document& document, const std::string& attributes) {
  EXPECT_TRUE(document.load_string(("<svg " + attributes + "/>").c_str()));
  return document.document_element();
}

TEST(SvgViewport, ViewBoxHasAnArea) {
  pugi::xml_document document;
  const auto box = svgViewBox(svgWith(document, "viewBox=\"-1, 2 30 40\""));
  ASSERT_TRUE(box.has_value());
  EXPECT_EQ(box->x, -1);
  EXPECT_EQ(box->y, 2);
  EXPECT_EQ(box->width, 30);
  EXPECT_EQ(box->height, 40);
  for (const char* const none : {"", "viewBox=\"0 0 30\"", "viewBox=\"0 0 0 40\"",
                                 "viewBox=\"0 0 30 -4\"", "viewBox=\"none\""}) {
    EXPECT_FALSE(svgViewBox(svgWith(document, none)).has_value()) << none;
  }
}

TEST(SvgViewport, NestedElementIsPlacedScaledAndCutOff) {
  const std::string box = "viewBox=\"0 0 10 20\" ";
  const struct {
    std::string attributes;
    double scaleX, scaleY, left, top;  ///< of the units within
    double right, bottom;              ///< of the edges
  } cases[] = {
      {"", 1, 1, 0, 0, 400, 300},
      {"x=\"5\" y=\"10%\" width=\"50%\" height=\"40\"", 1, 1, 5, 30, 205, 70},
      {"width=\"1in\" height=\"75pt\"", 1, 1, 0, 0, 96, 100},
      {"x=\"-5\" width=\"10\"", 1, 1, -5, 0, 5, 300},
      {box + "width=\"40\" height=\"40\"", 2, 2, 10, 0, 40, 40},
      {box + "width=\"40\" height=\"40\" preserveAspectRatio=\"xMinYMin\"", 2, 2, 0, 0, 40, 40},
      {box + "width=\"40\" height=\"40\" preserveAspectRatio=\"xMaxYMid meet\"", 2, 2, 20, 0, 40,
       40},
      {box + "width=\"40\" height=\"40\" preserveAspectRatio=\"xMidYMid slice\"", 4, 4, 0, -20, 40,
       40},
      {box + "width=\"40\" height=\"40\" preserveAspectRatio=\"xMidYMax slice\"", 4, 4, 0, -40, 40,
       40},
      {box + "width=\"40\" height=\"40\" preserveAspectRatio=\"none\"", 4, 2, 0, 0, 40, 40},
      {"viewBox=\"10 20 10 20\" x=\"7\" width=\"10\" height=\"20\"", 1, 1, -3, -20, 17, 20},
  };
  for (const auto& test : cases) {
    pugi::xml_document document;
    const auto port = nestedViewport(svgWith(document, test.attributes), {0, 0, 400, 300});
    ASSERT_TRUE(port.has_value()) << test.attributes;
    EXPECT_DOUBLE_EQ(port->matrix.a, test.scaleX) << test.attributes;
    EXPECT_DOUBLE_EQ(port->matrix.d, test.scaleY) << test.attributes;
    EXPECT_DOUBLE_EQ(port->matrix.e, test.left) << test.attributes;
    EXPECT_DOUBLE_EQ(port->matrix.f, test.top) << test.attributes;
    EXPECT_DOUBLE_EQ(port->edges.right, test.right) << test.attributes;
    EXPECT_DOUBLE_EQ(port->edges.bottom, test.bottom) << test.attributes;
  }
  for (const char* const none : {"width=\"0\"", "height=\"-3\"", "width=\"0%\""}) {
    pugi::xml_document document;
    EXPECT_FALSE(nestedViewport(svgWith(document, none), {0, 0, 400, 300}).has_value()) << none;
  }
}

TEST(SvgViewport, ShapeIsCutOffAtEdgesThatMayBeTurned) {
  const SvgBox turned = mappedBox({0, 0, 10, 20}, {0, 1, -1, 0, 100, 0});
  EXPECT_EQ(turned.left, 80);
  EXPECT_EQ(turned.right, 100);
  EXPECT_EQ(turned.top, 0);
  EXPECT_EQ(turned.bottom, 10);
  SvgShape shape;
  shape.left = 50;
  shape.right = 90;
  shape.top = -5;
  shape.bottom = 5;
  const auto cut = clippedShape(shape, turned);
  ASSERT_TRUE(cut.has_value());
  EXPECT_EQ(cut->left, 80);
  EXPECT_EQ(cut->right, 90);
  EXPECT_EQ(cut->top, 0);
  EXPECT_EQ(cut->bottom, 5);
  EXPECT_FALSE(clippedShape(shape, {0, 0, 10, 20}).has_value());
}

}  // namespace
}  // namespace vornwout
