// Carries out OUTPUT EXPORT: finds the document, makes the files, and says how it went.
#pragma once

#include "host/controller/output_controller.h"
#include "platform/exportspec/export_spec.h"
#include "platform/exportspec/response_spec.h"

namespace vornwout {

/// The texts of `spec` are UTF-8. What the response has a code for is answered with it; for
/// everything else throws std::runtime_error with a reason that goes on behind "because". Files are
/// put in place only when all of them are whole.
ExportResponse exportOutput(const ExportSpec& spec, OutputController& controller);

}  // namespace vornwout
