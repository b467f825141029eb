// Exports through the embedded host: which document, which objects, what is answered, and that a
// failed one leaves everything as it was.
#include "host/export/export_output.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/controller/embedded_host.h"
#include "host/export/export_files.h"
#include "host/store/store_error.h"
#include "platform/adapter/controller_messages.h"
#include "platform/exportspec/export_xml.h"
#include "tests/support/pivot_tables.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::Not;

DocumentObject textObject(const std::string& text, bool visible = true) {
  TextContent content;
  content.paragraphs.emplace_back().runs.push_back({text, {}, ""});
  DocumentObject object;
  object.type = ObjectType::kText;
  object.label = text;
  object.visible = visible;
  object.content = ObjectContent(content);
  return object;
}

class ExportOutputTest : public testing::Test {
 protected:
  ExportOutputTest() {
    spec_.html.setOptionPresent(true);
    spec_.html.setDocumentFile(folder_.file("a.html"));
  }

  void open(const std::string& name, std::vector<DocumentObject> objects) {
    VornwMsgOutputControllerResponse response;
    ASSERT_TRUE(controller_.SendRequest({1, OutputControllerCommand::kNew, name.c_str(), "",
                                         OutputDocumentMinimized::kNotApplicable},
                                        response));
    for (DocumentObject& object : objects) {
      controller_.activeDocument()->append(std::move(object));
    }
  }

  ExportResponse run() { return exportOutput(spec_, controller_); }
  int failure() {
    const ExportResponse response = run();
    EXPECT_FALSE(response.success);
    return response.errorCode;
  }

  ScratchDirectory folder_;
  OutputController controller_;
  ExportSpec spec_;
};

TEST_F(ExportOutputTest, ThereMustBeADocument) {
  EXPECT_EQ(failure(), 1);
  spec_.global.setName("report");
  EXPECT_EQ(failure(), 1);
  open("other", {textObject("a")});
  const ExportResponse response = run();
  EXPECT_EQ(response.errorCode, 2);
  EXPECT_EQ(response.name, "report") << "the name that there is not";
}

TEST_F(ExportOutputTest, TheActiveDocumentOrTheNamedOneIsExported) {
  open("report", {textObject("of the report")});
  open("other", {textObject("of the other")});
  EXPECT_EQ(run().name, "other");
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("of the other"));
  spec_.global.setName("REPORT");
  EXPECT_EQ(run().name, "report") << "names have no case";
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("of the report"));
}

TEST_F(ExportOutputTest, AnEmptyDocumentIsNotExported) {
  open("empty", {});
  EXPECT_EQ(failure(), 3);
}

DocumentObject recordObject(ObjectType type, std::string command) {
  DocumentObject object = textObject("Record");
  object.type = type;
  object.command = std::move(command);
  return object;
}

TEST_F(ExportOutputTest, WhatTheCommandsSayOfThemselvesIsNoContent) {
  DocumentObject heading = recordObject(ObjectType::kHeading, "OUTPUT EXPORT");
  heading.children = {recordObject(ObjectType::kLog, "OUTPUT EXPORT"),
                      recordObject(ObjectType::kNotes, "OUTPUT EXPORT"),
                      recordObject(ObjectType::kWarning, "OUTPUT EXPORT")};
  open("records", {recordObject(ObjectType::kLog, "OUTPUT NEW"), heading});
  EXPECT_EQ(failure(), 3);
  EXPECT_EQ(folder_.entryCount(), 0U);
  open("hidden", {recordObject(ObjectType::kLog, "OUTPUT NEW"), textObject("unseenText", false)});
  EXPECT_EQ(failure(), 4);
  spec_.contents.setExport(ExportContentsSpec::EXPORT_TYPE::ALL);
  EXPECT_TRUE(run().success);
}

TEST_F(ExportOutputTest, LogsOfOtherCommandsAndTextsOfTheirsAreContents) {
  open("a", {recordObject(ObjectType::kLog, "MEANS")});
  EXPECT_TRUE(run().success);
  open("b", {recordObject(ObjectType::kText, "OUTPUT COMMENT")});
  EXPECT_TRUE(run().success);
}

