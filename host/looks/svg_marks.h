// The attributes that say which part of a chart an element plays: read first, and written when a
// chart has been given a style.
//
// Entry points: readSvgMark() and markSvgPart(). docs/looks.md has the names.
#pragma once

#include <optional>

#include <pugixml.hpp>

#include "host/looks/svg_parts.h"

namespace vornwout {

constexpr int kMaxMarkedSeries = 100'000;

struct SvgMark {
  SvgPart part = SvgPart::kOther;
  int number = 0;  ///< from 1, of a series or a step
};

/// What an element says of its fill or stroke; nothing for what is no part.
std::optional<SvgMark> readSvgMark(pugi::xml_node node, bool isStroke);

bool isSvgMarked(pugi::xml_node node, bool isStroke);
bool isSvgTitle(pugi::xml_node text);

/// Whether the width of the element's line is data.
bool hasOwnSvgWidth(pugi::xml_node node);

/// Writes down what an element is, for the next time.
void markSvgPart(const SvgPaint& paint);

}  // namespace vornwout
