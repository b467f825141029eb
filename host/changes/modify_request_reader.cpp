#include "host/changes/modify_request_reader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <sstream>
#include <string_view>
#include <utility>

#include <fmt/format.h>
#include <pugixml.hpp>

#include "host/changes/change_notes.h"
#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

struct TypeAttribute {
  std::string_view name;
  ObjectType type;
};

/// The outline's headings have two names: what a command writes as a heading, and what the outline
/// shows as one, are the same objects here.
constexpr std::array kTypeAttributes = {
    TypeAttribute{"charts", ObjectType::kChart},
    TypeAttribute{"headings", ObjectType::kHeading},
    TypeAttribute{"logs", ObjectType::kLog},
    TypeAttribute{"models", ObjectType::kModel},
    TypeAttribute{"tables", ObjectType::kTable},
    TypeAttribute{"texts", ObjectType::kText},
    TypeAttribute{"trees", ObjectType::kTree},
    TypeAttribute{"warnings", ObjectType::kWarning},
    TypeAttribute{"outlineheaders", ObjectType::kHeading},
    TypeAttribute{"notes", ObjectType::kNotes},
    TypeAttribute{"unknown", ObjectType::kUnknown},
    TypeAttribute{"other", ObjectType::kOther},
    TypeAttribute{"pagetitles", ObjectType::kPageTitle},
};

struct IndexStyleName {
  std::string_view name;
  IndexChange::Style style;
};

constexpr std::array kIndexStyles = {
    IndexStyleName{"number", IndexChange::Style::kNumber},
    IndexStyleName{"letter", IndexChange::Style::kLetter},
    IndexStyleName{"letterCAP", IndexChange::Style::kCapitalLetter},
    IndexStyleName{"roman", IndexChange::Style::kRoman},
    IndexStyleName{"romanCap", IndexChange::Style::kCapitalRoman},
};

struct CellKindName {
  std::string_view name;
  bool CellsChange::*flag;
};

constexpr std::array kCellKinds = {
    CellKindName{"correlation", &CellsChange::correlation},
    CellKindName{"count", &CellsChange::count},
    CellKindName{"mean", &CellsChange::mean},
    CellKindName{"median", &CellsChange::median},
    CellKindName{"percent", &CellsChange::percent},
    CellKindName{"residual", &CellsChange::residual},
    CellKindName{"body", &CellsChange::body},
    CellKindName{"significance", &CellsChange::significance},
    CellKindName{"headers", &CellsChange::headers},
    CellKindName{"footnotes", &CellsChange::footnotes},
    CellKindName{"title", &CellsChange::title},
    CellKindName{"caption", &CellsChange::caption},
};

constexpr double kMaxPoints = 2000;
constexpr double kMaxPercent = 400;
constexpr double kMaxFontSize = 1000;
constexpr int kMostNumber = std::numeric_limits<int>::max();

bool isUtf8(std::string_view text) {
  for (text.remove_prefix(asciiPrefixLength(text)); !text.empty();
       text.remove_prefix(asciiPrefixLength(text))) {
    const int length = validUtf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(static_cast<std::size_t>(length));
  }
  return true;
}

/// Texts of tables come in the job's encoding.
std::string asUtf8(std::string_view text) {
  return isUtf8(text) ? std::string(text) : currentToUtf8(text);
}

/// An attribute with what an error about it has to say.
class Attribute {
 public:
  Attribute(pugi::xml_node element, pugi::xml_attribute attribute)
      : element_(element), attribute_(attribute) {}

  std::string_view name() const { return attribute_.name(); }
  std::string_view value() const { return attribute_.value(); }
  std::string text() const { return asUtf8(value()); }

  [[noreturn]] void refuse(const char* what) const {
    throw ChangeError(
        fmt::format("the modify document is not understood: the attribute {} "
                    "of {}, \"{}\", {}",
                    name(), element_.name(), text(), what));
  }
  [[noreturn]] void refuseUnknown() const {
    throw ChangeError(
        fmt::format("the modify document is not understood: {} has an attribute {} that is "
                    "not known",
                    element_.name(), name()));
  }