TEST_F(ExportOutputTest, VisibleObjectsUnlessAllAreAskedFor) {
  open("a", {textObject("seen"), textObject("unseenText", false)});
  EXPECT_TRUE(run().success);
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("seen"));
  EXPECT_THAT(folder_.read("a.html"), Not(HasSubstr("unseenText")));
  spec_.contents.setExport(ExportContentsSpec::EXPORT_TYPE::ALL);
  EXPECT_TRUE(run().success);
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("unseenText"));
}

TEST_F(ExportOutputTest, WhereNothingIsVisibleNothingIsExported) {
  open("a", {textObject("unseenText", false)});
  EXPECT_EQ(failure(), 4);
  spec_.contents.setExport(ExportContentsSpec::EXPORT_TYPE::ALL);
  EXPECT_TRUE(run().success);
}

TEST_F(ExportOutputTest, LayersAreThoseThatAreAskedFor) {
  PivotTable table;
  table.dimensions = {makeDimension("Region", PivotPlace::kRows, 1, {"North"}),
                      makeDimension("Year", PivotPlace::kLayers, 1, {"2023", "2024"})};
  addCell(table, {0, 0}, textCell("first"));
  addCell(table, {0, 1}, textCell("second"));
  DocumentObject object;
  object.type = ObjectType::kTable;
  object.content = ObjectContent(TableContent(std::make_shared<const PivotTable>(table)));
  open("a", {object});
  const struct {
    ExportContentsSpec::LAYERS_TYPE layers;
    bool hasSecond;
  } cases[] = {{ExportContentsSpec::LAYERS_TYPE::PRINTSETTING, true},
               {ExportContentsSpec::LAYERS_TYPE::ALL, true},
               {ExportContentsSpec::LAYERS_TYPE::VISIBLE, false}};
  for (const auto& c : cases) {
    spec_.contents.setLayers(c.layers);
    EXPECT_TRUE(run().success);
    EXPECT_THAT(folder_.read("a.html"), HasSubstr("first"));
    EXPECT_EQ(folder_.read("a.html").find("second") != std::string::npos, c.hasSecond);
  }
}

TEST_F(ExportOutputTest, SuccessSaysWhatWasMade) {
  open("a", {textObject("text")});
  const ExportResponse response = run();
  EXPECT_TRUE(response.success);
  EXPECT_EQ(response.errorCode, 0);
  EXPECT_EQ(response.documentFile, folder_.file("a.html"));
  EXPECT_FALSE(response.imageCount);
  EXPECT_TRUE(response.imageRoot.empty());
}

TEST_F(ExportOutputTest, BackslashesPartFoldersToo) {
  open("a", {textObject("text")});
  std::filesystem::create_directory(folder_.file("b"));
  std::string path = folder_.file("b") + "\\c.html";
  spec_.html.setDocumentFile(path);
  EXPECT_TRUE(run().success);
  EXPECT_THAT(folder_.read("b/c.html"), HasSubstr("text"));
}

TEST_F(ExportOutputTest, PathThatNoFileCanHaveIsAnInvalidName) {
  open("a", {textObject("text")});
  for (const std::string& path :
       {std::string(), folder_.path(), folder_.path() + "/", folder_.file("nowhere/a.html")}) {
    spec_.html.setDocumentFile(path);
    EXPECT_EQ(failure(), 6) << path;
  }
  EXPECT_EQ(folder_.entryCount(), 0U);
}

TEST_F(ExportOutputTest, AFormatThatIsNotMadeHereIsNamed) {
  open("a", {textObject("text")});
  const auto refusal = [&](const ExportSpec& spec) {
    try {
      exportOutput(spec, controller_);
      return std::string("it was made");
    } catch (const std::runtime_error& error) {
      return std::string(error.what());
    }
  };
  ExportSpec spec;
  spec.pdf.setOptionPresent(true);
  EXPECT_THAT(refusal(spec), HasSubstr("because this version cannot export PDF; it can export"));
  ExportSpec images;
  images.png.setOptionPresent(true);
  EXPECT_THAT(refusal(images), HasSubstr("cannot export PNG;"));
  EXPECT_EQ(refusal(ExportSpec()), "because no format is asked for");
}

/// A content that cannot be read.
class BrokenSource : public ContentSource {
 public:
  ObjectContent load(std::uint64_t) override {
    throw StoreError(StoreError::Kind::kDamaged, "The part objects/1.xml is damaged.");
  }
};

