// The outline of a file, as it was written and as somebody else might write it.
#include "host/store/manifest.h"

#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "host/store/container_writer.h"
#include "host/store/document_store.h"
#include "host/store/store_error.h"
#include "tests/support/generated_documents.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

using Kind = StoreError::Kind;

class StoredManifest : public testing::Test {
 protected:
  /// The failure of opening the file or of reading something of it; fails the test where there is
  /// none.
  StoreError openingFails(const std::string& path) {
    try {
      const auto document = openDocument(path);
      sameObject(document->root(), document->root());
    } catch (const StoreError& error) {
      return error;
    }
    ADD_FAILURE() << path << " opens";
    return {Kind::kDamaged, ""};
  }

  /// A container with these members, as no program of ours would write it.
  std::string container(const std::vector<std::pair<std::string, std::string>>& members) {
    const std::string path = folder_.file("made.qxv");
    ContainerWriter writer(path, {});
    for (const auto& [name, bytes] : members) writer.add(name, bytes, true);
    writer.commit();
    return path;
  }

  std::string withOutline(const std::string& outline) {
    return container(
        {{"manifest.xml",
          "<document xmlns='urn:vornwout:document:1' version='1'><runs/><parts/><outline>" +
              outline + "</outline></document>"}});
  }

  ScratchDirectory folder_;
  std::string path_ = folder_.file("report.qxv");
};

TEST_F(StoredManifest, WhatIsNoDocumentIsRefused) {
  struct Case {
    std::vector<std::pair<std::string, std::string>> members;
    const char* reason;
  };
  const std::string start = "<document xmlns='urn:vornwout:document:1' version='1'>";
  const std::string end = "<outline/></document>";
  const std::string noParts = start + "<runs/><parts/>";
  const std::string close = "</outline></document>";
  const std::string onePart = start + "<runs/><parts><part name='p.xml'/></parts>";
  const std::string log = "<object type='log' id='1' part='1'/>";
  const Case cases[] = {
      {{{"a", "b"}}, "It is no output document: it has no manifest.xml."},
      {{{"manifest.xml", "no"}},
       "Its part manifest.xml cannot be read: near line 1: a text stands outside of its root "
       "element."},
      {{{"manifest.xml", "<document/>"}},
       "Its part manifest.xml cannot be read: document: its namespace is not "
       "urn:vornwout:document:1."},
      {{{"manifest.xml", "<objects xmlns='urn:vornwout:document:1'/>"}},
       "Its part manifest.xml cannot be read: its element is objects where document is expected."},
      {{{"manifest.xml", "<document xmlns='urn:vornwout:document:1' version='2'/>"}},
       "Its part manifest.xml cannot be read: document: version 2 of the format is not known; a "
       "newer program may read it."},
      {{{"manifest.xml", onePart + "<outline/></document>"}},
       "Its part manifest.xml cannot be read: the part \"p.xml\" is missing."},
      // What were passed over would be gone with the next save.
      {{{"manifest.xml", noParts + "<outlines/></document>"}},
       "Its part manifest.xml cannot be read: document: it holds an element outlines."},
      {{{"manifest.xml", noParts + "</document>"}},
       "Its part manifest.xml cannot be read: document: it has no element outline."},
      {{{"manifest.xml", start + "<parts/>" + end}},
       "Its part manifest.xml cannot be read: document: it has no element runs."},
      {{{"manifest.xml", noParts + "<outline/>" + end}},
       "Its part manifest.xml cannot be read: document: its element outline stands twice."},
      {{{"manifest.xml", start + "<runs/><runs/><parts/>" + end}},
       "Its part manifest.xml cannot be read: document: its element runs stands twice."},
      {{{"manifest.xml", start + "text<runs/><parts/>" + end}},
       "Its part manifest.xml cannot be read: document: it holds a text where none may stand."},
      {{{"manifest.xml", start + "<runs>text</runs><parts/>" + end}},
       "Its part manifest.xml cannot be read: runs: it holds a text where none may stand."},
      {{{"manifest.xml", start + "<runs><dog/></runs><parts/>" + end}},
       "Its part manifest.xml cannot be read: runs: it holds an element dog."},
      {{{"manifest.xml", start + "<runs><run count='1'/></runs><parts/>" + end}},
       "Its part manifest.xml cannot be read: run: it has no command."},
      {{{"manifest.xml", start + "<runs><run command='A'/></runs><parts/>" + end}},
       "Its part manifest.xml cannot be read: run: it has no count."},
      {{{"manifest.xml",
         start + "<runs><run command='A' count='1'><b/></run></runs><parts/>" + end}},
       "Its part manifest.xml cannot be read: run: it holds an element b."},
      {{{"manifest.xml", start + "<runs/><parts><dog/></parts>" + end}},
       "Its part manifest.xml cannot be read: parts: it holds an element dog."},
      {{{"manifest.xml", start + "<runs/><parts><part name='p.xml'>a</part></parts>" + end}},
       "Its part manifest.xml cannot be read: part: it holds a text where none may stand."},
      {{{"manifest.xml", noParts + "<outline><object type='log' unit='percent'/>" + close}},
       "Its part manifest.xml cannot be read: object: it has the unit of a size and no size."},
      {{{"manifest.xml", noParts + "<outline><object type='log' part='1'/>" + close}},
       "Its part manifest.xml cannot be read: object: it says where its content is and has no "
       "id."},
      {{{"manifest.xml", noParts + "<outline><object type='log' media='a'/>" + close}},
       "Its part manifest.xml cannot be read: object: it says where its content is and has no "
       "id."},
      {{{"manifest.xml",
         onePart + "<outline><object type='log' id='1' part='1' media='a'/>" + close}},
       "Its part manifest.xml cannot be read: object: it has a part and a medium."},
      {{{"manifest.xml",
         noParts + "<outline><object type='log' label='a' label-base64='YQ=='/>" + close}},
       "Its part manifest.xml cannot be read: object: it has label twice."},
      {{{"manifest.xml", noParts + "<outline><dog/></outline></document>"}},
       "Its part manifest.xml cannot be read: outline: it holds an element dog."},
      {{{"manifest.xml", noParts + "<outline><object type='dog'/></outline></document>"}},
       "Its part manifest.xml cannot be read: object: its type is unknown."},
      {{{"manifest.xml", noParts + "<outline>" + log + "</outline></document>"}},
       "Its part manifest.xml cannot be read: object: a number is not an integer, or out of "
       "bounds."},
      {{{"manifest.xml", noParts + "<outline><object type='log' id='1'/></outline></document>"}},
       "Its part manifest.xml cannot be read: object: it says neither its part nor its medium."},
      {{{"manifest.xml", onePart + "<outline>" + log + log + "</outline></document>"},
        {"p.xml", ""}},
       "Its part manifest.xml cannot be read: object: the number 1 stands twice."},
      {{{"manifest.xml", noParts + "<outline><object type='log'><object type='log'/></object>"
                                   "</outline></document>"}},
       "Its part manifest.xml cannot be read: object: objects stand below one that is no "
       "heading."},
      {{{"manifest.xml", onePart + "<outline>" + log + "</outline></document>"},
        {"p.xml", "<objects xmlns='urn:vornwout:document:1'/>"}},
       "Its part p.xml cannot be read: object 1 is missing."},
      {{{"manifest.xml", onePart + "<outline>" + log + "</outline></document>"},
        {"p.xml",
         "<objects xmlns='urn:vornwout:document:1'><log object='1'/><log object='1'/>"
         "</objects>"}},
       "Its part p.xml cannot be read: log: object 1 stands twice."},
      {{{"manifest.xml", onePart + "<outline>" + log + "</outline></document>"},
        {"p.xml", "<objects xmlns='urn:vornwout:document:1'><dog object='1'/></objects>"}},
       "Its part p.xml cannot be read: dog: no content has this name."},
  };
  for (const Case& c : cases) {
    const StoreError error = openingFails(container(c.members));
    EXPECT_STREQ(error.what(), c.reason);
    EXPECT_EQ(error.kind(), Kind::kDamaged) << c.reason;
  }
}

