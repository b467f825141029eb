// Reads the modify document: readModifyRequest().
//
// It bears with what the document's writers deliberately leave as it is: "&" and "<" in attribute
// values, bytes of the job's encoding where UTF-8 is due, two attributes of one name, embedded
// files of any form that XML allows. What remains is strict: an element, an attribute or a value
// that the format does not have is refused with its place, since it would be a wish that nobody
// carries out.
#pragma once

#include <string>

#include "host/changes/modify_request.h"

namespace vornwout {

/// Throws ChangeError, whose text names the place.
ModifyRequest readModifyRequest(const std::string& xml);

}  // namespace vornwout
