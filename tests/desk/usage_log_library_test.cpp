// The simulated machine's usage log library, called as the agent calls it.
#include "desk/usage_log_library.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "Common/log_library_exports.h"
#include "desk/usage_log_file.h"
#include "platform/owned.h"
#include "tests/support/file_holder.h"

namespace desk {
namespace {

using namespace platform;
using namespace vgl;
using Counters = std::vector<std::uint32_t>;

constexpr char16_t kName[] = u"VGL_TrayIcon_K12.xml";
constexpr char16_t kPath[] = u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_TrayIcon_K12.xml";
constexpr char16_t kVersion[] = u"1.0.0.0";

class UsageLogLibrary : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  sim::Library& library = AddUsageLogLibrary(machine, u"C:\\Set\\K_APLOG.DLL");
  OwnedModule module{Os().modules.LoadLibraryW(u"C:\\Set\\K_APLOG.DLL")};

  template <class Function>
  Function Export(const char* name) {
    const auto function = Os().modules.GetProcAddress(module.get(), name);
    EXPECT_NE(function, nullptr) << name;
    return reinterpret_cast<Function>(function);
  }

  std::int32_t Increment(const Counters& values, const char16_t* version = kVersion,
                         const char16_t* device = u"M1", const char16_t* name = kName) {
    return Export<IncrementMultiLogFunction>("IncrementMultiLog")(
        device, name, static_cast<std::int32_t>(values.size()), values.data(), version, 100);
  }
  std::int32_t Set(std::int32_t first, std::int32_t number, const Counters& values) {
    return Export<SetMultiLogValueFunction>("SetMultiLogValue")(u"M1", kName, first, number,
                                                                values.data(), kVersion, 100);
  }
  std::int32_t Create(const Counters& values, const char16_t* device = u"M1",
                      const char16_t* name = kName) {
    return Export<CreateLogFileFunction>("CreateLogFile")(
        device, name, static_cast<std::int32_t>(values.size()), values.data(), kVersion, 100, 0);
  }

  void Put(std::u16string version, Counters counters) {
    machine.files().WriteFile(
        kPath, FormatUsageLog({.deviceId = u"M1", .version = version, .counters = counters}));
  }
  std::string Bytes() { return machine.files().ReadFile(kPath).value_or("(none)"); }
  Counters Stored() {
    const auto log = ParseUsageLog(Bytes());
    return log ? log->counters : Counters();
  }
  void RemoveFolder() { machine.files().Remove(u"C:\\ProgramData\\KAVRO\\VGL3\\LOG"); }

