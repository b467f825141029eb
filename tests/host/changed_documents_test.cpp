// Every attribute of every element of the modify document, carried out on a document: all that the
// document holds is described before and afterwards, and the difference is what is expected.
#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "host/changes/change_engine.h"
#include "host/changes/modify_request_reader.h"
#include "host/controller/embedded_host.h"
#include "host/looks/table_look_xml.h"
#include "platform/pivot/cell_text.h"
#include "tests/support/look_folders.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using Lines = std::vector<std::string>;

// ---- the document

/// Rows "Region" (east, west); columns "Statistic", one of each kind. The first column has a width,
/// and its second cell a look.
TableContent salesTable() {
  auto table = std::make_shared<PivotTable>();
  table->title = textCell("Sales by region");
  table->caption = textCell("In thousands");
  table->footnotes.push_back(textCell("Without exports"));
  table->dimensions = {makeDimension("Region", PivotPlace::kRows, 1, {"east", "west"}),
                       makeDimension("Statistic", PivotPlace::kColumns, 1,
                                     {"cor", "n", "mean", "med", "pct", "res", "sig"})};
  constexpr StatisticKind kKinds[] = {StatisticKind::kCorrelation, StatisticKind::kCount,
                                      StatisticKind::kMean,        StatisticKind::kMedian,
                                      StatisticKind::kPercent,     StatisticKind::kResidual,
                                      StatisticKind::kSignificance};
  const double missing = std::numeric_limits<double>::quiet_NaN();
  const double values[2][7] = {{1, 2, 3, 4, 5, 6, 7}, {11, 12, 13, 14, 3.5, 16, missing}};
  for (int column = 0; column < 7; ++column) {
    const auto index = static_cast<std::size_t>(column);
    table->dimensions[1].categories[index].statistic = kKinds[index];
    for (int row = 0; row < 2; ++row) {
      addCell(*table, {row, column}, numberCell(values[row][column]));
    }
  }
  table->dimensions[1].categories[0].width = 50;
  TextLook look;
  look.italic = true;
  look.textColor = "#123456";
  table->cells[1].look = SharedLook(look);
  return table;
}

TableContent layeredTable() {
  auto table = std::make_shared<PivotTable>();
  table->title = textCell("Layered");
  table->dimensions = {makeDimension("Region", PivotPlace::kRows, 1, {"r"}),
                       makeDimension("Product", PivotPlace::kColumns, 1, {"c"}),
                       makeDimension("Year", PivotPlace::kLayers, 1, {"2023", "2024"}),
                       makeDimension("Sex", PivotPlace::kLayers, 2, {"f", "m", "x"})};
  addCell(*table, {0, 0, 0, 0}, numberCell(1));
  return table;
}

TextContent textOf(const char* text) {
  return {{{TextParagraph::Kind::kPlain, 0, 0, {{text, {}, ""}}}}};
}

MediaContent chart() {
  return {"image/svg+xml",
          std::make_shared<const std::string>(
              "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"400\" height=\"300\">"
              "<rect width=\"400\" height=\"300\" fill=\"#ffffff\"/>"
              "<circle r=\"5\" fill=\"#ff0000\"/></svg>")};
}

DocumentObject make(ObjectType type, const char* label, ObjectContent content, int run = 1,
                    const char* command = "MEANS", const char* subtype = "") {
  DocumentObject object;
  object.type = type;
  object.label = label;
  object.command = command;
  object.run = run;
  object.subtype = subtype;
  object.content = std::move(content);
  return object;
}

/// An object of each type, two of some; the text "Hidden" is hidden.
Document makeDocument() {
  Document document(1, "", false);
  document.append(make(ObjectType::kPageTitle, "Page", textOf("A report"), 0, ""));
  DocumentObject means = make(ObjectType::kHeading, "Means", {});
  means.children.push_back(make(ObjectType::kLog, "Log", LogContent{"MEANS."}));
  means.children.push_back(make(ObjectType::kNotes, "Notes", NotesContent{}));
  means.children.push_back(make(ObjectType::kTable, "Sales", salesTable(), 1, "MEANS", "Report"));
  means.children.push_back(make(ObjectType::kWarning, "Warning", MessageContent{}));
  means.children.push_back(make(ObjectType::kChart, "Bars", chart()));
  document.append(std::move(means));
  DocumentObject again = make(ObjectType::kHeading, "Again", {}, 2);
  again.children.push_back(
      make(ObjectType::kTable, "Layers", layeredTable(), 2, "MEANS", "Layered Report"));
  again.children.push_back(make(ObjectType::kModel, "Model", MediaContent{}, 2));
  again.children.push_back(make(ObjectType::kTree, "Tree", LogContent{}, 2));
  again.children.push_back(make(ObjectType::kText, "Hidden", textOf("secret"), 2));
  again.children.back().visible = false;
  document.append(std::move(again));
  document.append(make(ObjectType::kText, "Words", textOf("words"), 1, "COMMENT"));
  document.append(make(ObjectType::kOther, "Other", LogContent{}, 0, ""));
  document.append(make(ObjectType::kUnknown, "Unknown", LogContent{}, 0, ""));
  return document;
}

