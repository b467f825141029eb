// A value that many share, in the room of a pointer: mostly it is as it was made, and where it is
// not, thousands of cells have the same one.
//
// It reads and compares as the value does; edit() changes this one alone.
#pragma once

#include <memory>
#include <utility>

namespace vornwout {

template <typename Value>
class Shared {
 public:
  Shared() = default;
  Shared(Value value) {
    if (!(value == Value())) value_ = std::make_shared<const Value>(std::move(value));
  }

  const Value& get() const {
    static const Value kNone;
    return value_ == nullptr ? kNone : *value_;
  }
  const Value* operator->() const { return &get(); }
  /// True for a value as it was made.
  bool empty() const { return value_ == nullptr; }

  /// `change` gets a copy to write to.
  template <typename Change>
  void edit(const Change& change) {
    Value value = get();
    change(value);
    *this = Shared(std::move(value));
  }

  friend bool operator==(const Shared& a, const Shared& b) {
    return a.value_ == b.value_ || a.get() == b.get();
  }

 private:
  std::shared_ptr<const Value> value_;  ///< null for a value as it was made
};

}  // namespace vornwout
