// The walk over the free token list, in both of its forms, on every list of up to six tokens.
#include "libvornwout/commands/name_walk.h"

#include <array>
#include <deque>

#include <gtest/gtest.h>

#include "platform/parser/tokenizer.h"

namespace vornwout {
namespace {

/// "name, 1", or "refused".
std::string walk(const std::string& text, BareNames rule) {
  // A word in front, because an asterisk at a command's start would begin a comment.
  const std::string job = "X " + text;
  Tokenizer tokenizer(job);
  TokenizedCommand command;
  std::vector<TokenInfoObj> tokens;
  EXPECT_TRUE(tokenizer.next(command));
  for (const Token& token : command.tokens()) {
    if (&token != &command.tokens().front()) tokens.emplace_back(command, token);
  }
  tokens.shrink_to_fit();  // so that a read behind the last token is found out
  const std::optional<NamedDocument> document = walkNameTokens(tokens, rule);
  if (!document) return "refused";
  return document->name + ", " + std::to_string(static_cast<int>(document->minimized));
}

struct WalkCase {
  const char* tokens;
  const char* named;      ///< as OUTPUT NAME takes it
  const char* activated;  ///< as OUTPUT ACTIVATE takes it
};

constexpr WalkCase kCases[] = {
    {"", ", 0", ", 0"},
    {"doc1", "doc1, 0", "doc1, 0"},
    {"Doc1", "Doc1, 0", "Doc1, 0"},
    {"'my document'", "my document, 0", "my document, 0"},
    {"*", "*, 0", "*, 0"},
    {"ALL", "ALL, 0", "ALL, 0"},
    {"NAME = doc1", "doc1, 0", "doc1, 0"},
    {"name = Doc1", "Doc1, 0", "Doc1, 0"},
    {"NAME = NAME", "NAME, 0", "NAME, 0"},
    {"NAME = =", "=, 0", "=, 0"},
    {"NAME = *", "*, 0", "*, 0"},
    {"NAME = doc1 MINIMIZED = YES", "doc1, 1", "doc1, 1"},
    {"doc1 MINIMIZED = YES", "doc1, 1", "doc1, 1"},
    {"MINIMIZED = yes doc1", "doc1, 1", "doc1, 1"},
    {"MINIMIZED = NO", ", 0", ", 0"},
    {"MINIMIZED = MAYBE", ", 0", ", 0"},
    {"MINIMIZED = YES", ", 1", ", 1"},
    // YES is not taken back, whatever follows.
    {"MINIMIZED = YES MINIMIZED = NO", ", 1", ", 1"},
    {"MINIMIZED = NO MINIMIZED = YES", ", 1", ", 1"},
    // The keyword form replaces an earlier name, a bare name never does.
    {"NAME = a NAME = b", "b, 0", "b, 0"},
    {"a NAME = b", "b, 0", "b, 0"},
    {"NAME = a b", "refused", "refused"},
    {"a b", "refused", "refused"},
    {"a b c", "refused", "refused"},
    {"'' b", "refused", "refused"},
    {"NAME = '' b", "refused", "refused"},
    {"'' NAME = b", "b, 0", "b, 0"},
    // A keyword needs its equals sign and its value.
    {"NAME", "refused", "refused"},
    {"NAME =", "refused", "refused"},
    {"NAME doc1", "refused", "refused"},
    {"NAME doc1 x", "refused", "refused"},
    {"NAME '=' doc1", "refused", "refused"},
    {"doc1 NAME", "refused", "refused"},
    {"doc1 NAME =", "refused", "refused"},
    {"MINIMIZED", "refused", "refused"},
    {"MINIMIZED =", "refused", "refused"},
    {"MINIMIZED YES NO", "refused", "refused"},
    {"doc1 MINIMIZED =", "refused", "refused"},
    {"'NAME'", "refused", "refused"},
    // "=" before a bare name: OUTPUT NAME alone passes over it, and not at the end.
    {"= doc1", "doc1, 0", "refused"},
    {"'=' doc1", "refused", "refused"},
    {"=", "=, 0", "=, 0"},
    {"= =", "=, 0", "refused"},
    {"= NAME", "NAME, 0", "refused"},
    {"= NAME = b", "refused", "b, 0"},
    {"= doc1 MINIMIZED = YES", "doc1, 1", "refused"},
    {"doc1 =", "refused", "refused"},
    {"doc1 = b", "refused", "refused"},
    {"NAME = a =", "refused", "refused"},
    {"MINIMIZED = YES =", "=, 1", "=, 1"},
    {"MINIMIZED = YES = a", "a, 1", "refused"},
    {"( doc1", "refused", "refused"},
};

TEST(NameWalk, TakesTheFormsOfOutputName) {
  for (const WalkCase& test : kCases) {
    EXPECT_EQ(walk(test.tokens, BareNames::kWithEqualsSign), test.named) << test.tokens;
  }
}

TEST(NameWalk, TakesTheFormsOfOutputActivate) {
  for (const WalkCase& test : kCases) {
    EXPECT_EQ(walk(test.tokens, BareNames::kPlain), test.activated) << test.tokens;
  }
}

/// The walk in its plainest form, as a second opinion: one token list after the other taken off its
/// front.
std::string plainWalk(std::deque<std::string> rest, bool withEqualsSign) {
  std::optional<std::string> name;
  bool minimized = false;
  const auto drop = [&](std::size_t count) {
    rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(count));
  };
  while (!rest.empty()) {
    const bool isKeyword = rest[0] == "NAME" || rest[0] == "MINIMIZED";
    if (isKeyword) {
      if (rest.size() < 3 || rest[1] != "=") return "refused";
      if (rest[0] == "NAME") {
        name = rest[2];
      } else {
        minimized = minimized || rest[2] == "YES";
      }
      drop(3);
    } else if (name) {
      return "refused";
    } else if (withEqualsSign && rest.size() > 1 && rest[0] == "=") {
      name = rest[1];
      drop(2);
    } else {
      name = rest[0];
      drop(1);
    }
  }
  return name.value_or("") + ", " + (minimized ? "1" : "0");
}

TEST(NameWalk, AgreesWithAPlainWalkOnEveryListOfUpToSixTokens) {
  const std::array<std::string, 5> words = {"NAME", "MINIMIZED", "=", "YES", "a"};
  std::size_t lists = 1;
  for (int length = 0; length <= 6; ++length, lists *= words.size()) {
    for (std::size_t number = 0; number < lists; ++number) {
      std::deque<std::string> tokens;
      std::string text;
      std::size_t digits = number;
      for (int i = 0; i < length; ++i, digits /= words.size()) {
        tokens.push_back(words[digits % words.size()]);
        text += tokens.back() + " ";
      }
      ASSERT_EQ(walk(text, BareNames::kWithEqualsSign), plainWalk(tokens, true)) << text;
      ASSERT_EQ(walk(text, BareNames::kPlain), plainWalk(tokens, false)) << text;
    }
  }
}

}  // namespace
}  // namespace vornwout
