// System calls that fail, or at which the process dies, when a test asks for it.
//
// The test program that includes this defines the C library's functions itself, so that every call
// of the code under test, and of the libraries it uses, comes here first. To be included by one
// source of a program only.
#pragma once

#include <atomic>
#include <cerrno>
#include <cstdarg>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vornwout {

/// Makes the n-th call (from 1) fail with an error, or kill the process, while it lives.
class SystemFault {
 public:
  static constexpr int kKill = 0;

  SystemFault(long n, int error) {
    struck_ = false;
    error_ = error;
    left_ = n;
  }
  ~SystemFault() { left_ = 0; }
  SystemFault(const SystemFault&) = delete;
  SystemFault& operator=(const SystemFault&) = delete;

  static bool hasStruck() { return struck_; }

  /// Called by every function below: true when it shall fail, with errno set. Functions that
  /// clean up do not fail, for nothing could then be promised; the process may die there.
  static bool failsNow(bool mayFail = true) {
    if (left_ <= 0 || (!mayFail && error_ != kKill)) return false;
    if (--left_ != 0) return false;
    struck_ = true;
    if (error_ == kKill) kill(getpid(), SIGKILL);
    errno = error_;
    return true;
  }

 private:
  static inline std::atomic<long> left_ = 0;
  static inline std::atomic<bool> struck_ = false;
  static inline int error_ = 0;
};

/// The C library's own function of that name.
template <typename Function>
Function* nextFunction(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace vornwout

#define VORN_NEXT(name) static const auto kNext = vornwout::nextFunction<decltype(name)>(#name)

extern "C" {

int open(const char* path, int flags, ...) {
  VORN_NEXT(open);
  if (vornwout::SystemFault::failsNow()) return -1;
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return kNext(path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
  VORN_NEXT(openat);
  if (vornwout::SystemFault::failsNow()) return -1;
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return kNext(directory, path, flags, mode);
}

int fcntl(int file, int command, ...) {
  VORN_NEXT(fcntl);
  // Only locks are counted: the tools that watch the test use the rest.
  const bool isLock = command == F_OFD_SETLK || command == F_OFD_GETLK;
  if (isLock && vornwout::SystemFault::failsNow()) return -1;
  va_list arguments;
  va_start(arguments, command);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  return kNext(file, command, argument);
}

ssize_t read(int file, void* bytes, size_t size) {
  VORN_NEXT(read);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(file, bytes, size);
}

ssize_t pread(int file, void* bytes, size_t size, off_t offset) {
  VORN_NEXT(pread);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(file, bytes, size, offset);
}

ssize_t write(int file, const void* bytes, size_t size) {
  VORN_NEXT(write);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(file, bytes, size);
}

/// Writes half of what is asked for where it is much, as a system may.
ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset) {
  VORN_NEXT(pwrite);
  if (vornwout::SystemFault::failsNow()) return -1;
  return kNext(file, bytes, size > 4096 ? size / 2 : size, offset);
}

int fsync(int file) {
  VORN_NEXT(fsync);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(file);
}

ssize_t getrandom(void* bytes, size_t size, unsigned flags) {
  VORN_NEXT(getrandom);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(bytes, size, flags);
}

int mkostemp(char* pattern, int flags) {
  VORN_NEXT(mkostemp);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(pattern, flags);
}

DIR* fdopendir(int file) {
  VORN_NEXT(fdopendir);
  return vornwout::SystemFault::failsNow() ? nullptr : kNext(file);
}

dirent* readdir(DIR* directory) {
  VORN_NEXT(readdir);
  return vornwout::SystemFault::failsNow() ? nullptr : kNext(directory);
}

int fstat(int file, struct stat* status) noexcept {
  VORN_NEXT(fstat);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(file, status);
}

int fstatat(int directory, const char* path, struct stat* status, int flags) noexcept {
  VORN_NEXT(fstatat);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(directory, path, status, flags);
}

int faccessat(int directory, const char* path, int mode, int flags) noexcept {
  VORN_NEXT(faccessat);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(directory, path, mode, flags);
}

ssize_t readlink(const char* path, char* target, size_t size) noexcept {
  VORN_NEXT(readlink);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(path, target, size);
}

int fchmod(int file, mode_t mode) noexcept {
  VORN_NEXT(fchmod);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(file, mode);
}

int fchown(int file, uid_t owner, gid_t group) noexcept {
  VORN_NEXT(fchown);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(file, owner, group);
}

int renameat(int from, const char* source, int to, const char* target) noexcept {
  VORN_NEXT(renameat);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(from, source, to, target);
}

int link(const char* from, const char* to) noexcept {
  VORN_NEXT(link);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(from, to);
}

int mkdir(const char* path, mode_t mode) noexcept {
  VORN_NEXT(mkdir);
  return vornwout::SystemFault::failsNow() ? -1 : kNext(path, mode);
}

int unlinkat(int directory, const char* path, int flags) noexcept {
  VORN_NEXT(unlinkat);
  vornwout::SystemFault::failsNow(false);
  return kNext(directory, path, flags);
}

int close(int file) {
  VORN_NEXT(close);
  vornwout::SystemFault::failsNow(false);
  return kNext(file);
}

}  // extern "C"

#undef VORN_NEXT
