// The text of a modify document as XML, and how a refusal of it is put.
//
// Entry points: parseRequest(), refuseAt(). What is wrong within an embedded file is said of the
// file: the user knows it, and has never seen the document.
#pragma once

#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace vornwout {

/// Parses the whole text, entities left as they are. Throws ChangeError for what is not
/// well-formed.
void parseRequest(std::string_view xml, pugi::xml_document& document);

/// Throws a ChangeError that says first where it is about, then what is wrong. Of `foreign`, which
/// stands at "{}" in `what`, as much is shown as a message has room for.
[[noreturn]] void refuseAt(const std::string& place, std::string_view what,
                           std::string_view foreign = {});

/// The place of an error in an embedded file, of which `name` is what it is called.
std::string inFile(const std::string& name);

/// Bytes of the document for a message, which shows whatever came: UTF-8, or else the job's
/// encoding; with a sign for each control character.
std::string shownBytes(std::string_view bytes);

}  // namespace vornwout
