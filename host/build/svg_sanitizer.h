// Takes out of an SVG chart whatever could run, load or lead elsewhere.
//
// Entry point: sanitizeSvg(). What stays is on a list: elements of SVG that draw, style, describe
// and animate; metadata in RDF. Of the attributes those go that handle events, that refer outside,
// and that would change what a reference means. Style sheets lose their imports and external
// addresses. References within the chart and embedded pictures stay. A chart that is drawn without
// any of this is the same afterwards, and sanitizing twice gives what sanitizing once gives.
//
// Why it holds: names are compared in their namespace, values after entities, blanks and control
// characters have been resolved, style sheets after comments and escapes have been; what cannot be
// judged is taken out as a whole. The result is written by an XML writer that escapes everything.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vornwout {

inline constexpr std::size_t kMaxSvgBytes = std::size_t{64} << 20;
inline constexpr int kMaxSvgDepth = 200;

/// Why a chart is refused, one sentence.
class SvgError : public std::runtime_error {
 public:
  /// `offset` is the byte of the text that it is about, where that is known.
  explicit SvgError(const std::string& text, std::size_t offset = std::string::npos)
      : std::runtime_error(text), offset_(offset) {}
  std::size_t offset() const { return offset_; }

 private:
  std::size_t offset_;
};

/// The chart as UTF-8. Throws SvgError for what is not well-formed XML, no SVG, too large, nested
/// too deep, or has a document type with declarations of its own.
std::string sanitizeSvg(std::string_view svg);

}  // namespace vornwout
