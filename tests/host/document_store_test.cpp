#include "host/store/document_store.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/store/container_reader.h"
#include "host/store/container_writer.h"
#include "host/store/store_error.h"
#include "tests/support/generated_documents.h"
#include "tests/support/png_picture.h"
#include "tests/support/schema_check.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

using Kind = StoreError::Kind;

constexpr const char* kSvg = R"(<svg xmlns="http://www.w3.org/2000/svg"/>)";

DocumentObject logObject(const std::string& label, const std::string& text) {
  DocumentObject object;
  object.type = ObjectType::kLog;
  object.label = label;
  object.content = ObjectContent(LogContent{text});
  return object;
}

DocumentObject mediaObject(ObjectType type, const std::string& mediaType, std::string bytes) {
  DocumentObject object;
  object.type = type;
  object.content =
      ObjectContent(MediaContent{mediaType, std::make_shared<const std::string>(std::move(bytes))});
  return object;
}

/// A document of logs that are large enough to fill several parts.
Document documentOfLogs(int count, std::size_t size) {
  Document document(1, "", false);
  for (int i = 0; i < count; ++i) {
    document.append(
        logObject("log " + std::to_string(i), std::to_string(i) + std::string(size, 'x')));
  }
  return document;
}

std::vector<std::string> memberNames(const std::string& path) {
  const ContainerReader reader(path);
  std::vector<std::string> names;
  for (const ContainerMember& member : reader.members()) names.push_back(member.name);
  return names;
}

class DocumentStoreTest : public testing::Test {
 protected:
  /// The failure of opening the file; fails the test when it opens.
  StoreError openingFails(const std::string& path, const OpenOptions& options = {}) {
    try {
      readAll(*openDocument(path, options));
    } catch (const StoreError& error) {
      return error;
    }
    ADD_FAILURE() << path << " opens";
    return {Kind::kDamaged, ""};
  }

  static void readAll(const Document& document) { sameObject(document.root(), document.root()); }

  /// A container with these members, as no program of ours would write it.
  std::string container(const std::vector<std::pair<std::string, std::string>>& members) {
    const std::string path = folder_.file("made.qxv");
    ContainerWriter writer(path, {});
    for (const auto& [name, bytes] : members) writer.add(name, bytes, true);
    writer.commit();
    return path;
  }

  ScratchDirectory folder_;
  std::string path_ = folder_.file("report.qxv");
};

TEST_F(DocumentStoreTest, AnyDocumentComesBackEqualObjectByObject) {
  for (unsigned int seed = 0; seed < 150; ++seed) {
    DocumentGenerator generator(seed);
    const auto document = generator.document(generator.upTo(40));
    SaveOptions options;
    if (generator.chance()) options.password = "s3cret";
    if (generator.chance()) options.type = DocumentFileType::kQxw;
    saveDocument(*document, path_, options);
    const auto back = openDocument(path_, {options.password});
    EXPECT_TRUE(sameObject(back->root(), document->root())) << "seed " << seed;
    EXPECT_EQ(back->runs(), document->runs()) << "seed " << seed;
  }
}

TEST_F(DocumentStoreTest, AnyChangeOfAStoredDocumentComesBack) {
  for (unsigned int seed = 0; seed < 150; ++seed) {
    DocumentGenerator generator(seed);
    saveDocument(*generator.document(30), path_, {});
    const auto document = openDocument(path_);
    auto& children = document->editRoot().children;
    for (int changes = generator.upTo(5); changes > 0 && !children.empty(); --changes) {
      const auto at =
          static_cast<std::size_t>(generator.upTo(static_cast<int>(children.size()) - 1));
      switch (generator.upTo(4)) {
        case 0:
          children.erase(children.begin() + static_cast<std::ptrdiff_t>(at));
          break;
        case 1: {
          const DocumentObject copy = children[at];
          children.push_back(copy);
          break;
        }
        case 2:
          children[at].label = generator.text();
          break;
        case 3:
          children.push_back(generator.object(1));
          break;
        default:
          children[at].children.push_back(logObject("new", generator.text()));
          children[at].type = ObjectType::kHeading;
      }
    }
    const DocumentObject expected = document->root();
    saveDocument(*document, path_, {});
    EXPECT_TRUE(sameObject(document->root(), expected)) << "seed " << seed;
    EXPECT_TRUE(sameObject(openDocument(path_)->root(), expected)) << "seed " << seed;
  }
}

