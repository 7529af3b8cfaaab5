// The function-disable record: which functions a printer's driver has switched off.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>

#include "platform/owned.h"
#include "tests/Common/disable_func_data_fixture.h"

namespace vgl {
namespace {

using namespace platform;

// --- The object

TEST_F(DisableFuncData, ANewOneHasAllMembersAtZero) {
  EXPECT_TRUE(IsAsNew());
  EXPECT_EQ(data.pRecord, nullptr);
}

TEST_F(DisableFuncData, MembersStandInTheSuitesOrderBehindTheVirtualFunctions) {
  const auto offset = [&](const auto& member) {
    return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&data);
  };
  EXPECT_EQ(offset(data.bNoNetPilot), 8);
  EXPECT_EQ(offset(data.bNoInvitation), 12);
  EXPECT_EQ(offset(data.bFunc3), 16);
  EXPECT_EQ(offset(data.bFunc4), 20);
  EXPECT_EQ(offset(data.bNoIoPopup), 24);
  EXPECT_EQ(offset(data.bByte8), 28);
  EXPECT_EQ(offset(data.bNoInkOrder), 32);
  EXPECT_EQ(offset(data.bDisableUpdate), 36);
  EXPECT_EQ(offset(data.bNotify), 40);
  EXPECT_EQ(offset(data.pRecord), 80);
  EXPECT_EQ(offset(data.bLoaded), 88);
  EXPECT_EQ(offset(data.bUpdateRead), 92);
  EXPECT_EQ(sizeof data, 96U);
}

TEST_F(DisableFuncData, ItIsDestroyedThroughItsOneVirtualOperation) {
  struct Derived : CGetDisableVglFuncData {
    explicit Derived(bool& destroyed) : m_destroyed(destroyed) {}
    ~Derived() override { m_destroyed = true; }
    bool& m_destroyed;
  };
  bool destroyed = false;
  SetRecord(kAllOn);
  std::unique_ptr<CGetDisableVglFuncData> base = std::make_unique<Derived>(destroyed);
  EXPECT_EQ(base->LoadDisableRecord(u"P"), 0);
  base.reset();
  EXPECT_TRUE(destroyed);
}

// --- The record

TEST_F(DisableFuncData, BytesOfOneAndBitsThatAreSetSwitchNothingOff) {
  SetRecord(kAllOn);
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Notifications(), kAll);
  EXPECT_EQ(data.bLoaded, 1);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DisableFuncData, EachByteHasItsSwitch) {
  const struct {
    std::size_t byte;
    Switched off;
  } rows[] = {
      {1, {1, 0, 0, 0, 0, 0, 0}}, {2, {0, 1, 0, 0, 0, 0, 0}}, {3, {0, 0, 1, 0, 0, 0, 0}},
      {4, {0, 0, 0, 1, 0, 0, 0}}, {5, {0, 0, 0, 0, 1, 0, 0}}, {8, {0, 0, 0, 0, 0, 1, 0}},
      {9, {0, 0, 0, 0, 0, 0, 1}},
  };
  for (const auto& row : rows) {
    CGetDisableVglFuncData fresh;
    std::string record = kAllOn;
    record[row.byte] = 0;
    SetRecord(record);
    EXPECT_EQ(fresh.LoadDisableRecord(u"P"), 0);
    EXPECT_EQ(SwitchesOf(fresh), row.off) << "byte " << row.byte;
  }
}

TEST_F(DisableFuncData, EachBitHasItsNotification) {
  for (std::size_t flag = 0; flag < 10; ++flag) {
    CGetDisableVglFuncData fresh;
    std::string record = kAllOn;
    record[6] = static_cast<char>(flag < 8 ? 1 << flag : 0);
    record[7] = static_cast<char>(flag < 8 ? 0 : 1 << (flag - 8));
    SetRecord(record);
    EXPECT_EQ(fresh.LoadDisableRecord(u"P"), 0);
    Notify expected{};
    expected[flag] = 1;
    EXPECT_EQ(std::to_array(fresh.bNotify), expected) << "flag " << flag + 1;
  }
}

