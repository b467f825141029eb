#include "runner/password_command.h"

#include <iostream>
#include <string>
#include <utility>
#include <variant>

#include <openssl/crypto.h>
#include <unistd.h>

#include "host/store/password_form.h"
#include "host/store/store_error.h"
#include "platform/strings/localized.h"
#include "runner/password_file.h"
#include "runner/run_options.h"
#include "runner/standard_streams.h"

namespace vornwout {
namespace {

/// What OUTPUT SAVE takes at most.
constexpr std::size_t kMaxPasswordBytes = 10;
/// In one form of some hundred, five bytes under another key are a password that could be typed.
constexpr std::size_t kFewPasswordBytes = 6;

constexpr const char* kExplanation = localizable(
    "Reads a password (on a terminal twice, and not shown; otherwise the one line of standard "
    "input)\n"
    "and prints its encrypted form, two digits for each byte, for\n"
    "  OUTPUT SAVE OUTFILE='report.qxv' /PASSPROTECT PASSWORD='...' ENCRYPTEDPW=YES.\n"
    "and OUTPUT OPEN FILE='report.qxv' PASSWORD='...'.\n"
    "\n"
    "The form belongs to a key of this user, which is made on first use and kept in\n"
    "$XDG_CONFIG_HOME/vornwout/password-key, or ~/.config/vornwout/password-key, readable by\n"
    "the user alone. Copy that file to wherever the jobs run.\n"
    "\n"
    "It protects the password from whoever reads the job file. It does not protect it from\n"
    "whoever reads the key as well; the length shows, and equal passwords have equal forms.\n"
    "With fewer than 6 bytes, a form made with another key may be taken for a password.\n"
    "The document itself is encrypted with the readable password, by AES-256: who gets that\n"
    "opens it with any zip program. Without it the names and sizes of the document's parts can be\n"
    "read, and the checksums of those that could not be compressed, as most PNG pictures.");

/// The password, or why there is none.
struct Answer {
  std::string password;
  std::string problem;
};

Answer readPassword() {
  Answer answer;
  auto password = readPasswordFile("-", PasswordUse::kNew);
  if (auto* error = std::get_if<PasswordFileError>(&password)) {
    return {{}, std::move(error->text)};
  }
  answer.password = std::get<std::string>(std::move(password));
  if (answer.password.size() > kMaxPasswordBytes) {
    return {{},
            localized("The password has ^1 bytes; OUTPUT SAVE takes ^2 at most.",
                      answer.password.size(), kMaxPasswordBytes)};
  }
  if (!isTypeablePassword(answer.password)) {
    return {{}, localized("The password has control characters, or is not in UTF-8.")};
  }
  return answer;
}

}  // namespace

std::string passwordExplanation() { return localized(kExplanation); }

int runPasswordCommand() {
  Answer answer = readPassword();
  if (!answer.problem.empty()) return refuse(answer.problem);
  try {
    const std::string path = defaultPasswordKeyPath();
    const bool isNew = access(path.c_str(), F_OK) != 0;
    const std::size_t size = answer.password.size();
    const std::string form = encryptPassword(PasswordKey::loadOrCreate(path), answer.password);
    OPENSSL_cleanse(answer.password.data(), answer.password.size());
    if (isNew) std::cerr << localized("Made the key ^1.\n", path);
    if (size < kFewPasswordBytes) {
      std::cerr << localized(
          "Warning: the password has fewer than ^1 bytes. Under another key, its form may be taken "
          "for another password instead of being refused.\n",
          kFewPasswordBytes);
    }
    std::cout << form << '\n';
    return kExitSuccess;
  } catch (const StoreError& error) {
    return refuse(error.what());
  }
}

}  // namespace vornwout
