// OUTPUT OPEN and OUTPUT SAVE as requests to the embedded host's controller.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/controller/output_controller.h"
#include "host/store/container_reader.h"
#include "host/store/document_store.h"
#include "host/store/password_form.h"
#include "host/store/store_error.h"
#include "platform/adapter/output_sink.h"
#include "platform/adapter/progress_listener.h"
#include "platform/files/path_context.h"
#include "platform/text/encoding.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

using Lock = OutputDocumentLock;

struct FileRequestFields {
  std::string name;
  std::string path;
  Lock lock = Lock::kUnspecified;
  OutputDocumentMinimized minimized = OutputDocumentMinimized::kNo;
  OutputDocumentType type = OutputDocumentType::kUnspecified;
  std::string password;
  OutputDocumentEncryptPW encryptPassword = OutputDocumentEncryptPW::kNo;
  YesNoEnum storeModel = YesNoEnum::kYes;
};

/// Hears what goes into the output, each message behind its level.
class RecordingMessages : public OutputSink {
 public:
  void outputMessage(const OutputMessageRecord& message) override {
    texts.push_back(std::to_string(message.level) + ": " + message.shownText());
  }

  std::vector<std::string> texts;

 private:
  SinkRegistration registration_{*this};
};

class DocumentRequestsTest : public testing::Test {
 protected:
  DocumentRequestsTest() { setenv("XDG_CONFIG_HOME", (folder_.file("config")).c_str(), 1); }
  ~DocumentRequestsTest() override { unsetenv("XDG_CONFIG_HOME"); }

  /// The answer: empty when the request was carried out, else the message with its argument.
  std::string send(OutputControllerCommand command, const FileRequestFields& fields,
                   OutputController* controller = nullptr) {
    VornwMsgOutputControllerResponse response;
    const VornwMsgOutputControllerRequest request(
        1, command, fields.name.c_str(), fields.path.c_str(), fields.lock, fields.minimized,
        fields.type, fields.password.c_str(), fields.encryptPassword, fields.storeModel);
    OutputController& target = controller != nullptr ? *controller : controller_;
    if (target.SendRequest(request, response)) return {};
    EXPECT_EQ(response.GetErrorSeverity(), 3);
    std::string text(response.GetMsgString().view());
    const std::string argument(response.GetArgumentString().view());
    const std::size_t place = text.find("^1");
    if (place != std::string::npos) text.replace(place, 2, argument);
    return text;
  }
  std::string open(const FileRequestFields& fields) {
    return send(OutputControllerCommand::kOpen, fields);
  }
  std::string save(const FileRequestFields& fields) {
    return send(OutputControllerCommand::kSave, fields);
  }
  std::string close(const std::string& name) {
    return send(OutputControllerCommand::kClose, {name});
  }

  /// Makes a document with one log and makes it active.
  void make(const std::string& name, const std::string& text = "text") {
    ASSERT_EQ(send(OutputControllerCommand::kNew, {name}), "");
    DocumentObject log;
    log.type = ObjectType::kLog;
    log.label = name;
    log.content = ObjectContent(LogContent{text});
    controller_.activeDocument()->append(std::move(log));
    controller_.activeDocument()->beginRun("BUILD");
  }

  std::string activeText() {
    return controller_.activeDocument()->root().children.at(0).content.as<LogContent>()->text;
  }

