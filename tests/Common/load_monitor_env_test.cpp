#include <gtest/gtest.h>

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
  EXPECT_EQ(g_pRegLibrary->wide().didLoad(), 1);
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

// The load asks for the version once more.
TEST_F(MonitorEnv, MinusOneWhenTheVersionIsToldOnlyOnce) {
  AddDriverSet();
  inside.process().FailCall(2);
  EXPECT_EQ(LoadMonitorEnv(u"KAVRO D"), -1);
  EXPECT_EQ(inside.process().failedOperation(), "GetVersionExW");
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

TEST_F(MonitorEnv, NoFailureOfACallLeavesAnythingOpen) {
  AddDriverSet();
  for (std::uint64_t number = 1;; ++number) {
    const std::uint64_t start = calls();
    inside.process().FailCall(number);
    const std::int32_t result = LoadMonitorEnv(u"KAVRO D");
    EXPECT_EQ(g_bRegLibraryMode.get(), result == 1 ? 1 : 0) << number;
    EXPECT_EQ(result == 1, g_hRegLibModule.get() != HMODULE{}) << number;
    ReleaseRegLibrary();
    EXPECT_TRUE(inside.process().Ledger().empty()) << number;
    if (number > calls() - start) break;
  }
  EXPECT_EQ(inside.process().failedOperation(), "GetProcAddress");
}

}  // namespace
}  // namespace vgl
