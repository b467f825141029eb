#include "platform/text/strict_json.h"

#include <unordered_set>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "platform/text/utf8.h"

namespace vornwout {
namespace {

using Json = nlohmann::json;

/// Follows the parser to check what a finished document no longer shows: its depth, members that
/// stand twice, and where in the document a syntax error lies.
class ShapeCheck : public nlohmann::json_sax<Json> {
 public:
  explicit ShapeCheck(std::size_t maxDepth) : maxDepth_(maxDepth) {}

  bool null() override { return valueRead(); }
  bool boolean(bool) override { return valueRead(); }
  bool number_integer(number_integer_t) override { return valueRead(); }
  bool number_unsigned(number_unsigned_t) override { return valueRead(); }
  bool number_float(number_float_t, const string_t&) override { return valueRead(); }
  bool string(string_t&) override { return valueRead(); }
  bool binary(binary_t&) override { return valueRead(); }
  bool start_object(std::size_t) override { return open(false); }
  bool end_object() override { return close(); }
  bool start_array(std::size_t) override { return open(true); }
  bool end_array() override { return close(); }

  bool key(string_t& name) override {
    Level& level = levels_.back();
    level.name = name;
    hasDuplicate_ = !level.names.insert(name).second;
    return !hasDuplicate_;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception& error) override {
    // The library counts the bytes it has read, the offending one included.
    offset_ = position > 0 ? position - 1 : 0;
    syntaxError_ = error.what();
    return false;
  }

  bool hasDuplicate() const { return hasDuplicate_; }
  /// Empty when the text was stopped for its shape, or not at all.
  const std::string& syntaxError() const { return syntaxError_; }
  std::size_t syntaxErrorOffset() const { return offset_; }
  /// Where the parser stopped.
  JsonPath path() const {
    JsonPath path;
    for (const Level& level : levels_) {
      if (level.isArray) {
        path.push_back(std::to_string(level.index));
      } else if (level.name) {
        path.push_back(*level.name);
      }
    }
    return path;
  }

 private:
  struct Level {
    bool isArray = false;
    std::size_t index = 0;            ///< of the element that is read next
    std::optional<std::string> name;  ///< of the member that is being read
    std::unordered_set<std::string> names;
  };

  bool open(bool isArray) {
    if (levels_.size() == maxDepth_) return false;
    levels_.emplace_back().isArray = isArray;
    return true;
  }
  bool close() {
    levels_.pop_back();
    return valueRead();
  }
  bool valueRead() {
    if (!levels_.empty()) {
      ++levels_.back().index;
      levels_.back().name.reset();
    }
    return true;
  }

  std::size_t maxDepth_;
  std::vector<Level> levels_;
  bool hasDuplicate_ = false;
  std::string syntaxError_;
  std::size_t offset_ = 0;
};

/// The library puts its own name and place in front of the reason.
std::string reasonOf(const std::string& error) {
  const std::size_t name = error.find("] ");
  const std::size_t place = error.find(": ");
  const std::size_t start = error.find("parse error at") != std::string::npos ? place : name;
  return repairedUtf8(start == std::string::npos ? std::string_view(error)
                                                 : std::string_view(error).substr(start + 2));
}

}  // namespace

std::optional<JsonProblem> findJsonProblem(std::string_view text, std::size_t maxDepth) {
  ShapeCheck check(maxDepth);
  if (Json::sax_parse(text, &check)) return std::nullopt;
  JsonProblem problem;
  problem.path = check.path();
  if (check.hasDuplicate()) {
    problem.offset = locateJsonName(text, problem.path, 2).value_or(0);
    problem.message = fmt::format("member \"{}\" stands twice", problem.path.back());
  } else if (check.syntaxError().empty()) {
    problem.offset = locateJsonValue(text, problem.path).value_or(0);
    problem.message = fmt::format("nested deeper than {} levels", maxDepth);
  } else {
    problem.offset = check.syntaxErrorOffset();
    problem.message = reasonOf(check.syntaxError());
  }
  return problem;
}

}  // namespace vornwout