  /// Whether another process could lock the file.
  bool isFree(const std::string& path) {
    const pid_t child = fork();
    if (child == 0) _exit(FileLock::tryLock(path).has_value() ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return WEXITSTATUS(status) == 0;
  }

  ScratchDirectory folder_;
  std::string path_ = folder_.file("report.qxv");
  OutputController controller_;
};

TEST_F(DocumentRequestsTest, ASavedDocumentCanBeOpened) {
  make("sales");
  ASSERT_EQ(save({"sales", path_}), "");
  ASSERT_EQ(open({"again", path_, Lock::kLocked, OutputDocumentMinimized::kYes}), "");
  EXPECT_EQ(controller_.activeDocument()->name(), "again");
  EXPECT_TRUE(controller_.activeDocument()->isMinimized());
  EXPECT_EQ(activeText(), "text");
  // The next run of a command gets the number behind the stored ones.
  EXPECT_EQ(controller_.activeDocument()->beginRun("BUILD"), 2);
}

TEST_F(DocumentRequestsTest, BackslashesSeparateFolders) {
  make("sales");
  std::string path = path_;
  std::replace(path.begin(), path.end(), '/', '\\');
  ASSERT_EQ(save({"", path}), "");
  EXPECT_TRUE(std::filesystem::exists(path_));
  EXPECT_EQ(open({"", path}), "");
}

TEST_F(DocumentRequestsTest, AHandleThatWasWrittenInAnotherCaseIsNamed) {
  PathContext paths;
  paths.workingDirectory = folder_.path();
  paths.handles = {{"OUT", "/elsewhere"}};
  const ScopedPathContext context(paths);
  make("sales");
  const std::string hint = " There is a file handle OUT; case matters in its name.";
  const std::string path = folder_.file("out/a.qxv");
  EXPECT_THAT(save({"", path}), testing::EndsWith(hint));
  EXPECT_THAT(open({"", path}), testing::EndsWith(hint));
  EXPECT_THAT(save({"", folder_.path() + "\\out\\a.qxv"}), testing::EndsWith(hint));
  for (const char* other : {"OUT/a.qxv", "other/a.qxv", "x/out/a.qxv"}) {
    EXPECT_THAT(save({"", folder_.file(other)}), testing::Not(testing::HasSubstr("handle")));
  }
  // What is there was found; something else is wrong with it.
  std::filesystem::create_directory(folder_.file("out"));
  FileRequestFields fields{"", path};
  fields.password = "s3cret";
  ASSERT_EQ(save(fields), "");
  EXPECT_THAT(open({"", path}), testing::Not(testing::HasSubstr("handle")));
}

TEST_F(DocumentRequestsTest, ANameThatIsTooLongIsSaidToBe) {
  make("sales");
  const std::string name = std::string(252, 'n') + ".qxv";
  const std::string path = folder_.file(name);
  EXPECT_EQ(save({"", path}),
            "The output document " + path + " was not saved. The file's name is too long.");
  EXPECT_EQ(save({"", folder_.file(name.substr(1))}), "");
}

TEST_F(DocumentRequestsTest, PathsAreInTheCurrentEncoding) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  make("sales");
  // The second byte of this character is the one of the backslash.
  ASSERT_EQ(save({"", folder_.path() + "\\\x95\x5c.qxv"}), "");
  EXPECT_TRUE(std::filesystem::exists(folder_.file("表.qxv")));
}

TEST_F(DocumentRequestsTest, SavingNeedsAnOpenDocument) {
  EXPECT_EQ(save({"", path_}), "No output documents are open.");
  EXPECT_EQ(save({"*", path_}), "No output documents are open.");
  EXPECT_EQ(save({"sales", path_}), "There is no open output document named sales.");
}

TEST_F(DocumentRequestsTest, SavingTakesTheNamedDocumentElseTheActiveOne) {
  make("first", "one");
  make("second", "two");
  ASSERT_EQ(save({"FIRST", path_}), "");
  ASSERT_EQ(save({"", folder_.file("b.qxv")}), "");
  ASSERT_EQ(open({"", path_}), "");
  EXPECT_EQ(activeText(), "one");
  ASSERT_EQ(open({"", folder_.file("b.qxv")}), "");
  EXPECT_EQ(activeText(), "two");
}

TEST_F(DocumentRequestsTest, TheTypeIsTheGivenOneElseTheExtensions) {
  make("sales");
  const auto isPage = [](const std::string& path) {
    return ContainerReader(path).contains("index.html");
  };
  ASSERT_EQ(save({"", folder_.file("a.qxw")}), "");
  EXPECT_TRUE(isPage(folder_.file("a.qxw")));
  ASSERT_EQ(save({"", folder_.file("b.dat")}), "");
  EXPECT_FALSE(isPage(folder_.file("b.dat")));
  FileRequestFields fields{"", folder_.file("c.qxw")};
  fields.type = OutputDocumentType::kQxv;
  ASSERT_EQ(save(fields), "");
  EXPECT_FALSE(isPage(folder_.file("c.qxw")));
  fields = {"", folder_.file("d.qxv")};
  fields.type = OutputDocumentType::kQxw;
  ASSERT_EQ(save(fields), "");
  EXPECT_TRUE(isPage(folder_.file("d.qxv")));
}

