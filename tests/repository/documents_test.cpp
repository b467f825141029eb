// Generated documents are what the program prints, and what the documents show is what it does.
#include <array>
#include <cstdio>
#include <memory>
#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "runner/help_text.h"
#include "tests/support/clean_environment.h"
#include "tests/support/file_content.h"

namespace {

std::string readFile(const std::string& path) {
  return vornwout::fileContent(VORN_SOURCE_DIR "/" + path);
}

TEST(Documents, LanguageReferenceIsPrintedFromTheGrammar) {
  EXPECT_EQ(readFile("docs/language-reference.md"), vornwout::languageReference())
      << "run: make docs";
}

TEST(Documents, MessageListIsPrintedFromTheCatalogue) {
  EXPECT_EQ(readFile("docs/messages.md"), vornwout::messageReference()) << "run: make docs";
}

/// In a document, a block that starts with "$ vornwout ..." shows the program's output below it.
TEST(Documents, ConsoleBlocksShowWhatTheProgramPrints) {
  vornwout::cleanEnvironment();
  static const std::regex pattern(R"re(```console\n\$ vornwout ([^\n]*)\n([^`]*)```)re");
  int blocks = 0;
  for (const char* path : {"README.md", "docs/writing-jobs.md"}) {
    const std::string text = readFile(path);
    for (auto it = std::sregex_iterator(text.begin(), text.end(), pattern);
         it != std::sregex_iterator(); ++it) {
      ++blocks;
      const std::string command = "cd " VORN_SOURCE_DIR " && " VORN_BUILD_DIR "/runner/vornwout " +
                                  (*it)[1].str() + " 2>&1";
      const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
      std::string shown;
      std::array<char, 4096> buffer{};
      while (std::fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr)
        shown += buffer.data();
      EXPECT_EQ(shown, (*it)[2].str()) << path << ": vornwout " << (*it)[1];
    }
  }
  EXPECT_GE(blocks, 3);
}

}  // namespace
