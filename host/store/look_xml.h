// The attributes that say how a text of a table looks, for writing and reading stored contents:
// color, background, bold, italic, underlined, font, size.
//
// A flag is written where it is set, also to false, as that switches off what the table's own look
// says. Reading a large table is a matter of its cells, and cells near each other mostly look
// alike, or look alike in turn, as in columns: a LookReader compares the attributes with those of
// the few looks before, and where they are the same gives that look once more instead of making
// one.
#pragma once

#include <cstddef>
#include <vector>

#include <pugixml.hpp>

#include "host/store/xml_writer.h"
#include "platform/pivot/text_look.h"

namespace vornwout {

/// Writes the attributes into the element that was just started. A size above what a reader takes
/// becomes the largest that it takes.
void writeLook(XmlWriter& xml, const SharedLook& look);

/// Reads the looks of one table; the elements must outlive it.
class LookReader {
 public:
  /// Keeps the attribute for look() if it is one of a look.
  void note(pugi::xml_attribute attribute);
  /// The look that the noted attributes of `node` say, which are forgotten then.
  SharedLook look(pugi::xml_node node);
  /// The look that the attributes of `node` say.
  SharedLook read(pugi::xml_node node);

 private:
  /// A look that was made, and the attributes that say it.
  struct Known {
    std::vector<pugi::xml_attribute> attributes;
    SharedLook look;
  };
  static constexpr std::size_t kKept = 8;

  std::vector<pugi::xml_attribute> noted_;
  std::vector<Known> known_;  ///< the last ones that were made
  std::size_t last_ = 0;      ///< the one that was given last
  std::size_t made_ = 0;
};

}  // namespace vornwout