TEST_F(ExportOutputTest, AFailedExportLeavesTheOldFileAndNothingElse) {
  DocumentObject broken = textObject("");
  broken.content = LazyContent(LazyContent::Place{std::make_shared<BrokenSource>(), 1});
  open("a", {textObject("text"), broken});
  folder_.write("a.html", "old");
  EXPECT_THROW(
      {
        try {
          run();
        } catch (const std::runtime_error& error) {
          EXPECT_STREQ(error.what(), "because the part objects/1.xml is damaged");
          throw;
        }
      },
      std::runtime_error);
  EXPECT_EQ(folder_.read("a.html"), "old");
  EXPECT_EQ(folder_.entryCount(), 1U);
}

TEST_F(ExportOutputTest, TheEmbeddedHostAnswersInXml) {
  EmbeddedHost host;
  std::string xml;
  ExportXML().convertToXML(spec_, xml);
  EXPECT_EQ(host.ExportOutput(xml), "<outputExportResponse success=\"false\" errorCode=\"1\"/>");
  EXPECT_THROW(host.ExportOutput("<a/>"), std::runtime_error);
}

constexpr const char* kChart =
    "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='4'><rect width='8' height='4' "
    "fill='red'/></svg>";

DocumentObject chartObject() {
  DocumentObject object;
  object.type = ObjectType::kChart;
  object.label = "Chart";
  object.content =
      ObjectContent(MediaContent{"image/svg+xml", std::make_shared<const std::string>(kChart)});
  return object;
}

TEST_F(ExportOutputTest, ChartsOfAPageAreDrawingsUnlessImagesAreAskedFor) {
  open("a", {chartObject()});
  EXPECT_FALSE(run().imageCount);
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("data:image/svg+xml;base64,"));
  const struct {
    ExportHTMLSpec::IMAGEFORMAT format;
    const char* type;
  } cases[] = {{ExportHTMLSpec::IMAGEFORMAT::PNG, "image/png"},
               {ExportHTMLSpec::IMAGEFORMAT::JPG, "image/jpeg"},
               {ExportHTMLSpec::IMAGEFORMAT::BMP, "image/bmp"}};
  for (const auto& c : cases) {
    spec_.html.setImageFormat(c.format);
    EXPECT_TRUE(run().success);
    EXPECT_THAT(folder_.read("a.html"),
                HasSubstr(std::string("src=\"data:") + c.type + ";base64,"));
    EXPECT_THAT(folder_.read("a.html"), Not(HasSubstr("svg+xml")));
  }
  EXPECT_EQ(folder_.entryCount(), 1U) << "the page needs nothing else";
}

TEST_F(ExportOutputTest, AnImageRootPutsTheImagesBesideThePageToo) {
  open("a", {chartObject(), chartObject()});
  std::string root = folder_.file("image");
  spec_.png.setOptionPresent(true);
  spec_.png.setPercentSize(200, "200");
  EXPECT_FALSE(run().imageCount) << "without a root there are no files";
  spec_.png.setImageRoot(root);
  const ExportResponse response = run();
  EXPECT_EQ(response.imageCount, 2);
  EXPECT_EQ(response.imageFormat, "PNG");
  EXPECT_EQ(response.imageRoot, root);
  EXPECT_TRUE(std::filesystem::exists(folder_.file("image001.png")));
  EXPECT_TRUE(std::filesystem::exists(folder_.file("image002.png")));
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("data:image/png;base64,"));
}

TEST_F(ExportOutputTest, AChartThatCannotBeMadeTheImageAskedForIsNamed) {
  DocumentObject chart = chartObject();
  chart.content = ObjectContent(
      MediaContent{"image/svg+xml",
                   std::make_shared<const std::string>(
                       "<svg xmlns='http://www.w3.org/2000/svg' width='90000' height='90000'/>")});
  open("a", {chart});
  const auto refusal = [&] {
    try {
      run();
      return std::string("it was made");
    } catch (const std::runtime_error& error) {
      return std::string(error.what());
    }
  };
  const std::string expected = "because Chart cannot be made an image: the image would be ";
  spec_.html.setImageFormat(ExportHTMLSpec::IMAGEFORMAT::PNG);
  EXPECT_THAT(refusal(), HasSubstr(expected));
  spec_.html = {};
  spec_.text.setOptionPresent(true);
  spec_.text.setDocumentFile(folder_.file("a.txt"));
  spec_.png.setOptionPresent(true);
  EXPECT_THAT(refusal(), HasSubstr(expected));
  EXPECT_EQ(folder_.entryCount(), 0U);
  spec_.png = {};
  EXPECT_TRUE(run().success) << "a text whose images nobody asked for says it in its place";
}