TEST_F(DocumentRequestsTest, AnOpenedDocumentNeedsAFreeAndValidName) {
  make("sales");
  ASSERT_EQ(save({"", path_}), "");
  EXPECT_EQ(open({"SALES", path_}), "An open output document is already named SALES.");
  EXPECT_THAT(open({"1x", path_}), testing::StartsWith("1x is not a valid name"));
  EXPECT_EQ(controller_.documents().size(), 1u);
}

TEST_F(DocumentRequestsTest, WhatCannotBeOpenedIsSaidAndOpensNothing) {
  EXPECT_THAT(open({"", folder_.file("none.qxv"), Lock::kLocked}),
              testing::MatchesRegex("The output document .*/none.qxv was not opened\\. .+\\."));
  EXPECT_THAT(open({"", folder_.file("none.qxv"), Lock::kUnlocked}),
              testing::MatchesRegex("The output document .*/none.qxv was not opened\\. .+\\."));
  folder_.write("text.qxv", "no zip");
  EXPECT_THAT(open({"", folder_.file("text.qxv")}),
              testing::MatchesRegex("The output document .*/text.qxv was not opened\\. .+\\."));
  EXPECT_THAT(open({"", folder_.path()}), testing::HasSubstr("was not opened. "));
  EXPECT_TRUE(controller_.documents().empty());
}

TEST_F(DocumentRequestsTest, WhatCannotBeSavedIsSaid) {
  make("sales");
  EXPECT_THAT(save({"", folder_.file("none/report.qxv")}),
              testing::MatchesRegex("The output document .*/report.qxv was not saved\\. .+\\."));
}

TEST_F(DocumentRequestsTest, APasswordOpensWhatItHasSaved) {
  make("sales");
  FileRequestFields fields{"", path_};
  fields.password = "s3cret";
  ASSERT_EQ(save(fields), "");
  EXPECT_EQ(open({"", path_}),
            "The output document " + path_ +
                " was not opened. The file is encrypted, and no password was given.");
  FileRequestFields wrong = fields;
  wrong.password = "wr0ng!";
  EXPECT_THAT(open(wrong), testing::AllOf(testing::HasSubstr("was not opened. The password"),
                                          testing::Not(testing::HasSubstr("wr0ng!"))));
  EXPECT_EQ(open(fields), "");
}

TEST_F(DocumentRequestsTest, AnEncryptedFormStandsForItsPassword) {
  const PasswordKey key = PasswordKey::loadOrCreate(
      (std::filesystem::create_directories(folder_.file("config/vornwout")),
       defaultPasswordKeyPath()));
  make("sales");
  FileRequestFields fields{"", path_};
  fields.password = encryptPassword(key, "s3cret");
  fields.encryptPassword = OutputDocumentEncryptPW::kYes;
  ASSERT_EQ(save(fields), "");
  EXPECT_NO_THROW(openDocument(path_, {"s3cret"}));
  EXPECT_EQ(open(fields), "");
  FileRequestFields plain = fields;
  plain.password = "s3cret";
  EXPECT_EQ(open(plain), "");
}

TEST_F(DocumentRequestsTest, AFormOfAnotherKeyIsRefused) {
  std::filesystem::create_directories(folder_.file("config/vornwout"));
  const PasswordKey key = PasswordKey::loadOrCreate(defaultPasswordKeyPath());
  make("sales");
  FileRequestFields fields{"", path_};
  fields.encryptPassword = OutputDocumentEncryptPW::kYes;
  // What another key's form gives is random; these stand for it, one rule each.
  for (const std::string_view random :
       {std::string_view("a\0b", 3), std::string_view("a\xFF"), std::string_view("\x1B[2J"),
        std::string_view("\x7F"), std::string_view("\xC2\x85")}) {
    fields.password = encryptPassword(key, random);
    EXPECT_EQ(save(fields), "The output document " + path_ +
                                " was not saved. This form was not made with this user's key (" +
                                defaultPasswordKeyPath() + ").");
    EXPECT_FALSE(std::filesystem::exists(path_));
  }
  fields.password = encryptPassword(key, "Süß~ 10");
  EXPECT_EQ(save(fields), "");
}

