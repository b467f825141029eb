// What the settings of an ExportSpec are made of.
//
// A setting is an optional value: one that was not set is not written, and its getter gives the
// default. A part of an ExportSpec names its settings once, in visit(); writing, reading, comparing
// and generating them all go through that.
#pragma once

#include <array>
#include <optional>
#include <string>

namespace vornwout {

/// A number with the text that it was given as, which is what is written.
struct SourceNumber {
  double value = 0;
  std::string text;
  friend bool operator==(const SourceNumber&, const SourceNumber&) = default;
};

/// A length or share in a unit of its own.
template <typename Unit>
struct Measure {
  Unit unit{};
  double value = 0;
  std::string text;  ///< the source text of the number
  friend bool operator==(const Measure&, const Measure&) = default;
};

/// The keywords of an enumeration, by the numbers of its values.
template <typename Enumeration>
struct Keywords;

/// What all parts of an ExportSpec have.
class ExportOption {
 public:
  /// Whether the subcommand was given and accepted.
  void setOptionPresent(bool isPresent) { isPresent_ = isPresent; }
  bool isPresent() const { return isPresent_; }

 private:
  bool isPresent_ = false;
};

}  // namespace vornwout