TEST_F(DisableFuncData, BitsTwoToSevenOfByteSevenHaveNoEffect) {
  SetRecord(Bytes({1, 1, 1, 1, 1, 1, 0x00, 0xFC, 1, 1}));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(Notifications(), kNone);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(DisableFuncData, AnyNumberButZeroLeavesASwitchOn) {
  SetRecord(Bytes({0, 2, 0x80, 0xFF, 7, 64, 0xFF, 0xFF, 0x7F, 0xFE}));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(DisableFuncData, VersionsZeroAndOneAreRead) {
  for (const char version : {char{0}, char{1}}) {
    CGetDisableVglFuncData fresh;
    std::string record = kAllOn;
    record[0] = version;
    record[1] = 0;
    SetRecord(record);
    EXPECT_EQ(fresh.LoadDisableRecord(u"P"), 0);
    EXPECT_EQ(fresh.bNoNetPilot, 1);
  }
}

TEST_F(DisableFuncData, VersionTwoIsRefusedAndSetsNothing) {
  SetRecord(Bytes({2, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), -99);
  EXPECT_TRUE(IsAsNew());
  EXPECT_NE(data.pRecord, nullptr);
}

TEST_F(DisableFuncData, VersionsAboveTwoAreRefusedAsWell) {
  for (const char version : {char{3}, static_cast<char>(0x80), static_cast<char>(0xFF)}) {
    CGetDisableVglFuncData fresh;
    SetRecord(std::string(1, version) + std::string(9, '\0'));
    EXPECT_EQ(fresh.LoadDisableRecord(u"P"), -99);
    EXPECT_EQ(fresh.bLoaded, 0);
  }
}

TEST_F(DisableFuncData, ARefusedRecordStaysAndIsRefusedAgainWithoutAskingAnybody) {
  SetRecord(std::string(1, char{2}));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), -99);
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(data.LoadDisableRecord(u"P"), -99);
  EXPECT_EQ(inside.process().calls(), calls);
}

// --- Sizes. Each record is zeros all through, so that every byte that counts switches off.

TEST_F(DisableFuncData, WhatAShorterRecordDoesntHaveStaysAsItWas) {
  const struct {
    std::size_t size;
    Switched off;
  } rows[] = {
      {0, {0, 0, 0, 0, 0, 0, 0}},  {1, {0, 0, 0, 0, 0, 0, 0}},    {2, {1, 0, 0, 0, 0, 0, 0}},
      {5, {1, 1, 1, 1, 0, 0, 0}},  {6, {1, 1, 1, 1, 1, 0, 0}},    {7, {1, 1, 1, 1, 1, 0, 0}},
      {8, {1, 1, 1, 1, 1, 0, 0}},  {9, {1, 1, 1, 1, 1, 1, 1}},    {10, {1, 1, 1, 1, 1, 1, 1}},
      {11, {1, 1, 1, 1, 1, 1, 1}}, {4096, {1, 1, 1, 1, 1, 1, 1}},
  };
  for (const auto& row : rows) {
    CGetDisableVglFuncData fresh;
    SetRecord(std::string(row.size, '\0'));
    EXPECT_EQ(fresh.LoadDisableRecord(u"P"), 0) << row.size;
    EXPECT_EQ(SwitchesOf(fresh), row.off) << row.size;
    EXPECT_EQ(std::to_array(fresh.bNotify), kNone) << row.size;
    EXPECT_EQ(fresh.bLoaded, 1) << row.size;
  }
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DisableFuncData, ARecordOfEightBytesIsDecodedUpToByteSeven) {
  SetRecord(Bytes({1, 0, 1, 0, 1, 0, 0x55, 0x02}));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(Switches(), Switched({1, 0, 1, 0, 1, 0, 0}));
  EXPECT_EQ(Notifications(), (Notify{1, 0, 1, 0, 1, 0, 1, 0, 0, 1}));
}

TEST_F(DisableFuncData, ARecordOfSevenBytesHasTheFirstEightNotificationsOnly) {
  SetRecord(Bytes({1, 1, 1, 1, 1, 1, 0xFF}));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(Notifications(), (Notify{1, 1, 1, 1, 1, 1, 1, 1, 0, 0}));
}

TEST_F(DisableFuncData, ARecordOfNineBytesReadsAZeroBehindItsEnd) {
  SetRecord(kAllOn.substr(0, 9));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 0, 1}));
}

TEST_F(DisableFuncData, ALongRecordIsKeptWhole) {
  std::string record = kAllOn + std::string(4086, 'x');
  SetRecord(record);
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 0, 0}));
  EXPECT_TRUE(std::equal(record.begin(), record.end(), data.pRecord.get(),
                         [](char a, auto b) { return static_cast<std::uint8_t>(a) == b; }));
}

TEST_F(DisableFuncData, TheTypeOfTheRecordDoesntMatter) {
  std::string record = kAllOn;
  record[2] = 0;
  machine.spooler().SetData(u"P", kKey, u"KV_DISABLE_VGLFUNC", REG_SZ, record);
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(data.bNoInvitation, 1);
}

// --- Reading it

TEST_F(DisableFuncData, ASecondLoadAsksNobodyAndChangesNothing) {
  SetRecord(kAllOn);
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  SetRecord(std::string(10, '\0'));
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(inside.process().calls(), calls);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Notifications(), kAll);
}