  // A process that has the library's mutex for that long.
  void HoldFor(std::uint32_t milliseconds) {
    machine.StartProcess(u"C:\\other.exe", u"", [milliseconds](const char16_t*) {
      const OwnedObject mutex(Os().objects.CreateMutexW(nullptr, true, kUsageLogMutex));
      Os().process.Sleep(milliseconds);
      Os().objects.ReleaseMutex(mutex.get());
      return 0U;
    });
    machine.Settle();
  }
};

// --- Files

TEST_F(UsageLogLibrary, CreateMakesTheFile) {
  EXPECT_EQ(Create({1, 2, 3}), 1);
  EXPECT_EQ(Bytes(), FormatUsageLog({u"M1", u"1.0.0.0", {1, 2, 3}}));
}

TEST_F(UsageLogLibrary, CreateReplacesTheFileOfThatName) {
  Put(u"7.0.0.0", {100, 200, 300, 400});
  EXPECT_EQ(Create({1, 2}), 1);
  EXPECT_EQ(ParseUsageLog(Bytes()), (UsageLog{u"M1", u"1.0.0.0", {1, 2}}));
}

TEST_F(UsageLogLibrary, CreateReplacesThatOfAnotherDeviceAndWhatIsNoLog) {
  Create({5}, u"another");
  EXPECT_EQ(Create({6}), 1);
  EXPECT_EQ(ParseUsageLog(Bytes()), (UsageLog{u"M1", u"1.0.0.0", {6}}));
  machine.files().WriteFile(kPath, std::string(5000, 'x'));
  EXPECT_EQ(Create({7}), 1);
  EXPECT_EQ(Stored(), Counters{7});
}

TEST_F(UsageLogLibrary, IncrementAddsToWhatIsStored) {
  Put(u"1.0.0.0", {1, 2, 0xFFFFFFFF});
  EXPECT_EQ(Increment({10, 0, 2}), 1);
  EXPECT_EQ(Stored(), (Counters{11, 2, 1}));
}

TEST_F(UsageLogLibrary, ALogGrowsWithWhatItIsGivenAndKeepsWhatItHasMore) {
  Put(u"1.0.0.0", {1});
  EXPECT_EQ(Increment({1, 1, 1}), 1);
  EXPECT_EQ(Stored(), (Counters{2, 1, 1}));
  EXPECT_EQ(Increment({5}), 1);
  EXPECT_EQ(Stored(), (Counters{7, 1, 1}));
}

TEST_F(UsageLogLibrary, AFileThatBecomesShorterIsStillALog) {
  Put(u"1.0.0.0", {4294967295, 5});
  EXPECT_EQ(Increment({1}), 1);
  EXPECT_EQ(Stored(), (Counters{0, 5}));
}

TEST_F(UsageLogLibrary, SetStoresTheEntriesOfThatIndex) {
  Put(u"1.0.0.0", {1, 1, 1, 1});
  EXPECT_EQ(Set(1, 2, {50, 51, 52, 53}), 1);
  EXPECT_EQ(Stored(), (Counters{1, 51, 52, 1}));
  EXPECT_EQ(Set(3, 3, {0, 0, 0, 3, 4, 5}), 1);
  EXPECT_EQ(Stored(), (Counters{1, 51, 52, 3, 4, 5}));
}

// --- Codes

TEST_F(UsageLogLibrary, WithoutAFileTheCodeIsMinus1) {
  EXPECT_EQ(Increment({1}), -1);
  EXPECT_EQ(Set(0, 1, {1}), -1);
  EXPECT_FALSE(machine.files().Exists(kPath));
}

TEST_F(UsageLogLibrary, WithoutTheFolderItIsMinus3) {
  RemoveFolder();
  EXPECT_EQ(Increment({1}), -3);
  EXPECT_EQ(Set(0, 1, {1}), -3);
  EXPECT_EQ(Create({1}), -3);
  machine.files().WriteFile(u"C:\\ProgramData\\KAVRO\\VGL3\\LOG", "a file");
  EXPECT_EQ(Create({1}), -3);
}

TEST_F(UsageLogLibrary, AnOlderFileIsMinus5AndStays) {
  Put(u"0.99.0.0", {4});
  const std::string before = Bytes();
  EXPECT_EQ(Increment({1}), -5);
  EXPECT_EQ(Set(0, 1, {1}), -5);
  EXPECT_EQ(Bytes(), before);
}

TEST_F(UsageLogLibrary, ALaterFileIsMinus4AndStays) {
  Put(u"1.0.0.1", {4});
  const std::string before = Bytes();
  EXPECT_EQ(Increment({1}), -4);
  EXPECT_EQ(Set(0, 1, {1}), -4);
  EXPECT_EQ(Bytes(), before);
}

TEST_F(UsageLogLibrary, AnEqualVersionSucceedsHoweverItIsWritten) {
  Put(u"1", {4});
  EXPECT_EQ(Increment({1}), 1);
  EXPECT_EQ(Increment({1}, u"1.0"), 1);
  EXPECT_EQ(Stored(), Counters{6});
}

TEST_F(UsageLogLibrary, WhatIsNoLogAndTheLogOfAnotherDeviceCountAsNotThere) {
  for (const char* bytes : {"", "x", "<UsageLog device=\"M1\" version=\"1.0.0.0\">"}) {
    machine.files().WriteFile(kPath, bytes);
    EXPECT_EQ(Increment({1}), -1);
    EXPECT_EQ(Bytes(), bytes);
  }
  Put(u"1.0.0.0", {4});
  EXPECT_EQ(Increment({1}, kVersion, u"m1"), -1);
  EXPECT_EQ(Stored(), Counters{4});
}

TEST_F(UsageLogLibrary, AMutexThatIsHeldForLongerThanTheLimitIsATimeout) {
  Put(u"1.0.0.0", {4});
  HoldFor(101);
  const std::uint64_t before = machine.now();
  EXPECT_EQ(Increment({1}), -2);
  EXPECT_EQ(machine.now() - before, 100U);
  EXPECT_EQ(Stored(), Counters{4});
}

TEST_F(UsageLogLibrary, OneThatIsHeldForLessIsWaitedFor) {
  Put(u"1.0.0.0", {4});
  HoldFor(99);
  const std::uint64_t before = machine.now();
  EXPECT_EQ(Increment({1}), 1);
  EXPECT_EQ(machine.now() - before, 99U);
}

TEST_F(UsageLogLibrary, OneWhoseHolderWasEndedIsTaken) {
  Put(u"1.0.0.0", {4});
  HoldFor(5000);
  machine.EndProcess(*machine.processes().back());
  EXPECT_EQ(Increment({1}), 1);
}

TEST_F(UsageLogLibrary, EveryExportWaits) {
  Put(u"1.0.0.0", {4});
  HoldFor(1000);
  std::int32_t count = 0;
  std::array<char16_t, 16> version{};
  EXPECT_EQ(Set(0, 1, {1}), -2);
  EXPECT_EQ(Create({1}), -2);
  EXPECT_EQ(Export<ReadLogFunction>("ReadLog")(u"M1", kName, &count, nullptr, version.data(), 100),
            -2);
}

TEST_F(UsageLogLibrary, WhatCantBeOpenedOrWrittenIsntAvailable) {
  Put(u"1.0.0.0", {4});
  machine.files().MakeReadOnly(kPath);
  EXPECT_EQ(Increment({1}), 0);
  EXPECT_EQ(Create({1}), 0);
  machine.files().MakeUnreadable(kPath);
  EXPECT_EQ(Increment({1}), 0);
  EXPECT_EQ(Create({1}), 0);
}

TEST_F(UsageLogLibrary, AFileInUseIsntAvailable) {
  Put(u"1.0.0.0", {4});
  HoldOpenForSharedWriting(machine, kPath);
  EXPECT_EQ(Increment({1}), 0);
  EXPECT_EQ(Stored(), Counters{4});
}

TEST_F(UsageLogLibrary, AFileOfMoreThanAMegabyteIsntAvailable) {
  machine.files().WriteFile(kPath,
                            FormatUsageLog({u"M1", u"1.0.0.0", {4}}) + std::string(1 << 20, '\n'));
  EXPECT_EQ(Increment({1}), 0);
}

TEST_F(UsageLogLibrary, AFileIsReadHoweverLittleComesAtATime) {
  Put(u"1.0.0.0", {4});
  machine.files().LimitReads(7);
  EXPECT_EQ(Increment({1}), 1);
  machine.files().LimitReads(0);
  EXPECT_EQ(Increment({1}), 0);
  EXPECT_EQ(Stored(), Counters{5});
}

TEST_F(UsageLogLibrary, NamesThatAreNoneOrInAFolderArentAvailable) {
  for (const std::u16string& name :
       {std::u16string(), std::u16string(u"..\\x.xml"), std::u16string(u"C:x.xml"),
        std::u16string(u"a/b.xml"), std::u16string(u"*.xml"),
        u"VGL_TrayIcon_" + std::u16string(1000, u'K') + u".xml"}) {
    EXPECT_EQ(Increment({1}, kVersion, u"M1", name.c_str()), 0);
    EXPECT_EQ(Create({1}, u"M1", name.c_str()), 0);
  }
}

TEST_F(UsageLogLibrary, APathOf259CharactersIsTheLongest) {
  // The folder and its backslash take 30.
  EXPECT_EQ(Create({1}, u"M1", std::u16string(229, u'K').c_str()), 1);
  EXPECT_EQ(Create({1}, u"M1", std::u16string(230, u'K').c_str()), 0);
}

TEST_F(UsageLogLibrary, ACallOutsideTheContractIsntAvailable) {
  Put(u"1.0.0.0", {4});
  const auto increment = Export<IncrementMultiLogFunction>("IncrementMultiLog");
  const std::uint32_t one = 1;
  EXPECT_EQ(increment(nullptr, kName, 1, &one, kVersion, 100), 0);
  EXPECT_EQ(increment(u"M1", nullptr, 1, &one, kVersion, 100), 0);
  EXPECT_EQ(increment(u"M1", kName, 1, nullptr, kVersion, 100), 0);
  EXPECT_EQ(increment(u"M1", kName, 1, &one, nullptr, 100), 0);
  EXPECT_EQ(increment(u"M1", kName, 1, &one, u"one", 100), 0);
  EXPECT_EQ(increment(u"M1", kName, -1, &one, kVersion, 100), 0);
  EXPECT_EQ(Set(-1, 1, {1}), 0);
  EXPECT_EQ(Set(1, -1, {1}), 0);
  EXPECT_EQ(Set(4000, 97, {1}), 0);
  EXPECT_EQ(Stored(), Counters{4});
}

TEST_F(UsageLogLibrary, AFailureOfAnyCallLeavesTheFileAsItIsOrCarriesItOut) {
  Put(u"1.0.0.0", {4294967295});
  const std::string before = Bytes();
  const std::uint64_t start = inside.process().calls();
  ASSERT_EQ(Increment({1}), 1);
  const std::uint64_t calls = inside.process().calls() - start;
  ASSERT_GT(calls, 8U);
  std::uint32_t failures = 0;
  for (std::uint64_t number = 2; number <= calls; ++number) {  // the first one asks for the export
    machine.files().WriteFile(kPath, before);
    inside.process().FailCall(number);
    const std::int32_t code = Increment({1});
    failures += code == 1 ? 0 : 1;
    if (code == 1)
      EXPECT_EQ(Stored(), Counters{0});
    else
      EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(inside.process().Ledger().size(), 1U);  // the library itself
  }
  EXPECT_GT(failures, 5U);
}

// --- Reading

class UsageLogRead : public UsageLogLibrary {
 protected:
  std::int32_t count = 0;
  Counters buffer = Counters(100, 77);
  std::array<char16_t, 16> version{};