TEST_F(DocumentStoreTest, OpeningReadsNoContent) {
  Document document = documentOfLogs(20, 1000);
  saveDocument(document, path_, {});
  const auto back = openDocument(path_);
  for (const DocumentObject& object : back->root().children) {
    EXPECT_FALSE(object.content.isLoaded());
  }
  EXPECT_EQ(back->root().children.at(7).content.as<LogContent>()->text.front(), '7');
  EXPECT_FALSE(back->root().children.at(8).content.isLoaded());
}

TEST_F(DocumentStoreTest, SmallContentsShareAPartAndALargeOneHasItsOwn) {
  Document document = documentOfLogs(100, 100);
  document.append(logObject("large", std::string(100'000, 'y')));
  saveDocument(document, path_, {});
  EXPECT_EQ(memberNames(path_), (std::vector<std::string>{"mimetype", "objects/000001.xml",
                                                          "objects/000002.xml", "manifest.xml"}));
}

TEST_F(DocumentStoreTest, OneChangedObjectRewritesOnePart) {
  Document made = documentOfLogs(60, 20'000);
  saveDocument(made, path_, {});
  const std::vector<std::string> before = memberNames(path_);
  const auto document = openDocument(path_);
  document->editRoot().children.at(3).content.set(LogContent{"changed"});
  saveDocument(*document, path_, {});
  const std::vector<std::string> after = memberNames(path_);
  std::vector<std::string> gone;
  std::vector<std::string> added;
  for (const std::string& name : before) {
    if (std::find(after.begin(), after.end(), name) == after.end()) gone.push_back(name);
  }
  for (const std::string& name : after) {
    if (std::find(before.begin(), before.end(), name) == before.end()) added.push_back(name);
  }
  EXPECT_EQ(gone, std::vector<std::string>{"objects/000001.xml"});
  EXPECT_EQ(added.size(), 1u);
  // What was taken over was not even read.
  EXPECT_FALSE(document->root().children.at(50).content.isLoaded());
  EXPECT_EQ(openDocument(path_)->root().children.at(3).content.as<LogContent>()->text, "changed");
}

TEST_F(DocumentStoreTest, AChangedLabelRewritesNoPart) {
  Document made = documentOfLogs(60, 20'000);
  saveDocument(made, path_, {});
  const std::vector<std::string> before = memberNames(path_);
  const auto document = openDocument(path_);
  document->editRoot().children.at(3).label = "another";
  saveDocument(*document, path_, {});
  EXPECT_EQ(memberNames(path_), before);
  EXPECT_EQ(openDocument(path_)->root().children.at(3).label, "another");
}

TEST_F(DocumentStoreTest, ASavedDocumentIsTakenOverFromItsNewFile) {
  Document document = documentOfLogs(60, 20'000);
  saveDocument(document, path_, {});
  const auto first = memberNames(path_);
  saveDocument(document, folder_.file("second.qxv"), {});
  EXPECT_EQ(memberNames(folder_.file("second.qxv")), first);
}

TEST_F(DocumentStoreTest, AnOpenDocumentReadsOnWhenItsFileIsReplaced) {
  Document made = documentOfLogs(3, 10);
  saveDocument(made, path_, {});
  const auto document = openDocument(path_);
  Document other = documentOfLogs(1, 20);
  saveDocument(other, path_, {});
  EXPECT_EQ(document->root().children.at(2).content.as<LogContent>()->text, "2xxxxxxxxxx");
}

TEST_F(DocumentStoreTest, ChartsAreMembersAsTheyAre) {
  Document document(1, "", false);
  document.append(mediaObject(ObjectType::kChart, "image/svg+xml", kSvg));
  document.append(mediaObject(ObjectType::kChart, "image/png", pngPicture()));
  document.append(mediaObject(ObjectType::kModel, "application/xml", "<m/>"));
  saveDocument(document, path_, {});
  EXPECT_EQ(memberNames(path_),
            (std::vector<std::string>{"mimetype", "media/000001.svg", "media/000002.png",
                                      "media/000003.bin", "manifest.xml"}));
  EXPECT_EQ(ContainerReader(path_).read("media/000001.svg"), kSvg);
}

TEST_F(DocumentStoreTest, AnEncryptedDocumentHasFewMembers) {
  Document document(1, "", false);
  for (int i = 0; i < 50; ++i) {
    document.append(mediaObject(ObjectType::kChart, "image/svg+xml", kSvg));
  }
  document.append(
      mediaObject(ObjectType::kChart, "image/png", pngPicture(std::string(70'000, 'p'))));
  saveDocument(document, path_, {DocumentFileType::kQxv, "s3cret"});
  EXPECT_EQ(memberNames(path_).size(), 4u);
  EXPECT_TRUE(sameObject(openDocument(path_, {"s3cret"})->root(), document.root()));
}

TEST_F(DocumentStoreTest, ModelsAreLeftOutOnlyOfTheFile) {
  Document document(1, "", false);
  DocumentObject heading;
  heading.type = ObjectType::kHeading;
  heading.children.push_back(mediaObject(ObjectType::kModel, "application/xml", "<m/>"));
  heading.children.push_back(logObject("log", "text"));
  document.append(std::move(heading));
  SaveOptions options;
  options.storeModels = false;
  saveDocument(document, path_, options);
  const auto back = openDocument(path_);
  ASSERT_EQ(back->root().children.at(0).children.size(), 1u);
  EXPECT_EQ(back->root().children.at(0).children.at(0).label, "log");
  EXPECT_EQ(*document.root().children.at(0).children.at(0).content.as<MediaContent>()->bytes,
            "<m/>");
  // The model is still there to be saved later.
  saveDocument(document, path_, {});
  EXPECT_TRUE(sameObject(openDocument(path_)->root(), document.root()));
}

TEST_F(DocumentStoreTest, AQxwHoldsAPage) {
  Document document = documentOfLogs(1, 3);
  saveDocument(document, path_, {DocumentFileType::kQxw});
  EXPECT_THAT(ContainerReader(path_).read("index.html"), testing::HasSubstr("0xxx"));
  saveDocument(document, path_, {DocumentFileType::kQxv});
  EXPECT_FALSE(ContainerReader(path_).contains("index.html"));
}

TEST_F(DocumentStoreTest, ThePageIsEncryptedWithTheRest) {
  Document document = documentOfLogs(1, 3);
  saveDocument(document, path_, {DocumentFileType::kQxw, "s3cret"});
  EXPECT_TRUE(ContainerReader(path_).find("index.html")->isEncrypted);
  EXPECT_THAT(folder_.read("report.qxv"), testing::Not(testing::HasSubstr("0xxx")));
}

TEST_F(DocumentStoreTest, APasswordIsNeededAndMustBeRight) {
  Document document = documentOfLogs(2, 3);
  saveDocument(document, path_, {DocumentFileType::kQxv, "s3cret"});
  const StoreError none = openingFails(path_);
  EXPECT_EQ(none.kind(), Kind::kWrongPassword);
  EXPECT_STREQ(none.what(), "The file is encrypted, and no password was given.");
  const StoreError wrong = openingFails(path_, {"s3cre"});
  EXPECT_EQ(wrong.kind(), Kind::kWrongPassword);
  EXPECT_THAT(wrong.what(), testing::Not(testing::HasSubstr("s3cre")));
  EXPECT_TRUE(sameObject(openDocument(path_, {"s3cret"})->root(), document.root()));
}

TEST_F(DocumentStoreTest, APasswordCanBeChangedTakenAwayAndGiven) {
  Document made = documentOfLogs(30, 20'000);
  saveDocument(made, path_, {});
  std::string password;
  for (const char* next : {"first", "second", "", "third"}) {
    const auto document = openDocument(path_, {password});
    SaveOptions options;
    options.password = next;
    saveDocument(*document, path_, options);
    password = next;
    EXPECT_TRUE(sameObject(openDocument(path_, {password})->root(), made.root())) << next;
    if (!password.empty()) {
      EXPECT_EQ(openingFails(path_, {"another"}).kind(), Kind::kWrongPassword);
    }
  }
}

TEST_F(DocumentStoreTest, MediaArePackedByTheNewFilesEncryption) {
  Document made(1, "", false);
  for (int i = 0; i < 50; ++i) {
    made.append(mediaObject(ObjectType::kChart, "image/svg+xml", kSvg));
  }
  made.append(mediaObject(ObjectType::kModel, "application/xml", "<m/>"));
  made.append(mediaObject(ObjectType::kChart, "image/png", pngPicture(std::string(70'000, 'p'))));
  saveDocument(made, path_, {});
  // Four members of an encrypted file: its type, a part, the large picture, the outline.
  const struct {
    const char* password;
    std::size_t members;
  } saves[] = {{"first", 4}, {"first", 4}, {"second", 4}, {"", 54}, {"", 54}, {"third", 4}};
  std::string password;
  for (const auto& save : saves) {
    SCOPED_TRACE(save.password);
    const auto document = openDocument(path_, {password});
    saveDocument(*document, path_, {DocumentFileType::kQxv, save.password});
    password = save.password;
    EXPECT_EQ(memberNames(path_).size(), save.members);
    EXPECT_TRUE(sameObject(openDocument(path_, {password})->root(), made.root()));
  }
  // The same without opening it in between.
  for (const auto& save : saves) {
    saveDocument(made, path_, {DocumentFileType::kQxv, save.password});
    EXPECT_EQ(memberNames(path_).size(), save.members) << save.password;
    EXPECT_TRUE(sameObject(openDocument(path_, {save.password})->root(), made.root()));
  }
}

TEST_F(DocumentStoreTest, AFileThatWasWrittenOverIsNotTakenOver) {
  Document made = documentOfLogs(20, 20'000);
  saveDocument(made, path_, {});
  const std::string copy = folder_.file("copy.qxv");
  const auto document = openDocument(path_);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  std::string bytes = folder_.read("report.qxv");
  bytes[200] = static_cast<char>(bytes[200] ^ 1);
  folder_.write("report.qxv", bytes);
  try {
    saveDocument(*document, copy, {});
    ADD_FAILURE() << "it was saved";
  } catch (const StoreError& error) {
    EXPECT_STREQ(error.what(), "The file was changed by another program since it was opened.");
  }
  EXPECT_FALSE(std::filesystem::exists(copy));
  EXPECT_THROW(readAll(*document), StoreError);
}

/// A document of one part; `outline` and `contents` as they stand in the file.
std::vector<std::pair<std::string, std::string>> membersWith(
    const std::string& outline, const std::string& contents = "",
    const std::string& parts = "<part name='objects/1.xml'/>") {
  return {{"objects/1.xml", "<objects xmlns='urn:vornwout:document:1'>" + contents + "</objects>"},
          {"manifest.xml", "<document xmlns='urn:vornwout:document:1' version='1'><runs/><parts>" +
                               parts + "</parts><outline>" + outline + "</outline></document>"}};
}

TEST_F(DocumentStoreTest, WhatCouldNotBeSavedAgainIsNotOpened) {
  const std::string part = "<part name='objects/1.xml'/>";
  const auto medium = [](const std::string& name) {
    return "<object type='chart' id='1' media='" + name + "' media-type='image/png'/>";
  };
  struct Case {
    std::string outline;
    std::string parts;
    const char* reason;
  };
  const Case cases[] = {
      {medium("media/1.png"), part, "the part \"media/1.png\" is missing"},
      {medium("mimetype"), part, "the part \"mimetype\" is no chart and no model"},
      {medium("INDEX.HTML"), part, "the part \"INDEX.HTML\" is no chart and no model"},
      {medium("objects/1.xml"), part, "the part \"objects/1.xml\" is no chart and no model"},
      {"", "<part name='manifest.xml'/>", "the part \"manifest.xml\" holds no objects"},
      {"", "<part name='INDEX.HTML'/>", "the part \"INDEX.HTML\" holds no objects"},
      {"", part + part, "the part \"objects/1.xml\" stands twice"},
  };
  for (const Case& c : cases) {
    auto members = membersWith(c.outline, "", c.parts);
    members.insert(members.begin(), {"mimetype", "x"});
    members.emplace_back("INDEX.HTML", "x");
    EXPECT_EQ(openingFails(container(members)).what(),
              std::string("Its part manifest.xml cannot be read: ") + c.reason + ".");
  }
}

TEST_F(DocumentStoreTest, NumbersAtTheirEndAreGivenAnew) {
  constexpr const char* kLast = "9007199254740992";
  const std::string last(kLast);
  auto members =
      membersWith("<object type='log' id='" + last + "' part='1'/>",
                  "<log object='" + last + "'>old</log>", "<part name='objects/2147483647.xml'/>");
  members[0].first = "objects/2147483647.xml";
  for (const char* number : {kLast, "1"}) {
    for (auto& [name, bytes] : members) {
      if (const auto at = bytes.find(kLast); at != std::string::npos) {
        bytes.replace(at, last.size(), number);
      }
    }
    const std::string path = container(members);
    const auto document = openDocument(path);
    document->append(logObject("new", "text"));
    saveDocument(*document, path, {});
    const auto back = openDocument(path);
    ASSERT_EQ(back->root().children.size(), 2u);
    EXPECT_EQ(back->root().children[0].content.as<LogContent>()->text, "old");
    EXPECT_EQ(back->root().children[1].content.as<LogContent>()->text, "text");
  }
}

TEST_F(DocumentStoreTest, NumbersOfMembersGoOnBeyondTheirUsualSize) {
  auto members = membersWith("<object type='log' id='1' part='1'/>", "<log object='1'>old</log>",
                             "<part name='objects/2147483647.xml'/>");
  members[0].first = "objects/2147483647.xml";
  const std::string path = container(members);
  const auto document = openDocument(path);
  document->append(logObject("new", "text"));
  saveDocument(*document, path, {});
  EXPECT_THAT(memberNames(path),
              testing::IsSupersetOf({"objects/2147483647.xml", "objects/2147483648.xml"}));
}

TEST_F(DocumentStoreTest, AnObjectWithoutASizeThatCanBeReadKeepsItsNaturalOne) {
  for (const double side :
       {-1.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    Document document = documentOfLogs(1, 3);
    document.editRoot().children[0].size = ObjectSize{side, 5, true};
    saveDocument(document, path_, {});
    EXPECT_EQ(openDocument(path_)->root().children[0].size, (ObjectSize{0, 5, true}));
  }
  for (const char* size : {"width='-1'", "width='NaN'", "height='INF'", "width='1' unit='ells'"}) {
    openingFails(container(membersWith("<object type='log' " + std::string(size) + "/>")));
  }
}

TEST_F(DocumentStoreTest, MoreObjectsThanMemoryShouldHoldAreRefusedBothWays) {
  constexpr std::size_t kMost = 1'000'000;
  std::string outline;
  for (std::size_t i = 0; i <= kMost; ++i) outline += "<object type='log'/>";
  EXPECT_STREQ(openingFails(container(membersWith(outline))).what(),
               "Its part manifest.xml cannot be read: outline: it holds more than 1,000,000 "
               "objects.");
  Document document(1, "", false);
  document.editRoot().children.resize(kMost);
  for (DocumentObject& object : document.editRoot().children) object.type = ObjectType::kHeading;
  saveDocument(document, path_, {});
  EXPECT_EQ(openDocument(path_)->root().children.size(), kMost);
  document.append({});
  EXPECT_THROW(saveDocument(document, path_, {}), StoreError);
}

TEST_F(DocumentStoreTest, AContentThatCouldNotBeReadIsNotSaved) {
  TextContent text;
  text.paragraphs.resize(1'000'001);
  DocumentObject object;
  object.type = ObjectType::kText;
  object.content = ObjectContent(std::move(text));
  Document document(1, "", false);
  document.append(std::move(object));
  try {
    saveDocument(document, path_, {});
    ADD_FAILURE();
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), Kind::kNotWritten);
    EXPECT_STREQ(error.what(), "An object holds more than 1,000,000 runs, footnotes and the like.");
  }
}

TEST_F(DocumentStoreTest, ObjectsThatAskForPartsInTurnAreGivenUp) {
  constexpr int kParts = 12;
  constexpr int kObjects = 2400;
  std::vector<std::string> contents(kParts);
  std::vector<std::pair<std::string, std::string>> members;
  std::string parts;
  std::string outline;
  for (int i = 0; i < kObjects; ++i) {
    const std::string id = std::to_string(i + 1);
    contents[static_cast<std::size_t>(i % kParts)] += "<log object='" + id + "'/>";
    outline += "<object type='log' id='" + id + "' part='" + std::to_string(i % kParts + 1) + "'/>";
  }
  for (int i = 0; i < kParts; ++i) parts += "<part name='p" + std::to_string(i) + "'/>";
  for (int i = 0; i < kParts; ++i) {
    members.emplace_back("p" + std::to_string(i),
                         membersWith("", contents[static_cast<std::size_t>(i)])[0].second);
  }
  members.push_back(membersWith(outline, "", parts)[1]);
  EXPECT_THAT(openingFails(container(members)).what(),
              testing::HasSubstr("the document's objects ask for its parts again and again"));

  // Two in turn are kept, and are no trouble.
  outline.clear();
  for (int i = 0; i < kObjects; ++i) {
    const int part = i % kParts / 6 * 6 + i % 2;
    if (i % kParts != part) continue;
    outline += "<object type='log' id='" + std::to_string(i + 1) + "' part='" +
               std::to_string(part + 1) + "'/>";
  }
  members.back() = membersWith(outline, "", parts)[1];
  EXPECT_NO_THROW(readAll(*openDocument(container(members))));
}

TEST_F(DocumentStoreTest, ScriptsOfAChartAreGoneWhenItIsRead) {
  const std::string svg =
      R"(<svg xmlns="http://www.w3.org/2000/svg"><script>alert(1)</script><g id="a"/></svg>)";
  for (const char* password : {"", "s3cret"}) {
    Document document(1, "", false);
    document.append(mediaObject(ObjectType::kChart, "image/svg+xml", svg));
    document.append(mediaObject(ObjectType::kModel, "image/svg+xml", svg));
    document.append(mediaObject(ObjectType::kChart, "image/svg+xml", "<svg"));
    saveDocument(document, path_, {DocumentFileType::kQxv, password});
    const auto back = openDocument(path_, {password});
    EXPECT_EQ(*back->root().children[0].content.as<MediaContent>()->bytes,
              R"(<svg xmlns="http://www.w3.org/2000/svg"><g id="a"/></svg>)");
    EXPECT_EQ(*back->root().children[1].content.as<MediaContent>()->bytes, svg) << "a model";
    EXPECT_THROW(back->root().children[2].content.get(), StoreError);
  }
}

TEST_F(DocumentStoreTest, ScriptsOfAnyShownPictureAreGoneWhenItIsRead) {
  const std::string svg = R"x(<svg xmlns="http://www.w3.org/2000/svg" onload="alert(1)"/>)x";
  for (const ObjectType type : {ObjectType::kText, ObjectType::kTable, ObjectType::kTree,
                                ObjectType::kOther, ObjectType::kUnknown}) {
    Document document(1, "", false);
    document.append(mediaObject(type, "image/svg+xml", svg));
    document.append(mediaObject(type, "application/xml", "<m/>"));
    document.append(mediaObject(type, "image/png", "notpng"));
    for (const char* password : {"", "s3cret"}) {
      saveDocument(document, path_, {DocumentFileType::kQxv, password});
      const auto back = openDocument(path_, {password});
      EXPECT_EQ(*back->root().children[0].content.as<MediaContent>()->bytes, kSvg);
      EXPECT_EQ(*back->root().children[1].content.as<MediaContent>()->bytes, "<m/>");
      EXPECT_THROW(back->root().children[2].content.get(), StoreError);
    }
  }
}

TEST_F(DocumentStoreTest, AChartIsOneOfTheTwoKindsOrIsNotRead) {
  const std::string svg = R"x(<svg xmlns="http://www.w3.org/2000/svg" onload="alert(4)"/>)x";
  const std::string type = " cannot be shown. A chart is image/svg+xml or image/png.";
  struct Case {
    std::string mediaType;
    std::string bytes;
    std::string reason;
  };
  const Case cases[] = {
      {"image/png", pngPicture(), ""},
      {"IMAGE/SVG+XML", svg, type},
      {"image/svg+xml; charset=utf-8", svg, type},
      {"text/html", "<script>alert(1)</script>", type},
      {"", svg, type},
      {"image/png", "notpng", " cannot be shown. This is no PNG file."},
  };
  for (const char* password : {"", "s3cret"}) {
    Document document(1, "", false);
    for (const Case& c : cases) {
      document.append(mediaObject(ObjectType::kChart, c.mediaType, c.bytes));
    }
    saveDocument(document, path_, {DocumentFileType::kQxv, password});
    const auto back = openDocument(path_, {password});
    for (std::size_t i = 0; i < std::size(cases); ++i) {
      try {
        EXPECT_EQ(*back->root().children[i].content.as<MediaContent>()->bytes, cases[i].bytes);
        EXPECT_EQ(cases[i].reason, "") << cases[i].mediaType;
      } catch (const StoreError& error) {
        EXPECT_EQ(error.kind(), Kind::kDamaged);
        ASSERT_NE(cases[i].reason, "") << error.what();
        EXPECT_THAT(error.what(), testing::EndsWith(cases[i].reason));
      }
    }
  }
}

TEST_F(DocumentStoreTest, ATextThatGrowsTooLargeIsNotSaved) {
  CellText text;
  text.kind = CellText::Kind::kComposite;
  for (int i = 0; i < 100; ++i) text.text += "^1";
  text.arguments.edit().emplace_back().text = std::string(200'000, 'x');
  DocumentObject object;
  object.type = ObjectType::kNotes;
  object.content = ObjectContent(NotesContent{{{text, {}}}});
  Document document(1, "", false);
  document.append(std::move(object));
  try {
    saveDocument(document, path_, {});
    ADD_FAILURE();
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), Kind::kNotWritten);
    EXPECT_STREQ(error.what(),
                 "An object holds texts that grow by more than 16 MiB when their arguments are "
                 "filled in.");
  }
}

TEST_F(DocumentStoreTest, BlanksInPlaceOfObjectsAreNothing) {
  const std::string log =
      "<object type='log' id='1' part='1' visible='0' width=' +12 '>\n</object>";
  const auto back = openDocument(container(membersWith(log, "<log object=' 1 '>x</log>")));
  ASSERT_EQ(back->root().children.size(), 1u);
  const DocumentObject& object = back->root().children[0];
  EXPECT_FALSE(object.visible);
  EXPECT_EQ(object.size, (ObjectSize{12, 0, false}));
  EXPECT_EQ(object.content.as<LogContent>()->text, "x");
  EXPECT_TRUE(openDocument(container(membersWith("\n")))->root().children.empty());
  EXPECT_THAT(openingFails(container(membersWith("text"))).what(),
              testing::HasSubstr("outline: it holds a text where none may stand"));
}

TEST_F(DocumentStoreTest, ACommandIsCountedOnce) {
  auto members = membersWith("");
  const std::string run = "<run command='MEANS' count='1'/>";
  std::string& manifest = members[1].second;
  manifest.replace(manifest.find("<runs/>"), 7, "<runs>" + run + run + "</runs>");
  EXPECT_THAT(openingFails(container(members)).what(),
              testing::HasSubstr("run: its command stands twice"));
}

TEST_F(DocumentStoreTest, AFileThatAnotherHoldsIsNotReplaced) {
  Document document = documentOfLogs(1, 3);
  saveDocument(document, path_, {});
  const auto lock = FileLock::tryLock(path_);
  ASSERT_TRUE(lock);
  const std::string before = folder_.read("report.qxv");
  document.append(logObject("new", "text"));
  try {
    saveDocument(document, path_, {});
    ADD_FAILURE();
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), Kind::kLocked);
  }
  EXPECT_EQ(folder_.read("report.qxv"), before);
  SaveOptions options;
  options.ownLock = &*lock;
  saveDocument(document, path_, options);
  EXPECT_EQ(openDocument(path_)->root().children.size(), 2u);
}

TEST_F(DocumentStoreTest, ASavedFileThatMayNotBeReadIsSavedAllTheSame) {
  ASSERT_EQ(chmod(folder_.path().c_str(), 0777), 0);
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && (setgid(3456) != 0 || setuid(1234) != 0)) _exit(2);
    umask(0777);
    try {
      Document document = documentOfLogs(3, 10);
      saveDocument(document, path_, {});
      document.root().children[1].content.unload();
      _exit(document.root().children[1].content.as<LogContent>()->text == "1xxxxxxxxxx" ? 0 : 3);
    } catch (const StoreError&) {
      _exit(1);
    }
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(DocumentStoreTest, HeadingsNestOnlySoDeep) {
  Document document(1, "", false);
  DocumentObject heading;
  heading.type = ObjectType::kHeading;
  for (int i = 0; i < 256; ++i) {
    DocumentObject above;
    above.type = ObjectType::kHeading;
    above.children.push_back(std::move(heading));
    heading = std::move(above);
  }
  document.append(std::move(heading));
  try {
    saveDocument(document, path_, {});
    ADD_FAILURE();
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), Kind::kNotWritten);
    EXPECT_STREQ(error.what(), "Its headings are nested deeper than 256 levels.");
  }
  EXPECT_EQ(folder_.entryCount(), 0u);
}

TEST_F(DocumentStoreTest, ObjectsStandBelowTheDeepestHeading) {
  DocumentObject object = logObject("deepest", "text");
  for (int i = 0; i < 255; ++i) {
    DocumentObject above;
    above.type = ObjectType::kHeading;
    above.children.push_back(std::move(object));
    object = std::move(above);
  }
  Document document(1, "", false);
  document.append(std::move(object));
  saveDocument(document, path_, {});
  EXPECT_TRUE(sameObject(openDocument(path_)->root(), document.root()));
}

TEST_F(DocumentStoreTest, AFailedSaveLeavesTheDocumentAndTheFileAsTheyWere) {
  Document document = documentOfLogs(3, 10);
  saveDocument(document, path_, {});
  const std::string before = folder_.read("report.qxv");
  document.append(logObject("more", "text"));
  EXPECT_THROW(saveDocument(document, folder_.file("missing") + "/report.qxv", {}), StoreError);
  EXPECT_EQ(folder_.read("report.qxv"), before);
  EXPECT_EQ(document.root().children.size(), 4u);
  EXPECT_EQ(document.root().children.at(3).content.as<LogContent>()->text, "text");
  saveDocument(document, path_, {});
  EXPECT_EQ(openDocument(path_)->root().children.size(), 4u);
}

TEST_F(DocumentStoreTest, AnyDocumentIsValidByTheSchema) {
  std::vector<std::string> parts;
  for (unsigned int seed = 0; seed < 100; ++seed) {
    DocumentGenerator generator(seed);
    saveDocument(*generator.document(20), path_, {DocumentFileType::kQxv, "s3cret"});
    ContainerReader reader(path_);
    reader.setPassword("s3cret");
    for (const ContainerMember& member : reader.members()) {
      if (!member.name.ends_with(".xml")) continue;
      parts.push_back(reader.read(member.name));
    }
  }
  EXPECT_EQ(SchemaCheck("document.xsd").refusal(parts), "");
}

TEST_F(DocumentStoreTest, WhatTheSchemaAllowsOfNumbersIsRead) {
  const SchemaCheck schema("document.xsd");
  const std::string d =
      "<dimension place='rows' index='+1' hide-label='1'><label/>"
      "<category>a</category></dimension>";
  const auto table = [&](const std::string& cell) {
    return "<table object='1' flag=' 0 '><title/><subtype/>" + d + cell + "</table>";
  };
  const auto looks = [](const std::string& dimension, const std::string& look) {
    return "<table object='1'><title size='9'/><subtype/><caption italic='0'/><summary>s</summary>"
           "<footnote-look color='red'/><dimension " +
           dimension + "><label/><category " + look + ">a</category></dimension></table>";
  };
  const struct {
    std::string contents;
    bool isValid;
  } cases[] = {
      {table("<cell at=' 00 ' value=' +1.5 ' bold='1'/>"), true},
      {table("<cell at='+0' value='1'/>"), false},
      {table("<cell at='-0' value='1'/>"), false},
      {table("<cell at='0' bold='yes'/>"), false},
      {table("<cell at='0' value='one'/>"), false},
      {table("<cell at='0' bold='false' italic='1' underlined='0' font='a' size='1000'/>"), true},
      {table("<cell at='0' size='0'/>"), false},
      {table("<cell at='0' size='1000.01'/>"), false},
      {table("<cell at='0' size='NaN'/>"), false},
      {looks("shown='0'", "width='2000' size='0.1' bold='0'"), true},
      {looks("shown='-1'", ""), false},
      {looks("", "width='2001'"), false},
      {looks("", "width='-1'"), false},
      {looks("", "size='-0'"), false},
      {"<text object='1'><paragraph kind='plain' level='+1'><run>a</run></paragraph></text>", true},
      {"<text object='1'><paragraph level='2147483648'/></text>", false},
      {"<text object='1'><paragraph level='-1'/></text>", false},
      {"<media object='1' type-base64='QU\nJD'/>", true},
      {"<log object='9007199254740993'/>", false},
      {"<log object='1'>a<b/></log>", false},
  };
  for (const auto& c : cases) {
    const auto members = membersWith("<object type='log' id='1' part='1'/>", c.contents);
    EXPECT_EQ(schema.refusal(members[0].second).empty(), c.isValid) << c.contents;
    if (c.isValid) {
      EXPECT_NO_THROW(readAll(*openDocument(container(members)))) << c.contents;
    } else {
      openingFails(container(members));
    }
  }
}

TEST(DocumentFileTypeTest, GoesByTheExtension) {
  EXPECT_EQ(documentFileType("a.qxw"), DocumentFileType::kQxw);
  EXPECT_EQ(documentFileType("a.QXW"), DocumentFileType::kQxw);
  EXPECT_EQ(documentFileType("a.qxv"), DocumentFileType::kQxv);
  EXPECT_EQ(documentFileType("a.txt"), DocumentFileType::kQxv);
  EXPECT_EQ(documentFileType("a"), DocumentFileType::kQxv);
  EXPECT_EQ(documentFileType("a.qxw/b"), DocumentFileType::kQxv);
}

}  // namespace
}  // namespace vornwout
