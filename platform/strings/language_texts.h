// What the system's own texts are called in one language: the tables of its directory, read one
// after the other as texts are asked for.
#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vornwout {

class LanguageTexts {
 public:
  /// `directory` is the language's, with a trailing slash, in the current encoding.
  explicit LanguageTexts(std::string directory);

  /// What the tables call an original; the original itself where none has it. Views of their texts
  /// live as long as this. May be called on any thread.
  std::string_view find(std::string_view original);

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };

  void readNext();

  std::string directory_;
  std::mutex mutex_;
  std::size_t tablesRead_ = 0;
  std::unordered_map<std::string, std::string, TextHash, std::equal_to<>> texts_;
};

}  // namespace vornwout
