// Runs OUTPUT MODIFY on one group and gives what it wrote of it or why it refused it.
#pragma once

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/command_run.h"
#include "vornwout/entry_points.h"

namespace vornwout {

/// The elements of the one event that "OUTPUT MODIFY /SELECT TABLES <groupText>." sends: what
/// stands between the event's start tag and its end tag. A test fails when nothing was sent, more
/// than one document, or a document of another shape.
inline std::string elementOf(const std::string& groupText) {
  const std::string text = "OUTPUT MODIFY /SELECT TABLES " + groupText + ".";
  FakeHost host;
  const CommandRun run(outmodify_, text, &host);
  for (const std::string& call : run.parserCalls()) ADD_FAILURE() << text << " says " << call;
  if (host.modifyDocuments.size() != 1) {
    ADD_FAILURE() << text << " sent " << host.modifyDocuments.size() << " documents";
    return {};
  }
  const std::string& document = host.modifyDocuments.front();
  const std::size_t tag = document.find("<modifyEvent");
  const std::size_t start = document.find('>', tag);
  const std::size_t end = document.find("</modifyEvent>");
  if (tag == std::string::npos || start == std::string::npos || end == std::string::npos ||
      start > end) {
    ADD_FAILURE() << text << " sent " << document;
    return {};
  }
  return document.substr(start + 1, end - start - 1);
}

/// What the parser's messages say of "OUTPUT MODIFY /SELECT TABLES <groupText>.", each as
/// "Operation(arg, arg)". A test fails when a document was sent all the same.
inline std::vector<std::string> refusalsOf(const std::string& groupText) {
  const std::string text = "OUTPUT MODIFY /SELECT TABLES " + groupText + ".";
  FakeHost host;
  const CommandRun run(outmodify_, text, &host);
  for (const std::string& document : host.modifyDocuments) {
    ADD_FAILURE() << text << " sent " << document;
  }
  return run.parserCalls();
}

/// The texts of the same messages, as a person reads them.
inline std::vector<std::string> refusalTextsOf(const std::string& groupText) {
  FakeHost host;
  const CommandRun run(outmodify_, "OUTPUT MODIFY /SELECT TABLES " + groupText + ".", &host);
  EXPECT_EQ(host.modifyDocuments.size(), 0U) << groupText;
  std::vector<std::string> texts;
  for (const ParserMessageRecord& message : run.parserMessages) texts.push_back(message.text);
  return texts;
}

/// The one document that "OUTPUT MODIFY <arguments>." sends; a test fails when something is said.
inline std::string documentOf(const std::string& arguments) {
  const std::string text = "OUTPUT MODIFY " + arguments + ".";
  FakeHost host;
  const CommandRun run(outmodify_, text, &host);
  for (const std::string& call : run.parserCalls()) ADD_FAILURE() << text << " says " << call;
  EXPECT_EQ(host.modifyDocuments.size(), 1U) << text;
  return host.modifyDocuments.empty() ? std::string() : host.modifyDocuments.front();
}

/// Takes what is written to standard output while it lives.
class CapturedOutput {
 public:
  CapturedOutput() : original_(std::cout.rdbuf(taken_.rdbuf())) {}
  ~CapturedOutput() { std::cout.rdbuf(original_); }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  std::string text() const { return taken_.str(); }

 private:
  std::ostringstream taken_;
  std::streambuf* original_;
};

}  // namespace vornwout