// ---- what it holds

/// What is not said has no line.
using State = std::map<std::string, std::string>;

void say(State& state, const std::string& key, const std::string& value) {
  if (!value.empty()) state[key] = value;
}

std::string words(const std::optional<bool>& flag) { return !flag ? "" : *flag ? "true" : "false"; }

std::string points(double size) { return size > 0 ? renderNumber(size, BpFormatSpec()) : ""; }

void describeLook(State& state, const std::string& key, const TextLook& look) {
  say(state, key + " color", look.textColor);
  say(state, key + " background", look.backgroundColor);
  say(state, key + " bold", words(look.bold));
  say(state, key + " italic", words(look.italic));
  say(state, key + " underlined", words(look.underlined));
  say(state, key + " font", look.font);
  say(state, key + " size", points(look.size));
}

void describeTable(State& state, const std::string& name, const PivotTable& table) {
  say(state, name + " title", renderText(table.title));
  describeLook(state, name + " title", table.titleLook.get());
  say(state, name + " caption", renderText(table.caption));
  describeLook(state, name + " caption", table.captionLook.get());
  for (const CellText& note : table.footnotes) say(state, name + " footnotes", renderText(note));
  describeLook(state, name + " footnotes", table.footnoteLook.get());
  say(state, name + " summary", table.summary);
  say(state, name + " look", table.tableLook.get().name);
  constexpr const char* kPlaces[] = {"rows", "columns", "layers"};
  for (const PivotDimension& dimension : table.dimensions) {
    const std::string key = name + " " + renderText(dimension.label);
    say(state, key, kPlaces[static_cast<int>(dimension.place())]);
    std::string order;
    for (const PivotCategory& category : dimension.categories) {
      const std::string label = renderText(category.label);
      order += (order.empty() ? "" : " ") + label;
      if (category.leaf == dimension.shownLeaf) say(state, key + " layer", label);
      const std::string label_key = name + " [" + label + "]";
      describeLook(state, label_key, category.look.get());
      if (category.width > 0) say(state, label_key + " width", std::to_string(category.width));
    }
    say(state, key + " order", order);
  }
  for (const PivotCell& cell : table.cells) {
    std::string key = name + " ";
    for (std::size_t d = 0; d < cell.at.size(); ++d) {
      const PivotDimension& dimension = table.dimensions[d];
      const std::vector<int> path = categoryPath(dimension, cell.at[d]);
      const auto leaf = static_cast<std::size_t>(path.back());
      key += (d == 0 ? "" : ",") + renderText(dimension.categories[leaf].label);
    }
    const std::string kind = cell.value.kind == CellText::Kind::kNumber ? "" : "text ";
    state[key] = kind + renderText(cell.value);
    describeLook(state, key, cell.look.get());
  }
}

void describeText(State& state, const std::string& name, const TextContent& text) {
  std::string all;
  for (const TextParagraph& paragraph : text.paragraphs) {
    all += all.empty() ? "" : " / ";
    for (const TextRun& run : paragraph.runs) {
      all += run.text;
      say(state, name + " bold", run.style.bold ? "true" : "");
      say(state, name + " italic", run.style.italic ? "true" : "");
      say(state, name + " underlined", run.style.underlined ? "true" : "");
      say(state, name + " font", run.style.font);
      say(state, name + " size", points(run.style.size));
      say(state, name + " color", run.style.color);
    }
  }
  say(state, name + " text", all);
}

/// The colours of a chart in their order.
std::string colorsOf(const std::string& svg) {
  static const std::regex pattern("#[0-9a-f]{6}");
  std::string colors;
  for (auto it = std::sregex_iterator(svg.begin(), svg.end(), pattern);
       it != std::sregex_iterator(); ++it) {
    colors += (colors.empty() ? "" : " ") + it->str();
  }
  return colors;
}

void describe(State& state, const DocumentObject& heading) {
  for (const DocumentObject& object : heading.children) {
    const std::string& name = object.label;
    state[name] = object.visible ? "shown" : "hidden";
    say(state, name + " index", object.index);
    if (object.size) {
      say(state, name + " size",
          renderNumber(object.size->width, BpFormatSpec()) + " x " +
              renderNumber(object.size->height, BpFormatSpec()) +
              (object.size->percent ? " percent" : " points"));
    }
    if (const auto* table = object.content.as<TableContent>()) describeTable(state, name, **table);
    if (const auto* text = object.content.as<TextContent>()) describeText(state, name, *text);
    if (const auto* media = object.content.as<MediaContent>(); media && media->bytes) {
      say(state, name + " colors", colorsOf(*media->bytes));
    }
    describe(state, object);
  }
}

