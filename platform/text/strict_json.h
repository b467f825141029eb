// Looks at a JSON text as a whole before anything is read from it: syntax, depth, members that
// stand twice.
//
// A parsed document no longer shows the last two, and a parser that recurses must not be given any
// depth. Entry point: findJsonProblem(), which follows the parser without building anything.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/text/json_locator.h"

namespace vornwout {

/// Why a text is not read as JSON.
struct JsonProblem {
  std::size_t offset = 0;  ///< of the byte that it is about
  JsonPath path;           ///< to the value around it
  std::string message;     ///< in UTF-8, without a full stop
};

/// The first problem of a text in UTF-8 without a byte-order mark; nothing for one that is sound.
std::optional<JsonProblem> findJsonProblem(std::string_view text, std::size_t maxDepth);

}  // namespace vornwout