TEST_F(ExportOutputTest, AnImageIsShownAsLargeAsItsChart) {
  DocumentObject half = chartObject();
  half.size = ObjectSize{50, 50, true};
  open("a", {chartObject(), half});
  spec_.html.setImageFormat(ExportHTMLSpec::IMAGEFORMAT::JPG);
  run();
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("width=\"8\" height=\"4\""));
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("width=\"4\" height=\"2\""));
  spec_.png.setOptionPresent(true);
  spec_.png.setPercentSize(200, "200");
  run();
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("width=\"16\" height=\"8\""));
  EXPECT_THAT(folder_.read("a.html"), HasSubstr("width=\"8\" height=\"4\""));
}

TEST_F(ExportOutputTest, ImagesThatAreNotDrawnHereAreRefused) {
  open("a", {chartObject()});
  spec_.tif.setOptionPresent(true);
  try {
    run();
    ADD_FAILURE() << "it was made";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "because this version cannot draw charts as TIF");
  }
  EXPECT_EQ(folder_.entryCount(), 0U);
}

TEST(ExportFiles, AreAllPutInPlaceOrNone) {
  const ScratchDirectory folder;
  {
    ExportFiles files;
    files.add(folder.file("a"), "new a");
    files.begin(folder.file("b")).write("new b");
    EXPECT_FALSE(std::filesystem::exists(folder.file("a")));
  }
  EXPECT_EQ(folder.entryCount(), 0U) << "what was not committed is gone";
  ExportFiles files;
  files.add(folder.file("a"), "new a");
  files.add(folder.file("b"), "new b");
  files.commit();
  EXPECT_EQ(folder.read("a") + folder.read("b"), "new anew b");
}

TEST(ExportFiles, WhereOneCannotBePlacedTheOthersAreTakenBack) {
  const ScratchDirectory folder;
  folder.write("a", "old");
  ExportFiles files;
  files.add(folder.file("a"), "new");
  files.add(folder.file("b"), "new");
  files.add(folder.file("c"), "new");
  // Something has come that no file can replace.
  std::filesystem::create_directory(folder.file("c"));
  EXPECT_THROW(files.commit(), StoreError);
  EXPECT_EQ(folder.read("a"), "old");
  EXPECT_FALSE(std::filesystem::exists(folder.file("b")));
}

TEST(ExportFiles, ReplacedOnesLeaveNothingBehind) {
  const ScratchDirectory folder;
  folder.write("a", "old");
  ExportFiles files;
  files.add(folder.file("a"), "new");
  EXPECT_EQ(files.commit(), "");
  EXPECT_EQ(folder.read("a"), "new");
  EXPECT_EQ(folder.entryCount(), 1U);
}

TEST(ExportFiles, OneFileHasOnePathByWhateverWay) {
  const ScratchDirectory folder;
  std::filesystem::create_directory(folder.file("d"));
  std::filesystem::create_directory_symlink(folder.file("d"), folder.file("e"));
  folder.write("d/old", "old");
  std::filesystem::create_symlink(folder.file("d/old"), folder.file("link"));
  const std::pair<std::string, std::string> aliases[] = {
      {"d/x", "d/../d/x"}, {"d/x", "e/x"}, {"d/old", "link"}};
  for (const auto& [one, other] : aliases) {
    ExportFiles files;
    files.begin(folder.file(one));
    EXPECT_THROW(files.begin(folder.file(other)), ExportError) << other;
  }
}

TEST(ExportFiles, OnePathIsForOneFile) {
  const ScratchDirectory folder;
  ExportFiles files;
  files.add(folder.file("a"), "1");
  try {
    files.add(folder.file("a"), "2", ExportErrorCode::kInvalidRootName);
    ADD_FAILURE() << "a second file of that path was begun";
  } catch (const ExportError& error) {
    EXPECT_EQ(error.code(), ExportErrorCode::kInvalidRootName);
  }
}

}  // namespace
}  // namespace vornwout
