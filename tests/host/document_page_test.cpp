#include "host/export/html/document_page.h"

#include <memory>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/store/store_error.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::Not;

DocumentObject object(ObjectType type, std::string label, ObjectContent content = {}) {
  DocumentObject result;
  result.type = type;
  result.label = std::move(label);
  result.content = std::move(content);
  return result;
}

DocumentObject heading(std::string label, std::vector<DocumentObject> children) {
  DocumentObject result = object(ObjectType::kHeading, std::move(label));
  result.children = std::move(children);
  return result;
}

MediaContent media(std::string type, std::string bytes) {
  return {std::move(type), std::make_shared<const std::string>(std::move(bytes))};
}

std::shared_ptr<PivotTable> smallTable(const std::string& text) {
  auto table = std::make_shared<PivotTable>();
  table->title = textCell(text);
  table->caption = textCell(text);
  table->footnotes = {textCell(text)};
  table->dimensions = {makeDimension(text, PivotPlace::kRows, 1, {text, "b"}),
                       makeDimension(text, PivotPlace::kColumns, 1, {text}),
                       makeDimension(text, PivotPlace::kLayers, 1, {text, "m"})};
  addCell(*table, {0, 0, 0}, textCell(text)).notes = {textCell(text)};
  addCell(*table, {0, 0, 1}, numberCell(1));
  return table;
}

std::string pageOf(const Document& document, const PageOptions& options) {
  std::string page;
  writePage(document.name(), outlineOf(document.root()), options,
            [&](std::string_view html) { page += html; });
  return page;
}

std::string pageOf(std::vector<DocumentObject> objects, const PageOptions& options = {}) {
  Document document(1, "doc", false);
  for (DocumentObject& each : objects) document.append(std::move(each));
  return pageOf(document, options);
}

/// The page behind its style sheet.
std::string bodyOf(const std::string& page) { return page.substr(page.find("<body>")); }

TEST(DocumentPage, HeadForbidsEverythingFromOutside) {
  const std::string page = pageOf({});
  EXPECT_THAT(page, testing::StartsWith(
                        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">"));
  EXPECT_THAT(page,
              HasSubstr("<meta http-equiv=\"Content-Security-Policy\" content=\"default-src "
                        "&#39;none&#39;; img-src data:; style-src &#39;unsafe-inline&#39;; "));
  EXPECT_THAT(page, HasSubstr("<title>doc</title>"));
  EXPECT_THAT(page, HasSubstr("prefers-color-scheme:dark"));
  EXPECT_THAT(page, HasSubstr("@media print"));
  EXPECT_THAT(page, Not(HasSubstr("url(")));
  EXPECT_THAT(page, Not(HasSubstr("@import")));
  EXPECT_THAT(page, Not(HasSubstr("<nav"))) << "there is nothing to go to";
}

TEST(DocumentPage, TitleAndLanguageAreTheOptions) {
  const std::string page = pageOf({}, {"A & B", "de"});
  EXPECT_THAT(page, HasSubstr("<html lang=\"de\">"));
  EXPECT_THAT(page, HasSubstr("<h1>A &amp; B</h1>"));
  EXPECT_THAT(renderPage(Document(1, "", false)), HasSubstr("<h1>Output</h1>"));
}

TEST(DocumentPage, PageTitleAtTheBeginningIsTheHeadingAndIsSaidOnce) {
  const DocumentObject title =
      object(ObjectType::kPageTitle, "Figures", TextContent{{TextParagraph{}}});
  const DocumentObject log = object(ObjectType::kLog, "L", LogContent{"x"});
  const std::string page = pageOf({title, log});
  EXPECT_THAT(page, HasSubstr("<title>Figures</title>"));
  EXPECT_THAT(page, HasSubstr("<h1 id=\"o1\">Figures</h1>\n<div class=\"object\" id=\"o2\">"));
  EXPECT_THAT(pageOf({log, title}), HasSubstr("<h1>doc</h1>"));
  EXPECT_THAT(pageOf({title}, {"Other", "en"}),
              HasSubstr("<h1>Other</h1>\n<div class=\"object\" id=\"o1\">"));
}

