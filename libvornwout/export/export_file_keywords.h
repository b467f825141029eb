// The two file keywords of OUTPUT EXPORT: IMAGEROOT of the images, DOCUMENTFILE of the documents.
//
// Both accept a file handle as the first component of a path and make a relative one absolute.
#pragma once

#include <string>

#include "libvornwout/export/export_keywords.h"

namespace vornwout {

/// Reads IMAGEROOT, the path with which the names of the image files begin. True when it was read;
/// false for an absent subcommand, and after reporting a value that is none or, where it is
/// `required`, a missing keyword.
bool readImageRoot(std::string& imageRoot, const SubComObj* subcommand,
                   const ParserMessage& messages, bool required);

/// Reads DOCUMENTFILE. True when it was read and the file can be written; `*fileExists` then tells
/// whether something is there. False for an absent subcommand and after reporting what is wrong;
/// `documentFile` stays as it is.
bool readDocumentFile(std::string& documentFile, const SubComObj* subcommand,
                      const ParserMessage& messages, bool* fileExists);

/// Reads IMAGEROOT into the command's one and into the option's.
inline void readImageRootInto(ImageOption& option, std::string& imageRoot,
                              const SubComObj& subcommand, const ParserMessage& messages,
                              bool required) {
  if (readImageRoot(imageRoot, &subcommand, messages, required)) option.setImageRoot(imageRoot);
}

/// Reads DOCUMENTFILE into the command's one and into the option's; false after reporting.
inline bool readDocumentFileInto(DocumentOption& option, std::string& documentFile,
                                 const SubComObj& subcommand, const ParserMessage& messages,
                                 bool* fileExists = nullptr) {
  bool exists = false;
  const bool isRead = readDocumentFile(documentFile, &subcommand, messages, &exists);
  if (isRead) option.setDocumentFile(documentFile);
  if (fileExists != nullptr) *fileExists = exists;
  return isRead;
}

}  // namespace vornwout