  bool flag() const {
    if (value() == "true") return true;
    if (value() == "false") return false;
    refuse("is neither true nor false");
  }
  /// An attribute that is never written as false.
  bool mark() const {
    if (value() != "true") refuse("is not true");
    return true;
  }
  int integer(int min, int max = kMostNumber) const {
    int number = 0;
    const std::string_view digits = value();
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec != std::errc() || result.ptr != digits.data() + digits.size() || number < min ||
        number > max) {
      refuse("is no integer within its bounds");
    }
    return number;
  }
  double number(double max = std::numeric_limits<double>::max()) const {
    double result = 0;
    const std::string_view digits = value();
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), result);
    if (read.ec != std::errc() || read.ptr != digits.data() + digits.size() ||
        !std::isfinite(result) || result > max) {
      refuse("is no number within its bounds");
    }
    return result;
  }

 private:
  pugi::xml_node element_;
  pugi::xml_attribute attribute_;
};

template <typename Visit>
void forEachAttribute(pugi::xml_node element, const Visit& visit) {
  for (const pugi::xml_attribute attribute : element.attributes()) {
    visit(Attribute(element, attribute));
  }
}

[[noreturn]] void refuseElement(pugi::xml_node parent, pugi::xml_node element) {
  throw ChangeError(fmt::format("the modify document is not understood: {} holds {}{}",
                                parent.name(),
                                element.type() == pugi::node_element ? "an element " : "a text",
                                element.type() == pugi::node_element ? element.name() : ""));
}

/// For elements that hold nothing.
void expectEmpty(pugi::xml_node element) {
  if (const pugi::xml_node child = element.first_child()) refuseElement(element, child);
}

/// "#rrggbb" of three components that come one by one.
class ColorReader {
 public:
  /// True when the attribute was a component.
  bool take(const Attribute& attribute, std::string_view prefix) {
    if (!attribute.name().starts_with(prefix)) return false;
    const std::string_view component = attribute.name().substr(prefix.size());
    int* target = component == "Red"     ? &red_
                  : component == "Green" ? &green_
                  : component == "Blue"  ? &blue_
                                         : nullptr;
    if (target == nullptr) return false;
    constexpr int kMostComponent = 255;
    *target = attribute.integer(0, kMostComponent);
    return true;
  }
  std::string color() const {
    if (red_ < 0 || green_ < 0 || blue_ < 0) return {};
    return fmt::format("#{:02x}{:02x}{:02x}", red_, green_, blue_);
  }

 private:
  int red_ = -1;
  int green_ = -1;
  int blue_ = -1;
};

CommandCondition readCommand(pugi::xml_node element) {
  CommandCondition condition;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "commandName") {
      condition.name = attribute.text();
    } else if (attribute.name() == "last") {
      condition.isLast = attribute.mark();
    } else if (attribute.name() == "instance") {
      condition.run = attribute.integer(1);
    } else {
      attribute.refuseUnknown();
    }
  });
  expectEmpty(element);
  return condition;
}

LabelCondition readLabel(pugi::xml_node element) {
  LabelCondition condition;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "expression") {
      condition.text = attribute.text();
    } else if (attribute.name() == "exact" && attribute.mark()) {
      condition.match = LabelCondition::Match::kExact;
    } else if (attribute.name() == "begins" && attribute.mark()) {
      condition.match = LabelCondition::Match::kBegins;
    } else if (attribute.name() == "ends" && attribute.mark()) {
      condition.match = LabelCondition::Match::kEnds;
    } else if (attribute.name() == "contains" && attribute.mark()) {
      condition.match = LabelCondition::Match::kContains;
    } else {
      attribute.refuseUnknown();
    }
  });
  expectEmpty(element);
  return condition;
}