TEST(DocumentPage, TextOfAPageTitleThatSaysMoreThanItsLabelIsKept) {
  const auto titled = [](std::vector<std::string> texts) {
    TextContent content;
    for (std::string& text : texts) {
      content.paragraphs.emplace_back().runs.push_back({std::move(text), {}, {}});
    }
    return pageOf({object(ObjectType::kPageTitle, "Short", std::move(content))});
  };
  EXPECT_THAT(titled({"Short"}), HasSubstr("<h1 id=\"o1\">Short</h1>\n</main>"));
  const std::string page = titled({"A long full title text"});
  EXPECT_THAT(page, HasSubstr("<title>Short</title>"));
  EXPECT_THAT(page, HasSubstr("<h1>Short</h1>\n<div class=\"object\" id=\"o1\">"));
  EXPECT_THAT(page, HasSubstr("A long full title text"));
  EXPECT_THAT(titled({"Short", "and long"}), HasSubstr("and long"));
  EXPECT_THAT(pageOf({object(ObjectType::kPageTitle, "Short", LogContent{"of another kind"})}),
              HasSubstr("of another kind"));
}

TEST(DocumentPage, HeadingsNestAsSectionsAndTheNavigationLeadsToEach) {
  const std::string page =
      pageOf({heading("A", {heading("B", {}), object(ObjectType::kLog, "L", LogContent{"x"})}),
              heading("C", {})});
  EXPECT_THAT(page,
              HasSubstr("<section aria-labelledby=\"o1\">\n<h2 id=\"o1\">A</h2>\n"
                        "<section aria-labelledby=\"o2\">\n<h3 id=\"o2\">B</h3>\n</section>\n"
                        "<div class=\"object\" id=\"o3\">\n<pre><code>x</code></pre>\n</div>\n"
                        "</section>\n<section aria-labelledby=\"o4\">"));
  EXPECT_THAT(page, HasSubstr("<li class=\"heading\"><a href=\"#o1\">A</a>\n<ul>\n"
                              "<li class=\"heading\"><a href=\"#o2\">B</a></li>\n"
                              "<li><a href=\"#o3\">L</a></li>\n</ul></li>\n"
                              "<li class=\"heading\"><a href=\"#o4\">C</a></li>\n</ul>"));
}

TEST(DocumentPage, HiddenObjectsAreLeftOut) {
  DocumentObject secret = object(ObjectType::kLog, "hidden log", LogContent{"hidden text"});
  secret.visible = false;
  DocumentObject closed =
      heading("closed", {object(ObjectType::kLog, "inner", LogContent{"inner text"})});
  closed.visible = false;
  const std::string body =
      bodyOf(pageOf({secret, closed, object(ObjectType::kLog, "on", LogContent{"shown"})}));
  EXPECT_THAT(body, HasSubstr("shown"));
  for (const char* hidden : {"hidden log", "hidden text", "closed", "inner", "o1\"", "o2\""}) {
    EXPECT_THAT(body, Not(HasSubstr(hidden)));
  }
}

TEST(DocumentPage, EveryKindOfContentIsShown) {
  MessageContent warning;
  warning.severity = MessageSeverity::kWarning;
  warning.text = "careful";
  MessageContent note = warning;
  note.severity = MessageSeverity::kInformation;
  const std::string page =
      pageOf({object(ObjectType::kWarning, "W", warning), object(ObjectType::kWarning, "I", note),
              object(ObjectType::kWarning, "E", MessageContent{MessageSeverity::kError, "bad", {}}),
              object(ObjectType::kNotes, "N", NotesContent{{{textCell("l"), numberCell(2)}}}),
              object(ObjectType::kTable, "T", smallTable("t")),
              object(ObjectType::kModel, "M", media("application/xml", "<m/>"))});
  EXPECT_THAT(page, HasSubstr("<p class=\"message warning\"><strong>Warning</strong> careful</p>"));
  EXPECT_THAT(page, HasSubstr("<p class=\"message\"><strong>Information</strong> careful</p>"));
  EXPECT_THAT(page, HasSubstr("<p class=\"message error\"><strong>Error</strong> bad</p>"));
  EXPECT_THAT(page, HasSubstr("<dt>l</dt><dd>2</dd>"));
  EXPECT_THAT(page, HasSubstr("<h2 class=\"layer\">t: t</h2>"));
  EXPECT_THAT(page, HasSubstr("<h2 class=\"layer\">t: m</h2>"));
  EXPECT_THAT(page, HasSubstr("M: application/xml, 4 bytes. A browser does not show it."));
}

