#include "platform/files/document_name.h"

#include <string>

#include "gtest/gtest.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

TEST(DocumentNameTest, namesFollowTheRule) {
  const struct {
    const char* encoding;
    std::string name;
    bool isValid;
  } cases[] = {{"UTF-8", "doc1", true},
               {"UTF-8", "D", true},
               {"UTF-8", "a.b_c$d#e@f9", true},
               {"UTF-8", "a_", true},
               {"UTF-8", "a.", false},
               {"UTF-8", "a..", false},
               {"UTF-8", "a.1", true},
               {"UTF-8", "1a", false},
               {"UTF-8", "_a", false},
               {"UTF-8", "$a", false},
               {"UTF-8", "#a", false},
               {"UTF-8", "@a", false},
               {"UTF-8", ".a", false},
               {"UTF-8", "", false},
               {"UTF-8", "a b", false},
               {"UTF-8", " a", false},
               {"UTF-8", "a ", false},
               {"UTF-8", "a-b", false},
               {"UTF-8", "a/b", false},
               {"UTF-8", "a\\b", false},
               {"UTF-8", "*", false},
               {"UTF-8", "a\n", false},
               {"UTF-8", "\xC3\xA9t\xC3\xA9", true},
               {"UTF-8", "\xE4\xB8\xAD\xE6\x96\x87", true},
               {"UTF-8", "a\xE4\xB8\xAD.", false},
               {"UTF-8", "a\xC3", false},  // truncated
               {"UTF-8", "\xFF", false},
               {"windows-1252", "\xE9t\xE9", true},
               {"windows-1252", "a\xD7", false},  // multiplication sign
               {"Shift-JIS", "\x95\\", true},
               {"Shift-JIS", "\x95\\\\", false},
               {"Shift-JIS", "a\x95", false},
               {"Shift-JIS", "\xB1", true},
               {"GB18030", "\x81\x30\x89\x38", true},
               {"GB18030", "\x81\x30\x89", false},
               {"UTF-8", std::string(100000, 'a'), true}};
  for (const auto& c : cases) {
    const ScopedEncoding scope(Encoding::find(c.encoding));
    EXPECT_EQ(ValidateVORNNameCheckLastChar(c.name.c_str()) == 0, c.isValid)
        << c.encoding << ' ' << c.name.substr(0, 50);
  }
  EXPECT_NE(ValidateVORNNameCheckLastChar(nullptr), 0);
}

}  // namespace
}  // namespace vornwout
