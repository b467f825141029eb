// How one text of a table looks where it differs from the table's own look.
//
// A command gives thousands of cells the same look at once, so cells share it: a SharedLook is a
// value that takes the room of one pointer and its count, and is copied when it is written to.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace vornwout {

/// What is not set is left to the table's look, and to whoever shows it.
struct TextLook {
  std::string textColor;        ///< a colour name or "#rrggbb", empty for none
  std::string backgroundColor;  ///< likewise
  std::optional<bool> bold;
  std::optional<bool> italic;
  std::optional<bool> underlined;
  std::string font;  ///< a family's name, empty for none
  double size = 0;   ///< points, 0 for none
  friend bool operator==(const TextLook&, const TextLook&) = default;
};

class SharedLook {
 public:
  SharedLook() = default;
  SharedLook(TextLook look) {
    if (look != TextLook()) look_ = std::make_shared<const TextLook>(std::move(look));
  }

  const TextLook& get() const {
    static const TextLook kNone;
    return look_ == nullptr ? kNone : *look_;
  }
  const TextLook* operator->() const { return &get(); }
  bool empty() const { return look_ == nullptr; }

  /// Changes this look alone: `change` gets a copy to write to.
  template <typename Change>
  void edit(const Change& change) {
    TextLook look = get();
    change(look);
    *this = SharedLook(std::move(look));
  }

  friend bool operator==(const SharedLook& a, const SharedLook& b) {
    return a.look_ == b.look_ || a.get() == b.get();
  }

 private:
  std::shared_ptr<const TextLook> look_;  ///< null for one in which nothing is set
};

}  // namespace vornwout
