#include "platform/text/json_locator.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace vornwout {
namespace {

/// Walks over a JSON text. Every step checks the end of the text; a step that does not fit fails.
class Walker {
 public:
  explicit Walker(std::string_view text) : text_(text) {}

  std::size_t position() const { return position_; }

  /// Moves from the start of a value to the start of the value that `step` names in it. With
  /// `stopAtName` the walk ends at the name instead, at its mention number `occurrence`.
  bool enter(const std::string& step, bool stopAtName, int occurrence) {
    if (take('{')) return enterObject(step, stopAtName, occurrence);
    return !stopAtName && take('[') && enterArray(step);
  }

  void skipBlanks() {
    while (!atEnd() &&
           std::string_view(" \t\r\n").find(text_[position_]) != std::string_view::npos) {
      ++position_;
    }
  }

 private:
  bool atEnd() const { return position_ >= text_.size(); }

  bool take(char wanted) {
    skipBlanks();
    if (atEnd() || text_[position_] != wanted) return false;
    ++position_;
    return true;
  }

  bool enterObject(const std::string& step, bool stopAtName, int occurrence) {
    do {
      skipBlanks();
      const std::size_t start = position_;
      if (!skipString()) return false;
      const bool isWanted = nameIs(text_.substr(start, position_ - start), step);
      if (isWanted && stopAtName && --occurrence == 0) {
        position_ = start;
        return true;
      }
      if (!take(':')) return false;
      skipBlanks();
      if (isWanted && !stopAtName) return true;
      if (!skipValue()) return false;
    } while (take(','));
    return false;
  }

  bool enterArray(const std::string& step) {
    for (std::size_t index = 0;; ++index) {
      skipBlanks();
      if (std::to_string(index) == step) return true;
      if (!skipValue() || !take(',')) return false;
    }
  }

  static bool nameIs(std::string_view quoted, const std::string& name) {
    const nlohmann::json parsed = nlohmann::json::parse(quoted, nullptr, false);
    return parsed.is_string() && parsed.get_ref<const std::string&>() == name;
  }

  bool skipString() {
    if (!take('"')) return false;
    for (; !atEnd(); ++position_) {
      if (text_[position_] == '\\') {
        ++position_;
      } else if (text_[position_] == '"') {
        ++position_;
        return true;
      }
    }
    return false;
  }

  /// Counts brackets instead of descending, so that no depth of nesting matters.
  bool skipValue() {
    std::size_t depth = 0;
    do {
      skipBlanks();
      if (atEnd()) return false;
      const char c = text_[position_];
      if (c == '"') {
        if (!skipString()) return false;
      } else if (c == '{' || c == '[') {
        ++depth;
        ++position_;
      } else if (c == '}' || c == ']') {
        if (depth == 0) return false;
        --depth;
        ++position_;
      } else if (c == ',' || c == ':') {
        if (depth == 0) return false;
        ++position_;
      } else {
        position_ = std::min(text_.find_first_of(" \t\r\n,:]}\"", position_), text_.size());
      }
    } while (depth > 0);
    return true;
  }

  std::string_view text_;
  std::size_t position_ = 0;
};

}  // namespace

std::string jsonPointer(const JsonPath& path) {
  std::string pointer;
  for (const std::string& step : path) {
    pointer += '/';
    for (const char c : step) {
      if (c == '~') {
        pointer += "~0";
      } else if (c == '/') {
        pointer += "~1";
      } else {
        pointer += c;
      }
    }
  }
  return pointer;
}

std::optional<std::size_t> locateJsonValue(std::string_view text, const JsonPath& path) {
  Walker walker(text);
  walker.skipBlanks();
  for (const std::string& step : path) {
    if (!walker.enter(step, false, 1)) return std::nullopt;
  }
  return walker.position();
}

std::optional<std::size_t> locateJsonName(std::string_view text, const JsonPath& path,
                                          int occurrence) {
  Walker walker(text);
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (!walker.enter(path[i], i + 1 == path.size(), occurrence)) return std::nullopt;
  }
  return path.empty() ? std::nullopt : std::optional(walker.position());
}

SourcePlace placeInText(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, std::min(offset, text.size()));
  const std::size_t lineEnd = before.rfind('\n');
  const std::string_view line =
      lineEnd == std::string_view::npos ? before : before.substr(lineEnd + 1);
  // A byte that continues a character adds no column.
  const auto characters = std::count_if(line.begin(), line.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  });
  return SourcePlace{static_cast<int>(std::count(before.begin(), before.end(), '\n')) + 1,
                     static_cast<int>(characters) + 1};
}

}  // namespace vornwout
