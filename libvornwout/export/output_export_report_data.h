// REPORT: a web report, with a title, links, and what is left out of it.
//
// Its document file and title are set escaped for HTML, its links as they are.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportReportData {
 public:
  /// Declares the subcommand.
  OutputExportReportData(CommandDescriptor& command, ExportReportSpec& option);

  /// 1 when the subcommand was given and everything in it accepted, else 0. `documentFile` becomes
  /// the file that it names.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            std::string& documentFile);

 private:
  /// Each false after reporting a value that is refused.
  bool readTitle(const SubComObj& subcommand, const ParserMessage& messages,
                 const std::string& escapedPath);
  bool readLinks(const SubComObj& subcommand, const ParserMessage& messages);
  void readExcluded(const SubComObj& subcommand);

  ExportReportSpec& option_;
};

}  // namespace vornwout
