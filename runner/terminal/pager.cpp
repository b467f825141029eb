#include "runner/terminal/pager.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <streambuf>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <wordexp.h>

namespace vornwout {
namespace {

/// Quit when it fits on one screen, show colours, leave what was shown on the terminal.
constexpr const char* kUsualPager = "less -FRX";
constexpr const char* kUsualLess = "LESS=FRX";

/// The words of a command. One with a shell's operators in it is the shell's to run.
std::vector<std::string> wordsOf(const std::string& command) {
  wordexp_t expanded{};
  std::vector<std::string> words;
  const int result = wordexp(command.c_str(), &expanded, WRDE_NOCMD);
  if (result == 0) words.assign(expanded.we_wordv, expanded.we_wordv + expanded.we_wordc);
  if (result == 0 || result == WRDE_NOSPACE) wordfree(&expanded);
  if (result != 0) words = {"/bin/sh", "-c", command};
  return words;
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// This program's environment, with options for less unless the user has chosen some.
std::vector<std::string> pagerEnvironment() {
  std::vector<std::string> variables;
  bool hasLess = false;
  for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
    variables.emplace_back(*variable);
    hasLess = hasLess || variables.back().starts_with("LESS=");
  }
  if (!hasLess) variables.emplace_back(kUsualLess);
  return variables;
}

/// Starts a program that reads from `input`; its process, or nothing.
std::optional<pid_t> spawn(std::vector<std::string> words, int input) {
  if (words.empty()) return std::nullopt;
  std::vector<std::string> variables = pagerEnvironment();
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  if (posix_spawn_file_actions_init(&actions) != 0) return std::nullopt;
  if (posix_spawnattr_init(&attributes) != 0) {
    posix_spawn_file_actions_destroy(&actions);
    return std::nullopt;
  }
  // What this program ignores a pager needs: a part of it may itself write into a pipe.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  pid_t process = 0;
  const bool isStarted = posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO) == 0 &&
                         posix_spawnattr_setsigdefault(&attributes, &signals) == 0 &&
                         posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF) == 0 &&
                         posix_spawnp(&process, words.front().c_str(), &actions, &attributes,
                                      pointersTo(words).data(), pointersTo(variables).data()) == 0;
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (!isStarted) return std::nullopt;
  return process;
}

}  // namespace

std::optional<std::string> pagerCommand(const TerminalFacts& facts,
                                        const Environment& environment) {
  if (!facts.isTerminal) return std::nullopt;
  for (const char* name : {"VORNWOUT_PAGER", "PAGER"}) {
    const std::optional<std::string> command = environment(name);
    if (!command) continue;
    if (command->find_first_not_of(" \t") == std::string::npos) return std::nullopt;
    return command;
  }
  if (facts.term == "dumb") return std::nullopt;
  return kUsualPager;
}

/// The end of the pipe that this program writes to.
class Pager::Pipe : public std::streambuf {
 public:
  explicit Pipe(int descriptor) : descriptor_(descriptor) {
    setp(buffer_.data(), buffer_.data() + buffer_.size());
  }
  ~Pipe() override { close(); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  void close() {
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
  }

 protected:
  int_type overflow(int_type character) override {
    if (sync() != 0) return traits_type::eof();
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
      *pptr() = traits_type::to_char_type(character);
      pbump(1);
    }
    return traits_type::not_eof(character);
  }

  int sync() override {
    const char* next = pbase();
    while (next < pptr()) {
      const ssize_t written = write(descriptor_, next, static_cast<std::size_t>(pptr() - next));
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return -1;
      next += written;
    }
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    return 0;
  }

 private:
  int descriptor_;
  std::array<char, 16'384> buffer_;
};

/// Leaves the keys that interrupt and quit to the pager while it lives.
class Pager::KeysIgnored {
 public:
  KeysIgnored() {
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGINT, &ignore, &interrupt_);
    sigaction(SIGQUIT, &ignore, &quit_);
  }
  ~KeysIgnored() {
    sigaction(SIGINT, &interrupt_, nullptr);
    sigaction(SIGQUIT, &quit_, nullptr);
  }
  KeysIgnored(const KeysIgnored&) = delete;
  KeysIgnored& operator=(const KeysIgnored&) = delete;

 private:
  struct sigaction interrupt_ {};
  struct sigaction quit_ {};
};

Pager::Pager(std::unique_ptr<Pipe> pipe, int process)
    : pipe_(std::move(pipe)),
      keys_(std::make_unique<KeysIgnored>()),
      stream_(std::make_unique<std::ostream>(pipe_.get())),
      process_(process) {}

std::unique_ptr<Pager> Pager::start(const std::string& command) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return nullptr;
  auto pipe = std::make_unique<Pipe>(ends[1]);
  const std::optional<pid_t> process = spawn(wordsOf(command), ends[0]);
  close(ends[0]);
  if (!process) return nullptr;
  return std::unique_ptr<Pager>(new Pager(std::move(pipe), *process));
}

Pager::~Pager() { finish(); }

void Pager::finish() {
  if (process_ == 0) return;
  stream_->flush();
  pipe_->close();
  // How the pager ends is between it and its reader.
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
  process_ = 0;
  keys_.reset();
}

}  // namespace vornwout
