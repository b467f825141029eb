// Which objects a group of OUTPUT MODIFY is about.
#include "host/changes/object_selection.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/changes/modify_request_reader.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

DocumentObject object(ObjectType type, const char* command, int run, const char* subtype,
                      const char* label, bool visible = true) {
  DocumentObject made;
  made.type = type;
  made.command = command;
  made.run = run;
  made.subtype = subtype;
  made.label = label;
  made.visible = visible;
  return made;
}

/// Two runs of MEANS and one of PLOT, one of the charts hidden and one below a hidden heading.
Document makeTree() {
  Document document(1, "", false);
  DocumentObject first = object(ObjectType::kHeading, "MEANS", 1, "", "Means");
  first.children.push_back(object(ObjectType::kLog, "MEANS", 1, "", "Log"));
  first.children.push_back(object(ObjectType::kTable, "MEANS", 1, "Case Summary", "Cases"));
  first.children.push_back(object(ObjectType::kTable, "MEANS", 1, "Report", "Report of means"));
  DocumentObject second = object(ObjectType::kHeading, "MEANS", 2, "", "Means again");
  second.children.push_back(object(ObjectType::kTable, "MEANS", 2, "Report", "Report of sales"));
  DocumentObject third = object(ObjectType::kHeading, "PLOT", 1, "", "Plot", false);
  third.children.push_back(object(ObjectType::kChart, "PLOT", 1, "Bars", "Sales in bars"));
  document.append(first);
  document.append(second);
  document.append(third);
  document.append(object(ObjectType::kChart, "PLOT", 1, "Lines", "Lines", false));
  document.append(object(ObjectType::kText, "", 0, "", "A word"));
  return document;
}

ModifyEvent eventOf(const std::string& attributes, const std::string& conditions) {
  return readModifyRequest("<modifyOutputObject documentName=\"*\"><modifyEvent" + attributes +
                           ">" + conditions + "</modifyEvent></modifyOutputObject>")
      .events[0];
}

std::vector<std::string> labelsOf(const std::vector<DocumentObject*>& objects) {
  std::vector<std::string> labels;
  for (const DocumentObject* selected : objects) labels.push_back(selected->label);
  return labels;
}

std::vector<std::string> selected(const std::string& attributes, const std::string& conditions) {
  Document document = makeTree();
  return labelsOf(selectObjects(document, eventOf(attributes, conditions), {}));
}

TEST(ObjectSelection, TypesAndExceptions) {
  EXPECT_THAT(selected("", ""), IsEmpty());
  EXPECT_THAT(selected(" charts=\"true\"", ""), ElementsAre("Sales in bars", "Lines"));
  EXPECT_THAT(selected(" headings=\"true\"", ""), ElementsAre("Means", "Means again", "Plot"));
  EXPECT_THAT(selected(" all=\"true\" tables=\"false\" charts=\"false\" headings=\"false\"", ""),
              ElementsAre("Log", "A word"));
  EXPECT_EQ(selected(" all=\"true\"", "").size(), 10U);
}

TEST(ObjectSelection, VisibleOnlyLeavesOutWhatStandsBelowAHiddenHeading) {
  EXPECT_THAT(selected(" charts=\"true\" visibleOnly=\"true\"", ""), IsEmpty());
  EXPECT_THAT(selected(" headings=\"true\" visibleOnly=\"true\"", ""),
              ElementsAre("Means", "Means again"));
}

TEST(ObjectSelection, ConditionsOfOneKindAreAlternativesAndKindsMustAllHold) {
  struct Case {
    const char* conditions;
    std::vector<std::string> labels;
  };
  const Case cases[] = {
      {"<command commandName=\"means\"/>", {"Cases", "Report of means", "Report of sales"}},
      {"<command commandName=\"Mean\"/>", {}},
      {"<command commandName=\"MEANS\" instance=\"2\"/>", {"Report of sales"}},
      {"<command commandName=\"MEANS\" last=\"true\"/>", {"Report of sales"}},
      {"<command commandName=\"MEANS\" instance=\"3\"/>", {}},
      {"<command  last=\"true\"/>", {"Report of sales"}},
      {"<command commandName=\"MEANS\" instance=\"1\"/><command commandName=\"MEANS\" "
       "instance=\"2\"/>",
       {"Cases", "Report of means", "Report of sales"}},
      {"<subtype subtype=\"casesummary\"/>", {"Cases"}},
      {"<subtype subtype=\" CASE  SUMMARY \"/><subtype subtype=\"report\"/>",
       {"Cases", "Report of means", "Report of sales"}},
      {"<subtype subtype=\"Case Summary 2\"/>", {}},
      {"<label expression=\"Cases\" exact=\"true\"/>", {"Cases"}},
      {"<label expression=\"cases\" exact=\"true\"/>", {}},
      {"<label expression=\"Report\" begins=\"true\"/>", {"Report of means", "Report of sales"}},
      {"<label expression=\"sales\" ends=\"true\"/>", {"Report of sales"}},
      {"<label expression=\"of\" contains=\"true\"/>", {"Report of means", "Report of sales"}},
      {"<command commandName=\"MEANS\" instance=\"1\"/><subtype subtype=\"Report\"/>",
       {"Report of means"}},
      {"<subtype subtype=\"Report\"/><label expression=\"Cases\" exact=\"true\"/>", {}},
      {"<instance instance=\"2\"/>", {"Report of means"}},
      {"<instance last=\"true\"/>", {"Report of sales"}},
      {"<instance last=\"true\"/><instance instance=\"1\"/><instance instance=\"1\"/>",
       {"Cases", "Report of sales"}},
      {"<instance instance=\"4\"/>", {}},
      {"<subtype subtype=\"Report\"/><instance instance=\"1\"/>", {"Report of means"}},
      {"<subtype subtype=\"None\"/><instance last=\"true\"/>", {}},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(selected(" tables=\"true\"", test.conditions), test.labels) << test.conditions;
  }
}

