// File specifications of commands: made absolute, file handles replaced, looked at on disk.
//
// Both "/" and a backslash separate components, and neither is ever found inside a character of two
// or more bytes. A path that starts with a separator, or with a drive letter, ":" and a separator,
// is absolute. The separators that were written stay as they are.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vornwout {

/// Size in bytes, with the terminating zero, of the buffers that callers give to the expanding
/// functions. They never write more.
constexpr std::size_t kPathBufferSize = 4096;

/// Makes the path of `length` bytes absolute against the working directory and resolves its "." and
/// ".." without asking the file system. Returns 0; or another value, with the buffer untouched,
/// when the path is empty or holds a zero byte, or the result does not fit.
int ExpandFileSpecification(const char* path, char* buffer, std::size_t length);

/// Replaces the first component of the path of `length` bytes by the directory of the declared
/// handle with exactly that name. Returns 0 when it was replaced; another value, with the buffer
/// untouched, when there is no such handle or the result does not fit.
int ExpandDirectoryHandle(const char* path, char* buffer, std::size_t length);

/// The directory of the declared handle that is the path's first component, with the rest of the
/// path; nothing when it is no handle.
std::optional<std::string> replaceDirectoryHandle(std::string_view path);

/// The path made absolute as ExpandFileSpecification() does it. `path` must not be empty.
std::string expandPath(std::string_view path);

/// The declared handle that the path's first component below the working directory would be if case
/// did not matter; empty when there is none. `path` is absolute.
std::string handleInOtherCase(std::string_view path);

/// The path that a file reference of a command stands for: its handle replaced, then absolute; an
/// absolute path and an empty text stay as they are. `fromCommand` is true for a reference that a
/// user wrote; `isFile` is true when it names one file, false when it is a root to which names are
/// appended. Both record the caller's use: every reference is resolved in the same way.
std::string CheckFileRef(const std::string& text, bool fromCommand, bool isFile);

/// Tells what can be done with the path of `*length` bytes. `usable`: it can name a file (not
/// empty, no zero byte, not too long, no directory). `exists`: something is there. `accessible`: it
/// can be written, because the file is writable or is missing from a directory that is. All 0 when
/// not usable.
extern "C" void validateclientfilespec_(const char* path, const int* length, int* usable,
                                        int* exists, int* accessible);

}  // namespace vornwout