TEST_F(DisableFuncData, APrinterWithoutTheRecordGivesMinus99AndCanBeAskedAgain) {
  EXPECT_EQ(data.LoadDisableRecord(u"P"), -99);
  EXPECT_TRUE(IsAsNew());
  SetRecord(std::string(10, '\0'));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(data.bNoNetPilot, 1);
}

TEST_F(DisableFuncData, NullAndEmptyNamesGiveMinus99AndAskNobody) {
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(data.LoadDisableRecord(nullptr), -99);
  EXPECT_EQ(data.LoadDisableRecord(u""), -99);
  EXPECT_EQ(inside.process().calls(), calls);
  EXPECT_TRUE(IsAsNew());
}

TEST_F(DisableFuncData, APrinterThatCantBeOpenedGivesZeroAndSwitchesNothingOff) {
  EXPECT_EQ(data.LoadDisableRecord(u"missing"), 0);
  EXPECT_TRUE(IsAsNew());
  EXPECT_EQ(data.pRecord, nullptr);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DisableFuncData, AnInstallerAtWorkAndAMissingMutexComeOutAsMinus99) {
  SetRecord(std::string(10, '\0'));
  const HANDLE installer = Os().objects.CreateMutexW(nullptr, false, kInstaller);
  EXPECT_EQ(data.LoadDisableRecord(u"P"), -99);
  Os().objects.CloseHandle(installer);
  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);
  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);  // also the second try
  EXPECT_EQ(data.LoadDisableRecord(u"P"), -99);
  EXPECT_TRUE(IsAsNew());
}

TEST_F(DisableFuncData, OpensWithAllRights) {
  SetRecord(kAllOn);
  data.LoadDisableRecord(u"P");
  EXPECT_EQ(machine.spooler().lastDesiredAccess, 0xF000CU);
}

TEST_F(DisableFuncData, OpensWithoutDefaultsWhereAllRightsArentGranted) {
  SetRecord(kAllOn);
  SetUpdateLock(Bytes({1, 0, 0, 0}));
  machine.spooler().MakeAccessDenied(u"P");
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(machine.spooler().lastDesiredAccess, 0U);
  EXPECT_EQ(data.bLoaded, 1);
  EXPECT_EQ(data.LoadUpdateLock(u"P"), 0);
  EXPECT_EQ(data.bDisableUpdate, 1);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DisableFuncData, AFailedCloseOfTheMutexIsLogged) {
  machine.files().WriteFile(kLog, "");
  SetRecord(kAllOn);
  std::uint32_t needed = 0;
  // The log closes two handles for the opening's line and two for the closing's; the fifth is it.
  inside.process().FailNext("CloseHandle", ERROR_INVALID_HANDLE, 4);
  EXPECT_EQ(data.GetDisableData(u"P", nullptr, 0, &needed), 234);
  const std::string log = machine.files().ReadFile(kLog).value_or("");
  EXPECT_NE(log.find("ClosePriner hPrinter["), std::string::npos);
  EXPECT_NE(log.find("Close Mutex Fail hMutex=["), std::string::npos);
}

// --- The record changes between its two reads

// Another program changes the printer at the moment when the first read has closed it, which the
// open-printer log shows: its second line of each open.
class ChangingRecord : public DisableFuncData {
 protected:
  std::int32_t LoadWhile(const std::function<void()>& change) {
    machine.files().WriteFile(kLog, "");
    int lines = 0;
    machine.Observe([&](const sim::Event& event) {
      if (event.text.find(u"KVOPENPRINTER.log") != std::u16string::npos && ++lines == 2) change();
    });
    const std::int32_t result = data.LoadDisableRecord(u"P");
    machine.Observe(nullptr);
    EXPECT_GE(lines, 3) << "there was no second read";
    EXPECT_TRUE(inside.process().Ledger().empty());
    return result;
  }
};

TEST_F(ChangingRecord, OneThatHasGrownIsTakenForZerosWithTheStatusThatTellsSo) {
  SetRecord(kAllOn);
  EXPECT_EQ(LoadWhile([&] { SetRecord(kAllOn + "more"); }), 234);
  EXPECT_EQ(Switches(), Switched({1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(Notifications(), kNone);
  EXPECT_EQ(data.bLoaded, 1);
}

TEST_F(ChangingRecord, OneThatHasShrunkEndsInZerosUpToTheSizeThatWasLearned) {
  SetRecord(kAllOn);
  EXPECT_EQ(LoadWhile([&] { SetRecord(kAllOn.substr(0, 7)); }), 0);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 1, 1}));
  EXPECT_EQ(Notifications(), (Notify{1, 1, 1, 1, 1, 1, 1, 1, 0, 0}));
}

