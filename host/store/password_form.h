// The encrypted form of a password, so that a job file need hold none that can be read.
//
// Entry points: encryptPassword() and decryptPassword(), with a key from password_key.h.
//
// The form is the password's bytes under a keyed permutation of all texts of that length, written
// as upper-case hexadecimal digits: 10 bytes give 20 digits. It keeps the length because a command
// gives an encrypted password 20 bytes, exactly twice what a plain one may have; nothing is left
// for a random part or a check value.
//
// It protects a password from whoever reads the job file. It does not protect it from a reader of
// the key file; equal passwords have equal forms, and the length shows; and a form that somebody
// has changed decrypts to some other password, which then opens nothing.
//
// The permutation is a balanced Feistel network over the nibbles with ten rounds, whose round
// function is HMAC-SHA256 under the key; such a network is a permutation whatever its round
// function is, so what was encrypted can always be decrypted.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/store/password_key.h"
#include "host/store/secret.h"

namespace vornwout {

/// The encrypted form: two digits for each byte of `plain`.
std::string encryptPassword(const PasswordKey& key, std::string_view plain);

/// The password of an encrypted form; nothing when the form is empty, or no even number of
/// hexadecimal digits.
std::optional<Secret> decryptPassword(const PasswordKey& key, std::string_view form);

/// True for what a person can type: UTF-8 without control characters. Only of such passwords are
/// forms made, so that a form of another key shows: what that gives is hardly ever one.
bool isTypeablePassword(std::string_view password);

}  // namespace vornwout
