// Identifiers of the simulated machine in the ledger, and their end.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

using Ledger = std::vector<std::u16string>;

void* MakeSid() {
  constexpr std::uint32_t kNumbers[8] = {SECURITY_LOCAL_SYSTEM_RID};
  void* sid = nullptr;
  EXPECT_TRUE(Os().security.AllocateAndInitializeSid(&SECURITY_NT_AUTHORITY, 1, kNumbers, &sid));
  return sid;
}

TEST(SimulatedSecurity, AnIdentifierStandsInTheLedgerUntilItIsFreed) {
  Machine machine;
  Inside inside(machine);
  void* first = MakeSid();
  void* second = MakeSid();
  EXPECT_NE(first, second);
  EXPECT_EQ(inside.process().Ledger(), (Ledger{u"SID", u"SID"}));
  EXPECT_EQ(Os().security.FreeSid(first), nullptr);
  EXPECT_EQ(inside.process().Ledger(), Ledger{u"SID"});
  EXPECT_EQ(Os().security.FreeSid(second), nullptr);
  EXPECT_EQ(inside.process().Ledger(), Ledger{});
}

TEST(SimulatedSecurity, WhatIsNoIdentifierCannotBeFreed) {
  Machine machine;
  const Inside inside(machine);
  void* freed = MakeSid();
  ASSERT_EQ(Os().security.FreeSid(freed), nullptr);
  std::uint8_t own[12] = {1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0};
  for (void* none : {freed, static_cast<void*>(own)}) EXPECT_EQ(Os().security.FreeSid(none), none);
}

TEST(SimulatedSecurity, AnIdentifierOfAnotherProcessCannotBeFreed) {
  Machine machine;
  Inside inside(machine);
  void* sid = MakeSid();
  void* result = nullptr;
  machine.StartProcess(u"C:\\other.exe", u"", [&](const char16_t*) {
    result = Os().security.FreeSid(sid);
    return 0U;
  });
  Os().process.Sleep(1);
  EXPECT_EQ(result, sid);
  EXPECT_EQ(Os().security.GetLengthSid(sid), 12U);  // it is still there
  EXPECT_EQ(Os().security.FreeSid(sid), nullptr);
}

TEST(SimulatedSecurity, AnIdentifierCanBeLookedAtWhileItsProcessIsTakenDown) {
  struct LooksWhenItGoes {
    void* sid;
    std::uint8_t& seen;
    ~LooksWhenItGoes() { seen = static_cast<const std::uint8_t*>(sid)[8]; }
  };
  Machine machine;
  std::uint8_t seen = 0;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
    const LooksWhenItGoes looker{MakeSid(), seen};
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  machine.Settle();
  machine.EndProcess(process);
  EXPECT_EQ(process.Ledger(), Ledger{u"SID"});
  EXPECT_EQ(seen, 18);
}

TEST(SimulatedSecurity, EachCallCanFail) {
  Machine machine;
  Inside inside(machine);
  constexpr std::uint32_t kNumbers[8] = {};
  alignas(4) std::uint8_t list[48];
  void* sid = MakeSid();
  void* other = nullptr;
  inside.process().FailNext("AllocateAndInitializeSid", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_FALSE(Os().security.AllocateAndInitializeSid(&SECURITY_NT_AUTHORITY, 1, kNumbers, &other));
  EXPECT_EQ(Os().process.GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
  inside.process().FailNext("InitializeAcl", ERROR_INVALID_PARAMETER);
  EXPECT_FALSE(Os().security.InitializeAcl(list, 48, ACL_REVISION));
  ASSERT_TRUE(Os().security.InitializeAcl(list, 48, ACL_REVISION));
  inside.process().FailNext("AddAccessAllowedAce", ERROR_ALLOTTED_SPACE_EXCEEDED);
  EXPECT_FALSE(Os().security.AddAccessAllowedAce(list, ACL_REVISION, 1, sid));
  EXPECT_EQ(list[4], 0);  // no entry
  inside.process().FailNext("FreeSid", ERROR_INVALID_SID);
  EXPECT_EQ(Os().security.FreeSid(sid), sid);
  EXPECT_EQ(Os().security.FreeSid(sid), nullptr);
}

}  // namespace
}  // namespace sim