TEST_F(ChangingRecord, OneThatIsGoneIsTakenForZerosWithItsStatus) {
  SetRecord(kAllOn);
  EXPECT_EQ(LoadWhile([&] { machine.spooler().RemoveData(u"P", kKey, u"KV_DISABLE_VGLFUNC"); }), 2);
  EXPECT_EQ(Switches(), Switched({1, 1, 1, 1, 1, 1, 1}));
}

TEST_F(ChangingRecord, OneThatHasBecomeVersionTwoIsRefused) {
  SetRecord(kAllOn);
  EXPECT_EQ(LoadWhile([&] { SetRecord(std::string(10, char{2})); }), -99);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 0, 0}));
}

// The second open gives no status of a read, but its own result, which is 0.
TEST_F(ChangingRecord, APrinterThatIsGoneGivesZeroAndTheZerosCount) {
  SetRecord(kAllOn);
  EXPECT_EQ(LoadWhile([&] { machine.spooler().RemovePrinter(u"P"); }), 0);
  EXPECT_EQ(Switches(), Switched({1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(data.bLoaded, 1);
}

TEST_F(DisableFuncData, AnInstallerThatIsSeenByTheSecondReadAloneGivesMinusOne) {
  SetRecord(kAllOn);
  const OwnedObject installer(Os().objects.CreateMutexW(nullptr, false, kInstaller));
  inside.process().FailNext("OpenMutexW", ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(data.LoadDisableRecord(u"P"), -1);
  EXPECT_EQ(Switches(), Switched({1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(data.bLoaded, 1);
}

TEST_F(DisableFuncData, AFailingSecondReadDecodesZerosAndGivesItsStatusOnce) {
  SetRecord(kAllOn);
  inside.process().FailNext("GetPrinterDataW", ERROR_PRINTER_DELETED, 1);
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 1905);
  EXPECT_EQ(Switches(), Switched({1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(data.bLoaded, 1);
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);  // as any second call
}

// --- The two reads themselves

TEST_F(DisableFuncData, TheBytesComeWithTheirSize) {
  SetRecord("0123456789");
  char bytes[10] = {};
  std::uint32_t needed = 0;
  EXPECT_EQ(data.GetDisableData(u"P", nullptr, 0, &needed), 234);
  EXPECT_EQ(needed, 10U);
  EXPECT_EQ(data.GetDisableData(u"P", bytes, 9, &needed), 234);
  EXPECT_EQ(data.GetDisableData(u"P", bytes, 10, &needed), 0);
  EXPECT_EQ(std::string_view(bytes, 10), "0123456789");
}

TEST_F(DisableFuncData, ReadsGiveTheSystemsErrorOrTheOpensResult) {
  std::uint32_t value = 7;
  std::uint32_t needed = 0;
  EXPECT_EQ(data.GetDisableData(u"P", nullptr, 0, &needed), 2);
  EXPECT_EQ(data.GetUpdateData(u"P", &value, &needed), 2);
  EXPECT_EQ(data.GetDisableData(u"missing", nullptr, 0, &needed), 0);
  EXPECT_EQ(data.GetUpdateData(u"missing", &value, &needed), 0);
  for (const char16_t* none : {u"", static_cast<const char16_t*>(nullptr)}) {
    EXPECT_EQ(data.GetDisableData(none, nullptr, 0, &needed), -99);
    EXPECT_EQ(data.GetUpdateData(none, &value, &needed), -99);
  }
  const OwnedObject installer(Os().objects.CreateMutexW(nullptr, false, kInstaller));
  EXPECT_EQ(data.GetDisableData(u"P", nullptr, 0, &needed), -1);
  EXPECT_EQ(data.GetUpdateData(u"P", &value, &needed), -1);
  EXPECT_EQ(value, 7U);
}

// --- Failures

TEST_F(DisableFuncData, NoFailureOfACallLeavesAnythingOpenOrAnUnknownResult) {
  SetRecord(kAllOn);
  SetUpdateLock(Bytes({1, 0, 0, 0}));
  std::string lastFailed;
  for (std::uint64_t number = 1; number <= 40; ++number) {
    CGetDisableVglFuncData fresh;
    inside.process().FailCall(number);
    const std::int32_t record = fresh.LoadDisableRecord(u"P");
    const std::int32_t lock = fresh.LoadUpdateLock(u"P");
    // 6: the second read of the record, which tells itself.
    EXPECT_THAT(record, testing::AnyOf(0, -99, 6)) << "call " << number;
    EXPECT_THAT(lock, testing::AnyOf(0, -99)) << "call " << number;
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
    if (!inside.process().failedOperation().empty())
      lastFailed = inside.process().failedOperation();
  }
  EXPECT_EQ(lastFailed, "GetPrinterDataExW");  // the last that can fail by number
}

}  // namespace
}  // namespace vgl