TEST_F(DocumentRequestsTest, AWrongPasswordIsSaidBeforeTheKeysTrouble) {
  make("sales");
  FileRequestFields fields{"", path_};
  fields.password = "s3cret";
  ASSERT_EQ(save(fields), "");
  fields.password = "1234";
  const std::string wrong =
      "The output document " + path_ + " was not opened. The password is wrong.";
  EXPECT_EQ(open(fields), wrong);
  std::filesystem::create_directories(folder_.file("config/vornwout"));
  const PasswordKey key = PasswordKey::loadOrCreate(defaultPasswordKeyPath());
  chmod(defaultPasswordKeyPath().c_str(), 0644);
  EXPECT_THAT(open(fields), testing::AllOf(testing::StartsWith(wrong + " "),
                                           testing::HasSubstr("may be read by others")));
  chmod(defaultPasswordKeyPath().c_str(), 0600);
  fields.password = encryptPassword(key, "\x01\x02");
  EXPECT_THAT(open(fields), testing::AllOf(testing::StartsWith(wrong + " "),
                                           testing::HasSubstr("not made with this user's key")));
  unsetenv("XDG_CONFIG_HOME");
  const char* home = std::getenv("HOME");
  const std::string homeBefore = home == nullptr ? "" : home;
  unsetenv("HOME");
  EXPECT_THAT(open(fields), testing::AllOf(testing::StartsWith(wrong + " "),
                                           testing::HasSubstr("There is no place for")));
  if (home != nullptr) setenv("HOME", homeBefore.c_str(), 1);
}

TEST_F(DocumentRequestsTest, APasswordThatLooksLikeAFormIsTriedAsItStandsFirst) {
  make("sales");
  FileRequestFields fields{"", path_};
  fields.password = "ABCD";
  ASSERT_EQ(save(fields), "");
  EXPECT_EQ(open(fields), "");
}

TEST_F(DocumentRequestsTest, AnEncryptedFormMustBeOneAndNeedsTheKey) {
  make("sales");
  FileRequestFields fields{"", path_};
  fields.encryptPassword = OutputDocumentEncryptPW::kYes;
  fields.password = "s3cret";
  EXPECT_EQ(save(fields),
            "The output document " + path_ +
                " was not saved. Its password is not in the encrypted form that vornwout password "
                "makes.");
  fields.password = "ABCD";
  EXPECT_THAT(save(fields), testing::HasSubstr("This user has no key for encrypted passwords"));
  EXPECT_FALSE(std::filesystem::exists(path_));
  // Neither saving nor opening makes a key.
  EXPECT_FALSE(std::filesystem::exists(folder_.file("config/vornwout/password-key")));
}

TEST_F(DocumentRequestsTest, AnOpenedDocumentIsLockedUntilItIsClosed) {
  make("sales");
  ASSERT_EQ(save({"", path_}), "");
  EXPECT_TRUE(isFree(path_));
  ASSERT_EQ(open({"again", path_, Lock::kLocked}), "");
  EXPECT_FALSE(isFree(path_));
  ASSERT_EQ(close("again"), "");
  EXPECT_TRUE(isFree(path_));
  ASSERT_EQ(open({"again", path_, Lock::kUnlocked}), "");
  EXPECT_TRUE(isFree(path_));
}

TEST_F(DocumentRequestsTest, ALockedFileIsRefusedAndCanBeReadUnlocked) {
  make("sales");
  ASSERT_EQ(save({"", path_}), "");
  // Locks of two opens exclude each other within one process as well, so this stands for another.
  const auto lock = FileLock::tryLock(path_);
  ASSERT_TRUE(lock.has_value());
  const std::string refusal = "The file " + path_ + " is locked by another process.";
  EXPECT_EQ(open({"again", path_, Lock::kLocked}), refusal);
  ASSERT_EQ(open({"again", path_, Lock::kUnlocked}), "");
  EXPECT_EQ(activeText(), "text");
  EXPECT_EQ(save({"again", path_}), refusal);
  EXPECT_EQ(save({"again", folder_.file("other.qxv")}), "");
}

