// What of a command is shown where secrets must not be.
#include "platform/parser/hidden_text.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/parser/secret_tokens.h"
#include "platform/parser/tokenizer.h"

namespace vornwout {
namespace {

/// The first command of a job, with what is secret in it.
struct Job {
  explicit Job(std::string text) : job(std::move(text)), tokenizer(job) {
    EXPECT_TRUE(tokenizer.next(command));
    secret = secretTokens(command, nullptr);
  }
  std::string shown(std::size_t begin, std::size_t end) const {
    return hiddenText(command, secret, begin, end);
  }

  std::string job;
  Tokenizer tokenizer;
  TokenizedCommand command;
  std::vector<bool> secret;
};

TEST(HiddenText, SecretsAndCommentsThatMayTellThemAreStarred) {
  const struct {
    const char* job;
    const char* shown;
  } cases[] = {
      {"GO X /* a */ /* b */ Y.", "GO X /* a */ /* b */ Y."},
      {"GO X /* a */ /* my password */ Y.", "GO X /* a */ *** Y."},
      {"GO PASSWORD='s' /* a */ /* b */ Y='/* c */'.", "GO PASSWORD=*** *** *** Y='/* c */'."},
      {"GO X='PASSWORD' /* a */.", "GO X='PASSWORD' /* a */."},
      {"GO X /* password\n */ Y\n /* passWORD */.", "GO X *** Y\n ***."},
      {"/* PASSWORD */\n /* a */ GO /**/ X.", "***\n /* a */ GO /**/ X."},
  };
  for (const auto& c : cases) {
    const Job job(c.job);
    EXPECT_EQ(job.shown(0, job.job.size()), c.shown);
  }
}

TEST(HiddenText, AStretchIsStarredAsItIsInTheWhole) {
  const Job job("GO PASSWORD='s3cret' /* old */ X.");
  const std::size_t secret = job.job.find("'s3");
  const std::size_t comment = job.job.find("/*");
  EXPECT_EQ(job.shown(secret + 3, secret + 5), "***");
  EXPECT_EQ(job.shown(comment + 3, job.job.size()), "*** ***.");
  EXPECT_EQ(job.shown(0, 5), "GO PA");
  EXPECT_EQ(job.shown(secret + 8, comment), " ");
  EXPECT_EQ(job.shown(4, 4), "");
}

TEST(HiddenText, AHiddenPlaceIsShownWhereItsStretchBegins) {
  const Job job("GO PASSWORD='s3cret' /* old */ X.");
  const std::size_t secret = job.job.find("'s3");
  const std::size_t comment = job.job.find("/*");
  for (std::size_t i = 0; i < job.job.size(); ++i) {
    std::size_t expected = i;
    if (i >= secret && i < secret + 8) expected = secret;
    if (i >= comment && i < comment + 9) expected = comment;
    EXPECT_EQ(hiddenStart(job.command, job.secret, i), expected) << i;
  }
}

}  // namespace
}  // namespace vornwout