TEST(DocumentPage, ChartsAreDataWithAnAlternativeText) {
  DocumentObject chart = object(ObjectType::kChart, "Sales \"2024\"",
                                media("image/svg+xml", "<svg width='75pt' height='150pt'/>"));
  EXPECT_THAT(
      pageOf({chart}),
      HasSubstr(
          "<figure><img alt=\"Sales &quot;2024&quot;\" width=\"100\" height=\"200\" "
          "src=\"data:image/svg+xml;base64,PHN2ZyB3aWR0aD0nNzVwdCcgaGVpZ2h0PScxNTBwdCcvPg==\">"
          "</figure>"));
  chart.size = ObjectSize{50, 0, true};
  EXPECT_THAT(pageOf({chart}), HasSubstr("width=\"50\" height=\"100\""));
  // A type that a browser would run, or that leaves the attribute, is no image.
  for (const char* type : {"text/html", "image/svg+xml\" onload=\"x", "application/pdf"}) {
    EXPECT_THAT(pageOf({object(ObjectType::kChart, "c", media(type, "x"))}),
                Not(HasSubstr("<img")));
  }
}

TEST(DocumentPage, TableThatCannotBeLaidOutSaysSo) {
  auto broken = std::make_shared<PivotTable>();
  addCell(*broken, {7}, textCell("x"));
  EXPECT_THAT(pageOf({object(ObjectType::kTable, "T", broken)}),
              HasSubstr("<p class=\"aside\">This table cannot be shown: a cell of the table"));
}

class BrokenSource : public ContentSource {
 public:
  ObjectContent load(std::uint64_t) override {
    throw StoreError(StoreError::Kind::kDamaged, "The part 7 is damaged.");
  }
};

TEST(DocumentPage, PartThatCannotBeReadIsAnError) {
  Document document(1, "", false);
  DocumentObject damaged;
  damaged.content = LazyContent(LazyContent::Place{std::make_shared<BrokenSource>(), 7});
  document.append(damaged);
  EXPECT_THROW(renderPage(document), StoreError);
}

/// The tags of a page in the order in which they stand, with the names of their attributes: "p",
/// "a href", "/p".
std::vector<std::string> tagsOf(const std::string& html) {
  static const std::regex tag("<(/?[a-z][a-z0-9]*(?: [a-z-]+(?:=\"[^\"<>]*\")?)*)>");
  static const std::regex value("=\"[^\"]*\"");
  std::vector<std::string> tags;
  for (auto at = std::sregex_iterator(html.begin(), html.end(), tag); at != std::sregex_iterator();
       ++at) {
    tags.push_back(std::regex_replace((*at)[1].str(), value, ""));
  }
  return tags;
}

/// A document that says `text` in every place that takes one.
std::string pageSaying(const std::string& text) {
  TextContent words;
  for (int kind = 0; kind < 6; ++kind) {
    TextParagraph paragraph;
    paragraph.kind = static_cast<TextParagraph::Kind>(kind);
    paragraph.level = 1;
    TextStyle style;
    style.font = text;
    style.color = text;
    paragraph.runs = {{text, style, text}};
    words.paragraphs.push_back(paragraph);
  }
  auto table = smallTable(text);
  table->cells[0].look.edit([&](TextLook& look) { look.textColor = text; });
  table->cells[0].look.edit([&](TextLook& look) { look.backgroundColor = text; });
  auto untitled = std::make_shared<PivotTable>(*table);
  untitled->titleHidden = true;
  DocumentObject indexed = heading(
      text, {object(ObjectType::kTable, text, table), object(ObjectType::kTable, text, untitled)});
  indexed.index = text;
  indexed.command = text;
  indexed.subtype = text;
  Document document(1, text, false);
  document.append(indexed);
  document.append(object(ObjectType::kText, text, words));
  document.append(object(ObjectType::kLog, text, LogContent{text}));
  document.append(
      object(ObjectType::kNotes, text, NotesContent{{{textCell(text), textCell(text)}}}));
  document.append(
      object(ObjectType::kWarning, text, MessageContent{MessageSeverity::kError, text, {}}));
  document.append(object(ObjectType::kChart, text, media("image/png", text)));
  document.append(object(ObjectType::kModel, text, media(text, text)));
  return bodyOf(pageOf(document, {text, text}));
}