TEST_F(DocumentRequestsTest, TheSameFileOpenedTwiceIsRefusedWhileLocked) {
  make("sales");
  ASSERT_EQ(save({"", path_}), "");
  ASSERT_EQ(open({"one", path_, Lock::kLocked}), "");
  EXPECT_EQ(open({"two", path_, Lock::kLocked}),
            "The file " + path_ + " is already open as an output document, and locked.");
  ASSERT_EQ(open({"two", path_, Lock::kUnlocked}), "");
  EXPECT_EQ(save({"two", path_}),
            "The file " + path_ + " is open as another output document, and locked.");
  EXPECT_EQ(save({"one", path_}), "");
}

TEST_F(DocumentRequestsTest, ALockGoesOnToTheNewFile) {
  make("sales");
  ASSERT_EQ(save({"", path_}), "");
  ASSERT_EQ(open({"again", path_, Lock::kLocked}), "");
  ASSERT_EQ(save({"again", path_}), "");
  EXPECT_FALSE(isFree(path_));
}

TEST_F(DocumentRequestsTest, SavingCanTakeAndReleaseTheLock) {
  make("sales");
  ASSERT_EQ(save({"", path_, Lock::kLocked}), "");
  EXPECT_FALSE(isFree(path_));
  ASSERT_EQ(save({"", path_, Lock::kUnspecified}), "");
  EXPECT_FALSE(isFree(path_));
  ASSERT_EQ(save({"", path_, Lock::kUnlocked}), "");
  EXPECT_TRUE(isFree(path_));
}

TEST_F(DocumentRequestsTest, ALockGoesOnWhereAProgramHasReplacedTheFile) {
  make("sales");
  ASSERT_EQ(save({"sales", path_, Lock::kLocked}), "");
  const std::string link = folder_.file("link.qxv");
  std::filesystem::create_symlink("report.qxv", link);
  for (const std::string& path : {path_, link}) {
    folder_.write("foreign", "foreign");
    std::filesystem::rename(folder_.file("foreign"), path_);
    EXPECT_TRUE(isFree(path_));
    ASSERT_EQ(save({"sales", path}), "");
    EXPECT_FALSE(isFree(path_)) << path;
  }
  // The same where the file is gone.
  std::filesystem::remove(path_);
  ASSERT_EQ(save({"sales", path_}), "");
  EXPECT_FALSE(isFree(path_));
  ASSERT_EQ(save({"sales", path_, Lock::kUnlocked}), "");
  EXPECT_TRUE(isFree(path_));
}

TEST_F(DocumentRequestsTest, SavingElsewhereKeepsTheLockOnTheFirstFile) {
  make("sales");
  ASSERT_EQ(save({"", path_}), "");
  ASSERT_EQ(open({"again", path_, Lock::kLocked}), "");
  const std::string other = folder_.file("other.qxv");
  for (const Lock lock : {Lock::kUnspecified, Lock::kUnlocked}) {
    ASSERT_EQ(save({"again", other, lock}), "");
    EXPECT_FALSE(isFree(path_));
    EXPECT_TRUE(isFree(other));
  }
  ASSERT_EQ(save({"again", other, Lock::kLocked}), "");
  EXPECT_FALSE(isFree(path_));
  EXPECT_FALSE(isFree(other));
  // Saved over, each goes on to the new file.
  ASSERT_EQ(save({"again", path_}), "");
  ASSERT_EQ(save({"again", other}), "");
  EXPECT_FALSE(isFree(path_));
  EXPECT_FALSE(isFree(other));
  ASSERT_EQ(save({"again", path_, Lock::kUnlocked}), "");
  EXPECT_TRUE(isFree(path_));
  EXPECT_FALSE(isFree(other));
  EXPECT_EQ(open({"third", other, Lock::kLocked}),
            "The file " + other + " is already open as an output document, and locked.");
  ASSERT_EQ(close("again"), "");
  EXPECT_TRUE(isFree(other));
}