  std::int32_t Read(bool hasBuffer, const char16_t* name = kName) {
    return Export<ReadLogFunction>("ReadLog")(
        u"M1", name, &count, hasBuffer ? buffer.data() : nullptr, version.data(), 100);
  }
};

TEST_F(UsageLogRead, TellsTheNumberOfEntriesAndThenGivesThem) {
  Put(u"9.8.7.6", Counters(20, 5));
  EXPECT_EQ(Read(false), -7);
  EXPECT_EQ(count, 20);
  EXPECT_EQ(Read(true), 1);
  EXPECT_EQ(count, 20);
  EXPECT_EQ(buffer[19], 5U);
  EXPECT_EQ(buffer[20], 77U);
  EXPECT_EQ(std::u16string(version.data()), u"9.8.7.6");
}

TEST_F(UsageLogRead, TooLittleRoomIsToldLikeNone) {
  Put(u"1.0.0.0", Counters(20, 5));
  count = 19;
  EXPECT_EQ(Read(true), -7);
  EXPECT_EQ(count, 20);
  EXPECT_EQ(buffer[0], 77U);
}

TEST_F(UsageLogRead, ALogHasAtLeastTheEntriesOfItsKind) {
  struct Row {
    const char16_t* name;
    std::int32_t entries;
  };
  for (const Row& row : {Row{u"VGL_TrayIcon_1.xml", 14}, Row{u"VGL_Detail_1.xml", 57},
                         Row{u"VGL_Preferences_1.xml", 24}, Row{u"VGL_Other_1.xml", 1}}) {
    Create({9}, u"M1", row.name);
    EXPECT_EQ(Read(false, row.name), -7);
    EXPECT_EQ(count, row.entries);
    EXPECT_EQ(Read(true, row.name), 1);
    EXPECT_EQ(buffer[0], 9U);
    if (row.entries > 1) {
      EXPECT_EQ(buffer[static_cast<std::size_t>(row.entries) - 1], 0U);
    }
  }
}

TEST_F(UsageLogRead, WithoutAFileOrAFolderTheCodesAreThose) {
  EXPECT_EQ(Read(false), -1);
  RemoveFolder();
  EXPECT_EQ(Read(false), -3);
  EXPECT_EQ(count, 0);
}

TEST_F(UsageLogRead, TheLongestVersionFitsIntoItsRoom) {
  Put(u"999.999.999.999", {1});
  count = 14;
  EXPECT_EQ(Read(true), 1);
  EXPECT_EQ(std::u16string(version.data()), u"999.999.999.999");
}

// --- Device ids

class UsageLogDevice : public UsageLogLibrary {
 protected:
  std::int32_t chars = 0;
  std::array<char16_t, 300> text{};