State describe(const Document& document) {
  State state;
  describe(state, document.root());
  return state;
}

/// "key: before > after" for all that differs, with "-" for what there is not.
Lines difference(const State& before, const State& after) {
  std::set<std::string> keys;
  for (const auto& [key, value] : before) keys.insert(key);
  for (const auto& [key, value] : after) keys.insert(key);
  const auto valueIn = [](const State& state, const std::string& key) {
    const auto found = state.find(key);
    return found == state.end() ? std::string("-") : found->second;
  };
  Lines lines;
  for (const std::string& key : keys) {
    const std::string was = valueIn(before, key);
    const std::string is = valueIn(after, key);
    if (was != is) lines.push_back(key + ": " + was + " > " + is);
  }
  return lines;
}

// ---- the changes

struct Case {
  std::string groups;
  Lines expected;
  std::string rootAttributes = "";
};

std::string documentOf(const Case& test) {
  return "<modifyOutputObject documentName=\"*\"" + test.rootAttributes + ">" + test.groups +
         "</modifyOutputObject>";
}

std::string group(const std::string& attributes, const std::string& content) {
  return "<modifyEvent" + (attributes.empty() ? "" : " " + attributes) + ">" + content +
         "</modifyEvent>";
}

constexpr const char* kHide = "<objectProperties visible=\"no\"/>";
constexpr const char* kTables = "tables=\"true\"";

/// A line for each of `keys`.
Lines each(const Lines& keys, const std::string& change) {
  Lines lines;
  for (const std::string& key : keys) lines.push_back(key + ": " + change);
  return lines;
}

Lines hidden(const Lines& labels) { return each(labels, "shown > hidden"); }

const Lines kColumns = {"cor", "n", "mean", "med", "pct", "res", "sig"};

Lines row(const std::string& region) {
  Lines cells;
  for (const std::string& column : kColumns) cells.push_back(region + "," + column);
  return cells;
}

Lines column(const std::string& name) { return {"east," + name, "west," + name}; }

