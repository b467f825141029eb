// Reads the modify document: readModifyRequest().
//
// It bears with what the document's writers deliberately leave as it is: "&" and "<" in attribute
// values, texts in the job's encoding, conditions and excepted types that stand twice, embedded
// files of any form that XML allows. Encoding and escapes go by the attribute, never by what a
// value looks like. What remains is strict: an element, an attribute or a value that the format
// does not have, or not there, is refused with its place, since it would be a wish that nobody
// carries out, or one that an embedded file slipped in.
#pragma once

#include <string>

#include "host/changes/modify_request.h"

namespace vornwout {

/// Throws ChangeError, whose text names the place.
ModifyRequest readModifyRequest(const std::string& xml);

}  // namespace vornwout
