#include "host/store/password_form.h"

#include <bit>
#include <random>
#include <set>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

PasswordKey testKey(unsigned char first = 0) {
  PasswordKey::Bytes bytes = {};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(first + i);
  return PasswordKey(bytes);
}

std::string decrypted(const PasswordKey& key, const std::string& form) {
  const std::optional<Secret> password = decryptPassword(key, form);
  return password ? std::string(password->view()) : "(nothing)";
}

// Forms stay readable: what was written into a job file once must decrypt for ever. The values were
// calculated by another program from the description in the header.
TEST(PasswordForm, KnownPasswordsHaveKnownForms) {
  const PasswordKey key = testKey();
  EXPECT_EQ(encryptPassword(key, "a"), "34");
  EXPECT_EQ(decrypted(key, "34"), "a");
  EXPECT_EQ(encryptPassword(key, "secret"), "3E179C43FD63");
  EXPECT_EQ(decrypted(key, "3E179C43FD63"), "secret");
  EXPECT_EQ(encryptPassword(key, "0123456789"), "06D88C73BE2C09F08741");
  EXPECT_EQ(decrypted(key, "06D88C73BE2C09F08741"), "0123456789");
  EXPECT_EQ(encryptPassword(key, std::string(70, 'x')),
            "836EB734EC51CBA719D999F39FAC692D6252702E6D9710981D05924C7B33CEDB7FAB4C68E0F77237B8A44C"
            "26F3F5DF527656AF8E6D6D2406C785AC1F1D3772FA8D47C5577F59");
}

TEST(PasswordForm, EveryLengthIsEncryptedToTwiceAsManyDigitsAndBack) {
  std::mt19937 random(7);
  const PasswordKey key = testKey();
  for (std::size_t length = 1; length <= 200; ++length) {
    std::string plain;
    for (std::size_t i = 0; i < length; ++i) plain += static_cast<char>(random());
    const std::string form = encryptPassword(key, plain);
    EXPECT_EQ(form.size(), 2 * length);
    EXPECT_EQ(form.find_first_not_of("0123456789ABCDEF"), std::string::npos);
    EXPECT_EQ(decrypted(key, form), plain);
  }
}

TEST(PasswordForm, IsAPermutationOfTheShortestPasswords) {
  const PasswordKey key = testKey();
  std::set<std::string> forms;
  for (int byte = 0; byte < 256; ++byte) {
    forms.insert(encryptPassword(key, std::string(1, static_cast<char>(byte))));
  }
  EXPECT_EQ(forms.size(), 256u);
}

/// The share of bits in which the forms differ.
double difference(const std::string& left, const std::string& right) {
  int bits = 0;
  for (std::size_t i = 0; i < left.size(); ++i) {
    const auto a = static_cast<unsigned>(std::stoi(left.substr(i, 1), nullptr, 16));
    const auto b = static_cast<unsigned>(std::stoi(right.substr(i, 1), nullptr, 16));
    bits += std::popcount(a ^ b);
  }
  return bits / (4.0 * static_cast<double>(left.size()));
}

TEST(PasswordForm, EveryBitChangesHalfOfTheForm) {
  const PasswordKey key = testKey();
  double sum = 0;
  int count = 0;
  for (int sample = 0; sample < 20; ++sample) {
    const std::string plain = "passwort" + std::to_string(10 + sample);
    const std::string form = encryptPassword(key, plain);
    for (std::size_t bit = 0; bit < 8 * plain.size(); ++bit) {
      std::string other = plain;
      other[bit / 8] = static_cast<char>(other[bit / 8] ^ (1 << (bit % 8)));
      const double share = difference(form, encryptPassword(key, other));
      EXPECT_GT(share, 0.15) << "bit " << bit;
      sum += share;
      ++count;
    }
  }
  EXPECT_NEAR(sum / count, 0.5, 0.01);
}

TEST(PasswordForm, DependsOnTheKeyAndTheLength) {
  EXPECT_NE(encryptPassword(testKey(0), "password"), encryptPassword(testKey(1), "password"));
  EXPECT_NE(decrypted(testKey(1), encryptPassword(testKey(0), "password")), "password");
  const std::string longer = encryptPassword(testKey(), "passwords");
  EXPECT_NE(longer.substr(0, 8), encryptPassword(testKey(), "password").substr(0, 8));
}

TEST(PasswordForm, WhatIsNoFormGivesNothing) {
  const PasswordKey key = testKey();
  for (const char* text : {"", "1", "123", "1G", "0x12", "12 34 ", "ÄÖ", "12345678901234567890 "}) {
    EXPECT_FALSE(decryptPassword(key, text)) << text;
  }
}

TEST(PasswordForm, DigitsMayBeInLowerCase) {
  EXPECT_EQ(decrypted(testKey(), "abcdef0123"), decrypted(testKey(), "ABCDEF0123"));
  EXPECT_NE(decrypted(testKey(), "abcdef0123"), "(nothing)");
}

}  // namespace
}  // namespace vornwout