TEST_F(DocumentRequestsTest, AnEncryptedDocumentThatIsSavedWithoutAPasswordIsWarnedOf) {
  RecordingMessages messages;
  make("sales");
  FileRequestFields fields{"sales", path_};
  fields.password = "s3cret";
  ASSERT_EQ(save(fields), "");
  EXPECT_THAT(messages.texts, testing::IsEmpty());
  const auto lost = [](const std::string& path) {
    return "2: The output document was encrypted when it was opened or saved before; " + path +
           " is not. /PASSPROTECT encrypts it.";
  };
  const std::string copy = folder_.file("plain.qxv");
  ASSERT_EQ(save({"sales", copy}), "");
  EXPECT_THAT(messages.texts, testing::ElementsAre(lost(copy))) << "it was saved encrypted";
  messages.texts.clear();
  ASSERT_EQ(open({"plain", folder_.file("plain.qxv")}), "");
  ASSERT_EQ(save({"plain", folder_.file("plain.qxv")}), "");
  EXPECT_THAT(messages.texts, testing::IsEmpty());
  fields.name = "again";
  ASSERT_EQ(open(fields), "");
  ASSERT_EQ(save(fields), "");
  EXPECT_THAT(messages.texts, testing::IsEmpty());
  ASSERT_EQ(save({"again", path_}), "");
  EXPECT_THAT(messages.texts, testing::ElementsAre(lost(path_)));
}

