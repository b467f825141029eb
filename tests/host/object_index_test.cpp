// The index of a document says what its tree says, however the tree grows and changes.
#include "host/document/object_index.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/document/document.h"

namespace vornwout {
namespace {

DocumentObject randomObject(std::mt19937& random, int depth) {
  DocumentObject object;
  object.type = static_cast<ObjectType>(random() % kObjectTypeCount);
  object.command = std::string(1, static_cast<char>('A' + random() % 3));
  object.subtype = std::string(1, static_cast<char>('a' + random() % 3));
  object.run = static_cast<int>(random() % 5);
  if (depth < 3 && random() % 2 == 0) {
    object.type = ObjectType::kHeading;
    for (unsigned int i = random() % 4; i > 0; --i) {
      object.children.push_back(randomObject(random, depth + 1));
    }
  }
  return object;
}

/// An object by its way from the top level, with what the index has of it.
std::string drawn(const std::string& way, ObjectType type, const std::string& command,
                  const std::string& subtype, int run) {
  return way + ":" + std::string(objectTypeName(type)) + "," + command + "," + subtype + "," +
         std::to_string(run);
}

void drawTree(const DocumentObject& heading, const std::string& way,
              std::vector<std::string>& lines) {
  for (std::size_t i = 0; i < heading.children.size(); ++i) {
    const DocumentObject& object = heading.children[i];
    const std::string there = way + "/" + std::to_string(i);
    lines.push_back(drawn(there, object.type, object.command, object.subtype, object.run));
    drawTree(object, there, lines);
  }
}

std::vector<std::string> drawn(const ObjectIndex& index) {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < index.kindOfObjects().size(); ++i) {
    std::string way;
    for (std::uint32_t at = static_cast<std::uint32_t>(i); at != ObjectIndex::kRoot;
         at = index.placeOf(at).heading) {
      way = "/" + std::to_string(index.placeOf(at).position) + way;
    }
    const ObjectIndex::Kind& kind = index.kinds()[index.kindOfObjects()[i]];
    lines.push_back(drawn(way, kind.type, kind.command, kind.subtype, index.placeOf(i).run));
  }
  return lines;
}

TEST(ObjectIndex, AnEmptyDocumentHasNone) {
  Document document(1, "", false);
  EXPECT_TRUE(document.index().kindOfObjects().empty());
}

TEST(ObjectIndex, SaysWhatTheTreeSaysHoweverItGrows) {
  std::mt19937 random(8);
  Document document(1, "", false);
  for (int step = 0; step < 2000; ++step) {
    const std::size_t count = document.root().children.size();
    switch (random() % 8) {
      case 0:
      case 1:
      case 2:
        document.append(randomObject(random, 0));
        break;
      case 3:
      case 4:
        if (count > 0) {
          DocumentObject& heading = document.at(random() % count);
          heading.children.insert(heading.children.begin(), randomObject(random, 1));
        }
        break;
      case 5:
        if (count > 0) document.at(random() % count).children.clear();
        break;
      case 6:
        if (random() % 10 == 0) {
          std::vector<DocumentObject>& objects = document.editRoot().children;
          objects.resize(objects.size() / 2);
        }
        break;
      default:
        if (random() % 50 == 0) document.setContents(randomObject(random, 0), {});
        break;
    }
    // Now and then only, so that several changes are taken in at once.
    if (random() % 3 != 0) continue;
    std::vector<std::string> expected;
    drawTree(document.root(), "", expected);
    ASSERT_EQ(drawn(document.index()), expected) << step;
  }
}

TEST(ObjectIndex, ObjectsOfOneKindShareItsTexts) {
  Document document(1, "", false);
  for (int i = 0; i < 100; ++i) {
    DocumentObject object;
    object.type = ObjectType::kTable;
    object.subtype = i % 2 == 0 ? "even" : "odd";
    document.append(object);
  }
  EXPECT_EQ(document.index().kinds().size(), 2U);
}

}  // namespace
}  // namespace vornwout
