#include "platform/adapter/host_adapter.h"

#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

/// Which entry of the table of virtual operations a pointer to a member stands for. In the ABI of
/// this compiler and system such a pointer begins with one more than the entry's offset in bytes.
template <typename Member>
std::size_t entryOf(Member member) {
  std::size_t word = 0;
  static_assert(sizeof member >= sizeof word);
  std::memcpy(&word, &member, sizeof word);
  EXPECT_EQ(word % 2, 1U) << "this is no virtual operation";
  return word / sizeof(void*);
}

TEST(HostAdapterInterface, OperationsStandInTheirSettledOrder) {
#ifdef __x86_64__
  EXPECT_EQ(entryOf(&HostAdapter::IsPathExpansionSuppressed), 0U);
  EXPECT_EQ(entryOf(&HostAdapter::GetOutputController), 1U);
  EXPECT_EQ(entryOf(&HostAdapter::ExportOutput), 2U);
  EXPECT_EQ(entryOf(&HostAdapter::ModifyOutput), 3U);
#else
  GTEST_SKIP() << "how pointers to members look is known for x86-64 only";
#endif
}

TEST(OutputControllerInterfaceTable, SendRequestIsTheThirdEntry) {
#ifdef __x86_64__
  EXPECT_EQ(entryOf(&OutputControllerInterface::SendRequest), 2U);
#else
  GTEST_SKIP() << "how pointers to members look is known for x86-64 only";
#endif
}

}  // namespace
}  // namespace vornwout
