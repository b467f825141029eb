// Looks whether bytes are a sound PNG picture, without decoding it.
//
// Entry point: pngProblem(). The chunks are walked: signature, lengths, checksums, order, a header
// within bounds, nothing behind the end. The pixels' compression is left to whoever draws them; the
// bounds on the header limit what that can cost.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// Why the bytes are no PNG picture that is taken, one sentence; empty when they are one.
std::string pngProblem(std::string_view bytes);

/// Whether the bytes start as a PNG file does.
bool hasPngSignature(std::string_view bytes);

}  // namespace vornwout