Lines operator+(Lines a, const Lines& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

std::vector<Case> objectCases() {
  const Lines all = {"Page",  "Means",  "Log",   "Notes", "Sales", "Warning", "Bars",
                     "Again", "Layers", "Model", "Tree",  "Words", "Other",   "Unknown"};
  const std::pair<const char*, Lines> types[] = {{"charts", {"Bars"}},
                                                 {"headings", {"Means", "Again"}},
                                                 {"logs", {"Log"}},
                                                 {"models", {"Model"}},
                                                 {"tables", {"Sales", "Layers"}},
                                                 {"texts", {"Words"}},
                                                 {"trees", {"Tree"}},
                                                 {"warnings", {"Warning"}},
                                                 {"outlineheaders", {"Means", "Again"}},
                                                 {"notes", {"Notes"}},
                                                 {"unknown", {"Unknown"}},
                                                 {"other", {"Other"}},
                                                 {"pagetitles", {"Page"}}};
  std::vector<Case> cases;
  cases.push_back({group("all=\"true\"", kHide), hidden(all)});
  cases.push_back({group("", kHide), {}});
  for (const auto& [type, labels] : types) {
    const std::string attribute = type;
    cases.push_back({group(attribute + "=\"true\"", kHide), hidden(labels)});
    Lines others;
    for (const std::string& label : all) {
      if (std::find(labels.begin(), labels.end(), label) == labels.end()) others.push_back(label);
    }
    cases.push_back({group("all=\"true\" " + attribute + "=\"false\"", kHide), hidden(others)});
  }
  const std::string number = "<indexObject type=\"number\" indexStart=\"1\"/>";
  cases.push_back({group("texts=\"true\"", number), {"Hidden index: - > 1", "Words index: - > 2"}});
  cases.push_back({group("texts=\"true\" visibleOnly=\"true\"", number), {"Words index: - > 1"}});
  cases.push_back({group(kTables, kHide), hidden({"Sales", "Layers"}), " debug=\"true\""});
  return cases;
}

std::vector<Case> conditionCases() {
  const std::pair<const char*, Lines> conditions[] = {
      {"<command commandName=\"means\"/>", {"Sales", "Layers"}},
      {"<command commandName=\"Means\" instance=\"1\"/>", {"Sales"}},
      {"<command commandName=\"MEANS\" instance=\"2\"/>", {"Layers"}},
      {"<command commandName=\"Means\" instance=\"3\"/>", {}},
      {"<command commandName=\"Means\" last=\"true\"/>", {"Layers"}},
      {"<command commandName=\"Comment\"/>", {}},
      {"<command  last=\"true\"/>", {"Layers"}},
      {"<command  instance=\"1\"/>", {"Sales"}},
      {"<command />", {"Sales", "Layers"}},
      {"<subtype subtype=\"REPORT\"/>", {"Sales"}},
      {"<subtype subtype=\"layeredreport\"/>", {"Layers"}},
      {"<label expression=\"Sales\" exact=\"true\"/>", {"Sales"}},
      {"<label expression=\"Sale\" exact=\"true\"/>", {}},
      {"<label expression=\"Lay\" begins=\"true\"/>", {"Layers"}},
      {"<label expression=\"ers\" begins=\"true\"/>", {}},
      {"<label expression=\"ers\" ends=\"true\"/>", {"Layers"}},
      {"<label expression=\"Lay\" ends=\"true\"/>", {}},
      {"<label expression=\"aye\" contains=\"true\"/>", {"Layers"}},
      {"<instance instance=\"1\"/>", {"Sales"}},
      {"<instance instance=\"2\"/>", {"Layers"}},
      {"<instance last=\"true\"/>", {"Layers"}},
      {"<instance instance=\"3\"/>", {}},
  };
  std::vector<Case> cases;
  for (const auto& [condition, labels] : conditions) {
    cases.push_back({group(kTables, condition + std::string(kHide)), hidden(labels)});
  }
  return cases;
}

std::vector<Case> propertyCases() {
  const std::string charts = "charts=\"true\"";
  std::vector<Case> cases;
  const std::tuple<const char*, int, const char*> indexes[] = {
      {"number", 7, "7"},   {"letter", 28, "ab"},    {"letterCAP", 28, "AB"},
      {"roman", 14, "xiv"}, {"romanCap", 14, "XIV"}, {"number", -2, "-2"}};
  for (const auto& [type, start, text] : indexes) {
    cases.push_back({group(charts, "<indexObject type=\"" + std::string(type) + "\" indexStart=\"" +
                                       std::to_string(start) + "\"/>"),
                     {"Bars index: - > " + std::string(text)}});
  }
  cases.push_back(
      {group(charts, "<deleteObject/>"), {"Bars colors: #ffffff #ff0000 > -", "Bars: shown > -"}});
  const std::pair<const char*, const char*> sizes[] = {
      {"sizeWidth=\"85.5\"", "85.5 x 0 points"},
      {"sizeHeight=\"40\"", "0 x 40 points"},
      {"sizeWidth=\"85.5\" sizeHeight=\"40\"", "85.5 x 40 points"},
      {"sizeWidthPCT=\"50\"", "50 x 0 percent"},
      {"sizeHeightPCT=\"25\"", "0 x 25 percent"},
      {"sizeWidthPCT=\"50\" sizeHeightPCT=\"25\"", "50 x 25 percent"}};
  for (const auto& [attributes, size] : sizes) {
    cases.push_back({group(charts, "<objectProperties " + std::string(attributes) + "/>"),
                     {"Bars size: - > " + std::string(size)}});
  }
  cases.push_back(
      {group("texts=\"true\"", "<objectProperties visible=\"yes\"/>"), {"Hidden: hidden > shown"}});
  cases.push_back({group("texts=\"true\"", kHide), hidden({"Words"})});
  cases.push_back({group("texts=\"true\"", "<objectProperties visible=\"asis\"/>"), {}});
  cases.push_back({group("notes=\"true\"", "<objectProperties label=\"A &lt; &quot;B&quot;\"/>"),
                   {"A < \"B\": - > shown", "Notes: shown > -"}});
  return cases;
}

std::vector<Case> graphCases() {
  const std::string charts = "charts=\"true\"";
  const auto styled = [](const std::string& color) {
    return "<chartTemplate><template><background color=\"" + color +
           "\"/></template></chartTemplate>";
  };
  const auto becomes = [](const std::string& colors) {
    return Lines{"Bars colors: #ffffff #ff0000 > " + colors};
  };
  const std::string series =
      "<chartTemplate><template><series><color value=\"#445566\"/></series></template>"
      "</chartTemplate>";
  return {
      {group(charts, "<modifyGraph></modifyGraph>"), {}},
      {group(charts, "<modifyGraph styleSheet=\"Tint\"/>"), becomes("#102030 #ff0000")},
      {group(charts, "<modifyGraph>" + styled("#111111") + "</modifyGraph>"),
       becomes("#111111 #ff0000")},
      {group(charts, "<modifyGraph>" + styled("#111111") + styled("#222222") + "</modifyGraph>"),
       becomes("#222222 #ff0000")},
      {group(charts,
             "<modifyGraph>" + styled("#222222") + series + styled("#111111") + "</modifyGraph>"),
       becomes("#111111 #445566")},
      // A style sheet comes before the templates.
      {group(charts, "<modifyGraph styleSheet=\"Tint\">" + series + "</modifyGraph>"),
       becomes("#102030 #445566")},
      {group(charts, "<modifyGraph styleSheet=\"Tint\">" + styled("#111111") + "</modifyGraph>"),
       becomes("#111111 #ff0000")},
  };
}

std::vector<Case> tableCases() {
  const auto sales = [](const std::string& content) {
    return group(kTables, "<instance instance=\"1\"/>" + content);
  };
  const auto layers = [](const std::string& content) {
    return group(kTables, "<instance last=\"true\"/><modifyTable>" + content + "</modifyTable>");
  };
  const Lines sorted = {"Sales Region order: east west > west east"};
  const Lines decimals = {
      "Sales east,cor: 1 > 1.00",    "Sales east,n: 2 > 2.00",     "Sales east,mean: 3 > 3.00",
      "Sales east,med: 4 > 4.00",    "Sales east,pct: 5 > 5.00",   "Sales east,res: 6 > 6.00",
      "Sales east,sig: 7 > 7.00",    "Sales west,cor: 11 > 11.00", "Sales west,n: 12 > 12.00",
      "Sales west,mean: 13 > 13.00", "Sales west,med: 14 > 14.00", "Sales west,pct: 3.5 > 3.50",
      "Sales west,res: 16 > 16.00"};
  return {
      {sales("<modifyTable title=\"A &amp; B\"/>"), {"Sales title: Sales by region > A & B"}},
      {sales("<modifyTable summary=\"About\"/>"), {"Sales summary: - > About"}},
      {sales("<modifyTable transpose=\"true\"/>"),
       {"Sales Region: rows > columns", "Sales Statistic: columns > rows"}},
      {sales("<modifyTable sortLabel=\"pct\" ascending=\"true\"/>"), sorted},
      {sales("<modifyTable sortLabel=\"pct\" ascending=\"false\"/>"), {}},
      {sales("<modifyTable sortPosition=\"2\" ascending=\"true\"/>"), {}},
      {sales("<modifyTable sortPosition=\"2\" ascending=\"false\"/>"), sorted},
      {sales("<modifyTable sortPosition=\"-1\" ascending=\"false\"/>"), {}},
      {sales("<modifyTable format=\"F8.2\"/>"), decimals},
      {sales("<modifyTable format=\"Q9\"/>"), {}},
      {sales("<modifyTable defaultTableLook=\"true\"/>"),
       {"Sales look: - > " + defaultTableLook().name}},
      {sales("<modifyTable><tableLook><tableProperties name=\"Mine\"/></tableLook></modifyTable>"),
       {"Sales look: - > Mine"}},
      {layers("<layer layer=\"Year\" category=\"2023\"/>"), {"Layers Year layer: - > 2023"}},
      {layers("<layer layer=\"Year\" categoryInt=\"1\"/>"), {"Layers Year layer: - > 2023"}},
      {layers("<layer layer=\"Sex\" categoryInt=\"0\"/>"), {"Layers Sex layer: - > x"}},
      {layers("<layer layer=\"Sex\" categoryInt=\"-1\"/>"), {}},
      {layers("<layer layer=\"Region\" category=\"r\"/>"), {}},
      {layers("<layer layerInt=\"1\" category=\"2024\"/>"), {"Layers Year layer: - > 2024"}},
      {layers("<layer layerInt=\"2\" categoryInt=\"2\"/>"), {"Layers Sex layer: - > m"}},
      {layers("<layer layerInt=\"0\" categoryInt=\"2\"/>"),
       {"Layers Sex layer: - > m", "Layers Year layer: - > 2024"}},
      {layers("<layer layerInt=\"0\" category=\"m\"/>"), {"Layers Sex layer: - > m"}},
      {layers("<layer layerInt=\"-1\" categoryInt=\"1\"/>"), {}},
      {layers("<layer layerInt=\"3\" categoryInt=\"1\"/>"), {}},
  };
}

std::string cellsOf(const std::string& attributes) {
  return group(kTables, "<instance instance=\"1\"/><tableCells " + attributes + "/>");
}

std::vector<Case> cellSelectionCases() {
  const Lines rowLabels = {"[east]", "[west]"};
  Lines columnLabels;
  for (const std::string& name : kColumns) columnLabels.push_back("[" + name + "]");
  const Lines body = row("east") + row("west");
  const std::string both = "selectColumns=\"both\" ";
  const std::string columns = "selectColumns=\"true\" ";
  const std::string rows = "selectColumns=\"false\" ";
  const auto inBody = [&](const std::string& condition) {
    return "body=\"true\" " + both + "selectCondition=\"" + condition + "\"";
  };
  const auto applied = [&](const std::string& applyTo) {
    return "mean=\"true\" " + both + "selectCondition=\"x>5\" applyTo=\"" + applyTo + "\"";
  };
  const std::pair<std::string, Lines> selections[] = {
      {both, {}},
      {"correlation=\"true\" " + both, column("cor")},
      {"count=\"true\" " + both, column("n")},
      {"mean=\"true\" " + both, column("mean")},
      {"median=\"true\" " + both, column("med")},
      {"percent=\"true\" " + both, column("pct")},
      {"residual=\"true\" " + both, column("res")},
      {"significance=\"true\" " + both, column("sig")},
      {"body=\"true\" " + both, body},
      {"headers=\"true\" " + both, rowLabels + columnLabels},
      {"footnotes=\"true\" " + both, {"footnotes"}},
      {"title=\"true\" " + both, {"title"}},
      {"caption=\"true\" " + both, {"caption"}},
      {"count=\"true\" mean=\"true\" title=\"true\" " + both,
       column("n") + column("mean") + Lines{"title"}},
      {"selectExpression=\"mean\" " + both, column("mean")},
      {"selectExpression=\"east;sig\" " + both, row("east") + Lines{"west,sig"}},
      {"selectPosition=\"2\" " + columns, column("n")},
      {"selectPosition=\"1;3\" " + columns, column("cor") + column("mean")},
      {"selectPosition=\"2;9\" " + rows, row("west")},
      {"headers=\"true\" " + columns, columnLabels},
      {"headers=\"true\" " + rows, rowLabels},
      {"mean=\"true\" " + columns, column("mean")},
      {"mean=\"true\" " + rows, {}},
      {inBody("all"), body},
      {inBody("missing"), {"west,sig"}},
      {inBody("top(2)"), {"west,med", "west,res"}},
      {inBody("bottom(2)"), {"east,cor", "east,n"}},
      {inBody("top(1)\" selectCondition=\"bottom(1)"), {"east,cor", "west,res"}},
      {inBody("x>13"), {"west,med", "west,res"}},
      {inBody("x&lt;2"), {"east,cor"}},
      {inBody("x>=2andx<=3"), {"east,n", "east,mean"}},
      {applied("CELL"), {"west,mean"}},
      {applied("COLUMN"), column("mean") + Lines{"[mean]"}},
      {applied("ROW"), row("west") + Lines{"[west]"}},
      {applied("COLUMNDATA"), column("mean")},
      {applied("ROWDATA"), row("west")},
      {applied("COLUMNHEADER"), {"[mean]"}},
      {applied("ROWHEADER"), {"[west]"}},
  };
  std::vector<Case> cases;
  for (const auto& [attributes, parts] : selections) {
    Lines bold;
    for (const std::string& part : parts) bold.push_back("Sales " + part + " bold");
    cases.push_back({cellsOf(attributes + " bold=\"true\""), each(bold, "- > true")});
  }
  return cases;
}

std::vector<Case> cellChangeCases() {
  // The mean of the west, which is 13; the correlation of the west, which has a look and a width.
  const auto mean = [](const std::string& attributes) {
    return cellsOf("mean=\"true\" selectColumns=\"both\" selectCondition=\"x>5\" " + attributes);
  };
  const auto correlation = [](const std::string& attributes) {
    return cellsOf("correlation=\"true\" selectColumns=\"both\" selectCondition=\"x>5\" " +
                   attributes);
  };
  const auto becomes = [](const std::string& what) { return Lines{"Sales west,mean" + what}; };
  const Lines reverted = {"Sales [cor] width: 50 > -", "Sales west,cor color: #123456 > -",
                          "Sales west,cor italic: true > -"};
  return {
      {correlation("revertToDefault=\"true\""), reverted},
      {correlation("revertToDefault=\"true\" bold=\"true\""),
       Lines{reverted[0], "Sales west,cor bold: - > true", reverted[1], reverted[2]}},
      {mean("revertToDefault=\"true\""), {}},
      {mean("bold=\"true\""), becomes(" bold: - > true")},
      {mean("bold=\"false\""), becomes(" bold: - > false")},
      {mean("underline=\"true\""), becomes(" underlined: - > true")},
      {mean("underline=\"false\""), becomes(" underlined: - > false")},
      {mean("italic=\"true\""), becomes(" italic: - > true")},
      {correlation("italic=\"false\""), {"Sales west,cor italic: true > false"}},
      {mean("columnWidth=\"28\""), {"Sales [mean] width: - > 28"}},
      {correlation("columnWidth=\"28\""), {"Sales [cor] width: 50 > 28"}},
      {mean("fontSize=\"9.5\""), becomes(" size: - > 9.5")},
      {mean("textRed=\"1\" textGreen=\"2\" textBlue=\"255\""), becomes(" color: - > #0102ff")},
      {correlation("textRed=\"0\" textGreen=\"0\" textBlue=\"0\""),
       {"Sales west,cor color: #123456 > #000000"}},
      {mean("backgroundRed=\"255\" backgroundGreen=\"2\" backgroundBlue=\"1\""),
       becomes(" background: - > #ff0201")},
      {mean("format=\"F8.2\""), becomes(": 13 > 13.00")},
      {mean("format=\"F99\""), {}},
      {mean("font=\"Noto Sans\""), becomes(" font: - > Noto Sans")},
      {mean("font=\"Nowhere\""), {}},
      {mean("replace=\"many\""), becomes(": 13 > text many")},
      {mean("replaceValue=\"99\""), becomes(": 13 > 99")},
      {mean("replaceValue=\"-1\""), becomes(": 13 > text ")},
      {cellsOf("title=\"true\" selectColumns=\"both\" replace=\"New\""),
       {"Sales title: Sales by region > New"}},
      {cellsOf("headers=\"true\" selectColumns=\"true\" columnWidth=\"28\""),
       {"Sales [cor] width: 50 > 28", "Sales [mean] width: - > 28", "Sales [med] width: - > 28",
        "Sales [n] width: - > 28", "Sales [pct] width: - > 28", "Sales [res] width: - > 28",
        "Sales [sig] width: - > 28"}},
  };
}

std::vector<Case> textCases() {
  const auto words = [](const std::string& attributes) {
    return group("texts=\"true\" visibleOnly=\"true\"", "<modifyText " + attributes + "/>");
  };
  return {
      {words("expression=\"one &amp; two\nthree\""), {"Words text: words > one & two / three"}},
      {words("fontFamily=\"Noto Sans\""), {"Words font: - > Noto Sans"}},
      {words("fontFamily=\"Nowhere\""), {}},
      {words("textRed=\"255\" textGreen=\"1\" textBlue=\"2\""), {"Words color: - > #ff0102"}},
      {words("fontSize=\"10.5\""), {"Words size: - > 10.5"}},
      {words("fontBold=\"true\""), {"Words bold: - > true"}},
      {words("fontItalic=\"true\""), {"Words italic: - > true"}},
      {words("fontUnderline=\"true\""), {"Words underlined: - > true"}},
      // What stands before takes its own back.
      {words("fontBold=\"true\" fontItalic=\"true\" fontUnderline=\"true\"") +
           words("fontBold=\"false\""),
       {"Words italic: - > true", "Words underlined: - > true"}},
      {words("fontBold=\"true\" fontItalic=\"true\" fontUnderline=\"true\"") +
           words("fontItalic=\"false\""),
       {"Words bold: - > true", "Words underlined: - > true"}},
      {words("fontBold=\"true\" fontItalic=\"true\" fontUnderline=\"true\"") +
           words("fontUnderline=\"false\""),
       {"Words bold: - > true", "Words italic: - > true"}},
      {group("pagetitles=\"true\"", "<modifyText expression=\"Title\"/>"),
       {"Page text: A report > Title"}},
  };
}

std::vector<Case> allCases() {
  std::vector<Case> all;
  for (const auto& some : {objectCases(), conditionCases(), propertyCases(), graphCases(),
                           tableCases(), cellSelectionCases(), cellChangeCases(), textCases()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

void carryOut(Document& document, const std::string& xml) {
  const ModifyRequest request = readModifyRequest(xml);
  ChangeEngine engine(request, [](const std::string& font) { return font != "Nowhere"; });
  engine.apply(document);
  engine.commit();
}

TEST(ChangedDocuments, HoldWhatWasAskedForAndNothingElseIsOther) {
  const LookFolders folders;
  folders.install("Tint.qgs", "<styleSheet><background color=\"#102030\"/></styleSheet>");
  for (const Case& test : allCases()) {
    Document document = makeDocument();
    const State before = describe(document);
    carryOut(document, documentOf(test));
    Lines expected = test.expected;
    std::sort(expected.begin(), expected.end());
    Lines found = difference(before, describe(document));
    std::sort(found.begin(), found.end());
    EXPECT_THAT(found, ElementsAreArray(expected)) << documentOf(test);
  }
}

TEST(ChangedDocuments, AreAsTheyWereWhenNothingIsCommitted) {
  const LookFolders folders;
  folders.install("Tint.qgs", "<styleSheet><background color=\"#102030\"/></styleSheet>");
  for (const Case& test : allCases()) {
    Document document = makeDocument();
    const State before = describe(document);
    const ModifyRequest request = readModifyRequest(documentOf(test));
    { ChangeEngine(request, {}).apply(document); }
    EXPECT_EQ(describe(document), before) << documentOf(test);
  }
}

// ---- all of the schema

/// Element, attribute, and a value where the schema lists the values.
using Use = std::tuple<std::string, std::string, std::string>;

std::set<Use> usedIn(const std::vector<Case>& cases) {
  std::set<Use> uses;
  for (const Case& test : cases) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(documentOf(test).c_str())) << documentOf(test);
    struct Collector : pugi::xml_tree_walker {
      explicit Collector(std::set<Use>& all) : uses(all) {}
      bool for_each(pugi::xml_node& node) override {
        for (const pugi::xml_attribute attribute : node.attributes()) {
          uses.emplace(node.name(), attribute.name(), attribute.value());
          uses.emplace(node.name(), attribute.name(), "");
        }
        return true;
      }
      std::set<Use>& uses;
    } collector(uses);
    document.traverse(collector);
  }
  return uses;
}

/// What the schema has by that name, whatever kind of definition it is.
pugi::xml_node definitionOf(pugi::xml_node schema, const std::string& name) {
  return schema.find_child_by_attribute("name", name.c_str());
}

Lines valuesOf(pugi::xml_node schema, pugi::xml_node attribute) {
  pugi::xml_node type = attribute.child("xs:simpleType");
  if (!type) type = definitionOf(schema, attribute.attribute("type").value());
  Lines values;
  for (const pugi::xml_node value : type.child("xs:restriction").children("xs:enumeration")) {
    values.emplace_back(value.attribute("value").value());
  }
  return values.empty() ? Lines{""} : values;
}

TEST(ChangedDocuments, EveryAttributeAndListedValueOfTheSchemaHasACase) {
  pugi::xml_document xsd;
  ASSERT_TRUE(xsd.load_file(VORN_SOURCE_DIR "/docs/modify-document.xsd"));
  const pugi::xml_node schema = xsd.document_element();
  const std::set<Use> uses = usedIn(allCases());
  int attributes = 0;
  for (const pugi::xpath_node found : schema.select_nodes("//xs:element")) {
    const pugi::xml_node element = found.node();
    pugi::xml_node type = element.child("xs:complexType");
    if (!type) type = definitionOf(schema, element.attribute("type").value());
    for (const pugi::xml_node attribute : type.children("xs:attribute")) {
      ++attributes;
      for (const std::string& value : valuesOf(schema, attribute)) {
        const Use use(element.attribute("name").value(), attribute.attribute("name").value(),
                      value);
        EXPECT_TRUE(uses.contains(use))
            << std::get<0>(use) << " " << std::get<1>(use) << " " << std::get<2>(use);
      }
    }
  }
  EXPECT_GE(attributes, 90);
}

// ---- which documents

/// The names of the open documents, a and b, the last one active, in which tables are hidden
/// afterwards.
Lines documentsChangedBy(const std::string& documentName) {
  EmbeddedHost host;
  for (const char* const name : {"a", "b"}) {
    VornwMsgOutputControllerResponse response;
    EXPECT_TRUE(host.GetOutputController()->SendRequest(
        {1, OutputControllerCommand::kNew, name, "", OutputDocumentMinimized::kNotApplicable},
        response));
    host.sink().procedureOpened({"Means", 2});
    host.sink().table(std::make_shared<PivotTable>());
    host.sink().procedureClosed({"Means", 2});
  }
  EXPECT_EQ(host.ModifyOutput("<modifyOutputObject documentName=\"" + documentName + "\">" +
                              group(kTables, kHide) + "</modifyOutputObject>"),
            documentName.empty() ? "(2,2,0)" : "(1,1,0)");
  Lines changed;
  for (const Document* document : host.documents()) {
    const DocumentObject& heading = document->root().children.at(0);
    if (!heading.children.back().visible) changed.push_back(document->name());
  }
  return changed;
}

TEST(ChangedDocuments, AreTheOneThatIsNamedTheActiveOneOrAll) {
  EXPECT_THAT(documentsChangedBy("a"), ElementsAre("a"));
  EXPECT_THAT(documentsChangedBy("b"), ElementsAre("b"));
  EXPECT_THAT(documentsChangedBy("*"), ElementsAre("b"));
  EXPECT_THAT(documentsChangedBy(""), ElementsAre("a", "b"));
}

}  // namespace
}  // namespace vornwout