TEST_F(StoredManifest, TextsOfTheOutlineAreBoundedBothWays) {
  const std::string most(kMaxOutlineText, 'x');
  using Text = std::string DocumentObject::*;
  const std::pair<const char*, Text> texts[] = {{"label", &DocumentObject::label},
                                                {"command", &DocumentObject::command},
                                                {"subtype", &DocumentObject::subtype},
                                                {"index", &DocumentObject::index}};
  for (const auto& [name, text] : texts) {
    Document document(1, "", false);
    document.editRoot().children.emplace_back();
    document.editRoot().children[0].type = ObjectType::kLog;
    document.editRoot().children[0].*text = most;
    saveDocument(document, path_, {});
    EXPECT_EQ(openDocument(path_)->root().children[0].*text, most);
    document.editRoot().children[0].*text += 'x';
    try {
      saveDocument(document, path_, {});
      ADD_FAILURE() << name;
    } catch (const StoreError& error) {
      EXPECT_EQ(error.what(), fmt::format("The {} of an object has more than 1 MiB.", name));
    }
    const std::string outline = fmt::format("<object type='log' {}='{}x'/>", name, most);
    EXPECT_EQ(openingFails(withOutline(outline)).what(),
              fmt::format("Its part manifest.xml cannot be read: object: its {} has more than 1 "
                          "MiB.",
                          name));
  }
}

}  // namespace
}  // namespace vornwout
