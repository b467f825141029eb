// Reads members and values of a parsed JSON document, with a complaint at the place of each that is
// wrong.
//
// The readers of objects declare their members as a list of names and functions; an unknown name is
// refused with a suggestion from that list. The first complaint ends the reading by a BuildError.
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/text/json_locator.h"

namespace vornwout {

class ManifestReader {
 public:
  using Json = nlohmann::json;

  struct Member {
    std::string_view name;
    std::function<void(const Json&)> read;
    bool isRequired = false;
  };

  /// Both must outlive the reader.
  ManifestReader(std::string_view text, const std::string& file) : text_(text), file_(file) {}

  const JsonPath& path() const { return path_; }

  /// Complains about the value at the current path, or at another one.
  [[noreturn]] void refuse(const std::string& message, const std::string& help = {}) const {
    refuseAt(path_, message, help);
  }
  [[noreturn]] void refuseAt(const JsonPath& path, const std::string& message,
                             const std::string& help = {}) const;

  /// Reads below one step of the path.
  template <typename Read>
  void enter(std::string step, Read read) {
    enterAs(std::move(step), 0, read);
  }

  /// Reads an object, its members in the order of the list.
  void readMembers(const Json& json, const std::vector<Member>& members);

  /// Reads the elements of a list in order.
  void readList(const Json& json, const std::function<void(const Json&)>& read);

  /// Reads an object whose names are free.
  void readEntries(const Json& json,
                   const std::function<void(const std::string&, const Json&)>& read);

  std::string text(const Json& json) const;
  /// A text that is not empty.
  std::string name(const Json& json) const;
  bool flag(const Json& json) const;
  double number(const Json& json, double least, double most) const;

  /// One of the given words, by its index.
  std::size_t choice(const Json& json, std::initializer_list<std::string_view> words) const;

  [[noreturn]] void refuseType(const Json& json, std::string_view expected) const;

 private:
  template <typename Read>
  void enterAs(std::string step, std::size_t element, Read read) {
    path_.push_back(std::move(step));
    elements_.push_back(element);
    read();
    elements_.pop_back();
    path_.pop_back();
  }

  std::string currentName() const;

  std::string_view text_;
  const std::string& file_;
  JsonPath path_;
  std::vector<std::size_t> elements_;  ///< by step, which element of a list it is, 0 for a member
};

}  // namespace vornwout
