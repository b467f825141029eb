#include "host/looks/table_look_xml.h"

#include <array>
#include <initializer_list>

#include "host/store/xml_writer.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr char kRoot[] = "tableProperties";
constexpr double kMaxMargin = 100;  ///< points
constexpr double kMaxLine = 20;     ///< points
constexpr int kMaxWidth = 2000;     ///< points

/// In the order of LookArea.
constexpr std::array<const char*, kLookAreaCount> kAreas = {
    "title", "layers", "corner", "columnLabels", "rowLabels", "data", "caption", "footnotes"};

constexpr std::array<std::pair<LookLineStyle, std::string_view>, 5> kLineStyles{
    {{LookLineStyle::kNone, "none"},
     {LookLineStyle::kSolid, "solid"},
     {LookLineStyle::kDashed, "dashed"},
     {LookLineStyle::kDotted, "dotted"},
     {LookLineStyle::kDouble, "double"}}};

constexpr std::array<std::pair<LookHorizontal, std::string_view>, 4> kHorizontals{
    {{LookHorizontal::kByValue, "byValue"},
     {LookHorizontal::kLeft, "left"},
     {LookHorizontal::kCenter, "center"},
     {LookHorizontal::kRight, "right"}}};

constexpr std::array<std::pair<LookVertical, std::string_view>, 3> kVerticals{
    {{LookVertical::kTop, "top"},
     {LookVertical::kMiddle, "middle"},
     {LookVertical::kBottom, "bottom"}}};

struct NamedLine {
  const char* name;
  LookLine LookBorders::*line;
};
constexpr std::array<NamedLine, 6> kLines{{{"top", &LookBorders::top},
                                           {"right", &LookBorders::right},
                                           {"bottom", &LookBorders::bottom},
                                           {"left", &LookBorders::left},
                                           {"rows", &LookBorders::rows},
                                           {"columns", &LookBorders::columns}}};

struct NamedMargin {
  const char* name;
  double LookMargins::*margin;
};
constexpr std::array<NamedMargin, 4> kMargins{{{"top", &LookMargins::top},
                                               {"right", &LookMargins::right},
                                               {"bottom", &LookMargins::bottom},
                                               {"left", &LookMargins::left}}};

LookLine readLine(LookElement& element) {
  LookLine line;
  line.style = element.choice("style", line.style, kLineStyles);
  line.width = element.number("width", line.width, 0, kMaxLine);
  line.color = element.color("color");
  element.refuseRest();
  return line;
}

LookBorders readBorders(LookElement& element) {
  LookBorders borders;
  element.refuseOthers();
  element.readChildren([&](LookElement& child) {
    for (const NamedLine& line : kLines) {
      if (child.name() != line.name) continue;
      borders.*line.line = readLine(child);
      return true;
    }
    return false;
  });
  return borders;
}

LookMargins readMargins(LookElement& element) {
  LookMargins margins;
  for (const NamedMargin& margin : kMargins) {
    double& value = margins.*margin.margin;
    value = element.number(margin.name, value, 0, kMaxMargin);
  }
  element.refuseRest();
  return margins;
}

AreaLook readArea(LookElement& element) {
  AreaLook area;
  area.text.font = element.font("font");
  area.text.size = element.fontSize("size");
  area.text.bold = element.flag("bold");
  area.text.italic = element.flag("italic");
  area.text.underlined = element.flag("underlined");
  area.text.textColor = element.color("textColor");
  area.text.backgroundColor = element.color("fill");
  area.horizontal = element.choice("horizontal", area.horizontal, kHorizontals);
  area.vertical = element.choice("vertical", area.vertical, kVerticals);
  element.refuseOthers();
  element.readChildren([&](LookElement& child) {
    if (child.name() == "margins") {
      area.margins = readMargins(child);
    } else if (child.name() == "borders") {
      area.borders = readBorders(child);
    } else {
      return false;
    }
    return true;
  });
  return area;
}

LookBanding readBanding(LookElement& element) {
  LookBanding banding;
  banding.fill = element.requiredColor("fill");
  banding.rowLabels = element.flag("rowLabels").value_or(banding.rowLabels);
  element.refuseRest();
  return banding;
}

LookWidths readWidths(LookElement& element) {
  LookWidths widths;
  widths.min = element.integer("min", 0, 0, kMaxWidth);
  widths.max = element.integer("max", 0, 0, kMaxWidth);
  if (widths.max > 0 && widths.min > widths.max)
    element.refuse(localized("its min is above its max"));
  element.refuseRest();
  return widths;
}

bool readPart(LookElement& element, TableLook& look) {
  for (std::size_t i = 0; i < kAreas.size(); ++i) {
    if (element.name() != kAreas[i]) continue;
    look.areas[i] = readArea(element);
    return true;
  }
  if (element.name() == "banding") {
    look.banding = readBanding(element);
  } else if (element.name() == "dataColumns") {
    look.dataColumns = readWidths(element);
  } else if (element.name() == "rowLabelColumns") {
    look.rowLabelColumns = readWidths(element);
  } else {
    return false;
  }
  return true;
}

template <typename Value, std::size_t kCount>
std::string_view nameOf(Value value,
                        const std::array<std::pair<Value, std::string_view>, kCount>& names) {
  for (const auto& [known, name] : names) {
    if (known == value) return name;
  }
  return names[0].second;
}

