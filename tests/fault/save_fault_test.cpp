// A save, an opening and the making of a key, with every single one of their system calls failing
// in turn, and with the process killed at each.
//
// Whatever happens, the file is the old one or the new one, whole; an error has a sentence; and no
// temporary file stays, except where the process was killed: there the next save removes it.
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "host/controller/output_controller.h"
#include "host/store/container_reader.h"
#include "host/store/container_writer.h"
#include "host/store/document_store.h"
#include "host/store/file_lock.h"
#include "host/store/password_key.h"
#include "host/store/store_error.h"
#include "platform/adapter/output_sink.h"
#include "tests/support/program_run.h"
#include "tests/support/system_faults.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

constexpr long kMostCalls = 2'000;

std::set<std::string> namesIn(const std::string& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// Bytes that deflate cannot make smaller.
std::string noise(std::size_t size) {
  std::string bytes;
  std::uint32_t state = 12345;
  while (bytes.size() < size) {
    state = state * 1664525 + 1013904223;
    bytes += static_cast<char>(state >> 24);
  }
  return bytes;
}

struct SaveCase {
  const char* condition;
  const char* password;
  bool hasOldFile;
};

class SaveFault : public testing::TestWithParam<SaveCase> {
 protected:
  void SetUp() override {
    other_ = scratch_.file("other.qxv");
    ContainerWriter writer(other_, {GetParam().password, 1});
    writer.add("kept", std::string(5'000, 'k'));
    writer.commit();
    ASSERT_EQ(mkdir(scratch_.file("place").c_str(), 0700), 0);
  }

  std::string path() const { return scratch_.file("place/report.qxv"); }

  void writeOld() const {
    fs::remove(path());
    if (GetParam().hasOldFile) scratch_.write("place/report.qxv", "the old file");
  }

  /// What was said of the save that succeeded.
  std::string save() const {
    ContainerReader reader(other_);
    reader.setPassword(GetParam().password);
    // Little memory, so that parts go to the scratch file too.
    ContainerWriter writer(path(), {GetParam().password, 2, 1'000});
    writer.add("mimetype", "application/test", false);
    writer.add("text", std::string(20'000, 't'));
    writer.add("noise", noise(40'000));
    writer.copy(reader, "kept");
    return writer.commit().warning;
  }

  bool isOld() const {
    return GetParam().hasOldFile ? scratch_.read("place/report.qxv") == "the old file"
                                 : !fs::exists(path());
  }

  bool isNew() const {
    try {
      ContainerReader reader(path());
      reader.setPassword(GetParam().password);
      return reader.members().size() == 4 && reader.read("text") == std::string(20'000, 't') &&
             reader.read("noise") == noise(40'000) &&
             reader.read("kept") == std::string(5'000, 'k');
    } catch (const StoreError&) {
      return false;
    }
  }

  /// True when nothing but the file itself is in its directory.
  bool isAlone() const {
    std::set<std::string> names = namesIn(scratch_.file("place"));
    names.erase("report.qxv");
    return names.empty();
  }

  ScratchDirectory scratch_;
  std::string other_;
};

TEST_P(SaveFault, CallThatFailsLeavesTheOldFileOrTheNewOne) {
  for (const int error : {EIO, ENOSPC, EACCES}) {
    bool struck = true;
    int refused = 0;
    int warned = 0;
    for (long n = 1; struck; ++n) {
      ASSERT_LT(n, kMostCalls);
      writeOld();
      std::string reason;
      std::string warning;
      {
        const SystemFault fault(n, error);
        try {
          warning = save();
        } catch (const StoreError& caught) {
          reason = caught.what();
        }
      }
      struck = SystemFault::hasStruck();
      EXPECT_TRUE(isAlone()) << "call " << n << ", error " << error << ": " << reason;
      if (reason.empty()) {
        EXPECT_TRUE(isNew()) << "call " << n << ", error " << error;
      } else {
        ++refused;
        EXPECT_TRUE(struck) << reason;
        EXPECT_TRUE(reason.ends_with(".")) << reason;
        EXPECT_TRUE(isOld()) << "call " << n << ", error " << error << ": " << reason;
      }
      if (warning.empty()) continue;
      ++warned;
      EXPECT_TRUE(struck);
      EXPECT_TRUE(warning.starts_with(
          "The new file is in place, but its directory could not be flushed to the disk: "))
          << warning;
    }
    EXPECT_EQ(warned, 1);
    EXPECT_GT(refused, 10) << "the faults did not reach the save";
  }
}

TEST_P(SaveFault, ProcessThatIsKilledLeavesTheOldFileOrTheNewOne) {
  bool wasKilled = true;
  bool leftSomething = false;
  for (long n = 1; wasKilled; ++n) {
    ASSERT_LT(n, kMostCalls);
    writeOld();
    const pid_t child = fork();
    if (child == 0) {
      const SystemFault fault(n, SystemFault::kKill);
      try {
        save();
      } catch (const StoreError&) {
        _exit(1);
      }
      // What the save did not reach shall not kill: the leave-taking makes calls as well.
      _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    wasKilled = WIFSIGNALED(status);
    if (wasKilled) {
      EXPECT_EQ(WTERMSIG(status), SIGKILL);
      EXPECT_TRUE(isOld() || isNew()) << "call " << n;
    } else {
      EXPECT_EQ(WEXITSTATUS(status), 0);
      EXPECT_TRUE(isNew());
    }
    if (!isAlone()) {
      leftSomething = true;
      save();
      EXPECT_TRUE(isAlone()) << "call " << n;
      EXPECT_TRUE(isNew());
    }
  }
  EXPECT_TRUE(leftSomething) << "the faults did not reach the save";
}

INSTANTIATE_TEST_SUITE_P(Every, SaveFault,
                         testing::Values(SaveCase{"OverAnOldFile", "", true},
                                         SaveCase{"OfANewFile", "", false},
                                         SaveCase{"WithAPassword", "secret", true}),
                         [](const auto& test) { return test.param.condition; });

/// Hears what goes into the output.
class RecordingMessages : public OutputSink {
 public:
  void outputMessage(const OutputMessageRecord& message) override {
    texts.push_back(message.shownText());
  }

  std::vector<std::string> texts;

 private:
  SinkRegistration registration_{*this};
};

VornwMsgOutputControllerRequest lockedRequest(OutputControllerCommand command,
                                              const std::string& path) {
  return {1,
          command,
          "",
          path.c_str(),
          OutputDocumentLock::kLocked,
          OutputDocumentMinimized::kNo,
          OutputDocumentType::kUnspecified,
          "",
          OutputDocumentEncryptPW::kNo,
          YesNoEnum::kYes};
}

TEST(LockFault, DocumentThatIsSavedIsLockedOrSaysThatItIsNot) {
  const ScratchDirectory scratch;
  const std::string path = scratch.file("report.qxv");
  // The calls are the same each time: there is an old file from the first one on.
  Document document(1, "", false);
  saveDocument(document, path, {});
  for (const int error : {EIO, ENOLCK}) {
    bool struck = true;
    int unlocked = 0;
    int unflushed = 0;
    int unread = 0;
    for (long n = 1; struck; ++n) {
      ASSERT_LT(n, kMostCalls);
      OutputController controller;
      controller.documentForOutput();
      RecordingMessages messages;
      bool isSaved = false;
      {
        VornwMsgOutputControllerResponse response;
        const SystemFault fault(n, error);
        isSaved =
            controller.SendRequest(lockedRequest(OutputControllerCommand::kSave, path), response);
      }
      struck = SystemFault::hasStruck();
      const bool isLocked = fs::exists(path) && FileLock::isLockedByAnother(path);
      std::string said = messages.texts.empty() ? "" : messages.texts.front();
      if (said == path + " was saved, but is not locked, because its file system has no locks.") {
        ++unlocked;
        EXPECT_TRUE(isSaved && !isLocked);
      } else {
        EXPECT_EQ(isLocked, isSaved) << "call " << n << ", error " << error << ": " << said;
        // What fails behind the rename does not make the save a failure.
        const std::string saved = "The output document " + path + " was saved. The ";
        if (said.starts_with(saved + "saved file could not be opened again. ")) {
          ++unread;
        } else if (!said.empty()) {
          ++unflushed;
          EXPECT_TRUE(said.starts_with(saved + "new file is in place, but its directory ")) << said;
        }
        EXPECT_TRUE(isSaved || said.empty()) << said;
      }
    }
    EXPECT_EQ(unlocked, error == ENOLCK ? 1 : 0);
    EXPECT_EQ(unflushed, 1);
    EXPECT_GE(unread, 1);
  }
}

TEST(LockFault, DocumentThatCannotBeLockedNamesTheRemedy) {
  const ScratchDirectory scratch;
  const std::string path = scratch.file("report.qxv");
  Document document(1, "", false);
  saveDocument(document, path, {});
  bool isSaid = false;
  bool struck = true;
  for (long n = 1; struck; ++n) {
    ASSERT_LT(n, kMostCalls);
    OutputController controller;
    VornwMsgOutputControllerResponse response;
    {
      const SystemFault fault(n, ENOLCK);
      controller.SendRequest(lockedRequest(OutputControllerCommand::kOpen, path), response);
    }
    struck = SystemFault::hasStruck();
    isSaid = isSaid || response.GetMsgString().view() ==
                           "The output document ^1 was not opened. The file cannot be locked, "
                           "because its file system has no locks. LOCK=NO opens it.";
  }
  EXPECT_TRUE(isSaid);
}

TEST(OpenFault, CallThatFailsIsReportedWithItsReason) {
  const ScratchDirectory scratch;
  const std::string path = scratch.file("report.qxv");
  {
    ContainerWriter writer(path);
    writer.add("text", std::string(20'000, 't'));
    writer.commit();
  }
  bool struck = true;
  int refused = 0;
  for (long n = 1; struck; ++n) {
    ASSERT_LT(n, kMostCalls);
    std::string text;
    std::string reason;
    {
      const SystemFault fault(n, EIO);
      try {
        text = ContainerReader(path).read("text");
      } catch (const StoreError& error) {
        reason = error.what();
        EXPECT_EQ(error.kind(), StoreError::Kind::kNoFile) << reason;
      }
    }
    struck = SystemFault::hasStruck();
    if (reason.empty()) {
      EXPECT_EQ(text, std::string(20'000, 't')) << "call " << n;
    } else {
      ++refused;
      EXPECT_TRUE(reason.ends_with("cannot be read: Input/output error.")) << reason;
    }
  }
  EXPECT_GT(refused, 4) << "the faults did not reach the reader";
}

TEST(KeyFault, CallThatFailsLeavesAWholeKeyOrNone) {
  for (const int error : {EIO, ENOSPC, EACCES}) {
    bool struck = true;
    for (long n = 1; struck; ++n) {
      ASSERT_LT(n, kMostCalls);
      const ScratchDirectory scratch;
      const std::string path = scratch.file("deep/key");
      std::string reason;
      {
        const SystemFault fault(n, error);
        try {
          PasswordKey::loadOrCreate(path);
        } catch (const StoreError& caught) {
          reason = caught.what();
        }
      }
      struck = SystemFault::hasStruck();
      EXPECT_TRUE(struck || reason.empty()) << reason;
      EXPECT_TRUE(!reason.empty() || fs::exists(path)) << "call " << n;
      if (fs::exists(path)) {
        EXPECT_EQ(fs::file_size(path), PasswordKey::kSize) << "call " << n;
      }
      if (!fs::exists(scratch.file("deep"))) continue;
      std::set<std::string> names = namesIn(scratch.file("deep"));
      names.erase("key");
      EXPECT_TRUE(names.empty()) << "call " << n << ": " << reason;
    }
  }
}

}  // namespace
}  // namespace vornwout
