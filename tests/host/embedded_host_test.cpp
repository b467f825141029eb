#include "host/controller/embedded_host.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "platform/text/encoding.h"

namespace vornwout {
namespace {

bool send(EmbeddedHost& host, OutputControllerCommand command, const char* name) {
  VornwMsgOutputControllerResponse response;
  return host.GetOutputController()->SendRequest(
      {1, command, name, "", OutputDocumentMinimized::kNotApplicable}, response);
}

TEST(EmbeddedHost, ExpandsPathsAndHasAController) {
  EmbeddedHost host;
  EXPECT_FALSE(host.IsPathExpansionSuppressed());
  EXPECT_NE(host.GetOutputController(), nullptr);
}

TEST(EmbeddedHost, RequestsAndOutputReachTheSameDocuments) {
  EmbeddedHost host;
  const AdapterRegistration adapter(&host);
  const SinkRegistration sink(host.sink());
  ASSERT_EQ(GetAdapter(), &host);
  ASSERT_TRUE(send(host, OutputControllerCommand::kNew, "a"));
  host.setCommandLog("OUTPUT COMMENT", "output comment.");
  for (OutputSink* registered : outputSinks()) {
    registered->procedureOpened({"Output Comment", 2});
    registered->table(std::make_shared<PivotTable>());
    registered->procedureClosed({"Output Comment", 2});
  }
  ASSERT_EQ(host.documents().size(), 1u);
  EXPECT_EQ(host.activeDocument(), host.documents()[0]);
  const auto& objects = host.activeDocument()->root().children;
  ASSERT_EQ(objects.size(), 1u);
  EXPECT_EQ(objects[0].label, "Output Comment");
  ASSERT_EQ(objects[0].children.size(), 2u);
  EXPECT_EQ(std::get<LogContent>(objects[0].children[0].content.get()).text, "output comment.");
}

TEST(EmbeddedHost, WhatCannotBeDoneIsRefusedInWords) {
  EmbeddedHost host;
  const auto textOf = [](auto&& call) {
    try {
      call();
    } catch (const std::runtime_error& error) {
      return std::string(error.what());
    }
    return std::string("nothing was thrown");
  };
  EXPECT_EQ(textOf([&] { host.ModifyOutput("<x/>"); }), "because what came is no modify document");
  const auto modify = [&](const std::string& name) {
    return textOf(
        [&] { host.ModifyOutput("<modifyOutputObject documentName=\"" + name + "\"/>"); });
  };
  EXPECT_EQ(modify("*"), "because no output document is open");
  EXPECT_EQ(modify(""), "because no output document is open");
  EXPECT_EQ(modify("a &amp; b"), "because there is no open output document named a & b");
  EXPECT_EQ(modify(std::string(100, 'x')),
            "because there is no open output document named " + std::string(23, 'x') + "…");
  EXPECT_NE(textOf([&] { host.ExportOutput("<x/>"); }), "nothing was thrown");
}

TEST(EmbeddedHost, RefusalIsInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EmbeddedHost host;
  ASSERT_TRUE(send(host, OutputControllerCommand::kNew, "a"));
  const auto refusalOf = [&](const std::string& name, const std::string& events) {
    try {
      host.ModifyOutput("<modifyOutputObject documentName=\"" + name + "\">" + events +
                        "</modifyOutputObject>");
    } catch (const std::runtime_error& error) {
      return std::string(error.what());
    }
    return std::string("nothing was thrown");
  };
  // The name and the style sheet come in UTF-8, the condition in the job's encoding.
  EXPECT_EQ(refusalOf("m\xC3\xBCller", ""),
            "because there is no open output document named m\xFCller");
  EXPECT_EQ(refusalOf("a",
                      "<modifyEvent><modifyGraph styleSheet=\"\xC3\xBC"
                      "ber\"></modifyGraph></modifyEvent>"),
            "because there is no style sheet \xFC"
            "ber in the Looks folder");
  EXPECT_EQ(refusalOf("a",
                      "<modifyEvent><tableCells selectColumns=\"both\" "
                      "selectCondition=\"x>\xFC\"/></modifyEvent>")
                .find('\xC3'),
            std::string::npos);
}

TEST(EmbeddedHost, ActiveDocumentIsLabelledWhereThatTellsSomething) {
  EmbeddedHost host;
  EXPECT_EQ(host.activeDocumentLabel(), std::nullopt);
  send(host, OutputControllerCommand::kNew, "");
  EXPECT_EQ(host.activeDocumentLabel(), std::nullopt) << "the only one, and unnamed";
  send(host, OutputControllerCommand::kNew, "b");
  EXPECT_EQ(host.activeDocumentLabel(), "b");
  send(host, OutputControllerCommand::kNew, "");
  EXPECT_EQ(host.activeDocumentLabel(), "unnamed document 3");
}

}  // namespace
}  // namespace vornwout