TEST(DocumentPage, NoTextChangesWhatThePageIsMadeOf) {
  // Harmless, and like the others neither a font's name nor a colour.
  const std::vector<std::string> harmless = tagsOf(pageSaying("harm; less"));
  ASSERT_GT(harmless.size(), 100U);
  for (const char* text :
       {"<script>alert(1)</script>", "\"><img src=x onerror=alert(1)>", "' onload='alert(1)",
        "</style><script>x</script>", "-->", "]]>", "&lt;b&gt;", "<!--", "javascript:alert(1)",
        "</title><b>", "</code></pre><hr>", "\xFF\xFE<", "\x01<\x02", "<svg/onload=alert(1)>"}) {
    SCOPED_TRACE(text);
    const std::string page = pageSaying(text);
    EXPECT_EQ(tagsOf(page), harmless);
    EXPECT_THAT(page, Not(HasSubstr("href=\"javascript")));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
  }
}

TEST(DocumentPage, ElementsNestAndIdsAreUnique) {
  const std::string page = pageSaying("harmless");
  const std::set<std::string> empty = {"img", "br", "hr", "meta"};
  std::vector<std::string> open;
  for (const std::string& whole : tagsOf(page)) {
    const std::string tag = whole.substr(0, whole.find(' '));
    if (empty.contains(tag)) continue;
    if (tag[0] != '/') {
      open.push_back(tag);
    } else if (tag != "/html") {
      ASSERT_FALSE(open.empty()) << tag;
      EXPECT_EQ("/" + open.back(), tag);
      open.pop_back();
    }
  }
  EXPECT_THAT(open, testing::IsEmpty());
  static const std::regex idAttribute(" id=\"([^\"]*)\"");
  std::set<std::string> ids;
  for (auto at = std::sregex_iterator(page.begin(), page.end(), idAttribute);
       at != std::sregex_iterator(); ++at) {
    EXPECT_TRUE(ids.insert((*at)[1]).second) << (*at)[1];
  }
  // Whatever is referred to is there.
  static const std::regex reference(" (?:headers|aria-labelledby|href)=\"#?([^\"]*)\"");
  for (auto at = std::sregex_iterator(page.begin(), page.end(), reference);
       at != std::sregex_iterator(); ++at) {
    std::istringstream names((*at)[1]);
    for (std::string name; names >> name;) EXPECT_TRUE(ids.contains(name)) << name;
  }
}

/// A table with two layers.
DocumentObject layered() {
  auto table = std::make_shared<PivotTable>();
  table->title = textCell("Sales");
  table->dimensions = {makeDimension("Region", PivotPlace::kRows, 1, {"North"}),
                       makeDimension("Year", PivotPlace::kLayers, 1, {"2023", "2024"})};
  addCell(*table, {0, 0}, numberCell(1));
  addCell(*table, {0, 1}, numberCell(2));
  table->dimensions[1].shownLeaf = 1;
  return object(ObjectType::kTable, "Sales", TableContent(table));
}

TEST(DocumentPage, LayersAreTheChosenOneOrAll) {
  PageOptions options;
  EXPECT_THAT(pageOf({layered()}, options), Not(HasSubstr(">1</td>")));
  EXPECT_THAT(pageOf({layered()}, options), HasSubstr(">2</td>"));
  options.layers = ShownLayers::kAll;
  const std::string all = pageOf({layered()}, options);
  EXPECT_THAT(all, HasSubstr(">1</td>"));
  EXPECT_THAT(all, HasSubstr(">2</td>"));
  EXPECT_THAT(all, Not(HasSubstr("<input")));
}

