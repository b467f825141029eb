// Finds where a member of a JSON text stands, so that a complaint about a value can name its place.
//
// A parsed JSON document has forgotten its text. Rather than keep a place for every value, the text
// is walked again when there is something to complain about: locateJsonValue() and locateJsonName()
// follow a path from the root and skip everything beside it. The text must have been accepted by a
// parser up to the place that is looked for; on any other the result may be empty, never worse.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/adapter/output_sink.h"

namespace vornwout {

/// Member names and element numbers from the root of a document inward.
using JsonPath = std::vector<std::string>;

/// The path as a JSON pointer (RFC 6901); empty for the root.
std::string jsonPointer(const JsonPath& path);

/// Offset of the value at `path`.
std::optional<std::size_t> locateJsonValue(std::string_view text, const JsonPath& path);

/// Offset of the name of the member at `path`; of its second mention with `occurrence` 2, and so
/// on.
std::optional<std::size_t> locateJsonName(std::string_view text, const JsonPath& path,
                                          int occurrence = 1);

/// Line and column of `offset` in a UTF-8 text.
SourcePlace placeInText(std::string_view text, std::size_t offset);

}  // namespace vornwout
