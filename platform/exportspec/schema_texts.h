// The schemas in docs/ as the build embeds them.
#pragma once

#include <string_view>

namespace vornwout {

std::string_view exportDocumentSchema();
std::string_view exportResponseSchema();

}  // namespace vornwout
