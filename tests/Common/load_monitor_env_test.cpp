#include <gtest/gtest.h>

#include <array>

#include "Common/KVRDEFREGISTRY.h"
#include "Common/reg_library.h"
#include "tests/Common/reg_library_fixture.h"

namespace vgl {
namespace {

using namespace platform;

using MonitorEnv = RegLibraryFixture<char16_t>;

TEST_F(MonitorEnv, OneWhenTheLibraryIsInUseNow) {
  AddDriverSet();
  EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), 1);
  EXPECT_EQ(g_bRegLibraryMode.get(), 1);
  EXPECT_EQ(g_pRegLibrary->loader<char16_t>().didLoad(), 1);
}

TEST_F(MonitorEnv, OneWithoutACallWhenItIsInUseAlready) {
  g_bRegLibraryMode = 1;
  const std::uint64_t before = calls();
  EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), 1);
  EXPECT_EQ(calls(), before);
  EXPECT_EQ(g_pRegLibrary.get(), nullptr);
}

TEST_F(MonitorEnv, ZeroOnASystemThatItIsntForAndNothingIsMade) {
  AddDriverSet();
  for (const OsVersion& version :
       {OsVersion{10, 0, 1, 1}, OsVersion{4, 0, 2, 1}, OsVersion{10, 0, 3, 1}}) {
    machine.system().version = version;
    const std::uint64_t before = calls();
    EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), 0);
    EXPECT_EQ(calls() - before, 1U);
  }
  EXPECT_EQ(g_pRegLibrary.get(), nullptr);
  EXPECT_EQ(g_bRegLibraryMode.get(), 0);
}

TEST_F(MonitorEnv, ZeroOnASystemThatDoesntTellItsVersion) {
  AddDriverSet();
  machine.system().versionIsKnown = false;
  EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), 0);
  EXPECT_EQ(g_pRegLibrary.get(), nullptr);
}

TEST_F(MonitorEnv, MinusOneWhenTheLibraryCantBeLoaded) {
  EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), -1);
  EXPECT_EQ(LoadMonitorEnv(u""), -1);
  EXPECT_EQ(LoadMonitorEnv(nullptr), -1);
  EXPECT_EQ(g_bRegLibraryMode.get(), 0);
  AddDriverSet();
  EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), 1);
}

TEST_F(MonitorEnv, ALibraryThatLacksExportsIsInUseAllTheSame) {
  AddDriverSet().RemoveExport(4);
  EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), 1);
  EXPECT_EQ(g_bRegLibraryMode.get(), 1);
  EXPECT_EQ(CKvRdefRegistry(HKEY_LOCAL_MACHINE, u"Software", true).m_IsOpen, 0);
}

TEST_F(MonitorEnv, TheRegistryIsReadThroughTheLibraryFromItToTheRelease) {
  const sim::Library& library = AddDriverSet();
  machine.registry().SetDword(HKEY_LOCAL_MACHINE, u"K", u"n", 7);
  const auto read = [] {
    return CKvRdefRegistry(HKEY_LOCAL_MACHINE, u"K", false).GetDword(u"n", 0);
  };
  EXPECT_EQ(read(), 7U);
  EXPECT_EQ(library.Calls(11), 0U);
  LoadMonitorEnv(u"KAVRO D");
  EXPECT_EQ(read(), 7U);
  EXPECT_EQ(library.Calls(11), 1U);
  ReleaseRegLibrary();
  EXPECT_EQ(read(), 7U);
  EXPECT_EQ(library.Calls(11), 1U);
}

TEST_F(MonitorEnv, EachProcessHasALibraryOfItsOwn) {
  AddDriverSet();
  EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), 1);
  const sim::Process& other =
      machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) -> std::uint32_t {
        if (g_bRegLibraryMode != 0 || g_pRegLibrary != nullptr) return 1;
        if (LoadMonitorEnv(u"KAVRO D") != 1) return 2;
        ReleaseRegLibrary();
        return 0;
      });
  machine.Settle();
  EXPECT_EQ(other.exitCode(), 0U);
  EXPECT_TRUE(other.Ledger().empty());
  EXPECT_EQ(g_bRegLibraryMode.get(), 1);
  EXPECT_TRUE(CKvRdefRegistry(HKEY_LOCAL_MACHINE, u"K", true).SetDword(u"n", 1));
}

TEST_F(MonitorEnv, EachCallThatFailsOnTheWayToTheLibraryHasItsResult) {
  AddDriverSet();
  struct Row {
    const char* operation;
    std::uint64_t after;  // so many calls of the operation that work
    std::int32_t result;
  };
  constexpr std::array<Row, 9> kRows = {{
      {"GetVersionExW", 0, 0},
      {"GetVersionExW", 1, -1},  // the load asks for the version once more
      {"EnumPrinterDriversW", 0, -1},
      {"EnumPrinterDriversW", 1, -1},
      {"GetPrivateProfileStringW", 0, -1},
      {"FindFirstFileW", 0, -1},
      {"LoadLibraryW", 0, -1},
      {"GetProcAddress", 0, 1},
      {"GetProcAddress", 19, 1},
  }};
  for (const Row& row : kRows) {
    FailNext(row.operation, row.after);
    EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), row.result) << row.operation << " " << row.after;
    EXPECT_EQ(g_bRegLibraryMode.get(), row.result == 1 ? 1 : 0) << row.operation;
    ReleaseRegLibrary();
    EXPECT_TRUE(inside.process().Ledger().empty()) << row.operation;
  }
}

TEST_F(MonitorEnv, NoFailureOfACallLeavesAnythingOpen) {
  AddDriverSet();
  std::string lastFailed;
  for (std::uint64_t number = 1;; ++number) {
    const std::uint64_t start = calls();
    inside.process().FailCall(number);
    LoadMonitorEnv(u"KAVRO D");
    ReleaseRegLibrary();
    EXPECT_TRUE(inside.process().Ledger().empty()) << number;
    if (number > calls() - start) break;
    if (!inside.process().failedOperation().empty())
      lastFailed = inside.process().failedOperation();
  }
  EXPECT_EQ(lastFailed, "GetProcAddress");
}

}  // namespace
}  // namespace vgl