/// Elements of a look, each on a line of its own.
class LookWriter {
 public:
  void write(const TableLook& look) {
    xml_.declaration();
    start(kRoot);
    xml_.attribute("version", "1");
    xml_.optionalAttribute("name", look.name);
    xml_.optionalAttribute("background", look.background);
    for (std::size_t i = 0; i < kAreas.size(); ++i) {
      if (look.areas[i] != AreaLook()) writeArea(kAreas[i], look.areas[i]);
    }
    if (!look.banding.fill.empty()) {
      start("banding");
      xml_.attribute("fill", look.banding.fill);
      xml_.flag("rowLabels", look.banding.rowLabels);
      xml_.end("banding");
    }
    writeWidths("dataColumns", look.dataColumns);
    writeWidths("rowLabelColumns", look.rowLabelColumns);
    xml_.newLine();
    xml_.end(kRoot);
    out_ += '\n';
  }

  std::string take() { return std::move(out_); }

 private:
  void start(const char* name) {
    if (name != kRoot) xml_.newLine();
    xml_.start(name);
  }

  void writeArea(const char* name, const AreaLook& area) {
    const AreaLook plain;
    start(name);
    xml_.optionalAttribute("font", area.text.font);
    if (area.text.size > 0) xml_.attribute("size", area.text.size);
    writeFlag("bold", area.text.bold);
    writeFlag("italic", area.text.italic);
    writeFlag("underlined", area.text.underlined);
    xml_.optionalAttribute("textColor", area.text.textColor);
    xml_.optionalAttribute("fill", area.text.backgroundColor);
    if (area.horizontal != plain.horizontal) {
      xml_.attribute("horizontal", nameOf(area.horizontal, kHorizontals));
    }
    if (area.vertical != plain.vertical) {
      xml_.attribute("vertical", nameOf(area.vertical, kVerticals));
    }
    if (area.margins != plain.margins) {
      start("margins");
      for (const NamedMargin& margin : kMargins) {
        xml_.attribute(margin.name, area.margins.*margin.margin);
      }
      xml_.end("margins");
    }
    if (area.borders != plain.borders) {
      start("borders");
      for (const NamedLine& line : kLines) writeLine(line.name, area.borders.*line.line);
      xml_.end("borders");
    }
    xml_.end(name);
  }

  void writeLine(const char* name, const LookLine& line) {
    if (line == LookLine()) return;
    start(name);
    xml_.attribute("style", nameOf(line.style, kLineStyles));
    xml_.attribute("width", line.width);
    xml_.optionalAttribute("color", line.color);
    xml_.end(name);
  }

  void writeFlag(const char* name, const std::optional<bool>& value) {
    if (value) xml_.attribute(name, *value ? "true" : "false");
  }

  void writeWidths(const char* name, const LookWidths& widths) {
    if (widths == LookWidths()) return;
    start(name);
    if (widths.min > 0) xml_.attribute("min", std::int64_t{widths.min});
    if (widths.max > 0) xml_.attribute("max", std::int64_t{widths.max});
    xml_.end(name);
  }

  std::string out_;
  XmlWriter xml_{out_};
};

}  // namespace

TableLook parseTableLook(std::string_view xml) {
  TableLook look;
  parseLook(xml, kRoot, [&](LookElement& root) {
    look.name = root.text("name").value_or("");
    look.background = root.color("background");
    root.refuseOthers();
    root.readChildren([&](LookElement& child) { return readPart(child, look); });
  });
  return look;
}

std::string writeTableLook(const TableLook& look) {
  LookWriter writer;
  writer.write(look);
  return writer.take();
}

TableLook defaultTableLook() {
  // Colours are left to the page, so that tables follow it into the dark; the lines are of a grey
  // that is seen on either.
  constexpr char kLineColor[] = "#8a93a3";
  TableLook look;
  look.name = kDefaultLookName;
  look.dataColumns = {36, 0};
  look.rowLabelColumns = {0, 260};
  const LookLine strong{LookLineStyle::kSolid, 1.5, ""};
  const LookLine calm{LookLineStyle::kSolid, 0.75, kLineColor};
  const LookLine thin{LookLineStyle::kSolid, 0.25, kLineColor};
  for (const LookArea which :
       {LookArea::kTitle, LookArea::kLayers, LookArea::kCaption, LookArea::kFootnotes}) {
    AreaLook& area = look.area(which);
    area.horizontal = LookHorizontal::kLeft;
    area.margins = {2, 0, 2, 0};
    area.text.size = 9;
  }
  look.area(LookArea::kTitle).text.size = 11;
  look.area(LookArea::kTitle).text.bold = true;
  look.area(LookArea::kTitle).margins = {0, 0, 4, 0};
  look.area(LookArea::kFootnotes).text.size = 8.5;
  for (const LookArea which :
       {LookArea::kCorner, LookArea::kColumnLabels, LookArea::kRowLabels, LookArea::kData}) {
    look.area(which).text.size = 9;
    look.area(which).margins = {3, 6, 3, 6};
  }
  for (const LookArea which : {LookArea::kCorner, LookArea::kColumnLabels}) {
    AreaLook& area = look.area(which);
    area.vertical = LookVertical::kBottom;
    area.borders.top = strong;
    area.borders.bottom = calm;
  }
  AreaLook& columns = look.area(LookArea::kColumnLabels);
  columns.text.bold = true;
  columns.horizontal = LookHorizontal::kRight;
  columns.borders.rows = thin;
  AreaLook& corner = look.area(LookArea::kCorner);
  corner.horizontal = LookHorizontal::kLeft;
  AreaLook& rows = look.area(LookArea::kRowLabels);
  rows.horizontal = LookHorizontal::kLeft;
  for (const LookArea which : {LookArea::kRowLabels, LookArea::kData}) {
    look.area(which).borders.bottom = strong;
    look.area(which).borders.rows = thin;
  }
  return look;
}

}  // namespace vornwout
