#include "host/controller/output_controller.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/text/encoding.h"

namespace vornwout {
namespace {

using Command = OutputControllerCommand;
using Minimized = OutputDocumentMinimized;

struct Answer {
  bool isOk;
  int severity;
  std::string message;
  std::string argument;
  std::vector<std::string> documents;  // "*" before the active one
};

class OutputControllerTest : public testing::Test {
 protected:
  Answer send(Command command, const std::string& name,
              Minimized minimized = Minimized::kNotApplicable) {
    return exchange({1, command, name.c_str(), "", minimized});
  }

  Answer exchange(const VornwMsgOutputControllerRequest& request) {
    VornwMsgOutputControllerResponse response;
    Answer answer{};
    answer.isOk = controller_.SendRequest(request, response);
    answer.severity = response.GetErrorSeverity();
    answer.message = response.GetMsgString();
    answer.argument = response.GetArgumentString();
    for (int i = 0; i < response.GetOutputDocumentCount(); ++i) {
      const OutputDocumentItem* item = response.GetOutputDocumentItem(i);
      answer.documents.push_back((item->active ? "*" : "") + std::string(item->name.view()));
    }
    return answer;
  }

  const Document& document(std::ptrdiff_t index) const {
    return std::next(controller_.documents().begin(), index)->document;
  }

  std::vector<std::string> open() { return send(Command::kDisplay, "").documents; }

  void expectFailure(const Answer& answer, const std::string& message,
                     const std::string& argument) {
    EXPECT_FALSE(answer.isOk);
    EXPECT_EQ(answer.severity, 3);
    EXPECT_EQ(answer.message, message);
    EXPECT_EQ(answer.argument, argument);
  }