TEST(ObjectSelection, NamesBeyondAsciiAreComparedWithoutCaseToo) {
  Document document(1, "", false);
  document.append(object(ObjectType::kTable, "M\xC3\x84NNER", 1, "Gr\xC3\x96SSE 1", "a"));
  EXPECT_THAT(labelsOf(selectObjects(document,
                                     eventOf(" tables=\"true\"",
                                             "<command commandName=\"m\xC3\xA4nner\"/>"
                                             "<subtype subtype=\"gr\xC3\xB6sse1\"/>"),
                                     {})),
              ElementsAre("a"));
}

TEST(ObjectSelection, WhatNoCommandMadeMeetsNoCondition) {
  Document document = makeTree();
  for (const char* const command : {"<command  last=\"true\"/>", "<command />"}) {
    EXPECT_THAT(labelsOf(selectObjects(document, eventOf(" texts=\"true\"", command), {})),
                IsEmpty())
        << command;
  }
}

TEST(ObjectSelection, LastRunIsThatOfTheNameInAnyCase) {
  Document document(1, "", false);
  document.editRoot().children = {object(ObjectType::kTable, "Means", 1, "", "first"),
                                  object(ObjectType::kTable, "MEANS", 2, "", "second"),
                                  object(ObjectType::kTable, "M\xC3\x84NNER", 2, "", "third"),
                                  object(ObjectType::kTable, "m\xC3\xA4nner", 1, "", "fourth")};
  EXPECT_THAT(labelsOf(selectObjects(document,
                                     eventOf(" tables=\"true\"", "<command  last=\"true\"/>"), {})),
              ElementsAre("second", "third"));
}

TEST(ObjectSelection, WhatIsGoneIsNotSelectedNorCounted) {
  Document document = makeTree();
  const ObjectSet gone = {&document.root().children[0], &document.root().children[3]};
  EXPECT_THAT(labelsOf(selectObjects(document, eventOf(" all=\"true\"", ""), gone)),
              ElementsAre("Means again", "Report of sales", "Plot", "Sales in bars", "A word"));
  const ObjectSet lastRunGone = {&document.root().children[1]};
  EXPECT_THAT(
      labelsOf(selectObjects(
          document, eventOf(" tables=\"true\"", "<command commandName=\"MEANS\" last=\"true\"/>"),
          lastRunGone)),
      ElementsAre("Cases", "Report of means"));
}

TEST(ObjectSelection, WhatHasComeSinceTheLastOneIsSelectedToo) {
  Document document = makeTree();
  EXPECT_EQ(selectObjects(document, eventOf(" tables=\"true\"", ""), {}).size(), 3U);
  document.at(1).children.push_back(object(ObjectType::kTable, "MEANS", 2, "Report", "Later"));
  document.append(object(ObjectType::kTable, "MEANS", 3, "Report", "Last"));
  EXPECT_THAT(labelsOf(selectObjects(document, eventOf(" tables=\"true\"", ""), {})),
              ElementsAre("Cases", "Report of means", "Report of sales", "Later", "Last"));
}

TEST(ObjectSelection, EverythingExceptedSelectsNothing) {
  std::mt19937 random(5);
  const char* const names[] = {"charts",   "headings",       "logs",      "models",  "tables",
                               "texts",    "trees",          "notes",     "unknown", "other",
                               "warnings", "outlineheaders", "pagetitles"};
  std::string attributes = " all=\"true\"";
  for (const char* name : names) attributes += std::string(" ") + name + "=\"false\"";
  for (int i = 0; i < 50; ++i) {
    Document document(1, "", false);
    for (int j = 0; j < 20; ++j) {
      document.append(
          object(static_cast<ObjectType>(random() % kObjectTypeCount), "A", 1, "", "x"));
    }
    EXPECT_THAT(selectObjects(document, eventOf(attributes, ""), {}), IsEmpty());
  }
}

}  // namespace
}  // namespace vornwout
