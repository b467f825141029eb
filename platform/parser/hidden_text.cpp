#include "platform/parser/hidden_text.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "platform/pivot/cell_text.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr std::string_view kUsualName = "PASSWORD";
/// How far before a command comments of its first line are looked for.
constexpr std::size_t kReachBefore = 64 << 10;

struct Stretch {
  std::size_t begin;
  std::size_t end;
};

class HiddenScan {
 public:
  HiddenScan(const TokenizedCommand& command, const std::vector<bool>& secret)
      : text_(command.jobText()), tokens_(command.tokens()), secret_(secret) {}

  /// What is hidden of the bytes [begin, end), in order; the ends may lie outside.
  std::vector<Stretch> run(std::size_t begin, std::size_t end) {
    // Tokens stand in the order of their places.
    auto token = std::partition_point(
        tokens_.begin(), tokens_.end(),
        [begin](const Token& candidate) { return candidate.offset + candidate.length <= begin; });
    std::size_t gap = begin;
    if (token != tokens_.begin()) {
      gap = std::prev(token)->offset + std::prev(token)->length;
    } else if (token != tokens_.end()) {
      gap = std::min(begin, startOfCommentsBefore(token->offset));
    }
    for (; token != tokens_.end() && token->offset < end; ++token) {
      addComments(gap, token->offset);
      gap = token->offset + token->length;
      if (secret_[static_cast<std::size_t>(token - tokens_.begin())]) {
        hidden_.push_back({token->offset, gap});
      }
    }
    addComments(gap, end);
    return std::move(hidden_);
  }

 private:
  /// Between tokens there is nothing but blanks, comments and the period.
  void addComments(std::size_t begin, std::size_t end) {
    while (begin < end) {
      const std::size_t opening = text_.substr(begin, end - begin).find("/*");
      if (opening == std::string_view::npos) return;
      begin += opening;
      const std::size_t closing = text_.find("*/", begin + 2);
      const std::size_t next = closing == std::string_view::npos ? text_.size() : closing + 2;
      if (namesPassword(text_.substr(begin, next - begin)) || hasSecret()) {
        hidden_.push_back({begin, next});
      }
      begin = next;
    }
  }

  /// Looked for only where there is a comment: it takes all tokens.
  bool hasSecret() {
    if (!hasSecret_) hasSecret_ = std::find(secret_.begin(), secret_.end(), true) != secret_.end();
    return *hasSecret_;
  }

  static bool namesPassword(std::string_view comment) {
    return toUpperCase(comment).find(kUsualName) != std::string::npos;
  }

  /// Walks back over blanks and comments; a comment of several lines begins before its last one.
  std::size_t startOfCommentsBefore(std::size_t offset) const {
    const std::size_t limit = offset > kReachBefore ? offset - kReachBefore : 0;
    for (std::size_t at = offset; at > limit;) {
      const char c = text_[at - 1];
      if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
        --at;
        continue;
      }
      if (at < limit + 4 || text_.substr(at - 2, 2) != "*/") break;
      const std::size_t opening = text_.substr(limit, at - 2 - limit).rfind("/*");
      if (opening == std::string_view::npos) break;
      at = limit + opening;
      offset = at;
    }
    return offset;
  }

  std::string_view text_;
  const std::vector<Token>& tokens_;
  const std::vector<bool>& secret_;
  std::optional<bool> hasSecret_;
  std::vector<Stretch> hidden_;
};

}  // namespace

std::string hiddenText(const TokenizedCommand& command, const std::vector<bool>& secret,
                       std::size_t begin, std::size_t end) {
  std::string shown;
  for (const Stretch& stretch : HiddenScan(command, secret).run(begin, end)) {
    if (stretch.end <= begin) continue;
    if (stretch.begin >= end) break;
    if (stretch.begin > begin) {
      shown += command.jobText().substr(begin, stretch.begin - begin);
    }
    shown += kHiddenSecret;
    begin = std::min(end, stretch.end);
  }
  return shown.append(command.jobText().substr(begin, end - begin));
}

std::size_t hiddenStart(const TokenizedCommand& command, const std::vector<bool>& secret,
                        std::size_t offset) {
  for (const Stretch& stretch : HiddenScan(command, secret).run(offset, offset + 1)) {
    if (stretch.begin <= offset && offset < stretch.end) return stretch.begin;
  }
  return offset;
}

}  // namespace vornwout