  OutputController controller_;
};

using Names = std::vector<std::string>;

constexpr const char* kInvalidName =
    "^1 is not a valid name for an output document: a name starts with a letter, goes on with "
    "letters, digits and the characters . _ $ # @, and does not end with a period.";

TEST_F(OutputControllerTest, NothingIsOpenAtFirst) {
  EXPECT_EQ(open(), Names{});
  EXPECT_EQ(controller_.activeDocument(), nullptr);
}

TEST_F(OutputControllerTest, NewDocumentIsActive) {
  EXPECT_TRUE(send(Command::kNew, "a", Minimized::kNo).isOk);
  EXPECT_TRUE(send(Command::kNew, "b", Minimized::kYes).isOk);
  EXPECT_EQ(open(), (Names{"a", "*b"}));
  EXPECT_FALSE(document(0).isMinimized());
  EXPECT_TRUE(document(1).isMinimized());
}

TEST_F(OutputControllerTest, SeveralUnnamedDocumentsMayBeOpen) {
  EXPECT_TRUE(send(Command::kNew, "").isOk);
  EXPECT_TRUE(send(Command::kNew, "").isOk);
  EXPECT_EQ(open(), (Names{"", "*"}));
  EXPECT_EQ(document(0).number(), 1);
  EXPECT_EQ(document(1).number(), 2);
}

TEST_F(OutputControllerTest, NewWithAUsedNameFailsInAnyCase) {
  send(Command::kNew, "Übersicht");
  expectFailure(send(Command::kNew, "üBERSICHT"), "An open output document is already named ^1.",
                "üBERSICHT");
  EXPECT_EQ(open(), (Names{"*Übersicht"}));
}

TEST_F(OutputControllerTest, NamesWhereOneStartsWithTheOtherDiffer) {
  EXPECT_TRUE(send(Command::kNew, "abc").isOk);
  EXPECT_TRUE(send(Command::kNew, "ab").isOk);
  EXPECT_TRUE(send(Command::kNew, "abcd").isOk);
  EXPECT_EQ(open().size(), 3u);
}

TEST_F(OutputControllerTest, InvalidNamesAreRefused) {
  for (const char* name : {"*", "1a", "a.", "a b", "\xff\xfe"}) {
    SCOPED_TRACE(name);
    expectFailure(send(Command::kNew, name), kInvalidName, name);
    expectFailure(send(Command::kName, name), kInvalidName, name);
  }
  EXPECT_EQ(open(), Names{});
}

TEST_F(OutputControllerTest, FormerNameIsFreeAgain) {
  send(Command::kNew, "a");
  EXPECT_TRUE(send(Command::kName, "b").isOk);
  EXPECT_FALSE(send(Command::kActivate, "a").isOk);
  EXPECT_TRUE(send(Command::kNew, "A").isOk);
  EXPECT_TRUE(send(Command::kActivate, "B").isOk);
  EXPECT_EQ(open(), (Names{"*b", "A"}));
}

TEST_F(OutputControllerTest, NameInAnotherCaseStaysFindable) {
  send(Command::kNew, "a");
  EXPECT_TRUE(send(Command::kName, "A").isOk);
  EXPECT_TRUE(send(Command::kActivate, "a").isOk);
  EXPECT_FALSE(send(Command::kNew, "a").isOk);
  EXPECT_EQ(open(), (Names{"*A"}));
}

TEST_F(OutputControllerTest, NameOfAClosedDocumentIsFreeAgain) {
  for (const char* closed : {"a", "*", "ALL"}) {
    SCOPED_TRACE(closed);
    EXPECT_TRUE(send(Command::kNew, "A").isOk);
    EXPECT_TRUE(send(Command::kClose, closed).isOk);
    EXPECT_FALSE(send(Command::kActivate, "a").isOk);
  }
}

TEST_F(OutputControllerTest, ManyDocumentsCostTimeInProportion) {
  constexpr int kDocuments = 40'000;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kDocuments; ++i) {
    ASSERT_TRUE(send(Command::kNew, "d" + std::to_string(i)).isOk);
  }
  for (int i = 0; i < kDocuments; ++i) {
    ASSERT_FALSE(send(Command::kNew, "D" + std::to_string(i)).isOk);
  }
  // Names compared one by one took more than five seconds for the first half alone.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

TEST_F(OutputControllerTest, AllIsAValidName) {
  EXPECT_TRUE(send(Command::kName, "all").isOk);
  EXPECT_EQ(open(), (Names{"*all"}));
}

TEST_F(OutputControllerTest, NameWithoutADocumentMakesOne) {
  EXPECT_TRUE(send(Command::kName, "a", Minimized::kNo).isOk);
  EXPECT_EQ(open(), (Names{"*a"}));
  EXPECT_FALSE(controller_.activeDocument()->isMinimized());
}

TEST_F(OutputControllerTest, NameRenamesTheActiveDocument) {
  send(Command::kNew, "a");
  send(Command::kNew, "b");
  EXPECT_TRUE(send(Command::kName, "c").isOk);
  EXPECT_EQ(open(), (Names{"a", "*c"}));
  EXPECT_TRUE(send(Command::kNew, "b").isOk) << "the old name is free again";
}

TEST_F(OutputControllerTest, RenamingToTheOwnNameIsFine) {
  send(Command::kNew, "a");
  EXPECT_TRUE(send(Command::kName, "A").isOk);
  EXPECT_EQ(open(), (Names{"*A"}));
}

TEST_F(OutputControllerTest, NameOfAnotherDocumentIsRefused) {
  send(Command::kNew, "a");
  send(Command::kNew, "b");
  expectFailure(send(Command::kName, "A"), "An open output document is already named ^1.", "A");
  EXPECT_EQ(open(), (Names{"a", "*b"}));
}

TEST_F(OutputControllerTest, EmptyNameIsRefused) {
  expectFailure(send(Command::kName, ""),
                "OUTPUT NAME needs a name for the active output document.", "");
  EXPECT_EQ(open(), Names{});
}

TEST_F(OutputControllerTest, NameMinimizesButDoesNotRestore) {
  send(Command::kNew, "a");
  send(Command::kName, "b", Minimized::kYes);
  EXPECT_TRUE(controller_.activeDocument()->isMinimized());
  send(Command::kName, "c", Minimized::kNo);
  EXPECT_TRUE(controller_.activeDocument()->isMinimized());
}

TEST_F(OutputControllerTest, ActivateFindsTheNameInAnyCase) {
  send(Command::kNew, "first");
  send(Command::kNew, "second");
  EXPECT_TRUE(send(Command::kActivate, "FIRST", Minimized::kNo).isOk);
  EXPECT_EQ(open(), (Names{"*first", "second"}));
}

TEST_F(OutputControllerTest, ActivateMinimizesAndRestores) {
  send(Command::kNew, "a");
  send(Command::kActivate, "a", Minimized::kYes);
  EXPECT_TRUE(controller_.activeDocument()->isMinimized());
  send(Command::kActivate, "a", Minimized::kNotApplicable);
  EXPECT_TRUE(controller_.activeDocument()->isMinimized());
  send(Command::kActivate, "*", Minimized::kNo);
  EXPECT_FALSE(controller_.activeDocument()->isMinimized());
}

TEST_F(OutputControllerTest, ActivateRefusesWhatAddressesNothing) {
  expectFailure(send(Command::kActivate, "*"), "No output documents are open.", "");
  send(Command::kNew, "");
  expectFailure(
      send(Command::kActivate, ""),
      "OUTPUT ACTIVATE needs the name of an open output document, or * for the active one.", "");
  expectFailure(send(Command::kActivate, "b"), "There is no open output document named ^1.", "b");
  const std::string longName(100, 'x');
  expectFailure(send(Command::kActivate, longName), "There is no open output document named ^1.",
                longName);
}

TEST_F(OutputControllerTest, ClosingTheActiveDocumentActivatesTheOneBeforeIt) {
  for (const char* name : {"a", "b", "c"}) send(Command::kNew, name);
  send(Command::kActivate, "a");
  EXPECT_TRUE(send(Command::kClose, "*").isOk);
  EXPECT_EQ(open(), (Names{"b", "*c"}));
  EXPECT_TRUE(send(Command::kClose, "C").isOk);
  EXPECT_EQ(open(), (Names{"*b"}));
  EXPECT_TRUE(send(Command::kClose, "b").isOk);
  EXPECT_EQ(open(), Names{});
}

TEST_F(OutputControllerTest, ClosingAnotherDocumentLeavesTheActiveOne) {
  for (const char* name : {"a", "b", "c"}) send(Command::kNew, name);
  EXPECT_TRUE(send(Command::kClose, "b").isOk);
  EXPECT_EQ(open(), (Names{"a", "*c"}));
  send(Command::kClose, "c");
  EXPECT_EQ(open(), (Names{"*a"}));
}

TEST_F(OutputControllerTest, CloseAllClosesEveryDocumentAndIsFineWithoutAny) {
  EXPECT_TRUE(send(Command::kClose, "ALL").isOk);
  for (const char* name : {"a", "", "all"}) send(Command::kNew, name);
  EXPECT_TRUE(send(Command::kClose, "ALL").isOk);
  EXPECT_EQ(open(), Names{});
  EXPECT_EQ(controller_.activeDocument(), nullptr);
}

TEST_F(OutputControllerTest, CloseRefusesWhatAddressesNothing) {
  expectFailure(send(Command::kClose, "*"), "No output documents are open.", "");
  expectFailure(send(Command::kClose, ""),
                "OUTPUT CLOSE needs the name of an open output document, * for the active one, or "
                "ALL for all of them.",
                "");
  expectFailure(send(Command::kClose, "a"), "There is no open output document named ^1.", "a");
}

TEST_F(OutputControllerTest, UnknownCommandIsRefused) {
  expectFailure(send(static_cast<Command>(7), ""), "The request's command ^1 is unknown.", "7");
}

TEST_F(OutputControllerTest, TextsTravelInTheCurrentEncoding) {
  const auto latin = Encoding::find("windows-1252");
  ASSERT_NE(latin, nullptr);
  const ScopedEncoding scope(latin);
  EXPECT_TRUE(send(Command::kNew, "\xC9t\xE9").isOk);
  EXPECT_EQ(controller_.activeDocument()->name(), "Été");
  EXPECT_EQ(open(), (Names{"*\xC9t\xE9"}));
  expectFailure(send(Command::kActivate, "\xE4"), "There is no open output document named ^1.",
                "\xE4");
}

TEST_F(OutputControllerTest, ANameThatIsNotValidComesBackInItsOwnBytes) {
  // Shift-JIS has no replacement character, so the way to UTF-8 and back would make a "?" of it.
  const ScopedEncoding scope(Encoding::find("Shift-JIS"));
  expectFailure(send(Command::kActivate, "\x83"), "There is no open output document named ^1.",
                "\x83");
  expectFailure(send(Command::kClose, "\x83"), "There is no open output document named ^1.",
                "\x83");
}

TEST_F(OutputControllerTest, OutputMakesADocumentOnlyWhereNoneIsOpen) {
  Document& made = controller_.documentForOutput();
  EXPECT_EQ(made.name(), "");
  EXPECT_EQ(&controller_.documentForOutput(), &made);
  EXPECT_EQ(open(), (Names{"*"}));
}

}  // namespace
}  // namespace vornwout
