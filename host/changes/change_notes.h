// What a change has to say beside what it did: the values that it could not use.
//
// A note leaves the rest of the change in force; what makes the whole command impossible is thrown
// as a ChangeError instead, and every document is then as it was.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/strings/localized.h"

namespace vornwout {

/// What of a reason is seen in whole: messages show 80 columns of it, and "because " is before it.
inline constexpr int kReasonColumns = 72;

/// Why a command cannot be carried out: one sentence without a period that goes on behind
/// "because". It begins with what it is about and takes at most kReasonColumns wherever that can
/// be.
class ChangeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What refusals call the files that a command embeds.
inline constexpr const char* kTableLookName = localizable("the table look");
/// "chart template 2" of a group, from 1.
std::string chartTemplateName(std::size_t number);

/// Of a table that cannot be laid out.
inline constexpr const char* kTooManyCombinations = "it has too many combinations of categories";

/// A sentence as it goes on behind "because": without its capital and its period.
std::string clauseOf(std::string sentence);

/// The words that a note begins with.
inline constexpr const char* kInvalidFormat = "Invalid format";
inline constexpr const char* kInvalidFont = "Invalid font";

/// Each value is noted once, in the order in which it was met.
class ChangeNotes {
 public:
  void invalidFormat(const std::string& format) { add(kInvalidFormat, format); }
  void invalidFont(const std::string& font) { add(kInvalidFont, font); }
  /// "Invalid format (F99)" and so on. A value has brackets for its parentheses, and the words of a
  /// note in it are broken.
  const std::vector<std::string>& notes() const { return notes_; }

 private:
  void add(const char* what, const std::string& value);

  std::vector<std::string> notes_;
};

}  // namespace vornwout
