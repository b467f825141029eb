#include "runner/password_file.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "platform/strings/localized.h"
#include "runner/terminal/hidden_input.h"

namespace vornwout {
namespace {

constexpr std::size_t kLongestPassword = 4096;

class InputFile {
 public:
  explicit InputFile(const std::string& path)
      : isOwned_(path != "-"),
        descriptor_(isOwned_ ? open(path.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO) {}
  ~InputFile() {
    if (isOwned_ && descriptor_ >= 0) close(descriptor_);
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  int descriptor() const { return descriptor_; }

 private:
  bool isOwned_;
  int descriptor_;
};

std::variant<std::string, PasswordFileError> askForPassword(PasswordUse use) {
  HiddenInput input;
  const auto first = input.ask(localized("Password:") + " ");
  const auto second =
      first && use == PasswordUse::kNew ? input.ask(localized("The same again:") + " ") : first;
  if (!second) return PasswordFileError{localized("No password was given.")};
  if (*first != *second) return PasswordFileError{localized("The two passwords differ.")};
  if (first->empty()) return PasswordFileError{localized("The password is empty.")};
  if (first->find('\0') != std::string::npos) {
    return PasswordFileError{localized("The password has a zero byte.")};
  }
  return *first;
}

}  // namespace

std::variant<std::string, PasswordFileError> readPasswordFile(const std::string& path,
                                                              PasswordUse use) {
  if (path == "-" && isatty(STDIN_FILENO) != 0) return askForPassword(use);
  const std::string name = path == "-" ? localized("standard input") : localized("file ^1", path);
  const auto systemError = [&] {
    return PasswordFileError{
        localized("The password's ^1 cannot be read: ^2.", name, std::strerror(errno))};
  };
  const InputFile file(path);
  if (file.descriptor() < 0) return systemError();
  // Room for a line that is too long by a line end of two bytes and something behind it.
  std::array<char, kLongestPassword + 3> buffer{};
  std::size_t size = 0;
  while (size < buffer.size()) {
    const ssize_t count = read(file.descriptor(), buffer.data() + size, buffer.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return systemError();
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
  }
  std::string password(buffer.data(), size);
  if (password.ends_with('\n')) password.pop_back();
  if (password.ends_with('\r')) password.pop_back();
  if (password.empty()) return PasswordFileError{localized("The password's ^1 is empty.", name)};
  if (password.size() > kLongestPassword) {
    return PasswordFileError{
        localized("The password's ^1 holds more than ^2 bytes.", name, kLongestPassword)};
  }
  if (password.find_first_of(std::string_view("\n\r\0", 3)) != std::string::npos) {
    return PasswordFileError{
        localized("The password's ^1 holds more than one line of text.", name)};
  }
  return password;
}

}  // namespace vornwout