int readInstance(pugi::xml_node element) {
  int instance = 0;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "instance") {
      instance = attribute.integer(1);
    } else if (attribute.name() != "last" || !attribute.mark()) {
      attribute.refuseUnknown();
    }
  });
  expectEmpty(element);
  return instance;
}

std::string readSubtype(pugi::xml_node element) {
  std::string subtype;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() != "subtype") attribute.refuseUnknown();
    subtype = attribute.text();
  });
  expectEmpty(element);
  return subtype;
}

IndexChange readIndex(pugi::xml_node element) {
  IndexChange change;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "type") {
      const auto* style = std::find_if(
          kIndexStyles.begin(), kIndexStyles.end(),
          [&](const IndexStyleName& known) { return known.name == attribute.value(); });
      if (style == kIndexStyles.end()) attribute.refuse("is no type of an index");
      change.style = style->style;
    } else if (attribute.name() == "indexStart") {
      change.start = attribute.integer(std::numeric_limits<int>::min());
    } else {
      attribute.refuseUnknown();
    }
  });
  expectEmpty(element);
  return change;
}

/// What an element holds, as XML.
std::string innerXml(pugi::xml_node element) {
  std::ostringstream inner;
  for (const pugi::xml_node child : element.children()) {
    child.print(inner, "", pugi::format_raw | pugi::format_no_declaration);
  }
  return inner.str();
}

GraphChange readGraph(pugi::xml_node element) {
  GraphChange change;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() != "styleSheet") attribute.refuseUnknown();
    change.styleSheet = attribute.text();
  });
  for (const pugi::xml_node child : element.children()) {
    if (std::strcmp(child.name(), "chartTemplate") != 0) refuseElement(element, child);
    change.chartTemplates.push_back(innerXml(child));
  }
  return change;
}

PropertiesChange readProperties(pugi::xml_node element) {
  PropertiesChange change;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "visible") {
      if (attribute.value() == "yes") {
        change.visible = true;
      } else if (attribute.value() == "no") {
        change.visible = false;
      } else if (attribute.value() != "asis") {
        attribute.refuse("is none of yes, no and asis");
      }
    } else if (attribute.name() == "sizeWidth") {
      change.width = attribute.number(kMaxPoints);
    } else if (attribute.name() == "sizeHeight") {
      change.height = attribute.number(kMaxPoints);
    } else if (attribute.name() == "sizeWidthPCT") {
      change.widthPercent = attribute.number(kMaxPercent);
    } else if (attribute.name() == "sizeHeightPCT") {
      change.heightPercent = attribute.number(kMaxPercent);
    } else if (attribute.name() == "label") {
      change.label = attribute.text();
    } else {
      attribute.refuseUnknown();
    }
  });
  expectEmpty(element);
  return change;
}

LayerChoice readLayer(pugi::xml_node element) {
  LayerChoice choice;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "layer") {
      choice.layer = attribute.text();
    } else if (attribute.name() == "layerInt") {
      choice.layerPosition = attribute.integer(-1);
    } else if (attribute.name() == "category") {
      choice.category = attribute.text();
    } else if (attribute.name() == "categoryInt") {
      choice.categoryPosition = attribute.integer(-1);
    } else {
      attribute.refuseUnknown();
    }
  });
  expectEmpty(element);
  return choice;
}

TableChange readTable(pugi::xml_node element) {
  TableChange change;
  const auto sort = [&]() -> SortChange& {
    return change.sort ? *change.sort : change.sort.emplace();
  };
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "title") {
      change.title = attribute.text();
    } else if (attribute.name() == "summary") {
      change.summary = attribute.text();
    } else if (attribute.name() == "transpose") {
      change.transposes = attribute.mark();
    } else if (attribute.name() == "sortLabel") {
      sort().label = attribute.text();
    } else if (attribute.name() == "sortPosition") {
      sort().position = attribute.integer(std::numeric_limits<int>::min());
    } else if (attribute.name() == "ascending") {
      sort().isAscending = attribute.flag();
    } else if (attribute.name() == "format") {
      change.format = attribute.text();
    } else if (attribute.name() == "defaultTableLook") {
      change.usesDefaultLook = attribute.mark();
    } else {
      attribute.refuseUnknown();
    }
  });
  for (const pugi::xml_node child : element.children()) {
    if (std::strcmp(child.name(), "layer") == 0) {
      change.layers.push_back(readLayer(child));
    } else if (std::strcmp(child.name(), "tableLook") == 0) {
      change.look = innerXml(child);
    } else {
      refuseElement(element, child);
    }
  }
  return change;
}