TEST(DocumentPage, LayersArePickedByRadioButtons) {
  PageOptions options;
  options.pickLayers = true;
  const std::string page = pageOf({layered()}, options);
  EXPECT_THAT(
      page, HasSubstr("<div class=\"layers\" role=\"radiogroup\" aria-label=\"Layers of Sales\">"));
  EXPECT_THAT(page, HasSubstr("<input type=\"radio\" name=\"l1\" id=\"l1x1\"><label for=\"l1x1\">"
                              "Year: 2023</label><div class=\"panel\">"));
  EXPECT_THAT(page, HasSubstr("<input type=\"radio\" name=\"l1\" id=\"l1x2\" checked><label "
                              "for=\"l1x2\">Year: 2024</label>"))
      << "the chosen one is seen first";
  EXPECT_THAT(page, Not(HasSubstr("<script")));
}

TEST(DocumentPage, OnlyTheLayersThatAreWantedCanBePicked) {
  PageOptions options;
  options.pickLayers = true;
  options.layers = ShownLayers::kFirst;
  const std::string page = pageOf({layered()}, options);
  EXPECT_THAT(page, Not(HasSubstr("<input")));
  EXPECT_THAT(page, Not(HasSubstr(">1</td>"))) << "who limits the layers gives away no other";
}

TEST(DocumentPage, LayersWithoutLabelsAreCounted) {
  DocumentObject table = layered();
  PivotTable content = **table.content.as<TableContent>();
  content.dimensions[1].position->hideLabel = true;
  content.dimensions[1].position->hideCategories = true;
  table.content = ObjectContent(TableContent(std::make_shared<const PivotTable>(content)));
  PageOptions options;
  options.pickLayers = true;
  const std::string page = pageOf({table}, options);
  EXPECT_THAT(page, HasSubstr(">Layer 1</label>"));
  EXPECT_THAT(page, HasSubstr(">Layer 2</label>"));
}

TEST(DocumentPage, ManyLayersAreAList) {
  PivotTable content;
  content.title = textCell("Sales");
  content.dimensions = {
      makeDimension("Region", PivotPlace::kRows, 1, {"North"}),
      makeDimension("Day", PivotPlace::kLayers, 1, std::vector<std::string>(40, "day"))};
  for (int i = 0; i < 40; ++i) addCell(content, {0, i}, numberCell(i));
  PageOptions options;
  options.pickLayers = true;
  const std::string page =
      pageOf({object(ObjectType::kTable, "Sales",
                     TableContent(std::make_shared<const PivotTable>(content)))},
             options);
  EXPECT_THAT(page, Not(HasSubstr("<input")));
  EXPECT_THAT(page,
              HasSubstr("<div class=\"layerlist\">\n<details open><summary>Day: day</summary>"));
}

TEST(DocumentPage, TextsThatRunFromRightToLeftDecideTheirDirection) {
  const std::string arabic = "\xD9\x85\xD8\xB1\xD8\xAD\xD8\xA8\xD8\xA7!";
  const std::string page =
      pageOf({object(ObjectType::kTable, arabic, TableContent(smallTable(arabic)))}, {});
  EXPECT_THAT(page, HasSubstr("dir=\"auto\">" + arabic));
  EXPECT_THAT(
      pageOf({object(ObjectType::kTable, "a", TableContent(smallTable("\xE6\x97\xA5")))}, {}),
      Not(HasSubstr("dir=")));
  // One that turns what stands behind it is not let in.
  EXPECT_THAT(pageOf({object(ObjectType::kLog, "\xE2\x80\xAEgnp.exe", LogContent{"x"})}, {}),
              HasSubstr("\xEF\xBF\xBDgnp.exe"));
}

