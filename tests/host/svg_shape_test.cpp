#include "host/looks/svg_shape.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

constexpr SvgView kView{0, 0, 200, 100};

std::optional<SvgShape> shapeOf(const std::string& element, const SvgMatrix& matrix = {}) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(element.c_str())) << element;
  return svgShape(document.document_element(), matrix, kView);
}

TEST(SvgShape, BoxesHoldWhatIsDrawn) {
  struct Case {
    const char* element;
    std::array<double, 4> box;  ///< left, top, right, bottom
    bool isStraight;
    bool isRule;
    int longestPiece;
  };
  const Case cases[] = {
      {"<rect x='1' y='2' width='30' height='40'/>", {1, 2, 31, 42}, true, false, 4},
      {"<rect width='100%' height='50%'/>", {0, 0, 200, 50}, true, false, 4},
      {"<line x1='1' y1='2' x2='3' y2='2'/>", {1, 2, 3, 2}, true, true, 1},
      {"<line x1='1' y1='2' x2='3' y2='4'/>", {1, 2, 3, 4}, false, false, 1},
      {"<circle cx='5' cy='6' r='2'/>", {3, 4, 7, 8}, false, false, 3},
      {"<ellipse cx='5' cy='6' rx='2' ry='3'/>", {3, 3, 7, 9}, false, false, 3},
      {"<polyline points='1,1 1,5 9,5'/>", {1, 1, 9, 5}, true, false, 2},
      {"<polygon points='1,1 1,5 9,5'/>", {1, 1, 9, 5}, false, false, 3},
      {"<path d='M1 1H9M1 2H9M5 0V9'/>", {1, 0, 9, 9}, true, true, 1},
      {"<path d='m1,1h8v-3'/>", {1, -2, 9, 1}, true, false, 2},
      {"<path d='M1-1L.5.5 2 2z'/>", {0.5, -1, 2, 2}, false, false, 3},
      {"<path d='m1 1 2 0 2 0'/>", {1, 1, 5, 1}, true, true, 2},
      {"<path d='M0 0C1 9 2 -9 3 0'/>", {0, -9, 3, 9}, false, false, 1},
      {"<path d='M0 0q5 5 9 0t9 0s1 1 2 2'/>", {0, 0, 20, 5}, false, false, 3},
      {"<path d='M0 0a5 5 0 1010 0'/>", {0, 0, 10, 0}, false, false, 1},
      // It is drawn up to what is wrong.
      {"<path d='M0 0H5 V x 9'/>", {0, 0, 5, 0}, true, true, 1},
      {"<path d='M0 0H5Z9'/>", {0, 0, 5, 0}, true, true, 2},
  };
  for (const Case& c : cases) {
    const auto shape = shapeOf(c.element);
    ASSERT_TRUE(shape) << c.element;
    EXPECT_EQ((std::array{shape->left, shape->top, shape->right, shape->bottom}), c.box)
        << c.element;
    EXPECT_EQ(shape->isStraight, c.isStraight) << c.element;
    EXPECT_EQ(shape->isRule, c.isRule) << c.element;
    EXPECT_EQ(shape->longestPiece, c.longestPiece) << c.element;
  }
}

TEST(SvgShape, WhatDrawsNothingHasNone) {
  for (const char* element :
       {"<rect width='0' height='9'/>", "<path/>", "<path d='5 5'/>", "<path d='M1 1'/>",
        "<polyline points='1'/>", "<g/>", "<rect width='x' height='1'/>"}) {
    EXPECT_FALSE(shapeOf(element)) << element;
  }
  EXPECT_FALSE(shapeOf("<path d='M0 0H1e300'/>", SvgMatrix{1e300, 0, 0, 1, 0, 0}));
}

TEST(SvgShape, TransformationsApplyFromTheRight) {
  const struct {
    const char* transform;
    std::array<double, 2> to;  ///< where (1, 2) comes to lie
  } cases[] = {
      {"", {1, 2}},
      {"translate(10)", {11, 2}},
      {"translate(10 20) scale(2)", {12, 24}},
      {"scale(2,3), translate(1,1)", {4, 9}},
      {"matrix(1,2,3,4,5,6)", {12, 16}},
      {"rotate(90)", {-2, 1}},
      {"rotate(180 1 1)", {1, 0}},
      {"skewX(45)", {3, 2}},
      {"skewY(45)", {1, 3}},
      {"wobble(3)", {1, 2}},
      {"scale(2", {1, 2}},
  };
  for (const auto& c : cases) {
    const SvgMatrix m = parseSvgTransform(c.transform);
    EXPECT_NEAR(m.a + 2 * m.c + m.e, c.to[0], 1e-9) << c.transform;
    EXPECT_NEAR(m.b + 2 * m.d + m.f, c.to[1], 1e-9) << c.transform;
  }
  EXPECT_DOUBLE_EQ(parseSvgTransform("scale(2 8)").scale(), 4);
}

}  // namespace
}  // namespace vornwout
