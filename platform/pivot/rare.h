// A string or a vector that is empty nearly always, in the room of one pointer.
//
// A table of a million cells has a few footnotes and colours. Reading and comparing work as on the
// value itself; edit() gives the value to write to.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <type_traits>
#include <utility>

namespace vornwout {

template <typename Value>
class Rare {
 public:
  Rare() = default;
  // From whatever makes a value, so that it can be assigned as if it were one.
  template <typename Source>
  requires(std::is_convertible_v<Source, Value> &&
           !std::is_same_v<std::remove_cvref_t<Source>, Rare>) Rare(Source&& source) {
    set(Value(std::forward<Source>(source)));
  }
  Rare(std::initializer_list<typename Value::value_type> values) { set(Value(values)); }
  Rare(const Rare& other) { set(other.get()); }
  Rare(Rare&&) noexcept = default;
  Rare& operator=(const Rare& other) {
    if (this != &other) set(other.get());
    return *this;
  }
  Rare& operator=(Rare&&) noexcept = default;
  ~Rare() = default;

  const Value& get() const {
    static const Value kEmpty;
    return value_ == nullptr ? kEmpty : *value_;
  }
  Value& edit() {
    if (value_ == nullptr) value_ = std::make_unique<Value>();
    return *value_;
  }
  operator const Value&() const { return get(); }

  bool empty() const { return value_ == nullptr || value_->empty(); }
  std::size_t size() const { return get().size(); }
  auto begin() const { return get().begin(); }
  auto end() const { return get().end(); }
  const auto& operator[](std::size_t index) const { return get()[index]; }
  const auto& at(std::size_t index) const { return get().at(index); }
  const auto& front() const { return get().front(); }
  const auto& back() const { return get().back(); }
  void push_back(typename Value::value_type element) { edit().push_back(std::move(element)); }

  friend bool operator==(const Rare& a, const Rare& b) { return a.get() == b.get(); }
  template <typename Other>
  requires(std::is_convertible_v<Other, Value> &&
           !std::is_same_v<std::remove_cvref_t<Other>, Rare>) friend bool
  operator==(const Rare& a, const Other& b) {
    return a.get() == b;
  }

 private:
  void set(Value value) {
    value_ = value.empty() ? nullptr : std::make_unique<Value>(std::move(value));
  }

  std::unique_ptr<Value> value_;
};

/// For what tests say.
template <typename Value>
std::ostream& operator<<(std::ostream& stream, const Rare<Value>& value) {
  return stream << value.get();
}

}  // namespace vornwout
