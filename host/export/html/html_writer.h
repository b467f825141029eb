// Writes HTML into a string: elements, attributes and texts, with the one escaper of HTML.
//
// Texts come from anywhere. Whatever they hold becomes text: characters that mean something to HTML
// are escaped, bytes that are no UTF-8 and control characters become U+FFFD, and a link goes only
// where a reader may be sent. Names of elements and attributes are the program's own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/pivot/cell_color.h"

namespace vornwout {

/// The text for use between tags and in quoted attributes.
std::string escapedHtml(std::string_view utf8);

/// Whether a link may go there: http, https and mailto, and places in the page itself.
bool isSafeLink(std::string_view target);

/// Whether a text has letters that run from right to left.
bool mayTurn(std::string_view utf8);

/// "#rrggbb".
std::string htmlColor(Rgb color);

/// Takes what was written so far, which is then forgotten.
using HtmlReceiver = std::function<void(std::string_view html)>;

class HtmlWriter {
 public:
  /// Appends to `out`, which must outlive the writer.
  explicit HtmlWriter(std::string& out) : out_(out) {}

  /// From now on what `out` holds goes to `receive` whenever it has become much, so that a page can
  /// be larger than memory. What is left at the end is the caller's.
  void sendTo(HtmlReceiver receive) { receive_ = std::move(receive); }
  /// Writes no more class and style attributes.
  void makePlain() { isPlain_ = true; }
  bool isPlain() const { return isPlain_; }

  /// Starts an element; attributes may follow until something stands in it.
  void start(std::string_view name);
  /// Ends an element that is not void.
  void end(std::string_view name);

  void attribute(std::string_view name, std::string_view value);
  void attribute(std::string_view name, std::int64_t value);
  void optionalAttribute(std::string_view name, std::string_view value) {
    if (!value.empty()) attribute(name, value);
  }

  /// Lets a text that may turn decide by itself in which direction it runs; an attribute of the
  /// element that it is to stand in.
  void direction(std::string_view utf8) {
    if (mayTurn(utf8)) attribute("dir", "auto");
  }

  void text(std::string_view utf8);
  /// A text with line ends that show, also where no style says so.
  void lines(std::string_view utf8);
  /// An element with nothing but a text in it, which decides in which direction it runs.
  void element(std::string_view name, std::string_view utf8, std::string_view cssClass = {});
  /// Takes `html` over as it stands: the program's own text, or one that was written by a writer.
  void raw(std::string_view html);
  /// A line break between elements, for a reader of the source.
  void newLine();

 private:
  void close();

  std::string& out_;
  HtmlReceiver receive_;
  bool isPlain_ = false;
  bool isOpen_ = false;  ///< the last start tag still takes attributes
};

}  // namespace vornwout