std::vector<std::string> parts(const std::string& joined) {
  std::vector<std::string> all;
  for (std::size_t begin = 0; begin <= joined.size();) {
    const std::size_t end = std::min(joined.find(';', begin), joined.size());
    all.push_back(joined.substr(begin, end - begin));
    begin = end + 1;
  }
  return all;
}

/// The attributes that say which cells; false for one that does not.
bool readCellSelection(const Attribute& attribute, CellsChange& change) {
  for (const CellKindName& kind : kCellKinds) {
    if (attribute.name() != kind.name) continue;
    change.*kind.flag = attribute.mark();
    return true;
  }
  if (attribute.name() == "selectExpression") {
    // A label may hold the sign that parts them; who means that one finds the whole text here, too.
    change.labels = parts(attribute.text());
    if (change.labels.size() > 1) change.labels.push_back(attribute.text());
  } else if (attribute.name() == "selectPosition") {
    for (const std::string& position : parts(attribute.text())) {
      int number = 0;
      const auto read = std::from_chars(position.data(), position.data() + position.size(), number);
      if (read.ec != std::errc() || read.ptr != position.data() + position.size()) {
        attribute.refuse("is no list of positions");
      }
      change.positions.push_back(number);
    }
  } else if (attribute.name() == "selectColumns") {
    change.dimension = attribute.value() == "both" ? CellsChange::Dimension::kBoth
                       : attribute.flag()          ? CellsChange::Dimension::kColumns
                                                   : CellsChange::Dimension::kRows;
  } else if (attribute.name() == "selectCondition") {
    change.conditions.push_back(attribute.text());
  } else {
    return false;
  }
  return true;
}

CellsChange readCells(pugi::xml_node element) {
  CellsChange change;
  ColorReader textColor;
  ColorReader backgroundColor;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (readCellSelection(attribute, change) || textColor.take(attribute, "text") ||
        backgroundColor.take(attribute, "background")) {
      return;
    }
    if (attribute.name() == "revertToDefault") {
      change.revertsToDefault = attribute.mark();
    } else if (attribute.name() == "bold") {
      change.bold = attribute.flag();
    } else if (attribute.name() == "italic") {
      change.italic = attribute.flag();
    } else if (attribute.name() == "underline") {
      change.underline = attribute.flag();
    } else if (attribute.name() == "columnWidth") {
      change.columnWidth = attribute.integer(1);
    } else if (attribute.name() == "fontSize") {
      change.fontSize = attribute.number(kMaxFontSize);
    } else if (attribute.name() == "applyTo") {
      change.applyTo = attribute.text();
    } else if (attribute.name() == "format") {
      change.format = attribute.text();
    } else if (attribute.name() == "font") {
      change.font = attribute.text();
    } else if (attribute.name() == "replace") {
      change.replacement = attribute.text();
    } else if (attribute.name() == "replaceValue") {
      change.replacementValue = attribute.number();
    } else {
      attribute.refuseUnknown();
    }
  });
  change.textColor = textColor.color();
  change.backgroundColor = backgroundColor.color();
  expectEmpty(element);
  return change;
}