TEST_F(DocumentRequestsTest, AnEncryptedFormThatIsAskedForWithoutAPasswordIsRefused) {
  make("sales");
  FileRequestFields fields{"sales", path_};
  fields.encryptPassword = OutputDocumentEncryptPW::kYes;
  EXPECT_EQ(save(fields),
            "The output document " + path_ + " was not saved. ENCRYPTEDPW needs PASSWORD.");
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(DocumentRequestsTest, OpeningAndSavingTellHowFarTheyAre) {
  class Recorder : public ProgressListener {
   public:
    void progress(std::string_view what, std::uint64_t done, std::uint64_t total) override {
      reports.push_back(std::string(what) + " " + std::to_string(done) + "/" +
                        std::to_string(total));
    }
    std::vector<std::string> reports;
  };
  make("sales");
  Recorder recorder;
  const ProgressRegistration registration(recorder);
  // One object, the outline, the disk; then its part is taken over as well; then a page is made.
  ASSERT_EQ(save({"", path_}), "");
  EXPECT_THAT(recorder.reports,
              testing::ElementsAre("Saving report.qxv 0/3", "Saving report.qxv 1/3",
                                   "Saving report.qxv 2/3", "Saving report.qxv 3/3"));
  recorder.reports.clear();
  ASSERT_EQ(save({"", folder_.file("page.qxw")}), "");
  EXPECT_THAT(recorder.reports, testing::ElementsAre("Saving page.qxw 0/5", "Saving page.qxw 1/5",
                                                     "Saving page.qxw 2/5", "Saving page.qxw 3/5",
                                                     "Saving page.qxw 4/5", "Saving page.qxw 5/5"));
  // A medium is taken over by itself.
  DocumentObject model;
  model.type = ObjectType::kModel;
  model.content =
      ObjectContent(MediaContent{"application/xml", std::make_shared<std::string>("<m/>")});
  controller_.activeDocument()->append(std::move(model));
  const std::string other = folder_.file("other.qxv");
  for (int i = 0; i < 2; ++i) {
    recorder.reports.clear();
    ASSERT_EQ(save({"", other}), "");
    EXPECT_EQ(recorder.reports.size(), 6U);
    EXPECT_EQ(recorder.reports.back(), "Saving other.qxv 5/5");
  }
  recorder.reports.clear();
  ASSERT_EQ(open({"", path_}), "");
  EXPECT_THAT(recorder.reports,
              testing::ElementsAre("Opening report.qxv 0/2", "Opening report.qxv 1/2",
                                   "Opening report.qxv 2/2"));
}

TEST_F(DocumentRequestsTest, WhatIsTakenOverCountsWhenItIsCopied) {
  class Counter : public ProgressListener {
   public:
    void progress(std::string_view, std::uint64_t done, std::uint64_t total) override {
      isGrowing = isGrowing && done >= last;
      last = done;
      all = total;
      reports += done > 0 && done < total ? 1 : 0;
    }
    bool isGrowing = true;
    std::uint64_t last = 0;
    std::uint64_t all = 0;
    int reports = 0;
  };
  make("sales");
  for (int i = 0; i < 500; ++i) {
    DocumentObject chart;
    chart.type = ObjectType::kChart;
    chart.content = ObjectContent(
        MediaContent{"image/svg+xml",
                     std::make_shared<std::string>("<svg xmlns=\"http://www.w3.org/2000/svg\"/>")});
    controller_.activeDocument()->append(std::move(chart));
  }
  ASSERT_EQ(save({"", path_}), "");
  Counter counter;
  const ProgressRegistration registration(counter);
  ASSERT_EQ(save({"", folder_.file("other.qxv")}), "");
  EXPECT_TRUE(counter.isGrowing);
  // Its part, 501 objects, the outline, the disk.
  EXPECT_EQ(counter.all, 504U);
  EXPECT_EQ(counter.last, 504U);
  EXPECT_GT(counter.reports, 400);
  // A listener that ends the work ends it.
  class Leaver : public ProgressListener {
   public:
    void progress(std::string_view, std::uint64_t done, std::uint64_t) override {
      if (done > 100) throw StoreError(StoreError::Kind::kNotWritten, "Enough.");
    }
  };
  Leaver leaver;
  const ProgressRegistration ending(leaver);
  const std::string third = folder_.file("third.qxv");
  EXPECT_EQ(save({"", third}), "The output document " + third + " was not saved. Enough.");
  EXPECT_FALSE(std::filesystem::exists(third));
}

TEST_F(DocumentRequestsTest, AFileThatMayNotBeWrittenOpensUnlocked) {
  if (geteuid() == 0) GTEST_SKIP() << "for root every file may be written";
  make("sales");
  ASSERT_EQ(save({"", path_}), "");
  chmod(path_.c_str(), 0400);
  EXPECT_EQ(open({"again", path_, Lock::kLocked}), "");
}

TEST_F(DocumentRequestsTest, APageHasNoModelsWhereNoneAreStored) {
  make("sales");
  DocumentObject model;
  model.type = ObjectType::kModel;
  model.label = "forecast";
  model.content =
      ObjectContent(MediaContent{"application/xml", std::make_shared<std::string>("<m/>")});
  DocumentObject part = model;
  part.type = ObjectType::kChart;
  part.label = "partOfModel";
  model.children.push_back(std::move(part));
  controller_.activeDocument()->append(std::move(model));
  DocumentObject log;
  log.type = ObjectType::kLog;
  log.label = "behind";
  log.content = ObjectContent(LogContent{"last"});
  controller_.activeDocument()->append(std::move(log));
  FileRequestFields fields{"", folder_.file("page.qxw")};
  const auto page = [&] { return ContainerReader(fields.path).read(kPageMember); };
  ASSERT_EQ(save(fields), "");
  EXPECT_THAT(page(), testing::HasSubstr("forecast"));
  EXPECT_THAT(page(), testing::HasSubstr("partOfModel"));
  fields.storeModel = YesNoEnum::kNo;
  ASSERT_EQ(save(fields), "");
  EXPECT_THAT(page(), testing::Not(testing::HasSubstr("forecast")));
  EXPECT_THAT(page(), testing::Not(testing::HasSubstr("partOfModel")));
  EXPECT_THAT(page(), testing::HasSubstr("behind"));
}

TEST_F(DocumentRequestsTest, ModelsAreStoredUnlessToldNot) {
  make("sales");
  DocumentObject model;
  model.type = ObjectType::kModel;
  model.content =
      ObjectContent(MediaContent{"application/xml", std::make_shared<std::string>("<m/>")});
  controller_.activeDocument()->append(std::move(model));
  FileRequestFields fields{"", path_};
  fields.storeModel = YesNoEnum::kNo;
  ASSERT_EQ(save(fields), "");
  EXPECT_EQ(openDocument(path_)->root().children.size(), 1u);
  fields.storeModel = YesNoEnum::kYes;
  ASSERT_EQ(save(fields), "");
  EXPECT_EQ(openDocument(path_)->root().children.size(), 2u);
}

}  // namespace
}  // namespace vornwout
