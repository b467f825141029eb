// What an object of a document holds, on a terminal.
//
// Tables look as they do when a job makes them, layer by layer. Charts and models cannot be drawn
// there: a line tells what they are, and another how their bytes are had.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "host/document/document_object.h"
#include "runner/terminal/style.h"

namespace vornwout {

/// Where an object stands, for what is told about it.
struct ObjectPlace {
  std::string file;          ///< as the user wrote it
  std::size_t number = 0;    ///< in the outline
  std::string passwordFile;  ///< with which the file is opened; empty for none
};

/// Writes the content, every line ended; nothing for one that holds nothing. `object` says what
/// goes with it and is not read. Returns whether all of it could be shown; what could not says so
/// in its place.
bool printContent(std::ostream& out, const DocumentObject& object, const ObjectContent& content,
                  const ObjectPlace& place, const TerminalStyle& style);

/// A reason why something cannot be shown, in its place.
void printRefusal(std::ostream& out, const std::string& text, const TerminalStyle& style);

/// The extension that files of a media type have, without a period: "svg"; "bin" for any other.
std::string mediaExtension(const std::string& mediaType);

}  // namespace vornwout