TEST(DocumentPage, ATableThatIsTooLargeIsTold) {
  PivotTable content;
  for (const auto place : {PivotPlace::kRows, PivotPlace::kColumns}) {
    content.dimensions.push_back(
        makeDimension("D", place, 1, std::vector<std::string>(10'000, "category")));
  }
  addCell(content, {0, 0}, numberCell(1));
  PageOptions options;
  std::string missing;
  options.missing = [&](const DocumentObject& table) { missing += table.label; };
  const auto write = [&] {
    return pageOf({object(ObjectType::kTable, "Sales",
                          TableContent(std::make_shared<const PivotTable>(content)))},
                  options);
  };
  EXPECT_THAT(write(), HasSubstr("This table cannot be shown: "));
  EXPECT_EQ(missing, "Sales");
  content.dimensions.resize(1);
  content.cells[0].at = std::vector<int>{20'000};
  EXPECT_THAT(write(), HasSubstr("This table cannot be shown: "));
  EXPECT_EQ(missing, "Sales") << "a damaged one is not too large";
}

TEST(DocumentPage, WithoutStylesItIsBareElements) {
  PageOptions options;
  options.withStyles = false;
  options.pickLayers = true;
  const std::string page = pageOf({layered()}, options);
  EXPECT_THAT(page, Not(HasSubstr("<style")));
  EXPECT_THAT(page, Not(HasSubstr("class=")));
  EXPECT_THAT(page, Not(HasSubstr("style=\"")));
  EXPECT_THAT(page, Not(HasSubstr("<input"))) << "nothing could be picked";
  EXPECT_THAT(page, Not(HasSubstr("<td>1</td>"))) << "the table shows its chosen layer";
  EXPECT_THAT(page, HasSubstr("<td>2</td>"));
  EXPECT_THAT(page, HasSubstr("Content-Security-Policy"));
}

TEST(DocumentPage, ChartsMayBeReplacedByImages) {
  PageOptions options;
  options.image = [](const DocumentObject& chart, const MediaContent& content) {
    EXPECT_EQ(chart.label, "Chart");
    EXPECT_EQ(content.mediaType, "image/svg+xml");
    return media("image/png", "drawn");
  };
  const std::string page =
      pageOf({object(ObjectType::kChart, "Chart", media("image/svg+xml", "<svg/>"))}, options);
  EXPECT_THAT(page, HasSubstr("data:image/png;base64,ZHJhd24="));
  EXPECT_THAT(page, Not(HasSubstr("svg+xml")));
}

TEST(DocumentPage, LargePageComesInPieces) {
  auto table = std::make_shared<PivotTable>();
  table->dimensions = {
      makeDimension("Row", PivotPlace::kRows, 1, std::vector<std::string>(20'000, "a label"))};
  Document document(1, "doc", false);
  document.append(object(ObjectType::kTable, "Long", TableContent(table)));
  std::size_t pieces = 0;
  std::size_t largest = 0;
  writePage("doc", outlineOf(document.root()), {}, [&](std::string_view html) {
    ++pieces;
    largest = std::max(largest, html.size());
  });
  EXPECT_GT(pieces, 5U);
  EXPECT_LT(largest, 100'000U);
}

TEST(DocumentPage, BarePageKeepsLineEndsAndTheBrowsersOwnColours) {
  PageOptions bare;
  bare.withStyles = false;
  NotesContent notes;
  notes.entries.push_back({textCell("first\nlabel"), textCell("first\nvalue")});
  MessageContent message;
  message.text = "first\nmessage";
  TextContent text;
  text.paragraphs.emplace_back().runs.push_back({"first\ntext", {}, ""});
  const std::string page = pageOf({object(ObjectType::kNotes, "n", ObjectContent(notes)),
                                   object(ObjectType::kWarning, "w", ObjectContent(message)),
                                   object(ObjectType::kText, "t", ObjectContent(text))},
                                  bare);
  for (const char* lines :
       {"first<br>label", "first<br>value", "first<br>message", "first<br>text"}) {
    EXPECT_THAT(page, HasSubstr(lines));
  }
  EXPECT_THAT(page, Not(HasSubstr("color-scheme")));
}

TEST(DocumentPage, ObjectWithoutContentIsKnownByItsLabel) {
  EXPECT_THAT(pageOf({object(ObjectType::kLog, "a"), object(ObjectType::kPageTitle, "Part <2>")}),
              HasSubstr("<p>Part &lt;2&gt;</p>"));
}

}  // namespace
}  // namespace vornwout
