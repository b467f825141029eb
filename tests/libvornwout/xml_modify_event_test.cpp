// The element of one group: its attributes, where its start tag ends, and that it is always closed.
#include "libvornwout/modify/xml/xml_modify_event.h"

#include <functional>
#include <stdexcept>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

using Steps = std::function<void(xmlModifyEvent&)>;

std::string eventOf(const Steps& steps) {
  std::string document;
  {
    xmlModifyEvent event(document);
    steps(event);
  }
  return document;
}

/// What stands in the start tag of an event that has nothing in it.
std::string startTagOf(const Steps& steps) {
  const std::string begin = "<modifyEvent";
  const std::string end = "></modifyEvent>";
  const std::string event = eventOf(steps);
  EXPECT_TRUE(event.starts_with(begin) && event.ends_with(end)) << event;
  return event.substr(begin.size(), event.size() - begin.size() - end.size());
}

struct TypeCase {
  const char* keyword;
  const char* attribute;
  void (xmlModifyEvent::*set)();
  void (xmlModifyEvent::*except)();
};

/// In the order of the document. Two are singular, deliberately.
constexpr TypeCase kTypes[] = {
    {"CHARTS", "charts", &xmlModifyEvent::setCharts, &xmlModifyEvent::exceptCharts},
    {"HEADINGS", "headings", &xmlModifyEvent::setHeadings, &xmlModifyEvent::exceptHeadings},
    {"LOGS", "logs", &xmlModifyEvent::setLogs, &xmlModifyEvent::exceptLogs},
    {"MODELS", "models", &xmlModifyEvent::setModels, &xmlModifyEvent::exceptModels},
    {"TABLES", "tables", &xmlModifyEvent::setTables, &xmlModifyEvent::exceptTables},
    {"TEXTS", "texts", &xmlModifyEvent::setTexts, &xmlModifyEvent::exceptTexts},
    {"TREES", "trees", &xmlModifyEvent::setTrees, &xmlModifyEvent::exceptTrees},
    {"WARNINGS", "warnings", &xmlModifyEvent::setWarnings, &xmlModifyEvent::exceptWarnings},
    {"OUTLINEHEADERS", "outlineheaders", &xmlModifyEvent::setOutlineHeaders,
     &xmlModifyEvent::exceptOutlineHeaders},
    {"NOTES", "notes", &xmlModifyEvent::setNotes, &xmlModifyEvent::exceptNotes},
    {"UNKNOWN", "unknown", &xmlModifyEvent::setUnknowns, &xmlModifyEvent::exceptUnknowns},
    {"OTHER", "other", &xmlModifyEvent::setOthers, &xmlModifyEvent::exceptOthers},
    {"PAGETITLES", "pagetitles", &xmlModifyEvent::setPageTitles, &xmlModifyEvent::exceptPageTitles},
};

TEST(ModifyEvent, WithoutAnythingIsAnEmptyElementOfTwoTags) {
  EXPECT_EQ(eventOf([](xmlModifyEvent&) {}), "<modifyEvent></modifyEvent>");
  EXPECT_EQ(startTagOf([](xmlModifyEvent& event) { event.commitSets(); }), "");
}

TEST(ModifyEvent, WritesEachTypeByItsAttribute) {
  for (const TypeCase& type : kTypes) {
    const std::string name = std::string(" ") + type.attribute;
    EXPECT_EQ(startTagOf([&](xmlModifyEvent& event) { (event.*type.set)(); }), "")
        << "setting a type writes nothing";
    EXPECT_EQ(startTagOf([&](xmlModifyEvent& event) {
                (event.*type.set)();
                event.commitSets();
              }),
              name + "=\"true\"");
    EXPECT_EQ(startTagOf([&](xmlModifyEvent& event) { (event.*type.except)(); }),
              name + "=\"false\"")
        << "an exception is written at once";
  }
}

TEST(ModifyEvent, WritesTheTypesInItsOwnOrder) {
  std::string expected;
  for (const TypeCase& type : kTypes) expected += std::string(" ") + type.attribute + "=\"true\"";
  EXPECT_EQ(startTagOf([](xmlModifyEvent& event) {
              for (auto type = std::rbegin(kTypes); type != std::rend(kTypes); ++type) {
                (event.*type->set)();
              }
              event.commitSets();
            }),
            expected);
}