  UsageLogDevice() {
    machine.spooler().AddPrinter({.name = u"Studio", .port = u"USB001", .driver = u"d"});
  }
  void SetId(std::string_view utf16) {
    machine.spooler().SetData(u"Studio", u"PrinterDriverData", u"DeviceID", 1, utf16);
  }
  std::int32_t Ask(bool hasBuffer, const char16_t* printer = u"Studio") {
    return Export<GetExtEscapeDeviceIDFunction>("GetExtEscapeDeviceID")(
        printer, hasBuffer ? text.data() : nullptr, &chars);
  }
};

TEST_F(UsageLogDevice, ComesFromThePrintersData) {
  SetId(std::string_view("S\0001\0\0\0", 6));
  EXPECT_EQ(Ask(false), -7);
  EXPECT_EQ(chars, 3);
  EXPECT_EQ(Ask(true), 1);
  EXPECT_EQ(std::u16string(text.data()), u"S1");
}

TEST_F(UsageLogDevice, TooLittleRoomIsToldLikeNone) {
  SetId(std::string_view("S\0001\0\0\0", 6));
  chars = 2;
  EXPECT_EQ(Ask(true), -7);
  EXPECT_EQ(chars, 3);
  EXPECT_EQ(text[0], u'\0');
}

TEST_F(UsageLogDevice, APrinterWithoutOneOrThatIsntThereDoesntAnswer) {
  EXPECT_EQ(Ask(false), -10);
  EXPECT_EQ(Ask(false, u"missing"), -10);
  SetId(std::string(2 * 260, 'x'));  // longer than anything
  EXPECT_EQ(Ask(false), -10);
  EXPECT_EQ(inside.process().Ledger().size(), 1U);
}

TEST_F(UsageLogDevice, ATestMayNameOne) {
  UsageLogLibraryOf(machine).deviceIds[u"Studio"] = u"named";
  EXPECT_EQ(Ask(false), -7);
  EXPECT_EQ(chars, 6);
}

// --- The face for tests

TEST_F(UsageLogLibrary, AnswersOfATestAreGivenOnceEachAndNothingIsDone) {
  UsageLogLibraryOf(machine).answers["IncrementMultiLog"] = {{-5}, {12}};
  EXPECT_EQ(Increment({1}), -5);
  EXPECT_EQ(Increment({1}), 12);
  EXPECT_EQ(Increment({1}), -1);
  EXPECT_EQ(library.Calls("IncrementMultiLog"), 3U);
}

TEST_F(UsageLogLibrary, CallsAreKeptAsTheyCame) {
  Increment({1, 2});
  Set(1, 2, {5, 6, 7});
  Create({3});
  const std::vector<UsageLogCall>& calls = UsageLogLibraryOf(machine).calls;
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0].name, "IncrementMultiLog");
  EXPECT_EQ(calls[0].deviceId, u"M1");
  EXPECT_EQ(calls[0].fileName, kName);
  EXPECT_EQ(calls[0].count, 2);
  EXPECT_EQ(calls[0].values, (Counters{1, 2}));
  EXPECT_EQ(calls[0].version, u"1.0.0.0");
  EXPECT_EQ(calls[0].waitLimit, 100);
  EXPECT_EQ(calls[1].name, "SetMultiLogValue");
  EXPECT_EQ(calls[1].first, 1);
  EXPECT_EQ(calls[1].values, (Counters{6, 7}));
  EXPECT_EQ(calls[2].name, "CreateLogFile");
}

}  // namespace
}  // namespace desk
