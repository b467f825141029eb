// Room for large texts.
#include "platform/text/reserve_large.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(ReserveLarge, MakesRoomAndKeepsTheText) {
  for (const std::size_t capacity : {std::size_t{0}, std::size_t{1}, std::size_t{4096},
                                     std::size_t{8} << 20, (std::size_t{64} << 20) + 7}) {
    std::string text = "kept";
    reserveLarge(text, capacity);
    EXPECT_GE(text.capacity(), capacity);
    const char* const place = text.data();
    text.resize(std::max(text.size(), capacity), 'x');
    EXPECT_EQ(text.data(), place) << "it was moved although there was room";
    EXPECT_EQ(text.substr(0, 4), "kept");
    EXPECT_EQ(text.back(), capacity > 4 ? 'x' : 't');
  }
}

}  // namespace
}  // namespace vornwout
