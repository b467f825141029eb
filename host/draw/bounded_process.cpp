#include "host/draw/bounded_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <optional>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/strings/localized.h"

namespace vornwout {
namespace {

/// The answer starts with one of these and the length of what follows.
constexpr char kResult = 'r';
constexpr char kError = 'e';
constexpr char kNoMemory = 'm';
constexpr std::size_t kHeadSize = 1 + sizeof(std::uint64_t);

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }
  int number() const { return number_; }
  void close() {
    if (number_ >= 0) ::close(number_);
    number_ = -1;
  }

 private:
  int number_;
};

/// The address space that the process has now; 0 where the system does not say.
rlim_t spaceInUse() {
  unsigned long pages = 0;
  std::FILE* const file = std::fopen("/proc/self/statm", "re");
  if (file == nullptr) return 0;
  const bool isRead = std::fscanf(file, "%lu", &pages) == 1;
  std::fclose(file);
  return isRead ? static_cast<rlim_t>(pages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) : 0;
}

/// False where the system refuses; what is bounded more narrowly already stays so.
template <typename Resource>
bool lower(Resource resource, rlim_t soft, rlim_t hard) {
  struct rlimit limit {};
  if (getrlimit(resource, &limit) != 0) return false;
  limit.rlim_max = std::min(limit.rlim_max, hard);
  limit.rlim_cur = std::min({limit.rlim_cur, soft, limit.rlim_max});
  return setrlimit(resource, &limit) == 0;
}

bool confine(const ProcessBounds& bounds) {
  sigset_t none;
  sigemptyset(&none);
  for (const int signal : {SIGXCPU, SIGALRM}) std::signal(signal, SIG_DFL);
  if (pthread_sigmask(SIG_SETMASK, &none, nullptr) != 0) return false;
  alarm(static_cast<unsigned>(bounds.waitSeconds));
  // Nobody waits for the answer of a child that is left behind.
  if (prctl(PR_SET_PDEATHSIG, SIGKILL) != 0) return false;
  // What libraries say while they fail is nothing for the user.
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0 || dup2(nowhere, STDERR_FILENO) < 0) {
    return false;
  }
  const rlim_t space = spaceInUse();
  const rlim_t seconds = static_cast<rlim_t>(bounds.seconds);
  const rlim_t most = space + static_cast<rlim_t>(bounds.bytes);
  // One second between the signal that can be told apart and the one that cannot be caught.
  return space != 0 && lower(RLIMIT_AS, most, most) && lower(RLIMIT_CPU, seconds, seconds + 1) &&
         lower(RLIMIT_CORE, 0, 0);
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool answer(int descriptor, char kind, std::string_view text) {
  std::array<char, kHeadSize> head{kind};
  const std::uint64_t length = text.size();
  std::memcpy(head.data() + 1, &length, sizeof length);
  return writeAll(descriptor, {head.data(), head.size()}) && writeAll(descriptor, text);
}

[[noreturn]] void workAsChild(int descriptor, const std::function<std::string()>& work,
                              const ProcessBounds& bounds) {
  bool isAnswered = false;
  try {
    if (confine(bounds)) {
      isAnswered = answer(descriptor, kResult, work());
    } else {
      isAnswered = answer(descriptor, kError, localized("a process's memory cannot be bounded"));
    }
  } catch (const std::bad_alloc&) {
    isAnswered = answer(descriptor, kNoMemory, {});
  } catch (const std::exception& error) {
    isAnswered = answer(descriptor, kError, error.what());
  } catch (...) {
    isAnswered = answer(descriptor, kError, localized("a library failed while it worked"));
  }
  _exit(isAnswered ? 0 : 1);
}

std::string readAll(int descriptor) {
  std::string bytes;
  std::array<char, 65536> part;
  for (;;) {
    const ssize_t count = read(descriptor, part.data(), part.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw ProcessError(localized("a process's answer cannot be read"));
    if (count == 0) return bytes;
    bytes.append(part.data(), static_cast<std::size_t>(count));
  }
}

/// A child that is waited for whatever happens, and then gone.
class Child {
 public:
  explicit Child(pid_t id) : id_(id) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    if (id_ <= 0) return;
    kill(id_, SIGKILL);
    wait();
  }

  /// How it ended; nothing where whoever runs this process has the system forget its children.
  std::optional<int> wait() {
    int status = 0;
    pid_t ended = 0;
    do {
      ended = waitpid(id_, &status, 0);
    } while (ended < 0 && errno == EINTR);
    id_ = 0;
    return ended < 0 ? std::nullopt : std::optional(status);
  }

 private:
  pid_t id_;
};

std::string endOf(std::optional<int> status, const ProcessBounds& bounds) {
  if (status && WIFSIGNALED(*status)) {
    const int signal = WTERMSIG(*status);
    if (signal == SIGALRM) return localized("it does not end");
    if (signal == SIGXCPU) return localized("it takes more than ^1 seconds", bounds.seconds);
    return localized("memory ran out, or it failed (signal ^1)", signal);
  }
  return localized("it ended without a result");
}

}  // namespace

std::string runBounded(const std::function<std::string()>& work, const ProcessBounds& bounds) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw ProcessError("there is no process for it: " + std::system_category().message(errno));
  }
  Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const pid_t id = fork();
  if (id < 0)
    throw ProcessError("there is no process for it: " + std::system_category().message(errno));
  if (id == 0) {
    reading.close();
    workAsChild(writing.number(), work, bounds);
  }
  Child child(id);
  writing.close();
  std::string bytes = readAll(reading.number());
  const std::optional<int> status = child.wait();
  std::uint64_t length = 0;
  if (bytes.size() >= kHeadSize) std::memcpy(&length, bytes.data() + 1, sizeof length);
  if (bytes.size() < kHeadSize || bytes.size() - kHeadSize != length) {
    throw ProcessError(endOf(status, bounds));
  }
  const char kind = bytes.front();
  bytes.erase(0, kHeadSize);
  if (kind == kNoMemory) throw ProcessError(localized("it takes too much memory"));
  if (kind == kError) throw std::runtime_error(bytes);
  return bytes;
}

}  // namespace vornwout
