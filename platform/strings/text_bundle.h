// The installed form of a string table: an ICU resource bundle, read without ICU's loader.
//
// ICU trusts the data of a bundle and follows its offsets wherever they lead. A string table is a
// file that anybody may have changed, so it is walked here, where every offset, count and length is
// held against the file before it is followed. What is walked is format version 1 of such bundles,
// in which every string carries its length: a root table with three arrays of strings, Keys, Texts
// and Helps, the n-th of each making the n-th entry. docs/string-tables.md tells how they are made.
//
// Entry point: readTextBundle().
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornwout {

/// One entry of a string table.
struct keyValueGloss {
  std::string key;
  std::string value;  ///< the text shown for the key
  std::string gloss;  ///< the help text; may be empty

  bool operator==(const keyValueGloss&) const = default;
};

/// Larger bundles are refused.
inline constexpr std::size_t kMaxBundleSize = std::size_t{16} * 1024 * 1024;

/// The entries of a bundle in their order, in UTF-8. Nothing when the bytes are no whole bundle of
/// this form: cut off, of the other byte order, with an offset that leads out of it, a text that is
/// no Unicode, an empty key, or with more text than it has bytes, because its strings are shared.
std::optional<std::vector<keyValueGloss>> readTextBundle(std::string_view bytes);

}  // namespace vornwout