TextChange readText(pugi::xml_node element) {
  TextChange change;
  ColorReader color;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (color.take(attribute, "text")) return;
    if (attribute.name() == "expression") {
      change.text = attribute.text();
    } else if (attribute.name() == "fontFamily") {
      change.font = attribute.text();
    } else if (attribute.name() == "fontSize") {
      change.fontSize = attribute.number(kMaxFontSize);
    } else if (attribute.name() == "fontBold") {
      change.bold = attribute.flag();
    } else if (attribute.name() == "fontItalic") {
      change.italic = attribute.flag();
    } else if (attribute.name() == "fontUnderline") {
      change.underline = attribute.flag();
    } else {
      attribute.refuseUnknown();
    }
  });
  change.color = color.color();
  expectEmpty(element);
  return change;
}

void readTypes(pugi::xml_node element, ModifyEvent& event) {
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "all") {
      event.types.fill(attribute.mark());
      return;
    }
    if (attribute.name() == "visibleOnly") {
      event.conditions.visibleOnly = attribute.mark();
      return;
    }
    const auto* type =
        std::find_if(kTypeAttributes.begin(), kTypeAttributes.end(),
                     [&](const TypeAttribute& known) { return known.name == attribute.name(); });
    if (type == kTypeAttributes.end()) attribute.refuseUnknown();
    event.types[static_cast<std::size_t>(type->type)] = attribute.flag();
  });
}

ModifyEvent readEvent(pugi::xml_node element) {
  ModifyEvent event;
  readTypes(element, event);
  for (const pugi::xml_node child : element.children()) {
    const std::string_view name = child.name();
    if (name == "command") {
      event.conditions.commands.push_back(readCommand(child));
    } else if (name == "subtype") {
      event.conditions.subtypes.push_back(readSubtype(child));
    } else if (name == "label") {
      event.conditions.labels.push_back(readLabel(child));
    } else if (name == "instance") {
      event.conditions.instances.push_back(readInstance(child));
    } else if (name == "indexObject") {
      event.index = readIndex(child);
    } else if (name == "deleteObject") {
      expectEmpty(child);
      event.deletes = true;
    } else if (name == "modifyGraph") {
      event.graph = readGraph(child);
    } else if (name == "objectProperties") {
      event.properties = readProperties(child);
    } else if (name == "modifyTable") {
      event.table = readTable(child);
    } else if (name == "tableCells") {
      event.cells.push_back(readCells(child));
    } else if (name == "modifyText") {
      event.text = readText(child);
    } else {
      refuseElement(element, child);
    }
  }
  return event;
}

/// Some of the document around a place, for an error.
std::string excerptAt(std::string_view xml, std::size_t offset) {
  constexpr std::size_t kReach = 24;
  const std::size_t begin = offset > kReach ? offset - kReach : 0;
  return asUtf8(xml.substr(begin, 2 * kReach));
}

}  // namespace

ModifyRequest readModifyRequest(const std::string& xml) {
  pugi::xml_document document;
  // Line ends and blanks in values stay: they are text of the user.
  const pugi::xml_parse_result parsed = document.load_buffer(
      xml.data(), xml.size(), pugi::parse_escapes | pugi::parse_cdata, pugi::encoding_utf8);
  if (!parsed) {
    const auto offset =
        std::min(static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, parsed.offset)), xml.size());
    throw ChangeError(
        fmt::format("the modify document cannot be read at its byte {}, near \"{}\": a "
                    "text with a quotation mark may be the cause",
                    offset, excerptAt(xml, offset)));
  }
  const pugi::xml_node root = document.document_element();
  if (std::strcmp(root.name(), "modifyOutputObject") != 0) {
    throw ChangeError("what came is no modify document");
  }
  ModifyRequest request;
  forEachAttribute(root, [&](const Attribute& attribute) {
    if (attribute.name() == "documentName") {
      request.documentName = attribute.text();
    } else if (attribute.name() != "debug" || !attribute.mark()) {
      attribute.refuseUnknown();
    }
  });
  for (const pugi::xml_node child : root.children()) {
    if (std::strcmp(child.name(), "modifyEvent") != 0) refuseElement(root, child);
    request.events.push_back(readEvent(child));
  }
  return request;
}

}  // namespace vornwout