TEST(ModifyEvent, WritesAllAlone) {
  EXPECT_EQ(startTagOf([](xmlModifyEvent& event) {
              event.setTables();
              event.setAll();
              event.setCharts();
              event.commitSets();
            }),
            " all=\"true\"");
}

TEST(ModifyEvent, WritesExceptionsInTheOrderInWhichTheyComeAndAsOften) {
  EXPECT_EQ(startTagOf([](xmlModifyEvent& event) {
              event.setAll();
              event.commitSets();
              event.exceptTables();
              event.exceptCharts();
              event.exceptTables();
              event.addVisibleOnly();
            }),
            " all=\"true\" tables=\"false\" charts=\"false\" tables=\"false\""
            " visibleOnly=\"true\"");
}

TEST(ModifyEvent, EndsItsStartTagBeforeTheFirstObjectAndOnlyThere) {
  void (xmlModifyEvent::*const adds[])() = {
      &xmlModifyEvent::addConditionObject,  &xmlModifyEvent::addTableObject,
      &xmlModifyEvent::addTableCellsObject, &xmlModifyEvent::addTextObject,
      &xmlModifyEvent::addGraphsObject,     &xmlModifyEvent::addObjectPropertiesObject};
  for (const auto first : adds) {
    for (const auto second : adds) {
      EXPECT_EQ(eventOf([&](xmlModifyEvent& event) {
                  (event.*first)();
                  event.document() += "<x/>";
                  (event.*second)();
                  event.document() += "<y/>";
                }),
                "<modifyEvent><x/><y/></modifyEvent>");
    }
  }
}

TEST(ModifyEvent, DeletesByAnElementWhereverTheStartTagEnds) {
  EXPECT_EQ(eventOf([](xmlModifyEvent& event) {
              event.setLogs();
              event.commitSets();
              event.deleteObject();
            }),
            "<modifyEvent logs=\"true\"><deleteObject/></modifyEvent>");
  EXPECT_EQ(eventOf([](xmlModifyEvent& event) {
              event.addConditionObject();
              event.document() += "<x/>";
              event.deleteObject();
            }),
            "<modifyEvent><x/><deleteObject/></modifyEvent>");
}

TEST(ModifyEvent, AppendsToWhatTheDocumentHolds) {
  std::string document = "<root>";
  { const xmlModifyEvent first(document); }
  { const xmlModifyEvent second(document); }
  EXPECT_EQ(document, "<root><modifyEvent></modifyEvent><modifyEvent></modifyEvent>");
}

TEST(ModifyEvent, WritesNothingWhileAnExceptionPasses) {
  std::string document;
  const auto broken = [&] {
    const xmlModifyEvent event(document);
    throw std::runtime_error("broken");
  };
  EXPECT_THROW(broken(), std::runtime_error);
  EXPECT_EQ(document, "<modifyEvent");
}

TEST(ModifyEvent, IsClosedInsideADestructorThatAnExceptionRuns) {
  struct Writer {
    explicit Writer(std::string& document) : target(document) {}
    ~Writer() { const xmlModifyEvent event(target); }
    std::string& target;
  };
  std::string document;
  const auto broken = [&] {
    const Writer writer(document);
    throw std::runtime_error("broken");
  };
  EXPECT_THROW(broken(), std::runtime_error);
  EXPECT_EQ(document, "<modifyEvent></modifyEvent>") << "the exception is none of the event's";
}

TEST(ObjectTypes, StandInTheOrderOfTheDeclarationWithTheirOperations) {
  ASSERT_EQ(kObjectTypes.size(), std::size(kTypes));
  for (std::size_t i = 0; i < kObjectTypes.size(); ++i) {
    EXPECT_STREQ(kObjectTypes[i].keyword, kTypes[i].keyword);
    EXPECT_STREQ(kObjectTypes[i].attribute, kTypes[i].attribute);
    EXPECT_EQ(kObjectTypes[i].set, kTypes[i].set) << kTypes[i].keyword;
    EXPECT_EQ(kObjectTypes[i].except, kTypes[i].except) << kTypes[i].keyword;
  }
}

}  // namespace
}  // namespace vornwout
